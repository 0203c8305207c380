#pragma once

#include "ISharedObject_I.h"
#include "ITdjsonDynamicData_I.h"
#include "senmark/ITdjsonDynamicDataNumArr_v1.h"

namespace SK_PLUGIN {

class ITdjsonDynamicDataNumArr_I : public virtual ITdjsonDynamicDataNumArr_v1,
                                   public virtual ITdjsonDynamicData_I,
                                   public virtual ISharedObject_I {};

}  // namespace SK_PLUGIN
