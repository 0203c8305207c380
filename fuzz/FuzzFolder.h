/// A folder of one fuzz target's own, with the library's folder for temporary files in it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>

namespace senmark_fuzz {

/// Lives as long as the process; gone with it, unless there is a finding.
class FuzzFolder {
 public:
  FuzzFolder();
  ~FuzzFolder();
  FuzzFolder(FuzzFolder const&) = delete;
  FuzzFolder& operator=(FuzzFolder const&) = delete;

  std::string Path(std::string const& name) const { return mRoot + name; }
  /// Gives the full path.
  std::string Write(std::string const& name, std::uint8_t const* data, std::size_t size) const;
  /// Empty for a file that is not there.
  std::string Read(std::string const& name) const;
  void Remove(std::string const& name) const;

  /// To be called before each input: the fuzzer opens and closes files of its own between them.
  void StartInput();
  /// No file lies here but the named ones, no temporary file, and no descriptor is open that was not at the start.
  void RequireNothingLeft(std::initializer_list<char const*> names) const;

 private:
  std::string mRoot;
  int mFreeDescriptor = 0;
};

}  // namespace senmark_fuzz
