#include "ITdjsonDynamicData_I.h"

#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

void ITdjsonDynamicData_I::commit(void* result) {
  RunAtWriterBorder(result, [this] { Commit(); });
}

}  // namespace SK_PLUGIN
