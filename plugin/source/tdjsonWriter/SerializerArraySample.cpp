#include "SerializerArraySample.h"

#include "SK_PackedNumber.h"
#include "SerializerBatch.h"
#include "SerializerNumberParts.h"
#include "SerializerSampleParts.h"

namespace SK_PLUGIN {

namespace {

constexpr char kBehindValue[] = "]}";

/// With quotes and a comma.
constexpr std::size_t kElementRoom = 3 + kFieldRoom;

/// Bytes of a packed number with its comma, at least.
constexpr std::size_t kSmallestElement = 2 + SK_PackedNumber::kSmallest;

/// The elements with commas between them, to where there is room for them. Gives the end; null for elements that are
/// not all packed numbers that fit into the field.
[[gnu::always_inline]] inline char* PutElements(char* p, std::string_view value, NumberField const& field) {
  while (SK_PackedNumber::Begins(value)) {
    SK_PackedNumber const number = SK_PackedNumber::Take(value);
    PackedDigits const digits(number);
    if (!field.Fits(digits.integer, digits.decimals, digits.finer)) {
      return nullptr;
    }
    *p = '"';
    p = CopyLiteral(PutPadded(p + 1, digits, number.isNegative, field), "\"");
    if (value.empty()) {
      return p;
    }
    value.remove_prefix(1);
    *p++ = ',';
  }
  return nullptr;
}

}  // namespace

std::uint64_t AppendPackedArrays(SerializerBuffer& out, SK_DumpSamplesUtils& dump, NumberField const& field,
                                 std::size_t room, std::uint64_t most) {
  // Of its own, as whatever is stored could be part of the caller's.
  NumberField const place = field;
  auto const sizeOf = [](std::string_view value) {
    std::size_t const mostElements = value.size() / kSmallestElement + 1;
    return mostElements * kElementRoom + sizeof(kBehindValue);
  };
  auto const put = [&](char* p, std::string_view value) {
    char* const behind = PutElements(p, value, place);
    return behind != nullptr ? CopyLiteral(behind, kBehindValue) : nullptr;
  };
  return AppendShortSamples(out, dump, "[", room, most, sizeOf, put);
}

void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             NumberField const& field) {
  AppendTime(out, time);
  out.Put('[');
  // As splitting at the commas gives them: behind a comma at the end there is no further element.
  for (bool isFirst = true; !value.empty(); isFirst = false) {
    AppendElement(out, value, field, !isFirst);
    value.remove_prefix(value.empty() ? 0 : 1);
  }
  out.Put("]}");
}

}  // namespace SK_PLUGIN
