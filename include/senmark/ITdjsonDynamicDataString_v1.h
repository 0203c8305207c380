/// A stream of texts.
#pragma once

#include <string>

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonDynamicData_v1.h"
#include "senmark/SK_SampleTime.h"

namespace SK_PLUGIN {

/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonDynamicDataString_v1 : public virtual ITdjsonDynamicData_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  virtual bool AddSample(SampleTime const& time, std::string const& value) = 0;
  /// The two counts are taken from the samples whatever is passed. eventMarker 1: each sample marks an event.
  virtual void setStringProperties(unsigned long long maxLen, unsigned long long maxDigitsInStrLength,
                                   unsigned char eventMarker, void* result) = 0;
  /// As `ITdjsonDynamicDataNum_v1::addSampleSMPTE`. A text is not empty (the commit fails with 2014) and has
  /// at most 65,535 bytes once it is escaped.
  virtual bool addSampleSMPTE(int hours, int minutes, int seconds, int frames, char const* value, void* result) = 0;
  virtual bool addSampleUTC(int year, int month, int day, int hour, int minute, int second, signed char zoneSign,
                            int zoneHours, int zoneMinutes, int fraction, char const* value, void* result) = 0;
};

}  // namespace SK_PLUGIN
