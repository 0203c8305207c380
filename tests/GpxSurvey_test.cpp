// What is known of a file before its samples are written.
#include "GpxSurvey.h"

#include <gtest/gtest.h>

#include "TempFolder.h"

namespace senmark_gpx {
namespace {

class GpxSurveyTest : public testing::Test {
 protected:
  GpxSurvey Survey(std::string const& content) {
    std::string const path = mFolder.Write("input.gpx", "<gpx version='1.1' creator='me'>" + content + "</gpx>");
    return MakeSurvey(kit::Input(path, "gpx", ""));
  }

  GpxSurvey SurveyOfTimes(std::string const& first, std::string const& second) {
    return Survey("<trk><trkseg>" + TrackPoint(first) + TrackPoint(second) + "</trkseg></trk>");
  }

  static std::string TrackPoint(std::string const& time, std::string const& more = "") {
    return "<trkpt lat='1' lon='2'><time>" + time + "</time>" + more + "</trkpt>";
  }

 private:
  senmark_test::TempFolder mFolder;
};

TEST_F(GpxSurveyTest, CountsWhatThereIs) {
  GpxSurvey const survey = Survey(
      "<wpt><ele>1</ele></wpt><wpt><time>2024-01-01T00:00:00Z</time></wpt>"
      "<rte><rtept><time>2020-01-01T00:00:00Z</time></rtept><rtept/></rte>"
      "<trk><trkseg/><trkseg>" +
      TrackPoint("2024-01-01T00:00:01Z", "<ele>1</ele>") + TrackPoint("") + TrackPoint("2024-01-01T00:00:01Z") +
      "</trkseg></trk><trk/>");
  EXPECT_EQ(survey.version, "1.1");
  EXPECT_EQ(survey.creator, "me");
  EXPECT_EQ(survey.tracks, 2U);
  EXPECT_EQ(survey.routes, 1U);
  EXPECT_EQ(survey.routePoints, 2U);
  ASSERT_EQ(survey.segments.size(), 2U);
  EXPECT_EQ(survey.segments[0].points, 0U);
  EXPECT_EQ(survey.segments[1].points, 3U);
  EXPECT_EQ(survey.segments[1].timed, 2U);
  EXPECT_FALSE(survey.segments[1].hasElevations());
  EXPECT_TRUE(survey.segments[1].isOrdered);
  EXPECT_EQ(survey.waypoints.points, 2U);
  EXPECT_EQ(survey.waypoints.timed, 1U);
  // Times of routes become no samples.
  EXPECT_EQ(survey.first->seconds, 1704067200);
  EXPECT_EQ(survey.last->seconds, 1704067201);
}

TEST_F(GpxSurveyTest, ElevationsOfPointsWithoutTimeDoNotCount) {
  EXPECT_TRUE(
      Survey("<trk><trkseg>" + TrackPoint("2024-01-01T00:00:01Z", "<ele>1</ele>") + TrackPoint("") + "</trkseg></trk>")
          .segments[0]
          .hasElevations());
}

TEST_F(GpxSurveyTest, OrderIsThatOfEachSegment) {
  EXPECT_TRUE(SurveyOfTimes("2024-01-01T00:00:00Z", "2024-01-01T00:00:00Z").segments[0].isOrdered);
  EXPECT_TRUE(SurveyOfTimes("2024-01-01T00:00:00+01:00", "2024-01-01T00:00:00Z").segments[0].isOrdered);
  EXPECT_FALSE(SurveyOfTimes("2024-01-01T00:00:00.001Z", "2024-01-01T00:00:00Z").segments[0].isOrdered);
  EXPECT_TRUE(Survey("<trk><trkseg>" + TrackPoint("2024-01-02T00:00:00Z") + "</trkseg><trkseg>" +
                     TrackPoint("2024-01-01T00:00:00Z") + "</trkseg></trk>")
                  .segments[1]
                  .isOrdered);
}

TEST_F(GpxSurveyTest, DigitsAreThoseOfTheTimesThatReadersCanKeep) {
  struct Row {
    char const* first;
    char const* second;
    unsigned digits;
    unsigned exact;
  };
  Row const rows[] = {
      {"2024-01-01T00:00:00Z", "2024-01-01T00:00:01Z", 0, 0},
      {"2024-01-01T00:00:00.000Z", "2024-01-01T00:00:01.500Z", 1, 1},
      {"2024-01-01T00:00:00.05Z", "2024-01-01T00:00:01.5Z", 2, 2},
      {"2024-01-01T00:00:00.123456789Z", "2024-01-01T00:00:00.2Z", 9, 9},
      {"2024-01-01T00:00:00.123456789Z", "2024-01-01T00:00:01.2Z", 9, 9},
      {"2024-01-01T00:00:00.123456789Z", "2024-01-01T00:00:02.2Z", 9, 8},
      {"2024-01-01T00:00:00.123Z", "2024-01-25T20:31:22Z", 3, 3},
      {"2024-01-01T00:00:00.123Z", "2024-01-25T20:31:23Z", 3, 2},
      {"2012-01-01T00:00:00.5Z", "2018-10-21T12:19:23Z", 1, 1},
      {"2012-01-01T00:00:00.5Z", "2018-10-21T12:19:24Z", 1, 0},
      {"0001-01-01T00:00:00.5Z", "9999-12-31T23:59:59.123456789Z", 9, 0},
  };
  for (Row const& row : rows) {
    GpxSurvey const survey = SurveyOfTimes(row.first, row.second);
    EXPECT_EQ(survey.digits, row.digits) << row.second;
    EXPECT_EQ(survey.exactDigits(), row.exact) << row.second;
    EXPECT_EQ(SurveyOfTimes(row.second, row.first).exactDigits(), row.exact) << row.second;
  }
  EXPECT_EQ(Survey("<trk><trkseg/></trk>").exactDigits(), 0U);
}

std::string Repeated(std::string const& text, std::size_t count) {
  std::string all;
  for (std::size_t i = 0; i != count; ++i) {
    all += text;
  }
  return all;
}

TEST_F(GpxSurveyTest, PartsHaveALimit) {
  std::string const most = Repeated("<trk><trkseg/><trkseg/></trk>", 3000) + Repeated("<rte/>", 1000);
  EXPECT_NO_THROW(Survey(most));
  for (char const* const part : {"<rte/>", "<trk/>"}) {
    EXPECT_THROW(Survey(most + part), kit::Failure);
  }
  EXPECT_THROW(Survey(most.substr(6) + "<trk><trkseg/><trkseg/></trk>"), kit::Failure);
}

}  // namespace
}  // namespace senmark_gpx
