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
  for (char* digit = first + last.digits; digit != first;) {
    *--digit = static_cast<char>('0' + rest % 10);
    rest /= 10;
  }
  if (value < 0 || rest != 0) {
    last.length = 0;
    return false;
  }
  return true;
}

// Makes the text of a time of the same day of the last one. Empty if that cannot be.
template <typename Time>
std::string_view TextFromLast(Time const& time, unsigned short length, unsigned short digits) {
  SK_LastTimeText<Time>& last = SK_LastTimeText<Time>::Get();
  if (last.length != length || last.digits != digits || length == 0 || !AreOnOneDay(time, last.time)) {
    return std::string_view();
  }
  if (!AreEqual(ClockOf(time), ClockOf(last.time)) && !ReplaceClock(last, ClockOf(time))) {
    return std::string_view();
  }
  if (digits != 0 && RestOf(time) != RestOf(last.time) && !ReplaceRest(last, RestOf(time))) {
    return std::string_view();
  }
  last.time = time;
  return last.View();
}

}  // namespace

SK_SampleTimeText::SK_SampleTimeText(TdjsonRootImpl const& root)
    : mTimeCodeUsed(root.IsTimeCodeUsed()), mUTCPrecision(root.GetUTCPrecision()), mTimeLength(root.GetTimeLength()) {}

std::string_view SK_SampleTimeText::MakeNew(SK_DateTimeSMPTE const& time) {
  std::string_view const text = TextFromLast(time, mTimeLength, DigitsOf(time));
  if (!text.empty()) {
    return text;
  }
  mText.clear();
  serializeTimeSMPTE(mText, time.hours, time.minutes, time.seconds, time.frames, DigitsOf(time));
  return Keep(time, 0, kLengthBeforeFrames);
}

std::string_view SK_SampleTimeText::MakeNew(SK_DateTimeUTC const& time) {
  std::string_view const text = TextFromLast(time, mTimeLength, mUTCPrecision);
  if (!text.empty()) {
    return text;
  }
  mText.clear();
  serializeTimeUTC(mText, time.year, time.month, time.day, time.hour, time.minute, time.second, time.offsetSign,
                   time.offsetHour, time.offsetMinute, time.fraction, mUTCPrecision);
  return Keep(time, mText.find('T') + 1, mText.find('.') + 1);
}

// `mText` is the text of the time.
template <typename Time>
std::string_view SK_SampleTimeText::Keep(Time const& time, std::size_t clockAt, std::size_t restAt) {
  if (mText.size() != mTimeLength) {
    return std::string_view();
  }
  if (mText.size() > SK_TimeWindow::kLongest) {
    return mText;
  }
  SK_LastTimeText<Time>& last = SK_LastTimeText<Time>::Get();
  last.time = time;
  last.length = mText.size();
  Clock const clock = ClockOf(time);
  last.clockAt = HaveTwoDigits(clock.hours, clock.minutes, clock.seconds) ? clockAt : SK_LastTimeText<Time>::kNoClock;
  last.restAt = restAt;
  last.digits = DigitsOf(time);
  std::memset(last.text, 0, sizeof(last.text));
  std::memcpy(last.text, mText.data(), mText.size());
  return last.View();
}

}  // namespace SK_PLUGIN
