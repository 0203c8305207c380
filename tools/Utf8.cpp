#include "Utf8.h"

namespace senmark_tool {

std::size_t Utf8Length(std::string_view text) {
  if (text.empty()) {
    return 0;
  }
  auto const byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  unsigned const first = byteAt(0);
  if (first < 0x80) {
    return 1;
  }
  std::size_t const length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) {
    return 0;
  }
  for (std::size_t i = 1; i != length; ++i) {
    if ((byteAt(i) & 0xC0) != 0x80) {
      return 0;
    }
  }
  unsigned const second = byteAt(1);
  bool const isOverlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
  bool const isSurrogate = first == 0xED && second >= 0xA0;
  bool const isTooLarge = first == 0xF4 && second >= 0x90;
  return isOverlong || isSurrogate || isTooLarge ? 0 : length;
}

std::string Printable(std::string_view text) {
  std::string printable;
  printable.reserve(text.size());
  while (!text.empty()) {
    std::size_t const length = Utf8Length(text);
    unsigned char const byte = static_cast<unsigned char>(text[0]);
    // U+0080 to U+009F, bytes C2 80 to C2 9F, are control characters too.
    bool const isControl =
        byte < 0x20 || byte == 0x7F || (length == 2 && byte == 0xC2 && static_cast<unsigned char>(text[1]) < 0xA0);
    if (length == 0 || isControl) {
      printable += '?';
    } else {
      printable.append(text.substr(0, length));
    }
    text.remove_prefix(length == 0 ? 1 : length);
  }
  return printable;
}

std::size_t Columns(std::string_view text) {
  std::size_t columns = 0;
  for (char const byte : text) {
    columns += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1u : 0u;
  }
  return columns;
}

}  // namespace senmark_tool
