#include "ProcessTraces.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <clocale>
#include <condition_variable>
#include <filesystem>
#include <locale>
#include <mutex>
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

TEST_F(ProcessTracesTest, ThreadThatRunsButNoneThatEnds) {
  std::mutex mutex;
  std::unique_lock<std::mutex> lock(mutex);
  std::thread thread([&mutex] { std::lock_guard<std::mutex> const waiting(mutex); });
  EXPECT_EQ(Left(), "it leaves a thread running\n");
  lock.unlock();
  EXPECT_EQ(Left(), "");
  thread.join();
}

}  // namespace
