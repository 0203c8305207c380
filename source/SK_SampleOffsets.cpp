#include "SK_SampleOffsets.h"

#include "SK_Error.h"
#include "SK_JsonBytes.h"
#include "SK_SampleSet.h"
#include "SK_SampleSizeEstimator.h"
#include "SK_TdjsonParserUtils.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {

namespace {

constexpr char kSamplesKey[] = "dataDynamicSamples";
constexpr char kSetIdKey[] = "sampleSetID";

/// No place in the input file: what is scanned here is not the input.
constexpr char const* kNoBase = nullptr;

template <typename... Values>
[[noreturn]] void Throw(eErrorCode code, char const* literal, Values const&... values) {
  ThrowError({code, literal, -1, -1}, values...);
}

/// Gives the position behind `byte`; anything else is a missing comma or bracket behind `property`.
char const* ExpectComma(char const* p, char const* end, char const* property) {
  if (!PeekIs(p, end, ',')) {
    Throw(ns_sensor::kJsonSyntax, SK_Message::kInvalidPropertyMissingCommaOrClosingBracket, Quoted(property));
  }
  return p + 1;
}

}  // namespace

void SK_SampleOffsets::CacheDynamicSamplesOffset(char const* p, char const* end) {
  p = CacheOneSet(p, end);
  while (p < end) {
    p = CacheOneSet(ExpectComma(p, end, kSamplesKey), end);
  }
}

char const* SK_SampleOffsets::CacheOneSet(char const* p, char const* end) {
  if (!PeekIs(p, end, '{')) {
    Throw(ns_sensor::kJsonSyntax, SK_Message::kInvalidJSONObject, Quoted(kSamplesKey));
  }
  p = ExpectKey(p + 1, end, kSetIdKey);
  std::string id;
  p = SK_TdjsonParserUtils::ParseJsonString(p, end, kNoBase, id, false, kSetIdKey);
  auto const found = mCache.find(id);
  if (found == mCache.end()) {
    Throw(ns_sensor::kSampleSetWithoutNode, SK_Message::kDynamicNodeNotPresent, Quoted(id));
  }
  p = ExpectComma(p, end, kSetIdKey);
  p = ExpectKey(p, end, "samples");
  if (!PeekIs(p, end, '[')) {
    Throw(ns_sensor::kWrongPropertyType, SK_Message::kInvalidPropertyTypeInSampleSet, std::string("["),
          Quoted("samples"), std::string("JSON Array"), Quoted(id));
  }
  p = SkipSamples(p + 1, end, id, found->second);
  ++mSetIndex;
  if (!PeekIs(p, end, '}')) {
    Throw(ns_sensor::kWrongPropertyType, SK_Message::kInvalidArrayItem, mSetIndex, Quoted(kSamplesKey),
          std::string("JSON Object"));
  }
  return p + 1;
}

/// Gives the position of the key's value. A set lacks "sampleSetID" in the message whichever key is
/// missing: fixed wording.
char const* SK_SampleOffsets::ExpectKey(char const* p, char const* end, char const* key) const {
  std::string found;
  p = SK_TdjsonParserUtils::ParseJsonString(p, end, kNoBase, found, true, "");
  p = SK_TdjsonParserUtils::ConsumeColon(p, end, kNoBase, found);
  if (found != key) {
    Throw(ns_sensor::kJsonSyntax, SK_Message::kMissingRequiredProperties, Quoted(kSetIdKey));
  }
  return p;
}

/// From the first sample to behind the bracket that closes the samples. That it stands where the widths
/// say is what proves that outline and samples agree.
char const* SK_SampleOffsets::SkipSamples(char const* p, char const* end, std::string const& id,
                                          SK_DynamicSampleInfo& info) {
  // Widths of an earlier set with the same id would add up.
  JValue const* const node = info.mDataNode;
  info = SK_DynamicSampleInfo(node);
  std::uint64_t const size =
      SK_SampleSizeEstimator::EstimateSampleSetSize(info, mTimeFormat.GetTimeStrLength(), mVersion);
  info.mSampleOffset = static_cast<std::uint64_t>(p - mFile.begin);
  if (size >= static_cast<std::uint64_t>(end - p) || p[size] != ']') {
    Throw(ns_sensor::kMalformedSample, SK_Message::kInvalidSampleSetData, Quoted(id));
  }
  return p + size + 1;
}

TemporalRange SK_SampleOffsets::FindFileTemporalExtents(std::vector<SK_DataCache::value_type*> const& sets) const {
  TemporalRange file;
  for (SK_DataCache::value_type* const set : sets) {
    std::string const& id = set->first;
    SK_DynamicSampleInfo& info = set->second;
    char const* const first = mFile.begin + info.mSampleOffset;
    if (info.mSampleOffset == 0 || !PeekIs(first, mFile.end, '{')) {
      continue;
    }
    // The walk has found the bracket behind the last sample, so that one lies within the file.
    char const* const last = first + (info.mSampleCount - 1) * (info.mSampleSize + 1);
    std::string startTime = ReadTime(first, NameOfSample(id, 0));
    // The last one goes by the count, one more than its index: fixed wording.
    std::string endTime = ReadTime(last, NameOfSample(id, info.mSampleCount));
    info.mTemporalRange = {std::move(startTime), std::move(endTime)};
    WidenRange(info.mTemporalRange, file);
  }
  return file;
}

std::string SK_SampleOffsets::ReadTime(char const* sample, std::string const& name) const {
  JAllocator allocator;
  JValue value;
  SK_TdjsonParserUtils::ParseJsonObject(sample, mFile.end, kNoBase, name, value, allocator, 0);
  JValue::ConstMemberIterator const time = value.FindMember("time");
  if (time == value.MemberEnd()) {
    Throw(ns_sensor::kMalformedSample, SK_Message::kMissingRequiredPropertyAtPath, Quoted("time"), Quoted(name));
  }
  if (!time->value.IsString() || time->value.GetStringLength() != mTimeFormat.GetTimeStrLength()) {
    Throw(ns_sensor::kMalformedSample, SK_Message::kInvalidTimeValueFor, Quoted(name));
  }
  return std::string(time->value.GetString(), time->value.GetStringLength());
}

/// The end of the file moves only for a set that begins behind it; a set that begins earlier and ends
/// later leaves it where it is. Fixed behaviour, held by the test EndMovesOnlyForASetThatBeginsBehindIt.
void SK_SampleOffsets::WidenRange(TemporalRange const& set, TemporalRange& file) const {
  if (file.mStartTime.empty() && file.mEndTime.empty()) {
    file = set;
    return;
  }
  char const* const setStart = set.mStartTime.c_str();
  if (SK_Utils::CompareTimeStrings(setStart, file.mStartTime.c_str(), mTimeFormat) < 0) {
    file.mStartTime = set.mStartTime;
  }
  if (SK_Utils::CompareTimeStrings(setStart, file.mEndTime.c_str(), mTimeFormat) > 0) {
    file.mEndTime = set.mEndTime;
  }
}

}  // namespace SK_NAMESPACE_INT
