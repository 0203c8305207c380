/// Builds version 2 files of number sets in which each sample's value is its position in the set, so that
/// a test can see which samples it got.
#pragma once

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace senmark_test {

/// A file of sets of numbers with seven digits.
class NumberSetFile {
 public:
  /// Time code without dropped frames, `value` / `scale` frames per second.
  static NumberSetFile Smpte(int value, int scale = 1) {
    NumberSetFile file;
    file.mRate = (value + scale / 2) / scale;
    file.mHeader = R"({"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":)" + std::to_string(value) +
                   R"(,"scale":)" + std::to_string(scale) + R"(},"dropFrame":false}})";
    return file;
  }

  /// UTC without offset; ticks count from 2012-01-01T00:00:00 in units of 10 to the minus `precision`.
  static NumberSetFile Utc(int precision) {
    NumberSetFile file;
    file.mPrecision = precision;
    file.mHeader =
        R"({"useTimecodeB":false,"utcInfo":{"precisionLength":)" + std::to_string(precision) + R"(,"isGMT":true}})";
    return file;
  }

  /// Adds a set. ticks: times of its samples in frames or units of a fraction, in rising order.
  NumberSetFile& Add(std::string const& id, std::vector<std::int64_t> const& ticks, std::string const& matchName = "") {
    std::string const name = matchName.empty() ? "node" + std::to_string(mCount) : matchName;
    AddNode(id, name, ticks.size());
    std::string samples;
    for (std::size_t i = 0; i != ticks.size(); ++i) {
      char value[16];
      std::snprintf(value, sizeof value, "%07zu", i);
      samples +=
          (i == 0 ? "" : ",") + std::string(R"({"time":")") + TextOf(ticks[i]) + R"(","value":")" + value + "\"}";
    }
    mSets += (mSets.empty() ? "" : ",") + std::string(R"({"sampleSetID":")") + id + R"(","samples":[)" + samples + "]}";
    return *this;
  }

  /// Adds a node as it is given.
  NumberSetFile& AddNode(std::string const& text) {
    mOutline += (mOutline.empty() ? "" : ",") + text;
    return *this;
  }

  /// A dynamic node whose samples may be missing.
  NumberSetFile& AddNode(std::string const& id, std::string const& matchName, std::size_t count) {
    ++mCount;
    return AddNode(R"({"objectType":"dataDynamic","displayName":"Node","matchName":")" + matchName +
                   R"(","dataType":{"type":"numberString","numberStringProperties":{"pattern":{"isSigned":false,)" +
                   R"("digitsInteger":7,"digitsDecimal":0},"range":{"occurring":{"min":0,"max":9999999},)" +
                   R"("legal":{"min":0,"max":9999999}}}},"sampleSetID":")" + id +
                   R"(","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":)" +
                   std::to_string(count) + "}");
  }

  std::string Text() const {
    return R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":)" + mHeader +
           R"(,"dataOutline":[)" + mOutline + "]" +
           (mSets.empty() ? std::string() : ",\"dataDynamicSamples\":[" + mSets + "]") + "}\n";
  }

  std::string TextOf(std::int64_t tick) const { return mRate != 0 ? TimeCode(tick) : UtcTime(tick); }

 private:
  std::string TimeCode(std::int64_t frame) const {
    char text[32];
    std::snprintf(text, sizeof text, mRate > 99 ? "%02d:%02d:%02d:%03d" : "%02d:%02d:%02d:%02d",
                  static_cast<int>(frame / mRate / 3600), static_cast<int>(frame / mRate / 60 % 60),
                  static_cast<int>(frame / mRate % 60), static_cast<int>(frame % mRate));
    return text;
  }

  /// Days of the leap year 2012 only.
  std::string UtcTime(std::int64_t tick) const {
    static constexpr int kDays[] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    std::int64_t unit = 1;
    for (int i = 0; i != mPrecision; ++i) {
      unit *= 10;
    }
    std::int64_t const seconds = tick / unit;
    int day = static_cast<int>(seconds / 86400);
    int month = 0;
    while (day >= kDays[month]) {
      day -= kDays[month++];
    }
    int const ofDay = static_cast<int>(seconds % 86400);
    char text[80];
    std::snprintf(text, sizeof text, "2012-%02d-%02dT%02d:%02d:%02d.", month + 1, day + 1, ofDay / 3600,
                  ofDay / 60 % 60, ofDay % 60);
    std::string fraction = std::to_string(tick % unit);
    while (static_cast<int>(fraction.size()) < mPrecision) {
      fraction.insert(fraction.begin(), '0');
    }
    return text + fraction + 'Z';
  }

  std::string mHeader;
  std::string mOutline;
  std::string mSets;
  std::int64_t mRate = 0;
  int mPrecision = 0;
  int mCount = 0;
};

}  // namespace senmark_test
