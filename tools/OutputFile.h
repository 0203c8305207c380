/// Files that the user names for results.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "ScratchFolder.h"

namespace senmark_tool {

/// A file that comes to its place only when it is whole: until then, what stood there stays as it was, and a
/// failure leaves nothing behind, and neither does a signal.
///
/// The work is done in a folder beside it, so that taking its place is one step. The library works there, too. A link
/// to a file is followed, and the file behind it replaced. Permissions are those of the replaced file, or as for any
/// new file.
class OutputFile {
 public:
  /// Refuses what must not be replaced, and makes the folder to work in.
  ///
  /// input      file that the result is made from, and that it may not replace.
  /// overwrites whether a file at `path` may be replaced.
  /// Errors:    `UsageError` for a place where a result cannot stand or must not; `std::system_error` when the
  ///            folder cannot be written to.
  OutputFile(std::string const& path, std::string const& input, bool overwrites);

  /// Path for the result, where nothing stands.
  std::string const& WorkPath() const { return mWorkPath; }

  /// Puts what was made into its place. Result: its size in bytes.
  ///
  /// Errors: `UsageError` when a file that must not be replaced has come to stand there meanwhile; `std::system_error`.
  std::uintmax_t Finish();

 private:
  std::string mPath;  ///< with links followed
  bool mOverwrites;
  std::unique_ptr<ScratchFolder> mScratch;
  std::string mWorkPath;
};

}  // namespace senmark_tool
