/// Finds samples by time: a binary search on the text in the mapping.
#pragma once

#include <cstdint>
#include <string_view>

#include "SK_RelativeTimeReader.h"
#include "SK_SampleSet.h"
#include "SK_TimeFormat.h"

namespace SK_NAMESPACE_INT {

class SK_TimeTarget;

class SK_SampleSearch {
 public:
  /// All three must outlive the object.
  SK_SampleSearch(SK_SampleSet const& set, SK_TimeFormat const& timeFormat, SK_RelativeTimeReader& timeReader);

  /// The first sample at `target`; without one, the last before it; without one, the first of the set. Code 39
  /// for a malformed sample on the way.
  ///
  /// In a set that is not in the order of time the answer depends on which samples are looked at, and so does
  /// whether a malformed one is met: the way is fixed behaviour.
  ///
  /// guess  what `PrefetchFor` gave for the target. It changes no result.
  std::uint64_t DoBinarySearch(std::string_view target, std::int64_t guess) const;

  static constexpr std::int64_t kNoGuess = -1;
  /// Asks for the memory that a search for `target` is going to want, all of it at once, and for the samples
  /// that are read from there on: `samples` of them or as many as make sense. Gives the index where the target
  /// should be.
  std::int64_t PrefetchFor(std::string_view target, std::uint64_t samples);

 private:
  std::string_view TimeAt(std::uint64_t index) const;
  std::int64_t Guess(std::string_view target);

  SK_SampleSet const& mSet;
  SK_TimeFormat const& mTimeFormat;
  SK_RelativeTimeReader& mTimeReader;
};

}  // namespace SK_NAMESPACE_INT
