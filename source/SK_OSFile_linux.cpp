#include <fcntl.h>

#include "SK_FileLimit.h"
#include "SK_OSFile.h"

namespace SK_NAMESPACE_INT {

// Not `posix_fallocate`: on file systems without reservation it writes to every block instead. Nothing beyond the limit
// of the process: one in memory would end it for that, where a write across the limit is no more than short.
void ReserveFileBlocks(int fd, std::uint64_t end, std::uint64_t size) noexcept {
  std::uint64_t const longest = LongestFile();
  if (end <= longest && size <= longest - end) {
    static_cast<void>(::fallocate(fd, FALLOC_FL_KEEP_SIZE, static_cast<off_t>(end), static_cast<off_t>(size)));
  }
}

}  // namespace SK_NAMESPACE_INT
