// Numbers as a file may hold them, held against the writer's own text of them.
#include "senmark/module/Number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "SK_NumberAnalysis.h"

namespace senmark::kit {
namespace {

std::string WriterText(double value) {
  std::string text;
  SK_PLUGIN::removeTrailingZeroes(text, value);
  return text;
}

TEST(KitNumber, RoundsToTheDecimalsThatAreKept) {
  struct Row {
    double value;
    unsigned decimals;
    char const* text;
  };
  Row const rows[] = {
      {0, 4, "0"},
      {-0.0, 4, "0"},
      {12.34567, 4, "12.3457"},
      {-12.34567, 4, "-12.3457"},
      {0.5, 0, "1"},
      {-0.5, 0, "-1"},
      {2.5, 0, "3"},
      // The largest double below a half.
      {0.49999999999999994, 0, "0"},
      {-0.4, 0, "0"},
      {0.1 + 0.2, 15, "0.3"},
      {1e-4, 15, "0.0001"},
      {0.00005, 15, "0.0001"},
      {-0.00005, 15, "-0.0001"},
      {0.000049, 15, "0"},
      {1e-300, 15, "0"},
      {0.0000999, 4, "0.0001"},
      {0.0000999, 3, "0"},
      {1e15, 4, "1000000000000000"},
      {9999999999999998.0, 0, "9999999999999998"},
      {-9999999999999998.0, 15, "-9999999999999998"},
      {123456789.123456789, 4, "123456789.1235"},
      {0.1234567890123456, 99, "0.123456789012346"},
      {4503599627370495.5, 0, "4503599627370496"},
      {4503599627370494.5, 0, "4503599627370495"},
      // Their products with a power of ten are a half off.
      {4.4, 15, "4.4"},
      {-4.4, 15, "-4.4"},
      {4.1, 99, "4.1"},
      {300000000000.7, 4, "300000000000.7"},
      {2251799813685.249, 3, "2251799813685.249"},
      {2251799813685.247, 3, "2251799813685.247"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(WriterText(Rounded(row.value, row.decimals)), row.text) << row.value << ' ' << row.decimals;
  }
}

TEST(KitNumber, WhatCannotBeReadBackIsRefused) {
  // The writer's texts of these are why.
  EXPECT_EQ(WriterText(1e16), "1e+16");
  EXPECT_EQ(WriterText(0.00001), "1e-05");
  EXPECT_EQ(WriterText(1.5e20), "1.5e+2");
  for (double const value : {1e16, -1e16, 1e300, std::numeric_limits<double>::infinity(),
                             -std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
    try {
      Rounded(value, 4);
      ADD_FAILURE() << value;
    } catch (Failure const& failure) {
      EXPECT_EQ(failure.code(), Failure::kRefused);
      EXPECT_STREQ(failure.what(), std::isfinite(value) ? "a number of 1e16 or more" : "NaN or infinity");
    }
  }
}

double AnyDouble(std::mt19937_64& random, int kind) {
  if (kind % 2 == 0) {
    std::uint64_t const bits = random();
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
  }
  // Of the sizes that sensors measure: all bits alike hardly ever give one.
  double const exponent = static_cast<double>(random() % 23) - 6;
  double const mantissa =
      static_cast<double>(random()) / static_cast<double>(std::numeric_limits<std::uint64_t>::max());
  return (mantissa * 2 - 1) * std::pow(10.0, exponent);
}

TEST(KitNumber, NoTextHasAnExponentAndNoneIsFurtherOffThanStated) {
  std::mt19937_64 random(20240501);
  int taken = 0;
  for (int i = 0; i != 2000000; ++i) {
    double const value = AnyDouble(random, i);
    unsigned const decimals = static_cast<unsigned>(random() % 16);
    double rounded = 0;
    try {
      rounded = Rounded(value, decimals);
    } catch (Failure const&) {
      ASSERT_FALSE(std::fabs(value) < 1e16) << value;
      continue;
    }
    ++taken;
    std::string const text = WriterText(rounded);
    ASSERT_EQ(text.find_first_not_of("-.0123456789"), std::string::npos) << value << " as " << text;
    ASSERT_NE(text, "-0");
    double const half = 0.5 * std::pow(10.0, -static_cast<double>(decimals));
    double const sixteenth = value == 0 ? 0 : 0.5 * std::pow(10.0, std::floor(std::log10(std::fabs(value))) - 15);
    double stated = std::max(half, sixteenth);
    if (std::fabs(value) < 1e-4) {
      stated = std::max(stated, 0.00005);
    }
    // Beside it, what the arithmetic of doubles itself leaves open.
    double const slack = std::fabs(value) * std::numeric_limits<double>::epsilon();
    ASSERT_LE(std::fabs(std::stod(text) - value), stated + slack) << value << " as " << text << ' ' << decimals;
    // With 15 digits or fewer, what is read is what was rounded, to the last bit.
    if (std::fabs(value) * std::pow(10.0, decimals) < 1e15) {
      ASSERT_EQ(std::stod(text), rounded) << value << " as " << text << ' ' << decimals;
    }
  }
  EXPECT_GT(taken, 1000000);
}

/// The number as a text, with as many decimals as it states.
std::string TextOf(Decimal const& number) {
  std::string text = std::to_string(number.digits < 0 ? -number.digits : number.digits);
  text.insert(0, text.size() > number.decimals ? 0 : number.decimals + 1 - text.size(), '0');
  text.insert(text.size() - number.decimals, number.decimals == 0 ? "" : ".");
  return (number.digits < 0 ? "-" : "") + text;
}

/// The double next to the text, rounded like any other: bit for bit.
void ExpectRoundedLikeItsText(Decimal const& number, unsigned kept) {
  double const value = std::strtod(TextOf(number).c_str(), nullptr);
  double const expected = Rounded(value, kept);
  double const found = Rounded(number, kept);
  ASSERT_EQ(found, expected) << TextOf(number) << ' ' << kept;
  ASSERT_FALSE(std::signbit(found) && found == 0) << TextOf(number) << ' ' << kept;
}

TEST(KitNumber, DecimalsAreRoundedLikeTheirTexts) {
  struct Row {
    Decimal number;
    unsigned kept;
    char const* text;
  };
  constexpr std::int64_t kMost = Decimal::kDigitsEnd - 1;
  Row const rows[] = {
      {{0, 0}, 0, "0"},
      {{0, 15}, 4, "0"},
      {{125, 1}, 4, "12.5"},
      {{-125, 1}, 4, "-12.5"},
      {{125, 1}, 0, "13"},
      {{-125, 1}, 0, "-13"},
      {{1234567, 5}, 4, "12.3457"},
      {{1234567, 5}, 5, "12.34567"},
      {{1234567, 5}, 6, "12.34567"},
      {{1234567, 5}, 99, "12.34567"},
      {{1, 4}, 4, "0.0001"},
      {{-1, 4}, 15, "-0.0001"},
      {{1, 4}, 3, "0"},
      // Closer to 0 than numbers can be, with as many decimals as are kept.
      {{99, 6}, 6, "0.0001"},
      {{5, 5}, 5, "0.0001"},
      {{-5, 5}, 15, "-0.0001"},
      {{49, 6}, 6, "0"},
      {{-49, 6}, 6, "0"},
      {{1, 15}, 15, "0"},
      {{101, 6}, 6, "0.000101"},
      {{kMost, 0}, 0, "999999999999999"},
      {{-kMost, 0}, 15, "-999999999999999"},
      {{kMost, 15}, 15, "0.999999999999999"},
      {{kMost, 15}, 14, "1"},
      {{kMost, 1}, 0, "100000000000000"},
      {{kMost, 7}, 7, "99999999.9999999"},
      {{97, 1}, 4, "9.699999999999999"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(WriterText(Rounded(row.number, row.kept)), row.text) << TextOf(row.number) << ' ' << row.kept;
    ASSERT_NO_FATAL_FAILURE(ExpectRoundedLikeItsText(row.number, row.kept));
  }
}

TEST(KitNumber, AnyDecimalIsRoundedLikeItsText) {
  std::mt19937_64 random(6);
  for (int i = 0; i != 300000; ++i) {
    // Of any count of digits up to all fifteen.
    std::int64_t end = 10;
    for (std::uint64_t more = random() % 15; more != 0; --more) {
      end *= 10;
    }
    Decimal number;
    number.digits = static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(end)) * (i % 2 == 0 ? 1 : -1);
    number.decimals = static_cast<unsigned>(random() % 16);
    ASSERT_NO_FATAL_FAILURE(ExpectRoundedLikeItsText(number, static_cast<unsigned>(random() % 18)));
  }
  // The ends, with each count of decimals.
  for (std::int64_t const digits :
       {Decimal::kDigitsEnd - 1, 1 - Decimal::kDigitsEnd, std::int64_t{1}, std::int64_t{-1}}) {
    for (unsigned decimals = 0; decimals <= Decimal::kMostDecimals; ++decimals) {
      for (unsigned kept = 0; kept != 18; ++kept) {
        ASSERT_NO_FATAL_FAILURE(ExpectRoundedLikeItsText({digits, decimals}, kept));
      }
    }
  }
}

}  // namespace
}  // namespace senmark::kit
