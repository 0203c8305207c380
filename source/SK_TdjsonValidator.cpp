#include "SK_TdjsonValidator.h"

#include <string>
#include <utility>

#include "SK_Error.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {

namespace {

constexpr char kObjectTypes[] = R"(one of "dataStatic", "dataDynamic" or "dataGroup")";
constexpr char kInterpolations[] = R"(one of "linear" or "hold")";

[[noreturn]] void ThrowMissingProperty(char const* key, SK_OutlinePath const& path) {
  if (path.IsNone()) {
    ThrowError({ns_sensor::kPropertyMissing, SK_Message::kMissingRequiredProperty, -1, -1}, Quoted(key));
  }
  ThrowError({ns_sensor::kPropertyMissing, SK_Message::kMissingRequiredPropertyAtPath, -1, -1}, Quoted(key),
             Quoted(path.Text()));
}

/// expectedType  as messages show it.
void CheckType(bool isExpected, char const* name, char const* expectedType, SK_OutlinePath const& path) {
  if (isExpected) {
    return;
  }
  if (path.IsNone()) {
    ThrowError({ns_sensor::kWrongPropertyType, SK_Message::kInvalidPropertyType, -1, -1}, Quoted(name),
               std::string(expectedType));
  }
  ThrowError({ns_sensor::kWrongPropertyType, SK_Message::kInvalidPropertyTypeAtPath, -1, -1}, Quoted(name),
             std::string(expectedType), Quoted(path.Text()));
}

/// What a writer may not leave empty, a file may.
bool IsMatchNameOfFormat(std::string_view name, std::ctype<char> const& characters) {
  return name.empty() || SK_Utils::IsValidMatchName(name, characters);
}

[[noreturn]] void ThrowSyncInfo(char const* literal, SK_OutlinePath const& path) {
  ThrowError({ns_sensor::kWrongPropertyValue, literal, -1, -1}, Quoted("videoSyncTimeList"), Quoted("timeString"),
             Quoted("frameNumber"), Quoted(path.Text()));
}

}  // namespace

void SK_TdjsonValidator::ValidateUTCInfo(JValue const& value, char const* /*begin*/, char const* /*end*/) const {
  SK_OutlinePath const path("utcInfo");
  RequireNumber(value, "precisionLength", path);
  RequireBool(value, "isGMT", path);
}

void SK_TdjsonValidator::ValidateTimeCodeInfo(JValue const& value, char const* /*begin*/, char const* /*end*/) const {
  SK_OutlinePath const path("timecodeInfo");
  JValue const& frameRate = RequireObject(value, "frameRate", path);
  SK_OutlinePath const ratePath("timecodeInfo::frameRate");
  RequireNumber(frameRate, "value", ratePath);
  RequireNumber(frameRate, "scale", ratePath);
  RequireBool(value, "dropFrame", path);
}

std::vector<JValue const*> SK_TdjsonValidator::ValidateOutline(JValue const& value, char const* /*begin*/,
                                                               char const* /*end*/) const {
  CheckForEmptyArray(value, "dataOutline", SK_OutlinePath());
  try {
    for (SK_MatchNames::eAccuracy const accuracy : {SK_MatchNames::kOrder, SK_MatchNames::kNumbers}) {
      SK_OutlineWalk walk(accuracy);
      ValidateNodes(value, walk);
      if (!walk.matchNames.MayRepeat()) {
        return std::move(walk.dynamicNodes);
      }
    }
  } catch (ns_sensor::SK_Exception const&) {
    // A name may have come twice in front of this error, which is then not the first one.
  }
  SK_OutlineWalk walk(SK_MatchNames::kNames);
  ValidateNodes(value, walk);
  return std::move(walk.dynamicNodes);
}

void SK_TdjsonValidator::ValidateSyncInfo(JValue const& value, char const* /*begin*/, char const* /*end*/) const {
  for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
    JValue const& entry = value[i];
    SK_OutlinePath const path("videoSyncTimeList", i);
    CheckForObjectType(entry, "videoSyncTimeList", path);
    RequireString(entry, "fileName", path);
    JValue const* const timeString = FindValue(entry, "timeString");
    if (timeString != nullptr) {
      CheckForStringType(*timeString, "timeString", path);
    }
    JValue const* const frameNumber = FindValue(entry, "frameNumber");
    if (frameNumber != nullptr) {
      if (timeString != nullptr) {
        ThrowSyncInfo(SK_Message::kBothTSAndFNPPresent, path);
      }
      CheckForNumberType(*frameNumber, "frameNumber", path);
    } else if (timeString == nullptr) {
      ThrowSyncInfo(SK_Message::kBothTSAndFNMissing, path);
    }
  }
}

JValue::Member const& SK_TdjsonValidator::FindProperty(JValue const& object, char const* key,
                                                       SK_OutlinePath const& path) const {
  JValue::ConstMemberIterator const member = object.FindMember(key);
  if (member == object.MemberEnd()) {
    ThrowMissingProperty(key, path);
  }
  return *member;
}

JValue::Member const& SK_TdjsonValidator::FindPropertyEither(JValue const& object, char const* key,
                                                             char const* otherKey, SK_OutlinePath const& path) const {
  JValue::ConstMemberIterator member = object.FindMember(key);
  if (member == object.MemberEnd()) {
    member = object.FindMember(otherKey);
  }
  if (member == object.MemberEnd()) {
    ThrowMissingProperty(key, path);
  }
  return *member;
}

void SK_TdjsonValidator::CheckForObjectType(JValue const& value, char const* name, SK_OutlinePath const& path) const {
  CheckType(value.IsObject(), name, "JSON Object", path);
}

void SK_TdjsonValidator::CheckForArrayType(JValue const& value, char const* name, SK_OutlinePath const& path) const {
  CheckType(value.IsArray(), name, "JSON Array", path);
}

void SK_TdjsonValidator::CheckForStringType(JValue const& value, char const* name, SK_OutlinePath const& path) const {
  CheckType(value.IsString(), name, "JSON String", path);
}

void SK_TdjsonValidator::CheckForNumberType(JValue const& value, char const* name, SK_OutlinePath const& path) const {
  CheckType(value.IsNumber(), name, "JSON Number", path);
}

void SK_TdjsonValidator::CheckForBoolType(JValue const& value, char const* name, SK_OutlinePath const& path) const {
  CheckType(value.IsBool(), name, "JSON Boolean", path);
}

// The scanner knows no empty arrays, so this guards only values that come from elsewhere.
void SK_TdjsonValidator::CheckForEmptyArray(JValue const& array, char const* name, SK_OutlinePath const& path) const {
  if (!array.Empty()) {
    return;
  }
  if (path.IsNone()) {
    ThrowError({ns_sensor::kEmptyArray, SK_Message::kEmptyArray, -1, -1}, Quoted(name));
  }
  ThrowError({ns_sensor::kEmptyArray, SK_Message::kEmptyArrayAtPath, -1, -1}, Quoted(name), Quoted(path.Text()));
}

void SK_TdjsonValidator::ValidateDataGroup(JValue const& node, SK_OutlinePath& path, SK_OutlineWalk& walk) const {
  ValidateDisplayName(node, path);
  ValidateMatchName(node, path, walk);
  JValue const& children = RequireFilledArray(node, "children", path);
  for (rapidjson::SizeType i = 0; i < children.Size() && !walk.matchNames.IsOutOfOrder(); ++i) {
    SK_OutlinePath childPath(path, "children", i);
    ValidateNode(children[i], "children", childPath, walk);
  }
}

void SK_TdjsonValidator::ValidateDisplayName(JValue const& node, SK_OutlinePath& path) const {
  path.SetDisplayName(RequireString(node, "displayName", path));
}

void SK_TdjsonValidator::ValidateMatchName(JValue const& node, SK_OutlinePath const& path, SK_OutlineWalk& walk) const {
  std::string_view const name = TextOf(RequireString(node, "matchName", path));
  if (!IsMatchNameOfFormat(name, walk.characters)) {
    ThrowError({ns_sensor::kInvalidMatchName, SK_Message::kInvalidMatchName, -1, -1}, Quoted("matchName"),
               Quoted(path.Text()));
  }
  if (!walk.matchNames.Insert(name)) {
    ThrowError({ns_sensor::kDuplicateMatchName, SK_Message::kDuplicateMatchName, -1, -1}, Quoted(std::string(name)),
               Quoted(path.Text()));
  }
}

// "range" adds nothing to the path: what lies in it is shown straight below the properties.
void SK_TdjsonValidator::ValidateNumberStringProperties(JValue const& dataType, SK_OutlinePath const& path) const {
  JValue const& properties = RequireObject(dataType, "numberStringProperties", path);
  SK_OutlinePath const propertiesPath(path, "numberStringProperties");
  ValidatePattern(properties, propertiesPath);
  ValidateNumberRange(RequireObject(properties, "range", propertiesPath), propertiesPath);
}

void SK_TdjsonValidator::ValidatePaddedStringProperties(JValue const& dataType, SK_OutlinePath const& path) const {
  JValue const& properties = RequireObject(dataType, "paddedStringProperties", path);
  SK_OutlinePath const propertiesPath(path, "paddedStringProperties");
  RequireNumber(properties, "maxLen", propertiesPath);
  RequireNumber(properties, "maxDigitsInStrLength", propertiesPath);
  RequireBool(properties, "eventMarkerB", propertiesPath);
}

void SK_TdjsonValidator::ValidateNumberArrayProperties(JValue const& dataType, SK_OutlinePath const& path) const {
  JValue const& properties = RequireObject(dataType, "numberArrayProperties", path);
  SK_OutlinePath const propertiesPath(path, "numberArrayProperties");
  ValidatePattern(properties, propertiesPath);
  ValidateArraySize(properties, propertiesPath);
  ValidateArrayDisplayName(properties, propertiesPath);
  ValidateArrayRanges(properties, propertiesPath);
  if (JValue const* const isPoint = FindValue(properties, "isPoint")) {
    CheckForBoolType(*isPoint, "isPoint", propertiesPath);
  }
}

void SK_TdjsonValidator::ValidatePattern(JValue const& properties, SK_OutlinePath const& path) const {
  JValue const& pattern = RequireObject(properties, "pattern", path);
  SK_OutlinePath const patternPath(path, "pattern");
  RequireBool(pattern, "isSigned", patternPath);
  RequireNumber(pattern, "digitsInteger", patternPath);
  RequireNumber(pattern, "digitsDecimal", patternPath);
}

void SK_TdjsonValidator::ValidateArraySize(JValue const& properties, SK_OutlinePath const& path) const {
  RequireNumber(properties, "arraySize", path);
}

void SK_TdjsonValidator::ValidateArrayDisplayName(JValue const& properties, SK_OutlinePath const& path) const {
  JValue const& names = RequireFilledArray(properties, "arrayDisplayNames", path);
  for (rapidjson::SizeType i = 0; i < names.Size(); ++i) {
    CheckForStringType(names[i], "arrayDisplayNames", SK_OutlinePath(path, R"(["arrayDisplayNames"])", i));
  }
}

void SK_TdjsonValidator::ValidateArrayRanges(JValue const& properties, SK_OutlinePath const& path) const {
  JValue const& arrayRanges = RequireObject(properties, "arrayRanges", path);
  SK_OutlinePath const arrayRangesPath(path, "arrayRanges");
  JValue const& ranges = RequireFilledArray(arrayRanges, "ranges", arrayRangesPath);
  for (rapidjson::SizeType i = 0; i < ranges.Size(); ++i) {
    SK_OutlinePath const rangePath(arrayRangesPath, "ranges", i);
    CheckForObjectType(ranges[i], "ranges", rangePath);
    ValidateNumberRange(ranges[i], rangePath);
  }
}

void SK_TdjsonValidator::ValidateNumberRange(JValue const& range, SK_OutlinePath const& path) const {
  JValue const* const found = FindValue(range, "occurring");
  if (found != nullptr && found->IsObject()) {
    ValidateMinMax(*found, SK_OutlinePath(path, "occurring"));
  } else {
    JValue::Member const& occurring = FindPropertyEither(range, "occurring", "occuring", path);
    char const* const spelling = occurring.name.GetString();
    CheckForObjectType(occurring.value, spelling, path);
    ValidateMinMax(occurring.value, SK_OutlinePath(path, spelling));
  }
  ValidateMinMax(RequireObject(range, "legal", path), SK_OutlinePath(path, "legal"));
}

// "numberMinMax" is a label for messages; the format has no such key.
void SK_TdjsonValidator::ValidateMinMax(JValue const& minMax, SK_OutlinePath const& path) const {
  CheckForObjectType(minMax, "numberMinMax", path);
  RequireNumber(minMax, "min", path);
  RequireNumber(minMax, "max", path);
}

void SK_TdjsonValidator::ValidateSampleId(JValue const& node, SK_OutlinePath const& path) const {
  RequireString(node, "sampleSetID", path);
}

void SK_TdjsonValidator::ValidateInterpolation(JValue const& node, SK_OutlinePath const& path) const {
  std::string_view const interpolation = TextOf(RequireString(node, "interpolation", path));
  if (interpolation != "linear" && interpolation != "hold") {
    ThrowInvalidValue("interpolation", path, kInterpolations);
  }
}

void SK_TdjsonValidator::ValidateExpectedFrequency(JValue const& node, SK_OutlinePath const& path) const {
  JValue::Member const& flag = FindPropertyEither(node, "hasExpectedFrequencyB", "hasExpectedFrequecyB", path);
  CheckForBoolType(flag.value, flag.name.GetString(), path);
}

void SK_TdjsonValidator::ValidateSampleCount(JValue const& node, SK_OutlinePath const& path) const {
  RequireNumber(node, "sampleCount", path);
}

JValue const& SK_TdjsonValidator::RefuseObject(JValue const& object, char const* key,
                                               SK_OutlinePath const& path) const {
  JValue const& value = FindProperty(object, key, path).value;
  CheckForObjectType(value, key, path);
  return value;
}

JValue const& SK_TdjsonValidator::RequireFilledArray(JValue const& object, char const* key,
                                                     SK_OutlinePath const& path) const {
  JValue const& value = FindProperty(object, key, path).value;
  CheckForFilledArray(value, key, path);
  return value;
}

JValue const& SK_TdjsonValidator::RefuseString(JValue const& object, char const* key,
                                               SK_OutlinePath const& path) const {
  JValue const& value = FindProperty(object, key, path).value;
  CheckForStringType(value, key, path);
  return value;
}

void SK_TdjsonValidator::CheckForFilledArray(JValue const& value, char const* name, SK_OutlinePath const& path) const {
  CheckForArrayType(value, name, path);
  CheckForEmptyArray(value, name, path);
}

void SK_TdjsonValidator::ValidateDynamicFields(JValue const& node, SK_OutlinePath const& path) const {
  ValidateSampleId(node, path);
  ValidateInterpolation(node, path);
  ValidateExpectedFrequency(node, path);
  ValidateSampleCount(node, path);
  if (JValue const* const duration = FindValue(node, "expectedMaxInterSampleDuration")) {
    CheckForStringType(*duration, "expectedMaxInterSampleDuration", path);
  }
}

std::string_view SK_TdjsonValidator::TextOf(JValue const& string) {
  return std::string_view(string.GetString(), string.GetStringLength());
}

void SK_TdjsonValidator::ThrowInvalidValue(char const* name, SK_OutlinePath const& path, char const* expected) {
  ThrowError({ns_sensor::kWrongPropertyValue, SK_Message::kInvalidPropertyValueAtPath, -1, -1}, Quoted(name),
             Quoted(path.Text()), std::string(expected));
}

void SK_TdjsonValidator::ValidateNodes(JValue const& outline, SK_OutlineWalk& walk) const {
  for (rapidjson::SizeType i = 0; i < outline.Size() && !walk.matchNames.IsOutOfOrder(); ++i) {
    SK_OutlinePath path("dataOutline", i);
    ValidateNode(outline[i], "dataOutline", path, walk);
  }
}

void SK_TdjsonValidator::ValidateNode(JValue const& node, char const* arrayName, SK_OutlinePath& path,
                                      SK_OutlineWalk& walk) const {
  CheckForObjectType(node, arrayName, path);
  JValue const& objectType = RequireString(node, "objectType", path);
  if (IsText(objectType, "dataStatic")) {
    ValidateDataStatic(node, path, walk);
  } else if (IsText(objectType, "dataDynamic")) {
    walk.dynamicNodes.push_back(&node);
    ValidateDataDynamic(node, path, walk);
  } else if (IsText(objectType, "dataGroup")) {
    ValidateDataGroup(node, path, walk);
  } else {
    ThrowInvalidValue("objectType", path, kObjectTypes);
  }
}

}  // namespace SK_NAMESPACE_INT
