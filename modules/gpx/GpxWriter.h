/// Writes what a reader meets into the data file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "GpxLimits.h"
#include "GpxReader.h"
#include "GpxSurvey.h"
#include "StaticPoints.h"
#include "TimedPoints.h"
#include "senmark/module/Output.h"

namespace senmark_gpx {

/// A track or a route that has begun. Its group is made when its name has come, if it has one, and all that stands
/// before its points.
struct OpenPart {
  std::string name;  ///< if it has none itself
  std::vector<std::pair<std::string, std::string>> properties;
  kit::Group* group = nullptr;
};

class GpxWriter : public GpxSink {
 public:
  /// All must live as long as the writer; survey is that of the file that comes. Sets the time base.
  GpxWriter(kit::Output& output, GpxSurvey const& survey, GpxFields const& fields);

  void document(std::string_view version, std::string_view creator) override;
  void property(std::string const& title, std::string_view text) override;
  void bounds(Bounds const& bounds) override;
  void beginTrack() override;
  void endTrack() override;
  void beginSegment() override;
  void endSegment() override;
  void beginRoute() override;
  void endRoute() override;
  void point(ePoint kind, Point const& point) override;

 private:
  void BeginPart(char const* kind, std::uint64_t number);
  kit::Group& GroupOfPart();
  void EndPart();
  void AddWaypoint(Point const& point);
  void AddTrackPoint(Point const& point);

  kit::Output& mOutput;
  GpxSurvey const& mSurvey;
  GpxFields const& mFields;
  unsigned mDigits;
  Limit mStreams{kMostStreams, "streams"};
  Limit mValues{kMostValues, "values that do not change"};
  StaticPoints mStaticPoints;
  kit::Group* mMetadata = nullptr;
  kit::Group* mWaypoints = nullptr;
  std::optional<TimedPoints> mTimedWaypoints;
  std::uint64_t mWaypointCount = 0;
  std::optional<OpenPart> mPart;
  std::uint64_t mTrackCount = 0;
  std::uint64_t mRouteCount = 0;
  std::uint64_t mSegmentCount = 0;         ///< of the track
  std::size_t mNextSegment = 0;            ///< of the file
  PointsSurvey const* mSegment = nullptr;  ///< that is open
  kit::Group* mSegmentGroup = nullptr;
  std::optional<TimedPoints> mTimedPoints;
  std::uint64_t mPointCount = 0;  ///< of the segment or the route
};

}  // namespace senmark_gpx
