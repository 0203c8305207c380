#include <string>

#include "SK_NumberText.h"

namespace SK_NAMESPACE_INT {

// The standard library of this platform reads no doubles with `std::from_chars`.
double SK_NumberText::PlainToDouble(char const* first, char const* last) {
  return ToDouble(std::string(first, last));
}

bool SK_NumberText::DecimalToDouble(char const* /*first*/, char const* /*last*/, double& /*number*/) {
  return false;
}

}  // namespace SK_NAMESPACE_INT
