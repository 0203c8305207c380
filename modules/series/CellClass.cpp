#include "CellClass.h"

#include <algorithm>

#include "Ascii.h"
#include "DateText.h"
#include "NumberText.h"
#include "TimeForm.h"

namespace senmark_series {

namespace {

constexpr std::size_t kLongestTime = 64;
constexpr int kFirstYear = 1900;
constexpr int kLastYear = 2100;

/// Digits of their unit.
constexpr unsigned kNanoseconds = 9;

unsigned ClassOfDigits(std::string_view cell) {
  unsigned classes = 0;
  std::optional<kit::CivilTime> const date = ParseDate(cell, eDateOrder::kDayFirst);
  if (date && date->year >= kFirstYear && date->year <= kLastYear) {
    classes |= kDigitDate;
  }
  kit::CivilTime clock;
  return classes | (ParseClock(cell, true, clock) ? kOtherClock : 0U);
}

unsigned ClassOfText(std::string_view cell) {
  unsigned classes = 0;
  bool const isIso = kit::ParseInstant(cell).has_value();
  bool const hasClock = cell.find(':') != std::string_view::npos || cell.find('T') != std::string_view::npos;
  if (isIso) {
    classes |= hasClock ? kIsoMoment : kIsoDate;
  }
  auto const isDated = [&](eDateOrder order) { return ParseMoment(cell, order, 0).has_value(); };
  bool const isDate = isIso || isDated(eDateOrder::kDayFirst) || isDated(eDateOrder::kMonthFirst);
  auto const isPlain = [&](eDateOrder order) { return ParseDate(cell, order).has_value(); };
  bool const isPlainDate = isPlain(eDateOrder::kDayFirst) || isPlain(eDateOrder::kMonthFirst);
  classes |= isDate && !isPlainDate ? kDateMoment : 0U;
  classes |= isPlainDate ? kPlainDate : 0U;
  kit::CivilTime clock;
  if (ParseClock(cell, true, clock)) {
    classes |= cell.find(':') != std::string_view::npos ? kColonClock : kOtherClock;
  }
  return classes;
}

}  // namespace

unsigned ClassOf(std::string_view cell, char decimalMark) {
  // Nanoseconds from 1970 are too large for a value.
  bool const isNumber = ShapeOf(cell, decimalMark).isNumber || CountedTime(cell, kNanoseconds, decimalMark);
  unsigned const classes = isNumber ? kNumber : 0U;
  if (cell.empty() || cell.size() > kLongestTime || !IsDigit(cell.front())) {
    return classes;
  }
  bool const isDigits = std::all_of(cell.begin(), cell.end(), IsDigit);
  return classes | (isDigits ? ClassOfDigits(cell) : ClassOfText(cell));
}

}  // namespace senmark_series
