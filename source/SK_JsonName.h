/// The name that messages show for a value, like `dataOutline[3]::value`.
///
/// Reading needs the name of a value only if the value is broken, so a name is a chain of links on the
/// stack, one for each container around the value, and becomes text in the error.
#pragma once

#include <cstdint>
#include <string>

#include "SK_JsonText.h"

namespace SK_NAMESPACE_INT {

/// Borrows the outermost name, the links around it and the keys with their bytes: all must outlive it.
class SK_JsonName {
 public:
  explicit SK_JsonName(std::string const& outermost) : mOutermost(&outermost) {}
  SK_JsonName(SK_JsonName const& object, SK_JsonText const& key) : mContainer(&object), mKey(&key) {}
  SK_JsonName(SK_JsonName const& array, std::uint32_t index) : mContainer(&array), mIndex(index) {}

  std::string GetText() const;

 private:
  SK_JsonName const* mContainer = nullptr;
  std::string const* mOutermost = nullptr;
  SK_JsonText const* mKey = nullptr;  ///< null for an element
  std::uint32_t mIndex = 0;           ///< of an element
};

}  // namespace SK_NAMESPACE_INT
