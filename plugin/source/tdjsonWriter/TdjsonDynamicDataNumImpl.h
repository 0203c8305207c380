/// A stream of numbers.
#pragma once

#include "ITdjsonDynamicDataNum_I.h"
#include "SharedObjectImpl.h"
#include "TdjsonDynamicDataImpl.h"

namespace SK_PLUGIN {

class TdjsonDynamicDataNumImpl : public virtual ITdjsonDynamicDataNum_I,
                                 public virtual TdjsonDynamicDataImpl,
                                 public virtual SharedObjectImpl {
 public:
  /// `SK_PluginException` 2005 without a root under `key`, 2028 if the root has no time base.
  explicit TdjsonDynamicDataNumImpl(void* key);

  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kNumberValue; }
  bool Commit() override;
  bool AddSample(SampleTime const& time, double const& value) override;
  void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal, unsigned char isSigned,
                        void* result) override;
  void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                      void* result) override;
  bool addSampleSMPTE(int hours, int minutes, int seconds, int frames, double value, void* result) override;
  bool addSampleUTC(int year, int month, int day, int hour, int minute, int second, signed char zoneSign, int zoneHours,
                    int zoneMinutes, int fraction, double value, void* result) override;

  virtual ns_sensor::SK_NumberProperties const& GetNumStringProperties() const;
  virtual bool AddSampleUTC(int year, int month, int day, int hour, int minute, int second, signed char zoneSign,
                            int zoneHours, int zoneMinutes, int fraction, double value);

  /// The mirrors of the border forms; each throws an `SK_Exception`.
  void SetNumberPattern(ns_sensor::SK_NumberPattern const& pattern);
  void SetNumberRange(ns_sensor::SK_NumberRange const& range);

 private:
  template <typename Time>
  bool TakeSample(Time const& time, double value);

  ns_sensor::SK_NumberProperties mNumberProperties;
  bool mPatternAutomatic = false;
  bool mOccurringAutomatic = false;
  bool mLegalAutomatic = false;
};

}  // namespace SK_PLUGIN
