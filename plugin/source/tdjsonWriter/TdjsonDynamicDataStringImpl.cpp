#include "TdjsonDynamicDataStringImpl.h"

#include <string_view>

#include "SK_NumberAnalysis.h"
#include "Serializer.h"

namespace SK_PLUGIN {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DateTimeUTC;

TdjsonDynamicDataStringImpl::TdjsonDynamicDataStringImpl(void* key)
    : TdjsonDynamicDataImpl(key, SK_DumpSamplesUtils::eTimes::kShortenedUntilLong) {}

bool TdjsonDynamicDataStringImpl::Commit() {
  return CommitSamples([] {},
                       [this](Serializer& serializer, SK_DumpSamplesUtils& dump) {
                         serializer.serialize_PaddedStrDynamicSamples(mDynamicDataFields.sampleSetID, dump,
                                                                      mSampleCounter, mStringProperties);
                       });
}

bool TdjsonDynamicDataStringImpl::AddSample(SampleTime const& time, std::string const& value) {
  return TakeAtTime(
      time,
      [&](SK_DateTimeSMPTE const& at) {
        return ThrowOnFailure([&](void* result) {
          return addSampleSMPTE(at.hours, at.minutes, at.seconds, at.frames, value.c_str(), result);
        });
      },
      [&](SK_DateTimeUTC const& at) {
        return ThrowOnFailure([&](void* result) {
          return addSampleUTC(at.year, at.month, at.day, at.hour, at.minute, at.second, at.offsetSign, at.offsetHour,
                              at.offsetMinute, at.fraction, value.c_str(), result);
        });
      });
}

void TdjsonDynamicDataStringImpl::setStringProperties(unsigned long long, unsigned long long, unsigned char eventMarker,
                                                      void* result) {
  RunAtWriterBorder(result, [&] {
    mStringProperties.maxLen = 0;
    mStringProperties.maxDigitsInStrLength = 0;
    mStringProperties.eventMarkerB = eventMarker != 0;
  });
}

/// A sample that is not taken leaves no trace in the widths: its time is looked at first. Part of the border forms, and
/// the time in front of what calls others, so that its fields stay in registers.
template <typename Time>
[[gnu::always_inline]] inline bool TdjsonDynamicDataStringImpl::TakeSample(Time const& time, char const* value) {
  if (!IsOpenFor(time)) {
    return false;
  }
  RequireText(value);
  SK_WaitingTime const& timeText = TimeText(time);
  if (timeText.text.empty()) {
    return false;
  }
  std::string_view const text = EscapeInto(value, mEscapedValue);
  // Most texts are no longer than one before them.
  if (text.size() > mStringProperties.maxLen || mStringProperties.maxDigitsInStrLength == 0) {
    unsigned long long maxLength = mStringProperties.maxLen;
    unsigned long long maxDigits = mStringProperties.maxDigitsInStrLength;
    calcPaddedStringProperties(text, maxLength, maxDigits);
    mStringProperties.maxLen = maxLength;
    mStringProperties.maxDigitsInStrLength = maxDigits;
  }
  StoreText(timeText, text);
  return true;
}

bool TdjsonDynamicDataStringImpl::addSampleSMPTE(int hours, int minutes, int seconds, int frames, char const* value,
                                                 void* result) {
  return RunSampleStep(result, [&] { return TakeSample(SK_DateTimeSMPTE{hours, minutes, seconds, frames}, value); });
}

bool TdjsonDynamicDataStringImpl::addSampleUTC(int year, int month, int day, int hour, int minute, int second,
                                               signed char zoneSign, int zoneHours, int zoneMinutes, int fraction,
                                               char const* value, void* result) {
  return RunSampleStep(result, [&] {
    return TakeSample(
        SK_DateTimeUTC{year, month, day, hour, minute, second, zoneSign, zoneHours, zoneMinutes, fraction}, value);
  });
}

ns_sensor::SK_StringProperties const& TdjsonDynamicDataStringImpl::GetPaddedStringProperties() const {
  return mStringProperties;
}

void TdjsonDynamicDataStringImpl::SetStringProperties(ns_sensor::SK_StringProperties const& properties) {
  ThrowOnFailure([&](void* result) {
    setStringProperties(properties.maxLen, properties.maxDigitsInStrLength, properties.eventMarkerB ? 1 : 0, result);
  });
}

}  // namespace SK_PLUGIN
