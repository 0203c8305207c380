/// Points that have no time, as values that do not change.
#pragma once

#include <cstddef>
#include <string>

#include "GpxLimits.h"
#include "GpxReader.h"
#include "senmark/module/Output.h"

namespace senmark_gpx {

/// Degrees to a centimetre; elevations and whatever else points have go with them.
inline constexpr unsigned kDecimals = 7;

/// The names of the numbers of a position, without the elevation if there is none.
std::vector<std::string> PositionNames(bool hasElevation);

class StaticPoints {
 public:
  /// Both must live as long as this.
  StaticPoints(GpxFields const& fields, Limit& values) : mFields(fields), mValues(values) {}

  /// A position, or a group with it and what else the point has. number: of the point, from 1. Errors: `kit::Failure`
  /// for too many values.
  void add(kit::Group& group, Point const& point, std::uint64_t number);
  /// A group in any case, with the name of the waypoint.
  void addWaypoint(kit::Group& group, Point const& point, std::uint64_t number);

 private:
  void AddContent(kit::Group& group, Point const& point);
  void AddPosition(kit::Group& group, std::string const& name, Point const& point);

  GpxFields const& mFields;
  Limit& mValues;
};

/// The name of a point, empty if it has none.
std::string NameOf(Point const& point, GpxFields const& fields);

}  // namespace senmark_gpx
