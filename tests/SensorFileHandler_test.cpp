// One opened file through the border: what each operation sends, and what it reports.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"
#include "senmark/SK_Records.h"

namespace senmark_test {
namespace {

using ns_sensor::ISensorFileHandler;

class SensorFileHandler : public testing::Test {
 protected:
  void SetUp() override {
    mVersion2 = mHost.Open(mFolder.Write("two.tdjson", kSmallVersion2));
    mVersion1 = mHost.Open(mFolder.Write("one.tdjson", kSmallVersion1));
    EXPECT_THAT(mHost.TakeErrors(), testing::IsEmpty());
    ASSERT_NE(mVersion2, nullptr);
    ASSERT_NE(mVersion1, nullptr);
  }
  void TearDown() override {
    if (mVersion2 != nullptr && mVersion1 != nullptr) {
      EXPECT_EQ(mHost.Close(mVersion2), nullptr);
      EXPECT_EQ(mHost.Close(mVersion1), nullptr);
    }
  }

  std::string StaticInfo(ISensorFileHandler* file, std::string const& path) {
    file->getStaticDataInfo(path.c_str(), path.size(), &mHost, &mHost);
    return mHost.TakeCalls();
  }
  std::string DynamicInfo(ISensorFileHandler* file, std::string const& path) {
    file->getDynamicDataInfo(path.c_str(), path.size(), &mHost, &mHost);
    return mHost.TakeCalls();
  }
  std::string Samples(ISensorFileHandler* file, std::string const& id, ns_sensor::SK_Time start,
                      ns_sensor::SK_Time end) {
    file->getDynamicSamples(id.c_str(), id.size(), start.value, start.scale, end.value, end.scale, &mHost, &mHost);
    return mHost.TakeCalls();
  }
  std::string Adjacent(ISensorFileHandler* file, std::string const& id, ns_sensor::SK_Time time) {
    file->getAdjacentSamples(id.c_str(), id.size(), time.value, time.scale, &mHost, &mHost);
    return mHost.TakeCalls();
  }

  TempFolder mFolder;
  RecordingHost mHost;
  ISensorFileHandler* mVersion2 = nullptr;
  ISensorFileHandler* mVersion1 = nullptr;
};

TEST_F(SensorFileHandler, RootChildrenComeBehindTheRoot) {
  mVersion2->getRootChildren(&mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls(),
            "prefix \"\" -1 of 2\n"
            "leaf \"arm\" 0 of 2\n"
            "leaf \"version\" 1 of 2\n");
}

TEST_F(SensorFileHandler, GroupChildrenComeBehindTheirCommonWay) {
  struct Row {
    std::string path;
    std::string group;  // as the way names it: with the name only if the path gave it
  };
  for (Row const& row : {Row{R"(["arm"])", "\"arm\" 0"}, Row{"[0]", "\"\" 0"}, Row{R"(text ["arm"])", "\"arm\" 0"}}) {
    mVersion2->getGroupChildren(row.path.c_str(), row.path.size(), &mHost, &mHost);
    EXPECT_EQ(mHost.TakeCalls(),
              "prefix \"dataOutline\" -1 of 8\n"
              "prefix " +
                  row.group +
                  " of 8\n"
                  "leaf \"length\" 0 of 8\n"
                  "leaf \"label\" 1 of 8\n"
                  "leaf \"offset\" 2 of 8\n"
                  "leaf \"present\" 3 of 8\n"
                  "leaf \"angle\" 4 of 8\n"
                  "leaf \"position\" 5 of 8\n"
                  "leaf \"note\" 6 of 8\n"
                  "leaf \"unused\" 7 of 8\n")
        << row.path;
  }
}

TEST_F(SensorFileHandler, GroupChildInfoTellsKindAndNames) {
  struct Row {
    std::string path;
    std::string sent;
  };
  for (Row const& row : {Row{R"(["arm"])", "child type 0 \"Arm\" \"arm\"\n"},
                         Row{R"(["arm"]["angle"])", "child type 1 \"Angle\" \"angle\"\n"},
                         Row{"[0][0]", "child type 2 \"Length\" \"length\"\n"}}) {
    mVersion2->getGroupChildInfo(row.path.c_str(), row.path.size(), &mHost, &mHost);
    EXPECT_EQ(mHost.TakeCalls(), row.sent);
  }
}

TEST_F(SensorFileHandler, StaticNodesOfVersion2) {
  EXPECT_EQ(StaticInfo(mVersion2, R"(["arm"]["length"])"),
            "static \"Length\" \"length\" type 0 value 42.5 size 0\n"
            "  number 2.1 unsigned range 0..50 legal -1.5..99.5\n");
  EXPECT_EQ(StaticInfo(mVersion2, R"(["arm"]["label"])"),
            "static \"Label\" \"label\" type 1 value \"left  \" size 6\n"
            "  string 8 bytes, 1 digits, events\n");
  EXPECT_EQ(StaticInfo(mVersion2, R"(["arm"]["offset"])"),
            "static \"Offset\" \"offset\" type 2 value [1 -2.5 0.25]\n"
            "  array of 3 1.2 signed point\n"
            "  name \"X\"\n"
            "  name \"Y\"\n"
            "  range 1..2 legal 0..3\n");
  EXPECT_EQ(StaticInfo(mVersion2, R"(["arm"]["present"])"),
            "static \"Present\" \"present\" type 3 value true size 0\n");
}

TEST_F(SensorFileHandler, StaticNodesOfVersion1) {
  EXPECT_EQ(StaticInfo(mVersion1, R"(["speed"])"),
            "static \"Speed\" \"speed\" type 0 value 42.5 size 0\n"
            "  number 2.1 unsigned range 0..50 legal 0..99\n");
  EXPECT_EQ(StaticInfo(mVersion1, R"(["title"])"),
            "static \"Title\" \"title\" type 1 value \"abc  \" size 5\n"
            "  string 5 bytes, 1 digits\n");
  EXPECT_EQ(StaticInfo(mVersion1, R"(["axes"])"),
            "static \"Axes\" \"axes\" type 2 value [1.5 -2]\n"
            "  array of 2 1.1 signed\n"
            "  name \"A\"\n"
            "  range 0..1 legal 0..1\n");
}

TEST_F(SensorFileHandler, EmptyStaticTextHasSizeZero) {
  std::string empty = kSmallVersion2;
  empty.replace(empty.find("left  "), 6, "");
  ISensorFileHandler* const file = mHost.Open(mFolder.Write("empty.tdjson", empty));
  EXPECT_EQ(StaticInfo(file, R"(["arm"]["label"])"),
            "static \"Label\" \"label\" type 1 value \"\" size 0\n"
            "  string 8 bytes, 1 digits, events\n");
  EXPECT_EQ(mHost.Close(file), nullptr);
}

TEST_F(SensorFileHandler, DynamicNodes) {
  EXPECT_EQ(DynamicInfo(mVersion2, R"(["arm"]["angle"])"),
            "dynamic \"Angle\" \"angle\" type 0 set \"a1\" count 4 interpolation 1 frequency start 0/1 duration 1/1 "
            "max \"00:00:00:10\"\n"
            "  number 2.1 signed range -2.5..99.5 legal -99.5..99.5\n");
  EXPECT_EQ(DynamicInfo(mVersion2, R"(["arm"]["position"])"),
            "dynamic \"Position\" \"position\" type 2 set \"p1\" count 3 interpolation 2 start 1/6 duration 5/6 "
            "max \"\"\n"
            "  array of 2 1.2 unsigned\n"
            "  name \"X\"\n"
            "  name \"Y\"\n"
            "  range 0..9 legal 0..9\n");
  EXPECT_EQ(DynamicInfo(mVersion2, R"(["arm"]["note"])"),
            "dynamic \"Note\" \"note\" type 1 set \"n1\" count 2 interpolation 2 start 2/1 duration 3/1 max \"\"\n"
            "  string 6 bytes, 1 digits, events\n");
}

TEST_F(SensorFileHandler, NodeWithoutSamplesHasZeroTimesOfScaleOne) {
  mHost.fetchProperties = false;
  EXPECT_EQ(DynamicInfo(mVersion2, R"(["arm"]["unused"])"),
            "dynamic \"Unused\" \"unused\" type 0 set \"e1\" count 0 interpolation 1 start 0/1 duration 0/1 max "
            "\"\"\n");
}

TEST_F(SensorFileHandler, FileInfo) {
  ns_sensor::SK_FileInfo info;
  info.version = "old";
  mVersion2->getFileInfo(&info, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls(), "file 3/1 version \"TDJSON2.0.0\" creator \"by hand\"\n");
  EXPECT_EQ(info.version, "TDJSON2.0.0");
  EXPECT_EQ(info.duration.value, 3);
  mVersion1->getFileInfo(&info, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls(), "file 13/4 version \"anything\" creator \"by hand, too\"\n");
}

TEST_F(SensorFileHandler, VideoSyncTimes) {
  std::vector<ns_sensor::SK_VideoSyncTime> list(5);
  mVersion2->getVideoSyncTime(&list, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeCalls(),
            "sync \"a.mov\" kind 2 value \"00:00:01:00\" size 11\n"
            "sync \"b.mov\" kind 2 value 12 size 0\n");
  ASSERT_EQ(list.size(), 2u);
  EXPECT_EQ(boost::get<int>(list[1].value.value), 12);
}

TEST_F(SensorFileHandler, SamplesOfARange) {
  EXPECT_EQ(Samples(mVersion2, "a1", {0, 1}, {2, 1}),
            "count 4\n"
            "sample 0/1 1.5 size 0\n"
            "sample 1/3 -2.5 size 0\n"
            "sample 2/3 10 size 0\n"
            "sample 1/1 99.5 size 0\n");
}

TEST_F(SensorFileHandler, RangeBeginsAtTheLastSampleBeforeItsStart) {
  EXPECT_EQ(Samples(mVersion2, "a1", {1, 2}, {2, 3}),
            "count 2\n"
            "sample 1/3 -2.5 size 0\n"
            "sample 2/3 10 size 0\n");
}

TEST_F(SensorFileHandler, NegativeStartBeginsAtTheFirstSample) {
  EXPECT_EQ(Samples(mVersion2, "p1", {-1, 1}, {1, 2}),
            "count 2\n"
            "sample 1/6 [1.25 0.5]\n"
            "sample 1/2 [2 3.75]\n");
}

TEST_F(SensorFileHandler, EqualStartAndEndGiveOneSample) {
  EXPECT_EQ(Samples(mVersion2, "a1", {1, 3}, {2, 6}), "count 1\nsample 1/3 -2.5 size 0\n");
}

TEST_F(SensorFileHandler, StartBehindEndReversesTheOrder) {
  EXPECT_EQ(Samples(mVersion2, "a1", {1, 1}, {1, 3}),
            "count 3\n"
            "sample 1/1 99.5 size 0\n"
            "sample 2/3 10 size 0\n"
            "sample 1/3 -2.5 size 0\n");
}

TEST_F(SensorFileHandler, LoweredCountGivesTheFirstSamples) {
  mHost.wantedSamples = 2;
  EXPECT_EQ(Samples(mVersion2, "a1", {0, 1}, {2, 1}), "count 4\nsample 0/1 1.5 size 0\nsample 1/3 -2.5 size 0\n");
}

TEST_F(SensorFileHandler, LoweredCountOfAReversedRangeGoesFromThereDownToTheFirst) {
  mHost.wantedSamples = 2;
  EXPECT_EQ(Samples(mVersion2, "a1", {1, 1}, {0, 1}), "count 4\nsample 1/3 -2.5 size 0\nsample 0/1 1.5 size 0\n");
}

TEST_F(SensorFileHandler, CountLoweredToZeroGivesNothing) {
  mHost.wantedSamples = 0;
  EXPECT_EQ(Samples(mVersion2, "a1", {0, 1}, {1, 1}), "count 4\n");
  EXPECT_EQ(Samples(mVersion2, "a1", {1, 1}, {0, 1}), "count 4\n");
}

TEST_F(SensorFileHandler, RaisedCountGivesNoMoreThanThereAre) {
  mHost.wantedSamples = 1000;
  EXPECT_EQ(Samples(mVersion2, "n1", {2, 1}, {2, 1}), "count 1\nsample 2/1 \"a b\" size 3\n");
}

TEST_F(SensorFileHandler, EmptyTextHasSizeZero) {
  EXPECT_EQ(Samples(mVersion2, "n1", {3, 1}, {4, 1}), "count 1\nsample 3/1 \"\" size 0\n");
}

TEST_F(SensorFileHandler, SamplesOfVersion1) {
  EXPECT_EQ(Samples(mVersion1, "lv", {0, 1}, {4, 1}),
            "count 3\n"
            "sample 0/1 12 size 0\n"
            "sample 3/2 7 size 0\n"
            "sample 13/4 99 size 0\n");
  EXPECT_EQ(Samples(mVersion1, "ev", {0, 1}, {4, 1}), "count 1\nsample 1/1 \"a\"bcd\"\" size 6\n");
  EXPECT_EQ(Samples(mVersion1, "tr", {1, 1}, {3, 2}),
            "count 2\n"
            "sample 0/1 [1.5 -0.5]\n"
            "sample 3/2 [2.5 -1.5]\n");
}

TEST_F(SensorFileHandler, AdjacentSamples) {
  EXPECT_EQ(Adjacent(mVersion2, "a1", {1, 3}),
            "count 3\nsample 0/1 1.5 size 0\nsample 1/3 -2.5 size 0\nsample 2/3 10 size 0\n");
  EXPECT_EQ(Adjacent(mVersion2, "a1", {1, 2}), "count 2\nsample 1/3 -2.5 size 0\nsample 2/3 10 size 0\n");
  EXPECT_EQ(Adjacent(mVersion2, "a1", {0, 1}), "count 2\nsample 0/1 1.5 size 0\nsample 1/3 -2.5 size 0\n");
  EXPECT_EQ(Adjacent(mVersion2, "a1", {1, 1}), "count 2\nsample 2/3 10 size 0\nsample 1/1 99.5 size 0\n");
  EXPECT_EQ(Adjacent(mVersion2, "a1", {9, 1}), "count 1\nsample 1/1 99.5 size 0\n");
  EXPECT_EQ(Adjacent(mVersion2, "a1", {-9, 1}), "count 1\nsample 0/1 1.5 size 0\n");
}

TEST_F(SensorFileHandler, AdjacentSamplesOfTheOnlySampleAreAnError) {
  EXPECT_EQ(Adjacent(mVersion1, "ev", {1, 1}), "");
  EXPECT_EQ(mHost.TakeError(), (ReportedError{21, "Unable to fetch dynamic samples for SampleId:\"ev\".", -1, -1}));
}

TEST_F(SensorFileHandler, SampleInfoCountsWithoutReading) {
  ns_sensor::SK_DynamicSampleInfo info;
  mVersion2->getSampleInfo("a1", 2, 1, 3, 1, 1, &info, 0, &mHost, &mHost);
  EXPECT_EQ(info.sampleCount, 3u);
  EXPECT_EQ(info.valueType, ns_sensor::kNumberValue);
  mVersion2->getSampleInfo("p1", 2, 1, 2, 0, 1, &info, 200, &mHost, &mHost);
  EXPECT_EQ(info.sampleCount, 3u);
  EXPECT_EQ(info.valueType, ns_sensor::kNumberArrayValue);
  mVersion1->getSampleInfo("ev", 2, 1, 1, 0, 1, &info, 1, &mHost, &mHost);
  EXPECT_EQ(info.sampleCount, 0u);
  EXPECT_EQ(info.valueType, ns_sensor::kStringValue);
  EXPECT_EQ(mHost.TakeCalls(), "");
}

struct RefusedQuery {
  char const* name;
  char const* id;
  ns_sensor::SK_Time start;
  ns_sensor::SK_Time end;
  ReportedError error;
};

class RefusedSamples : public SensorFileHandler, public testing::WithParamInterface<RefusedQuery> {};

RefusedQuery const kRefusedQueries[] = {
    {"UnknownId",
     "zz",
     {0, 1},
     {1, 1},
     {35, "Data Outline does not contain any dynamic node for sample id : \"zz\".", -1, -1}},
    {"SetWithoutSamples", "e1", {0, 1}, {1, 1}, {38, "No dynamic sample data present for sample id : \"e1\".", -1, -1}},
    {"ZeroScaleOfStart", "a1", {0, 0}, {1, 1}, {1, "scale value cannot be zero for parameter \"startTime\".", -1, -1}},
    {"ZeroScaleOfEnd", "a1", {0, 1}, {1, 0}, {1, "scale value cannot be zero for parameter \"endTime\".", -1, -1}},
    {"ZeroScaleComesBeforeTheId",
     "zz",
     {0, 0},
     {1, 0},
     {1, "scale value cannot be zero for parameter \"startTime\".", -1, -1}},
};

TEST_P(RefusedSamples, AreReportedAlone) {
  RefusedQuery const& row = GetParam();
  EXPECT_EQ(Samples(mVersion2, row.id, row.start, row.end), "");
  EXPECT_EQ(mHost.TakeError(), row.error);
}

INSTANTIATE_TEST_SUITE_P(SensorFileHandler, RefusedSamples, testing::ValuesIn(kRefusedQueries),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(SensorFileHandler, ZeroScaleIsRefusedInEveryQuery) {
  ReportedError const expected{1, "scale value cannot be zero for parameter \"time\".", -1, -1};
  EXPECT_EQ(Adjacent(mVersion2, "a1", {0, 0}), "");
  EXPECT_EQ(mHost.TakeError(), expected);
  ns_sensor::SK_DynamicSampleInfo info;
  mVersion2->getSampleInfo("a1", 2, 0, 0, 1, 1, &info, 1, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), expected);
  mVersion2->getSampleInfo("a1", 2, 0, 0, 1, 1, &info, 0, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError().message, "scale value cannot be zero for parameter \"startTime\".");
}

struct RefusedPath {
  char const* name;
  char const* path;
  ReportedError error;
};

class RefusedNodePath : public SensorFileHandler, public testing::WithParamInterface<RefusedPath> {};

RefusedPath const kRefusedPaths[] = {
    {"Empty", "", {1, "Empty SK_DataPath string.", -1, -1}},
    {"NoBracket", "arm", {33, "Missing \"[\" at or after index :0.", -1, -1}},
    {"NoClosingBracket", "[0][0", {45, "Missing \"]\" at or after index :3.", -1, -1}},
    {"IndexThatIsNoNumber", "[x]", {34, "Unknown exception occurred.", -1, -1}},
    {"TextBehindTheLastSegment", R"(["arm"] x)", {33, "Missing \"[\" at or after index :7.", -1, -1}},
    {"UnknownName", R"(["leg"])", {33, "No node found with match name : \"leg\".", -1, -1}},
    {"IndexBehindTheLast",
     "[2]",
     {33, "Invalid node index, 2 child nodes present for node at path item :0. Input index : 2.", -1, -1}},
    {"BelowALeaf",
     R"(["arm"]["angle"][0])",
     {33, "Node at path item:1 is not of type dataGroup. All intermediate nodes must be of type dataGroup.", -1, -1}},
};

TEST_P(RefusedNodePath, IsReportedByEveryOperation) {
  RefusedPath const& row = GetParam();
  std::string const path = row.path;
  mVersion2->getGroupChildren(path.c_str(), path.size(), &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), row.error);
  mVersion2->getGroupChildInfo(path.c_str(), path.size(), &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), row.error);
  EXPECT_EQ(StaticInfo(mVersion2, path), "");
  EXPECT_EQ(mHost.TakeError(), row.error);
  EXPECT_EQ(DynamicInfo(mVersion2, path), "");
  EXPECT_EQ(mHost.TakeError(), row.error);
  EXPECT_EQ(mHost.TakeCalls(), "");
}

INSTANTIATE_TEST_SUITE_P(SensorFileHandler, RefusedNodePath, testing::ValuesIn(kRefusedPaths),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(SensorFileHandler, NodeOfAnotherKindIsRefused) {
  StaticInfo(mVersion2, R"(["arm"]["angle"])");
  EXPECT_EQ(
      mHost.TakeError(),
      (ReportedError{33, "Static data node not found at input path, Found node type: Dynamic data node.", -1, -1}));
  DynamicInfo(mVersion2, R"(["arm"])");
  EXPECT_EQ(
      mHost.TakeError(),
      (ReportedError{33, "Dynamic data node not found at input path, Found node type: Group data node.", -1, -1}));
  std::string const leaf = R"(["arm"]["angle"])";
  mVersion2->getGroupChildren(leaf.c_str(), leaf.size(), &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{33, "Leaf node is not a group node.", -1, -1}));
}

TEST_F(SensorFileHandler, ProcThatThrowsIsReportedAndNothingMoreIsSent) {
  int callsLeft = 2;
  mHost.onCall = [&callsLeft] {
    if (callsLeft-- == 0) {
      throw 1;
    }
  };
  EXPECT_EQ(Samples(mVersion2, "a1", {0, 1}, {2, 1}), "count 4\nsample 0/1 1.5 size 0\n");
  EXPECT_EQ(mHost.TakeError(), (ReportedError{23, "Unknown exception occurred.", -1, -1}));
  mHost.onCall = [] {};
  EXPECT_EQ(Samples(mVersion2, "a1", {0, 1}, {0, 1}), "count 1\nsample 0/1 1.5 size 0\n");
}

TEST_F(SensorFileHandler, NullResultsAreRefusedFirst) {
  mVersion2->getFileInfo(nullptr, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{1, "Invalid pointer to \"SK_FileInfo\".", -1, -1}));
  mVersion2->getVideoSyncTime(nullptr, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{1, "Invalid pointer to \"SK_VideoSyncTimeList\".", -1, -1}));
  mVersion2->getSampleInfo("zz", 2, 0, 0, 0, 0, nullptr, 0, &mHost, &mHost);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{1, "Invalid pointer to \"SK_DynamicSampleInfo\".", -1, -1}));
}

}  // namespace
}  // namespace senmark_test
