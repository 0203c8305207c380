#include "SK_TdjsonParser_v2.h"

#include <gtest/gtest.h>

#include <string>

#include "DataFileText.h"
#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::Array;
using senmark_test::ErrorText;
using senmark_test::kTimecodeInfo;
using senmark_test::MarkedText;
using senmark_test::NumberNode;
using senmark_test::NumberSet;
using senmark_test::OutcomeOfReading;
using senmark_test::TempFolder;
using senmark_test::TopLevel;

std::string const kVersion = R"("version":"tdjson2.0.0")";
std::string const kFlag = R"("dynamicSamplesPresentB":true)";
std::string const kNoFlag = R"("dynamicSamplesPresentB":false)";
std::string const kTimecode = R"("dynamicDataInfo":{"useTimecodeB":true,"timecodeInfo":)" + kTimecodeInfo + "}";
std::string const kUtc = R"("dynamicDataInfo":{"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true}})";
std::string const kOutline = Array("dataOutline", {NumberNode("a", "A", 1)});
std::string const kSamples = Array("dataDynamicSamples", {NumberSet("A", {"00:00:00:00"})});

struct Case {
  char const* name;
  std::string marked;  // '@' stands before the byte that the error names
  int code;            // 0 for a file that is read
  char const* message;
};

class Version2File : public testing::TestWithParam<Case> {};

TEST_P(Version2File, IsReadOrRefused) {
  TempFolder const folder;
  MarkedText const file(GetParam().marked);
  SK_TdjsonParser_v2 parser;
  std::string const expected =
      GetParam().code == 0 ? "fine" : ErrorText(GetParam().code, file.offset, GetParam().message);
  EXPECT_EQ(OutcomeOfReading(parser, folder.Write("file.tdjson", file.text)), expected);
}

Case const kCases[] = {
    {"WithSamples", TopLevel({kVersion, kFlag, kTimecode, kSamples, kOutline}), 0, ""},
    {"OutlineFirst", TopLevel({kVersion, kOutline, kFlag, kTimecode, kSamples}), 0, ""},
    {"FlagWithoutSamples", TopLevel({kVersion, kFlag, kTimecode, kOutline}), 0, ""},
    {"FlagOffNeedsNoInfo", TopLevel({kVersion, kNoFlag, kOutline}), 0, ""},
    {"UtcInfo", TopLevel({kVersion, kFlag, kUtc, kOutline}), 0, ""},
    {"InfoOfTheOtherKindIsNotLookedAt",
     TopLevel(
         {kVersion, kFlag,
          R"("dynamicDataInfo":{"useTimecodeB":false,"timecodeInfo":1,"utcInfo":{"precisionLength":3,"isGMT":true}})",
          kOutline}),
     0, ""},
    {"InfoBeforeTheFlag", "{" + kVersion + R"(,"dynamicDataInfo":@{}})", 31,
     R"("dynamicSamplesPresentB" must be present before "dynamicDataInfo" in TDJSON file.)"},
    {"InfoWithTheFlagOff", "{" + kVersion + "," + kNoFlag + R"(,"dynamicDataInfo":@{}})", 31,
     R"("dynamicDataInfo" can be present if and only if "dynamicSamplesPresentB" is set to true.)"},
    {"SamplesBeforeTheFlag", "{" + kVersion + R"(,"dataDynamicSamples":@{}})", 31,
     R"("dynamicSamplesPresentB" must be present before "dataDynamicSamples" in TDJSON file.)"},
    {"SamplesWithTheFlagOff", "{" + kVersion + "," + kNoFlag + R"(,"dataDynamicSamples":@{}})", 31,
     R"("dataDynamicSamples" can be present if and only if "dynamicSamplesPresentB" is set to true.)"},
    {"SamplesBeforeTheInfo", "{" + kVersion + "," + kFlag + R"(,"dataDynamicSamples":@{}})", 31,
     R"("dynamicDataInfo" must be present before "dataDynamicSamples" in TDJSON file.)"},
    {"SamplesAreNoArray", "{" + kVersion + "," + kFlag + "," + kTimecode + R"(,"dataDynamicSamples":@{}})", 43,
     R"(Invalid "dataDynamicSamples" type, expected type:JSON Array.)"},
    {"FlagIsNoBoolean", "{" + kVersion + R"(,"dynamicSamplesPresentB":@0})", 32,
     R"(Invalid "dynamicSamplesPresentB" type, expected type:JSON Boolean.)"},
    {"InfoIsNoObject", "{" + kVersion + "," + kFlag + R"(,"dynamicDataInfo":@0})", 32,
     R"(Invalid "dynamicDataInfo" type, expected type:JSON Object.)"},
    {"InfoIsValidated", "{" + kVersion + "," + kFlag + R"(,"dynamicDataInfo":{"utcInfo":1}})", 44,
     R"(First property of "dynamicDataInfo" must be "useTimecodeB", found "utcInfo".)"},
    {"TimecodeOfTheInfoIsChecked",
     "{" + kVersion + "," + kFlag +
         R"(,"dynamicDataInfo":{"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":true}}})",
     41, "Only 29.97 and 59.94 drop frame rate supported."},
    {"TimecodeFlagAtTheTop", "{" + kVersion + R"(,"useTimecodeB":@true})", 30,
     R"(Invalid top level property. "useTimecodeB" not defined as a top level property in TDJSON schema version 2.0.0.)"},
    {"TimecodeAtTheTop", "{" + kVersion + R"(,"timecodeInfo":@{}})", 30,
     R"(Invalid top level property. "timecodeInfo" not defined as a top level property in TDJSON schema version 2.0.0.)"},
    {"UtcAtTheTop", "{" + kVersion + R"(,"utcInfo":@{}})", 30,
     R"(Invalid top level property. "utcInfo" not defined as a top level property in TDJSON schema version 2.0.0.)"},
    {"SyncListAtTheTop", "{" + kVersion + R"(,"videoSyncTimeList":@[]})", 30,
     R"(Invalid top level property. "videoSyncTimeList" not defined as a top level property in TDJSON schema version )"
     R"(2.0.0.)"},
    {"OutlineMissing", TopLevel({kVersion, kNoFlag}), 32, R"(Unable to find mandatory properties : "dataOutline".)"},
    {"FlagMissing", TopLevel({kVersion, kOutline}), 32,
     R"(Unable to find mandatory properties : "dynamicSamplesPresentB".)"},
    {"InfoMissing", TopLevel({kVersion, kFlag, kOutline}), 32,
     R"(Unable to find mandatory properties : "dynamicDataInfo".)"},
    {"OutlineAndInfoMissing", TopLevel({kVersion, kFlag}), 32,
     R"(Unable to find mandatory properties : "dataOutline","dynamicDataInfo".)"},
    // Files without a version never come here; a parser that is made by hand still tells.
    {"AllMissing", TopLevel({R"("creator":"c")"}), 32,
     R"(Unable to find mandatory properties : "version","dataOutline","dynamicSamplesPresentB".)"},
};

INSTANTIATE_TEST_SUITE_P(Every, Version2File, testing::ValuesIn(kCases),
                         [](testing::TestParamInfo<Case> const& row) { return row.param.name; });

TEST(TdjsonParserVersion2, TellsItsVersion) {
  EXPECT_EQ(SK_TdjsonParser_v2().GetTDJSONVersion(), 1);
}

TEST(TdjsonParserVersion2, KeepsWhatItsInfoHolds) {
  TempFolder const folder;
  std::string const info = R"("dynamicDataInfo":{"useTimecodeB":false,"videoSyncTimeList":[{"fileName":"a.mov",)"
                           R"("frameNumber":-3}],"utcInfo":{"precisionLength":3,"isGMT":false}})";
  SK_TdjsonParser_v2 parser;
  ASSERT_EQ(OutcomeOfReading(parser, folder.Write("file.tdjson", TopLevel({kVersion, kFlag, info, kOutline}))), "fine");
  EXPECT_FALSE(parser.GetUseTimecodeB());
  EXPECT_TRUE(parser.GetTimeInfo().IsTimeFormatUTC());
  EXPECT_EQ(parser.GetTimeInfo().GetTimeStrLength(), 29);
  ASSERT_EQ(parser.GetSyncInfo().size(), 1U);
  EXPECT_EQ(boost::get<int>(parser.GetSyncInfo()[0].value.value), -3);
}

TEST(TdjsonParserVersion2, SetsTheTimecodeFlagFromItsInfo) {
  TempFolder const folder;
  SK_TdjsonParser_v2 parser;
  ASSERT_EQ(OutcomeOfReading(parser, folder.Write("file.tdjson", TopLevel({kVersion, kFlag, kTimecode, kOutline}))),
            "fine");
  EXPECT_TRUE(parser.GetUseTimecodeB());
  EXPECT_TRUE(parser.GetTimeInfo().IsTimeFormatSMPTE());
}

TEST(TdjsonParserVersion2, PaddedStringsHaveTheirLengthInQuotes) {
  TempFolder const folder;
  std::string const outline =
      Array("dataOutline", {senmark_test::DynamicNode("a", "A", "1", senmark_test::PaddedType(3, 1))});
  std::string const samples =
      Array("dataDynamicSamples",
            {senmark_test::SampleSet("A", {R"({"time":"00:00:00:00","value":{"length":"2","str":"ab "}})"})});
  SK_TdjsonParser_v2 parser;
  EXPECT_EQ(
      OutcomeOfReading(parser, folder.Write("file.tdjson", TopLevel({kVersion, kFlag, kTimecode, samples, outline}))),
      "fine");
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
