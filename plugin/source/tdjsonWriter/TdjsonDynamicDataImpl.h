/// What every stream of samples has: its description, how far it has come, and where its samples wait.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include "ITdjsonDynamicData_I.h"
#include "SK_DumpSamplesUtils.h"
#include "SK_SampleTimeText.h"
#include "SK_WriterFailure.h"
#include "senmark/SK_Records.h"
#include "senmark/SK_SampleTime.h"

namespace SK_PLUGIN {

class Serializer;

/// Collecting, until a sample fails (dirty, for good) or `Commit` succeeds.
class TdjsonDynamicDataImpl : public virtual ITdjsonDynamicData_I {
 public:
  void SetSampleCount(unsigned long long sampleCount) override;
  unsigned long long GetSampleCount() const override;
  void setDynamicDataInfo(char const* displayName, char const* matchName, char const* sampleSetID,
                          unsigned long long sampleCount, unsigned interpolation, unsigned char hasExpectedFrequency,
                          char const* expectedMaxInterSampleDuration, void* result) override;

  virtual ns_sensor::SK_DynamicDataFields const& GetDynamicDataFields() const;
  /// A sample failed: the node's data is lost.
  virtual bool isDirty();

  /// The mirror of the border form; throws an `SK_Exception`.
  void SetDynamicDataInfo(ns_sensor::SK_DynamicDataFields const& fields);

 protected:
  /// Its texts are escaped already.
  ns_sensor::SK_DynamicDataFields mDynamicDataFields;
  bool mIsDirty = false;
  std::uint64_t mSampleCounter = 0;  ///< samples that were taken
  bool mCommitted = false;

  /// `SK_PluginException` 2005 without a root under `key`, 2028 if the root has no time base.
  explicit TdjsonDynamicDataImpl(void* key, SK_DumpSamplesUtils::eTimes times = SK_DumpSamplesUtils::eTimes::kWhole);

  /// The frame of every border form that brings samples: `step` says whether it took what it was given. After
  /// a failure the node is dirty. Part of the form, as the border is.
  template <typename Step>
  [[gnu::always_inline]] inline bool RunSampleStep(void* result, Step&& step) noexcept {
    bool taken = false;
    RunAtWriterBorder(
        result, [&] { taken = std::forward<Step>(step)(); }, [this] { LoseSamples(); });
    return taken;
  }
  /// Whether a sample with a time of this kind can be taken. `SK_PluginException` 2001 for a dirty node.
  template <typename Time>
  bool IsOpenFor(Time const& time) const {
    RefuseIfDirty();
    return mTimeText.IsOfKind(time);
  }
  /// The text of such a time; empty for one that is not of the file's length.
  template <typename Time>
  SK_WaitingTime const& TimeText(Time const& time) {
    return mTimeText.Make(time);
  }
  /// Hands the fields of a time to the one of two that takes its kind. `SK_Exception` 2009 for a kind that
  /// only the module that calls knows.
  template <typename TakeSMPTE, typename TakeUTC>
  static bool TakeAtTime(SampleTime const& time, TakeSMPTE&& takeSMPTE, TakeUTC&& takeUTC) {
    switch (time.which()) {
      case 0:
        return std::forward<TakeSMPTE>(takeSMPTE)(boost::get<ns_sensor::SK_DateTimeSMPTE>(time));
      case 1:
        return std::forward<TakeUTC>(takeUTC)(boost::get<ns_sensor::SK_DateTimeUTC>(time));
      default:
        ThrowUnknownKindOfTime();
    }
  }
  /// Keeps a sample until the commit.
  void StoreSample(SK_WaitingTime const& time, std::string_view value) {
    mDumpSamples.WriteSample(time, value);
    ++mSampleCounter;
  }
  /// The same of a text.
  void StoreText(SK_WaitingTime const& time, std::string_view value) {
    mDumpSamples.WriteText(time, value);
    ++mSampleCounter;
  }
  /// The same of a value that `put` stores, as records take it.
  template <typename Put>
  void PutSample(SK_WaitingTime const& time, Put&& put) {
    mDumpSamples.PutSample(time, std::forward<Put>(put));
    ++mSampleCounter;
  }

  /// The frame of every `Commit`: `complete` fills in what the properties still lack, `serialize` writes the set.
  bool CommitSamples(std::function<void()> const& complete,
                     std::function<void(Serializer&, SK_DumpSamplesUtils&)> const& serialize);

 private:
  [[noreturn]] static void ThrowUnknownKindOfTime();
  [[noreturn]] static void ThrowDirty();
  void RefuseIfDirty() const {
    if (mIsDirty) {
      ThrowDirty();
    }
  }
  void LoseSamples() noexcept;

  void* mConverterKey;
  SK_SampleTimeText mTimeText;
  SK_DumpSamplesUtils mDumpSamples;
};

}  // namespace SK_PLUGIN
