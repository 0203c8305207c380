#pragma once

#include "ISharedObject_I.h"
#include "senmark/ITdjsonGroup_v1.h"

namespace SK_PLUGIN {

class ITdjsonGroup_I : public virtual ITdjsonGroup_v1, public virtual ISharedObject_I {
 public:
  ITdjsonGroup_v1* GetActualITdjsonGroup() override { return this; }
};

}  // namespace SK_PLUGIN
