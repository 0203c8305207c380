#include "SK_NumberAnalysis.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace SK_PLUGIN {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

double FromBits(std::uint64_t bits) {
  double value = 0;
  std::memcpy(&value, &bits, sizeof(value));
  return value;
}

struct Number {
  char const* name;
  double value;
  char const* text;
  unsigned long long digitsInteger;
  unsigned long long digitsDecimal;
  bool isSigned;
};

void PrintTo(Number const& row, std::ostream* out) {
  *out << row.text;
}

Number const kNumbers[] = {
    {"Fraction", 12.5, "12.5", 2, 1, false},
    {"NoFraction", 12.0, "12", 2, 0, false},
    {"Zero", 0.0, "0", 1, 0, false},
    {"NegativeZero", -0.0, "-0", 1, 0, true},
    {"ZeroesOfAnInteger", 1200.0, "1200", 4, 0, false},
    {"SixteenDigits", 0.1 + 0.2, "0.3", 1, 1, false},
    {"NotTheShortestText", 9.95, "9.949999999999999", 1, 15, false},
    {"Negative", -12.25, "-12.25", 2, 2, true},
    {"NegativeTooSmallForSixDecimals", -1e-7, "-1e-07", 5, 0, true},
    {"ExponentWithoutPoint", 1e21, "1e+21", 5, 0, false},
    {"NegativeExponentWithoutPoint", -1e21, "-1e+21", 5, 0, true},
    {"ExponentEndsInZero", 1.5e20, "1.5e+2", 1, 4, false},
    {"ExponentEndsInTwoZeroes", 1.5e100, "1.5e+1", 1, 4, false},
    {"SmallExponentEndsInZero", -2.5e-10, "-2.5e-1", 1, 4, true},
    {"ExponentEndsInZeroWithoutPoint", 1e20, "1e+20", 5, 0, false},
    {"SmallestWithoutExponent", 0.0001, "0.0001", 1, 4, false},
    {"FirstWithExponent", 0.00001, "1e-05", 5, 0, false},
    {"Infinity", kInfinity, "inf", 3, 0, false},
    {"NegativeInfinity", -kInfinity, "-inf", 3, 0, true},
    {"NotANumber", kNaN, "nan", 3, 0, false},
    {"NotANumberWithSign", std::copysign(kNaN, -1.0), "-nan", 3, 0, true},
};

class AnalysedNumber : public testing::TestWithParam<Number> {};

TEST_P(AnalysedNumber, HasItsText) {
  std::string text = "from before";
  removeTrailingZeroes(text, GetParam().value);
  EXPECT_EQ(text, GetParam().text);
}

TEST_P(AnalysedNumber, HasItsDigitsWithoutSign) {
  unsigned long long digitsInteger = 99;
  unsigned long long digitsDecimal = 99;
  calcNumberPatternWithoutSign(GetParam().value, digitsInteger, digitsDecimal);
  EXPECT_EQ(digitsInteger, GetParam().digitsInteger);
  EXPECT_EQ(digitsDecimal, GetParam().digitsDecimal);
}

TEST_P(AnalysedNumber, RaisesTheDigitsOfASet) {
  unsigned long long digitsInteger = 0;
  unsigned long long digitsDecimal = 0;
  calcNumberPatternForSet(GetParam().value, digitsInteger, digitsDecimal);
  EXPECT_EQ(digitsInteger, GetParam().digitsInteger);
  EXPECT_EQ(digitsDecimal, GetParam().digitsDecimal);
  digitsInteger = digitsDecimal = 0;
  calcNumberPatternForText(GetParam().text, digitsInteger, digitsDecimal);
  EXPECT_EQ(digitsInteger, GetParam().digitsInteger);
  EXPECT_EQ(digitsDecimal, GetParam().digitsDecimal);
}

TEST_P(AnalysedNumber, TurnsTheSignOnAndNeverOff) {
  unsigned char isSigned = 0;
  calcSign(GetParam().value, isSigned);
  EXPECT_EQ(isSigned, GetParam().isSigned ? 1 : 0);
  isSigned = 1;
  calcSign(GetParam().value, isSigned);
  EXPECT_EQ(isSigned, 1);
}

INSTANTIATE_TEST_SUITE_P(NumberAnalysis, AnalysedNumber, testing::ValuesIn(kNumbers),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(NumberAnalysis, PatternOfASetTakesEachMaximumAlone) {
  unsigned long long digitsInteger = 0;
  unsigned long long digitsDecimal = 0;
  for (double const value : {123.4, 5.678, 1.0}) {
    calcNumberPatternForSet(value, digitsInteger, digitsDecimal);
  }
  EXPECT_EQ(digitsInteger, 3u);
  EXPECT_EQ(digitsDecimal, 3u);
}

TEST(NumberAnalysis, SignIsTheFirstCharacterOfTheFixedForm) {
  std::mt19937_64 random(3);
  auto const check = [](double value) {
    unsigned char isSigned = 0;
    calcSign(value, isSigned);
    ASSERT_EQ(isSigned != 0, std::to_string(value).front() == '-') << value;
  };
  for (Number const& row : kNumbers) {
    check(row.value);
    check(-row.value);
  }
  for (int i = 0; i < 50000; ++i) {
    check(FromBits(random()));
    check(std::ldexp(static_cast<double>(static_cast<std::int64_t>(random())), -40 - static_cast<int>(random() % 60)));
  }
  for (std::uint64_t const bits :
       std::initializer_list<std::uint64_t>{0x8000000000000001u, 0x0000000000000001u, 0xFFFFFFFFFFFFFFFFu,
                                            0x7FF0000000000001u, 0xFFF0000000000001u, 0xFFEFFFFFFFFFFFFFu}) {
    check(FromBits(bits));
  }
}

TEST(NumberAnalysis, FirstValueSetsBothEndsOfTheRange) {
  double min = std::numeric_limits<double>::max();
  double max = std::numeric_limits<double>::lowest();
  calcOccurringRangeForSet(5.0, min, max);
  EXPECT_EQ(min, 5.0);
  EXPECT_EQ(max, 5.0);
  calcOccurringRangeForSet(-2.0, min, max);
  calcOccurringRangeForSet(7.0, min, max);
  calcOccurringRangeForSet(6.0, min, max);
  EXPECT_EQ(min, -2.0);
  EXPECT_EQ(max, 7.0);
}

TEST(NumberAnalysis, NotANumberLeavesTheRange) {
  double min = 1.0;
  double max = 2.0;
  calcOccurringRangeForSet(kNaN, min, max);
  EXPECT_EQ(min, 1.0);
  EXPECT_EQ(max, 2.0);
  calcOccurringRangeForSet(kInfinity, min, max);
  EXPECT_EQ(min, 1.0);
  EXPECT_EQ(max, kInfinity);
}

TEST(NumberAnalysis, PaddedStringPropertiesGrowWithBytes) {
  unsigned long long maxLength = 0;
  unsigned long long maxDigits = 0;
  calcPaddedStringProperties("", maxLength, maxDigits);
  EXPECT_EQ(maxLength, 0u);
  EXPECT_EQ(maxDigits, 1u);
  calcPaddedStringProperties("ä€", maxLength, maxDigits);
  EXPECT_EQ(maxLength, 5u);
  EXPECT_EQ(maxDigits, 1u);
  struct Row {
    std::size_t length;
    unsigned long long maxLength;
    unsigned long long maxDigits;
  };
  for (Row const& row : {Row{9, 9, 1}, Row{10, 10, 2}, Row{3, 10, 2}, Row{99, 99, 2}, Row{100, 100, 3}}) {
    calcPaddedStringProperties(std::string(row.length, 'x'), maxLength, maxDigits);
    EXPECT_EQ(maxLength, row.maxLength);
    EXPECT_EQ(maxDigits, row.maxDigits);
  }
}

struct TimeCode {
  char const* name;
  int hours;
  int minutes;
  int seconds;
  int frames;
  unsigned short frameDigits;
  char const* text;
};

void PrintTo(TimeCode const& row, std::ostream* out) {
  *out << row.text;
}

TimeCode const kTimeCodes[] = {
    {"Plain", 1, 2, 3, 4, 2, "01:02:03:04"},
    {"NoZeroInFrontFromTen", 10, 59, 10, 29, 2, "10:59:10:29"},
    {"FramesFillTheirPlace", 0, 0, 0, 123, 3, "00:00:00:123"},
    {"FramesPadded", 0, 0, 0, 7, 4, "00:00:00:0007"},
    {"FramesTooLong", 1, 2, 3, 123, 2, ""},
    {"NoPlaceForFrames", 1, 2, 3, 4, 0, ""},
    {"HundredWidens", 100, 101, 102, 0, 2, "100:101:102:00"},
    {"NegativeHasAZeroInFront", -1, 2, 3, 4, 2, "0-1:02:03:04"},
    {"NegativeFrames", 1, 2, 3, -4, 3, "01:02:03:0-4"},
    {"NegativeFramesInTwoPlaces", 1, 2, 3, -4, 2, "01:02:03:-4"},
    {"NegativeMinutes", 1, -2, 3, 4, 2, "01:0-2:03:04"},
    {"NegativeSeconds", 1, 2, -3, 4, 2, "01:02:0-3:04"},
    {"LargestOfTwoDigits", 99, 99, 99, 99, 2, "99:99:99:99"},
    {"HundredSeconds", 99, 99, 100, 99, 2, "99:99:100:99"},
    {"HundredFrames", 99, 99, 99, 100, 2, ""},
    {"OnePlaceForFrames", 1, 2, 3, 4, 1, "01:02:03:4"},
};

class TimeCodeText : public testing::TestWithParam<TimeCode> {};

TEST_P(TimeCodeText, IsWritten) {
  TimeCode const& row = GetParam();
  std::string text;
  serializeTimeSMPTE(text, row.hours, row.minutes, row.seconds, row.frames, row.frameDigits);
  EXPECT_EQ(text, row.text);
}

INSTANTIATE_TEST_SUITE_P(NumberAnalysis, TimeCodeText, testing::ValuesIn(kTimeCodes),
                         [](auto const& row) { return std::string(row.param.name); });

struct CalendarTime {
  char const* name;
  int parts[6];
  char zoneSign;
  int zoneHours;
  int zoneMinutes;
  int fraction;
  unsigned short precision;
  char const* text;
};

void PrintTo(CalendarTime const& row, std::ostream* out) {
  *out << row.text;
}

CalendarTime const kCalendarTimes[] = {
    {"Greenwich", {2020, 1, 2, 3, 4, 5}, 'Z', 0, 0, 7, 3, "2020-01-02T03:04:05.007Z"},
    {"ZoneWithoutFraction", {2020, 1, 2, 3, 4, 5}, '+', 5, 30, 0, 0, "2020-01-02T03:04:05+05:30"},
    {"WestWithFraction", {2020, 11, 12, 13, 14, 15}, '-', 11, 0, 999, 3, "2020-11-12T13:14:15.999-11:00"},
    {"FractionTooLong", {2020, 1, 2, 3, 4, 5}, 'Z', 0, 0, 1000, 3, ""},
    {"FractionIgnoredWithoutPrecision", {2020, 1, 2, 3, 4, 5}, 'Z', 0, 0, 1000, 0, "2020-01-02T03:04:05Z"},
    {"ZoneIgnoredInGreenwich", {2020, 1, 2, 3, 4, 5}, 'Z', 5, 30, 0, 1, "2020-01-02T03:04:05.0Z"},
    {"YearUnpadded", {7, 1, 2, 3, 4, 5}, 'Z', 0, 0, 0, 0, "7-01-02T03:04:05Z"},
    {"OtherSign", {2020, 1, 2, 3, 4, 5}, '?', 1, 2, 0, 0, "2020-01-02T03:04:05?01:02"},
};

class CalendarTimeText : public testing::TestWithParam<CalendarTime> {};

TEST_P(CalendarTimeText, IsWritten) {
  CalendarTime const& row = GetParam();
  std::string text;
  serializeTimeUTC(text, row.parts[0], row.parts[1], row.parts[2], row.parts[3], row.parts[4], row.parts[5],
                   static_cast<signed char>(row.zoneSign), row.zoneHours, row.zoneMinutes, row.fraction, row.precision);
  EXPECT_EQ(text, row.text);
}

INSTANTIATE_TEST_SUITE_P(NumberAnalysis, CalendarTimeText, testing::ValuesIn(kCalendarTimes),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(NumberAnalysis, SplitStringGivesThePieces) {
  using Pieces = std::vector<std::string>;
  struct Row {
    char const* text;
    Pieces pieces;
  };
  for (Row const& row : {Row{"", {}}, Row{"a", {"a"}}, Row{"a,b", {"a", "b"}}, Row{"a,b,", {"a", "b"}}, Row{",", {""}},
                         Row{",,", {"", ""}}, Row{"a,,b", {"a", "", "b"}}, Row{",a", {"", "a"}}, Row{"a;b", {"a;b"}},
                         Row{"a\nb,c", {"a\nb", "c"}}}) {
    EXPECT_EQ(splitString(row.text, ','), row.pieces) << row.text;
  }
}

struct Escaped {
  char const* name;
  std::string text;
  std::string escaped;
};

void PrintTo(Escaped const& row, std::ostream* out) {
  *out << row.name;
}

Escaped const kEscaped[] = {
    {"Empty", "", ""},
    {"Plain", "plain text", "plain text"},
    {"Backspace", "a\bc", "a\\bc"},
    {"Tab", "\t", "\\t"},
    {"NewLine", "\n", "\\n"},
    {"FormFeed", "\f", "\\f"},
    {"CarriageReturn", "\r", "\\r"},
    {"Quote", "\"", "\\\""},
    {"Backslash", "\\", "\\\\"},
    {"BackslashAndNewLine", "\\\n", "\\\\\\n"},
    {"WhatIsInsertedIsSteppedPast", "\\n", "\\\\n"},
    {"OtherControlCharacters", "\x01\x0b\x1f\x7f", "\x01\x0b\x1f\x7f"},
    {"Slash", "/", "/"},
    {"NulInside", std::string("a\0\"", 3), std::string("a\0\\\"", 4)},
    {"NotAscii", "\xc3\xa4\xff\"", "\xc3\xa4\xff\\\""},
};

class EscapedText : public testing::TestWithParam<Escaped> {};

TEST_P(EscapedText, IsWritten) {
  EXPECT_EQ(escapeHandling(GetParam().text), GetParam().escaped);
  std::string const text = GetParam().text;
  std::string copy = "what was there before";
  std::string_view const view = EscapeInto(text, copy);
  EXPECT_EQ(view, GetParam().escaped);
  EXPECT_EQ(view.data(), view == text ? text.data() : copy.data());
}

// Texts are looked at eight bytes at a time.
TEST(NumberAnalysis, AnEscapeIsFoundAtEveryPlaceOfEveryLength) {
  std::string const escaped = "\b\t\n\f\r\"\\";
  std::string const letters = "btnfr\"\\";
  for (std::size_t length = 1; length <= 40; ++length) {
    for (std::size_t at = 0; at != length; ++at) {
      for (std::size_t kind = 0; kind != escaped.size(); ++kind) {
        std::string const before(at, 'x');
        std::string const behind(length - at - 1, 'y');
        ASSERT_EQ(escapeHandling(before + escaped[kind] + behind), before + '\\' + letters[kind] + behind)
            << kind << " at " << at << " of " << length;
      }
    }
  }
}

TEST(NumberAnalysis, NoOtherByteIsEscapedAtAnyPlace) {
  std::string const escaped = "\b\t\n\f\r\"\\";
  for (int byte = 0; byte != 256; ++byte) {
    char const character = static_cast<char>(byte);
    if (escaped.find(character) != std::string::npos) {
      continue;
    }
    for (std::size_t length : {1u, 7u, 8u, 9u, 16u, 23u}) {
      for (std::size_t at = 0; at != length; ++at) {
        std::string text(length, 'x');
        text[at] = character;
        ASSERT_EQ(escapeHandling(text), text) << byte << " at " << at << " of " << length;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(NumberAnalysis, EscapedText, testing::ValuesIn(kEscaped),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace SK_PLUGIN
