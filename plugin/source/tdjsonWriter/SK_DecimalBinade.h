/// Between the powers of two and those of ten: how the numbers with one binary exponent lie to the powers of ten.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace SK_PLUGIN {

// NOLINTNEXTLINE(modernize-use-using): an extension cannot be marked as one in an alias
__extension__ typedef unsigned __int128 Uint128;

// A double: sign, 11 bits of exponent, 52 bits of fraction.
inline constexpr int kFractionBits = 52;
inline constexpr int kExponentBias = 1023;
inline constexpr std::uint64_t kExponentMask = 0x7FF;
inline constexpr std::uint64_t kSignBit = std::uint64_t{1} << 63U;

// The binary exponents of the table: from 1.8e-40 to 2^53, where numbers with a fraction end.
inline constexpr int kFirstBinade = -132;
inline constexpr int kBinades = kFractionBits + 1 - kFirstBinade;

/// From 2^b to 2^(b+1) the decimal exponent goes up by one at most: at `limit`, a number shifted to the left like the
/// number itself, or not at all.
struct Binade {
  std::uint64_t limit;
  int exponent;
};

namespace detail {

inline constexpr std::uint64_t kNoLimit = ~std::uint64_t{0};

// 10^exponent * 2^(63 - binade), cut off; `kNoLimit` if that is 2^64 or more. It need not be exact: with sixteen digits
// of either exponent, a number that near to a power of ten is rounded to that power.
constexpr std::uint64_t ShiftedPowerOfTen(int exponent, int binade) {
  Uint128 divisor = 1;
  Uint128 remainder = 1;
  for (int i = 0; i < exponent; ++i) {
    remainder *= 10;
  }
  int shift = 63 - binade;
  for (int i = 0; i > exponent; --i) {
    divisor *= 5;
    --shift;
  }
  // A division by hand, bit by bit, because the dividend has up to 157 of them.
  Uint128 quotient = remainder / divisor;
  remainder %= divisor;
  for (int i = 0; i < shift; ++i) {
    remainder *= 2;
    quotient = quotient * 2 + (remainder >= divisor ? 1 : 0);
    remainder -= remainder >= divisor ? divisor : 0;
    if ((quotient >> 64U) != 0) {
      return kNoLimit;
    }
  }
  return static_cast<std::uint64_t>(quotient);
}

constexpr std::array<Binade, kBinades> MakeBinades() {
  std::array<Binade, kBinades> binades = {};
  for (int i = 0; i < kBinades; ++i) {
    int const binade = kFirstBinade + i;
    // The logarithm of 2 is 1233/4096, which is near enough for all of these; made positive, so that it is cut down.
    int const exponent = (binade + 4096) * 1233 / 4096 - 1233;
    binades[static_cast<std::size_t>(i)] = {ShiftedPowerOfTen(exponent + 1, binade), exponent};
  }
  return binades;
}

inline constexpr std::array<Binade, kBinades> kBinadeTable = MakeBinades();

}  // namespace detail

/// `mantissa` has its highest bit set and stands for mantissa * 2^(binade - 63); the binade is one of the table.
inline int DecimalExponentOf(std::uint64_t mantissa, int binade) {
  Binade const& row = detail::kBinadeTable[static_cast<std::size_t>(binade - kFirstBinade)];
  return row.exponent + (mantissa >= row.limit ? 1 : 0);
}

}  // namespace SK_PLUGIN
