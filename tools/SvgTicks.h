/// Round numbers for the axes of plots.
#pragma once

#include <string>
#include <vector>

namespace senmark_tool {

struct Tick {
  double value;
  std::string label;
};

/// An axis from one number to another, with `from` below `to`.
struct Axis {
  double from = 0;
  double to = 1;
  std::vector<Tick> ticks;

  /// Where a number is between both ends: 0 to 1.
  double Share(double value) const;
};

/// An axis for numbers from `min` to `max`, which are finite and may be equal.
///
/// mostTicks  at least 2. Ticks are multiples of 1, 2 or 5 times a power of ten, with as many decimals as that
///            needs.
/// isRounded  whether the axis is to begin and end at a tick.
Axis MakeAxis(double min, double max, int mostTicks, bool isRounded);

}  // namespace senmark_tool
