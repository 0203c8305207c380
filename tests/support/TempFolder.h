/// A folder of the test's own, made the folder for temporary files of the library for as long as it
/// lives. It fails the test if the library leaves anything behind in it.
#pragma once

#include <string>

namespace senmark_test {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(TempFolder const&) = delete;
  TempFolder& operator=(TempFolder const&) = delete;

  /// Full path of a name in the folder for the test's own files, which the library does not use by
  /// itself.
  std::string Path(std::string const& name) const;
  /// Writes a file of the test's own and gives its full path.
  std::string Write(std::string const& name, std::string const& content) const;
  std::string Read(std::string const& path) const;
  /// Names of what stands in the library's folder for temporary files.
  std::string TempNames() const;
  /// The library's folder for temporary files, with its separator.
  std::string const& TempPath() const { return mTempPath; }

 private:
  std::string mRoot;
  std::string mTempPath;
};

}  // namespace senmark_test
