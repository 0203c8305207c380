/// Points with times, as streams of samples.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "GpxReader.h"
#include "GpxSurvey.h"
#include "senmark/module/Output.h"

namespace senmark_gpx {

/// Counts the streams of one file, each of which takes memory until the file is finished.
class StreamCount {
 public:
  static constexpr std::size_t kMost = 20000;

  /// Errors: `kit::Failure` for too many.
  void add();

 private:
  std::size_t mCount = 0;
};

/// The streams of one segment, or of all waypoints. Each is made with its first sample.
class TimedPoints {
 public:
  enum class eNames : std::uint8_t {
    kWhereGiven,  ///< a sample for a point that has a name
    kAlways,      ///< a waypoint without one gets a number for its name
  };

  /// All must live as long as this. survey: of these points, as a whole.
  TimedPoints(kit::Group& group, GpxFields const& fields, PointsSurvey const& survey, unsigned digits, eNames names,
              StreamCount& streams);

  /// point: with a time. number: of the point, from 1.
  void add(Point const& point, std::uint64_t number);

 private:
  kit::StreamFormat Format() const;
  void AddPosition(kit::Instant const& time, Point const& point);
  kit::TextStream& TextsOf(std::size_t field);
  kit::NumberStream& NumbersOf(std::size_t field);

  kit::Group* mGroup;
  GpxFields const* mFields;
  StreamCount* mCount;
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
