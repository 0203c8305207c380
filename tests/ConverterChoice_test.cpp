// The choice must be that of the library: each one is made by both.
#include "ConverterChoice.h"

#include <gtest/gtest.h>

#include "LibraryModules.h"
#include "ModuleFolders.h"

namespace senmark_test {
namespace {

using senmark_tool::AskedConverter;
using senmark_tool::ConverterChoice;
using senmark_tool::eOwnFormat;
using senmark_tool::eTurn;
using senmark_tool::ModuleDiscovery;
using senmark_tool::SearchedFolder;

/// One line for each converter that was asked.
std::string Text(ConverterChoice const& choice) {
  std::string text;
  for (AskedConverter const& asked : choice.asked) {
    char const* const turn = asked.turn == eTurn::kExtension ? "extension"
                             : asked.turn == eTurn::kModules ? "module"
                                                             : "native";
    text += std::string(turn) + ' ' + asked.extension + ": " +
            (asked.fails   ? "error"
             : asked.takes ? "yes"
                           : "no") +
            ", " + asked.reason + '\n';
  }
  return text;
}

class ConverterChoices : public testing::Test {
 protected:
  void Add(std::string const& name, std::string const& extensions, std::string const& uid,
           std::string const& extra = "") const {
    mModules.Add(name + ".tdx", Manifest(uid, extensions, extra).c_str(), name.c_str());
  }

  ConverterChoice Choose(std::string const& path) {
    SearchedFolder folder;
    folder.path = mModules.Path();
    folder.modules = senmark_tool::ReadModuleFolders(folder.path);
    mDiscovery = std::make_unique<ModuleDiscovery>(std::vector<SearchedFolder>{folder});
    senmark_tool::LibraryModules const modules(*mDiscovery);
    senmark::Options options;
    options.pluginFolder = modules.Folder();
    senmark::Senmark const manager(senmark::Library::Linked(), options);
    ConverterChoice choice = ChooseConverter(manager, *mDiscovery, path);
    mModules.TakeNotes();
    ExpectAsInTheLibrary(choice, manager, path);
    return choice;
  }

  TempFolder mFolder;
  ModuleFolders mModules{mFolder};
  std::unique_ptr<ModuleDiscovery> mDiscovery;

 private:
  void ExpectAsInTheLibrary(ConverterChoice const& choice, senmark::Senmark const& manager, std::string const& path) {
    senmark::Result<senmark::File> const file = senmark::attempt([&] { return manager.open(path); });
    std::string const notes = mModules.TakeNotes();
    AskedConverter const* const taker = choice.Taker();
    if (!choice.IsTaken()) {
      EXPECT_FALSE(file);
      EXPECT_EQ(notes.find("session"), std::string::npos) << notes;
    } else if (taker != nullptr && taker->serving.module != nullptr) {
      EXPECT_NE(notes.find("session " + taker->serving.converter->manifest.uid + ' '), std::string::npos) << notes;
    } else {
      EXPECT_TRUE(file) << file.error().message();
      EXPECT_EQ(notes.find("session"), std::string::npos) << notes;
    }
  }
};

TEST_F(ConverterChoices, OwnFormatAsksNobody) {
  Add("a", "\"tdjson\"", "a");
  ConverterChoice const choice = Choose(std::string(SENMARK_TEST_DATA) + "/example_v2.tdjson");
  EXPECT_EQ(choice.format, eOwnFormat::kVersion2);
  EXPECT_EQ(Text(choice), "");
  EXPECT_TRUE(choice.IsTaken());
  EXPECT_EQ(choice.Taker(), nullptr);
}

TEST_F(ConverterChoices, ConverterOfTheExtensionComesFirst) {
  Add("a", "\"aaa\",\"csv\"", "one");
  ConverterChoice const choice = Choose(mFolder.Write("data.CSV", "a,b\n1,2\n"));
  EXPECT_EQ(choice.extension, "csv");
  EXPECT_EQ(Text(choice), "extension csv: yes, its check function says yes\n");
  EXPECT_EQ(ConverterText(*choice.Taker()), "\"Name of one\" (one) of a.tdx");
}

TEST_F(ConverterChoices, NativeConverterOfTheExtensionComesBeforeOtherModules) {
  Add("a", "\"aaa\"", "one");
  ConverterChoice const choice = Choose(mFolder.Write("data.csv", "a,b\n1,2\n"));
  EXPECT_EQ(Text(choice), "extension csv: yes, it takes any file\n");
  EXPECT_EQ(ConverterText(*choice.Taker()), "the library's own converter for comma-separated values");
}

TEST_F(ConverterChoices, ModulesAreAskedInTheOrderOfTheirExtensions) {
  Add("a", "\"zzz\",\"bbb\"", "refuse-a");
  Add("b", "\"ccc\",\"aaa\"", "refuse-b");
  ConverterChoice const choice = Choose(mFolder.Write("data.ccc", "a,b\n1,2\n"));
  EXPECT_EQ(Text(choice),
            "extension ccc: no, its check function says no\n"
            "module aaa: no, its check function says no\n"
            "module bbb: no, its check function says no\n"
            "module ccc: no, its check function says no\n"
            "module zzz: no, its check function says no\n"
            "native bvh: no, its first line does not begin with HIERARCHY\n"
            "native csv: yes, it takes any file\n");
}

TEST_F(ConverterChoices, FirstModuleThatTakesTheFileHasIt) {
  Add("a", "\"aaa\"", "refuse-a");
  Add("b", "\"bbb\"", "b");
  Add("c", "\"ccc\"", "c");
  ConverterChoice const choice = Choose(mFolder.Write("data", "x"));
  EXPECT_EQ(choice.extension, "");
  EXPECT_EQ(Text(choice), "module aaa: no, its check function says no\nmodule bbb: yes, its check function says yes\n");
}

TEST_F(ConverterChoices, ModuleShadowsTheNativeConverterOfItsExtension) {
  Add("a", "\"json\"", "refuse");
  ConverterChoice const choice = Choose(mFolder.Write("data.json", "[1,2]\n3,4\n"));
  EXPECT_EQ(Text(choice),
            "extension json: no, its check function says no\n"
            "module json: no, its check function says no\n"
            "native bvh: no, its first line does not begin with HIERARCHY\n"
            "native csv: yes, it takes any file\n");
}

TEST_F(ConverterChoices, SignatureIsComparedWithoutRunningCode) {
  Add("a", "\"xyz\"", "fail-check",
      R"(,"check_format":[{"byte_seq":"AB","length":2,"offset":0},)"
      R"({"byte_seq":"C","length":1,"offset":3}])");
  EXPECT_EQ(Text(Choose(mFolder.Write("data.xyz", "AB_C"))),
            "extension xyz: yes, it has the signature \"AB\" at byte 0 and \"C\" at byte 3\n");
  EXPECT_EQ(Text(Choose(mFolder.Write("more.xyz", "AB_D\n1\n"))),
            "extension xyz: no, signature \"C\" at byte 3: there stands \"D\"\n"
            "module xyz: no, signature \"C\" at byte 3: there stands \"D\"\n"
            "native bvh: no, its first line does not begin with HIERARCHY\n"
            "native csv: yes, it takes any file\n");
}

TEST_F(ConverterChoices, FailingCheckEndsTheSearch) {
  Add("a", "\"aaa\"", "fail-check");
  ConverterChoice const choice = Choose(mFolder.Write("data.xyz", "x"));
  EXPECT_EQ(Text(choice), "module aaa: error, its check function failed with code 1705 at byte 12, line 3\n");
  EXPECT_EQ(
      choice.error,
      "\"Name of fail-check\" (fail-check) of a.tdx: its check function failed with code 1705 at byte 12, line 3");
  EXPECT_FALSE(choice.IsTaken());
}

TEST_F(ConverterChoices, ModuleThatCannotBeLoadedEndsTheSearch) {
  mModules.Add("a.tdx", Manifest("u", "\"aaa\"").c_str(), "a", kBareModule);
  ConverterChoice const choice = Choose(mFolder.Write("data.csv.xyz", "x"));
  EXPECT_EQ(Text(choice),
            "module aaa: error, its module cannot be loaded: its code does not export InitializePlugin\n");
  EXPECT_FALSE(choice.IsTaken());
}

TEST_F(ConverterChoices, UnreadableFileGetsTheErrorOfTheLibrary) {
  ConverterChoice const missing = Choose(mFolder.Path("nothing.csv"));
  EXPECT_FALSE(missing.IsTaken());
  EXPECT_NE(missing.error.find("(code 4)"), std::string::npos) << missing.error;
  EXPECT_NE(Choose(mFolder.Write("empty.csv", "")).error.find("(code 54)"), std::string::npos);
  EXPECT_NE(Choose(mFolder.Write("bad.csv", "{\"a\" 1}")).error.find("(code 32)"), std::string::npos);
}

TEST_F(ConverterChoices, BvhIsFoundByItsContent) {
  ConverterChoice const choice =
      Choose(mFolder.Write("data.xyz",
                           "HIERARCHY\nROOT hip\n{\n  OFFSET 1 2 3\n  CHANNELS 3 Zrotation Yrotation Xrotation\n"
                           "  End Site\n  {\n    OFFSET 0 0 1\n  }\n}\nMOTION\nFrames: 1\nFrame Time: 0.04\n0 0 0\n"));
  EXPECT_EQ(Text(choice), "native bvh: yes, it begins with HIERARCHY and ROOT\n");
}

}  // namespace
}  // namespace senmark_test
