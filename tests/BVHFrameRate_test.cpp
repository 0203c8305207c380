#include "BVHFrameRate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

namespace ns_sensor {
namespace {

struct Rate {
  char const* name;
  double frameTime;
  double rate;
};

std::ostream& operator<<(std::ostream& out, Rate const& row) {
  return out << row.frameTime;
}

class BVHFrameRate : public testing::TestWithParam<Rate> {};

TEST_P(BVHFrameRate, FollowsFromTheFrameTime) {
  EXPECT_EQ(GetFrameRate(GetParam().frameTime), GetParam().rate);
}

Rate const kRates[] = {
    {"Rate24", 0.0416666, 24},
    {"Rate25", 0.04, 25},
    {"Rate2997", 0.0333666, 29.97},
    {"Rate30", 0.0333333, 30},
    {"Rate50", 0.02, 50},
    {"Rate5994", 0.016683, 59.94},
    {"Rate60", 0.01666666, 60},
    {"ALittleSlowerThan24", 0.0416667, 23},
    {"ALittleSlowerThan2997", 0.03336671, 29},
    {"ALittleFasterThan2997", 0.033355, 29},
    {"ALittleFasterThan30", 0.033322, 30},
    {"ALittleSlowerThan60", 0.016667, 59},
    {"ALittleFasterThan60", 0.01666, 60},
    {"Rate120", 0.008333, 120},
    {"Rate119", 0.008342, 119},
    {"Rate100", 0.01, 100},
    {"Rate125", 0.008, 125},
    {"JustAllowed", 0.0011, 909},
    {"BarelyAboveTheLimit", 0.0010000000000000002, 999},
    {"OneFrameASecond", 1, 1},
    {"SlowerThanASecond", 1.5, 0},
    {"Longest", std::numeric_limits<double>::max(), 0},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHFrameRate, testing::ValuesIn(kRates),
                         [](auto const& row) { return std::string(row.param.name); });

/// Whole hundredths, computed with integers, for every frame time of up to six decimals.
TEST(BVHFrameRates, HundredthsAreCutOff) {
  for (int micros = 1001; micros <= 1200000; micros += 7) {
    double const frameTime = micros / 1e6;
    long long const hundredths = static_cast<long long>(100.0 / frameTime);
    double expected = static_cast<double>(hundredths / 100);
    expected = hundredths == 2997 ? 29.97 : expected;
    expected = hundredths == 5994 ? 59.94 : expected;
    ASSERT_EQ(GetFrameRate(frameTime), expected) << micros;
  }
}

TEST(BVHFrameRates, FrameTimesThatAreNoneAreHarmless) {
  EXPECT_TRUE(std::isnan(GetFrameRate(std::numeric_limits<double>::quiet_NaN())));
  EXPECT_TRUE(std::isinf(GetFrameRate(0)));
  EXPECT_EQ(GetFrameRate(std::numeric_limits<double>::infinity()), 0);
}

struct TimeCode {
  char const* name;
  double rate;
  std::int32_t value;
  std::uint32_t scale;
  int dropFrame;
};

std::ostream& operator<<(std::ostream& out, TimeCode const& row) {
  return out << row.rate;
}

class BVHTimeCode : public testing::TestWithParam<TimeCode> {};

TEST_P(BVHTimeCode, FollowsFromTheRate) {
  SK_TimeCodeInfo const info = CalculateTimeCode(GetParam().rate);
  EXPECT_EQ(info.frameRate.value, GetParam().value);
  EXPECT_EQ(info.frameRate.scale, GetParam().scale);
  EXPECT_EQ(info.dropFrame, GetParam().dropFrame);
}

TimeCode const kTimeCodes[] = {
    {"Rate2997", 29.97, 30000, 1001, 1},
    {"Rate5994", 59.94, 60000, 1001, 1},
    {"Rate30", 30, 30, 1, 0},
    {"Rate24", 24, 24, 1, 0},
    {"Rate120", 120, 120, 1, 0},
    {"Rate909", 909, 909, 1, 0},
    {"Rate0", 0, 0, 1, 0},
    {"NotExactly2997", 29.98, 29, 1, 0},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHTimeCode, testing::ValuesIn(kTimeCodes),
                         [](auto const& row) { return std::string(row.param.name); });

struct Step {
  char const* name;
  double rate;
  SK_DateTimeSMPTE from;
  SK_DateTimeSMPTE to;
};

std::string TextOf(SK_DateTimeSMPTE const& time) {
  return std::to_string(time.hours) + ':' + std::to_string(time.minutes) + ':' + std::to_string(time.seconds) + ':' +
         std::to_string(time.frames);
}

std::ostream& operator<<(std::ostream& out, Step const& row) {
  return out << TextOf(row.from) << " at " << row.rate;
}

class BVHTimeStep : public testing::TestWithParam<Step> {};

TEST_P(BVHTimeStep, GoesOneFrameOn) {
  SK_DateTimeSMPTE time = GetParam().from;
  IncrementSmpteTime(time, GetParam().rate);
  EXPECT_EQ(TextOf(time), TextOf(GetParam().to));
}

Step const kSteps[] = {
    {"Frame", 30, {0, 0, 0, 0}, {0, 0, 0, 1}},
    {"LastFrameOfASecond", 30, {0, 0, 0, 28}, {0, 0, 0, 29}},
    {"Second", 30, {0, 0, 0, 29}, {0, 0, 1, 0}},
    {"Minute", 30, {0, 0, 59, 29}, {0, 1, 0, 0}},
    {"Hour", 30, {0, 59, 59, 29}, {1, 0, 0, 0}},
    {"HoursGoOn", 30, {23, 59, 59, 29}, {24, 0, 0, 0}},
    {"HoursAreNotWrapped", 30, {99, 59, 59, 29}, {100, 0, 0, 0}},
    {"LastFrameAt2997", 29.97, {0, 0, 0, 28}, {0, 0, 0, 29}},
    {"SecondAt2997", 29.97, {0, 0, 0, 29}, {0, 0, 1, 0}},
    {"MinuteAt2997", 29.97, {0, 0, 59, 29}, {0, 1, 0, 2}},
    {"NinthMinuteAt2997", 29.97, {0, 8, 59, 29}, {0, 9, 0, 2}},
    {"TenthMinuteAt2997", 29.97, {0, 9, 59, 29}, {0, 10, 0, 0}},
    {"EleventhMinuteAt2997", 29.97, {0, 10, 59, 29}, {0, 11, 0, 2}},
    {"HourAt2997", 29.97, {0, 59, 59, 29}, {1, 0, 0, 0}},
    {"LastFrameAt5994", 59.94, {0, 0, 0, 58}, {0, 0, 0, 59}},
    {"MinuteAt5994", 59.94, {0, 0, 59, 59}, {0, 1, 0, 4}},
    {"TenthMinuteAt5994", 59.94, {0, 19, 59, 59}, {0, 20, 0, 0}},
    {"MinuteAt60", 60, {0, 0, 59, 59}, {0, 1, 0, 0}},
    {"LastFrameAt120", 120, {0, 0, 0, 118}, {0, 0, 0, 119}},
    {"SecondAt120", 120, {0, 0, 0, 119}, {0, 0, 1, 0}},
    {"OneFrameASecond", 1, {0, 0, 0, 0}, {0, 0, 1, 0}},
    {"LessThanOneFrameASecond", 0, {0, 0, 0, 0}, {0, 0, 1, 0}},
    {"MinutesAbove59", 30, {0, 70, 59, 29}, {1, 0, 0, 0}},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHTimeStep, testing::ValuesIn(kSteps),
                         [](auto const& row) { return std::string(row.param.name); });

/// Ten minutes of drop frame counting have 17982 frames at 29.97, twice that at 59.94.
TEST(BVHFrameRates, AnHourOfDropFramesHasItsCount) {
  for (double const rate : {29.97, 59.94}) {
    SK_DateTimeSMPTE time;
    long frames = 0;
    for (; time.hours == 0; ++frames) {
      IncrementSmpteTime(time, rate);
    }
    EXPECT_EQ(frames, rate < 30 ? 6 * 17982 : 6 * 2 * 17982);
    EXPECT_EQ(TextOf(time), "1:0:0:0");
  }
}

}  // namespace
}  // namespace ns_sensor
