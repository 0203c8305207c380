/// Converts tables whose values are separated by commas.
#pragma once

#include <memory>
#include <string>

#include "SK_ConverterHandlerBase.h"

namespace ns_sensor {

class CSVConverter : public SK_ConverterHandlerBase {
 public:
  explicit CSVConverter(SK_NAMESPACE_INT::SK_PathInfo const& pathInfo) : SK_ConverterHandlerBase(pathInfo) {}
  /// Has the writer forget the file.
  ~CSVConverter() override;
  CSVConverter(CSVConverter const&) = delete;
  CSVConverter& operator=(CSVConverter const&) = delete;

  /// Raises what the writer raises.
  bool convertToTDJSON() override;
};

/// Takes every file.
bool CSV_CheckFormat(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);
std::shared_ptr<SK_ConverterHandlerBase> CSVConverter_CTor(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);

}  // namespace ns_sensor
