#include "SK_TimeTarget.h"

#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {
namespace {

// Which of 8 bytes count, the first byte the lowest; separators do not.
constexpr std::uint64_t kClockMask = 0xFFFF00FFFF00FFFFU;         // "23:59:59"
constexpr std::uint64_t kYearAndMonthMask = 0x00FFFF00FFFFFFFFU;  // "2015-12-"
constexpr std::uint64_t kDayToMinuteMask = 0xFFFF00FFFF00FFFFU;   // "31T23:59"
constexpr std::uint64_t kSecondMask = 0x0000000000FFFF00U;        // ":59.", with 4 digits of the fraction behind it
constexpr unsigned kFractionShift = 32;
constexpr std::size_t kMostFractionDigits = 4;

constexpr std::size_t kFrames = 9;  // where the frame number begins
constexpr std::size_t kThreeChunks = 24;

}  // namespace

SK_TimeTarget::SK_TimeTarget(std::string_view target, SK_TimeFormat const& format) : mTarget(target), mFormat(format) {
  std::size_t const precision = format.GetUTCInfo().precisionLength;
  if (format.IsTimeFormatSMPTE() && (target.size() == kFrames + 2 || target.size() == kFrames + 3)) {
    mMasks[0] = kClockMask;
    mKeyCount = 1;
    mFrameMask = MaskOfLast(static_cast<unsigned>(target.size() - kFrames));
    std::uint64_t const digits = FrameDigits(target);
    mFrames = OrderKey(digits);
    mForm = AnyAboveNine(digits) == 0 ? kTimeCode : kOther;
  } else if (format.IsTimeFormatUTC() && target.size() >= kThreeChunks && precision <= kMostFractionDigits) {
    mMasks[0] = kYearAndMonthMask;
    mMasks[1] = kDayToMinuteMask;
    mMasks[2] = kSecondMask | (((std::uint64_t{1} << (8 * precision)) - 1) << kFractionShift);
    mKeyCount = kMostKeys;
    mForm = kDate;
  }
  for (unsigned i = 0; i < mKeyCount; ++i) {
    mKeys[i] = KeyAt(target, i);
  }
}

int SK_TimeTarget::OrderOtherwise(std::string_view text) const {
  return SK_Utils::CompareTimeStrings(mTarget, text, mFormat);
}

}  // namespace SK_NAMESPACE_INT
