#include "ModuleProcess.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <stdexcept>

#include "FarLimits.h"
#include "TempFolder.h"
#include "Witness.h"

namespace {

using senmark_test::FarLimits;
using senmark_test::Witness;
using senmark_tool::Limits;
using senmark_tool::ProcessEnd;
using senmark_tool::RunLimited;
using eKind = ProcessEnd::eKind;
using std::chrono::milliseconds;

// Whether memory can be limited: not with the shadow memory of a sanitizer.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kIsSanitized = true;
#else
constexpr bool kIsSanitized = false;
#endif

/// Descriptors of this process that are open.
std::size_t OpenDescriptors() {
  std::filesystem::directory_iterator const entries("/proc/self/fd");
  return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
}

[[noreturn]] void WaitForever() {
  while (true) {
    pause();
  }
}

[[noreturn]] void Spin() {
  for (unsigned volatile turns = 0;; ++turns) {
  }
}

TEST(ModuleProcess, WorkIsDoneElsewhereAndReports) {
  int value = 1;
  ProcessEnd const end = RunLimited(FarLimits(), [&](std::ostream& report) {
    value = 2;
    report << "pid " << getpid() << '\n';
  });
  EXPECT_EQ(end.kind, eKind::kReturned);
  EXPECT_TRUE(end.HasReturned());
  EXPECT_EQ(end.Text(), "ran to its end");
  EXPECT_EQ(value, 1);
  EXPECT_EQ(end.report.rfind("pid ", 0), 0u);
  EXPECT_NE(end.report, "pid " + std::to_string(getpid()) + '\n');
  EXPECT_EQ(end.output, "");
}

TEST(ModuleProcess, NothingStaysOpen) {
  std::size_t const before = OpenDescriptors();
  RunLimited(FarLimits(), [](std::ostream& report) { report << "x"; });
  RunLimited(FarLimits(), [](std::ostream&) { abort(); });
  EXPECT_EQ(OpenDescriptors(), before);
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
}

TEST(ModuleProcess, ExceptionsAreTold) {
  ProcessEnd const told = RunLimited(FarLimits(), [](std::ostream&) { throw std::runtime_error("bad table"); });
  EXPECT_EQ(told.kind, eKind::kThrew);
  EXPECT_EQ(told.Text(), "threw an exception: bad table");
  ProcessEnd const untold = RunLimited(FarLimits(), [](std::ostream&) { throw 5; });
  EXPECT_EQ(untold.Text(), "threw an exception: something that is no std::exception");
}

TEST(ModuleProcess, WhatWasReportedBeforeACrashArrives) {
  ProcessEnd const end = RunLimited(FarLimits(), [](std::ostream& report) {
    report << "before";
    raise(SIGSEGV);
    report << "behind";
  });
  EXPECT_EQ(end.kind, eKind::kSignal);
  EXPECT_EQ(end.number, SIGSEGV);
  EXPECT_EQ(end.Text(), "died of signal 11 (Segmentation fault)");
  EXPECT_EQ(end.report, "before");
}

TEST(ModuleProcess, ProcessThatEndsItselfHasNotReturned) {
  ProcessEnd const end = RunLimited(FarLimits(), [](std::ostream&) { _exit(0); });
  EXPECT_EQ(end.kind, eKind::kExited);
  EXPECT_EQ(end.number, 0);
  EXPECT_EQ(end.Text(), "ended the process, with exit status 0");
  EXPECT_EQ(RunLimited(FarLimits(), [](std::ostream&) { _exit(7); }).number, 7);
}

TEST(ModuleProcess, OutputIsCaughtAndNeverPrintedTwice) {
  // Not printed yet when the child is made: it must not print it, too.
  testing::internal::CaptureStdout();
  std::cout << "of the parent";
  std::printf("of the parent's C side");
  ProcessEnd const end = RunLimited(FarLimits(), [](std::ostream&) {
    std::printf("plain ");
    std::fflush(stdout);
    std::cout << "stream ";
    std::cout.flush();
    std::cerr << "error";
  });
  std::string const printed = testing::internal::GetCapturedStdout();
  EXPECT_EQ(printed.find("plain"), std::string::npos);
  EXPECT_EQ(printed.size(), std::string("of the parent").size() + std::string("of the parent's C side").size());
  EXPECT_EQ(end.output, "plain stream error");
}

TEST(ModuleProcess, StandardInputIsEmpty) {
  ProcessEnd const end = RunLimited(FarLimits(), [](std::ostream& report) {
    char byte;
    report << read(STDIN_FILENO, &byte, 1);
  });
  EXPECT_EQ(end.report, "0");
}

TEST(ModuleProcess, SignalsAreAsInANewProgram) {
  auto* const before = signal(SIGPIPE, SIG_IGN);
  ProcessEnd const end = RunLimited(FarLimits(), [](std::ostream&) { raise(SIGPIPE); });
  signal(SIGPIPE, before);
  EXPECT_EQ(end.number, SIGPIPE);
}

TEST(ModuleProcess, TimeOnTheWallIsLimited) {
  Limits limits = FarLimits();
  limits.time = milliseconds(200);
  auto const begin = std::chrono::steady_clock::now();
  ProcessEnd const end = RunLimited(limits, [](std::ostream&) { WaitForever(); });
  EXPECT_EQ(end.kind, eKind::kTimedOut);
  EXPECT_EQ(end.Text(), "did not end in time");
  EXPECT_GE(std::chrono::steady_clock::now() - begin, milliseconds(200));
}

/// Runs what has no end until its time is over, and gives it more if it has not come to report anything by then: on a
/// machine that has much else to do it may not even have begun.
template <class Work>
ProcessEnd RunBeyondItsTime(Work const& work) {
  Limits limits = FarLimits();
  for (limits.time = milliseconds(100); limits.time < std::chrono::minutes(1); limits.time *= 2) {
    ProcessEnd end = RunLimited(limits, work);
    if (!end.report.empty()) {
      return end;
    }
  }
  ADD_FAILURE() << "nothing is reported";
  return {};
}

TEST(ModuleProcess, WhatWasReportedBeforeItsTimeWasOverArrives) {
  ProcessEnd const end = RunBeyondItsTime([](std::ostream& report) {
    report << "begun";
    WaitForever();
  });
  EXPECT_EQ(end.kind, eKind::kTimedOut);
  EXPECT_EQ(end.report, "begun");
}

TEST(ModuleProcess, TimeOfTheProcessorIsLimited) {
  Limits limits = FarLimits();
  limits.processorTime = std::chrono::seconds(1);
  EXPECT_EQ(RunLimited(limits, [](std::ostream&) { Spin(); }).kind, eKind::kTimedOut);
}

TEST(ModuleProcess, SignalsThatItIgnoresDoNotKeepItAlive) {
  ProcessEnd const end = RunBeyondItsTime([](std::ostream& report) {
    for (int number = 1; number < NSIG; ++number) {
      signal(number, SIG_IGN);
    }
    report << "deaf";
    WaitForever();
  });
  EXPECT_EQ(end.kind, eKind::kTimedOut);
}

TEST(ModuleProcess, MemoryIsLimited) {
  if (kIsSanitized) {
    GTEST_SKIP() << "not under a sanitizer";
  }
  Limits limits = FarLimits();
  limits.memory = 64 << 20;
  auto const take = [](std::size_t bytes) {
    return [bytes](std::ostream& report) {
      void* volatile memory = operator new(bytes);  // which the compiler may not leave out
      operator delete(memory);
      report << 1;
    };
  };
  EXPECT_EQ(RunLimited(limits, take(48 << 20)).report, "1");
  EXPECT_EQ(RunLimited(limits, take(80 << 20)).Text(), "threw an exception: std::bad_alloc");
}

TEST(ModuleProcess, SizeOfFilesIsLimited) {
  senmark_test::TempFolder const folder;
  Limits limits = FarLimits();
  limits.fileSize = 1000;
  auto const write = [&](std::size_t bytes) {
    return RunLimited(limits, [&](std::ostream&) {
      std::ofstream file(folder.Path("file"));
      file << std::string(bytes, 'x') << std::flush;
    });
  };
  EXPECT_EQ(write(1000).kind, eKind::kReturned);
  EXPECT_EQ(write(1001).number, SIGXFSZ);
  EXPECT_EQ(std::filesystem::file_size(folder.Path("file")), 1000u);
}

TEST(ModuleProcess, NoCoreIsLeft) {
  ProcessEnd const end = RunLimited(FarLimits(), [](std::ostream& report) {
    rlimit limit;
    getrlimit(RLIMIT_CORE, &limit);
    report << limit.rlim_cur;
  });
  EXPECT_EQ(end.report, "0");
}

TEST(ModuleProcess, LongReportAndOutputAreCutAndHoldNobodyUp) {
  Limits limits = FarLimits();
  limits.reportSize = 1000;
  ProcessEnd const end = RunLimited(limits, [](std::ostream& report) {
    std::string const text(1 << 20, 'r');
    report << text;
    std::cout << text << std::flush;
  });
  EXPECT_EQ(end.kind, eKind::kReturned);
  EXPECT_EQ(end.report, std::string(1000, 'r'));
  EXPECT_EQ(end.output, std::string(65536, 'r'));
}

TEST(ModuleProcess, WhatItStartedGoesWithIt) {
  Witness witness;
  pid_t started = 0;
  ProcessEnd const end = RunLimited(FarLimits(), [&](std::ostream& report) {
    pid_t const id = fork();
    if (id == 0) {
      WaitForever();  // with all pipes open
    }
    static_cast<void>(!write(witness.WritingEnd(), &id, sizeof id));
    report << "started";
  });
  EXPECT_EQ(end.kind, eKind::kReturned);
  EXPECT_EQ(end.report, "started");
  ASSERT_TRUE(witness.Read(started));
  bool const isGone = witness.AwaitTheEndOfOthers();
  EXPECT_TRUE(isGone);
  if (!isGone) {
    kill(started, SIGKILL);
  }
}

TEST(ModuleProcess, ProcessGoesWithTheOneThatMadeIt) {
  Witness witness;
  pid_t const parent = fork();
  if (parent == 0) {
    RunLimited(FarLimits(), [&](std::ostream&) {
      pid_t const id = getpid();
      static_cast<void>(!write(witness.WritingEnd(), &id, sizeof id));
      WaitForever();
    });
    _exit(0);
  }
  pid_t started = 0;
  bool const hasStarted = witness.Read(started);
  kill(parent, SIGKILL);
  waitpid(parent, nullptr, 0);
  ASSERT_TRUE(hasStarted);
  bool const isGone = witness.AwaitTheEndOfOthers();
  EXPECT_TRUE(isGone);
  if (!isGone) {
    kill(started, SIGKILL);
  }
}

}  // namespace
