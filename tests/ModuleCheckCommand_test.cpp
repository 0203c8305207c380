// Whole modules, good ones and such with one fault each, as their writers would check them.
#include "ModuleCheckCommand.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "Command.h"
#include "ModuleFolders.h"

namespace {

using senmark_test::Manifest;
using senmark_test::ModuleFolders;

std::vector<std::string> Lines(std::string const& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line);
  }
  return lines;
}

bool BeginsWith(std::string const& text, std::string const& begin) {
  return text.compare(0, begin.size(), begin) == 0;
}

class ModuleCheckCommand : public testing::Test {
 protected:
  ModuleCheckCommand() : mModules(mFolder), mInput(mFolder.Write("in.ext", "FMabcdefghijkl.")) {
    mRequest.folder = mModules.Path() + "/M.tdx";
    mRequest.files = {mInput};
    mRequest.milliseconds = 600000;  // nobody waits for it
  }

  /// A module that does wrong what its identifier says.
  void Add(char const* identifier, std::string const& manifest = Manifest("uid", R"("ext")"),
           char const* code = senmark_test::kFaultyModule) {
    mModules.Add("M.tdx", manifest.c_str(), identifier, code);
  }

  /// What is found, without the sum.
  std::vector<std::string> Check() {
    std::ostringstream out;
    mStatus = senmark_tool::RunModuleCheck(mRequest, out);
    std::vector<std::string> lines = Lines(out.str());
    mSum = lines.back();
    lines.pop_back();
    return lines;
  }

  senmark_test::TempFolder mFolder;
  ModuleFolders mModules;
  std::string mInput;
  senmark_tool::ModuleCheckRequest mRequest;
  int mStatus = -1;
  std::string mSum;
};

TEST_F(ModuleCheckCommand, GoodModuleHasNoFindings) {
  Add("good");
  EXPECT_EQ(Check(), std::vector<std::string>());
  EXPECT_EQ(mSum, "M.tdx: nothing to find fault with");
  EXPECT_EQ(mStatus, senmark_tool::kFine);
  EXPECT_EQ(mFolder.Read(mInput), "FMabcdefghijkl.");
}

TEST_F(ModuleCheckCommand, GoodModuleWithASignatureHasNone) {
  Add("good", Manifest("uid", R"("ext")", R"(,"check_format":[{"byte_seq":"FM","length":2,"offset":0}])"));
  EXPECT_EQ(Check(), std::vector<std::string>());
}

TEST_F(ModuleCheckCommand, FilesWouldTellMore) {
  Add("good");
  mRequest.files.clear();
  EXPECT_EQ(Check(), std::vector<std::string>{"behaviour: note: no file was given: with some that the module should "
                                              "read, far more can be tried"});
  EXPECT_EQ(mStatus, senmark_tool::kFine);
}

/// A fault, and how all lines about it begin: each begin stands for at least one line.
struct Fault {
  char const* name;
  int status;
  std::vector<std::string> begins;
};

std::ostream& operator<<(std::ostream& out, Fault const& fault) {
  return out << fault.name;
}

class ModuleFault : public ModuleCheckCommand, public testing::WithParamInterface<Fault> {};

TEST_P(ModuleFault, IsFoundAndNamed) {
  Add(GetParam().name);
  std::vector<std::string> const lines = Check();
  EXPECT_EQ(mStatus, GetParam().status);
  for (std::string const& begin : GetParam().begins) {
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](auto const& line) { return BeginsWith(line, begin); }))
        << "nothing begins with " << begin;
  }
  for (std::string const& line : lines) {
    EXPECT_TRUE(std::any_of(GetParam().begins.begin(), GetParam().begins.end(),
                            [&](auto const& begin) { return BeginsWith(line, begin); }))
        << "not expected: " << line;
  }
}

Fault const kFaults[] = {
    {"empty-entry", 1, {"loading: error: it leaves terminate null: the library fails with code 1500 when it needs it"}},
    {"bad-start",
     1,
     {"loading: error: its initialisation failed with code 1701; the module says: no start",
      "behaviour: note: nothing else was tried, as the module cannot even be loaded and ended"}},
    {"bad-end", 1, {"loading: error: terminate failed with code 1702; the module says: no end"}},
    {"unstable-check",
     1,
     {"format check of an empty file by \"uid\": error: checkFileFormat gives two answers to one question: the library "
      "asks more than once (and 4 other trials)",
      "in.ext: warning: the module does not take it: it is left to the library's own converters"}},
    {"refuse",
     1,
     {"in.ext: warning: the module does not take it: it is left to the library's own converters",
      "in.ext: error: File Cannot be converted. (code 2000)"}},
    {"take-all",
     0,
     {"format check of an empty file by \"uid\": note: it takes it, so files of this kind come to no other converter "
      "(and 3 other trials)"}},
    {"check-changes",
     1,
     {"format check of an empty file by \"uid\": error: checkFileFormat changes the file (and 3 other trials)",
      "in.ext: error: it is changed by its own conversion",
      "in.ext: error: Conversion to TDJSON using converter Name of uid with id uid failed. (code 1706); the module "
      "says: the point at the end is missing"}},
    {"check-fails",
     0,
     {"format check of an empty file by \"uid\": warning: checkFileFormat failed with code 1705: then no other "
      "converter is asked, so rather say that it does not take the file; the module says: too short (and 1 other "
      "trial)"}},
    {"check-throws",
     1,
     {"format check of an empty file by \"uid\": error: checkFileFormat threw an exception: too short (and 3 other "
      "trials)",
      "in.ext cut to 1 byte: error: an exception left the module, or it gave the writer a null text: Error in Plugin "
      "Check File Format of converter Name of uid with id uid. (code 1023)"}},
    {"no-session",
     1,
     {"in.ext: error: Initialize Session Failed of converter Name of uid with id uid. (code 1703); the module says: no "
      "session today"}},
    {"bad-session-end",
     1,
     {"session of \"uid\" with an empty file: error: terminateSession failed with code 1704; the module says: no end "
      "of the session (and 2 other trials)"}},
    {"leak-session",
     1,
     {"session of \"uid\" with an empty file: error: it leaves a descriptor open, of /dev/null (and 5 other trials)",
      "in.ext: error: it leaves a descriptor open, of /dev/null (and "}},
    {"leak-descriptor",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it leaves a descriptor open, of "
      "/dev/null (and 2 other trials)",
      "in.ext: error: it leaves a descriptor open, of /dev/null (and "}},
    {"leave-file",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it leaves a file behind in the temporary "
      "folder, left-",
      "in.ext: error: it leaves a file behind in the temporary folder, left-"}},
    {"print",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it prints to standard output, which is "
      "the host's: converting (and 2 other trials)",
      "in.ext: error: it prints to standard output, which is the host's: converting (and "}},
    {"set-locale",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it changes the locale of the process, "
      "from C C to C.UTF-8 C (and 2 other trials)",
      "in.ext, in a process of its own: error: it changes the locale of the process, from C C to C.UTF-8 C (and "}},
    {"change-folder",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it changes the current folder, to / (and "
      "2 other trials)",
      "in.ext: error: it changes the current folder, to / (and "}},
    {"leave-thread",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it leaves a thread running (and 2 other "
      "trials)",
      "in.ext: error: it leaves a thread running (and "}},
    {"crash",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it died of signal 11 (Segmentation fault)",
      "conversion of a file of one byte by \"uid\" that cannot be written: error: it died of signal 11",
      "in.ext cut to 2 bytes: error: it died of signal 11 (Segmentation fault)", "in.ext cut to "}},
    {"exit",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: it ended the process, with exit status 0",
      "conversion of a file of one byte by \"uid\" that cannot be written: error: it ended the process, with exit",
      "in.ext cut to 2 bytes: error: it ended the process, with exit status 0", "in.ext cut to "}},
    {"raise",
     1,
     {"conversion of an empty file by \"uid\" that cannot be written: error: convertToTDJSON threw an exception: "
      "thrown by the module (and 1 other trial)",
      "in.ext cut to 2 bytes: error: an exception left the module, or it gave the writer a null text: Conversion to "
      "TDJSON using converter Name of uid with id uid failed. (code 1023) (and "}},
    {"other-bytes", 1, {"in.ext: error: two conversions of the file write different bytes"}},
    {"other-process",
     1,
     {"in.ext, in a process of its own: error: conversions of the file in two processes write different bytes"}},
    {"disorder",
     1,
     {"in.ext: error: the sample set \"bytes\" is not in the order of time: hosts will not find its samples"}},
    {"always-content",
     1,
     {"conversion of in.ext by \"uid\" that cannot be written: error: convertToTDJSON says that it has succeeded when "
      "the writer fails",
      "in.ext, onto a full disk: error: the conversion is said to have succeeded, but the disk was full after ",
      "in.ext, onto a full disk: error: a conversion onto a full disk leaves its output behind"}},
};

INSTANTIATE_TEST_SUITE_P(Faults, ModuleFault, testing::ValuesIn(kFaults), [](auto const& fault) {
  std::string name = fault.param.name;
  name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
  return name;
});

TEST_F(ModuleCheckCommand, ConversionsThatRunOutOfTimeAreSoonGivenUp) {
  Add("out-of-time");
  std::vector<std::string> const lines = Check();
  ASSERT_EQ(lines.size(), 6u);
  EXPECT_EQ(lines[0], "conversion of an empty file by \"uid\" that cannot be written: error: it did not end in time");
  EXPECT_EQ(lines[2], "in.ext cut to 2 bytes: error: it did not end in time");
  EXPECT_EQ(lines[5],
            "in.ext cut to 5 bytes: note: not tried any more, after so many ends, and neither is what would follow");
}

TEST_F(ModuleCheckCommand, ConversionWithoutEndIsNotWaitedFor) {
  Add("out-of-time");
  std::vector<std::string> const expected = Check();
  std::filesystem::remove_all(mRequest.folder);
  Add("never-end");
  // What has an end needs some time, too, and more where the machine has much else to do.
  std::vector<std::string> lines;
  for (mRequest.milliseconds = 100; lines != expected && mRequest.milliseconds < 20000; mRequest.milliseconds *= 2) {
    lines = Check();
  }
  EXPECT_EQ(lines, expected);
}

TEST_F(ModuleCheckCommand, NumberThatCannotBeReadBackIsShown) {
  Add("exponent");
  std::vector<std::string> const lines = Check();
  ASSERT_EQ(lines.size(), 1u);
  EXPECT_TRUE(BeginsWith(lines[0], "in.ext: error: Unable to find Comma or Closing bracket after property:"))
      << lines[0];
  EXPECT_NE(lines[0].find("there, what was written is"), std::string::npos);
  EXPECT_NE(lines[0].find("1.25e-07"), std::string::npos);
  EXPECT_NE(lines[0].find("; a number with a negative exponent cannot be read back: round numbers before they are "
                          "written"),
            std::string::npos);
}

TEST_F(ModuleCheckCommand, InputsThatEndTheProcessAreKept) {
  Add("crash");
  mRequest.keepFolder = mFolder.Path("kept");
  std::vector<std::string> const lines = Check();
  std::string const kept = mFolder.Path("kept/1.ext");
  EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&](std::string const& line) {
    return line ==
           "in.ext cut to 2 bytes: error: it died of signal 11 (Segmentation fault); the file is kept as " + kept;
  }));
  EXPECT_EQ(mFolder.Read(kept), "FM");
}

// One that only goes by the extension is not shown files by their content.
TEST_F(ModuleCheckCommand, ExtensionThatTheManifestDoesNotName) {
  Add("good", Manifest("uid", R"("other")"));
  EXPECT_EQ(Check(), std::vector<std::string>{"in.ext: note: the manifest does not name its extension: it comes to the "
                                              "module only if nothing that is made for the extension takes it"});
}

TEST_F(ModuleCheckCommand, NothingIsTriedBeforeTheManifestIsRight) {
  Add("good", "{}");
  EXPECT_EQ(Check(),
            (std::vector<std::string>{
                "Contents/Resources/SKPLUGINUIDS.txt:1:1: error: \"converter\" is missing, the array of the module's "
                "converters (byte 0)",
                "Contents/Resources/SKPLUGINUIDS.txt: note: the library stops at the first error: converters from "
                "there on are not used, and neither are modules that it would read after this one",
                "behaviour: note: not tried: first the errors above have to go"}));
  EXPECT_EQ(mSum, "M.tdx: 1 error, 0 warnings, 2 notes");
  EXPECT_EQ(mStatus, senmark_tool::kFileAtFault);
}

TEST_F(ModuleCheckCommand, FindingsComeInTheOrderOfTheStages) {
  mModules.Add("M.tdx", "{}", nullptr, senmark_test::kNeedyModule);
  std::vector<std::string> const lines = Check();
  ASSERT_GE(lines.size(), 5u);
  EXPECT_TRUE(BeginsWith(lines[0], "Contents/Resources/MODULE_IDENTIFIER.txt: warning: missing"));
  EXPECT_TRUE(BeginsWith(lines[1], "Contents/" + senmark_test::Machine() + "-linux/M.so: "));
  EXPECT_TRUE(BeginsWith(lines[lines.size() - 3], "Contents/Resources/SKPLUGINUIDS.txt:1:1: error"));
}

TEST_F(ModuleCheckCommand, FolderOfTheModuleAloneCounts) {
  // A manifest that ends the library's reading stands beside it.
  for (char const* const name : {"A.tdx", "Z.tdx"}) {
    mModules.Add(name, "no JSON");
  }
  Add("good");
  EXPECT_EQ(Check(), std::vector<std::string>());
}

TEST_F(ModuleCheckCommand, NothingIsLeftBehind) {
  for (char const* const identifier : {"crash", "leave-file"}) {
    Add(identifier);
    Check();
    EXPECT_EQ(mFolder.TempNames(), "");
    std::filesystem::remove_all(mRequest.folder);
  }
}

TEST_F(ModuleCheckCommand, FileThatIsNotThereIsAFaultOfTheUser) {
  Add("good");
  mRequest.files.push_back(mFolder.Path("nothing"));
  std::ostringstream out;
  EXPECT_THROW(senmark_tool::RunModuleCheck(mRequest, out), senmark_tool::UsageError);
  EXPECT_EQ(out.str(), "");
}

}  // namespace
