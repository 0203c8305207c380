#include "TextBuffer.h"

namespace senmark_series {

TextBuffer::TextBuffer(kit::Input const& input, eEncoding encoding, bool checksUtf8, std::size_t pieceSize)
    : mBytes(std::make_unique<kit::Bytes>(input, pieceSize)),
      mDecoder(encoding),
      mChecks(checksUtf8 && encoding == eEncoding::kUtf8) {
  std::string_view const first = mBytes->next();
  mIsAtEnd = first.empty();
  std::size_t const mark = MarkOf(first).size;
  mKnownOffset = static_cast<std::int64_t>(mark);
  Take(first.substr(mark));
}

TextBuffer::TextBuffer(std::string_view bytes, eEncoding encoding, std::int64_t offset, bool isWhole)
    : mDecoder(encoding), mChecks(false), mIsAtEnd(true), mIsWhole(isWhole), mKnownOffset(offset) {
  std::size_t const mark = offset == 0 ? MarkOf(bytes).size : 0;
  mKnownOffset += static_cast<std::int64_t>(mark);
  Take(bytes.substr(mark));
}

TextBuffer::~TextBuffer() = default;

bool TextBuffer::more() {
  if (mIsAtEnd) {
    return false;
  }
  CountTo(begin());
  mText.erase(0, mPosition);
  mPosition = 0;
  mKnownPosition = 0;
  std::string_view const piece = mBytes->next();
  if (piece.empty()) {
    mIsAtEnd = true;
    std::size_t const size = mText.size();
    mDecoder.finish(mText);
    mIsUtf8 = mIsUtf8 && (!mChecks || mCheck.finish());
    return mText.size() != size;
  }
  Take(piece);
  return true;
}

/// Remembers the place: the next one that is asked for is near.
std::int64_t TextBuffer::CountTo(char const* position) {
  auto const place = static_cast<std::size_t>(position - mText.data());
  std::string_view const text = mText;
  if (place >= mKnownPosition) {
    mKnownOffset += static_cast<std::int64_t>(mDecoder.sourceSize(text.substr(mKnownPosition, place - mKnownPosition)));
  } else {
    mKnownOffset -= static_cast<std::int64_t>(mDecoder.sourceSize(text.substr(place, mKnownPosition - place)));
  }
  mKnownPosition = place;
  return mKnownOffset;
}

void TextBuffer::Take(std::string_view bytes) {
  if (mChecks && mIsUtf8) {
    mIsUtf8 = mCheck.feed(bytes);
  }
  mDecoder.append(bytes, mText);
}

}  // namespace senmark_series
