// Kinds of data and static values of format version 2, and its "dynamicDataInfo".

#include "SK_TdjsonValidator_v2.h"

#include <gtest/gtest.h>

#include <string>

#include "ExpectError.h"
#include "OutlineRows.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::AcceptedOutline;
using senmark_test::Edited;
using senmark_test::ExpectError;
using senmark_test::NameOfRow;
using senmark_test::Parsed;
using senmark_test::RefusedOutline;
using senmark_test::ValidateOutline;
using senmark_test::ValidOutline;

class Version2Accepts : public testing::TestWithParam<AcceptedOutline> {};

TEST_P(Version2Accepts, Outline) {
  JDocument const outline = Edited(ValidOutline(2), GetParam().edits);
  EXPECT_NO_THROW(ValidateOutline(2, outline));
}

AcceptedOutline const kAccepted[] = {
    {"FalseFlag", {{"/7/value", "false"}}},
    {"TextLongerThanMaxLen", {{"/1/value", R"("longer than eight bytes")"}}},
    {"MoreNumbersThanArraySize", {{"/2/value", "[1,2,3]"}}},
};

INSTANTIATE_TEST_SUITE_P(TdjsonValidatorV2, Version2Accepts, testing::ValuesIn(kAccepted), NameOfRow());

class Version2Refuses : public testing::TestWithParam<RefusedOutline> {};

TEST_P(Version2Refuses, Outline) {
  JDocument const outline = Edited(ValidOutline(2), GetParam().edits);
  ExpectError([&] { ValidateOutline(2, outline); }, GetParam().code, GetParam().message);
}

// clang-format off
RefusedOutline const kRefused[] = {
    // The comma in front of "boolean" and the second full stop below are part of the texts.
    {"StaticTypeUnknown", {{"/0/dataType/type", R"("numbers")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[0]:Speed/dataType", expected:one of "number", "string" , "boolean" or "numberArray".)"},
    {"StaticTypeOfDynamicNodes", {{"/0/dataType/type", R"("numberString")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[0]:Speed/dataType", expected:one of "number", "string" , "boolean" or "numberArray".)"},
    {"DynamicTypeUnknown", {{"/3/dataType/type", R"("strings")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[3]:Track/dataType", expected:one of "numberString", "paddedString" or "numberStringArray"..)"},
    {"DynamicTypeOfStaticNodes", {{"/3/dataType/type", R"("number")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[3]:Track/dataType", expected:one of "numberString", "paddedString" or "numberStringArray"..)"},
    {"DynamicBoolean", {{"/3/dataType/type", R"("boolean")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[3]:Track/dataType", expected:one of "numberString", "paddedString" or "numberStringArray"..)"},
    {"DynamicArrayTypeOfVersion1", {{"/5/dataType/type", R"("numberArray")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[5]:Hand/dataType", expected:one of "numberString", "paddedString" or "numberStringArray"..)"},
    {"StringWithoutTextProperties", {{"/1/dataType", R"({"type":"string"})"}}, 28,
     R"(Unable to find mandatory property:"paddedStringProperties" at "dataOutline[1]:Note/dataType".)"},

    {"NumberNoNumber", {{"/0/value", R"("1.5")"}}, 43,
     R"(Invalid "value" type, expected type:JSON Number at "dataOutline[0]:Speed".)"},
    {"TextNoString", {{"/1/value", R"({"length":2,"str":"ok"})"}}, 43,
     R"(Invalid "value" type, expected type:JSON String at "dataOutline[1]:Note".)"},
    {"NumberOfArrayNoNumber", {{"/2/value/1", R"("2")"}}, 43,
     R"(Invalid "value" type, expected type:JSON Number at "dataOutline[2]:Point/value[1]".)"},
    {"BooleanNoBoolean", {{"/7/value", "1"}}, 43,
     R"(Invalid "value" type, expected type:JSON Boolean at "dataOutline[7]:Flag".)"},
    {"BooleanMissing", {{"/7/value", nullptr}}, 28,
     R"(Unable to find mandatory property:"value" at "dataOutline[7]:Flag".)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(TdjsonValidatorV2, Version2Refuses, testing::ValuesIn(kRefused), NameOfRow());

class DataValueV2 : public SK_TdjsonValidator_v2, public testing::Test {};

// Whole outlines never get here: the type has been checked before the value.
TEST_F(DataValueV2, UnknownTypeIsReportedAsValue) {
  JDocument const node = Parsed(R"({"dataType":{"type":"numberString"},"value":"1"})");
  ExpectError([&] { ValidateDataValue(node, SK_OutlinePath("dataOutline", 4)); }, 44,
              R"(Invalid value for "value" at "dataOutline[4]", )"
              R"(expected:one of "number", "string" , "boolean" or "numberArray".)");
}

struct DynamicDataInfo {
  char const* name;
  char const* json;
  int code;  ///< 0: accepted
  char const* message;
};

class DynamicDataInfoV2 : public testing::TestWithParam<DynamicDataInfo> {};

TEST_P(DynamicDataInfoV2, IsJudged) {
  JDocument const info = Parsed(GetParam().json);
  auto const validate = [&] { SK_TdjsonValidator_v2().ValidateDynamicDataInfo(info, nullptr, nullptr); };
  if (GetParam().code == 0) {
    EXPECT_NO_THROW(validate());
  } else {
    ExpectError(validate, GetParam().code, GetParam().message);
  }
}

DynamicDataInfo const kDynamicDataInfos[] = {
    {"TimeCode", R"({"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false}})", 0,
     ""},
    {"UTC", R"({"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true}})", 0, ""},
    {"TimeCodeBesideBrokenUTC",
     R"({"useTimecodeB":true,"utcInfo":5,"timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false}})", 0,
     ""},
    {"UTCBesideBrokenTimeCode",
     R"({"useTimecodeB":false,"timecodeInfo":{},"utcInfo":{"precisionLength":3,"isGMT":true}})", 0, ""},
    {"SyncTimes",
     R"({"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true},)"
     R"("videoSyncTimeList":[{"fileName":"a","frameNumber":1}]})",
     0, ""},

    {"OtherKeyFirst", R"({"utcInfo":{"precisionLength":3,"isGMT":true},"useTimecodeB":false})", 44,
     R"(First property of "dynamicDataInfo" must be "useTimecodeB", found "utcInfo".)"},
    {"NoKey", "{}", 44, R"(First property of "dynamicDataInfo" must be "useTimecodeB", found "".)"},
    {"UseTimecodeNoBoolean", R"({"useTimecodeB":1})", 43,
     R"(Invalid "useTimecodeB" type, expected type:JSON Boolean at "dynamicDataInfo".)"},
    {"TimeCodeInfoMissing", R"({"useTimecodeB":true,"utcInfo":{"precisionLength":3,"isGMT":true}})", 28,
     R"(Unable to find mandatory property:"timecodeInfo" at "dynamicDataInfo".)"},
    {"TimeCodeInfoNoObject", R"({"useTimecodeB":true,"timecodeInfo":30})", 43,
     R"(Invalid "timecodeInfo" type, expected type:JSON Object at "dynamicDataInfo".)"},
    {"TimeCodeInfoBroken", R"({"useTimecodeB":true,"timecodeInfo":{"frameRate":{"value":30,"scale":1}}})", 28,
     R"(Unable to find mandatory property:"dropFrame" at "timecodeInfo".)"},
    {"UTCInfoMissing", R"({"useTimecodeB":false,"videoSyncTimeList":5})", 28,
     R"(Unable to find mandatory property:"utcInfo" at "dynamicDataInfo".)"},
    {"UTCInfoNoObject", R"({"useTimecodeB":false,"utcInfo":"x"})", 43,
     R"(Invalid "utcInfo" type, expected type:JSON Object at "dynamicDataInfo".)"},
    {"UTCInfoBroken", R"({"useTimecodeB":false,"utcInfo":{"isGMT":true}})", 28,
     R"(Unable to find mandatory property:"precisionLength" at "utcInfo".)"},
    {"SyncTimesNoArray",
     R"({"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true},"videoSyncTimeList":{}})", 43,
     R"(Invalid "videoSyncTimeList" type, expected type:JSON Array at "dynamicDataInfo".)"},
    {"SyncTimesEmpty", R"({"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true},"videoSyncTimeList":[]})",
     47, R"(Invalid "videoSyncTimeList", expected atleast 1 array item, found 0 at "dynamicDataInfo".)"},
    {"SyncTimesBroken",
     R"({"useTimecodeB":false,"utcInfo":{"precisionLength":3,"isGMT":true},"videoSyncTimeList":[{"fileName":"a"}]})",
     44,
     R"(Invalid "videoSyncTimeList", one of "timeString" or "frameNumber" must be present at "videoSyncTimeList[0]".)"},
};

INSTANTIATE_TEST_SUITE_P(TdjsonValidatorV2, DynamicDataInfoV2, testing::ValuesIn(kDynamicDataInfos), NameOfRow());

}  // namespace
}  // namespace SK_NAMESPACE_INT
