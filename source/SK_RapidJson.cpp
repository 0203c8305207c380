#include "SK_RapidJson.h"

#include <string>

#include "SK_Error.h"

namespace SK_NAMESPACE_INT {

void ThrowRapidJsonAssertion() {
  ThrowError({ns_sensor::kJsonLibraryAssertion, SK_Message::kAssertionFailure, -1, -1}, std::string("RapidJSON"));
}

}  // namespace SK_NAMESPACE_INT
