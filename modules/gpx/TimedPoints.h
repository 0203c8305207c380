/// Points with times, as streams of samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "GpxLimits.h"
#include "GpxReader.h"
#include "GpxSurvey.h"
#include "senmark/module/Output.h"

namespace senmark_gpx {

/// The streams of one segment, or of all waypoints. Each is made with its first sample.
class TimedPoints {
 public:
  enum class eNames : std::uint8_t {
    kWhereGiven,  ///< a sample for a point that has a name
    kAlways,      ///< a waypoint without one gets a number for its name
  };

  /// All must live as long as this. survey: of these points, as a whole.
  TimedPoints(kit::Group& group, GpxFields const& fields, PointsSurvey const& survey, unsigned digits, eNames names,
              Limit& streams);

  /// point: with a time. number: of the point, from 1.
  void add(Point const& point, std::uint64_t number);

 private:
  kit::StreamFormat Format() const;
  void AddPosition(kit::Instant const& time, Point const& point);
  kit::TextStream& TextsOf(std::size_t field);
  kit::NumberStream& NumbersOf(std::size_t field);

  kit::Group* mGroup;
  GpxFields const* mFields;
  Limit* mStreams;
  kit::eOrder mOrder;
  bool mHasElevations;
  bool mWholeSeconds;
  eNames mNames;
  kit::ArrayStream* mPositions = nullptr;
  kit::NumberStream* mElevations = nullptr;
  std::vector<kit::TextStream*> mTexts;      ///< by field
  std::vector<kit::NumberStream*> mNumbers;  ///< by field
};

}  // namespace senmark_gpx
