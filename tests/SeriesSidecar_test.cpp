// What a user says about a table in a file beside it, and what is said to the user about that.
#include <gtest/gtest.h>

#include "Series.h"
#include "Sidecar.h"
#include "TempFolder.h"

namespace senmark_series {
namespace {

using senmark_test::TempFolder;

std::string FailureOf(std::string const& json) {
  try {
    ParseSidecar(json);
  } catch (kit::Failure const& failure) {
    return failure.what();
  }
  return "none";
}

struct RefusedCase {
  char const* json;
  char const* message;
};

RefusedCase const kRefused[] = {
    {"", "sidecar: no JSON: The document is empty. At byte 0."},
    {"{\"quote\":}", "sidecar: no JSON: Invalid value. At byte 9."},
    {"[]", "sidecar: it has to be an object"},
    {"{\"Delimiter\":\"comma\"}", "sidecar: \"Delimiter\" is no key of a sidecar"},
    {"{\"delimiter\":44}", "sidecar: \"delimiter\" has to be a text"},
    {"{\"delimiter\":\"commas\"}",
     "sidecar: \"delimiter\" has to be comma, semicolon, tab, pipe, blanks, or one ASCII character"},
    {"{\"delimiter\":\"\"}",
     "sidecar: \"delimiter\" has to be comma, semicolon, tab, pipe, blanks, or one ASCII character"},
    {"{\"delimiter\":\"\\n\"}",
     "sidecar: \"delimiter\" has to be comma, semicolon, tab, pipe, blanks, or one ASCII character"},
    {"{\"delimiter\":\"\\u00e9\"}",
     "sidecar: \"delimiter\" has to be comma, semicolon, tab, pipe, blanks, or one ASCII character"},
    {"{\"decimalMark\":\";\"}", "sidecar: \"decimalMark\" has to be a point or a comma"},
    {"{\"quote\":\"''\"}", "sidecar: \"quote\" has to be one ASCII character, or empty"},
    {"{\"comment\":7}", "sidecar: \"comment\" has to be a text"},
    {"{\"encoding\":\"utf-7\"}", "sidecar: \"encoding\" has to be utf-8, utf-16le, utf-16be, windows-1252 or latin-1"},
    {"{\"headerRow\":-1}", "sidecar: \"headerRow\" has to be the number of a line, 0 or more"},
    {"{\"unitsRow\":\"2\"}", "sidecar: \"unitsRow\" has to be the number of a line, 0 or more"},
    {"{\"firstDataRow\":0}", "sidecar: \"firstDataRow\" has to be the number of a line, 1 or more"},
    {"{\"firstDataRow\":1.5}", "sidecar: \"firstDataRow\" has to be the number of a line, 1 or more"},
    {"{\"time\":\"t\"}", "sidecar: \"time\" has to be an object"},
    {"{\"time\":{\"unit\":\"s\"}}", "sidecar: \"time.unit\" is no key of a sidecar"},
    {"{\"time\":{\"column\":0}}", "sidecar: \"time.column\" has to be the name of a column, or its number from 1"},
    {"{\"time\":{\"column\":true}}", "sidecar: \"time.column\" has to be the name of a column, or its number from 1"},
    {"{\"time\":{\"columns\":\"t\"}}", "sidecar: \"time.columns\" has to be a list of one or two columns"},
    {"{\"time\":{\"columns\":[]}}", "sidecar: \"time.columns\" has to be a list of one or two columns"},
    {"{\"time\":{\"columns\":[1,2,3]}}", "sidecar: \"time.columns\" has to be a list of one or two columns"},
    {"{\"time\":{\"column\":1,\"columns\":[2]}}", "sidecar: \"time.columns\" stands beside another choice of columns"},
    {"{\"time\":{\"form\":\"seconds\"}}",
     "sidecar: \"time.form\" has to be one of: iso, date, epoch-s, epoch-ms, epoch-us, epoch-ns, elapsed-s, "
     "elapsed-ms, "
     "elapsed-us, elapsed-ns, clock"},
    {"{\"time\":{\"columns\":[1,2],\"form\":\"iso\"}}", "sidecar: \"time.form\" has to be date for two columns"},
    {"{\"time\":{\"zone\":\"CET\"}}", "sidecar: \"time.zone\" has to be Z or +hh:mm"},
    {"{\"time\":{\"dateOrder\":\"day\"}}", "sidecar: \"time.dateOrder\" has to be one of: day-month, month-day"},
    {"{\"columns\":[]}", "sidecar: \"columns\" has to be an object"},
    {"{\"columns\":{\"a\":1}}", "sidecar: \"columns.a\" has to be an object"},
    {"{\"columns\":{\"a\":{\"type\":1}}}", "sidecar: \"columns.a.type\" is no key of a sidecar"},
    {"{\"columns\":{\"a\":{\"kind\":\"event\"}}}", "sidecar: \"columns.a.kind\" has to be one of: number, text"},
    {"{\"columns\":{\"a\":{\"unit\":1}}}", "sidecar: \"columns.a.unit\" has to be a text"},
    {"{\"columns\":{\"a\":{\"name\":null}}}", "sidecar: \"columns.a.name\" has to be a text"},
    {"{\"columns\":{\"a\":{\"decimals\":16}}}", "sidecar: \"columns.a.decimals\" has to be a number from 0 to 15"},
    {"{\"columns\":{\"a\":{\"decimals\":-1}}}", "sidecar: \"columns.a.decimals\" has to be a number from 0 to 15"},
    {"{\"columns\":{\"a\":{\"skip\":1}}}", "sidecar: \"columns.a.skip\" has to be true or false"},
};

TEST(SeriesSidecar, NamesWhatIsWrong) {
  for (RefusedCase const& row : kRefused) {
    EXPECT_EQ(FailureOf(row.json), row.message) << row.json;
  }
  EXPECT_EQ(FailureOf("{}"), "none");
  EXPECT_EQ(FailureOf("\xEF\xBB\xBF{}"), "none");
  std::string deep = "{\"a\":";
  for (int i = 0; i != 100000; ++i) {
    deep += '[';
  }
  EXPECT_NE(FailureOf(deep), "none");
}

TEST(SeriesSidecar, EveryKeyIsRead) {
  Sidecar const sidecar = ParseSidecar(R"({
    "delimiter": "Tab", "decimalMark": ",", "quote": "'", "comment": "%", "encoding": "latin-1",
    "headerRow": 2, "unitsRow": 0, "firstDataRow": 9223372036854775807,
    "time": {"columns": ["day", 3], "form": "date", "zone": "-05:30", "dateOrder": "month-day"},
    "columns": {"a": {"kind": "text", "unit": "m", "name": "A", "decimals": 15, "skip": true}, "b": {}}
  })");
  EXPECT_EQ(sidecar.delimiter, '\t');
  EXPECT_EQ(sidecar.decimalMark, ',');
  EXPECT_EQ(sidecar.quote, '\'');
  EXPECT_EQ(sidecar.comment, "%");
  EXPECT_EQ(sidecar.encoding, eEncoding::kWindows1252);
  EXPECT_EQ(sidecar.headerRow, 2);
  EXPECT_EQ(sidecar.unitsRow, 0);
  EXPECT_EQ(sidecar.firstDataRow, 9223372036854775807);
  ASSERT_EQ(sidecar.timeColumns.size(), 2U);
  EXPECT_EQ(sidecar.timeColumns[0].name, "day");
  EXPECT_EQ(sidecar.timeColumns[1].number, 3U);
  EXPECT_EQ(sidecar.timeForm->kind, eTimeKind::kDate);
  EXPECT_EQ(sidecar.zoneMinutes, -330);
  EXPECT_EQ(sidecar.dateOrder, eDateOrder::kMonthFirst);
  Sidecar::ColumnChoice const& a = sidecar.columns.at("a");
  EXPECT_EQ(a.kind, eColumnKind::kText);
  EXPECT_EQ(a.unit, "m");
  EXPECT_EQ(a.name, "A");
  EXPECT_EQ(a.decimals, 15U);
  EXPECT_TRUE(a.skips);
  EXPECT_FALSE(sidecar.columns.at("b").kind);
}

struct EffectCase {
  char const* name;
  char const* file;
  char const* table;
  char const* sidecar;
  char const* lines;  ///< behind that which names the sidecar
};

EffectCase const kEffects[] = {
    {"DelimiterAndExtension", "a.dat", "time~v\n0~1,5\n1~2\n", "{\"delimiter\":\"~\"}",
     "a table, delimiter: ~, decimal comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 1 decimal, first \"1,5\", 0 gaps\n"},
    {"DecimalMark", "a.csv", "time;v\n0;1,5\n1;2,5\n", "{\"decimalMark\":\".\"}",
     "a table, delimiter: semicolon, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": text, first \"1,5\", 0 gaps\n"},
    {"QuoteAndComment", "a.csv", "%x\n#,v\n0,'a,b'\n1,\"c\"\n",
     "{\"quote\":\"'\",\"comment\":\"%\",\"time\":{\"column\":\"#\"}}",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 2, data from line 3 on\n"
     "time: column \"#\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"#\": time\n"
     "column 2 \"v\": text, first \"a,b\", 0 gaps\n"},
    {"RowsByTheirLines", "a.csv", "2020-01-01,1\nm,km\nday,v\n2024-05-01,2\n2024-05-02,3\n",
     "{\"headerRow\":3,\"unitsRow\":2,\"firstDataRow\":5}",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 3, units in line 2, data from line 5 on\n"
     "time: column \"day\", ISO 8601\n"
     "1 row from 2024-05-02T00:00:00Z to 2024-05-02T00:00:00Z, in order\n"
     "column 1 \"day\" in \"m\": time\n"
     "column 2 \"v\" in \"km\": number with 0 decimals, first \"3\", 0 gaps\n"},
    {"NoHeader", "a.csv", "x,y\n2024-05-01,2\n", "{\"headerRow\":0,\"firstDataRow\":2}",
     "a table, delimiter: comma, UTF-8\n"
     "no header, data from line 2 on\n"
     "time: column \"column 1\", ISO 8601\n"
     "1 row from 2024-05-01T00:00:00Z to 2024-05-01T00:00:00Z, in order\n"
     "column 1 \"column 1\": time\n"
     "column 2 \"column 2\": number with 0 decimals, first \"2\", 0 gaps\n"},
    {"TimeOfAnyName", "a.csv", "id,v\n5,1\n3,2\n", "{\"time\":{\"column\":\"id\",\"form\":\"elapsed-ms\"}}",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"id\", milliseconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:00Z, not in order: they are sorted\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"id\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"OneOfTwoTimesWithAZone", "a.csv", "time,other\n2024-05-01T00:00,2024-05-02T00:00\n",
     "{\"time\":{\"column\":2,\"zone\":\"+02:00\"}}",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"other\", ISO 8601\n"
     "1 row from 2024-05-01T22:00:00Z to 2024-05-01T22:00:00Z, in order\n"
     "column 1 \"time\": text, first \"2024-05-01T00:00\", 0 gaps\n"
     "column 2 \"other\": time\n"},
    {"OrderOfDates", "a.csv", "date,v\n01/02/2024,1\n02/02/2024,2\n", "{\"time\":{\"dateOrder\":\"month-day\"}}",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"date\", date\n"
     "2 rows from 2024-01-02T00:00:00Z to 2024-02-02T00:00:00Z, in order\n"
     "column 1 \"date\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"TwoColumns", "a.csv", "a,b,v\n1/2/2024,930,1\n1/2/2024,945,2\n", "{\"time\":{\"columns\":[\"a\",\"b\"]}}",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"a\" and column \"b\", date and time of day in two columns\n"
     "dates: day before month: ambiguous, so taken without further evidence\n"
     "2 rows from 2024-02-01T09:30:00Z to 2024-02-01T09:45:00Z, in order\n"
     "column 1 \"a\": time\n"
     "column 2 \"b\": time\n"
     "column 3 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"Columns", "a.csv", "time,a (m),b,c\n0,1.25,x,1\n1,2,5,2\n",
     R"json({"columns":{"a (m)":{"unit":"km","name":"Way","decimals":1},"b":{"kind":"number"},"column 4":{"kind":"text"}}})json",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"Way\" in \"km\": number with 1 decimal, first \"1.25\", 0 gaps\n"
     "column 3 \"b\": number with 0 decimals, first \"x\", 0 gaps, and 1 text that become gaps, first \"x\"\n"
     "column 4 \"c\": text, first \"1\", 0 gaps, 2 numbers among them\n"},
    {"SkippedColumn", "a.csv", "time,a,b\n0,1,2\n1,2,3\n", "{\"columns\":{\"a\":{\"skip\":true}}}",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"a\": skipped by the sidecar\n"
     "column 3 \"b\": number with 0 decimals, first \"2\", 0 gaps\n"},
    {"Encoding", "a.csv", "time,\xE9\n0,1\n1,2\n",
     "{\"encoding\":\"latin-1\",\"columns\":{\"\u00E9\":{\"unit\":\"V\"}}}",
     "a table, delimiter: comma, Windows-1252\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"\u00E9\" in \"V\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"MembersOfJsonLines", "a.jsonl", "{\"n\":0,\"v\":{\"x\":1}}\n{\"n\":1,\"v\":{\"y\":2}}\n",
     "{\"time\":{\"column\":\"n\"},\"columns\":{\"v.y\":{\"unit\":\"m\"}}}",
     "lines of JSON objects, UTF-8\n"
     "time: column \"n\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"n\": time\n"
     "column 2 \"v.x\": number with 0 decimals, first \"1\", 1 gap\n"
     "column 3 \"v.y\" in \"m\": number with 0 decimals, first \"2\", 1 gap\n"},
    {"NoSuchColumn", "a.csv", "time,v\n0,1\n1,2\n", "{\"columns\":{\"w\":{}}}",
     "it looked like this at its start:\n"
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "refused: sidecar: \"columns.w\" is no column of the table\n"},
    {"NoSuchTimeColumn", "a.csv", "time,v\n0,1\n1,2\n", "{\"time\":{\"column\":\"when\"}}",
     "refused: sidecar: there is no column \"when\"\n"},
    {"NoSuchNumberOfAColumn", "a.csv", "time,v\n0,1\n1,2\n", "{\"time\":{\"column\":3}}",
     "refused: sidecar: there is no column 3\n"},
    {"ColumnWithoutTimes", "a.csv", "time,v\n0,x\n1,y\n", "{\"time\":{\"column\":\"v\"}}",
     "refused: sidecar: the rows tell no time in the column that it names\n"},
    {"NoTimeAtAll", "a.csv", "id,v\n0,x\n1,y\n", "{\"quote\":\"'\"}",
     "declined: it is no table with times\n"
     "a table with 2 columns at the delimiter comma, but not one with a time in every row:\n"
     "column 1 \"id\": numbers, and its name does not say that they count time\n"
     "column 2 \"v\": no times\n"},
    {"UnknownKey", "a.csv", "time,v\n0,1\n1,2\n", "{\"header\":1}", ""},
};

class SeriesSidecarEffect : public testing::TestWithParam<EffectCase> {};

TEST_P(SeriesSidecarEffect, IsSeen) {
  TempFolder const folder;
  EffectCase const& row = GetParam();
  std::string const path = folder.Write(row.file, row.table);
  folder.Write(std::string(row.file) + ".senmark.json", row.sidecar);
  kit::Input const input(path, std::string(row.file).substr(2), "senmark.series");
  // So that the user gets to know what is wrong.
  EXPECT_TRUE(Accepts(input));
  std::string lines;
  kit::Explanation explanation(
      [](void* to, char const* line) { *static_cast<std::string*>(to) += std::string(line) + '\n'; }, &lines);
  Explain(input, explanation);
  std::string const first = "with the sidecar " + path + ".senmark.json\n";
  EXPECT_EQ(lines, *row.lines == '\0' ? "refused: sidecar: \"header\" is no key of a sidecar\n" : first + row.lines);
}

INSTANTIATE_TEST_SUITE_P(Cases, SeriesSidecarEffect, testing::ValuesIn(kEffects),
                         [](testing::TestParamInfo<EffectCase> const& each) { return each.param.name; });

}  // namespace
}  // namespace senmark_series
