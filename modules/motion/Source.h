/// The text of a file in pieces: lines of the hierarchy, then whole tokens of the motion.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "senmark/module/Input.h"

namespace senmark_motion {

namespace kit = senmark::kit;

/// Blanks and ends of lines.
inline bool IsLineEnd(char byte) {
  return byte == '\n' || byte == '\r';
}
inline bool IsBlank(char byte) {
  return byte == ' ' || byte == '\t' || byte == '\v' || byte == '\f';
}
inline bool IsSpace(char byte) {
  return IsBlank(byte) || IsLineEnd(byte);
}

class Source {
 public:
  static constexpr std::size_t kPieceSize = std::size_t{256} << 10;

  /// Skips a mark of UTF-8. pieceSize: bytes that are read at a time, and that a line or a token may have.
  /// Errors: `Failure` with code 6 for a file that cannot be opened, 11 for one that cannot be read.
  explicit Source(kit::Input const& input, std::size_t pieceSize = kPieceSize);

  /// The next line without its end, which is LF, CR LF or CR; valid until the next call. False at the end of the file.
  /// Errors: `Failure` for a line of more than a piece.
  bool nextLine(std::string_view& line);
  /// Takes the last `count` bytes of the line that `nextLine` gave back, and its end.
  void giveBack(std::size_t count);

  /// What is there from the position on, up to a space or to the end of the file, so that no token is cut; empty at the
  /// end of the file. The byte behind it, or the last one, is a space: a loop over a token needs no other bound. Valid
  /// until the next call. Errors: `Failure` for a token of more than a piece.
  std::string_view tokens();
  /// Moves the position.
  void consume(std::size_t count) { mBegin += count; }

  /// Bytes of the file before the position.
  std::int64_t offset() const { return mBufferOffset + static_cast<std::int64_t>(mBegin); }
  /// Bytes of the file before the line that `nextLine` gave last.
  std::int64_t lineOffset() const { return mLineOffset; }

  /// A failure at a place of the file, with its line.
  kit::Failure failure(std::string const& message, std::int64_t offset,
                       std::int32_t code = kit::Failure::kMalformedInput) const;

 private:
  bool Refill();

  kit::Input const& mInput;
  kit::Bytes mBytes;
  std::size_t mPieceSize;
  std::vector<char> mBuffer;  ///< up to two pieces, and a byte for the space behind them
  std::size_t mBegin = 0;
  std::size_t mEnd = 0;
  std::int64_t mBufferOffset = 0;  ///< bytes of the file before the buffer
  std::int64_t mLineOffset = 0;
  std::size_t mLineEnd = 0;  ///< in the buffer, of the line that was given last
  bool mIsAtEnd = false;
};

/// The line of a place, the first one is 1. Reads the file up to there.
std::int64_t LineAt(kit::Input const& input, std::int64_t offset);

}  // namespace senmark_motion
