/// The arithmetic of the fixed layout: how wide a sample is and how much its set takes.
#pragma once

#include <cstdint>

#include "SK_DynamicSampleInfo.h"
#include "SK_FormatVersion.h"

namespace SK_NAMESPACE_INT {

class SK_SampleSizeEstimator {
 public:
  /// Fills the sizes of `info` from its node and gives the bytes of the whole set, commas included.
  /// A size that does not fit 64 bits raises code 39 for `info`'s set.
  static std::uint64_t EstimateSampleSetSize(SK_DynamicSampleInfo& info, std::uint16_t timeStrLength,
                                             eTDJSONVersion version);
};

}  // namespace SK_NAMESPACE_INT
