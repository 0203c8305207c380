#include "SK_TdjsonParser_v1.h"

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
using senmark_test::OutcomeOfReading;
using senmark_test::TempFolder;
using senmark_test::TopLevel;

std::string const kOutline = Array("dataOutline", {NumberNode("a", "A", 1)});
std::string const kTimecode = R"("timecodeInfo":)" + kTimecodeInfo;
std::string const kUtc = R"("utcInfo":{"precisionLength":3,"isGMT":true})";

struct Case {
  char const* name;
  std::string marked;  // '@' stands before the byte that the error names
  int code;            // 0 for a file that is read
  char const* message;
};

class Version1File : public testing::TestWithParam<Case> {};

TEST_P(Version1File, IsReadOrRefused) {
  TempFolder const folder;
  MarkedText const file(GetParam().marked);
  SK_TdjsonParser_v1 parser;
  std::string const expected =
      GetParam().code == 0 ? "fine" : ErrorText(GetParam().code, file.offset, GetParam().message);
  EXPECT_EQ(OutcomeOfReading(parser, folder.Write("file.tdjson", file.text)), expected);
}

char const kTimecodeInfoWrong[] = R"("timecodeInfo" can be present if and only if "useTimecodeB" is set to true.)";
char const kUtcInfoWrong[] = R"("utcInfo" can be present if and only if "useTimecodeB" is set to false.)";

Case const kCases[] = {
    {"TimecodeBehindItsFlag", TopLevel({R"("useTimecodeB":true)", kTimecode, kOutline}), 0, ""},
    {"TimecodeBeforeItsFlag", TopLevel({kTimecode, R"("useTimecodeB":true)", kOutline}), 0, ""},
    {"UtcBehindItsFlag", TopLevel({R"("useTimecodeB":false)", kUtc, kOutline}), 0, ""},
    {"UtcBeforeItsFlag", TopLevel({kUtc, R"("useTimecodeB":false)", kOutline}), 0, ""},
    {"VersionIsOptional", TopLevel({R"("version":"anything")", R"("useTimecodeB":false)", kUtc, kOutline}), 0, ""},
    {"Version2SecondIsVersion1",
     TopLevel({R"("creator":"c","version":"tdjson2.0.0")", R"("useTimecodeB":false)", kUtc, kOutline}), 0, ""},
    // Only the kind that was set last is compared with the flag.
    {"BothInfosBeforeTheFlag", TopLevel({kUtc, kTimecode, R"("useTimecodeB":true)", kOutline}), 0, ""},
    {"TimecodeAgainstTheFlag", R"({"useTimecodeB":false,"timecodeInfo":@{}})", 46, kTimecodeInfoWrong},
    {"FlagAgainstTimecode", "{" + kTimecode + R"(,"useTimecodeB":@false})", 46, kTimecodeInfoWrong},
    {"UtcAgainstTheFlag", R"({"useTimecodeB":true,"utcInfo":@{}})", 46, kUtcInfoWrong},
    {"FlagAgainstUtc", "{" + kUtc + R"(,"useTimecodeB":@true})", 46, kUtcInfoWrong},
    {"FlagIsNoBoolean", R"({"useTimecodeB":@1})", 32, R"(Invalid "useTimecodeB" type, expected type:JSON Boolean.)"},
    {"TimecodeIsNoObject", R"({"timecodeInfo":@1})", 32, R"(Invalid "timecodeInfo" type, expected type:JSON Object.)"},
    {"UtcIsNoObject", R"({"utcInfo":@1})", 32, R"(Invalid "utcInfo" type, expected type:JSON Object.)"},
    {"SyncListIsNoArray", R"({"videoSyncTimeList":@1})", 32,
     R"(Invalid "videoSyncTimeList" type, expected type:JSON Array.)"},
    {"TimecodeIsValidated", R"({"timecodeInfo":{"dropFrame":true}})", 28,
     R"(Unable to find mandatory property:"frameRate" at "timecodeInfo".)"},
    {"UtcIsValidated", R"({"utcInfo":{"isGMT":true}})", 28,
     R"(Unable to find mandatory property:"precisionLength" at "utcInfo".)"},
    {"SyncListIsValidated", R"({"videoSyncTimeList":[{"fileName":"a"}]})", 44,
     R"(Invalid "videoSyncTimeList", one of "timeString" or "frameNumber" must be present at "videoSyncTimeList[0]".)"},
    {"SamplesFlagIsUnknownHere", R"({"dynamicSamplesPresentB":@true})", 30,
     R"(Invalid top level property. "dynamicSamplesPresentB" not defined as a top level property in TDJSON schema )"
     R"(version 2.0.0.)"},
    {"SamplesInfoIsUnknownHere", R"({"dynamicDataInfo":@{}})", 30,
     R"(Invalid top level property. "dynamicDataInfo" not defined as a top level property in TDJSON schema version )"
     R"(2.0.0.)"},
    {"FlagMissing", TopLevel({kTimecode, kOutline}), 32, R"(Unable to find mandatory properties : "useTimecodeB".)"},
    {"FlagAndOutlineMissing", TopLevel({kTimecode}), 32,
     R"(Unable to find mandatory properties : "useTimecodeB","dataOutline".)"},
    {"UtcMissing", TopLevel({R"("useTimecodeB":false)", kOutline}), 32,
     R"(Unable to find mandatory properties : "utcInfo".)"},
    {"UtcAndOutlineMissing", TopLevel({R"("useTimecodeB":false)"}), 32,
     R"(Unable to find mandatory properties : "utcInfo","dataOutline".)"},
    {"TimecodeMissing", TopLevel({R"("useTimecodeB":true)", kOutline}), 32,
     R"(Unable to find mandatory properties : "timecodeInfo".)"},
    {"OutlineMissing", TopLevel({R"("useTimecodeB":true)", kTimecode}), 32,
     R"(Unable to find mandatory properties : "dataOutline".)"},
};

INSTANTIATE_TEST_SUITE_P(Every, Version1File, testing::ValuesIn(kCases),
                         [](testing::TestParamInfo<Case> const& row) { return row.param.name; });

TEST(TdjsonParserVersion1, TellsItsVersion) {
  EXPECT_EQ(SK_TdjsonParser_v1().GetTDJSONVersion(), 0);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
