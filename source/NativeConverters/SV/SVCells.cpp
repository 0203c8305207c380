#include "SVCells.h"

#include <algorithm>
#include <cstring>

namespace ns_sensor {

namespace {

constexpr std::size_t kFirstPieceSize = 64;  // a table may have many columns and few rows
constexpr std::size_t kLargestPieceSize = 65536;

// Lengths are written in groups of 7 bits, the lowest first; the top bit says that another group follows.
constexpr unsigned kGroupBits = 7;
constexpr std::size_t kMoreGroups = 1U << kGroupBits;
constexpr std::size_t kGroupMask = kMoreGroups - 1;

std::size_t CountGroups(std::size_t length) {
  std::size_t count = 1;
  for (; length >= kMoreGroups; length >>= kGroupBits) {
    ++count;
  }
  return count;
}

}  // namespace

void SVCells::Append(std::string_view cell) {
  std::size_t length = cell.size();
  char* to = Extend(CountGroups(length) + length);
  for (; length >= kMoreGroups; length >>= kGroupBits) {
    *to++ = static_cast<char>((length & kGroupMask) | kMoreGroups);
  }
  *to++ = static_cast<char>(length);
  std::copy(cell.begin(), cell.end(), to);
}

std::string_view SVCells::Take() {
  if (mTaken == mPieces[mPieceTaken].used) {
    mPieces[mPieceTaken].bytes.reset();
    ++mPieceTaken;
    mTaken = 0;
  }
  char const* const bytes = mPieces[mPieceTaken].bytes.get();
  std::size_t length = 0;
  std::size_t group = 0;
  unsigned shift = 0;
  do {
    group = static_cast<unsigned char>(bytes[mTaken++]);
    length |= (group & kGroupMask) << shift;
    shift += kGroupBits;
  } while (group >= kMoreGroups);
  std::string_view const cell(bytes + mTaken, length);
  mTaken += length;
  return cell;
}

char* SVCells::Extend(std::size_t count) {
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

}  // namespace ns_sensor
