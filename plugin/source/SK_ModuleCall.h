/// How the library calls a function of a module: nothing that happens there is thrown here.
#pragma once

#include "senmark/SK_PluginResult.h"

namespace SK_PLUGIN {

/// What a call of a function that the module did not provide comes to.
SK_PluginResult MissingFunctionResult();
/// What the exception in flight, which a module's function let out, comes to.
SK_PluginResult ThrownResult() noexcept;

/// Calls `function` with a fresh record as last argument and gives that record.
template <typename... Parameters, typename... Arguments>
SK_PluginResult CallModule(void (*function)(Parameters...), Arguments... arguments) noexcept {
  if (function == nullptr) {
    return MissingFunctionResult();
  }
  SK_PluginResult result;
  try {
    function(arguments..., &result);
  } catch (...) {
    // The exception ends here, while its code is still loaded.
    return ThrownResult();
  }
  return result;
}

inline bool HasFailed(SK_PluginResult const& result) {
  return result.mErrorCode != ns_sensor::kNoError;
}

}  // namespace SK_PLUGIN
