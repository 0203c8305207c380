#include "SK_SampleTimeText.h"

#include <cstring>

#include "SK_NumberAnalysis.h"
#include "SK_TimeTail.h"
#include "TdjsonRootImpl.h"

namespace SK_PLUGIN {

namespace {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DateTimeUTC;

// Hours, minutes and seconds with two digits each, and the colon behind each.
constexpr std::size_t kLengthBeforeFrames = 9;

// What stands behind the second: frames, or a fraction.
int RestOf(SK_DateTimeSMPTE const& time) {
  return time.frames;
}
int RestOf(SK_DateTimeUTC const& time) {
  return time.fraction;
}

// Without a decision for each field: nearly all of them are the same nearly always.
bool AreInOneSecond(SK_DateTimeSMPTE const& a, SK_DateTimeSMPTE const& b) {
  return ((a.seconds ^ b.seconds) | (a.minutes ^ b.minutes) | (a.hours ^ b.hours)) == 0;
}
bool AreInOneSecond(SK_DateTimeUTC const& a, SK_DateTimeUTC const& b) {
  return ((a.second ^ b.second) | (a.minute ^ b.minute) | (a.hour ^ b.hour) | (a.day ^ b.day) | (a.month ^ b.month) |
          (a.year ^ b.year) | (a.offsetSign ^ b.offsetSign) | (a.offsetHour ^ b.offsetHour) |
          (a.offsetMinute ^ b.offsetMinute)) == 0;
}

// The text that was made last. Few samples begin a new second, and many streams get a sample at the same time.
template <typename Time>
struct LastText {
  Time time;
  std::size_t length;  // 0: none
  std::size_t restAt;
  unsigned short digits;            // of the rest; 0 if it has no place in the text
  char text[SK_TimeTail::kPadded];  // with zeroes behind it

  std::string_view View() const { return std::string_view(text, length); }

  // Puts what stands behind the second into the text. False, with that text lost, for a value that does not fit.
  bool Replace(int value) {
    unsigned rest = static_cast<unsigned>(value);
    char* const first = text + restAt;
    for (char* digit = first + digits; digit != first;) {
      *--digit = static_cast<char>('0' + rest % 10);
      rest /= 10;
    }
    if (value < 0 || rest != 0) {
      length = 0;
      return false;
    }
    return true;
  }
};

// Of the thread, so that streams share it although nothing is locked.
template <typename Time>
LastText<Time>& Last() {
  static thread_local LastText<Time> last = {};
  return last;
}

// The text of the time if it is the last one, or in the same second; else an empty one.
template <typename Time>
std::string_view TextFromLast(Time const& time, unsigned short length, unsigned short digits) {
  LastText<Time>& last = Last<Time>();
  if (last.length != length || last.digits != digits || length == 0 || !AreInOneSecond(time, last.time)) {
    return std::string_view();
  }
  if (digits != 0 && RestOf(time) != RestOf(last.time)) {
    if (!last.Replace(RestOf(time))) {
      return std::string_view();
    }
    last.time = time;
  }
  return last.View();
}

}  // namespace

SK_SampleTimeText::SK_SampleTimeText(TdjsonRootImpl const& root)
    : mTimeCodeUsed(root.IsTimeCodeUsed()), mUTCPrecision(root.GetUTCPrecision()), mTimeLength(root.GetTimeLength()) {}

std::string_view SK_SampleTimeText::Make(SK_DateTimeSMPTE const& time) {
  unsigned short const digits = static_cast<unsigned short>(mTimeLength - kLengthBeforeFrames);
  std::string_view const text = TextFromLast(time, mTimeLength, digits);
  if (!text.empty()) {
    return text;
  }
  mText.clear();
  serializeTimeSMPTE(mText, time.hours, time.minutes, time.seconds, time.frames, digits);
  return Keep(time, kLengthBeforeFrames, digits);
}

std::string_view SK_SampleTimeText::Make(SK_DateTimeUTC const& time) {
  std::string_view const text = TextFromLast(time, mTimeLength, mUTCPrecision);
  if (!text.empty()) {
    return text;
  }
  mText.clear();
  serializeTimeUTC(mText, time.year, time.month, time.day, time.hour, time.minute, time.second, time.offsetSign,
                   time.offsetHour, time.offsetMinute, time.fraction, mUTCPrecision);
  return Keep(time, mText.find('.') + 1, mUTCPrecision);
}

// `mText` is the text of the time.
template <typename Time>
std::string_view SK_SampleTimeText::Keep(Time const& time, std::size_t restAt, unsigned short digits) {
  if (mText.size() != mTimeLength) {
    return std::string_view();
  }
  if (mText.size() > SK_TimeTail::kLongest) {
    return mText;
  }
  LastText<Time>& last = Last<Time>();
  last.time = time;
  last.length = mText.size();
  last.restAt = restAt;
  last.digits = digits;
  std::memset(last.text, 0, sizeof(last.text));
  std::memcpy(last.text, mText.data(), mText.size());
  return last.View();
}

}  // namespace SK_PLUGIN
