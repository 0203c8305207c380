/// Times of samples that follow each other mostly differ in their last characters alone, so a sample that waits for
/// its commit keeps no more of its time than these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "SK_EightBytes.h"

namespace SK_PLUGIN {

/// The last time, in the order of writing or, in another object, in that of reading. All times have one length. The
/// tail of a time is its end, from the first character on that is new.
class SK_TimeTail {
 public:
  /// The longest times that have tails.
  static constexpr std::size_t kLongest = 32;
  /// How far a time that is given is read: zeroes stand behind its end.
  static constexpr std::size_t kPadded = 2 * kLongest;
  /// How far what is behind a tail is read, and may change while it is stored.
  static constexpr std::size_t kRoom = kLongest;

  /// There is no last time.
  void Reset(std::size_t length) {
    mLength = length;
    std::memset(mText, 0, sizeof(mText));
  }

  std::string_view Text() const { return std::string_view(mText, mLength); }

  /// Stores the tail of a time, which is the last one from now on, and gives its length.
  std::size_t Put(char* out, char const* time) {
    std::size_t const same = FirstDifference(time);
    Copy(out, time + same, mLength - same);
    std::memcpy(mText, time, kLongest);
    return mLength - same;
  }

  /// Reads a time by its tail. False for what is none.
  bool Take(char const* tail, std::size_t length) {
    if (length > mLength) {
      return false;
    }
    Copy(mText + mLength - length, tail, length);
    return true;
  }

 private:
  static constexpr std::size_t kFew = 16;  // bytes, of the tails that most times have

  // Without a loop; changes more than it copies.
  static void Copy(char* out, char const* from, std::size_t count) {
    std::memcpy(out, from, kFew);
    if (count > kFew) {
      std::memcpy(out + kFew, from + kFew, kLongest - kFew);
    }
  }

  // Where `time` begins to differ from the last one; its end if nowhere.
  std::size_t FirstDifference(char const* time) const {
    constexpr std::size_t kWord = sizeof(std::uint64_t);
    for (std::size_t at = 0; at != kLongest; at += kWord) {
      std::uint64_t const changed = SK_NAMESPACE_INT::LoadEight(time + at) ^ SK_NAMESPACE_INT::LoadEight(mText + at);
      if (changed != 0) {
        return at + static_cast<unsigned>(__builtin_ctzll(changed)) / 8;
      }
    }
    return mLength;
  }

  char mText[kPadded] = {};  // while writing nothing but zeroes behind the end of the time
  std::size_t mLength = 0;
};

}  // namespace SK_PLUGIN
