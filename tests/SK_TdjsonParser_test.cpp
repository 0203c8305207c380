#include "SK_TdjsonParser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <string>
#include <vector>

#include "DataFileText.h"
#include "SK_TdjsonParserFactory.h"
#include "SK_TdjsonParser_v1.h"
#include "SK_TdjsonParser_v2.h"
#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::Array;
using senmark_test::ErrorText;
using senmark_test::Group;
using senmark_test::Joined;
using senmark_test::MarkedText;
using senmark_test::NumberNode;
using senmark_test::NumberSet;
using senmark_test::OutcomeOf;
using senmark_test::OutcomeOfReading;
using senmark_test::SampleSet;
using senmark_test::TempFolder;
using senmark_test::TopLevel;
using senmark_test::Version1Head;
using senmark_test::Version2Head;

std::string const kOutline = Array("dataOutline", {NumberNode("a", "A", 2)});
std::string const kSamples = Array("dataDynamicSamples", {NumberSet("A", {"00:00:00:00", "00:00:01:15"})});

class TdjsonParser : public testing::Test {
 protected:
  /// Reads a text as a file with the parser that the factory chooses.
  std::string Read(std::string const& text) {
    std::string const path = mFolder.Write("file.tdjson", text);
    return OutcomeOf([&] {
      mParser = SK_TdjsonParserFactory::GetParser(path.c_str());
      mParser->CacheFileData(path.c_str(), path.size());
    });
  }

  TempFolder mFolder;
  std::shared_ptr<SK_TdjsonParser> mParser;
};

TEST_F(TdjsonParser, KeepsWhatTheFileSaysOfItself) {
  std::string const text = TopLevel({R"("version":"1.0","creator":"A \"b\"")", Version1Head(), kOutline, kSamples});
  ASSERT_EQ(Read(text), "fine");
  EXPECT_EQ(mParser->GetFileVersion(), "1.0");
  EXPECT_EQ(mParser->GetFileCreator(), "A \"b\"");
  EXPECT_TRUE(mParser->GetUseTimecodeB());
  EXPECT_EQ(mParser->GetFilePath(), mFolder.Path("file.tdjson"));
  EXPECT_EQ(mParser->GetDataOutline().Size(), 1U);
  EXPECT_EQ(mParser->GetTimeInfo().GetTimeStrLength(), 11);
  EXPECT_NE(mParser->GetSampleDataProcessor(), nullptr);
}

TEST_F(TdjsonParser, DurationIsFromTheFirstSampleToTheLast) {
  ASSERT_EQ(Read(TopLevel({Version1Head(), kOutline, kSamples})), "fine");
  // 45 frames of 1/30 second.
  ns_sensor::SK_Time const duration = mParser->GetFileDuration();
  EXPECT_EQ(duration.value * 2, static_cast<std::int64_t>(duration.scale) * 3);
}

TEST_F(TdjsonParser, BaseTimeIsThatOfTheEarliestSample) {
  std::string const samples = Array("dataDynamicSamples", {NumberSet("A", {"00:00:01:00", "00:00:01:15"})});
  ASSERT_EQ(Read(TopLevel({Version1Head(), kOutline, samples})), "fine");
  ns_sensor::SK_Time const base = mParser->GetTimeInfo().GetSMPTEBaseTime();
  EXPECT_EQ(base.value, static_cast<std::int64_t>(base.scale));
  ns_sensor::SK_Time const duration = mParser->GetFileDuration();
  EXPECT_EQ(duration.value * std::int64_t{2}, static_cast<std::int64_t>(duration.scale));
}

TEST_F(TdjsonParser, UTCFilesHaveBaseTimeAndDurationToo) {
  std::string const samples =
      Array("dataDynamicSamples", {NumberSet("A", {"2024-02-28T23:59:59.250Z", "2024-03-01T00:00:00.000Z"})});
  std::string const head = R"("useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true})";
  ASSERT_EQ(Read(TopLevel({head, kOutline, samples})), "fine");
  EXPECT_EQ(mParser->GetTimeInfo().GetTimeStrLength(), 24);
  EXPECT_EQ(mParser->GetTimeInfo().GetUTCBaseTime().day, 28);
  // A leap day and 3/4 of a second.
  ns_sensor::SK_Time const duration = mParser->GetFileDuration();
  EXPECT_EQ(duration.value * std::int64_t{4}, static_cast<std::int64_t>(duration.scale) * (86400 * 4 + 3));
}

TEST_F(TdjsonParser, FileWithoutSamplesLeavesNothingOfTheInput) {
  ASSERT_EQ(Read(TopLevel({Version1Head(), kOutline})), "fine");
  EXPECT_EQ(mParser->GetFileStartAddress(), nullptr);
  EXPECT_EQ(mParser->GetSampleDataProcessor(), nullptr);
  EXPECT_EQ(mParser->GetFileDuration().value, 0);
  EXPECT_EQ(mParser->GetFileDuration().scale, 1U);
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(TdjsonParser, FileWithoutTimesOfSamplesHasNoDuration) {
  std::string const outline = Array("dataOutline", {NumberNode("a", "A", 0)});
  std::string const samples = Array("dataDynamicSamples", {SampleSet("A", {})});
  ASSERT_EQ(Read(TopLevel({Version1Head(), outline, samples})), "fine");
  EXPECT_EQ(mParser->GetFileDuration().value, 0);
  EXPECT_NE(mParser->GetSampleDataProcessor(), nullptr);
}

TEST_F(TdjsonParser, ScratchFileGoesWithTheParser) {
  ASSERT_EQ(Read(TopLevel({Version1Head(), kOutline, kSamples})), "fine");
  EXPECT_EQ(mFolder.TempNames().substr(0, 11), "file.tdjson");
  mParser.reset();
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(TdjsonParser, SamplesAreReadAfterTheInputIsGone) {
  ASSERT_EQ(Read(TopLevel({Version1Head(), kOutline, " " + kSamples})), "fine");
  mFolder.Write("file.tdjson", "gone");
  SK_DynamicSampleInfo const& info = mParser->GetDataCache().at("A");
  EXPECT_EQ(std::string(mParser->GetFileStartAddress() + info.mSampleOffset, 9), R"({"time":")");
}

TEST_F(TdjsonParser, WhiteSpaceMayStandEverywhere) {
  std::string text = TopLevel({Version1Head(), kOutline, kSamples});
  for (std::size_t at = 0; at < text.size(); ++at) {
    char const byte = text[at];
    if (byte == '{' || byte == '}' || byte == '[' || byte == ']' || byte == ',') {
      text.insert(at + 1, " \r\n\t");
      text.insert(at, "\t\n ");
      at += 7;
    }
  }
  ASSERT_EQ(Read(" \n" + text + "\r\t "), "fine");
  EXPECT_EQ(mParser->GetDataCache().at("A").mSampleOffset, 30U);
}

TEST_F(TdjsonParser, OutlineMayStandBehindTheSamples) {
  EXPECT_EQ(Read(TopLevel({kSamples, Version1Head(), kOutline})), "fine");
  EXPECT_EQ(Read(TopLevel({Version2Head(), kSamples, kOutline})), "fine");
}

TEST_F(TdjsonParser, DynamicNodesAreFoundInGroups) {
  std::string const outline =
      Array("dataOutline", {Group("g", Group("h", NumberNode("a", "A", 1)) + "," + NumberNode("b", "B", 2))});
  ASSERT_EQ(Read(TopLevel({Version1Head(), outline})), "fine");
  EXPECT_EQ(mParser->GetDataCache().size(), 2U);
  EXPECT_STREQ((*mParser->GetDataCache().at("A").mDataNode)["matchName"].GetString(), "a");
}

// The order of the outline decides, not that of the sets or of the cache.
TEST_F(TdjsonParser, FileTimesFollowTheOrderOfTheOutline) {
  for (bool const isFirst : {true, false}) {
    std::string const a = NumberNode("a", "A", 2);
    std::string const b = NumberNode("b", "B", 2);
    std::string const outline = Array("dataOutline", {isFirst ? a : b, isFirst ? b : a});
    std::string const samples = Array("dataDynamicSamples", {NumberSet("A", {"00:00:00:00", "00:00:01:00"}),
                                                             NumberSet("B", {"00:00:00:00", "00:00:02:00"})});
    ASSERT_EQ(Read(TopLevel({Version1Head(), outline, samples})), "fine");
    ns_sensor::SK_Time const duration = mParser->GetFileDuration();
    EXPECT_EQ(duration.value, static_cast<std::int64_t>(duration.scale) * (isFirst ? 1 : 2));
  }
}

TEST_F(TdjsonParser, LaterOfRepeatedTextsStands) {
  ASSERT_EQ(Read(TopLevel({R"("version":"a","creator":"b","version":"c","creator":"d")", Version1Head(), kOutline})),
            "fine");
  EXPECT_EQ(mParser->GetFileVersion(), "c");
  EXPECT_EQ(mParser->GetFileCreator(), "d");
}

TEST_F(TdjsonParser, RepeatedSamplesReplaceTheEarlierOnes) {
  std::string const other = Array("dataDynamicSamples", {NumberSet("A", {"00:00:00:00", "00:00:03:00"})});
  ASSERT_EQ(Read(TopLevel({Version1Head(), kOutline, other, kSamples})), "fine");
  ns_sensor::SK_Time const duration = mParser->GetFileDuration();
  EXPECT_EQ(duration.value * std::int64_t{2}, static_cast<std::int64_t>(duration.scale) * 3);
}

TEST_F(TdjsonParser, RepeatedOutlineKeepsTheNodesOfBoth) {
  std::string const other = Array("dataOutline", {NumberNode("b", "B", 1)});
  ASSERT_EQ(Read(TopLevel({Version1Head(), other, kOutline, kSamples})), "fine");
  ASSERT_EQ(mParser->GetDataCache().size(), 2U);
  EXPECT_STREQ((*mParser->GetDataCache().at("B").mDataNode)["matchName"].GetString(), "b");
  EXPECT_STREQ((*mParser->GetDataCache().at("A").mDataNode)["matchName"].GetString(), "a");
}

TEST_F(TdjsonParser, RatesAreReadAsIntegers) {
  std::string const info = R"("useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":30000.9,"scale":1001.9},)"
                           R"("dropFrame":true})";
  ASSERT_EQ(Read(TopLevel({info, kOutline})), "fine");
  SK_TimeCodeInfo const& rate = mParser->GetTimeInfo().GetSMPTEInfo();
  EXPECT_EQ(rate.frameRate.value, 30000);
  EXPECT_EQ(rate.frameRate.scale, 1001U);
  EXPECT_EQ(rate.dropFrame, 1);
}

TEST_F(TdjsonParser, ScaleMayUseAllOf32Bits) {
  std::string const info = R"("useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":1,"scale":4294967295},)"
                           R"("dropFrame":false})";
  ASSERT_EQ(Read(TopLevel({info, kOutline})), "fine");
  EXPECT_EQ(mParser->GetTimeInfo().GetSMPTEInfo().frameRate.scale, 4294967295U);
}

TEST_F(TdjsonParser, TimesAbove99FramesASecondAreOneDigitLonger) {
  for (int const rate : {99, 100}) {
    std::string const info = R"("useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":)" + std::to_string(rate) +
                             R"(,"scale":1},"dropFrame":false})";
    ASSERT_EQ(Read(TopLevel({info, kOutline})), "fine");
    EXPECT_EQ(mParser->GetTimeInfo().GetTimeStrLength(), rate > 99 ? 12 : 11);
  }
}

struct DropFrame {
  int value;
  long long scale;
  bool isSupported;
};

TEST_F(TdjsonParser, DropFrameNeedsOneOfTwoRates) {
  DropFrame const rates[] = {{30000, 1001, true},
                             {60000, 1001, true},
                             {2997, 100, true},
                             {5994, 100, true},
                             {2996, 100, false},
                             {2998, 100, false},
                             {5993, 100, false},
                             {5995, 100, false},
                             {30, 1, false},
                             {60, 1, false},
                             {30000, 0, false},
                             {0, 1, false},
                             // 100 times the value is 23 times 2 to the 32nd and 8992.
                             {987842568, 3, true}};
  for (DropFrame const& rate : rates) {
    std::string const info = R"("useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":)" +
                             std::to_string(rate.value) + R"(,"scale":)" + std::to_string(rate.scale) +
                             R"(},"dropFrame":true})";
    EXPECT_EQ(Read(TopLevel({info, kOutline})),
              rate.isSupported ? "fine" : ErrorText(41, -1, "Only 29.97 and 59.94 drop frame rate supported."))
        << rate.value << '/' << rate.scale;
  }
}

TEST_F(TdjsonParser, SyncTimesAreTextsOrFrameNumbers) {
  std::string const list = R"("videoSyncTimeList":[{"fileName":"a.mov","timeString":"00:00:00:01"},)"
                           R"({"frameNumber":7.9,"fileName":"b.mov"}])";
  ASSERT_EQ(Read(TopLevel({Version1Head(), list, kOutline})), "fine");
  std::vector<ns_sensor::SK_VideoSyncTime> const& times = mParser->GetSyncInfo();
  ASSERT_EQ(times.size(), 2U);
  EXPECT_EQ(times[0].fileName, "a.mov");
  EXPECT_EQ(boost::get<std::string>(times[0].value.value), "00:00:00:01");
  EXPECT_EQ(times[0].kind, 2);
  EXPECT_EQ(times[1].fileName, "b.mov");
  EXPECT_EQ(boost::get<int>(times[1].value.value), 7);
}

struct Refused {
  char const* name;
  std::string marked;  // '@' stands before the byte that the error names
  int code;
  char const* message;
};

class RefusedFile : public TdjsonParser, public testing::WithParamInterface<Refused> {};

TEST_P(RefusedFile, TellsWhatIsWrongAndWhere) {
  MarkedText const file(GetParam().marked);
  SK_TdjsonParser_v1 parser;
  EXPECT_EQ(OutcomeOfReading(parser, mFolder.Write("file.tdjson", file.text)),
            ErrorText(GetParam().code, file.offset, GetParam().message));
}

std::string const kHead1 = Version1Head();
char const kNoBrace[] = "Unable to find TDJSON opening '{'.";
char const kNoKeyQuotes[] = "Unable to find enclosing quotes for Tdjson key.";
char const kBrokenEnd[] = "Parsing error:, Invalid JSON.";

Refused const kRefused[] = {
    {"Array", " @[1]", 32, kNoBrace},
    {"OnlyWhiteSpace", " \n@", 32, kNoBrace},
    {"LoneBrace", "{@", 32, kBrokenEnd},
    {"BraceAndBlank", "{ @", 32, kNoKeyQuotes},
    {"EmptyObject", "{@}", 32, kNoKeyQuotes},
    {"KeyWithoutQuotes", R"({"creator":"a",@b})", 32, kNoKeyQuotes},
    {"TrailingComma", R"({"creator":"a",@})", 32, kNoKeyQuotes},
    {"NothingBehindTheComma", R"({"creator":"a",@)", 32, kBrokenEnd},
    {"NoColon", R"({"creator" @1})", 32, R"(Unable to find Colon(:) in between key and value for property:"creator".)"},
    {"UnknownKey", R"({"creators": @"a"})", 32, R"(Invalid TDJSON key : "creators".)"},
    {"KeysAreExact", R"({"Creator":@"a"})", 32, R"(Invalid TDJSON key : "Creator".)"},
    {"EndBehindAValue", R"({"creator":"a" @)", 32, R"(Parsing error:"creator", Invalid JSON.)"},
    {"NoCommaBehindAValue", R"({"creator":"a" @"version":"b"})", 32,
     R"(Unable to find Comma or Closing bracket after property:"creator".)"},
    {"BytesBehindTheEnd", "{" + kHead1 + "," + kOutline + "} @x", 32, kBrokenEnd},
    {"NulBehindTheEnd", "{" + kHead1 + "," + kOutline + "} @" + std::string(1, '\0'), 32, kBrokenEnd},
    {"KeysMissing", "{" + kHead1 + "}", 32, R"(Unable to find mandatory properties : "dataOutline".)"},
    {"MissingKeysComeBeforeBytesBehindTheEnd", "{" + kHead1 + "}x", 32,
     R"(Unable to find mandatory properties : "dataOutline".)"},
    {"VersionIsNoString", R"({"creator":"a","version":@1})", 32,
     R"(Unable to find enclosing quotes for property value:"version".)"},
    {"CreatorIsNoString", R"({"creator":@1})", 32, R"(Unable to find enclosing quotes for property value:"creator".)"},
    {"OutlineIsNoArray", R"({"dataOutline":@{}})", 32, R"(Invalid "dataOutline" type, expected type:JSON Array.)"},
    {"EmptyChildrenAreABadNumber", R"({"dataOutline":[{"children":[@]}]})", 32,
     R"(Invalid "dataOutline[0]::children[0]" type, expected type:JSON Number.)"},
    {"SamplesAreNoArray", R"({"dataDynamicSamples":@{}})", 43,
     R"(Invalid "dataDynamicSamples" type, expected type:JSON Array.)"},
    {"SamplesAreCutOff", R"({"dataDynamicSamples":@)", 43,
     R"(Invalid "dataDynamicSamples" type, expected type:JSON Array.)"},
    {"EmptySampleArrayTakesAllTheRest", "{" + kHead1 + "," + kOutline + R"(,"dataDynamicSamples":[]}@)", 32,
     R"(Parsing error:"dataDynamicSamples", Invalid JSON.)"},
    {"BlankSampleArrayIsAnEmptyScratchFile", "{" + kHead1 + "," + kOutline + R"(,"dataDynamicSamples":[ ]})", 54,
     "Empty Input file."},
    {"SamplesAreNoSets", "{" + kHead1 + "," + kOutline + R"(,"dataDynamicSamples":[ 1 ]})", 32,
     R"(Parsing error:"dataDynamicSamples", Invalid JSON Object.)"},
    {"SampleSectionIsNotClosed", "{" + kHead1 + R"(,"dataDynamicSamples":[{"sampleSetID":"A"}@)", 32,
     R"(Parsing error:"dataDynamicSamples", Invalid JSON.)"},
    {"SameIdTwice", "{" + Array("dataOutline", {NumberNode("a", "A", 1), Group("g", NumberNode("b", "A", 1))}) + "}",
     37, R"(Duplicate sample id found. Sample Id:"A" is assigned to more than one dynamic node in data outline.)"},
    {"SameIdInTwoOutlines", "{" + kOutline + "," + kOutline + "}", 37,
     R"(Duplicate sample id found. Sample Id:"A" is assigned to more than one dynamic node in data outline.)"},
    {"OutlineIsValidatedBeforeItIsKept",
     "{" + Array("dataOutline", {NumberNode("a", "A", 1), NumberNode("a", "A", 1)}) + "}", 40,
     R"(Duplicate MatchName:"a" at "dataOutline[1]:D". MatchName must be unique for every node in "dataOutline".)"},
    {"SetsWithoutANode",
     "{" + kHead1 + "," + kOutline + "," + Array("dataDynamicSamples", {NumberSet("B", {"00:00:00:00"})}) + "}", 49,
     R"(No dynamic data node is present in data outline with sample id:"B".)"},
};

INSTANTIATE_TEST_SUITE_P(Every, RefusedFile, testing::ValuesIn(kRefused),
                         [](testing::TestParamInfo<Refused> const& row) { return row.param.name; });

TEST_F(TdjsonParser, MissingFileIsAnError) {
  std::string const path = mFolder.Path("none.tdjson");
  SK_TdjsonParser_v1 parser;
  EXPECT_EQ(OutcomeOfReading(parser, path), ErrorText(6, -1, "Unable to open input file:" + path + "."));
}

TEST_F(TdjsonParser, EmptyFileIsAnError) {
  EXPECT_EQ(Read(""), ErrorText(54, -1, "Empty Input file."));
}

TEST_F(TdjsonParser, FolderIsAnError) {
  std::string const path = mFolder.Path("");
  SK_TdjsonParser_v1 parser;
  // A folder opens like a file; where it has a size, mapping it fails.
  EXPECT_THAT(OutcomeOfReading(parser, path), testing::AnyOf(ErrorText(21, -1, "Unable to read file in memory."),
                                                             ErrorText(54, -1, "Empty Input file.")));
}

TEST_F(TdjsonParser, MissingFolderForTemporaryFilesIsAnError) {
  std::string const folder = mFolder.TempPath();
  setenv("TEMP", "/nonexistent/", 1);
  EXPECT_EQ(Read(TopLevel({Version1Head(), kOutline, kSamples})), ErrorText(15, -1, "Unable to open temporary file."));
  setenv("TEMP", folder.c_str(), 1);
}

TEST_F(TdjsonParser, FullFolderForTemporaryFilesIsAnError) {
  std::vector<std::string> const times(2000, "00:00:00:00");
  std::string const text = TopLevel({Version1Head(), Array("dataOutline", {NumberNode("a", "A", 2000)}),
                                     Array("dataDynamicSamples", {NumberSet("A", times)})});
  mFolder.Write("file.tdjson", text);
  // No file may grow past a page: writing to the scratch file then ends early, as on a full disk.
  auto const oldHandler = signal(SIGXFSZ, SIG_IGN);
  rlimit old;
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
  rlimit const small = {4096, old.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  SK_TdjsonParser_v1 parser;
  std::string const outcome = OutcomeOfReading(parser, mFolder.Path("file.tdjson"));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &old), 0);
  signal(SIGXFSZ, oldHandler);
  EXPECT_EQ(outcome, ErrorText(21, -1, "Unable to write in temporary file."));
}

class CutFile : public TdjsonParser, public testing::WithParamInterface<std::string> {};

TEST_P(CutFile, IsAnErrorWhereverItIsCut) {
  std::string const& whole = GetParam();
  ASSERT_EQ(Read(whole), "fine");
  for (std::size_t length = 0; length < whole.size(); ++length) {
    ASSERT_NE(Read(whole.substr(0, length)), "fine") << whole.substr(0, length);
    mParser.reset();
    ASSERT_EQ(mFolder.TempNames(), "") << whole.substr(0, length);
  }
}

std::string const kSyncTimes = R"("videoSyncTimeList":[{"fileName":"a.mov","frameNumber":1}])";

INSTANTIATE_TEST_SUITE_P(
    OfBothVersions, CutFile,
    testing::Values(TopLevel({R"("version":"1.0","creator":"c")", Version1Head(), kSyncTimes, kOutline, kSamples}),
                    TopLevel({R"("utcInfo":{"precisionLength":3,"isGMT":true},"useTimecodeB":false)", kOutline}),
                    TopLevel({Version2Head(), kSamples, R"("creator":"c")", kOutline})));

TEST_F(TdjsonParser, RealRecordingsAreRead) {
  for (char const* name : {"dab_30hz_v2", "jumping_119hz_v2", "jumping_jacks_v1_pretty", "weather_montreal_utc_v2"}) {
    std::string const path = std::string(SENMARK_TEST_DATA) + "/" + name + ".tdjson";
    std::shared_ptr<SK_TdjsonParser> const parser = SK_TdjsonParserFactory::GetParser(path.c_str());
    ASSERT_EQ(OutcomeOfReading(*parser, path), "fine") << name;
    EXPECT_FALSE(parser->GetDataCache().empty());
    for (auto const& set : parser->GetDataCache()) {
      EXPECT_NE(set.second.mSampleOffset, 0U) << name << ' ' << set.first;
      EXPECT_EQ(set.second.mTemporalRange.mStartTime.size(), parser->GetTimeInfo().GetTimeStrLength());
    }
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
