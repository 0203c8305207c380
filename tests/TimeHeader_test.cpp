#include "TimeHeader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>

namespace senmark_tool {
namespace {

/// Reads a text in pieces of `step` bytes, from a copy that is exactly as long as the text.
TimeHeader ReadInSteps(std::string const& text, std::size_t step) {
  std::vector<char> const bytes(text.begin(), text.end());
  std::size_t place = 0;
  return ReadTimeHeader([&](char* buffer, std::size_t capacity) {
    std::size_t const count = std::min({step, capacity, bytes.size() - place});
    if (count != 0) {
      std::memcpy(buffer, bytes.data() + place, count);
    }
    place += count;
    return count;
  });
}

TimeHeader Read(std::string const& text) {
  return ReadInSteps(text, 1000);
}

constexpr char kVersion2[] = R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true, "dynamicDataInfo" :
 {"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":30000,"scale":1001},"dropFrame":true}},
 "dataOutline":[{"a":"]}\""},{"b":[1,2,{"c":"}"}]}],
 "dataDynamicSamples":[{"sampleSetID":"s1","samples":[{"time":"01:00:00:02","value":"1"}]}]})";

constexpr char kVersion1[] = R"({"dataDynamicSamples":[{"sampleSetID":"empty","samples":[]},
 {"sampleSetID":"s2","samples":[{"value":{"length":2,"str":"]}"},"time":"2012-01-01T00:00:00.000Z"},
 {"value":{"length":2,"str":"]}"},"time":"2012-01-02T00:00:00.000Z"}]},{"sampleSetID":"s3","samples":[{"time":"x"}]}],
 "utcInfo":{"isGMT":true,"precisionLength":3},"useTimecodeB":false,"dataOutline":[]})";

TEST(TimeHeader, TimecodeOfVersion2) {
  TimeHeader const header = Read(kVersion2);
  EXPECT_EQ(header.usesTimecode, true);
  EXPECT_EQ(header.rateValue, 30000);
  EXPECT_EQ(header.rateScale, 1001);
  EXPECT_TRUE(header.dropsFrames);
  EXPECT_EQ(header.firstSetId, "s1");
  EXPECT_EQ(header.firstTime, "01:00:00:02");
}

TEST(TimeHeader, UtcBehindTheSamplesOfVersion1) {
  TimeHeader const header = Read(kVersion1);
  EXPECT_EQ(header.usesTimecode, false);
  EXPECT_TRUE(header.hasUtcInfo);
  EXPECT_EQ(header.precisionLength, 3);
  EXPECT_TRUE(header.isGmt);
  EXPECT_EQ(header.firstSetId, "s2");
  EXPECT_EQ(header.firstTime, "2012-01-01T00:00:00.000Z");
}

TEST(TimeHeader, PiecesDoNotMatter) {
  for (std::size_t step = 1; step != 20; ++step) {
    EXPECT_EQ(ReadInSteps(kVersion1, step).firstTime, "2012-01-01T00:00:00.000Z");
    EXPECT_EQ(ReadInSteps(kVersion2, step).rateScale, 1001);
  }
}

TEST(TimeHeader, ReadsNoFurtherThanNeeded) {
  std::string const text = kVersion2;
  std::size_t place = 0;
  ReadTimeHeader([&](char* buffer, std::size_t) -> std::size_t {
    if (place == text.size()) {
      return 0;
    }
    buffer[0] = text[place++];
    return 1;
  });
  EXPECT_LT(place, text.size());
}

TEST(TimeHeader, CutTextsEndEarly) {
  for (std::string const text : {kVersion1, kVersion2}) {
    for (std::size_t length = 0; length != text.size(); ++length) {
      TimeHeader const header = Read(text.substr(0, length));
      EXPECT_TRUE(header.firstTime.empty() || header.firstTime[0] == '0' || header.firstTime[0] == '2');
    }
  }
}

TEST(TimeHeader, OtherTextsAreEmpty) {
  for (char const* const text : {"", "[]", "{}", "{\"a\"", "{\"a\" 1}", "nothing", "{\"dataDynamicSamples\":1}"}) {
    EXPECT_FALSE(Read(text).usesTimecode.has_value()) << text;
    EXPECT_EQ(Read(text).firstTime, "") << text;
  }
}

}  // namespace
}  // namespace senmark_tool
