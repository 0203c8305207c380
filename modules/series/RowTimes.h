/// The times of the rows of a file, one after the other.
#pragma once

#include <cstdint>
#include <string_view>

#include "Ascii.h"
#include "DateText.h"
#include "EightBytes.h"
#include "Row.h"
#include "TimeForm.h"

namespace senmark_series {

/// Most rows write their time just as the one before, and at the same date. What is written so is read at fixed places,
/// all else by `ParseMoment` and its like, with the same result.
class RowTimes {
 public:
  /// order  in the place of that of the form.
  RowTimes(TimeForm const& form, eDateOrder order) : mForm(form), mOrder(order) {}

  /// False if the cells do not tell a time of the years 1000 to 9999.
  bool read(Row const& row, kit::Instant& time) {
    if (row.isBroken || (!ReadAtOnce(row, time) && !ReadAny(row, time))) {
      return false;
    }
    // What rounding takes beyond the last second of all is not worth a digit.
    return time.seconds >= kit::detail::kFirstWrittenSecond && time.seconds < kit::detail::kLastSecond;
  }

 private:
  /// Dates have this many characters at most: 31/12/2024. Those of fewer than eight are read anew in each row.
  static constexpr std::size_t kShortestDate = 8;
  static constexpr std::size_t kLongestDate = 10;

  bool ReadAtOnce(Row const& row, kit::Instant& time);
  bool ReadAny(Row const& row, kit::Instant& time) const;
  bool ReadDated(std::string_view text, kit::Instant& time);
  bool ReadPair(std::string_view date, std::string_view clock, kit::Instant& time);
  bool ReadClock(std::string_view text, std::int64_t midnight, kit::Instant& time) const;
  bool IsDateBefore(char const* text) const;
  bool RememberDate(std::string_view text);

  TimeForm mForm;
  eDateOrder mOrder;
  // The date of a row before, with this many characters, 0 for none: its first eight and its last eight.
  std::size_t mDateSize = 0;
  std::uint64_t mDateStart = 0;
  std::uint64_t mDateEnd = 0;
  std::int64_t mMidnight = 0;  ///< in seconds from 1970, where it begins in GMT
};

inline bool RowTimes::ReadAtOnce(Row const& row, kit::Instant& time) {
  Cell const& cell = row.cell(mForm.column);
  switch (mForm.kind) {
    case eTimeKind::kIso:
    case eTimeKind::kDate:
      return ReadDated(cell.text, time);
    case eTimeKind::kPair:
      return ReadPair(cell.text, row.cell(mForm.clockColumn).text, time);
    case eTimeKind::kClock:
      return ReadClock(cell.text, 0, time);
    default:
      return CountedTimeOfCell(cell, mForm.unitDigits, time);
  }
}

/// A date, a T or a blank, and a time of day.
inline bool RowTimes::ReadDated(std::string_view text, kit::Instant& time) {
  if (text.size() <= kLongestDate ||
      (!IsDateBefore(text.data()) && !RememberDate(text.substr(0, text.find_first_of("T "))))) {
    return false;
  }
  char const between = text[mDateSize];
  return (between == 'T' || between == ' ') && ReadClock(text.substr(mDateSize + 1), mMidnight, time);
}

inline bool RowTimes::ReadPair(std::string_view date, std::string_view clock, kit::Instant& time) {
  if (date.size() < kShortestDate ||
      ((date.size() != mDateSize || !IsDateBefore(date.data())) && !RememberDate(date))) {
    return false;
  }
  return ReadClock(clock, mMidnight, time);
}

/// `hh:mm:ss` or `hh:mm`, with up to nine digits behind a mark, and a Z.
inline bool RowTimes::ReadClock(std::string_view text, std::int64_t midnight, kit::Instant& time) const {
  constexpr std::size_t kWithSeconds = 8;
  constexpr std::size_t kWithMinutes = 5;
  constexpr std::uint64_t kColons = 0x0000FF0000FF0000U;
  char const zero[] = "00:00:00";
  char padded[] = "00:00:00";
  char const* p = text.data();
  if (text.size() == kWithMinutes) {
    p = static_cast<char const*>(std::memcpy(padded, p, kWithMinutes));
  } else if (text.size() < kWithSeconds) {
    return false;
  }
  std::uint64_t const digits = LoadEight(p) ^ LoadEight(zero);
  auto const pair = [&](unsigned place) {
    return static_cast<std::int64_t>((digits >> 8 * place & 0xFF) * 10 + (digits >> 8 * (place + 1) & 0xFF));
  };
  std::int64_t const hours = pair(0);
  std::int64_t const minutes = pair(3);
  std::int64_t const seconds = pair(6);
  if ((digits & kColons) != 0 || !AreDigits(digits) || hours > 23 || minutes > 59 || seconds > 60) {
    return false;
  }
  std::int32_t nanoseconds = 0;
  std::int64_t zoneSeconds = std::int64_t{mForm.zoneMinutes} * 60;
  if (text.size() > kWithSeconds) {
    char const* const end = p + text.size() - (text.back() == 'Z' ? 1 : 0);
    zoneSeconds = text.back() == 'Z' ? 0 : zoneSeconds;
    p += kWithSeconds;
    if (p != end) {
      if ((*p != '.' && *p != ',') || end - p < 2 || end - p > 10) {
        return false;
      }
      std::int32_t unit = 100000000;
      for (++p; p != end; ++p, unit /= 10) {
        if (!IsDigit(*p)) {
          return false;
        }
        nanoseconds += unit * (*p - '0');
      }
    }
  }
  time.seconds = midnight + hours * 3600 + minutes * 60 + seconds - zoneSeconds;
  time.nanoseconds = nanoseconds;
  return true;
}

/// text: has as many characters as that date, and eight at least.
inline bool RowTimes::IsDateBefore(char const* text) const {
  return mDateSize != 0 && LoadEight(text) == mDateStart && LoadEight(text + mDateSize - 8) == mDateEnd;
}

}  // namespace senmark_series
