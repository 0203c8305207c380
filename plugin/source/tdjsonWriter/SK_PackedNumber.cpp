#include "SK_PackedNumber.h"

namespace SK_PLUGIN {

std::string_view SK_PackedNumber::CopyTextTo(char* out) const {
  *out = '-';
  char const* const end = SK_WriterNumberText::WriteFixed(out + (isNegative ? 1 : 0), fixed);
  return std::string_view(out, static_cast<std::size_t>(end - out));
}

namespace detail {

char* PutText(char* out, double value, ns_sensor::SK_NumberPattern& pattern, bool automatic) {
  SK_WriterNumberText::Digits digits;
  char* const end = SK_WriterNumberText::Write(out, value, digits);
  WidenNumberPattern(pattern, automatic, value, digits);
  return end;
}

void Widen(ns_sensor::SK_NumberPattern& pattern, double value) {
  WidenNumberPattern(pattern, true, value, SK_WriterNumberText(value).Counts());
}

}  // namespace detail

}  // namespace SK_PLUGIN
