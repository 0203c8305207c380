#include "ITdjsonRoot_I.h"

#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

void ITdjsonRoot_I::commit(void* result) {
  RunAtWriterBorder(result, [&] { Commit(); });
}

void ITdjsonRoot_I::setCreator(char const* creator, void* result) {
  RunAtWriterBorder(result, [&] { SetCreator(RequireText(creator)); });
}

}  // namespace SK_PLUGIN
