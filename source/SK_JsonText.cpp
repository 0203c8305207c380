#include "SK_JsonText.h"

#include <algorithm>

namespace SK_NAMESPACE_INT {

namespace {

/// The character that a backslash and `byte` stand for, 0 if the two have no meaning together.
char EscapedCharacter(char byte) {
  switch (byte) {
    case '"':
    case '\\':
      return byte;
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return 0;
  }
}

}  // namespace

bool FindLongJsonText(char const* p, char const* end, SK_JsonText& text) {
  text = {p, p, false};
  if (!PeekIs(p, end, '"')) {
    return false;
  }
  text.begin = p + 1;
  text.end = FindJsonStringStop(text.begin, end);
  while (PeekIs(text.end, end, '\\')) {
    text.hasEscapes = true;
    ++text.end;
    if (text.end < end && EscapedCharacter(*text.end) != 0) {
      ++text.end;
    }
    text.end = FindJsonStringStop(text.end, end);
  }
  return PeekIs(text.end, end, '"');
}

void AppendDecoded(SK_JsonText const& text, std::string& out) {
  char const* p = text.begin;
  while (p < text.end) {
    char const* const backslash = std::find(p, text.end, '\\');
    out.append(p, backslash);
    if (backslash == text.end) {
      return;
    }
    // The closing quote of the string is not escaped, so a byte follows the backslash.
    p = backslash + 1;
    if (char const character = EscapedCharacter(*p); character != 0) {
      out.push_back(character);
      ++p;
    }
  }
}

}  // namespace SK_NAMESPACE_INT
