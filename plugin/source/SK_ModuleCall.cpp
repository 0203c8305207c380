#include "SK_ModuleCall.h"

#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

namespace {

SK_PluginResult Result(eErrorCode code) {
  SK_PluginResult result;
  result.mErrorCode = code;
  return result;
}

}  // namespace

SK_PluginResult MissingFunctionResult() {
  return Result(ns_sensor::kModuleInitFailed);
}

SK_PluginResult ThrownResult() noexcept {
  try {
    RethrowInWriter();
  } catch (SK_PluginException const& e) {
    SK_PluginResult result = Result(e.GetErrorCode());
    result.mFileOffset = e.GetFileOffset();
    result.mFileLineNo = e.GetFileLineNo();
    return result;
  }
}

}  // namespace SK_PLUGIN
