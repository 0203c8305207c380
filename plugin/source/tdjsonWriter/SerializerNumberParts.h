/// What samples of numbers and of arrays of them consist of.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_FixedNumber.h"
#include "SK_PackedNumber.h"
#include "SK_SixteenDigits.h"
#include "SerializerBuffer.h"
#include "SerializerSample.h"
#include "SerializerSampleParts.h"

namespace SK_PLUGIN {

/// How many bytes behind a number, or a padding, may change.
inline constexpr std::size_t kBehind = 8;

/// What a number and its stores take behind each other: sign, digits, point, a quote, and what changes behind.
inline constexpr std::size_t kFieldRoom = 1 + NumberField::kMostIntegers + 1 + NumberField::kMostDecimals + 1 + kBehind;

/// The digits of a packed number, as numbers; the lowest byte is the first.
struct PackedDigits {
  std::uint64_t integer;
  std::uint64_t decimals;
  std::uint64_t finer;  ///< the next decimals

  explicit PackedDigits(SK_PackedNumber const& number) {
    using SK_NAMESPACE_INT::DigitsOfBoth;
    using SK_NAMESPACE_INT::SixteenDigits;
    constexpr std::uint64_t kTenToEight = 100000000;
    if (number.isFine) {
      constexpr std::uint64_t kTenToSeven = kTenToEight / 10;
      std::uint64_t const first = number.fixed / kTenToSeven;
      std::uint64_t const last = (number.fixed - first * kTenToSeven) * 10;
      std::uint64_t const whole = first / kTenToEight;
      SixteenDigits const digits =
          DigitsOfBoth(static_cast<std::uint32_t>(first - whole * kTenToEight), static_cast<std::uint32_t>(last));
      integer = DigitsOfThree(static_cast<std::uint32_t>(whole));
      decimals = digits.first;
      finer = digits.last;
      return;
    }
    std::uint64_t const whole = number.fixed / kTenToEight;
    SixteenDigits const digits =
        DigitsOfBoth(static_cast<std::uint32_t>(whole), static_cast<std::uint32_t>(number.fixed - whole * kTenToEight));
    integer = digits.first;
    decimals = digits.last;
    finer = 0;
  }
};

/// To where there is room for it, with a narrow pattern in which the digits fit. Gives the end.
[[gnu::always_inline]] inline char* PutPadded(char* p, PackedDigits const& digits, bool isNegative,
                                              NumberField const& field) {
  using SK_NAMESPACE_INT::StoreEight;
  static_assert('-' == '+' + 2, "so that it takes no decision");
  *p = static_cast<char>('+' + 2 * static_cast<unsigned>(isNegative));
  p += static_cast<unsigned>(field.pattern.isSigned) | static_cast<unsigned>(isNegative);
  StoreEight(p, (digits.integer | kZeroes) >> field.integerShift);
  p += field.pattern.digitsInteger;
  *p = '.';
  StoreEight(p + 1, digits.decimals | kZeroes);
  StoreEight(p + 1 + kFixedDecimals, digits.finer | kZeroes);
  StoreEight(p + 1 + kFixedDecimals + kFixedDecimals, kZeroes);
  return p + field.sizeBehind;
}

/// The number that `value` begins with, packed or as a text up to a comma, which is taken off it, between quotes; a
/// comma in front of them if wanted.
void AppendElement(SerializerBuffer& out, std::string_view& value, NumberField const& field, bool hasComma);

}  // namespace SK_PLUGIN
