#include "SK_TimeFormat.h"

#include <gtest/gtest.h>

namespace SK_NAMESPACE_INT {
namespace {

TEST(TimeFormat, StartsAsNeitherNotation) {
  SK_TimeFormat const format;
  EXPECT_FALSE(format.IsTimeFormatUTC());
  EXPECT_FALSE(format.IsTimeFormatSMPTE());
  EXPECT_EQ(format.GetTimeStrLength(), 0);
  EXPECT_EQ(format.GetSMPTEBaseTime().value, 0);
  EXPECT_EQ(format.GetSMPTEBaseTime().scale, 1U);
  EXPECT_EQ(format.GetUTCBaseTime().year, 0);
  EXPECT_EQ(format.GetUTCBaseTime().fraction, 0);
  EXPECT_EQ(format.GetUTCBaseTime().offsetSign, '\0');
}

struct UTCLength {
  std::uint16_t precision;
  std::uint8_t isGMT;
  std::uint16_t length;
};

TEST(TimeFormat, LengthOfADateCountsFractionAndOffset) {
  UTCLength const rows[] = {
      {0, 1, 20}, {0, 0, 25}, {1, 1, 22}, {3, 1, 24},
      {3, 0, 29}, {9, 1, 30}, {3, 7, 24}, {65535, 1, 20},  // 65,556 in 16 bits
  };
  for (UTCLength const& row : rows) {
    SK_TimeFormat fromParts;
    fromParts.SetUTCInfo(row.precision, row.isGMT);
    EXPECT_TRUE(fromParts.IsTimeFormatUTC());
    EXPECT_FALSE(fromParts.IsTimeFormatSMPTE());
    EXPECT_EQ(fromParts.GetTimeStrLength(), row.length) << row.precision;
    EXPECT_EQ(fromParts.GetUTCInfo().precisionLength, row.precision);
    EXPECT_EQ(fromParts.GetUTCInfo().isGMT, row.isGMT);

    SK_TimeFormat fromRecord;
    fromRecord.SetUTCInfo(SK_UTCInfo{row.precision, row.isGMT});
    EXPECT_TRUE(fromRecord.IsTimeFormatUTC());
    EXPECT_EQ(fromRecord.GetTimeStrLength(), row.length) << row.precision;
    EXPECT_EQ(fromRecord.GetUTCInfo().precisionLength, row.precision);
  }
}

struct SMPTELength {
  SK_Time rate;
  std::uint16_t length;
};

TEST(TimeFormat, LengthOfATimeCodeGrowsAboveNinetyNineFrames) {
  SMPTELength const rows[] = {
      {{24, 1}, 11},        {{30000, 1001}, 11}, {{99, 1}, 11},  {{999, 10}, 11}, {{100, 1}, 12},
      {{120000, 1001}, 12}, {{0, 1}, 11},        {{500, 0}, 11}, {{-1, 1}, 12},  // 4294967295 unsigned
  };
  for (SMPTELength const& row : rows) {
    SK_TimeFormat fromParts;
    fromParts.SetSMPTEInfo(row.rate, 1);
    EXPECT_TRUE(fromParts.IsTimeFormatSMPTE());
    EXPECT_FALSE(fromParts.IsTimeFormatUTC());
    EXPECT_EQ(fromParts.GetTimeStrLength(), row.length) << row.rate.value << '/' << row.rate.scale;
    EXPECT_EQ(fromParts.GetSMPTEInfo().frameRate.value, row.rate.value);
    EXPECT_EQ(fromParts.GetSMPTEInfo().frameRate.scale, row.rate.scale);
    EXPECT_EQ(fromParts.GetSMPTEInfo().dropFrame, 1);

    SK_TimeFormat fromRecord;
    fromRecord.SetSMPTEInfo(SK_TimeCodeInfo{row.rate, 1});
    EXPECT_TRUE(fromRecord.IsTimeFormatSMPTE());
    EXPECT_EQ(fromRecord.GetTimeStrLength(), row.length) << row.rate.value << '/' << row.rate.scale;
    EXPECT_EQ(fromRecord.GetSMPTEInfo().dropFrame, 1);
  }
}

TEST(TimeFormat, RateAsThreeNumbersLeavesTheLength) {
  SK_TimeFormat format;
  format.SetSMPTEInfo(120, 1, 1);
  EXPECT_TRUE(format.IsTimeFormatSMPTE());
  EXPECT_EQ(format.GetTimeStrLength(), 0);
  EXPECT_EQ(format.GetSMPTEInfo().frameRate.value, 120);
  EXPECT_EQ(format.GetSMPTEInfo().frameRate.scale, 1U);
  EXPECT_EQ(format.GetSMPTEInfo().dropFrame, 1);

  format.SetUTCInfo(3, 1);
  format.SetSMPTEInfo(24, 1, 0);
  EXPECT_EQ(format.GetTimeStrLength(), 24) << "that of the dates before";
}

TEST(TimeFormat, LengthCanBeSetAnew) {
  SK_TimeFormat format;
  format.SetUTCTimeLength();
  EXPECT_EQ(format.GetTimeStrLength(), 25) << "no fraction, with an offset";
  EXPECT_FALSE(format.IsTimeFormatUTC());
}

TEST(TimeFormat, BaseTimesAreKept) {
  SK_TimeFormat format;
  format.SetSMPTEBaseTime({7, 24});
  EXPECT_EQ(format.GetSMPTEBaseTime().value, 7);
  EXPECT_EQ(format.GetSMPTEBaseTime().scale, 24U);
  SK_DateTime base;
  base.year = 2015;
  base.fraction = 42;
  format.SetUTCBaseTime(base);
  EXPECT_EQ(format.GetUTCBaseTime().year, 2015);
  EXPECT_EQ(format.GetUTCBaseTime().fraction, 42);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
