#include "ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace senmark_tool {

namespace {

std::filesystem::path FolderForTemporaryFiles() {
  for (char const* const name : kTemporaryVariables) {
    char const* const folder = std::getenv(name);
    if (folder != nullptr && *folder != '\0') {
      return folder;
    }
  }
  return "/tmp";
}

}  // namespace

ScratchFolder::ScratchFolder() : ScratchFolder((FolderForTemporaryFiles() / "senmark_").string()) {}

ScratchFolder::ScratchFolder(std::string const& place)
    : mPath(std::filesystem::absolute(place + "XXXXXX").string()) {  // wherever modules go
  HeldSignals const whileItIsMade;
  if (mkdtemp(mPath.data()) == nullptr) {
    int const reason = errno;
    throw std::system_error(
        reason, std::generic_category(),
        "cannot make a temporary folder in \"" + std::filesystem::path(mPath).parent_path().string() + "\"");
  }
  mCleanup = std::make_unique<SignalCleanup::Folder>(mPath);
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;  // nobody is left to tell
  std::filesystem::remove_all(mPath, ignored);
}

}  // namespace senmark_tool
