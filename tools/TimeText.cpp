#include "TimeText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <numeric>
#include <string_view>

namespace senmark_tool {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr unsigned kMostDigits = 9;  ///< of a fraction: more do not fit the library's ticks

/// Reads `count` digits at `place` and steps over them. None: something else stands there.
std::optional<std::int64_t> TakeDigits(std::string_view text, std::size_t& place, std::size_t count) {
  if (text.size() - place < count) {
    return std::nullopt;
  }
  std::int64_t number = 0;
  for (std::size_t i = 0; i != count; ++i, ++place) {
    if (text[place] < '0' || text[place] > '9') {
      return std::nullopt;
    }
    number = number * 10 + (text[place] - '0');
  }
  return number;
}

bool TakeByte(std::string_view text, std::size_t& place, char byte) {
  if (place == text.size() || text[place] != byte) {
    return false;
  }
  ++place;
  return true;
}

std::int64_t PowerOfTen(unsigned exponent) {
  std::int64_t power = 1;
  for (unsigned i = 0; i != exponent; ++i) {
    power *= 10;
  }
  return power;
}

bool IsLeapYear(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::int64_t DaysOfMonth(std::int64_t year, std::int64_t month) {
  static constexpr std::array<std::int64_t, 12> kDays = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[static_cast<std::size_t>(month - 1)] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

/// Days from 1970-01-01 to the first of January of a year from 1 on, by the Gregorian calendar.
std::int64_t DaysBeforeYear(std::int64_t year) {
  constexpr std::int64_t kDaysBefore1970 = 719162;
  std::int64_t const past = year - 1;
  return past * 365 + past / 4 - past / 100 + past / 400 - kDaysBefore1970;
}

/// Quotient rounded down, for a positive divisor.
std::int64_t FloorDivide(std::int64_t number, std::int64_t divisor) {
  return number / divisor - (number % divisor < 0 ? 1 : 0);
}

std::optional<std::int64_t> TakeDate(std::string_view text, std::size_t& place) {
  auto const year = TakeDigits(text, place, 4);
  if (!year || *year < 1 || !TakeByte(text, place, '-')) {
    return std::nullopt;
  }
  auto const month = TakeDigits(text, place, 2);
  if (!month || *month < 1 || *month > 12 || !TakeByte(text, place, '-')) {
    return std::nullopt;
  }
  auto const day = TakeDigits(text, place, 2);
  if (!day || *day < 1 || *day > DaysOfMonth(*year, *month)) {
    return std::nullopt;
  }
  std::int64_t days = DaysBeforeYear(*year) + *day - 1;
  for (std::int64_t i = 1; i != *month; ++i) {
    days += DaysOfMonth(*year, i);
  }
  return days;
}

/// A zone: nothing, one letter, or an offset of hours and minutes.
bool TakeZone(std::string_view text, std::size_t& place) {
  if (TakeByte(text, place, '+') || TakeByte(text, place, '-')) {
    return TakeDigits(text, place, 2) && TakeByte(text, place, ':') && TakeDigits(text, place, 2);
  }
  if (place != text.size() && text[place] >= 'A' && text[place] <= 'Z') {
    ++place;
  }
  return true;
}

/// A fraction as a time, in lowest terms; as near as its width allows when it does not fit.
std::optional<senmark::Time> MakeTime(std::int64_t numerator, std::int64_t denominator) {
  std::int64_t const divisor = std::gcd(numerator, denominator);
  numerator /= divisor;
  denominator /= divisor;
  if (numerator >= std::numeric_limits<std::int32_t>::min() && numerator <= std::numeric_limits<std::int32_t>::max() &&
      denominator <= std::numeric_limits<std::uint32_t>::max()) {
    return senmark::Time{static_cast<std::int32_t>(numerator), static_cast<std::uint32_t>(denominator)};
  }
  try {
    return senmark::Time::FromSeconds(static_cast<double>(numerator) / static_cast<double>(denominator));
  } catch (senmark::Error const&) {
    return std::nullopt;
  }
}

/// Digits with at most one point; the value in units of 10 to the minus `decimals`.
std::optional<std::int64_t> ParseDecimal(std::string_view text, unsigned& decimals) {
  std::int64_t number = 0;
  bool hasPoint = false;
  bool hasDigit = false;
  decimals = 0;
  for (char const byte : text) {
    if (byte == '.' && !hasPoint) {
      hasPoint = true;
      continue;
    }
    if (byte < '0' || byte > '9') {
      return std::nullopt;
    }
    hasDigit = true;
    if (hasPoint && decimals == kMostDigits) {
      continue;  // below a billionth of a second
    }
    number = number * 10 + (byte - '0');
    if (number > std::numeric_limits<std::int64_t>::max() / 16) {
      return std::nullopt;
    }
    decimals += hasPoint ? 1u : 0u;
  }
  return hasDigit ? std::optional<std::int64_t>(number) : std::nullopt;
}

template <class Integer>
std::optional<Integer> ParseInteger(std::string_view text) {
  Integer number = 0;
  auto const end = std::from_chars(text.data(), text.data() + text.size(), number);
  return end.ec == std::errc() && end.ptr == text.data() + text.size() ? std::optional<Integer>(number) : std::nullopt;
}

}  // namespace

std::optional<TimeBase> TimeBase::Make(TimeHeader const& header, senmark::Time const& firstTime) {
  TimeBase base;
  if (!header.usesTimecode || header.firstTime.empty() || firstTime.scale == 0) {
    return std::nullopt;
  }
  base.mUsesTimecode = *header.usesTimecode;
  if (base.mUsesTimecode) {
    base.mRateValue = std::floor(header.rateValue);
    base.mRateScale = std::floor(header.rateScale);
    base.mDropsFrames = header.dropsFrames;
    // With these limits a day of frames times the scale fits 64 bits.
    bool const isUsable = header.hasTimecodeInfo && base.mRateValue >= 1 && base.mRateValue < 2147483648.0 &&
                          base.mRateScale >= 1 && base.mRateScale < 4294967296.0 && base.FramesPerSecond() >= 0.5;
    if (!isUsable || (base.mDropsFrames && base.NominalRate() != 30 && base.NominalRate() != 60)) {
      return std::nullopt;
    }
  } else {
    if (!header.hasUtcInfo || !(header.precisionLength >= 0) || header.precisionLength > kMostDigits) {
      return std::nullopt;
    }
    base.mPrecision = static_cast<unsigned>(header.precisionLength);
    base.mIsGmt = header.isGmt;
    std::size_t const zone = 20 + base.mPrecision;
    base.mZone = header.firstTime.size() > zone ? header.firstTime.substr(zone) : std::string();
  }
  std::optional<std::int64_t> const first = base.TicksOf(header.firstTime);
  if (!first) {
    return std::nullopt;
  }
  double const ticksPerSecond =
      base.mUsesTimecode ? base.FramesPerSecond() : static_cast<double>(base.TicksPerSecond());
  base.mStart = *first - std::llround(firstTime.seconds() * ticksPerSecond);
  return base.mUsesTimecode && base.mStart < 0 ? std::nullopt : std::optional(base);
}

std::string TimeBase::Description() const {
  std::array<char, 96> text;
  if (mUsesTimecode) {
    bool const isWhole = mRateScale == 1;
    int const length = isWhole
                           ? std::snprintf(text.data(), text.size(), "time code, %.0f frames per second", mRateValue)
                           : std::snprintf(text.data(), text.size(), "time code, %.0f/%.0f (%.3f) frames per second",
                                           mRateValue, mRateScale, FramesPerSecond());
    return std::string(text.data(), static_cast<std::size_t>(length)) + (mDropsFrames ? ", drop frame" : "");
  }
  int const length = std::snprintf(text.data(), text.size(), "UTC, %u decimals of the seconds, %s", mPrecision,
                                   mIsGmt ? "no offset" : "with offset");
  return std::string(text.data(), static_cast<std::size_t>(length));
}

std::string TimeBase::Start() const {
  return mUsesTimecode ? TextOfFrames(mStart) : TextOfUtcTicks(mStart);
}

std::optional<senmark::Time> TimeBase::Parse(std::string const& text) const {
  std::optional<std::int64_t> const ticks = TicksOf(text);
  if (!ticks) {
    return std::nullopt;
  }
  if (!mUsesTimecode) {
    return MakeTime(*ticks - mStart, TicksPerSecond());
  }
  // At most 24 hours of frames, and a scale of 32 bits: the product fits.
  return MakeTime((*ticks - mStart) * static_cast<std::int64_t>(mRateScale), static_cast<std::int64_t>(mRateValue));
}

std::optional<std::int64_t> TimeBase::TicksOf(std::string const& text) const {
  return mUsesTimecode ? FramesOf(text) : UtcTicksOf(text);
}

std::optional<std::int64_t> TimeBase::FramesOf(std::string const& text) const {
  std::size_t place = 0;
  auto const hours = TakeDigits(text, place, 2);
  if (!hours || *hours > 23 || !TakeByte(text, place, ':')) {
    return std::nullopt;
  }
  auto const minutes = TakeDigits(text, place, 2);
  if (!minutes || *minutes > 59 || !TakeByte(text, place, ':')) {
    return std::nullopt;
  }
  auto const seconds = TakeDigits(text, place, 2);
  if (!seconds || *seconds > 59 || !TakeByte(text, place, ':')) {
    return std::nullopt;
  }
  auto const frames = TakeDigits(text, place, text.size() - place == 3 ? 3 : 2);
  if (!frames || place != text.size() || *frames >= NominalRate()) {
    return std::nullopt;
  }
  std::int64_t const counted = *frames + (*seconds + (*minutes + *hours * 60) * 60) * NominalRate();
  if (!mDropsFrames) {
    return counted;
  }
  // In every minute but each tenth the first two numbers are left out (four at twice the rate).
  std::int64_t const factor = NominalRate() / 30;
  std::int64_t const minute = 1800 * factor;
  return counted - (counted / (minute * 10) * 18 + counted % (minute * 10) / minute * 2) * factor;
}

std::string TimeBase::TextOfFrames(std::int64_t frames) const {
  std::int64_t const rate = NominalRate();
  if (mDropsFrames) {
    std::int64_t const factor = rate / 30;
    std::int64_t const tens = frames / (17982 * factor);
    std::int64_t const rest = frames % (17982 * factor);
    std::int64_t const first = 1800 * factor;  // the first of ten minutes has all its numbers
    frames += tens * 18 * factor + (rest < first ? 0 : ((rest - first) / (1798 * factor) + 1) * 2 * factor);
  }
  std::int64_t const seconds = frames / rate;
  bool const isFast = std::floor(FramesPerSecond()) > 99;
  std::array<char, 80> text;
  int const length = std::snprintf(text.data(), text.size(), isFast ? "%02d:%02d:%02d:%03d" : "%02d:%02d:%02d:%02d",
                                   static_cast<int>(seconds / 3600 % 24), static_cast<int>(seconds / 60 % 60),
                                   static_cast<int>(seconds % 60), static_cast<int>(frames % rate));
  return std::string(text.data(), static_cast<std::size_t>(length));
}

std::optional<std::int64_t> TimeBase::UtcTicksOf(std::string const& text) const {
  std::size_t place = 0;
  auto const days = TakeDate(text, place);
  if (!days) {
    return std::nullopt;
  }
  std::int64_t seconds = *days * kSecondsPerDay;
  std::int64_t fraction = 0;
  if (place != text.size() && !TakeTimeOfDay(text, place, seconds, fraction)) {
    return std::nullopt;
  }
  if (std::abs(seconds) >= std::numeric_limits<std::int64_t>::max() / TicksPerSecond()) {
    return std::nullopt;
  }
  return seconds * TicksPerSecond() + fraction;
}

bool TimeBase::TakeTimeOfDay(std::string_view text, std::size_t& place, std::int64_t& seconds,
                             std::int64_t& fraction) const {
  auto const hour = TakeByte(text, place, 'T') ? TakeDigits(text, place, 2) : std::nullopt;
  if (!hour || *hour > 23 || !TakeByte(text, place, ':')) {
    return false;
  }
  auto const minute = TakeDigits(text, place, 2);
  if (!minute || *minute > 59) {
    return false;
  }
  seconds += *hour * 3600 + *minute * 60;
  if (TakeByte(text, place, ':')) {
    auto const second = TakeDigits(text, place, 2);
    if (!second || *second > 59) {
      return false;
    }
    seconds += *second;
    if (TakeByte(text, place, '.')) {
      unsigned digits = 0;
      for (; place != text.size() && text[place] >= '0' && text[place] <= '9'; ++place, ++digits) {
        fraction = digits < mPrecision ? fraction * 10 + (text[place] - '0') : fraction;
      }
      fraction *= PowerOfTen(mPrecision - std::min(digits, mPrecision));
    }
  }
  return TakeZone(text, place) && place == text.size();
}

std::string TimeBase::TextOfUtcTicks(std::int64_t ticks) const {
  std::int64_t const seconds = FloorDivide(ticks, TicksPerSecond());
  std::int64_t days = FloorDivide(seconds, kSecondsPerDay);
  std::int64_t year = 1970 + FloorDivide(days, 366);
  while (DaysBeforeYear(year + 1) <= days) {
    ++year;
  }
  while (DaysBeforeYear(year) > days) {
    --year;
  }
  days -= DaysBeforeYear(year);
  std::int64_t month = 1;
  while (days >= DaysOfMonth(year, month)) {
    days -= DaysOfMonth(year, month);
    ++month;
  }
  std::int64_t const ofDay = seconds - FloorDivide(seconds, kSecondsPerDay) * kSecondsPerDay;
  std::array<char, 120> text;
  int const length =
      std::snprintf(text.data(), text.size(), "%04d-%02d-%02dT%02d:%02d:%02d.%0*lld", static_cast<int>(year),
                    static_cast<int>(month), static_cast<int>(days + 1), static_cast<int>(ofDay / 3600),
                    static_cast<int>(ofDay / 60 % 60), static_cast<int>(ofDay % 60), static_cast<int>(mPrecision),
                    static_cast<long long>(ticks - seconds * TicksPerSecond()));
  return std::string(text.data(), static_cast<std::size_t>(length)) + mZone;
}

std::int64_t TimeBase::NominalRate() const {
  return static_cast<std::int64_t>(FramesPerSecond() + 0.5);
}

std::int64_t TimeBase::TicksPerSecond() const {
  return PowerOfTen(mPrecision);
}

std::optional<senmark::Time> ParseSeconds(std::string const& text) {
  std::string_view rest = text;
  std::size_t const slash = rest.find('/');
  if (slash != std::string_view::npos) {
    auto const value = ParseInteger<std::int32_t>(rest.substr(0, slash));
    auto const scale = ParseInteger<std::uint32_t>(rest.substr(slash + 1));
    return value && scale && *scale != 0 ? std::optional(senmark::Time{*value, *scale}) : std::nullopt;
  }
  bool const isNegative = !rest.empty() && rest[0] == '-';
  rest.remove_prefix(isNegative ? 1 : 0);
  unsigned decimals = 0;
  auto const number = ParseDecimal(rest, decimals);
  return number ? MakeTime(isNegative ? -*number : *number, PowerOfTen(decimals)) : std::nullopt;
}

bool LooksLikeTimeText(std::string const& text) {
  return text.find(':') != std::string::npos || text.find('-', 1) != std::string::npos;
}

}  // namespace senmark_tool
