#include "SK_TimeWindow.h"

#include <algorithm>
#include <atomic>

#include "SK_EightBytes.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::LoadEight;

// Only that no two are the same hangs on it, so no order is needed.
std::atomic<std::uint64_t> gLastBaseID{0};

// In bytes from the start; `kLongest` if nowhere.
std::size_t FirstDifference(char const* a, char const* b) {
  for (std::size_t at = 0; at != SK_TimeWindow::kLongest; at += 8) {
    if (std::uint64_t const differences = LoadEight(a + at) ^ LoadEight(b + at)) {
      return at + static_cast<unsigned>(__builtin_ctzll(differences)) / 8;
    }
  }
  return SK_TimeWindow::kLongest;
}

// Where the last one ends; 0 if there is none.
std::size_t EndOfDifferences(char const* a, char const* b) {
  for (std::size_t end = SK_TimeWindow::kLongest; end != 0; end -= 8) {
    if (std::uint64_t const differences = LoadEight(a + end - 8) ^ LoadEight(b + end - 8)) {
      return end - static_cast<unsigned>(__builtin_clzll(differences)) / 8;
    }
  }
  return 0;
}

}  // namespace

void SK_TimeWindow::Set(char const* time, std::size_t length) {
  // Nowhere behind the last place of a window; that is where an equal time has its own.
  std::size_t at = std::min(FirstDifference(time, mBase), length - kSize);
  if (length != mLength || EndOfDifferences(time, mBase) > at + kSize) {
    std::memcpy(mBase, time, kLongest);
    mLength = length;
    mBaseID = gLastBaseID.fetch_add(1, std::memory_order_relaxed) + 1;
    at = length - kSize;
  }
  mStored[0] = static_cast<char>(at);
  std::memcpy(mStored + 1, time + at, kSize);
}

}  // namespace SK_PLUGIN
