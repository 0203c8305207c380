#include <fcntl.h>

#include <limits>

#include "SK_OSFile.h"

namespace SK_NAMESPACE_INT {

// Not `posix_fallocate`: on file systems without reservation it writes to every block instead.
void ReserveFileBlocks(int fd, std::uint64_t end, std::uint64_t size) noexcept {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
  if (end <= kMost && size <= kMost) {
    static_cast<void>(::fallocate(fd, FALLOC_FL_KEEP_SIZE, static_cast<off_t>(end), static_cast<off_t>(size)));
  }
}

}  // namespace SK_NAMESPACE_INT
