/// The samples of one query, column by column: the times, and the values behind each other.
///
/// The border hands the values to the host by pointer, straight from here: a query makes a handful of
/// blocks of memory, whatever the count of its samples.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "SK_DynamicSampleInfo.h"
#include "senmark/SK_BasicRecords.h"

namespace ns_sensor {
struct SK_DynamicDataSample;
}  // namespace ns_sensor

namespace SK_NAMESPACE_INT {

using ns_sensor::SK_Time;

class SK_SampleBlock {
 public:
  std::uint64_t Count() const { return mCount; }

  // All of the following want an `i` below `Count()`. Pointers stay good until the block is filled anew
  // or goes.

  SK_Time Time(std::uint64_t i) const { return i < mFilled ? mTimes[i] : SK_Time(); }
  ns_sensor::eDataValueType ValueType(std::uint64_t i) const {
    return i < mFilled ? mValueType : ns_sensor::kNumberValue;
  }
  /// The double of a number; the first double of an array; the bytes of a text, which end in a NUL and
  /// are there for an empty text too.
  void const* ValuePointer(std::uint64_t i) const {
    if (i >= mFilled) {
      return &kNoNumber;
    }
    return mValueType == ns_sensor::kStringValue ? static_cast<void const*>(mText.data() + mTextStarts[i])
                                                 : &mNumbers[i * mNumbersPerSample];
  }
  /// 0 for a number, the count of an array, the bytes of a text without its NUL.
  std::uint64_t ValueSize(std::uint64_t i) const {
    if (i >= mFilled || mValueType == ns_sensor::kNumberValue) {
      return 0;
    }
    return mValueType == ns_sensor::kStringValue ? mTextStarts[i + 1] - mTextStarts[i] - 1 : mNumbersPerSample;
  }

  /// Sample `i` as the record that callers inside the library get.
  void CopyTo(std::uint64_t i, ns_sensor::SK_DynamicDataSample& out) const;

  // Filling, by the reader of samples alone.

  /// Makes room for `count` samples, none of them filled; what was here goes. False without memory for it,
  /// which leaves the block empty.
  ///
  /// numbersPerSample  1 for a number, 0 for a text.
  bool Start(ns_sensor::eDataValueType valueType, std::uint64_t count, std::uint64_t numbersPerSample);
  std::uint64_t Filled() const { return mFilled; }
  /// Where the next sample's time and numbers go. Room up to `Count()` may be written.
  SK_Time* NextTime() { return mTimes.get() + mFilled; }
  double* NextNumbers() { return mNumbers.get() + mFilled * mNumbersPerSample; }
  /// `samples` more have been written. Those that never are count as the number 0 at 0/1 seconds.
  void Advance(std::uint64_t samples) { mFilled += samples; }
  /// The next sample whole.
  void AddText(SK_Time const& time, std::string_view text);

 private:
  struct Free {
    void operator()(void* memory) const { std::free(memory); }
  };
  template <typename Item>
  using Column = std::unique_ptr<Item[], Free>;

  /// Memory as it comes: every item is written before it is read.
  template <typename Item>
  static bool Allocate(std::uint64_t count, Column<Item>& column);

  static double const kNoNumber;

  ns_sensor::eDataValueType mValueType = ns_sensor::kInvalidValue;
  std::uint64_t mCount = 0;
  std::uint64_t mFilled = 0;
  std::uint64_t mNumbersPerSample = 0;
  Column<SK_Time> mTimes;
  Column<double> mNumbers;
  std::string mText;                       // each text with a NUL behind it
  std::vector<std::uint64_t> mTextStarts;  // into `mText`, one more than filled texts
};

}  // namespace SK_NAMESPACE_INT
