#include "SK_Mutex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

namespace {

using ns_sensor::SK_Mutex;

TEST(Mutex, GuardsExcludeEachOther) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 20000;
  long count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&count] {
      for (int round = 0; round < kRounds; ++round) {
        SK_Mutex const guard;
        ++count;
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(count, kThreads * kRounds);
}

TEST(Mutex, GuardWaitsUntilTheOtherIsGone) {
  auto first = std::make_unique<SK_Mutex>();
  std::atomic<bool> entered{false};
  std::thread other([&entered] {
    SK_Mutex const guard;
    entered = true;
  });
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  EXPECT_FALSE(entered);
  first.reset();
  other.join();
  EXPECT_TRUE(entered);
}

}  // namespace
