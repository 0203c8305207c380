/// Where the samples of one set lie in the scratch file and how wide they are.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

/// First and last time text of a sample set, or of a file; empty without samples.
struct TemporalRange {
  std::string mStartTime;
  std::string mEndTime;
};

/// Kind of the values of a sample set.
enum eSampleValueKind : std::uint8_t {
  kNumberStringSamples = 0,
  kPaddedStringSamples = 1,
  kNumberArraySamples = 2,
  kNoSampleSet = 4,
};

}  // namespace SK_NAMESPACE_INT

/// One entry of the reader's cache, by "sampleSetID". Sizes are in bytes. Not the public record of the
/// same name in `ns_sensor`.
struct SK_DynamicSampleInfo {
  explicit SK_DynamicSampleInfo(SK_NAMESPACE_INT::JValue const* dataNode) : mDataNode(dataNode) {}

  std::uint64_t mSampleOffset = 0;            ///< of the first sample from the scratch file's start; 0: no set
  SK_NAMESPACE_INT::JValue const* mDataNode;  ///< the node in the outline; lives as long as the parser
  std::uint64_t mSampleSize = 0;              ///< one sample, without the comma behind it
  std::uint64_t mSampleCount = 0;
  std::uint64_t mNumberLength = 0;                           ///< one number text with its quotes
  std::uint64_t mMaxLength = 0;                              ///< the text of a padded string
  std::uint64_t mMaxDigits = 0;                              ///< the length of a padded string
  std::uint64_t mArraySize = 0;                              ///< numbers in one value
  std::uint8_t mValueKind = SK_NAMESPACE_INT::kNoSampleSet;  ///< an `eSampleValueKind`
  SK_NAMESPACE_INT::TemporalRange mTemporalRange;
};

namespace SK_NAMESPACE_INT {

/// Sample sets by "sampleSetID".
using SK_DataCache = std::unordered_map<std::string, SK_DynamicSampleInfo>;

}  // namespace SK_NAMESPACE_INT
