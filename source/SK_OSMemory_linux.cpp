#include <sys/mman.h>

#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {

void PreferLargePages(void* stretch, std::size_t size) noexcept {
  static_cast<void>(::madvise(stretch, size, MADV_HUGEPAGE));
}

}  // namespace SK_NAMESPACE_INT
