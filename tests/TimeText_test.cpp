#include "TimeText.h"

#include <gtest/gtest.h>

namespace senmark_tool {
namespace {

std::string Fraction(std::optional<senmark::Time> const& time) {
  return time ? std::to_string(time->value) + '/' + std::to_string(time->scale) : "none";
}

struct TimeRow {
  char const* name;
  char const* text;
  char const* fraction;
};

std::string NameOfRow(testing::TestParamInfo<TimeRow> const& row) {
  return row.param.name;
}

class Seconds : public testing::TestWithParam<TimeRow> {};

TEST_P(Seconds, AreExact) {
  EXPECT_EQ(Fraction(ParseSeconds(GetParam().text)), GetParam().fraction);
}

INSTANTIATE_TEST_SUITE_P(
    TimeText, Seconds,
    testing::Values(TimeRow{"Whole", "2", "2/1"}, TimeRow{"Decimal", "1.5", "3/2"}, TimeRow{"Tenth", "0.1", "1/10"},
                    TimeRow{"Negative", "-1.25", "-5/4"}, TimeRow{"NoWholePart", ".5", "1/2"},
                    TimeRow{"PointAtEnd", "3.", "3/1"}, TimeRow{"Fraction", "3/2", "3/2"},
                    TimeRow{"FractionAsGiven", "4/2", "4/2"}, TimeRow{"NegativeFraction", "-3/2", "-3/2"},
                    TimeRow{"BelowBillionth", "0.0000000001", "0/1"}, TimeRow{"Largest", "2147483647", "2147483647/1"},
                    TimeRow{"TooLarge", "2147483648", "none"}, TimeRow{"FarTooLarge", "99999999999999999999", "none"},
                    TimeRow{"ScaleZero", "1/0", "none"}, TimeRow{"ScaleTooLarge", "1/4294967296", "none"},
                    TimeRow{"ScaleLargest", "1/4294967295", "1/4294967295"}, TimeRow{"Empty", "", "none"},
                    TimeRow{"OnlyPoint", ".", "none"}, TimeRow{"OnlyMinus", "-", "none"},
                    TimeRow{"TwoPoints", "1.2.3", "none"}, TimeRow{"Letters", "1s", "none"},
                    TimeRow{"Space", " 1", "none"}, TimeRow{"Exponent", "1e3", "none"},
                    TimeRow{"HalfFraction", "1/", "none"}, TimeRow{"TwoFractions", "1/2/3", "none"},
                    TimeRow{"TimeCode", "00:00:01:00", "none"}),
    NameOfRow);

TimeHeader TimecodeHeader(double value, double scale, bool drops, char const* first) {
  TimeHeader header;
  header.usesTimecode = true;
  header.hasTimecodeInfo = true;
  header.rateValue = value;
  header.rateScale = scale;
  header.dropsFrames = drops;
  header.firstTime = first;
  return header;
}

TimeHeader UtcHeader(double precision, bool isGmt, char const* first) {
  TimeHeader header;
  header.usesTimecode = false;
  header.hasUtcInfo = true;
  header.precisionLength = precision;
  header.isGmt = isGmt;
  header.firstTime = first;
  return header;
}

class Timecode30 : public testing::TestWithParam<TimeRow> {};

TEST_P(Timecode30, IsRelativeToTheFirstSample) {
  // The first sample of the set is half a second behind the first of the file, 01:00:00:00.
  auto const base = TimeBase::Make(TimecodeHeader(30, 1, false, "01:00:00:15"), {1, 2});
  ASSERT_TRUE(base);
  EXPECT_EQ(Fraction(base->Parse(GetParam().text)), GetParam().fraction);
}

INSTANTIATE_TEST_SUITE_P(
    TimeText, Timecode30,
    testing::Values(TimeRow{"Start", "01:00:00:00", "0/1"}, TimeRow{"OneFrame", "01:00:00:01", "1/30"},
                    TimeRow{"OneHour", "02:00:00:00", "3600/1"}, TimeRow{"Before", "00:59:59:29", "-1/30"},
                    TimeRow{"FrameTooLarge", "01:00:00:30", "none"}, TimeRow{"SecondTooLarge", "01:00:60:00", "none"},
                    TimeRow{"MinuteTooLarge", "01:60:00:00", "none"}, TimeRow{"HourTooLarge", "24:00:00:00", "none"},
                    TimeRow{"Short", "01:00:00", "none"}, TimeRow{"OneDigit", "1:00:00:00", "none"},
                    TimeRow{"Long", "01:00:00:00:", "none"}, TimeRow{"Letters", "01:00:00:0x", "none"},
                    TimeRow{"Utc", "2012-01-01T00:00:00.000Z", "none"}),
    NameOfRow);

class DropFrame : public testing::TestWithParam<TimeRow> {};

TEST_P(DropFrame, LeavesOutNumbers) {
  auto const base = TimeBase::Make(TimecodeHeader(30000, 1001, true, "00:00:00:00"), {0, 1});
  ASSERT_TRUE(base);
  EXPECT_EQ(Fraction(base->Parse(GetParam().text)), GetParam().fraction);
}

// Frame 1800 is called 00:01:00:02, since 00:01:00:00 and :01 do not exist; 17982 frames are ten minutes.
INSTANTIATE_TEST_SUITE_P(TimeText, DropFrame,
                         testing::Values(TimeRow{"FirstMinute", "00:00:59:28", "899899/15000"},
                                         TimeRow{"BehindTheGap", "00:01:00:02", "3003/50"},
                                         TimeRow{"TenMinutes", "00:10:00:00", "2999997/5000"}),
                         NameOfRow);

TEST(TimeBase, DropFrameTextsComeBack) {
  for (std::int64_t const frame : {0, 1798, 1799, 1800, 3597, 3598, 17981, 17982, 107892}) {
    senmark::Time const relative{static_cast<std::int32_t>(-frame * 1001), 30000};
    auto const base = TimeBase::Make(TimecodeHeader(30000, 1001, true, "00:00:00:00"), relative);
    ASSERT_TRUE(base);
    auto const time = base->Parse(base->Start());
    ASSERT_TRUE(time) << base->Start();
    EXPECT_EQ(time->value, 0) << base->Start();
  }
}

TEST(TimeBase, FastRatesHaveThreeDigits) {
  auto const base = TimeBase::Make(TimecodeHeader(119, 1, false, "00:00:00:000"), {0, 1});
  ASSERT_TRUE(base);
  EXPECT_EQ(Fraction(base->Parse("00:00:01:118")), "237/119");
  EXPECT_EQ(base->Start(), "00:00:00:000");
}

class Utc3 : public testing::TestWithParam<TimeRow> {};

TEST_P(Utc3, IsRelativeToTheFirstSample) {
  auto const base = TimeBase::Make(UtcHeader(3, true, "2012-02-28T23:59:59.500Z"), {0, 1});
  ASSERT_TRUE(base);
  EXPECT_EQ(Fraction(base->Parse(GetParam().text)), GetParam().fraction);
}

INSTANTIATE_TEST_SUITE_P(
    TimeText, Utc3,
    testing::Values(
        TimeRow{"Start", "2012-02-28T23:59:59.500Z", "0/1"}, TimeRow{"LeapDay", "2012-02-29T00:00:00.000Z", "1/2"},
        TimeRow{"OneMillisecond", "2012-02-28T23:59:59.501Z", "1/1000"},
        TimeRow{"Before", "2012-02-28T23:59:59.499Z", "-1/1000"}, TimeRow{"DateOnly", "2012-03-01", "172801/2"},
        TimeRow{"MinuteOnly", "2012-02-29T00:01", "121/2"}, TimeRow{"SecondOnly", "2012-02-29T00:00:01", "3/2"},
        TimeRow{"ShortFraction", "2012-02-29T00:00:00.5", "1/1"},
        TimeRow{"LongFraction", "2012-02-29T00:00:00.50099", "1/1"},
        TimeRow{"ZoneIsNotLookedAt", "2012-02-29T00:00:00.000+05:30", "1/2"},
        TimeRow{"NoSuchDay", "2013-02-29T00:00:00.000Z", "none"}, TimeRow{"NoSuchMonth", "2012-13-01", "none"},
        TimeRow{"MonthZero", "2012-00-01", "none"}, TimeRow{"DayZero", "2012-01-00", "none"},
        TimeRow{"YearZero", "0000-01-01", "none"}, TimeRow{"NoSuchHour", "2012-02-29T24:00", "none"},
        TimeRow{"NoSuchMinute", "2012-02-29T23:60", "none"}, TimeRow{"NoSuchSecond", "2012-02-29T23:59:60", "none"},
        TimeRow{"Rest", "2012-02-29T00:00:00.000Zx", "none"}, TimeRow{"HalfZone", "2012-02-29T00:00:00.000+05", "none"},
        TimeRow{"HourOnly", "2012-02-29T00", "none"}, TimeRow{"TimeCode", "00:00:01:00", "none"}),
    NameOfRow);

TEST(TimeBase, UtcStartIsFoundFromAnySet) {
  // 86,400.25 s behind the start of the file.
  auto const base = TimeBase::Make(UtcHeader(3, false, "2012-03-01T00:00:00.000+01:00"), {345601, 4});
  ASSERT_TRUE(base);
  EXPECT_EQ(base->Start(), "2012-02-28T23:59:59.750+01:00");
}

TEST(TimeBase, NanosecondsOfTodayFit) {
  auto const base = TimeBase::Make(UtcHeader(9, true, "2012-01-01T00:00:00.000000001Z"), {0, 1});
  ASSERT_TRUE(base);
  EXPECT_EQ(Fraction(base->Parse("2012-01-01T00:00:00.000000003Z")), "1/500000000");
  EXPECT_EQ(base->Start(), "2012-01-01T00:00:00.000000001Z");
  EXPECT_EQ(Fraction(base->Parse("9999-01-01")), "none");
}

TEST(TimeBase, SomeHeadersMakeNoSense) {
  senmark::Time const zero;
  EXPECT_FALSE(TimeBase::Make(TimeHeader(), zero));
  EXPECT_FALSE(TimeBase::Make(TimecodeHeader(30, 1, false, ""), zero));
  EXPECT_FALSE(TimeBase::Make(TimecodeHeader(30, 0, false, "00:00:00:00"), zero));
  EXPECT_FALSE(TimeBase::Make(TimecodeHeader(0, 1, false, "00:00:00:00"), zero));
  EXPECT_FALSE(TimeBase::Make(TimecodeHeader(1, 3, false, "00:00:00:00"), zero));
  EXPECT_FALSE(TimeBase::Make(TimecodeHeader(25, 1, true, "00:00:00:00"), zero));
  EXPECT_FALSE(TimeBase::Make(TimecodeHeader(30, 1, false, "nonsense"), zero));
  EXPECT_FALSE(TimeBase::Make(TimecodeHeader(30, 1, false, "00:00:00:00"), {1, 0}));
  EXPECT_FALSE(TimeBase::Make(UtcHeader(10, true, "2012-01-01T00:00:00.0000000000Z"), zero));
  EXPECT_FALSE(TimeBase::Make(UtcHeader(-1, true, "2012-01-01T00:00:00Z"), zero));
}

TEST(TimeText, OnlyNotationsOfFilesLookLikeThem) {
  EXPECT_TRUE(LooksLikeTimeText("00:00:01:00"));
  EXPECT_TRUE(LooksLikeTimeText("2012-01-01"));
  EXPECT_FALSE(LooksLikeTimeText("-1.5"));
  EXPECT_FALSE(LooksLikeTimeText("abc"));
}

}  // namespace
}  // namespace senmark_tool
