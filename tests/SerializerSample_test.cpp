#include "SerializerSample.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <random>
#include <string>

#include "FailingMemory.h"
#include "NumberTexts.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_StringProperties;
using senmark_test::PaddedStepByStep;

SK_NumberPattern Pattern(std::uint64_t digitsInteger, std::uint64_t digitsDecimal, bool isSigned) {
  SK_NumberPattern pattern;
  pattern.digitsInteger = digitsInteger;
  pattern.digitsDecimal = digitsDecimal;
  pattern.isSigned = isSigned;
  return pattern;
}

SK_StringProperties Widths(std::uint64_t maxLen, std::uint64_t maxDigits) {
  SK_StringProperties properties;
  properties.maxLen = maxLen;
  properties.maxDigitsInStrLength = maxDigits;
  return properties;
}

template <typename Append>
std::string TextOf(Append&& append) {
  SerializerBuffer buffer;
  append(buffer);
  return std::string(buffer.View());
}

struct Padding {
  char const* name;
  std::uint64_t digitsInteger;
  std::uint64_t digitsDecimal;
  bool isSigned;
  char const* number;
  char const* padded;
};

void PrintTo(Padding const& row, std::ostream* out) {
  *out << row.name;
}

class PaddedNumber : public testing::TestWithParam<Padding> {};

TEST_P(PaddedNumber, HasTheTextOfItsRow) {
  Padding const& row = GetParam();
  EXPECT_EQ(TextOf([&](auto& out) {
              AppendPaddedNumber(out, row.number, Pattern(row.digitsInteger, row.digitsDecimal, row.isSigned));
            }),
            row.padded);
}

Padding const kPaddings[] = {
    {"NegativeGetsZeroesBehindItsSign", 3, 2, true, "-1.5", "-001.50"},
    {"PositiveGetsPlusAndPoint", 3, 2, true, "7", "+007.00"},
    {"NoDecimalsNoPoint", 2, 0, false, "12", "12"},
    {"OneDecimalNeedsPoint", 2, 1, false, "12", "12.0"},
    {"Fits", 2, 2, false, "12.25", "12.25"},
    {"FitsSigned", 2, 2, true, "12.25", "+12.25"},
    {"ZeroesOnBothSides", 4, 3, false, "1.5", "0001.500"},
    {"MinusWithoutAPlaceStays", 3, 0, false, "-5", "-005"},
    {"MinusOfAFraction", 2, 1, true, "-0.5", "-00.5"},
    {"NegativeZero", 2, 1, true, "-0", "-00.0"},
    {"WiderInFront", 1, 2, false, "123.5", "123.50"},
    {"WiderBehind", 3, 1, false, "1.125", "001.125"},
    {"WiderBehindThanNone", 3, 0, false, "1.5", "001.5"},
    {"WiderOnBothSidesSigned", 1, 1, true, "123.25", "+123.25"},
    {"ExponentIsDigits", 7, 2, false, "1e+21", "001e+21.00"},
    {"ExponentBehindAPointIsDecimals", 2, 6, true, "1.5e+2", "+01.5e+200"},
    {"MinusInAnExponentIsNoSign", 6, 0, true, "1e-07", "+01e-07"},
    {"NegativeWithExponent", 6, 1, true, "-1e+21", "-01e+21.0"},
    {"Nan", 4, 0, true, "nan", "+0nan"},
    {"Infinity", 3, 0, true, "-inf", "-inf"},
    {"InfinityWithDecimals", 4, 2, true, "inf", "+0inf.00"},
    {"NegativeInfinityIsPaddedBehindItsSign", 4, 1, false, "-inf", "-0inf.0"},
    {"NegativeNan", 5, 0, true, "-nan", "-00nan"},
    {"WiderThanNothing", 0, 0, false, "nan", "nan"},
    {"NegativeExponentBehindAPoint", 2, 5, false, "-2.5e-1", "-02.5e-10"},
    {"MinusAlone", 2, 1, true, "-", "-00.0"},
    {"MinusAloneWithoutDigits", 0, 0, true, "-", "-"},
    {"PointAlone", 2, 1, true, ".", "+00.0"},
    {"MinusAndPoint", 1, 1, false, "-.", "-0.0"},
    {"FirstPointCounts", 2, 4, false, "1.2.3", "01.2.30"},
    {"SecondMinusIsADigit", 3, 0, true, "--1", "-0-1"},
    {"PlusIsADigit", 3, 0, true, "+1", "+0+1"},
    {"NoDigitsAtAll", 0, 0, false, "5", "5"},
    {"EmptyTextOfAnElement", 2, 1, true, "", "+00.0"},
    {"EmptyTextAndPattern", 0, 0, false, "", ""},
};

INSTANTIATE_TEST_SUITE_P(SerializerSample, PaddedNumber, testing::ValuesIn(kPaddings),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(SerializerSample, AnyTextIsPaddedStepByStep) {
  std::mt19937 random(5);
  std::string const characters = "--..0159e+naif ";
  for (int i = 0; i != 50000; ++i) {
    std::string text(random() % 9, ' ');
    for (char& character : text) {
      character = characters[random() % characters.size()];
    }
    SK_NumberPattern const pattern = Pattern(random() % 9, random() % 9, random() % 2 != 0);
    std::string const padded = TextOf([&](auto& out) { AppendPaddedNumber(out, text, pattern); });
    ASSERT_EQ(padded, PaddedStepByStep(text, pattern))
        << text << ' ' << pattern.digitsInteger << ' ' << pattern.digitsDecimal << ' ' << pattern.isSigned;
  }
}

TEST(SerializerSample, NumberIsAText) {
  EXPECT_EQ(TextOf([](auto& out) { AppendNumberSample(out, "00:00:01:02", "-1.5", Pattern(3, 2, true)); }),
            R"({"time":"00:00:01:02","value":"-001.50"})");
}

struct Elements {
  char const* name;
  char const* value;
  char const* text;
};

void PrintTo(Elements const& row, std::ostream* out) {
  *out << row.name;
}

class NumberArraySample : public testing::TestWithParam<Elements> {};

TEST_P(NumberArraySample, HasTheTextOfItsRow) {
  Elements const& row = GetParam();
  EXPECT_EQ(TextOf([&](auto& out) { AppendNumberArraySample(out, "T", row.value, Pattern(2, 1, true)); }),
            std::string(R"({"time":"T","value":[)") + row.text + "]}");
}

Elements const kElements[] = {
    {"One", "7", R"("+07.0")"},
    {"Three", "1.5,-2,10", R"("+01.5","-02.0","+10.0")"},
    {"EmptyOneInBetween", "1,,2", R"("+01.0","+00.0","+02.0")"},
    {"EmptyFirstOne", ",1", R"("+00.0","+01.0")"},
    {"CommaAtTheEndIsNoFurtherOne", "1,2,", R"("+01.0","+02.0")"},
    {"CommaAlone", ",", R"("+00.0")"},
};

INSTANTIATE_TEST_SUITE_P(SerializerSample, NumberArraySample, testing::ValuesIn(kElements),
                         [](auto const& row) { return std::string(row.param.name); });

struct PaddedText {
  char const* name;
  std::uint64_t maxLen;
  std::uint64_t maxDigits;
  char const* value;
  char const* length;
  char const* text;
};

void PrintTo(PaddedText const& row, std::ostream* out) {
  *out << row.name;
}

class StringSample : public testing::TestWithParam<PaddedText> {};

TEST_P(StringSample, HasTheTextOfItsRow) {
  PaddedText const& row = GetParam();
  EXPECT_EQ(TextOf([&](auto& out) { AppendStringSample(out, "T", row.value, Widths(row.maxLen, row.maxDigits)); }),
            std::string(R"({"time":"T","value":{"length":")") + row.length + R"(","str":")" + row.text + R"("}})");
}

PaddedText const kPaddedTexts[] = {
    {"ThreeBlanksBehind", 5, 2, "ab", "02", "ab   "},
    {"Fits", 2, 1, "ab", "2", "ab"},
    {"LengthOfTwoDigits", 10, 2, "0123456789", "10", "0123456789"},
    {"LengthCountsBytesAsWritten", 4, 1, R"(a\n)", "3", R"(a\n )"},
    {"BytesAboveAsciiPass", 4, 1, "\xC3\xA4", "2", "\xC3\xA4  "},
    {"WiderThanItsPlaces", 1, 1, "0123456789", "10", "0123456789"},
};

INSTANTIATE_TEST_SUITE_P(SerializerSample, StringSample, testing::ValuesIn(kPaddedTexts),
                         [](auto const& row) { return std::string(row.param.name); });

template <typename Append>
void ExpectTooWide(Append&& append) {
  SerializerBuffer buffer;
  buffer.Put(std::string_view("room for what stands in front of the padding"));
  bool isRefused = false;
  senmark_test::FailingMemory const memory(1, senmark_test::FailingMemory::kAll);
  try {
    append(buffer);
  } catch (std::bad_alloc const&) {
    isRefused = !memory.HasFailed();
  }
  EXPECT_TRUE(isRefused);
}

// A host may ask for any count. None of these may wrap, reach the system's memory, or come out short.
TEST(SerializerSample, AbsurdWidthsAreNoMemory) {
  std::uint64_t const most = std::numeric_limits<std::uint64_t>::max();
  for (std::uint64_t const width : {std::uint64_t{0x7fffffff}, std::uint64_t{1000000000000000000}, most / 2, most}) {
    SCOPED_TRACE(width);
    ExpectTooWide([&](auto& out) { AppendPaddedNumber(out, "1.5", Pattern(width, 1, true)); });
    ExpectTooWide([&](auto& out) { AppendPaddedNumber(out, "1.5", Pattern(1, width, false)); });
    ExpectTooWide([&](auto& out) { AppendPaddedNumber(out, "1.5", Pattern(width, width, true)); });
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(width, 1)); });
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(2, width)); });
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(width, width)); });
  }
}

}  // namespace
}  // namespace SK_PLUGIN
