#pragma once

#include "ISharedObject_I.h"
#include "senmark/ITdjsonStaticDataNumArr_v1.h"

namespace SK_PLUGIN {

class ITdjsonStaticDataNumArr_I : public virtual ITdjsonStaticDataNumArr_v1, public virtual ISharedObject_I {
 public:
  ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return this; }
};

}  // namespace SK_PLUGIN
