/// From what the writer holds of an object to the class that the object's kind promises.
#pragma once

#include <type_traits>
#include <typeinfo>

#include "SK_WriterCode.h"
#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

/// 2016 for an object of another class, and for null. An object of just this class, as nearly all are, is known by
/// its type; a dynamic_cast searches the whole tree of its bases.
template <typename Impl, typename Interface>
auto CastOrThrow(Interface* object) {
  using Result = std::conditional_t<std::is_const_v<Interface>, Impl const, Impl>;
  using Address = std::conditional_t<std::is_const_v<Interface>, void const*, void*>;
  if (object == nullptr) {
    ThrowWriterError(kForeignObject);
  }
  if (typeid(*object) == typeid(Impl)) {
    return static_cast<Result*>(dynamic_cast<Address>(object));
  }
  Result* const impl = dynamic_cast<Result*>(object);
  if (impl == nullptr) {
    ThrowWriterError(kForeignObject);
  }
  return impl;
}

}  // namespace SK_PLUGIN
