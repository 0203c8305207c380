/// Limits of processes that no test means to reach.
#pragma once

#include <chrono>

#include "ModuleProcess.h"

namespace senmark_test {

/// So far away that they do not end a process that needs a moment, however much else the machine has to do.
inline senmark_tool::Limits FarLimits() {
  senmark_tool::Limits limits;
  limits.time = std::chrono::minutes(10);
  limits.processorTime = std::chrono::minutes(5);
  return limits;
}

}  // namespace senmark_test
