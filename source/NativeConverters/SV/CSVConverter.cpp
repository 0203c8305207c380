#include "CSVConverter.h"

#include "SVSupport.h"
#include "Writer_Wrapper.h"

namespace ns_sensor {

using SK_PLUGIN::Writer_Wrapper;

CSVConverter::~CSVConverter() {
  Writer_Wrapper::RemoveRoot_Wrapper(this);
}

bool CSVConverter::convertToTDJSON() {
  return ConvertTable(this, mPathInfo, ",", "com.velmo.sensor.csv");
}

bool CSV_CheckFormat(std::string& /*uid*/, SK_NAMESPACE_INT::SK_PathInfo const& /*file*/) {
  return true;
}

std::shared_ptr<SK_ConverterHandlerBase> CSVConverter_CTor(std::string& /*uid*/,
                                                           SK_NAMESPACE_INT::SK_PathInfo const& file) {
  return std::make_shared<CSVConverter>(file);
}

}  // namespace ns_sensor
