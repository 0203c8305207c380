/// Makes UTF-8 of the bytes of a file, piece by piece.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "Encoding.h"

namespace senmark_series {

class Decoder {
 public:
  explicit Decoder(eEncoding encoding) : mEncoding(encoding) {}

  /// Appends the text of the next bytes. What is cut off at their end waits for the next call. Half of a surrogate
  /// pair becomes U+FFFD; bytes that are said to be UTF-8 pass as they are.
  void append(std::string_view bytes, std::string& text);
  /// Appends what is left of a file that is cut off.
  void finish(std::string& text);

  /// Bytes of the text are those of the file.
  bool isBytewise() const { return mEncoding == eEncoding::kUtf8; }

  /// How many bytes of the file `text` was, which begins and ends with whole characters.
  std::uint64_t sourceSize(std::string_view text) const;

 private:
  void AppendUtf16(std::string_view bytes, std::string& text);
  void TakeUnit(unsigned unit, std::string& text);

  eEncoding mEncoding;
  unsigned mFirstByte = 0;
  bool mHasFirstByte = false;
  unsigned mHighSurrogate = 0;  ///< 0: none waits for its low one
};

}  // namespace senmark_series
