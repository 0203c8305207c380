/// The one way to include rapidjson: a broken promise inside it becomes an error that a host sees, not
/// the end of the host's process.
#pragma once

namespace SK_NAMESPACE_INT {

/// Raises code 19.
[[noreturn]] void ThrowRapidJsonAssertion();

}  // namespace SK_NAMESPACE_INT

// An assertion inside one of its functions must be able to leave that function.
#define RAPIDJSON_HAS_CXX11_NOEXCEPT 0
#define RAPIDJSON_ASSERT(x) ((x) ? static_cast<void>(0) : ::SK_NAMESPACE_INT::ThrowRapidJsonAssertion())

#include <rapidjson/document.h>

namespace SK_NAMESPACE_INT {

using JAllocator = rapidjson::MemoryPoolAllocator<>;
using JValue = rapidjson::GenericValue<rapidjson::UTF8<>, JAllocator>;
using JDocument = rapidjson::GenericDocument<rapidjson::UTF8<>, JAllocator>;

}  // namespace SK_NAMESPACE_INT
