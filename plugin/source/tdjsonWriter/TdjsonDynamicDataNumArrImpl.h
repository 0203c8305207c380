/// A stream of arrays of numbers.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "ITdjsonDynamicDataNumArr_I.h"
#include "SerializerBuffer.h"
#include "SharedObjectImpl.h"
#include "TdjsonDynamicDataImpl.h"

namespace SK_PLUGIN {

class TdjsonDynamicDataNumArrImpl : public virtual ITdjsonDynamicDataNumArr_I,
                                    public virtual TdjsonDynamicDataImpl,
                                    public virtual SharedObjectImpl {
 public:
  /// `SK_PluginException` 2005 without a root under `key`, 2028 if the root has no time base.
  explicit TdjsonDynamicDataNumArrImpl(void* key);

  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kNumberArrayValue; }
  bool Commit() override;
  bool AddSample(SampleTime const& time, std::vector<double> const& values) override;
  void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal, unsigned char isSigned,
                        void* result) override;
  void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                      void* result) override;
  void setArrCount(unsigned long long count, void* result) override;
  void setIsPoint(unsigned char isPoint, void* result) override;
  void setDisplayName(char const* name, void* result) override;
  bool addTimeSMPTE(int hours, int minutes, int seconds, int frames, void* result) override;
  bool addTimeUTC(int year, int month, int day, int hour, int minute, int second, signed char zoneSign, int zoneHours,
                  int zoneMinutes, int fraction, void* result) override;
  bool addElement(double value, void* result) override;

  virtual ns_sensor::SK_NumberArrayProperties const& GetNumArrayProperties() const;

  /// The mirrors of the border forms; each throws an `SK_Exception`.
  void SetNumberPattern(ns_sensor::SK_NumberPattern const& pattern);
  void SetNumberRange(ns_sensor::SK_NumberRange const& range);
  void SetArrCount(std::uint64_t count);
  void SetIsPoint(bool isPoint);
  void SetDisplayName(std::string const& name);
  bool AddElement(double value);

 private:
  template <typename Time>
  bool TakeElements(Time const& time, void* result);
  char* PutElements(char* out);
  std::string_view ElementTexts();
  template <typename Time>
  bool TakeSample(Time const& time);

  ns_sensor::SK_NumberArrayProperties mNumberArrayProperties;
  bool mPatternAutomatic = false;
  bool mOccurringAutomatic = false;
  bool mLegalAutomatic = false;
  bool mHasLongArrays = false;    ///< from the first one on whose record may say too little of its length
  std::vector<double> mElements;  ///< of the sample that is being made
  SerializerBuffer mValueText;    ///< of the sample that is being taken, kept so that it allocates nothing
};

}  // namespace SK_PLUGIN
