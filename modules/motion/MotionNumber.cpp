#include "MotionNumber.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

#include "Words.h"

namespace senmark_motion {
namespace {

/// Whether a number that no double can hold is too small rather than too large: where its first digit other than 0
/// stands, exponent included, tells it.
bool IsTooSmall(std::string_view digits) {
  constexpr long kFarAway = 1000000;
  std::size_t const exponentMark = digits.find_first_of("eE");
  std::string_view const mantissa = digits.substr(0, exponentMark);
  long exponent = 0;
  if (exponentMark != std::string_view::npos) {
    std::string_view text = digits.substr(exponentMark + 1);
    bool const isDown = text.front() == '-';
    text.remove_prefix(isDown || text.front() == '+' ? 1 : 0);
    for (char const digit : text) {
      exponent = std::min(exponent * 10 + (digit - '0'), kFarAway);
    }
    exponent = isDown ? -exponent : exponent;
  }
  std::size_t const point = std::min(mantissa.find('.'), mantissa.size());
  std::size_t const first = std::min(mantissa.find_first_of("123456789"), mantissa.size());
  return static_cast<long>(point) - static_cast<long>(first) + exponent < 0;
}

/// How runtimes of older compilers print what is no number: `1.#QNAN`, `-1.#IND00`, `1.#INF`.
std::optional<double> ParseOldSpelling(std::string_view digits) {
  if (digits.substr(0, 3) != "1.#") {
    return std::nullopt;
  }
  std::string_view kind = digits.substr(3);
  kind = kind.substr(0, kind.find_last_not_of('0') + 1);
  if (IsSameWord(kind, "inf")) {
    return std::numeric_limits<double>::infinity();
  }
  bool const isNumber = !IsSameWord(kind, "ind") && !IsSameWord(kind, "qnan") && !IsSameWord(kind, "snan");
  return isNumber ? std::nullopt : std::optional<double>(std::numeric_limits<double>::quiet_NaN());
}

}  // namespace

std::optional<double> ParseNumber(std::string_view word) {
  bool const isNegative = !word.empty() && word.front() == '-';
  bool const hasSign = isNegative || (!word.empty() && word.front() == '+');
  std::string_view const digits = word.substr(hasSign ? 1 : 0);
  if (digits.empty() || digits.front() == '-') {
    return std::nullopt;
  }
  double magnitude = 0;
  auto const [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), magnitude);
  if (end != digits.data() + digits.size() || error == std::errc::invalid_argument) {
    std::optional<double> const old = ParseOldSpelling(digits);
    return old && isNegative ? std::optional<double>(-*old) : old;
  }
  if (error == std::errc::result_out_of_range) {
    magnitude = IsTooSmall(digits) ? 0 : std::numeric_limits<double>::infinity();
  }
  return isNegative ? -magnitude : magnitude;
}

}  // namespace senmark_motion
