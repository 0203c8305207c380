/// Digits of a text, eight at once.
#pragma once

#include <cstdint>
#include <cstring>

namespace senmark_motion {

/// The values of eight characters, taken for digits, the first one lowest; above 9 for those that are none.
inline std::uint64_t DigitsAt(char const* p) {
  constexpr std::uint64_t kZeroCharacters = 0x3030303030303030U;
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, p, sizeof(bytes));
  if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) {
    bytes = __builtin_bswap64(bytes);
  }
  return bytes ^ kZeroCharacters;
}

/// How many of the characters are digits in front of the first that is none; 7 for more.
inline unsigned CountDigits(std::uint64_t digits) {
  constexpr std::uint64_t kBeyondNine = 0x7676767676767676U;
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  constexpr std::uint64_t kLastOne = std::uint64_t{1} << 63U;  // so that there is one in any case
  // What a sum carries over goes to a later character.
  std::uint64_t const others = (((digits + kBeyondNine) | digits) & kHighBits) | kLastOne;
  return static_cast<unsigned>(__builtin_ctzll(others)) / 8;
}

/// The number that the first of eight digits make, 1 to 8 of them. What stands behind those may be anything.
inline std::uint32_t ValueOfFirst(std::uint64_t digits, unsigned count) {
  // As the last ones of eight, with zeroes in front. Then pairs, fours, and all: each product leaves the sum of two
  // neighbours in the upper one.
  digits <<= 64 - 8 * count;
  digits = digits * (1 + (10U << 8U)) >> 8U & 0x00FF00FF00FF00FFU;
  digits = digits * (1 + (100U << 16U)) >> 16U & 0x0000FFFF0000FFFFU;
  return static_cast<std::uint32_t>(digits * (1 + (std::uint64_t{10000} << 32U)) >> 32U);
}

}  // namespace senmark_motion
