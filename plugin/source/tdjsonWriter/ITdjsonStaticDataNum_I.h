#pragma once

#include "ISharedObject_I.h"
#include "senmark/ITdjsonStaticDataNum_v1.h"

namespace SK_PLUGIN {

class ITdjsonStaticDataNum_I : public virtual ITdjsonStaticDataNum_v1, public virtual ISharedObject_I {
 public:
  ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return this; }
};

}  // namespace SK_PLUGIN
