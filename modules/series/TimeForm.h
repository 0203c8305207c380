/// How a table tells the time of a row, and the moments that come of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "DateText.h"
#include "Row.h"

namespace senmark_series {

enum class eTimeKind : std::uint8_t {
  kIso,      ///< a date with or without a time of day, as ISO 8601 has it
  kDate,     ///< a date as people write it, with or without a time of day
  kPair,     ///< a date in one column and a time of day in another
  kEpoch,    ///< a number that counts from 1970-01-01T00:00:00Z
  kElapsed,  ///< a number that counts from the start of the recording, taken to be 1970-01-01T00:00:00Z
  kClock,    ///< a time of day alone, of 1970-01-01
};

struct TimeForm {
  static constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

  eTimeKind kind = eTimeKind::kIso;
  std::size_t column = kNoColumn;
  std::size_t clockColumn = kNoColumn;  ///< of a pair
  unsigned unitDigits = 0;              ///< of a number: 0 for seconds, 3 for milliseconds, 6, 9
  eDateOrder order = eDateOrder::kDayFirst;
  int zoneMinutes = 0;  ///< of clocks that tell none, east of GMT
  char decimalMark = '.';

  bool isTimeColumn(std::size_t index) const { return index == column || (index == clockColumn && index != kNoColumn); }
  /// Whether the day may stand before or behind the month.
  bool hasDate() const { return kind == eTimeKind::kDate || kind == eTimeKind::kPair; }
  bool countsFromStart() const { return kind == eTimeKind::kElapsed || kind == eTimeKind::kClock; }
};

/// The moment of a row; none if its cells do not tell one of the years 1000 to 9999. `order` takes the place of that of
/// the form.
std::optional<kit::Instant> TimeOf(Row const& row, TimeForm const& form, eDateOrder order);

/// A count of units from 1970-01-01T00:00:00Z, to the nanosecond.
std::optional<kit::Instant> CountedTime(std::string_view text, unsigned unitDigits, char decimalMark);

/// The same of a number that was read when its cell was cut; false for others, and for more digits than nanoseconds.
inline bool CountedTimeOfCell(Cell const& cell, unsigned unitDigits, kit::Instant& time);

/// Like "ISO 8601" or "milliseconds from 1970-01-01".
std::string NameOf(TimeForm const& form);

/// Digits behind the second that it takes to write the moment, 0 to 9.
unsigned DigitsOf(kit::Instant const& instant);

/// Digits with which readers can tell moments apart that lie within so many seconds: they keep times as fractions of
/// 32 bits from the first one on.
unsigned DigitsWithin(std::int64_t seconds);

/// seconds, nanoseconds  of a time on one side or the other of 1970.
inline kit::Instant MakeCountedInstant(bool isNegative, std::int64_t seconds, std::int32_t nanoseconds) {
  constexpr std::int32_t kSecond = 1000000000;
  if (!isNegative) {
    return {seconds, nanoseconds};
  }
  return nanoseconds == 0 ? kit::Instant{-seconds, 0} : kit::Instant{-seconds - 1, kSecond - nanoseconds};
}

inline bool CountedTimeOfCell(Cell const& cell, unsigned unitDigits, kit::Instant& time) {
  constexpr unsigned kNanosecondDigits = 9;
  unsigned const left = kNanosecondDigits - unitDigits;
  if (!cell.plain.isThere() || cell.plain.fraction > left) {
    return false;
  }
  char const* const start = cell.text.data();
  std::uint64_t seconds = cell.plain.whole(start);
  std::uint64_t nanoseconds = cell.plain.behindMark(start) * kPowersOfTen[left - cell.plain.fraction];
  if (unitDigits != 0) {
    std::uint64_t const unit = kPowersOfTen[unitDigits];
    nanoseconds += seconds % unit * kPowersOfTen[left];
    seconds /= unit;
  }
  time = MakeCountedInstant(cell.plain.isNegative(), static_cast<std::int64_t>(seconds),
                            static_cast<std::int32_t>(nanoseconds));
  return true;
}

}  // namespace senmark_series
