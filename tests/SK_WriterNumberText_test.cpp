#include "SK_WriterNumberText.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <limits>
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

// Each kind gets as many; a build for debugging is too slow for the whole.
#ifdef NDEBUG
constexpr int kValuesOfAKind = 250000;
#else
constexpr int kValuesOfAKind = 15000;
#endif

/// Compares both texts of a value and of its negative; stops a test at the first difference.
class Comparison {
 public:
  bool Agrees(double value) { return AgreesOn(value) && AgreesOn(-value); }

 private:
  bool AgreesOn(double value) {
    std::string const expected = mStreamText.Of(value);
    SK_WriterNumberText const found(value);
    EXPECT_EQ(found.View(), expected) << std::hexfloat << value;
    return found.View() == expected;
  }

  StreamText mStreamText;
};

class WriterNumberTextOf : public testing::TestWithParam<NumberKind> {};

TEST_P(WriterNumberTextOf, IsTheTextOfAStream) {
  Random random(2026);
  Comparison comparison;
  // Each value and its negative.
  for (int i = 0; i < kValuesOfAKind / 2; ++i) {
    ASSERT_TRUE(comparison.Agrees(GetParam().make(random)));
  }
}

INSTANTIATE_TEST_SUITE_P(Writer, WriterNumberTextOf, testing::ValuesIn(senmark_test::kNumberKinds),
                         [](auto const& kind) { return std::string(kind.param.name); });

TEST(WriterNumberText, PowersOfTenAndTheirNeighboursAreTheTextOfAStream) {
  Comparison comparison;
  for (int exponent = -323; exponent <= 308; ++exponent) {
    for (std::uint64_t multiple = 1; multiple < 10; ++multiple) {
      double const power = std::strtod((std::to_string(multiple) + "e" + std::to_string(exponent)).c_str(), nullptr);
      for (std::uint64_t i = 0; i < 17; ++i) {
        ASSERT_TRUE(comparison.Agrees(FromBits(BitsOf(power) + i - 8)));
      }
    }
  }
}

// All of them up to about one, and from there on some of all sizes.
TEST(WriterNumberText, NumbersOfSixDecimalsAreTheTextOfAStream) {
  Comparison comparison;
#ifdef NDEBUG
  constexpr std::uint64_t kEndOfAll = 1 << 20;
#else
  constexpr std::uint64_t kEndOfAll = 1 << 15;
#endif
  for (std::uint64_t millionths = 0; millionths < 1100000000; millionths += 1 + millionths / kEndOfAll * 997) {
    ASSERT_TRUE(comparison.Agrees(static_cast<double>(millionths) / 1e6));
  }
}

TEST(WriterNumberText, CountsTheCharactersOnBothSidesOfThePoint) {
  struct Row {
    double value;
    std::size_t integer;
    std::size_t decimal;
  };
  Row const rows[] = {{0, 1, 0},         {-0.0, 1, 0},         {7, 1, 0},          {-250, 3, 0},
                      {0.5, 1, 1},       {-12.25, 2, 2},       {999.999999, 3, 6}, {0.000101, 1, 6},
                      {0.0001, 1, 4},    {9.95, 1, 15},        {1000.5, 4, 1},     {1e15, 16, 0},
                      {0.1234567, 1, 7}, {1e16, 5, 0},         {1e-7, 5, 0},       {1.25e-5, 1, 6},
                      {-1.5e123, 1, 6},  {std::nan(""), 3, 0}, {0.00099, 1, 5},    {100, 3, 0}};
  for (Row const& row : rows) {
    SK_WriterNumberText const text(row.value);
    EXPECT_EQ(text.Counts().integer, row.integer) << text.View();
    EXPECT_EQ(text.Counts().decimal, row.decimal) << text.View();
  }
}

TEST(WriterNumberText, PowersOfTwoAndTheirNeighboursAreTheTextOfAStream) {
  Comparison comparison;
  for (int exponent = -1074; exponent <= 1023; ++exponent) {
    std::uint64_t const bits = BitsOf(std::ldexp(1.0, exponent));
    for (std::uint64_t i = 0; i < 9; ++i) {
      ASSERT_TRUE(comparison.Agrees(FromBits(bits + i - 4)));
    }
  }
}

// Of all numbers that are scaled these lie nearest to halfway between two texts, on each side of it: from 2^-58.6 to
// 2^-53 of the last digit. Found by Euclid's algorithm on the multiples of the powers of five.
double const kNearestToTies[] = {
    0x1.070b15bfbaee0p-71,  0x1.48cddb2fa9a98p-68,  0x1.9b0151fb9413ep-65,  0x1.a4de8932c4b00p-75,
    0x1.01a103abb2e7cp-49,  0x1.420944969fa1bp-46,  0x1.e74123910300ep-98,  0x1.f6debb467567ep-131,
    0x1.55d0895ee92a3p-83,  0x1.8f1fa06dd6a7ep-79,  0x1.6d255f9703514p-84,  0x1.c86eb77cc4259p-81,
    0x1.c8b016999b9f7p-41,  0x1.d81a45d51662bp-54,  0x1.ad5e4a9729b62p-121, 0x1.827185818c5bap-48,
    0x1.618596be30fe5p-26,  0x1.0e337464faa08p-58,  0x1.51c0517e3948ap-55,  0x1.b05253d4c4340p-62,
    0x1.4ec327662f838p-128, 0x1.a273f13fbb646p-125, 0x1.f8497211f6a8ep-107, 0x1.76ca8be2021d6p-123,
    0x1.8355f7eae78d9p-105, 0x1.2d73088f4050ap-93,  0x1.98b8f10cee22fp-35,  0x1.bb033a44739c5p-118,
    0x1.c42c8cd6e078fp-92,  0x1.2d73088f4050ap-94,  0x1.4e6b045a21230p-113, 0x1.a205c570a96bcp-110,
    0x1.6c362a3dc506fp-114, 0x1.744685e678d2ep-53,  0x1.db3bcf1f17c45p-73,  0x1.52e548405c99fp-27,
    0x1.0ef33a409ad6bp-59,  0x1.e89befe23d5d1p-64,  0x1.288cc35b50403p-123, 0x1.daea6ce37cc13p-98,
    0x1.9f6e4768c83fbp-50,  0x1.e3f2094c514eep-122, 0x1.847a35cf1d785p-84,  0x1.3cf4d2839e036p-26,
    0x1.1e8b734aa3747p-79,  0x1.ca78b8776bed8p-83,  0x1.398454147f10dp-108, 0x1.f5a0868731b48p-112};

TEST(WriterNumberText, NeighboursOfTiesAreTheTextOfAStream) {
  Comparison comparison;
  for (double const value : kNearestToTies) {
    EXPECT_TRUE(comparison.Agrees(value));
  }
}

struct Written {
  char const* name;
  double value;
  char const* text;
};

void PrintTo(Written const& row, std::ostream* out) {
  *out << row.text;
}

double const kInfinity = std::numeric_limits<double>::infinity();
double const kNaN = std::numeric_limits<double>::quiet_NaN();

Written const kWritten[] = {
    {"Zero", 0.0, "0"},
    {"NegativeZero", -0.0, "-0"},
    {"OneDigit", 7.0, "7"},
    {"ZeroesOfIntegersStay", 1000.0, "1000"},
    {"EightDigits", 99999999.0, "99999999"},
    {"NineDigits", 100000000.0, "100000000"},
    {"LastIntegerByItself", 9007199254740991.0, "9007199254740991"},
    {"FirstBeyond", 9007199254740992.0, "9007199254740992"},
    {"LastWithoutExponent", 9999999999999998.0, "9999999999999998"},
    {"FirstWithExponent", 1e16, "1e+16"},
    {"LargeExponentLosesItsZero", 1.5e20, "1.5e+2"},
    {"ThreeDigitsOfExponent", 1.5e123, "1.5e+123"},
    {"ThreeDigitsLoseTwoZeroes", 2.5e300, "2.5e+3"},
    {"ExponentKeepsItsZeroWithoutPoint", 1e300, "1e+300"},
    {"Shortest", 0.5, "0.5"},
    {"NotTheShortestText", 9.95, "9.949999999999999"},
    {"SumOfDecimals", 0.1 + 0.2, "0.3"},
    {"ThreeZeroesBehindThePoint", 0.000125, "0.000125"},
    {"SmallNumberWithExponent", 0.0000125, "1.25e-05"},
    {"SmallExponentLosesItsZero", 1.25e-10, "1.25e-1"},
    {"SmallExponentKeepsItsZeroWithoutPoint", 1e-10, "1e-10"},
    {"SmallestScaled", 0x1p-132, "1.836709923159824e-4"},
    {"RoundedUpToTheNextPower", 0.99999999999999994, "0.9999999999999999"},
    {"CarriedThroughAllDigits", 9.99999999999999954e-08, "1e-07"},
    {"TieGoesToEvenBelow", 1125899906842624.25, "1125899906842624"},
    {"HalfGoesToEvenBelow", 1125899906842624.5, "1125899906842624"},
    {"HalfGoesToEvenAbove", 1125899906842625.5, "1125899906842626"},
    {"ZeroesOfTheIntegerPartStay", 1125899906842620.25, "1125899906842620"},
    {"SmallestDenormal", 4.9406564584124654e-324, "4.940656458412465e-324"},
    {"Largest", std::numeric_limits<double>::max(), "1.797693134862316e+308"},
    {"Infinity", kInfinity, "inf"},
    {"NegativeInfinity", -kInfinity, "-inf"},
    {"NotANumber", kNaN, "nan"},
    {"NotANumberWithSign", std::copysign(kNaN, -1.0), "-nan"},
};

class WrittenNumber : public testing::TestWithParam<Written> {};

TEST_P(WrittenNumber, HasItsText) {
  EXPECT_EQ(SK_WriterNumberText(GetParam().value).View(), GetParam().text);
  EXPECT_EQ(StreamText().Of(GetParam().value), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(Writer, WrittenNumber, testing::ValuesIn(kWritten),
                         [](auto const& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace SK_PLUGIN
