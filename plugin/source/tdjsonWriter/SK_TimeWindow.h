/// Times of samples that follow each other mostly differ in a few characters that stand together, so a sample that
/// waits for its commit keeps no more of its time than these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace SK_PLUGIN {

/// The four characters of a time that make it of another one, its base, and how they are stored. Many streams have a
/// sample at each time, so the window is made once for all of them; each needs the base only if that is not the one of
/// its sample before.
class SK_TimeWindow {
 public:
  static constexpr std::size_t kSize = 4;  ///< bytes of a window
  /// The shortest and the longest times that have windows.
  static constexpr std::size_t kShortest = kSize;
  static constexpr std::size_t kLongest = 32;
  static constexpr bool AreFor(std::size_t length) { return length >= kShortest && length <= kLongest; }

  /// Bytes that may change where a base and a window are stored, and how far what is stored is read.
  static constexpr std::size_t kRoom = 1 + kLongest + 8;
  static constexpr std::size_t kStoredSize = 1 + kSize;  ///< bytes of a window as it is stored: its place, and itself
  /// Stands in front of a base, and is no place of a window.
  static constexpr char kIsBase = '\x7F';

  /// The window of a time. The base is that of the call before if it can be, else the time itself.
  /// time   of a length that has windows, in memory of `kLongest` bytes, with zeroes behind it.
  void Set(char const* time, std::size_t length);

  /// Tells the base from all others of the process; never 0.
  std::uint64_t BaseID() const { return mBaseID; }

  // Both give the end of what they store.

  char* PutBase(char* out) const {
    *out = kIsBase;
    std::memcpy(out + 1, mBase, kLongest);
    return out + 1 + mLength;
  }
  char* Put(char* out) const {
    std::memcpy(out, mStored, sizeof(mStored));
    return out + kStoredSize;
  }

 private:
  char mBase[kLongest] = {};  // with zeroes behind it
  char mStored[8] = {};       // eight, because that is one store
  std::size_t mLength = 0;    // 0: there is no base
  std::uint64_t mBaseID = 0;
};

/// The text of a sample's time, good as long as the one who made it says.
struct SK_WaitingTime {
  std::string_view text;
  SK_TimeWindow const* window = nullptr;  ///< null for a text of a length that has none
};

}  // namespace SK_PLUGIN
