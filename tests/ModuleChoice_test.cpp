// Which modules there are and which of them takes a file, as a host sees it.
#include <gtest/gtest.h>

#include <filesystem>

#include "ModuleFolders.h"
#include "ModuleHost.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;

class ModuleChoice : public testing::Test {
 protected:
  ModuleChoice() : mModules(mFolder), mInput(mFolder.Write("input.ext", "\1\2")) {}

  void Add(std::string const& name, std::string const& manifest) const {
    mModules.Add(name, manifest.c_str(), name.c_str());
  }

  /// Makes a module with a converter of the name of the module.
  void AddNamed(std::string const& name, std::string const& rest) const {
    Add(name,
        R"({"converter":[{"identifier":"uid","name":[{"localeID":"en_US","value":")" + name + "\"}]," + rest + "}]}");
  }

  /// The formats that are not the library's own.
  std::string Formats(ModuleHost const& host) const {
    std::string formats = host.Formats();
    for (std::size_t start = 0; start < formats.size();) {
      std::size_t const end = formats.find('\n', start) + 1;
      std::string const line = formats.substr(start, end - start);
      if (std::string(kNativeFormats).find(line) != std::string::npos) {
        formats.erase(start, line.size());
      } else {
        start = end;
      }
    }
    return formats;
  }

  /// Converts a file; the folder of the module that was loaded for it, or none.
  std::string Converted(ModuleHost const& host, std::string const& path) const {
    EXPECT_EQ(host.Convert(mFolder, path).substr(0, 2), "{\"");
    return Loaded();
  }

  /// The folder of the module that was loaded since the last call, or none.
  std::string Loaded() const {
    std::string const notes = mModules.TakeNotes();
    std::size_t const start = notes.find("initialize ");
    return start == std::string::npos ? "none" : notes.substr(start + 11, notes.find('\n', start) - start - 11);
  }

  TempFolder mFolder;
  ModuleFolders mModules;
  std::string mInput;
};

TEST_F(ModuleChoice, NamesWithATildeAreLeftOut) {
  Add("~old.tdx", Manifest("old", R"("old")"));
  Add("new~.tdx", Manifest("new", R"("new")"));
  EXPECT_EQ(Formats(ModuleHost(mModules.Path())), "format \"new\" \"Name of new\"\n");
}

TEST_F(ModuleChoice, WantedListNamesModules) {
  Add("Foo.tdx", Manifest("f", R"("fff")"));
  Add("BAR.tdx", Manifest("b", R"("bbb")"));
  Add("Other.tdx", Manifest("o", R"("ooo")"));
  EXPECT_EQ(Formats(ModuleHost(mModules.Path(), "Foo.tdx, Bar")),
            "format \"bbb\" \"Name of b\"\nformat \"fff\" \"Name of f\"\n");
  EXPECT_EQ(Formats(ModuleHost(mModules.Path(), "fo")), "");
}

TEST_F(ModuleChoice, FirstOfTheFolderKeepsAnExtensionThatOthersClaim) {
  for (char const* const name : {"One.tdx", "Two.tdx", "Three.tdx"}) {
    Add(name, Manifest(name, R"("ext")", R"(,"force_converter":true)"));
  }
  std::string const first = fs::directory_iterator(mModules.Path())->path().filename().string();
  ModuleHost const host(mModules.Path());
  EXPECT_EQ(Formats(host), "format \"ext\" \"Name of " + first + "\"\n");
  EXPECT_EQ(Converted(host, mInput), first);
}

struct VersionRow {
  char const* name;
  char const* low;
  char const* high;
  char const* expected;
};

TEST_F(ModuleChoice, HigherVersionConvertsUnlessTheOtherIsForced) {
  VersionRow const rows[] = {
      {"versions", R"("version":1)", R"("version":1.5)", "High.tdx"},
      {"forced low", R"("version":1,"force_converter":true)", R"("version":2)", "Low.tdx"},
      {"forced high", R"("version":1)", R"("version":2,"force_converter":true)", "High.tdx"},
      {"force is no flag", R"("version":1,"force_converter":1)", R"("version":2)", "High.tdx"},
  };
  for (VersionRow const& row : rows) {
    // In either order of the folder.
    for (bool const lowFirst : {true, false}) {
      SCOPED_TRACE(row.name);
      auto const add = [&](bool low) {
        AddNamed(low ? "Low.tdx" : "High.tdx", std::string(low ? row.low : row.high) + R"(,"extensions":["ext"])");
      };
      add(lowFirst);
      add(!lowFirst);
      {
        ModuleHost const host(mModules.Path());
        EXPECT_EQ(Formats(host), std::string("format \"ext\" \"") + row.expected + "\"\n");
        EXPECT_EQ(Converted(host, mInput), row.expected);
      }
      fs::remove_all(mModules.Path() + "/Low.tdx");
      fs::remove_all(mModules.Path() + "/High.tdx");
      mModules.TakeNotes();
    }
  }
}

struct NameRow {
  char const* names;
  char const* expected;
};

TEST_F(ModuleChoice, FormatsHaveTheNamesOfTheManifest) {
  NameRow const rows[] = {
      {R"([{"localeID":"de_DE","value":"D"},{"localeID":"en_US_POSIX","value":"E"}])", "E"},
      {R"([{"localeID":"de_DE","value":"D"},{"localeID":"en_GB","value":"E"}])", ""},
      {R"([])", ""},
      {R"("text")", ""},
  };
  for (NameRow const& row : rows) {
    Add("Good.tdx", std::string(R"({"converter":[{"identifier":"a","name":)") + row.names +
                        R"(,"version":2,"extensions":["ext","EXT","Ext"]}]})");
    EXPECT_EQ(Formats(ModuleHost(mModules.Path())), std::string("format \"ext\" \"") + row.expected + "\"\n");
    fs::remove_all(mModules.Path() + "/Good.tdx");
  }
}

struct FaultRow {
  char const* manifest;
  int code;
  char const* message;
};

#define SCHEMA(key) 1504, "Schema violation of Property: \"" key "\"."
#define MANDATORY 1503, "Mandatory property not present."

TEST_F(ModuleChoice, FaultyManifestIsTheLastErrorAndNoMore) {
  FaultRow const rows[] = {
      {"", 1503, "Manifest Parsing Failed."},
      {"{\"converter\":[", 1503, "Manifest Parsing Failed."},
      {"{}", 1504, R"(Invalid : "converter" type, expected type : "JSON Array".)"},
      {R"({"converter":{}})", 1504, R"(Invalid : "converter" type, expected type : "JSON Array".)"},
      {R"({"converter":[{"version":1,"extensions":["ext"]}]})", SCHEMA("identifier")},
      {R"({"converter":[{"identifier":"","version":1,"extensions":["ext"]}]})", MANDATORY},
      {R"({"converter":[{"identifier":"a","extensions":["ext"]}]})", SCHEMA("version")},
      {R"({"converter":[{"identifier":"a","version":"1","extensions":["ext"]}]})", SCHEMA("version")},
      {R"({"converter":[{"identifier":"a","version":1}]})", MANDATORY},
      {R"({"converter":[{"identifier":"a","version":1,"extensions":["ext",1]}]})", SCHEMA("extensions")},
      {R"({"converter":[{"identifier":"a","name":[{"value":"A"}],"version":1,"extensions":["ext"]}]})",
       SCHEMA("localeID")},
      {R"({"converter":[{"identifier":"a","name":[{"localeID":"en_US"}],"version":1,"extensions":["ext"]}]})",
       SCHEMA("value")},
      {R"({"converter":[{"identifier":"a","version":1,"check_format":[{}],"extensions":["ext"]}]})",
       SCHEMA("byte_seq")},
      {R"({"converter":[{"identifier":"a","version":1,"check_format":[{"byte_seq":"a"}],"extensions":["ext"]}]})",
       SCHEMA("length")},
      {R"({"converter":[{"identifier":"a","version":1,"check_format":[{"byte_seq":"a","length":1}]}]})",
       SCHEMA("offset")},
  };
  for (FaultRow const& row : rows) {
    SCOPED_TRACE(row.manifest);
    Add("Bad.tdx", row.manifest);
    {
      ModuleHost const host(mModules.Path());
      EXPECT_EQ(LastError(true), (ReportedError{row.code, row.message, -1, -1}));
      EXPECT_EQ(Formats(host), "");
      EXPECT_EQ(Converted(host, mFolder.Write("table.csv", "a,b\n1,2\n")), "none");
      EXPECT_TRUE(host.Host().TakeErrors().empty());
    }
    fs::remove_all(mModules.Path() + "/Bad.tdx");
  }
}

TEST_F(ModuleChoice, ConvertersBeforeAFaultAreUsed) {
  Add("Half.tdx", R"({"converter":[{"identifier":"a","version":1,"extensions":["ext"]},{"identifier":"b"}]})");
  ModuleHost const host(mModules.Path());
  EXPECT_EQ(Formats(host), "format \"ext\" \"\"\n");
  EXPECT_EQ(Converted(host, mInput), "Half.tdx");
}

struct SignatureRow {
  char const* name;
  std::string checkFormats;
  std::string content;
  bool taken;
};

std::string Signature(std::string const& bytes, int length, int offset) {
  return R"({"byte_seq":")" + bytes + R"(","length":)" + std::to_string(length) + R"(,"offset":)" +
         std::to_string(offset) + '}';
}

TEST_F(ModuleChoice, SignaturesDecideWithoutTheModule) {
  std::string const long1024(1024, 'a');
  std::string digits1024 = "0x";
  for (int i = 0; i < 1024; ++i) {
    digits1024 += "61";
  }
  SignatureRow const rows[] = {
      {"Digits", Signature("0x4D5A", 2, 0), "MZ,1\n", true},
      {"DigitsAreNoText", Signature("0x4D5A", 2, 0), "0x,1\n", false},
      {"Text", Signature("MZ", 2, 0), "MZ,1\n", true},
      {"TextOfAnotherCase", Signature("MZ", 2, 0), "mz,1\n", false},
      {"DigitsOfAnotherLengthAreText", Signature("0x4D5A", 6, 0), "0x4D5A\n1\n", true},
      {"Offset", Signature("MZ", 2, 3), "a,bMZ\n", true},
      {"FileThatEndsWithIt", Signature("MZ", 2, 3), "a,bMZ", true},
      {"FileThatEndsWithinIt", Signature("MZ", 2, 3), "a,bM", false},
      {"FileThatEndsBeforeIt", Signature("MZ", 2, 3), "a", false},
      {"OffsetBehindAllFiles", R"({"byte_seq":"a","length":1,"offset":9223372036854775807})", "a", false},
      {"Both", Signature("a", 1, 0) + ',' + Signature("0x62", 1, 2), "a,b\n", true},
      {"FirstOnly", Signature("a", 1, 0) + ',' + Signature("0x62", 1, 2), "a,c\n", false},
      {"SecondOnly", Signature("a", 1, 0) + ',' + Signature("0x62", 1, 2), "c,b\n", false},
      {"Empty", Signature("", 2, 0), "a,b\n", false},
      {"NoLength", Signature("a", 0, 0), "a,b\n", false},
      {"LongTextIsCut", Signature(long1024, 5000, 0), long1024 + "\n1\n", true},
      {"LongDigitsAreOfTheCutLength", Signature(digits1024, 5000, 0), long1024 + "\n1\n", true},
      {"LongOneInAShorterFile", Signature(long1024, 5000, 0), long1024.substr(1), false},
  };
  for (SignatureRow const& row : rows) {
    SCOPED_TRACE(row.name);
    Add("Signed.tdx", Manifest("refuse", R"("ext")", R"(,"check_format":[)" + row.checkFormats + ']'));
    {
      ModuleHost const host(mModules.Path());
      // The module would refuse every file if it was asked. Of the rest not all are good tables.
      std::string const result = host.Convert(mFolder, mFolder.Write("signed.ext", row.content));
      EXPECT_EQ(result.find(R"("matchName":"bytes")") != std::string::npos, row.taken) << result;
      EXPECT_EQ(Loaded(), row.taken ? "Signed.tdx" : "none");
    }
    mModules.TakeNotes();
    fs::remove_all(mModules.Path() + "/Signed.tdx");
  }
}

struct UnloadableRow {
  char const* extra;
  std::string second;
};

TEST_F(ModuleChoice, ModuleThatCannotBeLoadedIsTriedOnce) {
  UnloadableRow const rows[] = {
      {"", "1021 Plugin " + mModules.Path() + "/Bad.tdx not loaded. -1 -1"},
      {R"(,"check_format":[{"byte_seq":"0x01","length":1,"offset":0}])", "1021 Plugin not loaded. -1 -1"},
  };
  for (char const* const code : {kBareModule, kNeedyModule}) {
    for (UnloadableRow const& row : rows) {
      mModules.Add("Bad.tdx", Manifest("uid", R"("ext")", row.extra).c_str(), "bad", code);
      {
        ModuleHost const host(mModules.Path());
        EXPECT_EQ(host.Convert(mFolder, mInput),
                  code == kBareModule ? "1021 Can't load module. -1 -1" : "1021 Failed to load module. -1 -1");
        EXPECT_EQ(host.Convert(mFolder, mInput), row.second);
      }
      // A new start tries it anew.
      fs::remove(mModules.CodePath("Bad.tdx"));
      fs::copy_file(kTestModule, mModules.CodePath("Bad.tdx"));
      EXPECT_EQ(ModuleHost(mModules.Path()).Convert(mFolder, mInput), kConverted);
      fs::remove_all(mModules.Path() + "/Bad.tdx");
    }
  }
}

TEST_F(ModuleChoice, FaultOfOneModulesCheckIsNoFaultOfFilesThatOthersTakeFirst) {
  Add("Bad.tdx", Manifest("fail-check", R"("bad")"));
  Add("Good.tdx", Manifest("uid", R"("ext")"));
  ModuleHost const host(mModules.Path());
  EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
  EXPECT_EQ(host.Convert(mFolder, mFolder.Write("table.csv", "a,b\n1,2\n")).substr(0, 2), "{\"");
  // Nobody has this extension: all are asked.
  EXPECT_EQ(host.Convert(mFolder, mFolder.Write("table.xyz", "a,b\n1,2\n")),
            "1705 Error in Plugin Check File Format of converter Name of fail-check with id fail-check. 12 3");
}

TEST_F(ModuleChoice, SecondManagerSharesTheModulesOfTheFirst) {
  Add("Good.tdx", Manifest("uid", R"("ext")"));
  {
    ModuleHost const host(mModules.Path());
    EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
    {
      ModuleHost const second("/no/such/folder", "Other");
      EXPECT_EQ(Formats(second), "format \"ext\" \"Name of uid\"\n");
      EXPECT_EQ(second.Convert(mFolder, mInput), kConverted);
    }
    EXPECT_EQ(mModules.TakeNotes().find("unloaded"), std::string::npos);
    EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
  }
  EXPECT_NE(mModules.TakeNotes().find("terminate\nunloaded\n"), std::string::npos);
}

}  // namespace
}  // namespace senmark_test
