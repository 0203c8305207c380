#include "NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "Ascii.h"
#include "senmark/module/Number.h"

namespace senmark_series {

namespace {

namespace kit = senmark::kit;

/// Longer than any number that somebody wrote for its digits.
constexpr std::size_t kLongestNumber = 64;

constexpr int kLargestExponent = 999;

struct Digits {
  bool isNumber = false;
  bool isNegative = false;
  bool hasExponent = false;
  std::ptrdiff_t integers = 0;  ///< in front of the mark
  std::ptrdiff_t fraction = 0;  ///< behind it
  std::uint64_t value = 0;      ///< of all of them, if they are no more than `kExactDigits`
  int exponent = 0;

  bool isExact() const { return !hasExponent && integers + fraction <= kExactDigits; }
};

inline char const* TakeDigits(char const* p, char const* end, std::uint64_t& value) {
  for (; p != end && IsDigit(*p); ++p) {
    value = value * 10 + static_cast<std::uint64_t>(*p - '0');
  }
  return p;
}

/// p: behind the e. False for what is no exponent up to the end.
bool TakeExponent(char const* p, char const* end, int& exponent) {
  if (p != end && *p == '+') {
    ++p;
    if (p == end || !IsDigit(*p)) {
      return false;
    }
  }
  auto const [behind, error] = std::from_chars(p, end, exponent);
  return error == std::errc() && behind == end && std::abs(exponent) <= kLargestExponent;
}

inline Digits Scan(std::string_view text, char decimalMark) {
  Digits digits;
  if (text.empty() || text.size() > kLongestNumber) {
    return digits;
  }
  char const* p = text.data();
  char const* const end = p + text.size();
  digits.isNegative = *p == '-';
  p += *p == '-' || *p == '+' ? 1 : 0;
  char const* const integers = p;
  p = TakeDigits(p, end, digits.value);
  digits.integers = p - integers;
  if (p != end && *p == decimalMark) {
    char const* const fraction = ++p;
    p = TakeDigits(p, end, digits.value);
    digits.fraction = p - fraction;
  }
  bool const hasDigits = digits.integers + digits.fraction != 0;
  if (p != end) {
    digits.hasExponent = true;
    digits.isNumber = hasDigits && (*p == 'e' || *p == 'E') && TakeExponent(p + 1, end, digits.exponent);
  } else {
    digits.isNumber = hasDigits;
  }
  return digits;
}

/// digits  `kExactDigits` at most, `fraction` of them behind the mark.
double ExactNumber(std::uint64_t digits, std::size_t fraction) {
  return static_cast<double>(digits) / static_cast<double>(kPowersOfTen[fraction]);
}

/// Of a text that `Scan` takes.
std::optional<double> Convert(std::string_view text, char decimalMark) {
  text.remove_prefix(text.front() == '+' ? 1 : 0);
  char copy[kLongestNumber];
  std::replace_copy(text.begin(), text.end(), copy, decimalMark, '.');
  double value = 0;
  auto const [behind, error] = std::from_chars(copy, copy + text.size(), value);
  bool const isWhole = error == std::errc() && behind == copy + text.size();
  return isWhole && std::fabs(value) < kit::kNumberLimit ? std::optional<double>(value) : std::nullopt;
}

}  // namespace

NumberShape ShapeOf(std::string_view text, char decimalMark) {
  NumberShape shape;
  Digits const digits = Scan(text, decimalMark);
  if (!digits.isNumber) {
    return shape;
  }
  shape.decimals =
      static_cast<unsigned>(std::clamp<std::ptrdiff_t>(digits.fraction - digits.exponent, 0, kMostDecimals));
  if (digits.isExact()) {
    shape.isNumber = true;
    shape.isTiny = IsTiny(digits.value, static_cast<std::size_t>(digits.fraction));
    return shape;
  }
  std::optional<double> const value = Convert(text, decimalMark);
  shape.isNumber = value.has_value();
  shape.isTiny = value && *value != 0 && std::fabs(*value) < kit::kSmallestNumber;
  return shape;
}

std::optional<double> ToNumber(std::string_view text, char decimalMark) {
  Digits const digits = Scan(text, decimalMark);
  if (!digits.isNumber) {
    return std::nullopt;
  }
  if (!digits.isExact()) {
    return Convert(text, decimalMark);
  }
  double const magnitude = ExactNumber(digits.value, static_cast<std::size_t>(digits.fraction));
  return digits.isNegative ? -magnitude : magnitude;
}

bool IsTiny(std::uint64_t digits, std::size_t fraction) {
  // At four decimals or less there is nothing so small.
  constexpr std::size_t kDecimalsOfSmallest = 4;
  return fraction > kDecimalsOfSmallest && digits != 0 && ExactNumber(digits, fraction) < kit::kSmallestNumber;
}

bool IsGapWord(std::string_view text) {
  constexpr std::size_t kLongestWord = 4;
  if (text.empty()) {
    return true;
  }
  char const first = Lower(text.front());
  if (text.size() > kLongestWord || (first != 'n' && first != '-')) {
    return false;
  }
  static constexpr std::string_view kWords[] = {"-", "--", "na", "n/a", "nan", "null", "none"};
  return std::any_of(std::begin(kWords), std::end(kWords),
                     [&](std::string_view word) { return EqualsLower(text, word); });
}

}  // namespace senmark_series
