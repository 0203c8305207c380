#pragma once

#include "ISharedObject_I.h"
#include "senmark/ITdjsonStaticDataString_v1.h"

namespace SK_PLUGIN {

class ITdjsonStaticDataString_I : public virtual ITdjsonStaticDataString_v1, public virtual ISharedObject_I {
 public:
  ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return this; }
};

}  // namespace SK_PLUGIN
