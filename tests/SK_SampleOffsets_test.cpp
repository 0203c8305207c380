#include "SK_SampleOffsets.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "DataFileText.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::DynamicNode;
using senmark_test::ErrorText;
using senmark_test::Joined;
using senmark_test::NumberNode;
using senmark_test::NumberSample;
using senmark_test::NumberSet;
using senmark_test::NumberType;
using senmark_test::OutcomeOf;
using senmark_test::PaddedType;
using senmark_test::SampleSet;

/// A scratch file in memory that nothing follows, and the cache of an outline.
class Scratch {
 public:
  Scratch(std::vector<std::string> const& nodes, std::string const& text)
      : mBytes(new char[text.size()]), mSize(text.size()) {
    std::copy(text.begin(), text.end(), mBytes.get());
    mOutline.Parse(("[" + Joined(nodes) + "]").c_str());
    EXPECT_FALSE(mOutline.HasParseError());
    for (JValue const& node : mOutline.GetArray()) {
      auto const inserted = mCache.emplace(node["sampleSetID"].GetString(), SK_DynamicSampleInfo(&node));
      mSets.push_back(&*inserted.first);
    }
    mTimeFormat.SetSMPTEInfo(SK_Time{30, 1}, 0);
  }

  void UseUTC(std::uint16_t precision) { mTimeFormat.SetUTCInfo(precision, 1); }

  /// What walking over all sets and reading their times ends in.
  std::string Process() {
    return OutcomeOf([this] {
      char const* const begin = mBytes.get();
      SK_SampleOffsets offsets(mCache, mTimeFormat, kTdjsonVersion1, {begin, begin + mSize});
      offsets.CacheDynamicSamplesOffset(begin, begin + mSize);
      mFile = offsets.FindFileTemporalExtents(mSets);
    });
  }

  SK_DynamicSampleInfo const& Info(char const* id) const { return mCache.at(id); }
  std::string Times(char const* id) const { return Text(Info(id).mTemporalRange); }
  std::string FileTimes() const { return Text(mFile); }

 private:
  static std::string Text(TemporalRange const& range) { return range.mStartTime + " to " + range.mEndTime; }

  std::unique_ptr<char[]> mBytes;
  std::size_t mSize;
  JDocument mOutline;
  SK_DataCache mCache;
  std::vector<SK_DataCache::value_type*> mSets;
  SK_TimeFormat mTimeFormat;
  TemporalRange mFile;
};

char const kT1[] = "00:00:00:01";
char const kT2[] = "00:00:00:02";
char const kT3[] = "00:00:00:03";
char const kT4[] = "00:00:00:04";

TEST(SampleOffsets, TellWhereTheFirstSampleOfEachSetStands) {
  Scratch scratch({NumberNode("a", "A", 2), NumberNode("b", "B", 1)},
                  NumberSet("B", {kT3}) + "," + NumberSet("A", {kT1, kT2}));
  ASSERT_EQ(scratch.Process(), "fine");
  // `{"sampleSetID":"B","samples":[` has 30 bytes, a sample 38, and `]},` 3.
  EXPECT_EQ(scratch.Info("B").mSampleOffset, 30U);
  EXPECT_EQ(scratch.Info("A").mSampleOffset, 30U + 38U + 3U + 30U);
  EXPECT_EQ(scratch.Info("A").mSampleSize, 38U);
  EXPECT_EQ(scratch.Info("A").mSampleCount, 2U);
  EXPECT_EQ(scratch.Info("A").mValueKind, kNumberStringSamples);
  EXPECT_EQ(scratch.Times("A"), "00:00:00:01 to 00:00:00:02");
  EXPECT_EQ(scratch.Times("B"), "00:00:00:03 to 00:00:00:03");
}

TEST(SampleOffsets, NodeWithoutASetStaysEmpty) {
  Scratch scratch({NumberNode("a", "A", 1), NumberNode("b", "B", 1)}, NumberSet("A", {kT1}));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.Info("B").mSampleOffset, 0U);
  EXPECT_EQ(scratch.Info("B").mValueKind, kNoSampleSet);
  EXPECT_EQ(scratch.Times("B"), " to ");
}

TEST(SampleOffsets, SetOfNoSamplesKeepsItsOffsetAndAddsNoTimes) {
  Scratch scratch({NumberNode("a", "A", 0), NumberNode("b", "B", 1)}, SampleSet("A", {}) + "," + NumberSet("B", {kT2}));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.Info("A").mSampleOffset, 30U);
  EXPECT_EQ(scratch.Info("A").mSampleCount, 0U);
  EXPECT_EQ(scratch.Info("A").mValueKind, kNumberStringSamples);
  EXPECT_EQ(scratch.Times("A"), " to ");
  EXPECT_EQ(scratch.FileTimes(), "00:00:00:02 to 00:00:00:02");
}

TEST(SampleOffsets, FileOfEmptySetsHasNoTimes) {
  Scratch scratch({NumberNode("a", "A", 0)}, SampleSet("A", {}));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.FileTimes(), " to ");
}

TEST(SampleOffsets, RepeatedSetReplacesTheEarlierOne) {
  Scratch scratch({NumberNode("a", "A", 1)}, NumberSet("A", {kT1}) + "," + NumberSet("A", {kT2}));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.Info("A").mSampleOffset, 30U + 38U + 3U + 30U);
  EXPECT_EQ(scratch.Info("A").mNumberLength, 7U) << "widths of the two sets must not add up";
  EXPECT_EQ(scratch.Times("A"), "00:00:00:02 to 00:00:00:02");
}

TEST(SampleOffsets, MoreSetsThanAStackHoldsAreFine) {
  std::string text = SampleSet("A", {});
  for (int i = 0; i < 300000; ++i) {
    text += "," + SampleSet("A", {});
  }
  Scratch scratch({NumberNode("a", "A", 0)}, text);
  EXPECT_EQ(scratch.Process(), "fine");
}

TEST(SampleOffsets, FirstSetOfTheOutlineGivesTheFileItsTimes) {
  Scratch scratch({NumberNode("a", "A", 2), NumberNode("b", "B", 2)},
                  NumberSet("B", {kT1, kT2}) + "," + NumberSet("A", {kT1, kT4}));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.FileTimes(), "00:00:00:01 to 00:00:00:04");
}

struct Extents {
  char const* name;
  std::vector<std::string> first, second;  // times of two sets, in the order of the outline
  char const* file;
};

class FileExtents : public testing::TestWithParam<Extents> {};

TEST_P(FileExtents, FollowFromTheSets) {
  Extents const& row = GetParam();
  Scratch scratch({NumberNode("a", "A", static_cast<int>(row.first.size())),
                   NumberNode("b", "B", static_cast<int>(row.second.size()))},
                  NumberSet("A", row.first) + "," + NumberSet("B", row.second));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.FileTimes(), row.file);
}

Extents const kExtents[] = {
    {"StartMovesForAnEarlierSet", {kT2, kT3}, {kT1, kT2}, "00:00:00:01 to 00:00:00:03"},
    {"EndMovesOnlyForASetThatBeginsBehindIt", {kT1, kT2}, {kT3, kT4}, "00:00:00:01 to 00:00:00:04"},
    {"EndStaysForASetThatBeginsBeforeIt", {kT1, kT3}, {kT2, kT4}, "00:00:00:01 to 00:00:00:03"},
    {"EndStaysForASetThatBeginsOnIt", {kT1, kT2}, {kT2, kT4}, "00:00:00:01 to 00:00:00:02"},
    {"EndOfTheFirstOfEqualStartsStays", {kT1, kT2}, {kT1, kT4}, "00:00:00:01 to 00:00:00:02"},
    {"EndOfTheFirstOfEqualStartsStaysWhenLater", {kT1, kT4}, {kT1, kT2}, "00:00:00:01 to 00:00:00:04"},
    {"SetInsideTheFileMovesNothing", {kT1, kT4}, {kT2, kT3}, "00:00:00:01 to 00:00:00:04"},
};

INSTANTIATE_TEST_SUITE_P(Every, FileExtents, testing::ValuesIn(kExtents),
                         [](testing::TestParamInfo<Extents> const& row) { return row.param.name; });

TEST(SampleOffsets, UTCTimesAreAsLongAsTheirPrecisionSays) {
  std::string const time = "2024-01-31T23:59:59.123Z";
  Scratch scratch({NumberNode("a", "A", 1)}, NumberSet("A", {time}));
  scratch.UseUTC(3);
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.FileTimes(), time + " to " + time);
}

TEST(SampleOffsets, ValueMayStandBeforeTheTime) {
  Scratch scratch({NumberNode("a", "A", 1)}, SampleSet("A", {R"({"value":"+01.5","time":"00:00:00:07"})"}));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.FileTimes(), "00:00:00:07 to 00:00:00:07");
}

struct Refused {
  char const* name;
  std::string text;
  std::string error;
};

class RefusedScratch : public testing::TestWithParam<Refused> {};

// Two nodes: A has one number, B two.
TEST_P(RefusedScratch, TellsWhatIsWrong) {
  Scratch scratch({NumberNode("a", "A", 1), NumberNode("b", "B", 2)}, GetParam().text);
  EXPECT_EQ(scratch.Process(), GetParam().error);
}

std::string const kGood = NumberSet("A", {kT1});
std::string const kMalformedA = ErrorText(39, -1,
                                          R"(Invalid sample set data for sample id:"A". Either information in )"
                                          R"(dataOutline is incorrect or sample set data is malformed.)");
std::string const kNoSetId = ErrorText(32, -1, R"(Unable to find mandatory properties : "sampleSetID".)");
std::string const kNoObject = ErrorText(32, -1, R"(Parsing error:"dataDynamicSamples", Invalid JSON Object.)");
std::string const kNoTimeA = ErrorText(39, -1, R"(Invalid time value for :"sampleSetID:A/sample[0]".)");

Refused const kRefused[] = {
    {"Number", "1", kNoObject},
    {"NothingBehindTheComma", kGood + ",", kNoObject},
    {"ArrayOfArrays", kGood + ",[]", kNoObject},
    {"NoKey", "{1", ErrorText(32, -1, "Unable to find enclosing quotes for Tdjson key.")},
    {"NoColon", R"({"sampleSetID" "A")",
     ErrorText(32, -1, R"(Unable to find Colon(:) in between key and value for property:"sampleSetID".)")},
    {"OtherFirstKey", R"({"samples":[],"sampleSetID":"A"})", kNoSetId},
    {"IdIsNoString", R"({"sampleSetID":1})",
     ErrorText(32, -1, R"(Unable to find enclosing quotes for property value:"sampleSetID".)")},
    {"IdWithoutANode", R"({"sampleSetID":"C","samples":[]})",
     ErrorText(49, -1, R"(No dynamic data node is present in data outline with sample id:"C".)")},
    {"NoCommaBehindTheId", R"({"sampleSetID":"A"})",
     ErrorText(32, -1, R"(Unable to find Comma or Closing bracket after property:"sampleSetID".)")},
    {"OtherSecondKeyNamesTheFirst", R"({"sampleSetID":"A","sample":[]})", kNoSetId},
    {"SamplesAreNoArray", R"({"sampleSetID":"A","samples":{}})",
     ErrorText(43, -1,
               R"(Unable to find [, Invalid "samples" property, expected type : JSON Array in dynamic set with )"
               R"(sample id:"A".)")},
    {"OneSampleTooMany", NumberSet("A", {kT1, kT2}), kMalformedA},
    {"OneSampleTooFew", SampleSet("A", {}), kMalformedA},
    {"SampleTooWide", SampleSet("A", {NumberSample(kT1, "+001.5")}), kMalformedA},
    {"SampleTooNarrow", SampleSet("A", {NumberSample(kT1, "+1.5")}), kMalformedA},
    {"SetCutBeforeItsBracket", kGood.substr(0, kGood.size() - 2), kMalformedA},
    {"ThirdKeyInTheFirstSet", R"({"sampleSetID":"A","samples":[)" + NumberSample(kT1) + R"(],"x":1})",
     ErrorText(43, -1,
               R"(Invalid array item at index 1 for property "dataDynamicSamples", expected type : JSON Object.)")},
    {"ThirdKeyInTheSecondSet",
     NumberSet("B", {kT1, kT2}) + R"(,{"sampleSetID":"A","samples":[)" + NumberSample(kT1) + "]]",
     ErrorText(43, -1,
               R"(Invalid array item at index 2 for property "dataDynamicSamples", expected type : JSON Object.)")},
    {"NoCommaBetweenSets", kGood + kGood,
     ErrorText(32, -1, R"(Unable to find Comma or Closing bracket after property:"dataDynamicSamples".)")},
    {"SampleWithoutATime", SampleSet("A", {R"({"tine":"00:00:00:01","value":"+01.5"})"}),
     ErrorText(39, -1, R"(Unable to find mandatory property:"time" at "sampleSetID:A/sample[0]".)")},
    {"TimeIsNoString", SampleSet("A", {R"({"time":1234567890123,"value":"+01.5"})"}), kNoTimeA},
    {"TimeTooShort", SampleSet("A", {R"({"time":"00:00:00:1","value":"+001.5"})"}), kNoTimeA},
    {"TimeTooLong", SampleSet("A", {R"({"time":"00:00:00:001","value":"+1.5"})"}), kNoTimeA},
    // The last sample goes by the count in its name.
    {"LastSampleWithoutATime", SampleSet("B", {NumberSample(kT1), R"({"tine":"00:00:00:01","value":"+01.5"})"}),
     ErrorText(39, -1, R"(Unable to find mandatory property:"time" at "sampleSetID:B/sample[2]".)")},
    {"LastTimeTooLong", SampleSet("B", {NumberSample(kT1), R"({"time":"00:00:00:001","value":"+1.5"})"}),
     ErrorText(39, -1, R"(Invalid time value for :"sampleSetID:B/sample[2]".)")},
    {"LastSampleIsNoObject", SampleSet("B", {NumberSample(kT1), "[" + NumberSample(kT2).substr(1)}),
     ErrorText(32, -1, R"(Invalid "sampleSetID:B/sample[2]" type, expected type:JSON Object.)")},
    {"FirstSampleIsBroken", SampleSet("A", {R"({"time":"00:00:00:01" "value":"+01.5"})"}),
     ErrorText(32, -1, R"(Unable to find Comma or Closing bracket after property:"sampleSetID:A/sample[0]::time".)")},
};

INSTANTIATE_TEST_SUITE_P(Every, RefusedScratch, testing::ValuesIn(kRefused),
                         [](testing::TestParamInfo<Refused> const& row) { return row.param.name; });

// What stands at the first sample's place is only looked at where it is an object.
TEST(SampleOffsets, FirstSampleThatIsNoObjectHasNoTimes) {
  Scratch scratch({NumberNode("a", "A", 1)}, SampleSet("A", {"[" + NumberSample(kT1).substr(1)}));
  ASSERT_EQ(scratch.Process(), "fine");
  EXPECT_EQ(scratch.FileTimes(), " to ");
}

TEST(SampleOffsets, CountsAndWidthsPastTheFileAreRefused) {
  std::string const counts[] = {"-1", "2", "1e9", "1e18", "1e19", "1e300"};
  for (std::string const& count : counts) {
    Scratch scratch({DynamicNode("a", "A", count, NumberType())}, kGood);
    EXPECT_EQ(scratch.Process(), kMalformedA) << count;
  }
  for (int const maxLen : {-1, 2000000000}) {
    Scratch scratch({DynamicNode("a", "A", "1", PaddedType(maxLen, 1))}, kGood);
    EXPECT_EQ(scratch.Process(), kMalformedA) << maxLen;
  }
}

// A sample of 31 bytes, 2 quotes, sign, point, 2 to the 64th less 2048 digits and 2048 more: a sum that
// wraps would come to 35 bytes, and find the bracket there.
TEST(SampleOffsets, SizeThatWrapsToTheRightPlaceIsRefused) {
  std::string const type = R"({"type":"numberString","numberStringProperties":{"pattern":{"isSigned":true,)"
                           R"("digitsInteger":18446744073709549568,"digitsDecimal":2048},"range":)" +
                           senmark_test::kRange + "}}";
  Scratch scratch({DynamicNode("a", "A", "1", type)}, SampleSet("A", {std::string(35, 'x')}));
  EXPECT_EQ(scratch.Process(), kMalformedA);
}

TEST(SampleOffsets, ScratchCutAnywhereIsRefused) {
  std::string const whole = NumberSet("A", {kT1}) + "," + NumberSet("B", {kT1, kT2});
  std::vector<std::string> const nodes = {NumberNode("a", "A", 1), NumberNode("b", "B", 2)};
  for (std::size_t length = 0; length < whole.size(); ++length) {
    Scratch scratch(nodes, whole.substr(0, length));
    bool const isWholeSet = length == NumberSet("A", {kT1}).size();
    EXPECT_EQ(scratch.Process() == "fine", isWholeSet) << whole.substr(0, length);
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
