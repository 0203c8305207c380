#include "SK_Mutex.h"

#include <gtest/gtest.h>

#include <atomic>
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
  for (int round = 0; round < 20; ++round) {
    auto first = std::make_unique<SK_Mutex>();
    std::atomic<bool> isComing{false};
    std::atomic<bool> isFirstGone{false};
    bool hasWaited = false;
    std::thread other([&] {
      isComing = true;
      SK_Mutex const guard;
      hasWaited = isFirstGone;
    });
    while (!isComing) {
      std::this_thread::yield();
    }
    // Time to come in too early.
    for (int turn = 0; turn < 10; ++turn) {
      std::this_thread::yield();
    }
    isFirstGone = true;
    first.reset();
    other.join();
    ASSERT_TRUE(hasWaited) << round;
  }
}

}  // namespace
