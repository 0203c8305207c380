/// A static node with one number.
#pragma once

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonStaticData_v1.h"

namespace SK_PLUGIN {

/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonStaticDataNum_v1 : public virtual ITdjsonStaticData_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  /// How many digits stand before and behind the point, and whether the number has a place for its sign. All
  /// ones in both counts: taken from the value. Error 2006 for all ones in just one of them. Needed, like the
  /// range, before the root is committed. Which numbers do well: `ITdjsonDynamicDataNum_v1::setNumberPattern`.
  virtual void setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                unsigned char isSigned, void* result) = 0;
  /// The numbers that would be allowed and those that occur. The largest double as minimum together with its
  /// negative as maximum: taken from the value, the legal pair from the occurring one. Errors 2007 and 2008
  /// for such a mark on just one side of the occurring and of the legal pair.
  virtual void setNumberRange(double legalMin, double legalMax, double occurringMin, double occurringMax,
                              void* result) = 0;
};

}  // namespace SK_PLUGIN
