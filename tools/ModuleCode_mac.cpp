#include <algorithm>
#include <filesystem>

#include "ModuleCode.h"

namespace senmark_tool {

std::string ModuleCodePath(std::string const& folder) {
  std::string name = folder.substr(folder.rfind('/') + 1);
  name.erase(std::min(name.rfind('.'), name.size()));
  return folder + "/Contents/MacOS/" + name;
}

// Which machines an executable is for is left to the system's loader.
std::string ModuleCodeProblem(std::string const& folder) {
  std::error_code failure;
  std::string const path = ModuleCodePath(folder);
  return std::filesystem::is_regular_file(path, failure) ? std::string() : "no code: there is no " + path;
}

std::string ModuleLoadProblem(std::string const& /*folder*/) {
  return std::string();
}

}  // namespace senmark_tool
