/// What the name of a column tells.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace senmark_series {

struct NameAndUnit {
  std::string name;
  std::string unit;  ///< may be empty
};

/// `name [unit]` and `name (unit)`. In round brackets stands a remark as well: a unit has no more than ten letters
/// there and no more than one blank. A text that is a unit alone stays a name.
NameAndUnit SplitUnit(std::string_view text);

/// A unit as a row below the header has it, with or without brackets.
std::string_view BareUnit(std::string_view text);

/// Whether the text is a unit that is known, or stands in brackets; decides whether a row holds units.
bool LooksLikeUnit(std::string_view text);

/// The name has a word for a time in it, like `ais_pos_timestamp` or `Date/Time`.
bool SpeaksOfTime(std::string_view name);
/// The name has a word for a date in it.
bool SpeaksOfDate(std::string_view name);

/// What a name tells about a column of numbers that may count time.
struct CountedTimeName {
  std::optional<unsigned> unitDigits;  ///< 0, 3, 6 or 9, if it names a unit
  bool isEpoch = false;                ///< it says that it counts from 1970
};
/// None for a name in which other words stand than those for times: `response time` counts no time.
std::optional<CountedTimeName> CountedTimeOf(std::string_view name, std::string_view unit);

}  // namespace senmark_series
