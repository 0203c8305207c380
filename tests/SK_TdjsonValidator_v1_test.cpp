// Kinds of data and static values of format version 1.

#include "SK_TdjsonValidator_v1.h"

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

class Version1Accepts : public testing::TestWithParam<AcceptedOutline> {};

TEST_P(Version1Accepts, Outline) {
  JDocument const outline = Edited(ValidOutline(1), GetParam().edits);
  EXPECT_NO_THROW(ValidateOutline(1, outline));
}

AcceptedOutline const kAccepted[] = {
    {"NumberThatIsNoNumber", {{"/0/value", R"("fast")"}}},
    {"TextOfAnotherLength", {{"/1/value", R"({"length":99.5,"str":""})"}}},
    {"MoreNumbersThanArraySize", {{"/2/value", R"(["1","2","3"])"}}},
};

INSTANTIATE_TEST_SUITE_P(TdjsonValidatorV1, Version1Accepts, testing::ValuesIn(kAccepted), NameOfRow());

class Version1Refuses : public testing::TestWithParam<RefusedOutline> {};

TEST_P(Version1Refuses, Outline) {
  JDocument const outline = Edited(ValidOutline(1), GetParam().edits);
  ExpectError([&] { ValidateOutline(1, outline); }, GetParam().code, GetParam().message);
}

// clang-format off
RefusedOutline const kRefused[] = {
    {"StaticTypeUnknown", {{"/0/dataType/type", R"("numberStrings")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[0]:Speed/dataType", expected:one of "numberString", "paddedString" or "numberArray".)"},
    {"DynamicTypeUnknown", {{"/3/dataType/type", R"("")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[3]:Track/dataType", expected:one of "numberString", "paddedString" or "numberArray".)"},
    {"StaticTypeOfVersion2", {{"/0/dataType/type", R"("number")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[0]:Speed/dataType", expected:one of "numberString", "paddedString" or "numberArray".)"},
    {"BooleanOfVersion2", {{"/0/dataType/type", R"("boolean")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[0]:Speed/dataType", expected:one of "numberString", "paddedString" or "numberArray".)"},
    {"DynamicArrayTypeOfVersion2", {{"/5/dataType/type", R"("numberStringArray")"}}, 44,
     R"(Invalid value for "type" at "dataOutline[5]:Hand/dataType", expected:one of "numberString", "paddedString" or "numberArray".)"},
    {"TypeWithPropertiesOfAnother", {{"/0/dataType/type", R"("paddedString")"}}, 28,
     R"(Unable to find mandatory property:"paddedStringProperties" at "dataOutline[0]:Speed/dataType".)"},

    {"NumberNoString", {{"/0/value", "1.5"}}, 43,
     R"(Invalid "value" type, expected type:JSON String at "dataOutline[0]:Speed".)"},
    {"NumberOfChildNoString", {{"/6/children/0/children/0/value", "1.5"}}, 43,
     R"(Invalid "value" type, expected type:JSON String at "dataOutline[6]:Body/children[0]:Arm/children[0]:Bone".)"},
    {"TextNoObject", {{"/1/value", R"("ok")"}}, 43,
     R"(Invalid "value" type, expected type:JSON Object at "dataOutline[1]:Note".)"},
    {"LengthOfTextMissing", {{"/1/value/length", nullptr}}, 28,
     R"(Unable to find mandatory property:"length" at "dataOutline[1]:Note".)"},
    {"LengthOfTextNoNumber", {{"/1/value", R"({"length":"2"})"}}, 43,
     R"(Invalid "length" type, expected type:JSON Number at "dataOutline[1]:Note".)"},
    {"StrOfTextMissing", {{"/1/value/str", nullptr}}, 28,
     R"(Unable to find mandatory property:"str" at "dataOutline[1]:Note".)"},
    {"StrOfTextNoString", {{"/1/value/str", "2"}}, 43,
     R"(Invalid "str" type, expected type:JSON String at "dataOutline[1]:Note".)"},
    // Version 2 shows the same place as `value[1]`, without brackets and quotes around the key.
    {"NumberOfArrayNoString", {{"/2/value/1", "2"}}, 43,
     R"(Invalid "value" type, expected type:JSON String at "dataOutline[2]:Point/["value"][1]".)"},
    {"ValueMissingOfText", {{"/1/value", nullptr}}, 28,
     R"(Unable to find mandatory property:"value" at "dataOutline[1]:Note".)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(TdjsonValidatorV1, Version1Refuses, testing::ValuesIn(kRefused), NameOfRow());

class DataValueV1 : public SK_TdjsonValidator_v1, public testing::Test {};

// Whole outlines never get here: the type has been checked before the value.
TEST_F(DataValueV1, UnknownTypeIsReportedAsValue) {
  JDocument const node = Parsed(R"({"dataType":{"type":"number"},"value":1})");
  ExpectError([&] { ValidateDataValue(node, SK_OutlinePath("dataOutline", 4)); }, 44,
              R"(Invalid value for "value" at "dataOutline[4]", )"
              R"(expected:one of "numberString", "paddedString" or "numberArray".)");
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
