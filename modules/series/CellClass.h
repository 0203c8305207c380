/// What a cell may be, as far as times are concerned.
#pragma once

#include <string_view>

namespace senmark_series {

/// Several may hold of one cell.
enum eCellClass : unsigned {
  kIsoMoment = 1,    ///< ISO 8601 with a time of day
  kIsoDate = 2,      ///< ISO 8601 without one, not of digits alone
  kDateMoment = 4,   ///< a date as people write it, with a time of day, the day before or behind the month
  kPlainDate = 8,    ///< a date alone, of any kind but digits
  kDigitDate = 16,   ///< eight digits of the years from 1900 to 2100
  kColonClock = 32,  ///< a time of day with colons
  kOtherClock = 64,  ///< a time of day with points, or of digits alone
  kNumber = 128,
  kAnyClock = kColonClock | kOtherClock,
};

/// Sums of `eCellClass`.
unsigned ClassOf(std::string_view cell, char decimalMark);

}  // namespace senmark_series
