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
inline constexpr int kFixedExponents = 11;

// A fraction of a double times this has in its higher 64 bits the integer part of 10^8 times the number, and what is
// behind it in its lower ones. Exact, for 10^8 is a multiple of 4.
constexpr std::uint64_t FixedFactor(int binade) {
  return std::uint64_t{25000000} << static_cast<unsigned>(binade + 64 - kFractionBits + 2);
}

// A number's sixteen digits are those of an integer, and zeroes, if the number lies nearer to it than half a unit of
// the sixteenth digit. That is this, for numbers with each decimal exponent, in 2^-64; cut off, so that what is just
// as far away is not taken.
constexpr std::array<std::uint64_t, kFixedExponents> MakeReaches() {
  std::array<std::uint64_t, kFixedExponents> reaches = {};
  std::uint64_t power = 1;
  for (int i = kFixedExponents; i-- != 0;) {
    power *= 10;
    reaches[static_cast<std::size_t>(i)] = kSignBit / power;
  }
  return reaches;
}

inline constexpr std::array<std::uint64_t, kFixedExponents> kReaches = MakeReaches();

}  // namespace detail

/// The integer whose text, as one of a number with eight decimals, is the writer's text of a number but for zeroes at
/// the end. bits: of the number, a double, with the sign bit clear. False if there is none; that also is said of
/// numbers so small or so large that their text is best made in another way. Here, because it is done for every number
/// of every sample.
inline bool ToFixed(std::uint64_t bits, std::uint64_t& fixed) {
  int const binade = static_cast<int>(bits >> kFractionBits) - kExponentBias;
  if (binade < detail::kFirstFixedBinade || binade > detail::kLastFixedBinade) {
    fixed = 0;
    return bits == 0;
  }
  std::uint64_t const mantissa = (bits << (63 - kFractionBits)) | kSignBit;
  int const exponent = DecimalExponentOf(mantissa, binade);
  if (exponent < detail::kLeastFixedExponent) {
    return false;
  }
  Uint128 const product = Uint128{mantissa >> (63 - kFractionBits)} * detail::FixedFactor(binade);
  std::uint64_t const behind = static_cast<std::uint64_t>(product);
  std::uint64_t const isAbove = behind >> 63U;
  fixed = static_cast<std::uint64_t>(product >> 64U) + isAbove;
  std::uint64_t const distance = isAbove != 0 ? 0 - behind : behind;
  return distance < detail::kReaches[static_cast<std::size_t>(exponent - detail::kLeastFixedExponent)];
}

}  // namespace SK_PLUGIN
