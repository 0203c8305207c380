/// Turns the parsed outline and the samples into the public records.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {

class SK_SampleBlock;
class SK_TdjsonParser;

using ns_sensor::SK_DataPath;
using ns_sensor::SK_DynamicDataSample;
using ns_sensor::SK_Time;

class SK_DataQuery {
 public:
  explicit SK_DataQuery(std::shared_ptr<SK_TdjsonParser> const& parser);

  void GetRootChildren(std::vector<SK_DataPath>* out) const;
  void GetGroupChildren(SK_DataPath const& path, std::vector<SK_DataPath>* out) const;
  void GetGroupChildInfo(SK_DataPath const& path, ns_sensor::SK_GroupChildInfo* out) const;
  void GetStaticDataInfo(SK_DataPath const& path, ns_sensor::SK_StaticDataInfo* out) const;
  void GetDynamicDataInfo(SK_DataPath const& path, ns_sensor::SK_DynamicDataInfo* out) const;
  void GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                         std::vector<SK_DynamicDataSample>* out) const;
  void GetDynamicSamples(std::string const& id, SK_Time const& start, SK_Time const& end,
                         SK_DynamicDataSample*& samples, unsigned long long& count, bool& reversed,
                         bool countOnly) const;
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
  std::shared_ptr<SK_TdjsonParser> mParser;
};

}  // namespace SK_NAMESPACE_INT
