#pragma once

#include "senmark/ITdjsonDynamicData_v1.h"

namespace SK_PLUGIN {

class ITdjsonDynamicData_I : public virtual ITdjsonDynamicData_v1 {
 public:
  ITdjsonDynamicData_v1* GetActualITdjsonDynamicData() override { return this; }
  void commit(void* result) override;
};

}  // namespace SK_PLUGIN
