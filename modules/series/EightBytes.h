/// Eight bytes of a text at once.
#pragma once

#include <cstdint>
#include <cstring>

namespace senmark_series {

/// The first byte lowest, on every processor.
inline std::uint64_t LoadEight(char const* p) {
  std::uint64_t bytes = 0;
  std::memcpy(&bytes, p, sizeof(bytes));
  if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) {
    bytes = __builtin_bswap64(bytes);
  }
  return bytes;
}

/// Not of 0.
inline unsigned LowestBit(std::uint64_t bits) {
  return static_cast<unsigned>(__builtin_ctzll(bits));
}

/// The values of `count` characters, 1 to 8, taken for digits: the last one highest, and zeroes below the first one.
/// Reads eight bytes.
inline std::uint64_t DigitsAt(char const* p, unsigned count) {
  constexpr std::uint64_t kZeroCharacters = 0x3030303030303030U;
  return (LoadEight(p) ^ kZeroCharacters) << (64 - 8 * count);
}

/// Whether `DigitsAt` came upon digits alone.
inline bool AreDigits(std::uint64_t digits) {
  constexpr std::uint64_t kBeyondNine = 0x7676767676767676U;
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  return (((digits + kBeyondNine) | digits) & kHighBits) == 0;
}

/// The number that eight digits make.
inline std::uint32_t ValueOfDigits(std::uint64_t digits) {
  // Pairs, fours, then all eight: each product leaves the sum of two neighbours in the upper one.
  digits = digits * (1 + (10U << 8)) >> 8 & 0x00FF00FF00FF00FFU;
  digits = digits * (1 + (100U << 16)) >> 16 & 0x0000FFFF0000FFFFU;
  return static_cast<std::uint32_t>(digits * (1 + (std::uint64_t{10000} << 32)) >> 32);
}

constexpr std::uint64_t kPowersOfTen[] = {
    1,         10,         100,         1000,         10000,         100000,         1000000,         10000000,
    100000000, 1000000000, 10000000000, 100000000000, 1000000000000, 10000000000000, 100000000000000, 1000000000000000};

// Of `count` characters, 1 to 16. Up to seven bytes behind them are read.

inline bool AreDigitsAt(char const* p, unsigned count) {
  return count <= 8 ? AreDigits(DigitsAt(p, count))
                    : AreDigits(DigitsAt(p, 8)) && AreDigits(DigitsAt(p + 8, count - 8));
}

inline std::uint64_t ValueAt(char const* p, unsigned count) {
  return count <= 8
             ? ValueOfDigits(DigitsAt(p, count))
             : ValueOfDigits(DigitsAt(p, 8)) * kPowersOfTen[count - 8] + ValueOfDigits(DigitsAt(p + 8, count - 8));
}

/// What the digits at two places make, those of the second behind those of the first: 8 in all at most, one at least of
/// each.
inline std::uint64_t ValueAtBoth(char const* first, unsigned firstCount, char const* second, unsigned secondCount) {
  return ValueOfDigits(DigitsAt(first, firstCount) >> 8 * secondCount | DigitsAt(second, secondCount));
}

}  // namespace senmark_series
