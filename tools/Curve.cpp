#include "Curve.h"

#include <algorithm>

namespace senmark_tool {

void CurveColumn::Add(double value) {
  if (!isUsed) {
    *this = CurveColumn{true, value, value, value, value};
    return;
  }
  last = value;
  min = std::min(min, value);
  max = std::max(max, value);
}

void Curve::Add(std::size_t column, double value) {
  mColumns[column].Add(value);
  mMin = mCount == 0 ? value : std::min(mMin, value);
  mMax = mCount == 0 ? value : std::max(mMax, value);
  ++mCount;
}

}  // namespace senmark_tool
