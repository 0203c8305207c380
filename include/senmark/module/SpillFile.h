/// Room on the disk for what is too much for memory.
#pragma once

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "senmark/module/Failure.h"

namespace senmark::kit::detail {

/// A file without a name: it is gone with this object, however that ends. Made when it is first written to.
class SpillFile {
 public:
  SpillFile() = default;
  ~SpillFile() { clear(); }
  SpillFile(SpillFile const&) = delete;
  SpillFile& operator=(SpillFile const&) = delete;

  /// Lets go of the file and all that is in it.
  void clear() {
    if (mDescriptor >= 0) {
      ::close(mDescriptor);
    }
    mDescriptor = -1;
    mSize = 0;
  }

  /// Bytes that were written.
  std::uint64_t size() const { return mSize; }

  /// Errors: `Failure` with code 1034 for a full disk, 1055 for others, 1015 if there can be no file.
  void append(std::string_view bytes) {
    if (mDescriptor < 0) {
      Create();
    }
    while (!bytes.empty()) {
      ssize_t const count = ::write(mDescriptor, bytes.data(), bytes.size());
      if (count > 0) {
        bytes.remove_prefix(static_cast<std::size_t>(count));
        mSize += static_cast<std::uint64_t>(count);
      } else if (count == 0 || errno != EINTR) {
        throw WriteFailure(count == 0 ? ENOSPC : errno);
      }
    }
  }

  /// Reads exactly `size` bytes that were written. Errors: `Failure` with code 1011.
  void read(std::uint64_t offset, char* bytes, std::size_t size) const {
    while (size != 0) {
      ssize_t const count = ::pread(mDescriptor, bytes, size, static_cast<off_t>(offset));
      if (count > 0) {
        bytes += count;
        offset += static_cast<std::uint64_t>(count);
        size -= static_cast<std::size_t>(count);
      } else if (count == 0 || errno != EINTR) {
        throw Failure("a temporary file cannot be read", -1, -1, kOfWriter + ns_sensor::kReadFailed);
      }
    }
  }

 private:
  /// What the writer adds to the codes of file operations.
  static constexpr std::int32_t kOfWriter = 1000;

  static Failure WriteFailure(int error) {
    bool const isFull = error == ENOSPC;
    return Failure(std::string("a temporary file cannot be written: ") + std::strerror(error), -1, -1,
                   kOfWriter + (isFull ? ns_sensor::kNoMemory : ns_sensor::kWriteFailed));
  }

  /// Where the library has its temporary files too.
  static std::string Folder() {
    for (char const* const name : {"TEMP", "TMP", "TMPDIR"}) {
      char const* const folder = std::getenv(name);
      if (folder != nullptr && *folder != '\0') {
        return std::string(folder) + '/';
      }
    }
    return "/tmp/";
  }

  void Create() {
    std::string path = Folder() + "senmark_XXXXXX";
    mDescriptor = ::mkostemp(path.data(), O_CLOEXEC);
    if (mDescriptor < 0) {
      throw Failure(std::string("a temporary file cannot be made: ") + std::strerror(errno), -1, -1,
                    kOfWriter + ns_sensor::kCannotMakeTempFile);
    }
    ::unlink(path.c_str());
  }

  int mDescriptor = -1;
  std::uint64_t mSize = 0;
};

}  // namespace senmark::kit::detail
