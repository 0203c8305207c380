#include "SK_ConverterRegistry.h"

#include <utility>

#include "BVHConverter.h"
#include "CSVConverter.h"
#include "JsonConverter.h"
#include "TSVConverter.h"

namespace ns_sensor {

std::unique_ptr<SK_ConverterRegistry> SK_ConverterRegistry::mInstance;

SK_ConverterRegistry* SK_ConverterRegistry::getInstance() {
  if (!mInstance) {
    mInstance.reset(new SK_ConverterRegistry());
  }
  return mInstance.get();
}

void SK_ConverterRegistry::terminate() {
  mInstance.reset();
}

void SK_ConverterRegistry::initialize() {
  // The spelling of the display names is what hosts see.
  registerNativeConverter("json", "JSON", JSON_CheckFormat, JSONConverter_CTor);
  registerNativeConverter("csv", "Comma Seperated Value", CSV_CheckFormat, CSVConverter_CTor);
  registerNativeConverter("tsv", "Tab Seperated Value", TSV_CheckFormat, TSVConverter_CTor);
  registerNativeConverter("txt", "Tab Seperated Value", TSV_CheckFormat, TSVConverter_CTor);
  registerNativeConverter("bvh", "Biovision Hierarchy", BVH_CheckFormat, BVHConverter_CTor);
  // The library's own format needs no converter.
  mConvertersInfo.emplace("tdjson", "Timed Data JSON");
}

bool SK_ConverterRegistry::registerNativeConverter(std::string uid, std::string displayName,
                                                   SK_ConverterHandlerInfo::CheckFunction check,
                                                   SK_ConverterHandlerInfo::ConstructorFunction construct) {
  return Register(mNativeHandlers, {std::move(uid), check, construct}, std::move(displayName));
}

bool SK_ConverterRegistry::registerPluginConverter(std::string uid, std::string displayName,
                                                   SK_ConverterHandlerInfo::CheckFunction check,
                                                   SK_ConverterHandlerInfo::ConstructorFunction construct) {
  return Register(mPluginHandlers, {std::move(uid), check, construct}, std::move(displayName));
}

bool SK_ConverterRegistry::removeConverterHandler(std::string const& uid) {
  return mPluginHandlers.erase(uid) != 0;
}

SK_ConverterHandlerInfo* SK_ConverterRegistry::getConverterHandlerInfo(std::string const& uid) {
  for (HandlerMap* const handlers : {&mPluginHandlers, &mNativeHandlers}) {
    auto const found = handlers->find(uid);
    if (found != handlers->end()) {
      return &found->second;
    }
  }
  return nullptr;
}

SK_ConverterHandlerInfo* SK_ConverterRegistry::selectSmartHandler(SK_NAMESPACE_INT::SK_PathInfo const& file) {
  SK_ConverterHandlerInfo* const byExtension = getConverterHandlerInfo(file.extension);
  if (byExtension != nullptr && byExtension->check(byExtension->uid, file)) {
    return byExtension;
  }
  for (HandlerMap* const handlers : {&mPluginHandlers, &mNativeHandlers}) {
    for (auto& [uid, info] : *handlers) {
      if (info.check(info.uid, file)) {
        return &info;
      }
    }
  }
  return nullptr;
}

bool SK_ConverterRegistry::Register(HandlerMap& handlers, SK_ConverterHandlerInfo&& info, std::string&& displayName) {
  std::string const uid = info.uid;
  if (!handlers.emplace(uid, std::move(info)).second) {
    return false;
  }
  mConvertersInfo.emplace(uid, std::move(displayName));
  return true;
}

}  // namespace ns_sensor
