#include "SK_JsonName.h"

namespace SK_NAMESPACE_INT {

SK_JsonName::SK_JsonName(std::string const& outermost)
    : mContainer(nullptr),
      mText{outermost.data(), outermost.data() + outermost.size(), false},
      mIndex(0),
      mIsElement(false) {}

std::string SK_JsonName::GetText() const {
  if (mContainer == nullptr) {
    return std::string(mText.begin, mText.end);
  }
  std::string text = mContainer->GetText();
  if (mIsElement) {
    text += '[';
    text += std::to_string(mIndex);
    text += ']';
  } else {
    text += "::";
    AppendDecoded(mText, text);
  }
  return text;
}

}  // namespace SK_NAMESPACE_INT
