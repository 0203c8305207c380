/// Times that were stored as windows of their bases, as they come back.
#pragma once

#include <cstddef>
#include <cstring>

#include "SK_TimeWindow.h"

namespace SK_PLUGIN {

class SK_TimeWindowReader {
 public:
  /// There is no base. length: of all times, one that has windows.
  void Reset(std::size_t length) {
    mLength = length;
    mLastPlace = static_cast<unsigned>(length - SK_TimeWindow::kSize);
    std::memset(mBase, 0, sizeof(mBase));
  }

  std::size_t Length() const { return mLength; }

  /// Whether a window begins here, and not a base; false also for what is neither.
  bool IsWindow(char const* stored) const { return static_cast<unsigned char>(*stored) <= mLastPlace; }
  /// Takes the base that is stored here, if one is and a window behind it, and gives where that begins; else null.
  /// Reads `SK_TimeWindow::kRoom` bytes.
  char const* TakeBase(char const* stored) {
    char const* const window = stored + 1 + mLength;
    if (*stored != SK_TimeWindow::kIsBase || !IsWindow(window)) {
      return nullptr;
    }
    std::memcpy(mBase, stored + 1, sizeof(mBase));
    return window;
  }

  /// The base, to where there is room for `SK_TimeWindow::kLongest` bytes, all of which may change.
  void CopyBaseTo(char* out) const { std::memcpy(out, mBase, sizeof(mBase)); }
  /// Makes a base the time whose window is stored.
  static void CopyWindowTo(char* base, char const* stored) {
    std::memcpy(base + static_cast<unsigned char>(*stored), stored + 1, SK_TimeWindow::kSize);
  }

 private:
  char mBase[SK_TimeWindow::kLongest] = {};
  unsigned mLastPlace = 0;  // of a window
  std::size_t mLength = 0;
};

}  // namespace SK_PLUGIN
