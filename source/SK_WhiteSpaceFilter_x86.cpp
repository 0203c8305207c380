#include "SK_WhiteSpaceFilter_x86.h"

namespace SK_NAMESPACE_INT {

std::vector<SK_WhiteSpaceFilter> GetWhiteSpaceFilters() {
  std::vector<SK_WhiteSpaceFilter> filters = {{"bytes", FilterBytes}};
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) {
    filters.push_back({"AVX2", FilterAVX2});
  }
  if (__builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512vbmi2")) {
    filters.push_back({"AVX-512", FilterAVX512});
  }
  return filters;
}

}  // namespace SK_NAMESPACE_INT
