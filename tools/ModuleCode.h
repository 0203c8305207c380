/// The code in the folder of a module, without running it.
#pragma once

#include <string>

namespace senmark_tool {

/// Where the library looks for the code that this machine can run.
std::string ModuleCodePath(std::string const& folder);

/// Why the library does not take the folder for a module, as far as its code goes; empty if it does.
std::string ModuleCodeProblem(std::string const& folder);

/// Why the library would not load the code of what it takes for a module, as far as its bytes tell; empty if they
/// tell nothing.
std::string ModuleLoadProblem(std::string const& folder);

}  // namespace senmark_tool
