#include "ModulePaths.h"

#include <filesystem>
#include <utility>

#include "ModuleCode.h"

namespace senmark_tool {

ModulePaths::ModulePaths(std::string folder) : mFolder(std::move(folder)) {
  // The name counts, which "." has not.
  mFolder = std::filesystem::absolute(mFolder).lexically_normal().string();
  while (mFolder.size() > 1 && mFolder.back() == '/') {
    mFolder.pop_back();
  }
}

std::string ModulePaths::FolderName() const {
  return std::filesystem::path(mFolder).filename().string();
}

std::string ModulePaths::Name() const {
  std::string const name = FolderName();
  return name.substr(0, name.rfind('.'));
}

std::string ModulePaths::Code() const {
  return ModuleCodePath(mFolder).substr(mFolder.size() + 1);
}

}  // namespace senmark_tool
