#include "SVCells.h"

#include <algorithm>
#include <cstddef>

namespace ns_sensor {

using namespace SK_NAMESPACE_INT;

void SVCells::Append(std::string_view cell) {
  char* const to = mPieces.Extend(CountLengthBytes(cell.size()) + cell.size());
  std::copy(cell.begin(), cell.end(), PutLength(to, cell.size()));
}

std::string_view SVCells::Take() {
  std::size_t const piece = mTaken.piece;
  char const* const begin = mPieces.At(mTaken);
  if (mTaken.piece != piece) {
    mPieces.FreePiece(piece);
  }
  char const* next = begin;
  std::size_t const length = TakeLength(next);
  std::string_view const cell(next, length);
  mTaken.offset += static_cast<std::size_t>(next - begin) + length;
  return cell;
}

}  // namespace ns_sensor
