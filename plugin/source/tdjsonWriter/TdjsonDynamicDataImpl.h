/// What every stream of samples has: its description, and how far it has come.
#pragma once

#include <cstdint>

#include "ITdjsonDynamicData_I.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

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
  ns_sensor::SK_DynamicDataFields mDynamicDataFields;
  bool mIsDirty = false;
  std::uint64_t mSampleCounter = 0;  ///< samples that were taken
  bool mCommitted = false;
};

}  // namespace SK_PLUGIN
