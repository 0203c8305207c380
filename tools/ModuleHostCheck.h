/// What a host meets that opens files which a module converts.
#pragma once

#include <string>

#include "ModuleBehaviourCheck.h"
#include "ModuleTrials.h"

namespace senmark_tool {

/// Opens a file through the library, with this module alone, then damaged forms of it, and with places for the result
/// that cannot be written.
///
/// isAccepted  whether the code of the module says that it takes the file.
void CheckConversion(ModulePaths const& module, BehaviourRequest const& request, std::string const& file,
                     bool isAccepted, ModuleTrials& trials, ModuleFindings& findings);

}  // namespace senmark_tool
