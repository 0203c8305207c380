/// How a table is written: what stands between cells, around them, and in front of remarks.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace senmark_series {

struct Dialect {
  char delimiter = ',';                             ///< a blank stands for runs of blanks and tabs
  char decimalMark = '.';                           ///< or a comma
  char quote = '"';                                 ///< 0: none
  std::vector<std::string> comments = {"#", "//"};  ///< what lines begin with that are no rows

  bool isBlankDelimited() const { return delimiter == ' '; }
};

/// In the order in which they are tried: what is rarer inside of cells comes first.
constexpr std::array<char, 5> kDelimiters = {'\t', ';', ',', '|', ' '};

/// With the comments that go with the delimiter: a semicolon begins one unless it is the delimiter.
Dialect DialectOf(char delimiter);

/// "comma", "semicolon", "tab", "pipe", "blanks"; another character by itself.
std::string NameOfDelimiter(char delimiter);

}  // namespace senmark_series
