#include "SK_OutlineReader.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "SK_IntegerOf.h"
#include "SK_NumberText.h"
#include "SK_PackedDataType.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::eDataValueType;
using ns_sensor::kNoError;
using ns_sensor::kPropertyMissing;
using ns_sensor::SK_DataType;
using ns_sensor::SK_DataValue;
using ns_sensor::SK_NumberArrayProperties;
using ns_sensor::SK_NumberMinMax;
using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberProperties;
using ns_sensor::SK_NumberRange;
using ns_sensor::SK_StringProperties;

namespace {

/// One row of a table that is searched from its top.
struct NamedKind {
  char const* prefix;
  eDataValueType kind;
};

constexpr NamedKind kStaticKinds2[] = {{"numberArray", ns_sensor::kNumberArrayValue},
                                       {"string", ns_sensor::kStringValue},
                                       {"number", ns_sensor::kNumberValue},
                                       {"boolean", ns_sensor::kBooleanValue}};
constexpr NamedKind kDynamicKinds2[] = {{"numberStringArray", ns_sensor::kNumberArrayValue},
                                        {"paddedString", ns_sensor::kStringValue},
                                        {"numberString", ns_sensor::kNumberValue}};
constexpr NamedKind kKinds1[] = {{"numberArray", ns_sensor::kNumberArrayValue},
                                 {"paddedString", ns_sensor::kStringValue},
                                 {"numberString", ns_sensor::kNumberValue}};

template <std::size_t kCount>
eDataValueType FindKind(NamedKind const (&kinds)[kCount], char const* type) {
  for (NamedKind const& row : kinds) {
    if (std::strncmp(type, row.prefix, std::strlen(row.prefix)) == 0) {
      return row.kind;
    }
  }
  return ns_sensor::kInvalidValue;
}

/// The member with the first key, or else with the second, another spelling of it.
JValue const* FindEither(JValue const& node, char const* key, char const* otherSpelling) {
  JValue const* const value = SK_OutlineReader::Find(node, key);
  return value != nullptr ? value : SK_OutlineReader::Find(node, otherSpelling);
}

void GetMinMax(JValue const* node, SK_NumberMinMax& out) {
  if (node != nullptr) {
    SK_OutlineReader::GetNumberValue(*node, "min", out.min);
    SK_OutlineReader::GetNumberValue(*node, "max", out.max);
  }
}

void GetLimits(JValue const& node, SK_NumberRange& out) {
  GetMinMax(FindEither(node, "occurring", "occuring"), out.occurring);
  GetMinMax(SK_OutlineReader::Find(node, "legal"), out.legal);
}

void GetRange(JValue const& properties, SK_NumberRange& out) {
  if (JValue const* const range = SK_OutlineReader::Find(properties, "range")) {
    GetLimits(*range, out);
  }
}

/// The elements of an array; none for anything else.
template <typename Visit>
void ForEachElement(JValue const* array, Visit visit) {
  if (array == nullptr || !array->IsArray()) {
    return;
  }
  for (JValue const& element : array->GetArray()) {
    visit(element);
  }
}

void GetRanges(JValue const& properties, std::vector<SK_NumberRange>& out) {
  JValue const* const arrayRanges = SK_OutlineReader::Find(properties, "arrayRanges");
  if (arrayRanges == nullptr) {
    return;
  }
  ForEachElement(SK_OutlineReader::Find(*arrayRanges, "ranges"), [&](JValue const& element) {
    out.emplace_back();
    GetLimits(element, out.back());
  });
}

void GetPattern(JValue const& properties, SK_NumberPattern& out) {
  if (JValue const* const pattern = SK_OutlineReader::Find(properties, "pattern")) {
    SK_OutlineReader::GetIntValue(*pattern, "digitsInteger", out.digitsInteger);
    SK_OutlineReader::GetIntValue(*pattern, "digitsDecimal", out.digitsDecimal);
    SK_OutlineReader::GetBoolValue(*pattern, "isSigned", out.isSigned);
  }
}

SK_NumberProperties GetNumberProperties(JValue const& properties) {
  SK_NumberProperties result;
  GetPattern(properties, result.pattern);
  GetRange(properties, result.range);
  return result;
}

SK_StringProperties GetStringProperties(JValue const& properties) {
  SK_StringProperties result;
  SK_OutlineReader::GetIntValue(properties, "maxLen", result.maxLen);
  SK_OutlineReader::GetIntValue(properties, "maxDigitsInStrLength", result.maxDigitsInStrLength);
  SK_OutlineReader::GetBoolValue(properties, "eventMarkerB", result.eventMarkerB);
  return result;
}

SK_NumberArrayProperties GetNumberArrayProperties(JValue const& properties) {
  SK_NumberArrayProperties result;
  GetPattern(properties, result.pattern);
  SK_OutlineReader::GetIntValue(properties, "arraySize", result.arraySize);
  ForEachElement(SK_OutlineReader::Find(properties, "arrayDisplayNames"), [&](JValue const& name) {
    if (name.IsString()) {
      result.arrayDisplayNames.emplace_back(name.GetString(), name.GetStringLength());
    }
  });
  GetRanges(properties, result.arrayRanges);
  SK_OutlineReader::GetBoolValue(properties, "isPoint", result.isPoint);
  return result;
}

void Unpack(SK_PackedDataType const& packed, SK_DataType& out) {
  out.type = packed.GetKind();
  if (out.type == ns_sensor::kNumberValue) {
    out.properties.value = packed.GetNumberProperties();
  } else if (out.type == ns_sensor::kStringValue) {
    out.properties.value = packed.GetStringProperties();
  }
}

}  // namespace

JValue const* SK_OutlineReader::Find(JValue const& node, char const* key) {
  if (!node.IsObject()) {
    return nullptr;
  }
  auto const member = node.FindMember(key);
  return member == node.MemberEnd() ? nullptr : &member->value;
}

eErrorCode SK_OutlineReader::GetStringValue(JValue const& node, char const* key, std::string& out) {
  JValue const* const value = Find(node, key);
  if (value == nullptr || !value->IsString()) {
    return kPropertyMissing;
  }
  out.assign(value->GetString(), value->GetStringLength());
  return kNoError;
}

eErrorCode SK_OutlineReader::GetIntValue(JValue const& node, char const* key, std::uint64_t& out) {
  double number = 0;
  eErrorCode const code = GetNumberValue(node, key, number);
  if (code == kNoError) {
    out = CountOf(number);
  }
  return code;
}

/// The scanner makes every number a double.
eErrorCode SK_OutlineReader::GetNumberValue(JValue const& node, char const* key, double& out) {
  JValue const* const value = Find(node, key);
  if (value == nullptr || !value->IsDouble()) {
    return kPropertyMissing;
  }
  out = value->GetDouble();
  return kNoError;
}

eErrorCode SK_OutlineReader::GetBoolValue(JValue const& node, char const* key, bool& out) {
  JValue const* const value = Find(node, key);
  if (value == nullptr || !value->IsBool()) {
    return kPropertyMissing;
  }
  out = value->GetBool();
  return kNoError;
}

ns_sensor::eGroupChildType SK_OutlineReader::GetGroupType(std::string const& objectType) {
  if (objectType == "dataGroup") {
    return ns_sensor::kGroupChild;
  }
  if (objectType == "dataDynamic") {
    return ns_sensor::kDynamicChild;
  }
  return objectType == "dataStatic" ? ns_sensor::kStaticChild : ns_sensor::kInvalidChild;
}

char const* SK_OutlineReader::GetNodeTypeStr(ns_sensor::eGroupChildType type) {
  switch (type) {
    case ns_sensor::kStaticChild:
      return "Static data node";
    case ns_sensor::kDynamicChild:
      return "Dynamic data node";
    case ns_sensor::kGroupChild:
      return "Group data node";
    default:
      return "invalid node";
  }
}

ns_sensor::eInterpolationType SK_OutlineReader::GetInterPolationType(std::string const& interpolation) {
  if (interpolation == "linear") {
    return ns_sensor::kLinearInterpolation;
  }
  return interpolation == "hold" ? ns_sensor::kHoldInterpolation : ns_sensor::kNoInterpolation;
}

eDataValueType SK_OutlineReader::GetValueType(char const* type, bool isDynamic) const {
  if (mVersion != kTdjsonVersion2) {
    return FindKind(kKinds1, type);
  }
  return isDynamic ? FindKind(kDynamicKinds2, type) : FindKind(kStaticKinds2, type);
}

eErrorCode SK_OutlineReader::GetDataType(JValue const& node, SK_DataType& out, bool isDynamic) const {
  JValue const* const dataType = Find(node, "dataType");
  if (dataType == nullptr) {
    return kPropertyMissing;
  }
  if (SK_PackedDataType const* const packed = SK_PackedDataType::Of(*dataType)) {
    Unpack(*packed, out);
    return kNoError;
  }
  std::string type;
  GetStringValue(*dataType, "type", type);
  out.type = GetValueType(type.c_str(), isDynamic);
  auto const store = [&](char const* key, auto read) {
    if (JValue const* const properties = Find(*dataType, key)) {
      out.properties.value = read(*properties);
    }
  };
  switch (out.type) {
    case ns_sensor::kNumberValue:
      store("numberStringProperties", GetNumberProperties);
      break;
    case ns_sensor::kStringValue:
      store("paddedStringProperties", GetStringProperties);
      break;
    case ns_sensor::kNumberArrayValue:
      store("numberArrayProperties", GetNumberArrayProperties);
      break;
    default:
      break;
  }
  return kNoError;
}

/// A number of version 2, or the text of one in version 1.
double SK_OutlineReader::NumberOf(JValue const& value) const {
  if (mVersion == kTdjsonVersion2) {
    return value.GetDouble();
  }
  return SK_NumberText::ToDouble(std::string(value.GetString(), value.GetStringLength()));
}

eErrorCode SK_OutlineReader::GetValue(JValue const& node, eDataValueType kind, SK_DataValue& out) const {
  JValue const* const value = Find(node, "value");
  if (value == nullptr) {
    return kPropertyMissing;
  }
  bool const isVersion2 = mVersion == kTdjsonVersion2;
  switch (kind) {
    case ns_sensor::kNumberValue:
      out.value = NumberOf(*value);
      break;
    case ns_sensor::kStringValue: {
      // In version 1 the text comes with its padding: the length beside it is not applied.
      JValue const* const text = isVersion2 ? value : Find(*value, "str");
      if (text == nullptr) {
        return kPropertyMissing;
      }
      out.value = std::string(text->GetString(), text->GetStringLength());
      break;
    }
    case ns_sensor::kNumberArrayValue: {
      std::vector<double> numbers;
      ForEachElement(value, [&](JValue const& element) { numbers.push_back(NumberOf(element)); });
      out.value = std::move(numbers);
      break;
    }
    case ns_sensor::kBooleanValue:
      if (isVersion2) {
        out.value = value->GetBool();
      }
      break;
    default:
      break;
  }
  return kNoError;
}

}  // namespace SK_NAMESPACE_INT
