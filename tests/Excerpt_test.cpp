#include "Excerpt.h"

#include <gtest/gtest.h>

#include "TempFolder.h"

namespace senmark_tool {
namespace {

class Excerpt : public testing::Test {
 protected:
  Place Find(std::string const& content, std::uint64_t offset, std::size_t width = 40) {
    std::optional<Place> const place = FindPlace(mFolder.Write("file", content), offset, width);
    EXPECT_TRUE(place.has_value());
    return place.value_or(Place());
  }

  senmark_test::TempFolder mFolder;
};

TEST_F(Excerpt, FirstByteIsLineOneColumnOne) {
  Place const place = Find("abc\ndef\n", 0);
  EXPECT_EQ(place.line, 1u);
  EXPECT_EQ(place.column, 1u);
  EXPECT_EQ(place.excerpt, "abc");
  EXPECT_EQ(place.caret, 0u);
}

TEST_F(Excerpt, LineFeedBelongsToItsLine) {
  Place const place = Find("abc\ndef\n", 3);
  EXPECT_EQ(place.line, 1u);
  EXPECT_EQ(place.column, 4u);
  EXPECT_EQ(place.excerpt, "abc");
  EXPECT_EQ(place.caret, 3u);
}

TEST_F(Excerpt, ByteBehindLineFeedBeginsTheNextLine) {
  Place const place = Find("abc\ndef\n", 4);
  EXPECT_EQ(place.line, 2u);
  EXPECT_EQ(place.column, 1u);
  EXPECT_EQ(place.excerpt, "def");
}

TEST_F(Excerpt, EndOfFileIsAPlace) {
  Place const place = Find("abc\nde", 6);
  EXPECT_EQ(place.line, 2u);
  EXPECT_EQ(place.column, 3u);
  EXPECT_EQ(place.excerpt, "de");
  EXPECT_EQ(place.caret, 2u);
}

TEST_F(Excerpt, EmptyFileHasOnePlace) {
  Place const place = Find("", 0);
  EXPECT_EQ(place.line, 1u);
  EXPECT_EQ(place.excerpt, "");
}

TEST_F(Excerpt, BehindTheFileIsNone) {
  EXPECT_FALSE(FindPlace(mFolder.Write("file", "abc"), 4, 40));
  EXPECT_FALSE(FindPlace(mFolder.Path("none"), 0, 40));
}

TEST_F(Excerpt, LongLineIsCutOnBothSides) {
  std::string line(1000, 'x');
  line[500] = '!';
  Place const place = Find(line, 500, 20);
  EXPECT_EQ(place.excerpt, "xxxxxxxxxx!xxxxxxxxx");
  EXPECT_EQ(place.excerpt[place.caret], '!');
  EXPECT_EQ(place.column, 501u);
}

TEST_F(Excerpt, CaretCountsCharactersNotBytes) {
  Place const place = Find("\xC3\xA4\xC3\xA4!", 4);
  EXPECT_EQ(place.caret, 2u);
  EXPECT_EQ(place.column, 5u);
}

TEST_F(Excerpt, CutCharacterIsLeftOut) {
  // Ten bytes before the place: the first of them continues a character.
  Place const place = Find(
      "x\xC3\xA4"
      "123456789!",
      12, 20);
  EXPECT_EQ(place.excerpt, "123456789!");
  EXPECT_EQ(place.caret, 9u);
}

TEST_F(Excerpt, ControlCharactersAreNotShown) {
  Place const place = Find("a\tb\x1b!", 4);
  EXPECT_EQ(place.excerpt, "a?b?!");
}

TEST_F(Excerpt, LinesAreCountedOverManyChunks) {
  std::string content;
  for (int i = 0; i != 100000; ++i) {
    content += "ab\n";
  }
  Place const place = Find(content, 3 * 70000 + 1);
  EXPECT_EQ(place.line, 70001u);
  EXPECT_EQ(place.column, 2u);
}

}  // namespace
}  // namespace senmark_tool
