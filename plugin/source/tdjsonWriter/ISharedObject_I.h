#pragma once

#include "senmark/ISharedObject.h"

namespace SK_PLUGIN {

class ISharedObject_I : public virtual ISharedObject {
 public:
  ISharedObject* GetISharedObject_I() override { return this; }
};

}  // namespace SK_PLUGIN
