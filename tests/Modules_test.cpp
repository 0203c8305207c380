// Converter modules as a host meets them: folders on the disk, formats that it can open, and errors by their names.
#include <gtest/gtest.h>

#include <filesystem>
#include <set>

#include "ModuleFolders.h"
#include "ModuleHost.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;
using ns_sensor::ISensorFileHandler;

class Modules : public testing::Test {
 protected:
  Modules() : mModules(mFolder), mInput(mFolder.Write("input.ext", "\1\2")) {}

  void Add(std::string const& name, std::string const& manifest, char const* identifier = "good",
           char const* code = kTestModule) {
    mModules.Add(name, manifest.c_str(), identifier, code);
  }

  /// What lies in the folder of the inputs and outputs, by the alphabet.
  std::string Names() const {
    std::set<std::string> names;
    for (fs::directory_entry const& entry : fs::directory_iterator(mFolder.Path(""))) {
      names.insert(entry.path().filename().string());
    }
    std::string text;
    for (std::string const& name : names) {
      text += name + ' ';
    }
    return text;
  }

  TempFolder mFolder;
  ModuleFolders mModules;
  std::string mInput;
};

TEST_F(Modules, BringTheirFormats) {
  Add("Good.tdx", Manifest("uid", R"("EXT","aaa","csv")"));
  {
    ModuleHost const host(mModules.Path());
    EXPECT_EQ(host.Formats(),
              "format \"aaa\" \"Name of uid\"\n"
              "format \"bvh\" \"Biovision Hierarchy\"\n"
              "format \"csv\" \"Comma Seperated Value\"\n"
              "format \"ext\" \"Name of uid\"\n"
              "format \"json\" \"JSON\"\n"
              "format \"tdjson\" \"Timed Data JSON\"\n"
              "format \"tsv\" \"Tab Seperated Value\"\n"
              "format \"txt\" \"Tab Seperated Value\"\n");
  }
  EXPECT_EQ(mModules.TakeNotes(), "");
  EXPECT_EQ(ModuleHost(mModules.Path(), "Other").Formats(), kNativeFormats);
  EXPECT_EQ(ModuleHost("/no/such/folder").Formats(), kNativeFormats);
}

TEST_F(Modules, NamesFollowTheLocale) {
  Add("Good.tdx", R"({"converter":[{"identifier":"a","name":[{"localeID":"en_US","value":"Table"},)"
                  R"({"localeID":"de_DE","value":"Tabelle"}],"version":1,"extensions":["ext"]}]})");
  EXPECT_NE(ModuleHost(mModules.Path(), "", "de_DE").Formats().find("format \"ext\" \"Tabelle\"\n"), std::string::npos);
  EXPECT_NE(ModuleHost(mModules.Path(), "", "fr_FR").Formats().find("format \"ext\" \"Table\"\n"), std::string::npos);
}

TEST_F(Modules, AreLoadedForAFileAndStay) {
  Add("Good.tdx", Manifest("uid", R"("ext")"));
  {
    ModuleHost const host(mModules.Path());
    EXPECT_EQ(mModules.TakeNotes(), "");
    EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
    EXPECT_EQ(
        mModules.TakeNotes(),
        "loaded\ninitialize good\ncheck uid\nsession uid ext onto an existing file\nconvert uid\nend of session\n");
    EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
    EXPECT_EQ(mModules.TakeNotes(), "check uid\nsession uid ext onto an existing file\nconvert uid\nend of session\n");
  }
  EXPECT_EQ(mModules.TakeNotes(), "terminate\nunloaded\n");
  // All over again.
  EXPECT_EQ(ModuleHost(mModules.Path()).Convert(mFolder, mInput), kConverted);
}

TEST_F(Modules, SamplesOfAConvertedFileCanBeRead) {
  Add("Good.tdx", Manifest("uid", R"("ext")"));
  ModuleHost const host(mModules.Path());
  ISensorFileHandler* const handler = host.Host().Open(mInput);
  ASSERT_NE(handler, nullptr);
  host.Host().TakeCalls();
  handler->getDynamicSamples("bytes", 5, 0, 25, 1, 25, &host.Host(), &host.Host());
  EXPECT_EQ(host.Host().TakeCalls(), "count 2\nsample 0/1 1 size 0\nsample 1/25 2 size 0\n");
  host.Host().Close(handler);
}

TEST_F(Modules, SignatureDecidesWithoutLoading) {
  Add("Signed.tdx", Manifest("uid", R"("ext")", R"(,"check_format":[{"byte_seq":"0x4D5A","length":2,"offset":1}])"));
  ModuleHost const host(mModules.Path());
  // Goes on to the library's own converters, as a file of an unknown extension.
  EXPECT_EQ(host.Convert(mFolder, mFolder.Write("table.ext", "a,b\n1,2\n")).substr(0, 2), "{\"");
  EXPECT_EQ(host.Convert(mFolder, mFolder.Write("short.ext", "a,")).find("uid"), std::string::npos);
  EXPECT_EQ(mModules.TakeNotes(), "");
  EXPECT_NE(host.Convert(mFolder, mFolder.Write("signed.ext", "1MZ")).find(R"("value":"049")"), std::string::npos);
  // A file of another extension goes by the signature, too.
  EXPECT_NE(host.Convert(mFolder, mFolder.Write("signed.other", "1MZ")).find(R"("value":"049")"), std::string::npos);
  EXPECT_EQ(mModules.TakeNotes(),
            "loaded\ninitialize good\nsession uid ext onto an existing file\nconvert uid\nend of session\n"
            "session uid other onto an existing file\nconvert uid\nend of session\n");
}

TEST_F(Modules, RefusedFileGoesToTheLibrarysOwnConverters) {
  Add("Refusing.tdx", Manifest("refuse", R"("csv")"));
  ModuleHost const host(mModules.Path());
  EXPECT_NE(host.Convert(mFolder, mFolder.Write("table.csv", "a,b\n1,2\n")).find(R"("version")"), std::string::npos);
  // Asked once as the one of the extension, and once in the round of all.
  EXPECT_EQ(mModules.TakeNotes(), "loaded\ninitialize good\ncheck refuse\ncheck refuse\n");
}

TEST_F(Modules, ComeBeforeTheLibrarysOwnConverters) {
  Add("Table.tdx", Manifest("uid", R"("csv")"));
  ModuleHost const host(mModules.Path());
  EXPECT_EQ(host.Convert(mFolder, mFolder.Write("TABLE.CSV", "\1\2")), kConverted);
}

struct FailureRow {
  char const* uid;
  char const* identifier;
  char const* code;
  std::string expected;
};

TEST_F(Modules, FailuresReachTheHostByName) {
  std::string const names = "converter Name of ";
  FailureRow const rows[] = {
      {"a", "bare", kBareModule, "1021 Can't load module. -1 -1"},
      {"a", "needy", kNeedyModule, "1021 Failed to load module. -1 -1"},
      {"a", "fail-init", kTestModule, "1500 Initialization of plugin with id fail-init failed. -1 -1"},
      {"a", "throw-init", kTestModule, "1500 Initialization of plugin with id throw-init failed. -1 -1"},
      {"fail-check", "good", kTestModule,
       "1705 Error in Plugin Check File Format of " + names + "fail-check with id fail-check. 12 3"},
      {"throw-check", "good", kTestModule,
       "1034 Error in Plugin Check File Format of " + names + "throw-check with id throw-check. -1 -1"},
      {"fail-session", "good", kTestModule,
       "1703 Initialize Session Failed of " + names + "fail-session with id fail-session. 12 3"},
      {"throw-session", "good", kTestModule,
       "1023 Initialize Session Failed of " + names + "throw-session with id throw-session. -1 -1"},
      {"fail-convert", "good", kTestModule,
       "1706 Conversion to TDJSON using " + names + "fail-convert with id fail-convert failed. 12 3"},
      {"throw-convert", "good", kTestModule,
       "1023 Conversion to TDJSON using " + names + "throw-convert with id throw-convert failed. -1 -1"},
      {"write-nothing", "good", kTestModule, "54 Empty Input file. -1 -1"},
      // The clean-up finds nothing that it could remove.
      {"remove-output write-nothing", "good", kTestModule, "9 File_IO::Delete, failure. -1 -1"},
      {"silent-convert", "good", kTestModule,
       "1506 Conversion to TDJSON using " + names + "silent-convert with id silent-convert failed. -1 -1"},
  };
  for (FailureRow const& row : rows) {
    SCOPED_TRACE(std::string(row.uid) + ' ' + row.identifier);
    Add("Bad.tdx", Manifest(row.uid, R"("ext")"), row.identifier, row.code);
    ModuleHost const host(mModules.Path());
    EXPECT_NE(host.Formats(), kNativeFormats);
    EXPECT_EQ(host.Convert(mFolder, mInput), row.expected);
    EXPECT_EQ(mFolder.TempNames(), "");
    // The library's own formats are as good as before.
    EXPECT_EQ(host.Convert(mFolder, mFolder.Write("table.csv", "a,b\n1,2\n")).substr(0, 2), "{\"");
    fs::remove_all(mModules.Path() + "/Bad.tdx");
  }
}

TEST_F(Modules, BrokenOnesDoNotStopTheStart) {
  Add("Elsewhere.tdx", Manifest("a", R"("ext")"), "good", kTestModule);
  std::string code = CodeBytes(kTestModule);
  code[18] = static_cast<char>(code[18] ^ 0x55);  // the machine
  mModules.SetCode("Elsewhere.tdx", code);
  Add("Text.tdx", Manifest("b", R"("ext")"), "good", nullptr);
  mModules.SetCode("Text.tdx", "this is no code");
  Add("NoCode.tdx", Manifest("c", R"("ext")"), "good", nullptr);
  mFolder.Write("modules/plain.tdx", "text");
  EXPECT_EQ(ModuleHost(mModules.Path()).Formats(), kNativeFormats);
  Add("Manifest.tdx", "{");
  ModuleHost const host(mModules.Path());
  EXPECT_EQ(host.Formats(), kNativeFormats);
  EXPECT_TRUE(host.Host().TakeErrors().empty());
}

TEST_F(Modules, FailureAtTheEndStaysInside) {
  Add("Bad.tdx", Manifest("fail-end", R"("ext")"), "fail-terminate throw-terminate");
  {
    ModuleHost const host(mModules.Path());
    EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
    EXPECT_TRUE(host.Host().TakeErrors().empty());
  }
  std::string const notes = mModules.TakeNotes();
  EXPECT_EQ(notes.substr(notes.find("end of session")), "end of session\nterminate\nunloaded\n");
}

struct LeftRow {
  char const* uid;
  std::string broken;
};

TEST_F(Modules, ConversionThatIsNotEndedByItsModuleDoesNotSpoilTheNext) {
  LeftRow const rows[] = {
      {"forgetful", "1706 Conversion to TDJSON using converter Name of forgetful with id forgetful failed. 12 3"},
      {"one-key", "1706 Conversion to TDJSON using converter Name of one-key with id one-key failed. 12 3"},
      {"one-key early-root",
       "1703 Initialize Session Failed of converter Name of one-key early-root with id one-key early-root. 12 3"},
      {"one-key late-call",
       "1706 Conversion to TDJSON using converter Name of one-key late-call with id one-key late-call failed. 12 "
       "3"},
  };
  for (LeftRow const& row : rows) {
    SCOPED_TRACE(row.uid);
    Add("Bad.tdx", Manifest(row.uid, R"("ext")"));
    std::string const broken = mFolder.Write("broken.ext", "!");
    {
      ModuleHost const host(mModules.Path());
      for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(host.Convert(mFolder, broken), row.broken);
        EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
        EXPECT_EQ(host.Convert(mFolder, mInput), kConverted);
        EXPECT_EQ(mFolder.TempNames(), "");
        EXPECT_EQ(Names(), "broken.ext input.ext modules notes.txt output.tdjson temporary ");
      }
    }
    EXPECT_EQ(mModules.TakeNotes().find("a root was left"), std::string::npos);
    fs::remove_all(mModules.Path() + "/Bad.tdx");
  }
}

TEST_F(Modules, LibraryWritesOnAfterAModuleWithItsOwnErrorProcIsGone) {
  Add("Good.tdx", Manifest("own-error-proc", R"("ext")"));
  EXPECT_EQ(ModuleHost(mModules.Path()).Convert(mFolder, mInput), kConverted);
  // A table without a column that can be written: the writer's failure must not go by the procedure that is gone.
  RecordingHost host;
  EXPECT_EQ(host.Open(mFolder.Write("bad.csv", "1M")), nullptr);
  EXPECT_GE(host.TakeError().code, 2000);
}

TEST_F(Modules, StreamsAreConvertedToo) {
  Add("Good.tdx", Manifest("uid", R"("ext")"));
  ModuleHost const host(mModules.Path());
  ns_sensor::ITdjsonStream* stream = nullptr;
  host.Host().Manager().createTdjsonStream(&stream, mInput.c_str(), 1, &host.Host());
  ASSERT_NE(stream, nullptr);
  std::string bytes(1000, '\0');
  unsigned const wanted = static_cast<unsigned>(bytes.size());
  bytes.resize(stream->readStream(bytes.data(), wanted, &host.Host()));
  EXPECT_EQ(bytes, kConverted);
  host.Host().Manager().destroyTdjsonStream(&stream, &host.Host());
}

}  // namespace
}  // namespace senmark_test
