/// What a module does when its functions are called one by one, as the library calls them.
#pragma once

#include <set>
#include <string>

#include "ModuleBehaviourCheck.h"
#include "ModuleTrials.h"

namespace senmark_tool {

/// Files that the code of the module says it takes.
using Accepted = std::set<std::string>;

/// Loads and ends the module repeatedly. Result: whether that can be done at all.
bool CheckLoading(ModulePaths const& module, ModuleTrials& trials);

/// Format checks, and sessions whose conversion is not begun or cannot write.
Accepted CheckTable(ModulePaths const& module, BehaviourRequest const& request, ModuleTrials& trials);

}  // namespace senmark_tool
