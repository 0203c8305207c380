// Message literals with values. Both may come from hosts, which can have any literal rendered. The first
// line of the input is the literal, up to four further lines are its values; a value without a line is
// not given, so that its mark stays.

#include <cstddef>
#include <cstdint>
#include <string>

#include "FuzzCheck.h"
#include "SK_Error.h"

namespace {

using senmark_fuzz::Require;
using SK_NAMESPACE_INT::SK_ReplacementValue;

constexpr int kValueCount = 4;

/// How many bytes the UTF-8 sequence at `at` has by its first byte, 0 for no such first byte.
std::size_t SequenceLength(unsigned char first) {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first <= 0xDF) return 2;
  if (first >= 0xE0 && first <= 0xEF) return 3;
  if (first >= 0xF0 && first <= 0xF4) return 4;
  return 0;
}

/// Well-formed UTF-8: no overlong forms, no surrogates, nothing above U+10FFFF.
bool IsUTF8(std::string const& text) {
  std::size_t at = 0;
  while (at < text.size()) {
    auto const byteAt = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    unsigned char const first = byteAt(at);
    std::size_t const length = SequenceLength(first);
    if (length == 0 || text.size() - at < length) {
      return false;
    }
    for (std::size_t i = 1; i < length; ++i) {
      if ((byteAt(at + i) & 0xC0) != 0x80) {
        return false;
      }
    }
    bool const isOverlong = (first == 0xE0 && byteAt(at + 1) < 0xA0) || (first == 0xF0 && byteAt(at + 1) < 0x90);
    bool const isOutside = (first == 0xED && byteAt(at + 1) > 0x9F) || (first == 0xF4 && byteAt(at + 1) > 0x8F);
    if (isOverlong || isOutside) {
      return false;
    }
    at += length;
  }
  return true;
}

/// The text up to the next line end, which is taken off `input` with it. A zero byte ends a host's text.
std::string TakeLine(std::string& input) {
  std::string::size_type const end = input.find('\n');
  std::string const line = input.substr(0, end);
  input = end == std::string::npos ? std::string() : input.substr(end + 1);
  return line.c_str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string input(data, data + size);
  std::string const literal = TakeLine(input);
  SK_ReplacementValue values[kValueCount];
  bool isPlain = literal.compare(0, 4, "$$$/") != 0;
  for (SK_ReplacementValue& value : values) {
    if (input.empty()) {
      break;
    }
    value = SK_ReplacementValue(TakeLine(input));
    isPlain = isPlain && value.GetString().empty();
  }

  std::string const message =
      SK_NAMESPACE_INT::SubstituteErrorMessage(literal.c_str(), values[0], values[1], values[2], values[3]);
  Require(IsUTF8(message));
  if (isPlain && literal.find('^') == std::string::npos && IsUTF8(literal)) {
    Require(message == literal);
  }
  return 0;
}
