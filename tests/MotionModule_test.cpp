// The module for motion capture as a host meets it, and what it tells people.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "Conversion.h"
#include "ModuleHost.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

namespace fs = std::filesystem;
namespace kit = senmark::kit;
using ns_sensor::ISensorFileHandler;

constexpr char kHead[] =
    "HIERARCHY\nROOT Hips\n{\n\tOFFSET 0 1.5 0\n\tCHANNELS 3 Zrotation Xrotation Yrotation\n}\nMOTION\n";

/// One root with the channels and frames of two hundredths of a second.
std::string Motion(std::string const& channels, std::string const& frames) {
  return "HIERARCHY\nROOT r\n{\nCHANNELS " + channels + "\n}\nMOTION\nFrames: 2\nFrame Time: 0.02\n" + frames;
}

class MotionModule : public testing::Test {
 protected:
  /// The bytes of the converted file, or code, message, offset and line of the error.
  std::string Convert(std::string const& text, std::string const& options = std::string()) const {
    return ConvertFile(mFolder.Write("file.bvh", text), options);
  }

  std::string ConvertFile(std::string const& path, std::string const& options = std::string()) const {
    std::string const optionsPath = path + ".senmark.json";
    fs::remove(optionsPath);
    if (!options.empty()) {
      mFolder.Write(fs::path(optionsPath).filename().string(), options);
    }
    std::string const output = mFolder.Path("output.tdjson");
    fs::remove(output);
    ISensorFileHandler* const handler = mModules.Host().Open(path, output.c_str());
    if (handler == nullptr) {
      EXPECT_FALSE(fs::exists(output));
      ReportedError const error = mModules.Host().TakeError();
      return std::to_string(error.code) + ' ' + std::to_string(error.offset) + ' ' + std::to_string(error.line);
    }
    mModules.Host().Close(handler);
    return mFolder.Read(output);
  }

  /// Code, offset and line of the failure inside the module, whose text the library does not pass on.
  static void ExpectRefused(std::string const& result, int code, std::int64_t offset, std::int64_t line) {
    EXPECT_EQ(result, std::to_string(code) + ' ' + std::to_string(offset) + ' ' + std::to_string(line));
  }

  std::vector<std::string> Explained(std::string const& path) const {
    std::vector<std::string> lines;
    std::string const extension = fs::path(path).extension().string().substr(1);
    senmark_motion::Explain(kit::Input(path, extension, "senmark.motion"),
                            [&](std::string const& line) { lines.push_back(line); });
    return lines;
  }

  TempFolder mFolder;
  ModuleHost mModules{SENMARK_MODULES, "motion"};
};

std::size_t Count(std::string const& text, std::string const& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + part.size())) {
    ++count;
  }
  return count;
}

void ExpectParts(std::string const& text, std::vector<std::string> const& parts) {
  std::size_t at = 0;
  for (std::string const& part : parts) {
    std::size_t const found = text.find(part, at);
    EXPECT_NE(found, std::string::npos) << part << "\nis not in its place in\n" << text;
    at = found == std::string::npos ? at : found + part.size();
  }
}

std::string Samples(std::string const& id, std::vector<std::string> const& samples) {
  std::string text = R"({"sampleSetID":")" + id + R"(","samples":[)";
  for (std::string const& sample : samples) {
    text += (text.back() == '[' ? "" : ",") + sample;
  }
  return text + "]}";
}

std::string Sample(std::string const& time, std::string const& value) {
  return R"({"time":")" + time + R"(","value":)" + value + "}";
}

TEST_F(MotionModule, WholeFileToTheByte) {
  std::string const offsetRange0 = R"({"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}})";
  EXPECT_EQ(
      Convert(std::string(kHead) + "Frames: 2\r\nFrame Time: .02\r\n1 2.5 -3e-007\r\n+.25 -2 0.00009"),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
      R"("timecodeInfo":{"frameRate":{"value":50,"scale":1},"dropFrame":false}},"dataDynamicSamples":[)" +
          Samples("Hipsrotation", {Sample("00:00:00:00", R"(["+1.0000","+2.5000","+0.0000"])"),
                                   Sample("00:00:00:01", R"(["+0.2500","-2.0000","+0.0001"])")}) +
          R"(],"dataOutline":[)"
          R"({"objectType":"dataStatic","matchName":"frametimes","displayName":"frame time [s]",)"
          R"("dataType":{"type":"string","paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":3,)"
          R"("eventMarkerB":false}},"value":".02"},)"
          R"({"objectType":"dataStatic","matchName":"framecount","displayName":"frame count",)"
          R"("dataType":{"type":"string","paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":1,)"
          R"("eventMarkerB":false}},"value":"2"},)"
          R"({"objectType":"dataGroup","matchName":"Hips","displayName":"Hips","children":[)"
          R"({"objectType":"dataStatic","matchName":"Hipsoffset","displayName":"Hips offset",)"
          R"("dataType":{"type":"numberArray","numberArrayProperties":{)"
          R"("pattern":{"isSigned":false,"digitsDecimal":1,"digitsInteger":1},"arrayRanges":{"ranges":[)" +
          offsetRange0 + R"(,{"occurring":{"min":1.5,"max":1.5},"legal":{"min":1.5,"max":1.5}},)" + offsetRange0 +
          R"(]},"arraySize":3,"arrayDisplayNames":["X","Y","Z"],"isPoint":true}},"value":[0,1.5,0]},)"
          R"({"objectType":"dataStatic","matchName":"Hipschannels","displayName":"Hips channels",)"
          R"("dataType":{"type":"string","paddedStringProperties":{"maxDigitsInStrLength":2,"maxLen":29,)"
          R"("eventMarkerB":false}},"value":"Zrotation Xrotation Yrotation"},)"
          R"({"objectType":"dataStatic","matchName":"Hipsrotationorder","displayName":"Hips rotation order",)"
          R"("dataType":{"type":"string","paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":3,)"
          R"("eventMarkerB":false}},"value":"ZXY"},)"
          R"({"objectType":"dataDynamic","matchName":"Hipsrotation","displayName":"Hips rotation [deg]",)"
          R"("sampleSetID":"Hipsrotation","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,)"
          R"("dataType":{"type":"numberStringArray","numberArrayProperties":{)"
          R"("pattern":{"isSigned":true,"digitsDecimal":4,"digitsInteger":1},"arrayRanges":{"ranges":[)"
          R"({"occurring":{"min":0.25,"max":1},"legal":{"min":0.25,"max":1}},)"
          R"({"occurring":{"min":-2,"max":2.5},"legal":{"min":-2,"max":2.5}},)"
          R"({"occurring":{"min":0,"max":0.0001},"legal":{"min":0,"max":0.0001}}]},)"
          R"("arraySize":3,"arrayDisplayNames":["Zrotation","Xrotation","Yrotation"]}}}]}]})");
}

TEST_F(MotionModule, SameBytesTwice) {
  std::string const path = std::string(SENMARK_TEST_DATA) + "/dab_30hz.bvh";
  std::string const first = ConvertFile(path);
  EXPECT_GT(first.size(), 100000U);
  EXPECT_EQ(ConvertFile(path), first);
}

TEST_F(MotionModule, HierarchyIsMirrored) {
  ExpectParts(Convert("HIERARCHY\nROOT a\n{\nJOINT b\n{\nEnd Site\n{\nOFFSET 1 2 3\n}\n}\nOFFSET 0 0 0\n}\nROOT c\n{\n"
                      "OFFSET 0 0 0\n}\nMOTION\nFrames: 0\nFrame Time: 0.04\n"),
              {R"("displayName":"a","children":[{"objectType":"dataStatic","matchName":"aoffset")",
               R"("displayName":"b","children":[{"objectType":"dataGroup","matchName":"bEndSite",)",
               R"("value":[1,2,3]}]}]}]},{"objectType":"dataGroup","matchName":"c")"});
}

TEST_F(MotionModule, NamesHaveAnyCharactersAndComeTwice) {
  std::string const result = Convert(
      "HIERARCHY\nROOT Hips\n{\nOFFSET 0 0 0\nJOINT Left \"Arm\": 1.5\n{\nOFFSET 0 0 0\n}\nJOINT \xC3\xA4\xE2\x82\xAC\n"
      "{\nOFFSET 0 0 0\n}\nJOINT Hips\n{\nOFFSET 0 0 0\n}\nJOINT a\xFF z\n{\nOFFSET 0 0 0\n}\n}\nMOTION\nFrames: 0\n"
      "Frame Time: 1\n");
  ExpectParts(result, {R"("matchName":"Hips","displayName":"Hips")", R"("displayName":"Left \"Arm\": 1.5")",
                       "\"displayName\":\"\xC3\xA4\xE2\x82\xAC\"", R"("displayName":"Hips")",
                       "\"displayName\":\"a\xEF\xBF\xBD z\""});
  EXPECT_EQ(Count(result, R"("matchName":"Hips",)"), 1U);
}

struct ChannelCase {
  char const* channels;
  char const* frame;
  std::vector<std::string> parts;
};

TEST_F(MotionModule, ChannelsInAnyCountAndOrder) {
  ChannelCase const kCases[] = {
      {"1 Yrotation", "5", {R"("value":["5"]})", R"("arrayDisplayNames":["Yrotation"])"}},
      {"2 Zposition Xposition", "5 6", {R"("value":["5","6"]})", R"("arrayDisplayNames":["Zposition","Xposition"]}})"}},
      {"6 Zrotation Xrotation Yrotation Xposition Yposition Zposition",
       "1 2 3 4 5 6",
       {R"("rposition","samples":[{"time":"00:00:00:00","value":["4","5","6"]})",
        R"("rrotation","samples":[{"time":"00:00:00:00","value":["1","2","3"]})",
        R"("value":"Zrotation Xrotation Yrotation Xposition Yposition Zposition")", R"("value":"ZXY")",
        R"("displayName":"r position")", R"("isPoint":true)", R"("displayName":"r rotation [deg]")",
        R"("arrayDisplayNames":["Zrotation","Xrotation","Yrotation"]}})"}},
      {"5 Xposition Zrotation Yposition Yrotation Zposition",
       "1 2 3 4 5",
       {R"("value":["1","3","5"]})", R"("value":["2","4"]})"}},
      {"4 Zrotation Xrotation Yrotation Zrotation",
       "1 2 3 4",
       {R"("sampleSetID":"Zrotation","samples":[{"time":"00:00:00:00","value":"1"})",
        R"("sampleSetID":"Zrotationx2","samples":[{"time":"00:00:00:00","value":"4"})", R"("value":"ZXYZ")",
        R"("objectType":"dataGroup","matchName":"rrotation","displayName":"r rotation")",
        R"("displayName":"Zrotation [deg]")"}},
      {"4 Xrotation Xscale Wrotation Yrotation",
       "1 2 3 4",
       {R"("rrotation","samples":[{"time":"00:00:00:00","value":["1","4"]})",
        R"("rXscale","samples":[{"time":"00:00:00:00","value":"2"})",
        R"("rWrotation","samples":[{"time":"00:00:00:00","value":"3"})", R"("value":"XY")",
        R"("displayName":"r Xscale")"}},
      {"3 zROTATION XPOSITION yrotation",
       "1 2 3",
       {R"("rposition","samples":[{"time":"00:00:00:00","value":["2"]})",
        R"("rrotation","samples":[{"time":"00:00:00:00","value":["1","3"]})", R"("value":"ZY")"}},
  };
  for (ChannelCase const& expected : kCases) {
    SCOPED_TRACE(expected.channels);
    ExpectParts(Convert(Motion(expected.channels, std::string(expected.frame) + '\n' + expected.frame)),
                expected.parts);
  }
}

TEST_F(MotionModule, OneNumberThatIsNoneLeavesItsSampleOut) {
  std::string const result = Convert(Motion("4 Xrotation Yrotation Xposition Xscale", "nan 2 3 4\n5 6 7 -1.#IND\n"));
  ExpectParts(result, {Samples("rposition", {Sample("00:00:00:00", R"(["3"])"), Sample("00:00:00:01", R"(["7"])")}),
                       Samples("rrotation", {Sample("00:00:00:01", R"(["5","6"])")}),
                       Samples("rXscale", {Sample("00:00:00:00", R"("4")")})});
}

TEST_F(MotionModule, FrameCountThatDisagreesIsTold) {
  for (auto const& [frames, warning] : {std::pair("1\n", "the file states 2 frames and has 1"),
                                        std::pair("1\n2\n3\n", "the file states 2 frames and has 3"),
                                        std::pair("", "the file states 2 frames and has 0")}) {
    std::string const result = Convert(Motion("1 Xrotation", frames));
    ExpectParts(result, {R"("displayName":"frame count")", R"("value":"2"})", R"("displayName":"warning")",
                         std::string(R"("value":")") + warning});
  }
  EXPECT_EQ(Count(Convert(Motion("1 Xrotation", "1\n2\n")), "warning"), 0U);
  EXPECT_EQ(Count(Convert("HIERARCHY\nROOT r\n{\n}\nMOTION\nFrames: 5\nFrame Time: 1\n\n\n"), "warning"), 0U);
}

TEST_F(MotionModule, SlowAndFastFramesAreMomentsInGmt) {
  auto const frames = [](char const* time) {
    return std::string(kHead) + "Frames: 3\nFrame Time: " + time + "\n1 1 1\n2 2 2\n3 3 3\n";
  };
  ExpectParts(Convert(frames("86400.5")), {R"("precisionLength":1,"isGMT":true)", R"("1970-01-01T00:00:00.0Z")",
                                           R"("1970-01-02T00:00:00.5Z")", R"("1970-01-03T00:00:01.0Z")"});
  ExpectParts(Convert(frames("0.00025")), {R"("precisionLength":5,"isGMT":true)", R"("1970-01-01T00:00:00.00000Z")",
                                           R"("1970-01-01T00:00:00.00025Z")", R"("1970-01-01T00:00:00.00050Z")"});
  ExpectParts(Convert(frames("0.5")), {R"("frameRate":{"value":2,"scale":1},"dropFrame":false)", R"("00:00:01:00")"});
  ExpectParts(Convert(frames("0.033367")),
              {R"("frameRate":{"value":30000,"scale":1001},"dropFrame":false)", R"("00:00:00:02")"});
}

TEST_F(MotionModule, NumbersOfAMinuteAreNotDropped) {
  std::string frames;
  for (int i = 0; i != 1802; ++i) {
    frames += std::to_string(i) + '\n';
  }
  ExpectParts(
      Convert("HIERARCHY\nROOT r\n{\nCHANNELS 1 Xrotation\n}\nMOTION\nFrames: 1802\nFrame Time: 0.033367\n" + frames),
      {Sample("00:00:59:29", R"(["1799"])"), Sample("00:01:00:00", R"(["1800"])"),
       Sample("00:01:00:01", R"(["1801"])")});
}

TEST_F(MotionModule, TimesStayRightAtAnyRate) {
  ISensorFileHandler* const handler = mModules.Host().Open(
      mFolder.Write("file.bvh", std::string(kHead) + "Frames: 4\nFrame Time: 0.0123457\n1 1 1\n2 2 2\n3 3 3\n4 4 4\n"));
  ASSERT_NE(handler, nullptr);
  mModules.Host().TakeCalls();
  handler->getDynamicSamples("Hipsrotation", 12, 0, 1, 1, 1, &mModules.Host(), &mModules.Host());
  ExpectParts(mModules.Host().TakeCalls(), {"count 4\n", "sample 0/1 ", "sample 123457/10000000 ",
                                            "sample 123457/5000000 ", "sample 370371/10000000 "});
  mModules.Host().Close(handler);
}

TEST_F(MotionModule, WorldPositionsOnDemand) {
  std::string const text =
      "HIERARCHY\nROOT a\n{\nOFFSET 9 9 9\nCHANNELS 4 Xposition Yposition Zposition Zrotation\nJOINT b\n{\nOFFSET 2 0 "
      "0\n"
      "CHANNELS 1 Zrotation\nEnd Site\n{\nOFFSET 1 0 0\n}\n}\n}\nMOTION\nFrames: 2\nFrame Time: 0.04\n1 2 3 90 0\n"
      "0 0 0 0 90\n";
  EXPECT_EQ(Count(Convert(text), "world"), 0U);
  EXPECT_EQ(Count(Convert(text, R"({"worldPositions": false})"), "world"), 0U);
  ExpectParts(Convert(text, R"({"worldPositions": true})"),
              {Samples("aworldposition",
                       {Sample("00:00:00:00", R"(["1","2","3"])"), Sample("00:00:00:01", R"(["0","0","0"])")}),
               Samples("bworldposition",
                       {Sample("00:00:00:00", R"(["1","4","3"])"), Sample("00:00:00:01", R"(["2","0","0"])")}),
               Samples("bEndSiteworldposition",
                       {Sample("00:00:00:00", R"(["1","5","3"])"), Sample("00:00:00:01", R"(["2","1","0"])")}),
               R"("displayName":"b world position")", R"("arrayDisplayNames":["X","Y","Z"],"isPoint":true)"});
}

TEST_F(MotionModule, WorldPositionsTellWhatPositionsOfJointsAre) {
  std::string const text =
      "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0\nJOINT b\n{\nOFFSET 5 0 0\nCHANNELS 1 Xposition\n}\n}\nMOTION\nFrames: 1\n"
      "Frame Time: 1\n";
  ExpectParts(
      Convert(text + "4", R"({"worldPositions": true})"),
      {R"("value":["4","0","0"])", R"("displayName":"joint positions")", R"("value":"in place of the offset")"});
  ExpectParts(Convert(text + "1", R"({"worldPositions": true})"),
              {R"("value":["6","0","0"])", R"("value":"added to the offset")"});
  ExpectParts(Convert(text + "1", R"({"worldPositions": true, "jointPositions": "replace"})"),
              {R"("value":["1","0","0"])", R"("value":"in place of the offset")"});
}

TEST_F(MotionModule, BadOptionsEndTheConversion) {
  std::string const text = Motion("1 Xrotation", "1\n2\n");
  ExpectRefused(Convert(text, R"({"worldpositions": true})"), kit::Failure::kMalformedInput, -1, -1);
  ExpectRefused(Convert(text, "worldPositions"), kit::Failure::kMalformedInput, -1, -1);
  ExpectRefused(Convert(Motion("1 Xscale", "1\n2\n"), R"({"worldPositions": true})"), kit::Failure::kMalformedInput, -1,
                -1);
}

std::string Chain(std::size_t depth) {
  std::string text = "HIERARCHY\nROOT j0\n{\nOFFSET 0 0 0\nCHANNELS 1 Xrotation\n";
  std::string frame = "0";
  for (std::size_t i = 1; i != depth; ++i) {
    text += "JOINT j" + std::to_string(i) + "\n{\nOFFSET 0 1 0\nCHANNELS 1 Xrotation\n";
    frame += ' ' + std::to_string(i);
  }
  for (std::size_t i = 0; i != depth; ++i) {
    text += "}\n";
  }
  return text + "MOTION\nFrames: 1\nFrame Time: 0.04\n" + frame + '\n';
}

TEST_F(MotionModule, DeepJointsStayInTheLastGroupThatFits) {
  std::size_t const deepest = kit::Group::kDeepest - 1;
  std::string const fits = Convert(Chain(deepest));
  EXPECT_EQ(Count(fits, "parent"), 0U);
  EXPECT_EQ(Count(fits, R"("sampleSetID")"), 2 * deepest);

  std::string const deeper = Convert(Chain(deepest + 20));
  EXPECT_EQ(Count(deeper, R"("sampleSetID")"), 2 * (deepest + 20));
  std::string const last = std::to_string(deepest + 19);
  ExpectParts(deeper, {"\"displayName\":\"j" + last + " parent\"", "\"value\":\"j" + std::to_string(deepest + 18)});
  EXPECT_EQ(Count(Convert(Chain(3000)), R"("sampleSetID")"), 6000U);
}

TEST_F(MotionModule, ManyStreamsGiveTheSameAsFew) {
  std::string text = "HIERARCHY\nROOT r\n{\n";
  std::string frame;
  for (int i = 0; i != 600; ++i) {
    text += "JOINT j" + std::to_string(i) + "\n{\nCHANNELS 2 Xrotation Yrotation\n}\n";
    frame += std::to_string(i) + " -" + std::to_string(i) + ".5 ";
  }
  std::string const result = Convert(text + "}\nMOTION\nFrames: 2\nFrame Time: 0.04\n" + frame + '\n' + frame + '\n');
  for (int i = 1; i < 600; i += 37) {
    std::string const value = "[\"+" + std::to_string(i) + ".0\",\"-" + std::to_string(i) + ".5\"]";
    EXPECT_NE(result.find(Samples("j" + std::to_string(i) + "rotation",
                                  {Sample("00:00:00:00", value), Sample("00:00:00:01", value)})),
              std::string::npos)
        << i;
  }
}

TEST_F(MotionModule, ErrorsHaveTheirPlace) {
  std::string const head = kHead;
  struct Bad {
    std::string text;
    int code;
    std::size_t offset;
    std::int64_t line;
  };
  std::string const times = "Frames: 2\nFrame Time: 0.04\n";
  std::size_t const frames = (head + times).size();
  for (Bad const& bad : {
           Bad{head + times + "1 2 3\n4 5\n", kit::Failure::kMalformedInput, frames + 6, 11},
           Bad{head + times + "1 2 3\n4 x 6\n", kit::Failure::kMalformedInput, frames + 8, 11},
           Bad{head + times + "1 2 3\n4 5 1e16\n", kit::Failure::kRefused, frames + 10, 11},
           Bad{head + "Frames: 2\nFrame Time: 0\n1 2 3\n4 5 6\n", kit::Failure::kMalformedInput, head.size() + 22, 9},
           Bad{head + "Frames: 1\nFrame Time: 0\n1 2 3\n4 5 6\n", kit::Failure::kMalformedInput, head.size() + 22, 9},
           Bad{head + "Frames: 2\nFrame Time: 1e300\n1 2 3\n4 5 6\n", kit::Failure::kRefused, head.size() + 34, 11},
           Bad{"HIERARCHY\nROOT a\n{\n", kit::Failure::kMalformedInput, 19, 4},
           Bad{"HIERARCHY\n", kit::Failure::kMalformedInput, 10, 2},
       }) {
    SCOPED_TRACE(bad.text);
    ExpectRefused(Convert(bad.text), bad.code, static_cast<std::int64_t>(bad.offset), bad.line);
  }
}

TEST_F(MotionModule, CutAtEveryByteIsReadOrRefused) {
  std::string const text = std::string(kHead) + "Frames: 2\nFrame Time: 0.04\n1 2 3\n4 5 6\n";
  std::set<std::string> const rests = {"\n1 2 3\n4 5 6\n", "1 2 3\n4 5 6\n", "\n4 5 6\n", "4 5 6\n", "\n"};
  for (std::size_t size = 9; size != text.size(); ++size) {
    std::string const result = Convert(text.substr(0, size));
    bool const isRead = result.substr(0, 2) == "{\"";
    EXPECT_EQ(isRead, rests.count(text.substr(size)) == 1) << size << ' ' << result;
  }
}

TEST_F(MotionModule, OneFrameNeedsNoFrameTime) {
  ExpectParts(Convert(std::string(kHead) + "Frames: 1\nFrame Time: 0\n1 2 3\n"),
              {Sample("00:00:00:00", R"(["1","2","3"])")});
}

TEST_F(MotionModule, OtherFilesAreLeftToOthers) {
  kit::Input const motion(mFolder.Write("motion.txt", Motion("1 Xrotation", "1\n2\n")), "txt", "senmark.motion");
  EXPECT_FALSE(senmark_motion::Accepts(motion));
  for (char const* const text : {"", "HIERARCHYX\n", "a,b\n1,2\n", "ROOT\n"}) {
    kit::Input const input(mFolder.Write("other.bvh", text), "bvh", "senmark.motion");
    EXPECT_FALSE(senmark_motion::Accepts(input)) << text;
  }
  for (char const* const text : {"HIERARCHY\n", "\xEF\xBB\xBFHIERARCHY", "\r\n# made by hand\n  hierarchy"}) {
    kit::Input const input(mFolder.Write("other.bvh", text), "bvh", "senmark.motion");
    EXPECT_TRUE(senmark_motion::Accepts(input)) << text;
  }
  // The library's own converter makes a table of it.
  EXPECT_NE(ConvertFile(mFolder.Write("table.bvh", "a,b\n1,2\n")).find("com.velmo.sensor.csv"), std::string::npos);
}

TEST_F(MotionModule, ExplainsWhatItSees) {
  std::string const path = mFolder.Write("file.bvh", std::string(kHead) + "Frames: 2\nFrame Time: 0.033367\n1 2 3\n");
  EXPECT_EQ(Explained(path),
            (std::vector<std::string>{
                "it takes the file: motion capture, the first word is HIERARCHY",
                "1 roots, 1 joints with their end sites, 3 channels",
                "2 frames are stated, of 0.033367 s each: time codes at 30000/1001 frames per second",
                "no world positions; {\"worldPositions\": true} in " + path + ".senmark.json asks for them"}));
  EXPECT_EQ(Explained(mFolder.Write("file.txt", kHead)),
            std::vector<std::string>{"it does not take the file: the extension is not bvh"});
  EXPECT_EQ(Explained(mFolder.Write("table.bvh", "a,b")),
            std::vector<std::string>{"it does not take the file: the first word is not HIERARCHY"});
  EXPECT_EQ(Explained(mFolder.Write("cut.bvh", "HIERARCHY\nROOT a\n")).back(),
            "it cannot be read: the file ends before its motion (line 3)");
  EXPECT_EQ(Explained(mFolder.Write("slow.bvh", std::string(kHead) + "Frames: 2\nFrame Time: 10\n")).at(2),
            "2 frames are stated, of 10 s each: moments in GMT from 1970 on, with 1 digits of a second");
}

}  // namespace
}  // namespace senmark_test
