/// A file as UTF-16 code units. An odd byte at its end is no unit.
#pragma once

#include <string>

#include "SK_InputBytes.h"
#include "SVEncoding.h"

namespace ns_sensor {

/// The unit with its two bytes exchanged.
constexpr unsigned short swap_endian(unsigned short unit) {
  return static_cast<unsigned short>(unit << 8U | unit >> 8U);
}

class SVUnitInput {
 public:
  static constexpr int kEnd = SK_InputBytes::kEnd;

  SVUnitInput(std::string const& path, FileEncodingType encoding)
      : mBytes(path), mIsSwapped(encoding == kUTF16LittleEndian) {}

  bool IsOpen() const { return mBytes.IsOpen(); }

  /// The next unit, or `kEnd`.
  int Get() {
    int const unit = Peek();
    mPeeked = kNotPeeked;
    return mIsSwapped && unit != kEnd ? swap_endian(static_cast<unsigned short>(unit)) : unit;
  }
  /// The same without stepping over it, and always with the first byte as the one of higher value: in a
  /// little-endian file, a unit that is looked at in advance is not the one that `Get` gives.
  int Peek() {
    if (mPeeked == kNotPeeked) {
      mPeeked = ReadUnit();
    }
    return mPeeked;
  }

 private:
  static constexpr int kNotPeeked = -2;

  int ReadUnit() {
    int const high = mBytes.Get();
    int const low = mBytes.Get();
    return low == kEnd ? kEnd : high << 8U | low;
  }

  SK_InputBytes mBytes;
  bool mIsSwapped;
  int mPeeked = kNotPeeked;
};

}  // namespace ns_sensor
