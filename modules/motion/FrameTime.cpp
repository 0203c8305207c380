#include "FrameTime.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

#include "MotionNumber.h"

namespace senmark_motion {
namespace {

struct UsualPeriod {
  Rate rate;
  double seconds;
};

constexpr UsualPeriod Whole(unsigned rate) {
  return {{rate, 1}, 1.0 / rate};
}

/// A rate of television: 1000/1001 of a whole one (SMPTE ST 12-1).
constexpr UsualPeriod Television(unsigned rate) {
  return {{rate * 1000, 1001}, 1001.0 / (rate * 1000.0)};
}

/// Whole rates first, so that of two that a short text may stand for they are taken.
constexpr UsualPeriod kUsualPeriods[] = {
    Whole(1),        Whole(2),        Whole(3),
    Whole(4),        Whole(5),        Whole(6),
    Whole(8),        Whole(10),       Whole(12),
    Whole(15),       Whole(16),       Whole(18),
    Whole(20),       Whole(24),       Whole(25),
    Whole(30),       Whole(36),       Whole(40),
    Whole(48),       Whole(50),       Whole(60),
    Whole(72),       Whole(75),       Whole(80),
    Whole(90),       Whole(96),       Whole(100),
    Whole(120),      Whole(125),      Whole(128),
    Whole(144),      Whole(150),      Whole(160),
    Whole(180),      Whole(200),      Whole(240),
    Whole(250),      Whole(256),      Whole(300),
    Whole(360),      Whole(400),      Whole(480),
    Whole(500),      Whole(512),      Whole(600),
    Whole(720),      Whole(800),      Whole(960),
    Whole(1000),     Television(15),  Television(24),
    Television(30),  Television(48),  Television(60),
    Television(120), Television(240), {{24000, 1001}, 1 / 23.98},  // 23.976, rounded before its frame time was taken
};

bool IsNear(double left, double right, double relative) {
  return std::fabs(left - right) <= relative * right;
}

/// What is left of room for the digits that a double cannot tell.
constexpr double kHalf = 0.5 * (1 + 1e-6);

bool IsRounded(FrameTime const& time, double exact) {
  return std::fabs(time.seconds - exact) <= time.unit * kHalf;
}

bool IsCutOff(FrameTime const& time, double exact) {
  return exact >= time.seconds && exact - time.seconds < time.unit;
}

/// Readers keep times exact as long as frames times scale stay below this.
constexpr std::uint64_t kExactTimes = std::uint64_t{1} << 30U;

bool IsWithinADay(Rate const& rate, std::uint64_t lastFrame) {
  auto const nominal = static_cast<std::uint64_t>(static_cast<double>(rate.value) / rate.scale + 0.5);
  return lastFrame < nominal * 86400;
}

/// Ten to the decimals over the mantissa, in lowest terms, if both parts have 31 bits at most.
std::optional<Rate> ExactRate(FrameTime const& time) {
  constexpr std::uint64_t kLargest = std::numeric_limits<std::int32_t>::max();
  if (time.decimals < 0 || time.decimals > 18 || time.mantissa == 0) {
    return std::nullopt;
  }
  std::uint64_t power = 1;
  for (int i = 0; i != time.decimals; ++i) {
    power *= 10;
  }
  std::uint64_t const divisor = std::gcd(power, time.mantissa);
  if (power / divisor > kLargest || time.mantissa / divisor > kLargest) {
    return std::nullopt;
  }
  return Rate{static_cast<unsigned>(power / divisor), static_cast<unsigned>(time.mantissa / divisor)};
}

/// The last convergent of the continued fraction of a number from 0.0005 to 4 whose numerator stays within `limit`,
/// turned round: frames per second of seconds per frame (Khinchin, "Continued Fractions", 1964).
Rate NearestRate(double seconds, std::uint64_t limit) {
  std::uint64_t numerator = 1;
  std::uint64_t denominator = 0;
  std::uint64_t lastNumerator = 0;
  std::uint64_t lastDenominator = 1;
  double rest = seconds;
  for (int step = 0; step != 40; ++step) {
    double const whole = std::floor(rest);
    auto const term = static_cast<std::uint64_t>(whole);
    std::uint64_t const nextNumerator = term * numerator + lastNumerator;
    std::uint64_t const nextDenominator = term * denominator + lastDenominator;
    if (nextNumerator > limit || nextDenominator > std::numeric_limits<std::int32_t>::max()) {
      break;
    }
    lastNumerator = std::exchange(numerator, nextNumerator);
    lastDenominator = std::exchange(denominator, nextDenominator);
    rest -= whole;
    if (rest < 1e-9) {
      break;
    }
    rest = 1 / rest;
  }
  return {static_cast<unsigned>(denominator), static_cast<unsigned>(numerator)};
}

/// Digits of the fraction of a second that keep the frames apart, and as many more, up to those of the text, as readers
/// can count with over the recording: they have 31 bits.
unsigned DigitsForFrames(FrameTime const& time, std::uint64_t lastFrame) {
  constexpr double kReadable = 2147483648.0;
  double const duration = static_cast<double>(lastFrame) * time.seconds;
  unsigned digits = static_cast<unsigned>(std::clamp(time.decimals, 1, 9));
  auto const power = [](unsigned exponent) { return std::pow(10.0, static_cast<double>(exponent)); };
  while (digits > 1 && duration * power(digits) >= kReadable && time.seconds * power(digits - 1) >= 10) {
    --digits;
  }
  return digits;
}

}  // namespace

std::optional<FrameTime> ParseFrameTime(std::string_view text) {
  std::optional<double> const seconds = ParseNumber(text);
  if (!seconds || !std::isfinite(*seconds)) {
    return std::nullopt;
  }
  constexpr std::uint64_t kEighteenDigits = 100000000000000000;
  FrameTime time;
  time.text = std::string(text);
  time.seconds = *seconds;
  bool isFraction = false;
  int written = 0;  // decimals of the text
  std::size_t const exponentMark = std::min(text.find_first_of("eE"), text.size());
  for (char const byte : text.substr(0, exponentMark)) {
    if (byte == '.') {
      isFraction = true;
    } else if (detail::IsDigit(byte)) {
      written += isFraction ? 1 : 0;
      bool const fits = time.mantissa < kEighteenDigits;
      time.mantissa = fits ? time.mantissa * 10 + static_cast<std::uint64_t>(byte - '0') : time.mantissa;
      time.decimals += (isFraction ? 1 : 0) - (fits ? 0 : 1);
    }
  }
  if (exponentMark != text.size()) {
    auto const exponent = static_cast<int>(std::clamp(*ParseNumber(text.substr(exponentMark + 1)), -10000.0, 10000.0));
    written -= exponent;
    time.decimals -= exponent;
  }
  while (time.mantissa != 0 && time.mantissa % 10 == 0) {
    time.mantissa /= 10;
    --time.decimals;
  }
  time.unit = std::pow(10.0, -written);
  return time;
}

std::optional<Rate> UsualRate(FrameTime const& time) {
  constexpr double kSame = 5e-6;
  constexpr double kFurthest = 5e-3;
  for (UsualPeriod const& usual : kUsualPeriods) {
    if (IsNear(time.seconds, usual.seconds, kSame)) {
      return usual.rate;
    }
  }
  for (auto const matches : {IsRounded, IsCutOff}) {
    for (UsualPeriod const& usual : kUsualPeriods) {
      if (IsNear(time.seconds, usual.seconds, kFurthest) && matches(time, usual.seconds)) {
        return usual.rate;
      }
    }
  }
  return std::nullopt;
}

std::optional<Rate> FractionRate(FrameTime const& time, std::uint64_t lastFrame) {
  constexpr double kFurthest = 1e-4;
  std::uint64_t const frames = std::max<std::uint64_t>(lastFrame, 1);
  std::optional<Rate> const exact = ExactRate(time);
  if (exact && exact->scale < kExactTimes / frames) {
    return exact;
  }
  Rate const rate = NearestRate(time.seconds, kExactTimes / frames);
  if (rate.value == 0 || rate.scale == 0) {
    return std::nullopt;
  }
  double const difference = static_cast<double>(rate.scale) / rate.value - time.seconds;
  return std::fabs(difference) * static_cast<double>(frames) <= kFurthest ? std::optional<Rate>(rate) : std::nullopt;
}

std::optional<kit::TimeBase> ChooseTimeBase(FrameTime const& time, std::uint64_t lastFrame) {
  constexpr double kLongest = 2;
  constexpr double kShortest = 0.001;
  if (!(time.seconds > 0)) {
    // One frame is at 0, whatever a frame lasts.
    return lastFrame == 0 ? std::optional<kit::TimeBase>(kit::TimeBase::frames(1)) : std::nullopt;
  }
  std::optional<Rate> rate = UsualRate(time);
  if (!rate && time.seconds >= kShortest && time.seconds <= kLongest) {
    rate = FractionRate(time, lastFrame);
  }
  bool const isInRange = rate && rate->value >= rate->scale / 2.0 && rate->value <= rate->scale * 1000.0;
  if (isInRange && IsWithinADay(*rate, lastFrame)) {
    return kit::TimeBase::frames(rate->value, rate->scale);
  }
  return kit::TimeBase::gmt(DigitsForFrames(time, lastFrame));
}

}  // namespace senmark_motion
