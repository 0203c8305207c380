#include "SK_WhiteSpaceFilter.h"

namespace SK_NAMESPACE_INT {

std::vector<SK_WhiteSpaceFilter> GetWhiteSpaceFilters() {
  return {{"bytes", FilterBytes}};
}

}  // namespace SK_NAMESPACE_INT
