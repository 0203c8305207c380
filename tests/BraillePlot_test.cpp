#include "BraillePlot.h"

#include <gtest/gtest.h>

#include "Utf8.h"

namespace senmark_tool {
namespace {

/// Bits of each cell of a row, from the code points U+2800 and behind.
std::vector<int> Bits(std::string const& row) {
  std::vector<int> bits;
  for (std::size_t i = 0; i + 2 < row.size(); i += 3) {
    EXPECT_EQ(row[i], '\xE2');
    bits.push_back((static_cast<unsigned char>(row[i + 1]) - 0xA0) * 64 +
                   (static_cast<unsigned char>(row[i + 2]) & 0x3F));
  }
  return bits;
}

struct DotRow {
  int column;
  int row;
  int bits;
};

TEST(BrailleCanvas, EachDotHasItsBit) {
  // The numbers of the dots in the alphabet: 1 2 3 7 on the left, 4 5 6 8 on the right; dot n is bit n-1.
  for (DotRow const& dot : {DotRow{0, 0, 0x01}, DotRow{0, 1, 0x02}, DotRow{0, 2, 0x04}, DotRow{0, 3, 0x40},
                            DotRow{1, 0, 0x08}, DotRow{1, 1, 0x10}, DotRow{1, 2, 0x20}, DotRow{1, 3, 0x80}}) {
    BrailleCanvas canvas(1, 1);
    canvas.Dot(dot.column, dot.row);
    EXPECT_EQ(Bits(canvas.Row(0)), std::vector<int>{dot.bits}) << dot.column << ',' << dot.row;
  }
}

TEST(BrailleCanvas, DotsOutsideAreNotDrawn) {
  BrailleCanvas canvas(2, 1);
  canvas.Dot(-1, 0);
  canvas.Dot(0, -1);
  canvas.Dot(4, 0);
  canvas.Dot(0, 4);
  EXPECT_EQ(Bits(canvas.Row(0)), (std::vector<int>{0, 0}));
}

TEST(BrailleCanvas, LineHasBothEnds) {
  BrailleCanvas canvas(2, 1);
  canvas.Line(0, 3, 3, 0);
  EXPECT_EQ(Bits(canvas.Row(0)), (std::vector<int>{0x40 | 0x20, 0x02 | 0x08}));
}

TEST(DrawCurve, RisesFromBottomToTop) {
  Curve curve(4);
  for (std::size_t i = 0; i != 4; ++i) {
    curve.Add(i, static_cast<double>(i));
  }
  BrailleCanvas canvas(2, 1);
  DrawCurve(curve, eJoin::kDots, canvas);
  EXPECT_EQ(Bits(canvas.Row(0)), (std::vector<int>{0x40 | 0x20, 0x02 | 0x08}));
}

TEST(DrawCurve, StepsHoldTheEarlierValue) {
  Curve curve(4);
  curve.Add(0, 0);
  curve.Add(3, 1);
  BrailleCanvas dots(2, 1);
  DrawCurve(curve, eJoin::kDots, dots);
  EXPECT_EQ(Bits(dots.Row(0)), (std::vector<int>{0x40, 0x08}));
  BrailleCanvas steps(2, 1);
  DrawCurve(curve, eJoin::kSteps, steps);
  EXPECT_EQ(Bits(steps.Row(0)), (std::vector<int>{0x40 | 0x80, 0x40 | 0x80 | 0x20 | 0x10 | 0x08}));
}

TEST(DrawCurve, FlatCurveIsInTheMiddle) {
  Curve curve(2);
  curve.Add(0, 7);
  curve.Add(1, 7);
  BrailleCanvas canvas(1, 1);
  DrawCurve(curve, eJoin::kLines, canvas);
  EXPECT_EQ(Bits(canvas.Row(0)), (std::vector<int>{0x04 | 0x20}));
}

TEST(DrawCurve, HugeNumbersStayInside) {
  Curve curve(2);
  curve.Add(0, -1.7e308);
  curve.Add(1, 1.7e308);
  BrailleCanvas canvas(1, 1);
  DrawCurve(curve, eJoin::kDots, canvas);
  EXPECT_EQ(Bits(canvas.Row(0)), (std::vector<int>{0x40 | 0x08}));
}

TEST(PanelLines, NamesLargestAboveAndSmallestBelow) {
  Curve curve(8);
  curve.Add(0, -1.5);
  curve.Add(7, 20);
  std::vector<std::string> const lines = PanelLines(curve, eJoin::kLines, 4, 3, 5);
  ASSERT_EQ(lines.size(), 3u);
  EXPECT_EQ(lines[0].substr(0, 5), "   20");
  EXPECT_EQ(lines[1].substr(0, 5), "     ");
  EXPECT_EQ(lines[2].substr(0, 5), " -1.5");
  for (std::string const& line : lines) {
    EXPECT_EQ(Columns(line), 10u);
  }
}

TEST(TimeAxis, NamesBeginMiddleAndEndInSeconds) {
  std::vector<std::string> const lines = TimeAxisLines(0, 9, 40, 4);
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(Columns(lines[0]), 45u);
  // Centred on columns 5, 25 and 44 of 45, as far as there is room.
  EXPECT_EQ(lines[1], std::string(4, ' ') + "0 s" + std::string(16, ' ') + "4.5 s" + std::string(14, ' ') + "9 s");
}

TEST(TimeAxis, LongSpansHaveLargerUnits) {
  EXPECT_NE(TimeAxisLines(0, 119, 40, 0)[1].find("119 s"), std::string::npos);
  EXPECT_NE(TimeAxisLines(0, 120, 40, 0)[1].find("2 min"), std::string::npos);
  EXPECT_NE(TimeAxisLines(0, 7199, 40, 0)[1].find("min"), std::string::npos);
  EXPECT_NE(TimeAxisLines(3600, 10800, 40, 0)[1].find("3 h"), std::string::npos);
  EXPECT_NE(TimeAxisLines(0, 31622400, 40, 0)[1].find("366 d"), std::string::npos);
}

TEST(TimeAxis, LeavesOutWhatHasNoRoom) {
  std::vector<std::string> const lines = TimeAxisLines(100000, 100009, 12, 0);
  EXPECT_EQ(lines[1].find("100004"), std::string::npos);
  EXPECT_LE(lines[1].size(), 13u);
}

TEST(AxisNumber, HasSixDigits) {
  EXPECT_EQ(AxisNumber(1234567.0), "1.23457e+06");
  EXPECT_EQ(AxisNumber(-0.5), "-0.5");
}

}  // namespace
}  // namespace senmark_tool
