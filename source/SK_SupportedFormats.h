#pragma once

#include <string>

namespace ns_sensor {

/// One file format that can be opened.
struct SK_SupportedFormats {
  std::string extension;  ///< lower case, without a point
  std::string description;
};

}  // namespace ns_sensor
