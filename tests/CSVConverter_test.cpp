// Whole conversions of tables, with the library's own writer.

#include "CSVConverter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>

#include "SK_Exception.h"
#include "SK_PluginException.h"
#include "SK_Utils.h"
#include "TSVConverter.h"
#include "TdjsonRootImpl.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using SK_NAMESPACE_INT::SK_PathInfo;

class CSVConversion : public testing::Test {
 protected:
  SK_PathInfo Input(std::string const& bytes) const {
    SK_PathInfo file(mFolder.Write("table.csv", bytes), "csv");
    file.outputPath = mOutput;
    return file;
  }

  /// The file that comes out.
  std::string Converted(std::string const& bytes) const {
    EXPECT_TRUE(CSVConverter(Input(bytes)).convertToTDJSON());
    return mFolder.Read(mOutput);
  }

  senmark_test::TempFolder mFolder;
  std::string mOutput = mFolder.Path("out.tdjson");
};

TEST_F(CSVConversion, NumbersAndTexts) {
  EXPECT_EQ(
      Converted("a,b\n1,x\n2,y\n"),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"com.velmo.sensor.csv","dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"data0","displayName":"a","children":[)"
      R"({"objectType":"dataStatic","matchName":"data1","displayName":"a 0","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}}}},"value":1},)"
      R"({"objectType":"dataStatic","matchName":"data2","displayName":"a 1","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":2,"max":2},"legal":{"min":2,"max":2}}}},"value":2}]},)"
      R"({"objectType":"dataGroup","matchName":"data3","displayName":"b","children":[)"
      R"({"objectType":"dataStatic","matchName":"data4","displayName":"b 0","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":1,"eventMarkerB":false}},"value":"x"},)"
      R"({"objectType":"dataStatic","matchName":"data5","displayName":"b 1","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":1,"eventMarkerB":false}},"value":"y"}]}]})");
}

TEST_F(CSVConversion, TabsHaveTheirOwnCreator) {
  SK_PathInfo file = Input("a\n\t\n");
  ASSERT_TRUE(TSVConverter(file).convertToTDJSON());
  EXPECT_EQ(
      mFolder.Read(mOutput),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"com.velmo.sensor.tsv","dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"data0","displayName":"a","children":[)"
      R"({"objectType":"dataStatic","matchName":"data1","displayName":"a 0","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}}}},"value":0}]}]})");
}

/// Decimal digits, a sign, and a text whose length has two digits and that needs escapes.
TEST_F(CSVConversion, PropertiesFollowFromEachCell) {
  EXPECT_EQ(
      Converted("v,t\n-12.250,\"say \"\"hi\"\"\n\t\\\"\n"),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"com.velmo.sensor.csv","dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"data0","displayName":"v","children":[)"
      R"({"objectType":"dataStatic","matchName":"data1","displayName":"v 0","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsDecimal":2,"digitsInteger":2},)"
      R"("range":{"occurring":{"min":-12.25,"max":-12.25},"legal":{"min":-12.25,"max":-12.25}}}},"value":-12.25}]},)"
      R"({"objectType":"dataGroup","matchName":"data2","displayName":"t","children":[)"
      R"({"objectType":"dataStatic","matchName":"data3","displayName":"t 0","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":2,"maxLen":16,"eventMarkerB":false}},)"
      R"("value":"say \"hi\"\n\t\\"}]}]})");
}

TEST_F(CSVConversion, HeaderWithQuotesIsEscaped) {
  EXPECT_EQ(
      Converted("\"a \"\"b\"\"\"\n,\n"),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"com.velmo.sensor.csv","dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"data0","displayName":"a \"b\"","children":[)"
      R"({"objectType":"dataStatic","matchName":"data1","displayName":"a \"b\" 0","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
      R"("range":{"occurring":{"min":0,"max":0},"legal":{"min":0,"max":0}}}},"value":0}]}]})");
}

TEST_F(CSVConversion, ResultIsOfTheSecondVersion) {
  Converted("a\n1\n");
  EXPECT_TRUE(SK_NAMESPACE_INT::SK_Utils::IsTDJSONVersion2(mOutput.c_str()));
}

/// The code with which the writer refuses to finish a file.
int CodeOfRefusal(SK_ConverterHandlerBase& converter) {
  try {
    converter.convertToTDJSON();
  } catch (SK_PLUGIN::SK_PluginException const& error) {
    return error.GetErrorCode();
  }
  return 0;
}

/// Empty groups stay out, and an outline of nothing is no file.
TEST_F(CSVConversion, HeaderWithoutRowsIsRefusedByTheWriter) {
  CSVConverter converter(Input("a,b\n"));
  EXPECT_EQ(CodeOfRefusal(converter), 2000);
  EXPECT_EQ(mFolder.Read(mOutput), "");
}

TEST_F(CSVConversion, EmptyFileIsRefusedByTheWriter) {
  CSVConverter converter(Input(""));
  EXPECT_EQ(CodeOfRefusal(converter), 2021);
  EXPECT_EQ(mFolder.Read(mOutput), "");
}

TEST_F(CSVConversion, FileThatCannotBeReadMakesNoOutput) {
  SK_PathInfo file = Input("");
  file.filePath = mFolder.Path("missing.csv");
  testing::internal::CaptureStdout();
  EXPECT_FALSE(CSVConverter(file).convertToTDJSON());
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "ERROR Opening File " + file.filePath + "\n");
  EXPECT_FALSE(std::filesystem::exists(mOutput));
}

TEST_F(CSVConversion, FailureOfTheWriterPasses) {
  SK_PathInfo file = Input("a\n1\n");
  file.outputPath = mFolder.Path("missing/out.tdjson");
  CSVConverter converter(file);
  EXPECT_THROW(converter.convertToTDJSON(), SK_Exception);
}

TEST_F(CSVConversion, SecondRunFindsTheFileFinished) {
  CSVConverter converter(Input("a\n1\n"));
  EXPECT_TRUE(converter.convertToTDJSON());
  std::string const first = mFolder.Read(mOutput);
  EXPECT_FALSE(converter.convertToTDJSON());
  EXPECT_EQ(mFolder.Read(mOutput), first);
}

TEST_F(CSVConversion, WriterForgetsTheFileAtTheEnd) {
  std::optional<CSVConverter> converter(std::in_place, Input("a\n1\n"));
  void* const key = &*converter;
  EXPECT_TRUE(converter->convertToTDJSON());
  EXPECT_NE(SK_PLUGIN::TdjsonRootImpl::GetRoot(key), nullptr);
  converter.reset();
  EXPECT_EQ(SK_PLUGIN::TdjsonRootImpl::GetRoot(key), nullptr);
}

TEST_F(CSVConversion, WriterForgetsTheFileAfterAFailure) {
  std::optional<TSVConverter> converter(std::in_place, Input("a\n"));
  void* const key = &*converter;
  EXPECT_EQ(CodeOfRefusal(*converter), 2000);
  converter.reset();
  EXPECT_EQ(SK_PLUGIN::TdjsonRootImpl::GetRoot(key), nullptr);
}

}  // namespace
}  // namespace ns_sensor
