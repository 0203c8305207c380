#include "SK_TdjsonValidator_v1.h"

namespace SK_NAMESPACE_INT {

namespace {

constexpr char kDataTypes[] = R"(one of "numberString", "paddedString" or "numberArray")";

}  // namespace

void SK_TdjsonValidator_v1::ValidateDataStatic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const {
  ValidateDisplayName(node, path);
  ValidateMatchName(node, path, walk);
  ValidateDataType(node, path);
  ValidateDataValue(node, path);
}

void SK_TdjsonValidator_v1::ValidateDataDynamic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const {
  ValidateDisplayName(node, path);
  ValidateMatchName(node, path, walk);
  ValidateDataType(node, path);
  ValidateDynamicFields(node, path);
}

void SK_TdjsonValidator_v1::ValidateDataType(JValue const& node, SK_OutlinePath const& path) const {
  JValue const& dataType = RequireObject(node, "dataType", path);
  SK_OutlinePath const dataTypePath(path, "dataType");
  CheckForValidDataTypeProperties(TextOf(RequireString(dataType, "type", dataTypePath)), dataType, dataTypePath);
}

void SK_TdjsonValidator_v1::CheckForValidDataTypeProperties(std::string_view type, JValue const& dataType,
                                                            SK_OutlinePath const& path) const {
  if (type == "numberString") {
    ValidateNumberStringProperties(dataType, path);
  } else if (type == "paddedString") {
    ValidatePaddedStringProperties(dataType, path);
  } else if (type == "numberArray") {
    ValidateNumberArrayProperties(dataType, path);
  } else {
    ThrowInvalidValue("type", path, kDataTypes);
  }
}

void SK_TdjsonValidator_v1::ValidateDataValue(JValue const& node, SK_OutlinePath const& path) const {
  JValue const* const found = FindValue(node, "value");
  JValue const& value = found != nullptr ? *found : FindProperty(node, "value", path).value;
  std::string_view const type = TextOf(RequireString(RequireObject(node, "dataType", path), "type", path));
  if (type == "numberString") {
    CheckForStringType(value, "value", path);
  } else if (type == "paddedString") {
    ValidatePaddedString(value, path);
  } else if (type == "numberArray") {
    ValidateNumberArray(value, path);
  } else {
    ThrowInvalidValue("value", path, kDataTypes);
  }
}

void SK_TdjsonValidator_v1::ValidateNumberArray(JValue const& value, SK_OutlinePath const& path) const {
  CheckForFilledArray(value, "value", path);
  for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
    CheckForStringType(value[i], "value", SK_OutlinePath(path, R"(["value"])", i));
  }
}

void SK_TdjsonValidator_v1::ValidatePaddedString(JValue const& value, SK_OutlinePath const& path) const {
  CheckForObjectType(value, "value", path);
  RequireNumber(value, "length", path);
  RequireString(value, "str", path);
}

}  // namespace SK_NAMESPACE_INT
