// The module for time-stamped tables as a host meets it: files as recorders and offices write them, what becomes of
// each kind of column, and the errors of bad ones.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <variant>

#include "Series.h"
#include "TempFolder.h"
#include "senmark/Host.h"

namespace senmark_series {
namespace {

namespace fs = std::filesystem;
using senmark_test::TempFolder;

senmark::Senmark Library() {
  senmark::Options options;
  options.pluginFolder = SENMARK_MODULES;
  options.wantedModules = "series";
  return senmark::Senmark(senmark::Library::Linked(), options);
}

constexpr char kCreator[] = "senmark series";

/// What the file tells below `import`, by the names that people see.
std::string Import(senmark::File const& file, std::string const& name) {
  std::string found = "none";
  file.walk([&](senmark::Node const& node, int) {
    if (node.displayName == name && node.fixed && node.path.find("import") != std::string::npos) {
      if (auto const* const text = std::get_if<std::string>(&node.fixed->value)) {
        found = *text;
      } else {
        found = std::to_string(static_cast<long long>(std::get<double>(node.fixed->value)));
      }
    }
  });
  return found;
}

/// The samples of all columns, a line each: name, then seconds and value of each sample.
std::string Samples(senmark::File const& file) {
  std::string text;
  file.walk([&](senmark::Node const& node, int) {
    if (!node.dynamic) {
      return;
    }
    text += node.displayName + ':';
    for (senmark::Sample const& sample : file.samples(node.dynamic->sampleSetId).all().collect()) {
      char buffer[64];
      std::snprintf(buffer, sizeof(buffer), " %g=", sample.time.seconds());
      text += buffer;
      if (auto const* const value = std::get_if<std::string>(&sample.value)) {
        text += *value;
      } else {
        std::snprintf(buffer, sizeof(buffer), "%.16g", std::get<double>(sample.value));
        text += buffer;
      }
    }
    text += node.dynamic->interpolation == senmark::eInterpolation::kHold ? " (holds)\n" : "\n";
  });
  return text;
}

class Series : public testing::Test {
 protected:
  std::string Convert(std::string const& name, std::string const& text) {
    return Samples(Library().open(mFolder.Write(name, text)));
  }

  /// Code, offset and line of the error.
  std::string ErrorOf(std::string const& name, std::string const& text) {
    try {
      Library().open(mFolder.Write(name, text), mFolder.Path("output.tdjson"));
    } catch (senmark::Error const& error) {
      EXPECT_FALSE(fs::exists(mFolder.Path("output.tdjson")));
      return std::to_string(error.code()) + " at " + std::to_string(error.offset()) + ", line " +
             std::to_string(error.line());
    }
    return "none";
  }

  TempFolder mFolder;
};

TEST_F(Series, ColumnsBecomeStreams) {
  EXPECT_EQ(Convert("a.csv",
                    "time,Speed (m/s),state,mixed,same,none\n"
                    "10,1.50,on,1,7,\n"
                    "11,,off,x,7,\n"
                    "12.5,-2,,y,7,\n"),
            "Speed [m/s]: 0=1.5 2.5=-2\n"
            "state: 0=on 1=off (holds)\n"
            "mixed: 0=1 1=x 2.5=y (holds)\n"
            "same: 0=7 1=7 2.5=7\n");
}

TEST_F(Series, RowsAreSortedAndEqualTimesKeepTheirOrder) {
  EXPECT_EQ(Convert("a.csv",
                    "when,v,w\n2024-05-01 00:00:02,1,a\n2024-05-01 00:00:00,2,b\n2024-05-01 00:00:02,3,c\n"
                    "2024-05-01 00:00:00,4,d\n"),
            "v: 0=2 0=4 2=1 2=3\n"
            "w: 0=b 0=d 2=a 2=c (holds)\n");
}

TEST_F(Series, ValuesAreThoseThatAFileCanHold) {
  EXPECT_EQ(Convert("a.csv",
                    "time,small,large,exponent,digits\n"
                    "0,0.00003,9007199254740991,1.5e-3,0.1234567890123456789\n"
                    "1,-0.00007,-1234567890123.25,2E2,-0.5\n"),
            "small: 0=0 1=-0.0001\n"
            "large: 0=9007199254740991 1=-1234567890123.25\n"
            "exponent: 0=0.0015 1=200\n"
            "digits: 0=0.123456789012346 1=-0.5\n");
}

TEST_F(Series, TextsAreThoseThatAFileCanHold) {
  std::string const longest(12000, 'x');
  std::string const cut(10000, 'x');
  EXPECT_EQ(
      Convert("a.csv", "time,note\n0,\"a \"\"b\"\" [c\"\n1,\"line\nend\"\n2,\x01\x02\n3,caf\xE9\n4," + longest + "\n"),
      "note: 0=a \uFF02"
      "b\uFF02 \uFF3B"
      "c 1=line\nend 2=\uFFFD\uFFFD 3=caf\u00E9 4=" +
          cut + " (holds)\n");
}

TEST_F(Series, NamesMayBeAnythingAndComeTwice) {
  EXPECT_EQ(Convert("a.csv", "time,a b,a b,,\"x\"\"y\",import\n0,1,2,3,4,5\n1,2,3,4,5,6\n"),
            "a b: 0=1 1=2\n"
            "a b: 0=2 1=3\n"
            "column 4: 0=3 1=4\n"
            "x\"y: 0=4 1=5\n"
            "import: 0=5 1=6\n");
}

TEST_F(Series, LinesOfJson) {
  EXPECT_EQ(Convert("a.ndjson",
                    "{\"t\":0,\"a\":{\"b\":[1,2]},\"ok\":true}\n"
                    "{\"t\":1,\"late\":\"x\",\"a\":{\"b\":[3]}}\n"
                    "{\"t\":2,\"a\":null}\n"),
            "a.b.0: 0=1 1=3\n"
            "a.b.1: 0=2\n"
            "ok: 0=true (holds)\n"
            "late: 1=x (holds)\n");
}

TEST_F(Series, ImportTellsHowItWasRead) {
  senmark::File const file = Library().open(
      mFolder.Write("a.csv", "Datum;Uhrzeit;v\n01.02.2024;12:00;1,5\n?;;2\n02.02.2024;12:00;3\n03.02.2024;1:00;3\n"));
  EXPECT_EQ(file.info().creator, kCreator);
  EXPECT_EQ(Import(file, "delimiter"), "semicolon");
  EXPECT_EQ(Import(file, "encoding"), "UTF-8");
  EXPECT_EQ(Import(file, "time column"), "Datum, Uhrzeit");
  EXPECT_EQ(Import(file, "time form"), "date and time of day in two columns");
  EXPECT_EQ(Import(file, "date order"), "day before month: ambiguous, so taken without further evidence");
  EXPECT_EQ(Import(file, "time start"), "none");
  EXPECT_EQ(Import(file, "rows"), "3");
  EXPECT_EQ(Import(file, "skipped rows"), "1");
  senmark::File const elapsed = Library().open(mFolder.Write("b.jsonl", "{\"t\":0,\"v\":1}\n{\"t\":1,\"v\":1}\n"));
  EXPECT_EQ(Import(elapsed, "delimiter"), "JSON lines");
  EXPECT_EQ(Import(elapsed, "time start"),
            "times count from the start of the recording, which stands as 1970-01-01T00:00:00Z");
}

TEST_F(Series, TimesHaveTheirOwnDigits) {
  auto const digits = [this](std::string const& text) {
    std::string const output = mFolder.Path("digits.tdjson");
    fs::remove(output);
    Library().open(mFolder.Write("a.csv", text), output);
    std::string const bytes = mFolder.Read(output);
    std::string const key = "\"precisionLength\":";
    return bytes.substr(bytes.find(key) + key.size(), 1);
  };
  EXPECT_EQ(digits("time,v\n0,1\n1,2\n"), "1");
  EXPECT_EQ(digits("time,v\n0.25,1\n1,2\n"), "2");
  EXPECT_EQ(digits("time,v\n0.000000001,1\n1,2\n"), "9");
  EXPECT_EQ(digits("time,v\n0.000000001,1\n135,2\n"), "7");
  EXPECT_EQ(digits("epoch_ms,v\n1700000000123,1\n1700000000500,2\n"), "3");
  EXPECT_EQ(digits("when,v\n1970-01-01T00:00:00.123Z,1\n2060-01-01,2\n"), "1");
}

TEST_F(Series, WideTablesGoInSeveralPasses) {
  std::string text = "time";
  for (int column = 0; column != 600; ++column) {
    text += ",c" + std::to_string(column);
  }
  for (int row = 0; row != 3; ++row) {
    text += '\n' + std::to_string(row);
    for (int column = 0; column != 600; ++column) {
      text += ',' + (column % 50 == 7 ? "t" + std::to_string(column) : std::to_string(column * 10 + row));
    }
  }
  std::string const samples = Convert("a.csv", text);
  EXPECT_EQ(std::count(samples.begin(), samples.end(), '\n'), 600);
  EXPECT_NE(samples.find("c0: 0=0 1=1 2=2\n"), std::string::npos);
  EXPECT_NE(samples.find("c256: 0=2560 1=2561 2=2562\n"), std::string::npos);
  EXPECT_NE(samples.find("c557: 0=t557 1=t557 2=t557 (holds)\n"), std::string::npos);
  EXPECT_NE(samples.find("c599: 0=5990 1=5991 2=5992\n"), std::string::npos);
}

TEST_F(Series, DeclinedFilesGoToTheLibrarysOwnConverters) {
  senmark::File const file = Library().open(mFolder.Write("a.csv", "id,v\n1,2\n"));
  EXPECT_EQ(file.info().creator, "com.velmo.sensor.csv");
  EXPECT_EQ(Samples(file), "");
}

TEST_F(Series, TheSameFileGivesTheSameBytes) {
  std::string const path = mFolder.Write("a.csv", "time,v,w\n1,2,a\n0,3,b\n5,,c\n");
  mFolder.Write("a.csv.senmark.json", R"({"time":{"column":"time","form":"elapsed-s"}})");
  for (char const* const output : {"one.tdjson", "two.tdjson"}) {
    Library().open(path, mFolder.Path(output));
  }
  EXPECT_EQ(mFolder.Read(mFolder.Path("one.tdjson")), mFolder.Read(mFolder.Path("two.tdjson")));
}

TEST_F(Series, ErrorsHaveTheirPlace) {
  std::string rows = "time,v\n";
  for (int row = 0; row != 150000; ++row) {
    rows += std::to_string(row) + ",1\n";
  }
  std::string broken;
  for (int row = 0; row != 9000; ++row) {
    broken += "never,2\n";
  }
  // Not at the places of a large file that are looked at before it is taken.
  std::size_t const third = rows.find('\n', 400000) + 1;
  std::string const text = rows.substr(0, third) + broken + rows.substr(third);
  std::string const start = text.substr(0, text.find("never"));
  std::string const expected = "1506 at " + std::to_string(start.size()) + ", line " +
                               std::to_string(std::count(start.begin(), start.end(), '\n') + 1);
  EXPECT_EQ(ErrorOf("a.csv", text), expected);
}

TEST_F(Series, WrongSidecarsAreErrors) {
  for (char const* const json : {"{\"delimiter\":1}", "no JSON", "{\"columns\":{\"none\":{}}}",
                                 "{\"time\":{\"column\":9}}", "{\"delimiter\":\"tab\"}"}) {
    mFolder.Write("a.csv.senmark.json", json);
    EXPECT_EQ(ErrorOf("a.csv", "time,v\n0,1\n1,2\n"), "1506 at -1, line -1") << json;
  }
  mFolder.Write("a.csv.senmark.json", "{}");
  EXPECT_EQ(ErrorOf("a.csv", "time,v\n0,1\n1,2\n"), "none");
}

TEST_F(Series, EveryCutOfAFileIsTakenOrRefused) {
  std::string const tables[] = {
      "# c\ntime [ms],\"a \"\"b\"\"\",text\n0,1.5,\"x\ny\"\n10,,z\n20,2,\"\"\n",
      "\xFF\xFEt\0;\0v\0\n\0" + std::string("0\0;\0001\0\n\0", 8),
      "{\"t\":\"2024-05-01T00:00:00Z\",\"a\":[1,{\"b\":\"\\u00e9\"}]}\n{\"t\":\"2024-05-01T00:00:01Z\"}\n"};
  for (std::string const& table : tables) {
    for (std::size_t size = 0; size <= table.size(); ++size) {
      // Whatever it is: a result or an error, and nothing left behind.
      ErrorOf(size % 2 == 0 ? "a.csv" : "a.jsonl", table.substr(0, size));
      fs::remove(mFolder.Path("output.tdjson"));
    }
  }
}

struct RealCase {
  char const* name;
  bool isTaken;
  char const* timeColumn;
  char const* timeForm;
  char const* rows;
  char const* streams;
  char const* samples;  ///< of all streams; what is missing to rows times streams are gaps
};

RealCase const kReal[] = {
    {"air_quality_hourly.csv", true, "Date, Time", "date and time of day in two columns", "9357", "13", "121641"},
    {"ais_boat_positions_bom.csv", true, "ais_pos_timestamp", "date", "22287", "3", "66861"},
    {"bike_counters_2012_latin1.csv", true, "Date", "date", "310", "7", "2170"},
    {"bike_counters_2012_utf8bom.csv", true, "Date", "date", "310", "7", "2170"},
    {"bike_counters_2012_utf16be.csv", true, "Date", "date", "310", "7", "2170"},
    {"bike_counters_2012_utf16le.tsv", true, "Date", "date", "310", "7", "2170"},
    {"fires_satellite_1_day.csv", true, "acq_date, acq_time", "date and time of day in two columns", "3125", "11",
     "34375"},
    {"imu_9dof_100hz.csv", true, "Time (s)", "seconds from start", "13514", "9", "121626"},
    {"quoted_newlines_bigrams.csv", false, "", "", "", "", ""},
    // 46 of its values are the letter T: gaps.
    {"weather_central_park_2016_crlf.csv", true, "date", "date", "366", "6", "2150"},
    {"weather_death_valley_2021.csv", true, "DATE", "ISO 8601", "365", "8", "2914"},
    {"weather_montreal_2012_hourly.csv", true, "Date/Time", "ISO 8601", "8784", "7", "61488"},
    {"weather_sitka_2021.csv", true, "DATE", "ISO 8601", "365", "16", "4041"},
    {"accelerometer_100hz.txt", false, "", "", "", "", ""},
    {"earthquakes_significant.txt", false, "", "", "", "", ""},
    {"unemployment_2009.tsv", false, "", "", "", "", ""},
    {"android_forwarder_crlf.log", false, "", "", "", "", ""},
    {"gnss_multi_crlf.log", false, "", "", "", "", ""},
    {"gps_moving_sirf2.log", false, "", "", "", "", ""},
    {"rtk_receiver.txt", false, "", "", "", "", ""},
};

/// Where the file lies, in the project or in the folder of further real files; empty if nowhere.
std::string FindReal(std::string const& name) {
  char const* const folder = std::getenv("SENMARK_REAL_DATA");
  for (std::string const& root :
       {std::string(SENMARK_TEST_DATA), std::string(folder != nullptr ? folder : SENMARK_REAL_DATA)}) {
    std::error_code ignored;
    for (fs::recursive_directory_iterator each(root, ignored), end; each != end; each.increment(ignored)) {
      if (each->path().filename() == name) {
        return each->path();
      }
    }
  }
  return std::string();
}

class RealSeries : public testing::TestWithParam<RealCase> {};

TEST_P(RealSeries, IsTakenOrDeclined) {
  RealCase const& row = GetParam();
  std::string const path = FindReal(row.name);
  if (path.empty()) {
    GTEST_SKIP() << "there is no " << row.name;
  }
  TempFolder const folder;
  senmark::File const file = Library().open(path);
  EXPECT_EQ(file.info().creator == kCreator, row.isTaken);
  if (!row.isTaken) {
    return;
  }
  EXPECT_EQ(Import(file, "time column"), row.timeColumn);
  EXPECT_EQ(Import(file, "time form"), row.timeForm);
  EXPECT_EQ(Import(file, "rows"), row.rows);
  EXPECT_EQ(Import(file, "skipped rows"), "0");
  std::size_t streams = 0;
  std::size_t samples = 0;
  file.walk([&](senmark::Node const& node, int) {
    if (node.dynamic) {
      ++streams;
      samples += file.samples(node.dynamic->sampleSetId).all().collect().size();
    }
  });
  EXPECT_EQ(std::to_string(streams), row.streams);
  EXPECT_EQ(std::to_string(samples), row.samples);
}

INSTANTIATE_TEST_SUITE_P(Files, RealSeries, testing::ValuesIn(kReal), [](testing::TestParamInfo<RealCase> const& each) {
  std::string name = each.param.name;
  std::replace(name.begin(), name.end(), '.', '_');
  return name;
});

}  // namespace
}  // namespace senmark_series
