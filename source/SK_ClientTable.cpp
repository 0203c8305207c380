#include "SK_ClientTable.h"

#include <mutex>

namespace SK_NAMESPACE_INT {

ns_sensor::SK_ClientProcs* gClientProcs = nullptr;

namespace {

std::once_flag intialize_flag;  // the name is fixed

}  // namespace

void InitializeClientProcs(void* clientProcs) {
  std::call_once(intialize_flag,
                 [clientProcs] { gClientProcs = static_cast<ns_sensor::SK_ClientProcs*>(clientProcs); });
}

}  // namespace SK_NAMESPACE_INT
