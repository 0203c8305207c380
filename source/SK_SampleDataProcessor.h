/// Finds samples by time in the scratch mapping and reads just those that are asked for.
///
/// Times are texts of the file. All operations may run at the same time: nothing changes behind the
/// constructor. Errors have no place in the file. `std::stod`'s and `std::stoi`'s exceptions on values pass.
#pragma once

#include <cstdint>
#include <string>

#include "SK_DynamicSampleInfo.h"
#include "SK_FormatVersion.h"
#include "SK_RelativeTimeReader.h"
#include "SK_SampleSet.h"
#include "SK_TimeFormat.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

class SK_SampleBlock;

class SK_SampleDataProcessor {
 public:
  /// `cache` must outlive the object. `fileStart` and `fileEnd` bound the scratch mapping.
  SK_SampleDataProcessor(SK_DataCache const& cache, SK_TimeFormat const& timeFormat, char const* fileStart,
                         char const* fileEnd, eTDJSONVersion version);

  /// The samples from the one at `start`, or else the last before it, or else the first of the set, to the
  /// one that is found for `end` by the same rule. An empty `end` asks for one sample.
  ///
  /// Gives the count; unless `countOnly` is set, `out` receives an array from `new[]` that the caller owns.
  /// Errors: 35 unknown id; 38 no samples; 36 the set lies outside of the scratch file; 34 no memory; 39 and
  /// 32 malformed samples. On an error `out` is null.
  unsigned long long GetSamplesData(std::string const& id, std::string const& start, std::string const& end,
                                    ns_sensor::SK_DynamicDataSample*& out, bool countOnly) const;
  /// The samples around a time: three where one is at the time, else the two next to it; the first or last
  /// alone for a time outside of the set; two at the set's first and last time; none at the time of an only
  /// sample. The rest as above.
  unsigned long long GetAdjacentSamples(std::string const& id, std::string const& time,
                                        ns_sensor::SK_DynamicDataSample*& out, bool countOnly) const;

  /// The same queries into a block.
  void ReadSamples(std::string const& id, std::string const& start, std::string const& end,
                   SK_SampleBlock& block) const;
  void ReadAdjacentSamples(std::string const& id, std::string const& time, SK_SampleBlock& block) const;

 private:
  /// Samples `low` to `high` of a set; without a set, no samples. `high` is below `low` only in a set that is not
  /// in the order of time.
  struct SampleRange {
    SK_SampleSet set;
    std::uint64_t low = 0;
    std::uint64_t high = 0;
  };

  SK_SampleSet FindSet(std::string const& id) const;
  SampleRange FindRange(std::string const& id, std::string const& start, std::string const& end) const;
  SampleRange FindAdjacentRange(std::string const& id, std::string const& time) const;
  unsigned long long PrepareOutput(SampleRange const& range, ns_sensor::SK_DynamicDataSample*& out,
                                   bool countOnly) const;
  void FillBlock(SampleRange const& range, SK_SampleBlock& block) const;
  void ParseDynamicSamples(SampleRange const& range, SK_SampleBlock& block) const;

  SK_DataCache const& mDataCache;
  SK_TimeFormat mTimeFormat;
  char const* mFileStart;
  char const* mFileEnd;
  eTDJSONVersion mVersion;
  SK_RelativeTimeReader mTimeReader;  ///< copied by each query
};

}  // namespace SK_NAMESPACE_INT
