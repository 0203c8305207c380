#include "NumberText.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>

#include "Ascii.h"
#include "senmark/module/Number.h"

namespace senmark_series {

namespace {

namespace kit = senmark::kit;

constexpr unsigned kMostDecimals = 15;
/// From here on it takes the value to tell whether it is below the limit.
constexpr std::ptrdiff_t kSafeDigits = 15;

/// Longer than any number that somebody wrote for its digits.
constexpr std::size_t kLongestNumber = 64;

constexpr int kLargestExponent = 999;

struct Parts {
  std::ptrdiff_t integers = 0;  ///< digits in front of the mark
  std::ptrdiff_t fraction = 0;  ///< digits behind it
  std::ptrdiff_t zeroes = 0;    ///< in a row behind the mark, if there are only zeroes before it
  bool hasExponent = false;
  int exponent = 0;
  bool isZero = true;  ///< all digits are zeroes
};

/// False for what is no decimal number, wholly.
bool Split(std::string_view text, char decimalMark, Parts& parts) {
  char const* p = text.data();
  char const* const end = p + text.size();
  if (p != end && (*p == '-' || *p == '+')) {
    ++p;
  }
  char const* const integers = p;
  char lowest = '0';
  for (; p != end && IsDigit(*p); ++p) {
    lowest = std::max(lowest, *p);
  }
  parts.integers = p - integers;
  if (p != end && *p == decimalMark) {
    char const* const fraction = ++p;
    for (; p != end && IsDigit(*p); ++p) {
      parts.zeroes += lowest == '0' && *p == '0' ? 1 : 0;
      lowest = std::max(lowest, *p);
    }
    parts.fraction = p - fraction;
  }
  if (parts.integers + parts.fraction == 0) {
    return false;
  }
  parts.isZero = lowest == '0';
  if (p != end && (*p == 'e' || *p == 'E')) {
    ++p;
    if (p != end && *p == '+') {
      ++p;
      if (p == end || !IsDigit(*p)) {
        return false;
      }
    }
    auto const [behind, error] = std::from_chars(p, end, parts.exponent);
    if (error != std::errc() || std::abs(parts.exponent) > kLargestExponent) {
      return false;
    }
    parts.hasExponent = true;
    p = behind;
  }
  return p == end;
}

}  // namespace

NumberShape ShapeOf(std::string_view text, char decimalMark) {
  NumberShape shape;
  Parts parts;
  if (text.size() > kLongestNumber || !Split(text, decimalMark, parts)) {
    return shape;
  }
  shape.decimals = static_cast<unsigned>(std::clamp<std::ptrdiff_t>(parts.fraction - parts.exponent, 0, kMostDecimals));
  if (parts.hasExponent || parts.integers > kSafeDigits) {
    std::optional<double> const value = ToNumber(text, decimalMark);
    shape.isNumber = value.has_value();
    shape.isTiny = value && *value != 0 && std::fabs(*value) < kit::kSmallestNumber;
  } else {
    shape.isNumber = true;
    shape.isTiny = !parts.isZero && parts.zeroes >= 4;
  }
  return shape;
}

std::optional<double> ToNumber(std::string_view text, char decimalMark) {
  if (!text.empty() && text.front() == '+') {
    text.remove_prefix(1);
    if (!text.empty() && text.front() == '-') {
      return std::nullopt;
    }
  }
  char copy[kLongestNumber];
  if (decimalMark != '.') {
    std::size_t const mark = text.find(decimalMark);
    if (text.size() > kLongestNumber || text.find('.') != std::string_view::npos) {
      return std::nullopt;
    }
    if (mark != std::string_view::npos) {
      std::copy(text.begin(), text.end(), copy);
      copy[mark] = '.';
      text = std::string_view(copy, text.size());
    }
  }
  // Neither infinity nor what is written like it.
  std::size_t const first = !text.empty() && text.front() == '-' ? 1 : 0;
  if (text.size() > kLongestNumber || first == text.size() || (!IsDigit(text[first]) && text[first] != '.')) {
    return std::nullopt;
  }
  double value = 0;
  auto const [behind, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc() || behind != text.data() + text.size() || !(std::fabs(value) < kit::kNumberLimit)) {
    return std::nullopt;
  }
  return value;
}

bool IsGapWord(std::string_view text) {
  constexpr std::size_t kLongestWord = 4;
  if (text.size() > kLongestWord) {
    return false;
  }
  static constexpr std::string_view kWords[] = {"", "-", "--", "na", "n/a", "nan", "null", "none"};
  return std::any_of(std::begin(kWords), std::end(kWords),
                     [&](std::string_view word) { return EqualsLower(text, word); });
}

}  // namespace senmark_series
