#include "ModuleSearch.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>

#include "ModuleFolders.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

using senmark_tool::eModuleOrigin;
using senmark_tool::ModuleFolder;
using senmark_tool::ModuleFolderError;
using senmark_tool::SearchedFolder;
using senmark_tool::SearchModules;

class ModuleSearch : public testing::Test {
 protected:
  ~ModuleSearch() override { unsetenv("SENMARK_MODULE_PATH"); }

  std::string Folder(std::string const& name) const {
    fs::create_directories(mFolder.Path(name));
    return mFolder.Path(name);
  }

  /// Only the folders that the test named: what stands beside the test's binary is another matter.
  static std::vector<SearchedFolder> Search(std::vector<std::string> const& named) {
    std::vector<SearchedFolder> folders = SearchModules(named);
    EXPECT_GE(folders.size(), 2u);
    folders.resize(folders.size() - 2);
    return folders;
  }

  /// What is wrong with a module of this name that `make` has spoilt.
  template <typename Make>
  std::string ProblemOf(std::string const& name, Make&& make) {
    fs::remove_all(mModules.Path());
    mModules.Add(name, "{}");
    make();
    std::vector<ModuleFolder> const found = senmark_tool::ReadModuleFolders(mModules.Path());
    EXPECT_EQ(found.size(), 1u);
    return found.empty() ? "none" : found[0].problem;
  }

  TempFolder mFolder;
  ModuleFolders mModules{mFolder};
};

TEST_F(ModuleSearch, FoldersStandInTheirOrder) {
  std::string const a = Folder("a");
  std::string const b = Folder("b");
  std::string const c = Folder("c");
  setenv("SENMARK_MODULE_PATH", (':' + c + "::" + mFolder.Path("none") + ':').c_str(), 1);
  std::vector<SearchedFolder> const folders = Search({b, a});
  ASSERT_EQ(folders.size(), 4u);
  std::string const expected[] = {b, a, c, mFolder.Path("none")};
  for (std::size_t i = 0; i < 4; ++i) {
    EXPECT_EQ(folders[i].path, expected[i]);
    EXPECT_EQ(folders[i].origin, i < 2 ? eModuleOrigin::kOption : eModuleOrigin::kEnvironment);
    EXPECT_EQ(folders[i].problem, i < 3 ? "" : "there is no such folder");
  }
}

TEST_F(ModuleSearch, ProgramsOwnFoldersComeLast) {
  std::vector<SearchedFolder> const folders = SearchModules({});
  ASSERT_EQ(folders.size(), 2u);
  fs::path const own = fs::read_symlink("/proc/self/exe").parent_path();
  EXPECT_EQ(folders[0].path, (own / "modules").string());
  EXPECT_EQ(folders[0].origin, eModuleOrigin::kBesideProgram);
  EXPECT_EQ(folders[1].origin, eModuleOrigin::kInstalled);
  EXPECT_EQ(fs::path(folders[1].path).filename(), "modules");
  EXPECT_EQ(fs::path(folders[1].path).parent_path().filename(), "senmark");
}

TEST_F(ModuleSearch, FolderCountsOnceHoweverItIsNamed) {
  std::string const a = Folder("a");
  fs::create_symlink(a, mFolder.Path("link"));
  setenv("SENMARK_MODULE_PATH", (a + "/../a").c_str(), 1);
  std::vector<SearchedFolder> const folders = Search({mFolder.Path("link"), a + '/', a});
  ASSERT_EQ(folders.size(), 4u);
  for (SearchedFolder const& folder : folders) {
    EXPECT_EQ(folder.path, a);
    EXPECT_EQ(folder.problem, &folder == folders.data() ? "" : "it was searched already");
  }
}

TEST_F(ModuleSearch, FolderOfTheCommandLineMustBeThere) {
  std::string const none = mFolder.Path("none");
  std::string const file = mFolder.Write("file", "");
  auto const messageOf = [](std::string const& path) -> std::string {
    try {
      SearchModules({path});
    } catch (ModuleFolderError const& error) {
      return error.what();
    }
    return "no error";
  };
  EXPECT_EQ(messageOf(none), "--modules " + none + ": there is no such folder");
  EXPECT_EQ(messageOf(file), "--modules " + file + ": it is no folder");
  EXPECT_EQ(messageOf(""), "--modules : there is no such folder");
}

TEST_F(ModuleSearch, ChildrenAreInTheOrderOfTheFileSystem) {
  for (char const* const name : {"b.tdx", "a.tdx", "D.TDX", "c.tdx", "e.tdx", "~f.tdx", "g"}) {
    mModules.Add(name, "{}");
  }
  mModules.Add(".hidden.tdx", "{}");
  std::vector<std::string> expected;
  for (fs::directory_entry const& entry : fs::directory_iterator(mModules.Path())) {
    if (entry.path().filename() != ".hidden.tdx") {
      expected.push_back(entry.path().filename().string());
    }
  }
  std::vector<std::string> names;
  for (ModuleFolder const& module : senmark_tool::ReadModuleFolders(mModules.Path())) {
    names.push_back(module.name);
  }
  EXPECT_EQ(names, expected);
  EXPECT_EQ(names.size(), 7u);
}

TEST_F(ModuleSearch, ProblemsAreNamed) {
  std::string const code = "Contents/" + Machine() + "-linux/a.so";
  std::string const bytes = CodeBytes(kTestModule);
  auto const nothing = [] {};
  auto const setCode = [&](std::string const& content) { return [&, content] { mModules.SetCode("a.tdx", content); }; };
  auto const changed = [&](std::size_t offset, char value) {
    std::string spoilt = bytes;
    spoilt[offset] = value;
    return setCode(spoilt);
  };
  EXPECT_EQ(ProblemOf("a.tdx", nothing), "");
  EXPECT_EQ(ProblemOf("a.TdX", nothing), "");
  EXPECT_EQ(ProblemOf("~a.tdx", nothing), "its name begins with ~");
  EXPECT_EQ(ProblemOf("a.tdx.old", nothing), "its name does not end in .tdx");
  EXPECT_EQ(ProblemOf("tdx", nothing), "its name does not end in .tdx");
  EXPECT_EQ(ProblemOf("a.tdx", [&] { fs::remove(mModules.CodePath("a.tdx")); }),
            "no code for this machine: there is no " + code);
  EXPECT_EQ(ProblemOf("a.tdx",
                      [&] {
                        fs::remove(mModules.CodePath("a.tdx"));
                        fs::create_directory(mModules.CodePath("a.tdx"));
                      }),
            "no code for this machine: " + code + " is no file");
  EXPECT_EQ(ProblemOf("a.tdx", setCode("")), code + " is no ELF file");
  EXPECT_EQ(ProblemOf("a.tdx", setCode(std::string(1000, 'x'))), code + " is no ELF file");
  EXPECT_EQ(ProblemOf("a.tdx", changed(4, 1)), code + " is for another kind of machine");
  EXPECT_EQ(ProblemOf("a.tdx", changed(5, 2)), code + " is for another kind of machine");
  EXPECT_EQ(ProblemOf("a.tdx", changed(18, 0x7F)), code + " is for another kind of machine");
  EXPECT_EQ(ProblemOf("a.tdx", changed(16, 2)), code + " is an ELF file, but no shared object");
}

TEST_F(ModuleSearch, PlainFileAndDeadLinkAreNoModules) {
  mFolder.Write("modules/a.tdx", "");
  fs::create_symlink("nowhere", mModules.Path() + "/b.tdx");
  for (ModuleFolder const& module : senmark_tool::ReadModuleFolders(mModules.Path())) {
    EXPECT_EQ(module.problem, module.name == "a.tdx" ? "it is no folder" : "it is a link to nothing");
  }
}

TEST_F(ModuleSearch, ResourcesAreRead) {
  mModules.Add("a.tdx", "{ }", "org.a\n");
  ModuleFolder const module = senmark_tool::ReadModuleFolder(mModules.Path(), "a.tdx");
  EXPECT_EQ(module.identifier, "org.a");
  EXPECT_EQ(module.manifest.value_or("none"), "{ }");
  EXPECT_EQ(module.Key(), "a");
  EXPECT_TRUE(module.IsModule());
}

TEST_F(ModuleSearch, ManifestThatCannotBeReadIsNamed) {
  mModules.Add("a.tdx", nullptr, nullptr);
  ModuleFolder module = senmark_tool::ReadModuleFolder(mModules.Path(), "a.tdx");
  EXPECT_FALSE(module.manifest);
  EXPECT_EQ(module.manifestProblem, "there is no Contents/Resources/SKPLUGINUIDS.txt");
  EXPECT_EQ(module.identifier, "");
  fs::create_directory(mModules.ResourcePath("a.tdx", "SKPLUGINUIDS"));
  module = senmark_tool::ReadModuleFolder(mModules.Path(), "a.tdx");
  EXPECT_FALSE(module.manifest);
  EXPECT_EQ(module.manifestProblem, "Contents/Resources/SKPLUGINUIDS.txt is no file");
}

}  // namespace
}  // namespace senmark_test
