#include "SK_DataQuery.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "DataFileText.h"
#include "SK_Exception.h"
#include "SK_SampleBlock.h"
#include "SK_TdjsonParser.h"
#include "SK_TdjsonParserFactory.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

using ns_sensor::SK_PathSegment;
using senmark_test::Array;
using senmark_test::kSmallVersion1;
using senmark_test::kSmallVersion2;
using senmark_test::NumberNode;
using senmark_test::NumberSample;
using senmark_test::TempFolder;
using senmark_test::TopLevel;

SK_PathSegment const kRoot = {"", -1};

SK_PathSegment Named(std::string const& name) {
  return {name, -1};
}

SK_PathSegment At(std::int32_t index) {
  return {"", index};
}

std::string TextOf(SK_DataPath const& path) {
  std::string text;
  for (SK_PathSegment const& segment : path) {
    text += "[" + segment.matchName + " " + std::to_string(segment.index) + "]";
  }
  return text;
}

std::string TextOf(std::vector<SK_DataPath> const& paths) {
  std::string text;
  for (SK_DataPath const& path : paths) {
    text += TextOf(path) + "\n";
  }
  return text;
}

std::string TextOf(SK_Time const& time) {
  return std::to_string(time.value) + "/" + std::to_string(time.scale);
}

/// Times of samples, and the first number of each value.
std::string TextOf(std::vector<SK_DynamicDataSample> const& samples) {
  std::string text;
  for (SK_DynamicDataSample const& sample : samples) {
    text += (text.empty() ? "" : " ") + TextOf(sample.time);
  }
  return text;
}

template <typename Body>
std::string OutcomeOf(Body const& body) {
  try {
    return body();
  } catch (ns_sensor::SK_Exception const& error) {
    EXPECT_EQ(error.GetFileOffset(), -1);
    EXPECT_EQ(error.GetFileLineNo(), -1);
    return std::to_string(error.GetErrorCode()) + " " + error.GetLocalizedErrMsg();
  }
}

std::string StaticFlagNode(std::string const& matchName) {
  return R"({"objectType":"dataStatic","displayName":"S","matchName":")" + matchName +
         R"(","dataType":{"type":"boolean"},"value":true})";
}

/// A query on the text of a whole file.
class FileUnderQuery {
 public:
  explicit FileUnderQuery(std::string const& text) {
    std::string const path = mFolder.Write("file.tdjson", text);
    mParser = SK_TdjsonParserFactory::GetParser(path.c_str());
    mParser->CacheFileData(path.c_str(), path.size());
    mQuery = std::make_unique<SK_DataQuery>(mParser);
  }
  SK_DataQuery const& operator*() const { return *mQuery; }
  SK_DataQuery const* operator->() const { return mQuery.get(); }

  /// What all forms of the query agree on: times in the order of the vector form, or the error.
  std::string Samples(std::string const& id, SK_Time const& start, SK_Time const& end) const {
    std::string const fromVector = OutcomeOf([&] {
      std::vector<SK_DynamicDataSample> samples(1);
      mQuery->GetDynamicSamples(id, start, end, &samples);
      return TextOf(samples);
    });
    std::string const fromArray = OutcomeOf([&] {
      SK_DynamicDataSample* samples = nullptr;
      unsigned long long count = 0;
      bool reversed = false;
      mQuery->GetDynamicSamples(id, start, end, samples, count, reversed, false);
      std::unique_ptr<SK_DynamicDataSample[]> const owner(samples);
      return Ordered({samples, samples + count}, reversed);
    });
    std::string const fromBlock = OutcomeOf([&] {
      SK_SampleBlock block;
      bool reversed = false;
      mQuery->ReadDynamicSamples(id, start, end, block, reversed);
      return Ordered(RecordsOf(block), reversed);
    });
    EXPECT_EQ(fromArray, fromVector);
    EXPECT_EQ(fromBlock, fromVector);
    return fromVector;
  }

  std::string Adjacent(std::string const& id, SK_Time const& time) const {
    std::string const fromVector = OutcomeOf([&] {
      std::vector<SK_DynamicDataSample> samples(1);
      mQuery->GetAdjacentSamples(id, time, &samples);
      return TextOf(samples);
    });
    std::string const fromArray = OutcomeOf([&] {
      SK_DynamicDataSample* samples = nullptr;
      unsigned long long count = 0;
      mQuery->GetAdjacentSamples(id, time, samples, count, false);
      std::unique_ptr<SK_DynamicDataSample[]> const owner(samples);
      return TextOf(std::vector<SK_DynamicDataSample>(samples, samples + count));
    });
    std::string const fromBlock = OutcomeOf([&] {
      SK_SampleBlock block;
      mQuery->ReadAdjacentSamples(id, time, block);
      return TextOf(RecordsOf(block));
    });
    bool const isNothing = fromVector.rfind("21 ", 0) == 0;
    EXPECT_EQ(fromArray, isNothing ? "" : fromVector);
    EXPECT_EQ(fromBlock, isNothing ? "" : fromVector);
    return fromVector;
  }

 private:
  static std::string Ordered(std::vector<SK_DynamicDataSample> samples, bool reversed) {
    if (reversed) {
      std::reverse(samples.begin(), samples.end());
    }
    return TextOf(samples);
  }
  static std::vector<SK_DynamicDataSample> RecordsOf(SK_SampleBlock const& block) {
    std::vector<SK_DynamicDataSample> records(block.Count());
    for (std::uint64_t i = 0; i < block.Count(); ++i) {
      block.CopyTo(i, records[i]);
    }
    return records;
  }

  TempFolder mFolder;
  std::shared_ptr<SK_TdjsonParser> mParser;
  std::unique_ptr<SK_DataQuery> mQuery;
};

class DataQuery : public testing::Test {
 protected:
  std::string ChildInfo(SK_DataPath const& path) {
    return OutcomeOf([&] {
      ns_sensor::SK_GroupChildInfo info;
      mTwo->GetGroupChildInfo(path, &info);
      return std::to_string(info.type) + " " + info.displayName + " " + info.matchName;
    });
  }
  std::string Children(SK_DataPath const& path) {
    return OutcomeOf([&] {
      std::vector<SK_DataPath> children;
      mTwo->GetGroupChildren(path, &children);
      return TextOf(children);
    });
  }
  std::string Static(SK_DataPath const& path) {
    return OutcomeOf([&] {
      ns_sensor::SK_StaticDataInfo info;
      mTwo->GetStaticDataInfo(path, &info);
      return info.displayName + " " + info.matchName + " " + std::to_string(info.dataType.type);
    });
  }
  std::string Dynamic(SK_DataPath const& path) {
    return OutcomeOf([&] {
      ns_sensor::SK_DynamicDataInfo info;
      mTwo->GetDynamicDataInfo(path, &info);
      return info.fields.displayName + " " + info.fields.matchName + " " + std::to_string(info.dataType.type);
    });
  }

  FileUnderQuery mTwo{kSmallVersion2};
};

TEST_F(DataQuery, RootChildrenReplaceWhatWasThere) {
  std::vector<SK_DataPath> children(5);
  mTwo->GetRootChildren(&children);
  EXPECT_EQ(TextOf(children), "[ -1][arm 0]\n[ -1][version 1]\n");
}

TEST_F(DataQuery, GroupChildrenComeBehindWhatWasThereAndCarryIndexAndName) {
  std::vector<SK_DataPath> children(1);
  SK_DataPath const path = {kRoot, Named("arm")};
  mTwo->GetGroupChildren(path, &children);
  ASSERT_EQ(children.size(), 9U);
  EXPECT_EQ(TextOf(children[0]), "");
  EXPECT_EQ(TextOf(children[1]), "[dataOutline -1][arm 0][length 0]");
  EXPECT_EQ(TextOf(children[8]), "[dataOutline -1][arm 0][unused 7]");
  EXPECT_EQ(TextOf(path), "[ -1][arm -1]") << "the caller's path stays as it is";
}

TEST_F(DataQuery, RootAloneIsTheOutlinesGroup) {
  EXPECT_EQ(Children({kRoot}), "[dataOutline -1][arm 0]\n[dataOutline -1][version 1]\n");
  EXPECT_EQ(Children({Named("dataOutline")}), "[dataOutline -1][arm 0]\n[dataOutline -1][version 1]\n");
}

TEST_F(DataQuery, ChildInfoTellsKindAndNames) {
  EXPECT_EQ(ChildInfo({kRoot, Named("arm")}), "0 Arm arm");
  EXPECT_EQ(ChildInfo({kRoot, At(0), At(4)}), "1 Angle angle");
  EXPECT_EQ(ChildInfo({kRoot, At(1)}), "2 Version version");
}

// Where the search for a name begins depends on what was asked before; what it finds does not.
TEST(DataQueryOfWideGroups, NamesAreFoundInAnyOrder) {
  constexpr int kChildren = 50;
  std::vector<std::string> groups;
  for (char const* const group : {"a", "b"}) {
    std::vector<std::string> children;
    for (int i = 0; i < kChildren; ++i) {
      children.push_back(StaticFlagNode(group + std::to_string(i)));
    }
    groups.push_back(senmark_test::Group(group, senmark_test::Joined(children)));
  }
  FileUnderQuery const file(
      TopLevel({R"("version":"tdjson2.0.0","dynamicSamplesPresentB":false)", Array("dataOutline", groups)}));
  for (int const step : {0, 1, kChildren - 1, 7, 23}) {
    for (int i = 0, at = 0; i < 2 * kChildren; ++i, at = (at + step) % kChildren) {
      std::string const group = i % 3 == 0 ? "a" : "b";
      std::string const name = group + std::to_string(at);
      ns_sensor::SK_GroupChildInfo info;
      file->GetGroupChildInfo({kRoot, Named(group), Named(name)}, &info);
      EXPECT_EQ(info.matchName, name);
      EXPECT_EQ(OutcomeOf([&] {
                  file->GetGroupChildInfo({kRoot, Named(group), Named("c" + std::to_string(at))}, &info);
                  return std::string();
                }).substr(0, 2),
                "33");
    }
  }
}

struct RefusedPath {
  char const* name;
  SK_DataPath path;
  char const* message;
};

constexpr char kMissingRoot[] =
    "33 Missing SK_DataPath ROOT_INDEX or ROOT_MATCHNAME. Path must start with ROOT_INDEX or ROOT_MATCHNAME";
constexpr char kBelowLeaf[] =
    "33 Node at path item:1 is not of type dataGroup. All intermediate nodes must be of type dataGroup.";

std::vector<RefusedPath> RefusedPaths() {
  return {
      {"Empty", {}, kMissingRoot},
      {"RootWithIndex", {{"", 0}, Named("arm")}, kMissingRoot},
      {"RootWithIndexBelowMinusOne", {{"", -2}, Named("arm")}, kMissingRoot},
      {"RootWithOtherName", {Named("arm")}, kMissingRoot},
      {"NeitherIndexNorName",
       {kRoot, Named("arm"), kRoot},
       "33 Either index or match name must be present, both are missing at path item 1."},
      {"NoSuchName", {kRoot, Named("leg")}, "33 No node found with match name : \"leg\"."},
      {"NameOfAnotherGroup", {kRoot, Named("length")}, "33 No node found with match name : \"length\"."},
      {"IndexBehindTheRootsChildren",
       {kRoot, At(2)},
       "33 Invalid node index, 2 child nodes present for node at path item :0. Input index : 2."},
      {"IndexBehindTheGroupsChildren",
       {kRoot, At(0), At(8)},
       "33 Invalid node index, 8 child nodes present for node at path item :1. Input index : 8."},
      {"NameOfAnotherIndex",
       {kRoot, At(0), {"label", 0}},
       "33 \"length\":Match name found for child Node at index 0 for path item 1,Input match name:\"label\"."},
      {"BelowALeaf", {kRoot, At(0), At(0), At(0)}, kBelowLeaf},
      {"FarBelowALeaf", {kRoot, At(0), At(0), At(0), At(0)}, kBelowLeaf},
  };
}

TEST_F(DataQuery, PathsThatMatchNothingAreRefused) {
  for (RefusedPath const& row : RefusedPaths()) {
    EXPECT_EQ(ChildInfo(row.path), row.message) << row.name;
    EXPECT_EQ(Children(row.path), row.message) << row.name;
    EXPECT_EQ(Static(row.path), row.message) << row.name;
    EXPECT_EQ(Dynamic(row.path), row.message) << row.name;
  }
}

TEST_F(DataQuery, RightNameBesideAnIndexPasses) {
  EXPECT_EQ(ChildInfo({kRoot, {"arm", 0}, {"label", 1}}), "2 Label label");
}

TEST_F(DataQuery, LastValidIndexPasses) {
  EXPECT_EQ(ChildInfo({kRoot, At(0), At(7)}), "1 Unused unused");
}

TEST_F(DataQuery, LeafHasNoChildren) {
  EXPECT_EQ(Children({kRoot, Named("version")}), "33 Leaf node is not a group node.");
}

/// The small file with "children" in one of its leaves, where nothing checks them.
std::string WithChildrenInALeaf(std::string const& children) {
  std::string text = kSmallVersion2;
  std::string const name = R"("matchName":"version")";
  return text.replace(text.find(name), name.size(), name + R"(,"children":)" + children);
}

TEST(DataQueryForeignChildren, ThoseOfALeafAreWalkedAsTheyStand) {
  SK_DataPath const leaf = {kRoot, Named("version")};
  SK_DataPath const below = {kRoot, Named("version"), At(0)};
  ns_sensor::SK_GroupChildInfo info;
  std::vector<SK_DataPath> children;

  FileUnderQuery const number(WithChildrenInALeaf("7"));
  number->GetGroupChildInfo(leaf, &info);
  EXPECT_EQ(info.matchName, "version");
  EXPECT_EQ(OutcomeOf([&] {
              number->GetGroupChildInfo(below, &info);
              return info.matchName;
            }),
            "19 Assertion failure:RapidJSON.");

  FileUnderQuery const array(WithChildrenInALeaf(R"([1,{"matchName":2}])"));
  array->GetGroupChildren(leaf, &children);
  EXPECT_EQ(children.size(), 2U);
  array->GetGroupChildInfo(below, &info);
  EXPECT_EQ(info.type, ns_sensor::kInvalidChild);
  EXPECT_EQ(info.matchName, "");
}

TEST_F(DataQuery, RootIsNoChild) {
  EXPECT_EQ(ChildInfo({kRoot}),
            "33 Invalid node index, 2 child nodes present for node at path item :0. Input index : -1.");
}

TEST_F(DataQuery, NodesOfAnotherKindAreRefused) {
  EXPECT_EQ(Static({kRoot, Named("arm")}),
            "33 Static data node not found at input path, Found node type: Group data node.");
  EXPECT_EQ(Static({kRoot, At(0), Named("angle")}),
            "33 Static data node not found at input path, Found node type: Dynamic data node.");
  EXPECT_EQ(Dynamic({kRoot, Named("arm")}),
            "33 Dynamic data node not found at input path, Found node type: Group data node.");
  EXPECT_EQ(Dynamic({kRoot, Named("version")}),
            "33 Dynamic data node not found at input path, Found node type: Static data node.");
}

TEST_F(DataQuery, StaticValuesOfVersion2) {
  ns_sensor::SK_StaticDataInfo info;
  mTwo->GetStaticDataInfo({kRoot, At(0), Named("length")}, &info);
  EXPECT_EQ(info.displayName, "Length");
  EXPECT_EQ(info.matchName, "length");
  EXPECT_EQ(info.dataType.type, ns_sensor::kNumberValue);
  EXPECT_EQ(boost::get<double>(info.value.value), 42.5);
  EXPECT_EQ(boost::get<ns_sensor::SK_NumberProperties>(info.dataType.properties.value).range.legal.max, 99.5);
  mTwo->GetStaticDataInfo({kRoot, At(0), Named("present")}, &info);
  EXPECT_EQ(info.dataType.type, ns_sensor::kBooleanValue);
  EXPECT_TRUE(boost::get<bool>(info.value.value));
}

TEST(DataQueryVersion1, PaddedTextComesWithItsPadding) {
  FileUnderQuery const one(kSmallVersion1);
  ns_sensor::SK_StaticDataInfo info;
  one->GetStaticDataInfo({kRoot, Named("title")}, &info);
  EXPECT_EQ(boost::get<std::string>(info.value.value), "abc  ");
  one->GetStaticDataInfo({kRoot, Named("speed")}, &info);
  EXPECT_EQ(boost::get<double>(info.value.value), 42.5);
  one->GetStaticDataInfo({kRoot, Named("axes")}, &info);
  EXPECT_EQ(boost::get<std::vector<double>>(info.value.value), (std::vector<double>{1.5, -2}));
}

TEST_F(DataQuery, DynamicNodesTellTheirFirstAndLastTime) {
  ns_sensor::SK_DynamicDataInfo info;
  mTwo->GetDynamicDataInfo({kRoot, At(0), Named("position")}, &info);
  EXPECT_EQ(info.dataType.type, ns_sensor::kNumberArrayValue);
  EXPECT_EQ(info.fields.displayName, "Position");
  EXPECT_EQ(info.fields.sampleSetID, "p1");
  EXPECT_EQ(info.fields.sampleCount, 3U);
  EXPECT_EQ(info.fields.interpolation, ns_sensor::kHoldInterpolation);
  EXPECT_FALSE(info.fields.hasExpectedFrequencyB);
  EXPECT_EQ(info.fields.expectedMaxInterSampleDuration, "");
  // Frames 5 and 25 of 30 a second.
  EXPECT_EQ(TextOf(info.fields.temporalExtent.startTime), "1/6");
  EXPECT_EQ(TextOf(info.fields.temporalExtent.duration), "5/6");

  mTwo->GetDynamicDataInfo({kRoot, At(0), Named("angle")}, &info);
  EXPECT_EQ(info.fields.interpolation, ns_sensor::kLinearInterpolation);
  EXPECT_TRUE(info.fields.hasExpectedFrequencyB);
  EXPECT_EQ(info.fields.expectedMaxInterSampleDuration, "00:00:00:10");
}

TEST_F(DataQuery, DynamicNodeWithoutSamplesHasZeroTimesOfScaleOne) {
  ns_sensor::SK_DynamicDataInfo info;
  info.fields.temporalExtent.startTime = {7, 0};
  info.fields.temporalExtent.duration = {7, 0};
  mTwo->GetDynamicDataInfo({kRoot, At(0), Named("unused")}, &info);
  EXPECT_EQ(TextOf(info.fields.temporalExtent.startTime), "0/1");
  EXPECT_EQ(TextOf(info.fields.temporalExtent.duration), "0/1");
}

TEST(DataQuerySpelling, CorrectSpellingOfTheFrequencyFlagWins) {
  std::string text = kSmallVersion2;
  std::string const flag = R"("hasExpectedFrequencyB":true)";
  text.replace(text.find(flag), flag.size(), R"("hasExpectedFrequecyB":false,"hasExpectedFrequencyB":true)");
  FileUnderQuery const file(text);
  ns_sensor::SK_DynamicDataInfo info;
  file->GetDynamicDataInfo({kRoot, At(0), Named("angle")}, &info);
  EXPECT_TRUE(info.fields.hasExpectedFrequencyB);

  std::string other = kSmallVersion2;
  other.replace(other.find(flag), flag.size(), R"("hasExpectedFrequecyB":true)");
  FileUnderQuery const misspelt(other);
  misspelt->GetDynamicDataInfo({kRoot, At(0), Named("angle")}, &info);
  EXPECT_TRUE(info.fields.hasExpectedFrequencyB);
}

// Set "a1" has samples at 0, 1/3, 2/3 and 1 second.

struct SampleRow {
  char const* name;
  SK_Time start;
  SK_Time end;
  char const* expected;
};

SampleRow const kSampleRows[] = {
    {"WholeRange", {0, 1}, {1, 1}, "0/1 1/3 2/3 1/1"},
    {"PartOfIt", {1, 3}, {2, 3}, "1/3 2/3"},
    {"StartBetweenTakesTheSampleBefore", {1, 2}, {2, 3}, "1/3 2/3"},
    {"EqualTimesGiveOne", {1, 3}, {1, 3}, "1/3"},
    {"EqualTimesInOtherTermsGiveOne", {1, 3}, {2, 6}, "1/3"},
    {"EqualTimesBetweenGiveTheSampleBefore", {1, 2}, {1, 2}, "1/3"},
    {"LaterStartReverses", {1, 1}, {0, 1}, "1/1 2/3 1/3 0/1"},
    {"LaterStartReversesAPart", {2, 3}, {1, 3}, "2/3 1/3"},
    {"NegativeStartBeginsAtTheFirst", {-1, 1}, {1, 3}, "0/1 1/3"},
    {"NegativeTimesGiveTheFirst", {-5, 1}, {-1, 1}, "0/1"},
    {"NegativeEndReverses", {1, 3}, {-1, 1}, "1/3 0/1"},
    {"BehindTheEndGivesTheLast", {5, 1}, {6, 1}, "1/1"},
    {"ZeroScaleOfStartIsRefused", {0, 0}, {1, 1}, "1 scale value cannot be zero for parameter \"startTime\"."},
    {"ZeroScaleOfEndIsRefused", {0, 1}, {1, 0}, "1 scale value cannot be zero for parameter \"endTime\"."},
    {"ZeroScaleOfStartComesFirst", {0, 0}, {1, 0}, "1 scale value cannot be zero for parameter \"startTime\"."},
};

TEST_F(DataQuery, RangesHoldTheseSamples) {
  for (SampleRow const& row : kSampleRows) {
    EXPECT_EQ(mTwo.Samples("a1", row.start, row.end), row.expected) << row.name;
  }
}

TEST_F(DataQuery, ZeroScaleComesBeforeAnUnknownId) {
  EXPECT_EQ(mTwo.Samples("none", {0, 0}, {1, 1}), "1 scale value cannot be zero for parameter \"startTime\".");
  EXPECT_EQ(mTwo.Adjacent("none", {0, 0}), "1 scale value cannot be zero for parameter \"time\".");
}

TEST_F(DataQuery, CountsComeWithoutAnArray) {
  SK_DynamicDataSample* samples = nullptr;
  unsigned long long count = 0;
  bool reversed = false;
  mTwo->GetDynamicSamples("a1", {1, 1}, {1, 3}, samples, count, reversed, true);
  EXPECT_EQ(count, 3U);
  EXPECT_TRUE(reversed);
  EXPECT_EQ(samples, nullptr);
  mTwo->GetAdjacentSamples("a1", {1, 3}, samples, count, true);
  EXPECT_EQ(count, 3U);
  EXPECT_EQ(samples, nullptr);
}

TEST_F(DataQuery, AdjacentSamplesOfATime) {
  EXPECT_EQ(mTwo.Adjacent("a1", {0, 1}), "0/1 1/3");
  EXPECT_EQ(mTwo.Adjacent("a1", {1, 2}), "1/3 2/3");
  EXPECT_EQ(mTwo.Adjacent("a1", {2, 3}), "1/3 2/3 1/1");
  EXPECT_EQ(mTwo.Adjacent("a1", {1, 1}), "2/3 1/1");
  EXPECT_EQ(mTwo.Adjacent("a1", {9, 1}), "1/1");
  EXPECT_EQ(mTwo.Adjacent("a1", {-1, 1}), "0/1");
  EXPECT_EQ(mTwo.Adjacent("p1", {0, 1}), "1/6");
}

TEST(DataQueryVersion1, OnlySampleHasNoneAroundIt) {
  FileUnderQuery const one(kSmallVersion1);
  EXPECT_EQ(one.Adjacent("ev", {1, 1}), "21 Unable to fetch dynamic samples for SampleId:\"ev\".");
  EXPECT_EQ(one.Adjacent("ev", {2, 1}), "1/1");
  EXPECT_EQ(one.Samples("ev", {1, 1}, {1, 1}), "1/1");
}

TEST(DataQueryVersion1, DatesCountFromTheEarliest) {
  FileUnderQuery const one(kSmallVersion1);
  EXPECT_EQ(one.Samples("lv", {0, 1}, {13, 4}), "0/1 3/2 13/4");
  EXPECT_EQ(one.Samples("lv", {3, 1}, {1, 1}), "3/2 0/1");
}

/// A file of one set of numbers from 1 on, in UTC, one sample for each of `times`.
std::string DatedNumbers(std::string const& utcInfo, std::vector<std::string> const& times) {
  std::string samples;
  for (std::string const& time : times) {
    samples += (samples.empty() ? "" : ",") + NumberSample(time);
  }
  return TopLevel({R"("useTimecodeB":false,"utcInfo":)" + utcInfo,
                   Array("dataOutline", {NumberNode("n", "A", static_cast<int>(times.size()))}),
                   Array("dataDynamicSamples", {R"({"sampleSetID":"A","samples":[)" + samples + "]}"})});
}

// The length of a time text has 16 bits: 20 + 1 + 65516 digits wrap to one byte, and 65515 digits to none.
TEST(DataQueryVersion1, LengthOfTimesWraps) {
  FileUnderQuery const oneByte(DatedNumbers(R"({"precisionLength":65516,"isGMT":true})", {"1", "2", "3"}));
  SK_DynamicDataSample* samples = nullptr;
  unsigned long long count = 0;
  bool reversed = false;
  oneByte->GetDynamicSamples("A", {0, 1}, {0, 1}, samples, count, reversed, true);
  EXPECT_EQ(count, 1U);

  FileUnderQuery const none(DatedNumbers(R"({"precisionLength":65515,"isGMT":true})", {"", ""}));
  EXPECT_EQ(none.Samples("A", {0, 1}, {0, 1}), R"(39 Invalid sample:"sampleSetID:A/sample[2]")");
}

TEST_F(DataQuery, UnknownIdAndEmptySetAreRefused) {
  std::string const unknown = "35 Data Outline does not contain any dynamic node for sample id : \"x\".";
  std::string const empty = "38 No dynamic sample data present for sample id : \"e1\".";
  EXPECT_EQ(mTwo.Samples("x", {0, 1}, {1, 1}), unknown);
  EXPECT_EQ(mTwo.Adjacent("x", {0, 1}), unknown);
  EXPECT_EQ(mTwo.Samples("e1", {0, 1}, {1, 1}), empty);
  EXPECT_EQ(mTwo.Adjacent("e1", {0, 1}), empty);
}

TEST(DataQueryWithoutSamples, KnownIdHasNoSamplesAndOthersAreUnknown) {
  std::string text = kSmallVersion2;
  std::size_t const section = text.find(",\n\"dataDynamicSamples\"");
  ASSERT_NE(section, std::string::npos);
  text.resize(section);
  FileUnderQuery const file(text + "}");
  std::string const unknown = "35 Data Outline does not contain any dynamic node for sample id : \"x\".";
  std::string const none = "38 No dynamic sample data present for sample id : \"a1\".";
  EXPECT_EQ(file.Samples("x", {0, 1}, {1, 1}), unknown);
  EXPECT_EQ(file.Samples("a1", {0, 1}, {1, 1}), none);
  EXPECT_EQ(file.Adjacent("x", {0, 1}), unknown);
  EXPECT_EQ(file.Adjacent("a1", {0, 1}), none);
  EXPECT_EQ(file.Adjacent("a1", {-1, 1}), none);
  EXPECT_EQ(file.Samples("a1", {0, 0}, {1, 1}), "1 scale value cannot be zero for parameter \"startTime\".");
}

TEST(DataQueryErrors, VectorFormsLeaveTheResultAloneOnAnError) {
  FileUnderQuery const two(kSmallVersion2);
  std::vector<SK_DynamicDataSample> samples(3);
  EXPECT_THROW(two->GetDynamicSamples("x", {0, 1}, {1, 1}, &samples), ns_sensor::SK_Exception);
  EXPECT_EQ(samples.size(), 3U);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
