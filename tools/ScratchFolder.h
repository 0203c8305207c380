/// A folder of the program's own for files that nobody is to see.
#pragma once

#include <array>
#include <memory>
#include <string>

#include "SignalCleanup.h"

namespace senmark_tool {

/// The variables that name the folder for temporary files, in the order in which the library reads them.
inline constexpr std::array<char const*, 3> kTemporaryVariables = {"TEMP", "TMP", "TMPDIR"};

/// It goes with all that is in it, even if a signal ends the program.
class ScratchFolder {
 public:
  /// In the folder for temporary files: that of the first variable that is not empty, or /tmp.
  ///
  /// Errors: `std::system_error` when it cannot be made.
  ScratchFolder();
  /// With a name of its own: `place`, and six characters that make it unique.
  ///
  /// Errors: the same.
  explicit ScratchFolder(std::string const& place);
  ~ScratchFolder();
  ScratchFolder(ScratchFolder const&) = delete;
  ScratchFolder& operator=(ScratchFolder const&) = delete;

  std::string const& Path() const { return mPath; }

  /// Full path of a name in the folder.
  std::string Path(std::string const& name) const { return mPath + '/' + name; }

 private:
  std::string mPath;
  std::unique_ptr<SignalCleanup::Folder> mCleanup;
};

}  // namespace senmark_tool
