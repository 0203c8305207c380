#include "ScratchFolder.h"

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace senmark_tool {

namespace {

std::string FolderForTemporaryFiles() {
  for (char const* const name : {"TEMP", "TMP", "TMPDIR"}) {
    char const* const folder = std::getenv(name);
    if (folder != nullptr && *folder != '\0') {
      return folder;
    }
  }
  return "/tmp";
}

}  // namespace

ScratchFolder::ScratchFolder() {
  std::string const parent = FolderForTemporaryFiles();
  std::string path = (std::filesystem::path(parent) / "senmark_XXXXXX").string();
  if (mkdtemp(path.data()) == nullptr) {
    throw std::system_error(errno, std::generic_category(), "cannot make a temporary folder in \"" + parent + "\"");
  }
  mPath = std::move(path);
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;  // nobody is left to tell
  std::filesystem::remove_all(mPath, ignored);
}

}  // namespace senmark_tool
