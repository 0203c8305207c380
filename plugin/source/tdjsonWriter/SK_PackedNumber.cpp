#include "SK_PackedNumber.h"

namespace SK_PLUGIN {

std::string_view SK_PackedNumber::CopyTextTo(char* out) const {
  *out = '-';
  char const* const end = SK_WriterNumberText::WriteFixed(out + (isNegative ? 1 : 0), fixed);
  return std::string_view(out, static_cast<std::size_t>(end - out));
}

}  // namespace SK_PLUGIN
