/// What every converter is: built for one file, asked once to convert it, gone after that.
#pragma once

#include "SK_PathInfo.h"

namespace ns_sensor {

class SK_ConverterHandlerBase {
 public:
  explicit SK_ConverterHandlerBase(SK_NAMESPACE_INT::SK_PathInfo const& pathInfo) : mPathInfo(pathInfo) {}
  virtual ~SK_ConverterHandlerBase() = default;

  /// Reads the input and writes the output that the path info names. False: it could not be read.
  virtual bool convertToTDJSON() = 0;

 protected:
  SK_NAMESPACE_INT::SK_PathInfo mPathInfo;
};

}  // namespace ns_sensor
