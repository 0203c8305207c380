#pragma once

#include "ISharedObject_I.h"
#include "ITdjsonDynamicData_I.h"
#include "senmark/ITdjsonDynamicDataString_v1.h"

namespace SK_PLUGIN {

class ITdjsonDynamicDataString_I : public virtual ITdjsonDynamicDataString_v1,
                                   public virtual ITdjsonDynamicData_I,
                                   public virtual ISharedObject_I {};

}  // namespace SK_PLUGIN
