#include "Curve.h"

#include <gtest/gtest.h>

namespace senmark_tool {
namespace {

TEST(Curve, KnowsItsRange) {
  Curve curve(3);
  EXPECT_TRUE(curve.IsEmpty());
  curve.Add(0, 5);
  curve.Add(2, -1);
  curve.Add(2, 3);
  EXPECT_EQ(curve.Min(), -1);
  EXPECT_EQ(curve.Max(), 5);
  EXPECT_FALSE(curve.Columns()[1].isUsed);
  EXPECT_EQ(curve.Columns()[2].first, -1);
  EXPECT_EQ(curve.Columns()[2].last, 3);
}

TEST(Curve, ColumnsHaveFirstLastAndExtremes) {
  Curve curve(2);
  for (double const value : {3.0, 7.0, -2.0, 5.0}) {
    curve.Add(1, value);
  }
  EXPECT_FALSE(curve.Columns()[0].isUsed);
  CurveColumn const& column = curve.Columns()[1];
  EXPECT_TRUE(column.isUsed);
  EXPECT_EQ(column.first, 3);
  EXPECT_EQ(column.last, 5);
  EXPECT_EQ(column.min, -2);
  EXPECT_EQ(column.max, 7);
}

}  // namespace
}  // namespace senmark_tool
