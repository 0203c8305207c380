/// Whether the code of a module can be loaded wherever the library may be.
#pragma once

#include "ModuleFindings.h"
#include "ModulePaths.h"
#include "ModuleProcess.h"

namespace senmark_tool {

/// Reads the file, and loads it in a process of its own. Result: whether it can be loaded and has its entry.
bool CheckCode(ModulePaths const& module, Limits const& limits, ModuleFindings& findings);

}  // namespace senmark_tool
