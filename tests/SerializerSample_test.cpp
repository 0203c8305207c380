#include "SerializerSample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "NumberKinds.h"
#include "NumberTexts.h"
#include "SK_PackedNumber.h"
#include "SampleBuffers.h"
#include "SerializerArraySample.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberPattern;
using senmark_test::ExpectTooWide;
using senmark_test::PaddedStepByStep;
using senmark_test::Pattern;
using senmark_test::TextOf;

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

// Packed numbers.

std::string Pack(double value) {
  std::string out(SK_WriterNumberText::kRoom, '\0');
  SK_NumberPattern pattern;
  out.resize(static_cast<std::size_t>(PackNumber(out.data(), value, pattern, false) - out.data()));
  return out;
}

std::string WriterText(double value) {
  return senmark_test::StreamText().Of(value);
}

// Of all counts of digits on both sides, packed ones and others.
double const kNumbers[] = {0.0,      -0.0,      5,       -7,          10.5,       0.5,        -0.25,      12.125,
                           99.9999,  123.4567,  -1234.5, 1234.56789,  99999.5,    0.0001,     0.00010001, 12345678,
                           -8388607, 8388607.5, 1000000, 0.12345678,  4.00000001, -0.1234567, 1e15,       9.95,
                           1e21,     -1.5e20,   1.25e-5, 0.123456789, 1e-300,     HUGE_VAL,   -NAN,       8388608};

class PackedSamples : public testing::TestWithParam<bool> {};

TEST_P(PackedSamples, ArePaddedStepByStepInEveryPattern) {
  for (double const value : kNumbers) {
    std::string const packed = Pack(value);
    std::string const text = WriterText(value);
    for (std::uint64_t digitsInteger = 0; digitsInteger <= 10; ++digitsInteger) {
      for (std::uint64_t digitsDecimal = 0; digitsDecimal <= 26; ++digitsDecimal) {
        SK_NumberPattern const pattern = Pattern(digitsInteger, digitsDecimal, GetParam());
        std::string const expected = R"({"time":"T1","value":")" + PaddedStepByStep(text, pattern) + R"("})";
        ASSERT_EQ(TextOf([&](auto& out) { AppendNumberSample(out, "T1", packed, pattern); }), expected)
            << digitsInteger << ' ' << digitsDecimal;
        ASSERT_EQ(TextOf([&](auto& out) { AppendNumberSample(out, "T1", text, pattern); }), expected)
            << digitsInteger << ' ' << digitsDecimal;
      }
    }
  }
}

TEST_P(PackedSamples, OfAnyKindArePaddedStepByStep) {
  senmark_test::Random random(8);
  for (senmark_test::NumberKind const& kind : senmark_test::kNumberKinds) {
    for (int i = 0; i != 3000; ++i) {
      double const value = kind.make(random) * (i % 2 == 0 ? 1 : -1);
      SK_NumberPattern const pattern = Pattern(random() % 11, random() % 27, GetParam());
      ASSERT_EQ(TextOf([&](auto& out) { AppendNumberSample(out, "T1", Pack(value), pattern); }),
                R"({"time":"T1","value":")" + PaddedStepByStep(WriterText(value), pattern) + R"("})")
          << pattern.digitsInteger << ' ' << pattern.digitsDecimal;
    }
  }
}

// Packed ones and texts in one array.
TEST_P(PackedSamples, ArraysOfBothArePaddedStepByStep) {
  senmark_test::Random random(9);
  for (int i = 0; i != 20000; ++i) {
    SK_NumberPattern const pattern = Pattern(random() % 11, random() % 27, GetParam());
    std::string value;
    std::string expected;
    for (std::size_t left = 1 + random() % 6; left != 0; --left) {
      double const number = kNumbers[random() % std::size(kNumbers)];
      value += (random() % 3 == 0 ? WriterText(number) : Pack(number)) + (left == 1 ? "" : ",");
      expected += '"' + PaddedStepByStep(WriterText(number), pattern) + (left == 1 ? "\"" : "\",");
    }
    ASSERT_EQ(TextOf([&](auto& out) { AppendNumberArraySample(out, "T1", value, pattern); }),
              R"({"time":"T1","value":[)" + expected + "]}");
  }
}

INSTANTIATE_TEST_SUITE_P(SerializerSample, PackedSamples, testing::Bool(),
                         [](auto const& isSigned) { return isSigned.param ? "Signed" : "Unsigned"; });

// Into memory that has exactly the size of what stands in front, so that it is enlarged by each sample, and into
// memory with as much room as is left by chance. A sanitizer sees what is written beyond it.
TEST(SerializerSample, PackedSamplesStayInTheirMemory) {
  struct Widths {
    std::uint64_t integers;
    std::uint64_t decimals;
  };
  for (Widths const& widths : {Widths{1, 0}, Widths{8, 24}, Widths{8, 25}, Widths{9, 24}, Widths{3, 8}}) {
    SK_NumberPattern const pattern = Pattern(widths.integers, widths.decimals, true);
    std::string const value = Pack(-5);
    std::string const text = R"("-)" + std::string(widths.integers - 1, '0') + '5' + (widths.decimals == 0 ? "" : ".") +
                             std::string(widths.decimals, '0') + '"';
    for (std::size_t before = 3900; before != 4300; ++before) {
      SerializerBuffer buffer;
      buffer.Put(std::string_view(std::string(before, 'x')));
      AppendNumberSample(buffer, "T1", value, pattern);
      AppendNumberArraySample(buffer, "T1", value + ',' + value, pattern);
      std::string expected(before, 'x');
      expected += R"({"time":"T1","value":)" + text + '}';
      expected += R"({"time":"T1","value":[)" + text;
      expected += ',' + text + "]}";
      ASSERT_EQ(buffer.View(), expected);
    }
  }
}

TEST(SerializerSample, NumberFieldTakesWhatHasAPlace) {
  for (std::uint64_t integers = 0; integers <= 10; ++integers) {
    for (std::uint64_t decimals = 0; decimals <= 26; ++decimals) {
      NumberField const field(Pattern(integers, decimals, false));
      EXPECT_EQ(field.pattern.digitsInteger, integers);
      EXPECT_EQ(field.pattern.digitsDecimal, decimals);
      bool const isNarrow = integers >= 1 && integers <= 8 && decimals <= 24;
      EXPECT_EQ(field.Fits(0, 0, 0), isNarrow) << integers << ' ' << decimals;
      for (unsigned place = 0; place != 8; ++place) {
        // The first byte is the first of eight digits in front of the point, and of those behind it.
        std::uint64_t const digit = std::uint64_t{9} << (8 * place);
        EXPECT_EQ(field.Fits(digit, 0, 0), isNarrow && 8 - place <= integers) << integers << ' ' << place;
        EXPECT_EQ(field.Fits(0, digit, 0), isNarrow && place < decimals) << decimals << ' ' << place;
        EXPECT_EQ(field.Fits(0, 0, digit), isNarrow && 8 + place < decimals) << decimals << ' ' << place;
      }
    }
  }
}

TEST(SerializerSample, AbsurdWidthsOfPackedNumbersAreNoMemory) {
  std::uint64_t const most = std::numeric_limits<std::uint64_t>::max();
  std::string const value = Pack(1.5);
  for (std::uint64_t const width : {std::uint64_t{0x7fffffff}, most / 2, most}) {
    SerializerBuffer out;
    EXPECT_THROW(AppendNumberSample(out, "T", value, Pattern(width, 1, true)), std::bad_alloc) << width;
    EXPECT_THROW(AppendNumberSample(out, "T", value, Pattern(1, width, true)), std::bad_alloc) << width;
    EXPECT_THROW(AppendNumberArraySample(out, "T", value, Pattern(width, width, true)), std::bad_alloc) << width;
  }
}

// Bytes that were damaged while they waited.
TEST(SerializerSample, CutPackedNumbersAreZeroAndTheEnd) {
  std::string const value = Pack(-20000.5);
  for (std::size_t left = 1; left != value.size(); ++left) {
    EXPECT_EQ(TextOf([&](auto& out) { AppendNumberSample(out, "T", value.substr(0, left), Pattern(2, 1, true)); }),
              R"({"time":"T","value":"+00.0"})");
    EXPECT_EQ(TextOf([&](auto& out) {
                AppendNumberArraySample(out, "T", "7," + value.substr(0, left), Pattern(2, 1, true));
              }),
              R"({"time":"T","value":["+07.0","+00.0"]})");
  }
}

// A host may ask for any count. None of these may wrap, reach the system's memory, or come out short.
TEST(SerializerSample, AbsurdWidthsAreNoMemory) {
  std::uint64_t const most = std::numeric_limits<std::uint64_t>::max();
  for (std::uint64_t const width : {std::uint64_t{0x7fffffff}, std::uint64_t{1000000000000000000}, most / 2, most}) {
    SCOPED_TRACE(width);
    ExpectTooWide([&](auto& out) { AppendPaddedNumber(out, "1.5", Pattern(width, 1, true)); });
    ExpectTooWide([&](auto& out) { AppendPaddedNumber(out, "1.5", Pattern(1, width, false)); });
    ExpectTooWide([&](auto& out) { AppendPaddedNumber(out, "1.5", Pattern(width, width, true)); });
  }
}

}  // namespace
}  // namespace SK_PLUGIN
