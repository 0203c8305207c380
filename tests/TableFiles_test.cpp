// Tables of separated values, opened as if they were data files.

#include <gtest/gtest.h>

#include <filesystem>

#include "RecordingHost.h"
#include "TempFolder.h"

namespace senmark_test {
namespace {

using ns_sensor::ISensorFileHandler;

class TableFiles : public testing::Test {
 protected:
  ~TableFiles() override { EXPECT_EQ(mFolder.TempNames(), ""); }

  /// What a host sees of a node of the file, without a look at its properties.
  std::string Node(std::string const& name, std::string const& bytes, std::string const& path) {
    ISensorFileHandler* handler = mHost.Open(mFolder.Write(name, bytes));
    EXPECT_NE(handler, nullptr) << testing::PrintToString(mHost.TakeErrors());
    if (handler == nullptr) {
      return "";
    }
    mHost.fetchProperties = false;
    mHost.TakeCalls();
    handler->getStaticDataInfo(path.data(), path.size(), &mHost, &mHost);
    std::string const calls = mHost.TakeCalls();
    mHost.Close(handler);
    return calls;
  }

  ReportedError ErrorOfOpening(std::string const& name, std::string const& bytes) {
    std::string const output = mFolder.Write("out.tdjson", "stood here before");
    EXPECT_EQ(mHost.Open(mFolder.Write(name, bytes), output.c_str()), nullptr);
    EXPECT_EQ(mFolder.Read(output), "stood here before");
    EXPECT_EQ(CountNames(), 2) << "something else is left";
    return mHost.TakeError();
  }

  /// Names in the folder of input and output.
  std::ptrdiff_t CountNames() const {
    auto const all = std::filesystem::directory_iterator(mFolder.Path(""));
    return std::distance(begin(all), end(all)) - 1;  // less the folder for temporary files
  }

  TempFolder mFolder;
  RecordingHost mHost;
};

TEST_F(TableFiles, CellsAreStaticNodes) {
  constexpr char kTable[] = "a,b\n1.5,x\n-2,\"y \"\"z\"\"\"\n";
  EXPECT_EQ(Node("table.csv", kTable, R"(["data0"]["data2"])"), "static \"a 1\" \"data2\" type 0 value -2 size 0\n");
  EXPECT_EQ(Node("table.csv", kTable, R"(["data3"]["data5"])"),
            "static \"b 1\" \"data5\" type 1 value \"y \"z\"\" size 5\n");
}

TEST_F(TableFiles, ExtensionTellsTheDelimiter) {
  constexpr char kTable[] = "a,b\tc\n1,2\t3\n";
  constexpr char kOfTabs[] = "static \"a,b 0\" \"data1\" type 1 value \"1,2\" size 3\n";
  EXPECT_EQ(Node("table.tsv", kTable, R"(["data0"]["data1"])"), kOfTabs);
  EXPECT_EQ(Node("table.txt", kTable, R"(["data0"]["data1"])"), kOfTabs);
  EXPECT_EQ(Node("table.TXT", kTable, R"(["data0"]["data1"])"), kOfTabs);
  constexpr char kOfCommas[] = "static \"a 0\" \"data1\" type 0 value 1 size 0\n";
  EXPECT_EQ(Node("table.csv", kTable, R"(["data0"]["data1"])"), kOfCommas);
  EXPECT_EQ(Node("table.xyz", kTable, R"(["data0"]["data1"])"), kOfCommas);
  EXPECT_EQ(Node("table", kTable, R"(["data0"]["data1"])"), kOfCommas);
}

TEST_F(TableFiles, OutputIsKeptWhereItWasWanted) {
  std::string const output = mFolder.Path("out.tdjson");
  ISensorFileHandler* const handler = mHost.Open(mFolder.Write("table.csv", "a\nx\n"), output.c_str());
  ASSERT_NE(handler, nullptr);
  mHost.Close(handler);
  EXPECT_EQ(
      mFolder.Read(output),
      R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false,"creator":"com.velmo.sensor.csv","dataOutline":[)"
      R"({"objectType":"dataGroup","matchName":"data0","displayName":"a","children":[)"
      R"({"objectType":"dataStatic","matchName":"data1","displayName":"a 0","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":1,"eventMarkerB":false}},"value":"x"}]}]})");
  EXPECT_EQ(CountNames(), 2);
  // The file that came out opens as it is.
  EXPECT_NE(mHost.Open(output), nullptr);
}

TEST_F(TableFiles, HeaderWithoutRowsHasNothingToWrite) {
  EXPECT_EQ(ErrorOfOpening("table.csv", "a,b\n"), (ReportedError{2000, "File Cannot be converted.", -1, -1}));
}

TEST_F(TableFiles, TableWithoutColumnsHasNoOutline) {
  for (char const* const text : {"\n", "\n1,2\n", ",a\n1,2\n"}) {
    EXPECT_EQ(ErrorOfOpening("table.csv", text), (ReportedError{2021, "File Cannot be converted.", -1, -1})) << text;
  }
}

/// Of what could not be read, an empty file is left, and its error is what the host sees.
TEST_F(TableFiles, BadUtf16IsAnEmptyResult) {
  EXPECT_EQ(ErrorOfOpening("table.csv", std::string("\xFE\xFF\xDC\x00", 4)),
            (ReportedError{54, "Empty Input file.", -1, -1}));
}

/// They count as numbers, and the outline has no text for them. A bound that is no number is left out of the range.
TEST_F(TableFiles, WordsForNumbersAreRefusedWhenRead) {
  EXPECT_EQ(ErrorOfOpening("table.csv", "a\nnan\n").message,
            R"(Invalid "dataOutline[0]::children[0]::value" type, expected type:JSON Number.)");
  EXPECT_EQ(ErrorOfOpening("table.csv", "a\ninf\n").message,
            "Invalid \"dataOutline[0]::children[0]::dataType::numberStringProperties::range::occurring::max\" type, "
            "expected type:JSON Number.");
}

/// The exponent in 1.5e-05 takes the byte behind it along, so that the comma is missed.
TEST_F(TableFiles, SmallNumbersAreRefusedWhenRead) {
  EXPECT_EQ(ErrorOfOpening("table.csv", "a\n0.000015\n").message,
            "Unable to find Comma or Closing bracket after property:\"dataOutline[0]::children[0]::dataType::"
            "numberStringProperties::range::occurring::min\".");
}

}  // namespace
}  // namespace senmark_test
