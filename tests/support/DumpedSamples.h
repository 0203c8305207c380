/// What a dump of samples gives back, as texts.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "SK_DumpSamplesUtils.h"

namespace senmark_test {

/// Time and value.
using Sample = std::pair<std::string, std::string>;
using Samples = std::vector<Sample>;

/// All that are left in it.
inline Samples ReadAll(SK_PLUGIN::SK_DumpSamplesUtils& dump) {
  Samples samples;
  std::string_view time;
  std::string_view value;
  while (dump.ReadSample(time, value)) {
    samples.emplace_back(time, value);
  }
  return samples;
}

}  // namespace senmark_test
