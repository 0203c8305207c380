/// The text of a file as far as it is needed at once.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "Decoder.h"
#include "senmark/module/Input.h"

namespace senmark_series {

namespace kit = senmark::kit;

/// What rows and lines are cut out of: text that the reader steps over goes, and more of the file comes behind.
class TextBuffer {
 public:
  /// The whole file, behind its mark.
  ///
  /// checksUtf8  whether `isUtf8` will be asked.
  /// pieceSize   bytes that are read at once.
  TextBuffer(kit::Input const& input, eEncoding encoding, bool checksUtf8 = true, std::size_t pieceSize = kPieceSize);
  /// Bytes that are there already: the start of a file, or a part of it.
  ///
  /// offset   of the bytes in the file.
  /// isWhole  nothing of the file follows behind.
  TextBuffer(std::string_view bytes, eEncoding encoding, std::int64_t offset, bool isWhole);
  ~TextBuffer();
  TextBuffer(TextBuffer const&) = delete;
  TextBuffer& operator=(TextBuffer const&) = delete;

  char* begin() { return mText.data() + mPosition; }
  char* end() { return mText.data() + mText.size(); }

  /// Brings more text; what `begin` and `end` gave before is void. False at the end of the file.
  bool more();
  /// Nothing will come.
  bool isAtEnd() const { return mIsAtEnd; }
  /// What stands at the end is the end of the file, and not just of what is there of it.
  bool isWhole() const { return mIsWhole; }

  /// Steps over what is in front of `position`.
  void skipTo(char const* position) { mPosition = static_cast<std::size_t>(position - mText.data()); }

  /// The offset in the file of a place behind `begin`, in bytes.
  std::int64_t offsetOf(char const* position) {
    if (mDecoder.isBytewise()) {
      return mKnownOffset + (position - mText.data()) - static_cast<std::int64_t>(mKnownPosition);
    }
    return CountTo(position);
  }

  /// The bytes so far were UTF-8; asked of files that are taken for that.
  bool isUtf8() const { return mIsUtf8; }

 private:
  static constexpr std::size_t kPieceSize = std::size_t{256} << 10;

  void Take(std::string_view bytes);
  std::int64_t CountTo(char const* position);

  std::unique_ptr<kit::Bytes> mBytes;
  Decoder mDecoder;
  Utf8Check mCheck;
  bool mChecks;
  bool mIsUtf8 = true;
  bool mIsAtEnd = false;
  bool mIsWhole = true;
  std::string mText;
  std::size_t mPosition = 0;       ///< in the text
  std::size_t mKnownPosition = 0;  ///< in the text, the offset of which is known
  std::int64_t mKnownOffset = 0;
};

}  // namespace senmark_series
