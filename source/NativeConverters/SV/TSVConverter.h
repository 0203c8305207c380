/// Converts tables whose values are separated by tabs.
#pragma once

#include <memory>
#include <string>

#include "SK_ConverterHandlerBase.h"

namespace ns_sensor {

class TSVConverter : public SK_ConverterHandlerBase {
 public:
  explicit TSVConverter(SK_NAMESPACE_INT::SK_PathInfo const& pathInfo) : SK_ConverterHandlerBase(pathInfo) {}
  /// Has the writer forget the file.
  ~TSVConverter() override;
  TSVConverter(TSVConverter const&) = delete;
  TSVConverter& operator=(TSVConverter const&) = delete;

  /// Raises what the writer raises.
  bool convertToTDJSON() override;
};

/// Takes every file.
bool TSV_CheckFormat(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);
std::shared_ptr<SK_ConverterHandlerBase> TSVConverter_CTor(std::string& uid, SK_NAMESPACE_INT::SK_PathInfo const& file);

}  // namespace ns_sensor
