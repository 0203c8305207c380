#include "SK_TdjsonParserFactory.h"

#include "SK_TdjsonParser_v1.h"
#include "SK_TdjsonParser_v2.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {

std::shared_ptr<SK_TdjsonParser> SK_TdjsonParserFactory::GetParser(char const* path) {
  if (SK_Utils::IsTDJSONVersion2(path)) {
    return std::make_shared<SK_TdjsonParser_v2>();
  }
  return std::make_shared<SK_TdjsonParser_v1>();
}

}  // namespace SK_NAMESPACE_INT
