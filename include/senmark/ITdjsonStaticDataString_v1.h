/// A static node with a text.
#pragma once

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonStaticData_v1.h"

namespace SK_PLUGIN {

/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonStaticDataString_v1 : public virtual ITdjsonStaticData_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  /// The two counts are taken from the value whatever is passed. eventMarker: 0 or 1.
  virtual void setStringProperties(unsigned long long maxLen, unsigned long long maxDigitsInStrLength,
                                   unsigned char eventMarker, void* result) = 0;
};

}  // namespace SK_PLUGIN
