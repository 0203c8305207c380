/// A stream of numbers.
#pragma once

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonDynamicData_v1.h"
#include "senmark/SK_SampleTime.h"

namespace SK_PLUGIN {

/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonDynamicDataNum_v1 : public virtual ITdjsonDynamicData_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  virtual bool AddSample(SampleTime const& time, double const& value) = 0;
  /// How many digits stand before and behind the point in every sample, and whether there is a place for the
  /// sign, which a negative sample makes in any case. All ones in both counts: as many as the samples need, also
  /// if other counts follow. Error 2006 for all ones in just one of them. Needed before the commit.
  ///
  /// The file gets a number with 16 significant digits at most, and with an exponent if it is closer to 0 than
  /// 0.0001 or not below 1e16. Readers of the file need not take an exponent.
  virtual void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                unsigned char isSigned, void* result) = 0;
  /// The numbers that would be allowed and those that occur. The largest double as minimum together with its
  /// negative as maximum: taken from the samples, the legal pair from the occurring one, also if other bounds
  /// follow. Errors 2007 and 2008 for such a mark on just one side of the occurring and of the legal pair. Needed
  /// before the commit.
  virtual void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                              void* result) = 0;
  /// False, without an error, for a sample that is not taken: the file has times of the other kind, or the
  /// time's text has not the width that the file's time base asks for. Error 2001 after a failed sample.
  virtual bool addSampleSMPTE(int hours, int minutes, int seconds, int frames, double value, void* result) = 0;
  /// zoneSign: 'Z', or '+' or '-' with hours and minutes; fraction in units of the file's precision.
  virtual bool addSampleUTC(int year, int month, int day, int hour, int minute, int second, signed char zoneSign,
                            int zoneHours, int zoneMinutes, int fraction, double value, void* result) = 0;
};

}  // namespace SK_PLUGIN
