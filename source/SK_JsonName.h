/// The name that messages show for a value, like `dataOutline[3]::value`.
///
/// Reading needs the name of a value only if the value is broken, so a name is a chain of links on the
/// stack, one for each container around the value, and becomes text in the error.
#pragma once

#include <cstdint>
#include <string>

#include "SK_JsonText.h"

namespace SK_NAMESPACE_INT {

/// Borrows the outermost name, the links around it and the bytes of the keys: all must outlive it.
class SK_JsonName {
 public:
  explicit SK_JsonName(std::string const& outermost);
  SK_JsonName(SK_JsonName const& object, SK_JsonText const& key)
      : mContainer(&object), mText(key), mIndex(0), mIsElement(false) {}
  SK_JsonName(SK_JsonName const& array, std::uint32_t index)
      : mContainer(&array), mText{nullptr, nullptr, false}, mIndex(index), mIsElement(true) {}

  std::string GetText() const;

 private:
  SK_JsonName const* mContainer;  ///< null in the outermost name
  SK_JsonText mText;              ///< the outermost name, or the key of a member
  std::uint32_t mIndex;           ///< of an element
  bool mIsElement;
};

}  // namespace SK_NAMESPACE_INT
