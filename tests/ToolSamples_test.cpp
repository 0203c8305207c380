// Samples as comma-separated text and as pictures, by the program as a whole.
#include <gtest/gtest.h>
#include <rapidjson/document.h>

#include <charconv>
#include <filesystem>

#include "ToolRunner.h"

namespace {

namespace fs = std::filesystem;

using senmark_test::Lines;
using senmark_test::NumberSetFile;
using senmark_test::Outcome;

class ToolSamples : public senmark_test::ToolTest {
 protected:
  std::string Picture() const { return mFolder.Path("plot.svg"); }
};

double NumberOf(std::string const& text) {
  double number = 0;
  auto const end = std::from_chars(text.data(), text.data() + text.size(), number);
  EXPECT_TRUE(end.ec == std::errc() && end.ptr == text.data() + text.size()) << text;
  return number;
}

std::vector<std::string> Fields(std::string const& line) {
  std::vector<std::string> fields(1);
  for (char const byte : line) {
    if (byte == ',') {
      fields.emplace_back();
    } else {
      fields.back() += byte;
    }
  }
  return fields;
}

// --csv

TEST_F(ToolSamples, CsvHasHeadingAndFullNumbers) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 15, 31}));
  // 31/30 is no binary fraction; 17 digits would be too many.
  EXPECT_EQ(Run({"samples", path, "s", "--csv"}).out, "seconds,value\n0,0\n0.5,1\n1.0333333333333334,2\n");
}

TEST_F(ToolSamples, CsvHasTheNumbersOfTheFile) {
  rapidjson::Document const file = Recording("dab_30hz_v2.tdjson");
  rapidjson::Value const& samples = file["dataDynamicSamples"][0]["samples"];
  std::vector<std::string> const lines = Lines(
      Run({"samples", Data("dab_30hz_v2.tdjson"), file["dataDynamicSamples"][0]["sampleSetID"].GetString(), "--csv"})
          .out);
  ASSERT_EQ(lines.size(), samples.Size() + 1);
  ASSERT_EQ(Fields(lines[0]).size(), 1 + samples[0]["value"].Size());
  EXPECT_EQ(Fields(lines[0])[0], "seconds");
  for (rapidjson::SizeType i = 0; i != samples.Size(); ++i) {
    std::vector<std::string> const fields = Fields(lines[i + 1]);
    ASSERT_EQ(fields.size(), 1 + samples[i]["value"].Size());
    ASSERT_EQ(NumberOf(fields[0]), i / 30.0);
    for (rapidjson::SizeType j = 0; j != samples[i]["value"].Size(); ++j) {
      ASSERT_EQ(NumberOf(fields[1 + j]), std::strtod(samples[i]["value"][j].GetString(), nullptr));
    }
  }
}

TEST_F(ToolSamples, CsvNamesTheElementsOfArrays) {
  // Names of the joint's three angles, as the conversion of motion capture gives them.
  Outcome const outcome = Run({"samples", Data("dab_30hz.bvh"), "1", "--csv", "--limit", "1"});
  EXPECT_EQ(Lines(outcome.out)[0], "seconds,X_ROTATION,Y_ROTATION,Z_ROTATION");
}

std::string TextSet(std::string const& name, std::string const& value, int length) {
  return R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
         R"("timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false}},"dataOutline":[)"
         R"({"objectType":"dataDynamic","displayName":")" +
         name +
         R"(","matchName":"n","dataType":{"type":"paddedString","paddedStringProperties":)"
         R"({"maxDigitsInStrLength":2,"maxLen":)" +
         std::to_string(length) +
         R"(,"eventMarkerB":false}},"sampleSetID":"s","interpolation":"hold","hasExpectedFrequencyB":false,)"
         R"("sampleCount":1}],"dataDynamicSamples":[{"sampleSetID":"s","samples":[{"time":"00:00:00:00","value":)" +
         value + "}]}]}";
}

TEST_F(ToolSamples, CsvQuotesTexts) {
  std::string const path = mFolder.Write("text.tdjson", TextSet("Text", R"({"length":"05","str":"a, bc"})", 5));
  Outcome const outcome = Run({"samples", path, "s", "--csv"});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "seconds,value\n0,\"a, bc\"\n");
}

TEST_F(ToolSamples, CsvKeepsRangeAndLimit) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60, 90}));
  EXPECT_EQ(Run({"samples", path, "s", "--csv", "--from", "1", "--to", "2"}).out, "seconds,value\n1,1\n2,2\n");
  EXPECT_EQ(Run({"samples", path, "s", "--csv", "--limit", "1"}).out, "seconds,value\n0,0\n");
  EXPECT_EQ(Run({"samples", path, "s", "--csv", "--from", "100"}).out, "seconds,value\n");
}

// --plot

TEST_F(ToolSamples, PlotIsWritten) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60}));
  Outcome const outcome = Run({"samples", path, "s", "--plot", Picture()});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  std::string const svg = mFolder.Read(Picture());
  EXPECT_EQ(outcome.out, "wrote " + Picture() + ": " + std::to_string(svg.size()) + " bytes, 1 curve, 3 samples\n");
  EXPECT_EQ(svg.rfind("<svg xmlns=\"http://www.w3.org/2000/svg\"", 0), 0u);
  EXPECT_EQ(svg.substr(svg.size() - 7), "</svg>\n");
  // The node's display name is both title and label; there is a line, and a dot for each sample.
  EXPECT_NE(svg.find("<title>Node</title>"), std::string::npos);
  EXPECT_NE(svg.find(">2.0</text>"), std::string::npos);
}

TEST_F(ToolSamples, PlotOfAConvertedFileHasALegend) {
  rapidjson::Document const told = RunJson({"samples", Data("dab_30hz.bvh"), "0", "--plot", Picture()});
  EXPECT_STREQ(told["output"].GetString(), Picture().c_str());
  EXPECT_EQ(told["bytes"].GetUint64(), fs::file_size(Picture()));
  EXPECT_EQ(told["curves"].GetInt(), 3);
  EXPECT_EQ(told["samples"].GetInt(), 339);
  std::string const svg = mFolder.Read(Picture());
  for (char const* const name : {"X_POSITION", "Y_POSITION", "Z_POSITION"}) {
    EXPECT_NE(svg.find(std::string(">") + name + "</text>"), std::string::npos);
  }
}

TEST_F(ToolSamples, PlotKeepsTheRange) {
  rapidjson::Document const told = RunJson(
      {"samples", Data("dab_30hz.bvh"), "0", "--from", "00:00:01:00", "--to", "00:00:01:29", "--plot", Picture()});
  EXPECT_EQ(told["samples"].GetInt(), 30);
}

TEST_F(ToolSamples, PlotReplacesOnlyWithForce) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60}));
  mFolder.Write("plot.svg", "old");
  Outcome const refused = Run({"samples", path, "s", "--plot", Picture()});
  EXPECT_EQ(refused.status, 2);
  EXPECT_EQ(refused.out, "");
  EXPECT_EQ(mFolder.Read(Picture()), "old");
  EXPECT_EQ(Run({"samples", path, "s", "--plot", Picture(), "--force"}).status, 0);
  EXPECT_EQ(mFolder.Read(Picture()).rfind("<svg", 0), 0u);
  EXPECT_EQ(Run({"samples", path, "s", "--plot", path, "--force"}).status, 2);
  EXPECT_EQ(mFolder.Read(path).rfind("{\"version\"", 0), 0u);
}

TEST_F(ToolSamples, PlotThatFailsLeavesNothing) {
  std::string const numbers = Write(NumberSetFile::Smpte(30).Add("s", {0, 30}).Add("none", {}));
  std::string const text = mFolder.Write("text.tdjson", TextSet("Text", R"({"length":"01","str":"a "})", 2));
  std::string broken = NumberSetFile::Smpte(30).Add("s", {0, 1, 2}).Text();
  broken.replace(broken.find("\"0000001\""), 9, "[1,2,3,4]");
  broken = mFolder.Write("broken.tdjson", broken);
  struct Row {
    std::vector<std::string> arguments;
    int status;
  };
  for (Row const& row : {Row{{numbers, "none"}, 2}, Row{{numbers, "s", "--from", "100"}, 2}, Row{{text, "s"}, 2},
                         Row{{numbers, "missing"}, 2}, Row{{broken, "s"}, 1}}) {
    std::vector<std::string> arguments = row.arguments;
    arguments.insert(arguments.begin(), "samples");
    arguments.insert(arguments.end(), {"--plot", Picture()});
    Outcome const outcome = Run(arguments);
    EXPECT_EQ(outcome.status, row.status) << testing::PrintToString(arguments) << outcome.err;
    EXPECT_EQ(outcome.out, "");
    EXPECT_NE(outcome.err, "");
  }
  for (fs::directory_entry const& entry : fs::directory_iterator(mFolder.Path(""))) {
    std::string const name = entry.path().filename().string();
    EXPECT_NE(name, "plot.svg");
    EXPECT_NE(name[0], '.') << name;
  }
}

TEST_F(ToolSamples, WaysThatExcludeEachOther) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0}));
  for (std::vector<std::string> const& more : {std::vector<std::string>{"--csv", "--json"},
                                               {"--csv", "--plot", "x.svg"},
                                               {"--force"},
                                               {"--plot", "x.svg", "--limit", "1"}}) {
    std::vector<std::string> arguments = {"samples", path, "s"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    EXPECT_EQ(Run(arguments).status, 2) << testing::PrintToString(more);
  }
}

}  // namespace
