// The program, run in processes of its own. What is expected is read from the data files with a JSON
// reader, or follows from files that the tests write.
#include <gtest/gtest.h>
#include <rapidjson/document.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

#include "ToolRunner.h"

namespace {

using senmark_test::Lines;
using senmark_test::NumberSetFile;
using senmark_test::Outcome;

class Tool : public senmark_test::ToolTest {};

rapidjson::Value const* FindSet(rapidjson::Document const& file, std::string const& id) {
  for (rapidjson::Value const& set : file["dataDynamicSamples"].GetArray()) {
    if (set["sampleSetID"].GetString() == id) {
      return &set["samples"];
    }
  }
  return nullptr;
}

struct Totals {
  std::size_t nodes = 0;
  std::size_t dynamics = 0;
  double samples = 0;
};

void CountNodes(rapidjson::Value const& nodes, Totals& totals) {
  for (rapidjson::Value const& node : nodes.GetArray()) {
    ++totals.nodes;
    if (node.HasMember("children")) {
      CountNodes(node["children"], totals);
    }
    if (node.HasMember("sampleCount")) {
      ++totals.dynamics;
      totals.samples += node["sampleCount"].GetDouble();
    }
  }
}

std::size_t CountTree(rapidjson::Value const& nodes) {
  std::size_t count = 0;
  for (rapidjson::Value const& node : nodes.GetArray()) {
    count += 1 + (node.HasMember("children") ? CountTree(node["children"]) : 0);
  }
  return count;
}

// All recordings.

class Recordings : public Tool, public testing::WithParamInterface<char const*> {};

TEST_P(Recordings, AreCheckedWithoutError) {
  Totals totals;
  CountNodes(Recording(GetParam())["dataOutline"], totals);
  rapidjson::Document const outcome = RunJson({"check", Data(GetParam())});
  EXPECT_TRUE(outcome["ok"].GetBool());
  EXPECT_EQ(outcome["samples"].GetDouble(), totals.samples);
  EXPECT_NE(Run({"check", Data(GetParam())}).out.find("no error"), std::string::npos);
}

TEST_P(Recordings, HaveTheNodesOfTheFile) {
  Totals totals;
  CountNodes(Recording(GetParam())["dataOutline"], totals);
  EXPECT_EQ(CountTree(RunJson({"tree", Data(GetParam())})), totals.nodes);
  EXPECT_EQ(Lines(Run({"tree", Data(GetParam())}).out).size(), totals.nodes);
  rapidjson::Document const info = RunJson({"info", Data(GetParam())});
  EXPECT_EQ(info["dynamicNodes"].GetUint64(), totals.dynamics);
  EXPECT_EQ(info["samples"].GetDouble(), totals.samples);
  EXPECT_EQ(info["groups"].GetUint64() + info["staticNodes"].GetUint64() + info["dynamicNodes"].GetUint64(),
            totals.nodes);
}

TEST_P(Recordings, HaveTheSamplesOfTheFile) {
  rapidjson::Document const file = Recording(GetParam());
  rapidjson::Value const& set = file["dataDynamicSamples"][0];
  rapidjson::Value const& expected = set["samples"];
  rapidjson::Document const outcome = RunJson({"samples", Data(GetParam()), set["sampleSetID"].GetString()});
  rapidjson::Value const& samples = outcome["samples"];
  ASSERT_EQ(samples.Size(), expected.Size());
  double before = -1;
  for (rapidjson::SizeType i = 0; i != samples.Size(); ++i) {
    rapidjson::Value const& text = expected[i]["value"];
    if (text.IsString()) {
      ASSERT_EQ(samples[i]["value"].GetDouble(), std::strtod(text.GetString(), nullptr)) << i;
    } else {
      ASSERT_EQ(samples[i]["value"].Size(), text.Size());
      for (rapidjson::SizeType j = 0; j != text.Size(); ++j) {
        ASSERT_EQ(samples[i]["value"][j].GetDouble(), std::strtod(text[j].GetString(), nullptr)) << i;
      }
    }
    double const seconds = samples[i]["time"]["seconds"].GetDouble();
    ASSERT_GT(seconds, before);
    before = seconds;
  }
}

INSTANTIATE_TEST_SUITE_P(Tool, Recordings,
                         testing::Values("dab_30hz_v2.tdjson", "jumping_119hz_v2.tdjson",
                                         "jumping_jacks_v1_pretty.tdjson", "weather_montreal_utc_v2.tdjson"),
                         [](testing::TestParamInfo<char const*> const& row) {
                           std::string const name = row.param;
                           return name.substr(0, name.find('.'));
                         });

// info

TEST_F(Tool, InfoTellsVersionCreatorDurationAndTimeBase) {
  Outcome const outcome = Run({"info", Data("jumping_jacks_v1_pretty.tdjson")});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_NE(outcome.out.find("version     1.0\ncreator     com.velmo.sensor.bvh\n"), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("time code, 30 frames per second, from 00:00:00:00\n"), std::string::npos) << outcome.out;
}

TEST_F(Tool, InfoTellsUtcAndVideos) {
  rapidjson::Document const info = RunJson({"info", Data("weather_montreal_utc_v2.tdjson")});
  EXPECT_STREQ(info["timeBase"]["kind"].GetString(), "utc");
  EXPECT_STREQ(info["timeBase"]["start"].GetString(), "2012-01-01T00:00:00.000Z");
  EXPECT_EQ(info["timeBase"]["precisionLength"].GetInt(), 3);
  EXPECT_TRUE(info["timeBase"]["isGMT"].GetBool());
  ASSERT_EQ(info["videoSyncTimes"].Size(), 1u);
  EXPECT_STREQ(info["videoSyncTimes"][0]["fileName"].GetString(), "timelapse_2012.mov");
  EXPECT_STREQ(info["videoSyncTimes"][0]["timeString"].GetString(), "2012-06-01T00:00:00.000Z");
}

TEST_F(Tool, InfoTellsTheLastSampleBehindTheDuration) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("a", {0, 300}).Add("b", {150, 600}));
  rapidjson::Document const info = RunJson({"info", path});
  EXPECT_EQ(info["duration"]["seconds"].GetDouble(), 10);
  EXPECT_EQ(info["lastSample"]["seconds"].GetDouble(), 20);
  EXPECT_NE(Run({"info", path}).out.find("duration    10.000000 s, last sample at 20.000000 s\n"), std::string::npos);
}

TEST_F(Tool, InfoOfAFileWithoutSamples) {
  rapidjson::Document const info = RunJson({"info", Write(NumberSetFile::Smpte(30).AddNode("s", "node", 0))});
  EXPECT_TRUE(info["timeBase"].IsNull());
  EXPECT_TRUE(info["lastSample"].IsNull());
  EXPECT_EQ(info["samples"].GetInt(), 0);
}

// tree and get

constexpr char kGroup[] =
    R"({"objectType":"dataGroup","displayName":"The \"arm\"\n","matchName":"arm",)"
    R"("children":[)"
    R"({"objectType":"dataStatic","displayName":"N","matchName":"n","dataType":{"type":"number",)"
    R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1},)"
    R"("range":{"occurring":{"min":-1,"max":2},"legal":{"min":1,"max":-1}}}},"value":0.1}]})";

TEST_F(Tool, TreeIsIndented) {
  std::string const path = Write(NumberSetFile::Smpte(30).AddNode(kGroup).Add("s", {0, 1}));
  EXPECT_EQ(Run({"tree", path}).out,
            "arm \"The \"arm\"?\"  group\n"
            "  n \"N\"  static, number\n"
            "node0 \"Node\"  dynamic, number, 2 samples, id s\n");
}

TEST_F(Tool, TreeNestsInJson) {
  rapidjson::Document const tree = RunJson({"tree", Write(NumberSetFile::Smpte(30).AddNode(kGroup).Add("s", {0}))});
  ASSERT_EQ(tree.Size(), 2u);
  EXPECT_STREQ(tree[0]["displayName"].GetString(), "The \"arm\"\n");
  EXPECT_STREQ(tree[0]["kind"].GetString(), "group");
  EXPECT_STREQ(tree[0]["children"][0]["path"].GetString(), "[\"arm\"][\"n\"]");
  EXPECT_EQ(tree[0]["children"][0]["value"].GetDouble(), 0.1);
  EXPECT_STREQ(tree[1]["sampleSetID"].GetString(), "s");
}

TEST_F(Tool, GetTakesPathsOfBothKinds) {
  std::string const path = Write(NumberSetFile::Smpte(30).AddNode(kGroup).Add("s", {0, 1}));
  for (char const* const node : {"arm/n", "/arm/n", "[\"arm\"][\"n\"]", "[0][0]"}) {
    rapidjson::Document const value = RunJson({"get", path, node});
    EXPECT_STREQ(value["matchName"].GetString(), "n") << node;
    EXPECT_EQ(value["value"].GetDouble(), 0.1);
    EXPECT_EQ(value["properties"]["digitsInteger"].GetInt(), 2);
    EXPECT_EQ(value["properties"]["range"]["occurring"]["min"].GetInt(), -1);
    EXPECT_TRUE(value["properties"]["range"]["legal"].IsNull());
  }
}

TEST_F(Tool, GetShowsAllThatANodeHas) {
  std::string const path = Write(NumberSetFile::Smpte(30).AddNode(kGroup).Add("s", {0, 15}));
  EXPECT_EQ(Run({"get", path, "arm/n"}).out,
            "path            [\"arm\"][\"n\"]\n"
            "kind            static\n"
            "match name      n\n"
            "display name    N\n"
            "type            number\n"
            "digits          2 before the point, 1 behind it, with sign\n"
            "range           occurring -1 to 2, legal -\n"
            "value           0.1\n");
  EXPECT_EQ(Run({"get", path, "node0"}).out,
            "path            [\"node0\"]\n"
            "kind            dynamic\n"
            "match name      node0\n"
            "display name    Node\n"
            "type            number\n"
            "digits          7 before the point, 0 behind it, without sign\n"
            "range           occurring 0 to 9999999, legal 0 to 9999999\n"
            "sample set      s\n"
            "samples         2\n"
            "extent          0.000000 s to 0.500000 s\n"
            "interpolation   linear\n"
            "regular         no\n");
  EXPECT_EQ(Lines(Run({"get", path, "arm"}).out).back(), "children        n");
}

TEST_F(Tool, GetOfANodeThatIsNotThereIsTheUsersFault) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0}));
  for (char const* const node : {"none", "[\"none\"]", "[7]", "[\"none\"", "[x]", ""}) {
    Outcome const outcome = Run({"get", path, node});
    EXPECT_EQ(outcome.status, 2) << node;
    EXPECT_EQ(outcome.out, "") << node;
    EXPECT_EQ(outcome.err.rfind("senmark: " + path + ": ", 0), 0u) << outcome.err;
  }
}

// samples

TEST_F(Tool, SamplesAreATable) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 15, 31}));
  EXPECT_EQ(Run({"samples", path, "s"}).out,
            "         seconds                 value\n"
            "        0.000000                     0\n"
            "        0.500000                     1\n"
            "        1.033333                     2\n");
}

TEST_F(Tool, SampleColumnsHaveTheNamesOfTheFile) {
  Outcome const outcome = Run({"samples", Data("dab_30hz_v2.tdjson"), "0", "--limit", "1"});
  ASSERT_EQ(Lines(outcome.out).size(), 2u);
  EXPECT_NE(Lines(outcome.out)[1].find("-1.2344"), std::string::npos);
  EXPECT_NE(Lines(outcome.out)[1].find("-25.0481"), std::string::npos);
}

struct RangeRow {
  char const* name;
  char const* from;
  char const* to;
  std::vector<int> values;
};

class Ranges : public Tool, public testing::WithParamInterface<RangeRow> {};

TEST_P(Ranges, HaveTheSamplesInside) {
  // Frames 0, 10, 20 and so on from 01:00:00:00.
  std::vector<std::int64_t> frames;
  for (std::int64_t i = 0; i != 10; ++i) {
    frames.push_back(108000 + 10 * i);
  }
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", frames));
  std::vector<std::string> arguments = {"samples", path, "s"};
  if (*GetParam().from != 0) {
    arguments.push_back(std::string("--from=") + GetParam().from);
  }
  if (*GetParam().to != 0) {
    arguments.push_back(std::string("--to=") + GetParam().to);
  }
  rapidjson::Document const outcome = RunJson(arguments);
  std::vector<int> values;
  for (rapidjson::Value const& sample : outcome["samples"].GetArray()) {
    values.push_back(sample["value"].GetInt());
  }
  EXPECT_EQ(values, GetParam().values);
}

INSTANTIATE_TEST_SUITE_P(
    Tool, Ranges,
    testing::Values(RangeRow{"Seconds", "0.5", "1", {2, 3}}, RangeRow{"Fractions", "1/3", "2/3", {1, 2}},
                    RangeRow{"TimeCode", "01:00:00:20", "01:00:01:00", {2, 3}},
                    RangeRow{"Mixed", "01:00:00:20", "1.5", {2, 3, 4}}, RangeRow{"OnlyFrom", "2.5", "", {8, 9}},
                    RangeRow{"OnlyTo", "", "0.4", {0, 1}}, RangeRow{"Before", "-2", "-1", {}},
                    RangeRow{"Behind", "100000", "", {}}, RangeRow{"BehindADay", "2.9", "90000", {9}},
                    RangeRow{"Between", "0.1", "0.2", {}}, RangeRow{"Nothing", "", "", {0, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
                    RangeRow{"EndBeforeTheSet", "", "-1", {}}),
    [](testing::TestParamInfo<RangeRow> const& row) { return row.param.name; });

TEST_F(Tool, UtcTextsAreTimes) {
  rapidjson::Document const outcome = RunJson({"samples", Data("weather_montreal_utc_v2.tdjson"), "temperatureSet",
                                               "--from", "2012-01-01T03:00:00.000Z", "--to", "2012-01-01T05:00"});
  ASSERT_EQ(outcome["samples"].Size(), 3u);
  EXPECT_EQ(outcome["samples"][0]["time"]["seconds"].GetDouble(), 10800);
  EXPECT_EQ(outcome["samples"][0]["value"].GetDouble(), -1.5);
  EXPECT_EQ(outcome["samples"][2]["value"].GetDouble(), -1.4);
}

TEST_F(Tool, LimitEndsEarly) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 1, 2}));
  EXPECT_EQ(RunJson({"samples", path, "s", "--limit", "2"})["samples"].Size(), 2u);
  EXPECT_EQ(RunJson({"samples", path, "s", "--limit", "0"})["samples"].Size(), 0u);
  EXPECT_EQ(RunJson({"samples", path, "s", "--limit", "9"})["samples"].Size(), 3u);
}

TEST_F(Tool, WrongTimesAndSetsAreTheUsersFault) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 1}));
  std::vector<std::vector<std::string>> const wrong = {{"samples", path, "t"},
                                                       {"samples", path, "s", "--from", "soon"},
                                                       {"samples", path, "s", "--from", "1/0"},
                                                       {"samples", path, "s", "--to", "00:00:00:30"},
                                                       {"samples", path, "s", "--to", "2012-01-01"},
                                                       {"samples", path, "s", "--from", "2", "--to", "1"},
                                                       {"samples", path, "s", "--limit", "-1"},
                                                       {"samples", path, "s", "--limit", "many"},
                                                       {"plot", path, "t"}};
  for (std::vector<std::string> const& arguments : wrong) {
    Outcome const outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << testing::PrintToString(arguments);
    EXPECT_NE(outcome.err, "") << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "") << testing::PrintToString(arguments);
  }
}

TEST_F(Tool, JsonIsClosedWhenASampleIsBroken) {
  std::string text = NumberSetFile::Smpte(30).Add("s", {0, 1, 2}).Text();
  text.replace(text.find("\"0000001\""), 9, "[1,2,3,4]");
  std::string const path = mFolder.Write("broken.tdjson", text);
  Outcome const outcome = Run({"samples", path, "s", "--json"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_TRUE(Parse(outcome.out)["samples"].IsArray());
  EXPECT_EQ(outcome.err.rfind("senmark: " + path + ": ", 0), 0u) << outcome.err;
}

// plot

TEST_F(Tool, PlotHasAPanelForEachNumber) {
  Outcome const outcome = Run({"plot", Data("dab_30hz_v2.tdjson"), "0", "--width", "60", "--height", "24"});
  EXPECT_EQ(outcome.status, 0);
  std::vector<std::string> const lines = Lines(outcome.out);
  // Three panels with their headings, and the axis of time.
  ASSERT_EQ(lines.size(), 3 * 7u + 2);
  EXPECT_NE(lines.back().find(" s"), std::string::npos);
  EXPECT_NE(outcome.out.find("\xE2\xA0"), std::string::npos);
}

TEST_F(Tool, PlotFitsTheWidth) {
  for (char const* const width : {"20", "80", "133"}) {
    Outcome const outcome = Run({"plot", Data("weather_montreal_utc_v2.tdjson"), "temperatureSet", "--width", width});
    EXPECT_EQ(outcome.status, 0);
    for (std::string const& line : Lines(outcome.out)) {
      std::size_t columns = 0;
      for (char const byte : line) {
        columns += (static_cast<unsigned char>(byte) & 0xC0) != 0x80 ? 1 : 0;
      }
      EXPECT_LE(columns, std::stoul(width) + (width[0] == '2' ? 30 : 0)) << line;
    }
  }
}

TEST_F(Tool, PlotColumnsHaveTheExtremesOfTheFile) {
  rapidjson::Document const file = Recording("weather_montreal_utc_v2.tdjson");
  double min = 1e9, max = -1e9;
  for (rapidjson::Value const& sample : FindSet(file, "temperatureSet")->GetArray()) {
    min = std::min(min, std::strtod(sample["value"].GetString(), nullptr));
    max = std::max(max, std::strtod(sample["value"].GetString(), nullptr));
  }
  rapidjson::Document const plot = RunJson({"plot", Data("weather_montreal_utc_v2.tdjson"), "temperatureSet"});
  double plotMin = 1e9, plotMax = -1e9;
  for (rapidjson::Value const& column : plot["curves"][0]["columns"].GetArray()) {
    plotMin = std::min(plotMin, column["min"].GetDouble());
    plotMax = std::max(plotMax, column["max"].GetDouble());
  }
  EXPECT_EQ(plotMin, min);
  EXPECT_EQ(plotMax, max);
}

TEST_F(Tool, PlotOfOneSample) {
  EXPECT_EQ(Run({"plot", Write(NumberSetFile::Smpte(30).Add("s", {5})), "s"}).status, 0);
}

TEST_F(Tool, NothingToPlotIsTheUsersFault) {
  EXPECT_EQ(Run({"plot", Write(NumberSetFile::Smpte(30).Add("s", {0}).Add("none", {})), "none"}).status, 2);
}

// check and errors

TEST_F(Tool, CheckShowsThePlaceOfTheFirstError) {
  std::string const text = "{\"version\":\"tdjson2.0.0\",\n\"dynamicSamplesPresentB\":false,\n\"dataOutline\":[1 2]}\n";
  std::string const path = mFolder.Write("broken.tdjson", text);
  rapidjson::Document const outcome = RunJson({"check", path}, 1);
  EXPECT_FALSE(outcome["ok"].GetBool());
  rapidjson::Value const& error = outcome["error"];
  std::size_t const offset = error["offset"].GetUint64();
  ASSERT_LE(offset, text.size());
  std::size_t const lineStart = text.rfind('\n', offset == 0 ? 0 : offset - 1) + 1;
  EXPECT_EQ(error["line"].GetUint64(), 3u);
  EXPECT_EQ(error["column"].GetUint64(), offset - lineStart + 1);
  std::vector<std::string> const lines = Lines(Run({"check", path}).out);
  ASSERT_EQ(lines.size(), 5u);
  EXPECT_EQ(lines[0],
            path + ": " + error["message"].GetString() + " (code " + std::to_string(error["code"].GetInt()) + ")");
  EXPECT_EQ(lines[1],
            "  at byte " + std::to_string(offset) + ", line 3, column " + std::to_string(offset - lineStart + 1));
  EXPECT_EQ(lines[3], "    \"dataOutline\":[1 2]}");
  EXPECT_EQ(lines[4].find('^') - 4, offset - lineStart);
}

TEST_F(Tool, CheckReadsEverySample) {
  std::string text = NumberSetFile::Smpte(30).Add("s", {0, 1, 2}).Text();
  text.replace(text.find("\"0000001\""), 9, "[1,2,3,4]");
  rapidjson::Document const outcome = RunJson({"check", mFolder.Write("broken.tdjson", text)}, 1);
  EXPECT_FALSE(outcome["ok"].GetBool());
  EXPECT_NE(outcome["error"]["code"].GetInt(), 0);
}

TEST_F(Tool, FilesThatCannotBeReadAreAtFault) {
  std::string const whole = NumberSetFile::Smpte(30).Add("s", {0, 1, 2}).Text();
  std::filesystem::create_directory(mFolder.Path("folder.tdjson"));
  std::vector<std::string> const paths = {mFolder.Path("none.tdjson"), mFolder.Path("folder.tdjson"),
                                          mFolder.Write("empty.tdjson", ""),
                                          mFolder.Write("cut.tdjson", whole.substr(0, whole.size() / 2)),
                                          mFolder.Write("text.tdjson", "nothing of the kind")};
  for (std::string const& path : paths) {
    for (std::vector<std::string> arguments :
         {std::vector<std::string>{"info"}, {"tree"}, {"get", "x"}, {"samples", "s"}, {"plot", "s"}}) {
      arguments.insert(arguments.begin() + 1, path);
      Outcome const outcome = Run(arguments);
      EXPECT_EQ(outcome.status, 1) << testing::PrintToString(arguments);
      EXPECT_EQ(outcome.out, "") << testing::PrintToString(arguments);
      ASSERT_EQ(Lines(outcome.err).size(), 1u) << outcome.err;
      EXPECT_EQ(outcome.err.rfind("senmark: " + path + ": ", 0), 0u) << outcome.err;
      EXPECT_NE(outcome.err.find(" (code "), std::string::npos) << outcome.err;
    }
    EXPECT_FALSE(RunJson({"check", path}, 1)["ok"].GetBool());
  }
}

TEST_F(Tool, MissingFileHasItsCode) {
  std::string const path = mFolder.Path("none.tdjson");
  EXPECT_EQ(Run({"info", path}).err, "senmark: " + path + ": File not exist at input path:" + path + ". (code 4)\n");
}

TEST_F(Tool, RelativePathsWork) {
  Write(NumberSetFile::Smpte(30).Add("s", {0}));
  std::filesystem::path const before = std::filesystem::current_path();
  std::filesystem::current_path(mFolder.Path(""));
  Outcome const outcome = Run({"tree", "file.tdjson"});
  std::filesystem::current_path(before);
  EXPECT_EQ(outcome.status, 0) << outcome.err;
}

TEST_F(Tool, FullOutputIsAnError) {
  if (access("/dev/full", W_OK) != 0) {
    GTEST_SKIP() << "no /dev/full";
  }
  std::string const command = std::string(SENMARK_TOOL) + " tree '" + Data("dab_30hz_v2.tdjson") + "' >/dev/full 2>'" +
                              mFolder.Path("err") + "'";
  EXPECT_NE(std::system(command.c_str()), 0);
  EXPECT_EQ(mFolder.Read(mFolder.Path("err")), "senmark: cannot write the output\n");
}

// Usage

TEST_F(Tool, WrongUsageHasStatus2) {
  for (std::vector<std::string> const& arguments : {std::vector<std::string>{},
                                                    {"nothing"},
                                                    {"info"},
                                                    {"info", "a", "b"},
                                                    {"samples", "a"},
                                                    {"get", "a"},
                                                    {"info", "a", "--wrong"},
                                                    {"convert", "a"},
                                                    {"stream"},
                                                    {"stream", "a", "--json"},
                                                    {"formats", "a"}}) {
    Outcome const outcome = Run(arguments);
    EXPECT_EQ(outcome.status, 2) << testing::PrintToString(arguments);
    EXPECT_EQ(outcome.out, "") << testing::PrintToString(arguments);
    EXPECT_NE(outcome.err, "") << testing::PrintToString(arguments);
  }
}

TEST_F(Tool, HelpNamesTheSubcommands) {
  Outcome const outcome = Run({"--help"});
  EXPECT_EQ(outcome.status, 0);
  for (char const* const command :
       {"info", "tree", "get", "samples", "plot", "check", "convert", "stream", "formats"}) {
    EXPECT_NE(outcome.out.find(command), std::string::npos) << command;
    EXPECT_EQ(Run({command, "--help"}).status, 0) << command;
  }
}

TEST_F(Tool, FormatsNameTheOwnFormat) {
  rapidjson::Document const formats = RunJson({"formats"});
  bool found = false;
  for (rapidjson::Value const& format : formats.GetArray()) {
    found = found || (std::string(format["extension"].GetString()) == "tdjson" &&
                      std::string(format["description"].GetString()) == "Timed Data JSON");
  }
  EXPECT_TRUE(found);
  EXPECT_NE(Run({"formats"}).out.find("tdjson    Timed Data JSON\n"), std::string::npos);
}

}  // namespace
