#include <dlfcn.h>

#include "SK_OSUtils.h"

namespace SK_OSUtils {

void const* GetImage(void const* address) {
  Dl_info info;
  return ::dladdr(address, &info) == 0 ? nullptr : info.dli_fbase;
}

}  // namespace SK_OSUtils
