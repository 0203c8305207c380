#include "FileSignature.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "ModuleFolders.h"
#include "senmark/Host.h"

namespace senmark_test {
namespace {

using senmark_tool::FileSignature;

struct Row {
  char const* name;
  char const* bytes;
  std::int32_t length;
  std::int64_t offset;
  char const* content;
  char const* mismatch;

  FileSignature Signature() const { return {bytes, length, offset}; }
};

std::string const kManyDigits = "0x" + std::string(2048, '4');
std::string const kManyD(1024, 'D');
std::string const kManyE(1024, 'E');

Row const kRows[] = {
    {"TextAtBegin", "GPX1", 4, 0, "GPX1 rest", ""},
    {"TextBehind", "PX", 2, 1, "GPX1 rest", ""},
    {"TextAtTheVeryEnd", "X1", 2, 2, "GPX1", ""},
    {"OtherText", "GPX2", 4, 0, "GPX1 rest", "signature \"GPX2\" at byte 0: there stands \"GPX1\""},
    {"FileTooShort", "GPX1", 4, 1, "GPX1", "signature \"GPX1\" at byte 1: the file ends before byte 5"},
    {"OffsetBehindTheEnd", "G", 1, 100, "GPX1", "signature \"G\" at byte 100: the file ends before byte 101"},
    {"Digits", "0x4D5A", 2, 0, "MZ", ""},
    {"DigitsOfBothCases", "0xfFfE", 2, 0, "\xFF\xFE", ""},
    {"OtherBytes", "0x4d5a", 2, 0, "\x01Z", "signature \"MZ\" at byte 0: there stands 0x015A"},
    {"BytesThatAreNoText", "0xFF01", 2, 0, "MZ", "signature 0xFF01 at byte 0: there stands \"MZ\""},
    {"NoDigitsOfTheLengthAreText", "0x4D", 2, 0, "0x4D", ""},
    {"LongerTextCountsToItsLength", "GPX1 and more", 4, 0, "GPX1 rest", ""},
    {"LengthIsCut", kManyDigits.c_str(), 5000, 0, kManyD.c_str(), ""},
    {"LengthIsCutWithOtherBytes", kManyDigits.c_str(), 5000, 0, kManyE.c_str(),
     "signature \"DDDDDDDDDDDDDDDD...\" at byte 0: there stands \"EEEEEEEEEEEEEEEE...\""},
    {"FewerBytesThanTheLength", "GP", 3, 0, "GPX1",
     "signature \"GP\" at byte 0: the manifest gives fewer bytes than its \"length\" says"},
    {"NoLength", "GPX1", 0, 0, "GPX1", "the manifest gives an empty signature, which no file has"},
    {"NoBytes", "", 4, 0, "GPX1", "the manifest gives an empty signature, which no file has"},
    {"NegativeLength", "GPX1", -1, 0, "GPX1",
     "the manifest gives a signature with a negative length or offset, which no file has"},
    {"NegativeOffset", "GPX1", 4, -1, "GPX1",
     "the manifest gives a signature with a negative length or offset, which no file has"},
};

class FileSignatures : public testing::TestWithParam<Row> {};

TEST_P(FileSignatures, SayWhatDiffers) {
  std::istringstream file(GetParam().content);
  EXPECT_EQ(GetParam().Signature().Mismatch(file), GetParam().mismatch);
}

TEST_P(FileSignatures, AgreeWithTheLibrary) {
  TempFolder const folder;
  ModuleFolders const modules(folder);
  FileSignature const signature = GetParam().Signature();
  std::string const checkFormat = ",\"check_format\":[{\"byte_seq\":\"" + signature.bytes +
                                  "\",\"length\":" + std::to_string(signature.length) +
                                  ",\"offset\":" + std::to_string(signature.offset) + "}]";
  modules.Add("Good.tdx", Manifest("good", "\"csv\"", checkFormat).c_str());
  std::string const path = folder.Write("file.csv", GetParam().content);
  {
    senmark::Options options;
    options.pluginFolder = modules.Path();
    senmark::Senmark const manager(senmark::Library::Linked(), options);
    static_cast<void>(senmark::attempt([&] { return manager.open(path); }));
  }
  bool const isTaken = modules.TakeNotes().find("session good") != std::string::npos;
  EXPECT_EQ(isTaken, *GetParam().mismatch == '\0');
}

INSTANTIATE_TEST_SUITE_P(All, FileSignatures, testing::ValuesIn(kRows),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(FileSignature, OneStreamServesManyQuestions) {
  std::istringstream file("GPX1");
  FileSignature const behind = {"G", 1, 100};
  FileSignature const begin = {"G", 1, 0};
  EXPECT_NE(behind.Mismatch(file), "");
  EXPECT_EQ(begin.Mismatch(file), "");
}

}  // namespace
}  // namespace senmark_test
