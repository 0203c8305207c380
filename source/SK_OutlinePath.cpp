#include "SK_OutlinePath.h"

namespace SK_NAMESPACE_INT {

std::string SK_OutlinePath::Text() const {
  std::string text;
  if (!IsNone()) {
    AppendTo(text);
  }
  return text;
}

// The chain is as long as the outline is deep, which the scanner limits.
void SK_OutlinePath::AppendTo(std::string& text) const {
  if (mParent != nullptr) {
    mParent->AppendTo(text);
    text += '/';
  }
  text += mName;
  if (mIsElement) {
    text += '[' + std::to_string(mIndex) + ']';
  }
  if (mDisplayName != nullptr) {
    text += ':';
    text.append(mDisplayName->GetString(), mDisplayName->GetStringLength());
  }
}

}  // namespace SK_NAMESPACE_INT
