#include "TimedPoints.h"

#include "StaticPoints.h"

namespace senmark_gpx {

namespace {

kit::Instant ToSeconds(kit::Instant const& time) {
  return {time.seconds + (time.nanoseconds >= 500000000 ? 1 : 0), 0};
}

}  // namespace

TimedPoints::TimedPoints(kit::Group& group, GpxFields const& fields, PointsSurvey const& survey, unsigned digits,
                         eNames names, Limit& streams)
    : mGroup(&group),
      mFields(&fields),
      mStreams(&streams),
      mOrder(survey.isOrdered ? kit::eOrder::kAsGiven : kit::eOrder::kSorted),
      mHasElevations(survey.hasElevations()),
      mWholeSeconds(digits == 0),
      mNames(names) {}

void TimedPoints::add(Point const& point, std::uint64_t number) {
  kit::Instant const time = mWholeSeconds ? ToSeconds(*point.time) : *point.time;
  if (mNames == eNames::kAlways) {
    std::string const name = NameOf(point, *mFields);
    TextsOf(mFields->ofText("name")).add(time, name.empty() ? "Waypoint " + std::to_string(number) : name);
  }
  AddPosition(time, point);
  for (auto const& [field, text] : point.texts) {
    if (mNames == eNames::kWhereGiven || field != mFields->ofText("name")) {
      TextsOf(field).add(time, text);
    }
  }
  for (auto const& [field, value] : point.numbers) {
    NumbersOf(field).add(time, value);
  }
}

kit::StreamFormat TimedPoints::Format() const {
  kit::StreamFormat format;
  format.decimals = kDecimals;
  format.order = mOrder;
  return format;
}

void TimedPoints::AddPosition(kit::Instant const& time, Point const& point) {
  if (mHasElevations && !point.elevation) {
    throw kit::Failure("the file changes while it is read");
  }
  if (mPositions == nullptr) {
    mStreams->add();
    kit::StreamFormat format = Format();
    format.isPoint = true;
    mPositions = &mGroup->arrayStream("Position", PositionNames(mHasElevations), format);
  }
  double const numbers[] = {point.latitude, point.longitude, point.elevation.value_or(0)};
  mPositions->add(time, numbers, mHasElevations ? 3 : 2);
  if (!mHasElevations && point.elevation) {
    if (mElevations == nullptr) {
      mStreams->add();
      kit::StreamFormat format = Format();
      format.unit = "m";
      mElevations = &mGroup->numberStream("Elevation", format);
    }
    mElevations->add(time, *point.elevation);
  }
}

kit::TextStream& TimedPoints::TextsOf(std::size_t field) {
  if (mTexts.size() <= field) {
    mTexts.resize(field + 1);
  }
  if (mTexts[field] == nullptr) {
    mStreams->add();
    kit::StreamFormat format = Format();
    format.holds = (*mFields)[field].holds;
    format.marksEvents = (*mFields)[field].marksEvents;
    mTexts[field] = &mGroup->textStream((*mFields)[field].name, format);
  }
  return *mTexts[field];
}

kit::NumberStream& TimedPoints::NumbersOf(std::size_t field) {
  if (mNumbers.size() <= field) {
    mNumbers.resize(field + 1);
  }
  if (mNumbers[field] == nullptr) {
    mStreams->add();
    kit::StreamFormat format = Format();
    format.unit = (*mFields)[field].unit;
    format.holds = (*mFields)[field].holds;
    mNumbers[field] = &mGroup->numberStream((*mFields)[field].name, format);
  }
  return *mNumbers[field];
}

}  // namespace senmark_gpx
