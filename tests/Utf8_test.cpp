#include "Utf8.h"

#include <gtest/gtest.h>

namespace senmark_tool {
namespace {

struct LengthRow {
  char const* name;
  std::string_view text;
  std::size_t length;
};

class FirstCharacter : public testing::TestWithParam<LengthRow> {};

TEST_P(FirstCharacter, HasLength) {
  EXPECT_EQ(Utf8Length(GetParam().text), GetParam().length);
}

INSTANTIATE_TEST_SUITE_P(
    Utf8, FirstCharacter,
    testing::Values(LengthRow{"Empty", "", 0}, LengthRow{"Ascii", "ab", 1}, LengthRow{"LastOfOneByte", "\x7F", 1},
                    LengthRow{"LoneContinuation", "\x80", 0}, LengthRow{"OverlongTwo", "\xC1\xBF", 0},
                    LengthRow{"FirstOfTwo", "\xC2\x80", 2}, LengthRow{"LastOfTwo", "\xDF\xBF", 2},
                    LengthRow{"TwoCut", "\xC2", 0},
                    LengthRow{"TwoBroken",
                              "\xC2"
                              "a",
                              0},
                    LengthRow{"OverlongThree", "\xE0\x9F\xBF", 0}, LengthRow{"FirstOfThree", "\xE0\xA0\x80", 3},
                    LengthRow{"BeforeSurrogates", "\xED\x9F\xBF", 3}, LengthRow{"Surrogate", "\xED\xA0\x80", 0},
                    LengthRow{"LastOfThree", "\xEF\xBF\xBF", 3}, LengthRow{"ThreeCut", "\xEF\xBF", 0},
                    LengthRow{"OverlongFour", "\xF0\x8F\xBF\xBF", 0}, LengthRow{"FirstOfFour", "\xF0\x90\x80\x80", 4},
                    LengthRow{"LastOfFour", "\xF4\x8F\xBF\xBF", 4}, LengthRow{"AboveUnicode", "\xF4\x90\x80\x80", 0},
                    LengthRow{"FiveBytes", "\xF8\x88\x80\x80\x80", 0}),
    [](testing::TestParamInfo<LengthRow> const& row) { return row.param.name; });

TEST(Utf8, PrintableHasNoControlCharacters) {
  EXPECT_EQ(Printable("a\x1b[2J\n\x7F\xC2\x9B\xFFz\xC3\xA4"), "a?[2J????z\xC3\xA4");
}

TEST(Utf8, ColumnsAreCharacters) {
  EXPECT_EQ(Columns("a\xC3\xA4\xE2\x82\xAC"), 3u);
}

}  // namespace
}  // namespace senmark_tool
