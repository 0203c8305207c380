/// One way to walk the items of an object and of an array.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace ns_sensor {

/// What an item's value is; it decides what becomes of the item.
enum eJsonValueKind : std::uint8_t {
  kJsonNothing = 0,  ///< null: the item is left out
  kJsonString = 1,
  kJsonNumber = 2,
  kJsonBoolean = 3,
  kJsonArray = 4,
  kJsonObject = 5,
};

/// Stands at one item, or behind the last. The document must outlive it.
///
/// An accessor asked for a value of another kind than the current one stops the process.
class JsonIterator {
 public:
  JsonIterator() = default;
  virtual ~JsonIterator() = default;
  JsonIterator(JsonIterator const&) = delete;
  JsonIterator& operator=(JsonIterator const&) = delete;

  virtual bool HasNext() const = 0;
  virtual void Increment() = 0;
  /// The name of the item for people.
  virtual std::string GetPropertyKey() const = 0;
  /// One of `eJsonValueKind`.
  virtual std::uint8_t GetPropertyValueType() const = 0;
  /// With every byte of the text, a NUL among them too.
  virtual void GetPropertyStringValue(std::string& value) const = 0;
  virtual void GetPropertyDoubleValue(double& value) const = 0;
  virtual void GetPropertyBoolValue(bool& value) const = 0;
  /// Over the items of the current object or array.
  virtual std::shared_ptr<JsonIterator> GetObjectIterator() const = 0;
  virtual std::shared_ptr<JsonIterator> GetArrayIterator() const = 0;
  /// How many items the current object or array has, those that are left out too.
  virtual std::uint32_t GetMemberCount() const = 0;
};

}  // namespace ns_sensor
