// What the module sees in a table: the lines that it tells people about small tables of every dialect.
#include <gtest/gtest.h>

#include <algorithm>

#include "Series.h"
#include "TempFolder.h"

namespace senmark_series {
namespace {

using senmark_test::TempFolder;

struct Seen {
  bool isTaken = false;
  std::string lines;
};

Seen See(TempFolder const& folder, std::string const& name, std::string const& text) {
  kit::Input const input(folder.Write(name, text), name.substr(name.rfind('.') + 1), "senmark.series");
  // A failure is a no.
  auto const accepts = [&] {
    try {
      return Accepts(input);
    } catch (kit::Failure const&) {
      return false;
    }
  };
  Seen seen;
  seen.isTaken = accepts();
  // The same again: the library asks twice.
  EXPECT_EQ(accepts(), seen.isTaken);
  kit::Explanation explanation(
      [](void* lines, char const* line) { *static_cast<std::string*>(lines) += std::string(line) + '\n'; },
      &seen.lines);
  Explain(input, explanation);
  return seen;
}

struct GuessCase {
  char const* name;
  char const* file;
  char const* text;
  char const* lines;
};

GuessCase const kTaken[] = {
    {"IsoWithZone", "a.csv", "time,v\n2024-05-01T12:00:00+02:00,1.5\n2024-05-01T12:00:01+02:00,\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", ISO 8601\n"
     "2 rows from 2024-05-01T10:00:00Z to 2024-05-01T10:00:01Z, in order\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 1 decimal, first \"1.5\", 1 gap\n"},
    {"SemicolonsAndDecimalCommas", "a.csv", "t [ms];U (V)\n0;1,25\n10;-0,5\n20;7\n",
     "a table, delimiter: semicolon, decimal comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"t [ms]\", milliseconds from start\n"
     "3 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:00Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"t\" in \"ms\": time\n"
     "column 2 \"U\" in \"V\": number with 2 decimals, first \"1,25\", 0 gaps\n"},
    {"CommaSeconds", "a.tsv", "time\tv\n0,0\t1,5\n0,1\t2\n",
     "a table, delimiter: tab, decimal comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:00Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 1 decimal, first \"1,5\", 0 gaps\n"},
    {"RowOfUnits", "a.csv", "time,speed,note\ns,[m/s],-\n0,1,go\n1,2,stop\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, units in line 2, data from line 3 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\" in \"s\": time\n"
     "column 2 \"speed\" in \"m/s\": number with 0 decimals, first \"1\", 0 gaps\n"
     "column 3 \"note\": text, first \"go\", 0 gaps\n"},
    {"HeaderInAComment", "a.txt", "# made by x, y and z\n# time a b\n0 1 2\n1 2 3\n",
     "a table, delimiter: blanks, UTF-8\n"
     "header in line 2, a comment, data from line 3 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"a\": number with 0 decimals, first \"1\", 0 gaps\n"
     "column 3 \"b\": number with 0 decimals, first \"2\", 0 gaps\n"},
    {"LinesInFront", "a.csv",
     "Device: X1\nSerial,7\n\ntime,v\n2024-05-01,1\n2024-05-02,2\n2024-05-03,3\n2024-05-04,4\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 4, data from line 5 on\n"
     "time: column \"time\", ISO 8601\n"
     "4 rows from 2024-05-01T00:00:00Z to 2024-05-04T00:00:00Z, in order\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"NoHeader", "a.log", "2024-05-01 12:00:00|5|on\n2024-05-01 12:00:00|6|off\n",
     "a table, delimiter: pipe, UTF-8\n"
     "no header, data from line 1 on\n"
     "time: column \"column 1\", ISO 8601\n"
     "2 rows from 2024-05-01T12:00:00Z to 2024-05-01T12:00:00Z, in order\n"
     "column 1 \"column 1\": time\n"
     "column 2 \"column 2\": number with 0 decimals, first \"5\", 0 gaps\n"
     "column 3 \"column 3\": text, first \"on\", 0 gaps\n"},
    {"EpochWithoutAHeader", "a.csv", "1700000000.5,1\n1700000001,2\n",
     "a table, delimiter: comma, UTF-8\n"
     "no header, data from line 1 on\n"
     "time: column \"column 1\", seconds from 1970-01-01\n"
     "2 rows from 2023-11-14T22:13:20Z to 2023-11-14T22:13:21Z, in order\n"
     "column 1 \"column 1\": time\n"
     "column 2 \"column 2\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"EpochMillisecondsNotInOrder", "a.csv", "v,timestamp\n1,1700000000500\n2,1700000000250\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"timestamp\", milliseconds from 1970-01-01\n"
     "2 rows from 2023-11-14T22:13:20Z to 2023-11-14T22:13:20Z, not in order: they are sorted\n"
     "column 1 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"
     "column 2 \"timestamp\": time\n"},
    {"EpochFromItsStart", "a.csv", "epoch_s,v\n0,1\n60,2\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"epoch_s\", seconds from 1970-01-01\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:01:00Z, in order\n"
     "column 1 \"epoch_s\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"TimeBeforeDate", "a.csv", "Uhrzeit;Datum;v\n18.00.00;31.12.2023;1\n06.30.00;01.01.2024;2\n",
     "a table, delimiter: semicolon, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"Datum\" and column \"Uhrzeit\", date and time of day in two columns\n"
     "dates: day before month: line 2 can be read in no other way\n"
     "2 rows from 2023-12-31T18:00:00Z to 2024-01-01T06:30:00Z, in order\n"
     "column 1 \"Uhrzeit\": time\n"
     "column 2 \"Datum\": time\n"
     "column 3 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"AmbiguousDates", "a.csv", "date,v\n01/02/2024,1\n02/02/2024,2\n03/02/2024,3\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"date\", date\n"
     "dates: day before month: ambiguous, so taken without further evidence\n"
     "3 rows from 2024-02-01T00:00:00Z to 2024-02-03T00:00:00Z, in order\n"
     "column 1 \"date\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"AmbiguousDatesThatAscendOneWay", "a.csv",
     "date,v\n12/11/2023,1\n12/12/2023,2\n01/01/2024,3\n01/02/2024,3\n02/01/2024,4\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"date\", date\n"
     "dates: month before day: ambiguous, so taken for its slashes, and because the rows ascend only this way\n"
     "5 rows from 2023-12-11T00:00:00Z to 2024-02-01T00:00:00Z, in order\n"
     "column 1 \"date\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"AmbiguousDatesWithHalvesOfTheDay", "a.csv", "when,v\n01/02/2024 01:00 PM,1\n01/02/2024 02:00 PM,2\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"when\", date\n"
     "dates: month before day: ambiguous, so taken for its slashes with AM and PM\n"
     "2 rows from 2024-01-02T13:00:00Z to 2024-01-02T14:00:00Z, in order\n"
     "column 1 \"when\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"DotsAreNoEvidenceForTheMonth", "a.csv",
     "date;v\n12.11.2023;1\n12.12.2023;2\n01.01.2024;3\n01.02.2024;3\n02.01.2024;4\n",
     "a table, delimiter: semicolon, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"date\", date\n"
     "dates: day before month: ambiguous, so taken without further evidence\n"
     "5 rows from 2023-11-12T00:00:00Z to 2024-02-01T00:00:00Z, not in order: they are sorted\n"
     "column 1 \"date\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"TimeOfDayAlone", "a.csv", "clock,v\n12:00:00,1\n12:00:00.5,2\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"clock\", time of day\n"
     "2 rows from 1970-01-01T12:00:00Z to 1970-01-01T12:00:00Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"clock\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"ElapsedBesideAConstantDate", "a.csv", "date,time,v\n2024-05-01,0.0,1\n2024-05-01,0.5,2\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:00Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"date\": text, first \"2024-05-01\", 0 gaps\n"
     "column 2 \"time\": time\n"
     "column 3 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"TheNamedOneOfTwoTimes", "a.csv", "a,timestamp\n2024-05-01T00:00:00Z,2024-05-02T00:00:00Z\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"timestamp\", ISO 8601\n"
     "1 row from 2024-05-02T00:00:00Z to 2024-05-02T00:00:00Z, in order\n"
     "column 1 \"a\": text, first \"2024-05-01T00:00:00Z\", 0 gaps\n"
     "column 2 \"timestamp\": time\n"},
    {"RaggedRows", "a.csv", "time,a,b\n0,1\n1,2,3,\n2,3,4,extra\n3\n4,5,6\n5,6,7\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "6 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:05Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "left out: 1 cell behind the last column\n"
     "column 1 \"time\": time\n"
     "column 2 \"a\": number with 0 decimals, first \"1\", 1 gap\n"
     "column 3 \"b\": number with 0 decimals, first \"3\", 2 gaps\n"},
    {"GapsAndMarks", "a.csv",
     "time,v,w\n0,1,NA\n1,NaN,x\n2,-,\n3,null,y\n4,n/"
     "a,1\n5,0.00001,\n6,1,\n7,1,\n8,1,\n9,1,\n10,1,\n11,1,\n12,1,\n13,T,\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "14 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:13Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 5 decimals, first \"1\", 4 gaps, and 1 text that become gaps, first \"T\", 1 value "
     "nearer "
     "to 0 than 0.0001, which become 0 or 0.0001\n"
     "column 3 \"w\": text, first \"NA\", 10 gaps, 1 number among them\n"},
    {"RowsWithoutATime", "a.csv", "time,v\n2024-05-01,1\n2024-05-02,2\ntotal,3\n2024-05-03,4\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", ISO 8601\n"
     "3 rows from 2024-05-01T00:00:00Z to 2024-05-03T00:00:00Z, in order\n"
     "skipped: 1 row without a time, first in line 4\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"Latin1", "a.csv",
     "time,Stra\xDF"
     "e,\xC4hnlich\n0,1,2\n1,2,3\n",
     "a table, delimiter: comma, Windows-1252\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"Stra\u00DF"
     "e\": number with 0 decimals, first \"1\", 0 gaps\n"
     "column 3 \"\u00C4hnlich\": number with 0 decimals, first \"2\", 0 gaps\n"},
    {"DigitsThatCannotBeToldApart", "a.csv", "time,v\n0.000001,1\n10000,2\n",
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T02:46:40Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "times have 6 digits behind the second, 5 are kept: more cannot be told apart over so long a time\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
    {"JsonLines", "a.jsonl",
     "{\"ts\":\"2024-05-01T00:00:00Z\",\"a\":{\"x\":1}}\n{\"a\":{\"x\":2,\"y\":\"on\"},\"ts\":\"2024-05-01T00:00:01Z\"}"
     "\n",
     "lines of JSON objects, UTF-8\n"
     "time: column \"ts\", ISO 8601\n"
     "2 rows from 2024-05-01T00:00:00Z to 2024-05-01T00:00:01Z, in order\n"
     "column 1 \"ts\": time\n"
     "column 2 \"a.x\": number with 0 decimals, first \"1\", 0 gaps\n"
     "column 3 \"a.y\": text, first \"on\", 1 gap\n"},
    {"JsonLinesOfAnotherExtension", "a.log", "{\"time\":0,\"v\":1}\n{\"time\":1,\"v\":2}\n",
     "lines of JSON objects, UTF-8\n"
     "time: column \"time\", seconds from start\n"
     "2 rows from 1970-01-01T00:00:00Z to 1970-01-01T00:00:01Z, in order\n"
     "times count from the start, which stands as 1970-01-01T00:00:00Z\n"
     "column 1 \"time\": time\n"
     "column 2 \"v\": number with 0 decimals, first \"1\", 0 gaps\n"},
};

GuessCase const kDeclined[] = {
    {"OtherExtension", "a.dat", "time,v\n0,1\n1,2\n",
     "declined: its extension is none of csv, tsv, txt, log, jsonl and ndjson\n"},
    {"NoTime", "a.csv", "id,v\n1,2\n2,3\n",
     "declined: it is no table with times\n"
     "a table with 2 columns at the delimiter comma, but not one with a time in every row:\n"
     "column 1 \"id\": numbers, and its name does not say that they count time\n"
     "column 2 \"v\": numbers, and its name does not say that they count time\n"},
    {"TimeInSomeRows", "a.csv", "a,b\n2024-05-01,1\nx,2\n2024-05-03,3\ny,4\nz,5\n",
     "declined: it is no table with times\n"
     "a table with 2 columns at the delimiter comma, but not one with a time in every row:\n"
     "column 1 \"a\": a time in 2 of 6 rows\n"
     "column 2 \"b\": numbers, and its name does not say that they count time\n"},
    {"TimeThatGoesBack", "a.csv", "time,v\n0,1\n5,2\n3,4\n",
     "declined: it is no table with times\n"
     "a table with 2 columns at the delimiter comma, but not one with a time in every row:\n"
     "column 1 \"time\": numbers that do not ascend like a time\n"
     "column 2 \"v\": numbers, and its name does not say that they count time\n"},
    {"Temperature", "a.csv", "T,v\n20,1\n21,2\n",
     "declined: it is no table with times\n"
     "a table with 2 columns at the delimiter comma, but not one with a time in every row:\n"
     "column 1 \"T\": numbers, and its name does not say that they count time\n"
     "column 2 \"v\": numbers, and its name does not say that they count time\n"},
    {"Prose", "a.log", "The quick brown fox\njumps over\n\nthe lazy dog, and so on and so forth\n",
     "declined: it is no table with times\n"
     "its lines are no rows of a table: at no delimiter do they have as many cells each\n"},
    {"Sentences", "a.log", "$GPGGA,1,2,3\n$GPGSA,1\n$GPRMC,235647.00,A\n$GPGSV,1,2,3,4,5\n",
     "declined: it is no table with times\n"
     "a table with 6 columns at the delimiter comma, but not one with a time in every row:\n"
     "column 1 \"$GPGGA\": no times\n"
     "column 2 \"1\": numbers, and its name does not say that they count time\n"
     "column 3 \"2\": no times\n"
     "column 4 \"3\": no times\n"
     "column 5 \"\": no times\n"
     "column 6 \"\": no times\n"},
    {"SentencesWithATimeInFront", "a.log",
     "2024-05-01 12:00:00,123 INFO begun\n2024-05-01 12:00:01,4 WARN a, b and c\n2024-05-01 12:00:02,7 INFO done\n",
     "declined: it is no table with times\n"
     "a table with 2 columns at the delimiter comma, but not one with a time in every row:\n"
     "there is a time in every row, but rows differ in length, and no header names their cells\n"},
    {"ZeroBytes", "a.txt", "", "declined: it is no table with times\nit holds zero bytes, which no text does\n"},
    {"Empty", "a.csv", "",
     "declined: it is no table with times\n"
     "its lines are no rows of a table: at no delimiter do they have as many cells each\n"},
    {"OneColumn", "a.csv", "time\n0\n1\n",
     "declined: it is no table with times\n"
     "its lines are no rows of a table: at no delimiter do they have as many cells each\n"},
    {"NothingButTimes", "a.csv", "time,v\n2024-05-01,\n2024-05-02,NA\n",
     "it looked like this at its start:\n"
     "a table, delimiter: comma, UTF-8\n"
     "header in line 1, data from line 2 on\n"
     "time: column \"time\", ISO 8601\n"
     "refused: no column but that of the time holds a value\n"},
    {"JsonLinesWithoutTimes", "a.ndjson", "{\"a\":1}\n{\"a\":2}\n",
     "declined: it is no table with times\n"
     "lines of JSON objects, but no member tells a time in every line:\n"
     "column 1 \"a\": numbers, and its name does not say that they count time\n"},
    {"NoJsonLines", "a.jsonl", "a\nb\n",
     "declined: it is no table with times\n"
     "lines of JSON objects, but no member tells a time in every line:\n"},
};

class SeriesGuess : public testing::TestWithParam<GuessCase> {
 protected:
  TempFolder mFolder;
};
class SeriesDecline : public SeriesGuess {};

TEST_P(SeriesGuess, TellsWhatItSees) {
  Seen const seen = See(mFolder, GetParam().file, GetParam().text);
  EXPECT_TRUE(seen.isTaken);
  EXPECT_EQ(seen.lines, GetParam().lines);
}

TEST_P(SeriesDecline, TellsWhyNot) {
  bool const hasZeroes = std::string(GetParam().name) == "ZeroBytes";
  Seen const seen = See(mFolder, GetParam().file, hasZeroes ? std::string("time,v\n0,\0\n", 11) : GetParam().text);
  EXPECT_FALSE(seen.isTaken);
  EXPECT_EQ(seen.lines, GetParam().lines);
}

std::string NameOfCase(testing::TestParamInfo<GuessCase> const& info) {
  return info.param.name;
}

INSTANTIATE_TEST_SUITE_P(Tables, SeriesGuess, testing::ValuesIn(kTaken), NameOfCase);
INSTANTIATE_TEST_SUITE_P(Tables, SeriesDecline, testing::ValuesIn(kDeclined), NameOfCase);

/// Rows of a large file, from its start to `size` bytes.
std::string ManyRows(std::size_t size) {
  std::string text = "time,v\n";
  for (int row = 0; text.size() < size; ++row) {
    text += std::to_string(row) + ",12345.678\n";
  }
  return text;
}

TEST(SeriesLargeFiles, AreLookedAtInTheMiddleAndAtTheEnd) {
  TempFolder const folder;
  std::string const rows = ManyRows(2000000);
  EXPECT_TRUE(See(folder, "a.csv", rows).isTaken);
  std::string prose;
  for (int line = 0; line != 20000; ++line) {
    prose += "and now, something completely different\n";
  }
  EXPECT_FALSE(See(folder, "a.csv", rows + prose).isTaken);
  EXPECT_FALSE(See(folder, "a.csv", ManyRows(900000) + prose + ManyRows(900000).substr(7)).isTaken);
}

TEST(SeriesLargeFiles, AreRefusedByTheirFirstRowWithoutATime) {
  TempFolder const folder;
  std::string text = "time,v\n";
  std::string const start = ManyRows(300000).substr(7);
  std::string bad;
  for (int row = 0; row != 4000; ++row) {
    bad += "never,1\n";
  }
  Seen const seen = See(folder, "a.csv", text + start + bad);
  EXPECT_FALSE(seen.isTaken);
  std::size_t const good = static_cast<std::size_t>(std::count(start.begin(), start.end(), '\n'));
  EXPECT_NE(seen.lines.find("refused: 4000 of " + std::to_string(good + 4000) + " rows tell no time, line " +
                            std::to_string(good + 2) + "\n"),
            std::string::npos)
      << seen.lines;
}

TEST(SeriesLargeFiles, LettersBehindTheStartDecideTheEncoding) {
  TempFolder const folder;
  Seen const seen = See(folder, "a.csv", ManyRows(100000) + "90000,caf\xE9\n");
  EXPECT_TRUE(seen.isTaken);
  EXPECT_EQ(seen.lines.find("a table, delimiter: comma, Windows-1252\n"), 0U) << seen.lines;
}

TEST(SeriesLargeFiles, LongRowsAreLookedAtWhole) {
  TempFolder const folder;
  std::string text = "time";
  for (int column = 0; column != 3000; ++column) {
    text += ",a longer name of column " + std::to_string(column);
  }
  for (int row = 0; row != 12; ++row) {
    text += '\n' + std::to_string(row);
    for (int column = 0; column != 3000; ++column) {
      text += ',' + std::to_string(column * row) + ".123456";
    }
  }
  EXPECT_TRUE(See(folder, "a.csv", text).isTaken);
}

TEST(SeriesFewRows, MayHaveOneWithoutATime) {
  TempFolder const folder;
  auto const taken = [&](int good, int bad) {
    std::string text = "when,v\n";
    for (int row = 0; row != good; ++row) {
      text += "2024-05-" + std::string(row % 28 < 9 ? "0" : "") + std::to_string(row % 28 + 1) + ",1\n";
    }
    for (int row = 0; row != bad; ++row) {
      text += "never,2\n";
    }
    return See(folder, "a.csv", text).isTaken;
  };
  EXPECT_TRUE(taken(3, 1));
  EXPECT_FALSE(taken(2, 1));
  EXPECT_FALSE(taken(20, 2));
  // One in twenty.
  EXPECT_TRUE(taken(38, 2));
  EXPECT_FALSE(taken(37, 2));
  EXPECT_TRUE(taken(1, 0));
}

}  // namespace
}  // namespace senmark_series
