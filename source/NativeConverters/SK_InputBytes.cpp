#include "SK_InputBytes.h"

#include <ios>

namespace ns_sensor {

namespace {

constexpr std::streamsize kPieceSize = 262144;

}  // namespace

SK_InputBytes::SK_InputBytes(std::string const& path)
    : mIsOpen(mFile.open(path, std::ios::in | std::ios::binary) != nullptr) {
  if (mIsOpen) {
    mPiece.reset(new char[static_cast<std::size_t>(kPieceSize)]);
  }
}

bool SK_InputBytes::Refill() {
  if (!mIsOpen) {
    return false;
  }
  std::streamsize count = 0;
  try {
    count = mFile.sgetn(mPiece.get(), kPieceSize);
  } catch (std::ios_base::failure const&) {
    // A folder opens like a file, and only reading it fails.
  }
  mNext = mPiece.get();
  mLast = mNext + count;
  return count != 0;
}

}  // namespace ns_sensor
