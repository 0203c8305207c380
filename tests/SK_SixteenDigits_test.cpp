#include "SK_SixteenDigits.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

namespace SK_NAMESPACE_INT {
namespace {

std::string TextOf(SixteenDigits const& digits) {
  char text[16];
  StoreEight(text, digits.first | kEveryByte * '0');
  StoreEight(text + 8, digits.last | kEveryByte * '0');
  return std::string(text, sizeof(text));
}

void Expect(std::uint32_t first, std::uint32_t last) {
  char expected[32];
  std::snprintf(expected, sizeof(expected), "%08u%08u", first, last);
  ASSERT_EQ(TextOf(DigitsOfBoth(first, last)), expected);
  ASSERT_EQ(TextOf(DigitsOneByOne(first, last)), expected);
}

// What goes wrong in one of two halves of four digits does so whatever the other is.
TEST(SixteenDigits, AreThoseOfEveryFour) {
  constexpr std::uint32_t kFours = 10000;
  for (std::uint32_t i = 0; i != kFours; ++i) {
    std::uint32_t const other = kFours - 1 - i;
    Expect(i * kFours + other, other * kFours + i);
    Expect(other, i);
    Expect(other * kFours, i * kFours);
  }
}

TEST(SixteenDigits, AreThoseOfAnyValues) {
  std::mt19937 random(1);
  std::uniform_int_distribution<std::uint32_t> below(0, 99999999);
  for (int i = 0; i != 1000000; ++i) {
    Expect(below(random), below(random));
  }
}

// A quotient by 10,000 that is a product and a shift is one less or more at a multiple first.
TEST(SixteenDigits, AreThoseAroundEveryMultipleOfTenThousand) {
  for (std::uint32_t i = 10000; i <= 99990000; i += 10000) {
    Expect(i - 1, i);
    Expect(i, i - 1);
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
