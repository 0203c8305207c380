/// Versions of the Timed Data JSON format.
#pragma once

#include <cstdint>

namespace SK_NAMESPACE_INT {

enum eTDJSONVersion : std::uint8_t {
  kTdjsonVersion1 = 0,
  kTdjsonVersion2 = 1,
  kNotTdjson = 2,  ///< not in the format, or not known yet
};

}  // namespace SK_NAMESPACE_INT
