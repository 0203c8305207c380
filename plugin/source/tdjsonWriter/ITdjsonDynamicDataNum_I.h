#pragma once

#include "ISharedObject_I.h"
#include "ITdjsonDynamicData_I.h"
#include "senmark/ITdjsonDynamicDataNum_v1.h"

namespace SK_PLUGIN {

class ITdjsonDynamicDataNum_I : public virtual ITdjsonDynamicDataNum_v1,
                                public virtual ITdjsonDynamicData_I,
                                public virtual ISharedObject_I {};

}  // namespace SK_PLUGIN
