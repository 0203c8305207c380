#include "OutputFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "Command.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

/// The permissions that a file made in the usual way gets.
fs::perms UsualPermissions() {
  mode_t const mask = umask(0);
  umask(mask);
  return static_cast<fs::perms>(0666 & ~mask);
}

fs::path FolderOf(fs::path const& path) {
  return path.has_parent_path() ? path.parent_path() : fs::path(".");
}

}  // namespace

OutputFile::OutputFile(std::string const& path, std::string const& input, bool overwrites) : mPath(path) {
  std::error_code ignored;
  fs::file_status const status = fs::status(path, ignored);
  if (fs::exists(status)) {
    if (fs::equivalent(input, path, ignored)) {
      throw UsageError("\"" + path + "\" is the file itself: a result cannot replace what it is made from");
    }
    if (!fs::is_regular_file(status)) {
      throw UsageError("\"" + path + "\" is no file that could be replaced");
    }
    if (!overwrites) {
      throw UsageError("\"" + path + "\" exists already; --force replaces it");
    }
    mPath = fs::canonical(path).string();
  }
  if (path.empty() || !fs::path(path).has_filename()) {
    throw UsageError("\"" + path + "\" is no name of a file");
  }
  fs::path const folder = FolderOf(mPath);
  if (!fs::is_directory(folder, ignored)) {
    throw UsageError("there is no folder \"" + folder.string() + "\" to write to");
  }
  std::string workPath = (folder / ".senmark_XXXXXX").string();
  int const descriptor = mkstemp(workPath.data());
  if (descriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "cannot write to the folder \"" + folder.string() + "\"");
  }
  mWorkPath = std::move(workPath);
  close(descriptor);
}

OutputFile::~OutputFile() {
  if (!mWorkPath.empty()) {
    std::error_code ignored;  // what went wrong before is what counts
    fs::remove(mWorkPath, ignored);
  }
}

std::uintmax_t OutputFile::Finish() {
  std::error_code missing;
  fs::file_status const replaced = fs::status(mPath, missing);
  fs::permissions(mWorkPath, fs::exists(replaced) ? replaced.permissions() : UsualPermissions());
  std::uintmax_t const size = fs::file_size(mWorkPath);
  fs::rename(mWorkPath, mPath);
  mWorkPath.clear();
  return size;
}

}  // namespace senmark_tool
