#include "SK_SampleDataProcessor.h"

#include <algorithm>
#include <memory>
#include <new>

#include "SK_Error.h"
#include "SK_SampleBlock.h"
#include "SK_SampleDecoder.h"
#include "SK_SampleJsonReader.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::SK_DynamicDataSample;

namespace {

/// What a sample is called in messages.
std::string NameOfSample(std::string const& id, std::uint64_t index) {
  return "sampleSetID:" + id + "/sample[" + std::to_string(index) + "]";
}

std::uint64_t DivideOrZero(std::uint64_t dividend, std::uint64_t divisor) {
  return divisor == 0 ? 0 : dividend / divisor;
}

/// Samples from `low` to `high`. Backwards, the difference wraps to a number that no memory holds.
std::uint64_t CountOf(std::uint64_t low, std::uint64_t high, std::uint64_t step) {
  return DivideOrZero((high - low) * step, step) + 1;
}

[[noreturn]] void ThrowForSet(ns_sensor::eErrorCode code, char const* literal, std::string const& id) {
  ThrowError({code, literal, -1, -1}, Quoted(id));
}

[[noreturn]] void ThrowNoMemory(std::string const& id) {
  ThrowForSet(ns_sensor::kNoMemory, SK_Message::kSampleMemoryNotAvailable, "sample set id:" + id);
}

}  // namespace

SK_SampleDataProcessor::SK_SampleDataProcessor(SK_DataCache const& cache, SK_TimeFormat const& timeFormat,
                                               char const* fileStart, char const* fileEnd, eTDJSONVersion version)
    : mDataCache(cache),
      mTimeFormat(timeFormat),
      mFileStart(fileStart),
      mFileEnd(fileEnd),
      mVersion(version),
      mTimeReader(timeFormat) {}

unsigned long long SK_SampleDataProcessor::GetSamplesData(std::string const& id, std::string const& start,
                                                          std::string const& end, SK_DynamicDataSample*& out,
                                                          bool countOnly) const {
  ClearUnless(countOnly, out);
  return PrepareOutput(FindRange(id, start, end), out, countOnly);
}

unsigned long long SK_SampleDataProcessor::GetAdjacentSamples(std::string const& id, std::string const& time,
                                                              SK_DynamicDataSample*& out, bool countOnly) const {
  return PrepareOutput(FindAdjacentRange(id, time), out, countOnly);
}

void SK_SampleDataProcessor::ReadSamples(std::string const& id, std::string const& start, std::string const& end,
                                         SK_SampleBlock& block) const {
  FillBlock(FindRange(id, start, end), block);
}

void SK_SampleDataProcessor::ReadAdjacentSamples(std::string const& id, std::string const& time,
                                                 SK_SampleBlock& block) const {
  FillBlock(FindAdjacentRange(id, time), block);
}

/// The set with this id, whole in the mapping: everything behind relies on that.
SK_SampleDataProcessor::SampleSet SK_SampleDataProcessor::FindSet(std::string const& id) const {
  auto const entry = mDataCache.find(id);
  if (entry == mDataCache.end()) {
    ThrowForSet(ns_sensor::kUnknownSampleId, SK_Message::kSampleIdNotFound, id);
  }
  SK_DynamicSampleInfo const& info = entry->second;
  if (info.mValueKind == kNoSampleSet || info.mSampleCount == 0) {
    ThrowForSet(ns_sensor::kNoSamples, SK_Message::kSamplesNotFound, id);
  }
  auto const fileSize = static_cast<std::uint64_t>(mFileEnd - mFileStart);
  std::uint64_t const size = info.mSampleSize;
  bool const firstFits = info.mSampleOffset < fileSize && size <= fileSize - info.mSampleOffset;
  if (!firstFits || info.mSampleCount - 1 > (fileSize - info.mSampleOffset - size) / (size + 1)) {
    ThrowForSet(ns_sensor::kSampleSetOutOfRange, SK_Message::kInvalidSampleSetInfo, id);
  }
  return {&id, &info, mFileStart + info.mSampleOffset, size + 1};
}

SK_SampleDataProcessor::SampleRange SK_SampleDataProcessor::FindRange(std::string const& id, std::string const& start,
                                                                      std::string const& end) const {
  SampleSet const set = FindSet(id);
  std::uint64_t const low = DoBinarySearch(set, start);
  return {set, low, end.empty() ? low : DoBinarySearch(set, end)};
}

SK_SampleDataProcessor::SampleRange SK_SampleDataProcessor::FindAdjacentRange(std::string const& id,
                                                                              std::string const& time) const {
  SampleSet const set = FindSet(id);
  TemporalRange const& extent = set.info->mTemporalRange;
  int const fromEnd = SK_Utils::CompareTimeStrings(std::string_view(time), extent.mEndTime, mTimeFormat);
  int const fromStart = SK_Utils::CompareTimeStrings(std::string_view(time), extent.mStartTime, mTimeFormat);
  if (fromStart < 0) {
    return FindRange(id, extent.mStartTime, "");
  }
  if (fromEnd > 0) {
    return FindRange(id, extent.mEndTime, "");
  }
  std::uint64_t const found = DoBinarySearch(set, time);
  std::uint64_t const last = set.LastIndex();
  if (fromEnd == 0) {
    return found > 0 ? SampleRange{set, found - 1, found} : SampleRange{};
  }
  if (fromStart == 0) {
    return found < last ? SampleRange{set, 0, found + 1} : SampleRange{};
  }
  // A file may show other times to the search than to the scanner, so neither neighbour is certain.
  bool const isAtTime = SK_Utils::CompareTimeStrings(time, TimeOf(set, found), mTimeFormat) == 0;
  std::uint64_t const low = isAtTime && found > 0 ? found - 1 : found;
  return {set, low, std::min(found + 1, last)};
}

/// The text in the mapping. Throws for a sample that does not begin as one.
std::string_view SK_SampleDataProcessor::TimeOf(SampleSet const& set, std::uint64_t index) const {
  char const* const sample = set.Address(index);
  char const* const end = sample + set.info->mSampleSize;
  char const* const text = *sample == '{' ? SK_Utils::GetTimeValueOffset(*set.info, sample, end) : nullptr;
  if (text == nullptr) {
    ThrowInvalidSample(set, index);
  }
  return {text, std::min<std::size_t>(mTimeFormat.GetTimeStrLength(), static_cast<std::size_t>(end - text))};
}

/// The number in the name is a label for people and not the sample's index.
void SK_SampleDataProcessor::ThrowInvalidSample(SampleSet const& set, std::uint64_t index) const {
  auto const offset = static_cast<std::uint64_t>(set.Address(index) - mFileStart);
  std::uint64_t const label =
      DivideOrZero(offset + set.info->mSampleOffset - set.info->mSampleSize, set.info->mSampleSize + 1);
  ThrowForSet(ns_sensor::kMalformedSample, SK_Message::kInvalidSample, NameOfSample(*set.id, label));
}

/// The first sample at `target`; without one, the last before it; without one, the first of the set.
///
/// In a set that is not in the order of time the answer depends on which samples are looked at, and so does
/// whether a malformed one is met: the middles are fixed behaviour.
std::uint64_t SK_SampleDataProcessor::DoBinarySearch(SampleSet const& set, std::string_view target) const {
  constexpr std::int64_t kNone = -1;
  std::int64_t low = 0;
  auto high = static_cast<std::int64_t>(set.LastIndex());
  std::int64_t result = kNone;
  bool exact = false;
  while (low <= high) {
    std::int64_t const middle = low + (high - low + 1) / 2;
    int const order = SK_Utils::CompareTimeStrings(target, TimeOf(set, static_cast<std::uint64_t>(middle)), mTimeFormat);
    if (order > 0) {
      if (!exact) {
        result = middle;
      }
      low = middle + 1;
      continue;
    }
    if (order == 0) {
      exact = true;
      result = middle;
    } else if (low == high && result == kNone) {
      result = middle;
    }
    high = middle - 1;
  }
  return static_cast<std::uint64_t>(result);
}

unsigned long long SK_SampleDataProcessor::PrepareOutput(SampleRange const& range, SK_DynamicDataSample*& out,
                                                         bool countOnly) const {
  if (countOnly) {
    return range.set.info == nullptr ? 0 : CountOf(range.low, range.high, range.set.step);
  }
  out = nullptr;
  SK_SampleBlock block;
  FillBlock(range, block);
  if (block.Count() == 0) {
    return 0;
  }
  std::unique_ptr<SK_DynamicDataSample[]> samples(new (std::nothrow) SK_DynamicDataSample[block.Count()]);
  if (samples == nullptr) {
    ThrowNoMemory(*range.set.id);
  }
  for (std::uint64_t i = 0; i < block.Count(); ++i) {
    block.CopyTo(i, samples[i]);
  }
  out = samples.release();
  return block.Count();
}

void SK_SampleDataProcessor::FillBlock(SampleRange const& range, SK_SampleBlock& block) const {
  if (range.set.info == nullptr) {
    block = SK_SampleBlock();
    return;
  }
  SK_DynamicSampleInfo const& info = *range.set.info;
  std::uint64_t const count = CountOf(range.low, range.high, range.set.step);
  if (count > info.mSampleCount || !block.Start(ValueTypeOf(info), count, NumbersPerSample(info))) {
    ThrowNoMemory(*range.set.id);
  }
  ParseDynamicSamples(range, block);
}

/// Reads as many samples as the range has. A sample that is longer than the others moves those behind it,
/// and may leave the block short of some: those count as filled with nothing.
void SK_SampleDataProcessor::ParseDynamicSamples(SampleRange const& range, SK_SampleBlock& block) const {
  SK_DynamicSampleInfo const& info = *range.set.info;
  SK_SampleDecoder decoder(info, mTimeReader, mTimeFormat.GetTimeStrLength(), mVersion);
  SK_SampleJsonReader const reader(info, mTimeFormat, mVersion);
  char const* const start = range.set.Address(range.low);
  std::uint64_t const size = block.Count() * range.set.step - 1;
  std::uint64_t offset = 0;
  while (block.Filled() < block.Count() && offset <= size) {
    std::uint64_t const whole = (size - offset + 1) / range.set.step;
    offset += range.set.step * decoder.Decode(start + offset, std::min(whole, block.Count() - block.Filled()), block);
    if (block.Filled() == block.Count() || offset > size) {
      break;
    }
    std::string const name = NameOfSample(*range.set.id, block.Filled());
    char const* const next = reader.Read(start + offset, start + size, name, block);
    offset = static_cast<std::uint64_t>(next - start) + 1;
  }
}

}  // namespace SK_NAMESPACE_INT
