#include "GpxWriter.h"

#include <algorithm>

#include "GpxProperties.h"
#include "GpxText.h"

namespace senmark_gpx {

GpxWriter::GpxWriter(kit::Output& output, GpxSurvey const& survey, GpxFields const& fields)
    : mOutput(output), mSurvey(survey), mFields(fields), mDigits(survey.exactDigits()), mStaticPoints(fields, mValues) {
  if (survey.first) {
    output.setTimeBase(kit::TimeBase::gmt(std::max(1U, mDigits)));
  }
}

void GpxWriter::document(std::string_view version, std::string_view creator) {
  if (!creator.empty()) {
    mOutput.setCreator(creator);
  }
  mMetadata = &mOutput.top().group("Metadata");
  mMetadata->text("GPX version", version);
}

void GpxWriter::property(std::string const& title, std::string_view text) {
  mValues.add();
  if (!mPart) {
    mMetadata->text(title, text);
  } else if (mPart->group != nullptr) {
    mPart->group->text(title, text);
  } else {
    mPart->properties.emplace_back(title, text);
  }
}

void GpxWriter::bounds(Bounds const& bounds) {
  kit::NumberFormat format;
  format.unit = "deg";
  format.decimals = kDecimals;
  mMetadata->numbers("Bounds", {bounds.begin(), bounds.end()}, format,
                     {"Minimum latitude", "Minimum longitude", "Maximum latitude", "Maximum longitude"});
}

void GpxWriter::BeginPart(char const* kind, std::uint64_t number) {
  mPart.emplace();
  mPart->name = kind + (' ' + std::to_string(number));
  mPointCount = 0;
}

kit::Group& GpxWriter::GroupOfPart() {
  if (mPart->group == nullptr) {
    auto const name = std::find_if(mPart->properties.begin(), mPart->properties.end(),
                                   [](auto const& property) { return property.first == "Name"; });
    bool const hasName = name != mPart->properties.end();
    mPart->group = &mOutput.top().group(hasName ? CutText(name->second, kLongestName) : mPart->name);
    for (auto const& [title, text] : mPart->properties) {
      mPart->group->text(title, text);
    }
  }
  return *mPart->group;
}

void GpxWriter::EndPart() {
  GroupOfPart();
  mPart.reset();
}

void GpxWriter::beginTrack() {
  BeginPart("Track", ++mTrackCount);
  mSegmentCount = 0;
}

void GpxWriter::endTrack() {
  EndPart();
}

void GpxWriter::beginSegment() {
  if (mNextSegment == mSurvey.segments.size()) {
    throw kit::Failure("the file changes while it is read");
  }
  mSegment = &mSurvey.segments[mNextSegment++];
  mSegmentGroup = &GroupOfPart().group("Segment " + std::to_string(++mSegmentCount));
  mPointCount = 0;
  if (mSegment->timed != 0) {
    mTimedPoints.emplace(*mSegmentGroup, mFields, *mSegment, mDigits, TimedPoints::eNames::kWhereGiven, mStreams);
    if (mSegment->timed != mSegment->points) {
      kit::NumberFormat format;
      format.decimals = 0;
      mSegmentGroup->number("Points without time", static_cast<double>(mSegment->points - mSegment->timed), format);
    }
  }
}

void GpxWriter::endSegment() {
  mTimedPoints.reset();
}

void GpxWriter::beginRoute() {
  BeginPart("Route", ++mRouteCount);
}

void GpxWriter::endRoute() {
  EndPart();
}

void GpxWriter::point(ePoint kind, Point const& point) {
  if (kind == ePoint::kWaypoint) {
    AddWaypoint(point);
  } else if (kind == ePoint::kTrackPoint) {
    AddTrackPoint(point);
  } else {
    mStaticPoints.add(GroupOfPart(), point, ++mPointCount);
  }
}

void GpxWriter::AddWaypoint(Point const& point) {
  if (mWaypoints == nullptr) {
    mWaypoints = &mOutput.top().group("Waypoints");
    mTimedWaypoints.emplace(*mWaypoints, mFields, mSurvey.waypoints, mDigits, TimedPoints::eNames::kAlways, mStreams);
  }
  ++mWaypointCount;
  if (point.time) {
    mTimedWaypoints->add(point, mWaypointCount);
  } else {
    mStaticPoints.addWaypoint(*mWaypoints, point, mWaypointCount);
  }
}

void GpxWriter::AddTrackPoint(Point const& point) {
  ++mPointCount;
  if (!mTimedPoints) {
    mStaticPoints.add(*mSegmentGroup, point, mPointCount);
  } else if (point.time) {
    mTimedPoints->add(point, mPointCount);
  }
}

}  // namespace senmark_gpx
