/// Finding a member by a key whose length is known when the library is compiled, without a call.
#pragma once

#include <cstddef>
#include <cstring>

#include "SK_RapidJson.h"

namespace SK_NAMESPACE_INT {

/// Whether the text of a string value is `literal`, to the end.
template <std::size_t kSize>
bool IsText(JValue const& string, char const (&literal)[kSize]) {
  return string.GetStringLength() == kSize - 1 && std::memcmp(string.GetString(), literal, kSize - 1) == 0;
}

/// The value of the first member with this key, as `FindMember` finds it; null without one.
template <std::size_t kSize>
JValue const* FindValue(JValue const& object, char const (&key)[kSize]) {
  for (JValue::Member const& member : object.GetObject()) {
    if (IsText(member.name, key)) {
      return &member.value;
    }
  }
  return nullptr;
}

}  // namespace SK_NAMESPACE_INT
