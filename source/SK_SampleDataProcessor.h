/// Finds samples by time in the scratch mapping and reads just those that are asked for.
#pragma once

#include <string>

#include "SK_FormatVersion.h"
#include "SK_TdjsonParser.h"
#include "SK_TimeFormat.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

class SK_SampleDataProcessor {
 public:
  /// `cache` must outlive the object. `fileStart` and `fileEnd` bound the scratch mapping.
  SK_SampleDataProcessor(SK_DataCache const& cache, SK_TimeFormat const& timeFormat, char const* fileStart,
                         char const* fileEnd, eTDJSONVersion version);

  /// Times are texts of the file; an empty `end` asks for one sample. Gives the count; unless `countOnly`
  /// is set, `out` receives an array from `new[]` that the caller owns.
  unsigned long long GetSamplesData(std::string const& id, std::string const& start, std::string const& end,
                                    ns_sensor::SK_DynamicDataSample*& out, bool countOnly);
  unsigned long long GetAdjacentSamples(std::string const& id, std::string const& time,
                                        ns_sensor::SK_DynamicDataSample*& out, bool countOnly);
};

}  // namespace SK_NAMESPACE_INT
