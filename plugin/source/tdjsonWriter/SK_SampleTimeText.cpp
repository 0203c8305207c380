#include "SK_SampleTimeText.h"

#include "SK_NumberAnalysis.h"
#include "TdjsonRootImpl.h"

namespace SK_PLUGIN {

namespace {

// Hours, minutes and seconds with two digits each, and the colon behind each.
constexpr int kLengthBeforeFrames = 9;

}  // namespace

SK_SampleTimeText::SK_SampleTimeText(TdjsonRootImpl const& root)
    : mTimeCodeUsed(root.IsTimeCodeUsed()), mUTCPrecision(root.GetUTCPrecision()), mTimeLength(root.GetTimeLength()) {}

std::string_view SK_SampleTimeText::Make(ns_sensor::SK_DateTimeSMPTE const& time) {
  mText.clear();
  serializeTimeSMPTE(mText, time.hours, time.minutes, time.seconds, time.frames,
                     static_cast<unsigned short>(mTimeLength - kLengthBeforeFrames));
  return Fitting();
}

std::string_view SK_SampleTimeText::Make(ns_sensor::SK_DateTimeUTC const& time) {
  mText.clear();
  serializeTimeUTC(mText, time.year, time.month, time.day, time.hour, time.minute, time.second, time.offsetSign,
                   time.offsetHour, time.offsetMinute, time.fraction, mUTCPrecision);
  return Fitting();
}

std::string_view SK_SampleTimeText::Fitting() const {
  return mText.size() == mTimeLength ? std::string_view(mText) : std::string_view();
}

}  // namespace SK_PLUGIN
