// Paths of files and paths in the outline.

#include "SK_Utils.h"

#include <gtest/gtest.h>

#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "ExpectError.h"
#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

using ns_sensor::SK_PathSegment;
using senmark_test::ExpectError;
using senmark_test::TempFolder;

constexpr char kPathIsNull[] = "Input file path is NULL.";
constexpr char kPathTooLong[] = "Input file path length is greater than the supported file path length.";

/// A path as text that shows each segment's name and index.
std::string Shown(SK_DataPath const& path) {
  std::string text;
  for (SK_PathSegment const& segment : path) {
    text += '<' + segment.matchName + '|' + std::to_string(segment.index) + '>';
  }
  return text;
}

struct ReadPath {
  char const* name;
  char const* text;
  char const* segments;  ///< behind the root, as `Shown` gives them
};

struct NameOfRow {
  template <typename Row>
  std::string operator()(testing::TestParamInfo<Row> const& info) const {
    return info.param.name;
  }
};

class DataPathText : public testing::TestWithParam<ReadPath> {};

TEST_P(DataPathText, IsRead) {
  SK_DataPath path = {{"old", 7}, {"older", 8}, {"oldest", 9}};
  SK_Utils::DeSerialize(GetParam().text, path);
  EXPECT_EQ(Shown(path), std::string("<dataOutline|-1>") + GetParam().segments);
}

ReadPath const kReadPaths[] = {
    {"Name", R"(["leaf"])", "<leaf|-1>"},
    {"Index", "[2]", "<|2>"},
    {"NameIndexName", R"(["group"][2]["leaf"])", "<group|-1><|2><leaf|-1>"},
    {"NameOfTheRootIsAnOrdinaryName", R"(["dataOutline"])", "<dataOutline|-1>"},
    {"EmptyName", R"([""])", "<|-1>"},
    {"IndexOfManyDigits", "[0002147483647]", "<|2147483647>"},
    {"SmallestIndex", "[-2147483648]", "<|-2147483648>"},
    {"IndexMinus1IsNoIndex", "[-1]", "<|-1>"},
    {"IndexBehindSpaceAndPlus", "[ \t+3]", "<|3>"},
    {"IndexInFrontOfOtherText", "[3 apples]", "<|3>"},
    {"IndexIsDecimal", "[0x10]", "<|0>"},
    {"TextInFrontOfTheFirstSegment", R"(root["a"])", "<a|-1>"},
    {"TextBetweenSegments", R"(["a"] / ["b"])", "<a|-1><b|-1>"},
    {"ClosingBracketInFrontOfASegment", R"(]["a"])", "<a|-1>"},
    {"OpeningBracketInAnIndex", "[1[2]", "<|1>"},
    {"TextBehindAQuotedName", R"(["a"b])", "<a|-1>"},
    {"ApostrophesDoNotQuote", R"(["'a'"])", "<'a'|-1>"},
    {"BackslashDoesNotEscape", R"(["a\"])", "<a\\|-1>"},
    {"NameThatReachesBehindItsBracket", R"(["a][2]["b"])", "<a][2][|-1><|2><b|-1>"},
    // The quote is sought in all of the text: without one the name takes everything to the end.
    {"UnterminatedNameTakesTheRest", R"(["abc])", "<abc]|-1>"},
    {"UnterminatedEmptyName", R"(["])", "<]|-1>"},
    {"UnterminatedNameInFrontOfAnIndex", R"(["a][2])", "<a][2]|-1><|2>"},
    {"NameThatIsNotAscii", R"(["größe"])", "<größe|-1>"},
};

INSTANTIATE_TEST_SUITE_P(Utils, DataPathText, testing::ValuesIn(kReadPaths), NameOfRow());

struct RefusedPath {
  char const* name;
  char const* text;
  int code;
  char const* message;
};

class RefusedDataPathText : public testing::TestWithParam<RefusedPath> {};

TEST_P(RefusedDataPathText, IsReported) {
  SK_DataPath path;
  ExpectError([&] { SK_Utils::DeSerialize(GetParam().text, path); }, GetParam().code, GetParam().message);
}

// The position is where the search for the segment began, also for a missing closing bracket.
RefusedPath const kRefusedPaths[] = {
    {"Empty", "", 1, "Empty SK_DataPath string."},
    {"NoBracket", "leaf", 33, R"(Missing "[" at or after index :0.)"},
    {"TextBehindTheLastSegment", R"(["a"]b)", 33, R"(Missing "[" at or after index :5.)"},
    {"SpaceBehindTheLastSegment", "[1] ", 33, R"(Missing "[" at or after index :3.)"},
    {"ClosingBracketOnly", "]", 33, R"(Missing "[" at or after index :0.)"},
    {"ClosingBracketInAName", R"(["a]b"])", 33, R"(Missing "[" at or after index :4.)"},
    {"NoClosingBracket", R"(["a")", 45, R"(Missing "]" at or after index :0.)"},
    {"NoClosingBracketInTheSecondSegment", R"([12]["a")", 45, R"(Missing "]" at or after index :4.)"},
    {"NoClosingBracketBehindSkippedText", R"([12]abc["a")", 45, R"(Missing "]" at or after index :4.)"},
    {"OpeningBracketOnly", "[", 45, R"(Missing "]" at or after index :0.)"},
    {"ClosingBracketInFrontOfTheOpeningOne", "][", 45, R"(Missing "]" at or after index :0.)"},
    {"UnterminatedNameWithoutABracket", R"(["abc)", 45, R"(Missing "]" at or after index :0.)"},
};

INSTANTIATE_TEST_SUITE_P(Utils, RefusedDataPathText, testing::ValuesIn(kRefusedPaths), NameOfRow());

TEST(Utils, RefusedDataPathKeepsTheRootAndWhatWasRead) {
  SK_DataPath path = {{"old", 7}};
  EXPECT_ANY_THROW(SK_Utils::DeSerialize("", path));
  EXPECT_EQ(Shown(path), "<dataOutline|-1>");
  EXPECT_ANY_THROW(SK_Utils::DeSerialize("[1][2", path));
  EXPECT_EQ(Shown(path), "<dataOutline|-1><|1>");
}

TEST(Utils, IndexThatIsNoNumberIsNoErrorOfTheLibrary) {
  SK_DataPath path;
  for (char const* text : {"[]", "[a]", "[ ]", "[-]", R"([ "a"])"}) {
    EXPECT_THROW(SK_Utils::DeSerialize(text, path), std::invalid_argument) << text;
  }
  for (char const* text : {"[2147483648]", "[-2147483649]", "[99999999999999999999]"}) {
    EXPECT_THROW(SK_Utils::DeSerialize(text, path), std::out_of_range) << text;
  }
}

TEST(Utils, DataPathTextMayBeCutAnywhere) {
  std::string const text = R"(x["group"][2]y["leaf"])";
  for (std::size_t length = 0; length < text.size(); ++length) {
    std::string const cut(text.data(), length);
    SK_DataPath path;
    // Whole segments end behind bytes 10 and 13; a cut anywhere else leaves something unread.
    if (length == 10 || length == 13) {
      EXPECT_NO_THROW(SK_Utils::DeSerialize(cut, path)) << cut;
    } else {
      EXPECT_THROW(SK_Utils::DeSerialize(cut, path), ns_sensor::SK_Exception) << cut;
    }
  }
}

TEST(Utils, MissingFilePathIsRefused) {
  ExpectError([] { SK_Utils::CheckFilePathValidity(nullptr); }, 2, kPathIsNull);
  ExpectError([] { SK_Utils::CheckFilePathValidity(""); }, 2, kPathIsNull);
}

TEST(Utils, FilePathOf65534BytesIsTheLongest) {
  EXPECT_NO_THROW(SK_Utils::CheckFilePathValidity("a"));
  EXPECT_NO_THROW(SK_Utils::CheckFilePathValidity(std::string(65534, 'a').c_str()));
  ExpectError([] { SK_Utils::CheckFilePathValidity(std::string(65535, 'a').c_str()); }, 3, kPathTooLong);
  ExpectError([] { SK_Utils::CheckFilePathValidity(std::string(65536, 'a').c_str()); }, 3, kPathTooLong);
}

TEST(Utils, FilePathWithoutAnEndIsReadUpToTheLimit) {
  std::vector<char> const endless(65535, 'a');
  ExpectError([&] { SK_Utils::CheckFilePathValidity(endless.data()); }, 3, kPathTooLong);
}

struct FilePath {
  char const* path;
  char const* dirName;
  char const* fileName;
  char const* extension;
};

// Name and folder prefer "/" wherever a backslash stands; the extension goes by the nearer of the two.
FilePath const kFilePaths[] = {
    {"dir/Data.CSV", "dir/", "Data.CSV", "csv"},
    {"/Data.csv", "/", "Data.csv", "csv"},
    {"/a/b/c.tar.GZ", "/a/b/", "c.tar.GZ", "gz"},
    {"Data.CSV", "", "", ""},
    {"data.tdjson", "", "", ""},
    {"", "", "", ""},
    {"/", "/", "", ""},
    {"dir/", "dir/", "", ""},
    {"dir/name", "dir/", "name", ""},
    {"dir/name.", "dir/", "name.", ""},
    {"dir/.hidden", "dir/", ".hidden", "hidden"},
    {"dir/.", "dir/", ".", ""},
    {"dir.ext/name", "dir.ext/", "name", ""},
    {"dir.ext/", "dir.ext/", "", ""},
    {"dir\\Data.Txt", "dir\\", "Data.Txt", "txt"},
    {"C:\\a\\b.bvh", "C:\\a\\", "b.bvh", "bvh"},
    {"dir/a\\b.TSV", "dir/", "a\\b.TSV", "tsv"},
    {"dir/a.x\\b", "dir/", "a.x\\b", ""},
    {"dir\\a/b.json", "dir\\a/", "b.json", "json"},
    {"dir/a b.C D", "dir/", "a b.C D", "c d"},
};

TEST(Utils, FilePathsAreTakenApart) {
  for (FilePath const& row : kFilePaths) {
    SCOPED_TRACE(row.path);
    EXPECT_EQ(SK_Utils::GetFileName(row.path), row.fileName);
    EXPECT_EQ(SK_Utils::GetDirName(row.path), row.dirName);
    std::string extension = "old";
    SK_Utils::GetFileExtension(row.path, extension);
    EXPECT_EQ(extension, row.extension);
  }
}

TEST(Utils, ExtensionMayReplaceItsPath) {
  std::string path = "dir/Data.CSV";
  SK_Utils::GetFileExtension(path, path);
  EXPECT_EQ(path, "csv");
}

TEST(Utils, LowerCaseChangesAsciiCapitalsOnly) {
  std::string text = "AZaz09@[`{ \xC3\x84\xFF";
  SK_Utils::MakeLowerCase(text);
  EXPECT_EQ(text, "azaz09@[`{ \xC3\x84\xFF");
  text.clear();
  SK_Utils::MakeLowerCase(text);
  EXPECT_EQ(text, "");
}

struct VersionedFile {
  char const* content;
  bool isVersion2;
};

VersionedFile const kVersionedFiles[] = {
    {R"({"version":"tdjson2.0.0"})", true},
    {R"({"version":"TDJSON2.0.0","creator":"x"})", true},
    {R"({"version":"TdJson2.0.0")", true},
    {" \t\r\n{ \n\"version\" \t:\r \"tdjson2.0.0\" nothing behind it is looked at", true},
    {R"({"version":"tdjson2.0.1"})", false},
    {R"({"version":"tdjson2.0.0 "})", false},
    {R"({"version":"tdjson1.0.0"})", false},
    {R"({"version":""})", false},
    {R"({"Version":"tdjson2.0.0"})", false},
    {R"({"versions":"tdjson2.0.0"})", false},
    {R"({"creator":"x","version":"tdjson2.0.0"})", false},
    {R"({"creator":5 and anything)", false},
    {R"(["version":"tdjson2.0.0"])", false},
    {R"("version":"tdjson2.0.0")", false},
    {"a,b,c\n1,2,3\n", false},
    {" ", false},
};

TEST(Utils, VersionIsToldByTheFirstKey) {
  TempFolder const folder;
  for (VersionedFile const& row : kVersionedFiles) {
    SCOPED_TRACE(row.content);
    EXPECT_EQ(SK_Utils::IsTDJSONVersion2(folder.Write("file.txt", row.content).c_str()), row.isVersion2);
  }
}

struct BrokenFile {
  char const* content;
  char const* message;
  long long offset;
};

constexpr char kKeyQuotes[] = "Unable to find enclosing quotes for Tdjson key.";
constexpr char kVersionQuotes[] = R"(Unable to find enclosing quotes for property value:"version".)";

BrokenFile const kBrokenFiles[] = {
    {"{", kKeyQuotes, 1},
    {"{}", kKeyQuotes, 1},
    {"  { 5", kKeyQuotes, 4},
    {R"({"version" "tdjson2.0.0"})", R"(Unable to find Colon(:) in between key and value for property:"version".)", 11},
    {R"({"creator")", R"(Unable to find Colon(:) in between key and value for property:"creator".)", 10},
    {R"({"version":2})", kVersionQuotes, 11},
    {R"({"version":)", kVersionQuotes, 11},
};

TEST(Utils, ErrorsInFrontOfTheVersionPassToTheCaller) {
  TempFolder const folder;
  for (BrokenFile const& row : kBrokenFiles) {
    SCOPED_TRACE(row.content);
    std::string const path = folder.Write("file.tdjson", row.content);
    ExpectError([&] { SK_Utils::IsTDJSONVersion2(path.c_str()); }, 32, row.message, row.offset);
  }
}

TEST(Utils, FileThatCannotBeMappedPassesToTheCaller) {
  TempFolder const folder;
  std::string const empty = folder.Write("empty.tdjson", "");
  ExpectError([&] { SK_Utils::IsTDJSONVersion2(empty.c_str()); }, 54, "Empty Input file.");
  std::string const missing = folder.Path("missing.tdjson");
  ExpectError([&] { SK_Utils::IsTDJSONVersion2(missing.c_str()); }, 6, "Unable to open input file:" + missing + ".");
}

struct MatchName {
  char const* name;
  std::string text;
  bool valid;
};

class ValidMatchName : public testing::TestWithParam<MatchName> {};

TEST_P(ValidMatchName, IsMadeOfLettersAndDigitsAndBeginsWithALetter) {
  MatchName const& row = GetParam();
  EXPECT_EQ(SK_Utils::IsValidMatchName(row.text), row.valid);
}

MatchName const kMatchNames[] = {
    {"Letters", "arm", true},
    {"OneLetter", "Z", true},
    {"DigitBehindALetter", "arm2", true},
    {"EveryEnd", "azAZ09", true},
    {"Empty", "", false},
    {"DigitInFront", "2arm", false},
    {"ZeroInFront", "0", false},
    {"NineInFront", "9a", false},
    {"Underscore", "left_arm", false},
    {"UnderscoreInFront", "_arm", false},
    {"Blank", "left arm", false},
    {"BlankBehind", "arm ", false},
    {"BeforeZero", "a/", false},
    {"BehindNine", "a:", false},
    {"BeforeCapitals", "a@", false},
    {"BehindCapitals", "a[", false},
    {"BeforeSmallLetters", "a`", false},
    {"BehindSmallLetters", "a{", false},
    {"NotAscii", "\xC3\xA9tat", false},
    {"LastByte", "a\xFF", false},
    {"Nul", std::string("a\0b", 3), false},
};

INSTANTIATE_TEST_SUITE_P(Utils, ValidMatchName, testing::ValuesIn(kMatchNames), NameOfRow());

TEST(Utils, AMatchNameMayComeAsPlainText) {
  EXPECT_TRUE(SK_Utils::IsValidMatchName("arm"));
  EXPECT_FALSE(SK_Utils::IsValidMatchName("1arm"));
  EXPECT_FALSE(SK_Utils::IsValidMatchName(""));
  EXPECT_FALSE(SK_Utils::IsValidMatchName(static_cast<char const*>(nullptr)));
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
