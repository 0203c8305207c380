/// The cells of one column, put in and taken out in their order. A short cell takes one byte more than its
/// text, and what has been taken out is freed piece by piece.
#pragma once

#include <string_view>

#include "SK_BytePieces.h"

namespace ns_sensor {

class SVCells {
 public:
  void Append(std::string_view cell);

  /// The next cell, good until the next call. There must be one.
  std::string_view Take();

 private:
  SK_NAMESPACE_INT::SK_BytePieces mPieces;        ///< cells one behind the other, each a length and its bytes
  SK_NAMESPACE_INT::SK_BytePieces::Place mTaken;  ///< behind the last cell that was taken
};

}  // namespace ns_sensor
