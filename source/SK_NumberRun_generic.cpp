#include "SK_NumberRun.h"

namespace SK_NAMESPACE_INT {

SK_NumberDecoder FindWideNumberDecoder(SK_NumberRun const&) {
  return nullptr;
}

}  // namespace SK_NAMESPACE_INT
