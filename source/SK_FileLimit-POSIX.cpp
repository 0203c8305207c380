#include "SK_FileLimit.h"

#include <sys/resource.h>
#include <sys/types.h>

#include <limits>

namespace SK_NAMESPACE_INT {

std::uint64_t LongestFile() noexcept {
  constexpr auto kMost = static_cast<std::uint64_t>(std::numeric_limits<off_t>::max());
  rlimit limit = {};
  return ::getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur < kMost ? limit.rlim_cur : kMost;
}

}  // namespace SK_NAMESPACE_INT
