#include "ModuleCodeCheck.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "FarLimits.h"
#include "ModuleFolders.h"
#include "senmark/host/Library.h"

namespace {

using senmark_test::CodeBytes;

class ModuleCodeCheck : public testing::Test {
 protected:
  ModuleCodeCheck() : mModules(mFolder) {}

  /// Has this program linked with the library, as hosts are.
  senmark::Library mLibrary = senmark::Library::Linked();

  std::string Check(char const* code) {
    std::filesystem::remove_all(mModules.Path() + "/M.tdx");
    mModules.Add("M.tdx", "", "", code);
    return CheckAdded();
  }
  std::string Check(std::string const& bytes) {
    std::filesystem::remove_all(mModules.Path() + "/M.tdx");
    mModules.Add("M.tdx", "", "", nullptr);
    mModules.SetCode("M.tdx", bytes);
    return CheckAdded();
  }

  senmark_test::TempFolder mFolder;
  senmark_test::ModuleFolders mModules;
  bool mCanRun = false;

 private:
  /// Findings without the path of the code, and without their sum.
  std::string CheckAdded() {
    senmark_tool::ModuleFindings findings;
    senmark_tool::ModulePaths const module(mModules.Path() + "/M.tdx");
    mCanRun = senmark_tool::CheckCode(module, senmark_test::FarLimits(), findings);
    std::string text;
    for (senmark_tool::Finding const& finding : findings.All()) {
      EXPECT_EQ(finding.where, module.Code());
      text += (finding.severity == senmark_tool::eSeverity::kError ? "error: " : "warning: ") + finding.text + '\n';
    }
    return text;
  }
};

TEST_F(ModuleCodeCheck, GoodCodeHasNoFindings) {
  EXPECT_EQ(Check(senmark_test::kFaultyModule), "");
  EXPECT_TRUE(mCanRun);
  EXPECT_EQ(mModules.TakeNotes(), "");
}

TEST_F(ModuleCodeCheck, EntryHasToBeThere) {
  std::string code = CodeBytes(senmark_test::kFaultyModule);
  std::string const name = "InitializePlugin";
  for (std::size_t at = code.find(name); at != std::string::npos; at = code.find(name, at)) {
    code.replace(at, name.size(), "InitialisePlugin");
  }
  EXPECT_EQ(Check(code),
            "error: it does not export InitializePlugin, the one function that the library calls\n"
            "warning: it exports InitialisePlugin, which may meet the same name in another module: hide all but "
            "InitializePlugin\n");
  EXPECT_FALSE(mCanRun);
}

TEST_F(ModuleCodeCheck, EntryOfAnotherLinkageIsNamed) {
  std::string const text = Check(senmark_test::kBareModule);
  EXPECT_EQ(text.substr(0, text.find('\n') + 1),
            "error: it does not export InitializePlugin, but bare::InitializePlugin(char const*): declare it as "
            "senmark/PluginAPI.h does\n");
  EXPECT_NE(text.find("warning: it exports SomethingElse, which may meet the same name in another module: hide all "
                      "but InitializePlugin\n"),
            std::string::npos);
  EXPECT_FALSE(mCanRun);
}

TEST_F(ModuleCodeCheck, TenExportsAreListedAndTheRestIsCounted) {
  std::string const text = Check(senmark_test::kLoudModule);
  for (int i = 0; i != 10; ++i) {
    EXPECT_NE(text.find("warning: it exports AName" + std::to_string(i) + ", which"), std::string::npos) << text;
  }
  EXPECT_EQ(text.find("AnotherName"), std::string::npos);
  std::size_t const rest = text.find(" more name");
  ASSERT_NE(rest, std::string::npos) << text;
  EXPECT_TRUE(mCanRun);
}

TEST_F(ModuleCodeCheck, NameThatNobodyHas) {
  EXPECT_NE(
      Check(senmark_test::kNeedyModule).find("error: it needs NobodyProvidesThis, which none of its libraries has\n"),
      std::string::npos);
  EXPECT_FALSE(mCanRun);
}

// Another host may load the library at run time, where no name of it is to be found.
TEST_F(ModuleCodeCheck, NameThatOnlyTheHostHas) {
  EXPECT_NE(Check(senmark_test::kLoudModule)
                .find("warning: it needs GetSupportedFormats_1, which none of its libraries has: it is there only by "
                      "chance, from this program\n"),
            std::string::npos);
}

TEST_F(ModuleCodeCheck, LibraryThatIsMissing) {
  std::string code = CodeBytes(senmark_test::kFaultyModule);
  std::string const library = "libstdc++.so.6";
  std::size_t const at = code.find(library);
  ASSERT_NE(at, std::string::npos);
  EXPECT_EQ(Check(code.replace(at, library.size(), "libstdc++.so.X")),
            "error: it needs the library libstdc++.so.X, which is not found\n");
  EXPECT_FALSE(mCanRun);
}

TEST_F(ModuleCodeCheck, CodeThatEndsItsProcessWhileItIsLoaded) {
  EXPECT_NE(Check(senmark_test::kDyingModule).find("error: its loading died of signal 4 (Illegal instruction)\n"),
            std::string::npos);
  EXPECT_FALSE(mCanRun);
}

TEST_F(ModuleCodeCheck, WhatIsNoCode) {
  EXPECT_EQ(Check(std::string("text")), "error: this is no ELF file\n");
  EXPECT_FALSE(mCanRun);
  std::string const code = CodeBytes(senmark_test::kFaultyModule);
  EXPECT_NE(Check(code.substr(0, code.size() / 2)), "");
  EXPECT_FALSE(mCanRun);
}

}  // namespace
