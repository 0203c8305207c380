#pragma once

#include "ISharedObject_I.h"
#include "senmark/ITdjsonStaticDataBool_v1.h"

namespace SK_PLUGIN {

class ITdjsonStaticDataBool_I : public virtual ITdjsonStaticDataBool_v1, public virtual ISharedObject_I {
 public:
  ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return this; }
};

}  // namespace SK_PLUGIN
