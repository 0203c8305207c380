#include "SK_SampleDataProcessor.h"

#include <algorithm>
#include <memory>
#include <new>

#include "SK_Error.h"
#include "SK_SampleBlock.h"
#include "SK_SampleDecoder.h"
#include "SK_SampleJsonReader.h"
#include "SK_SampleSearch.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::SK_DynamicDataSample;

namespace {

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
  out = countOnly ? out : nullptr;
  return PrepareOutput(FindRange(id, start, end), out, countOnly);
}

unsigned long long SK_SampleDataProcessor::GetAdjacentSamples(std::string const& id, std::string const& time,
                                                              SK_DynamicDataSample*& out, bool countOnly) const {
  out = countOnly ? out : nullptr;
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
SK_SampleSet SK_SampleDataProcessor::FindSet(std::string const& id) const {
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
  return {&id, &info, mFileStart, mFileStart + info.mSampleOffset, size + 1};
}

SK_SampleDataProcessor::SampleRange SK_SampleDataProcessor::FindRange(std::string const& id, std::string const& start,
                                                                      std::string const& end) const {
  SK_SampleSet const set = FindSet(id);
  SK_RelativeTimeReader timeReader = mTimeReader;
  SK_SampleSearch search(set, mTimeFormat, timeReader);
  if (end.empty()) {
    std::uint64_t const found = search.DoBinarySearch(start, search.PrefetchFor(start, 1));
    return {set, found, found};
  }
  std::int64_t const startGuess = search.PrefetchFor(start, set.info->mSampleCount);
  std::int64_t const endGuess = search.PrefetchFor(end, 1);
  std::uint64_t const low = search.DoBinarySearch(start, startGuess);
  return {set, low, search.DoBinarySearch(end, endGuess)};
}

SK_SampleDataProcessor::SampleRange SK_SampleDataProcessor::FindAdjacentRange(std::string const& id,
                                                                              std::string const& time) const {
  SK_SampleSet const set = FindSet(id);
  TemporalRange const& extent = set.info->mTemporalRange;
  int const fromEnd = SK_Utils::CompareTimeStrings(std::string_view(time), extent.mEndTime, mTimeFormat);
  int const fromStart = SK_Utils::CompareTimeStrings(std::string_view(time), extent.mStartTime, mTimeFormat);
  if (fromStart < 0) {
    return FindRange(id, extent.mStartTime, "");
  }
  if (fromEnd > 0) {
    return FindRange(id, extent.mEndTime, "");
  }
  SK_RelativeTimeReader timeReader = mTimeReader;
  SK_SampleSearch search(set, mTimeFormat, timeReader);
  std::uint64_t const found = search.DoBinarySearch(time, search.PrefetchFor(time, 2));
  std::uint64_t const last = set.LastIndex();
  if (fromEnd == 0) {
    return found > 0 ? SampleRange{set, found - 1, found} : SampleRange{};
  }
  if (fromStart == 0) {
    return found < last ? SampleRange{set, 0, found + 1} : SampleRange{};
  }
  // A file may show other times to the search than to the scanner, so neither neighbour is certain.
  bool const isAtTime =
      SK_Utils::CompareTimeStrings(time, set.TimeOf(found, mTimeFormat.GetTimeStrLength()), mTimeFormat) == 0;
  std::uint64_t const low = isAtTime && found > 0 ? found - 1 : found;
  return {set, low, std::min(found + 1, last)};
}

unsigned long long SK_SampleDataProcessor::PrepareOutput(SampleRange const& range, SK_DynamicDataSample*& out,
                                                         bool countOnly) const {
  if (countOnly) {
    return range.set.info == nullptr ? 0 : CountOf(range.low, range.high, range.set.step);
  }
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
