/// The elements of an array, named after it.
#pragma once

#include "JsonIterator.h"
#include "SK_RapidJson.h"

namespace ns_sensor {

class JsonArrayIterator : public JsonIterator {
 public:
  /// Stands at the first element of `array`. name: what the array is called.
  JsonArrayIterator(std::string name, SK_NAMESPACE_INT::JValue const& array);

  bool HasNext() const override;
  void Increment() override;
  /// The array's name, a blank and the index from 0.
  std::string GetPropertyKey() const override;
  std::uint8_t GetPropertyValueType() const override;
  void GetPropertyStringValue(std::string& value) const override;
  void GetPropertyDoubleValue(double& value) const override;
  void GetPropertyBoolValue(bool& value) const override;
  /// An object in an array loses the array's name.
  std::shared_ptr<JsonIterator> GetObjectIterator() const override;
  /// An array in an array is called after its place, so that names grow by an index with each level.
  std::shared_ptr<JsonIterator> GetArrayIterator() const override;
  std::uint32_t GetMemberCount() const override;

 private:
  std::string mName;
  SK_NAMESPACE_INT::JValue const* mMemberBegin;
  SK_NAMESPACE_INT::JValue const* mMemberEnd;
  SK_NAMESPACE_INT::JValue const* mMemberCurrent;
  std::uint32_t mIndex = 0;
};

}  // namespace ns_sensor
