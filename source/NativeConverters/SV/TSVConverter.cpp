#include "TSVConverter.h"

#include "SVSupport.h"
#include "Writer_Wrapper.h"

namespace ns_sensor {

using SK_PLUGIN::Writer_Wrapper;

TSVConverter::~TSVConverter() {
  Writer_Wrapper::RemoveRoot_Wrapper(this);
}

bool TSVConverter::convertToTDJSON() {
  return ConvertTable(this, mPathInfo, "\t", "com.velmo.sensor.tsv");
}

bool TSV_CheckFormat(std::string& /*uid*/, SK_NAMESPACE_INT::SK_PathInfo const& /*file*/) {
  return true;
}

std::shared_ptr<SK_ConverterHandlerBase> TSVConverter_CTor(std::string& /*uid*/,
                                                           SK_NAMESPACE_INT::SK_PathInfo const& file) {
  return std::make_shared<TSVConverter>(file);
}

}  // namespace ns_sensor
