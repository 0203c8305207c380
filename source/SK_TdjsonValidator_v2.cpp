#include "SK_TdjsonValidator_v2.h"

#include <string>

#include "SK_Error.h"
#include "SK_PackedDataType.h"

namespace SK_NAMESPACE_INT {

namespace {

// The stray comma and full stop are part of the texts that hosts see.
constexpr char kStaticTypes[] = R"(one of "number", "string" , "boolean" or "numberArray")";
constexpr char kDynamicTypes[] = R"(one of "numberString", "paddedString" or "numberStringArray".)";

/// Null for a data type that is not packed, and without one.
SK_PackedDataType const* FindPackedDataType(JValue const& node) {
  JValue const* const dataType = FindValue(node, "dataType");
  return dataType == nullptr ? nullptr : SK_PackedDataType::Of(*dataType);
}

/// Everything else in the object is read by what this key says, so it has to come first.
void CheckFirstPropertyIsTimeInfo(JValue const& info) {
  std::string const found = info.ObjectEmpty() ? std::string() : info.MemberBegin()->name.GetString();
  if (found != "useTimecodeB") {
    ThrowError({ns_sensor::kWrongPropertyValue, SK_Message::kTopPropertyNotTimeInfo, -1, -1}, Quoted("dynamicDataInfo"),
               Quoted("useTimecodeB"), Quoted(found));
  }
}

}  // namespace

void SK_TdjsonValidator_v2::ValidateDynamicDataInfo(JValue const& value, char const* begin, char const* end) const {
  CheckFirstPropertyIsTimeInfo(value);
  SK_OutlinePath const path("dynamicDataInfo");
  JValue const& useTimecode = value.MemberBegin()->value;
  CheckForBoolType(useTimecode, "useTimecodeB", path);
  if (useTimecode.GetBool()) {
    ValidateTimeCodeInfo(RequireObject(value, "timecodeInfo", path), begin, end);
  } else {
    ValidateUTCInfo(RequireObject(value, "utcInfo", path), begin, end);
  }
  if (JValue const* const syncTimes = FindValue(value, "videoSyncTimeList")) {
    CheckForFilledArray(*syncTimes, "videoSyncTimeList", path);
    ValidateSyncInfo(*syncTimes, begin, end);
  }
}

void SK_TdjsonValidator_v2::ValidateDataStatic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const {
  ValidateDisplayName(node, path);
  ValidateMatchName(node, path, walk);
  ValidateDataType(node, path, true);
  ValidateDataValue(node, path);
}

void SK_TdjsonValidator_v2::ValidateDataDynamic(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const {
  ValidateDisplayName(node, path);
  ValidateMatchName(node, path, walk);
  ValidateDataType(node, path, false);
  ValidateDynamicFields(node, path);
}

void SK_TdjsonValidator_v2::ValidateDataType(JValue const& node, SK_OutlinePath const& path, bool isStatic) const {
  if (FindPackedDataType(node) != nullptr) {
    return;
  }
  JValue const& dataType = RequireObject(node, "dataType", path);
  SK_OutlinePath const dataTypePath(path, "dataType");
  std::string_view const type = TextOf(RequireString(dataType, "type", dataTypePath));
  if (isStatic) {
    CheckForValidStaticDataType(type, dataType, dataTypePath);
  } else {
    CheckForValidDynamicDataType(type, dataType, dataTypePath);
  }
}

void SK_TdjsonValidator_v2::CheckForValidStaticDataType(std::string_view type, JValue const& dataType,
                                                        SK_OutlinePath const& path) const {
  if (type == "number") {
    ValidateNumberStringProperties(dataType, path);
  } else if (type == "string") {
    ValidatePaddedStringProperties(dataType, path);
  } else if (type == "numberArray") {
    ValidateNumberArrayProperties(dataType, path);
  } else if (type != "boolean") {  // which has no properties
    ThrowInvalidValue("type", path, kStaticTypes);
  }
}

void SK_TdjsonValidator_v2::CheckForValidDynamicDataType(std::string_view type, JValue const& dataType,
                                                         SK_OutlinePath const& path) const {
  if (type == "numberString") {
    ValidateNumberStringProperties(dataType, path);
  } else if (type == "paddedString") {
    ValidatePaddedStringProperties(dataType, path);
  } else if (type == "numberStringArray") {
    ValidateNumberArrayProperties(dataType, path);
  } else {
    ThrowInvalidValue("type", path, kDynamicTypes);
  }
}

void SK_TdjsonValidator_v2::ValidateDataValue(JValue const& node, SK_OutlinePath const& path) const {
  JValue const* const found = FindValue(node, "value");
  JValue const& value = found != nullptr ? *found : FindProperty(node, "value", path).value;
  SK_PackedDataType const* const packed = FindPackedDataType(node);
  std::string_view const type = packed != nullptr
                                    ? packed->GetType()
                                    : TextOf(RequireString(RequireObject(node, "dataType", path), "type", path));
  if (type == "number") {
    CheckForNumberType(value, "value", path);
  } else if (type == "string") {
    CheckForStringType(value, "value", path);
  } else if (type == "numberArray") {
    ValidateNumberArray(value, path);
  } else if (type == "boolean") {
    CheckForBoolType(value, "value", path);
  } else {
    ThrowInvalidValue("value", path, kStaticTypes);
  }
}

void SK_TdjsonValidator_v2::ValidateNumberArray(JValue const& value, SK_OutlinePath const& path) const {
  CheckForFilledArray(value, "value", path);
  for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
    CheckForNumberType(value[i], "value", SK_OutlinePath(path, "value", i));
  }
}

}  // namespace SK_NAMESPACE_INT
