/// A static node that is true or false.
#pragma once

#include "senmark/ISharedObject.h"
#include "senmark/ITdjsonStaticData_v1.h"

namespace SK_PLUGIN {

/// Binary interface: it adds nothing to what it inherits.
class ITdjsonStaticDataBool_v1 : public virtual ITdjsonStaticData_v1, public virtual ISharedObject {
 public:
  static unsigned GetInterfaceVersion() { return 1; }
};

}  // namespace SK_PLUGIN
