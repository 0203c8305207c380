/// Whether the folder of a module is laid out so that the library finds its parts.
#pragma once

#include "ModuleFindings.h"
#include "ModulePaths.h"

namespace senmark_tool {

/// Looks at names and kinds of files alone.
void CheckLayout(ModulePaths const& module, ModuleFindings& findings);

}  // namespace senmark_tool
