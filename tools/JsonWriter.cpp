#include "JsonWriter.h"

#include <array>
#include <charconv>
#include <cmath>

#include "Utf8.h"

namespace senmark_tool {

void JsonWriter::Key(std::string_view key) {
  Separate();
  WriteQuoted(key);
  mOut << ':';
  mAfterKey = true;
}

void JsonWriter::String(std::string_view text) {
  Separate();
  WriteQuoted(text);
}

void JsonWriter::Number(double number) {
  if (!std::isfinite(number)) {
    Null();
    return;
  }
  Separate();
  std::array<char, 32> text;
  std::to_chars_result const end = std::to_chars(text.data(), text.data() + text.size(), number);
  mOut.write(text.data(), end.ptr - text.data());
}

void JsonWriter::Integer(std::int64_t number) {
  Separate();
  mOut << number;
}

void JsonWriter::Unsigned(std::uint64_t number) {
  Separate();
  mOut << number;
}

void JsonWriter::Boolean(bool flag) {
  Separate();
  mOut << (flag ? "true" : "false");
}

void JsonWriter::Null() {
  Separate();
  mOut << "null";
}

void JsonWriter::CloseAll() {
  if (mAfterKey) {
    Null();
  }
  while (!mLevels.empty()) {
    Close();
  }
  mOut << '\n';
}

void JsonWriter::Open(char opening, char closing, eLayout layout) {
  Separate();
  mOut << opening;
  mLevels.push_back({closing, layout, true});
}

void JsonWriter::Close() {
  Level const level = mLevels.back();
  mLevels.pop_back();
  if (level.layout == eLayout::kLines && !level.isEmpty) {
    mOut << '\n';
  }
  mOut << level.closing;
}

void JsonWriter::Separate() {
  if (mAfterKey) {
    mAfterKey = false;
    return;
  }
  if (mLevels.empty()) {
    return;
  }
  Level& level = mLevels.back();
  if (!level.isEmpty) {
    mOut << ',';
  }
  if (level.layout == eLayout::kLines) {
    mOut << '\n';
  }
  level.isEmpty = false;
}

void JsonWriter::WriteQuoted(std::string_view text) {
  static constexpr char kHex[] = "0123456789abcdef";
  mOut << '"';
  while (!text.empty()) {
    std::size_t const length = Utf8Length(text);
    unsigned char const byte = static_cast<unsigned char>(text[0]);
    if (length == 0) {
      mOut << "\xEF\xBF\xBD";
      text.remove_prefix(1);
      continue;
    }
    if (byte == '"' || byte == '\\') {
      mOut << '\\' << text[0];
    } else if (byte == '\n') {
      mOut << "\\n";
    } else if (byte == '\t') {
      mOut << "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      mOut << "\\u00" << kHex[byte >> 4] << kHex[byte & 15];
    } else {
      mOut.write(text.data(), static_cast<std::streamsize>(length));
    }
    text.remove_prefix(length);
  }
  mOut << '"';
}

}  // namespace senmark_tool
