/// A file as UTF-16 code units, read in pieces. An odd byte at its end is no unit.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "SK_InputBytes.h"
#include "SVEncoding.h"

namespace ns_sensor {

/// The unit with its two bytes exchanged.
constexpr unsigned short swap_endian(unsigned short unit) {
  return static_cast<unsigned short>(unit << 8U | unit >> 8U);
}

class SVUnitInput {
 public:
  using Text = std::basic_string_view<unsigned short>;

  static constexpr int kEnd = SK_InputBytes::kEnd;

  SVUnitInput(std::string const& path, FileEncodingType encoding);

  bool IsOpen() const { return mBytes.IsOpen(); }

  /// The next unit, or `kEnd`.
  int Get() { return HasUnit() ? mUnits[mNext++] : kEnd; }
  /// The same without stepping over it, and always with the first byte as the one of higher value: in a
  /// little-endian file, a unit that is looked at in advance is not the one that `Get` gives.
  int Peek() {
    if (!HasUnit()) {
      return kEnd;
    }
    return mIsSwapped ? swap_endian(mUnits[mNext]) : mUnits[mNext];
  }

  /// The units at hand, at least one unless the file ends here. Good until the next call of anything but `Skip`.
  Text Window() { return HasUnit() ? Text(mUnits.data() + mNext, mUnits.size() - mNext) : Text(); }
  /// Steps over units of the window.
  void Skip(std::size_t count) { mNext += count; }

 private:
  bool HasUnit() { return mNext != mUnits.size() || Refill(); }
  bool Refill();

  SK_InputBytes mBytes;
  bool mIsSwapped;
  std::vector<unsigned short> mUnits;  ///< of one piece, each with its value
  std::size_t mNext = 0;
};

}  // namespace ns_sensor
