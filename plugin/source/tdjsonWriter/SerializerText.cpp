#include "SerializerText.h"

#include <charconv>
#include <limits>

#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"
#include "SK_WriterNumberText.h"

namespace SK_PLUGIN {

namespace {

/// Every count up to here is a double, and its text has all its digits.
constexpr std::uint64_t kLargestExactCount = std::uint64_t{1} << std::numeric_limits<double>::digits;

void AppendKey(SerializerBuffer& out, std::string_view key) {
  JSON_STR(out, key);
  out.Put(':');
}

}  // namespace

void JSON_STR(SerializerBuffer& out, std::string_view text) {
  out.Put('"');
  out.Put(text);
  out.Put('"');
}

void JSON_StrObj(SerializerBuffer& out, std::string_view key, std::string_view value) {
  AppendKey(out, key);
  JSON_STR(out, value);
}

void JSON_NumObj(SerializerBuffer& out, std::string_view key, double value) {
  AppendKey(out, key);
  out.Put(SK_WriterNumberText(value).View());
}

void JSON_BoolObj(SerializerBuffer& out, std::string_view key, bool value) {
  AppendKey(out, key);
  out.Put(std::string_view(value ? "true" : "false"));
}

void JSON_StrArrObj(SerializerBuffer& out, std::string_view key, std::vector<std::string> const& list) {
  AppendKey(out, key);
  out.Put('[');
  for (std::string const& item : list) {
    if (&item != &list.front()) {
      out.Put(',');
    }
    JSON_STR(out, item);
  }
  out.Put(']');
}

void AppendCount(SerializerBuffer& out, std::uint64_t count) {
  char text[SK_WriterNumberText::kLongest];
  out.Put(std::string_view(text, static_cast<std::size_t>(CopyCount(text, count) - text)));
}

char* CopyCount(char* out, std::uint64_t count) {
  if (count < 10) {
    *out = static_cast<char>('0' + count);
    return out + 1;
  }
  if (count <= kLargestExactCount) {
    return std::to_chars(out, out + SK_WriterNumberText::kLongest, count).ptr;
  }
  return SK_WriterNumberText(static_cast<double>(count)).CopyTo(out);
}

std::string_view GetStaticType(ns_sensor::eDataValueType type) {
  switch (type) {
    case ns_sensor::kNumberValue:
      return "number";
    case ns_sensor::kStringValue:
      return "string";
    case ns_sensor::kNumberArrayValue:
      return "numberArray";
    case ns_sensor::kBooleanValue:
      return "boolean";
    default:
      ThrowWriterError(kNoTextForm);
  }
}

std::string_view GetDynamicType(ns_sensor::eDataValueType type) {
  switch (type) {
    case ns_sensor::kNumberValue:
      return "numberString";
    case ns_sensor::kStringValue:
      return "paddedString";
    case ns_sensor::kNumberArrayValue:
      return "numberStringArray";
    default:
      ThrowWriterError(kNoTextForm);
  }
}

std::string_view GetInterpolationStr(ns_sensor::eInterpolationType interpolation) {
  switch (interpolation) {
    case ns_sensor::kLinearInterpolation:
      return "linear";
    case ns_sensor::kHoldInterpolation:
      return "hold";
    default:
      ThrowWriterError(kNoTextForm);
  }
}

}  // namespace SK_PLUGIN
