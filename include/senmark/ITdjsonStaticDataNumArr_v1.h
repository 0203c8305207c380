/// A static node with one to three numbers.
#pragma once

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonStaticData_v1.h"

namespace SK_PLUGIN {

/// To be called in this order: all `addElement`, one `setNumberRange` per element, all `addDisplayName` or
/// none, `setIsPoint`, `setNumberPattern`, and `setArrCount` last. What is taken from the values is taken
/// from those that are there at that moment.
///
/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonStaticDataNumArr_v1 : public virtual ITdjsonStaticData_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  virtual bool addElement(double value, void* result) = 0;
  virtual void addDisplayName(char const* name, void* result) = 0;
  /// As `ITdjsonStaticDataNum_v1::setNumberPattern`, over all elements.
  virtual void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                unsigned char isSigned, void* result) = 0;
  /// As `ITdjsonStaticDataNum_v1::setNumberRange`, for the next element. The ranges of one node are all marks
  /// or none is, separately for occurring (error 2007) and legal (error 2008).
  virtual void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                              void* result) = 0;
  /// Finishes the node: without it no range is taken from the values. A node without display names gets those
  /// of the form name_0, name_1.
  virtual void setArrCount(unsigned long long count, void* result) = 0;
  /// 1: the numbers are the coordinates of one point.
  virtual void setIsPoint(unsigned char isPoint, void* result) = 0;
};

}  // namespace SK_PLUGIN
