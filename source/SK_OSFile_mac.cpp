#include <fcntl.h>

#include "SK_FileLimit.h"
#include "SK_OSFile.h"

namespace SK_NAMESPACE_INT {

// The reservation counts from the physical end of the file, wherever that is.
void ReserveFileBlocks(int fd, std::uint64_t end, std::uint64_t size) noexcept {
  std::uint64_t const longest = LongestFile();
  if (end <= longest && size <= longest - end) {
    fstore_t store = {};
    store.fst_flags = F_ALLOCATEALL;
    store.fst_posmode = F_PEOFPOSMODE;
    store.fst_length = static_cast<off_t>(size);
    static_cast<void>(::fcntl(fd, F_PREALLOCATE, &store));
  }
}

}  // namespace SK_NAMESPACE_INT
