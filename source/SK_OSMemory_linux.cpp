#include <sys/mman.h>

#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {

void PreferLargePages(void* pages, std::size_t size) noexcept {
  static_cast<void>(::madvise(pages, size, MADV_HUGEPAGE));
}

}  // namespace SK_NAMESPACE_INT
