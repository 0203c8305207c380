/// The procs of the tables that the library hands to a module.
#pragma once

#include "senmark/SK_ErrorCode.h"

namespace SK_PLUGIN {

using ns_sensor::eErrorCode;

/// Fills in the error record at `result`, an `SK_PluginResult`. A null address stops the process.
void Static_SetPluginErrorObj(void* result, eErrorCode code, long long offset, long long line);

}  // namespace SK_PLUGIN
