/// Names and units of columns, found in front of the first row of data.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "SampleTable.h"
#include "Sidecar.h"

namespace senmark_series {

struct Header {
  std::vector<std::string> names;  ///< as the file has them, with a unit in them or not; empty: the table has none
  std::vector<std::string> units;  ///< of a row of units
  std::int64_t line = 0;           ///< 0: none
  std::int64_t unitsLine = 0;      ///< 0: none
  bool isComment = false;
};

/// The header of a table whose first row of data is row `first` of the sample.
///
/// It is the row in front, or the one before that if the row in front holds units. Without one it is the last comment
/// that has as many cells as the rows. A sidecar comes first.
Header FindHeader(SampleTable const& table, std::size_t first, Sidecar const& sidecar);

}  // namespace senmark_series
