/// What has to be known of a whole file before its samples can be written.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "GpxLimits.h"
#include "GpxReader.h"

namespace senmark_gpx {

/// The points of one segment, or all waypoints.
struct PointsSurvey {
  std::uint64_t points = 0;
  std::uint64_t timed = 0;
  std::uint64_t timedWithElevation = 0;
  bool isOrdered = true;  ///< no time is earlier than the one before it
  std::optional<kit::Instant> last;

  bool hasElevations() const { return timedWithElevation == timed; }
};

class GpxSurvey : public GpxSink {
 public:
  std::string version;
  std::string creator;
  std::vector<PointsSurvey> segments;  ///< of all tracks, in the order of the file
  PointsSurvey waypoints;
  std::uint64_t tracks = 0;
  std::uint64_t routes = 0;
  std::uint64_t routePoints = 0;
  /// Of all times of track points and waypoints. Digits: behind the point of the seconds, without zeros at the end.
  unsigned digits = 0;
  std::optional<kit::Instant> first;
  std::optional<kit::Instant> last;

  /// The digits that a file can have without the loss of any moment: readers keep moments as fractions of 32 bits from
  /// the first one. 0: whole seconds.
  unsigned exactDigits() const;

  void document(std::string_view version, std::string_view creator) override;
  void beginTrack() override;
  void beginSegment() override;
  void beginRoute() override;
  void point(ePoint kind, Point const& point) override;

 private:
  Limit mParts{kMostParts, "tracks, segments and routes"};
};

/// Reads the file. Errors: `kit::Failure` for what is not well-formed, a time or elevation that is none, and too many
/// tracks, segments and routes.
GpxSurvey MakeSurvey(kit::Input const& input);

}  // namespace senmark_gpx
