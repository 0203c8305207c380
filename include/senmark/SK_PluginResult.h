/// How the writer and a module tell each other of a failure: nothing is thrown between them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "senmark/SK_ErrorCode.h"

namespace SK_PLUGIN {

using ns_sensor::eErrorCode;

/// Lives with the caller, whose address of it travels as the last argument of every border form. A call
/// that succeeds leaves it untouched, so one record may serve many calls until the first failure.
struct SK_PluginResult {
  std::int32_t mReserved = 0;
  eErrorCode mErrorCode = ns_sensor::kNoError;  ///< 0: success
  std::int64_t mFileOffset = -1;                ///< bytes from the start of the input, -1 for none
  std::int64_t mFileLineNo = -1;                ///< line of the input, -1 for none
};
static_assert(sizeof(SK_PluginResult) == 24);
static_assert(offsetof(SK_PluginResult, mErrorCode) == 4);
static_assert(offsetof(SK_PluginResult, mFileOffset) == 8);
static_assert(offsetof(SK_PluginResult, mFileLineNo) == 16);

}  // namespace SK_PLUGIN
