#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {

void PreferLargePages(void* /*stretch*/, std::size_t /*size*/) noexcept {}

}  // namespace SK_NAMESPACE_INT
