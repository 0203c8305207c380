#include "JsonObjectIterator.h"

#include "JsonArrayIterator.h"
#include "JsonValueAccess.h"
#include "SK_Assert.h"

namespace ns_sensor {

namespace {

void Expect(bool holds, char const* expression, char const* function, unsigned line) {
  if (!holds) {
    SK_NAMESPACE_INT::SK_AssertFailed(expression, function, "source/NativeConverters/JSON/JsonObjectIterator", line);
  }
}

}  // namespace

JsonObjectIterator::JsonObjectIterator(SK_NAMESPACE_INT::JValue const& object)
    : mMemberBegin(object.MemberBegin()), mMemberEnd(object.MemberEnd()), mMemberCurrent(mMemberBegin) {}

bool JsonObjectIterator::HasNext() const {
  return mMemberCurrent != mMemberEnd;
}

void JsonObjectIterator::Increment() {
  ++mMemberCurrent;
}

std::string JsonObjectIterator::GetPropertyKey() const {
  return JsonTextOf(mMemberCurrent->name);
}

std::uint8_t JsonObjectIterator::GetPropertyValueType() const {
  return JsonKindOf(mMemberCurrent->value);
}

void JsonObjectIterator::GetPropertyStringValue(std::string& value) const {
  Expect(mMemberCurrent->value.IsString(), "mMemberCurrent->value.IsString()", "GetPropertyStringValue", __LINE__);
  value = JsonTextOf(mMemberCurrent->value);
}

void JsonObjectIterator::GetPropertyDoubleValue(double& value) const {
  Expect(mMemberCurrent->value.IsNumber(), "mMemberCurrent->value.IsNumber()", "GetPropertyDoubleValue", __LINE__);
  Expect(ReadJsonNumber(mMemberCurrent->value, value), "false", "GetPropertyDoubleValue", __LINE__);
}

void JsonObjectIterator::GetPropertyBoolValue(bool& value) const {
  Expect(mMemberCurrent->value.IsBool(), "mMemberCurrent->value.IsBool()", "GetPropertyBoolValue", __LINE__);
  value = mMemberCurrent->value.GetBool();
}

std::shared_ptr<JsonIterator> JsonObjectIterator::GetObjectIterator() const {
  Expect(mMemberCurrent->value.IsObject(), "mMemberCurrent->value.IsObject()", "GetObjectIterator", __LINE__);
  return std::make_shared<JsonObjectIterator>(mMemberCurrent->value);
}

std::shared_ptr<JsonIterator> JsonObjectIterator::GetArrayIterator() const {
  Expect(mMemberCurrent->value.IsArray(), "mMemberCurrent->value.IsArray()", "GetArrayIterator", __LINE__);
  return std::make_shared<JsonArrayIterator>(GetPropertyKey(), mMemberCurrent->value);
}

std::uint32_t JsonObjectIterator::GetMemberCount() const {
  Expect(mMemberCurrent->value.IsObject() || mMemberCurrent->value.IsArray(),
         "mMemberCurrent->value.IsObject() || mMemberCurrent->value.IsArray()", "GetMemberCount", __LINE__);
  return JsonCountOf(mMemberCurrent->value);
}

}  // namespace ns_sensor
