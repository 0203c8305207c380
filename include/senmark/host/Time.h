/// Times as exact fractions of seconds.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <utility>

#include "senmark/host/Error.h"

namespace senmark {

/// Seconds as `value` divided by `scale`. Times of a file count from its first sample.
///
/// Times of samples are as the library tells them. It computes with 32 bits: a time that needs more
/// comes with the precision of a float, and one that cannot be told at all with a `scale` of 0.
struct Time {
  std::int32_t value = 0;   ///< numerator, seconds times `scale`
  std::uint32_t scale = 1;  ///< denominator; 0: no time

  /// Not a number for a `scale` of 0.
  double seconds() const {
    return scale == 0 ? std::numeric_limits<double>::quiet_NaN()
                      : static_cast<double>(value) / static_cast<double>(scale);
  }

  /// The fraction with the smallest scale within a billionth of `seconds`.
  ///
  /// Small scales matter: the library multiplies the rest of `value` divided by `scale` with the ticks of
  /// a second in 32 bits, so a fraction like 13421773/134217728 would lead it astray where 1/10 does not.
  /// Errors: 1 not finite, or 2,147,483,648 s and more in either direction.
  static Time FromSeconds(double seconds);
};

namespace detail {

/// Sign of a - b. No product of the two widths leaves 64 bits.
inline int Compare(Time const& a, Time const& b) {
  std::int64_t const left = static_cast<std::int64_t>(a.value) * static_cast<std::int64_t>(b.scale);
  std::int64_t const right = static_cast<std::int64_t>(b.value) * static_cast<std::int64_t>(a.scale);
  return left < right ? -1 : left > right ? 1 : 0;
}

}  // namespace detail

/// Compared as fractions, so 1/2 equals 2/4. Times with a `scale` of 0 have no order.
inline bool operator==(Time const& a, Time const& b) {
  return detail::Compare(a, b) == 0;
}
inline bool operator!=(Time const& a, Time const& b) {
  return detail::Compare(a, b) != 0;
}
inline bool operator<(Time const& a, Time const& b) {
  return detail::Compare(a, b) < 0;
}
inline bool operator<=(Time const& a, Time const& b) {
  return detail::Compare(a, b) <= 0;
}
inline bool operator>(Time const& a, Time const& b) {
  return detail::Compare(a, b) > 0;
}
inline bool operator>=(Time const& a, Time const& b) {
  return detail::Compare(a, b) >= 0;
}

inline Time Time::FromSeconds(double seconds) {
  if (!(std::fabs(seconds) < 2147483647.5)) {
    throw Error(ns_sensor::kInvalidArgument, "time out of range");
  }
  double const magnitude = std::fabs(seconds);
  // Continued fraction: convergents p/q, each the best with so small a denominator.
  std::int64_t p = 1, previousP = 0, q = 0, previousQ = 1;
  double rest = magnitude;
  for (int term = 0; term < 32; ++term) {
    double const whole = std::floor(rest);
    if (whole > 4294967295.0) {
      break;
    }
    std::int64_t const digit = static_cast<std::int64_t>(whole);
    std::int64_t const nextP = digit * p + previousP;
    std::int64_t const nextQ = digit * q + previousQ;
    if (nextP > std::numeric_limits<std::int32_t>::max() || nextQ > std::numeric_limits<std::int32_t>::max()) {
      break;
    }
    previousP = std::exchange(p, nextP);
    previousQ = std::exchange(q, nextQ);
    if (std::fabs(static_cast<double>(p) / static_cast<double>(q) - magnitude) <= 1e-9 || rest == whole) {
      break;
    }
    rest = 1.0 / (rest - whole);
  }
  Time time;
  time.value = static_cast<std::int32_t>(seconds < 0 ? -p : p);
  time.scale = static_cast<std::uint32_t>(q);
  return time;
}

/// A span of time, both ends within it.
struct Extent {
  Time start;  ///< of the first sample
  Time end;    ///< of the last sample

  /// Seconds between the two.
  double duration() const { return end.seconds() - start.seconds(); }
};

}  // namespace senmark
