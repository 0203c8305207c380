#include "TimeForm.h"

#include <limits>

#include "Ascii.h"
#include "NumberText.h"
#include "RowTimes.h"

namespace senmark_series {

namespace {

constexpr unsigned kNanosecondDigits = 9;

std::optional<kit::Instant> MakeMoment(bool isNegative, std::uint64_t seconds, std::uint64_t nanoseconds) {
  seconds += nanoseconds / kPowersOfTen[kNanosecondDigits];
  nanoseconds %= kPowersOfTen[kNanosecondDigits];
  constexpr auto kMost = static_cast<std::uint64_t>(kit::detail::kLastSecond);
  if (seconds > kMost) {
    return std::nullopt;
  }
  kit::Instant const instant =
      MakeCountedInstant(isNegative, static_cast<std::int64_t>(seconds), static_cast<std::int32_t>(nanoseconds));
  if (instant.seconds < kit::detail::kFirstSecond) {
    return std::nullopt;
  }
  return instant;
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
  std::uint64_t const unit = kPowersOfTen[unitDigits];
  std::uint64_t nanoseconds = count % unit * kPowersOfTen[kNanosecondDigits - unitDigits];
  if (!rest.empty() && rest.front() == decimalMark) {
    rest.remove_prefix(1);
    unsigned left = kNanosecondDigits - unitDigits;
    bool const rounds = rest.size() > left && IsDigit(rest[left]) && rest[left] >= '5';
    for (; !rest.empty() && IsDigit(rest.front()); rest.remove_prefix(1)) {
      hasDigits = true;
      if (left != 0) {
        nanoseconds += static_cast<std::uint64_t>(rest.front() - '0') * kPowersOfTen[--left];
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
  kit::Instant time;
  return RowTimes(form, order).read(row, time) ? std::optional<kit::Instant>(time) : std::nullopt;
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
