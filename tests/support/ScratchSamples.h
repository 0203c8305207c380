/// Sample sets as they stand in the scratch file, with the cache entries that point at them, all made by hand:
/// no part of the library that reads files takes part. The text lies in a buffer of its exact size, so that a
/// read behind it is found.
#pragma once

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "SK_SampleDataProcessor.h"

namespace senmark_test {

using SK_NAMESPACE_INT::eTDJSONVersion;
using SK_NAMESPACE_INT::SK_DataCache;
using SK_NAMESPACE_INT::SK_SampleDataProcessor;
using SK_NAMESPACE_INT::SK_TimeFormat;

/// Widths of one kind of values, all in bytes of the file.
inline SK_DynamicSampleInfo NumberWidths(std::uint64_t textLength) {
  SK_DynamicSampleInfo info(nullptr);
  info.mValueKind = SK_NAMESPACE_INT::kNumberStringSamples;
  info.mNumberLength = textLength + 2;
  info.mSampleSize = info.mNumberLength;
  return info;
}

inline SK_DynamicSampleInfo ArrayWidths(std::uint64_t textLength, std::uint64_t count) {
  SK_DynamicSampleInfo info(nullptr);
  info.mValueKind = SK_NAMESPACE_INT::kNumberArraySamples;
  info.mNumberLength = textLength + 2;
  info.mArraySize = count;
  info.mSampleSize = info.mNumberLength * count + count + 1;
  return info;
}

inline SK_DynamicSampleInfo PaddedWidths(std::uint64_t maxLength, std::uint64_t maxDigits, eTDJSONVersion version) {
  SK_DynamicSampleInfo info(nullptr);
  info.mValueKind = SK_NAMESPACE_INT::kPaddedStringSamples;
  info.mMaxLength = maxLength;
  info.mMaxDigits = maxDigits;
  info.mSampleSize = (version == SK_NAMESPACE_INT::kTdjsonVersion2 ? 22 : 20) + maxLength + maxDigits;
  return info;
}

/// 30 frames per second, counted from 0: texts of 11 bytes.
inline SK_TimeFormat ThirtyFrames() {
  SK_TimeFormat format;
  format.SetSMPTEInfo({30, 1}, 0);
  return format;
}

/// UTC with milliseconds, counted from 2020-01-01: texts of 24 bytes.
inline SK_TimeFormat Milliseconds() {
  SK_TimeFormat format;
  format.SetUTCInfo(3, 1);
  SK_NAMESPACE_INT::SK_DateTime base;
  base.year = 2020;
  base.month = 1;
  base.day = 1;
  format.SetUTCBaseTime(base);
  return format;
}

inline std::string TimeFirst(std::string const& time, std::string const& value) {
  return R"({"time":")" + time + R"(","value":)" + value + "}";
}

inline std::string ValueFirst(std::string const& time, std::string const& value) {
  return R"({"value":)" + value + R"(,"time":")" + time + R"("})";
}

/// A sample that holds a string, like that of a number.
inline std::string NumberAt(std::string const& time, std::string const& number) {
  return TimeFirst(time, '"' + number + '"');
}

class ScratchSamples {
 public:
  explicit ScratchSamples(SK_TimeFormat const& format, eTDJSONVersion version = SK_NAMESPACE_INT::kTdjsonVersion2)
      : mFormat(format), mVersion(version) {}

  /// A set whose entry says that it holds as many samples as are given, of these widths. Its extent is
  /// taken from the time members of the first and the last sample.
  void AddSet(std::string const& id, SK_DynamicSampleInfo widths, std::vector<std::string> const& samples) {
    mText += mText.empty() ? "" : ",";
    mText += R"({"sampleSetID":")" + id + R"(","samples":[)";
    widths.mSampleOffset = mText.size();
    widths.mSampleSize += 20U + mFormat.GetTimeStrLength();
    widths.mSampleCount = samples.size();
    for (std::string const& sample : samples) {
      mText += (&sample == &samples.front() ? "" : ",") + sample;
    }
    mText += "]}";
    if (!samples.empty()) {
      widths.mTemporalRange = {TimeIn(samples.front()), TimeIn(samples.back())};
    }
    mCache.emplace(id, widths);
  }
  /// A node without a set.
  void AddNode(std::string const& id) { mCache.emplace(id, SK_DynamicSampleInfo(nullptr)); }
  SK_DynamicSampleInfo& Entry(std::string const& id) { return mCache.at(id); }
  std::string& Text() { return mText; }

  /// Reads the text as it is now. Good until the next call.
  SK_SampleDataProcessor const& Processor() {
    mBuffer = std::make_unique<char[]>(mText.size());
    std::memcpy(mBuffer.get(), mText.data(), mText.size());
    mProcessor = std::make_unique<SK_SampleDataProcessor>(mCache, mFormat, mBuffer.get(), mBuffer.get() + mText.size(),
                                                          mVersion);
    return *mProcessor;
  }

 private:
  std::string TimeIn(std::string const& sample) const {
    static std::string const kKey = R"("time":")";
    std::size_t const key = sample.find(kKey);
    return key == std::string::npos ? "" : sample.substr(key + kKey.size(), mFormat.GetTimeStrLength());
  }

  SK_TimeFormat mFormat;
  eTDJSONVersion mVersion;
  std::string mText;
  SK_DataCache mCache;
  std::unique_ptr<char[]> mBuffer;
  std::unique_ptr<SK_SampleDataProcessor> mProcessor;
};

}  // namespace senmark_test
