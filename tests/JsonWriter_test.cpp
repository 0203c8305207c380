#include "JsonWriter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <sstream>

namespace senmark_tool {
namespace {

std::string Quoted(std::string_view text) {
  std::ostringstream out;
  JsonWriter(out).String(text);
  return out.str();
}

std::string Number(double number) {
  std::ostringstream out;
  JsonWriter(out).Number(number);
  return out.str();
}

TEST(JsonWriter, MembersAndElementsAreSeparated) {
  std::ostringstream out;
  JsonWriter json(out);
  json.BeginObject();
  json.Key("a");
  json.BeginArray();
  json.Integer(-1);
  json.Unsigned(std::numeric_limits<std::uint64_t>::max());
  json.Boolean(true);
  json.BeginArray();
  json.EndArray();
  json.EndArray();
  json.Key("b");
  json.Null();
  json.EndObject();
  EXPECT_EQ(out.str(), R"({"a":[-1,18446744073709551615,true,[]],"b":null})");
}

TEST(JsonWriter, LinesHaveOneElementEach) {
  std::ostringstream out;
  JsonWriter json(out);
  json.BeginArray(JsonWriter::eLayout::kLines);
  json.Integer(1);
  json.BeginArray();
  json.Integer(2);
  json.Integer(3);
  json.EndArray();
  json.EndArray();
  EXPECT_EQ(out.str(), "[\n1,\n[2,3]\n]");
}

TEST(JsonWriter, EmptyArrayOfLinesStaysOnOneLine) {
  std::ostringstream out;
  JsonWriter json(out);
  json.BeginArray(JsonWriter::eLayout::kLines);
  json.EndArray();
  EXPECT_EQ(out.str(), "[]");
}

TEST(JsonWriter, CloseAllEndsWhatIsOpen) {
  std::ostringstream out;
  JsonWriter json(out);
  json.BeginObject();
  json.Key("a");
  json.BeginArray();
  json.BeginObject();
  json.Key("b");
  json.CloseAll();
  EXPECT_EQ(out.str(), "{\"a\":[{\"b\":null}]}\n");
}

struct TextRow {
  char const* name;
  std::string_view text;
  char const* json;
};

class JsonText : public testing::TestWithParam<TextRow> {};

TEST_P(JsonText, IsEscaped) {
  EXPECT_EQ(Quoted(GetParam().text), GetParam().json);
}

INSTANTIATE_TEST_SUITE_P(JsonWriter, JsonText,
                         testing::Values(TextRow{"Plain", "abc", R"("abc")"}, TextRow{"Empty", "", R"("")"},
                                         TextRow{"QuoteAndBackslash", R"(a"b\c)", R"("a\"b\\c")"},
                                         TextRow{"LineFeedAndTab", "a\nb\tc", R"("a\nb\tc")"},
                                         TextRow{"ControlCharacters", std::string_view("\0\x01\x1f\x7f", 4),
                                                 R"("\u0000\u0001\u001f\u007f")"},
                                         TextRow{"Space", " ", R"(" ")"},
                                         TextRow{"TwoBytes", "\xC3\xA4", "\"\xC3\xA4\""},
                                         TextRow{"FourBytes", "\xF0\x9F\x98\x80", "\"\xF0\x9F\x98\x80\""},
                                         TextRow{"InvalidByte", "a\xFF z", "\"a\xEF\xBF\xBD z\""},
                                         TextRow{"CutCharacter", "\xE2\x82", "\"\xEF\xBF\xBD\xEF\xBF\xBD\""}),
                         [](testing::TestParamInfo<TextRow> const& row) { return row.param.name; });

TEST(JsonWriter, NumbersReadBackAsTheSameDouble) {
  for (double const number : {0.1, 1.0 / 3, 1e300, 5e-324, -2.2250738585072014e-308, 123456789012345678.0,
                              std::numeric_limits<double>::max(), -0.0}) {
    std::string const text = Number(number);
    double const back = std::strtod(text.c_str(), nullptr);
    EXPECT_EQ(back, number) << text;
    EXPECT_EQ(std::signbit(back), std::signbit(number)) << text;
  }
}

TEST(JsonWriter, NumbersAreShort) {
  EXPECT_EQ(Number(0.1), "0.1");
  EXPECT_EQ(Number(-25), "-25");
}

TEST(JsonWriter, WhatIsNoNumberInJsonIsNull) {
  EXPECT_EQ(Number(std::numeric_limits<double>::quiet_NaN()), "null");
  EXPECT_EQ(Number(std::numeric_limits<double>::infinity()), "null");
  EXPECT_EQ(Number(-std::numeric_limits<double>::infinity()), "null");
}

}  // namespace
}  // namespace senmark_tool
