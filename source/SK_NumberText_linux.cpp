#include <charconv>

#include "SK_NumberText.h"

namespace SK_NAMESPACE_INT {

double SK_NumberText::PlainToDouble(char const* first, char const* last) {
  double number = 0;
  std::from_chars(first, last, number, std::chars_format::fixed);
  return number;
}

}  // namespace SK_NAMESPACE_INT
