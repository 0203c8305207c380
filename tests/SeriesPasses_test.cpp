// A table that is written while it is surveyed, against the same one written in two passes: the bytes are the same,
// whatever the rows have in store for what was foretold.
#include <algorithm>
#include <filesystem>
#include <functional>
#include <limits>
#include <random>

#include "FileGuess.h"
#include "FilePiece.h"
#include "Foretelling.h"
#include "HostTables.h"
#include "NumberText.h"
#include "Series.h"
#include "Survey.h"
#include "TableWriter.h"
#include "TempFolder.h"

namespace senmark_series {
namespace {

namespace fs = std::filesystem;
using senmark_test::HostTables;
using senmark_test::TempFolder;

constexpr std::uint64_t kAlways = 0;
constexpr std::uint64_t kNever = std::numeric_limits<std::uint64_t>::max();

struct Outcome {
  ePasses passes = ePasses::kTwo;
  std::string bytes;
  std::string failure;
};

class SeriesPasses : public testing::Test {
 protected:
  Outcome Convert(std::string const& path, std::uint64_t foretoldFrom) const {
    Outcome outcome;
    std::string const written = mFolder.Path("output.tdjson");
    try {
      kit::Input const input(path, fs::path(path).extension().string().substr(1), "senmark.series");
      kit::Output output(mTables.Get(), written);
      outcome.passes = senmark_series::Convert(input, output, foretoldFrom);
      output.finish();
      outcome.bytes = mFolder.Read(written);
    } catch (kit::Failure const& failure) {
      outcome.failure = std::to_string(failure.code()) + " at " + std::to_string(failure.offset()) + ", line " +
                        std::to_string(failure.line()) + ": " + failure.what();
    }
    EXPECT_EQ(mFolder.TempNames(), "");
    return outcome;
  }

  /// Both ways. Gives the outcome of the one that foretells.
  Outcome Compare(std::string const& path, std::uint64_t foretoldFrom = kAlways) const {
    Outcome const two = Convert(path, kNever);
    Outcome outcome = Convert(path, foretoldFrom);
    EXPECT_EQ(two.passes, ePasses::kTwo);
    EXPECT_EQ(outcome.failure, two.failure);
    // Not printed: it is long.
    EXPECT_TRUE(outcome.bytes == two.bytes);
    EXPECT_NE(outcome.bytes.empty(), outcome.failure.empty());
    return outcome;
  }

  TempFolder mFolder;
  HostTables mTables;
};

/// Rows in number that are far longer than a look at them is away, and a place among them that no piece holds.
constexpr int kRows = 28000;
constexpr int kLate = kRows / 14 * 11;
constexpr char kHeader[] = "time,a,b,note\n";
std::string const kText = "a text that few rows with it make a large file";

std::string Number(int row) {
  return std::to_string(row % 977) + '.' + std::to_string(row % 7);
}

/// Seconds from the start, two numbers and a text.
std::string PlainRow(int row) {
  return std::to_string(row) + ',' + Number(row) + ',' + std::to_string(row % 13) + "," + kText +
         std::to_string(row % 5);
}

using RowText = std::function<std::string(int row)>;

std::string Table(RowText const& text, std::string const& header = kHeader, int rows = kRows) {
  std::string table = header;
  for (int row = 0; row != rows; ++row) {
    table += text(row) + '\n';
  }
  return table;
}

/// Plain rows but one.
std::string TableWith(std::string const& late, int at = kLate) {
  return Table([&](int row) { return row == at ? late : PlainRow(row); });
}

std::string LateTime() {
  return std::to_string(kLate);
}

/// A moment of 2024, so many minutes from its start on, the day or the month first.
std::string Date(int minute, bool isMonthFirst) {
  kit::CivilTime const time = kit::MakeCivilTime({1704067200 + std::int64_t{minute} * 60, 0});
  char text[64];
  std::snprintf(text, sizeof(text), "%02d/%02d/%04d %02d:%02d", isMonthFirst ? time.month : time.day,
                isMonthFirst ? time.day : time.month, time.year, time.hour, time.minute);
  return text;
}

std::string Utf16(std::string const& text) {
  std::string units = "\xFF\xFE";
  for (char const character : text) {
    units += character;
    units += '\0';
  }
  return units;
}

struct PassCase {
  char const* name;
  ePasses passes;
  std::function<std::string()> table;
  bool isRefused = false;
};

PassCase const kCases[] = {
    {"Plain", ePasses::kOne, [] { return Table(PlainRow); }},
    {"NoEndOfLineAtTheEnd", ePasses::kOne,
     [] {
       std::string table = Table(PlainRow);
       table.pop_back();
       return table;
     }},
    {"CarriageReturns", ePasses::kOne,
     [] {
       std::string table = Table(PlainRow);
       std::replace(table.begin(), table.end(), '\n', '\r');
       return table;
     }},
    {"Utf16", ePasses::kOne, [] { return Utf16(Table(PlainRow)); }},
    {"Utf8WithAMark", ePasses::kOne, [] { return "\xEF\xBB\xBF" + Table(PlainRow); }},
    {"Windows1252FromTheStart", ePasses::kOne,
     [] { return Table([](int row) { return PlainRow(row) + (row == 3 ? " \xE9" : ""); }); }},
    {"UnorderedFromTheStart", ePasses::kOne,
     [] { return Table([](int row) { return Date(row % 2 == 0 ? row + 1 : row - 1, false) + ",1,2," + kText; }); }},
    {"DecimalCommas", ePasses::kOne,
     [] {
       std::string table = Table(PlainRow);
       std::replace(table.begin(), table.end(), ',', ';');
       std::replace(table.begin(), table.end(), '.', ',');
       return table;
     }},

    // What does not matter, however late it comes.
    {"LateText", ePasses::kOne, [] { return TableWith(LateTime() + ",x,n/a,y"); }},
    {"LateGaps", ePasses::kOne, [] { return TableWith(LateTime() + ",,,"); }},
    {"LateShortRow", ePasses::kOne, [] { return TableWith(LateTime()); }},
    {"LateSurplus", ePasses::kOne, [] { return TableWith(LateTime() + ",1,2,x,3,y"); }},
    {"LateRowWithoutATime", ePasses::kOne, [] { return TableWith("never,1,2,x"); }},
    {"LateQuotes", ePasses::kOne, [] { return TableWith(LateTime() + ",\"1.5\",2,\"a\"\"b\nc,\""); }},
    {"LateDecimals", ePasses::kOne, [] { return TableWith(LateTime() + ",1.2345678,0.1234567890123456789,x"); }},
    {"LateTinyNumbers", ePasses::kOne, [] { return TableWith(LateTime() + ",0.00006,-0.00001,x"); }},
    {"LateExponents", ePasses::kOne, [] { return TableWith(LateTime() + ",1.25e-3,9.9999999E14,x"); }},
    {"LateLargeNumbers", ePasses::kOne, [] { return TableWith(LateTime() + ",1e16,9999999999999998,x"); }},

    {"TextLongerThanAnyMayBe", ePasses::kOne,
     [] {
       return Table(
           [](int row) {
             return PlainRow(row).substr(0, PlainRow(row).rfind(',')) +
                    (row % 60 == 0 ? ',' + std::string(20000, 'x') : ",");
           },
           kHeader, kRows / 5);
     }},

    // What does.
    {"LateUtf8ThatIsNone", ePasses::kBegunAnew, [] { return TableWith(LateTime() + ",1,2,caf\xE9"); }},
    {"Utf8CutAtTheEnd", ePasses::kBegunAnew, [] { return Table(PlainRow) + "999999,1,2,caf\xC3"; }},
    {"LateRowThatIsEarlier", ePasses::kBegunAnew, [] { return TableWith("7,1,2,x"); }},
    {"LateRowThatIsEarlierWithoutValues", ePasses::kBegunAnew, [] { return TableWith("7,,,"); }},
    {"LateDigitsOfTime", ePasses::kBegunAnew, [] { return TableWith(LateTime() + ".25,1,2,x"); }},
    {"LateDigitsOfTimeWithoutValues", ePasses::kBegunAnew, [] { return TableWith(LateTime() + ".25,,,"); }},
    {"LateExtent", ePasses::kBegunAnew,
     [] {
       // Microseconds until then; the last row is the one that no piece holds for it has no end of line.
       return Table([](int row) { return "0." + std::to_string(100000 + row) + ",1,2," + kText; }) +
              "4000000000.5,1,2,x";
     }},
    {"LateValueInAnEmptyColumn", ePasses::kBegunAnew,
     [] {
       return Table([](int row) { return std::to_string(row) + ",1," + (row == kLate ? "5" : "") + "," + kText; });
     }},
    {"LateTextInAnEmptyColumn", ePasses::kBegunAnew,
     [] {
       return Table([](int row) {
         return std::to_string(row) + ",1.500000000000000,2.5000000000000," + (row == kLate ? "x" : "");
       });
     }},
    {"NumbersThatAreTextsBetweenPieces", ePasses::kBegunAnew,
     [] {
       return Table([](int row) {
         return row > kRows * 11 / 14 - 1680 && row < kRows * 11 / 14 + 1680 ? std::to_string(row) + ",off,2," + kText
                                                                             : PlainRow(row);
       });
     }},
    {"TextsThatAreNumbersBetweenPieces", ePasses::kBegunAnew,
     [] {
       // Those of the pieces are one in three, those of all rows fewer than one in ten.
       return Table(
           [](int row) {
             bool const isText = row % (kRows * 4 / 7) < 1500;
             return std::to_string(row) + "," + (isText ? "off" : std::to_string(row % 7)) + ",2," + kText;
           },
           kHeader, kRows * 4);
     }},
    {"DatesThatOneRowDecides", ePasses::kBegunAnew,
     [] {
       // As long as it is one day, both orders are as good.
       return Table(
           [](int row) {
             return (row == kLate ? "01/13/2024 00:00" : "01/12/2024 00:00") + (",1,2," + kText + std::to_string(row));
           },
           "date,a,b,note\n");
     }},
    {"MonthsFirst", ePasses::kOne,
     [] { return Table([](int row) { return Date(row * 5, true) + ",1,2," + kText; }, "date,a,b,note\n"); }},
    {"DaysFirst", ePasses::kOne,
     [] { return Table([](int row) { return Date(row * 5, false) + ",1,2," + kText; }, "date,a,b,note\n"); }},

    // What ends a conversion, with the same error.
    {"LateRowThatIsTooLong", ePasses::kTwo,
     [] { return TableWith(LateTime() + ",1,2," + std::string(kLongestRow * 2, 'x')); }, true},
    {"LateRowThatIsTooWide", ePasses::kTwo, [] { return TableWith(std::string(kMostColumns, ',')); }, true},
    {"RowsWithoutATimeBetweenPieces", ePasses::kTwo,
     [] {
       return Table([](int row) {
         return row > kRows * 11 / 14 - 1200 && row < kRows * 11 / 14 + 1200 ? "never,1,2," + kText : PlainRow(row);
       });
     },
     true},
};

class SeriesPassCase : public SeriesPasses, public testing::WithParamInterface<PassCase> {};

TEST_P(SeriesPassCase, HasTheBytesOfTwoPasses) {
  PassCase const& row = GetParam();
  std::string const path = mFolder.Write("a.csv", row.table());
  EXPECT_GT(fs::file_size(path), std::uintmax_t{1} << 20);
  Outcome const outcome = Compare(path, kWorthForetelling);
  EXPECT_EQ(!outcome.failure.empty(), row.isRefused) << outcome.failure;
  EXPECT_EQ(static_cast<int>(outcome.passes), static_cast<int>(row.passes));
}

INSTANTIATE_TEST_SUITE_P(Tables, SeriesPassCase, testing::ValuesIn(kCases),
                         [](testing::TestParamInfo<PassCase> const& each) { return std::string(each.param.name); });

/// A file is read in one pass only if that is asked of it.
TEST_F(SeriesPasses, SomeTablesAreAlwaysReadTwice) {
  std::string const table = Table(PlainRow, kHeader, 200);
  EXPECT_EQ(Compare(mFolder.Write("a.csv", table)).passes, ePasses::kOne);
  EXPECT_EQ(Compare(mFolder.Write("a.csv", table), table.size()).passes, ePasses::kOne);
  EXPECT_EQ(Compare(mFolder.Write("a.csv", table), table.size() + 1).passes, ePasses::kTwo);
  EXPECT_EQ(Compare(mFolder.Write("a.csv", "time,a\n0,\n1,\n")).passes, ePasses::kTwo);
  EXPECT_EQ(Compare(mFolder.Write("a.jsonl", R"({"time":0,"a":1})"
                                             "\n"
                                             R"({"time":1,"b":2})"))
                .passes,
            ePasses::kTwo);
  mFolder.Write("a.csv.senmark.json", R"({"columns":{"a":{"decimals":0}}})");
  EXPECT_EQ(Compare(mFolder.Write("a.csv", table)).passes, ePasses::kTwo);
  mFolder.Write("a.csv.senmark.json", "{}");
  EXPECT_EQ(Compare(mFolder.Write("a.csv", table)).passes, ePasses::kTwo);
  for (std::size_t const columns : {kStreamsAtOnce, kStreamsAtOnce + 1}) {
    std::string wide = "time";
    std::string row;
    for (std::size_t i = 1; i != columns; ++i) {
      wide += ",c" + std::to_string(i);
      row += ",1.5";
    }
    wide += "\n0" + row + "\n1" + row + '\n';
    EXPECT_EQ(Compare(mFolder.Write("wide.csv", wide)).passes,
              columns == kStreamsAtOnce ? ePasses::kOne : ePasses::kTwo);
  }
}

/// A piece begins inside of a text the lines of which look like rows: with values in a column that has none.
TEST_F(SeriesPasses, PiecesMayMakeNoSense) {
  std::string text;
  for (int line = 0; line != 900; ++line) {
    text += std::to_string(line) + ",5,6,x\n";
  }
  Outcome const outcome = Compare(mFolder.Write(
      "a.csv", Table([&](int row) { return std::to_string(row) + ",1,,\"" + text + '"'; }, kHeader, 300)));
  EXPECT_EQ(outcome.passes, ePasses::kBegunAnew);
}

TEST_F(SeriesPasses, FilesOfTheProject) {
  int count = 0;
  for (fs::directory_entry const& file : fs::directory_iterator(SENMARK_TEST_DATA "/series")) {
    EXPECT_EQ(Compare(file.path()).passes, ePasses::kOne) << file.path();
    ++count;
  }
  EXPECT_GE(count, 6);
}

/// A table that is not as foretold is given up where that shows, and not at its end.
TEST_F(SeriesPasses, ContradictionsAreNoticedOnTheWay) {
  int const last = kRows / 14 * 13;
  // From there on for long enough to be no exception.
  auto const lateRow = [&](RowText const& late) {
    return Table([&](int row) {
      if (row == last) {
        return std::string(kLongestRow * 2, 'x');
      }
      return row >= kLate && row < kLate + 3000 ? late(row) : PlainRow(row);
    });
  };
  RowText const kLateRows[] = {
      [](int row) { return std::to_string(row) + ".25,1,2,x"; },
      [](int row) { return std::to_string(row - 1000) + ",1,2,x"; },
      [](int row) { return std::to_string(row) + ",1,2,\xE9"; },
  };
  auto const write = [&](std::string const& path) {
    kit::Input const input(path, "csv", "senmark.series");
    kit::Output output(mTables.Get(), mFolder.Path("output.tdjson"));
    std::vector<std::string> whyNot;
    Layout const layout = GuessFile(input, Sidecar(), whyNot).value();
    return WriteForetoldTable(input, layout, ForetellSurvey(input, layout).value(), output);
  };
  for (RowText const& late : kLateRows) {
    std::string const path = mFolder.Write("a.csv", lateRow(late));
    try {
      EXPECT_FALSE(write(path));
    } catch (kit::Failure const& failure) {
      // The kit sees it first, if a sample is too early.
      EXPECT_EQ(failure.line(), kLate + 2) << failure.what();
    }
    EXPECT_EQ(Compare(path).failure.substr(0, 4), "1506");
  }
  // The row that is too long is what is found otherwise.
  EXPECT_THROW(write(mFolder.Write("a.csv", lateRow(PlainRow))), kit::Failure);
}

/// Of two columns, the time and one more.
Survey SurveyOf(ColumnSurvey const& column) {
  Survey survey;
  survey.layout.time.column = 0;
  survey.layout.columns.resize(2);
  survey.columns.resize(2);
  survey.columns[1] = column;
  return survey;
}

ColumnSurvey Cells(std::uint64_t numbers, std::uint64_t texts, std::size_t longest = 1) {
  ColumnSurvey column;
  column.numbers = numbers;
  column.texts = texts;
  column.longest = longest;
  return column;
}

TEST_F(SeriesPasses, WhatMakesNoDifferenceMayBeOtherwise) {
  Survey const foretold = SurveyOf(Cells(10, 1));
  Survey found = SurveyOf(Cells(100000, 10000));
  found.rows = 110000;
  found.skipped = 3;
  found.surplus = 7;
  found.dateOrder = "because";
  found.columns[1].decimals = 7;
  found.columns[1].gapWords = 2;
  // Of a number, what is cut is its text alone.
  found.columns[1].longest = 100000;
  EXPECT_TRUE(HasComeTrue(foretold, found));
  EXPECT_TRUE(MayComeTrue(foretold, found));
}

TEST_F(SeriesPasses, WhatMakesADifferenceMayNot) {
  struct Difference {
    char const* name;
    ColumnSurvey column;  ///< that was foretold
    std::function<void(Survey&)> change;
    bool isNoticedAtOnce;
  };
  // Texts in such a number are held to less than ever.
  constexpr std::uint64_t kMany = 60000;
  std::size_t const limit = LongestText(Cells(0, kMany));
  ASSERT_EQ(limit, (std::size_t{512} << 20) / kMany);
  auto const column = [](ColumnSurvey const& other) { return [=](Survey& survey) { survey.columns[1] = other; }; };
  Difference const kDifferences[] = {
      {"date order", Cells(1, 0), [](Survey& survey) { survey.layout.time.order = eDateOrder::kMonthFirst; }, false},
      {"digits", Cells(1, 0), [](Survey& survey) { survey.digits = 2; }, false},
      {"needed digits", Cells(1, 0), [](Survey& survey) { survey.digits = survey.neededDigits = 2; }, true},
      {"order", Cells(1, 0), [](Survey& survey) { survey.isOrdered = false; }, false},
      {"kind", Cells(9, 1), column(Cells(9, 2)), true},
      {"other kind", Cells(8, 1), column(Cells(9, 1)), true},
      {"samples", Cells(0, 0), column(Cells(1, 0)), true},
      {"no samples", Cells(1, 0), column(Cells(0, 0)), false},
      {"cut", Cells(0, 1), column(Cells(0, kMany, limit + 1)), true},
  };
  for (Difference const& difference : kDifferences) {
    Survey const foretold = SurveyOf(difference.column);
    Survey found = foretold;
    EXPECT_TRUE(HasComeTrue(foretold, found)) << difference.name;
    EXPECT_TRUE(MayComeTrue(foretold, found)) << difference.name;
    difference.change(found);
    EXPECT_FALSE(HasComeTrue(foretold, found)) << difference.name;
    EXPECT_EQ(MayComeTrue(foretold, found), !difference.isNoticedAtOnce) << difference.name;
  }
  // A text that is as long as both allow is not cut, and one that is cut by both is cut alike.
  EXPECT_TRUE(HasComeTrue(SurveyOf(Cells(0, 1)), SurveyOf(Cells(0, kMany, limit))));
  EXPECT_TRUE(HasComeTrue(SurveyOf(Cells(0, 1)), SurveyOf(Cells(0, 50000, 65536))));
  EXPECT_FALSE(HasComeTrue(SurveyOf(Cells(0, kMany)), SurveyOf(Cells(0, 1, limit + 1))));
}

TEST_F(SeriesPasses, DigitsOfTimesDependOnTheExtent) {
  Survey foretold = SurveyOf(Cells(1, 0));
  foretold.neededDigits = 9;
  foretold.digits = 3;
  Survey soFar = foretold;
  struct Extent {
    std::int64_t seconds;
    bool isLikely;
  };
  // Three digits are told apart by fractions of 32 bits up to there.
  for (Extent const& extent : {Extent{0, true}, {2147482, true}, {2147483, false}, {1000000000, false}}) {
    soFar.first = {5, 0};
    soFar.last = {5 + extent.seconds, 0};
    EXPECT_EQ(MayComeTrue(foretold, soFar), extent.isLikely) << extent.seconds;
  }
  // One digit is the least.
  foretold.digits = 1;
  EXPECT_TRUE(MayComeTrue(foretold, soFar));
}

/// Times in order or once not, cells of all kinds, with something else from some row on.
TEST_F(SeriesPasses, RandomTables) {
  std::mt19937 random(20240501);
  auto const below = [&](unsigned bound) { return static_cast<int>(random() % bound); };
  static constexpr char const* kCells[] = {"",       "1",   "-2.5", "0.00003", "7e2", "x",          "NaN",
                                           "\"q,\"", "1,5", "\xE9", "0.1234",  " 8 ", "\"a\n1,2\"", "caf\xC3\xA9"};
  constexpr unsigned kKinds = sizeof(kCells) / sizeof(*kCells);
  int counts[3] = {};
  for (int table = 0; table != 60; ++table) {
    // Mostly one kind of cell in a column, another one rarely or from some row on.
    unsigned const rows = 2000U + static_cast<unsigned>(below(5000));
    int usual[3];
    int other[3];
    int rarity[3];
    int turn[3];
    for (int column = 0; column != 3; ++column) {
      usual[column] = below(kKinds);
      other[column] = below(kKinds);
      rarity[column] = below(3) == 0 ? 1 + below(2500) : 0;
      turn[column] = below(4) == 0 ? below(rows) : std::numeric_limits<int>::max();
    }
    int const finer = below(4) == 0 ? below(rows) : -1;
    int const earlier = below(6) == 0 ? below(rows) : -1;
    std::string text = below(2) == 0 ? "time,a,b,c\n" : "time,a,a,a\n";
    for (int row = 0; row != static_cast<int>(rows); ++row) {
      text += std::to_string(row == earlier ? row / 2 : row) + (row == finer ? ".125" : "");
      for (int column = 0; column != 3; ++column) {
        bool const isOther = row >= turn[column] || (rarity[column] != 0 && row % rarity[column] == rarity[column] - 1);
        text += std::string(",") + kCells[isOther ? other[column] : usual[column]];
      }
      text += '\n';
    }
    Outcome const outcome = Compare(mFolder.Write("a.csv", text));
    counts[static_cast<int>(outcome.passes)] += outcome.failure.empty() ? 1 : 0;
  }
  // They prove something only if both ways are taken.
  EXPECT_GT(counts[static_cast<int>(ePasses::kOne)], 15);
  EXPECT_GT(counts[static_cast<int>(ePasses::kBegunAnew)], 4);
}

/// Why what is foretold tells nothing of decimals.
TEST_F(SeriesPasses, DecimalsThatSufficeAreAllAlike) {
  std::mt19937 random(7);
  auto const digit = [&] { return static_cast<char>('0' + random() % 10); };
  int numbers = 0;
  for (int round = 0; round != 200000; ++round) {
    std::string text(random() % 2, '-');
    for (auto i = random() % 17; i != 0; --i) {
      text += random() % 3 == 0 ? '0' : digit();
    }
    if (random() % 4 != 0) {
      text += '.';
      for (auto i = random() % 20; i != 0; --i) {
        text += random() % 2 == 0 ? '0' : digit();
      }
    }
    if (random() % 4 == 0) {
      text += 'e' + std::to_string(static_cast<int>(random() % 30) - 15);
    }
    NumberShape const shape = ShapeOf(text, '.');
    std::optional<double> const value = ToNumber(text, '.');
    ASSERT_EQ(shape.isNumber, value.has_value()) << text;
    if (!value) {
      continue;
    }
    ++numbers;
    double const kept = kit::Rounded(*value, kMostDecimals);
    for (unsigned decimals = shape.decimals; decimals != kMostDecimals; ++decimals) {
      ASSERT_EQ(kit::Rounded(*value, decimals), kept) << text << " with " << decimals;
    }
  }
  EXPECT_GT(numbers, 100000);
}

}  // namespace
}  // namespace senmark_series
