#include "ModuleFolder.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "ManifestConverters.h"
#include "ModuleCode.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr char kExtension[] = "tdx";

/// Why a file of a module's resources cannot be read; empty if it was read into `text`.
std::string ReadResource(std::string const& folder, std::string const& name, std::string& text) {
  std::string const path = folder + "/Contents/Resources/" + name;
  std::error_code failure;
  // At a pipe the reading would not end.
  fs::file_status const status = fs::status(path, failure);
  if (!fs::exists(status)) {
    return "there is no Contents/Resources/" + name;
  }
  if (!fs::is_regular_file(status)) {
    return "Contents/Resources/" + name + " is no file";
  }
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    return "Contents/Resources/" + name + " cannot be read: " + std::generic_category().message(errno);
  }
  text.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
  return std::string();
}

std::string NameProblem(std::string const& name) {
  std::size_t const point = name.rfind('.');
  if (point == std::string::npos || LowerCase(name.substr(point + 1)) != kExtension) {
    return "its name does not end in .tdx";
  }
  return name.front() == '~' ? "its name begins with ~" : "";
}

/// Why the library passes it over, in the order in which that is most helpful: the library itself looks at the code
/// first.
std::string Problem(std::string const& path, std::string const& name) {
  std::string const ofName = NameProblem(name);
  std::error_code failure;
  fs::file_status const status = fs::status(path, failure);
  if (!ofName.empty()) {
    return ofName;
  }
  if (!fs::exists(status)) {
    return "it is a link to nothing";
  }
  return fs::is_directory(status) ? ModuleCodeProblem(path) : "it is no folder";
}

}  // namespace

std::string ModuleFolder::Key() const {
  return LowerCase(name.substr(0, name.rfind('.')));
}

ModuleFolder ReadModuleFolder(std::string const& folder, std::string const& name) {
  ModuleFolder module;
  module.name = name;
  module.path = folder + '/' + name;
  module.problem = Problem(module.path, name);
  if (!module.IsModule()) {
    return module;
  }
  ReadResource(module.path, "MODULE_IDENTIFIER.txt", module.identifier);
  module.identifier.erase(module.identifier.find_last_not_of(" \t\r\n") + 1);
  std::string manifest;
  module.manifestProblem = ReadResource(module.path, "SKPLUGINUIDS.txt", manifest);
  if (module.manifestProblem.empty()) {
    module.manifest = std::move(manifest);
  }
  return module;
}

std::vector<ModuleFolder> ReadModuleFolders(std::string const& folder) {
  std::vector<ModuleFolder> modules;
  std::error_code failure;
  for (fs::directory_iterator entry(folder, failure); !failure && entry != fs::directory_iterator();
       entry.increment(failure)) {
    std::string const name = entry->path().filename().string();
    if (name.front() != '.') {
      modules.push_back(ReadModuleFolder(folder, name));
    }
  }
  return modules;
}

}  // namespace senmark_tool
