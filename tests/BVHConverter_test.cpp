#include "BVHConverter.h"

#include <gtest/gtest.h>

#include <new>

#include "FailingCalls.h"
#include "SK_Exception.h"
#include "SK_PluginException.h"
#include "TdjsonRootImpl.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using SK_NAMESPACE_INT::SK_PathInfo;

class BVHConversion : public testing::Test {
 protected:
  /// What stands in the file that a conversion wrote, or its error.
  std::string ConvertedFile(std::string const& path) {
    SK_PathInfo info(path, "bvh");
    info.outputPath = mFolder.Path("out.tdjson");
    std::string uid = "bvh";
    std::shared_ptr<SK_ConverterHandlerBase> const converter = BVHConverter_CTor(uid, info);
    try {
      EXPECT_TRUE(converter->convertToTDJSON());
    } catch (SK_PLUGIN::SK_PluginException const& error) {
      return std::to_string(error.GetErrorCode()) + " at " + std::to_string(error.GetFileOffset()) + ',' +
             std::to_string(error.GetFileLineNo());
    } catch (SK_Exception const& error) {
      return "writer: " + std::to_string(error.GetErrorCode());
    }
    return mFolder.Read(info.outputPath);
  }
  std::string Converted(std::string const& content) { return ConvertedFile(mFolder.Write("input.bvh", content)); }

  bool IsTaken(std::string const& content) {
    std::string uid;
    return BVH_CheckFormat(uid, SK_PathInfo(mFolder.Write("check.bvh", content), "bvh"));
  }

  senmark_test::TempFolder mFolder;
};

/// A file of one joint with these channels.
std::string OneJoint(std::string const& channels, std::string const& motion,
                     std::string const& frameTime = "0.0333333") {
  return "HIERARCHY\nROOT Hip\n{\nOFFSET 0 0 0\n" + channels + "}\nMOTION\nFrames: 1\nFrame Time: " + frameTime + '\n' +
         motion;
}

std::string const kRotation = "CHANNELS 3 Zrotation Yrotation Xrotation\n";
std::string const kPosition = "CHANNELS 6 Xposition Yposition Zposition Xrot Yrot Zrot\n";

/// What comes out of `OneJoint` apart from samples and their nodes.
std::string Head(std::string const& rate) {
  return R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,"timecodeInfo":{"frameRate":)" +
         rate + "}},";
}
std::string const kHead30 = Head(R"({"value":30,"scale":1},"dropFrame":false)");
std::string const kHeadWithoutSamples = R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,)";
std::string const kCreator = R"("creator":"com.velmo.sensor.bvh",)";

std::string Range(std::string const& min, std::string const& max) {
  std::string const pair = R"({"min":)" + min + R"(,"max":)" + max + '}';
  return R"({"occurring":)" + pair + R"(,"legal":)" + pair + '}';
}
std::string const kZeroRange = Range("0", "0");

std::string Offset(std::string const& joint) {
  return R"({"objectType":"dataStatic","matchName":"mn)" + joint + R"(OFFSET","displayName":")" + joint +
         R"(OFFSET","dataType":{"type":"numberArray","numberArrayProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},"arrayRanges":{"ranges":[)" +
         kZeroRange + ',' + kZeroRange + ',' + kZeroRange +
         R"(]},"arraySize":3,"arrayDisplayNames":["X_OFFSET","Y_OFFSET","Z_OFFSET"],"isPoint":true}},"value":[0,0,0]})";
}

std::string Group(std::string const& joint, std::string const& children) {
  return R"({"objectType":"dataGroup","matchName":"mn)" + joint + R"(","displayName":")" + joint + R"(","children":[)" +
         children + "]}";
}

TEST_F(BVHConversion, WritesTheWholeFile) {
  EXPECT_EQ(
      Converted("HIERARCHY\n"
                "ROOT Hips\n"
                "{\n"
                "\tOFFSET 0.00 1.50 -2.00\n"
                "\tCHANNELS 6 Xposition Yposition Zposition Zrotation Yrotation Xrotation\n"
                "\tJOINT Leg\n"
                "\t{\n"
                "\t\tOFFSET 0 -3 0\n"
                "\t\tCHANNELS 3 Zrotation Xrotation Yrotation\n"
                "\t\tEnd Site\n"
                "\t\t{\n"
                "\t\t\tOFFSET 12.25 0 0\n"
                "\t\t}\n"
                "\t}\n"
                "}\n"
                "MOTION\n"
                "Frames: 2\n"
                "Frame Time: 0.0333333\n"
                "1 2 3 0 0 10 30 10 20\n"
                "-1.5 -20 0.25 10 0 0 0 0 0\n"),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,)"
      R"("dynamicDataInfo":{"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false}},)"
      R"("dataDynamicSamples":[)"
      R"({"sampleSetID":"0","samples":[)"
      R"({"time":"00:00:00:00","value":["+01.00","-02.00","-03.00"]},)"
      R"({"time":"00:00:00:01","value":["-01.50","+20.00","-00.25"]}]},)"
      R"({"sampleSetID":"1","samples":[)"
      R"({"time":"00:00:00:00","value":["+10.0000000000003","-00.0000000000000","+00.0000000000000"]},)"
      R"({"time":"00:00:00:01","value":["-00.0000000000000","-00.0000000000000","-10.0000000000003"]}]},)"
      R"({"sampleSetID":"2","samples":[)"
      R"({"time":"00:00:00:00","value":["-01.837927088065397","-22.196615125271450","-32.128179603872870"]},)"
      R"({"time":"00:00:00:01","value":["-00.000000000000000","-00.000000000000000","+00.000000000000000"]}]}],)"
      R"("creator":"com.velmo.sensor.bvh",)"
      R"("dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"mnHips","displayName":"Hips","children":[)"
      R"({"objectType":"dataStatic","matchName":"mnHipsOFFSET","displayName":"HipsOFFSET",)"
      R"("dataType":{"type":"numberArray","numberArrayProperties":{)"
      R"("pattern":{"isSigned":true,"digitsDecimal":1,"digitsInteger":1},)"
      R"("arrayRanges":{"ranges":[)"
      R"({"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}},)"
      R"({"occurring":{"min":1.5,"max":1.5},"legal":{"min":1.5,"max":1.5}},)"
      R"({"occurring":{"min":-2,"max":-2},"legal":{"min":-2,"max":-2}}]},)"
      R"("arraySize":3,"arrayDisplayNames":["X_OFFSET","Y_OFFSET","Z_OFFSET"],"isPoint":true}},"value":[0,1.5,-2]},)"
      R"({"objectType":"dataDynamic","matchName":"mnHipsPOSITION","displayName":"HipsPOSITION","sampleSetID":"0",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,)"
      R"("dataType":{"type":"numberStringArray","numberArrayProperties":{)"
      R"("pattern":{"isSigned":true,"digitsDecimal":2,"digitsInteger":2},)"
      R"("arrayRanges":{"ranges":[)"
      R"({"occurring":{"min":-1.5,"max":1},"legal":{"min":-1.5,"max":1}},)"
      R"({"occurring":{"min":-2,"max":20},"legal":{"min":-2,"max":20}},)"
      R"({"occurring":{"min":-3,"max":-0.25},"legal":{"min":-3,"max":-0.25}}]},)"
      R"("arraySize":3,"arrayDisplayNames":["X_POSITION","Y_POSITION","Z_POSITION"],"isPoint":true}}},)"
      R"({"objectType":"dataDynamic","matchName":"mnHipsROTATION","displayName":"HipsROTATION","sampleSetID":"1",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,)"
      R"("dataType":{"type":"numberStringArray","numberArrayProperties":{)"
      R"("pattern":{"isSigned":true,"digitsDecimal":13,"digitsInteger":2},)"
      R"("arrayRanges":{"ranges":[)"
      R"({"occurring":{"min":-0,"max":10.0000000000003},"legal":{"min":-0,"max":10.0000000000003}},)"
      R"({"occurring":{"min":-0,"max":-0},"legal":{"min":-0,"max":-0}},)"
      R"({"occurring":{"min":-10.0000000000003,"max":0},"legal":{"min":-10.0000000000003,"max":0}}]},)"
      R"("arraySize":3,"arrayDisplayNames":["X_ROTATION","Y_ROTATION","Z_ROTATION"]}}},)"
      R"({"objectType":"dataGroup","matchName":"mnLeg","displayName":"Leg","children":[)"
      R"({"objectType":"dataStatic","matchName":"mnLegOFFSET","displayName":"LegOFFSET",)"
      R"("dataType":{"type":"numberArray","numberArrayProperties":{)"
      R"("pattern":{"isSigned":true,"digitsDecimal":0,"digitsInteger":1},)"
      R"("arrayRanges":{"ranges":[)"
      R"({"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}},)"
      R"({"occurring":{"min":-3,"max":-3},"legal":{"min":-3,"max":-3}},)"
      R"({"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}}]},)"
      R"("arraySize":3,"arrayDisplayNames":["X_OFFSET","Y_OFFSET","Z_OFFSET"],"isPoint":true}},"value":[0,-3,0]},)"
      R"({"objectType":"dataDynamic","matchName":"mnLegROTATION","displayName":"LegROTATION","sampleSetID":"2",)"
      R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":2,)"
      R"("dataType":{"type":"numberStringArray","numberArrayProperties":{)"
      R"("pattern":{"isSigned":true,"digitsDecimal":15,"digitsInteger":2},)"
      R"("arrayRanges":{"ranges":[)"
      R"({"occurring":{"min":-1.837927088065397,"max":-0},"legal":{"min":-1.837927088065397,"max":-0}},)"
      R"({"occurring":{"min":-22.19661512527145,"max":-0},"legal":{"min":-22.19661512527145,"max":-0}},)"
      R"({"occurring":{"min":-32.12817960387287,"max":0},"legal":{"min":-32.12817960387287,"max":0}}]},)"
      R"("arraySize":3,"arrayDisplayNames":["X_ROTATION","Y_ROTATION","Z_ROTATION"]}}},)"
      R"({"objectType":"dataGroup","matchName":"mnLegEnd","displayName":"LegEnd","children":[)"
      R"({"objectType":"dataStatic","matchName":"mnLegEndOFFSET","displayName":"LegEndOFFSET",)"
      R"("dataType":{"type":"numberArray","numberArrayProperties":{)"
      R"("pattern":{"isSigned":false,"digitsDecimal":2,"digitsInteger":2},)"
      R"("arrayRanges":{"ranges":[)"
      R"({"occurring":{"min":12.25,"max":12.25},"legal":{"min":12.25,"max":12.25}},)"
      R"({"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}},)"
      R"({"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}}]},)"
      R"("arraySize":3,"arrayDisplayNames":["X_OFFSET","Y_OFFSET","Z_OFFSET"],"isPoint":true}},"value":[12.25,0,0]}]}]}]}]})");
}

TEST_F(BVHConversion, WithoutMotionWritesTheOffsetsAlone) {
  std::string const offsets =
      kHeadWithoutSamples + kCreator + R"("dataOutline":[)" + Group("Hip", Offset("Hip")) + "]}";
  EXPECT_EQ(Converted(OneJoint("", "")), offsets);
  EXPECT_EQ(Converted(OneJoint(kRotation, "")), offsets);
  EXPECT_EQ(Converted(OneJoint(kRotation, "\n \t\r\nnone\nnan\n")), offsets);
  EXPECT_EQ(Converted(OneJoint("", "words\n")), offsets);
}

TEST_F(BVHConversion, GroupsNestAsJointsDo) {
  EXPECT_EQ(
      Converted("HIERARCHY\nROOT a\n{\nJOINT b\n{\nEnd Site\n{\n}\n}\nJOINT c\n{\n}\n}\nFrames: 0\nFrame Time: 1\n"),
      kHeadWithoutSamples + kCreator + R"("dataOutline":[)" +
          Group("a", Offset("a") + ',' + Group("b", Offset("b") + ',' + Group("bEnd", Offset("bEnd"))) + ',' +
                         Group("c", Offset("c"))) +
          "]}");
}

/// The samples of all sets, without the outline.
std::string SamplesOf(std::string const& converted) {
  std::string const begin = R"("dataDynamicSamples":[)";
  std::string::size_type const at = converted.find(begin);
  return at == std::string::npos
             ? converted
             : converted.substr(at + begin.size(), converted.find(R"(],"creator")") - at - begin.size());
}

std::string Set(std::string const& id, std::string const& samples) {
  return R"({"sampleSetID":")" + id + R"(","samples":[)" + samples + "]}";
}

TEST_F(BVHConversion, PositionsKeepTheirOrderAndTurnTheLastTwo) {
  for (char const* const order : {"Xposition Yposition Zposition", "Zposition Xposition Yposition"}) {
    EXPECT_EQ(
        SamplesOf(Converted(OneJoint("CHANNELS 6 " + std::string(order) + " none\n", "1 2 -3\n-0 0 0\n"))),
        Set("0", R"({"time":"00:00:00:00","value":["+1","-2","+3"]},{"time":"00:00:00:01","value":["-0","-0","-0"]})"));
  }
}

TEST_F(BVHConversion, DisplayNamesOfPositionsFollowTheOrderOfTheFile) {
  std::string const converted =
      Converted(OneJoint("CHANNELS 6 Zposition Xposition Yposition Zrotation Yrotation Xrotation\n", "1 2 3 4 5 6\n"));
  EXPECT_NE(converted.find(R"("arrayDisplayNames":["Z_POSITION","X_POSITION","Y_POSITION"],"isPoint":true})"),
            std::string::npos);
  EXPECT_NE(converted.find(R"("arrayDisplayNames":["X_ROTATION","Y_ROTATION","Z_ROTATION"]})"), std::string::npos);
}

struct Order {
  char const* name;
  char const* channels;
  char const* line;    ///< X 10, Y 20 and Z 30 in the order of the channels
  char const* values;  ///< of a computation apart
};

std::ostream& operator<<(std::ostream& out, Order const& row) {
  return out << row.name;
}

class BVHRotationOrder : public BVHConversion, public testing::WithParamInterface<Order> {};

TEST_P(BVHRotationOrder, IsTurnedIntoXYZ) {
  EXPECT_EQ(SamplesOf(Converted(OneJoint("CHANNELS 3 " + std::string(GetParam().channels) + '\n',
                                         std::string(GetParam().line) + '\n'))),
            Set("0", R"({"time":"00:00:00:00","value":[)" + std::string(GetParam().values) + "]}"));
}

Order const kOrders[] = {
    {"XYZ", "Xrotation Yrotation Zrotation", "10 20 30",
     R"("+10.00000000000030","-20.00000000000059","-30.00000000000089")"},
    {"XZY", "Xrotation Zrotation Yrotation", "10 30 20",
     R"("-00.3141048156182039","-17.2293965629594100","-31.5667039661419000")"},
    {"YZX", "Yrotation Zrotation Xrotation", "20 30 10",
     R"("+09.530576785123035","-24.734373743144920","-26.362957842634400")"},
    {"YXZ", "Yrotation Xrotation Zrotation", "20 10 30",
     R"("+10.62758413833120","-19.68349807941427","-26.38355842699787")"},
    {"ZXY", "Zrotation Xrotation Yrotation", "30 10 20",
     R"("-01.837927088065397","-22.196615125271450","-32.128179603872870")"},
    {"ZYX", "Zrotation Yrotation Xrotation", "30 20 10",
     R"("-01.116054677004668","-22.242180910310170","-28.451775256586330")"},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHRotationOrder, testing::ValuesIn(kOrders),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(BVHConversion, BlankLinesTakeNoTime) {
  EXPECT_EQ(
      SamplesOf(Converted(OneJoint(kPosition, "\n1 1 1\n\n \t\r\nwords\n2 2 2\n\n"))),
      Set("0", R"({"time":"00:00:00:00","value":["+1","-1","-1"]},{"time":"00:00:00:01","value":["+2","-2","-2"]})"));
}

TEST_F(BVHConversion, LastLineNeedsNoLineEnd) {
  EXPECT_EQ(
      SamplesOf(Converted(OneJoint(kPosition, "1 1 1\r\n2 2 2"))),
      Set("0", R"({"time":"00:00:00:00","value":["+1","-1","-1"]},{"time":"00:00:00:01","value":["+2","-2","-2"]})"));
}

TEST_F(BVHConversion, WordsBehindTheLastNumberAreNotSeen) {
  EXPECT_EQ(SamplesOf(Converted(OneJoint(kPosition, "1e0 .1e1 10E-1 and more 4 5 6\n"))),
            Set("0", R"({"time":"00:00:00:00","value":["+1","-1","-1"]})"));
}

TEST_F(BVHConversion, CountOfFramesIsNotLookedAt) {
  std::string const expected = Set("0", R"({"time":"00:00:00:00","value":["+1","-1","-1"]})");
  for (char const* const frames : {"0", "7", "-3", "many", "", "99999999999999999999999"}) {
    EXPECT_EQ(SamplesOf(Converted("HIERARCHY\nROOT Hip\n{\n" + kPosition + "}\nFrames: " + frames +
                                  "\nFrame Time: 0.04\n1 1 1\n")),
              expected)
        << frames;
  }
}

struct TimeBase {
  char const* name;
  char const* frameTime;
  char const* rate;
};

std::ostream& operator<<(std::ostream& out, TimeBase const& row) {
  return out << row.frameTime;
}

class BVHTimeBase : public BVHConversion, public testing::WithParamInterface<TimeBase> {};

TEST_P(BVHTimeBase, FollowsFromTheFrameTime) {
  std::string const head = Head(GetParam().rate);
  EXPECT_EQ(Converted(OneJoint(kPosition, "1 1 1\n", GetParam().frameTime)).substr(0, head.size()), head);
}

TimeBase const kTimeBases[] = {
    {"Rate24", "0.0416666", R"({"value":24,"scale":1},"dropFrame":false)"},
    {"Rate23", "0.0416667", R"({"value":23,"scale":1},"dropFrame":false)"},
    {"Rate25", "0.04", R"({"value":25,"scale":1},"dropFrame":false)"},
    {"Rate2997", "0.0333666", R"({"value":30000,"scale":1001},"dropFrame":true)"},
    {"StillRate2997", "0.0333667", R"({"value":30000,"scale":1001},"dropFrame":true)"},
    {"Rate29", "0.0333668", R"({"value":29,"scale":1},"dropFrame":false)"},
    {"Rate30", ".0333333", R"({"value":30,"scale":1},"dropFrame":false)"},
    {"Rate50", "2e-2", R"({"value":50,"scale":1},"dropFrame":false)"},
    {"Rate5994", "0.0166833", R"({"value":60000,"scale":1001},"dropFrame":true)"},
    {"Rate60", "0.01666666", R"({"value":60,"scale":1},"dropFrame":false)"},
    {"Rate120", "0.008333", R"({"value":120,"scale":1},"dropFrame":false)"},
    {"Rate909", "0.0011", R"({"value":909,"scale":1},"dropFrame":false)"},
    {"Rate0", "1e999", R"({"value":0,"scale":1},"dropFrame":false)"},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHTimeBase, testing::ValuesIn(kTimeBases),
                         [](auto const& row) { return std::string(row.param.name); });

/// The times of one sample set.
std::vector<std::string> TimesOf(std::string const& converted) {
  std::string const key = R"({"time":")";
  std::vector<std::string> times;
  for (auto at = converted.find(key); at != std::string::npos; at = converted.find(key, at + 1)) {
    std::string::size_type const begin = at + key.size();
    times.push_back(converted.substr(begin, converted.find('"', begin) - begin));
  }
  return times;
}

std::string SameFrames(int count) {
  std::string motion;
  for (int frame = 0; frame != count; ++frame) {
    motion += "1 1 1\n";
  }
  return motion;
}

TEST_F(BVHConversion, TimesDropFramesAt2997) {
  std::vector<std::string> const times = TimesOf(Converted(OneJoint(kPosition, SameFrames(18001), "0.0333666")));
  ASSERT_EQ(times.size(), 18001U);
  EXPECT_EQ(times[0], "00:00:00:00");
  EXPECT_EQ(times[1799], "00:00:59:29");
  EXPECT_EQ(times[1800], "00:01:00:02");
  EXPECT_EQ(times[17981], "00:09:59:29");
  EXPECT_EQ(times[17982], "00:10:00:00");
}

TEST_F(BVHConversion, FastFramesHaveThreeDigits) {
  std::vector<std::string> const times = TimesOf(Converted(OneJoint(kPosition, SameFrames(122), "0.008333")));
  ASSERT_EQ(times.size(), 122U);
  EXPECT_EQ(times[0], "00:00:00:000");
  EXPECT_EQ(times[119], "00:00:00:119");
  EXPECT_EQ(times[120], "00:00:01:000");
  EXPECT_EQ(times[121], "00:00:01:001");
}

/// A frame of more than a second counts as a second, so that 100 hours come soon.
TEST_F(BVHConversion, SamplesFromTheHundredthHourOnAreLeftOut) {
  std::vector<std::string> const times = TimesOf(Converted(OneJoint(kPosition, SameFrames(360002), "2")));
  ASSERT_EQ(times.size(), 360000U);
  EXPECT_EQ(times.back(), "99:59:59:00");
}

struct Refusal {
  char const* name;
  std::string content;
  char const* error;
};

std::ostream& operator<<(std::ostream& out, Refusal const& row) {
  return out << row.name;
}

class BVHRefusal : public BVHConversion, public testing::WithParamInterface<Refusal> {};

TEST_P(BVHRefusal, EndsInItsError) {
  std::size_t const before = senmark_test::CountOpenDescriptors();
  EXPECT_EQ(Converted(GetParam().content), GetParam().error);
  EXPECT_EQ(senmark_test::CountOpenDescriptors(), before);
}

std::string const kMotionHead = "HIERARCHY\nROOT Hip\n{\n" + kRotation + "}\nMOTION\n";

Refusal const kRefusals[] = {
    {"Empty", "", "1001 at -1,-1"},
    {"OneByte", "H", "1001 at -1,-1"},
    {"OtherFile", "a,b\n1,2\n", "1001 at -1,-1"},
    {"NoRoot", "HIERARCHY\nJOINT a\n{\n}\n", "1001 at -1,-1"},
    {"NoBrace", "HIERARCHY\nROOT a\nOFFSET 0 0 0\n", "1509 at -1,-1"},
    {"CutInsideAJoint", "HIERARCHY\nROOT a\n{\n", "1509 at -1,-1"},
    {"BadOffset", "HIERARCHY\nROOT a\n{\nOFFSET 0 0 0 0\n}\n", "1509 at -1,-1"},
    {"BadChannelCount", "HIERARCHY\nROOT a\n{\nCHANNELS 4 Xrotation Yrotation Zrotation\n}\n", "1509 at -1,-1"},
    {"EndWithoutSite", "HIERARCHY\nROOT a\n{\nEnd\n{\n}\n}\n", "1509 at -1,-1"},
    {"HierarchyAlone", "HIERARCHY\nROOT a\n{\n}\n", "1508 at -1,-1"},
    {"NoFrames", kMotionHead + "Frame Time: 0.04\n1 2 3\n", "1508 at -1,-1"},
    {"NoFrameTime", kMotionHead + "Frames: 1\n1 2 3\n", "1508 at -1,-1"},
    {"FrameTimeBeforeFrames", kMotionHead + "Frame Time: 0.04\nFrames: 1\n1 2 3\n", "1508 at -1,-1"},
    {"FrameTimeInTheLastLineWithoutLineEnd", kMotionHead + "Frames: 1\nFrame Time: 0.04", "1508 at -1,-1"},
    {"FrameTimeIsNone", OneJoint(kRotation, "1 2 3\n", ""), "1508 at -1,-1"},
    {"FrameTimeIsAWord", OneJoint(kRotation, "1 2 3\n", "nan"), "1508 at -1,-1"},
    {"FrameTimeIsZero", OneJoint(kRotation, "1 2 3\n", "0"), "1508 at -1,-1"},
    {"FrameTimeIsNegative", OneJoint(kRotation, "1 2 3\n", "-0.04"), "1508 at -1,-1"},
    {"FrameTimeIsTooShort", OneJoint(kRotation, "1 2 3\n", "0.001"), "1508 at -1,-1"},
    {"OneNumberTooMany", OneJoint(kRotation, "1 2 3 4\n"), "1509 at -1,-1"},
    {"OneNumberTooFew", OneJoint(kRotation, "1 2 3\n1 2\n"), "1509 at -1,-1"},
    {"WordAmongTheNumbers", OneJoint(kRotation, "1 x 3\n"), "1509 at -1,-1"},
    {"NumberTooLarge", OneJoint(kRotation, "1 1e999 3\n"), "1509 at -1,-1"},
    {"NumbersWithoutChannels", OneJoint("", "1\n"), "1509 at -1,-1"},
    {"ThreePositionsAreNoChannels", OneJoint("CHANNELS 3 Xposition Yposition Zposition\n", "1 2 3\n"), "1509 at -1,-1"},
    {"NameThatIsNotAlphanumeric",
     "HIERARCHY\nROOT Left-Hip\n{\n" + kRotation + "}\nFrames: 1\nFrame Time: 0.04\n1 2 3\n", "writer: 2022"},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHRefusal, testing::ValuesIn(kRefusals),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(BVHConversion, FrameTimeBarelyLongEnoughIsTaken) {
  EXPECT_EQ(SamplesOf(Converted(OneJoint(kPosition, "1 1 1\n", "0.0011"))),
            Set("0", R"({"time":"00:00:00:000","value":["+1","-1","-1"]})"));
}

TEST_F(BVHConversion, WithoutAFileIsRefused) {
  EXPECT_EQ(ConvertedFile(mFolder.Path("none.bvh")), "1006 at -1,-1");
}

TEST_F(BVHConversion, FolderIsRefused) {
  EXPECT_EQ(ConvertedFile(mFolder.Path("")), "1001 at -1,-1");
}

TEST_F(BVHConversion, LeavesNothingInTheWriter) {
  SK_PathInfo info(mFolder.Write("input.bvh", OneJoint(kRotation, "1 2 3\n1 2\n")), "bvh");
  info.outputPath = mFolder.Path("out.tdjson");
  auto converter = std::make_unique<BVHConverter>(info);
  EXPECT_THROW(converter->convertToTDJSON(), SK_PLUGIN::SK_PluginException);
  void* const key = converter.get();
  EXPECT_NE(SK_PLUGIN::TdjsonRootImpl::GetRoot(key), nullptr);
  converter.reset();
  EXPECT_EQ(SK_PLUGIN::TdjsonRootImpl::GetRoot(key), nullptr);
}

TEST_F(BVHConversion, WriterThatCannotWriteIsReported) {
  SK_PathInfo info(mFolder.Write("input.bvh", OneJoint(kRotation, "1 2 3\n")), "bvh");
  info.outputPath = mFolder.Path("no/folder/out.tdjson");
  BVHConverter converter(info);
  EXPECT_THROW(converter.convertToTDJSON(), SK_Exception);
}

TEST_F(BVHConversion, NestsAsDeepAsTheFileLikes) {
  constexpr int kDepth = 200000;
  std::string content = "HIERARCHY\nROOT j\n{\n";
  std::string end = "}\n";
  for (int i = 0; i != kDepth; ++i) {
    content += "JOINT j\n{\n";
    end += "}\n";
  }
  std::string const converted = Converted(content + end + "Frames: 0\nFrame Time: 0.04\n");
  std::string const innermost = Group("j", Offset("j"));
  ASSERT_GT(converted.size(), innermost.size() + 2 * static_cast<std::size_t>(kDepth) + 2);
  EXPECT_EQ(converted.substr(converted.size() - innermost.size() - 2 * static_cast<std::size_t>(kDepth) - 2,
                             innermost.size()),
            innermost);
}

/// The joint has its name, its group and its three nodes two each; none of them can be missing from the count.
TEST_F(BVHConversion, LongNamesOfJointsAndNodesHaveALimitTogether) {
  constexpr std::uint64_t kLength = 1500;
  std::string const channels = "CHANNELS 6 Xposition Yposition Zposition Xrotation Yrotation Zrotation\n";
  SK_PathInfo info(mFolder.Write("input.bvh", "HIERARCHY\nROOT " + std::string(kLength, 'n') + "\n{\n" + channels +
                                                  "}\nFrames: 0\nFrame Time: 0.04\n"),
                   "bvh");
  info.outputPath = mFolder.Path("out.tdjson");
  std::uint64_t bytes = 9 * kLength + 4 * std::string("mn").size();
  for (char const* const end : {"OFFSET", "POSITION", "ROTATION"}) {
    bytes += 2 * std::string(end).size();
  }
  BVHConverter fitting(info, bytes);
  EXPECT_TRUE(fitting.convertToTDJSON());
  BVHConverter tooLong(info, bytes - 1);
  EXPECT_THROW(tooLong.convertToTDJSON(), std::bad_alloc);
}

TEST_F(BVHConversion, CheckTakesFilesThatBeginWithItsWords) {
  EXPECT_TRUE(IsTaken("HIERARCHY\nROOT Hips\n"));
  EXPECT_TRUE(IsTaken(" \t HIERARCHY of joints\r\n\tROOT"));
  EXPECT_TRUE(IsTaken("HIERARCHY\r\nROOT\r\nnothing of this is looked at"));
  EXPECT_TRUE(IsTaken("HIERARCHY " + std::string(600000, 'x') + "\nROOT"));
  EXPECT_TRUE(IsTaken(std::string(600000, ' ') + "HIERARCHY\nROOT"));
  for (std::string const& content : std::initializer_list<std::string>{
           "", "H", "HIERARCH", "HIERARCHY", "HIERARCHY\n", "HIERARCHY\n\nROOT", "\nHIERARCHY\nROOT", "HIERARCHY ROOT",
           "HIERARCHY\nROOTS", "HIERARCHYS\nROOT", "HIERARCHY\nJOINT", "hierarchy\nroot", "x HIERARCHY\nROOT",
           "HIERARCHY\rROOT", std::string("\0HIERARCHY\nROOT", 15), "\xef\xbb\xbfHIERARCHY\nROOT"}) {
    EXPECT_FALSE(IsTaken(content)) << content;
  }
}

TEST_F(BVHConversion, CheckCanBeRepeated) {
  SK_PathInfo const info(mFolder.Write("input.bvh", "HIERARCHY\nROOT a\n"), "bvh");
  std::string uid = "any";
  EXPECT_TRUE(BVH_CheckFormat(uid, info));
  EXPECT_TRUE(BVH_CheckFormat(uid, info));
  EXPECT_EQ(uid, "any");
}

TEST_F(BVHConversion, CheckOfAFileThatCannotBeOpenedIsAnError) {
  std::string uid;
  try {
    BVH_CheckFormat(uid, SK_PathInfo(mFolder.Path("none.bvh"), "bvh"));
    ADD_FAILURE() << "no error";
  } catch (SK_PLUGIN::SK_PluginException const& error) {
    EXPECT_EQ(error.GetErrorCode(), 1006);
    EXPECT_EQ(error.GetFileOffset(), -1);
    EXPECT_EQ(error.GetFileLineNo(), -1);
  }
  EXPECT_FALSE(BVH_CheckFormat(uid, SK_PathInfo(mFolder.Path(""), "")));
}

}  // namespace
}  // namespace ns_sensor
