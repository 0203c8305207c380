/// Curves of charts, kept in memory that does not grow with the number of their samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace senmark_tool {

/// What a curve does between two samples.
enum class eJoin : std::uint8_t {
  kDots,   ///< nothing
  kLines,  ///< a straight line
  kSteps,  ///< the earlier value until the later sample
};

/// The samples of one curve that fall on one column of the chart.
struct CurveColumn {
  bool isUsed = false;
  double first = 0;
  double last = 0;
  double min = 0;
  double max = 0;

  void Add(double value);
};

/// A curve in memory that depends on the width of the chart alone.
class Curve {
 public:
  explicit Curve(std::size_t columns) : mColumns(columns) {}

  /// Adds the next sample. column: below the count of columns; value: finite.
  void Add(std::size_t column, double value);

  bool IsEmpty() const { return mCount == 0; }
  double Min() const { return mMin; }
  double Max() const { return mMax; }
  std::vector<CurveColumn> const& Columns() const { return mColumns; }

 private:
  std::vector<CurveColumn> mColumns;
  std::uint64_t mCount = 0;
  double mMin = 0;
  double mMax = 0;
};

}  // namespace senmark_tool
