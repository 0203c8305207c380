/// The cells of one column, put in and taken out in their order. A short cell takes one byte more than its
/// text, and what has been taken out is freed piece by piece.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace ns_sensor {

class SVCells {
 public:
  void Append(std::string_view cell);

  /// The next cell, good until the next call. There must be one.
  std::string_view Take();

 private:
  /// Cells one behind the other, each a length and its bytes.
  struct Piece {
    std::unique_ptr<char[]> bytes;
    std::size_t size = 0;
    std::size_t used = 0;
  };

  /// A place for that many bytes in one piece.
  char* Extend(std::size_t count);

  std::vector<Piece> mPieces;
  std::size_t mPieceTaken = 0;  ///< the piece from which the next cell comes, unless that piece is at its end
  std::size_t mTaken = 0;       ///< its bytes that were taken
};

}  // namespace ns_sensor
