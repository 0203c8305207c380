#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "Command.h"

namespace senmark_tool {

namespace {

/// A file of its own in the folder for temporary files, as long as it lives.
class ScratchFile {
 public:
  ScratchFile() : mPath((std::filesystem::temp_directory_path() / "senmark_stream_XXXXXX").string()) {
    mDescriptor = mkstemp(mPath.data());
    if (mDescriptor < 0) {
      throw std::system_error(errno, std::generic_category(), "cannot make a temporary file");
    }
  }
  ~ScratchFile() {
    ::close(mDescriptor);
    ::unlink(mPath.c_str());
  }
  ScratchFile(ScratchFile const&) = delete;
  ScratchFile& operator=(ScratchFile const&) = delete;

  std::string const& Path() const { return mPath; }

  /// Bytes read, 0 at the end.
  std::size_t Read(char* buffer, std::size_t capacity) {
    ssize_t const count = ::read(mDescriptor, buffer, capacity);
    if (count < 0) {
      throw std::system_error(errno, std::generic_category(), "cannot read the temporary file");
    }
    return static_cast<std::size_t>(count);
  }

 private:
  std::string mPath;
  int mDescriptor;
};

}  // namespace

int RunStream(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  constexpr std::size_t kPiece = 1 << 20;
  // By way of a file: reading a stream ends at 4 GiB, saving it does not.
  ScratchFile scratch;
  manager.stream(request.file, true).save(scratch.Path());
  std::vector<char> piece(kPiece);
  while (std::size_t const count = scratch.Read(piece.data(), kPiece)) {
    if (!out.write(piece.data(), static_cast<std::streamsize>(count))) {
      break;  // the caller tells that the output failed
    }
  }
  return kFine;
}

}  // namespace senmark_tool
