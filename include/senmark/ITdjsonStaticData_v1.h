/// What every static node is: one named value that does not change over time.
#pragma once

#include "senmark/SK_BasicRecords.h"

namespace SK_PLUGIN {

/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonStaticData_v1 {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  virtual ns_sensor::eDataValueType GetType() const = 0;
  /// The object itself, as the interface that it was made for.
  virtual ITdjsonStaticData_v1* GetActualITdjsonStaticData() = 0;
  virtual ~ITdjsonStaticData_v1() = default;
};

}  // namespace SK_PLUGIN
