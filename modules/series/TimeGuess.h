/// Which columns tell the time of a row, found by what stands in them and by their names.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "HeaderGuess.h"
#include "SampleTable.h"
#include "Sidecar.h"
#include "TimeForm.h"

namespace senmark_series {

struct TimeGuess {
  TimeForm form;
  std::size_t firstRow = 0;  ///< of the sample, that holds data
  Header header;
};

/// Rows that tell no time are tolerated up to one in twenty, and one of few.
constexpr bool AreFew(std::uint64_t bad, std::uint64_t good) {
  return bad == 0 || (bad == 1 && good >= 3) || bad <= (good + bad) / 20;
}

/// None if there are no such columns; `whyNot` then has a line for each column.
///
/// In this order: a date with a time of day, a date and a time of day in two columns, a number that counts from 1970, a
/// date, a number that counts from the start, a date that does not change, a time of day. Numbers need a name that
/// speaks of nothing but time. Among columns of one kind a name with a word for time comes first, then the place.
/// Errors: `Failure` for a sidecar that names no column of the table.
std::optional<TimeGuess> GuessTime(SampleTable const& table, Sidecar const& sidecar, std::vector<std::string>& whyNot);

}  // namespace senmark_series
