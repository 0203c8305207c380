// The program and what cannot be: arguments that mean nothing, files that are none, an output that nobody takes. Each
// gets one line and its exit status, and nothing is left behind.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "ModuleFolders.h"
#include "ToolRunner.h"

namespace {

namespace fs = std::filesystem;

using senmark_test::NumberSetFile;
using senmark_test::Outcome;

class ToolArguments : public senmark_test::ToolTest {
 protected:
  ToolArguments() : mFile(Write(NumberSetFile::Smpte(25).Add("set", {0, 1, 2}))) {}

  /// Runs a line of a shell, in which the program is "$0" and the folder of the test "$1". Result: its status.
  int Shell(std::string const& line) const {
    std::string const command = "sh -c '" + line + "' " + SENMARK_TOOL + " '" + mFolder.Path("") + "'";
    int const status = std::system(command.c_str());
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }
  std::string Err() const { return mFolder.Read(mFolder.Path("err")); }

  void ExpectRefused(std::vector<std::string> const& arguments, std::string const& message, int status = 2) {
    Outcome const outcome = Run(arguments);
    EXPECT_EQ(outcome.status, status) << message;
    EXPECT_EQ(outcome.out, "") << message;
    EXPECT_EQ(outcome.err, "senmark: " + message + '\n');
    EXPECT_EQ(mFolder.TempNames(), "");
  }

  std::string mFile;
};

constexpr char kMore[] = " (--help tells what there is)";

TEST_F(ToolArguments, WhatIsNotUnderstoodIsNamed) {
  struct Line {
    std::vector<std::string> arguments;
    char const* message;
  };
  for (Line const& line : {
           Line{{}, "A subcommand is required"},
           Line{{"foo"}, "there is no command \"foo\""},
           Line{{"fo\no\xFF"}, "there is no command \"fo?o?\""},
           Line{{"sampels"}, "there is no command \"sampels\"; did you mean \"samples\"?"},
           Line{{"--bogus"}, "there is no option \"--bogus\"; names that begin with - stand behind --"},
           Line{{"module"}, "A subcommand is required"},
           Line{{"module", "chek"}, "there is no command \"chek\"; did you mean \"check\"?"},
           Line{{"info"}, "FILE is required"},
           Line{{"info", "-x.csv"}, "there is no option \"-x.csv\"; names that begin with - stand behind --"},
           Line{{"info", "a", "b"}, "The following argument was not expected: b"},
           Line{{"samples", "a"}, "ID is required"},
           Line{{"samples", "a", "b", "--csv", "--json"}, "--json excludes --csv"},
       }) {
    ExpectRefused(line.arguments, std::string(line.message) + kMore);
  }
}

TEST_F(ToolArguments, NamesThatBeginWithAHyphenStandBehindTwo) {
  fs::path const before = fs::current_path();
  fs::current_path(mFolder.Path(""));
  mFolder.Write("-x.csv", "a\n1\n");
  Outcome const outcome = Run({"convert", "--", "-x.csv", "-o"});
  fs::current_path(before);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_TRUE(fs::exists(mFolder.Path("-o")));
}

TEST_F(ToolArguments, NumbersAreOfDigitsAlone) {
  std::string const all = " to 18446744073709551615";
  for (char const* const text : {"-1", "+1", "1e3", "0x10", "010x", "abc", "", " 5", "5 ", "1.0",
                                 "18446744073709551616", "99999999999999999999999"}) {
    ExpectRefused({"samples", mFile, "set", "--limit", text},
                  std::string("--limit: \"") + text + "\" is no whole number from 0" + all + kMore);
  }
  for (char const* const option : {"--width", "--height"}) {
    ExpectRefused({"plot", mFile, "set", option, "0"},
                  std::string(option) + ": \"0\" is no whole number from 1" + all + kMore);
    EXPECT_EQ(Run({"plot", mFile, "set", option, "1"}).status, 0);
    EXPECT_EQ(Run({"plot", mFile, "set", option, "18446744073709551615"}).status, 0);
  }
  EXPECT_EQ(senmark_test::Lines(Run({"samples", mFile, "set", "--limit", "2"}).out).size(), 3u);
  std::string const manyFile = NumberSetFile::Smpte(25).Add("set", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}).Text();
  std::string const many = mFolder.Write("many.tdjson", manyFile);
  EXPECT_EQ(senmark_test::Lines(Run({"samples", many, "set", "--limit", "010"}).out).size(), 11u) << "no octal number";
  EXPECT_EQ(senmark_test::Lines(Run({"samples", many, "set", "--limit", "0000000000000000000000009"}).out).size(), 10u);
  EXPECT_EQ(senmark_test::Lines(Run({"samples", mFile, "set", "--limit", "18446744073709551615"}).out).size(), 4u);
}

/// A pipe that nobody writes to would be waited for.
TEST_F(ToolArguments, WhatIsNoFileIsNotWaitedFor) {
  std::string const pipe = mFolder.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  for (std::vector<std::string> const& command : std::vector<std::vector<std::string>>{{"info", pipe},
                                                                                       {"tree", pipe},
                                                                                       {"get", pipe, "a"},
                                                                                       {"samples", pipe, "a"},
                                                                                       {"plot", pipe, "a"},
                                                                                       {"check", pipe},
                                                                                       {"convert", pipe, pipe + "o"},
                                                                                       {"stream", pipe},
                                                                                       {"modules", "--why", pipe},
                                                                                       {"why", pipe}}) {
    ExpectRefused(command, pipe + ": it is a pipe, not a file", 1);
  }
  ExpectRefused({"info", "/dev/zero"}, "/dev/zero: it is a device, not a file", 1);
  EXPECT_FALSE(fs::exists(pipe + "o"));
}

TEST_F(ToolArguments, PlacesThatCannotBeMadeAreNamed) {
  ExpectRefused({"new-module", "a", ""}, "\"\" is no name of a folder");
  std::string const folder = mFolder.Path("file.tdjson/inner");
  ExpectRefused({"new-module", "a", folder}, "cannot make the folder \"" + folder + "\": Not a directory", 1);
  std::string const tooLong = mFolder.Path(std::string(300, 'x'));
  ExpectRefused({"convert", mFile, tooLong}, mFile + ": cannot write \"" + tooLong + "\": File name too long", 1);
}

TEST_F(ToolArguments, EachAnswerNeedsAnOutput) {
  for (char const* const arguments :
       {"--help", "info --help", "formats", "modules --why \"$1\"file.tdjson", "info \"$1\"file.tdjson",
        "info --json \"$1\"file.tdjson", "stream \"$1\"file.tdjson", "samples \"$1\"file.tdjson set",
        "why \"$1\"file.tdjson"}) {
    for (char const* const output : {" >/dev/full", " >&-"}) {
      EXPECT_EQ(Shell(std::string("\"$0\" --no-modules ") + arguments + output + " 2>\"$1\"err"), 1)
          << arguments << output;
      EXPECT_EQ(Err(), "senmark: cannot write the output\n") << arguments << output;
      EXPECT_EQ(mFolder.TempNames(), "") << arguments << output;
    }
  }
}

/// Their numbers must not go to files and pipes of the program.
TEST_F(ToolArguments, ClosedDescriptorsChangeNoAnswer) {
  senmark_test::ModuleFolders const modules(mFolder);
  modules.Add("a.tdx", senmark_test::Manifest("a", "\"fm\"").c_str(), "good", senmark_test::kFaultyModule);
  mFolder.Write("good.fm", "FMab.");
  std::string const check = "\"$0\" module check \"$1\"modules/a.tdx \"$1\"good.fm >\"$1\"";
  int const status = Shell(check + "open");
  EXPECT_EQ(Shell(check + "closed <&- 2>&-"), status);
  std::string const open = mFolder.Read(mFolder.Path("open"));
  EXPECT_NE(open, "");
  EXPECT_EQ(mFolder.Read(mFolder.Path("closed")), open);
}

TEST_F(ToolArguments, TimeLimitMayBeAnyNumber) {
  senmark_test::ModuleFolders const modules(mFolder);
  std::string const module =
      modules.Add("a.tdx", senmark_test::Manifest("a", "\"fm\"").c_str(), "good", senmark_test::kFaultyModule);
  std::string const wanted = Run({"module", "check", module, "--time-limit", "240000"}).out;
  EXPECT_EQ(wanted.find("did not end in time"), std::string::npos) << wanted;
  for (char const* const time : {"9223372036854775807", "9300000000000", "18446744073709551615"}) {
    EXPECT_EQ(Run({"module", "check", module, "--time-limit", time}).out, wanted) << time;
  }
}

TEST_F(ToolArguments, NamesOfAllKindsAreTold) {
  for (char const* const name : {"new\nline.csv", "\xFF\xFE.csv", "\x1B[31m.csv", "sp ace.csv", "-.csv"}) {
    std::string const path = mFolder.Write(name, "a\n1\n");
    EXPECT_EQ(Run({"info", path}).status, 0) << name;
    Outcome const missing = Run({"info", path + "x"});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(std::count(missing.err.begin(), missing.err.end(), '\n'), 1) << missing.err;
    EXPECT_EQ(missing.err.find('\x1B'), std::string::npos);
  }
}

}  // namespace
