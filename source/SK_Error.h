/// Raising an error: a code, a message literal, a place, and up to four values for the message.
#pragma once

#include <string>

#include "SK_Exception.h"
#include "SK_Message.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::eErrorCode;

/// Text in UTF-16 code units.
using SK_UTF16String = std::basic_string<unsigned short>;

/// What stands at a throw site.
struct ErrorFormat {
  eErrorCode code;
  char const* literal;  ///< one of `SK_Message`, never copied
  long long offset;     ///< bytes from the start of the input file, -1 for none
  long long line;       ///< line in the input file, -1 for none
};

/// One value for one mark of a message. A default-constructed value leaves the mark in the text.
class SK_ReplacementValue {
 public:
  enum eTag : int { kNone = 0, kSigned = 1, kUnsigned = 2, kDouble = 3, kString = 4 };

  SK_ReplacementValue();
  SK_ReplacementValue(long long value);
  SK_ReplacementValue(int value);
  SK_ReplacementValue(unsigned long long value);
  SK_ReplacementValue(unsigned int value);
  SK_ReplacementValue(double value);
  SK_ReplacementValue(std::string const& value);

  eTag GetTag() const { return mTag; }
  std::string GetString() const;  ///< the text of a string value, else empty
  std::string Render() const;     ///< decimal; a double in fixed notation with six decimals

 private:
  void Init();

  eTag mTag;
  unsigned long long mUnsigned;
  long long mSigned;
  double mDouble;
  std::string mString;
};

/// `text` between double quotes: the form in which names of properties, keys, ids and outline paths
/// stand in messages.
std::string Quoted(std::string const& text);

/// Renders the message, keeps it as the thread's last error, and throws an `SK_Exception`.
[[noreturn]] void ThrowError(ErrorFormat const& format, SK_ReplacementValue const& value1 = SK_ReplacementValue(),
                             SK_ReplacementValue const& value2 = SK_ReplacementValue(),
                             SK_ReplacementValue const& value3 = SK_ReplacementValue(),
                             SK_ReplacementValue const& value4 = SK_ReplacementValue());

/// Raises code 1 for a null pointer where a `what` was to be given.
[[noreturn]] void ThrowInvalidPointer(char const* what);

/// The text of a literal in UTF-8 with its marks replaced, ^1 first. A value that itself holds a later
/// mark is replaced in its turn.
std::string SubstituteErrorMessage(char const* literal, SK_ReplacementValue const& value1,
                                   SK_ReplacementValue const& value2, SK_ReplacementValue const& value3,
                                   SK_ReplacementValue const& value4);

/// `text` with the first `hat` (like "^1") replaced. A value that is not ASCII becomes nothing.
SK_UTF16String ReplaceHat(SK_UTF16String const& text, char const* hat, SK_ReplacementValue const& value);

/// The calling thread's last error. `ThrowError` sets it; handling the error does not clear it.
extern thread_local ns_sensor::SK_Exception gLastException;

}  // namespace SK_NAMESPACE_INT
