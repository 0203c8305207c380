#include "Dialect.h"

namespace senmark_series {

Dialect DialectOf(char delimiter) {
  Dialect dialect;
  dialect.delimiter = delimiter;
  if (delimiter != ';') {
    dialect.comments.emplace_back(";");
  }
  return dialect;
}

std::string NameOfDelimiter(char delimiter) {
  switch (delimiter) {
    case ',':
      return "comma";
    case ';':
      return "semicolon";
    case '\t':
      return "tab";
    case '|':
      return "pipe";
    case ' ':
      return "blanks";
    default:
      return {delimiter};
  }
}

}  // namespace senmark_series
