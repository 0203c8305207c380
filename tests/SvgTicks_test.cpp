#include "SvgTicks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace senmark_tool {
namespace {

constexpr double kMost = std::numeric_limits<double>::max();

struct Row {
  char const* name;
  double min;
  double max;
  bool isRounded;
  std::vector<std::string> labels;
};

class Labels : public testing::TestWithParam<Row> {};

TEST_P(Labels, AreRound) {
  Axis const axis = MakeAxis(GetParam().min, GetParam().max, 8, GetParam().isRounded);
  std::vector<std::string> labels;
  for (Tick const& tick : axis.ticks) {
    labels.push_back(tick.label);
  }
  EXPECT_EQ(labels, GetParam().labels);
}

INSTANTIATE_TEST_SUITE_P(
    MakeAxis, Labels,
    testing::Values(Row{"Inside", 0.3, 7.2, false, {"1", "2", "3", "4", "5", "6", "7"}},
                    Row{"Rounded", 0.3, 6.2, true, {"0", "1", "2", "3", "4", "5", "6", "7"}},
                    Row{"TwosAndZero", -5.5, 8, true, {"\u22126", "\u22124", "\u22122", "0", "2", "4", "6", "8"}},
                    Row{"Fives", 0, 30, true, {"0", "5", "10", "15", "20", "25", "30"}},
                    Row{"Decimals", 0, 0.6, true, {"0.0", "0.1", "0.2", "0.3", "0.4", "0.5", "0.6"}},
                    Row{"TwoDecimals", 1, 1.13, true, {"1.00", "1.02", "1.04", "1.06", "1.08", "1.10", "1.12", "1.14"}},
                    Row{"NoNegativeZero", -0.5, 0.5, false, {"\u22120.4", "\u22120.2", "0.0", "0.2", "0.4"}},
                    Row{"Groups",
                        9000,
                        15500,
                        false,
                        {"9000", "10\u202F000", "11\u202F000", "12\u202F000", "13\u202F000", "14\u202F000",
                         "15\u202F000"}},
                    Row{"LongGroups",
                        -2e6,
                        0,
                        true,
                        {"\u22122\u202F000\u202F000", "\u22121\u202F500\u202F000", "\u22121\u202F000\u202F000",
                         "\u2212500\u202F000", "0"}},
                    Row{"Flat", 4, 4, true, {"2", "3", "4", "5", "6"}},
                    Row{"FlatZero", 0, 0, true, {"\u22121.0", "\u22120.5", "0.0", "0.5", "1.0"}},
                    Row{"Large", 0, 6e12, true, {"0", "1e+12", "2e+12", "3e+12", "4e+12", "5e+12", "6e+12"}},
                    Row{"Small", 0, 2e-10, true, {"0", "5e\u221211", "1e\u221210", "1.5e\u221210", "2e\u221210"}}),
    [](testing::TestParamInfo<Row> const& row) { return row.param.name; });

TEST(MakeAxis, RoundedAxisBeginsAndEndsAtATick) {
  for (auto const& [min, max] : {std::pair(-3.7, 11.2), std::pair(0.013, 0.0271), std::pair(-812.0, -799.5)}) {
    Axis const axis = MakeAxis(min, max, 8, true);
    EXPECT_LE(axis.from, min);
    EXPECT_GE(axis.to, max);
    ASSERT_GE(axis.ticks.size(), 3u);
    EXPECT_DOUBLE_EQ(axis.ticks.front().value, axis.from);
    EXPECT_DOUBLE_EQ(axis.ticks.back().value, axis.to);
  }
}

TEST(MakeAxis, OtherAxisKeepsItsEnds) {
  Axis const axis = MakeAxis(-3.7, 11.2, 8, false);
  EXPECT_EQ(axis.from, -3.7);
  EXPECT_EQ(axis.to, 11.2);
}

TEST(MakeAxis, TicksRiseAndStayInsideForNumbersOfAllSizes) {
  std::vector<std::pair<double, double>> const ranges = {
      {-kMost, kMost},
      {kMost / 2, kMost},
      {kMost, kMost},
      {-kMost, -kMost},
      {0, std::numeric_limits<double>::denorm_min()},
      {std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::denorm_min()},
      {1e15, std::nextafter(1e15, 2e15)},
      {1, std::nextafter(1.0, 2.0)},
      {-1e-300, 1e300}};
  for (auto const& [min, max] : ranges) {
    for (bool const isRounded : {false, true}) {
      Axis const axis = MakeAxis(min, max, 8, isRounded);
      EXPECT_TRUE(std::isfinite(axis.from) && std::isfinite(axis.to)) << min << ' ' << max;
      EXPECT_LT(axis.from, axis.to) << min << ' ' << max;
      EXPECT_LE(axis.ticks.size(), 10u);
      for (std::size_t i = 0; i != axis.ticks.size(); ++i) {
        EXPECT_TRUE(i == 0 || axis.ticks[i - 1].value < axis.ticks[i].value) << min << ' ' << max;
        EXPECT_GE(axis.Share(axis.ticks[i].value), 0);
        EXPECT_LE(axis.Share(axis.ticks[i].value), 1);
      }
    }
  }
}

TEST(Axis, ShareIsLinear) {
  Axis axis;
  axis.from = -10;
  axis.to = 30;
  EXPECT_EQ(axis.Share(-10), 0);
  EXPECT_EQ(axis.Share(0), 0.25);
  EXPECT_EQ(axis.Share(30), 1);
  axis.from = -kMost;
  axis.to = kMost;
  EXPECT_EQ(axis.Share(0), 0.5);
}

}  // namespace
}  // namespace senmark_tool
