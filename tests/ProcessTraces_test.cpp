#include "ProcessTraces.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <clocale>
#include <filesystem>
#include <fstream>
#include <locale>
#include <mutex>
#include <string>
#include <thread>

#include "TempFolder.h"

namespace {

using senmark_tool::ProcessTraces;
using senmark_tool::Trace;
using senmark_tool::WhatIsLeft;

class ProcessTracesTest : public testing::Test {
 protected:
  ProcessTracesTest() : mWatched(mFolder.Path("watched")) {
    std::filesystem::create_directory(mWatched);
    mFolder.Write("watched/old", "");
    // The thread sanitizer starts one of its own beside the first.
    std::thread([] {}).join();
    mBefore = ProcessTraces::Now({mWatched});
  }

  std::string Left() {
    std::string text;
    for (Trace const& trace : WhatIsLeft(mBefore)) {
      text += trace.text + trace.detail + '\n';
    }
    return text;
  }

  senmark_test::TempFolder mFolder;
  std::string mWatched;
  ProcessTraces mBefore;
};

TEST_F(ProcessTracesTest, NothingIsLeftWhereNothingWasDone) {
  EXPECT_EQ(Left(), "");
}

TEST_F(ProcessTracesTest, OpenDescriptor) {
  int const fd = open("/dev/zero", O_RDONLY);
  EXPECT_EQ(Left(), "it leaves a descriptor open, of /dev/zero\n");
  close(fd);
  EXPECT_EQ(Left(), "");
}

TEST_F(ProcessTracesTest, ClosedAndExchangedDescriptor) {
  int const fd = open("/dev/zero", O_RDONLY);
  mBefore = ProcessTraces::Now({mWatched});
  int const other = open("/dev/null", O_RDONLY);
  dup2(other, fd);
  close(other);
  EXPECT_EQ(Left(), "it closes a descriptor that is not its own, of /dev/zero\n");
  close(fd);
  EXPECT_EQ(Left(), "it closes a descriptor that is not its own, of /dev/zero\n");
}

TEST_F(ProcessTracesTest, NewFile) {
  mFolder.Write("watched/new", "");
  EXPECT_EQ(Left(), "it leaves a file behind in the watched folder, new\n");
}

TEST_F(ProcessTracesTest, CurrentFolder) {
  std::filesystem::path const before = std::filesystem::current_path();
  std::filesystem::current_path("/");
  EXPECT_EQ(Left(), "it changes the current folder, to /\n");
  std::filesystem::current_path(before);
}

TEST_F(ProcessTracesTest, LocaleOfEitherKind) {
  ASSERT_NE(std::setlocale(LC_NUMERIC, "C.UTF-8"), nullptr);
  EXPECT_EQ(Left().rfind("it changes the locale of the process, from C C to ", 0), 0u);
  std::setlocale(LC_NUMERIC, "C");
  std::locale const before = std::locale::global(std::locale("C.UTF-8"));
  EXPECT_EQ(Left().rfind("it changes the locale of the process, from C C to ", 0), 0u);
  std::locale::global(before);
  std::setlocale(LC_ALL, "C");
  EXPECT_EQ(Left(), "");
}

TEST_F(ProcessTracesTest, ThreadThatRuns) {
  std::mutex mutex;
  std::unique_lock<std::mutex> lock(mutex);
  std::thread thread([&mutex] { std::lock_guard<std::mutex> const waiting(mutex); });
  EXPECT_EQ(Left(), "it leaves a thread running\n");
  // No name makes it one that has ended.
  for (char const* const name : {") S 1 1 1 1 1 4", "two\nlines", "\n", ") 1 1 1 1 1 4\n"}) {
    ASSERT_EQ(pthread_setname_np(thread.native_handle(), name), 0);
    EXPECT_EQ(Left(), "it leaves a thread running\n") << name;
  }
  lock.unlock();
  thread.join();
  EXPECT_EQ(Left(), "");
}

/// With one descriptor left, threads can be listed, and no more be said of any.
TEST_F(ProcessTracesTest, ThreadThatRunsWhereNoFileCanBeOpened) {
  std::mutex mutex;
  std::unique_lock<std::mutex> lock(mutex);
  std::thread thread([&mutex] { std::lock_guard<std::mutex> const waiting(mutex); });
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  int const lowestFree = open("/dev/null", O_RDONLY);
  close(lowestFree);
  rlimit const oneMore{static_cast<rlim_t>(lowestFree) + 1, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &oneMore), 0);
  std::string const left = Left();
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_EQ(left, "it leaves a thread running\n");
  lock.unlock();
  thread.join();
}

/// The state of the first thread of this process, as proc(5) has it.
char StateOfFirstThread() {
  std::ifstream file("/proc/self/task/" + std::to_string(getpid()) + "/stat");
  std::string text;
  std::getline(file, text);
  std::size_t const nameEnd = text.rfind(") ");
  return nameEnd == std::string::npos ? '?' : text[nameEnd + 2];
}

// One that has ended may still be listed. The first of a process always is, so this is tried with it.
TEST_F(ProcessTracesTest, ThreadThatHasEnded) {
  constexpr int kFine = 11;
  pid_t const child = fork();
  if (child == 0) {
    std::thread second([this] {
      while (StateOfFirstThread() != 'Z') {
        std::this_thread::yield();
      }
      _exit(Left().find("thread") == std::string::npos ? kFine : 1);
    });
    syscall(SYS_exit, 0);  // of this thread alone
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(WEXITSTATUS(status), kFine);
}

TEST_F(ProcessTracesTest, ThreadThatIsAboutToEndIsGivenAMoment) {
  // On a machine that has much else to do, the moment may be over before the thread has its turn.
  bool isFineWithIt = false;
  for (int round = 0; round != 100 && !isFineWithIt; ++round) {
    std::atomic<bool> isEnd{false};
    std::thread thread([&isEnd] {
      while (!isEnd && StateOfFirstThread() != 'S') {
        std::this_thread::yield();
      }
    });
    isFineWithIt = Left().empty();
    isEnd = true;
    thread.join();
  }
  EXPECT_TRUE(isFineWithIt);
}

}  // namespace
