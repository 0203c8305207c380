/// Numbers as motion files write them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "EightBytes.h"

namespace senmark_motion {

/// The nearest double to a whole word: digits with or without a point, which may come first or last, a sign, an
/// exponent of any spelling; or NaN and infinity, also as older runtimes spell them (`1.#IND`). What is too small for
/// a double is 0, what is too large infinity. None for any other word.
std::optional<double> ParseNumber(std::string_view word);

namespace detail {

inline constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                          1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
inline constexpr std::uint64_t kShortPowersOfTen[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000};

inline bool IsDigit(char byte) {
  return static_cast<unsigned char>(byte - '0') <= 9;
}

}  // namespace detail

/// Reads a plain number, with digits and perhaps a sign and a point, at `position` and moves that behind it. False,
/// with nothing moved, for one that needs `ParseNumber`.
///
/// A byte that is neither a digit nor a point has to follow. An integer below 2 to the 53rd and a power of ten up to
/// 10 to the 22nd are exact, so that their quotient is the nearest double (Clinger, "How to read floating point numbers
/// accurately", 1990).
inline bool ReadPlainNumber(char const*& position, double& value) {
  constexpr std::ptrdiff_t kDigitsThatFit = 18;
  constexpr std::uint64_t kExact = std::uint64_t{1} << 53U;
  char const* next = position;
  bool const isNegative = *next == '-';
  next += isNegative || *next == '+' ? 1 : 0;
  char const* const first = next;
  std::uint64_t mantissa = 0;
  while (detail::IsDigit(*next)) {
    mantissa = mantissa * 10 + static_cast<std::uint64_t>(*next++ - '0');
  }
  std::ptrdiff_t digits = next - first;
  std::ptrdiff_t decimals = 0;
  if (*next == '.') {
    char const* const point = next++;
    while (detail::IsDigit(*next)) {
      mantissa = mantissa * 10 + static_cast<std::uint64_t>(*next++ - '0');
    }
    decimals = next - point - 1;
    digits += decimals;
  }
  bool const isAtEnd = *next == ' ' || *next == '\n' || *next == '\r' || *next == '\t';
  if (!isAtEnd || digits == 0 || digits > kDigitsThatFit || mantissa > kExact) {
    return false;
  }
  double const magnitude = static_cast<double>(mantissa) / detail::kPowersOfTen[decimals];
  value = isNegative ? -magnitude : magnitude;
  position = next;
  return true;
}

namespace detail {

/// sign: 1 for a minus.
inline double WithSign(double magnitude, std::uint64_t sign) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &magnitude, sizeof(bits));
  bits |= sign << 63U;
  std::memcpy(&magnitude, &bits, sizeof(bits));
  return magnitude;
}

}  // namespace detail

/// How far `ReadShortNumber` may read from its position on.
inline constexpr std::ptrdiff_t kShortNumberReach = 1 + 7 + 1 + 8;

/// The same of what files are full of: perhaps a minus, one to seven digits, a point, one to seven digits. No byte of
/// it decides where the processor goes on, for where numbers end cannot be foretold.
inline bool ReadShortNumber(char const*& position, double& value) {
  std::uint64_t const sign = *position == '-' ? 1 : 0;
  char const* const first = position + sign;
  std::uint64_t const whole = DigitsAt(first);
  unsigned const wholeSize = CountDigits(whole);
  char const* const point = first + wholeSize;
  std::uint64_t const behind = DigitsAt(point + 1);
  unsigned const behindSize = CountDigits(behind);
  char const* const end = point + 1 + behindSize;
  bool const isAtEnd = *end == ' ' || *end == '\n' || *end == '\r' || *end == '\t';
  // An eighth digit would stand in the place of the point, or of the end.
  if (wholeSize == 0 || behindSize == 0 || *point != '.' || !isAtEnd) {
    return false;
  }
  // Fourteen digits are exact, see above.
  std::uint64_t const mantissa =
      ValueOfFirst(whole, wholeSize) * detail::kShortPowersOfTen[behindSize] + ValueOfFirst(behind, behindSize);
  value = detail::WithSign(static_cast<double>(mantissa) / detail::kPowersOfTen[behindSize], sign);
  position = end;
  return true;
}

}  // namespace senmark_motion
