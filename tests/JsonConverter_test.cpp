// Whole conversions, from a JSON file to the data file that a host may keep.

#include "JsonConverter.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "SK_ConverterRegistry.h"
#include "SenmarkImpl.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;

class JsonConversion : public testing::Test {
 protected:
  JsonConversion() {
    SK_ConverterRegistry::getInstance()->registerPluginConverter("json", "JSON", JSON_CheckFormat, JSONConverter_CTor);
    std::filesystem::create_directory(mOut);
  }
  ~JsonConversion() override {
    EXPECT_TRUE(SenmarkImpl::Terminate());
    EXPECT_TRUE(std::filesystem::is_empty(mOut)) << "something was left beside the output";
    EXPECT_EQ(mFolder.TempNames(), "");
    EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  }

  /// Opens a file of this text with an output path, and gives what stands there then.
  std::string Converted(std::string const& text) {
    std::string const output = mOut + "out.tdjson";
    ISensorFileHandler* handler = nullptr;
    mManager->OpenFile(&handler, mFolder.Write("in.json", text).c_str(), output.c_str());
    mManager->CloseFile(&handler);
    std::string const content = mFolder.Read(output);
    std::filesystem::remove(output);
    return content;
  }

  void ExpectRefused(std::string const& text, int code, std::string const& message, long long offset = -1) {
    ExpectError([&] { Converted(text); }, code, message, offset);
  }

  std::size_t const mDescriptors = CountOpenDescriptors();
  senmark_test::TempFolder mFolder;
  std::string const mOut = mFolder.Path("out/");
  SenmarkImpl* const mManager = SenmarkImpl::Initialize(nullptr, nullptr, nullptr);
};

std::string Names(int number, std::string const& displayName) {
  return R"("matchName":"matchName)" + std::to_string(number) + R"(","displayName":")" + displayName + '"';
}

/// digits  those of the text behind and before the point, as they stand in the file.
std::string Number(int number, std::string const& displayName, std::string const& text, std::string const& isSigned,
                   std::string const& digitsDecimal, std::string const& digitsInteger) {
  std::string const range = R"({"min":)" + text + R"(,"max":)" + text + '}';
  return R"({"objectType":"dataStatic",)" + Names(number, displayName) +
         R"(,"dataType":{"type":"number","numberStringProperties":{"pattern":{"isSigned":)" + isSigned +
         R"(,"digitsDecimal":)" + digitsDecimal + R"(,"digitsInteger":)" + digitsInteger +
         R"(},"range":{"occurring":)" + range + R"(,"legal":)" + range + R"(}}},"value":)" + text + '}';
}

/// length  of the text as it stands in the file, in bytes; digits: of that length.
std::string String(int number, std::string const& displayName, std::string const& text, std::string const& length,
                   std::string const& digits) {
  return R"({"objectType":"dataStatic",)" + Names(number, displayName) +
         R"(,"dataType":{"type":"string","paddedStringProperties":{"maxDigitsInStrLength":)" + digits +
         R"(,"maxLen":)" + length + R"(,"eventMarkerB":false}},"value":")" + text + "\"}";
}

std::string Boolean(int number, std::string const& displayName, std::string const& text) {
  return R"({"objectType":"dataStatic",)" + Names(number, displayName) + R"(,"dataType":{"type":"boolean"},"value":)" +
         text + '}';
}

std::string Group(int number, std::string const& displayName, std::string const& children) {
  return R"({"objectType":"dataGroup",)" + Names(number, displayName) + R"(,"children":[)" + children + "]}";
}

std::string File(std::string const& outline) {
  return R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"com.velmo.sensor.json","dataOutline":[)" +
         outline + "]}";
}

TEST_F(JsonConversion, WholeFileByteForByte) {
  EXPECT_EQ(
      Converted(R"({"a": 1, "b": [1, 2], "c": {"d": "x"}, "e": null, "f": true})"),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"com.velmo.sensor.json","dataOutline":[)"
      R"({"objectType":"dataStatic","matchName":"matchName0","displayName":"a",)"
      R"("dataType":{"type":"number","numberStringProperties":{)"
      R"("pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}}}},"value":1},)"
      R"({"objectType":"dataGroup","matchName":"matchName1","displayName":"b","children":[)"
      R"({"objectType":"dataStatic","matchName":"matchName2","displayName":"b 0",)"
      R"("dataType":{"type":"number","numberStringProperties":{)"
      R"("pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}}}},"value":1},)"
      R"({"objectType":"dataStatic","matchName":"matchName3","displayName":"b 1",)"
      R"("dataType":{"type":"number","numberStringProperties":{)"
      R"("pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":2,"max":2},"legal":{"min":2,"max":2}}}},"value":2}]},)"
      R"({"objectType":"dataGroup","matchName":"matchName4","displayName":"c","children":[)"
      R"({"objectType":"dataStatic","matchName":"matchName5","displayName":"d",)"
      R"("dataType":{"type":"string","paddedStringProperties":{)"
      R"("maxDigitsInStrLength":1,"maxLen":1,"eventMarkerB":false}},"value":"x"}]},)"
      R"({"objectType":"dataStatic","matchName":"matchName6","displayName":"f",)"
      R"("dataType":{"type":"boolean"},"value":true}]})");
}

struct Document {
  char const* name;
  std::string text;
  std::string outline;
};

std::string NameOfRow(testing::TestParamInfo<Document> const& row) {
  return row.param.name;
}

class JsonConversionOf : public JsonConversion, public testing::WithParamInterface<Document> {};

TEST_P(JsonConversionOf, GivesThisOutline) {
  EXPECT_EQ(Converted(GetParam().text), File(GetParam().outline));
}

Document const kDocuments[] = {
    {"TopArray", "[1, 2]",
     Number(0, "dataOutline 0", "1", "false", "0", "1") + ',' + Number(1, "dataOutline 1", "2", "false", "0", "1")},
    {"ArrayInTopArray", "[[1]]", Group(0, "dataOutline 0", Number(1, "dataOutline 0 0", "1", "false", "0", "1"))},
    {"ObjectInTopArray", "[{\"k\": false}]", Group(0, "dataOutline 0", Boolean(1, "k", "false"))},
    {"VanishedGroupKeepsItsMatchName", "{\"a\": {\"b\": null}, \"c\": 1}", Number(1, "c", "1", "false", "0", "1")},
    {"EmptyContainersTakeNoMatchName", "{\"a\": {}, \"b\": [], \"c\": true}", Boolean(0, "c", "true")},
    {"GroupInAGroupVanishesAlone", "[[[null], true, {}]]",
     Group(0, "dataOutline 0", Boolean(2, "dataOutline 0 1", "true"))},
    {"KeyThatComesTwice", "{\"a\": true, \"a\": false}", Boolean(0, "a", "true") + ',' + Boolean(1, "a", "false")},
    {"EmptyKeyAndEmptyText", "{\"\": \"\"}", String(0, "", "", "0", "1")},
    {"SmallNumbers", "[-12.25, 0.5, -0, -0.0, 98.60]",
     Number(0, "dataOutline 0", "-12.25", "true", "2", "2") + ',' +
         Number(1, "dataOutline 1", "0.5", "false", "1", "1") + ',' +
         Number(2, "dataOutline 2", "0", "false", "0", "1") + ',' + Number(3, "dataOutline 3", "-0", "true", "0", "1") +
         ',' + Number(4, "dataOutline 4", "98.59999999999999", "false", "14", "2")},
    {"IntegersOfEveryWidth",
     "[-2147483648, 4294967295, -9223372036854775808, 9223372036854775808, 18446744073709551615]",
     Number(0, "dataOutline 0", "-2147483648", "true", "0", "10") + ',' +
         Number(1, "dataOutline 1", "4294967295", "false", "0", "10") + ',' +
         Number(2, "dataOutline 2", "-9.223372036854776e+18", "true", "19", "1") + ',' +
         Number(3, "dataOutline 3", "9.223372036854776e+18", "false", "19", "1") + ',' +
         Number(4, "dataOutline 4", "1.844674407370955e+19", "false", "19", "1")},
    {"PositiveExponents", "[1e21, 1e300, 1.5e20]",
     Number(0, "dataOutline 0", "1e+21", "false", "0", "5") + ',' +
         Number(1, "dataOutline 1", "1e+300", "false", "0", "6") + ',' +
         // Its last zero is taken for one behind the point.
         Number(2, "dataOutline 2", "1.5e+2", "false", "4", "1")},
    {"EscapedTexts", R"({"q\"\\\/\b\f\n\r\t": "a\"b\\c\/d\b\f\n\r\t"})",
     String(0, R"(q\"\\/\b\f\n\r\t)", R"(a\"b\\c/d\b\f\n\r\t)", "19", "2")},
    {"TextsBeyondAscii", "{\"t\xC3\xB6n\": \"\\u20ac\"}", String(0, "t\xC3\xB6n", "\xE2\x82\xAC", "3", "1")},
    {"BytesThatAreNoText", "{\"\xFF\": \"\xC3\x28\"}", String(0, "\xFF", "\xC3\x28", "2", "1")},
    {"SpacesInFrontAndNulBehind", std::string(" \r\n\t[true]\0?", 13), Boolean(0, "dataOutline 0", "true")},
};

INSTANTIATE_TEST_SUITE_P(Documents, JsonConversionOf, testing::ValuesIn(kDocuments), NameOfRow);

TEST_F(JsonConversion, InvalidTextIsRefused) {
  for (char const* const text : {"[1, 2", "[1] 2", "{\"a\": 1", "{\"a\": }", "{\"a\": [}"}) {
    ExpectRefused(text, 1506, "File Cannot be converted.");
  }
}

// Before any converter is asked, the first key is read to tell whether the file is in the system's own format.
TEST_F(JsonConversion, ObjectWithoutAProperFirstKeyIsRefusedBeforeTheConversion) {
  ExpectRefused("{}", 32, "Unable to find enclosing quotes for Tdjson key.", 1);
  ExpectRefused("{]", 32, "Unable to find enclosing quotes for Tdjson key.", 1);
  ExpectRefused("{\"a\" 1}", 32, "Unable to find Colon(:) in between key and value for property:\"a\".", 5);
}

TEST_F(JsonConversion, NothingToWriteLeavesAFileThatEndsInItsHead) {
  std::string const head = R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":)";
  for (char const* const text : {"[]", "[null]", "{\"a\": {}}", "{\"a\": null}", "[[[null]]]"}) {
    // A word at the very end of a file is not read.
    ExpectRefused(text, 32, "Invalid \"dynamicSamplesPresentB\" type, expected type:JSON Boolean.",
                  static_cast<long long>(head.size()));
  }
}

TEST_F(JsonConversion, EmptyFileIsRefusedByTheCheck) {
  ExpectRefused("", 54, "Empty Input file.");
}

TEST_F(JsonConversion, FailureLeavesAnOldOutputAlone) {
  std::string const output = mOut + "out.tdjson";
  mFolder.Write("out/out.tdjson", "kept");
  ISensorFileHandler* handler = nullptr;
  for (char const* const text : {"[1, 2", "[null]"}) {
    EXPECT_ANY_THROW(mManager->OpenFile(&handler, mFolder.Write("in.json", text).c_str(), output.c_str()));
    EXPECT_EQ(handler, nullptr);
    EXPECT_EQ(mFolder.Read(output), "kept");
  }
  std::filesystem::remove(output);
}

TEST_F(JsonConversion, FormatNestsLessDeepThanJson) {
  constexpr char kTooDeep[] = "SK does not support TDJSON dataGroup with nesting more than 100";
  // The outline is at depth 0, each group adds two, and the range of a number lies five below the last children.
  auto const nested = [](std::size_t depth) { return std::string(depth, '[') + '1' + std::string(depth, ']'); };
  EXPECT_NO_THROW(Converted(nested(48)));
  ExpectRefused(nested(49), 32, kTooDeep);
  ExpectRefused(nested(3000), 32, kTooDeep);
  std::string objects;
  for (int i = 0; i < 200000; ++i) {
    objects += "{\"\":";
  }
  ExpectRefused(objects + "1" + std::string(200000, '}'), 32, kTooDeep);
}

TEST_F(JsonConversion, NumberWithANegativeExponentMakesAFileThatCannotBeRead) {
  // Of the exponent in 5e-05 the reader steps over the comma behind it, too.
  std::string const result = File(Number(0, "a", "5e-05", "false", "0", "5"));
  ExpectRefused("{\"a\": 0.00005}", 32,
                "Unable to find Comma or Closing bracket after property:"
                "\"dataOutline[0]::dataType::numberStringProperties::range::occurring::min\".",
                static_cast<long long>(result.find("\"max\"")));
  EXPECT_EQ(Converted("{\"a\": 0.0005}"), File(Number(0, "a", "0.0005", "false", "4", "1")));
}

// The writer knows seven escapes; any other control character passes it and ends a text for the reader.
TEST_F(JsonConversion, OtherControlCharactersMakeAFileThatCannotBeRead) {
  for (char const control : {'\0', '\x01', '\x1f'}) {
    char escape[8];
    std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(control));
    std::string const text = std::string("a") + control + 'b';
    ExpectRefused(std::string("{\"") + "a" + escape + "b\": true}", 32,
                  "Unable to find enclosing quotes for property value:\"dataOutline[0]::displayName\".",
                  static_cast<long long>(File(Boolean(0, text, "true")).find(control)));
    ExpectRefused(std::string("{\"k\": \"a") + escape + "b\"}", 32,
                  "Unable to find enclosing quotes for property value:\"dataOutline[0]::value\".",
                  static_cast<long long>(File(String(0, "k", text, "3", "1")).find(control)));
  }
}

}  // namespace
}  // namespace ns_sensor
