#include "ManifestConverters.h"

#include <gtest/gtest.h>

namespace {

using senmark_tool::ManifestConverter;
using senmark_tool::ManifestConverters;
using senmark_tool::ReadManifest;

TEST(ManifestConverters, AllMembersAreRead) {
  ManifestConverters const read = ReadManifest(
      R"({"converter":[{"identifier":"org.a","name":[{"localeID":"de_DE","value":"Eins"},)"
      R"({"localeID":"en_US","value":"One"}],"version":2,"force_converter":true,"check_format":[)"
      R"({"byte_seq":"0x4D5A","length":2,"offset":8589934592},{"byte_seq":"a\u0000b","length":3,"offset":-1}],)"
      R"("extensions":["B","a","A"]},{"identifier":"org.b","version":1.5,"extensions":["c"],"more":null}]})");
  EXPECT_EQ(read.fault, "");
  ASSERT_EQ(read.list.size(), 2u);
  ManifestConverter const& first = read.list[0];
  EXPECT_EQ(first.uid, "org.a");
  EXPECT_EQ(first.name, "One");
  EXPECT_EQ(first.version, 2);
  EXPECT_TRUE(first.isForced);
  ASSERT_EQ(first.signatures.size(), 2u);
  EXPECT_EQ(first.signatures[0].bytes, "0x4D5A");
  EXPECT_EQ(first.signatures[0].length, 2);
  EXPECT_EQ(first.signatures[0].offset, 8589934592);
  EXPECT_EQ(first.signatures[1].bytes, std::string("a\0b", 3));
  EXPECT_EQ(first.signatures[1].offset, -1);
  EXPECT_EQ(first.extensions, (std::set<std::string>{"a", "b"}));
  ManifestConverter const& second = read.list[1];
  EXPECT_EQ(second.name, "");
  EXPECT_EQ(second.version, 1.5);
  EXPECT_FALSE(second.isForced);
  EXPECT_TRUE(second.signatures.empty());
}

std::string WithNames(std::string const& names) {
  return R"({"converter":[{"identifier":"a","version":1,"extensions":["a"],"name":)" + names + "}]}";
}

TEST(ManifestConverters, NameIsThatOfTheProgramsLanguage) {
  struct {
    char const* names;
    char const* name;
  } const rows[] = {
      {R"([{"localeID":"en_US","value":"1"},{"localeID":"en_US","value":"2"}])", "1"},
      {R"([{"localeID":"en_US_x","value":"1"},{"localeID":"en_US","value":"2"}])", "2"},
      {R"([{"localeID":"en_US_x","value":"1"},{"localeID":"en_US_y","value":"2"}])", "1"},
      {R"([{"localeID":"en_US_x","value":""},{"localeID":"en_US_y","value":"2"}])", "2"},
      {R"([{"localeID":"en","value":"1"},{"localeID":"de_DE","value":"2"}])", ""},
      {R"([{"localeID":"en_US","value":"1"},{}])", "1"},
      {"[]", ""},
      {"{}", ""},
      {"\"1\"", ""},
  };
  for (auto const& row : rows) {
    ManifestConverters const read = ReadManifest(WithNames(row.names));
    EXPECT_EQ(read.fault, "") << row.names;
    ASSERT_EQ(read.list.size(), 1u) << row.names;
    EXPECT_EQ(read.list[0].name, row.name) << row.names;
  }
}

struct Faulty {
  char const* name;
  char const* converter;  ///< the second of the manifest
  char const* fault;
};

Faulty const kFaulty[] = {
    {"NoObject", "7", ": \"identifier\" is missing"},
    {"NoIdentifier", R"({"version":1,"extensions":["a"]})", ": \"identifier\" is missing"},
    {"IdentifierNoText", R"({"identifier":1,"version":1,"extensions":["a"]})", ": \"identifier\" is no text"},
    {"IdentifierEmpty", R"({"identifier":"","version":1,"extensions":["a"]})", ": \"identifier\" is empty"},
    {"NoLocale", R"({"identifier":"b","name":[{"value":"x"}],"version":1,"extensions":["a"]})",
     ", entry 1 of \"name\": \"localeID\" is missing"},
    {"NoValue", R"({"identifier":"b","name":[{"localeID":"x","value":"y"},{"localeID":"x"}],"version":1})",
     ", entry 2 of \"name\": \"value\" is missing"},
    {"NameNoObject", R"({"identifier":"b","name":["x"],"version":1})",
     ", entry 1 of \"name\": \"localeID\" is missing"},
    {"NoVersion", R"({"identifier":"b","extensions":["a"]})", ": \"version\" is missing"},
    {"VersionNoNumber", R"({"identifier":"b","version":"1","extensions":["a"]})", ": \"version\" is no number"},
    {"NoByteSequence", R"({"identifier":"b","version":1,"check_format":[{"length":1,"offset":0}]})",
     ", entry 1 of \"check_format\": \"byte_seq\" is missing"},
    {"LengthNoInteger", R"({"identifier":"b","version":1,"check_format":[{"byte_seq":"a","length":1.5,"offset":0}]})",
     ", entry 1 of \"check_format\": \"length\" is no integer of 32 bits"},
    {"LengthTooLong",
     R"({"identifier":"b","version":1,"check_format":[{"byte_seq":"a","length":2147483648,"offset":0}]})",
     ", entry 1 of \"check_format\": \"length\" is no integer of 32 bits"},
    {"OffsetNoInteger", R"({"identifier":"b","version":1,"check_format":[{"byte_seq":"a","length":1,"offset":"0"}]})",
     ", entry 1 of \"check_format\": \"offset\" is no integer of 64 bits"},
    {"ExtensionNoText", R"({"identifier":"b","version":1,"extensions":["a",1]})",
     ": an element of \"extensions\" is no text"},
    {"NoExtensions", R"({"identifier":"b","version":1})", ": \"extensions\" gives none"},
    {"ExtensionsEmpty", R"({"identifier":"b","version":1,"extensions":[]})", ": \"extensions\" gives none"},
    {"ExtensionsNoArray", R"({"identifier":"b","version":1,"extensions":"a"})", ": \"extensions\" gives none"},
};

class FaultyManifests : public testing::TestWithParam<Faulty> {};

TEST_P(FaultyManifests, KeepWhatStandsBeforeTheFault) {
  ManifestConverters const read =
      ReadManifest(std::string(R"({"converter":[{"identifier":"a","version":1,"extensions":["x"]},)") +
                   GetParam().converter + R"(,{"identifier":"c","version":1,"extensions":["y"]}]})");
  ASSERT_EQ(read.list.size(), 1u);
  EXPECT_EQ(read.list[0].uid, "a");
  EXPECT_EQ(read.fault, std::string("converter 2 of the manifest") + GetParam().fault);
}

INSTANTIATE_TEST_SUITE_P(All, FaultyManifests, testing::ValuesIn(kFaulty),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(ManifestConverters, TextThatIsNoManifestIsAFault) {
  struct {
    char const* text;
    char const* fault;
  } const rows[] = {
      {"", "the manifest is no JSON: The document is empty. (line 1, column 1)"},
      {"{\n \"converter\":[}", "the manifest is no JSON: Invalid value. (line 2, column 15)"},
      {"{}", "the manifest has no array \"converter\""},
      {"[]", "the manifest has no array \"converter\""},
      {"{\"converter\":{}}", "the manifest has no array \"converter\""},
  };
  for (auto const& row : rows) {
    ManifestConverters const read = ReadManifest(row.text);
    EXPECT_EQ(read.fault, row.fault) << row.text;
    EXPECT_TRUE(read.list.empty()) << row.text;
  }
  EXPECT_EQ(ReadManifest("{\"converter\":[]}").fault, "");
  EXPECT_EQ(ReadManifest(std::string("{\"converter\":[]}\0rest", 21)).fault, "");
}

TEST(ManifestConverters, NestingWithoutEndIsOneFaultOfMany) {
  EXPECT_NE(ReadManifest(std::string(10000000, '[')).fault, "");
}

}  // namespace
