#include "RowTimes.h"

namespace senmark_series {

namespace {

std::optional<kit::Instant> PairTime(std::string_view date, std::string_view clock, eDateOrder order, int zoneMinutes) {
  std::optional<kit::CivilTime> time = ParseDate(date, order);
  if (!time) {
    return std::nullopt;
  }
  time->zoneMinutes = zoneMinutes;
  return ParseClock(clock, true, *time) ? kit::MakeInstant(*time) : std::nullopt;
}

std::optional<kit::Instant> ClockTime(std::string_view text, int zoneMinutes) {
  kit::CivilTime time;
  time.zoneMinutes = zoneMinutes;
  return ParseClock(text, false, time) ? kit::MakeInstant(time) : std::nullopt;
}

std::optional<kit::Instant> AnyTime(Row const& row, TimeForm const& form, eDateOrder order) {
  std::string_view const text = row.cell(form.column).text;
  switch (form.kind) {
    case eTimeKind::kIso:
      return kit::ParseInstant(text, form.zoneMinutes);
    case eTimeKind::kDate:
      return ParseMoment(text, order, form.zoneMinutes);
    case eTimeKind::kPair:
      return PairTime(text, row.cell(form.clockColumn).text, order, form.zoneMinutes);
    case eTimeKind::kClock:
      return ClockTime(text, form.zoneMinutes);
    default:
      return CountedTime(text, form.unitDigits, form.decimalMark);
  }
}

}  // namespace

bool RowTimes::ReadAny(Row const& row, kit::Instant& time) const {
  std::optional<kit::Instant> const read = AnyTime(row, mForm, mOrder);
  time = read.value_or(time);
  return read.has_value();
}

/// False for what is no date, or none of a length that is remembered.
bool RowTimes::RememberDate(std::string_view text) {
  mDateSize = 0;
  if (text.size() < kShortestDate || text.size() > kLongestDate) {
    return false;
  }
  std::optional<kit::Instant> midnight;
  if (mForm.kind == eTimeKind::kIso) {
    midnight = kit::ParseInstant(text);
  } else if (std::optional<kit::CivilTime> const date = ParseDate(text, mOrder)) {
    midnight = kit::MakeInstant(*date);
  }
  if (!midnight) {
    return false;
  }
  mDateSize = text.size();
  mDateStart = LoadEight(text.data());
  mDateEnd = LoadEight(text.data() + text.size() - 8);
  mMidnight = midnight->seconds;
  return true;
}

}  // namespace senmark_series
