#include "StubHostAPI.h"

#include "senmark/SK_PluginResult.h"

namespace senmark_tool {

namespace {

using SK_PLUGIN::eErrorCode;

void SetError(void* result, eErrorCode code, long long offset, long long line) {
  auto* const record = static_cast<SK_PLUGIN::SK_PluginResult*>(result);
  record->mErrorCode = code;
  record->mFileOffset = offset;
  record->mFileLineNo = line;
}

void RefuseRoot(void* /*key*/, char const* /*path*/, SK_PLUGIN::SetErrorProc /*setErrorProc*/, void** /*outRoot*/,
                unsigned char* /*outExisted*/, unsigned /*version*/, void* result) {
  SetError(result, ns_sensor::kInternalFailure, -1, -1);
}

/// Any object but the root. `Inputs`: what stands between the place for the object and the version.
template <typename... Inputs>
void Refuse(void* /*key*/, void** /*out*/, Inputs... /*inputs*/, unsigned /*version*/, void* result) {
  SetError(result, ns_sensor::kInternalFailure, -1, -1);
}

void Forget(void* /*key*/, void* /*result*/) {}

}  // namespace

SK_PLUGIN::HostAPI* StubHostAPI() {
  using Text = char const*;
  static SK_PLUGIN::TDJSONWriter_API writer = {0,
                                               RefuseRoot,
                                               Refuse<Text, Text>,
                                               Refuse<>,
                                               Refuse<>,
                                               Refuse<>,
                                               Refuse<Text, Text, double>,
                                               Refuse<Text, Text>,
                                               Refuse<Text, Text, Text>,
                                               Refuse<Text, Text, unsigned char>};
  static SK_PLUGIN::HandleException_API exceptions = {0, SetError};
  static SK_PLUGIN::HandleMemory_API memory = {0, Forget};
  static SK_PLUGIN::HostAPI host = {sizeof host, 1, &writer, &exceptions, &memory};
  return &host;
}

}  // namespace senmark_tool
