#pragma once

#include "ITdjsonGroup_I.h"
#include "senmark/ITdjsonRoot_v1.h"

namespace SK_PLUGIN {

class ITdjsonRoot_I : public virtual ITdjsonRoot_v1, public virtual ITdjsonGroup_I, public virtual ISharedObject_I {
 public:
  ITdjsonRoot_v1* GetActualITdjsonRoot() override { return this; }
  void commit(void* result) override;
  void setCreator(char const* creator, void* result) override;
};

}  // namespace SK_PLUGIN
