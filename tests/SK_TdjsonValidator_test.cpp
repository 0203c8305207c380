// What both versions of the format demand of an outline.

#include "SK_TdjsonValidator.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "ExpectError.h"
#include "OutlineRows.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::AcceptedOutline;
using senmark_test::Edited;
using senmark_test::ExpectError;
using senmark_test::RefusedOutline;
using senmark_test::ValidateOutline;
using senmark_test::ValidOutline;

/// Names a row together with the format version that it is tried in.
struct NameOfVersionedRow {
  template <typename Param>
  std::string operator()(testing::TestParamInfo<Param> const& info) const {
    return std::string(std::get<1>(info.param).name) + "InVersion" + std::to_string(std::get<0>(info.param));
  }
};

class BothVersionsAccept : public testing::TestWithParam<std::tuple<int, AcceptedOutline>> {};

TEST_P(BothVersionsAccept, Outline) {
  auto const& [version, row] = GetParam();
  JDocument const outline = Edited(ValidOutline(version), row.edits);
  EXPECT_NO_THROW(ValidateOutline(version, outline));
}

char const k200Letters[] =
    R"("aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa)"
    R"(bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb")";

AcceptedOutline const kAccepted[] = {
    {"EveryKindOfNode", {}},
    {"UnknownKeys", {{"/0/colour", R"("red")"}, {"/0/dataType/unit", R"("m")"}}},
    {"EmptyDisplayName", {{"/0/displayName", R"("")"}}},
    {"SameDisplayNameTwice", {{"/1/displayName", R"("Speed")"}}},
    {"MatchNameWithDigitBehindLetter", {{"/0/matchName", R"("a1")"}}},
    {"MatchNameOfCapitals", {{"/0/matchName", R"("SPEED")"}}},
    {"MatchNameOf200Characters", {{"/0/matchName", k200Letters}}},
    {"EmptyMatchName", {{"/0/matchName", R"("")"}}},
    {"MatchNamesThatDifferInCaseOnly", {{"/1/matchName", R"("Speed")"}}},
    {"PatternThatIsNotWhole",
     {{"/0/dataType/numberStringProperties/pattern/digitsInteger", "-2.5"},
      {"/0/dataType/numberStringProperties/pattern/digitsDecimal", "1e300"}}},
    {"MinAboveMax",
     {{"/0/dataType/numberStringProperties/range/legal/min", "5"},
      {"/0/dataType/numberStringProperties/range/legal/max", "-5"}}},
    {"OtherSpellingOfOccurring",
     {{"/0/dataType/numberStringProperties/range/occurring", nullptr},
      {"/0/dataType/numberStringProperties/range/occuring", R"({"min":1,"max":2})"}}},
    {"CorrectSpellingOfOccurringHidesTheOther", {{"/0/dataType/numberStringProperties/range/occuring", "7"}}},
    {"OtherSpellingOfExpectedFrequency", {{"/3/hasExpectedFrequencyB", nullptr}, {"/3/hasExpectedFrequecyB", "false"}}},
    {"CorrectSpellingOfExpectedFrequencyHidesTheOther", {{"/3/hasExpectedFrequecyB", "7"}}},
    {"ArraySizeUnlikeNamesAndRanges",
     {{"/2/dataType/numberArrayProperties/arraySize", "7"},
      {"/2/dataType/numberArrayProperties/arrayDisplayNames/2", R"("Z")"}}},
    {"NoIsPoint", {{"/2/dataType/numberArrayProperties/isPoint", nullptr}}},
    {"HoldInterpolation", {{"/3/interpolation", R"("hold")"}}},
    {"NoExpectedMaxInterSampleDuration", {{"/3/expectedMaxInterSampleDuration", nullptr}}},
    {"SampleCountThatIsNotWhole", {{"/3/sampleCount", "-1.5"}}},
    {"SampleSetIDTwice", {{"/4/sampleSetID", R"("id1")"}}},
    {"EmptySampleSetID", {{"/3/sampleSetID", R"("")"}}},
};

INSTANTIATE_TEST_SUITE_P(TdjsonValidator, BothVersionsAccept,
                         testing::Combine(testing::Values(1, 2), testing::ValuesIn(kAccepted)), NameOfVersionedRow());

class BothVersionsRefuse : public testing::TestWithParam<std::tuple<int, RefusedOutline>> {};

TEST_P(BothVersionsRefuse, Outline) {
  int const version = std::get<0>(GetParam());
  RefusedOutline const& row = std::get<1>(GetParam());
  JDocument const outline = Edited(ValidOutline(version), row.edits);
  ExpectError([&] { ValidateOutline(version, outline); }, row.code, row.message);
}

// clang-format off
RefusedOutline const kRefusedNodes[] = {
    {"EmptyOutline", {{"", "[]"}}, 47,
     R"(Invalid "dataOutline", expected atleast 1 array item, found 0.)"},
    {"ElementNoObject", {{"/2", "5"}}, 43,
     R"(Invalid "dataOutline" type, expected type:JSON Object at "dataOutline[2]".)"},
    {"ObjectTypeMissing", {{"/1/objectType", nullptr}}, 28,
     R"(Unable to find mandatory property:"objectType" at "dataOutline[1]".)"},
    {"ObjectTypeNoString", {{"/0/objectType", "true"}}, 43,
     R"(Invalid "objectType" type, expected type:JSON String at "dataOutline[0]".)"},
    {"ObjectTypeUnknown", {{"/0/objectType", R"("dataStatics")"}}, 44,
     R"(Invalid value for "objectType" at "dataOutline[0]", expected:one of "dataStatic", "dataDynamic" or "dataGroup".)"},
    {"ChildNoObject", {{"/6/children/1", "[1]"}}, 43,
     R"(Invalid "children" type, expected type:JSON Object at "dataOutline[6]:Body/children[1]".)"},
    {"ObjectTypeOfChildMissing", {{"/6/children/1/objectType", nullptr}}, 28,
     R"(Unable to find mandatory property:"objectType" at "dataOutline[6]:Body/children[1]".)"},
    {"ObjectTypeOfChildNoString", {{"/6/children/0/children/0/objectType", "1"}}, 43,
     R"(Invalid "objectType" type, expected type:JSON String at "dataOutline[6]:Body/children[0]:Arm/children[0]".)"},
    {"ObjectTypeOfChildUnknown", {{"/6/children/1/objectType", R"("")"}}, 44,
     R"(Invalid value for "objectType" at "dataOutline[6]:Body/children[1]", expected:one of "dataStatic", "dataDynamic" or "dataGroup".)"},

    {"DisplayNameOfStaticMissing", {{"/0/displayName", nullptr}}, 28,
     R"(Unable to find mandatory property:"displayName" at "dataOutline[0]".)"},
    {"DisplayNameOfDynamicMissing", {{"/3/displayName", nullptr}}, 28,
     R"(Unable to find mandatory property:"displayName" at "dataOutline[3]".)"},
    {"DisplayNameOfGroupMissing", {{"/6/children/0/displayName", nullptr}}, 28,
     R"(Unable to find mandatory property:"displayName" at "dataOutline[6]:Body/children[0]".)"},
    {"DisplayNameNoString", {{"/0/displayName", "1"}}, 43,
     R"(Invalid "displayName" type, expected type:JSON String at "dataOutline[0]".)"},
    {"MatchNameOfStaticMissing", {{"/0/matchName", nullptr}}, 28,
     R"(Unable to find mandatory property:"matchName" at "dataOutline[0]:Speed".)"},
    {"MatchNameOfDynamicMissing", {{"/3/matchName", nullptr}}, 28,
     R"(Unable to find mandatory property:"matchName" at "dataOutline[3]:Track".)"},
    {"MatchNameOfGroupMissing", {{"/6/matchName", nullptr}}, 28,
     R"(Unable to find mandatory property:"matchName" at "dataOutline[6]:Body".)"},
    {"MatchNameMissingBelowEmptyDisplayName", {{"/0/displayName", R"("")"}, {"/0/matchName", nullptr}}, 28,
     R"(Unable to find mandatory property:"matchName" at "dataOutline[0]:".)"},
    // A value that is not ASCII leaves messages with its quotes.
    {"MatchNameMissingBelowForeignDisplayName", {{"/0/displayName", R"("Größe")"}, {"/0/matchName", nullptr}}, 28,
     R"(Unable to find mandatory property:"matchName" at .)"},
    {"MatchNameNoString", {{"/0/matchName", "[1]"}}, 43,
     R"(Invalid "matchName" type, expected type:JSON String at "dataOutline[0]:Speed".)"},
    {"MatchNameWithDigitInFront", {{"/0/matchName", R"("1a")"}}, 42,
     R"(Invalid "matchName" at "dataOutline[0]:Speed". Not following TDJSON guidelines.)"},
    {"MatchNameOfDigit0", {{"/0/matchName", R"("0")"}}, 42,
     R"(Invalid "matchName" at "dataOutline[0]:Speed". Not following TDJSON guidelines.)"},
    {"MatchNameOfDigit9", {{"/0/matchName", R"("9")"}}, 42,
     R"(Invalid "matchName" at "dataOutline[0]:Speed". Not following TDJSON guidelines.)"},
    {"MatchNameWithHyphen", {{"/3/matchName", R"("a-b")"}}, 42,
     R"(Invalid "matchName" at "dataOutline[3]:Track". Not following TDJSON guidelines.)"},
    {"MatchNameWithUnderscore", {{"/6/matchName", R"("a_b")"}}, 42,
     R"(Invalid "matchName" at "dataOutline[6]:Body". Not following TDJSON guidelines.)"},
    {"MatchNameWithSpaceAtEnd", {{"/0/matchName", R"("ab ")"}}, 42,
     R"(Invalid "matchName" at "dataOutline[0]:Speed". Not following TDJSON guidelines.)"},
    {"MatchNameWithForeignLetter", {{"/0/matchName", R"("größe")"}}, 42,
     R"(Invalid "matchName" at "dataOutline[0]:Speed". Not following TDJSON guidelines.)"},
    {"MatchNameTwiceInOneLevel", {{"/1/matchName", R"("speed")"}}, 40,
     R"(Duplicate MatchName:"speed" at "dataOutline[1]:Note". MatchName must be unique for every node in "dataOutline".)"},
    {"MatchNameTwiceInTwoGroups", {{"/6/children/1/matchName", R"("bone")"}}, 40,
     R"(Duplicate MatchName:"bone" at "dataOutline[6]:Body/children[1]:Leg". MatchName must be unique for every node in "dataOutline".)"},
    {"MatchNameOfGroupLikeItsChild", {{"/6/children/0/matchName", R"("body")"}}, 40,
     R"(Duplicate MatchName:"body" at "dataOutline[6]:Body/children[0]:Arm". MatchName must be unique for every node in "dataOutline".)"},
    {"EmptyMatchNameTwice", {{"/0/matchName", R"("")"}, {"/3/matchName", R"("")"}}, 40,
     R"(Duplicate MatchName:"" at "dataOutline[3]:Track". MatchName must be unique for every node in "dataOutline".)"},

    {"ChildrenMissing", {{"/6/children", nullptr}}, 28,
     R"(Unable to find mandatory property:"children" at "dataOutline[6]:Body".)"},
    {"ChildrenNoArray", {{"/6/children", "{}"}}, 43,
     R"(Invalid "children" type, expected type:JSON Array at "dataOutline[6]:Body".)"},
    {"ChildrenEmpty", {{"/6/children/0/children", "[]"}}, 47,
     R"(Invalid "children", expected atleast 1 array item, found 0 at "dataOutline[6]:Body/children[0]:Arm".)"},

    {"SampleSetIDMissing", {{"/3/sampleSetID", nullptr}}, 28,
     R"(Unable to find mandatory property:"sampleSetID" at "dataOutline[3]:Track".)"},
    {"SampleSetIDNoString", {{"/4/sampleSetID", "4"}}, 43,
     R"(Invalid "sampleSetID" type, expected type:JSON String at "dataOutline[4]:Marks".)"},
    {"InterpolationMissing", {{"/5/interpolation", nullptr}}, 28,
     R"(Unable to find mandatory property:"interpolation" at "dataOutline[5]:Hand".)"},
    {"InterpolationNoString", {{"/3/interpolation", "false"}}, 43,
     R"(Invalid "interpolation" type, expected type:JSON String at "dataOutline[3]:Track".)"},
    {"InterpolationUnknown", {{"/3/interpolation", R"("cubic")"}}, 44,
     R"(Invalid value for "interpolation" at "dataOutline[3]:Track", expected:one of "linear" or "hold".)"},
    {"InterpolationInCapitals", {{"/3/interpolation", R"("Linear")"}}, 44,
     R"(Invalid value for "interpolation" at "dataOutline[3]:Track", expected:one of "linear" or "hold".)"},
    {"ExpectedFrequencyMissing", {{"/3/hasExpectedFrequencyB", nullptr}}, 28,
     R"(Unable to find mandatory property:"hasExpectedFrequencyB" at "dataOutline[3]:Track".)"},
    {"ExpectedFrequencyNoBoolean", {{"/3/hasExpectedFrequencyB", "1"}}, 43,
     R"(Invalid "hasExpectedFrequencyB" type, expected type:JSON Boolean at "dataOutline[3]:Track".)"},
    {"ExpectedFrequencyInOtherSpellingNoBoolean",
     {{"/3/hasExpectedFrequencyB", nullptr},
      {"/3/hasExpectedFrequecyB", "1"}}, 43,
     R"(Invalid "hasExpectedFrequecyB" type, expected type:JSON Boolean at "dataOutline[3]:Track".)"},
    {"BadExpectedFrequencyIsNotSavedByOtherSpelling",
     {{"/3/hasExpectedFrequencyB", "1"},
      {"/3/hasExpectedFrequecyB", "true"}}, 43,
     R"(Invalid "hasExpectedFrequencyB" type, expected type:JSON Boolean at "dataOutline[3]:Track".)"},
    {"SampleCountMissing", {{"/3/sampleCount", nullptr}}, 28,
     R"(Unable to find mandatory property:"sampleCount" at "dataOutline[3]:Track".)"},
    {"SampleCountNoNumber", {{"/3/sampleCount", R"("5")"}}, 43,
     R"(Invalid "sampleCount" type, expected type:JSON Number at "dataOutline[3]:Track".)"},
    {"ExpectedMaxInterSampleDurationNoString", {{"/3/expectedMaxInterSampleDuration", "1.5"}}, 43,
     R"(Invalid "expectedMaxInterSampleDuration" type, expected type:JSON String at "dataOutline[3]:Track".)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Nodes, BothVersionsRefuse,
                         testing::Combine(testing::Values(1, 2), testing::ValuesIn(kRefusedNodes)),
                         NameOfVersionedRow());

// clang-format off
RefusedOutline const kRefusedDataTypes[] = {
    {"DataTypeOfStaticMissing", {{"/0/dataType", nullptr}}, 28,
     R"(Unable to find mandatory property:"dataType" at "dataOutline[0]:Speed".)"},
    {"DataTypeOfDynamicMissing", {{"/3/dataType", nullptr}}, 28,
     R"(Unable to find mandatory property:"dataType" at "dataOutline[3]:Track".)"},
    {"DataTypeNoObject", {{"/0/dataType", R"("number")"}}, 43,
     R"(Invalid "dataType" type, expected type:JSON Object at "dataOutline[0]:Speed".)"},
    {"TypeMissing", {{"/0/dataType/type", nullptr}}, 28,
     R"(Unable to find mandatory property:"type" at "dataOutline[0]:Speed/dataType".)"},
    {"TypeNoString", {{"/3/dataType/type", "0"}}, 43,
     R"(Invalid "type" type, expected type:JSON String at "dataOutline[3]:Track/dataType".)"},

    {"NumberPropertiesOfStaticMissing", {{"/0/dataType/numberStringProperties", nullptr}}, 28,
     R"(Unable to find mandatory property:"numberStringProperties" at "dataOutline[0]:Speed/dataType".)"},
    {"NumberPropertiesOfDynamicMissing", {{"/3/dataType/numberStringProperties", nullptr}}, 28,
     R"(Unable to find mandatory property:"numberStringProperties" at "dataOutline[3]:Track/dataType".)"},
    {"NumberPropertiesNoObject", {{"/0/dataType/numberStringProperties", "[1]"}}, 43,
     R"(Invalid "numberStringProperties" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType".)"},
    {"PatternMissing", {{"/0/dataType/numberStringProperties/pattern", nullptr}}, 28,
     R"(Unable to find mandatory property:"pattern" at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"PatternNoObject", {{"/0/dataType/numberStringProperties/pattern", "1"}}, 43,
     R"(Invalid "pattern" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"IsSignedMissing", {{"/0/dataType/numberStringProperties/pattern/isSigned", nullptr}}, 28,
     R"(Unable to find mandatory property:"isSigned" at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
    {"IsSignedNoBoolean", {{"/0/dataType/numberStringProperties/pattern/isSigned", "1"}}, 43,
     R"(Invalid "isSigned" type, expected type:JSON Boolean at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
    {"DigitsIntegerMissing", {{"/0/dataType/numberStringProperties/pattern/digitsInteger", nullptr}}, 28,
     R"(Unable to find mandatory property:"digitsInteger" at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
    {"DigitsIntegerNoNumber", {{"/0/dataType/numberStringProperties/pattern/digitsInteger", R"("3")"}}, 43,
     R"(Invalid "digitsInteger" type, expected type:JSON Number at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
    {"DigitsDecimalMissing", {{"/0/dataType/numberStringProperties/pattern/digitsDecimal", nullptr}}, 28,
     R"(Unable to find mandatory property:"digitsDecimal" at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
    {"DigitsDecimalNoNumber", {{"/0/dataType/numberStringProperties/pattern/digitsDecimal", "true"}}, 43,
     R"(Invalid "digitsDecimal" type, expected type:JSON Number at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},

    // "range" has no piece of its own in the path.
    {"RangeMissing", {{"/0/dataType/numberStringProperties/range", nullptr}}, 28,
     R"(Unable to find mandatory property:"range" at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"RangeNoObject", {{"/0/dataType/numberStringProperties/range", "[1,2]"}}, 43,
     R"(Invalid "range" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"OccurringMissing", {{"/0/dataType/numberStringProperties/range/occurring", nullptr}}, 28,
     R"(Unable to find mandatory property:"occurring" at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"OccurringNoObject", {{"/0/dataType/numberStringProperties/range/occurring", "1"}}, 43,
     R"(Invalid "occurring" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"BadOccurringIsNotSavedByOtherSpelling",
     {{"/0/dataType/numberStringProperties/range/occurring", "1"},
      {"/0/dataType/numberStringProperties/range/occuring", R"({"min":1,"max":2})"}}, 43,
     R"(Invalid "occurring" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"OccurringInOtherSpellingNoObject",
     {{"/0/dataType/numberStringProperties/range/occurring", nullptr},
      {"/0/dataType/numberStringProperties/range/occuring", "1"}}, 43,
     R"(Invalid "occuring" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"MinOfOccurringMissing", {{"/0/dataType/numberStringProperties/range/occurring/min", nullptr}}, 28,
     R"(Unable to find mandatory property:"min" at "dataOutline[0]:Speed/dataType/numberStringProperties/occurring".)"},
    {"MaxOfOccurringInOtherSpellingNoNumber",
     {{"/0/dataType/numberStringProperties/range/occurring", nullptr},
      {"/0/dataType/numberStringProperties/range/occuring", R"({"min":1,"max":"2"})"}}, 43,
     R"(Invalid "max" type, expected type:JSON Number at "dataOutline[0]:Speed/dataType/numberStringProperties/occuring".)"},
    {"LegalMissing", {{"/0/dataType/numberStringProperties/range/legal", nullptr}}, 28,
     R"(Unable to find mandatory property:"legal" at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"LegalNoObject", {{"/0/dataType/numberStringProperties/range/legal", "false"}}, 43,
     R"(Invalid "legal" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"MinOfLegalNoNumber", {{"/0/dataType/numberStringProperties/range/legal/min", R"("0")"}}, 43,
     R"(Invalid "min" type, expected type:JSON Number at "dataOutline[0]:Speed/dataType/numberStringProperties/legal".)"},
    {"MaxOfLegalMissing", {{"/0/dataType/numberStringProperties/range/legal/max", nullptr}}, 28,
     R"(Unable to find mandatory property:"max" at "dataOutline[0]:Speed/dataType/numberStringProperties/legal".)"},

    {"TextPropertiesOfStaticMissing", {{"/1/dataType/paddedStringProperties", nullptr}}, 28,
     R"(Unable to find mandatory property:"paddedStringProperties" at "dataOutline[1]:Note/dataType".)"},
    {"TextPropertiesOfDynamicNoObject", {{"/4/dataType/paddedStringProperties", R"("x")"}}, 43,
     R"(Invalid "paddedStringProperties" type, expected type:JSON Object at "dataOutline[4]:Marks/dataType".)"},
    {"MaxLenMissing", {{"/1/dataType/paddedStringProperties/maxLen", nullptr}}, 28,
     R"(Unable to find mandatory property:"maxLen" at "dataOutline[1]:Note/dataType/paddedStringProperties".)"},
    {"MaxLenNoNumber", {{"/1/dataType/paddedStringProperties/maxLen", "true"}}, 43,
     R"(Invalid "maxLen" type, expected type:JSON Number at "dataOutline[1]:Note/dataType/paddedStringProperties".)"},
    {"MaxDigitsInStrLengthMissing", {{"/1/dataType/paddedStringProperties/maxDigitsInStrLength", nullptr}}, 28,
     R"(Unable to find mandatory property:"maxDigitsInStrLength" at "dataOutline[1]:Note/dataType/paddedStringProperties".)"},
    {"MaxDigitsInStrLengthNoNumber", {{"/4/dataType/paddedStringProperties/maxDigitsInStrLength", R"("1")"}}, 43,
     R"(Invalid "maxDigitsInStrLength" type, expected type:JSON Number at "dataOutline[4]:Marks/dataType/paddedStringProperties".)"},
    {"EventMarkerMissing", {{"/1/dataType/paddedStringProperties/eventMarkerB", nullptr}}, 28,
     R"(Unable to find mandatory property:"eventMarkerB" at "dataOutline[1]:Note/dataType/paddedStringProperties".)"},
    {"EventMarkerNoBoolean", {{"/1/dataType/paddedStringProperties/eventMarkerB", "0"}}, 43,
     R"(Invalid "eventMarkerB" type, expected type:JSON Boolean at "dataOutline[1]:Note/dataType/paddedStringProperties".)"},

    {"ArrayPropertiesOfStaticMissing", {{"/2/dataType/numberArrayProperties", nullptr}}, 28,
     R"(Unable to find mandatory property:"numberArrayProperties" at "dataOutline[2]:Point/dataType".)"},
    {"ArrayPropertiesOfDynamicNoObject", {{"/5/dataType/numberArrayProperties", "1"}}, 43,
     R"(Invalid "numberArrayProperties" type, expected type:JSON Object at "dataOutline[5]:Hand/dataType".)"},
    {"PatternOfArrayMissing", {{"/2/dataType/numberArrayProperties/pattern", nullptr}}, 28,
     R"(Unable to find mandatory property:"pattern" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"DigitsOfArrayNoNumber", {{"/5/dataType/numberArrayProperties/pattern/digitsDecimal", R"("1")"}}, 43,
     R"(Invalid "digitsDecimal" type, expected type:JSON Number at "dataOutline[5]:Hand/dataType/numberArrayProperties/pattern".)"},
    {"ArraySizeMissing", {{"/2/dataType/numberArrayProperties/arraySize", nullptr}}, 28,
     R"(Unable to find mandatory property:"arraySize" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"ArraySizeNoNumber", {{"/2/dataType/numberArrayProperties/arraySize", R"("2")"}}, 43,
     R"(Invalid "arraySize" type, expected type:JSON Number at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"ArrayDisplayNamesMissing", {{"/2/dataType/numberArrayProperties/arrayDisplayNames", nullptr}}, 28,
     R"(Unable to find mandatory property:"arrayDisplayNames" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"ArrayDisplayNamesNoArray", {{"/2/dataType/numberArrayProperties/arrayDisplayNames", R"("X")"}}, 43,
     R"(Invalid "arrayDisplayNames" type, expected type:JSON Array at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"ArrayDisplayNamesEmpty", {{"/2/dataType/numberArrayProperties/arrayDisplayNames", "[]"}}, 47,
     R"(Invalid "arrayDisplayNames", expected atleast 1 array item, found 0 at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"ArrayDisplayNameNoString", {{"/2/dataType/numberArrayProperties/arrayDisplayNames/1", "1"}}, 43,
     R"(Invalid "arrayDisplayNames" type, expected type:JSON String at "dataOutline[2]:Point/dataType/numberArrayProperties/["arrayDisplayNames"][1]".)"},
    {"ArrayRangesMissing", {{"/2/dataType/numberArrayProperties/arrayRanges", nullptr}}, 28,
     R"(Unable to find mandatory property:"arrayRanges" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"ArrayRangesNoObject", {{"/2/dataType/numberArrayProperties/arrayRanges", "[1]"}}, 43,
     R"(Invalid "arrayRanges" type, expected type:JSON Object at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"RangesMissing", {{"/2/dataType/numberArrayProperties/arrayRanges/ranges", nullptr}}, 28,
     R"(Unable to find mandatory property:"ranges" at "dataOutline[2]:Point/dataType/numberArrayProperties/arrayRanges".)"},
    {"RangesNoArray", {{"/2/dataType/numberArrayProperties/arrayRanges/ranges", "{}"}}, 43,
     R"(Invalid "ranges" type, expected type:JSON Array at "dataOutline[2]:Point/dataType/numberArrayProperties/arrayRanges".)"},
    {"RangesEmpty", {{"/2/dataType/numberArrayProperties/arrayRanges/ranges", "[]"}}, 47,
     R"(Invalid "ranges", expected atleast 1 array item, found 0 at "dataOutline[2]:Point/dataType/numberArrayProperties/arrayRanges".)"},
    {"RangeOfArrayNoObject", {{"/2/dataType/numberArrayProperties/arrayRanges/ranges/0", "1"}}, 43,
     R"(Invalid "ranges" type, expected type:JSON Object at "dataOutline[2]:Point/dataType/numberArrayProperties/arrayRanges/ranges[0]".)"},
    {"OccurringOfArrayMissing", {{"/2/dataType/numberArrayProperties/arrayRanges/ranges/1/occurring", nullptr}}, 28,
     R"(Unable to find mandatory property:"occurring" at "dataOutline[2]:Point/dataType/numberArrayProperties/arrayRanges/ranges[1]".)"},
    {"MaxOfArrayNoNumber", {{"/5/dataType/numberArrayProperties/arrayRanges/ranges/1/legal/max", R"("9")"}}, 43,
     R"(Invalid "max" type, expected type:JSON Number at "dataOutline[5]:Hand/dataType/numberArrayProperties/arrayRanges/ranges[1]/legal".)"},
    {"IsPointNoBoolean", {{"/2/dataType/numberArrayProperties/isPoint", "1"}}, 43,
     R"(Invalid "isPoint" type, expected type:JSON Boolean at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},

    {"ValueMissing", {{"/0/value", nullptr}}, 28,
     R"(Unable to find mandatory property:"value" at "dataOutline[0]:Speed".)"},
    {"ValueOfArrayNoArray", {{"/2/value", "1"}}, 43,
     R"(Invalid "value" type, expected type:JSON Array at "dataOutline[2]:Point".)"},
    {"ValueOfArrayEmpty", {{"/2/value", "[]"}}, 47,
     R"(Invalid "value", expected atleast 1 array item, found 0 at "dataOutline[2]:Point".)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(DataTypes, BothVersionsRefuse,
                         testing::Combine(testing::Values(1, 2), testing::ValuesIn(kRefusedDataTypes)),
                         NameOfVersionedRow());

// clang-format off
// Two faults at once: the first check in the order of the rules speaks.
RefusedOutline const kRefusedInOrder[] = {
    {"ElementBeforeElement", {{"/0/value", nullptr}, {"/1", "5"}}, 28,
     R"(Unable to find mandatory property:"value" at "dataOutline[0]:Speed".)"},
    {"GroupBeforeItsChildren", {{"/6/matchName", R"("1")"}, {"/6/children/0", "5"}}, 42,
     R"(Invalid "matchName" at "dataOutline[6]:Body". Not following TDJSON guidelines.)"},
    {"DisplayNameBeforeMatchName", {{"/0/displayName", nullptr}, {"/0/matchName", nullptr}}, 28,
     R"(Unable to find mandatory property:"displayName" at "dataOutline[0]".)"},
    {"MatchNameBeforeDataTypeOfStatic", {{"/0/matchName", R"("1")"}, {"/0/dataType", nullptr}}, 42,
     R"(Invalid "matchName" at "dataOutline[0]:Speed". Not following TDJSON guidelines.)"},
    {"MatchNameBeforeDataTypeOfDynamic", {{"/3/matchName", R"("1")"}, {"/3/dataType", nullptr}}, 42,
     R"(Invalid "matchName" at "dataOutline[3]:Track". Not following TDJSON guidelines.)"},
    {"DataTypeBeforeValue", {{"/0/dataType", nullptr}, {"/0/value", nullptr}}, 28,
     R"(Unable to find mandatory property:"dataType" at "dataOutline[0]:Speed".)"},
    {"DataTypeBeforeSampleSetID", {{"/3/dataType", nullptr}, {"/3/sampleSetID", nullptr}}, 28,
     R"(Unable to find mandatory property:"dataType" at "dataOutline[3]:Track".)"},
    {"SampleSetIDBeforeInterpolation", {{"/3/sampleSetID", nullptr}, {"/3/interpolation", nullptr}}, 28,
     R"(Unable to find mandatory property:"sampleSetID" at "dataOutline[3]:Track".)"},
    {"InterpolationBeforeFrequency", {{"/3/interpolation", nullptr}, {"/3/hasExpectedFrequencyB", nullptr}}, 28,
     R"(Unable to find mandatory property:"interpolation" at "dataOutline[3]:Track".)"},
    {"FrequencyBeforeSampleCount", {{"/3/hasExpectedFrequencyB", nullptr}, {"/3/sampleCount", nullptr}}, 28,
     R"(Unable to find mandatory property:"hasExpectedFrequencyB" at "dataOutline[3]:Track".)"},
    {"SampleCountBeforeDuration", {{"/3/sampleCount", nullptr}, {"/3/expectedMaxInterSampleDuration", "1"}}, 28,
     R"(Unable to find mandatory property:"sampleCount" at "dataOutline[3]:Track".)"},
    {"SignBeforeDigits",
     {{"/0/dataType/numberStringProperties/pattern/isSigned", nullptr},
      {"/0/dataType/numberStringProperties/pattern/digitsInteger", nullptr}}, 28,
     R"(Unable to find mandatory property:"isSigned" at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
    {"IntegerBeforeDecimalDigits",
     {{"/0/dataType/numberStringProperties/pattern/digitsInteger", nullptr},
      {"/0/dataType/numberStringProperties/pattern/digitsDecimal", nullptr}}, 28,
     R"(Unable to find mandatory property:"digitsInteger" at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
    {"PatternBeforeRange",
     {{"/0/dataType/numberStringProperties/pattern", nullptr},
      {"/0/dataType/numberStringProperties/range", nullptr}}, 28,
     R"(Unable to find mandatory property:"pattern" at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
    {"OccurringBeforeLegal",
     {{"/0/dataType/numberStringProperties/range/occurring/max", nullptr},
      {"/0/dataType/numberStringProperties/range/legal", nullptr}}, 28,
     R"(Unable to find mandatory property:"max" at "dataOutline[0]:Speed/dataType/numberStringProperties/occurring".)"},
    {"MinBeforeMax", {{"/0/dataType/numberStringProperties/range/legal", R"({"other":1})"}}, 28,
     R"(Unable to find mandatory property:"min" at "dataOutline[0]:Speed/dataType/numberStringProperties/legal".)"},
    {"MaxLenBeforeMaxDigits", {{"/1/dataType/paddedStringProperties", R"({"eventMarkerB":1})"}}, 28,
     R"(Unable to find mandatory property:"maxLen" at "dataOutline[1]:Note/dataType/paddedStringProperties".)"},
    {"MaxDigitsBeforeEventMarker", {{"/1/dataType/paddedStringProperties", R"({"maxLen":1})"}}, 28,
     R"(Unable to find mandatory property:"maxDigitsInStrLength" at "dataOutline[1]:Note/dataType/paddedStringProperties".)"},
    {"PatternBeforeArraySize", {{"/2/dataType/numberArrayProperties", R"({"isPoint":1})"}}, 28,
     R"(Unable to find mandatory property:"pattern" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"ArraySizeBeforeDisplayNames",
     {{"/2/dataType/numberArrayProperties/arraySize", nullptr},
      {"/2/dataType/numberArrayProperties/arrayDisplayNames", nullptr}}, 28,
     R"(Unable to find mandatory property:"arraySize" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"DisplayNamesBeforeRanges",
     {{"/2/dataType/numberArrayProperties/arrayDisplayNames", nullptr},
      {"/2/dataType/numberArrayProperties/arrayRanges", nullptr}}, 28,
     R"(Unable to find mandatory property:"arrayDisplayNames" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
    {"RangesBeforeIsPoint",
     {{"/2/dataType/numberArrayProperties/arrayRanges", nullptr},
      {"/2/dataType/numberArrayProperties/isPoint", "1"}}, 28,
     R"(Unable to find mandatory property:"arrayRanges" at "dataOutline[2]:Point/dataType/numberArrayProperties".)"},
};
// clang-format on

INSTANTIATE_TEST_SUITE_P(Order, BothVersionsRefuse,
                         testing::Combine(testing::Values(1, 2), testing::ValuesIn(kRefusedInOrder)),
                         NameOfVersionedRow());

}  // namespace
}  // namespace SK_NAMESPACE_INT
