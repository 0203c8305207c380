/// What a module does when its code runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ModuleFindings.h"
#include "ModuleManifest.h"
#include "ModulePaths.h"
#include "ModuleProcess.h"

namespace senmark_tool {

struct BehaviourRequest {
  std::vector<ModuleManifest::Converter> converters;
  std::vector<std::string> files;  ///< that the module should read
  Limits limits;                   ///< of each thing that is tried
  std::string keepFolder;          ///< for inputs that end the process; empty: they are not kept
};

/// Runs the code in processes of its own, by its table and through the library.
void CheckBehaviour(ModulePaths const& module, BehaviourRequest const& request, ModuleFindings& findings);

}  // namespace senmark_tool
