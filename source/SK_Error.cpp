#include "SK_Error.h"

#include "SK_Localizer.h"
#include "SK_UnicodeUtils.h"

namespace SK_NAMESPACE_INT {

thread_local ns_sensor::SK_Exception gLastException;

SK_ReplacementValue::SK_ReplacementValue() : mTag(kNone) {
  Init();
}

SK_ReplacementValue::SK_ReplacementValue(long long value) : mTag(kSigned) {
  Init();
  mSigned = value;
}

SK_ReplacementValue::SK_ReplacementValue(int value) : SK_ReplacementValue(static_cast<long long>(value)) {}

SK_ReplacementValue::SK_ReplacementValue(unsigned long long value) : mTag(kUnsigned) {
  Init();
  mUnsigned = value;
}

SK_ReplacementValue::SK_ReplacementValue(unsigned int value)
    : SK_ReplacementValue(static_cast<unsigned long long>(value)) {}

SK_ReplacementValue::SK_ReplacementValue(double value) : mTag(kDouble) {
  Init();
  mDouble = value;
}

SK_ReplacementValue::SK_ReplacementValue(std::string const& value) : mTag(kString) {
  Init();
  mString = value;
}

std::string SK_ReplacementValue::GetString() const {
  return mTag == kString ? mString : std::string();
}

std::string SK_ReplacementValue::Render() const {
  switch (mTag) {
    case kSigned:
      return std::to_string(mSigned);
    case kUnsigned:
      return std::to_string(mUnsigned);
    case kDouble:
      return std::to_string(mDouble);
    case kNone:
    case kString:
      break;
  }
  return GetString();
}

void SK_ReplacementValue::Init() {
  mUnsigned = 0;
  mSigned = 0;
  mDouble = 0;
  mString.clear();
}

std::string Quoted(std::string const& text) {
  return '"' + text + '"';
}

void ThrowError(ErrorFormat const& format, SK_ReplacementValue const& value1, SK_ReplacementValue const& value2,
                SK_ReplacementValue const& value3, SK_ReplacementValue const& value4) {
  ns_sensor::SK_Exception const exception(
      format.code, SubstituteErrorMessage(format.literal, value1, value2, value3, value4), format.offset, format.line);
  gLastException = exception;
  throw ns_sensor::SK_Exception(exception);
}

void ThrowInvalidPointer(char const* what) {
  ThrowError({ns_sensor::kInvalidArgument, SK_Message::kInvalidPointer, -1, -1}, Quoted(what));
}

std::string SubstituteErrorMessage(char const* literal, SK_ReplacementValue const& value1,
                                   SK_ReplacementValue const& value2, SK_ReplacementValue const& value3,
                                   SK_ReplacementValue const& value4) {
  SK_UTF16String text = SK_Localizer::GetInstance()->GetLocalizedString(literal);
  text = ReplaceHat(text, "^1", value1);
  text = ReplaceHat(text, "^2", value2);
  text = ReplaceHat(text, "^3", value3);
  text = ReplaceHat(text, "^4", value4);
  SK_UnicodeUtils::UTF8String const utf8 = SK_UnicodeUtils::UTF16to8(text);
  return std::string(utf8.begin(), utf8.end());
}

SK_UTF16String ReplaceHat(SK_UTF16String const& text, char const* hat, SK_ReplacementValue const& value) {
  if (value.GetTag() == SK_ReplacementValue::kNone) {
    return text;
  }
  SK_UTF16String const wideHat = SK_UnicodeUtils::AsciiToUTF16(hat, std::char_traits<char>::length(hat));
  SK_UTF16String::size_type const at = text.find(wideHat);
  if (at == SK_UTF16String::npos) {
    return text;
  }
  // A text that is not ASCII becomes empty here: such a value vanishes from the message and leaves the
  // words around it intact.
  std::string const rendered = value.Render();
  SK_UTF16String result = text.substr(0, at);
  result += SK_UnicodeUtils::AsciiToUTF16(rendered.c_str(), rendered.size());
  result += text.substr(at + wideHat.size());
  return result;
}

}  // namespace SK_NAMESPACE_INT
