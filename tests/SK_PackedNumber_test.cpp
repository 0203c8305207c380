#include "SK_PackedNumber.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "NumberKinds.h"
#include "NumberTexts.h"
#include "SK_NumberPropertyRules.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberPattern;
using senmark_test::NumberKind;
using senmark_test::Pattern;
using senmark_test::Random;
using senmark_test::StreamText;

#ifdef NDEBUG
constexpr int kValuesOfAKind = 60000;
#else
constexpr int kValuesOfAKind = 6000;
#endif

constexpr char kCanary = '\x5A';

std::string TextOf(SK_NumberPattern const& pattern) {
  return std::to_string(pattern.digitsInteger) + '.' + std::to_string(pattern.digitsDecimal) +
         (pattern.isSigned ? " signed" : "");
}

/// What `PackNumber` stores. No byte behind the room that is promised may change.
std::string Pack(double value, SK_NumberPattern& pattern, bool automatic) {
  std::string out(2 * SK_WriterNumberText::kRoom, kCanary);
  char const* const end = PackNumber(out.data(), value, pattern, automatic);
  std::size_t const size = static_cast<std::size_t>(end - out.data());
  EXPECT_LE(size, SK_WriterNumberText::kRoom);
  EXPECT_EQ(out.find_first_not_of(kCanary, SK_WriterNumberText::kRoom), std::string::npos);
  return out.substr(0, size);
}

std::string Pack(double value) {
  SK_NumberPattern pattern = Pattern(0, 0, false);
  return Pack(value, pattern, false);
}

/// Takes one number off bytes that are as many as they are, for a sanitizer to see.
SK_PackedNumber TakeFrom(std::string const& bytes, std::size_t& taken) {
  std::vector<char> const exact(bytes.begin(), bytes.end());
  std::string_view rest(exact.data(), exact.size());
  SK_PackedNumber const number = SK_PackedNumber::Take(rest);
  taken = bytes.size() - rest.size();
  EXPECT_EQ(rest, bytes.substr(taken));
  return number;
}

std::string TextOf(SK_PackedNumber const& number) {
  std::string out(2 * SK_WriterNumberText::kRoom, kCanary);
  std::string_view const text = number.CopyTextTo(out.data());
  EXPECT_EQ(text.data(), out.data());
  EXPECT_EQ(out.find_first_not_of(kCanary, SK_WriterNumberText::kRoom), std::string::npos);
  return std::string(text);
}

/// The text of what was packed, which is taken off it.
std::string TakeText(std::string_view& bytes) {
  if (SK_PackedNumber::Begins(bytes)) {
    return TextOf(SK_PackedNumber::Take(bytes));
  }
  std::string const text(bytes.substr(0, bytes.find(',')));
  bytes.remove_prefix(text.size());
  return text;
}

/// The pattern that the digits of the text widen.
SK_NumberPattern Widened(SK_NumberPattern pattern, bool automatic, double value, std::string const& text) {
  WidenNumberPattern(pattern, automatic, value, text);
  return pattern;
}

void ExpectWidened(double value, std::string const& text, SK_NumberPattern const& start, bool automatic) {
  SK_NumberPattern pattern = start;
  Pack(value, pattern, automatic);
  SK_NumberPattern const expected = Widened(start, automatic, value, text);
  ASSERT_EQ(TextOf(pattern), TextOf(expected))
      << text << " from " << TextOf(start) << (automatic ? " automatic" : " stated");
}

/// By the text of the number.
bool IsToBePacked(double value, std::string const& text) {
  double const magnitude = std::fabs(value);
  if (text.find_first_not_of("-.0123456789") != std::string::npos || magnitude >= 8388608) {
    return false;
  }
  std::size_t const point = std::min(text.find('.'), text.size() - 1);
  std::size_t const decimals = text.size() - point - 1;
  return decimals <= 8 || (decimals <= 15 && magnitude < 1000);
}

class PackedNumberOf : public testing::TestWithParam<NumberKind> {};

TEST_P(PackedNumberOf, HasTheTextOfTheNumberAndWidensThePatternLikeIt) {
  Random random(41);
  StreamText stream;
  for (int i = 0; i != kValuesOfAKind; ++i) {
    double const value = GetParam().make(random) * (i % 2 == 0 ? 1 : -1);
    std::string const expected = stream.Of(value);
    std::string const packed = Pack(value);
    std::string_view bytes = packed;
    ASSERT_EQ(SK_PackedNumber::Begins(bytes), IsToBePacked(value, expected)) << expected;
    ASSERT_EQ(TakeText(bytes), expected);
    ASSERT_EQ(bytes, "");
    ASSERT_EQ(expected, SK_WriterNumberText(value).View());
    SK_NumberPattern const start = Pattern(random() % 10, random() % 18, random() % 2 != 0);
    ExpectWidened(value, expected, start, i % 4 < 2);
    if (HasFatalFailure()) {
      return;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Writer, PackedNumberOf, testing::ValuesIn(senmark_test::kNumberKinds),
                         [](auto const& kind) { return std::string(kind.param.name); });

double const kInfinity = std::numeric_limits<double>::infinity();
double const kNaN = std::numeric_limits<double>::quiet_NaN();

struct Row {
  char const* name;
  double value;
  char const* text;
  std::size_t size;  ///< as it waits: 1 and the bytes of the integer for a packed one
  bool isPacked;
};

void PrintTo(Row const& row, std::ostream* out) {
  *out << row.name;
}

Row const kRows[] = {
    {"Zero", 0.0, "0", 5, true},
    {"NegativeZero", -0.0, "-0", 5, true},
    {"One", 1, "1", 5, true},
    {"MinusOne", -1, "-1", 5, true},
    {"EightDecimals", 0.12345678, "0.12345678", 5, true},
    {"NineDecimals", 0.123456789, "0.123456789", 7, true},
    {"NineDecimalsNegative", -0.123456789, "-0.123456789", 7, true},
    {"FifteenDecimals", 0.100000000000001, "0.100000000000001", 7, true},
    {"SixteenDecimals", 0.1000000000000001, "0.1000000000000001", 18, false},
    {"SmallestOfNineDecimals", 0.000100001, "0.000100001", 6, true},
    {"SmallestOfFifteenDecimals", 0.000100000000001, "0.000100000000001", 6, true},
    {"SixteenDecimalsBehindZeroes", 0.0001000000000001, "0.0001000000000001", 18, false},
    {"LargestOfNineDecimals", 999.999999999, "999.999999999", 9, true},
    {"FirstOfNineDecimalsBeyond", 1000.000000001, "1000.000000001", 14, false},
    {"AllOfSixteenDigits", 999.9999999999999, "999.9999999999999", 9, true},
    {"FirstFineOfSixBytes", 0.001099511627776, "0.001099511627776", 7, true},
    {"LargestFineOfFiveBytes", 0.001099511627775, "0.001099511627775", 6, true},
    {"FirstFineOfEightBytes", 72.05759403792794, "72.05759403792794", 9, true},
    {"LargestFineOfSevenBytes", 72.05759403792793, "72.05759403792793", 8, true},
    {"Smallest", 0.0001, "0.0001", 5, true},
    {"SmallestOfAllDecimals", 0.00010001, "0.00010001", 5, true},
    {"BelowSmallest", 0.00009999, "9.999e-05", 9, false},
    {"BelowSmallestInItsBinade", 6.72147749e-05, "6.72147749e-05", 14, false},
    {"LargestOfFourBytes", 42.94967295, "42.94967295", 5, true},
    {"FirstOfFiveBytes", 42.94967296, "42.94967296", 6, true},
    {"LargestOfFiveBytes", 10995.11627775, "10995.11627775", 6, true},
    {"FirstOfSixBytes", 10995.11627776, "10995.11627776", 7, true},
    {"LargestOfSixBytes", 2814749.76710655, "2814749.76710655", 7, true},
    {"FirstOfSevenBytes", 2814749.76710656, "2814749.76710656", 8, true},
    {"LargestInteger", 8388607, "8388607", 8, true},
    {"LargestIntegerNegative", -8388607, "-8388607", 8, true},
    {"FirstIntegerBeyond", 8388608, "8388608", 7, false},
    {"LargeWithDecimals", 8388608.5, "8388608.5", 9, false},
    {"TenMillions", 10000000, "10000000", 8, false},
    {"LargeInteger", 1e15, "1000000000000000", 16, false},
    {"Exponent", 1e21, "1e+21", 5, false},
    {"ExponentBehindAPoint", -1.5e20, "-1.5e+2", 7, false},
    {"SmallExponent", 1.25e-5, "1.25e-05", 8, false},
    {"NotTheShortestText", 9.95, "9.949999999999999", 8, true},
    {"NotTheShortestTextOfTwoDigits", -99.9, "-99.90000000000001", 9, true},
    {"NegativeOfManyDigits", -0.1 - 1e-12, "-0.100000000001", 7, true},
    {"Infinity", kInfinity, "inf", 3, false},
    {"NegativeInfinity", -kInfinity, "-inf", 4, false},
    {"NotANumber", kNaN, "nan", 3, false},
    {"NotANumberWithSign", std::copysign(kNaN, -1.0), "-nan", 4, false},
    {"SmallestDenormal", 4.9406564584124654e-324, "4.940656458412465e-324", 22, false},
    {"LongestText", -2.2250738585072014e-308, "-2.225073858507201e-308", 23, false},
};

class PackedNumber : public testing::TestWithParam<Row> {};

TEST_P(PackedNumber, WaitsAsItsRowSays) {
  std::string const packed = Pack(GetParam().value);
  EXPECT_EQ(packed.size(), GetParam().size);
  EXPECT_EQ(SK_PackedNumber::Begins(packed), GetParam().isPacked);
  std::string_view bytes = packed;
  EXPECT_EQ(TakeText(bytes), GetParam().text);
  EXPECT_EQ(bytes, "");
}

TEST_P(PackedNumber, WidensEveryPatternLikeItsText) {
  for (std::uint64_t digitsInteger = 0; digitsInteger != 10; ++digitsInteger) {
    for (std::uint64_t digitsDecimal = 0; digitsDecimal != 18; ++digitsDecimal) {
      for (unsigned i = 0; i != 4; ++i) {
        SK_NumberPattern const start = Pattern(digitsInteger, digitsDecimal, i / 2 != 0);
        ASSERT_NO_FATAL_FAILURE(ExpectWidened(GetParam().value, GetParam().text, start, i % 2 != 0));
      }
    }
  }
}

TEST_P(PackedNumber, PatternsAreNotNarrowed) {
  std::uint64_t const most = std::numeric_limits<std::uint64_t>::max();
  for (std::uint64_t const digits : {std::uint64_t{24}, std::uint64_t{1} << 32U, most}) {
    ASSERT_NO_FATAL_FAILURE(ExpectWidened(GetParam().value, GetParam().text, Pattern(digits, 0, false), true));
    ASSERT_NO_FATAL_FAILURE(ExpectWidened(GetParam().value, GetParam().text, Pattern(0, digits, true), true));
    ASSERT_NO_FATAL_FAILURE(ExpectWidened(GetParam().value, GetParam().text, Pattern(digits, digits, false), true));
  }
}

INSTANTIATE_TEST_SUITE_P(Writer, PackedNumber, testing::ValuesIn(kRows),
                         [](auto const& row) { return std::string(row.param.name); });

// Each count of digits in front of the point beside each behind it, with the first and the last digits of them.
TEST(PackedNumbers, EveryCountOfDigitsWidensLikeItsText) {
  StreamText stream;
  for (std::uint64_t integer : {0, 1, 9, 10, 99, 100, 999, 1000, 9999, 10000, 99999, 100000, 999999, 1000000}) {
    for (std::uint64_t places = 0; places <= 8; ++places) {
      auto const end = static_cast<std::uint64_t>(senmark_test::PowerOfTen(static_cast<int>(places)));
      for (std::uint64_t const decimals : {std::uint64_t{1}, end / 10, end / 10 + 1, end / 2, end - 1}) {
        double const value = static_cast<double>(integer * end + decimals) / static_cast<double>(end);
        std::string const text = stream.Of(value);
        for (std::uint64_t start = 0; start != 99; ++start) {
          ASSERT_NO_FATAL_FAILURE(ExpectWidened(value, text, Pattern(start / 11, start % 11, false), true));
        }
      }
    }
  }
}

TEST(PackedNumbers, SeveralStandBehindEachOther) {
  Random random(12);
  StreamText stream;
  for (int i = 0; i != 3000; ++i) {
    std::string bytes;
    std::string expected;
    SK_NumberPattern pattern = Pattern(0, 0, false);
    SK_NumberPattern widened = pattern;
    for (std::size_t left = 1 + random() % 6; left != 0; --left) {
      std::size_t const kind = random() % std::size(senmark_test::kNumberKinds);
      double const value = senmark_test::kNumberKinds[kind].make(random) * (random() % 2 == 0 ? 1 : -1);
      bytes += Pack(value, pattern, true) + (left == 1 ? "" : ",");
      expected += stream.Of(value) + (left == 1 ? "" : ",");
      widened = Widened(widened, true, value, stream.Of(value));
    }
    std::string found;
    std::string_view rest = bytes;
    while (!rest.empty()) {
      found += TakeText(rest);
      if (!rest.empty()) {
        ASSERT_EQ(rest.front(), ',');
        rest.remove_prefix(1);
        found += ',';
      }
    }
    ASSERT_EQ(found, expected);
    ASSERT_EQ(TextOf(pattern), TextOf(widened));
  }
}

// A comma may be a byte of an integer.
TEST(PackedNumbers, BytesOfAnIntegerAreNoCommas) {
  double const value = 7.41092396;  // 0x2C2C2C2C units
  std::string const bytes = Pack(value) + ',' + Pack(-value);
  EXPECT_EQ(bytes.substr(1, 5), ",,,,,");
  std::string_view rest = bytes;
  EXPECT_EQ(TakeText(rest), "7.41092396");
  rest.remove_prefix(1);
  EXPECT_EQ(TakeText(rest), "-7.41092396");
  EXPECT_EQ(rest, "");
}

TEST(PackedNumbers, EverySizeIsReadWhole) {
  for (std::size_t size = SK_PackedNumber::kSmallest; size <= 8; ++size) {
    for (unsigned const flags : {0U, 1U, 2U, 3U}) {
      std::string bytes(1, static_cast<char>(0x80U | flags << 5U | size));
      std::uint64_t expected = 0;
      for (std::size_t i = 0; i != size; ++i) {
        bytes += static_cast<char>(0x91 + i * 17);
        expected |= (0x91 + std::uint64_t{i} * 17) % 256 << (8 * i);
      }
      std::size_t taken = 0;
      SK_PackedNumber const number = TakeFrom(bytes + "\xFF\xFF\xFF\xFF\xFF", taken);
      EXPECT_EQ(number.fixed, expected) << size;
      EXPECT_EQ(number.isFine, flags % 2 != 0) << size;
      EXPECT_EQ(number.isNegative, flags / 2 != 0) << size;
      EXPECT_EQ(taken, 1 + size);
      // With nothing behind them.
      EXPECT_EQ(TakeFrom(bytes, taken).fixed, expected) << size;
      EXPECT_EQ(taken, 1 + size);
    }
  }
}

TEST(PackedNumbers, CutAnywhereIsANumberOfZeroAndTheEnd) {
  for (double const value : {-0.5, 43.5, 20000.5, -8388607.5, -0.123456789, 97.123456789}) {
    std::string const bytes = Pack(value);
    for (std::size_t left = 1; left != bytes.size(); ++left) {
      std::size_t taken = 0;
      SK_PackedNumber const number = TakeFrom(bytes.substr(0, left), taken);
      EXPECT_EQ(number.fixed, 0u) << value << ' ' << left;
      EXPECT_FALSE(number.isNegative) << value << ' ' << left;
      EXPECT_EQ(taken, left);
    }
  }
}

TEST(PackedNumbers, SizeThatNobodyStoresIsANumberOfZeroAndTheEnd) {
  for (unsigned head = 0x80; head <= 0xFF; ++head) {
    if ((head & 15U) >= 4 && (head & 15U) <= 8) {
      continue;
    }
    std::string const bytes = static_cast<char>(head) + std::string("1234567890abcdef");
    std::size_t taken = 0;
    SK_PackedNumber const number = TakeFrom(bytes, taken);
    EXPECT_EQ(number.fixed, 0u) << head;
    EXPECT_FALSE(number.isNegative) << head;
    EXPECT_EQ(taken, bytes.size()) << head;
  }
}

// Whatever the first byte and the size: as it is taken, if nothing is left behind.
TEST(PackedNumbers, AreReadIfThereIsNothingElse) {
  std::string const behind = "\x91\xA2\xB3\xC4\xD5\xE6\xF7\x88\x99";
  for (unsigned head = 0; head != 256; ++head) {
    for (std::size_t size = 0; size <= behind.size(); ++size) {
      std::string const bytes = static_cast<char>(head) + behind.substr(0, size);
      SK_PackedNumber number;
      bool const isOne = head >= 0x80 && (head & 15U) == size && size >= 4 && size <= 8;
      ASSERT_EQ(SK_PackedNumber::Read(bytes, number), isOne) << head << ' ' << size;
      std::size_t taken = 0;
      if (isOne) {
        SK_PackedNumber const same = TakeFrom(bytes, taken);
        EXPECT_EQ(number.fixed, same.fixed);
        EXPECT_EQ(number.isFine, same.isFine);
        EXPECT_EQ(number.isNegative, same.isNegative);
        EXPECT_EQ(taken, bytes.size());
      }
    }
  }
  SK_PackedNumber number;
  EXPECT_FALSE(SK_PackedNumber::Read("", number));
}

// Nobody stores these.
TEST(PackedNumbers, FineOnesWithoutDecimalsHaveTexts) {
  std::string bytes = "\xA4";
  bytes += std::string(4, '\0');
  std::size_t taken = 0;
  EXPECT_EQ(TextOf(TakeFrom(bytes, taken)), "0");
}

TEST(PackedNumbers, TextsAndNothingAreNone) {
  EXPECT_FALSE(SK_PackedNumber::Begins(""));
  for (unsigned first = 0; first != 256; ++first) {
    EXPECT_EQ(SK_PackedNumber::Begins(std::string(1, static_cast<char>(first))), first >= 128) << first;
  }
}

}  // namespace
}  // namespace SK_PLUGIN
