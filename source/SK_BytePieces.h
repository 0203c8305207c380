/// Bytes that are put one behind the other and read in the same order, in pieces of memory that stay where they are.
///
/// What is put at once lies in one piece. Few bytes take a small piece; with many the pieces get large.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

namespace SK_NAMESPACE_INT {

class SK_BytePieces {
 public:
  /// From the beginning on.
  struct Place {
    std::size_t piece = 0;
    std::size_t offset = 0;
  };

  /// Room for that many bytes in one piece. `std::bad_alloc` leaves everything as it was.
  char* Extend(std::size_t count);

  /// The bytes at a place, of which there must be more; the caller moves the offset behind what it reads.
  char const* At(Place& place) const {
    if (place.offset == mPieces[place.piece].used) {
      ++place.piece;
      place.offset = 0;
    }
    return mPieces[place.piece].bytes.get() + place.offset;
  }
  /// Of all bytes that were put.
  std::size_t GetSize() const;
  /// Copies all bytes to where there is room for them, and gives their end there.
  char* CopyTo(char* to) const;
  /// Frees a piece that is not read again.
  void FreePiece(std::size_t piece) { mPieces[piece].bytes.reset(); }

 private:
  struct Piece {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
    std::size_t used = 0;
  };

  std::vector<Piece> mPieces;
};

// Lengths in front of texts: groups of 7 bits, the lowest first; the top bit says that another group follows.

/// Bytes that a length takes.
inline std::size_t CountLengthBytes(std::size_t length) {
  std::size_t count = 1;
  for (; length >= 0x80; length >>= 7U) {
    ++count;
  }
  return count;
}

/// Gives the end of what it wrote.
inline char* PutLength(char* to, std::size_t length) {
  for (; length >= 0x80; length >>= 7U) {
    *to++ = static_cast<char>((length & 0x7FU) | 0x80U);
  }
  *to++ = static_cast<char>(length);
  return to;
}

/// Moves `from` behind the length.
inline std::size_t TakeLength(char const*& from) {
  std::size_t length = 0;
  for (unsigned shift = 0;; shift += 7) {
    std::size_t const group = static_cast<unsigned char>(*from++);
    length |= (group & 0x7FU) << shift;
    if (group < 0x80) {
      return length;
    }
  }
}

}  // namespace SK_NAMESPACE_INT
