#include "GpxConverter.h"

#include <algorithm>
#include <string>

#include "GpxFields.h"
#include "GpxReader.h"
#include "GpxSurvey.h"
#include "GpxWriter.h"
#include "XmlParser.h"

namespace senmark_gpx {

namespace {

/// Bytes in which the root element has to begin.
constexpr std::size_t kHead = std::size_t{16} << 10;

std::string Counted(std::uint64_t count, char const* one, char const* many) {
  return std::to_string(count) + ' ' + (count == 1 ? one : many);
}

std::string TextOf(kit::Instant const& instant) {
  kit::CivilTime const time = kit::MakeCivilTime(instant);
  char text[64];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02d %02d:%02d:%02d", time.year, time.month, time.day, time.hour,
                time.minute, time.second);
  return text;
}

void ExplainPoints(std::string const& name, PointsSurvey const& points, kit::Explanation& explanation) {
  if (points.points == 0) {
    explanation.add(name + ": no points");
    return;
  }
  std::string line = name + ": " + Counted(points.points, "point", "points");
  if (points.timed == 0) {
    line += ", none with a time: values that do not change";
  } else {
    line += ", " + std::to_string(points.timed) + " with a time";
    line += points.hasElevations() ? ", all of these with an elevation" : ", not all of these with an elevation";
    line += points.isOrdered ? "" : ", not in order";
  }
  explanation.add(line);
}

void ExplainSurvey(GpxSurvey const& survey, kit::Explanation& explanation) {
  explanation.add("GPX " + (survey.version.empty() ? std::string("without a version") : survey.version) +
                  (survey.creator.empty() ? std::string() : " by " + survey.creator));
  explanation.add(Counted(survey.tracks, "track", "tracks") + ", " + Counted(survey.routes, "route", "routes") +
                  " with " + Counted(survey.routePoints, "point", "points"));
  constexpr std::size_t kMostLines = 10;
  for (std::size_t i = 0; i != std::min(survey.segments.size(), kMostLines); ++i) {
    ExplainPoints("segment " + std::to_string(i + 1), survey.segments[i], explanation);
  }
  if (survey.segments.size() > kMostLines) {
    explanation.add("and " + Counted(survey.segments.size() - kMostLines, "more segment", "more segments"));
  }
  ExplainPoints("waypoints", survey.waypoints, explanation);
  if (survey.first) {
    explanation.add("times from " + TextOf(*survey.first) + " to " + TextOf(*survey.last) + " GMT, written with " +
                    Counted(std::max(1U, survey.exactDigits()), "digit", "digits") + " behind the seconds");
  }
}

/// A root element that is cut or not well-formed: the file is taken, for an error with its place says more than what
/// another converter would make of it.
bool HasBrokenRoot(std::string const& head) {
  return head.find("<gpx") != std::string::npos;
}

}  // namespace

bool GpxConverter::accepts(kit::Input const& input) {
  if (input.extension() != "gpx") {
    return false;
  }
  std::string const head = input.head(kHead);
  std::optional<std::string> const root = FindRoot(head);
  return root == "gpx" || (!root && HasBrokenRoot(head));
}

void GpxConverter::convert(kit::Input const& input, kit::Output& output) {
  GpxSurvey const survey = MakeSurvey(input);
  GpxFields fields;
  GpxWriter writer(output, survey, fields);
  GpxReader reader(writer, fields, eDetail::kAll);
  ParseXml(input, reader);
}

void GpxConverter::explain(kit::Input const& input, kit::Explanation& explanation) {
  if (input.extension() != "gpx") {
    explanation.add("declined: the extension is not gpx");
    return;
  }
  std::optional<std::string> const root = FindRoot(input.head(kHead));
  if (!accepts(input)) {
    explanation.add(root ? "declined: XML whose root element is " + *root
                         : "declined: no element within the first " + std::to_string(kHead >> 10) + " KiB");
    return;
  }
  explanation.add("taken: XML whose root element is gpx");
  try {
    ExplainSurvey(MakeSurvey(input), explanation);
  } catch (kit::Failure const& failure) {
    explanation.add("it will not open: byte " + std::to_string(failure.offset()) + ", line " +
                    std::to_string(failure.line()) + ": " + failure.what());
  }
}

}  // namespace senmark_gpx
