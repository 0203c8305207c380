#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include "SK_Assert.h"
#include "SK_Error.h"
#include "SK_FileMapper.h"

namespace SK_NAMESPACE_INT {

namespace {

// The mapping does not need its descriptor.
class MappedDescriptor {
 public:
  explicit MappedDescriptor(int fd) : mFd(fd) {}
  ~MappedDescriptor() { ::close(mFd); }
  MappedDescriptor(MappedDescriptor const&) = delete;
  MappedDescriptor& operator=(MappedDescriptor const&) = delete;

 private:
  int mFd;
};

}  // namespace

SK_FileMapper::SK_FileMapper(std::string const& path) : mFilePointer(nullptr), mFileSize(0) {
  CreateMapping(path);
}

SK_FileMapper::~SK_FileMapper() {
  CloseMapping();
}

bool SK_FileMapper::CheckFileExistance(char const* path) {
  struct stat status;
  return ::stat(path, &status) == 0;
}

void SK_FileMapper::CreateMapping(std::string const& path) {
  int const fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
  if (fd == -1) {
    ThrowError({ns_sensor::kCannotOpenFile, SK_Message::kFailureOpeningFile, -1, -1}, path);
  }
  MappedDescriptor const closer(fd);
  struct stat status;
  if (::fstat(fd, &status) != 0) {
    ThrowError({ns_sensor::kFileSizeUnknown, SK_Message::kCorruptFile, -1, -1}, path);
  }
  if (status.st_size == 0) {
    ThrowError({ns_sensor::kEmptyFile, SK_Message::kEmptyFile, -1, -1});
  }
  std::uint64_t const size = static_cast<std::uint64_t>(status.st_size);
  void* const mapping = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
  if (mapping == MAP_FAILED) {
    ThrowError({ns_sensor::kInternalFailure, SK_Message::kFailureFileMapping, -1, -1});
  }
  mFilePointer = static_cast<char const*>(mapping);
  mFileSize = size;
}

void SK_FileMapper::CloseMapping() {
  short const sk_errno = static_cast<short>(::munmap(const_cast<char*>(mFilePointer), mFileSize));
  if (sk_errno != 0) {
    SK_AssertFailed("sk_errno == 0", "CloseMapping", "source/SK_FileMapper_mac", 69);
  }
}

}  // namespace SK_NAMESPACE_INT
