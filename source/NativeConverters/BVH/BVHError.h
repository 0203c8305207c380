/// What can be wrong with a motion capture file. A host that cannot read one sees these numbers.
#pragma once

#include "SK_PluginException.h"

namespace ns_sensor {

enum class eBVHError : std::int32_t {
  kNoHierarchy = 1001,  ///< it does not begin with the words of a hierarchy
  kCannotOpen = 1006,
  kBadFrameTime = 1508,  ///< none, or too short
  kBadHierarchy = 1509,  ///< a joint or a line of motion that breaks the rules
};

/// Raises it without a place: the file is read by lines that nobody counts.
[[noreturn]] inline void ThrowBVHError(eBVHError error) {
  throw SK_PLUGIN::SK_PluginException(static_cast<eErrorCode>(error), -1, -1);
}

}  // namespace ns_sensor
