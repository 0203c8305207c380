/// Times of samples.
#pragma once

#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>

#include "senmark/module/Failure.h"

namespace senmark::kit {

/// A frame of a file with time codes, from 0.
struct Frame {
  std::int64_t number = 0;
};

/// A moment in GMT, from the year 1 to the year 9999 of the Gregorian calendar. Leap seconds do not count.
struct Instant {
  std::int64_t seconds = 0;      ///< since 1970-01-01T00:00:00Z, negative before
  std::int32_t nanoseconds = 0;  ///< 0 to 999,999,999, from `seconds` on
};

inline bool operator<(Instant const& left, Instant const& right) {
  return left.seconds != right.seconds ? left.seconds < right.seconds : left.nanoseconds < right.nanoseconds;
}
inline bool operator==(Instant const& left, Instant const& right) {
  return left.seconds == right.seconds && left.nanoseconds == right.nanoseconds;
}

/// A date and a time of day, as a calendar and a clock show them.
struct CivilTime {
  int year = 1970;
  int month = 1;  ///< 1 to 12
  int day = 1;    ///< 1 to 31
  int hour = 0;
  int minute = 0;
  int second = 0;  ///< 60 in a leap second, which is the first second of the next minute here
  std::int32_t nanoseconds = 0;
  int zoneMinutes = 0;  ///< of the clock, east of GMT positive
};

namespace detail {

/// Days since 1970-01-01. The year is counted from March, so that the leap day is its last.
inline std::int64_t DaysOfDate(std::int64_t year, int month, int day) {
  std::int64_t const shifted = year - (month <= 2 ? 1 : 0);
  std::int64_t const era = (shifted >= 0 ? shifted : shifted - 399) / 400;
  std::int64_t const yearOfEra = shifted - era * 400;
  std::int64_t const dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
  return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

/// The date of a day that `DaysOfDate` gives.
inline CivilTime DateOfDays(std::int64_t days) {
  std::int64_t const shifted = days + 719468;
  std::int64_t const era = (shifted >= 0 ? shifted : shifted - 146096) / 146097;
  std::int64_t const dayOfEra = shifted - era * 146097;
  std::int64_t const yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  std::int64_t const dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  std::int64_t const monthFromMarch = (5 * dayOfYear + 2) / 153;
  CivilTime date;
  date.day = static_cast<int>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  date.month = static_cast<int>(monthFromMarch + (monthFromMarch < 10 ? 3 : -9));
  date.year = static_cast<int>(yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0));
  return date;
}

constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kFirstSecond = -62135596800;         ///< 0001-01-01T00:00:00Z
constexpr std::int64_t kFirstWrittenSecond = -30610224000;  ///< 1000-01-01T00:00:00Z: a file has four digits for a year
constexpr std::int64_t kLastSecond = 253402300799;          ///< 9999-12-31T23:59:59Z

}  // namespace detail

inline bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

inline int DaysOfMonth(int year, int month) {
  static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return kDays[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

/// The moment in GMT; none for a date or a time that does not exist, and outside the years 1 to 9999.
inline std::optional<Instant> MakeInstant(CivilTime const& time) {
  constexpr int kFarthestZone = 18 * 60;
  bool const isDate = time.year >= 1 && time.year <= 9999 && time.month >= 1 && time.month <= 12 && time.day >= 1 &&
                      time.day <= DaysOfMonth(time.year, time.month);
  bool const isTime = time.hour >= 0 && time.hour <= 23 && time.minute >= 0 && time.minute <= 59 && time.second >= 0 &&
                      time.second <= 60 && time.nanoseconds >= 0 && time.nanoseconds <= 999999999;
  if (!isDate || !isTime || time.zoneMinutes < -kFarthestZone || time.zoneMinutes > kFarthestZone) {
    return std::nullopt;
  }
  std::int64_t const seconds = detail::DaysOfDate(time.year, time.month, time.day) * detail::kDaySeconds +
                               std::int64_t{time.hour} * 3600 + std::int64_t{time.minute - time.zoneMinutes} * 60 +
                               time.second;
  if (seconds < detail::kFirstSecond || seconds > detail::kLastSecond) {
    return std::nullopt;
  }
  return Instant{seconds, time.nanoseconds};
}

/// What a clock in GMT shows.
inline CivilTime MakeCivilTime(Instant const& instant) {
  std::int64_t days = instant.seconds / detail::kDaySeconds;
  std::int64_t rest = instant.seconds % detail::kDaySeconds;
  if (rest < 0) {
    rest += detail::kDaySeconds;
    --days;
  }
  CivilTime time = detail::DateOfDays(days);
  time.hour = static_cast<int>(rest / 3600);
  time.minute = static_cast<int>(rest / 60 % 60);
  time.second = static_cast<int>(rest % 60);
  time.nanoseconds = instant.nanoseconds;
  return time;
}

/// A moment in seconds since 1970-01-01T00:00:00Z, to the nanosecond that a double can tell; none for what is no
/// moment of the years 1 to 9999.
inline std::optional<Instant> InstantOfSeconds(double seconds) {
  if (!(seconds >= static_cast<double>(detail::kFirstSecond) && seconds < static_cast<double>(detail::kLastSecond))) {
    return std::nullopt;
  }
  double const whole = std::floor(seconds);
  auto const nanoseconds = static_cast<std::int64_t>((seconds - whole) * 1e9 + 0.5);
  return Instant{static_cast<std::int64_t>(whole) + nanoseconds / 1000000000,
                 static_cast<std::int32_t>(nanoseconds % 1000000000)};
}

/// Reads a date and a time as ISO 8601 writes them: `2024-05-01T12:30:00.25+02:00`.
///
/// A blank may stand for the T, the seconds and their fraction may be missing, and so may the whole time of day; the
/// fraction begins with a point or a comma. The zone is Z, +hh:mm, +hhmm or +hh, at once or behind a blank; without
/// one the clock is taken to be `zoneMinutes` east of GMT. A date without dashes and a time without colons (the basic
/// format) are read too. None for anything else, also for what follows behind.
std::optional<Instant> ParseInstant(std::string_view text, int zoneMinutes = 0);

/// Reads the zone of a clock as `ParseInstant` does, in minutes east of GMT; none for anything else.
std::optional<int> ParseZone(std::string_view text);

namespace detail {

/// Takes digits from the front of a text.
class TimeReader {
 public:
  explicit TimeReader(std::string_view text) : mText(text) {}

  bool isAtEnd() const { return mText.empty(); }
  char front() const { return mText.empty() ? '\0' : mText.front(); }
  bool skip(char character) {
    bool const matches = front() == character && !mText.empty();
    mText.remove_prefix(matches ? 1 : 0);
    return matches;
  }
  /// Exactly so many digits.
  bool number(std::size_t digits, int& value) {
    if (mText.size() < digits) {
      return false;
    }
    int result = 0;
    for (char const digit : mText.substr(0, digits)) {
      if (digit < '0' || digit > '9') {
        return false;
      }
      result = result * 10 + (digit - '0');
    }
    mText.remove_prefix(digits);
    value = result;
    return true;
  }
  /// The digits of a fraction; those behind the ninth are cut off.
  bool nanoseconds(std::int32_t& value) {
    std::int32_t result = 0;
    std::size_t count = 0;
    for (; front() >= '0' && front() <= '9'; ++count, mText.remove_prefix(1)) {
      result = count < 9 ? result * 10 + (front() - '0') : result;
    }
    for (std::size_t i = count; i < 9; ++i) {
      result *= 10;
    }
    value = result;
    return count != 0;
  }

 private:
  std::string_view mText;
};

inline bool ReadDate(TimeReader& reader, CivilTime& time) {
  if (!reader.number(4, time.year)) {
    return false;
  }
  bool const dashed = reader.skip('-');
  return reader.number(2, time.month) && (!dashed || reader.skip('-')) && reader.number(2, time.day);
}

inline bool ReadClock(TimeReader& reader, CivilTime& time) {
  if (!reader.number(2, time.hour)) {
    return false;
  }
  bool const colons = reader.skip(':');
  if (!reader.number(2, time.minute)) {
    return false;
  }
  bool const hasSeconds = colons ? reader.skip(':') : reader.front() >= '0' && reader.front() <= '9';
  if (!hasSeconds) {
    return true;
  }
  if (!reader.number(2, time.second)) {
    return false;
  }
  return (!reader.skip('.') && !reader.skip(',')) || reader.nanoseconds(time.nanoseconds);
}

inline bool ReadZone(TimeReader& reader, CivilTime& time) {
  if (reader.skip('Z') || reader.skip('z')) {
    time.zoneMinutes = 0;
    return true;
  }
  int const sign = reader.front() == '-' ? -1 : 1;
  int hours = 0;
  int minutes = 0;
  if ((!reader.skip('+') && !reader.skip('-')) || !reader.number(2, hours)) {
    return false;
  }
  if ((reader.skip(':') || !reader.isAtEnd()) && (!reader.number(2, minutes) || minutes > 59)) {
    return false;
  }
  time.zoneMinutes = sign * (hours * 60 + minutes);
  return true;
}

}  // namespace detail

inline std::optional<Instant> ParseInstant(std::string_view text, int zoneMinutes) {
  detail::TimeReader reader(text);
  CivilTime time;
  time.zoneMinutes = zoneMinutes;
  if (!detail::ReadDate(reader, time)) {
    return std::nullopt;
  }
  if (!reader.isAtEnd()) {
    if (!reader.skip('T') && !reader.skip('t') && !reader.skip(' ')) {
      return std::nullopt;
    }
    if (!detail::ReadClock(reader, time)) {
      return std::nullopt;
    }
    reader.skip(' ');
    if (!reader.isAtEnd() && (!detail::ReadZone(reader, time) || !reader.isAtEnd())) {
      return std::nullopt;
    }
  }
  return MakeInstant(time);
}

inline std::optional<int> ParseZone(std::string_view text) {
  detail::TimeReader reader(text);
  CivilTime time;
  if (!detail::ReadZone(reader, time) || !reader.isAtEnd() || std::abs(time.zoneMinutes) > 18 * 60) {
    return std::nullopt;
  }
  return time.zoneMinutes;
}

/// How a file writes its times: frames at a rate, or moments in GMT.
class TimeBase {
 public:
  /// Time codes, at `value`/`scale` frames per second, which the file gets in lowest terms. A file of time codes is
  /// shorter than a day.
  ///
  /// dropsFrames  numbers are left out so that the code follows the clock; for 30000/1001 and 60000/1001 alone.
  ///
  /// Readers are exact as long as the frames from the start, times `scale` in lowest terms, stay below 2 to the 31st:
  /// always with whole rates, and for 19 hours at 29.97 frames per second.
  /// Errors: `Failure` with code 1507 for a rate below 0.5 or above 1000, one whose terms are beyond 31 bits, and for
  /// frames dropped at another rate.
  static TimeBase frames(unsigned value, unsigned scale = 1, bool dropsFrames = false) {
    double const rate = scale == 0 ? 0 : static_cast<double>(value) / scale;
    if (rate < 0.5 || rate > 1000) {
      throw Refused("a frame rate of " + std::to_string(value) + "/" + std::to_string(scale));
    }
    TimeBase base;
    unsigned const common = std::gcd(value, scale);
    base.mValue = value / common;
    base.mScale = scale / common;
    base.mDropsFrames = dropsFrames;
    constexpr unsigned kLargest = std::numeric_limits<std::int32_t>::max();
    if (base.mValue > kLargest || base.mScale > kLargest) {
      throw Refused("a frame rate whose terms have more than 31 bits");
    }
    bool const mayDrop = base.mScale == 1001 && (base.mValue == 30000 || base.mValue == 60000);
    if (dropsFrames && !mayDrop) {
      throw Refused("dropped frames at another rate than 29.97 and 59.94");
    }
    base.mNominal = static_cast<std::int64_t>(rate + 0.5);
    return base;
  }

  /// Moments in GMT of the years 1000 to 9999. digits: of the fraction of a second, 1 to 9.
  ///
  /// Readers keep a time as a fraction of 32 bits of seconds from the file's first sample. A moment between whole
  /// seconds is exact for 24 days with 3 digits, 34 minutes with 6, and one second with 9; behind that it has 7
  /// significant digits. Whole seconds are exact for 68 years. With more than 4 digits a reader that asks for the
  /// samples of a time may get others, for the arithmetic on its question has 32 bits too; 3 digits are a good choice.
  /// Errors: `Failure` with code 1507 for other digits.
  static TimeBase gmt(unsigned digits) {
    if (digits < 1 || digits > 9) {
      throw Refused("GMT with " + std::to_string(digits) + " digits");
    }
    TimeBase base;
    base.mDigits = digits;
    for (unsigned digit = digits; digit < 9; ++digit) {
      base.mUnit *= 10;
    }
    return base;
  }

  bool isGmt() const { return mDigits != 0; }
  unsigned digits() const { return mDigits; }
  /// Nanoseconds of the last digit.
  std::int64_t fractionUnit() const { return mUnit; }
  unsigned value() const { return mValue; }
  unsigned scale() const { return mScale; }
  bool dropsFrames() const { return mDropsFrames; }
  /// The frames per second that a time code counts with.
  std::int64_t nominalRate() const { return mNominal; }

 private:
  TimeBase() = default;

  unsigned mDigits = 0;  ///< 0: time codes
  std::int64_t mUnit = 1;
  unsigned mValue = 0;
  unsigned mScale = 1;
  bool mDropsFrames = false;
  std::int64_t mNominal = 0;
};

/// A time code.
struct TimeCode {
  int hours = 0;
  int minutes = 0;
  int seconds = 0;
  int frames = 0;
};

/// The code of a frame. Where frames are dropped, the first numbers of each minute but the tenth are left out: two at
/// 29.97 and four at 59.94 (SMPTE ST 12-1). Errors: `Failure` with code 1507 for a frame before 0 or after a day.
inline TimeCode MakeTimeCode(Frame frame, TimeBase const& base) {
  std::int64_t const rate = base.nominalRate();
  std::int64_t number = frame.number;
  std::int64_t const dropped = rate / 15;
  if (base.dropsFrames() && number >= 0) {
    std::int64_t const minuteLength = rate * 60 - dropped;
    std::int64_t const tenMinutes = minuteLength * 10 + dropped;
    std::int64_t const rest = number % tenMinutes;
    std::int64_t const drops = rest < rate * 60 ? 0 : (rest - dropped) / minuteLength;
    number += dropped * (number / tenMinutes * 9 + drops);
  }
  if (number < 0 || number >= rate * detail::kDaySeconds) {
    throw Refused("frame " + std::to_string(frame.number) + " is not within a day");
  }
  std::int64_t const seconds = number / rate;
  return {static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60), static_cast<int>(seconds % 60),
          static_cast<int>(number % rate)};
}

namespace detail {

/// Turns frames into time codes. Most frames follow the one before them within a second, so that one is kept.
class TimeCodes {
 public:
  explicit TimeCodes(TimeBase const& base) : mBase(base) {}

  /// Errors: as `MakeTimeCode`.
  TimeCode at(Frame frame) {
    if (frame.number == mFrame + 1 && mTimeCode.frames < mLastInSecond) {
      ++mTimeCode.frames;
    } else {
      mTimeCode = MakeTimeCode(frame, mBase);
      mLastInSecond = static_cast<int>(mBase.nominalRate()) - 1;
    }
    mFrame = frame.number;
    return mTimeCode;
  }

 private:
  TimeBase mBase;
  std::int64_t mFrame = 0;  ///< the one that was asked for last
  TimeCode mTimeCode{};
  int mLastInSecond = 0;  ///< before the first call, so that this makes a time code
};

}  // namespace detail

}  // namespace senmark::kit
