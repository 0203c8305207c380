/// Whether a file is still what it was.
#pragma once

#include <cstdint>
#include <string>

namespace senmark_tool {

/// What tells one content of a file from another without keeping all of it. Something that is no regular file is
/// equal to itself.
class FileState {
 public:
  explicit FileState(std::string const& path);

  friend bool operator!=(FileState const& a, FileState const& b) {
    return a.mSize != b.mSize || a.mTime != b.mTime || a.mStart != b.mStart;
  }

 private:
  std::uintmax_t mSize = 0;
  std::int64_t mTime = 0;  ///< of the last change of the content
  std::string mStart;
};

}  // namespace senmark_tool
