#include "SK_SampleTimeText.h"

#include <cstring>

#include "SK_ClockText.h"
#include "SK_NumberAnalysis.h"
#include "SK_TimeWindow.h"
#include "TdjsonRootImpl.h"

namespace SK_PLUGIN {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DateTimeUTC;

namespace {

/// Hours, minutes and seconds with two digits each, and the colon behind each.
constexpr unsigned kLengthBeforeFrames = 9;

// What stands behind the second: frames, or a fraction.
int RestOf(SK_DateTimeSMPTE const& time) {
  return time.frames;
}
int RestOf(SK_DateTimeUTC const& time) {
  return time.fraction;
}

// What a clock shows, with two digits each if it can.
struct Clock {
  int hours;
  int minutes;
  int seconds;
};
Clock ClockOf(SK_DateTimeSMPTE const& time) {
  return {time.hours, time.minutes, time.seconds};
}
Clock ClockOf(SK_DateTimeUTC const& time) {
  return {time.hour, time.minute, time.second};
}

// Without a decision for each field: nearly all of them are the same nearly always.
bool AreEqual(Clock const& a, Clock const& b) {
  return ((a.seconds ^ b.seconds) | (a.minutes ^ b.minutes) | (a.hours ^ b.hours)) == 0;
}
bool AreOnOneDay(SK_DateTimeSMPTE const& /*a*/, SK_DateTimeSMPTE const& /*b*/) {
  return true;
}
bool AreOnOneDay(SK_DateTimeUTC const& a, SK_DateTimeUTC const& b) {
  return ((a.day ^ b.day) | (a.month ^ b.month) | (a.year ^ b.year) | (a.offsetSign ^ b.offsetSign) |
          (a.offsetHour ^ b.offsetHour) | (a.offsetMinute ^ b.offsetMinute)) == 0;
}

// Puts the time of day into the text. False, with the text as it was, for one of other than two digits each, and for
// a text that has others.
template <typename Time>
bool ReplaceClock(SK_LastTimeText<Time>& last, Clock const& clock) {
  if (last.clockAt == SK_LastTimeText<Time>::kNoClock || !HaveTwoDigits(clock.hours, clock.minutes, clock.seconds)) {
    return false;
  }
  PutClockText(last.text + last.clockAt, clock.hours, clock.minutes, clock.seconds);
  return true;
}

// Puts what stands behind the second into the text. False, with that text lost, for a value that does not fit.
template <typename Time>
bool ReplaceRest(SK_LastTimeText<Time>& last, int value) {
  unsigned rest = static_cast<unsigned>(value);
  char* const first = last.text + last.restAt;
  for (char* digit = first + last.form.digits; digit != first;) {
    *--digit = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  if (value < 0 || rest != 0) {
    last.form = SK_TimeForm();
    last.whole = SK_WaitingTime();
    return false;
  }
  return true;
}

// Makes the text of a time of the same day of the last one. False if that cannot be.
template <typename Time>
bool MakeFromLast(SK_LastTimeText<Time>& last, Time const& time, SK_TimeForm const& form) {
  if (form.DifferencesTo(last.form) != 0 || form.length == 0 || !AreOnOneDay(time, last.time)) {
    return false;
  }
  if (!AreEqual(ClockOf(time), ClockOf(last.time)) && !ReplaceClock(last, ClockOf(time))) {
    return false;
  }
  if (form.digits != 0 && RestOf(time) != RestOf(last.time) && !ReplaceRest(last, RestOf(time))) {
    return false;
  }
  last.time = time;
  last.window.Set(last.text, form.length);
  return true;
}

// Of what stands behind the second.
unsigned DigitsOf(TdjsonRootImpl const& root) {
  return root.IsTimeCodeUsed() ? root.GetTimeLength() - kLengthBeforeFrames : root.GetUTCPrecision();
}

}  // namespace

SK_SampleTimeText::SK_SampleTimeText(TdjsonRootImpl const& root)
    : mTimeCodeUsed(root.IsTimeCodeUsed()), mForm{root.GetTimeLength(), static_cast<std::uint16_t>(DigitsOf(root))} {}

SK_WaitingTime const& SK_SampleTimeText::MakeNew(SK_DateTimeSMPTE const& time) {
  SK_LastTimeText<SK_DateTimeSMPTE>& last = SK_LastTimeText<SK_DateTimeSMPTE>::Get();
  if (MakeFromLast(last, time, mForm)) {
    return last.whole;
  }
  mText.clear();
  serializeTimeSMPTE(mText, time.hours, time.minutes, time.seconds, time.frames, mForm.digits);
  return Keep(time, 0, kLengthBeforeFrames);
}

SK_WaitingTime const& SK_SampleTimeText::MakeNew(SK_DateTimeUTC const& time) {
  SK_LastTimeText<SK_DateTimeUTC>& last = SK_LastTimeText<SK_DateTimeUTC>::Get();
  if (MakeFromLast(last, time, mForm)) {
    return last.whole;
  }
  mText.clear();
  serializeTimeUTC(mText, time.year, time.month, time.day, time.hour, time.minute, time.second, time.offsetSign,
                   time.offsetHour, time.offsetMinute, time.fraction, mForm.digits);
  return Keep(time, mText.find('T') + 1, mText.find('.') + 1);
}

// `mText` is the text of the time.
template <typename Time>
SK_WaitingTime const& SK_SampleTimeText::Keep(Time const& time, std::size_t clockAt, std::size_t restAt) {
  if (mText.size() != mForm.length) {
    return mWhole = {};
  }
  if (!SK_TimeWindow::AreFor(mText.size())) {
    return mWhole = {mText};
  }
  SK_LastTimeText<Time>& last = SK_LastTimeText<Time>::Get();
  last.time = time;
  last.form = mForm;
  Clock const clock = ClockOf(time);
  last.clockAt = HaveTwoDigits(clock.hours, clock.minutes, clock.seconds) ? clockAt : SK_LastTimeText<Time>::kNoClock;
  last.restAt = restAt;
  std::memset(last.text, 0, sizeof(last.text));
  std::memcpy(last.text, mText.data(), mText.size());
  last.window.Set(last.text, mText.size());
  last.whole = {std::string_view(last.text, mText.size()), &last.window};
  return last.whole;
}

}  // namespace SK_PLUGIN
