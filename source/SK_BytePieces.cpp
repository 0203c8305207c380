#include "SK_BytePieces.h"

#include <algorithm>
#include <utility>

namespace SK_NAMESPACE_INT {

namespace {

constexpr std::size_t kFirstPieceSize = 64;  // a table may have many columns and few rows
constexpr std::size_t kLargestPieceSize = 65536;

}  // namespace

std::size_t SK_BytePieces::GetSize() const {
  std::size_t size = 0;
  for (Piece const& piece : mPieces) {
    size += piece.used;
  }
  return size;
}

char* SK_BytePieces::CopyTo(char* to) const {
  for (Piece const& piece : mPieces) {
    to = std::copy_n(piece.bytes.get(), piece.used, to);
  }
  return to;
}

char* SK_BytePieces::Extend(std::size_t count) {
  if (mPieces.empty() || mPieces.back().size - mPieces.back().used < count) {
    std::size_t const wanted = mPieces.empty() ? kFirstPieceSize : std::min(2 * mPieces.back().size, kLargestPieceSize);
    Piece piece;
    piece.size = std::max(wanted, count);
    piece.bytes.reset(new char[piece.size]);
    mPieces.push_back(std::move(piece));
  }
  Piece& last = mPieces.back();
  char* const place = last.bytes.get() + last.used;
  last.used += count;
  return place;
}

}  // namespace SK_NAMESPACE_INT
