#include "JsonArrayIterator.h"

#include <utility>

#include "JsonObjectIterator.h"
#include "JsonValueAccess.h"
#include "SK_Assert.h"
#include "SK_CountText.h"

namespace ns_sensor {

namespace {

void Expect(bool holds, char const* expression, char const* function, unsigned line) {
  if (!holds) {
    SK_NAMESPACE_INT::SK_AssertFailed(expression, function, "source/NativeConverters/JSON/JsonArrayIterator", line);
  }
}

}  // namespace

JsonArrayIterator::JsonArrayIterator(std::string name, SK_NAMESPACE_INT::JValue const& array)
    : mName(std::move(name)), mMemberBegin(array.Begin()), mMemberEnd(array.End()), mMemberCurrent(mMemberBegin) {}

bool JsonArrayIterator::HasNext() const {
  return mMemberCurrent != mMemberEnd;
}

void JsonArrayIterator::Increment() {
  ++mIndex;
  ++mMemberCurrent;
}

std::string JsonArrayIterator::GetPropertyKey() const {
  SK_CountText const index(mIndex);
  std::string key;
  key.reserve(mName.size() + 1 + index.View().size());
  return key.append(mName).append(1, ' ').append(index.View());
}

std::uint8_t JsonArrayIterator::GetPropertyValueType() const {
  return JsonKindOf(*mMemberCurrent);
}

void JsonArrayIterator::GetPropertyStringValue(std::string& value) const {
  Expect(mMemberCurrent->IsString(), "mMemberCurrent->IsString()", "GetPropertyStringValue", __LINE__);
  value = JsonTextOf(*mMemberCurrent);
}

void JsonArrayIterator::GetPropertyDoubleValue(double& value) const {
  Expect(mMemberCurrent->IsNumber(), "mMemberCurrent->IsNumber()", "GetPropertyDoubleValue", __LINE__);
  Expect(ReadJsonNumber(*mMemberCurrent, value), "false", "GetPropertyDoubleValue", __LINE__);
}

void JsonArrayIterator::GetPropertyBoolValue(bool& value) const {
  Expect(mMemberCurrent->IsBool(), "mMemberCurrent->IsBool()", "GetPropertyBoolValue", __LINE__);
  value = mMemberCurrent->GetBool();
}

std::shared_ptr<JsonIterator> JsonArrayIterator::GetObjectIterator() const {
  Expect(mMemberCurrent->IsObject(), "mMemberCurrent->IsObject()", "GetObjectIterator", __LINE__);
  return std::make_shared<JsonObjectIterator>(*mMemberCurrent);
}

std::shared_ptr<JsonIterator> JsonArrayIterator::GetArrayIterator() const {
  Expect(mMemberCurrent->IsArray(), "mMemberCurrent->IsArray()", "GetArrayIterator", __LINE__);
  return std::make_shared<JsonArrayIterator>(GetPropertyKey(), *mMemberCurrent);
}

std::uint32_t JsonArrayIterator::GetMemberCount() const {
  Expect(mMemberCurrent->IsObject() || mMemberCurrent->IsArray(),
         "mMemberCurrent->IsObject() || mMemberCurrent->IsArray()", "GetMemberCount", __LINE__);
  return JsonCountOf(*mMemberCurrent);
}

}  // namespace ns_sensor
