// What a table asks of the writer, call by call. The writer is the test's own.

#include "SVSupport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "CSVConverter.h"
#include "FailingCalls.h"
#include "RecordingWriter.h"
#include "TSVConverter.h"
#include "TempFolder.h"
#include "Writer_Wrapper.h"

namespace ns_sensor {
namespace {

using senmark_test::TakeWriterCalls;
using SK_NAMESPACE_INT::SK_PathInfo;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

enum Kind { kComma, kTab };

class SVTable : public testing::Test {
 protected:
  ~SVTable() override {
    senmark_test::KeepWriterCalls(true);
    senmark_test::LetCommitSay(true);
    EXPECT_EQ(senmark_test::CountWriterObjects(), 0);
    EXPECT_EQ(senmark_test::CountOpenDescriptors(), mDescriptors);
  }

  static bool ConvertFile(std::string const& path, Kind kind) {
    SK_PathInfo file(path, kind == kComma ? "csv" : "tsv");
    file.outputPath = "out.tdjson";
    std::string uid;
    return (kind == kComma ? CSVConverter_CTor(uid, file) : TSVConverter_CTor(uid, file))->convertToTDJSON();
  }

  bool Convert(std::string const& bytes, Kind kind = kComma) const {
    // A file that is cut and written anew is flushed to the disk by some systems.
    std::filesystem::remove(mFolder.Path("table"));
    return ConvertFile(mFolder.Write("table", bytes), kind);
  }

  /// What is asked between the creator and the commit.
  std::string Calls(std::string const& bytes, Kind kind = kComma) const {
    EXPECT_TRUE(Convert(bytes, kind));
    std::string const calls = TakeWriterCalls();
    std::string const head =
        std::string("root \"out.tdjson\"\ncreator \"com.velmo.sensor.") + (kind == kComma ? "csv" : "tsv") + "\"\n";
    std::string const end = "commit\nremove\n";
    if (calls.size() < head.size() + end.size() || calls.compare(0, head.size(), head) != 0 ||
        calls.compare(calls.size() - end.size(), end.size(), end) != 0) {
      ADD_FAILURE() << calls;
      return calls;
    }
    return calls.substr(head.size(), calls.size() - head.size() - end.size());
  }

  std::size_t const mDescriptors = senmark_test::CountOpenDescriptors();
  senmark_test::TempFolder mFolder;
};

constexpr char kAbCalls[] =
    "group data0 \"a\"\n"
    "number data1 \"a 0\" 1\n"
    "add data1 to data0\n"
    "number data2 \"a 1\" 2\n"
    "add data2 to data0\n"
    "add data0 to root\n"
    "group data3 \"b\"\n"
    "string data4 \"b 0\" \"x\"\n"
    "add data4 to data3\n"
    "string data5 \"b 1\" \"y\"\n"
    "add data5 to data3\n"
    "add data3 to root\n";

TEST_F(SVTable, ColumnsBecomeGroupsAndCellsNodes) {
  EXPECT_EQ(Calls("a,b\n1,x\n2,y"), kAbCalls);
}

TEST_F(SVTable, TabsSeparateForTheOtherConverter) {
  EXPECT_EQ(Calls("a\tb\n1\tx\n2\ty\n", kTab), kAbCalls);
  EXPECT_EQ(Calls("a,b\n1,5\n", kTab),
            "group data0 \"a,b\"\nstring data1 \"a,b 0\" \"1,5\"\nadd data1 to data0\nadd data0 to root\n");
  EXPECT_EQ(Calls("a\tb\n1\t5\n"),
            "group data0 \"a\\x09b\"\nstring data1 \"a\\x09b 0\" \"1\\x095\"\nadd data1 to data0\nadd data0 to root\n");
}

/// All the same table.
TEST_F(SVTable, LinesMayEndInAnyWay) {
  for (char const* const text :
       {"a,b\n1,x\n2,y\n", "a,b\r\n1,x\r\n2,y\r\n", "a,b\r1,x\r2,y\r", "a,b\n\r1,x\n\r2,y\n\r", "a,b\r\n1,x\r\n2,y",
        "a,b\n\n1,x\n\n\n2,y\n\n", "a,b\n1,x\r2,y\r\n", "\"a\",\"b\"\n\"1\",\"x\"\n\"2\",\"y\"\n"}) {
    EXPECT_EQ(Calls(text), kAbCalls) << testing::PrintToString(text);
  }
}

std::string Utf16(std::u16string_view text, bool isBigEndian) {
  std::string bytes;
  for (char16_t const unit : text) {
    char const high = static_cast<char>(unit >> 8U);
    char const low = static_cast<char>(unit & 0xFFU);
    bytes += isBigEndian ? std::string{high, low} : std::string{low, high};
  }
  return bytes;
}

TEST_F(SVTable, EveryEncodingGivesTheSame) {
  constexpr std::u16string_view kWide = u"gr\u00F6\u00DFe,\u4E2D\u6587\r\n1.5,\"\U0001F600 \"\"\n,\"\r\n-2,\n";
  std::string const plain =
      "gr\xC3\xB6\xC3\x9F"
      "e,\xE4\xB8\xAD\xE6\x96\x87\r\n1.5,\"\xF0\x9F\x98\x80 \"\"\n,\"\r\n-2,\n";
  std::string const calls =
      "group data0 \"gr\xC3\xB6\xC3\x9F"
      "e\"\n"
      "number data1 \"gr\xC3\xB6\xC3\x9F"
      "e 0\" 1.5\n"
      "add data1 to data0\n"
      "number data2 \"gr\xC3\xB6\xC3\x9F"
      "e 1\" -2\n"
      "add data2 to data0\n"
      "add data0 to root\n"
      "group data3 \"\xE4\xB8\xAD\xE6\x96\x87\"\n"
      "string data4 \"\xE4\xB8\xAD\xE6\x96\x87 0\" \"\xF0\x9F\x98\x80 \"\\x0a,\"\n"
      "add data4 to data3\n"
      "string data5 \"\xE4\xB8\xAD\xE6\x96\x87 1\" \"\"\n"
      "add data5 to data3\n"
      "add data3 to root\n";
  EXPECT_EQ(Calls(plain), calls);
  EXPECT_EQ(Calls("\xEF\xBB\xBF" + plain), calls);
  EXPECT_EQ(Calls("\xFE\xFF" + Utf16(kWide, true)), calls);
  EXPECT_EQ(Calls("\xFF\xFE" + Utf16(kWide, false)), calls);
}

/// The bytes in front of a mark of little-endian order are units like those behind it.
TEST_F(SVTable, MarkBehindAnotherByteCounts) {
  EXPECT_EQ(Calls(std::string("\xEF\xFF\xFE\x00\x61\x00", 6)),
            "group data0 \"\xEF\xBF\xAF\xC3\xBE"
            "a\"\nadd data0 to root\n");
}

/// Two bytes of a mark are text; without the third, it is none.
TEST_F(SVTable, PartOfAMarkIsText) {
  EXPECT_EQ(Calls("\xEF\xBB,b"), "group data0 \"\xEF\xBB\"\nadd data0 to root\ngroup data1 \"b\"\nadd data1 to root\n");
}

TEST_F(SVTable, BytesThatAreNoUtf8PassUnchanged) {
  EXPECT_EQ(Calls("\xE9\n\xFF\x80\n"),
            "group data0 \"\xE9\"\nstring data1 \"\xE9 0\" \"\xFF\x80\"\nadd data1 to data0\nadd data0 to root\n");
}

TEST_F(SVTable, ColumnsEndAtTheFirstWithoutName) {
  for (char const* const text : {"a,,b\n1,2,3\n", "a,\"\",b\n1,2,3\n", "a,\n1,2,3\n", "a\n1,2,3\n"}) {
    EXPECT_EQ(Calls(text), "group data0 \"a\"\nnumber data1 \"a 0\" 1\nadd data1 to data0\nadd data0 to root\n")
        << testing::PrintToString(text);
  }
}

TEST_F(SVTable, WithoutColumnsThereIsOnlyTheCommit) {
  for (char const* const text : {"", "\n", "\n1,2\n", "\r\n1\n", ",a\n1,2\n", "\"\"\n1\n", ",", "\xEF\xBB\xBF"}) {
    EXPECT_EQ(Calls(text), "") << testing::PrintToString(text);
  }
  EXPECT_EQ(Calls("\xFF\xFE"), "");
  EXPECT_EQ(Calls("\xFE\xFF\n"), "");
}

TEST_F(SVTable, WithoutRowsGroupsAreEmpty) {
  for (char const* const text : {"a,b", "a,b\n", "a,b\r\n", "a,b\n\n\r\n\n"}) {
    EXPECT_EQ(Calls(text), "group data0 \"a\"\nadd data0 to root\ngroup data1 \"b\"\nadd data1 to root\n") << text;
  }
}

TEST_F(SVTable, ShortRowsAreFilledAndSurplusFieldsGo) {
  EXPECT_EQ(Calls("a,b\n1\nx,y,z\n,\n"),
            "group data0 \"a\"\n"
            "string data1 \"a 0\" \"1\"\n"
            "add data1 to data0\n"
            "string data2 \"a 1\" \"x\"\n"
            "add data2 to data0\n"
            "string data3 \"a 2\" \"\"\n"
            "add data3 to data0\n"
            "add data0 to root\n"
            "group data4 \"b\"\n"
            "string data5 \"b 0\" \"\"\n"
            "add data5 to data4\n"
            "string data6 \"b 1\" \"y\"\n"
            "add data6 to data4\n"
            "string data7 \"b 2\" \"\"\n"
            "add data7 to data4\n"
            "add data4 to root\n");
}

TEST_F(SVTable, SurplusFieldsDecideNoKind) {
  EXPECT_EQ(Calls("a\n1,x\n"), "group data0 \"a\"\nnumber data1 \"a 0\" 1\nadd data1 to data0\nadd data0 to root\n");
}

/// The values of a column whose cells these are; a line of the table is never empty.
std::string Column(std::string const& calls) {
  std::string values;
  for (std::size_t at = calls.find("\"a "); at != std::string::npos; at = calls.find("\"a ", at + 1)) {
    std::size_t const from = calls.find("\" ", at + 1) + 2;
    std::size_t const lineStart = calls.rfind('\n', at) + 1;
    values += calls.substr(lineStart, 6) + ' ' + calls.substr(from, calls.find('\n', from) - from) + ';';
  }
  return values;
}

struct Kinds {
  char const* name;
  char const* cells;
  char const* values;
};

std::ostream& operator<<(std::ostream& out, Kinds const& row) {
  return out << row.cells;
}

class ColumnKind : public SVTable, public testing::WithParamInterface<Kinds> {};

TEST_P(ColumnKind, FollowsFromAllItsCells) {
  EXPECT_EQ(Column(Calls(std::string("a,b\n") + GetParam().cells)), GetParam().values);
}

Kinds const kKinds[] = {
    {"Numbers", "1\n-2.5\n1e3\n", "number 1;number -2.5;number 1000;"},
    {"AllEmpty", ",\n,\n", "number 0;number 0;"},
    {"EmptyAmongNumbers", "1\n,\n2\n", "number 1;number 0;number 2;"},
    {"QuotedNumbers", "\"1\"\n\"2\"x\n", "string \"1\";string \"2x\";"},
    {"QuotedNumbersOnly", "\"1\"\n\"2\"\"\"\n\"3\"\n", "string \"1\";string \"2\"\";string \"3\";"},
    {"OneWordLast", "1\n2.50\nx\n", "string \"1\";string \"2.50\";string \"x\";"},
    {"OneWordFirst", "x\n1\n,\n", "string \"x\";string \"1\";string \"\";"},
    {"WhiteSpaceInFront", " 1\n\t2\n\v3\n", "number 1;number 2;number 3;"},
    {"WhiteSpaceBehind", "1 \n2\n", "string \"1 \";string \"2\";"},
    {"WhiteSpaceAlone", " \n", "string \" \";"},
    {"Infinity", "inf\n-INFINITY\n", "number inf;number -inf;"},
    {"NotANumber", "nan\n1\n", "number nan;number 1;"},
    {"Hexadecimal", "0x1F\n0x1p-1\n", "number 31;number 0.5;"},
    {"NegativeZero", "-0\n", "number -0;"},
    {"BeyondTheRange", "1e999\n1\n", "string \"1e999\";string \"1\";"},
    {"BelowTheRange", "1e-999\n1\n", "string \"1e-999\";string \"1\";"},
    {"DecimalComma", "\"1,5\"\n", "string \"1,5\";"},
    {"Units", "5m\n", "string \"5m\";"},
    {"LongNumber", "0.1000000000000000055511151231257827021181583404541015625\n", "number 0.10000000000000001;"},
};

INSTANTIATE_TEST_SUITE_P(SVTable, ColumnKind, testing::ValuesIn(kKinds),
                         [](auto const& row) { return std::string(row.param.name); });

/// What a table asks for by the rules, one step at a time, from text of no mark.
class ReferenceTable {
 public:
  explicit ReferenceTable(std::string text) : mText(std::move(text)) {}

  std::string Calls() {
    std::vector<std::string> headers = Split(ReadLine());
    for (std::size_t i = 0; i != headers.size(); ++i) {
      if (headers[i].empty()) {
        headers.resize(i);
        break;
      }
    }
    std::vector<bool> isNumeric(headers.size(), true);
    std::vector<std::vector<std::string>> rows;
    while (mNext < mText.size()) {
      std::string const line = ReadLine();
      if (line.empty()) {
        continue;
      }
      std::vector<std::string> fields = Split(line);
      while (fields.size() < headers.size()) {
        fields.emplace_back();
      }
      for (std::size_t i = 0; i != headers.size(); ++i) {
        if (isNumeric[i] && !fields[i].empty() && !IsNumber(fields[i])) {
          isNumeric[i] = false;
        }
      }
      rows.push_back(fields);
    }
    return Written(headers, isNumeric, rows);
  }

 private:
  std::string ReadLine() {
    std::string line;
    while (mNext < mText.size()) {
      char const byte = mText[mNext++];
      if (byte == '\r') {
        break;
      }
      if (byte == '\n') {
        mNext += mText.compare(mNext, 1, "\r") == 0 ? 1 : 0;
        break;
      }
      line += byte;
      if (byte != '"') {
        continue;
      }
      while (mNext < mText.size()) {
        line += mText[mNext++];
        if (line.back() == '"') {
          if (mText.compare(mNext, 1, "\"") != 0) {
            break;
          }
          line += mText[mNext++];
        }
      }
    }
    return line;
  }

  static std::vector<std::string> Split(std::string const& line) {
    std::vector<std::string> fields;
    std::size_t i = 0;
    while (i < line.size()) {
      std::string field;
      if (line[i] == '"') {
        std::size_t j = i + 1;
        for (; j < line.size(); ++j) {
          if (line[j] == '"') {
            ++j;
            if (j < line.size() && line[j] != '"') {
              std::size_t const end = std::min(line.find(',', j), line.size());
              field += line.substr(j, end - j);
              j = end;
              break;
            }
          }
          if (j != line.size()) {
            field += line[j];
          }
        }
        i = j + 1;
      } else {
        std::size_t const end = std::min(line.find(',', i), line.size());
        field = line.substr(i, end - i);
        i = end + 1;
      }
      fields.push_back(field);
    }
    return fields;
  }

  static bool IsNumber(std::string const& cell) {
    try {
      std::size_t read = 0;
      std::stod(cell, &read);
      return read == cell.size();
    } catch (std::exception const&) {
      return false;
    }
  }

  static std::string Shown(std::string const& text) {
    std::string shown;
    for (char const byte : text) {
      if (byte == '\n' || byte == '\r') {
        shown += byte == '\n' ? "\\x0a" : "\\x0d";
      } else {
        shown += byte;
      }
    }
    return '"' + shown + '"';
  }

  static std::string Written(std::vector<std::string> const& headers, std::vector<bool> const& isNumeric,
                             std::vector<std::vector<std::string>> const& rows) {
    std::string calls;
    int counter = 0;
    for (std::size_t column = 0; column != headers.size(); ++column) {
      std::string const group = "data" + std::to_string(counter++);
      calls += "group " + group + ' ' + Shown(headers[column]) + '\n';
      for (std::size_t row = 0; row != rows.size(); ++row) {
        std::string const node = "data" + std::to_string(counter++);
        std::string const& cell = rows[row][column];
        char number[40];
        std::snprintf(number, sizeof number, "%.17g", cell.empty() ? 0 : std::strtod(cell.c_str(), nullptr));
        calls += (isNumeric[column] ? "number " : "string ") + node + ' ' +
                 Shown(headers[column] + ' ' + std::to_string(row)) + ' ' + (isNumeric[column] ? number : Shown(cell)) +
                 "\nadd " + node + " to " + group + '\n';
      }
      calls += "add " + group + " to root\n";
    }
    return calls;
  }

  std::string const mText;
  std::size_t mNext = 0;
};

TEST_F(SVTable, AnyTextIsReadStepByStepInEveryEncoding) {
  std::mt19937 random(23);
  std::size_t numbers = 0;
  std::size_t texts = 0;
  for (int i = 0; i < 1500; ++i) {
    // Cells of one kind mostly, or no column would stay numeric.
    std::string const alphabet = random() % 2 == 0 ? "12.,\n" : "\"\"\"a1 -.,,,\n\n\r\r";
    std::string text = random() % 2 == 0 ? "a,b,c\n" : "";
    for (auto left = random() % 30; left != 0; --left) {
      text += alphabet[random() % alphabet.size()];
    }
    std::string const expected = ReferenceTable(text).Calls();
    numbers += expected.find("number") != std::string::npos ? 1 : 0;
    texts += expected.find("string") != std::string::npos ? 1 : 0;
    std::u16string const wide(text.begin(), text.end());
    ASSERT_EQ(Calls(text), expected) << testing::PrintToString(text);
    ASSERT_EQ(Calls("\xEF\xBB\xBF" + text), expected) << testing::PrintToString(text);
    ASSERT_EQ(Calls("\xFE\xFF" + Utf16(wide, true)), expected) << testing::PrintToString(text);
    ASSERT_EQ(Calls("\xFF\xFE" + Utf16(wide, false) + "x"), expected) << testing::PrintToString(text);
  }
  EXPECT_GT(numbers, 200U);
  EXPECT_GT(texts, 200U);
}

TEST_F(SVTable, NulBehindADigitMakesText) {
  EXPECT_EQ(Calls(std::string("a\n1\0002\n", 6)),
            "group data0 \"a\"\nstring data1 \"a 0\" \"1\\x002\"\nadd data1 to data0\nadd data0 to root\n");
}

/// In the names of cells, a header ends at a NUL.
TEST_F(SVTable, NulEndsAHeaderInNamesOfCells) {
  EXPECT_EQ(Calls(std::string("a\0b\nx\n", 6)),
            "group data0 \"a\\x00b\"\nstring data1 \"a 0\" \"x\"\nadd data1 to data0\nadd data0 to root\n");
}

TEST_F(SVTable, NamesOfCellsAreCut) {
  for (std::size_t const size : {1019, 1020, 1021, 1022, 1023, 1024, 5000}) {
    std::string const header(size, 'h');
    std::string rows;
    std::string expected = "group data0 \"" + header + "\"\n";
    for (int row = 0; row != 11; ++row) {
      rows += "1\n";
      std::string const matchName = "data" + std::to_string(row + 1);
      expected += "number " + matchName + " \"" + (header + ' ' + std::to_string(row)).substr(0, 1023) + "\" 1\nadd " +
                  matchName + " to data0\n";
    }
    EXPECT_EQ(Calls(header + "\n" + rows), expected + "add data0 to root\n") << size;
  }
}

TEST_F(SVTable, QuotedHeadersMayHoldAnything) {
  EXPECT_EQ(Calls("\"a,\"\"b\"\"\nc\",d\n1,2\n"),
            "group data0 \"a,\"b\"\\x0ac\"\nnumber data1 \"a,\"b\"\\x0ac 0\" 1\nadd data1 to data0\nadd data0 to root\n"
            "group data2 \"d\"\nnumber data3 \"d 0\" 2\nadd data3 to data2\nadd data2 to root\n");
}

/// Whatever follows it, even lines.
TEST_F(SVTable, UnterminatedQuoteTakesTheRest) {
  EXPECT_EQ(Calls("a,b\n1,\"x\n2,y\n"),
            "group data0 \"a\"\nnumber data1 \"a 0\" 1\nadd data1 to data0\nadd data0 to root\n"
            "group data2 \"b\"\nstring data3 \"b 0\" \"x\\x0a2,y\\x0a\"\nadd data3 to data2\nadd data2 to root\n");
}

TEST_F(SVTable, ResultIsThatOfTheCommit) {
  senmark_test::LetCommitSay(false);
  EXPECT_FALSE(Convert("a\n1\n"));
  EXPECT_THAT(TakeWriterCalls(), HasSubstr("commit\nremove\n"));
}

TEST_F(SVTable, MissingFileIsToldOnStandardOutput) {
  std::string const path = mFolder.Path("missing.csv");
  for (Kind const kind : {kComma, kTab}) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(ConvertFile(path, kind));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "ERROR Opening File " + path + "\n");
    EXPECT_EQ(TakeWriterCalls(), "");
  }
}

TEST_F(SVTable, FileThatMayNotBeReadIsToldOnStandardOutput) {
  std::string const path = mFolder.Write("secret.csv", "a\n1\n");
  std::filesystem::permissions(path, std::filesystem::perms::none);
  testing::internal::CaptureStdout();
  {
    senmark_test::OrdinaryUser const user;
    EXPECT_FALSE(ConvertFile(path, kComma));
  }
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "ERROR Opening File " + path + "\n");
  EXPECT_EQ(TakeWriterCalls(), "");
}

/// It opens like a file, and has no bytes.
TEST_F(SVTable, FolderIsAnEmptyTable) {
  testing::internal::CaptureStdout();
  EXPECT_TRUE(ConvertFile(mFolder.Path(""), kComma));
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_THAT(TakeWriterCalls(), Not(HasSubstr("group")));
}

TEST_F(SVTable, BadUtf16IsRefusedInSilence) {
  for (std::u16string const& text :
       {std::u16string{0xDC00, ',', 'b', '\n', '1'}, std::u16string{'a', '\n', '1', '\n', 0xD800, '\n', '2'}}) {
    for (bool const isBigEndian : {false, true}) {
      testing::internal::CaptureStdout();
      EXPECT_FALSE(Convert((isBigEndian ? "\xFE\xFF" : "\xFF\xFE") + Utf16(text, isBigEndian)));
      EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
      EXPECT_EQ(TakeWriterCalls(), "");
    }
  }
}

TEST_F(SVTable, ManyColumnsAndManyRowsGoThrough) {
  senmark_test::KeepWriterCalls(false);
  constexpr int kCount = 30000;
  std::string wide = "c0";
  for (int i = 1; i != kCount; ++i) {
    wide += ",c" + std::to_string(i);
  }
  EXPECT_TRUE(Convert(wide + "\n" + wide + "\n"));
  std::string tall = "a\n";
  for (int i = 0; i != kCount; ++i) {
    tall += std::string(static_cast<std::size_t>(1 + i % 40), 'x') + '\n';
  }
  EXPECT_TRUE(Convert(tall));
}

TEST_F(SVTable, EveryFileIsTaken) {
  std::string uid;
  SK_PathInfo const missing(mFolder.Path("missing.xyz"), "xyz");
  EXPECT_TRUE(CSV_CheckFormat(uid, missing));
  EXPECT_TRUE(TSV_CheckFormat(uid, missing));
}

TEST(SVSupport, SplitsALine) {
  std::vector<std::string> fields = {"what", "was", "there"};
  SVSupport::Split("a;\"b,\"\"c\";,d,", ",;", fields);
  EXPECT_THAT(fields, ElementsAre("a", "b,\"c", "", "d"));
  SVSupport::Split("", ",", fields);
  EXPECT_THAT(fields, ElementsAre());
}

TEST(SVSupport, KnowsNumbers) {
  EXPECT_TRUE(SVSupport::IsNumeric("-1.5e3"));
  EXPECT_FALSE(SVSupport::IsNumeric("1 "));
  EXPECT_FALSE(SVSupport::IsNumeric(""));
}

/// Each byte of the text is a delimiter of its own.
TEST_F(SVTable, DelimitersAreASet) {
  SVSupport table;
  ASSERT_TRUE(table.OpenDelimitedFile(mFolder.Write("table", "a;b,c\n1,2;3\n"), ",;"));
  int key = 0;
  table.AddSVDataUsingGroups(&key, SK_PLUGIN::Writer_Wrapper::CreateRoot_Wrapper(&key, "out", nullptr));
  SK_PLUGIN::Writer_Wrapper::RemoveRoot_Wrapper(&key);
  EXPECT_THAT(TakeWriterCalls(), HasSubstr("number data5 \"c 0\" 3\n"));
}

TEST(SVSupport, MatchNamesCount) {
  std::string name = "x";
  std::uint64_t counter = 0;
  GenerateUniqueMatchname(name, counter);
  EXPECT_EQ(name, "data0");
  counter = 4294967296;
  GenerateUniqueMatchname(name, counter);
  EXPECT_EQ(name, "data4294967296");
  EXPECT_EQ(counter, 4294967297U);
}

}  // namespace
}  // namespace ns_sensor
