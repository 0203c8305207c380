#include "SvgTicks.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <limits>

namespace senmark_tool {

namespace {

constexpr double kLargestWritten = 1e12;  // larger numbers, and steps below the other, have exponents
constexpr double kSmallestStep = 1e-9;

/// The smallest of 1, 2 and 5 times a power of ten that is not below `least`.
double RoundStep(double least) {
  double const power = std::pow(10, std::floor(std::log10(least)));
  for (double const factor : {1.0, 2.0, 5.0}) {
    // A little room, because the power is not exact.
    if (factor * power >= least * (1 - 1e-12)) {
      return factor * power;
    }
  }
  return 10 * power;
}

/// A number as it is printed: with a minus sign as wide as a plus sign, U+2212, and narrow blanks that do not
/// break, U+202F, between groups of three digits where there are five or more.
std::string Printed(std::string const& number) {
  std::size_t const first = number[0] == '-' ? 1 : 0;
  std::size_t const digits = std::min(number.find_first_of(".e", first), number.size()) - first;
  std::string printed;
  for (std::size_t i = 0; i != number.size(); ++i) {
    bool const isGroup = i > first && i < first + digits && digits >= 5 && (first + digits - i) % 3 == 0;
    printed += isGroup ? "\xE2\x80\xAF" : "";
    printed += number[i] == '-' ? "\xE2\x88\x92" : std::string(1, number[i]);
  }
  return printed;
}

std::string Label(double value, double step, double largest) {
  std::array<char, 64> text;
  int length = 0;
  if (largest < kLargestWritten && step >= kSmallestStep) {
    int const decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
    length = std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  } else {
    int const digits = static_cast<int>(std::clamp(std::log10(largest) - std::log10(step) + 2, 1.0, 17.0));
    length = std::snprintf(text.data(), text.size(), "%.*g", digits, value);
  }
  return Printed(std::string(text.data(), static_cast<std::size_t>(length)));
}

/// Room around a single number.
void Widen(double& min, double& max) {
  // At least so much that there is something between both ends.
  double const room = min == 0 ? 1 : std::max(std::abs(min) / 2, std::numeric_limits<double>::min());
  min = std::max(min - room, std::numeric_limits<double>::lowest());
  max = std::min(max + room, std::numeric_limits<double>::max());
}

}  // namespace

double Axis::Share(double value) const {
  // Quarters first: the difference of two huge numbers may not be finite.
  double const span = to / 4 - from / 4;
  return span > 0 ? std::clamp((value / 4 - from / 4) / span, 0.0, 1.0) : 0.5;
}

Axis MakeAxis(double min, double max, int mostTicks, bool isRounded) {
  if (!(min < max)) {
    Widen(min, max);
  }
  Axis axis;
  axis.from = min;
  axis.to = max;
  double const step = RoundStep((max / 4 - min / 4) / (mostTicks - 1) * 4);
  if (!std::isfinite(step) || !(step > 0)) {
    return axis;  // numbers so near to 0 that nothing is between them
  }
  double first = std::ceil(min / step);
  if (isRounded) {
    // A little room, because neither step nor quotient is exact.
    double const below = std::floor(min / step + 1e-9) * step;
    double const above = std::ceil(max / step - 1e-9) * step;
    axis.from = std::isfinite(below) ? std::min(min, below) : min;
    axis.to = std::isfinite(above) ? std::max(max, above) : max;
    first = std::isfinite(below) ? std::floor(min / step + 1e-9) : first;
  }
  // Counted, because a step may be too small to change a large number. A little room for what rounding does.
  double const largest = std::max(std::abs(axis.from), std::abs(axis.to));
  for (int i = 0; i != mostTicks + 2; ++i) {
    double const value = (first + i) * step + 0.0;  // no negative zero
    if (!std::isfinite(value) || value > axis.to + step * 1e-9 ||
        (!axis.ticks.empty() && !(value > axis.ticks.back().value))) {
      break;
    }
    axis.ticks.push_back({value, Label(value, step, largest)});
  }
  return axis;
}

}  // namespace senmark_tool
