/// What samples of numbers and of arrays of them consist of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_FixedNumber.h"
#include "SerializerBuffer.h"
#include "SerializerSample.h"
#include "SerializerSampleParts.h"

namespace SK_PLUGIN {

/// How many bytes behind a number, or a padding, may change.
inline constexpr std::size_t kBehind = 8;

/// What a number and its stores take behind each other: sign, digits, point, a quote, and what changes behind.
inline constexpr std::size_t kFieldRoom = 1 + NumberField::kMostIntegers + 1 + NumberField::kMostDecimals + 1 + kBehind;

/// The digits of a number with eight decimals, as numbers; the lowest byte is the first.
struct FixedDigits {
  std::uint64_t integer;
  std::uint64_t decimals;

  explicit FixedDigits(std::uint64_t fixed) {
    constexpr std::uint64_t kTenToEight = 100000000;
    std::uint64_t const whole = fixed / kTenToEight;
    integer = DigitsOfMostlyThree(static_cast<std::uint32_t>(whole));
    decimals = SK_NAMESPACE_INT::DigitsOfValue(static_cast<std::uint32_t>(fixed - whole * kTenToEight));
  }
};

/// To where there is room for it, with a narrow pattern in which the digits fit. Gives the end.
[[gnu::always_inline]] inline char* PutPadded(char* p, FixedDigits const& digits, bool isNegative,
                                              NumberField const& field) {
  using SK_NAMESPACE_INT::StoreEight;
  *p = isNegative ? '-' : '+';
  p += static_cast<unsigned>(field.pattern.isSigned) | static_cast<unsigned>(isNegative);
  StoreEight(p, (digits.integer | kZeroes) >> field.integerShift);
  p += field.pattern.digitsInteger;
  *p = '.';
  StoreEight(p + 1, digits.decimals | kZeroes);
  StoreEight(p + 1 + kFixedDecimals, kZeroes);
  StoreEight(p + 1 + kFixedDecimals + kFixedDecimals, kZeroes);
  return p + field.sizeBehind;
}

/// The number that `value` begins with, packed or as a text up to a comma, which is taken off it, between quotes; a
/// comma in front of them if wanted.
void AppendElement(SerializerBuffer& out, std::string_view& value, NumberField const& field, bool hasComma);

}  // namespace SK_PLUGIN
