#include "ModulePaths.h"

#include <sys/utsname.h>

#include <filesystem>
#include <utility>

namespace senmark_tool {

std::string MachineName() {
  utsname system;
  return uname(&system) == 0 ? system.machine : std::string();
}

ModulePaths::ModulePaths(std::string folder) : mFolder(std::move(folder)) {
  // The name counts, which "." has not.
  mFolder = std::filesystem::absolute(mFolder).lexically_normal().string();
  while (mFolder.size() > 1 && mFolder.back() == '/') {
    mFolder.pop_back();
  }
}

std::string ModulePaths::Parent() const {
  return std::filesystem::path(mFolder).parent_path().string();
}

std::string ModulePaths::FolderName() const {
  return std::filesystem::path(mFolder).filename().string();
}

std::string ModulePaths::Name() const {
  std::string const name = FolderName();
  return name.substr(0, name.rfind('.'));
}

std::string ModulePaths::Code() const {
  return "Contents/" + MachineName() + "-linux/" + Name() + ".so";
}

}  // namespace senmark_tool
