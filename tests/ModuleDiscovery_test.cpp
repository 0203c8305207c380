// What the program says of modules must be what the library does with them: each scene is looked at from both sides.
#include "ModuleDiscovery.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>

#include "LibraryModules.h"
#include "ModuleFolders.h"
#include "senmark/Host.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

using senmark_tool::FoundFolder;
using senmark_tool::FoundModule;
using senmark_tool::LibraryModules;
using senmark_tool::SearchedFolder;
using Discovery = senmark_tool::ModuleDiscovery;

class ModuleDiscovery : public testing::Test {
 protected:
  ModuleDiscovery() {
    for (ModuleFolders const* const modules : {&mFirst, &mSecond}) {
      SearchedFolder folder;
      folder.path = modules->Path();
      mFolders.push_back(folder);
    }
  }

  /// Of both folders, as they stand now.
  void Discover() {
    std::vector<SearchedFolder> folders = mFolders;
    for (SearchedFolder& folder : folders) {
      folder.modules = senmark_tool::ReadModuleFolders(folder.path);
    }
    mDiscovery = std::make_unique<Discovery>(std::move(folders));
    ExpectAsInTheLibrary();
  }

  FoundModule const& Find(std::string const& folder, std::string const& name) const {
    for (FoundFolder const& found : mDiscovery->Folders()) {
      for (FoundModule const& module : found.modules) {
        if (found.path == folder && module.folder.name == name) {
          return module;
        }
      }
    }
    throw std::logic_error("no module " + name);
  }
  FoundModule const& First(std::string const& name) const { return Find(mFirst.Path(), name); }
  FoundModule const& Second(std::string const& name) const { return Find(mSecond.Path(), name); }

  static std::string ReasonOf(FoundModule const& module, std::string const& extension) {
    for (auto const& converter : module.converters) {
      for (auto const& claim : converter.claims) {
        if (claim.extension == extension) {
          return claim.IsServed() ? "served" : claim.reason;
        }
      }
    }
    return "not claimed";
  }

  /// Names of the extension's module and converter, as the discovery has them.
  std::string Serving(std::string const& extension) const {
    auto const found = mDiscovery->Serving().find(extension);
    return found == mDiscovery->Serving().end()
               ? "nobody"
               : found->second.converter->manifest.uid + " of " + found->second.module->folder.identifier;
  }

  TempFolder mFolder;
  ModuleFolders mFirst{mFolder, "first"};
  ModuleFolders mSecond{mFolder, "second"};
  std::vector<SearchedFolder> mFolders;
  std::unique_ptr<Discovery> mDiscovery;

 private:
  /// Formats are listed for the same extensions, and opening a file of each runs the same module and converter.
  void ExpectAsInTheLibrary() {
    LibraryModules const modules(*mDiscovery);
    senmark::Options options;
    options.pluginFolder = modules.Folder();
    std::map<std::string, std::string> expected = {
        {"bvh", "Biovision Hierarchy"}, {"csv", "Comma Seperated Value"}, {"json", "JSON"},
        {"tdjson", "Timed Data JSON"},  {"tsv", "Tab Seperated Value"},   {"txt", "Tab Seperated Value"}};
    std::map<std::string, std::string> formats;
    for (auto const& [extension, serving] : mDiscovery->Serving()) {
      expected.emplace(extension, serving.converter->manifest.name);
    }
    {
      senmark::Senmark const manager(senmark::Library::Linked(), options);
      for (senmark::Format const& format : manager.formats()) {
        formats.emplace(format.extension, format.description);
      }
    }
    EXPECT_EQ(formats, expected);
    for (auto const& [extension, serving] : mDiscovery->Serving()) {
      std::string const path = mFolder.Write("file." + extension, "\1\2");
      mFirst.TakeNotes();
      {
        senmark::Senmark const manager(senmark::Library::Linked(), options);
        senmark::Result<senmark::File> const file = senmark::attempt([&] { return manager.open(path); });
        EXPECT_TRUE(file) << extension << ": " << file.error().message();
      }
      std::string const notes = mFirst.TakeNotes();
      EXPECT_NE(notes.find("initialize " + serving.module->folder.identifier + '\n'), std::string::npos) << notes;
      EXPECT_NE(notes.find("convert " + serving.converter->manifest.uid + '\n'), std::string::npos) << notes;
    }
  }
};

constexpr char kFaultyManifest[] = R"({"converter":[{"identifier":"before","version":1,"extensions":["bef"]},)"
                                   R"({"identifier":"broken","extensions":["bro"]},)"
                                   R"({"identifier":"after","version":1,"extensions":["aft"]}]})";

TEST_F(ModuleDiscovery, NoModulesIsNoFolder) {
  Discover();
  EXPECT_EQ(mDiscovery->Source(), Discovery::eSource::kNone);
  EXPECT_EQ(LibraryModules(*mDiscovery).Folder(), "");
  mFirst.Add("~a.tdx", Manifest("a", "\"a\"").c_str());
  mSecond.Add("a.tdx", Manifest("a", "\"a\"").c_str(), "a", nullptr);
  Discover();
  EXPECT_EQ(mDiscovery->Source(), Discovery::eSource::kNone);
  EXPECT_EQ(First("~a.tdx").problem, "its name begins with ~");
  EXPECT_EQ(Second("a.tdx").problem.rfind("no code for this machine", 0), 0u);
}

TEST_F(ModuleDiscovery, OnlyFolderWithModulesIsGivenAsItIs) {
  mFirst.Add("~a.tdx", Manifest("a", "\"a\"").c_str());
  mSecond.Add("a.tdx", Manifest("org.a", "\"a\",\"B\"").c_str(), "ida");
  Discover();
  EXPECT_EQ(mDiscovery->Source(), Discovery::eSource::kOneFolder);
  EXPECT_EQ(LibraryModules(*mDiscovery).Folder(), mSecond.Path());
  EXPECT_EQ(Serving("a"), "org.a of ida");
  EXPECT_EQ(Serving("b"), "org.a of ida");
  EXPECT_TRUE(Second("a.tdx").IsServedWhole());
}

TEST_F(ModuleDiscovery, FolderThatTheLibraryCannotNameIsLinked) {
  std::string const path = mFolder.Path("back\\slash");
  fs::create_directory(path);
  mFirst.Add("a.tdx", Manifest("org.a", "\"a\"").c_str(), "ida");
  fs::rename(mFirst.Path() + "/a.tdx", path + "/a.tdx");
  mFolders[0].path = path;
  Discover();
  EXPECT_EQ(Serving("a"), "org.a of ida");
}

TEST_F(ModuleDiscovery, ModulesOfSeveralFoldersAreAllUsed) {
  mFirst.Add("a.tdx", Manifest("org.a", "\"a\"").c_str(), "ida");
  mSecond.Add("b.tdx", Manifest("org.b", "\"b\"").c_str(), "idb");
  Discover();
  EXPECT_EQ(mDiscovery->Source(), Discovery::eSource::kSeveralFolders);
  EXPECT_EQ(Serving("a"), "org.a of ida");
  EXPECT_EQ(Serving("b"), "org.b of idb");
}

TEST_F(ModuleDiscovery, FirstFolderWinsAName) {
  mFirst.Add("Gpx.tdx", Manifest("org.one", "\"a\"").c_str(), "one");
  mSecond.Add("gPX.TDX", Manifest("org.two", "\"b\"").c_str(), "two");
  Discover();
  EXPECT_EQ(Second("gPX.TDX").problem, "a module of the same name comes first: " + mFirst.Path() + "/Gpx.tdx");
  EXPECT_EQ(Serving("a"), "org.one of one");
  EXPECT_EQ(Serving("b"), "nobody");
}

TEST_F(ModuleDiscovery, WhatIsNoModuleHidesNoName) {
  mFirst.Add("a.tdx", Manifest("org.one", "\"a\"").c_str(), "one", nullptr);
  mFirst.Add("b.tdx", Manifest("org.b", "\"b\"").c_str(), "idb");
  mSecond.Add("a.tdx", Manifest("org.two", "\"a\"").c_str(), "two");
  Discover();
  EXPECT_EQ(Serving("a"), "org.two of two");
}

TEST_F(ModuleDiscovery, NamesThatDifferInCaseLiveSideBySideInOneFolder) {
  mFirst.Add("a.tdx", Manifest("org.one", "\"a\"").c_str(), "one");
  mFirst.Add("A.tdx", Manifest("org.two", "\"b\"").c_str(), "two");
  Discover();
  EXPECT_EQ(Serving("a"), "org.one of one");
  EXPECT_EQ(Serving("b"), "org.two of two");
  mSecond.Add("c.tdx", Manifest("org.c", "\"c\"").c_str(), "idc");
  Discover();
  EXPECT_EQ(mDiscovery->Serving().size(), 3u);
}

TEST_F(ModuleDiscovery, MissingManifestIsNoFault) {
  mFirst.Add("a.tdx", nullptr);
  mFirst.Add("b.tdx", Manifest("org.b", "\"b\"").c_str(), "idb");
  mFirst.Add("c.tdx", nullptr);
  Discover();
  EXPECT_EQ(First("a.tdx").problem, "no manifest: there is no Contents/Resources/SKPLUGINUIDS.txt");
  EXPECT_EQ(First("c.tdx").problem, First("a.tdx").problem);
  EXPECT_EQ(Serving("b"), "org.b of idb");
}

TEST_F(ModuleDiscovery, FaultyManifestHidesWhatStandsBehindIt) {
  for (char const* const name : {"a", "b", "c", "d", "e"}) {
    mFirst.Add(std::string(name) + ".tdx", Manifest("org." + std::string(name), '"' + std::string(name) + '"').c_str(),
               name);
  }
  mFirst.Add("faulty.tdx", kFaultyManifest, "f");
  Discover();
  bool isBehind = false;
  int behind = 0;
  for (FoundModule const& module : mDiscovery->Folders()[0].modules) {
    if (module.folder.name == "faulty.tdx") {
      isBehind = true;
      EXPECT_EQ(module.fault, "converter 2 of the manifest: \"version\" is missing");
      EXPECT_EQ(module.problem, "");
      continue;
    }
    behind += isBehind ? 1 : 0;
    EXPECT_EQ(module.problem,
              isBehind ? "the library does not come to it: faulty.tdx is before it, whose manifest is faulty" : "");
  }
  EXPECT_EQ(Serving("bef"), "before of f");
  EXPECT_EQ(Serving("bro"), "nobody");
  EXPECT_EQ(Serving("aft"), "nobody");
  EXPECT_EQ(mDiscovery->Serving().size(), 6u - static_cast<unsigned>(behind));
}

TEST_F(ModuleDiscovery, FaultyManifestHidesNothingBesideAnotherFolder) {
  mFirst.Add("faulty.tdx", kFaultyManifest, "f");
  for (char const* const name : {"a", "b", "c", "d"}) {
    mSecond.Add(std::string(name) + ".tdx", Manifest("org." + std::string(name), '"' + std::string(name) + '"').c_str(),
                name);
  }
  mSecond.Add("noJson.tdx", "{", "n");
  Discover();
  EXPECT_EQ(mDiscovery->Serving().size(), 5u);
  EXPECT_EQ(Serving("bef"), "before of f");
  EXPECT_NE(First("faulty.tdx").fault, "");
  EXPECT_NE(Second("noJson.tdx").fault, "");
}

TEST_F(ModuleDiscovery, FirstOfTwoConvertersKeepsAnExtensionInOneFolder) {
  mFirst.Add("a.tdx", Manifest("org.a", "\"x\",\"a\"").c_str(), "ida");
  mFirst.Add("b.tdx", Manifest("org.b", "\"x\",\"b\"").c_str(), "idb");
  Discover();
  bool const aIsFirst = mDiscovery->Folders()[0].modules[0].folder.name == "a.tdx";
  EXPECT_EQ(Serving("x"), aIsFirst ? "org.a of ida" : "org.b of idb");
  EXPECT_EQ(ReasonOf(First(aIsFirst ? "b.tdx" : "a.tdx"), "x"),
            aIsFirst ? "converter org.a of a.tdx comes first" : "converter org.b of b.tdx comes first");
  EXPECT_EQ(Serving("a"), "org.a of ida");
  EXPECT_EQ(Serving("b"), "org.b of idb");
}

/// Whatever the order of names is in the folder of links, the folders' order decides: each module is once in either.
TEST_F(ModuleDiscovery, FirstFolderKeepsAnExtension) {
  for (bool const aIsFirst : {true, false}) {
    ModuleFolders const& ofA = aIsFirst ? mFirst : mSecond;
    ModuleFolders const& ofB = aIsFirst ? mSecond : mFirst;
    ofA.Add("a.tdx", Manifest("org.a", "\"x\",\"a\"").c_str(), "ida");
    ofB.Add("b.tdx", Manifest("org.b", "\"x\",\"b\"").c_str(), "idb");
    Discover();
    EXPECT_EQ(Serving("x"), aIsFirst ? "org.a of ida" : "org.b of idb");
    EXPECT_EQ(Serving("a"), "org.a of ida");
    EXPECT_EQ(Serving("b"), "org.b of idb");
    fs::remove_all(mFirst.Path());
    fs::remove_all(mSecond.Path());
  }
}

struct Pair {
  char const* name;
  char const* first;   ///< members of the converter in the first folder
  char const* second;  ///< and in the second
  bool firstServes;
  char const* reason;  ///< of the other one
};

Pair const kPairs[] = {
    {"HigherVersion", R"("version":1)", R"("version":1.5)", false, "b.tdx has the higher version 1.5"},
    {"LowerVersion", R"("version":2)", R"("version":1)", true, "a.tdx has the higher version 2"},
    {"SameVersion", R"("version":2)", R"("version":2.0)", true, "a.tdx comes first, with the same version 2"},
    {"StoredForce", R"("version":1,"force_converter":true)", R"("version":3,"force_converter":true)", true,
     "the one of a.tdx must not be replaced (\"force_converter\")"},
    {"NewForce", R"("version":2)", R"("version":1,"force_converter":true)", false,
     "b.tdx demands it (\"force_converter\")"},
};

class Pairs : public ModuleDiscovery, public testing::WithParamInterface<Pair> {
 protected:
  static std::string ManifestOf(char const* members) {
    return std::string(R"({"converter":[{"identifier":"org.same","extensions":["x"],)") + members + "}]}";
  }

  void ExpectWinner() const {
    std::string const loser = GetParam().firstServes ? "b.tdx" : "a.tdx";
    EXPECT_EQ(Serving("x"), GetParam().firstServes ? "org.same of ida" : "org.same of idb");
    for (FoundFolder const& folder : mDiscovery->Folders()) {
      for (FoundModule const& module : folder.modules) {
        EXPECT_EQ(ReasonOf(module, "x"), module.folder.name == loser ? GetParam().reason : "served");
      }
    }
  }
};

TEST_P(Pairs, OfOneConverterInTwoFolders) {
  mFirst.Add("a.tdx", ManifestOf(GetParam().first).c_str(), "ida");
  mSecond.Add("b.tdx", ManifestOf(GetParam().second).c_str(), "idb");
  Discover();
  ExpectWinner();
}

TEST_P(Pairs, OfOneConverterInOneFolder) {
  // The file system says which one comes first.
  mFirst.Add("a.tdx", nullptr);
  mFirst.Add("b.tdx", nullptr);
  bool const aIsFirst = senmark_tool::ReadModuleFolders(mFirst.Path())[0].name == "a.tdx";
  auto const setManifest = [&](std::string const& name, char const* members, std::string const& identifier) {
    std::string const path = "first/" + name + "/Contents/Resources/";
    mFolder.Write(path + "SKPLUGINUIDS.txt", ManifestOf(members));
    mFolder.Write(path + "MODULE_IDENTIFIER.txt", identifier);
  };
  setManifest("a.tdx", aIsFirst ? GetParam().first : GetParam().second, "ida");
  setManifest("b.tdx", aIsFirst ? GetParam().second : GetParam().first, "idb");
  Discover();
  EXPECT_EQ(Serving("x"), GetParam().firstServes == aIsFirst ? "org.same of ida" : "org.same of idb");
}

INSTANTIATE_TEST_SUITE_P(All, Pairs, testing::ValuesIn(kPairs),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(ModuleDiscovery, PartOfAModuleKeepsItsMembers) {
  mFirst.Add("a.tdx", Manifest("org.a", "\"x\"").c_str(), "ida");
  mSecond.Add("b.tdx",
              R"({"converter":[{"identifier":"org.b","version":1,"name":[{"localeID":"en_US","value":"Name"}],)"
              R"("check_format":[{"byte_seq":"0x0102","length":2,"offset":0}],"extensions":["x","b"]},)"
              R"({"identifier":"org.c","version":1,"extensions":["x"]}]})",
              "idb");
  mFolder.Write("second/b.tdx/Contents/Resources/table.txt", "more");
  mFolder.Write("second/b.tdx/Contents/Info.plist", "plist");
  Discover();  // which converts a file with that signature, and lists that name
  EXPECT_EQ(Serving("b"), "org.b of idb");
  EXPECT_EQ(ReasonOf(Second("b.tdx"), "x"), "converter org.a of a.tdx comes first");
  LibraryModules const modules(*mDiscovery);
  EXPECT_EQ(mFolder.Read(modules.Folder() + "/b.tdx/Contents/Resources/table.txt"), "more");
  EXPECT_EQ(mFolder.Read(modules.Folder() + "/b.tdx/Contents/Info.plist"), "plist");
  std::string const path = mFolder.Write("other.b", "\2\1");
  senmark::Options options;
  options.pluginFolder = modules.Folder();
  senmark::Senmark const manager(senmark::Library::Linked(), options);
  mFirst.TakeNotes();
  static_cast<void>(senmark::attempt([&] { return manager.open(path); }));
  EXPECT_EQ(mFirst.TakeNotes().find("idb"), std::string::npos);
}

TEST_F(ModuleDiscovery, ScratchFolderGoesAndModulesStay) {
  mFirst.Add("a.tdx", Manifest("org.a", "\"x\"").c_str(), "ida");
  mSecond.Add("b.tdx", Manifest("org.b", "\"x\",\"b\"").c_str(), "idb");
  Discover();
  std::string folder;
  {
    LibraryModules const modules(*mDiscovery);
    folder = modules.Folder();
    EXPECT_TRUE(fs::exists(folder + "/a.tdx"));
  }
  EXPECT_FALSE(fs::exists(folder));
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_TRUE(fs::exists(mFirst.CodePath("a.tdx")));
  EXPECT_TRUE(fs::exists(mSecond.CodePath("b.tdx")));
  EXPECT_TRUE(fs::exists(mSecond.ResourcePath("b.tdx", "SKPLUGINUIDS")));
}

}  // namespace
}  // namespace senmark_test
