/// One sample set, proved to lie in the scratch mapping whole, so that every sample of it may be read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "SK_DynamicSampleInfo.h"

namespace SK_NAMESPACE_INT {

struct SK_SampleSet {
  std::string const* id = nullptr;
  SK_DynamicSampleInfo const* info = nullptr;  ///< null: no set
  char const* fileStart = nullptr;
  char const* first = nullptr;  ///< the first sample
  std::uint64_t step = 0;       ///< bytes from one sample to the next, over the comma

  char const* Address(std::uint64_t index) const { return first + index * step; }
  std::uint64_t LastIndex() const { return info->mSampleCount - 1; }

  /// The time text of a sample in the mapping, `timeLength` bytes of it. Code 39 for a sample that does not
  /// begin as one.
  std::string_view TimeOf(std::uint64_t index, std::uint16_t timeLength) const;
};

/// What a sample is called in messages.
std::string NameOfSample(std::string const& id, std::uint64_t index);

}  // namespace SK_NAMESPACE_INT
