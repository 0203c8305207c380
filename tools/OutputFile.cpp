#include "OutputFile.h"

#include <sys/stat.h>

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

[[noreturn]] void RefuseToReplace(std::string const& path) {
  throw UsageError("\"" + path + "\" exists already; --force replaces it");
}

}  // namespace

OutputFile::OutputFile(std::string const& path, std::string const& input, bool overwrites)
    : mPath(path), mOverwrites(overwrites) {
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
      RefuseToReplace(path);
    }
    mPath = fs::canonical(path).string();
  } else if (fs::is_symlink(fs::symlink_status(path, ignored))) {
    throw UsageError("\"" + path + "\" is a link that leads to nothing");
  }
  if (path.empty() || !fs::path(path).has_filename()) {
    throw UsageError("\"" + path + "\" is no name of a file");
  }
  fs::path const folder = FolderOf(mPath);
  if (!fs::is_directory(folder, ignored)) {
    throw UsageError("there is no folder \"" + folder.string() + "\" to write to");
  }
  try {
    mScratch = std::make_unique<ScratchFolder>((folder / ".senmark_").string());
  } catch (std::system_error const& error) {
    throw std::system_error(error.code(), "cannot write to the folder \"" + folder.string() + "\"");
  }
  mWorkPath = mScratch->Path("result");
}

std::uintmax_t OutputFile::Finish() {
  std::error_code missing;
  fs::file_status const replaced = fs::status(mPath, missing);
  fs::permissions(mWorkPath, fs::exists(replaced) ? replaced.permissions() : UsualPermissions());
  std::uintmax_t const size = fs::file_size(mWorkPath);
  std::error_code failure;
  if (!mOverwrites) {
    // A second name is not given where a file has come meanwhile. Not all disks know them.
    fs::create_hard_link(mWorkPath, mPath, failure);
    if (!failure) {
      return size;
    }
    if (failure == std::errc::file_exists) {
      RefuseToReplace(mPath);
    }
  }
  fs::rename(mWorkPath, mPath, failure);
  if (failure) {
    throw std::system_error(failure, "cannot write \"" + mPath + "\"");
  }
  return size;
}

}  // namespace senmark_tool
