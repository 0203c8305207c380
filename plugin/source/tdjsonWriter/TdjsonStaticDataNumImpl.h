/// A static node with one number.
#pragma once

#include <string>

#include "ITdjsonStaticDataNum_I.h"
#include "SharedObjectImpl.h"
#include "TdjsonStaticDataImpl.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

class TdjsonStaticDataNumImpl : public virtual ITdjsonStaticDataNum_I,
                                public virtual TdjsonStaticDataImpl,
                                public virtual SharedObjectImpl {
 public:
  TdjsonStaticDataNumImpl(void* key, std::string displayName, std::string matchName, double value);

  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kNumberValue; }
  void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal, unsigned char isSigned,
                        void* result) override;
  void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                      void* result) override;

  virtual ns_sensor::SK_NumberProperties const& GetNumberProperties() const;
  virtual double GetDataValue() const;

  /// The mirrors of the border forms; each throws an `SK_Exception`.
  void SetNumberPattern(ns_sensor::SK_NumberPattern const& pattern);
  void SetNumberRange(ns_sensor::SK_NumberRange const& range);

 private:
  double mDataValue;
  ns_sensor::SK_NumberProperties mNumberProperties;
  [[maybe_unused]] void* mConverterKey;
};

}  // namespace SK_PLUGIN
