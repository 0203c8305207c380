/// A string of JSON text where it stands in the input, between its quotes.
#pragma once

#include <cstddef>
#include <string>

#include "SK_JsonBytes.h"

namespace SK_NAMESPACE_INT {

/// Borrows the input's bytes: valid as long as they are.
struct SK_JsonText {
  char const* begin;  ///< behind the opening quote
  char const* end;    ///< the closing quote
  bool hasEscapes;    ///< false: the bytes are the text

  std::size_t GetSize() const { return static_cast<std::size_t>(end - begin); }
};

/// What `FindJsonText` does where its short way does not reach.
bool FindLongJsonText(char const* p, char const* end, SK_JsonText& text);

/// Finds where the string at `p` ends. True: `text` is the string, and its closing quote lies below `end`.
/// False: there is no such string; `text.end` is the position of the byte that proves it, or `end`.
inline bool FindJsonText(char const* p, char const* end, SK_JsonText& text) {
#if defined(__SSE2__)
  // Most strings end within sixteen bytes and hold nothing special.
  if (end - p > 16 && *p == '"') {
    unsigned const stops = MarkJsonStringStops(p + 1);
    char const* const stop = p + 1 + __builtin_ctz(stops | 0x10000);
    if (stops != 0 && *stop == '"') {
      text = {p + 1, stop, false};
      return true;
    }
  }
#endif
  return FindLongJsonText(p, end, text);
}

/// Appends the characters of `text` to `out`. Only the escapes of quote, backslash, b, f, n, r and t have
/// a meaning; a backslash before anything else is dropped, so the digits of a `\u` stay as they are.
void AppendDecoded(SK_JsonText const& text, std::string& out);

}  // namespace SK_NAMESPACE_INT
