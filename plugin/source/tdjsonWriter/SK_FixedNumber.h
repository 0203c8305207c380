/// Numbers with at most eight decimals, which is what most recordings have, as integers: the number times 10^8.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "SK_DecimalBinade.h"

namespace SK_PLUGIN {

inline constexpr unsigned kFixedDecimals = 8;

namespace detail {

inline constexpr int kFirstFixedBinade = -14;  // has the first numbers whose text has no exponent
inline constexpr int kLastFixedBinade = 22;    // so that the integers have fifteen digits at most
inline constexpr int kLeastFixedExponent = -4;

/// What there is to know of the numbers with one binary exponent.
struct FixedBinade {
  /// A fraction of a double times this has in its higher 64 bits the integer part of 10^8 times the number, and what is
  /// behind it in its lower ones. Exact, for 10^8 is a multiple of 4.
  std::uint64_t factor;
  /// Fractions from this on have the higher one of two decimal exponents.
  std::uint64_t limit;
  /// For each of these. A number's sixteen digits are those of an integer, and zeroes, if the number lies nearer to it
  /// than half a unit of the sixteenth digit. That is this, in 2^-64; cut off, so that what is just as far away is not
  /// taken. 0 for numbers whose text has an exponent.
  std::array<std::uint64_t, 2> reaches;
};

constexpr std::uint64_t ReachOf(int exponent) {
  if (exponent < kLeastFixedExponent) {
    return 0;
  }
  std::uint64_t power = 1;
  for (int i = exponent; i != 7; ++i) {
    power *= 10;
  }
  return kSignBit / power;
}

constexpr std::array<FixedBinade, kLastFixedBinade - kFirstFixedBinade + 1> MakeFixedBinades() {
  std::array<FixedBinade, kLastFixedBinade - kFirstFixedBinade + 1> rows = {};
  int binade = kFirstFixedBinade;
  for (FixedBinade& row : rows) {
    Binade const& decimal = kBinadeTable[static_cast<std::size_t>(binade - kFirstBinade)];
    constexpr unsigned kShift = 63 - kFractionBits;
    row.factor = std::uint64_t{25000000} << static_cast<unsigned>(binade + 64 - kFractionBits + 2);
    row.limit = (decimal.limit >> kShift) + (decimal.limit % (1U << kShift) != 0 ? 1 : 0);
    row.reaches = {ReachOf(decimal.exponent), ReachOf(decimal.exponent + 1)};
    ++binade;
  }
  return rows;
}

inline constexpr std::array<FixedBinade, kLastFixedBinade - kFirstFixedBinade + 1> kFixedBinades = MakeFixedBinades();

}  // namespace detail

/// The integer whose text, as one of a number with eight decimals, is the writer's text of a number but for zeroes at
/// the end. bits: of the number, a double, with the sign bit clear. False if there is none; that also is said of
/// numbers so small or so large that their text is best made in another way. Here, because it is done for every number
/// of every sample.
inline bool ToFixed(std::uint64_t bits, std::uint64_t& fixed) {
  constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << static_cast<unsigned>(kFractionBits);
  // One that is too small wraps around.
  std::uint64_t const place = (bits >> kFractionBits) - (kExponentBias + detail::kFirstFixedBinade);
  if (place >= detail::kFixedBinades.size()) {
    fixed = 0;
    return bits == 0;
  }
  detail::FixedBinade const& row = detail::kFixedBinades[place];
  std::uint64_t const fraction = (bits & (kHiddenBit - 1)) | kHiddenBit;
  Uint128 const product = Uint128{fraction} * row.factor;
  std::uint64_t const behind = static_cast<std::uint64_t>(product);
  std::uint64_t const isAbove = behind >> 63U;
  fixed = static_cast<std::uint64_t>(product >> 64U) + isAbove;
  // Turned about if it lies above.
  std::uint64_t const distance = (behind ^ (0 - isAbove)) + isAbove;
  return distance < row.reaches[fraction >= row.limit ? 1 : 0];
}

}  // namespace SK_PLUGIN
