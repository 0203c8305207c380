#include "Source.h"

#include <algorithm>
#include <cstring>

namespace senmark_motion {

Source::Source(kit::Input const& input, std::size_t pieceSize)
    : mInput(input), mBytes(input, pieceSize), mPieceSize(pieceSize), mBuffer(2 * pieceSize + 1) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  while (mEnd < kMark.size() && Refill()) {
  }
  if (std::string_view(mBuffer.data(), mEnd).substr(0, kMark.size()) == kMark) {
    mBegin = kMark.size();
  }
}

bool Source::nextLine(std::string_view& line) {
  std::size_t length = 0;
  for (;;) {
    char const* const start = mBuffer.data() + mBegin;
    while (length != mEnd - mBegin && !IsLineEnd(start[length])) {
      ++length;
    }
    // Whether a CR has an LF behind it is known only with one more byte.
    bool const isWhole = length + 1 < mEnd - mBegin || (length + 1 == mEnd - mBegin && start[length] == '\n');
    if (isWhole) {
      break;
    }
    if (length > mPieceSize) {
      throw failure("a line is longer than " + std::to_string(mPieceSize) + " bytes", offset());
    }
    if (!Refill()) {
      if (mBegin == mEnd) {
        return false;
      }
      break;
    }
  }
  if (length > mPieceSize) {
    throw failure("a line is longer than " + std::to_string(mPieceSize) + " bytes", offset());
  }
  mLineOffset = offset();
  line = std::string_view(mBuffer.data() + mBegin, length);
  mLineEnd = mBegin + length;
  mBegin = mLineEnd;
  if (mBegin != mEnd) {
    bool const isPair = mBuffer[mBegin] == '\r' && mBegin + 1 != mEnd && mBuffer[mBegin + 1] == '\n';
    mBegin += isPair ? 2 : 1;
  }
  return true;
}

void Source::giveBack(std::size_t count) {
  mBegin = mLineEnd - count;
}

std::string_view Source::tokens() {
  for (;;) {
    char const* const start = mBuffer.data() + mBegin;
    std::size_t size = mEnd - mBegin;
    while (size != 0 && !IsSpace(start[size - 1])) {
      --size;
    }
    if (size != 0) {
      return {start, size};
    }
    if (mEnd - mBegin > mPieceSize) {
      throw failure("a word is longer than " + std::to_string(mPieceSize) + " bytes", offset());
    }
    if (!Refill()) {
      mBuffer[mEnd] = '\n';
      return {mBuffer.data() + mBegin, mEnd - mBegin};
    }
  }
}

kit::Failure Source::failure(std::string const& message, std::int64_t offset, std::int32_t code) const {
  return kit::Failure(message, offset, LineAt(mInput, offset), code);
}

/// False at the end of the file. What is left moves to the front, and a piece comes behind it.
bool Source::Refill() {
  if (mIsAtEnd) {
    return false;
  }
  std::memmove(mBuffer.data(), mBuffer.data() + mBegin, mEnd - mBegin);
  mBufferOffset += static_cast<std::int64_t>(mBegin);
  mEnd -= mBegin;
  mBegin = 0;
  std::string_view const piece = mBytes.next();
  std::copy(piece.begin(), piece.end(), mBuffer.begin() + static_cast<std::ptrdiff_t>(mEnd));
  mEnd += piece.size();
  mIsAtEnd = piece.empty();
  return !mIsAtEnd;
}

std::int64_t LineAt(kit::Input const& input, std::int64_t offset) {
  kit::Bytes bytes(input);
  std::int64_t line = 1;
  bool endsInCarriage = false;
  for (;;) {
    std::string_view piece = bytes.next();
    if (bytes.offset() >= offset || piece.empty()) {
      return line;
    }
    piece = piece.substr(0, static_cast<std::size_t>(offset - bytes.offset()));
    for (char const byte : piece) {
      // The LF of a pair ends the same line as its CR.
      line += byte == '\r' || (byte == '\n' && !endsInCarriage) ? 1 : 0;
      endsInCarriage = byte == '\r';
    }
  }
}

}  // namespace senmark_motion
