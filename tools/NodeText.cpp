#include "NodeText.h"

#include <array>
#include <charconv>
#include <cstdio>

#include "Utf8.h"

namespace senmark_tool {

namespace {

void WriteLimits(JsonWriter& json, char const* key, std::optional<senmark::MinMax> const& limits) {
  json.Key(key);
  if (!limits) {
    json.Null();
    return;
  }
  json.BeginObject();
  json.Key("min");
  json.Number(limits->min);
  json.Key("max");
  json.Number(limits->max);
  json.EndObject();
}

void WriteRange(JsonWriter& json, senmark::NumberRange const& range) {
  json.BeginObject();
  WriteLimits(json, "occurring", range.occurring);
  WriteLimits(json, "legal", range.legal);
  json.EndObject();
}

void WriteDigits(JsonWriter& json, char const* key, std::optional<std::uint64_t> const& digits) {
  json.Key(key);
  if (digits) {
    json.Unsigned(*digits);
  } else {
    json.Null();
  }
}

void WritePatternMembers(JsonWriter& json, senmark::NumberPattern const& pattern) {
  WriteDigits(json, "digitsInteger", pattern.digitsInteger);
  WriteDigits(json, "digitsDecimal", pattern.digitsDecimal);
  json.Key("isSigned");
  json.Boolean(pattern.isSigned);
}

struct PropertiesWriter {
  JsonWriter& json;

  void operator()(std::monostate) const { json.Null(); }
  void operator()(senmark::NumberProperties const& number) const {
    json.BeginObject();
    WritePatternMembers(json, number.pattern);
    json.Key("range");
    WriteRange(json, number.range);
    json.EndObject();
  }
  void operator()(senmark::NumberArrayProperties const& array) const {
    json.BeginObject();
    WritePatternMembers(json, array.pattern);
    json.Key("arraySize");
    json.Unsigned(array.arraySize);
    json.Key("isPoint");
    json.Boolean(array.isPoint);
    json.Key("displayNames");
    json.BeginArray();
    for (std::string const& name : array.displayNames) {
      json.String(name);
    }
    json.EndArray();
    json.Key("ranges");
    json.BeginArray();
    for (senmark::NumberRange const& range : array.ranges) {
      WriteRange(json, range);
    }
    json.EndArray();
    json.EndObject();
  }
  void operator()(senmark::StringProperties const& text) const {
    json.BeginObject();
    json.Key("maxLength");
    json.Unsigned(text.maxLength);
    json.Key("lengthDigits");
    json.Unsigned(text.lengthDigits);
    json.Key("marksEvents");
    json.Boolean(text.marksEvents);
    json.EndObject();
  }
};

void WriteType(JsonWriter& json, senmark::eValueType type, senmark::Properties const& properties) {
  json.Key("type");
  json.String(NameOf(type));
  json.Key("properties");
  std::visit(PropertiesWriter{json}, properties);
}

void WriteExtent(JsonWriter& json, std::optional<senmark::Extent> const& extent) {
  json.Key("extent");
  if (!extent) {
    json.Null();
    return;
  }
  json.BeginObject();
  json.Key("start");
  WriteTime(json, extent->start);
  json.Key("end");
  WriteTime(json, extent->end);
  json.EndObject();
}

}  // namespace

char const* NameOf(senmark::eNodeKind kind) {
  switch (kind) {
    case senmark::eNodeKind::kGroup:
      return "group";
    case senmark::eNodeKind::kDynamic:
      return "dynamic";
    case senmark::eNodeKind::kStatic:
      return "static";
    case senmark::eNodeKind::kInvalid:
      break;
  }
  return "unknown";
}

char const* NameOf(senmark::eValueType type) {
  switch (type) {
    case senmark::eValueType::kNumber:
      return "number";
    case senmark::eValueType::kString:
      return "string";
    case senmark::eValueType::kNumberArray:
      return "number array";
    case senmark::eValueType::kBoolean:
      return "boolean";
    case senmark::eValueType::kInvalid:
      break;
  }
  return "unknown";
}

char const* NameOf(senmark::eInterpolation interpolation) {
  switch (interpolation) {
    case senmark::eInterpolation::kLinear:
      return "linear";
    case senmark::eInterpolation::kHold:
      return "hold";
    case senmark::eInterpolation::kNone:
      break;
  }
  return "none";
}

std::string NumberText(double number) {
  std::array<char, 32> text;
  std::to_chars_result const end = std::to_chars(text.data(), text.data() + text.size(), number);
  return std::string(text.data(), end.ptr);
}

std::string ValueText(senmark::Value const& value) {
  if (double const* const number = std::get_if<double>(&value)) {
    return NumberText(*number);
  }
  if (std::string const* const text = std::get_if<std::string>(&value)) {
    return '"' + Printable(*text) + '"';
  }
  if (bool const* const flag = std::get_if<bool>(&value)) {
    return *flag ? "true" : "false";
  }
  std::string text = "[";
  for (double const number : std::get<std::vector<double>>(value)) {
    text += (text.size() == 1 ? "" : ", ") + NumberText(number);
  }
  return text + ']';
}

std::string TimeText(senmark::Time const& time) {
  // Of files whose frames have no whole number in a second.
  if (time.scale == 0) {
    return "unknown";
  }
  std::array<char, 64> text;
  double const seconds = time.seconds();
  int length = std::snprintf(text.data(), text.size(), "%.6f s", seconds);
  if (time.scale > 1 && 1000000 % time.scale != 0) {
    length = std::snprintf(text.data(), text.size(), "%.6f s (%d/%u)", seconds, time.value, time.scale);
  }
  return std::string(text.data(), static_cast<std::size_t>(length));
}

void WriteTime(JsonWriter& json, senmark::Time const& time) {
  json.BeginObject();
  json.Key("value");
  json.Integer(time.value);
  json.Key("scale");
  json.Unsigned(time.scale);
  json.Key("seconds");
  json.Number(time.seconds());
  json.EndObject();
}

void WriteValue(JsonWriter& json, senmark::Value const& value) {
  if (double const* const number = std::get_if<double>(&value)) {
    json.Number(*number);
  } else if (std::string const* const text = std::get_if<std::string>(&value)) {
    json.String(*text);
  } else if (bool const* const flag = std::get_if<bool>(&value)) {
    json.Boolean(*flag);
  } else {
    json.BeginArray();
    for (double const element : std::get<std::vector<double>>(value)) {
      json.Number(element);
    }
    json.EndArray();
  }
}

void WriteNodeMembers(JsonWriter& json, senmark::Node const& node) {
  json.Key("kind");
  json.String(NameOf(node.kind));
  json.Key("path");
  json.String(node.path);
  json.Key("matchName");
  json.String(node.matchName);
  json.Key("displayName");
  json.String(node.displayName);
  if (node.fixed) {
    WriteType(json, node.fixed->type, node.fixed->properties);
    json.Key("value");
    WriteValue(json, node.fixed->value);
  }
  if (node.dynamic) {
    WriteType(json, node.dynamic->type, node.dynamic->properties);
    json.Key("sampleSetID");
    json.String(node.dynamic->sampleSetId);
    json.Key("sampleCount");
    json.Unsigned(node.dynamic->sampleCount);
    json.Key("interpolation");
    json.String(NameOf(node.dynamic->interpolation));
    json.Key("hasExpectedFrequency");
    json.Boolean(node.dynamic->hasExpectedFrequency);
    json.Key("expectedMaxInterSampleDuration");
    json.String(node.dynamic->expectedMaxInterSampleDuration);
    WriteExtent(json, node.dynamic->extent);
  }
}

}  // namespace senmark_tool
