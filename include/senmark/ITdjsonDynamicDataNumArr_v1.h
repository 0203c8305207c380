/// A stream of arrays of one to three numbers.
#pragma once

#include <vector>

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonDynamicData_v1.h"
#include "senmark/SK_SampleTime.h"

namespace SK_PLUGIN {

/// A sample is as many `addElement` as `setArrCount` said, then one `addTime...`.
///
/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonDynamicDataNumArr_v1 : public virtual ITdjsonDynamicData_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  virtual bool AddSample(SampleTime const& time, std::vector<double> const& values) = 0;
  /// As `ITdjsonDynamicDataNum_v1::setNumberPattern`, over all elements.
  virtual void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                unsigned char isSigned, void* result) = 0;
  /// As `ITdjsonDynamicDataNum_v1::setNumberRange`, called once for each element in turn. The ranges of one
  /// node are all marks or none is, separately for occurring (error 2007) and legal (error 2008).
  virtual void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                              void* result) = 0;
  virtual void setArrCount(unsigned long long count, void* result) = 0;
  /// 1: the numbers are the coordinates of one point.
  virtual void setIsPoint(unsigned char isPoint, void* result) = 0;
  /// Called once for each element in turn, or never: then the names have the form name_0, name_1.
  virtual void setDisplayName(char const* name, void* result) = 0;
  /// As `ITdjsonDynamicDataNum_v1::addSampleSMPTE`; also false for a wrong count of elements. The elements
  /// are used up in every case.
  virtual bool addTimeSMPTE(int hours, int minutes, int seconds, int frames, void* result) = 0;
  virtual bool addTimeUTC(int year, int month, int day, int hour, int minute, int second, signed char zoneSign,
                          int zoneHours, int zoneMinutes, int fraction, void* result) = 0;
  virtual bool addElement(double value, void* result) = 0;
};

}  // namespace SK_PLUGIN
