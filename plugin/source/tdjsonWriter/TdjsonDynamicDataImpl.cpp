#include "TdjsonDynamicDataImpl.h"

#include <memory>

#include "SK_Error.h"
#include "SK_NumberAnalysis.h"
#include "SK_Utils.h"
#include "SK_WriterCode.h"
#include "Serializer.h"
#include "TdjsonRootImpl.h"

namespace SK_PLUGIN {

namespace {

std::shared_ptr<TdjsonRootImpl> RootWithTimeBase(void* key) {
  std::shared_ptr<TdjsonRootImpl> root = TdjsonRootImpl::GetRoot(key);
  if (!root) {
    ThrowWriterError(kNoRoot);
  }
  if (!root->IsDynamicSamplesPresent()) {
    ThrowWriterError(kNoDynamicSamples);
  }
  return root;
}

}  // namespace

TdjsonDynamicDataImpl::TdjsonDynamicDataImpl(void* key, SK_DumpSamplesUtils::eTimes times)
    : mConverterKey(key), mTimeText(*RootWithTimeBase(key)) {
  mDumpSamples.SetTimeLength(mTimeText.Length(), times);
}

void TdjsonDynamicDataImpl::SetSampleCount(unsigned long long sampleCount) {
  if (!mCommitted) {
    mDynamicDataFields.sampleCount = sampleCount;
  }
}

unsigned long long TdjsonDynamicDataImpl::GetSampleCount() const {
  return mDynamicDataFields.sampleCount;
}

void TdjsonDynamicDataImpl::setDynamicDataInfo(char const* displayName, char const* matchName, char const* sampleSetID,
                                               unsigned long long sampleCount, unsigned interpolation,
                                               unsigned char hasExpectedFrequency,
                                               char const* expectedMaxInterSampleDuration, void* result) {
  RunAtWriterBorder(result, [&] {
    if (!SK_NAMESPACE_INT::SK_Utils::IsValidMatchName(matchName)) {
      ThrowWriterError(kWriterBadMatchName);
    }
    ns_sensor::SK_DynamicDataFields& fields = mDynamicDataFields;
    fields.interpolation = static_cast<ns_sensor::eInterpolationType>(interpolation & 0xFFu);
    if (fields.interpolation != ns_sensor::kLinearInterpolation &&
        fields.interpolation != ns_sensor::kHoldInterpolation) {
      ThrowWriterError(kBadInterpolation);
    }
    fields.displayName = escapeHandling(RequireText(displayName));
    fields.matchName = matchName;
    fields.sampleSetID = escapeHandling(RequireText(sampleSetID));
    fields.sampleCount = sampleCount;
    fields.hasExpectedFrequencyB = hasExpectedFrequency != 0;
    fields.expectedMaxInterSampleDuration = escapeHandling(RequireText(expectedMaxInterSampleDuration));
  });
}

ns_sensor::SK_DynamicDataFields const& TdjsonDynamicDataImpl::GetDynamicDataFields() const {
  return mDynamicDataFields;
}

bool TdjsonDynamicDataImpl::isDirty() {
  return mIsDirty;
}

void TdjsonDynamicDataImpl::SetDynamicDataInfo(ns_sensor::SK_DynamicDataFields const& fields) {
  ThrowOnFailure([&](void* result) {
    setDynamicDataInfo(fields.displayName.c_str(), fields.matchName.c_str(), fields.sampleSetID.c_str(),
                       fields.sampleCount, fields.interpolation, fields.hasExpectedFrequencyB ? 1 : 0,
                       fields.expectedMaxInterSampleDuration.c_str(), result);
  });
}

bool TdjsonDynamicDataImpl::CommitSamples(std::function<void()> const& complete,
                                          std::function<void(Serializer&, SK_DumpSamplesUtils&)> const& serialize) {
  RefuseIfDirty();
  if (mCommitted) {
    return false;
  }
  try {
    complete();
    if (mDynamicDataFields.sampleCount == 0) {
      mDynamicDataFields.sampleCount = mSampleCounter;
    }
    serialize(TdjsonRootImpl::GetSerializer(mConverterKey), mDumpSamples);
    mCommitted = true;
    mDumpSamples.ClearDump();
    return true;
  } catch (...) {
    mDumpSamples.ClearDump();
    // A roll-back that fails takes the whole file with it, and is what the caller hears of.
    TdjsonRootImpl::GetSerializer(mConverterKey).clearDynamicSamples();
    throw;
  }
}

void TdjsonDynamicDataImpl::ThrowUnknownKindOfTime() {
  SK_NAMESPACE_INT::ThrowError({kEmptySampleTime, SK_Message::kConverterFailure, -1, -1});
}

void TdjsonDynamicDataImpl::ThrowDirty() {
  ThrowWriterError(kDynamicNodeUnusable);
}

void TdjsonDynamicDataImpl::LoseSamples() noexcept {
  mDumpSamples.ClearDump();
  mIsDirty = true;
}

}  // namespace SK_PLUGIN
