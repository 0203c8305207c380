/// The arithmetic of the fixed layout: how wide a sample is and how much its set takes.
///
/// The widths come from the outline, which nothing has compared with the samples yet. A size that does not
/// fit 64 bits, or that a negative width makes senseless, is `kTooMany`: past the end of every file.
#pragma once

#include <cstdint>

#include "SK_DynamicSampleInfo.h"
#include "SK_FormatVersion.h"

namespace SK_NAMESPACE_INT {

class SK_SampleSizeEstimator {
 public:
  /// Fills the sizes of `info` from its node, which has passed the checks of the outline, and gives the
  /// bytes of the whole set, the commas between samples included. The widths of `info` must be 0.
  /// timeStrLength  bytes of a time text, without quotes
  static std::uint64_t EstimateSampleSetSize(SK_DynamicSampleInfo& info, std::uint16_t timeStrLength,
                                             eTDJSONVersion version);

  // Bytes of one value. Each sets the kind of `info` and the widths that belong to it.

  static std::uint64_t EstimateNumberSetSize(SK_DynamicSampleInfo& info);
  static std::uint64_t EstimateNumberArraySetSize(SK_DynamicSampleInfo& info);
  static std::uint64_t EstimatePaddedStringSetSize(SK_DynamicSampleInfo& info, eTDJSONVersion version);
};

}  // namespace SK_NAMESPACE_INT
