#include "SK_SampleSizeEstimator.h"

#include <cstring>

#include "SK_IntegerOf.h"

namespace SK_NAMESPACE_INT {

namespace {

/// `{"time":"","value":}`
constexpr std::uint64_t kAroundTimeAndValue = 20;
/// `{"length":,"str":""}`
constexpr std::uint64_t kAroundPaddedString = 20;
/// The quotes of the length in format version 2.
constexpr std::uint64_t kQuotesOfLength = 2;

template <std::size_t size>
bool BeginsWith(char const* text, char const (&prefix)[size]) {
  return std::strncmp(text, prefix, size - 1) == 0;
}

JValue const& PropertiesOf(SK_DynamicSampleInfo const& info, char const* key) {
  return (*info.mDataNode)["dataType"][key];
}

std::uint64_t CountAt(JValue const& object, char const* key) {
  return CountOf(object[key].GetDouble());
}

/// Grows the width of a number by what its pattern tells.
void AddNumberLength(SK_DynamicSampleInfo& info, JValue const& pattern) {
  std::uint64_t const digitsDecimal = CountAt(pattern, "digitsDecimal");
  std::uint64_t const marks = 2 + (pattern["isSigned"].GetBool() ? 1 : 0) + (digitsDecimal != 0 ? 1 : 0);
  info.mNumberLength = AddUpToLimit(info.mNumberLength, CountAt(pattern, "digitsInteger"));
  info.mNumberLength = AddUpToLimit(info.mNumberLength, digitsDecimal);
  info.mNumberLength = AddUpToLimit(info.mNumberLength, marks);
}

/// 0 for a type that has no width, which leaves the kind of `info` as it is.
std::uint64_t EstimateValueSize(SK_DynamicSampleInfo& info, eTDJSONVersion version) {
  // By prefix, and in this order: one name of the arrays begins with the name of the single number.
  char const* const type = (*info.mDataNode)["dataType"]["type"].GetString();
  if (BeginsWith(type, "numberArray") || BeginsWith(type, "numberStringArray")) {
    return SK_SampleSizeEstimator::EstimateNumberArraySetSize(info);
  }
  if (BeginsWith(type, "paddedString")) {
    return SK_SampleSizeEstimator::EstimatePaddedStringSetSize(info, version);
  }
  if (BeginsWith(type, "numberString")) {
    return SK_SampleSizeEstimator::EstimateNumberSetSize(info);
  }
  return 0;
}

}  // namespace

std::uint64_t SK_SampleSizeEstimator::EstimateSampleSetSize(SK_DynamicSampleInfo& info, std::uint16_t timeStrLength,
                                                            eTDJSONVersion version) {
  info.mSampleCount = CountAt(*info.mDataNode, "sampleCount");
  info.mSampleSize = AddUpToLimit(kAroundTimeAndValue + timeStrLength, EstimateValueSize(info, version));
  if (info.mSampleCount == 0) {
    return 0;
  }
  return AddUpToLimit(MultiplyUpToLimit(info.mSampleSize, info.mSampleCount), info.mSampleCount - 1);
}

std::uint64_t SK_SampleSizeEstimator::EstimateNumberSetSize(SK_DynamicSampleInfo& info) {
  info.mValueKind = kNumberStringSamples;
  AddNumberLength(info, PropertiesOf(info, "numberStringProperties")["pattern"]);
  return info.mNumberLength;
}

std::uint64_t SK_SampleSizeEstimator::EstimateNumberArraySetSize(SK_DynamicSampleInfo& info) {
  info.mValueKind = kNumberArraySamples;
  JValue const& properties = PropertiesOf(info, "numberArrayProperties");
  AddNumberLength(info, properties["pattern"]);
  info.mArraySize = CountAt(properties, "arraySize");
  // Two brackets, and one comma less than there are numbers.
  std::uint64_t const marks = AddUpToLimit(info.mArraySize, 1);
  return AddUpToLimit(MultiplyUpToLimit(info.mNumberLength, info.mArraySize), marks);
}

std::uint64_t SK_SampleSizeEstimator::EstimatePaddedStringSetSize(SK_DynamicSampleInfo& info, eTDJSONVersion version) {
  info.mValueKind = kPaddedStringSamples;
  JValue const& properties = PropertiesOf(info, "paddedStringProperties");
  info.mMaxLength = CountAt(properties, "maxLen");
  info.mMaxDigits = CountAt(properties, "maxDigitsInStrLength");
  std::uint64_t const marks = kAroundPaddedString + (version == kTdjsonVersion2 ? kQuotesOfLength : 0);
  return AddUpToLimit(AddUpToLimit(info.mMaxLength, info.mMaxDigits), marks);
}

}  // namespace SK_NAMESPACE_INT
