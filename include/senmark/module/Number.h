/// Numbers as they may stand in a file.
#pragma once

#include <cmath>
#include <cstdint>
#include <string>

#include "senmark/module/Failure.h"

namespace senmark::kit {

/// How a converter states its numbers.
struct NumberFormat {
  std::string unit;        ///< part of the display name; empty: none
  unsigned decimals = 4;   ///< digits kept behind the point, 0 to 15
  bool keepsGaps = false;  ///< what is no number is left out, instead of ending the conversion
};

/// The closest to 0 that a number other than 0 can be, and the end of the numbers.
///
/// The writer gives a number 16 significant digits at most, and an exponent if it is closer to 0 than 0.0001 or not
/// below 1e16; no text with an exponent can be read back. The 16 digits may show what a double is in truth: 9.7 stands
/// in the file as 9.699999999999999. Read back it is the same double.
inline constexpr double kSmallestNumber = 1e-4;
inline constexpr double kNumberLimit = 1e16;

namespace detail {

inline constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};

}  // namespace detail

/// `value` rounded to `decimals` digits behind the point, halves away from 0; never a negative zero.
///
/// Closer to 0 than 0.0001 it is 0 or 0.0001 with the sign of `value`, whichever is nearer, however many decimals are
/// kept. So the difference is half a unit of the last decimal at most, or 0.00005 for those. A file has 16 significant
/// digits: with more before the point and behind it together, half a unit of the 16th.
/// Errors: `Failure` with code 1507 for NaN, infinity, and 1e16 or more either way.
inline double Rounded(double value, unsigned decimals) {
  double const magnitude = std::fabs(value);
  if (!(magnitude < kNumberLimit)) {
    throw Refused(std::isfinite(value) ? "a number of 1e16 or more" : "NaN or infinity");
  }
  constexpr unsigned kMostDecimals = 15;
  double const power = detail::kPowersOfTen[decimals < kMostDecimals ? decimals : kMostDecimals];
  double const scaled = magnitude * power;
  double rounded = magnitude;
  // From 2 to the 51st on a product has no digits behind the point that are true: 4.4 times 10 to the 15th ends in a
  // half. The writer rounds such a number at the same decimal. Without decimals there is nothing to multiply, and from
  // 2 to the 52nd on no fraction that rounding could touch.
  if (scaled < 2251799813685248.0 || (decimals == 0 && scaled < 4503599627370496.0)) {
    auto const whole = static_cast<double>(static_cast<std::int64_t>(scaled));
    rounded = (scaled - whole < 0.5 ? whole : whole + 1) / power;
  }
  if (rounded < kSmallestNumber) {
    rounded = decimals < 4 || magnitude < kSmallestNumber / 2 ? 0 : kSmallestNumber;
  }
  return value < 0 && rounded != 0 ? -rounded : rounded;
}

/// A number as a text has it: `digits` over 10 to the power of `decimals`.
struct Decimal {
  /// A double holds so many digits of either exactly, and so their quotient is the double nearest to the text.
  static constexpr std::int64_t kDigitsEnd = 1000000000000000;
  static constexpr unsigned kMostDecimals = 15;

  std::int64_t digits = 0;  ///< less than `kDigitsEnd` either way
  unsigned decimals = 0;    ///< `kMostDecimals` or less
};

/// The double next to the number, rounded like any other; faster than that if it has no more decimals than are kept.
inline double Rounded(Decimal const& number, unsigned decimals) {
  double const value = static_cast<double>(number.digits) / detail::kPowersOfTen[number.decimals];
  // With four decimals the least number is that one.
  bool const isSmall = number.decimals > 4 && std::fabs(value) < kSmallestNumber && number.digits != 0;
  return number.decimals <= decimals && !isSmall ? value : Rounded(value, decimals);
}

}  // namespace senmark::kit
