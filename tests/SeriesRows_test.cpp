// Letters and rows: how the bytes of a file become text, and the text rows and cells.
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "Decoder.h"
#include "DelimitedRows.h"
#include "JsonLines.h"
#include "TempFolder.h"
#include "senmark/SK_ErrorCode.h"

namespace senmark_series {
namespace {

using senmark_test::TempFolder;

std::string Decoded(eEncoding encoding, std::string_view bytes, std::size_t pieceSize) {
  Decoder decoder(encoding);
  std::string text;
  for (; !bytes.empty(); bytes.remove_prefix(std::min(pieceSize, bytes.size()))) {
    decoder.append(bytes.substr(0, pieceSize), text);
  }
  decoder.finish(text);
  return text;
}

struct DecodedRow {
  char const* name;
  eEncoding encoding;
  std::string_view bytes;
  char const* text;
};

using namespace std::string_view_literals;

TEST(SeriesDecoder, MakesUtf8InPiecesOfAnySize) {
  static DecodedRow const kRows[] = {
      {"ascii", eEncoding::kUtf8, "a,b", "a,b"},
      {"utf-8 as it is", eEncoding::kUtf8, "\xC3\xA9\xFF", "\xC3\xA9\xFF"},
      {"latin-1", eEncoding::kWindows1252, "\xE9\xFF\xB0", "\u00E9\u00FF\u00B0"},
      {"windows-1252", eEncoding::kWindows1252, "\x80\x85\x9F", "\u20AC\u2026\u0178"},
      {"left open", eEncoding::kWindows1252, "\x81\x9D", "\u0081\u009D"},
      {"little", eEncoding::kUtf16Little, "a\0\xE9\0\xAC\x20"sv, "a\u00E9\u20AC"},
      {"big", eEncoding::kUtf16Big, "\0a\0\xE9\x20\xAC"sv, "a\u00E9\u20AC"},
      {"pair", eEncoding::kUtf16Little, "\x3D\xD8\x00\xDE"sv, "\U0001F600"},
      {"high half alone", eEncoding::kUtf16Big, "\xD8\x3D\0a"sv, "\uFFFDa"},
      {"low half alone", eEncoding::kUtf16Big, "\xDE\x00\0a"sv, "\uFFFDa"},
      {"two high halves", eEncoding::kUtf16Big, "\xD8\x3D\xD8\x3D\xDE\x00"sv, "\uFFFD\U0001F600"},
      {"cut pair", eEncoding::kUtf16Big, "\0a\xD8\x3D"sv, "a\uFFFD"},
      {"cut unit", eEncoding::kUtf16Little, "a\0b"sv, "a\uFFFD"},
  };
  for (DecodedRow const& row : kRows) {
    for (std::size_t size = 1; size <= row.bytes.size(); ++size) {
      EXPECT_EQ(Decoded(row.encoding, row.bytes, size), row.text) << row.name << ", pieces of " << size;
    }
  }
}

TEST(SeriesDecoder, KnowsHowManyBytesATextWas) {
  EXPECT_EQ(Decoder(eEncoding::kUtf8).sourceSize("a\u00E9\U0001F600"), 7U);
  EXPECT_EQ(Decoder(eEncoding::kWindows1252).sourceSize("a\u00E9\u20AC"), 3U);
  EXPECT_EQ(Decoder(eEncoding::kUtf16Little).sourceSize("a\u00E9\u20AC\U0001F600"), 10U);
}

TEST(SeriesEncoding, MarksAndNames) {
  EXPECT_EQ(MarkOf("\xEF\xBB\xBF"
                   "a")
                .size,
            3U);
  EXPECT_EQ(MarkOf("\xFF\xFE").encoding, eEncoding::kUtf16Little);
  EXPECT_EQ(MarkOf("\xFE\xFF").encoding, eEncoding::kUtf16Big);
  EXPECT_EQ(MarkOf("\xEF\xBB").size, 0U);
  EXPECT_EQ(EncodingOf("ISO-8859-1"), eEncoding::kWindows1252);
  EXPECT_EQ(EncodingOf("utf-16BE"), eEncoding::kUtf16Big);
  EXPECT_EQ(EncodingOf("utf8"), std::nullopt);
}

TEST(SeriesEncoding, TellsUtf8FromOtherBytes) {
  struct Case {
    std::string_view bytes;
    bool isValid;
  };
  static Case const kCases[] = {
      {"plain text, longer than eight bytes", true},
      {"eight by\xC3\xA9te", true},
      {"\xF0\x9F\x98\x80", true},
      {"\xEF\xBF\xBD", true},
      {"\xC0\x80", false},          // overlong
      {"\xE0\x9F\xBF", false},      // overlong
      {"\xF0\x8F\xBF\xBF", false},  // overlong
      {"\xED\xA0\x80", false},      // a surrogate
      {"\xF4\x90\x80\x80", false},  // beyond the last character
      {"\xF5\x80\x80\x80", false},
      {"caf\xE9, and more text behind", false},
      {"\x80", false},
      {"abc\xC3", false},  // cut off
      {"\xC3(", false},
  };
  for (Case const& each : kCases) {
    for (std::size_t size = 1; size <= each.bytes.size(); ++size) {
      Utf8Check check;
      bool isValid = true;
      for (std::size_t at = 0; at < each.bytes.size(); at += size) {
        isValid = check.feed(each.bytes.substr(at, size)) && isValid;
      }
      EXPECT_EQ(isValid && check.finish(), each.isValid) << each.bytes << ", pieces of " << size;
    }
  }
}

/// Rows as "line@offset: cell|cell", each on a line.
std::string Shown(RowReader& reader) {
  std::string text;
  Row row;
  while (reader.next(row)) {
    text += std::to_string(row.line) + '@' + std::to_string(row.offset) + ':';
    for (std::string_view const cell : row.cells) {
      text += '|' + std::string(cell);
    }
    text += row.isBroken ? " broken\n" : "\n";
  }
  return text;
}

std::string RowsOf(std::string_view text, char delimiter, bool isWhole = true) {
  TextBuffer buffer(text, eEncoding::kUtf8, 0, isWhole);
  DelimitedRows reader(buffer, DialectOf(delimiter));
  return Shown(reader);
}

struct RowsCase {
  char const* name;
  char delimiter;
  char const* text;
  char const* rows;
};

RowsCase const kRowsCases[] = {
    {"Plain", ',', "a,b\n1,2\n", "1@0:|a|b\n2@4:|1|2\n"},
    {"NoLastLineEnd", ',', "a,b\n1,2", "1@0:|a|b\n2@4:|1|2\n"},
    {"LineEnds", ',', "a\r\nb\rc\nd", "1@0:|a\n2@3:|b\n3@5:|c\n4@7:|d\n"},
    {"BlankLines", ',', "\n\n a,b\n  \n\r\n1,2\n", "3@2:|a|b\n6@12:|1|2\n"},
    {"EmptyCells", ',', ",a,,\n,,,\nb\n", "1@0:||a||\n3@9:|b\n"},
    {"TrailingDelimiterAtTheEnd", ',', "a,", "1@0:|a|\n"},
    {"BlanksAroundCells", ',', " a\t, b c ,\t\n", "1@0:|a|b c|\n"},
    {"Quotes", ',', "\"a,b\",\"c\"\"d\",\"\"\n", "1@0:|a,b|c\"d|\n"},
    {"LineEndsInQuotes", ',', "\"a\nb\",1\n\"c\r\nd\",2\ne,3\n", "1@0:|a\nb|1\n3@8:|c\r\nd|2\n5@17:|e|3\n"},
    {"BlanksAroundQuotes", ',', " \"a\" ,\t\"b\"\n", "1@0:|a|b\n"},
    {"BlanksInQuotesAreTrimmed", ',', "\"  110\",1\n", "1@0:|110|1\n"},
    {"QuoteInsideABareCell", ',', "5\" pipe,a\"b\"\n", "1@0:|5\" pipe|a\"b\"\n"},
    {"StrayQuoteInAQuotedCell", ',', "\"a \"b\" c\",d\n", "1@0:|a \"b\" c|d\n"},
    {"QuoteWithoutEnd", ',', "a,\"b\nc,d\n", "1@0:|a|\"b\n2@5:|c|d\n"},
    {"QuoteWithoutEndGoesOnToTheNextEnd", ',', "a,\"b\nc,\"d\"\n\"e\nf\"\n", "1@0:|a|b\nc,\"d\n3@11:|e\nf\n"},
    {"FourQuotes", ',', "\"\"\"\",1\n", "1@0:|\"|1\n"},
    {"Tabs", '\t', "a\tb c\t\t d\n", "1@0:|a|b c||d\n"},
    {"TabsAndEmptyFirstCell", '\t', "\ta\n", "1@0:||a\n"},
    {"Semicolons", ';', "a;b;1,5\n;c\n", "1@0:|a|b|1,5\n2@8:||c\n"},
    {"Pipes", '|', "a | b|c\n", "1@0:|a|b|c\n"},
    {"Blanks", ' ', "  a  b\t c  \n\"d e\" f\n", "1@0:|a|b|c\n2@12:|d e|f\n"},
    {"Comments", ',', "# a,b\n  // c,d\n;e\n1,2\n#3,4\n5,6\n", "4@18:|1|2\n6@27:|5|6\n"},
    {"SemicolonIsNoCommentWhereItDelimits", ';', "#a;b\n;c\n", "2@5:||c\n"},
    {"SlashAloneIsNoComment", ',', "/a,b\n", "1@0:|/a|b\n"},
    {"Empty", ',', "", ""},
    {"LineEndsAlone", ',', "\n\r\n\r", ""},
};

class SeriesRows : public testing::TestWithParam<RowsCase> {};

TEST_P(SeriesRows, AreCut) {
  EXPECT_EQ(RowsOf(GetParam().text, GetParam().delimiter), GetParam().rows);
}

INSTANTIATE_TEST_SUITE_P(Cases, SeriesRows, testing::ValuesIn(kRowsCases),
                         [](testing::TestParamInfo<RowsCase> const& each) { return each.param.name; });

TEST(SeriesRowsOfFiles, CountTheLinesOfQuotedCells) {
  std::mt19937 random(11);
  for (int round = 0; round != 2000; ++round) {
    std::string quoted;
    // Also beyond what is looked at in one go.
    for (auto size = random() % 150; size != 0; --size) {
      quoted += random() % 4 == 0 ? ",\r\n\n"[random() % 4] : 'a';
    }
    std::string const text = "1,\"" + quoted + "\",\"\r\"\n2,b\n";
    std::int64_t line = 3;
    for (std::size_t i = 0; i != quoted.size(); ++i) {
      line += quoted[i] == '\n' || (quoted[i] == '\r' && (i + 1 == quoted.size() || quoted[i + 1] != '\n')) ? 1 : 0;
    }
    TextBuffer buffer(text, eEncoding::kUtf8, 0, true);
    DelimitedRows reader(buffer, DialectOf(','));
    Row row;
    ASSERT_TRUE(reader.next(row));
    ASSERT_TRUE(reader.next(row));
    EXPECT_EQ(row.cells.at(1).text, "b");
    EXPECT_EQ(row.line, line) << text;
  }
}

TEST(SeriesRowsOfParts, TheLastRowOfAPartIsLeftOut) {
  EXPECT_EQ(RowsOf("a,b\n1,2", ',', false), "1@0:|a|b\n");
  EXPECT_EQ(RowsOf("a,b\n1,\"2\n3,4\n", ',', false), "1@0:|a|b\n");
  EXPECT_EQ(RowsOf("a,b\n1,2\n", ',', false), "1@0:|a|b\n2@4:|1|2\n");
}

TEST(SeriesRowsOfFiles, AreTheSameWhereverPiecesEnd) {
  TempFolder const folder;
  // Pieces are of 256 KiB: each kind of end falls on the seam once.
  for (std::size_t shift = 0; shift != 24; ++shift) {
    std::string text = "\xEF\xBB\xBF" + std::string(shift, ' ') + "#\n";
    while (text.size() < (std::size_t{256} << 10) + 100) {
      text += "\"a\"\"b\",1 \r\n# c\r\n\"d\ne\",2\r";
    }
    std::string const path = folder.Write("rows.csv", text);
    kit::Input const input(path, "csv", "");
    TextBuffer inPieces(input, eEncoding::kUtf8);
    DelimitedRows fromFile(inPieces, DialectOf(','));
    TextBuffer atOnce(text, eEncoding::kUtf8, 0, true);
    DelimitedRows fromMemory(atOnce, DialectOf(','));
    EXPECT_EQ(Shown(fromFile), Shown(fromMemory)) << shift;
    EXPECT_TRUE(inPieces.isUtf8());
  }
}

TEST(SeriesRowsOfFiles, OffsetsAreThoseOfTheFile) {
  std::string_view const bytes = "\xFE\xFF\0\xE9\0,\0a\0\n\0b\0,\0c\0\n"sv;
  TextBuffer buffer(bytes, eEncoding::kUtf16Big, 0, true);
  DelimitedRows reader(buffer, DialectOf(','));
  EXPECT_EQ(Shown(reader), "1@2:|\u00E9|a\n2@10:|b|c\n");
}

TEST(SeriesRowsOfFiles, AQuoteThatDoesNotEndCostsNoMoreThanItsLimit) {
  // The limit is 64 KiB; behind it each line stands for itself.
  std::string text;
  for (int i = 0; i != 300000; ++i) {
    text += "\"a,b\n";
  }
  TextBuffer buffer(text, eEncoding::kUtf8, 0, true);
  DelimitedRows reader(buffer, DialectOf(','));
  Row row;
  std::size_t count = 0;
  while (reader.next(row)) {
    ASSERT_EQ(row.cells.size(), 2U);
    ++count;
  }
  EXPECT_EQ(count, 300000U);
}

TEST(SeriesRowsOfFiles, QuotesThatDoNotEndCostTheirLineOnce) {
  // Each cell begins with a quote, and none has an end: looking for it costs the length of the line.
  std::string text;
  for (int i = 0; i != 4000; ++i) {
    text += "\"a ";
  }
  text += std::string(400000, 'b') + "\n";
  std::string lines;
  for (int i = 0; i != 100; ++i) {
    lines += text;
  }
  TextBuffer buffer(lines, eEncoding::kUtf8, 0, true);
  DelimitedRows reader(buffer, DialectOf(' '));
  Row row;
  std::size_t count = 0;
  while (reader.next(row)) {
    ASSERT_EQ(row.cells.size(), 4001U);
    ++count;
  }
  EXPECT_EQ(count, 100U);
}

TEST(SeriesRowsOfFiles, ARowHasLimits) {
  TempFolder const folder;
  auto const failure = [&](std::string const& text) -> std::string {
    kit::Input const input(folder.Write("long.csv", text), "csv", "");
    TextBuffer buffer(input, eEncoding::kUtf8);
    DelimitedRows reader(buffer, DialectOf(','));
    try {
      Shown(reader);
    } catch (kit::Failure const& error) {
      return std::to_string(error.code()) + ' ' + error.what() + ' ' + std::to_string(error.offset()) + ' ' +
             std::to_string(error.line());
    }
    return "none";
  };
  EXPECT_EQ(failure("a\n" + std::string(1000000, 'b') + "\n"), "none");
  EXPECT_EQ(failure("a\n" + std::string(3000000, 'b') + "\n"), "1506 a row of more than 1048576 bytes 2 2");
  EXPECT_EQ(failure("a\n" + std::string(4095, ',') + "b\n"), "none");
  EXPECT_EQ(failure("a\n" + std::string(4096, ',') + "b\n"), "1506 a row of more than 4096 cells 2 2");
}

TEST(SeriesRowsOfFiles, KeepsCommentsForTheirNames) {
  TextBuffer buffer("# one\n//two, three \n1,2\n; four\n", eEncoding::kUtf8, 0, true);
  DelimitedRows reader(buffer, DialectOf(','));
  Shown(reader);
  ASSERT_EQ(reader.comments().size(), 3U);
  EXPECT_EQ(reader.comments()[1].line, 2);
  EXPECT_EQ(reader.comments()[1].text, "two, three");
  EXPECT_EQ(reader.comments()[2].text, "four");
}

std::string LinesOf(std::string_view text, std::string* names = nullptr) {
  TextBuffer buffer(text, eEncoding::kUtf8, 0, true);
  JsonLines reader(buffer);
  std::string const rows = Shown(reader);
  if (names != nullptr) {
    for (std::string const& name : reader.names()) {
      *names += name + ' ';
    }
  }
  return rows;
}

TEST(SeriesJsonLines, MembersAreCells) {
  std::string names;
  EXPECT_EQ(LinesOf("{\"t\":1,\"a\":{\"b\":2.50,\"c\":{\"d\":\"x\"}},\"e\":[3,[4],{\"f\":true}]}\n"
                    "\r\n{\"a\":{\"b\":null},\"t\":-1e-5,\"new\":\"\\u00e9\\\"\"}\r\n",
                    &names),
            "1@0:|1|2.50|x|3|4|true\n3@62:|-1e-5||||||\u00E9\"\n");
  EXPECT_EQ(names, "t a.b a.c.d e.0 e.1.0 e.2.f new ");
}

TEST(SeriesJsonLines, OtherLinesAreBroken) {
  std::string deep;
  for (int i = 0; i != 40; ++i) {
    deep += "{\"a\":";
  }
  std::string const cases[] = {"[1]",
                               "1",
                               "{\"a\":1",
                               "{\"a\":1} x",
                               "{'a':1}",
                               "{\"a\":01}",
                               deep,
                               "{\"a\":\"\xFF\"}",
                               "{\"" + std::string(1001, 'k') + "\":1}"};
  for (std::string const& line : cases) {
    EXPECT_NE(LinesOf(line + "\n{\"b\":1}\n").find(" broken\n2@"), std::string::npos) << line.substr(0, 60);
  }
  EXPECT_EQ(LinesOf("{}\n"), "1@0:\n");
}

TEST(SeriesJsonLines, NamesHaveALimit) {
  std::string text;
  for (int i = 0; i != 1024; ++i) {
    text += "{\"k" + std::to_string(i) + "\":1}\n";
  }
  EXPECT_NO_THROW(LinesOf(text));
  EXPECT_THROW(LinesOf(text + "{\"one more\":1}"), kit::Failure);
}

}  // namespace
}  // namespace senmark_series
