#include "SK_SampleSet.h"

#include <algorithm>

#include "SK_Error.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {
namespace {

/// The number in the name is a label for people, not the sample's index, and may wrap.
[[noreturn]] void ThrowInvalidSample(SK_SampleSet const& set, char const* sample) {
  auto const offset = static_cast<std::uint64_t>(sample - set.fileStart);
  std::uint64_t const distance = offset + set.info->mSampleOffset - set.info->mSampleSize;
  std::uint64_t const label = set.step == 0 ? 0 : distance / set.step;
  ThrowError({ns_sensor::kMalformedSample, SK_Message::kInvalidSample, -1, -1}, Quoted(NameOfSample(*set.id, label)));
}

}  // namespace

std::string NameOfSample(std::string const& id, std::uint64_t index) {
  return "sampleSetID:" + id + "/sample[" + std::to_string(index) + "]";
}

std::string_view SK_SampleSet::TimeOf(std::uint64_t index, std::uint16_t timeLength) const {
  char const* const sample = Address(index);
  char const* const end = sample + info->mSampleSize;
  char const* const text = *sample == '{' ? SK_Utils::GetTimeValueOffset(*info, sample, end) : nullptr;
  if (text == nullptr) {
    ThrowInvalidSample(*this, sample);
  }
  return {text, std::min<std::size_t>(timeLength, static_cast<std::size_t>(end - text))};
}

}  // namespace SK_NAMESPACE_INT
