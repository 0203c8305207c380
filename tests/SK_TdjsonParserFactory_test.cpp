#include "SK_TdjsonParserFactory.h"

#include <gtest/gtest.h>

#include <string>

#include "DataFileText.h"
#include "SK_TdjsonParser.h"
#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::ErrorText;
using senmark_test::OutcomeOf;
using senmark_test::TempFolder;

struct Choice {
  char const* name;
  char const* text;
  eTDJSONVersion version;
};

class FactoryChoice : public testing::TestWithParam<Choice> {};

TEST_P(FactoryChoice, GoesByTheFirstKey) {
  TempFolder const folder;
  std::string const path = folder.Write("file.tdjson", GetParam().text);
  EXPECT_EQ(SK_TdjsonParserFactory::GetParser(path.c_str())->GetTDJSONVersion(), GetParam().version);
}

Choice const kChoices[] = {
    {"Version2", R"({"version":"tdjson2.0.0"})", kTdjsonVersion2},
    {"CapitalLetters", R"({"version":"TDJSON2.0.0"})", kTdjsonVersion2},
    {"WhiteSpace", " \n{ \"version\" : \"tdjson2.0.0\" , ", kTdjsonVersion2},
    {"OtherVersion", R"({"version":"tdjson2.0.1"})", kTdjsonVersion1},
    {"VersionThatBeginsAlike", R"({"version":"tdjson2.0.0 "})", kTdjsonVersion1},
    {"VersionIsTheSecondKey", R"({"creator":"c","version":"tdjson2.0.0"})", kTdjsonVersion1},
    {"OtherKey", R"({"Version":"tdjson2.0.0"})", kTdjsonVersion1},
    {"NoObject", "[]", kTdjsonVersion1},
};

INSTANTIATE_TEST_SUITE_P(Every, FactoryChoice, testing::ValuesIn(kChoices),
                         [](testing::TestParamInfo<Choice> const& row) { return row.param.name; });

TEST(TdjsonParserFactory, PassesErrorsOn) {
  TempFolder const folder;
  std::string const broken = folder.Write("broken.tdjson", "{version}");
  EXPECT_EQ(OutcomeOf([&] { SK_TdjsonParserFactory::GetParser(broken.c_str()); }),
            ErrorText(32, 1, "Unable to find enclosing quotes for Tdjson key."));
  std::string const empty = folder.Write("empty.tdjson", "");
  EXPECT_EQ(OutcomeOf([&] { SK_TdjsonParserFactory::GetParser(empty.c_str()); }),
            ErrorText(54, -1, "Empty Input file."));
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
