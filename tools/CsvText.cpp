#include "CsvText.h"

namespace senmark_tool {

std::string CsvField(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
    return std::string(text);
  }
  std::string field = "\"";
  for (char const byte : text) {
    field += byte;
    if (byte == '"') {
      field += '"';
    }
  }
  return field + '"';
}

}  // namespace senmark_tool
