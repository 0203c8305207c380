/// Dates and times of day as tables write them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "senmark/module/Time.h"

namespace senmark_series {

namespace kit = senmark::kit;

/// The order of a date with the year behind.
enum class eDateOrder : std::uint8_t { kDayFirst, kMonthFirst };

/// A date and a time of day: what `kit::ParseInstant` reads, also with ` UTC` or ` GMT` behind, and dates that are
/// written otherwise.
///
/// 31/12/2024, 31-12-24, 31.12.2024 and, with the month first, 12/31/2024; 2024/12/31 and 2024.12.31 in either order.
/// Two digits are a year from 1970 to 2069. The time of day as in `ParseClock`; it may be missing.
std::optional<kit::Instant> ParseMoment(std::string_view text, eDateOrder order, int zoneMinutes);

/// Only the date, without anything behind it; also 20241231.
std::optional<kit::CivilTime> ParseDate(std::string_view text, eDateOrder order);

/// Fills in hour to zone. 7:05, 07:05:30, 07:05:30.25, 07.05.30 with seconds, 07:05 PM; behind it a zone as
/// `kit::ParseInstant` has it. `mayBeDigits`: also 705, 0705, 070530 and 070530.25.
bool ParseClock(std::string_view text, bool mayBeDigits, kit::CivilTime& time);

/// Whether a time of day has AM or PM behind it.
bool HasHalfOfDay(std::string_view text);

}  // namespace senmark_series
