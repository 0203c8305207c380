#include "ModuleTrials.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <sstream>
#include <utility>

#include "FarLimits.h"
#include "TempFolder.h"

namespace {

namespace fs = std::filesystem;

using senmark_tool::ModuleFindings;
using senmark_tool::ModuleTrials;
using senmark_tool::Trial;
using senmark_tool::TrialReport;
using Work = std::function<void(TrialReport&)>;

class ModuleTrialsTest : public testing::Test {
 protected:
  /// Runs works that are named A, B, and so on, and gives what they find, a line each.
  std::string Run(std::vector<Work> const& works, std::string const& keep = "") {
    ModuleFindings findings;
    ModuleTrials trials(mLimits, keep, findings);
    std::vector<Trial> list;
    for (Work const& work : works) {
      list.push_back({std::string(1, static_cast<char>('A' + list.size())), work, mInput});
    }
    mHasReturned = trials.Run(list);
    mFacts = trials.Facts();
    EXPECT_TRUE(findings.All().empty());
    trials.Hand();
    std::ostringstream out;
    findings.Print(out, "");
    std::string const text = out.str();
    return text.substr(0, text.rfind('\n', text.size() - 2) + 1);
  }

  senmark_test::TempFolder mFolder;
  senmark_tool::Limits mLimits = senmark_test::FarLimits();
  std::string mInput;
  bool mHasReturned = false;
  std::map<std::size_t, std::vector<std::string>> mFacts;
};

void Nothing(TrialReport& /*report*/) {}

void Die(TrialReport& /*report*/) {
  raise(SIGSEGV);
}

[[noreturn]] void NeverEnd(TrialReport& /*report*/) {
  while (true) {
    pause();
  }
}

/// Ends as the system ends a process whose time of the processor is over.
void RunOutOfTime(TrialReport& /*report*/) {
  raise(SIGXCPU);
}

TEST_F(ModuleTrialsTest, FindingsAreHandedOnByTheirTrials) {
  EXPECT_EQ(Run({[](TrialReport& report) {
                   report.Error("e");
                   report.Warning("w\nx", ", detail");
                   report.Fact("f");
                 },
                 Nothing, [](TrialReport& report) { report.Note("n"); }}),
            "A: error: e\nA: warning: w x, detail\nC: note: n\n");
  EXPECT_TRUE(mHasReturned);
  EXPECT_EQ(mFacts, (std::map<std::size_t, std::vector<std::string>>{{0, {"f"}}}));
}

TEST_F(ModuleTrialsTest, EqualFindingsBecomeOne) {
  Work const same = [](TrialReport& report) { report.Error("same", std::to_string(rand())); };
  std::string const text = Run({same, same, same});
  EXPECT_EQ(text.rfind("A: error: same", 0), 0u);
  EXPECT_EQ(text.substr(text.find(" (")), " (and 2 other trials)\n");
  EXPECT_EQ(Run({same}).find("(and"), std::string::npos);
}

TEST_F(ModuleTrialsTest, OneEndOfTheProcessHidesNothing) {
  EXPECT_EQ(Run({[](TrialReport& report) { report.Error("before"); }, Die,
                 [](TrialReport& report) { report.Error("behind"); }}),
            "A: error: before\nB: error: it died of signal 11 (Segmentation fault)\nC: error: behind\n");
  EXPECT_FALSE(mHasReturned);
}

TEST_F(ModuleTrialsTest, EveryKindOfEndIsTold) {
  EXPECT_EQ(Run({[](TrialReport&) { exit(0); }}), "A: error: it ended the process, with exit status 0\n");
  EXPECT_EQ(Run({[](TrialReport&) { throw std::runtime_error("x"); }}), "A: error: it threw an exception: x\n");
  EXPECT_EQ(Run({RunOutOfTime, Nothing}), "A: error: it did not end in time\n");
  mLimits.time = std::chrono::milliseconds(200);
  EXPECT_EQ(Run({NeverEnd}), "A: error: it did not end in time\n");
}

// The time is that of one trial: many that take a part of it each do not run out of it. Here a process has the time for
// one of them.
TEST_F(ModuleTrialsTest, TimeIsGivenToEachTrial) {
  static bool isFirst = true;
  Work const slow = [](TrialReport& report) {
    if (!std::exchange(isFirst, false)) {
      RunOutOfTime(report);
    }
  };
  EXPECT_EQ(Run({slow, slow, slow, slow, slow}), "");
  EXPECT_TRUE(mHasReturned);
}

// What an earlier trial has broken is not put down to a later one.
TEST_F(ModuleTrialsTest, EndThatDoesNotComeAloneIsSuspicious) {
  static int count = 0;
  EXPECT_EQ(Run({[](TrialReport&) { ++count; },
                 [](TrialReport&) {
                   if (count != 0) {
                     abort();
                   }
                 }}),
            "B: warning: the process ended here after other trials in it, but not when this one was the first\n");
  EXPECT_TRUE(mHasReturned);
}

TEST_F(ModuleTrialsTest, TooManyEndsAreNotWaitedFor) {
  std::string const late = ": error: it did not end in time\n";
  EXPECT_EQ(Run({RunOutOfTime, RunOutOfTime, RunOutOfTime, RunOutOfTime, Nothing}),
            "A" + late + "B" + late + "C" + late +
                "D: note: not tried any more, after so many ends, and neither is what would follow\n");
  std::string const text = Run(std::vector<Work>(14, Die));
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 13);
}

TEST_F(ModuleTrialsTest, WhatIsLeftBehindIsPutDownToItsTrialAlone) {
  EXPECT_EQ(Run({Nothing, [](TrialReport&) { static_cast<void>(!std::fopen("/dev/zero", "r")); }, Nothing}),
            "B: error: it leaves a descriptor open, of /dev/zero\n");
  EXPECT_EQ(Run({[](TrialReport&) { std::ofstream("file"); }, Nothing}),
            "A: error: it leaves a file behind in the current folder, file\n");
  EXPECT_EQ(Run({[](TrialReport&) { std::ofstream(std::string(getenv("TMPDIR")) + "/file"); }, Nothing}),
            "A: error: it leaves a file behind in the temporary folder, file\n");
  EXPECT_EQ(Run({[](TrialReport&) { fs::current_path("/"); }, Nothing}),
            "A: error: it changes the current folder, to /\n");
}

TEST_F(ModuleTrialsTest, EveryVariableLeadsToTheFolderForTemporaryFiles) {
  EXPECT_EQ(Run({[](TrialReport& report) {
              std::string const folder = getenv("TEMP");
              if (getenv("TMP") != folder || getenv("TMPDIR") != folder || !fs::is_empty(folder)) {
                report.Error("they differ");
              }
            }}),
            "");
}

TEST_F(ModuleTrialsTest, OutputIsForTheHostAlone) {
  std::string const printed = ": error: it prints to standard output, which is the host's";
  EXPECT_EQ(Run({[](TrialReport&) { std::printf("plain\nmore"); }, [](TrialReport&) { std::cout << "stream"; },
                 [](TrialReport&) { static_cast<void>(!write(STDOUT_FILENO, "raw", 3)); },
                 [](TrialReport&) { std::cerr << "error"; }}),
            "A" + printed + ": plain (and 2 other trials)\n");
  // The library's own line.
  EXPECT_EQ(Run({[](TrialReport&) { std::printf("ERROR Opening File /x\n"); }}), "");
  EXPECT_EQ(Run({[](TrialReport&) { std::printf("ERROR Opening File /x\nof the module\n"); }}),
            "A" + printed + ": of the module\n");
}

TEST_F(ModuleTrialsTest, LogOfTheModuleIsTakenOnce) {
  EXPECT_EQ(Run({[](TrialReport& report) {
                   std::ofstream(getenv("SENMARK_MODULE_LOG")) << "one\none\ntwo\n";
                   report.Error("e", senmark_tool::TakeModuleLog());
                   report.Error("f", senmark_tool::TakeModuleLog());
                   std::ofstream(getenv("SENMARK_MODULE_LOG")) << "three\n";
                 },
                 [](TrialReport& report) { report.Error("g", senmark_tool::TakeModuleLog()); }}),
            "A: error: e; the module says: one; two\nA: error: f\nB: error: g\n");
}

TEST_F(ModuleTrialsTest, InputsThatEndTheProcessAreKept) {
  mInput = mFolder.Write("input.abc", "bytes");
  std::string const keep = mFolder.Path("keep/here");
  EXPECT_EQ(Run({Nothing}, keep), "");
  EXPECT_FALSE(fs::exists(keep));
  EXPECT_EQ(Run({Die, Nothing, Die}, keep),
            "A: error: it died of signal 11 (Segmentation fault); the file is kept as " + keep +
                "/1.abc\nC: error: it died of signal 11 (Segmentation fault); the file is kept as " + keep +
                "/2.abc\n");
  EXPECT_EQ(mFolder.Read(keep + "/2.abc"), "bytes");
}

}  // namespace
