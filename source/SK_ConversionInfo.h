#pragma once

#include <string>

#include "SK_FormatVersion.h"

namespace SK_NAMESPACE_INT {

/// The data file to read for an input: the input itself, or what a converter made of it. It owns a
/// temporary result, which goes with it.
struct SK_ConversionInfo {
  SK_ConversionInfo() = default;
  ~SK_ConversionInfo();
  SK_ConversionInfo(SK_ConversionInfo const&) = delete;
  SK_ConversionInfo& operator=(SK_ConversionInfo const&) = delete;

  std::string filePath;
  bool isTemporary = false;  ///< true: the file is deleted with this object
  eTDJSONVersion version = kNotTdjson;
};

}  // namespace SK_NAMESPACE_INT
