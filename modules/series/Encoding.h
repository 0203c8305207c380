/// How the bytes of a file are letters.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace senmark_series {

/// Windows-1252 stands for Latin-1 too: they differ in control characters that no table holds.
enum class eEncoding : std::uint8_t { kUtf8, kUtf16Little, kUtf16Big, kWindows1252 };

char const* NameOf(eEncoding encoding);

/// By the names that people use, in any case: utf-8, utf-16le, utf-16be, windows-1252, cp1252, latin-1, iso-8859-1.
std::optional<eEncoding> EncodingOf(std::string_view name);

/// The mark at the start of a file.
struct ByteOrderMark {
  eEncoding encoding = eEncoding::kUtf8;
  std::size_t size = 0;  ///< 0: none
};
ByteOrderMark MarkOf(std::string_view head);

/// Whether bytes that come in pieces are UTF-8.
class Utf8Check {
 public:
  /// False from the first byte on that cannot be UTF-8.
  bool feed(std::string_view piece);
  /// False for a character that is cut off.
  bool finish() const { return mIsValid && mMissing == 0; }

 private:
  bool mIsValid = true;
  unsigned mMissing = 0;         ///< bytes of the character that has begun
  unsigned char mLowest = 0x80;  ///< of its next byte
  unsigned char mHighest = 0xBF;
};

}  // namespace senmark_series
