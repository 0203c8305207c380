/// Finds the sample sets in the scratch file and the times that they span, and reads next to nothing of
/// them: where a set ends follows from the outline.
///
/// The scratch file holds the sets one behind the other, separated by commas and without white space. All
/// errors have no place in the input file, so both positions are -1.
#pragma once

#include <vector>

#include "SK_DynamicSampleInfo.h"
#include "SK_FormatVersion.h"
#include "SK_TimeFormat.h"

namespace SK_NAMESPACE_INT {

/// The whole scratch file.
struct SK_ScratchRange {
  char const* begin;
  char const* end;
};

class SK_SampleOffsets {
 public:
  /// `cache` has an entry for each dynamic node, and it and `timeFormat` outlive the object.
  SK_SampleOffsets(SK_DataCache& cache, SK_TimeFormat const& timeFormat, eTDJSONVersion version, SK_ScratchRange file)
      : mCache(cache), mTimeFormat(timeFormat), mVersion(version), mFile(file) {}

  /// Walks over the sets from `p` to `end` and stores in the cache where each begins and how wide its
  /// samples are. A set whose id comes again replaces the earlier one.
  ///
  /// Codes 32 for a broken set, 49 for an id without a node, 43 for a value of a wrong type, 39 for a set
  /// that does not end where the outline says.
  void CacheDynamicSamplesOffset(char const* p, char const* end);

  /// Stores the first and last time of each set of `sets` that has samples, and gives those of the file.
  /// The order of `sets` matters: see the code. Code 39 for a sample without a time, or the scanner's 32.
  TemporalRange FindFileTemporalExtents(std::vector<SK_DataCache::value_type*> const& sets) const;

 private:
  char const* CacheOneSet(char const* p, char const* end);
  char const* ExpectKey(char const* p, char const* end, char const* key) const;
  char const* SkipSamples(char const* p, char const* end, std::string const& id, SK_DynamicSampleInfo& info);
  std::string ReadTime(char const* sample, std::string const& name) const;
  void WidenRange(TemporalRange const& set, TemporalRange& file) const;

  SK_DataCache& mCache;
  SK_TimeFormat const& mTimeFormat;
  eTDJSONVersion mVersion;
  SK_ScratchRange mFile;
  unsigned mSetIndex = 0;  // sets walked over, the one at hand included
};

}  // namespace SK_NAMESPACE_INT
