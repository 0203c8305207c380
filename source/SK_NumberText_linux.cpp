#include <charconv>
#include <limits>
#include <system_error>

#include "SK_NumberText.h"

namespace SK_NAMESPACE_INT {

double SK_NumberText::PlainToDouble(char const* first, char const* last) {
  double number = 0;
  std::from_chars(first, last, number, std::chars_format::fixed);
  return number;
}

bool SK_NumberText::DecimalToDouble(char const* first, char const* last, double& number) {
  auto const [end, error] = std::from_chars(first, last, number, std::chars_format::general);
  return end == last && error == std::errc() && number > std::numeric_limits<double>::min();
}

}  // namespace SK_NAMESPACE_INT
