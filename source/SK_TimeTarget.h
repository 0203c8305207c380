/// A time text that many others are compared with: it orders them as `SK_Utils::CompareTimeStrings` does, in a
/// few instructions where they have the format's own form.
#pragma once

#include <cstdint>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_TimeFormat.h"

namespace SK_NAMESPACE_INT {

class SK_TimeTarget {
 public:
  /// Both must outlive the object.
  SK_TimeTarget(std::string_view target, SK_TimeFormat const& format);

  /// Below 0 when the target is earlier than `text`, 0 when they are equal, above 0 when it is later.
  /// Exceptions of `std::stoi` pass.
  int Order(std::string_view text) const {
    if (mForm == kOther || text.size() != mTarget.size()) {
      return OrderOtherwise(text);
    }
    for (unsigned i = 0; i < mKeyCount; ++i) {
      std::uint64_t const key = KeyAt(text, i);
      if (key != mKeys[i]) {
        return mKeys[i] < key ? -1 : 1;
      }
    }
    return mForm == kDate ? 0 : OrderOfFrames(text);
  }

 private:
  enum eForm : std::uint8_t { kOther, kTimeCode, kDate };
  static constexpr unsigned kMostKeys = 3;
  static constexpr std::size_t kChunk = 8;

  std::uint64_t KeyAt(std::string_view text, unsigned i) const {
    return OrderKey(LoadEight(text.data() + i * kChunk) & mMasks[i]);
  }
  int OrderOfFrames(std::string_view text) const {
    std::uint64_t const digits = FrameDigits(text);
    if (AnyAboveNine(digits) != 0) {
      return OrderOtherwise(text);
    }
    std::uint64_t const frames = OrderKey(digits);
    return static_cast<int>(mFrames > frames) - static_cast<int>(mFrames < frames);
  }
  /// The digits of the frame number, which end the text.
  std::uint64_t FrameDigits(std::string_view text) const {
    return DigitsIn(text.data() + text.size() - kChunk, mFrameMask);
  }
  /// A number that orders like the 8 bytes that it is made of.
  static std::uint64_t OrderKey(std::uint64_t bytes) { return __builtin_bswap64(bytes); }
  int OrderOtherwise(std::string_view text) const;

  std::string_view mTarget;
  SK_TimeFormat const& mFormat;
  eForm mForm = kOther;
  unsigned mKeyCount = 0;
  std::uint64_t mMasks[kMostKeys] = {};  ///< which of 8 bytes count, for each key
  std::uint64_t mKeys[kMostKeys] = {};
  std::uint64_t mFrameMask = 0;
  std::uint64_t mFrames = 0;
};

}  // namespace SK_NAMESPACE_INT
