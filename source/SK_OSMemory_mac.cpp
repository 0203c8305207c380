#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {

// The system takes the wish only on some processors, and then refuses memory where it has no large pages left.
void PreferLargePages(void*, std::size_t) noexcept {}

}  // namespace SK_NAMESPACE_INT
