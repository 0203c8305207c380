#include "ConverterProbe.h"

#include <gtest/gtest.h>

#include "FarLimits.h"
#include "ModuleFolders.h"

namespace senmark_test {
namespace {

using senmark_tool::eProbe;
using senmark_tool::FoundConverter;
using senmark_tool::FoundModule;
using senmark_tool::Limits;
using senmark_tool::ProbeAnswer;
using Lines = std::vector<std::string>;

class ConverterProbe : public testing::Test {
 protected:
  ProbeAnswer Probe(std::string const& uid, eProbe probe, char const* identifier = "a",
                    char const* code = kExplainingModule) {
    mModules.Add("A.tdx", "{}", identifier, code);
    FoundModule module;
    module.folder = senmark_tool::ReadModuleFolder(mModules.Path(), "A.tdx");
    FoundConverter converter;
    converter.manifest.uid = uid;
    return senmark_tool::ProbeConverter({&module, &converter}, mFolder.Write("data.x", "x"), probe, mLimits);
  }

  TempFolder mFolder;
  ModuleFolders mModules{mFolder};
  Limits mLimits = FarLimits();
};

TEST_F(ConverterProbe, CheckFunctionSaysYes) {
  ProbeAnswer const answer = Probe("u", eProbe::kCheck);
  EXPECT_TRUE(answer.takes);
  EXPECT_EQ(answer.checkError, "");
  EXPECT_EQ(answer.loadError, "");
  EXPECT_EQ(answer.lines, Lines());
}

TEST_F(ConverterProbe, CheckFunctionSaysNo) {
  ProbeAnswer const answer = Probe("refuse", eProbe::kCheck);
  EXPECT_FALSE(answer.takes);
  EXPECT_EQ(answer.checkError, "");
}

TEST_F(ConverterProbe, ExplanationComesLineByLine) {
  ProbeAnswer const answer = Probe("u", eProbe::kExplain);
  EXPECT_EQ(answer.lines, (Lines{"u looks at data.x", "in two lines, with \xC3\xA4"}));
  EXPECT_EQ(answer.explanationError, "");
  EXPECT_FALSE(answer.takes);  // it was not asked
}

TEST_F(ConverterProbe, BothAtOnce) {
  ProbeAnswer const answer = Probe("u", eProbe::kBoth);
  EXPECT_TRUE(answer.takes);
  EXPECT_EQ(answer.lines.size(), 2u);
}

TEST_F(ConverterProbe, ModuleWithoutExplanationSaysNothing) {
  ProbeAnswer const answer = Probe("u", eProbe::kBoth, "a", kTestModule);
  EXPECT_TRUE(answer.takes);
  EXPECT_EQ(answer.lines, Lines());
  EXPECT_EQ(answer.explanationError, "");
}

TEST_F(ConverterProbe, ExplanationIsKeptUpToItsFailure) {
  ProbeAnswer const failed = Probe("fail-explain", eProbe::kExplain);
  EXPECT_EQ(failed.lines.size(), 2u);
  EXPECT_EQ(failed.explanationError, "failed with code 1707 at byte 12, line 3");
}

TEST_F(ConverterProbe, ExplanationIsKeptUpToACrash) {
  ProbeAnswer const crashed = Probe("crash-explain", eProbe::kBoth);
  EXPECT_TRUE(crashed.takes);
  EXPECT_EQ(crashed.lines.size(), 2u);
  EXPECT_EQ(crashed.explanationError, "died of signal 9 (Killed)");
  EXPECT_EQ(crashed.loadError, "");
}

struct Fault {
  char const* name;
  char const* uid;
  char const* identifier;
  char const* checkError;
  char const* loadError;
};

Fault const kFaults[] = {
    {"Throws", "throw-check", "a", "threw an exception: no idea", ""},
    {"LogsAndFails", "log-check", "a", "failed with code 1705 at byte 12, line 3 (the header is damaged)", ""},
    {"Crashes", "crash-check", "a", "died of signal 9 (Killed)", ""},
    {"EndsTheProcess", "exit-check", "a", "ended the process, with exit status 0", ""},
    {"Hangs", "hang-check", "a", "did not end in time", ""},
    {"Writes", "write-check", "a", "failed with code 21", ""},
    {"Missing", "u", "no-check", "is missing from the module's table (code 1500)", ""},
    {"InitFails", "u", "fail-init", "", "its initialisation failed with code 1701 at byte 12, line 3"},
    {"InitCrashes", "u", "crash-init", "", "died of signal 9 (Killed)"},
    {"UnloadingCrashes", "u", "die-at-unload", "", ""},
    {"OnlyThePlainTable", "u", "only-48", "", ""},
};

class ProbeFaults : public ConverterProbe, public testing::WithParamInterface<Fault> {};

TEST_P(ProbeFaults, AreTold) {
  if (std::string(GetParam().uid) == "hang-check") {
    mLimits.processorTime = std::chrono::seconds(1);  // far more than it takes to come to the check
  }
  ProbeAnswer const answer = Probe(GetParam().uid, eProbe::kCheck, GetParam().identifier);
  EXPECT_EQ(answer.checkError, GetParam().checkError);
  EXPECT_EQ(answer.loadError, GetParam().loadError);
  EXPECT_EQ(answer.takes, *GetParam().checkError == '\0' && *GetParam().loadError == '\0');
}

INSTANTIATE_TEST_SUITE_P(All, ProbeFaults, testing::ValuesIn(kFaults),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(ConverterProbe, NothingOfTheModuleComesIntoThisProcess) {
  Probe("u", eProbe::kBoth, "a", kTestModule);
  std::string const notes = mModules.TakeNotes();
  EXPECT_EQ(notes.rfind("loaded\ninitialize a", 0), 0u) << notes;
  EXPECT_EQ(notes.substr(notes.size() - 19), "terminate\nunloaded\n");
}

}  // namespace
}  // namespace senmark_test
