#include "GpxSurvey.h"

#include <algorithm>

namespace senmark_gpx {

namespace {

unsigned DigitsOf(std::int32_t nanoseconds) {
  unsigned digits = nanoseconds == 0 ? 0 : 9;
  for (; digits != 0 && nanoseconds % 10 == 0; nanoseconds /= 10) {
    --digits;
  }
  return digits;
}

}  // namespace

unsigned GpxSurvey::exactDigits() const {
  if (!first) {
    return 0;
  }
  constexpr std::int64_t kMostUnits = 0x7FFFFFFF;
  std::int64_t const seconds = last->seconds - first->seconds + 1;
  unsigned exact = 0;
  for (std::int64_t units = 10; exact != digits && seconds <= kMostUnits / units; units *= 10) {
    ++exact;
  }
  return exact;
}

void GpxSurvey::document(std::string_view documentVersion, std::string_view documentCreator) {
  version = documentVersion;
  creator = documentCreator;
}

void GpxSurvey::beginTrack() {
  mParts.add();
  ++tracks;
}

void GpxSurvey::beginSegment() {
  mParts.add();
  segments.emplace_back();
}

void GpxSurvey::beginRoute() {
  mParts.add();
  ++routes;
}

void GpxSurvey::point(ePoint kind, Point const& point) {
  if (kind == ePoint::kRoutePoint) {
    ++routePoints;
    return;
  }
  PointsSurvey& survey = kind == ePoint::kWaypoint ? waypoints : segments.back();
  ++survey.points;
  if (!point.time) {
    return;
  }
  ++survey.timed;
  survey.timedWithElevation += point.elevation ? 1 : 0;
  survey.isOrdered = survey.isOrdered && !(survey.last && *point.time < *survey.last);
  survey.last = point.time;
  digits = std::max(digits, DigitsOf(point.time->nanoseconds));
  first = first && *first < *point.time ? first : point.time;
  last = last && *point.time < *last ? last : point.time;
}

GpxSurvey MakeSurvey(kit::Input const& input) {
  GpxSurvey survey;
  GpxFields fields;
  GpxReader reader(survey, fields, eDetail::kTimes);
  ParseXml(input, reader, eXmlNames::kLocal);
  return survey;
}

}  // namespace senmark_gpx
