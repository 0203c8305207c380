/// A stream of texts.
#pragma once

#include <string>

#include "ITdjsonDynamicDataString_I.h"
#include "SharedObjectImpl.h"
#include "TdjsonDynamicDataImpl.h"

namespace SK_PLUGIN {

class TdjsonDynamicDataStringImpl : public virtual ITdjsonDynamicDataString_I,
                                    public virtual TdjsonDynamicDataImpl,
                                    public virtual SharedObjectImpl {
 public:
  /// `SK_PluginException` 2005 without a root under `key`, 2028 if the root has no time base.
  explicit TdjsonDynamicDataStringImpl(void* key);

  ns_sensor::eDataValueType GetType() const override { return ns_sensor::kStringValue; }
  bool Commit() override;
  bool AddSample(SampleTime const& time, std::string const& value) override;
  void setStringProperties(unsigned long long maxLen, unsigned long long maxDigitsInStrLength,
                           unsigned char eventMarker, void* result) override;
  bool addSampleSMPTE(int hours, int minutes, int seconds, int frames, char const* value, void* result) override;
  bool addSampleUTC(int year, int month, int day, int hour, int minute, int second, signed char zoneSign, int zoneHours,
                    int zoneMinutes, int fraction, char const* value, void* result) override;

  virtual ns_sensor::SK_StringProperties const& GetPaddedStringProperties() const;

  /// The mirror of the border form; throws an `SK_Exception`.
  void SetStringProperties(ns_sensor::SK_StringProperties const& properties);

 private:
  template <typename Time>
  bool TakeSample(Time const& time, char const* value);

  ns_sensor::SK_StringProperties mStringProperties;
  std::string mEscapedValue;  ///< of the last text with something to escape; kept for its memory
};

}  // namespace SK_PLUGIN
