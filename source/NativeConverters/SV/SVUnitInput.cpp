#include "SVUnitInput.h"

#include <algorithm>

namespace ns_sensor {

namespace {

constexpr std::size_t kUnitsInPiece = 8192;

unsigned short MakeUnit(int high, int low) {
  return static_cast<unsigned short>(high << 8U | low);
}

}  // namespace

SVUnitInput::SVUnitInput(std::string const& path, FileEncodingType encoding)
    : mBytes(path), mIsSwapped(encoding == kUTF16LittleEndian) {}

bool SVUnitInput::Refill() {
  mNext = 0;
  std::string_view const window = mBytes.Window();
  std::size_t const count = std::min(window.size() / 2, kUnitsInPiece);
  mUnits.resize(count);
  for (std::size_t i = 0; i != count; ++i) {
    mUnits[i] = MakeUnit(static_cast<unsigned char>(window[2 * i]), static_cast<unsigned char>(window[2 * i + 1]));
  }
  mBytes.Skip(2 * count);
  if (window.size() == 1) {
    // Its other byte may stand in the next piece.
    int const high = mBytes.Get();
    int const low = mBytes.Get();
    if (low != kEnd) {
      mUnits.push_back(MakeUnit(high, low));
    }
  }
  if (mIsSwapped) {
    std::transform(mUnits.begin(), mUnits.end(), mUnits.begin(), swap_endian);
  }
  return !mUnits.empty();
}

}  // namespace ns_sensor
