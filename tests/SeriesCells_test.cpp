// What cutting a cell finds out at once is what its text says when it is read for itself.
#include <gtest/gtest.h>

#include <random>

#include "Ascii.h"
#include "DelimitedRows.h"
#include "NumberText.h"
#include "Surveyor.h"
#include "TempFolder.h"
#include "TextMap.h"
#include "TimeForm.h"

namespace senmark_series {
namespace {

using senmark_test::TempFolder;

std::string RandomText(std::mt19937& random, std::string_view alphabet, std::size_t size) {
  std::string text;
  while (text.size() != size) {
    text += alphabet[random() % alphabet.size()];
  }
  return text;
}

TEST(SeriesTextMap, HasABitForEachByte) {
  std::mt19937 random(1);
  std::string every;
  for (int i = 0; i != 256; ++i) {
    every += static_cast<char>(i);
  }
  for (char const delimiter : {',', '\t', ' ', '\xE9', '5'}) {
    TextMap map(delimiter);
    // A map that has told of a longer text, too.
    for (std::size_t const size : {300, 0, 1, 7, 8, 63, 64, 65, 127, 128, 129, 256}) {
      std::string const text = size == 256 ? every : RandomText(random, every, size);
      map.mark(text);
      TextMap::View const view = map.view();
      for (std::size_t from = 0; from <= size; ++from) {
        for (std::size_t i = 0; i != TextMap::kWindow; ++i) {
          bool const isThere = from + i < size;
          auto const byte = static_cast<unsigned char>(isThere ? text[from + i] : 'x');
          bool const isStop = isThere && (static_cast<char>(byte) == delimiter || byte <= 13);
          bool const isOther = isThere && (byte < '0' || byte > '9');
          ASSERT_EQ(view.stopsFrom(text.data() + from) >> i & 1, isStop ? 1U : 0U) << size << ' ' << from << ' ' << i;
          ASSERT_EQ(view.nonDigitsFrom(text.data() + from) >> i & 1, isOther ? 1U : 0U)
              << size << ' ' << from << ' ' << i;
        }
      }
    }
  }
}

/// The one cell of a line, with room behind it for what is loaded at once.
class OneCell {
 public:
  OneCell(std::string const& cell, char delimiter, char decimalMark)
      : mText(cell + delimiter + std::string(100, 'x') + '\n'),
        mBuffer(mText, eEncoding::kUtf8, 0, true),
        mReader(mBuffer, DialectWith(delimiter, decimalMark)) {
    mReader.next(mRow);
  }
  Cell const& get() const { return mRow.cells.at(0); }

 private:
  static Dialect DialectWith(char delimiter, char decimalMark) {
    Dialect dialect = DialectOf(delimiter);
    dialect.decimalMark = decimalMark;
    return dialect;
  }

  std::string mText;
  TextBuffer mBuffer;
  DelimitedRows mReader;
  Row mRow;
};

struct PlainCase {
  char const* text;
  unsigned integers;  ///< 0: it is not read at once
  unsigned fraction;
  std::uint64_t digits;
  bool isNegative;
};

PlainCase const kPlainCases[] = {
    {"0", 1, 0, 0, false},
    {"-0", 1, 0, 0, true},
    {"7", 1, 0, 7, false},
    {"12345678", 8, 0, 12345678, false},
    {"123456789", 9, 0, 123456789, false},
    {"999999999999999", 15, 0, 999999999999999, false},
    {"-999999999999999", 15, 0, 999999999999999, true},
    {"1000000000000000", 0, 0, 0, false},
    {"0.5", 1, 1, 5, false},
    {"-0.00012345", 1, 8, 12345, true},
    {"0.001015204", 1, 9, 1015204, false},
    {"12345678.1234567", 8, 7, 123456781234567, false},
    {"1.23456789012345", 1, 14, 123456789012345, false},
    {"12345678901234.5", 14, 1, 123456789012345, false},
    {"-12345678901234.5", 14, 1, 123456789012345, true},
    {"1.234567890123456", 0, 0, 0, false},
    {"12345678901234.56", 0, 0, 0, false},
    {"", 0, 0, 0, false},
    {"-", 0, 0, 0, false},
    {".", 0, 0, 0, false},
    {"-.", 0, 0, 0, false},
    {".5", 0, 0, 0, false},
    {"-.5", 0, 0, 0, false},
    {"5.", 0, 0, 0, false},
    {"-5.", 0, 0, 0, false},
    {"+5", 0, 0, 0, false},
    {"--5", 0, 0, 0, false},
    {"5-", 0, 0, 0, false},
    {"1-2", 0, 0, 0, false},
    {"1.2.3", 0, 0, 0, false},
    {"1..2", 0, 0, 0, false},
    {"1.-2", 0, 0, 0, false},
    {"1e5", 0, 0, 0, false},
    {"1.5e5", 0, 0, 0, false},
    {"1.5 x", 0, 0, 0, false},
    {"12a", 0, 0, 0, false},
    {"a12", 0, 0, 0, false},
    {"12:30", 0, 0, 0, false},
    {"1/2", 0, 0, 0, false},
};

TEST(SeriesPlainNumber, IsReadWhenItsCellIsCut) {
  for (PlainCase const& each : kPlainCases) {
    OneCell const cut(each.text, ';', '.');
    Cell const& cell = cut.get();
    ASSERT_EQ(cell.text, each.text);
    ASSERT_EQ(cell.plain.isThere(), each.integers != 0) << each.text;
    if (each.integers != 0) {
      EXPECT_EQ(cell.plain.integers, each.integers) << each.text;
      EXPECT_EQ(cell.plain.fraction, each.fraction) << each.text;
      EXPECT_EQ(cell.plain.digits(cell.text.data()), each.digits) << each.text;
      EXPECT_EQ(cell.plain.isNegative(), each.isNegative) << each.text;
    }
  }
}

TEST(SeriesPlainNumber, HasAllItsDigitsWhereverTheMarkStands) {
  std::string const digits = "987654321234567";
  for (std::size_t count = 2; count <= PlainNumber::kMostDigits; ++count) {
    for (std::size_t integers = 1; integers != count; ++integers) {
      std::string text = digits.substr(0, count);
      std::uint64_t const expected = std::stoull(text);
      text.insert(integers, ".");
      for (char const* const sign : {"", "-"}) {
        OneCell const cut(sign + text, ';', '.');
        PlainNumber const& number = cut.get().plain;
        ASSERT_EQ(number.integers, integers) << text;
        EXPECT_EQ(number.digits(cut.get().text.data()), expected) << sign << text;
      }
    }
  }
}

TEST(SeriesPlainNumber, HasTheMarkOfItsTable) {
  EXPECT_TRUE(OneCell("1,5", ';', ',').get().plain.isThere());
  EXPECT_FALSE(OneCell("1.5", ';', ',').get().plain.isThere());
  EXPECT_FALSE(OneCell("1,5", ';', '.').get().plain.isThere());
  // What delimits is no mark.
  EXPECT_EQ(OneCell("1", ',', ',').get().text, "1");
  EXPECT_EQ(OneCell("1", '.', '.').get().plain.integers, 1);
}

TEST(SeriesPlainNumber, IsNoneWhereItsSignsMeanOtherThings) {
  for (char const delimiter : {'-', '5'}) {
    OneCell const cut("12", delimiter, '.');
    EXPECT_EQ(cut.get().text, "12");
    EXPECT_FALSE(cut.get().plain.isThere());
  }
  std::string const text = "7123.5,6,7," + std::string(100, 'x') + "\n";
  TextBuffer buffer(text, eEncoding::kUtf8, 0, true);
  Dialect dialect = DialectOf(',');
  dialect.quote = '7';
  DelimitedRows reader(buffer, dialect);
  Row row;
  ASSERT_TRUE(reader.next(row));
  EXPECT_EQ(row.cells.at(0).text, "123.5,6,");
}

/// Everything that is known of a cell without its text is what its text says.
void ExpectSameAsText(Cell const& cell, char mark) {
  NumberShape const shape = ShapeOf(cell.text, mark);
  NumberShape const shapeOfCell = ShapeOfCell(cell, mark);
  ASSERT_EQ(shapeOfCell.isNumber, shape.isNumber) << cell.text;
  ASSERT_EQ(shapeOfCell.decimals, shape.decimals) << cell.text;
  ASSERT_EQ(shapeOfCell.isTiny, shape.isTiny) << cell.text;
  std::optional<double> const number = ToNumber(cell.text, mark);
  if (cell.plain.isThere()) {
    ASSERT_TRUE(number) << cell.text;
    ASSERT_EQ(kit::Rounded(DecimalOf(cell), 15), kit::Rounded(*number, 15)) << cell.text;
    ASSERT_EQ(DecimalOf(cell).decimals, shape.decimals) << cell.text;
  }
  for (unsigned const unitDigits : {0U, 3U, 6U, 9U}) {
    kit::Instant time;
    if (CountedTimeOfCell(cell, unitDigits, time) && time.seconds >= kit::detail::kFirstSecond &&
        time.seconds <= kit::detail::kLastSecond) {
      ASSERT_EQ(CountedTime(cell.text, unitDigits, mark), time) << cell.text << ' ' << unitDigits;
    } else if (cell.plain.isThere() && cell.plain.fraction <= 9 - unitDigits) {
      ASSERT_EQ(CountedTime(cell.text, unitDigits, mark), std::nullopt) << cell.text << ' ' << unitDigits;
    }
  }
}

/// All rows of a text, as cells between bars.
std::string CutAll(TextBuffer& buffer, Dialect const& dialect) {
  DelimitedRows reader(buffer, dialect);
  std::string shown;
  Row row;
  while (reader.next(row)) {
    shown += std::to_string(row.line) + '@' + std::to_string(row.offset);
    for (Cell const& cell : row.cells) {
      ExpectSameAsText(cell, dialect.decimalMark);
      shown += '|' + std::string(cell.text);
    }
    shown += '\n';
  }
  return shown;
}

/// Cut by looking at one byte after the other, for a text without quotes and comments.
std::string CutPlainly(std::string const& text, char delimiter) {
  std::string shown;
  std::int64_t line = 1;
  for (std::size_t start = 0; start < text.size(); ++line) {
    std::size_t const end = std::min(text.find_first_of("\r\n", start), text.size());
    std::string row;
    bool hasText = false;
    for (std::size_t cell = start; cell <= end;) {
      std::size_t const stop = std::min(text.find(delimiter, cell), end);
      auto const isBlank = [&](char each) { return each != delimiter && IsBlank(each); };
      std::string_view bytes = std::string_view(text).substr(cell, stop - cell);
      while (!bytes.empty() && isBlank(bytes.front())) {
        bytes.remove_prefix(1);
      }
      while (!bytes.empty() && isBlank(bytes.back())) {
        bytes.remove_suffix(1);
      }
      hasText = hasText || !bytes.empty();
      row += '|' + std::string(bytes);
      cell = stop + 1;
    }
    if (hasText) {
      shown += std::to_string(line) + '@' + std::to_string(start) + row + '\n';
    }
    start = end + (text.compare(end, 2, "\r\n") == 0 ? 2 : 1);
  }
  return shown;
}

class SeriesCutting : public testing::Test {
 protected:
  kit::Input FileOf(std::string const& text) { return {mFolder.Write("cells.csv", text), "csv", ""}; }
  static std::string InPieces(kit::Input const& file, Dialect const& dialect, std::size_t pieceSize) {
    TextBuffer buffer(file, eEncoding::kUtf8, true, pieceSize);
    return CutAll(buffer, dialect);
  }
  static std::string AtOnce(std::string const& text, Dialect const& dialect) {
    TextBuffer buffer(text, eEncoding::kUtf8, 0, true);
    return CutAll(buffer, dialect);
  }

  TempFolder mFolder;
};

TEST_F(SeriesCutting, IsThatOfALookAtEachByte) {
  std::mt19937 random(2);
  for (char const delimiter : {',', ';', '\t', '|'}) {
    for (int i = 0; i != 400; ++i) {
      std::string const alphabet =
          std::string(1 + random() % 3, delimiter) + "00123456789.-" + (i % 2 == 0 ? "" : " \t\v+e:x\xC3\xA9") + "\n\r";
      std::string const text = RandomText(random, alphabet, random() % 400);
      ASSERT_EQ(AtOnce(text, DialectOf(delimiter)), CutPlainly(text, delimiter)) << text;
    }
  }
}

TEST_F(SeriesCutting, IsTheSameWhereverPiecesEnd) {
  std::mt19937 random(3);
  for (char const delimiter : {',', ';', '\t', ' '}) {
    for (int i = 0; i != 10; ++i) {
      std::string text;
      while (text.size() < 300) {
        // Numbers of all lengths, texts, quotes with anything in them, and ends of lines.
        switch (random() % 8) {
          case 0:
            text += '"' + RandomText(random, "1,; \t\na", random() % 12) + (random() % 4 == 0 ? "" : "\"");
            break;
          case 1:
            text += RandomText(random, "ab \"#/;", random() % 80);
            break;
          default:
            text += (random() % 2 == 0 ? "-" : "") + RandomText(random, "0123456789", random() % 17) +
                    (random() % 2 == 0 ? "." : "") + RandomText(random, "0012", random() % 12);
        }
        static constexpr std::string_view kEnds[] = {"\n", "\r\n", "\r"};
        text += random() % 5 == 0 ? std::string(kEnds[random() % 3]) : std::string(1, delimiter);
      }
      Dialect const dialect = DialectOf(delimiter);
      std::string const expected = AtOnce(text, dialect);
      kit::Input const file = FileOf(text);
      for (std::size_t size = 1; size != 70; ++size) {
        ASSERT_EQ(InPieces(file, dialect, size), expected) << size << ": " << text;
      }
    }
  }
}

TEST_F(SeriesCutting, NumbersAreReadWithTheirTextAlsoWithADecimalComma) {
  std::mt19937 random(4);
  Dialect dialect = DialectOf(';');
  dialect.decimalMark = ',';
  std::string text;
  for (int i = 0; i != 20000; ++i) {
    text += (random() % 2 == 0 ? "-" : "") + RandomText(random, "0123456789", random() % 17) +
            (random() % 4 != 0 ? "," : "") + RandomText(random, "00000123", random() % 16);
    text += i % 10 == 9 ? '\n' : ';';
  }
  AtOnce(text, dialect);
}

/// What a survey says of a column, from the texts of its cells alone.
ColumnSurvey CountPlainly(std::vector<std::string> const& cells) {
  ColumnSurvey column;
  for (std::string const& cell : cells) {
    NumberShape const shape = ShapeOf(cell, '.');
    bool const isText = !shape.isNumber && !IsGapWord(cell);
    column.numbers += shape.isNumber ? 1 : 0;
    column.texts += isText ? 1 : 0;
    column.gapWords += !shape.isNumber && !isText && !cell.empty() ? 1 : 0;
    column.tiny += shape.isTiny ? 1 : 0;
    column.decimals = std::max(column.decimals, shape.decimals);
    column.firstValue = column.firstValue.empty() ? cell : column.firstValue;
    column.firstText = column.firstText.empty() && isText ? cell : column.firstText;
    column.longest = std::max(column.longest, cell.size());
  }
  return column;
}

TEST_F(SeriesCutting, ASurveyCountsUsualNumbersLikeOthers) {
  static constexpr char const* kCells[] = {
      "1",       "-2", "0.5", "0.1234", "0.0000", "0.00001", "-0.00001", "0.000100",  "0.000099", "1e-7", "1.00001",
      "0.12345", "0",  "",    "NaN",    "-",      "a b c",   "10.00001", "0.0000000", "+7",       "1e3"};
  std::mt19937 random(8);
  for (int round = 0; round != 300; ++round) {
    Layout layout;
    layout.dialect = DialectOf(',');
    layout.columns.resize(4);
    layout.time.kind = eTimeKind::kElapsed;
    layout.time.column = 1;
    // Few kinds of cells in each column, so that numbers are usual for a while.
    std::vector<std::string> cells[4];
    std::string text;
    for (int row = 0; row != 60; ++row) {
      for (std::size_t column = 0; column != 4; ++column) {
        std::size_t const kinds = 1 + static_cast<std::size_t>(row) * (1 + column) / 12;
        std::string cell = kCells[(random() % kinds + static_cast<unsigned>(round)) % std::size(kCells)];
        cell = column == 1 ? std::to_string(row) : cell;
        cells[column].push_back(cell);
        text += cell + (column == 3 ? '\n' : ',');
      }
    }
    TextBuffer buffer(text, eEncoding::kUtf8, 0, true);
    DelimitedRows reader(buffer, layout.dialect);
    Surveyor surveyor(layout);
    Row row;
    kit::Instant time;
    while (reader.next(row)) {
      ASSERT_TRUE(surveyor.take(row, time));
    }
    cells[1].clear();
    Survey const found = surveyor.survey();
    for (std::size_t i = 0; i != 4; ++i) {
      ColumnSurvey const expected = CountPlainly(cells[i]);
      ColumnSurvey const& column = found.columns[i];
      EXPECT_EQ(column.numbers, expected.numbers) << round << ' ' << i;
      EXPECT_EQ(column.texts, expected.texts) << round << ' ' << i;
      EXPECT_EQ(column.gapWords, expected.gapWords) << round << ' ' << i;
      EXPECT_EQ(column.tiny, expected.tiny) << round << ' ' << i;
      EXPECT_EQ(column.decimals, expected.decimals) << round << ' ' << i;
      EXPECT_EQ(column.firstValue, expected.firstValue) << round << ' ' << i;
      EXPECT_EQ(column.firstText, expected.firstText) << round << ' ' << i;
      // Numbers are shorter than anything that is cut.
      EXPECT_LE(column.longest, expected.longest) << round << ' ' << i;
      EXPECT_TRUE(column.longest == expected.longest || expected.longest <= PlainNumber::kReach) << round << ' ' << i;
    }
  }
}

TEST(SeriesTimeTrack, KnowsFirstLastOrderAndDigits) {
  std::mt19937 random(9);
  for (int round = 0; round != 2000; ++round) {
    TimeTrack track;
    std::vector<kit::Instant> times;
    kit::Instant time{static_cast<std::int64_t>(random() % 7) - 3, 0};
    for (auto count = 1 + random() % 6; count != 0; --count) {
      std::int64_t const step = round % 3 == 0 ? static_cast<std::int64_t>(random() % 4) - 1 : random() % 2;
      time.seconds += step;
      static constexpr std::int32_t kFractions[] = {0, 500000000, 250000000, 1000000, 10};
      time.nanoseconds = kFractions[random() % (1 + static_cast<unsigned>(round) % std::size(kFractions))];
      times.push_back(time);
      track.take(time);
    }
    unsigned digits = 0;
    for (kit::Instant const& each : times) {
      digits = std::max(digits, DigitsOf(each));
    }
    EXPECT_EQ(track.good, times.size());
    EXPECT_EQ(track.first, *std::min_element(times.begin(), times.end()));
    EXPECT_EQ(track.last, *std::max_element(times.begin(), times.end()));
    EXPECT_EQ(track.isOrdered, std::is_sorted(times.begin(), times.end()));
    EXPECT_EQ(track.digits, digits);
  }
}

TEST_F(SeriesCutting, ARowOfNumbersHasTheLimitsOfOthers) {
  auto const failure = [&](std::size_t count) -> std::string {
    std::string text = "a,b\n";
    for (std::size_t i = 0; i != count; ++i) {
      text += i == 0 ? "1" : ",1";
    }
    try {
      InPieces(FileOf(text + '\n'), DialectOf(','), std::size_t{256} << 10);
    } catch (kit::Failure const& error) {
      return std::string(error.what()) + ' ' + std::to_string(error.offset()) + ' ' + std::to_string(error.line());
    }
    return "none";
  };
  EXPECT_EQ(failure(4096), "none");
  EXPECT_EQ(failure(4097), "a row of more than 4096 cells 4 2");
  EXPECT_EQ(failure(1000000), "a row of more than 4096 cells 4 2");
}

}  // namespace
}  // namespace senmark_series
