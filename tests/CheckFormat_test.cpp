#include "CheckFormat.h"

#include <gtest/gtest.h>

#include <limits>

#include "ExpectError.h"
#include "SK_FileIO.h"
#include "TempFolder.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::ExpectError;
using senmark_test::TempFolder;

std::string Repeated(std::string const& text, int count) {
  std::string repeated;
  for (int i = 0; i < count; ++i) {
    repeated += text;
  }
  return repeated;
}

bool IsInFile(std::string const& content, CheckFormat const& format) {
  TempFolder const folder;
  File_IO::Descriptor const file(File_IO::Open(folder.Write("input", content).c_str(), true, false));
  return format.IsIn(file.Get());
}

struct Row {
  char const* name;
  std::string content;
  CheckFormat format;
  bool expected;
};

std::string const k1023 = Repeated("ab", 511) + 'a';
std::string const k1024 = Repeated("ab", 512);
std::string const kNul("\0x", 2);

Row const kRows[] = {
    {"Text", "MZ rest", {0, 2, "MZ"}, true},
    {"TextDiffers", "MY rest", {0, 2, "MZ"}, false},
    {"TextIsCaseSensitive", "mz rest", {0, 2, "MZ"}, false},
    {"TextLongerThanLength", "MZ rest", {0, 2, "MZAB"}, true},
    {"TextShorterThanLength", "MZ rest", {0, 3, "MZ"}, false},
    {"TextAndTheNulBehindIt", std::string("MZ\0", 3), {0, 3, "MZ"}, true},
    {"TextTwoShorterThanLength", std::string("MZ\0\0", 4), {0, 4, "MZ"}, false},
    {"TextWithNul", std::string("\0x", 2), {0, 2, kNul}, true},
    {"Hexadecimal", "MZ rest", {0, 2, "0x4D5A"}, true},
    {"HexadecimalInLowerCase", "MZ rest", {0, 2, "0x4d5a"}, true},
    {"HexadecimalDiffersInTheFirst", "NZ rest", {0, 2, "0x4D5A"}, false},
    {"HexadecimalDiffersInTheLast", "MY rest", {0, 2, "0x4D5A"}, false},
    {"HighBytes", "\xff\x80", {0, 2, "0xFF80"}, true},
    {"HexadecimalOfAnotherLengthIsText", "0x4D5A", {0, 3, "0x4D5A"}, true},
    {"HexadecimalOfAnotherLengthIsNoBytes", "MZZ", {0, 3, "0x4D5A"}, false},
    {"HexadecimalWithoutMarkIsText", "4D5AxxAB", {0, 2, "4D5Axx"}, true},
    {"UpperCaseMarkIsText", "0X4D5A", {0, 2, "0X4D5A"}, true},
    {"PairsThatAreNoDigitsAreZero", std::string("\0\0", 2), {0, 2, "0xZZ!!"}, true},
    {"PairMayBeginWithASign", "\x05", {0, 1, "0x+5"}, true},
    {"PairMayBeginWithABlank", "\x05", {0, 1, "0x 5"}, true},
    {"PairBelowZeroIsNoByte", "\xfb", {0, 1, "0x-5"}, false},
    {"PairMayEndBehindOneDigit", "\x05", {0, 1, "0x5g"}, true},
    {"Offset", "xxxMZ", {3, 2, "MZ"}, true},
    {"OffsetAndLengthReachTheEnd", "xxMZ", {2, 2, "MZ"}, true},
    {"OneByteShort", "xxM", {2, 2, "MZ"}, false},
    {"OffsetAtTheEnd", "xx", {2, 2, "MZ"}, false},
    {"OffsetBehindTheEnd", "xx", {5000, 2, "MZ"}, false},
    {"OffsetOf64Bits", "xx", {std::int64_t{1} << 40, 2, "MZ"}, false},
    {"OffsetBehindTheLongestFile", "xx", {std::numeric_limits<std::int64_t>::max(), 2, "MZ"}, false},
    {"LastOffsetOf31Bits", "xx", {0x7FFFFFFF, 2, "MZ"}, false},
    {"FirstOffsetOf32Bits", "xx", {0x80000000, 2, "MZ"}, false},
    {"NegativeOffset", "MZ", {-1, 2, "MZ"}, false},
    {"EmptyFile", "", {0, 2, "MZ"}, false},
    {"NoLength", "MZ", {0, 0, "MZ"}, false},
    {"NegativeLength", "MZ", {0, -1, "MZ"}, false},
    {"NoBytes", "MZ", {0, 2, ""}, false},
    {"NoBytesAgainstAZeroByte", std::string(1, '\0'), {0, 1, ""}, false},
    {"LengthOf1023", k1023, {0, 1023, k1023}, true},
    {"LengthOf1024", k1024, {0, 1024, k1024}, true},
    {"LengthOver1024IsCut", k1024, {0, 2000, k1024}, true},
    {"LengthOver1024IsCutInAFileThatIsShort", k1023, {0, 2000, k1024}, false},
    {"HexadecimalOfTheCutLength", k1024, {0, 2000, "0x" + Repeated("6162", 512)}, true},
    {"HexadecimalOfTheWholeLengthIsText", Repeated("ab", 1000), {0, 2000, "0x" + Repeated("6162", 1000)}, false},
};

TEST(CheckFormat, ComparesBytesOfTheFile) {
  for (Row const& row : kRows) {
    EXPECT_EQ(IsInFile(row.content, row.format), row.expected) << row.name;
  }
}

TEST(CheckFormat, FindsBytesBehind4GiB) {
  TempFolder const folder;
  std::string const path = folder.Write("input", "");
  File_IO::Descriptor const file(File_IO::Open(path.c_str(), false, false));
  constexpr std::int64_t kFar = 5000000000;
  File_IO::SetEOF(file.Get(), kFar);
  File_IO::Seek(file.Get(), 0, File_IO::kSeekFromEnd);
  File_IO::Write(file.Get(), "MZ", 2);
  EXPECT_TRUE((CheckFormat{kFar, 2, "MZ"}).IsIn(file.Get()));
  EXPECT_TRUE((CheckFormat{kFar + 1, 1, "Z"}).IsIn(file.Get()));
  EXPECT_FALSE((CheckFormat{kFar + 1, 2, "ZZ"}).IsIn(file.Get()));
  EXPECT_FALSE((CheckFormat{kFar + 2, 1, "Z"}).IsIn(file.Get()));
}

TEST(CheckFormat, IsEmptyWithoutLengthOrBytes) {
  EXPECT_TRUE(CheckFormat().empty());
  EXPECT_TRUE((CheckFormat{1, 0, "a"}).empty());
  EXPECT_TRUE((CheckFormat{1, 1, ""}).empty());
  EXPECT_FALSE((CheckFormat{0, 1, "a"}).empty());
}

TEST(CheckFormat, ClearZeroesAll) {
  CheckFormat format{7, 8, "a"};
  format.clear();
  EXPECT_EQ(format.mOffset, 0);
  EXPECT_EQ(format.mLength, 0);
  EXPECT_EQ(format.mByteSequence, "");
}

TEST(CheckFormat, TellsAFileThatCannotBeRead) {
  CheckFormat const format{0, 1, "a"};
  ExpectError([&] { format.IsIn(-1); }, 10, "File_IO::Seek, lseek failure.");
  TempFolder const folder;
  File_IO::Descriptor const opened(File_IO::Open(folder.TempPath().c_str(), true, false));
  ExpectError([&] { format.IsIn(opened.Get()); }, 11, "File_IO::Read, read failure.");
}

}  // namespace
}  // namespace SK_PLUGIN
