#include "TimeForm.h"

#include <limits>

#include "Ascii.h"
#include "NumberText.h"

namespace senmark_series {

namespace {

constexpr unsigned kNanosecondDigits = 9;

constexpr std::uint64_t kPowers[] = {1, 10, 100, 1000, 10000, 100000, 1000000, 10000000, 100000000, 1000000000};

/// 1000-01-01T00:00:00Z: a data file has four digits for a year.
constexpr std::int64_t kFirstSecond = kit::detail::kFirstWrittenSecond;

std::optional<kit::Instant> MakeMoment(bool isNegative, std::uint64_t seconds, std::uint64_t nanoseconds) {
  seconds += nanoseconds / kPowers[kNanosecondDigits];
  nanoseconds %= kPowers[kNanosecondDigits];
  constexpr auto kMost = static_cast<std::uint64_t>(kit::detail::kLastSecond);
  if (seconds > kMost) {
    return std::nullopt;
  }
  kit::Instant instant{static_cast<std::int64_t>(seconds), static_cast<std::int32_t>(nanoseconds)};
  if (isNegative) {
    instant.seconds = -instant.seconds - (nanoseconds != 0 ? 1 : 0);
    instant.nanoseconds = nanoseconds == 0 ? 0 : static_cast<std::int32_t>(kPowers[kNanosecondDigits] - nanoseconds);
  }
  if (instant.seconds < kit::detail::kFirstSecond) {
    return std::nullopt;
  }
  return instant;
}

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

std::optional<kit::Instant> ReadTime(Row const& row, TimeForm const& form, eDateOrder order) {
  std::string_view const cell = row.cell(form.column);
  switch (form.kind) {
    case eTimeKind::kIso:
      return kit::ParseInstant(cell, form.zoneMinutes);
    case eTimeKind::kDate:
      return ParseMoment(cell, order, form.zoneMinutes);
    case eTimeKind::kPair:
      return PairTime(cell, row.cell(form.clockColumn), order, form.zoneMinutes);
    case eTimeKind::kClock:
      return ClockTime(cell, form.zoneMinutes);
    default:
      return CountedTime(cell, form.unitDigits, form.decimalMark);
  }
}

}  // namespace

std::optional<kit::Instant> CountedTime(std::string_view text, unsigned unitDigits, char decimalMark) {
  bool const isNegative = !text.empty() && text.front() == '-';
  std::string_view rest = text.substr(!text.empty() && (isNegative || text.front() == '+') ? 1 : 0);
  std::uint64_t count = 0;
  std::size_t const start = rest.size();
  for (; !rest.empty() && IsDigit(rest.front()); rest.remove_prefix(1)) {
    auto const digit = static_cast<std::uint64_t>(rest.front() - '0');
    if (count > (std::numeric_limits<std::uint64_t>::max() - digit) / 10) {
      return std::nullopt;
    }
    count = count * 10 + digit;
  }
  bool hasDigits = rest.size() != start;
  std::uint64_t const unit = kPowers[unitDigits];
  std::uint64_t nanoseconds = count % unit * kPowers[kNanosecondDigits - unitDigits];
  if (!rest.empty() && rest.front() == decimalMark) {
    rest.remove_prefix(1);
    unsigned left = kNanosecondDigits - unitDigits;
    bool const rounds = rest.size() > left && IsDigit(rest[left]) && rest[left] >= '5';
    for (; !rest.empty() && IsDigit(rest.front()); rest.remove_prefix(1)) {
      hasDigits = true;
      if (left != 0) {
        nanoseconds += static_cast<std::uint64_t>(rest.front() - '0') * kPowers[--left];
      }
    }
    nanoseconds += rounds ? 1 : 0;
  }
  if (rest.empty() && hasDigits) {
    return MakeMoment(isNegative, count / unit, nanoseconds);
  }
  // With an exponent, or nothing.
  std::optional<double> const value = ToNumber(text, decimalMark);
  return value ? kit::InstantOfSeconds(*value / static_cast<double>(unit)) : std::nullopt;
}

std::optional<kit::Instant> TimeOf(Row const& row, TimeForm const& form, eDateOrder order) {
  std::optional<kit::Instant> const time = row.isBroken ? std::nullopt : ReadTime(row, form, order);
  // What rounding takes beyond the last second of all is not worth a digit.
  bool const canBeWritten = time && time->seconds >= kFirstSecond && time->seconds < kit::detail::kLastSecond;
  return canBeWritten ? time : std::nullopt;
}

std::string NameOf(TimeForm const& form) {
  static constexpr char const* kUnits[] = {"seconds", "milliseconds", "microseconds", "nanoseconds"};
  std::string const unit = kUnits[form.unitDigits / 3];
  switch (form.kind) {
    case eTimeKind::kIso:
      return "ISO 8601";
    case eTimeKind::kDate:
      return "date";
    case eTimeKind::kPair:
      return "date and time of day in two columns";
    case eTimeKind::kEpoch:
      return unit + " from 1970-01-01";
    case eTimeKind::kElapsed:
      return unit + " from start";
    default:
      return "time of day";
  }
}

unsigned DigitsOf(kit::Instant const& instant) {
  unsigned digits = kNanosecondDigits;
  auto nanoseconds = static_cast<std::uint32_t>(instant.nanoseconds);
  while (digits != 0 && nanoseconds % 10 == 0) {
    nanoseconds /= 10;
    --digits;
  }
  return digits;
}

unsigned DigitsWithin(std::int64_t seconds) {
  unsigned digits = 0;
  std::int64_t units = seconds + 1;
  while (digits != kNanosecondDigits && units <= std::numeric_limits<std::int32_t>::max() / 10) {
    units *= 10;
    ++digits;
  }
  return digits;
}

}  // namespace senmark_series
