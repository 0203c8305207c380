#include "TdjsonDynamicDataNumArrImpl.h"

#include "SK_NumberAnalysis.h"
#include "SK_NumberPropertyRules.h"
#include "SK_PackedNumber.h"
#include "Serializer.h"

namespace SK_PLUGIN {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DateTimeUTC;

namespace {

/// With the comma.
constexpr std::size_t kElementRoom = 1 + SK_WriterNumberText::kRoom;

/// So many elements are no more than 65,535 bytes in either form, which is what a record can say of its value. It is
/// the texts whose length decides what is lost of longer ones.
constexpr std::size_t kMostPackedElements = 65535 / (1 + SK_WriterNumberText::kLongest);

}  // namespace

TdjsonDynamicDataNumArrImpl::TdjsonDynamicDataNumArrImpl(void* key)
    : TdjsonDynamicDataImpl(key, SK_DumpSamplesUtils::eTimes::kShortened) {}

bool TdjsonDynamicDataNumArrImpl::Commit() {
  return CommitSamples(
      [this] {
        ns_sensor::SK_NumberArrayProperties& properties = mNumberArrayProperties;
        if (mLegalAutomatic) {
          CopyOccurringToLegal(properties.arrayRanges);
        }
        if (properties.arrayDisplayNames.empty()) {
          AppendNumberedNames(properties.arrayDisplayNames, mDynamicDataFields.displayName, properties.arraySize);
        }
      },
      [this](Serializer& serializer, SK_DumpSamplesUtils& dump) {
        serializer.serialize_NumArrDynamicSamples(mDynamicDataFields.sampleSetID, dump, mSampleCounter,
                                                  mNumberArrayProperties);
      });
}

bool TdjsonDynamicDataNumArrImpl::AddSample(SampleTime const& time, std::vector<double> const& values) {
  for (double const value : values) {
    AddElement(value);
  }
  return TakeAtTime(
      time,
      [this](SK_DateTimeSMPTE const& at) {
        return ThrowOnFailure(
            [&](void* result) { return addTimeSMPTE(at.hours, at.minutes, at.seconds, at.frames, result); });
      },
      [this](SK_DateTimeUTC const& at) {
        return ThrowOnFailure([&](void* result) {
          return addTimeUTC(at.year, at.month, at.day, at.hour, at.minute, at.second, at.offsetSign, at.offsetHour,
                            at.offsetMinute, at.fraction, result);
        });
      });
}

void TdjsonDynamicDataNumArrImpl::setNumberPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal,
                                                   unsigned char isSigned, void* result) {
  RunAtWriterBorder(result, [&] {
    if (StoreNumberPattern(mNumberArrayProperties.pattern, digitsInteger, digitsDecimal, isSigned)) {
      mPatternAutomatic = true;
    }
  });
}

void TdjsonDynamicDataNumArrImpl::setNumberRange(double legalMin, double legalMax, double occurringMin,
                                                 double occurringMax, void* result) {
  RunAtWriterBorder(result, [&] {
    AppendNumberRange(mNumberArrayProperties.arrayRanges,
                      MakeNumberRange(legalMin, legalMax, occurringMin, occurringMax), mOccurringAutomatic,
                      mLegalAutomatic);
  });
}

void TdjsonDynamicDataNumArrImpl::setArrCount(unsigned long long count, void* result) {
  RunAtWriterBorder(result, [&] { mNumberArrayProperties.arraySize = count; });
}

void TdjsonDynamicDataNumArrImpl::setIsPoint(unsigned char isPoint, void* result) {
  RunAtWriterBorder(result, [&] { mNumberArrayProperties.isPoint = isPoint != 0; });
}

void TdjsonDynamicDataNumArrImpl::setDisplayName(char const* name, void* result) {
  RunAtWriterBorder(result,
                    [&] { mNumberArrayProperties.arrayDisplayNames.push_back(escapeHandling(RequireText(name))); });
}

bool TdjsonDynamicDataNumArrImpl::addTimeSMPTE(int hours, int minutes, int seconds, int frames, void* result) {
  return TakeElements(SK_DateTimeSMPTE{hours, minutes, seconds, frames}, result);
}

bool TdjsonDynamicDataNumArrImpl::addTimeUTC(int year, int month, int day, int hour, int minute, int second,
                                             signed char zoneSign, int zoneHours, int zoneMinutes, int fraction,
                                             void* result) {
  return TakeElements(
      SK_DateTimeUTC{year, month, day, hour, minute, second, zoneSign, zoneHours, zoneMinutes, fraction}, result);
}

bool TdjsonDynamicDataNumArrImpl::addElement(double value, void* result) {
  return RunSampleStep(result, [&] {
    mElements.push_back(value);
    return true;
  });
}

ns_sensor::SK_NumberArrayProperties const& TdjsonDynamicDataNumArrImpl::GetNumArrayProperties() const {
  return mNumberArrayProperties;
}

void TdjsonDynamicDataNumArrImpl::SetNumberPattern(ns_sensor::SK_NumberPattern const& pattern) {
  ThrowOnFailure([&](void* result) {
    setNumberPattern(pattern.digitsInteger, pattern.digitsDecimal, pattern.isSigned ? 1 : 0, result);
  });
}

void TdjsonDynamicDataNumArrImpl::SetNumberRange(ns_sensor::SK_NumberRange const& range) {
  ThrowOnFailure([&](void* result) {
    setNumberRange(range.legal.min, range.legal.max, range.occurring.min, range.occurring.max, result);
  });
}

void TdjsonDynamicDataNumArrImpl::SetArrCount(std::uint64_t count) {
  ThrowOnFailure([&](void* result) { setArrCount(count, result); });
}

void TdjsonDynamicDataNumArrImpl::SetIsPoint(bool isPoint) {
  ThrowOnFailure([&](void* result) { setIsPoint(isPoint ? 1 : 0, result); });
}

void TdjsonDynamicDataNumArrImpl::SetDisplayName(std::string const& name) {
  ThrowOnFailure([&](void* result) { setDisplayName(name.c_str(), result); });
}

bool TdjsonDynamicDataNumArrImpl::AddElement(double value) {
  return ThrowOnFailure([&](void* result) { return addElement(value, result); });
}

/// Uses the elements up, whatever becomes of the sample, so that the next one starts empty.
template <typename Time>
bool TdjsonDynamicDataNumArrImpl::TakeElements(Time const& time, void* result) {
  bool const taken = RunSampleStep(result, [&] { return TakeSample(time); });
  mElements.clear();
  return taken;
}

/// A sample that is not taken leaves no trace in pattern and ranges: its count and time are looked at first.
template <typename Time>
bool TdjsonDynamicDataNumArrImpl::TakeSample(Time const& time) {
  if (!IsOpenFor(time) || mElements.size() != mNumberArrayProperties.arraySize) {
    return false;
  }
  SK_WaitingTime const& timeText = TimeText(time);
  if (timeText.text.empty()) {
    return false;
  }
  if (mOccurringAutomatic) {
    WidenOccurringRanges(mNumberArrayProperties.arrayRanges, mElements);
  }
  mHasLongArrays = mHasLongArrays || mElements.size() > kMostPackedElements;
  if (mHasLongArrays) {
    StoreSample(timeText, ElementTexts());
    return true;
  }
  auto const put = [this](char* out) { return PutElements(out); };
  if (mElements.size() * kElementRoom <= SK_DumpSamplesUtils::kPutRoom) {
    PutSample(timeText, put);
    return true;
  }
  mValueText.Clear();
  char* const start = mValueText.Grow(mElements.size() * kElementRoom);
  StoreSample(timeText, std::string_view(start, static_cast<std::size_t>(put(start) - start)));
  return true;
}

/// The elements as texts with commas between them. Also of short arrays behind a long one: what is read there may be
/// anything, but no packed number.
std::string_view TdjsonDynamicDataNumArrImpl::ElementTexts() {
  mValueText.Clear();
  for (double const element : mElements) {
    SK_WriterNumberText const text(element);
    WidenNumberPattern(mNumberArrayProperties.pattern, mPatternAutomatic, element, text.Counts());
    if (mValueText.Size() != 0) {
      mValueText.Put(',');
    }
    mValueText.Put(text.View());
  }
  return mValueText.View();
}

/// The elements as a record has them, with commas between them.
char* TdjsonDynamicDataNumArrImpl::PutElements(char* out) {
  // A copy, because the compiler has to think that bytes are written over the pattern itself.
  ns_sensor::SK_NumberPattern pattern = mNumberArrayProperties.pattern;
  char* end = out;
  for (double const element : mElements) {
    *end = ',';
    end = PackNumber(end + (end == out ? 0 : 1), element, pattern, mPatternAutomatic);
  }
  mNumberArrayProperties.pattern = pattern;
  return end;
}

}  // namespace SK_PLUGIN
