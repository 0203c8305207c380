/// A static node with an array of numbers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "ITdjsonStaticDataNumArr_I.h"
#include "SharedObjectImpl.h"
#include "TdjsonStaticDataImpl.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

class TdjsonStaticDataNumArrImpl : public virtual ITdjsonStaticDataNumArr_I,
                                   public virtual TdjsonStaticDataImpl,
                                   public virtual SharedObjectImpl {
 public:
  TdjsonStaticDataNumArrImpl(void* key, std::string displayName, std::string matchName);

  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kNumberArrayValue; }
  bool addElement(double value, void* result) override;
  void addDisplayName(char const* name, void* result) override;
  void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal, unsigned char isSigned,
                        void* result) override;
  void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                      void* result) override;
  void setArrCount(unsigned long long count, void* result) override;
  void setIsPoint(unsigned char isPoint, void* result) override;

  virtual ns_sensor::SK_NumberArrayProperties const& GetNumArrayProperties() const;
  virtual std::vector<double> const& GetDataValue() const;

  /// The mirrors of the border forms; each throws an `SK_Exception`.
  void AddElement(double value);
  void AddDisplayName(std::string const& name);
  void SetNumberPattern(ns_sensor::SK_NumberPattern const& pattern);
  void SetNumberRange(ns_sensor::SK_NumberRange const& range);
  void SetArrCount(std::uint64_t count);
  void SetIsPoint(bool isPoint);

 private:
  void SetPattern();
  void SetRangeOccuring();  // the name is fixed
  void SetDisplayNames();

  ns_sensor::SK_NumberArrayProperties mNumberArrayProperties;
  bool mPatternAutomatic = false;
  bool mOccurringAutomatic = false;
  bool mLegalAutomatic = false;
  std::vector<double> mElements;
  [[maybe_unused]] void* mConverterKey;
};

}  // namespace SK_PLUGIN
