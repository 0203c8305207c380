/// Numbers as motion files write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace senmark_motion {

/// The nearest double to a whole word: digits with or without a point, which may come first or last, a sign, an
/// exponent of any spelling; or NaN and infinity, also as older runtimes spell them (`1.#IND`). What is too small for
/// a double is 0, what is too large infinity. None for any other word.
std::optional<double> ParseNumber(std::string_view word);

namespace detail {

inline constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                          1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

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

}  // namespace senmark_motion
