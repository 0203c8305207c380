#include "CsvText.h"

#include <gtest/gtest.h>

namespace senmark_tool {
namespace {

struct Row {
  char const* name;
  char const* text;
  char const* field;
};

class Field : public testing::TestWithParam<Row> {};

TEST_P(Field, IsQuotedWhereNeeded) {
  EXPECT_EQ(CsvField(GetParam().text), GetParam().field);
}

INSTANTIATE_TEST_SUITE_P(CsvText, Field,
                         testing::Values(Row{"Plain", "wind speed", "wind speed"}, Row{"Empty", "", ""},
                                         Row{"Comma", "Snow,Fog", "\"Snow,Fog\""}, Row{"Quote", "5\"", "\"5\"\"\""},
                                         Row{"OnlyQuote", "\"", "\"\"\"\""}, Row{"LineFeed", "a\nb", "\"a\nb\""},
                                         Row{"CarriageReturn", "a\rb", "\"a\rb\""}, Row{"BlanksStay", " a ", " a "},
                                         Row{"OtherBytes", "\xC2\xB0;\t", "\xC2\xB0;\t"}),
                         [](testing::TestParamInfo<Row> const& row) { return row.param.name; });

}  // namespace
}  // namespace senmark_tool
