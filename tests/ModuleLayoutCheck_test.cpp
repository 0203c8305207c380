#include "ModuleLayoutCheck.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "ModuleFolders.h"

namespace {

namespace fs = std::filesystem;

constexpr char kManifest[] = "Contents/Resources/SKPLUGINUIDS.txt";
constexpr char kIdentifier[] = "Contents/Resources/MODULE_IDENTIFIER.txt";

class ModuleLayoutCheck : public testing::Test {
 protected:
  /// Makes a file in the folder.
  void Add(std::string const& file, std::string const& content = "x") {
    fs::create_directories(fs::path(mFolder.Path(mName + '/' + file)).parent_path());
    mFolder.Write(mName + '/' + file, content);
  }
  void AddAll() {
    Add(Code());
    Add(kManifest);
    Add(kIdentifier);
  }
  std::string Code() const {
    return "Contents/" + senmark_test::Machine() + "-linux/" + mName.substr(0, mName.rfind('.')) + ".so";
  }

  std::string Check(std::string const& behind = "") const {
    senmark_tool::ModuleFindings findings;
    senmark_tool::CheckLayout(senmark_tool::ModulePaths(mFolder.Path(mName) + behind), findings);
    std::ostringstream out;
    findings.Print(out, "");
    std::string const text = out.str();
    return text.substr(0, text.rfind('\n', text.size() - 2) + 1);
  }

  senmark_test::TempFolder mFolder;
  std::string mName = "Name.tdx";
};

TEST_F(ModuleLayoutCheck, GoodFoldersHaveNoFindings) {
  AddAll();
  EXPECT_EQ(Check(), "");
  EXPECT_EQ(Check("/"), "");
  EXPECT_EQ(Check("//"), "");
  EXPECT_EQ(Check("/Contents/.."), "");
  // What other machines need, and resources of the module's own.
  for (char const* const file : {"Contents/Info.plist", "Contents/MacOS/Name", "Contents/other-linux/Name.so",
                                 "Contents/_CodeSignature/CodeResources", "Contents/Resources/icon.png"}) {
    Add(file);
  }
  EXPECT_EQ(Check(), "");
}

TEST_F(ModuleLayoutCheck, ExtensionInAnyCaseAndPointsInTheName) {
  for (char const* const name : {"Name.TDX", "My.Name.tDx"}) {
    mName = name;
    AddAll();
    EXPECT_EQ(Check(), "") << name;
  }
}

TEST_F(ModuleLayoutCheck, NamesThatTheLibraryPassesOver) {
  std::string const wrong =
      ": error: the name of a module's folder ends in .tdx; the library does not look at others\n";
  mName = "Name";
  AddAll();
  EXPECT_EQ(Check(), "Name" + wrong);
  mName = "Name.tdx2";
  AddAll();
  EXPECT_EQ(Check(), "Name.tdx2" + wrong);
  mName = "~Name.tdx";
  AddAll();
  EXPECT_EQ(Check(), "~Name.tdx: error: the library passes over names that begin with ~\n");
  mName = ".tdx";
  AddAll();
  EXPECT_EQ(Check(), ".tdx: error: the folder has no name before .tdx\n");
}

TEST_F(ModuleLayoutCheck, WhatIsNoFolder) {
  EXPECT_EQ(Check(), "Name.tdx: error: there is no such folder\n");
  mFolder.Write("Name.tdx", "");
  EXPECT_EQ(Check(), "Name.tdx: error: a module is a folder, which this is not\n");
}

TEST_F(ModuleLayoutCheck, WhatIsMissing) {
  fs::create_directory(mFolder.Path(mName));
  EXPECT_EQ(Check(), Code() +
                         ": error: the code for this machine is missing; its name is that of the folder, letter for "
                         "letter\n" +
                         kManifest +
                         ": error: missing: without a manifest the library does not know what the module is for\n" +
                         kIdentifier + ": warning: missing: messages about the module will have no name for it\n");
}

TEST_F(ModuleLayoutCheck, NearMissesAreNamed) {
  std::string const folder = "Contents/" + senmark_test::Machine() + "-linux/";
  Add(kManifest);
  Add(kIdentifier);
  std::string const missing = Code() +
                              ": error: the code for this machine is missing; its name is that of the folder, letter "
                              "for letter; but there is ";
  std::string const useless = ": note: the library has no use for this file\n";
  for (std::string const& near : {folder + "name.so", std::string("Name.so"), folder + "libName.so"}) {
    Add(near);
    EXPECT_EQ(Check(), missing + near + '\n' + near + useless) << near;
    fs::remove(mFolder.Path(mName + '/' + near));
  }
  Add("Contents/other-linux/Name.so");
  EXPECT_EQ(Check(), missing + "Contents/other-linux/Name.so\n");
}

TEST_F(ModuleLayoutCheck, NearMissesOfResources) {
  Add(Code());
  Add("Contents/Resources/SKPluginUIDs.txt");
  Add("Contents/MODULE_IDENTIFIER.txt");
  EXPECT_EQ(Check(), std::string(kManifest) +
                         ": error: missing; but there is Contents/Resources/SKPluginUIDs.txt: without a manifest the "
                         "library does not know what the module is for\n" +
                         kIdentifier +
                         ": warning: missing; but there is Contents/MODULE_IDENTIFIER.txt: messages about the module "
                         "will have no name for it\n"
                         "Contents/MODULE_IDENTIFIER.txt: note: the library has no use for this file\n");
}

TEST_F(ModuleLayoutCheck, CodeThatIsNoFile) {
  Add(kManifest);
  Add(kIdentifier);
  fs::create_directories(fs::path(mFolder.Path(mName + '/' + Code())).parent_path());
  fs::create_symlink("nowhere", mFolder.Path(mName + '/' + Code()));
  EXPECT_EQ(Check(), Code() + ": error: this is no regular file, or a link to nothing\n");
}

TEST_F(ModuleLayoutCheck, IdentifiersAreLookedAt) {
  AddAll();
  Add(kIdentifier, "");
  EXPECT_EQ(Check(),
            std::string(kIdentifier) + ": warning: empty: messages about the module will have no name for it\n");
  Add(kIdentifier, "org.example.name\n");
  EXPECT_EQ(Check(), std::string(kIdentifier) + ": note: the line break in it goes into messages about the module\n");
}

TEST_F(ModuleLayoutCheck, OnlyTenStrayFilesAreListed) {
  AddAll();
  std::string expected;
  for (int i = 0; i < 10; ++i) {
    std::string const file = "stray" + std::to_string(i);
    Add(file);
    expected += file + ": note: the library has no use for this file\n";
  }
  EXPECT_EQ(Check(), expected);
  Add("strayA");
  EXPECT_EQ(Check(), expected + "Name.tdx: note: and 1 more file that the library has no use for\n");
  Add("strayB");
  EXPECT_EQ(Check(), expected + "Name.tdx: note: and 2 more files that the library has no use for\n");
}

}  // namespace
