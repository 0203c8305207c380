// The module for GPX as a host meets it: what becomes of files, and which errors come with which place.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "GpxConverter.h"
#include "GpxLimits.h"
#include "ModuleHost.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;
namespace kit = senmark::kit;
using ns_sensor::ISensorFileHandler;

class GpxModule : public testing::Test {
 protected:
  /// Gives the bytes of the converted file, or the error.
  std::string ConvertFile(std::string const& path) {
    std::string const output = mFolder.Path("output.tdjson");
    fs::remove(output);
    ISensorFileHandler* const handler = mModules.Host().Open(path, output.c_str());
    if (handler == nullptr) {
      EXPECT_FALSE(fs::exists(output));
      ReportedError const error = mModules.Host().TakeError();
      return std::to_string(error.code) + " at " + std::to_string(error.offset) + ", " + std::to_string(error.line);
    }
    mModules.Host().Close(handler);
    return mFolder.Read(output);
  }

  std::string Convert(std::string const& content) { return ConvertFile(mFolder.Write("input.gpx", content)); }

  /// What stands between `start` and `end` in the converted file.
  std::string Part(std::string const& content, std::string const& start, std::string const& end) {
    std::string const converted = Convert(content);
    std::size_t const at = converted.find(start);
    if (at == std::string::npos) {
      return "not found in " + converted;
    }
    return converted.substr(at + start.size(), converted.find(end, at + start.size()) - at - start.size());
  }

  std::string Samples(std::string const& content, std::string const& id) {
    std::string const rest = Part(content, "{\"sampleSetID\":\"" + id + "\",\"samples\":[", "\"dataOutline\"");
    return rest.substr(0, std::min(rest.find("]},{\"sampleSetID\""), rest.find("]}],")));
  }

  std::string Explain(std::string const& name, std::string const& content) {
    std::string const path = mFolder.Write(name, content);
    std::string lines;
    kit::Explanation explanation(
        [](void* to, char const* text) { static_cast<std::string*>(to)->append(text).append("\n"); }, &lines);
    senmark_gpx::GpxConverter().explain(kit::Input(path, fs::path(name).extension().string().substr(1), ""),
                                        explanation);
    return lines;
  }

  static std::string Track(std::string const& points) {
    return "<gpx><trk><trkseg>" + points + "</trkseg></trk></gpx>";
  }
  static std::string TrackPoint(int second, std::string const& more = "", char const* lat = "1") {
    return std::string("<trkpt lat='") + lat + "' lon='2'><time>2024-05-01T10:00:0" + std::to_string(second) +
           "Z</time>" + more + "</trkpt>";
  }

  TempFolder mFolder;
  ModuleHost mModules{SENMARK_MODULES, "gpx"};
};

TEST_F(GpxModule, MakesADataFile) {
  EXPECT_EQ(
      Convert(
          "<gpx version=\"1.1\" creator=\"me\"><trk><name>T</name><trkseg><trkpt lat=\"1.5\" lon=\"-2\"><ele>3.25</ele>"
          "<time>2024-05-01T12:00:00.5+02:00</time><extensions><hr>61</hr></extensions></trkpt></trkseg></trk></gpx>"),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,)"
      R"("utcInfo":{"precisionLength":1,"isGMT":true}},"dataDynamicSamples":[)"
      R"({"sampleSetID":"Position","samples":[{"time":"2024-05-01T10:00:00.5Z","value":["+1.50","-2.00","+3.25"]}]},)"
      R"({"sampleSetID":"Heartrate","samples":[{"time":"2024-05-01T10:00:00.5Z","value":"61"}]}],)"
      R"("creator":"me","dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"Metadata","displayName":"Metadata","children":[)"
      R"({"objectType":"dataStatic","matchName":"GPXversion","displayName":"GPX version","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":3,"eventMarkerB":false}},"value":"1.1"}]},)"
      R"({"objectType":"dataGroup","matchName":"T","displayName":"T","children":[)"
      R"({"objectType":"dataStatic","matchName":"Name","displayName":"Name","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":1,"eventMarkerB":false}},"value":"T"},)"
      R"({"objectType":"dataGroup","matchName":"Segment1","displayName":"Segment 1","children":[)"
      R"({"objectType":"dataDynamic","matchName":"Position","displayName":"Position","sampleSetID":"Position",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{"type":"numberStringArray",)"
      R"("numberArrayProperties":{"pattern":{"isSigned":true,"digitsDecimal":2,"digitsInteger":1},"arrayRanges":{"ranges":[)"
      R"({"occurring":{"min":1.5,"max":1.5},"legal":{"min":1.5,"max":1.5}},)"
      R"({"occurring":{"min":-2,"max":-2},"legal":{"min":-2,"max":-2}},)"
      R"({"occurring":{"min":3.25,"max":3.25},"legal":{"min":3.25,"max":3.25}}]},"arraySize":3,)"
      R"("arrayDisplayNames":["Latitude [deg]","Longitude [deg]","Elevation [m]"],"isPoint":true}}},)"
      R"({"objectType":"dataDynamic","matchName":"Heartrate","displayName":"Heart rate [bpm]","sampleSetID":"Heartrate",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1,"dataType":{"type":"numberString",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":2},)"
      R"("range":{"occurring":{"min":61,"max":61},"legal":{"min":61,"max":61}}}}}]}]}]})");
}

TEST_F(GpxModule, PlacesNearTheNullPointsAreCoarse) {
  EXPECT_EQ(Samples(Track(TrackPoint(0, "", "0.00004") + TrackPoint(1, "", "0.00006") + TrackPoint(2, "", "-0.00006") +
                          TrackPoint(3, "", "0.12345678") + TrackPoint(4, "", "89.99999999")),
                    "Position"),
            R"({"time":"2024-05-01T10:00:00.0Z","value":["+00.0000000","+02.0000000"]},)"
            R"({"time":"2024-05-01T10:00:01.0Z","value":["+00.0001000","+02.0000000"]},)"
            R"({"time":"2024-05-01T10:00:02.0Z","value":["-00.0001000","+02.0000000"]},)"
            R"({"time":"2024-05-01T10:00:03.0Z","value":["+00.1234568","+02.0000000"]},)"
            R"({"time":"2024-05-01T10:00:04.0Z","value":["+90.0000000","+02.0000000"]})");
}

TEST_F(GpxModule, AMissingElevationPartsItFromThePosition) {
  std::string const content = Track(TrackPoint(0, "<ele>5</ele>") + TrackPoint(1) + TrackPoint(2, "<ele>6</ele>"));
  EXPECT_EQ(
      Samples(content, "Position"),
      R"({"time":"2024-05-01T10:00:00.0Z","value":["1","2"]},{"time":"2024-05-01T10:00:01.0Z","value":["1","2"]},)"
      R"({"time":"2024-05-01T10:00:02.0Z","value":["1","2"]})");
  EXPECT_EQ(Samples(content, "Elevation"),
            R"({"time":"2024-05-01T10:00:00.0Z","value":"5"},{"time":"2024-05-01T10:00:02.0Z","value":"6"})");
}

TEST_F(GpxModule, PointsWithoutTimeAreCountedAndLeftOut) {
  std::string const content = Track(TrackPoint(0) + "<trkpt lat='8' lon='9'/>" + TrackPoint(1));
  EXPECT_EQ(
      Samples(content, "Position"),
      R"({"time":"2024-05-01T10:00:00.0Z","value":["1","2"]},{"time":"2024-05-01T10:00:01.0Z","value":["1","2"]})");
  EXPECT_EQ(Part(content, R"("displayName":"Points without time",)", "}]").substr(0, 36),
            R"("dataType":{"type":"number","numberS)");
  EXPECT_NE(Convert(content).find(R"("value":1},{"objectType":"dataDynamic")"), std::string::npos);
}

TEST_F(GpxModule, TimesAreSorted) {
  EXPECT_EQ(
      Samples(Track(TrackPoint(3, "", "3") + TrackPoint(1, "", "1") + TrackPoint(2, "", "2") + TrackPoint(1, "", "4")),
              "Position"),
      R"({"time":"2024-05-01T10:00:01.0Z","value":["1","2"]},{"time":"2024-05-01T10:00:01.0Z","value":["4","2"]},)"
      R"({"time":"2024-05-01T10:00:02.0Z","value":["2","2"]},{"time":"2024-05-01T10:00:03.0Z","value":["3","2"]})");
}

TEST_F(GpxModule, DigitsOfTimesGoWhereReadersCannotKeepThem) {
  std::string const point = "<trkpt lat='1' lon='2'><time>";
  std::string const end = "</time></trkpt>";
  std::string const content = Track(point + "2012-01-01T00:00:00.5Z" + end + point + "2024-01-01T00:00:00.4Z" + end);
  EXPECT_EQ(
      Samples(content, "Position"),
      R"({"time":"2012-01-01T00:00:01.0Z","value":["1","2"]},{"time":"2024-01-01T00:00:00.0Z","value":["1","2"]})");
}

TEST_F(GpxModule, WaypointsAreEvents) {
  std::string const content =
      "<gpx><wpt lat='1' lon='2'><time>2024-05-01T10:00:05Z</time><name>5\" [nail</name></wpt>"
      "<wpt lat='3' lon='4'><time>2024-05-01T10:00:00Z</time></wpt><wpt lat='5' lon='6'><name>still</name></wpt></gpx>";
  EXPECT_EQ(Samples(content, "Name"),
            "{\"time\":\"2024-05-01T10:00:00.0Z\",\"value\":{\"length\":\"10\",\"str\":\"Waypoint 2  \"}},"
            "{\"time\":\"2024-05-01T10:00:05.0Z\",\"value\":{\"length\":\"12\",\"str\":\"5\uFF02 \uFF3Bnail\"}}");
  EXPECT_EQ(
      Samples(content, "Position"),
      R"({"time":"2024-05-01T10:00:00.0Z","value":["3","4"]},{"time":"2024-05-01T10:00:05.0Z","value":["1","2"]})");
  std::string const converted = Convert(content);
  EXPECT_NE(converted.find(R"("eventMarkerB":true)"), std::string::npos);
  EXPECT_NE(converted.find(R"({"objectType":"dataGroup","matchName":"still","displayName":"still","children":)"),
            std::string::npos);
  EXPECT_NE(converted.find(R"("isPoint":true}},"value":[5,6]})"), std::string::npos);
}

TEST_F(GpxModule, WithoutTimesThereAreNoSamples) {
  std::string const converted = Convert(
      "<gpx><rte><rtept lat='1' lon='2'><time>2024-05-01T10:00:05Z</time></rtept></rte>"
      "<trk><trkseg><trkpt lat='3' lon='4'><ele>5</ele></trkpt><trkpt lat='6' lon='7'/></trkseg></trk></gpx>");
  EXPECT_EQ(converted.find("dataDynamicSamples"), std::string::npos);
  EXPECT_NE(converted.find(R"("value":"2024-05-01T10:00:05Z"})"), std::string::npos);
  EXPECT_NE(converted.find(R"("displayName":"Point 1","dataType":{"type":"numberArray")"), std::string::npos);
  EXPECT_NE(converted.find(R"("value":[3,4,5]})"), std::string::npos);
  EXPECT_NE(converted.find(R"("value":[6,7]})"), std::string::npos);
}

TEST_F(GpxModule, ATrackIsNamedByWhatStandsBeforeItsPoints) {
  auto const names = [this](std::string const& content) {
    std::string const converted = Convert("<gpx><trk>" + content + "</trk></gpx>");
    std::string const key = R"("dataGroup","matchName":")";
    std::size_t const at = converted.find(key) + key.size();
    return converted.substr(at, converted.find('"', at) - at);
  };
  std::string const segment = "<trkseg>" + TrackPoint(0) + "</trkseg>";
  EXPECT_EQ(names("<type>t</type><name>Own</name>" + segment), "Own");
  EXPECT_EQ(names(segment + "<name>Own</name>"), "Track1");
  EXPECT_EQ(names("<desc>d</desc>"), "Track1");
}

TEST_F(GpxModule, RefusesWithThePlace) {
  struct Row {
    std::string content;
    char const* error;
  };
  Row const rows[] = {
      {"<gpx>\n<trk>", "1506 at 11, 2"},
      {"<gpx>\n<trk></gpx>", "1506 at 13, 2"},
      {"<gpx>\n\n<wpt lat='1' lon='x'/></gpx>", "1506 at 7, 3"},
      {"<gpx>\n<wpt lat='1' lon='2'>\n<time>x</time></wpt></gpx>", "1506 at 35, 3"},
      {"<!DOCTYPE gpx [\n<!ENTITY a 'ha'><!ENTITY b '&a;&a;'>]><gpx><name>&b;</name></gpx>", "1506 at 27, 2"},
      {"<gpx version=1.1>", "1506 at 13, 1"},
      {"<gpx/>", "1507 at -1, -1"},
      {"<gpx><trk><trkseg/></trk></gpx>", "1507 at -1, -1"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(Convert(row.content), row.error) << row.content;
  }
}

TEST_F(GpxModule, EveryCutIsAnErrorOrAFile) {
  std::string const whole = mFolder.Read(SENMARK_TEST_DATA "/gpx/made_disorder.gpx");
  std::size_t const root = whole.find("<gpx");
  std::size_t const end = whole.rfind('>');
  for (std::size_t size = root + 4; size <= end; size += 7) {
    std::string const result = Convert(whole.substr(0, size));
    EXPECT_EQ(result.substr(0, 8), "1506 at ") << size;
  }
  EXPECT_EQ(Convert(whole).substr(0, 10), R"({"version")");
}

TEST_F(GpxModule, LimitsAreErrors) {
  std::string statics;
  for (std::size_t i = 0; i != senmark_gpx::kMostValues; ++i) {
    statics += "<trkpt lat='1' lon='2'/>";
  }
  EXPECT_EQ(Convert(Track(statics)).substr(0, 10), R"({"version")");
  EXPECT_EQ(Convert(Track(statics + "<trkpt lat='1' lon='2'/>")).substr(0, 7), "1506 at");
  std::string segment = "<trkseg>" + TrackPoint(0, "<a>1</a><b>2</b><c>3</c><d>4</d>") + "</trkseg>";
  std::string segments;
  for (std::size_t i = 0; i != senmark_gpx::kMostStreams / 5; ++i) {
    segments += segment;
  }
  EXPECT_EQ(Convert("<gpx><trk>" + segments + "</trk></gpx>").substr(0, 10), R"({"version")");
  EXPECT_EQ(Convert("<gpx><trk>" + segments + segment + "</trk></gpx>").substr(0, 7), "1506 at");
}

TEST_F(GpxModule, TakesWhatIsGpxByItsNameAndItsRoot) {
  struct Row {
    char const* name;
    std::string content;
    bool accepted;
  };
  std::string const long_comment = "<!--" + std::string(20000, ' ') + "-->";
  Row const rows[] = {
      {"a.gpx", "<gpx/>", true},
      {"a.gpx", "\xEF\xBB\xBF<?xml version='1.0'?>\n<!-- c -->\n<x:gpx xmlns:x='urn:x' version='1.0'>", true},
      {"a.gpx", std::string("\xFF\xFE<\0g\0p\0x\0>\0", 12), true},
      {"a.gpx", "<!DOCTYPE gpx [<!ENTITY a 'b'>]><gpx/>", true},
      {"a.gpx", "<gpx></kml>", true},
      {"a.gpx", "<gpx version=1.1>", true},
      {"a.gpx", "<?xml version='1.0'?><gpx versi", true},
      {"a.xml", "<gpx/>", false},
      {"a.gpx", "<kml/>", false},
      {"a.gpx", "<GPX/>", false},
      {"a.gpx", "<kml><gpx/></kml>", false},
      {"a.gpx", long_comment + "<gpx/>", false},
      {"a.gpx", "gpx", false},
      {"a.gpx", "", false},
  };
  for (Row const& row : rows) {
    std::string const path = mFolder.Write(row.name, row.content);
    std::string const extension = fs::path(row.name).extension().string().substr(1);
    EXPECT_EQ(senmark_gpx::GpxConverter().accepts(kit::Input(path, extension, "")), row.accepted) << row.content;
  }
  EXPECT_THROW(senmark_gpx::GpxConverter().accepts(kit::Input(mFolder.Path("none.gpx"), "gpx", "")), kit::Failure);
}

TEST_F(GpxModule, ExplainsWhatItSees) {
  EXPECT_EQ(Explain("a.xml", "<gpx/>"), "declined: the extension is not gpx\n");
  EXPECT_EQ(Explain("a.gpx", "<kml/>"), "declined: XML whose root element is kml\n");
  EXPECT_EQ(Explain("a.gpx", "text"), "declined: no element within the first 16 KiB\n");
  EXPECT_EQ(Explain("a.gpx", "<gpx>\n<trk>"),
            "taken: XML whose root element is gpx\nit will not open: byte 11, line 2: no element found\n");
  EXPECT_EQ(Explain("a.gpx", "<gpx version='1.1' creator='me'><wpt lat='1' lon='2'/><rte><rtept/></rte><trk><trkseg>" +
                                 TrackPoint(5, "<ele>1</ele>") + TrackPoint(1) + "<trkpt/></trkseg><trkseg>" +
                                 TrackPoint(2, "<ele>1</ele>") + "</trkseg><trkseg/></trk></gpx>"),
            "taken: XML whose root element is gpx\n"
            "GPX 1.1 by me\n"
            "1 track, 1 route with 1 point\n"
            "segment 1: 3 points, 2 with a time, not all of these with an elevation, not in order\n"
            "segment 2: 1 point, 1 with a time, all of these with an elevation\n"
            "segment 3: no points\n"
            "waypoints: 1 point, none with a time: values that do not change\n"
            "times from 2024-05-01 10:00:01 to 2024-05-01 10:00:05 GMT, written with 1 digit behind the seconds\n");
}

TEST_F(GpxModule, OpensEveryRealFile) {
  char const* const named = std::getenv("SENMARK_REAL_DATA");
  int opened = 0;
  for (std::string const& folder :
       {std::string(SENMARK_TEST_DATA), std::string(named == nullptr ? SENMARK_REAL_DATA : named)}) {
    if (!fs::exists(folder + "/gpx")) {
      continue;
    }
    for (fs::directory_entry const& entry : fs::directory_iterator(folder + "/gpx")) {
      EXPECT_EQ(ConvertFile(entry.path().string()).substr(0, 10), R"({"version")") << entry.path();
      ++opened;
    }
  }
  EXPECT_GE(opened, 8);
}

}  // namespace
}  // namespace senmark_test
