#include "GpxReader.h"

#include <algorithm>
#include <cmath>

#include "GpxProperties.h"
#include "GpxText.h"

namespace senmark_gpx {

namespace {

/// Of an attribute of a point or of bounds. limit: degrees either way.
double ParseDegrees(XmlAttributes const& attributes, char const* name, double limit) {
  std::optional<std::string_view> const text = attributes.find(name);
  if (!text) {
    throw kit::Failure(std::string("without the attribute ") + name);
  }
  double const degrees = ParseNumber(*text).value_or(NAN);
  if (!(std::fabs(degrees) <= limit)) {
    throw kit::Failure(std::string("no degrees: ") + name + "=\"" + std::string(CutText(*text, 100)) + '"');
  }
  return degrees;
}

constexpr double kLatitudeLimit = 90;
constexpr double kLongitudeLimit = 180;

}  // namespace

void GpxReader::start(XmlName const& name, XmlAttributes const& attributes) {
  if (mSkipped != 0) {
    ++mSkipped;
    return;
  }
  mIsLeaf = false;
  if (mFrames.empty()) {
    StartRoot(name, attributes);
    return;
  }
  std::string_view const local = name.local();
  switch (mFrames.back()) {
    case eFrame::kRoot:
      StartInRoot(local, attributes);
      break;
    case eFrame::kTrack:
      if (local == "trkseg") {
        mSink.beginSegment();
        mFrames.push_back(eFrame::kSegment);
      } else {
        StartProperty(local, attributes);
      }
      break;
    case eFrame::kSegment:
      if (local == "trkpt") {
        StartPoint(ePoint::kTrackPoint, attributes);
      } else {
        Skip();
      }
      break;
    case eFrame::kRoute:
      if (local == "rtept") {
        StartPoint(ePoint::kRoutePoint, attributes);
      } else {
        StartProperty(local, attributes);
      }
      break;
    case eFrame::kPoint:
    case eFrame::kPointPart:
      StartPointPart(local);
      break;
    case eFrame::kMetadata:
    case eFrame::kProperty:
      StartProperty(local, attributes);
      break;
  }
}

void GpxReader::StartRoot(XmlName const& name, XmlAttributes const& attributes) {
  if (name.local() != "gpx") {
    throw kit::Failure("the root element is no gpx");
  }
  mSpace = name.space();
  mSink.document(attributes.find("version").value_or(std::string_view()),
                 attributes.find("creator").value_or(std::string_view()));
  mFrames.push_back(eFrame::kRoot);
}

void GpxReader::StartInRoot(std::string_view local, XmlAttributes const& attributes) {
  if (local == "wpt") {
    StartPoint(ePoint::kWaypoint, attributes);
  } else if (local == "trk") {
    mSink.beginTrack();
    mFrames.push_back(eFrame::kTrack);
  } else if (local == "rte") {
    mSink.beginRoute();
    mFrames.push_back(eFrame::kRoute);
  } else if (local == "metadata") {
    mFrames.push_back(eFrame::kMetadata);
  } else {
    StartProperty(local, attributes);
  }
}

void GpxReader::StartPoint(ePoint kind, XmlAttributes const& attributes) {
  mPointKind = kind;
  ++mPointNumber;
  mPoint.elevation.reset();
  mPoint.time.reset();
  if (mDetail == eDetail::kAll) {
    mPoint.latitude = ParseDegrees(attributes, "lat", kLatitudeLimit);
    mPoint.longitude = ParseDegrees(attributes, "lon", kLongitudeLimit);
    mPoint.timeText.clear();
    mPoint.numbers.clear();
    mPoint.texts.clear();
  }
  mFrames.push_back(eFrame::kPoint);
}

void GpxReader::StartPointPart(std::string_view local) {
  bool const isDirect = mFrames.back() == eFrame::kPoint;
  bool const isWanted =
      mDetail == eDetail::kTimes ? isDirect && (local == "time" || local == "ele") : !(isDirect && local == "link");
  if (isWanted) {
    StartLeaf(eFrame::kPointPart);
  } else {
    Skip();
  }
}

void GpxReader::StartProperty(std::string_view local, XmlAttributes const& attributes) {
  bool const isDirect = mFrames.back() != eFrame::kProperty;
  bool const isOfFile = mFrames.back() == eFrame::kRoot || mFrames.back() == eFrame::kMetadata;
  if (mDetail != eDetail::kAll) {
    Skip();
  } else if (isOfFile && local == "bounds") {
    mSink.bounds(
        {ParseDegrees(attributes, "minlat", kLatitudeLimit), ParseDegrees(attributes, "minlon", kLongitudeLimit),
         ParseDegrees(attributes, "maxlat", kLatitudeLimit), ParseDegrees(attributes, "maxlon", kLongitudeLimit)});
    Skip();
  } else {
    std::string const& parent = isDirect ? std::string() : mTitles.back();
    // What holds extensions has nothing to tell itself.
    mTitles.push_back(local == "extensions" ? parent : TitleOf(parent, local));
    AttributeProperty const property = PropertyOfAttributes(local, mTitles.back(), attributes);
    if (!property.value.empty()) {
      mSink.property(property.title, CutText(property.value, kLongestText));
    }
    StartLeaf(eFrame::kProperty);
  }
}

void GpxReader::StartLeaf(eFrame frame) {
  mFrames.push_back(frame);
  mIsLeaf = true;
  mText.clear();
}

void GpxReader::text(std::string_view text) {
  if (mIsLeaf && mText.size() < kLongestText) {
    mText.append(text.substr(0, kLongestText - mText.size()));
  }
}

void GpxReader::end(XmlName const& name) {
  if (mSkipped != 0) {
    --mSkipped;
    return;
  }
  eFrame const frame = mFrames.back();
  mFrames.pop_back();
  bool const isLeaf = std::exchange(mIsLeaf, false);
  switch (frame) {
    case eFrame::kRoot:
    case eFrame::kMetadata:
      break;
    case eFrame::kTrack:
      mSink.endTrack();
      break;
    case eFrame::kSegment:
      mSink.endSegment();
      break;
    case eFrame::kRoute:
      mSink.endRoute();
      break;
    case eFrame::kPoint:
      mSink.point(mPointKind, mPoint);
      break;
    case eFrame::kPointPart:
      if (isLeaf) {
        EndPointPart(name);
      }
      break;
    case eFrame::kProperty: {
      std::string_view const text = Trimmed(mText);
      if (isLeaf && !text.empty()) {
        mSink.property(mTitles.back(), CutText(text, kLongestText - 4));
      }
      mTitles.pop_back();
      break;
    }
  }
}

void GpxReader::EndPointPart(XmlName const& name) {
  bool const isDirect = mFrames.back() == eFrame::kPoint;
  std::string_view const local = name.local();
  if (isDirect && local == "time") {
    EndTime();
    return;
  }
  std::size_t const field = isDirect && local != "ele" ? mFields.ofText(local) : GpxFields::kNone;
  if (field == GpxFields::kNone) {
    EndNumber(name, isDirect);
    return;
  }
  std::string_view const text = CutText(Trimmed(mText), kLongestName);
  bool const isNew = std::none_of(mPoint.texts.begin(), mPoint.texts.end(),
                                  [field](auto const& other) { return other.first == field; });
  if (isNew && !text.empty()) {
    mPoint.texts.emplace_back(field, text);
  }
}

void GpxReader::EndTime() {
  std::string_view const text = Trimmed(mText);
  if (mPoint.time || text.empty()) {
    return;
  }
  mPoint.time = ParseTime(text);
  if (!mPoint.time) {
    throw kit::Failure("no time: " + std::string(CutText(text, 100)));
  }
  mPoint.timeText = text;
}

std::optional<double> GpxReader::NumberOfText() const {
  // What was cut may have been anything.
  return mText.size() == kLongestText ? std::nullopt : ParseNumber(mText);
}

void GpxReader::EndNumber(XmlName const& name, bool isDirect) {
  bool const isElevation = isDirect && name.local() == "ele";
  bool const isStandard =
      isElevation || (isDirect && name.space() == mSpace && GpxFields::IsStandardNumber(name.local()));
  std::optional<double> const number = NumberOfText();
  bool const isInRange = number && !(std::fabs(*number) >= kit::kNumberLimit);
  if (isStandard && !isInRange) {
    throw kit::Failure("no number: " + std::string(CutText(Trimmed(mText), 100)));
  }
  if (!isInRange || std::isnan(*number)) {
    return;
  }
  if (isElevation) {
    mPoint.elevation = mPoint.elevation ? mPoint.elevation : number;
    return;
  }
  std::size_t const field = mFields.ofNumber(name.local());
  if (field >= mSeenIn.size()) {
    mSeenIn.resize(mFields.size());
  }
  if (std::exchange(mSeenIn[field], mPointNumber) != mPointNumber) {
    mPoint.numbers.emplace_back(field, *number);
  }
}

}  // namespace senmark_gpx
