#undef NDEBUG  // the declaration of the call is hidden in a build without assertions
#include <cassert>

#include "SK_Assert.h"

namespace SK_NAMESPACE_INT {

void SK_AssertFailed(char const* expression, char const* function, char const* source, unsigned line) {
  __assert_rtn(function, source, static_cast<int>(line), expression);
}

}  // namespace SK_NAMESPACE_INT
