#include "SVEncoding.h"

#include <gtest/gtest.h>

#include <string>

#include "SK_InputBytes.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

struct Marked {
  char const* name;
  char const* bytes;
  int encoding;
};

std::ostream& operator<<(std::ostream& out, Marked const& row) {
  return out << row.name;
}

class MarkedFile : public testing::TestWithParam<Marked> {};

TEST_P(MarkedFile, HasItsEncoding) {
  senmark_test::TempFolder const folder;
  EXPECT_EQ(GetFileEncoding(folder.Write("table", GetParam().bytes)), GetParam().encoding);
}

Marked const kMarked[] = {
    {"Empty", "", 0},
    {"OneByte", "a", 0},
    {"Plain", "a,b\n", 0},
    {"Utf8",
     "\xEF\xBB\xBF"
     "a",
     1},
    {"Utf8Alone", "\xEF\xBB\xBF", 1},
    {"Utf8CutToTwo", "\xEF\xBB", 0},
    {"Utf8CutToOne", "\xEF", 0},
    {"Utf8NotAtTheStart", "a\xEF\xBB\xBF", 0},
    {"BigEndian",
     "\xFE\xFF\x01"
     "a",
     2},
    {"BigEndianAlone", "\xFE\xFF", 2},
    {"BigEndianCut", "\xFE", 0},
    {"LittleEndian",
     "\xFF\xFE"
     "a",
     3},
    {"LittleEndianAlone", "\xFF\xFE", 3},
    {"LittleEndianCut", "\xFF", 0},
    // What a mark had in common with the file is not looked at again by the next.
    {"LittleEndianBehindOneByteOfUtf8", "\xEF\xFF\xFE", 3},
    {"LittleEndianBehindTwoBytesOfUtf8", "\xEF\xBB\xFF\xFE", 3},
    {"BigEndianBehindOneByteOfUtf8", "\xEF\xFE\xFF", 2},
    {"BigEndianBehindTwoBytesOfUtf8", "\xEF\xBB\xFE\xFF", 2},
    {"LittleEndianBehindHalfOfBigEndian", "\xFE\xFF\xFE", 2},
    {"BigEndianBehindHalfOfItself", "\xFE\xFE\xFF", 0},
    {"LittleEndianBehindHalfOfBoth", "\xEF\xFE\xFE\xFF", 0},
    {"LittleEndianBehindPartsOfBoth",
     "\xEF\xBB\xFE"
     "a\xFF\xFE",
     0},
    {"Utf8BehindOneOfItsBytes", "\xEF\xEF\xBB\xBF", 0},
};

INSTANTIATE_TEST_SUITE_P(SVEncoding, MarkedFile, testing::ValuesIn(kMarked),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(SVEncoding, MissingFileCannotBeOpened) {
  senmark_test::TempFolder const folder;
  EXPECT_EQ(GetFileEncoding(folder.Path("missing")), kFileNotOpened);
  EXPECT_EQ(kFileNotOpened, 4);
}

TEST(SVEncoding, FolderHasNoMark) {
  senmark_test::TempFolder const folder;
  EXPECT_EQ(GetFileEncoding(folder.Path("")), kNoEncodingMark);
}

TEST(SVEncoding, PartOfAPatternStaysSteppedOver) {
  senmark_test::TempFolder const folder;
  SK_InputBytes input(folder.Write("table", "abcd"));
  unsigned char const pattern[] = {'a', 'b', 'x'};
  EXPECT_FALSE(MatchOptionalPattern(input, pattern, 3));
  EXPECT_EQ(input.Peek(), 'c');
  unsigned char const rest[] = {'c', 'd', 'e'};
  EXPECT_FALSE(MatchOptionalPattern(input, rest, 3));
  EXPECT_EQ(input.Peek(), SK_InputBytes::kEnd);
}

TEST(SVEncoding, WholePatternIsSteppedOver) {
  senmark_test::TempFolder const folder;
  SK_InputBytes input(folder.Write("table", "abcd"));
  unsigned char const pattern[] = {'a', 'b', 'c'};
  EXPECT_TRUE(MatchOptionalPattern(input, pattern, 3));
  EXPECT_EQ(input.Peek(), 'd');
}

}  // namespace
}  // namespace ns_sensor
