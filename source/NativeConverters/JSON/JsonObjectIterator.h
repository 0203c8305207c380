/// The members of an object, each with its own name, in the order of the file. A name may come twice.
#pragma once

#include "JsonIterator.h"
#include "SK_RapidJson.h"

namespace ns_sensor {

class JsonObjectIterator : public JsonIterator {
 public:
  /// Stands at the first member of `object`.
  explicit JsonObjectIterator(SK_NAMESPACE_INT::JValue const& object);

  bool HasNext() const override;
  void Increment() override;
  std::string GetPropertyKey() const override;
  std::uint8_t GetPropertyValueType() const override;
  void GetPropertyStringValue(std::string& value) const override;
  void GetPropertyDoubleValue(double& value) const override;
  void GetPropertyBoolValue(bool& value) const override;
  std::shared_ptr<JsonIterator> GetObjectIterator() const override;
  /// The array is called after its member.
  std::shared_ptr<JsonIterator> GetArrayIterator() const override;
  std::uint32_t GetMemberCount() const override;

 private:
  using Member = SK_NAMESPACE_INT::JValue::ConstMemberIterator;

  Member mMemberBegin;
  Member mMemberEnd;
  Member mMemberCurrent;
};

}  // namespace ns_sensor
