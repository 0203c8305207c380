#include "JsonValueAccess.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::JValue;

eJsonValueKind JsonKindOf(JValue const& value) {
  switch (value.GetType()) {
    case rapidjson::kStringType:
      return kJsonString;
    case rapidjson::kNumberType:
      return kJsonNumber;
    case rapidjson::kFalseType:
    case rapidjson::kTrueType:
      return kJsonBoolean;
    case rapidjson::kArrayType:
      return kJsonArray;
    case rapidjson::kObjectType:
      return kJsonObject;
    default:
      return kJsonNothing;
  }
}

std::string JsonTextOf(JValue const& text) {
  return std::string(text.GetString(), text.GetStringLength());
}

bool ReadJsonNumber(JValue const& value, double& number) {
  if (value.IsInt()) {
    number = value.GetInt();
  } else if (value.IsInt64()) {
    number = static_cast<double>(value.GetInt64());
  } else if (value.IsUint()) {
    number = value.GetUint();
  } else if (value.IsUint64()) {
    number = static_cast<double>(value.GetUint64());
  } else if (value.IsDouble()) {
    number = value.GetDouble();
  } else {
    return false;
  }
  return true;
}

std::uint32_t JsonCountOf(JValue const& container) {
  return container.IsObject() ? container.MemberCount() : container.Size();
}

}  // namespace ns_sensor
