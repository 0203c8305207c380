/// GPX 1.0 and 1.1 as a series of points and of what stands around them.
///
/// Elements go by their local names, whatever their namespace, so that files without one are read too.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "GpxFields.h"
#include "XmlParser.h"

namespace senmark_gpx {

enum class ePoint : std::uint8_t { kWaypoint, kRoutePoint, kTrackPoint };

struct Point {
  double latitude = 0;              ///< degrees, north positive
  double longitude = 0;             ///< degrees, east positive
  std::optional<double> elevation;  ///< metres
  std::optional<kit::Instant> time;
  std::string timeText;
  /// By their fields, each once, in the order of the file.
  std::vector<std::pair<std::size_t, double>> numbers;
  std::vector<std::pair<std::size_t, std::string>> texts;
};

/// Least latitude, least longitude, largest latitude, largest longitude, in degrees.
using Bounds = std::array<double, 4>;

/// Takes what a reader meets, in the order of the file. A sink leaves out what does not matter to it.
class GpxSink {
 public:
  virtual ~GpxSink() = default;

  /// version, creator: empty if the file does not tell.
  virtual void document(std::string_view version, std::string_view creator) = 0;
  /// Of the track or route that has begun last and not ended; of the file outside of them.
  virtual void property(std::string const& /*title*/, std::string_view /*text*/) {}
  virtual void bounds(Bounds const& /*bounds*/) {}
  virtual void beginTrack() = 0;
  virtual void endTrack() {}
  virtual void beginSegment() = 0;
  virtual void endSegment() {}
  virtual void beginRoute() = 0;
  virtual void endRoute() {}
  virtual void point(ePoint kind, Point const& point) = 0;
};

enum class eDetail : std::uint8_t {
  kAll,
  kTimes,  ///< of points, only whether they have a time and an elevation; no properties
};

class GpxReader : public XmlHandler {
 public:
  /// Bytes of a text that are kept.
  static constexpr std::size_t kLongestText = 65000;

  /// Both must live as long as the reader.
  GpxReader(GpxSink& sink, GpxFields& fields, eDetail detail) : mSink(sink), mFields(fields), mDetail(detail) {}

  void start(XmlName const& name, XmlAttributes const& attributes) override;
  void end(XmlName const& name) override;
  void text(std::string_view text) override;

 private:
  enum class eFrame : std::uint8_t { kRoot, kMetadata, kTrack, kSegment, kRoute, kPoint, kPointPart, kProperty };

  void StartRoot(XmlName const& name, XmlAttributes const& attributes);
  void StartInRoot(std::string_view local, XmlAttributes const& attributes);
  void StartPoint(ePoint kind, XmlAttributes const& attributes);
  void StartPointPart(std::string_view local);
  void StartProperty(std::string_view local, XmlAttributes const& attributes);
  void StartLeaf(eFrame frame);
  void Skip() { mSkipped = 1; }

  void EndPointPart(XmlName const& name);
  void EndTime();
  void EndNumber(XmlName const& name, bool isDirect);
  std::optional<double> NumberOfText() const;

  GpxSink& mSink;
  GpxFields& mFields;
  eDetail mDetail;
  std::string mSpace;  ///< namespace of the root
  std::vector<eFrame> mFrames;
  unsigned mSkipped = 0;             ///< elements that are open and not looked at
  std::vector<std::string> mTitles;  ///< of the properties that are open
  bool mIsLeaf = false;              ///< the element that was opened last is open, and its text is wanted
  std::string mText;
  ePoint mPointKind = ePoint::kWaypoint;
  Point mPoint;
  std::uint64_t mPointNumber = 0;
  std::vector<std::uint64_t> mSeenIn;  ///< by field: the number of the last point that had it
};

}  // namespace senmark_gpx
