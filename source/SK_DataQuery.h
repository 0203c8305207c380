/// Turns the parsed outline and the samples into the public records.
///
/// All operations may run at the same time. Paths are worked on as copies: the caller's is never filled in.
/// Errors of paths have code 33; no error here has a place in the file.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "SK_RapidJson.h"
#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

class SK_SampleBlock;
class SK_SampleDataProcessor;
class SK_TdjsonParser;

using ns_sensor::SK_DataPath;
using ns_sensor::SK_DynamicDataSample;
using ns_sensor::SK_Time;

class SK_DataQuery {
 public:
  /// The parser has read its file.
  explicit SK_DataQuery(std::shared_ptr<SK_TdjsonParser> const& parser);

  /// `out` becomes the children of the outline itself.
  void GetRootChildren(std::vector<SK_DataPath>* out) const;
  /// The children of a group are added to `out`.
  void GetGroupChildren(SK_DataPath const& path, std::vector<SK_DataPath>* out) const;
  void GetGroupChildInfo(SK_DataPath const& path, ns_sensor::SK_GroupChildInfo* out) const;
  void GetStaticDataInfo(SK_DataPath const& path, ns_sensor::SK_StaticDataInfo* out) const;
  /// The extent holds the times of the first and of the last sample, both from the file's base time.
  void GetDynamicDataInfo(SK_DataPath const& path, ns_sensor::SK_DynamicDataInfo* out) const;

  // Sample queries. Times are seconds from the file's base time; a negative one lies before every sample.
  // Errors: 1 for a scale of 0, before all others; 35 unknown id; 38 no samples; those of the samples.

  /// The samples from `start` to `end`, backwards when `start` is the later. 21 when there are none.
  void GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                         std::vector<SK_DynamicDataSample>* out) const;
  /// The same in the order of the file, with `reversed` set when `start` is the later. `samples` receives an
  /// array from `new[]` that the caller owns, or stays as it is when `countOnly` is set.
  void GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                         SK_DynamicDataSample*& samples, unsigned long long& count, bool& reversed,
                         bool countOnly) const;
  /// The samples around a time, in the order of the file. 21 when there are none.
  void GetAdjacentSamples(std::string const& id, SK_Time const& time, std::vector<SK_DynamicDataSample>* out) const;
  void GetAdjacentSamples(std::string const& id, SK_Time const& time, SK_DynamicDataSample*& samples,
                          unsigned long long& count, bool countOnly) const;

  /// The same queries for the border, without a record for each sample. A `block` without samples is what
  /// a null array or a count of 0 is above. `reversed` is set, and the samples stand in the order of the
  /// file, when `start` is later than `end`.
  void ReadDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end, SK_SampleBlock& block,
                          bool& reversed) const;
  void ReadAdjacentSamples(std::string const& id, SK_Time const& time, SK_SampleBlock& block) const;

 private:
  /// A range of time as texts of the file, the earlier first; `end` is empty for one time.
  struct TextRange {
    std::string start;
    std::string end;
    bool reversed = false;
  };

  JValue const& Outline() const;
  void ValidateAndFillPath(SK_DataPath& path) const;
  JValue const& ParsePath(SK_DataPath const& path) const;
  JValue const& FindChild(SK_DataPath path) const;
  static void GetArrayChildren(JValue const& array, SK_DataPath const& base, std::vector<SK_DataPath>* out);
  JValue const& FindNode(SK_DataPath const& path, ns_sensor::eGroupChildType expected) const;
  SK_SampleDataProcessor const& SamplesFor(std::string const& id) const;
  std::string TextOfTime(SK_Time const& time) const;
  TextRange TextsOf(SK_Time const& start, SK_Time const& end) const;

  std::shared_ptr<SK_TdjsonParser> mParser;
  /// For each level of the tree, taken around, the child that was asked for last. Only where a search begins
  /// depends on it, so threads may overwrite each other's.
  mutable std::array<std::atomic<std::uint32_t>, 16> mLastFound{};
};

}  // namespace SK_NAMESPACE_INT
