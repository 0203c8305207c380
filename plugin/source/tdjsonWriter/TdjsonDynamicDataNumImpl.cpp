#include "TdjsonDynamicDataNumImpl.h"

#include "SK_NumberAnalysis.h"
#include "SK_NumberPropertyRules.h"
#include "SK_PackedNumber.h"
#include "Serializer.h"

namespace SK_PLUGIN {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DateTimeUTC;

TdjsonDynamicDataNumImpl::TdjsonDynamicDataNumImpl(void* key)
    : TdjsonDynamicDataImpl(key, SK_DumpSamplesUtils::eTimes::kShortened) {}

bool TdjsonDynamicDataNumImpl::Commit() {
  return CommitSamples(
      [this] {
        if (mLegalAutomatic) {
          mNumberProperties.range.legal = mNumberProperties.range.occurring;
        }
      },
      [this](Serializer& serializer, SK_DumpSamplesUtils& dump) {
        serializer.serialize_NumDynamicSamples(mDynamicDataFields.sampleSetID, dump, mSampleCounter, mNumberProperties);
      });
}

bool TdjsonDynamicDataNumImpl::AddSample(SampleTime const& time, double const& value) {
  return TakeAtTime(
      time,
      [&](SK_DateTimeSMPTE const& at) {
        return ThrowOnFailure(
            [&](void* result) { return addSampleSMPTE(at.hours, at.minutes, at.seconds, at.frames, value, result); });
      },
      [&](SK_DateTimeUTC const& at) {
        return AddSampleUTC(at.year, at.month, at.day, at.hour, at.minute, at.second, at.offsetSign, at.offsetHour,
                            at.offsetMinute, at.fraction, value);
      });
}

void TdjsonDynamicDataNumImpl::setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                                unsigned char isSigned, void* result) {
  RunAtWriterBorder(result, [&] {
    if (StoreNumberPattern(mNumberProperties.pattern, digitsInteger, digitsDecimal, isSigned)) {
      mPatternAutomatic = true;
    }
  });
}

void TdjsonDynamicDataNumImpl::setNumberRange(double legalMin, double legalMax, double occurringMin,
                                              double occurringMax, void* result) {
  RunAtWriterBorder(result, [&] {
    mNumberProperties.range = MakeNumberRange(legalMin, legalMax, occurringMin, occurringMax);
    if (IsOccurringAutomatic(mNumberProperties.range.occurring)) {
      mOccurringAutomatic = true;
    }
    if (IsLegalAutomatic(mNumberProperties.range.legal)) {
      mLegalAutomatic = true;
    }
  });
}

bool TdjsonDynamicDataNumImpl::addSampleSMPTE(int hours, int minutes, int seconds, int frames, double value,
                                              void* result) {
  return RunSampleStep(result, [&] { return TakeSample(SK_DateTimeSMPTE{hours, minutes, seconds, frames}, value); });
}

bool TdjsonDynamicDataNumImpl::addSampleUTC(int year, int month, int day, int hour, int minute, int second,
                                            signed char zoneSign, int zoneHours, int zoneMinutes, int fraction,
                                            double value, void* result) {
  return RunSampleStep(result, [&] {
    return TakeSample(
        SK_DateTimeUTC{year, month, day, hour, minute, second, zoneSign, zoneHours, zoneMinutes, fraction}, value);
  });
}

ns_sensor::SK_NumberProperties const& TdjsonDynamicDataNumImpl::GetNumStringProperties() const {
  return mNumberProperties;
}

bool TdjsonDynamicDataNumImpl::AddSampleUTC(int year, int month, int day, int hour, int minute, int second,
                                            signed char zoneSign, int zoneHours, int zoneMinutes, int fraction,
                                            double value) {
  return ThrowOnFailure([&](void* result) {
    return addSampleUTC(year, month, day, hour, minute, second, zoneSign, zoneHours, zoneMinutes, fraction, value,
                        result);
  });
}

void TdjsonDynamicDataNumImpl::SetNumberPattern(ns_sensor::SK_NumberPattern const& pattern) {
  ThrowOnFailure([&](void* result) {
    setNumberPattern(pattern.digitsInteger, pattern.digitsDecimal, pattern.isSigned ? 1 : 0, result);
  });
}

void TdjsonDynamicDataNumImpl::SetNumberRange(ns_sensor::SK_NumberRange const& range) {
  ThrowOnFailure([&](void* result) {
    setNumberRange(range.legal.min, range.legal.max, range.occurring.min, range.occurring.max, result);
  });
}

/// A sample that is not taken leaves no trace in pattern and range: its time is looked at first.
template <typename Time>
bool TdjsonDynamicDataNumImpl::TakeSample(Time const& time, double value) {
  if (!IsOpenFor(time)) {
    return false;
  }
  SK_WaitingTime const& timeText = TimeText(time);
  if (timeText.text.empty()) {
    return false;
  }
  if (mOccurringAutomatic) {
    calcOccurringRangeForSet(value, mNumberProperties.range.occurring.min, mNumberProperties.range.occurring.max);
  }
  PutSample(timeText, [&](char* out) { return PackNumber(out, value, mNumberProperties.pattern, mPatternAutomatic); });
  return true;
}

}  // namespace SK_PLUGIN
