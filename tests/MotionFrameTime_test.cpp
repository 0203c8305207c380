#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "FrameTime.h"

namespace senmark_motion {
namespace {

FrameTime Parsed(char const* text) {
  std::optional<FrameTime> const time = ParseFrameTime(text);
  EXPECT_TRUE(time.has_value()) << text;
  return time.value_or(FrameTime());
}

struct Usual {
  char const* text;
  unsigned value;  ///< 0: none
  unsigned scale;
};

void PrintTo(Usual const& usual, std::ostream* out) {
  *out << usual.text;
}

Usual const kUsual[] = {
    // As real files write them.
    {"0.0417083750417", 24000, 1001},
    {"0.0416667", 24, 1},
    {"0.041667", 24, 1},
    {"0.04", 25, 1},
    {"0.033333", 30, 1},
    {"0.0333333", 30, 1},
    {".03333", 30, 1},
    {"0.016666666666666666", 60, 1},
    {"0.010000", 100, 1},
    {"0.01", 100, 1},
    {"1e-2", 100, 1},
    {"1.0E-002", 100, 1},
    {"0.008342", 120000, 1001},
    {"0.008333", 120, 1},
    {".0083333", 120, 1},
    {"0.008", 125, 1},
    // Rates of television, rounded, cut off, and by way of 29.97 and the like.
    {"0.041708", 24000, 1001},
    {"0.0417083", 24000, 1001},
    {"0.0417014", 24000, 1001},
    {"0.033367", 30000, 1001},
    {"0.033366", 30000, 1001},
    {"0.0333667", 30000, 1001},
    {"0.03336670003", 30000, 1001},
    {"0.0334", 30000, 1001},
    {"0.016683", 60000, 1001},
    {"0.0166833", 60000, 1001},
    {"0.01668335", 60000, 1001},
    {"0.0083417", 120000, 1001},
    // Others.
    {"0.02", 50, 1},
    {"0.016667", 60, 1},
    {"0.0166667", 60, 1},
    {"0.0166", 60, 1},
    {"0.0167", 60, 1},
    {"0.0416", 24, 1},
    {"0.0417", 24, 1},
    {"0.0333", 30, 1},
    {"0.0083", 120, 1},
    {"0.00833334", 120, 1},
    {"0.033333335071802", 30, 1},
    {"0.0111111", 90, 1},
    {"0.1", 10, 1},
    {"1", 1, 1},
    {"0.001", 1000, 1},
    // Too far from any.
    {"0.033", 0, 1},
    {"0.0335", 0, 1},
    {"0.0333500", 0, 1},
    {"0.017", 0, 1},
    {"0.0123457", 0, 1},
    {"0.0166700", 0, 1},
    {"2", 0, 1},
    {"0", 0, 1},
    {"-0.04", 0, 1},
};

class MotionUsualRate : public testing::TestWithParam<Usual> {};

TEST_P(MotionUsualRate, IsRecognised) {
  std::optional<Rate> const rate = UsualRate(Parsed(GetParam().text));
  ASSERT_EQ(rate.has_value(), GetParam().value != 0);
  if (rate) {
    EXPECT_EQ(rate->value, GetParam().value);
    EXPECT_EQ(rate->scale, GetParam().scale);
  }
}

INSTANTIATE_TEST_SUITE_P(MotionFrameTime, MotionUsualRate, testing::ValuesIn(kUsual));

TEST(MotionFrameTime, KeepsTheDigitsOfTheText) {
  FrameTime const time = Parsed("0.0417000");
  EXPECT_EQ(time.text, "0.0417000");
  EXPECT_EQ(time.mantissa, 417U);
  EXPECT_EQ(time.decimals, 4);
  EXPECT_DOUBLE_EQ(time.unit, 1e-7);
  EXPECT_EQ(time.seconds, 0.0417);

  FrameTime const scaled = Parsed("1.25e-002");
  EXPECT_EQ(scaled.mantissa, 125U);
  EXPECT_EQ(scaled.decimals, 4);
  EXPECT_DOUBLE_EQ(scaled.unit, 1e-4);

  FrameTime const many = Parsed("0.01666666666666666666666666666667");
  EXPECT_EQ(many.mantissa, 166666666666666666U);
  EXPECT_EQ(many.decimals, 19);

  EXPECT_EQ(Parsed("20").decimals, -1);
}

TEST(MotionFrameTime, RefusesWhatIsNoNumber) {
  for (char const* const text : {"", "x", "0,033", "nan", "inf", "1e999"}) {
    EXPECT_FALSE(ParseFrameTime(text).has_value()) << text;
  }
}

TEST(MotionFrameTime, FractionsAreExactWhereReadersCanCountWithThem) {
  std::optional<Rate> rate = FractionRate(Parsed("0.033"), 1000);
  ASSERT_TRUE(rate.has_value());
  EXPECT_EQ(rate->value, 1000U);
  EXPECT_EQ(rate->scale, 33U);

  rate = FractionRate(Parsed("0.0123457"), 8000);
  ASSERT_TRUE(rate.has_value());
  EXPECT_EQ(rate->value, 10000000U);
  EXPECT_EQ(rate->scale, 123457U);
}

TEST(MotionFrameTime, OtherFractionsStayRightOverTheRecording) {
  for (char const* const text : {"0.0123457", "0.012345678901", "0.00777", "1.2345", "0.0011", "0.3141592653589793"}) {
    for (std::uint64_t const last : {1U, 100U, 10000U, 100000U, 1000000U, 50000000U}) {
      FrameTime const time = Parsed(text);
      std::optional<Rate> const rate = FractionRate(time, last);
      if (!rate) {
        continue;
      }
      EXPECT_LT(rate->scale * last, 1U << 30U) << text << ' ' << last;
      double const seconds = static_cast<double>(rate->scale) / rate->value * static_cast<double>(last);
      EXPECT_NEAR(seconds, time.seconds * static_cast<double>(last), 1e-4) << text << ' ' << last;
    }
    EXPECT_TRUE(FractionRate(Parsed(text), 10000).has_value()) << text;
  }
  // 31.4 million seconds are more than any small fraction tells to a ten-thousandth.
  EXPECT_FALSE(FractionRate(Parsed("0.3141592653589793"), 100000000).has_value());
}

struct Base {
  char const* text;
  std::uint64_t lastFrame;
  unsigned digits;  ///< 0: time codes
  unsigned value;
  unsigned scale;
};

void PrintTo(Base const& base, std::ostream* out) {
  *out << base.text << " up to " << base.lastFrame;
}

Base const kBases[] = {
    {"0.0333333", 100, 0, 30, 1},
    {"0.033367", 2591999, 0, 30000, 1001},
    // A day of time codes ends; the four digits of 100,000 seconds are below 2 to the 31st.
    {"0.0333333", 2591999, 0, 30, 1},
    {"0.0333333", 2592000, 4, 0, 0},
    {"0.033", 10, 0, 1000, 33},
    // Slower than half a hertz.
    {"2", 10, 0, 1, 2},
    {"2.0001", 10, 4, 0, 0},
    {"2.5", 10, 1, 0, 0},
    {"10", 10, 1, 0, 0},
    {"3600", 1000000, 1, 0, 0},
    // Faster than a thousand.
    {"0.001", 1000, 0, 1000, 1},
    {"0.0009999", 1000, 7, 0, 0},
    {"0.0005", 1000, 4, 0, 0},
    {"1e-5", 1000, 5, 0, 0},
    {"1.5e-9", 1000, 9, 0, 0},
    // Digits give way to the length of a recording, down to a tenth of a frame.
    {"0.000123457", 1000000, 7, 0, 0},
    {"0.000123457", 1000000000, 5, 0, 0},
    // One frame is at 0.
    {"0", 0, 0, 1, 1},
    {"-1", 0, 0, 1, 1},
};

class MotionTimeBase : public testing::TestWithParam<Base> {};

TEST_P(MotionTimeBase, IsChosen) {
  std::optional<kit::TimeBase> const base = ChooseTimeBase(Parsed(GetParam().text), GetParam().lastFrame);
  ASSERT_TRUE(base.has_value());
  EXPECT_EQ(base->digits(), GetParam().digits);
  EXPECT_FALSE(base->dropsFrames());
  if (!base->isGmt()) {
    EXPECT_EQ(base->value(), GetParam().value);
    EXPECT_EQ(base->scale(), GetParam().scale);
  }
}

INSTANTIATE_TEST_SUITE_P(MotionFrameTime, MotionTimeBase, testing::ValuesIn(kBases));

TEST(MotionFrameTime, SeveralFramesNeedTimeBetweenThem) {
  EXPECT_FALSE(ChooseTimeBase(Parsed("0"), 1).has_value());
  EXPECT_FALSE(ChooseTimeBase(Parsed("-0.04"), 1).has_value());
}

}  // namespace
}  // namespace senmark_motion
