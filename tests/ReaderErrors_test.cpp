// Every error that a data file can cause, as a host sees it: one report, with its code, its whole message
// and its place.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <filesystem>

#include "Edit.h"
#include "RecordingHost.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

using ns_sensor::ISensorFileHandler;

class ReaderErrors : public testing::Test {
 protected:
  ReportedError ErrorOfOpening(std::string const& content) {
    EXPECT_EQ(mHost.Open(mFolder.Write("bad.tdjson", content)), nullptr);
    EXPECT_EQ(mFolder.TempNames(), "");
    return mHost.TakeError();
  }

  TempFolder mFolder;
  RecordingHost mHost;
};

/// Where the error lies: so many bytes behind the begin of a text in the bad file.
struct Place {
  char const* text = nullptr;  // null: the error has no place
  std::int64_t behind = 0;
};

struct BadEdit {
  char const* name;
  Edit edit;
  std::int32_t code;
  std::string message;
  Place place = {};
};

void PrintTo(BadEdit const& row, std::ostream* out) {
  *out << row.name;
}

std::int64_t OffsetOf(Place const& place, std::string const& content) {
  if (place.text == nullptr) {
    return -1;
  }
  std::string::size_type const at = content.find(place.text);
  EXPECT_NE(at, std::string::npos) << place.text;
  return static_cast<std::int64_t>(at) + place.behind;
}

class BadFileText : public ReaderErrors, public testing::WithParamInterface<BadEdit> {};

TEST_P(BadFileText, IsOneErrorWithItsPlace) {
  BadEdit const& row = GetParam();
  std::string const content = row.edit.Text();
  EXPECT_EQ(ErrorOfOpening(content), (ReportedError{row.code, row.message, OffsetOf(row.place, content), -1}));
}

std::string NameOfRow(testing::TestParamInfo<BadEdit> const& row) {
  return row.param.name;
}

/// A place below the first node, as messages show it.
std::string AtChild(std::string const& path) {
  return "\"dataOutline[0]:Arm/children" + path + '"';
}

BadEdit const kJsonErrors[] = {
    {"KeyWithoutQuotes",
     {kSmallVersion2, "\"creator\"", "creator\""},
     32,
     "Unable to find enclosing quotes for Tdjson key.",
     {"creator\""}},
    {"KeyOfANodeWithoutQuotes",
     {kSmallVersion2, "\"objectType\"", "objectType\""},
     32,
     "Unable to find enclosing quotes for Tdjson key.",
     {"objectType\""}},
    {"CommaBeforeTheBrace",
     {kSmallVersion2, "\"scale\":1}", "\"scale\":1,}"},
     32,
     "Unable to find enclosing quotes for Tdjson key.",
     {"\"scale\":1,}", 10}},
    {"ColonMissing",
     {kSmallVersion2, "\"creator\":", "\"creator\" "},
     32,
     "Unable to find Colon(:) in between key and value for property:\"creator\".",
     {"\"by hand\""}},
    {"ColonMissingInANode",
     {kSmallVersion2, "\"interpolation\":", "\"interpolation\" "},
     32,
     "Unable to find Colon(:) in between key and value for property:\"interpolation\".",
     {"\"linear\""}},
    {"TextWithoutOpeningQuote",
     {kSmallVersion2, "\"by hand\"", "by hand\""},
     32,
     "Unable to find enclosing quotes for property value:\"creator\".",
     {"by hand"}},
    {"TextWithoutClosingQuote",
     {kSmallVersion2, "\"by hand\"", "\"by hand"},
     32,
     "Unable to find enclosing quotes for property value:\"creator\".",
     {"\"by hand,\n", 9}},
    {"TextOfANodeWithoutClosingQuote",
     {kSmallVersion2, "{\"fileName\":\"a.mov\"", "{\"fileName\":\"a.mov\n\""},
     32,
     "Unable to find enclosing quotes for property value:\"dynamicDataInfo::videoSyncTimeList[0]::fileName\".",
     {"a.mov\n", 5}},
    {"FlagThatIsNone",
     {kSmallVersion2, "\"dynamicSamplesPresentB\":true", "\"dynamicSamplesPresentB\":trve"},
     32,
     "Invalid \"dynamicSamplesPresentB\" type, expected type:JSON Boolean.",
     {"trve"}},
    {"NumberThatIsNone",
     {kSmallVersion2, "42.5", "null"},
     32,
     "Invalid \"dataOutline[0]::children[0]::value\" type, expected type:JSON Number.",
     {"null"}},
    {"EmptyArrayIsABadNumber",
     {kSmallVersion2, "[\"X\",\"Y\"]", "[]"},
     32,
     "Invalid \"dataOutline[0]::children[2]::dataType::numberArrayProperties::arrayDisplayNames[0]\" type, expected "
     "type:JSON Number.",
     {"[]", 1}},
    {"EmptyObjectIsAKeyWithoutQuotes",
     {kSmallVersion2, "{\"min\":0,\"max\":50}", "{}"},
     32,
     "Unable to find enclosing quotes for Tdjson key.",
     {"{}", 1}},
    {"ObjectThatIsNone",
     {kSmallVersion2, "\"dynamicDataInfo\":{", "\"dynamicDataInfo\":5{"},
     32,
     "Invalid \"dynamicDataInfo\" type, expected type:JSON Object.",
     {"5{"}},
    {"ArrayThatIsNone",
     {kSmallVersion2, "\"dataOutline\":[", "\"dataOutline\":5["},
     32,
     "Invalid \"dataOutline\" type, expected type:JSON Array.",
     {"5["}},
    {"CommaMissingInANode",
     {kSmallVersion2, "\"digitsInteger\":2,", "\"digitsInteger\":2 "},
     32,
     "Unable to find Comma or Closing bracket after "
     "property:\"dataOutline[0]::children[0]::dataType::numberStringProperties::pattern::digitsInteger\".",
     {"\"digitsDecimal\":1"}},
    {"CommaMissingInAnArray",
     {kSmallVersion2, "[1,-2.5,0.25]", "[1,-2.5;0.25]"},
     32,
     "Unable to find Comma or Closing bracket after property:\"dataOutline[0]::children[2]::value[1]\".",
     {";0.25"}},
    {"CommaMissing",
     {kSmallVersion2, "B\":true,\n\"dynamicDataInfo", "B\":true\n\"dynamicDataInfo"},
     32,
     "Unable to find Comma or Closing bracket after property:\"dynamicSamplesPresentB\".",
     {"\"dynamicDataInfo\""}},
    {"FractionMissing", {kSmallVersion2, "42.5", "42."}, 32, "Missing fraction part in number", {"42.", 3}},
    {"ExponentMissing", {kSmallVersion2, "42.5", "42e5"}, 32, "Miss exponent in number", {"42e5", 4}},
    {"ExponentTooBig", {kSmallVersion2, "42.5", "1e+999"}, 32, "Number too big to be stored in double.", {"1e+999", 6}},
    {"UnknownKey",
     {kSmallVersion2, "\"creator\"", "\"Creator\""},
     32,
     "Invalid TDJSON key : \"Creator\".",
     {"\"by hand\""}},
    {"BytesBehindTheFile", {kSmallVersion2, "]}]}]}", "]}]}]} ]"}, 32, "Parsing error:, Invalid JSON.", {"]} ]", 3}},
};

INSTANTIATE_TEST_SUITE_P(Json, BadFileText, testing::ValuesIn(kJsonErrors), NameOfRow);

BadEdit const kOutlineErrors[] = {
    {"ObjectTypeMissing",
     {kSmallVersion2, "\"objectType\":\"dataGroup\",", ""},
     28,
     "Unable to find mandatory property:\"objectType\" at \"dataOutline[0]\"."},
    {"DisplayNameMissing",
     {kSmallVersion2, "\"displayName\":\"Version\",", ""},
     28,
     "Unable to find mandatory property:\"displayName\" at \"dataOutline[1]\"."},
    {"ValueMissing",
     {kSmallVersion2, ",\"value\":true", ""},
     28,
     "Unable to find mandatory property:\"value\" at " + AtChild("[3]:Present") + "."},
    {"BothSpellingsMissing",
     {kSmallVersion2, "\"hasExpectedFrequencyB\":true,", ""},
     28,
     "Unable to find mandatory property:\"hasExpectedFrequencyB\" at " + AtChild("[4]:Angle") + "."},
    {"BothSpellingsOfTheRangeMissing",
     {kSmallVersion2, "\"occurring\":{\"min\":0,\"max\":50}", "\"happening\":{\"min\":0,\"max\":50}"},
     28,
     "Unable to find mandatory property:\"occurring\" at " + AtChild("[0]:Length/dataType/numberStringProperties") +
         "."},
    {"RateWithoutScale",
     {kSmallVersion2, "{\"value\":30,\"scale\":1}", "{\"value\":30}"},
     28,
     "Unable to find mandatory property:\"scale\" at \"timecodeInfo::frameRate\"."},
    {"NodeThatIsNoObject",
     {kSmallVersion2, "\"dataOutline\":[", "\"dataOutline\":[5,"},
     43,
     "Invalid \"dataOutline\" type, expected type:JSON Object at \"dataOutline[0]\"."},
    {"DataTypeThatIsNoObject",
     {kSmallVersion2, "{\"type\":\"boolean\"}", "5"},
     43,
     "Invalid \"dataType\" type, expected type:JSON Object at " + AtChild("[3]:Present") + "."},
    {"NamesThatAreNoArray",
     {kSmallVersion2, "[\"X\",\"Y\"]", "\"X\""},
     43,
     "Invalid \"arrayDisplayNames\" type, expected type:JSON Array at " +
         AtChild("[2]:Offset/dataType/numberArrayProperties") + "."},
    {"NameThatIsNoText",
     {kSmallVersion2, "[\"X\",\"Y\"]", "[\"X\",5]"},
     43,
     "Invalid \"arrayDisplayNames\" type, expected type:JSON String at \"dataOutline[0]:Arm/children[2]:Offset/"
     "dataType/numberArrayProperties/[\"arrayDisplayNames\"][1]\"."},
    {"ValueThatIsNoNumber",
     {kSmallVersion2, "42.5", "\"42.5\""},
     43,
     "Invalid \"value\" type, expected type:JSON Number at " + AtChild("[0]:Length") + "."},
    {"SignThatIsNoFlag",
     {kSmallVersion2, "\"isSigned\":false", "\"isSigned\":0"},
     43,
     "Invalid \"isSigned\" type, expected type:JSON Boolean at " +
         AtChild("[0]:Length/dataType/numberStringProperties/pattern") + "."},
    {"GmtThatIsNoFlag",
     {kSmallVersion1, "\"isGMT\":true", "\"isGMT\":1"},
     43,
     "Invalid \"isGMT\" type, expected type:JSON Boolean at \"utcInfo\"."},
    {"UnknownObjectType",
     {kSmallVersion2, "\"dataGroup\"", "\"dataTree\""},
     44,
     "Invalid value for \"objectType\" at \"dataOutline[0]\", expected:one of \"dataStatic\", \"dataDynamic\" or "
     "\"dataGroup\"."},
    {"UnknownInterpolation",
     {kSmallVersion2, "\"linear\"", "\"cubic\""},
     44,
     "Invalid value for \"interpolation\" at " + AtChild("[4]:Angle") + ", expected:one of \"linear\" or \"hold\"."},
    {"UnknownStaticType",
     {kSmallVersion2, "\"boolean\"", "\"flag\""},
     44,
     "Invalid value for \"type\" at " + AtChild("[3]:Present/dataType") +
         ", expected:one of \"number\", \"string\" , "
         "\"boolean\" or \"numberArray\"."},
    {"UnknownDynamicType",
     {kSmallVersion2, "\"numberStringArray\"", "\"numberArray\""},
     44,
     "Invalid value for \"type\" at " + AtChild("[5]:Position/dataType") +
         ", expected:one of \"numberString\", "
         "\"paddedString\" or \"numberStringArray\".."},
    {"UnknownTypeOfVersion1",
     {kSmallVersion1, "\"paddedString\"", "\"string\""},
     44,
     "Invalid value for \"type\" at \"dataOutline[1]:Title/dataType\", expected:one of \"numberString\", "
     "\"paddedString\" or \"numberArray\"."},
    {"TimeInfoNotFirst",
     {kSmallVersion2, "{\"useTimecodeB\":true,", "{\"utcInfo\":1,\"useTimecodeB\":true,"},
     44,
     "First property of \"dynamicDataInfo\" must be \"useTimecodeB\", found \"utcInfo\"."},
    {"SyncTimeTwice",
     {kSmallVersion2, "\"frameNumber\":12", "\"frameNumber\":12,\"timeString\":\"00:00:01:00\""},
     44,
     "Invalid \"videoSyncTimeList\", only one of \"timeString\" or \"frameNumber\" can be present at "
     "\"videoSyncTimeList[1]\"."},
    {"SyncTimeMissing",
     {kSmallVersion2, ",\"frameNumber\":12", ""},
     44,
     "Invalid \"videoSyncTimeList\", one of \"timeString\" or \"frameNumber\" must be present at "
     "\"videoSyncTimeList[1]\"."},
    {"MatchNameWithDigitFirst",
     {kSmallVersion2, "\"matchName\":\"arm\"", "\"matchName\":\"1arm\""},
     42,
     "Invalid \"matchName\" at \"dataOutline[0]:Arm\". Not following TDJSON guidelines."},
    {"MatchNameTwice",
     {kSmallVersion2, "\"matchName\":\"version\"", "\"matchName\":\"angle\""},
     40,
     "Duplicate MatchName:\"angle\" at \"dataOutline[1]:Version\". MatchName must be unique for every node in "
     "\"dataOutline\"."},
    {"DropFrameRate",
     {kSmallVersion2, "\"dropFrame\":false", "\"dropFrame\":true"},
     41,
     "Only 29.97 and 59.94 drop frame rate supported."},
    {"SampleIdTwice",
     {kSmallVersion1, "\"sampleSetID\":\"tr\",\"interpolation\"", "\"sampleSetID\":\"lv\",\"interpolation\""},
     37,
     "Duplicate sample id found. Sample Id:\"lv\" is assigned to more than one dynamic node in data outline."},
};

INSTANTIATE_TEST_SUITE_P(Outline, BadFileText, testing::ValuesIn(kOutlineErrors), NameOfRow);

// What is wrong in the samples has no place: the text that is read there is not the input.
BadEdit const kSectionErrors[] = {
    {"SectionThatIsNoArray",
     {kSmallVersion2, "\"dataDynamicSamples\":[", "\"dataDynamicSamples\":5["},
     43,
     "Invalid \"dataDynamicSamples\" type, expected type:JSON Array.",
     {"5["}},
    {"SetThatIsNoObject",
     {kSmallVersion2, "{\"sampleSetID\":\"n1\"", "5{\"sampleSetID\":\"n1\""},
     32,
     "Parsing error:\"dataDynamicSamples\", Invalid JSON Object."},
    {"IdMissing",
     {kSmallVersion2, "{\"sampleSetID\":\"n1\"", "{\"sampleSetId\":\"n1\""},
     32,
     "Unable to find mandatory properties : \"sampleSetID\"."},
    {"SamplesMissingAreToldAsTheId",
     {kSmallVersion2, "\"n1\",\"samples\"", "\"n1\",\"sample\""},
     32,
     "Unable to find mandatory properties : \"sampleSetID\"."},
    {"ColonMissingInASet",
     {kSmallVersion2, "{\"sampleSetID\":\"n1\"", "{\"sampleSetID\";\"n1\""},
     32,
     "Unable to find Colon(:) in between key and value for property:\"sampleSetID\"."},
    {"IdThatIsNoText",
     {kSmallVersion2, "{\"sampleSetID\":\"n1\"", "{\"sampleSetID\":1"},
     32,
     "Unable to find enclosing quotes for property value:\"sampleSetID\"."},
    {"IdWithoutNode",
     {kSmallVersion2, "{\"sampleSetID\":\"n1\"", "{\"sampleSetID\":\"zz\""},
     49,
     "No dynamic data node is present in data outline with sample id:\"zz\"."},
    {"CommaMissingBehindTheId",
     {kSmallVersion2, "\"n1\",\"samples\"", "\"n1\";\"samples\""},
     32,
     "Unable to find Comma or Closing bracket after property:\"sampleSetID\"."},
    {"SamplesThatAreNoArray",
     {kSmallVersion2, "\"n1\",\"samples\":[", "\"n1\",\"samples\":5["},
     43,
     "Unable to find [, Invalid \"samples\" property, expected type : JSON Array in dynamic set with sample "
     "id:\"n1\"."},
    {"SamplesOfAnotherWidth",
     {kSmallVersion2, "\"a b   \"", "\"a b    \""},
     39,
     "Invalid sample set data for sample id:\"n1\". Either information in dataOutline is incorrect or sample set data "
     "is malformed."},
    {"SetWithAnotherMember",
     {kSmallVersion2, "\"      \"}}]},", "\"      \"}}],\"more\":1},"},
     43,
     "Invalid array item at index 2 for property \"dataDynamicSamples\", expected type : JSON Object."},
    {"CommaMissingBehindASet",
     {kSmallVersion2, "\"+99.5\"}]},", "\"+99.5\"}]};"},
     32,
     "Unable to find Comma or Closing bracket after property:\"dataDynamicSamples\"."},
    {"CommaBehindTheLastSet",
     {kSmallVersion2, "[\"9.50\",\"0.25\"]}]}]}", "[\"9.50\",\"0.25\"]}]},]}"},
     32,
     "Parsing error:\"dataDynamicSamples\", Invalid JSON Object."},
    {"FirstTimeMissing",
     {kSmallVersion2, "{\"time\":\"00:00:00:00\"", "{\"timE\":\"00:00:00:00\""},
     39,
     "Unable to find mandatory property:\"time\" at \"sampleSetID:a1/sample[0]\"."},
    {"FirstTimeOfAnotherLength",
     {kSmallVersion2, "{\"time\":\"00:00:00:00\",\"value\":\"+", "{\"time\":\"00:00:00:0\",\"value\":\"++"},
     39,
     "Invalid time value for :\"sampleSetID:a1/sample[0]\"."},
    {"LastTimeGoesByTheCount",
     {kSmallVersion2, "{\"time\":\"00:00:01:00\",\"value\":\"+", "{\"time\":\"00:00:01:0\",\"value\":\"++"},
     39,
     "Invalid time value for :\"sampleSetID:a1/sample[4]\"."},
    {"LastTimeThatIsNoText",
     {kSmallVersion2, "\"00:00:01:00\",\"value\"", "1234567890123,\"value\""},
     39,
     "Invalid time value for :\"sampleSetID:a1/sample[4]\"."},
    {"ColonMissingInTheFirstSample",
     {kSmallVersion2, "{\"time\":\"00:00:00:00\"", "{\"time\";\"00:00:00:00\""},
     32,
     "Unable to find Colon(:) in between key and value for property:\"time\"."},
};

INSTANTIATE_TEST_SUITE_P(Section, BadFileText, testing::ValuesIn(kSectionErrors), NameOfRow);

struct BadContent {
  char const* name;
  std::string content;
  ReportedError error;
};

void PrintTo(BadContent const& row, std::ostream* out) {
  *out << row.name;
}

class BadTopLevel : public ReaderErrors, public testing::WithParamInterface<BadContent> {};

TEST_P(BadTopLevel, IsOneErrorWithItsPlace) {
  EXPECT_EQ(ErrorOfOpening(GetParam().content), GetParam().error);
}

std::string const kV2 = R"({"version":"tdjson2.0.0")";  // 24 bytes
std::string const kOneNode =
    R"(,"dataOutline":[{"objectType":"dataStatic","displayName":"A","matchName":"a","dataType":{"type":"boolean"},)"
    R"("value":true}])";
std::string const kUtc = R"({"precisionLength":0,"isGMT":true})";
std::string const kTimecode = R"({"frameRate":{"value":30,"scale":1},"dropFrame":false})";

char const kNeedsTimecode[] = "\"timecodeInfo\" can be present if and only if \"useTimecodeB\" is set to true.";
char const kNeedsUtc[] = "\"utcInfo\" can be present if and only if \"useTimecodeB\" is set to false.";

std::string NotATopLevelKey(std::string const& key) {
  return "Invalid top level property. \"" + key +
         "\" not defined as a top level property in TDJSON schema version "
         "2.0.0.";
}

// Places are those of the values.
BadContent const kTopLevelErrors[] = {
    {"CutBehindAValue", kV2, {32, "Parsing error:\"version\", Invalid JSON.", 24, -1}},
    {"CutBehindAComma", kV2 + ",", {32, "Parsing error:, Invalid JSON.", 25, -1}},
    {"CutBehindABlank", kV2 + ", ", {32, "Unable to find enclosing quotes for Tdjson key.", 26, -1}},
    {"KeysOfVersion2Missing",
     kV2 + "}",
     {32, "Unable to find mandatory properties : \"dataOutline\",\"dynamicSamplesPresentB\".", -1, -1}},
    {"InfoOfVersion2Missing",
     kV2 + R"(,"dynamicSamplesPresentB":true)" + kOneNode + "}",
     {32, "Unable to find mandatory properties : \"dynamicDataInfo\".", -1, -1}},
    {"KeysOfVersion1Missing",
     R"({"creator":"x"})",
     {32, "Unable to find mandatory properties : \"useTimecodeB\",\"dataOutline\".", -1, -1}},
    {"UtcOfVersion1Missing",
     R"({"useTimecodeB":false})",
     {32, "Unable to find mandatory properties : \"utcInfo\",\"dataOutline\".", -1, -1}},
    {"TimecodeOfVersion1Missing",
     R"({"useTimecodeB":true})",
     {32, "Unable to find mandatory properties : \"timecodeInfo\",\"dataOutline\".", -1, -1}},
    {"MissingKeysComeBeforeBytesBehindTheFile",
     kV2 + "} x",
     {32, "Unable to find mandatory properties : \"dataOutline\",\"dynamicSamplesPresentB\".", -1, -1}},
    {"InfoInVersion1", R"({"dynamicDataInfo":{}})", {30, NotATopLevelKey("dynamicDataInfo"), 19, -1}},
    {"FlagInVersion1", R"({"dynamicSamplesPresentB":true})", {30, NotATopLevelKey("dynamicSamplesPresentB"), 26, -1}},
    {"TimecodeFlagInVersion2", kV2 + R"(,"useTimecodeB":true})", {30, NotATopLevelKey("useTimecodeB"), 40, -1}},
    {"TimecodeInVersion2", kV2 + R"(,"timecodeInfo": 1})", {30, NotATopLevelKey("timecodeInfo"), 41, -1}},
    {"UtcInVersion2", kV2 + R"(,"utcInfo":1})", {30, NotATopLevelKey("utcInfo"), 35, -1}},
    {"SyncTimesInVersion2", kV2 + R"(,"videoSyncTimeList":1})", {30, NotATopLevelKey("videoSyncTimeList"), 45, -1}},
    {"InfoBeforeItsFlag",
     kV2 + R"(,"dynamicDataInfo":1})",
     {31, "\"dynamicSamplesPresentB\" must be present before \"dynamicDataInfo\" in TDJSON file.", 43, -1}},
    {"InfoAgainstItsFlag",
     kV2 + R"(,"dynamicSamplesPresentB":false,"dynamicDataInfo":1})",
     {31, "\"dynamicDataInfo\" can be present if and only if \"dynamicSamplesPresentB\" is set to true.", 74, -1}},
    {"SamplesBeforeTheirFlag",
     kV2 + R"(,"dataDynamicSamples":1})",
     {31, "\"dynamicSamplesPresentB\" must be present before \"dataDynamicSamples\" in TDJSON file.", 46, -1}},
    {"SamplesAgainstTheirFlag",
     kV2 + R"(,"dynamicSamplesPresentB":false,"dataDynamicSamples":1})",
     {31, "\"dataDynamicSamples\" can be present if and only if \"dynamicSamplesPresentB\" is set to true.", 77, -1}},
    {"SamplesBeforeTheirInfo",
     kV2 + R"(,"dynamicSamplesPresentB":true,"dataDynamicSamples":1})",
     {31, "\"dynamicDataInfo\" must be present before \"dataDynamicSamples\" in TDJSON file.", 76, -1}},
    {"TimecodeAgainstItsFlag",
     R"({"useTimecodeB":false,"timecodeInfo":)" + kTimecode + "}",
     {46, kNeedsTimecode, 37, -1}},
    {"FlagAgainstItsTimecode",
     R"({"timecodeInfo":)" + kTimecode + R"(,"useTimecodeB":false})",
     {46, kNeedsTimecode, 86, -1}},
    {"UtcAgainstItsFlag", R"({"useTimecodeB":true,"utcInfo":)" + kUtc + "}", {46, kNeedsUtc, 31, -1}},
    {"FlagAgainstItsUtc", R"({"utcInfo":)" + kUtc + R"(,"useTimecodeB":true})", {46, kNeedsUtc, 61, -1}},
};

INSTANTIATE_TEST_SUITE_P(TopLevel, BadTopLevel, testing::ValuesIn(kTopLevelErrors),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(ReaderErrors, NumberOfFourHundredDigitsIsTooBig) {
  std::string const number(400, '9');
  std::string const content = Edit{kSmallVersion2, "42.5", number.c_str()}.Text();
  // 308 digits give a double of nearly 1e308, to which no other can be added.
  std::int64_t const offset = static_cast<std::int64_t>(content.find(number)) + 308;
  EXPECT_EQ(ErrorOfOpening(content), (ReportedError{32, "Number too big to be stored in double.", offset, -1}));
}

TEST_F(ReaderErrors, EmptySectionTakesTheRestOfTheFile) {
  std::string const whole = kSmallVersion2;
  std::string const begin = whole.substr(0, whole.find("\"dataDynamicSamples\":[") + 22);
  std::string const closed = begin + "]} \n";
  EXPECT_EQ(ErrorOfOpening(closed), (ReportedError{32, "Parsing error:\"dataDynamicSamples\", Invalid JSON.",
                                                   static_cast<std::int64_t>(closed.size()), -1}));
  EXPECT_EQ(ErrorOfOpening(begin + " ]}"), (ReportedError{54, "Empty Input file.", -1, -1}));
}

TEST_F(ReaderErrors, WhatCannotBeOpenedIsNamed) {
  std::string const path = mFolder.Path("socket.tdjson");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  ASSERT_LT(path.size(), sizeof address.sun_path);
  path.copy(address.sun_path, path.size());
  int const socketFd = socket(AF_UNIX, SOCK_STREAM, 0);
  ASSERT_EQ(bind(socketFd, reinterpret_cast<sockaddr const*>(&address), sizeof address), 0);
  EXPECT_EQ(mHost.Open(path), nullptr);
  EXPECT_EQ(mHost.TakeError(), (ReportedError{6, "Unable to open input file:" + path + ".", -1, -1}));
  close(socketFd);
}

TEST_F(ReaderErrors, OutputOnAFullDiskIsCode55AndTheFileStaysOpen) {
  ISensorFileHandler* const handler = mHost.Open(mFolder.Write("a.tdjson", kSmallVersion2), "/dev/full");
  EXPECT_EQ(mHost.TakeError(), (ReportedError{55, "File_IO::CopyFileContents, fails.", -1, -1}));
  ASSERT_NE(handler, nullptr);
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(ReaderErrors, InputThatHasBecomeAFolderCannotBeCopied) {
  std::string const path = mFolder.Write("a.tdjson", kSmallVersion2);
  std::string const output = mFolder.Path("copy.tdjson");
  ISensorFileHandler* const handler = mHost.Open(path);
  ns_sensor::ITdjsonStream* stream = nullptr;
  mHost.Manager().createTdjsonStream(&stream, path.c_str(), 0, &mHost);
  ASSERT_NE(stream, nullptr);
  std::filesystem::remove(path);
  std::filesystem::create_directory(path);
  ReportedError const expected{11, "File_IO::CopyFileContents, read failure.", -1, -1};
  EXPECT_EQ(mHost.Open(path, output.c_str()), handler) << "open for the second time, all the same";
  EXPECT_EQ(mHost.TakeError(), expected);
  stream->saveStream(mFolder.Path("saved.tdjson").c_str(), &mHost);
  EXPECT_EQ(mHost.TakeError(), expected);
  EXPECT_FALSE(std::filesystem::exists(mFolder.Path("saved.tdjson")));
  mHost.Manager().destroyTdjsonStream(&stream, &mHost);
  EXPECT_EQ(mHost.Close(handler), handler);
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

TEST_F(ReaderErrors, SegmentsWithNeitherNameNorIndexAreRefused) {
  ISensorFileHandler* const handler = mHost.Open(mFolder.Write("a.tdjson", kSmallVersion2));
  struct Row {
    std::string path;
    int item;
  };
  for (Row const& row : {Row{R"([""])", 0}, Row{"[-1]", 0}, Row{"[0][-7]", 1}}) {
    handler->getGroupChildInfo(row.path.c_str(), row.path.size(), &mHost, &mHost);
    EXPECT_EQ(mHost.TakeError(),
              (ReportedError{33,
                             "Either index or match name must be present, both are missing at path item " +
                                 std::to_string(row.item) + ".",
                             -1, -1}));
  }
  EXPECT_EQ(mHost.Close(handler), nullptr);
}

}  // namespace
}  // namespace senmark_test
