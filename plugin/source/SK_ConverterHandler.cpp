#include "SK_ConverterHandler.h"

#include "SK_Module.h"

namespace SK_PLUGIN {

bool SK_ConverterHandler::load() const {
  return mModule->load();
}

}  // namespace SK_PLUGIN
