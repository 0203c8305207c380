#include "SK_FixedNumber.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>

#include "NumberKinds.h"
#include "NumberTexts.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::BitsOf;
using senmark_test::FromBits;
using senmark_test::NumberKind;
using senmark_test::Random;
using senmark_test::StreamText;

#ifdef NDEBUG
constexpr int kValuesOfAKind = 100000;
constexpr int kNumbersOfABinade = 100;
#else
constexpr int kValuesOfAKind = 10000;
constexpr int kNumbersOfABinade = 10;
#endif

/// What the text of a number says, digit by digit: false for one with an exponent or more than eight decimals.
bool FixedOfText(std::string const& text, std::uint64_t& fixed) {
  if (text.find_first_not_of("0123456789.") != std::string::npos) {
    return false;
  }
  std::size_t const point = text.find('.');
  std::string const decimals = point == std::string::npos ? "" : text.substr(point + 1);
  if (decimals.size() > 8) {
    return false;
  }
  fixed = std::stoull(text.substr(0, point) + decimals + std::string(8 - decimals.size(), '0'));
  return true;
}

class FixedNumber : public testing::Test {
 protected:
  /// From the first to the last size that is taken, and 0, the answer is that of the text.
  bool AgreesOn(double value) {
    std::uint64_t expected = 0;
    bool const isInRange = value == 0 || (value >= 0x1p-14 && value < 0x1p23);
    bool const isFixed = isInRange && FixedOfText(mStreamText.Of(value), expected);
    std::uint64_t fixed = 0;
    bool const agrees = ToFixed(BitsOf(value), fixed) == isFixed && (!isFixed || fixed == expected);
    EXPECT_TRUE(agrees) << std::hexfloat << value << ' ' << mStreamText.Of(value) << ' ' << fixed;
    mTaken += isFixed ? 1 : 0;
    mRefused += isFixed ? 0 : 1;
    return agrees;
  }
  /// Also on those that are up to two units of the last place away.
  bool AgreesAround(double value) {
    bool agrees = AgreesOn(value);
    for (std::uint64_t i = 1; agrees && i <= 2; ++i) {
      agrees = AgreesOn(FromBits(BitsOf(value) + i)) && (BitsOf(value) < i || AgreesOn(FromBits(BitsOf(value) - i)));
    }
    return agrees;
  }

  StreamText mStreamText;
  int mTaken = 0;
  int mRefused = 0;
};

class FixedNumberOf : public FixedNumber, public testing::WithParamInterface<NumberKind> {};

TEST_P(FixedNumberOf, IsTheIntegerOfItsText) {
  Random random(77);
  for (int i = 0; i != kValuesOfAKind; ++i) {
    double const value = std::fabs(GetParam().make(random));
    ASSERT_TRUE(AgreesOn(value));
  }
}

INSTANTIATE_TEST_SUITE_P(Writer, FixedNumberOf, testing::ValuesIn(senmark_test::kNumberKinds),
                         [](auto const& kind) { return std::string(kind.param.name); });

// Numbers of so many decimals in each binade that is taken and in those next to them, and their neighbours.
class FixedNumberDecimals : public FixedNumber, public testing::WithParamInterface<int> {};

TEST_P(FixedNumberDecimals, NeighboursOfDecimalsAreToldApart) {
  Random random(static_cast<unsigned>(GetParam()));
  double const power = senmark_test::PowerOfTen(GetParam());
  for (int binade = -15; binade <= 24; ++binade) {
    for (int i = 0; i != kNumbersOfABinade; ++i) {
      double const value = std::nearbyint(senmark_test::InBinades(random, binade, 1) * power) / power;
      ASSERT_TRUE(AgreesAround(value));
    }
  }
  if (GetParam() <= 8) {
    EXPECT_GT(mTaken, kNumbersOfABinade);
  }
  EXPECT_GT(mRefused, kNumbersOfABinade);
}

INSTANTIATE_TEST_SUITE_P(Writer, FixedNumberDecimals, testing::Range(0, 13));

TEST_F(FixedNumber, PowersAndTheirNeighboursAreToldApart) {
  for (int exponent = -12; exponent <= 12; ++exponent) {
    for (int multiple = 1; multiple != 10; ++multiple) {
      double const power = std::stod(std::to_string(multiple) + "e" + std::to_string(exponent));
      for (std::uint64_t i = 0; i != 41; ++i) {
        ASSERT_TRUE(AgreesOn(FromBits(BitsOf(power) + i - 20)));
      }
    }
  }
  for (int exponent = -40; exponent <= 60; ++exponent) {
    ASSERT_TRUE(AgreesAround(std::ldexp(1.0, exponent)));
  }
}

// An odd multiple of 2^-9 has nine decimals, the last one a 5: it is as far from one integer as from the next.
TEST_F(FixedNumber, TiesAreNone) {
  for (std::uint64_t multiple = 1; multiple < (std::uint64_t{1} << 32U); multiple += 2 + multiple / 512 * 2) {
    double const value = std::ldexp(static_cast<double>(multiple), -9);
    ASSERT_TRUE(AgreesAround(value));
    std::uint64_t fixed = 0;
    ASSERT_FALSE(ToFixed(BitsOf(value), fixed)) << value;
  }
}

// Half a unit of the sixteenth digit away, from inside and from outside, at every decimal exponent.
TEST_F(FixedNumber, HalfAUnitOfTheSixteenthDigitIsTooFar) {
  Random random(16);
  for (int exponent = -4; exponent <= 6; ++exponent) {
    double const half = 0.5 * senmark_test::PowerOfTen(exponent - 15);
    int const near = mTaken;
    for (int i = 0; i != kNumbersOfABinade; ++i) {
      double const least = senmark_test::PowerOfTen(exponent);
      double const any = least * (1 + static_cast<double>(random() % 9000000) / 1e6);
      double const value = std::nearbyint(any * 1e8) / 1e8;
      for (double const side : {-half, half}) {
        ASSERT_TRUE(AgreesAround(value + side));
        ASSERT_TRUE(AgreesAround(value + 2 * side));
      }
    }
    EXPECT_GT(mTaken, near) << exponent;
  }
}

TEST_F(FixedNumber, WhatIsNoFiniteNumberIsNone) {
  for (double const value : {HUGE_VAL, std::nan(""), 0x1p23, 0x1p1023, 0x1p-15, 0x1p-1074, 6.103515624999999e-05}) {
    std::uint64_t fixed = 0;
    EXPECT_FALSE(ToFixed(BitsOf(value), fixed)) << value;
  }
  std::uint64_t fixed = 5;
  EXPECT_TRUE(ToFixed(0, fixed));
  EXPECT_EQ(fixed, 0u);
}

}  // namespace
}  // namespace SK_PLUGIN
