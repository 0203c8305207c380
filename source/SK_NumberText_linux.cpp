#include <charconv>
#include <system_error>

#include "SK_NumberText.h"

namespace SK_NAMESPACE_INT {

double SK_NumberText::PlainToDouble(char const* first, char const* last) {
  double number = 0;
  std::from_chars(first, last, number, std::chars_format::fixed);
  return number;
}

double SK_NumberText::NearestDouble(char const* first, char const* last) {
  double number = 0;
  auto const result = std::from_chars(first, last, number);
  // Too large and too small are told apart only by the functions of C.
  return result.ec == std::errc() ? number : NearestDoubleOfCopy(first, last);
}

}  // namespace SK_NAMESPACE_INT
