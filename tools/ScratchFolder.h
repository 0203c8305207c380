/// A folder of the program's own for files that nobody is to see.
#pragma once

#include <string>

namespace senmark_tool {

/// Stands in the folder for temporary files, which is the library's: the first of TEMP, TMP and TMPDIR, else
/// /tmp. It goes with all that is in it.
class ScratchFolder {
 public:
  /// Errors: `std::system_error` when it cannot be made.
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(ScratchFolder const&) = delete;
  ScratchFolder& operator=(ScratchFolder const&) = delete;

  std::string const& Path() const { return mPath; }

  /// Full path of a name in the folder.
  std::string Path(std::string const& name) const { return mPath + '/' + name; }

 private:
  std::string mPath;
};

}  // namespace senmark_tool
