/// A static node with a text.
#pragma once

#include <string>

#include "ITdjsonStaticDataString_I.h"
#include "SharedObjectImpl.h"
#include "TdjsonStaticDataImpl.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

class TdjsonStaticDataStringImpl : public virtual ITdjsonStaticDataString_I,
                                   public virtual TdjsonStaticDataImpl,
                                   public virtual SharedObjectImpl {
 public:
  /// The value is escaped here.
  TdjsonStaticDataStringImpl(void* key, std::string displayName, std::string matchName, std::string value);

  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kStringValue; }
  void setStringProperties(unsigned long long maxLen, unsigned long long maxDigitsInStrLength,
                           unsigned char eventMarker, void* result) override;

  virtual ns_sensor::SK_StringProperties const& GetStringProperties() const;
  virtual std::string const& GetDataValue() const;  ///< escaped
  /// The mirror of the border form; throws an `SK_Exception`.
  virtual void SetStringProperties(ns_sensor::SK_StringProperties const& properties);

 private:
  std::string mDataValue;
  ns_sensor::SK_StringProperties mStringProperties;
  [[maybe_unused]] void* mConverterKey;
};

}  // namespace SK_PLUGIN
