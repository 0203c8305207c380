/// ASCII text, whatever the locale of the host.
#pragma once

#include <string>
#include <string_view>

namespace senmark_series {

inline bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

inline bool IsBlank(char character) {
  return character == ' ' || character == '\t';
}

inline char Lower(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

inline std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& character : lower) {
    character = Lower(character);
  }
  return lower;
}

/// `lower` has no upper case.
inline bool EqualsLower(std::string_view text, std::string_view lower) {
  if (text.size() != lower.size()) {
    return false;
  }
  for (std::size_t i = 0; i != text.size(); ++i) {
    if (Lower(text[i]) != lower[i]) {
      return false;
    }
  }
  return true;
}

inline bool StartsWith(std::string_view text, std::string_view start) {
  return text.substr(0, start.size()) == start;
}

/// Without blanks, tabs and line ends at both ends.
inline std::string_view Trim(std::string_view text) {
  auto const isSpace = [](char character) { return IsBlank(character) || character == '\r' || character == '\n'; };
  while (!text.empty() && isSpace(text.front())) {
    text.remove_prefix(1);
  }
  while (!text.empty() && isSpace(text.back())) {
    text.remove_suffix(1);
  }
  return text;
}

}  // namespace senmark_series
