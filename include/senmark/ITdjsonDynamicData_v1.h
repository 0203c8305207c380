/// What every dynamic node is: one stream of timed samples.
#pragma once

#include "senmark/SK_BasicRecords.h"

namespace SK_PLUGIN {

/// A node collects samples, in the order in which a reader is to find them: by time. `commit` writes them to
/// the file, once; samples that come behind that are lost and may spoil what the outline says of the others. A node
/// without samples stays out of the file.
///
/// Binary interface: the order of the virtual functions is fixed.
class ITdjsonDynamicData_v1 {
 public:
  static unsigned GetInterfaceVersion() { return 1; }

  virtual ns_sensor::eDataValueType GetType() const = 0;
  /// False if the samples have been written already.
  virtual bool Commit() = 0;
  /// The count that the file states for this node. 0: as many as were taken. Dropped after a commit.
  virtual void SetSampleCount(unsigned long long sampleCount) = 0;
  virtual unsigned long long GetSampleCount() const = 0;
  /// The object itself, as the interface that it was made for.
  virtual ITdjsonDynamicData_v1* GetActualITdjsonDynamicData() = 0;
  virtual ~ITdjsonDynamicData_v1() = default;
  /// Writes the samples. Errors: 2001 after a sample that failed; 2014 for a sample with an empty text; 2004 if
  /// the file cannot be cut back after a failure; 2005 if the conversion has ended; 1034 also for numbers without
  /// a pattern; the codes of file operations plus 1000. A failed set leaves no trace in the file.
  virtual void commit(void* result) = 0;
  /// displayName    for people; matchName: ASCII letters and digits, no digit first, unique in the file.
  /// sampleSetID    the key of the samples, unique in the file.
  /// sampleCount    as `SetSampleCount`; interpolation: 1 linear, 2 hold.
  /// expectedMaxInterSampleDuration: a text of the file's time notation, or empty.
  /// Errors: 2022 match name, 53 interpolation.
  virtual void setDynamicDataInfo(char const* displayName, char const* matchName, char const* sampleSetID,
                                  unsigned long long sampleCount, unsigned interpolation,
                                  unsigned char hasExpectedFrequency, char const* expectedMaxInterSampleDuration,
                                  void* result) = 0;
};

}  // namespace SK_PLUGIN
