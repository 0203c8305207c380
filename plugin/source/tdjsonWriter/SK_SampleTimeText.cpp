#include "SK_SampleTimeText.h"

#include "SK_NumberAnalysis.h"
#include "TdjsonRootImpl.h"

namespace SK_PLUGIN {

namespace {

// Hours, minutes and seconds with two digits each, and the colon behind each.
constexpr std::size_t kLengthBeforeFrames = 9;

bool AreInOneSecond(ns_sensor::SK_DateTimeSMPTE const& a, ns_sensor::SK_DateTimeSMPTE const& b) {
  return a.seconds == b.seconds && a.minutes == b.minutes && a.hours == b.hours;
}

bool AreInOneSecond(ns_sensor::SK_DateTimeUTC const& a, ns_sensor::SK_DateTimeUTC const& b) {
  return a.second == b.second && a.minute == b.minute && a.hour == b.hour && a.day == b.day && a.month == b.month &&
         a.year == b.year && a.offsetSign == b.offsetSign && a.offsetHour == b.offsetHour &&
         a.offsetMinute == b.offsetMinute;
}

}  // namespace

SK_SampleTimeText::SK_SampleTimeText(TdjsonRootImpl const& root)
    : mTimeCodeUsed(root.IsTimeCodeUsed()), mUTCPrecision(root.GetUTCPrecision()), mTimeLength(root.GetTimeLength()) {}

std::string_view SK_SampleTimeText::Make(ns_sensor::SK_DateTimeSMPTE const& time) {
  unsigned short const digits = static_cast<unsigned short>(mTimeLength - kLengthBeforeFrames);
  if (mLast == eKind::kSMPTE && AreInOneSecond(time, mLastSMPTE) && Replace(kLengthBeforeFrames, digits, time.frames)) {
    return mText;
  }
  mText.clear();
  serializeTimeSMPTE(mText, time.hours, time.minutes, time.seconds, time.frames, digits);
  mLastSMPTE = time;
  mLast = mText.size() == mTimeLength ? eKind::kSMPTE : eKind::kNone;
  return Fitting();
}

std::string_view SK_SampleTimeText::Make(ns_sensor::SK_DateTimeUTC const& time) {
  if (mLast == eKind::kUTC && AreInOneSecond(time, mLastUTC) && Replace(mFractionAt, mUTCPrecision, time.fraction)) {
    return mText;
  }
  mText.clear();
  serializeTimeUTC(mText, time.year, time.month, time.day, time.hour, time.minute, time.second, time.offsetSign,
                   time.offsetHour, time.offsetMinute, time.fraction, mUTCPrecision);
  mLastUTC = time;
  mFractionAt = mText.find('.') + 1;
  mLast = mText.size() == mTimeLength && mFractionAt != 0 ? eKind::kUTC : eKind::kNone;
  return Fitting();
}

bool SK_SampleTimeText::Replace(std::size_t at, unsigned short digits, int value) {
  unsigned rest = static_cast<unsigned>(value);
  char* const first = mText.data() + at;
  for (char* digit = first + digits; digit != first;) {
    *--digit = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  if (value < 0 || rest != 0) {
    mLast = eKind::kNone;
    return false;
  }
  return true;
}

std::string_view SK_SampleTimeText::Fitting() const {
  return mText.size() == mTimeLength ? std::string_view(mText) : std::string_view();
}

}  // namespace SK_PLUGIN
