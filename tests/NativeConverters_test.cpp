#include "NativeConverters.h"

#include <gtest/gtest.h>

#include "TempFolder.h"
#include "senmark/Host.h"

namespace senmark_test {
namespace {

using senmark_tool::eOwnFormat;
using senmark_tool::FileExtension;
using senmark_tool::NativeConverter;
using senmark_tool::OwnFormat;

constexpr char kOutline[] =
    R"(,"dynamicSamplesPresentB":false,"dataOutline":[{"objectType":"dataStatic","matchName":"a","displayName":"a",)"
    R"("dataType":{"type":"boolean"},"value":true}]})";

struct Row {
  char const* name;
  char const* file;
  std::string content;
  eOwnFormat format;
};

Row const kRows[] = {
    {"Version2", "a.tdjson", R"({"version":"tdjson2.0.0")", eOwnFormat::kVersion2},
    {"Version2UnderAnyName", "a.txt", R"({"version":"tdjson2.0.0")", eOwnFormat::kVersion2},
    {"Version2InCapitalsAndWithBlanks", "a.csv", " \r\n\t{ \n\"version\" : \"TDJSON2.0.0\"", eOwnFormat::kVersion2},
    {"Version2WithABackslashWithoutMeaning", "a.csv", R"({"vers\ion":"tdj\son2.0.0")", eOwnFormat::kVersion2},
    {"Version1ByItsName", "a.TDJSON", R"({"creator":"x")", eOwnFormat::kVersion1},
    {"Version1WithAnotherVersion", "a.tdjson", R"({"version":"tdjson1.0.0")", eOwnFormat::kVersion1},
    {"Version1UnderAnotherName", "a.json", R"({"creator":"x")", eOwnFormat::kNo},
    {"Table", "a.csv", "a,b\n1,2\n", eOwnFormat::kNo},
    {"Array", "a.json", "[1]", eOwnFormat::kNo},
    {"OtherKey", "a.json", R"({"Version":"tdjson2.0.0"})", eOwnFormat::kNo},
    {"KeyWithAQuote", "a.json", R"({"a\"b":"tdjson2.0.0"})", eOwnFormat::kNo},
    {"UnknownVersion", "a.json", R"({"version":"3"})", eOwnFormat::kNo},
    {"Blanks", "a.json", " \n ", eOwnFormat::kNo},
    {"Empty", "a.csv", "", eOwnFormat::kUnreadable},
    {"BraceAlone", "a.json", "{", eOwnFormat::kUnreadable},
    {"EmptyObject", "a.json", "{}", eOwnFormat::kUnreadable},
    {"NoColon", "a.json", R"({"a" 1})", eOwnFormat::kUnreadable},
    {"OpenKey", "a.json", R"({"a)", eOwnFormat::kUnreadable},
    {"OpenKeyWithBackslash", "a.json", "{\"a\\", eOwnFormat::kUnreadable},
    {"ControlInKey", "a.json", "{\"a\tb\":1}", eOwnFormat::kUnreadable},
    {"VersionThatIsNoText", "a.json", R"({"version":2})", eOwnFormat::kUnreadable},
};

class OwnFormats : public testing::TestWithParam<Row> {};

TEST_P(OwnFormats, AreTold) {
  TempFolder const folder;
  std::string const path = folder.Write(GetParam().file, GetParam().content);
  EXPECT_EQ(OwnFormat(path, FileExtension(path)), GetParam().format);
}

/// What is not of the format is converted, and then the text that the library reads is another.
TEST_P(OwnFormats, AgreeWithTheLibrary) {
  TempFolder const folder;
  eOwnFormat const format = GetParam().format;
  bool const isOwn = format == eOwnFormat::kVersion1 || format == eOwnFormat::kVersion2;
  std::string const content = GetParam().content + (isOwn ? kOutline : "");
  std::string const path = folder.Write(GetParam().file, content);
  std::string const output = folder.Path("output");
  senmark::Senmark const manager(senmark::Library::Linked());
  senmark::Result<senmark::File> const file = senmark::attempt([&] { return manager.open(path, output); });
  if (format == eOwnFormat::kVersion2) {
    ASSERT_TRUE(file) << file.error().message();
    EXPECT_EQ(folder.Read(output), content);
  } else if (format == eOwnFormat::kVersion1) {
    // Whatever is wrong with it, it is not what a converter finds.
    ASSERT_FALSE(file);
    EXPECT_NE(file.error().code(), ns_sensor::kFormatNotSupported);
    EXPECT_LT(file.error().code(), 1000);
  } else if (format == eOwnFormat::kUnreadable) {
    ASSERT_FALSE(file);
    EXPECT_TRUE(file.error().code() == ns_sensor::kJsonSyntax || file.error().code() == ns_sensor::kEmptyFile)
        << file.error().message();
  } else if (file) {
    EXPECT_NE(folder.Read(output), content);
  }
}

INSTANTIATE_TEST_SUITE_P(All, OwnFormats, testing::ValuesIn(kRows),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(NativeConverters, MissingFileAndFolderAreUnreadable) {
  TempFolder const folder;
  EXPECT_EQ(OwnFormat(folder.Path("nothing"), ""), eOwnFormat::kUnreadable);
  EXPECT_EQ(OwnFormat(folder.Path(""), ""), eOwnFormat::kUnreadable);
  EXPECT_EQ(OwnFormat("/dev/zero", ""), eOwnFormat::kUnreadable);
}

TEST(NativeConverters, ExtensionIsBehindTheLastPointOfTheName) {
  EXPECT_EQ(FileExtension("/dir/Data.CSV"), "csv");
  EXPECT_EQ(FileExtension("/dir/a.b.TxT"), "txt");
  EXPECT_EQ(FileExtension("/dir.csv/data"), "");
  EXPECT_EQ(FileExtension("/dir/.hidden"), "hidden");
  EXPECT_EQ(FileExtension("/dir/data."), "");
  EXPECT_EQ(FileExtension("/dir/x.y\\data"), "");
  EXPECT_EQ(FileExtension("data.csv"), "");  // as the library has it for paths without a folder
}

struct Check {
  char const* name;
  char const* converter;
  std::string content;
  bool takes;
};

constexpr char kBvhRest[] =
    " hip\n{\n  OFFSET 1 2 3\n  CHANNELS 3 Zrotation Yrotation Xrotation\n  End Site\n  {\n    OFFSET 0 0 1\n  }\n}\n"
    "MOTION\nFrames: 1\nFrame Time: 0.04\n0 0 0\n";

Check const kChecks[] = {
    {"Bvh", "bvh", std::string("HIERARCHY\nROOT") + kBvhRest, true},
    {"BvhWithSpaces", "bvh", std::string("\t HIERARCHY and more\r\n  ROOT") + kBvhRest, true},
    {"BvhWithoutRoot", "bvh", std::string("HIERARCHY\nROOTS") + kBvhRest, false},
    {"BvhWithAnEmptyFirstLine", "bvh", std::string("\nHIERARCHY\nROOT") + kBvhRest, false},
    {"BvhInSmallLetters", "bvh", std::string("hierarchy\nROOT") + kBvhRest, false},
    {"BvhLongerWord", "bvh", std::string("HIERARCHYS\nROOT") + kBvhRest, false},
    {"JsonArray", "json", " \r\n\t[1]", true},
    {"JsonObject", "json", "{\"a\":1}", true},
    {"JsonNumber", "json", "1", false},
    {"JsonBracketAtTheEnd", "json", " [", false},
    {"JsonBlanks", "json", "  \n", false},
};

class NativeChecks : public testing::TestWithParam<Check> {};

NativeConverter const& Converter(std::string const& extension) {
  for (NativeConverter const& converter : senmark_tool::kNativeConverters) {
    if (converter.extension == extension) {
      return converter;
    }
  }
  throw std::logic_error("no such converter");
}

TEST_P(NativeChecks, AreTold) {
  TempFolder const folder;
  EXPECT_EQ(Converter(GetParam().converter).check(folder.Write("file", GetParam().content)).takes, GetParam().takes);
}

/// The creator that a converter writes, or its error.
std::string Outcome(std::string const& path) {
  senmark::Senmark const manager(senmark::Library::Linked());
  senmark::Result<senmark::File> const file = senmark::attempt([&] { return manager.open(path); });
  return file ? file.value().info().creator
              : std::to_string(file.error().code()) + " at " + std::to_string(file.error().line());
}

/// What another one declines comes to the same as a table does.
TEST_P(NativeChecks, AgreeWithTheLibrary) {
  TempFolder const folder;
  std::string const extension = GetParam().converter;
  std::string const outcome = Outcome(folder.Write("file." + extension, GetParam().content));
  std::string const asTable = Outcome(folder.Write("file.csv", GetParam().content));
  EXPECT_EQ(outcome, GetParam().takes ? "com.velmo.sensor." + extension : asTable);
  EXPECT_NE(outcome == asTable, GetParam().takes);
}

INSTANTIATE_TEST_SUITE_P(All, NativeChecks, testing::ValuesIn(kChecks),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(NativeConverters, TablesTakeAnything) {
  for (char const* const extension : {"csv", "tsv", "txt"}) {
    EXPECT_TRUE(Converter(extension).check("/nothing/there").takes) << extension;
  }
}

}  // namespace
}  // namespace senmark_test
