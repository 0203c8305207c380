/// The one way to include rapidjson: a broken promise inside it becomes an error that a host sees, not
/// the end of the host's process.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

#include "SK_JsonPool.h"

namespace SK_NAMESPACE_INT {

/// Raises code 19.
[[noreturn]] void ThrowRapidJsonAssertion();

}  // namespace SK_NAMESPACE_INT

// An assertion inside one of its functions must be able to leave that function.
#define RAPIDJSON_HAS_CXX11_NOEXCEPT 0
#define RAPIDJSON_ASSERT(x) ((x) ? static_cast<void>(0) : ::SK_NAMESPACE_INT::ThrowRapidJsonAssertion())

// Its stack begins as a null pointer, to which the first push adds the size that it needs before it compares the
// sum with the end, null as well. No memory is touched; only a sanitizer minds.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#endif
#include <rapidjson/internal/stack.h>
#if defined(__clang__)
#pragma clang attribute pop
#endif
#include <rapidjson/document.h>

namespace SK_NAMESPACE_INT {

/// Where rapidjson's stacks get their memory. rapidjson does not test for null, so a shortage must be an
/// exception, `std::bad_alloc`.
class SK_JsonMemory {
 public:
  static bool const kNeedFree = true;

  void* Malloc(std::size_t size) { return size == 0 ? nullptr : Checked(std::malloc(size)); }

  void* Realloc(void* block, std::size_t, std::size_t newSize) {
    if (newSize == 0) {
      Free(block);
      return nullptr;
    }
    return Checked(std::realloc(block, newSize));
  }

  static void Free(void* block) { std::free(block); }

 private:
  static void* Checked(void* block) {
    if (block == nullptr) {
      throw std::bad_alloc();
    }
    return block;
  }
};

using JAllocator = SK_JsonPool;
using JValue = rapidjson::GenericValue<rapidjson::UTF8<>, JAllocator>;
using JDocument = rapidjson::GenericDocument<rapidjson::UTF8<>, JAllocator, SK_JsonMemory>;

}  // namespace SK_NAMESPACE_INT
