/// Tells the writer of a converter module what is wrong with it.
#pragma once

#include <chrono>
#include <ostream>
#include <string>
#include <vector>

namespace senmark_tool {

struct ModuleCheckRequest {
  std::string folder;
  std::vector<std::string> files;  ///< that the module should read
  std::string keepFolder;
  std::uint64_t milliseconds = 10000;  ///< for each thing that is tried
  bool asJson = false;
};

/// Writes its findings to `out`. Must be called before the library is started in this process, and with one thread:
/// what is tried is tried in children of it.
///
/// Result: an exit status. Errors: `UsageError` for a file that is not there.
int RunModuleCheck(ModuleCheckRequest const& request, std::ostream& out);

}  // namespace senmark_tool
