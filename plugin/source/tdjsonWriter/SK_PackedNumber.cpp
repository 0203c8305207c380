#include "SK_PackedNumber.h"

#include <cmath>

namespace SK_PLUGIN {

std::string_view SK_PackedNumber::CopyTextTo(char* out) const {
  *out = '-';
  char* const first = out + (isNegative ? 1 : 0);
  char const* const end =
      isFine ? SK_WriterNumberText::WriteFine(first, fixed) : SK_WriterNumberText::WriteFixed(first, fixed);
  return std::string_view(out, static_cast<std::size_t>(end - out));
}

namespace detail {

char* PackOther(char* out, double value, std::uint64_t bits, ns_sensor::SK_NumberPattern& pattern, bool automatic) {
  std::uint64_t fine = 0;
  if (!SK_WriterNumberText::ToFine(bits, fine)) {
    SK_WriterNumberText::Digits digits;
    char* const end = SK_WriterNumberText::Write(out, value, digits);
    WidenNumberPattern(pattern, automatic, value, digits);
    return end;
  }
  if (automatic && !Fits<SK_WriterNumberText::kFineDecimals>(fine, kFineEnds, pattern)) {
    Widen(pattern, value);
  }
  bool const isNegative = std::signbit(value);
  pattern.isSigned = pattern.isSigned || isNegative;
  return PutInteger(out, fine, isNegative ? 1 : 0, 1);
}

void Widen(ns_sensor::SK_NumberPattern& pattern, double value) {
  WidenNumberPattern(pattern, true, value, SK_WriterNumberText(value).Counts());
}

}  // namespace detail

}  // namespace SK_PLUGIN
