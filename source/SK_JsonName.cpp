#include "SK_JsonName.h"

namespace SK_NAMESPACE_INT {

std::string SK_JsonName::GetText() const {
  if (mOutermost != nullptr) {
    return *mOutermost;
  }
  std::string text = mContainer->GetText();
  if (mKey == nullptr) {
    text += '[';
    text += std::to_string(mIndex);
    text += ']';
  } else {
    text += "::";
    AppendDecoded(*mKey, text);
  }
  return text;
}

}  // namespace SK_NAMESPACE_INT
