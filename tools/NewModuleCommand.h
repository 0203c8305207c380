/// The subcommand "new-module": a folder with a converter module to begin with.
#pragma once

#include <ostream>
#include <string>

namespace senmark_tool {

struct NewModuleRequest {
  std::string name;
  std::string folder;     ///< to be made; empty if it is there already
  std::string extension;  ///< of the files that the module is for; empty: the name
  bool asJson = false;
};

/// Writes the folder, and to `out` what to do next. Gives an exit status.
///
/// Errors: `UsageError` for a name that is none of a module, an extension that no file of it can have, and a folder
/// in which something is; `std::runtime_error` if it cannot be written, and then nothing is left.
int RunNewModule(NewModuleRequest const& request, std::ostream& out);

}  // namespace senmark_tool
