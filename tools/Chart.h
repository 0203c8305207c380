/// A sample set, made ready to be drawn.
#pragma once

#include <string>
#include <vector>

#include "Curve.h"
#include "InputFile.h"

namespace senmark_tool {

struct Request;

/// A curve for each number of the values.
struct Chart {
  std::string name;  ///< display name of the node. Files tell units there, if anywhere.
  senmark::Extent extent;
  eJoin join = eJoin::kDots;
  bool isArray = false;
  std::vector<std::string> elements;  ///< names of the curves; of an array only
  std::vector<Curve> curves;
  std::uint64_t samples = 0;

  bool IsEmpty() const;
};

/// Reads the samples that the user asked for. Values that are not finite are left out.
///
/// columns  of the chart, at least 2: the first one begins the extent and the last one ends it.
/// Errors:  `UsageError` for a set that is not there, that has no numbers, or no samples in the range.
Chart MakeChart(InputFile const& input, Request const& request, std::size_t columns);

}  // namespace senmark_tool
