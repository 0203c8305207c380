#include "DateText.h"

#include "Ascii.h"

namespace senmark_series {

namespace {

/// Takes a text from its front.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : mText(text) {}

  bool isAtEnd() const { return mText.empty(); }
  char front() const { return mText.empty() ? '\0' : mText.front(); }
  std::string_view rest() const { return mText; }

  bool skip(char character) {
    bool const matches = !mText.empty() && mText.front() == character;
    mText.remove_prefix(matches ? 1 : 0);
    return matches;
  }
  bool skipWord(std::string_view lower) {
    bool const matches = EqualsLower(mText.substr(0, lower.size()), lower);
    mText.remove_prefix(matches ? lower.size() : 0);
    return matches;
  }
  /// As many digits as there are, if that is from `least` to `most`; gives their count, 0 for another one.
  std::size_t number(std::size_t least, std::size_t most, int& value) {
    std::size_t count = 0;
    int result = 0;
    for (; count != mText.size() && IsDigit(mText[count]); ++count) {
      if (count == most) {
        return 0;
      }
      result = result * 10 + (mText[count] - '0');
    }
    if (count < least) {
      return 0;
    }
    value = result;
    mText.remove_prefix(count);
    return count;
  }

 private:
  std::string_view mText;
};

constexpr int kFirstYearOfTwoDigits = 70;

int FullYear(int year, std::size_t digits) {
  return digits == 2 ? year + (year < kFirstYearOfTwoDigits ? 2000 : 1900) : year;
}

/// With three numbers and the same sign twice between them.
bool TakeDate(Cursor& cursor, eDateOrder order, kit::CivilTime& date) {
  int numbers[3] = {};
  std::size_t const first = cursor.number(1, 4, numbers[0]);
  char const sign = cursor.front();
  if (first == 0 || first == 3 || (sign != '/' && sign != '-' && sign != '.') || !cursor.skip(sign) ||
      cursor.number(1, 2, numbers[1]) == 0 || !cursor.skip(sign)) {
    return false;
  }
  std::size_t const last = cursor.number(1, first == 4 ? 2 : 4, numbers[2]);
  if (first == 4) {
    date.year = numbers[0];
    date.month = numbers[1];
    date.day = numbers[2];
    return last != 0;
  }
  bool const isDayFirst = order == eDateOrder::kDayFirst;
  date.day = numbers[isDayFirst ? 0 : 1];
  date.month = numbers[isDayFirst ? 1 : 0];
  date.year = FullYear(numbers[2], last);
  return last == 2 || last == 4;
}

/// Digits behind the ninth are cut off.
bool TakeFraction(Cursor& cursor, kit::CivilTime& time) {
  if (!cursor.skip('.') && !cursor.skip(',')) {
    return true;
  }
  bool const hasDigits = IsDigit(cursor.front());
  for (std::int32_t unit = 100000000; IsDigit(cursor.front()); unit /= 10) {
    time.nanoseconds += unit * (cursor.front() - '0');
    cursor.skip(cursor.front());
  }
  return hasDigits;
}

bool TakeZone(Cursor& cursor, kit::CivilTime& time) {
  cursor.skip(' ');
  if (cursor.isAtEnd()) {
    return true;
  }
  if (cursor.skipWord("utc") || cursor.skipWord("gmt")) {
    time.zoneMinutes = 0;
    return cursor.isAtEnd();
  }
  std::optional<int> const zone = kit::ParseZone(cursor.rest());
  time.zoneMinutes = zone.value_or(0);
  return zone.has_value();
}

/// 12 is the hour before 1.
bool TakeHalfOfDay(Cursor& cursor, kit::CivilTime& time) {
  Cursor half = cursor;
  half.skip(' ');
  bool const isAfternoon = half.skipWord("pm") || half.skipWord("p.m.");
  if (!isAfternoon && !half.skipWord("am") && !half.skipWord("a.m.")) {
    return true;
  }
  cursor = half;
  bool const isHour = time.hour >= 1 && time.hour <= 12;
  time.hour = time.hour % 12 + (isAfternoon ? 12 : 0);
  return isHour;
}

bool TakeDigits(Cursor& cursor, kit::CivilTime& time) {
  int value = 0;
  std::size_t const digits = cursor.number(1, 6, value);
  if (digits == 0 || digits == 5) {
    return false;
  }
  time.second = digits == 6 ? value % 100 : 0;
  value = digits == 6 ? value / 100 : value;
  time.hour = value / 100;
  time.minute = value % 100;
  return digits != 6 || TakeFraction(cursor, time);
}

bool IsClock(kit::CivilTime const& time) {
  return time.hour <= 23 && time.minute <= 59 && time.second <= 60;
}

/// Up to the zone.
bool TakeClock(Cursor& cursor, kit::CivilTime& time) {
  time.second = 0;
  time.nanoseconds = 0;
  if (cursor.number(1, 2, time.hour) == 0) {
    return false;
  }
  char const sign = cursor.front();
  if ((sign != ':' && sign != '.') || !cursor.skip(sign) || cursor.number(2, 2, time.minute) == 0) {
    return false;
  }
  if (cursor.skip(sign)) {
    if (cursor.number(2, 2, time.second) == 0 || !TakeFraction(cursor, time)) {
      return false;
    }
  } else if (sign == '.') {
    return false;
  }
  return TakeHalfOfDay(cursor, time);
}

}  // namespace

std::optional<kit::Instant> ParseMoment(std::string_view text, eDateOrder order, int zoneMinutes) {
  if (std::optional<kit::Instant> const instant = kit::ParseInstant(text, zoneMinutes)) {
    return instant;
  }
  kit::CivilTime time;
  time.zoneMinutes = zoneMinutes;
  Cursor cursor(text);
  if (!TakeDate(cursor, order, time)) {
    return std::nullopt;
  }
  if (cursor.isAtEnd()) {
    return kit::MakeInstant(time);
  }
  bool const isSplit = cursor.skip('T') || cursor.skip(',') || cursor.front() == ' ';
  while (cursor.skip(' ')) {
  }
  if (!isSplit || !TakeClock(cursor, time) || !TakeZone(cursor, time)) {
    return std::nullopt;
  }
  return kit::MakeInstant(time);
}

std::optional<kit::CivilTime> ParseDate(std::string_view text, eDateOrder order) {
  kit::CivilTime date;
  Cursor cursor(text);
  Cursor digits(text);
  int number = 0;
  if (digits.number(8, 8, number) == 8) {
    date.year = number / 10000;
    date.month = number / 100 % 100;
    date.day = number % 100;
    cursor = digits;
  } else if (!TakeDate(cursor, order, date)) {
    return std::nullopt;
  }
  return cursor.isAtEnd() && kit::MakeInstant(date) ? std::optional<kit::CivilTime>(date) : std::nullopt;
}

bool ParseClock(std::string_view text, bool mayBeDigits, kit::CivilTime& time) {
  kit::CivilTime clock = time;
  Cursor cursor(text);
  if (!TakeClock(cursor, clock)) {
    clock = time;
    clock.second = 0;
    clock.nanoseconds = 0;
    cursor = Cursor(text);
    if (!mayBeDigits || !TakeDigits(cursor, clock)) {
      return false;
    }
  }
  if (!TakeZone(cursor, clock) || !IsClock(clock)) {
    return false;
  }
  time = clock;
  return true;
}

bool HasHalfOfDay(std::string_view text) {
  std::size_t const last = text.find_last_of("mM");
  return last != std::string_view::npos && text.substr(last).size() <= 2 && text.find(':') != std::string_view::npos;
}

}  // namespace senmark_series
