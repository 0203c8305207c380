#include "MotionNumber.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace senmark_motion {
namespace {

struct Spelling {
  char const* text;
  double value;
};

void PrintTo(Spelling const& spelling, std::ostream* out) {
  *out << spelling.text;
}

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Spelling const kSpellings[] = {
    {"0", 0},
    {"-0.0", -0.0},
    {"12", 12},
    {"+12.5", 12.5},
    {"-.0333", -0.0333},
    {"1.", 1},
    {"+.5", 0.5},
    {"007.50", 7.5},
    {"1e3", 1000},
    {"1E+3", 1000},
    {"-9.23872e-007", -9.23872e-7},
    {"1.7075472E-6", 1.7075472e-6},
    {"5.e-1", 0.5},
    {"0.1000000000000000055511151231257827", 0.1},
    {"123456789012345678901234567890", 123456789012345678901234567890.0},
    {"9007199254740993", 9007199254740992.0},
    {"1e-400", 0},
    {"0.00000000000000000000001e-400", 0},
    {"-1e-99999999999999999999", -0.0},
    {"1e400", kInfinity},
    {"-1e99999999999999999999", -kInfinity},
    {"inf", kInfinity},
    {"-Infinity", -kInfinity},
    {"1.#INF", kInfinity},
    {"-1.#INF00", -kInfinity},
};

class MotionNumberSpelling : public testing::TestWithParam<Spelling> {};

TEST_P(MotionNumberSpelling, IsRead) {
  std::optional<double> const value = ParseNumber(GetParam().text);
  ASSERT_TRUE(value.has_value());
  EXPECT_EQ(*value, GetParam().value);
  EXPECT_EQ(std::signbit(*value), std::signbit(GetParam().value));
}

TEST_P(MotionNumberSpelling, PlainReadingGivesTheSameOrNothing) {
  std::string const text = std::string(GetParam().text) + ' ';
  char const* position = text.data();
  double value = 0;
  if (ReadPlainNumber(position, value)) {
    EXPECT_EQ(value, GetParam().value);
    EXPECT_EQ(std::signbit(value), std::signbit(GetParam().value));
    EXPECT_EQ(position, text.data() + text.size() - 1);
  } else {
    EXPECT_EQ(position, text.data());
  }
}

INSTANTIATE_TEST_SUITE_P(MotionNumber, MotionNumberSpelling, testing::ValuesIn(kSpellings));

TEST(MotionNumber, NotANumberIsOne) {
  for (char const* const text : {"nan", "NaN", "-nan", "-nan(ind)", "1.#IND", "-1.#IND00", "1.#QNAN", "1.#SNAN0"}) {
    std::optional<double> const value = ParseNumber(text);
    ASSERT_TRUE(value.has_value()) << text;
    EXPECT_TRUE(std::isnan(*value)) << text;
  }
}

TEST(MotionNumber, OtherWordsAreNone) {
  for (char const* const text :
       {"",    "+",   "-",  ".",   "-.", "e5", "1e",  "1e+",    "1,5",    "0x10", "1.2.3",   "--1",
        "+-1", "-+1", "1-", "12a", "1 ", " 1", "1.#", "1.#NUM", "2.#INF", "}",    "infinite"}) {
    EXPECT_FALSE(ParseNumber(text).has_value()) << text;
  }
}

TEST(MotionNumber, PlainReadingTakesWhatFilesAreFullOf) {
  for (char const* const text : {"0 ", "-6.2023\t", "+1.5\n", ".5\r", "7. ", "123456789.123456 "}) {
    char const* position = text;
    double value = 0;
    EXPECT_TRUE(ReadPlainNumber(position, value)) << text;
  }
}

TEST(MotionNumber, PlainReadingLeavesTheRestAlone) {
  for (char const* const text : {"1e5 ", "nan ", "- ", ". ", "1,5 ", "12a ", "1234567890123456789 ",
                                 "9007199254740994 ", "0.1234567890123456789 ", "1\v"}) {
    char const* position = text;
    double value = 0;
    EXPECT_FALSE(ReadPlainNumber(position, value)) << text;
    EXPECT_EQ(position, text);
  }
}

TEST(MotionNumber, PlainReadingGivesTheNearestDouble) {
  std::mt19937_64 random(1);
  for (int i = 0; i != 20000; ++i) {
    std::string text = std::to_string(random() % 10000000000000);
    text.insert(random() % (text.size() + 1), ".");
    double expected = 0;
    std::from_chars(text.data(), text.data() + text.size(), expected);
    text += '\n';
    char const* position = text.data();
    double value = 0;
    ASSERT_TRUE(ReadPlainNumber(position, value)) << text;
    ASSERT_EQ(value, expected) << text;
  }
}

/// Memory that ends where short reading may have to stop.
std::vector<char> WithinReach(std::string const& text) {
  std::vector<char> bytes(text.begin(), text.end());
  bytes.resize(std::max<std::size_t>(bytes.size(), kShortNumberReach), '7');
  bytes.shrink_to_fit();
  return bytes;
}

// Of all sizes, with what may stand behind them. Those beyond its limits may be left to the other ways.
TEST(MotionNumber, ShortReadingIsPlainReading) {
  std::mt19937_64 random(2);
  for (int i = 0; i != 40000; ++i) {
    std::size_t const wholeSize = random() % 10;
    std::size_t const behindSize = random() % 10;
    std::string text = random() % 2 == 0 ? "-" : "";
    for (std::size_t left = wholeSize; left != 0; --left) {
      text += static_cast<char>('0' + random() % 10);
    }
    text += '.';
    for (std::size_t left = behindSize; left != 0; --left) {
      text += static_cast<char>('0' + random() % 10);
    }
    text += "    \n\r\tx\v-.,:/;\0\xB5\xFF"[random() % 17];
    std::vector<char> const bytes = WithinReach(text);
    char const* plainPosition = text.data();
    double plainValue = 0;
    bool const isPlain = ReadPlainNumber(plainPosition, plainValue);
    char const* position = bytes.data();
    double value = 0;
    bool const isShort = ReadShortNumber(position, value);
    bool const isWithinLimits = wholeSize >= 1 && wholeSize <= 7 && behindSize >= 1 && behindSize <= 7;
    ASSERT_EQ(isShort, isPlain && isWithinLimits) << text;
    ASSERT_EQ(position - bytes.data(), isShort ? plainPosition - text.data() : 0) << text;
    if (isShort) {
      ASSERT_EQ(value, plainValue) << text;
      ASSERT_EQ(std::signbit(value), std::signbit(plainValue)) << text;
    }
  }
}

TEST(MotionNumber, ShortReadingLeavesTheRestAlone) {
  for (char const* const text :
       {"1 ", "12345678 ", "+1.5 ",  "--1.5 ",      "-.5 ",        "5. ",   "1e5 ",  "1.5e3 ", "nan ", "- ",
        ". ", "1,5 ",      "1.5.5 ", "1.23456789 ", "12345678.5 ", "#1.5 ", " 1.5 ", ":.5 ",   "1.: ", ""}) {
    std::vector<char> const bytes = WithinReach(text);
    char const* position = bytes.data();
    double value = 0;
    EXPECT_FALSE(ReadShortNumber(position, value)) << text;
    EXPECT_EQ(position, bytes.data());
  }
}

}  // namespace
}  // namespace senmark_motion
