// Static nodes with a text.
#include "TdjsonStaticDataStringImpl.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_StringProperties;
using senmark_test::CodeOf;

TEST(StaticDataString, IsWhatItWasMadeOf) {
  TdjsonStaticDataStringImpl node(nullptr, "a \"text\"", "text", "value");
  EXPECT_EQ(node.GetType(), 1);
  EXPECT_EQ(node.GetDataValue(), "value");
  EXPECT_EQ(node.GetDisplayName(), R"(a \"text\")");
  EXPECT_EQ(node.GetMatchName(), "text");
  EXPECT_EQ(node.GetActualITdjsonStaticData(), static_cast<ITdjsonStaticData_v1*>(&node));
}

TEST(StaticDataString, HasNoLengthsBeforeItsPropertiesAreSet) {
  TdjsonStaticDataStringImpl const node(nullptr, "text", "text", "value");
  EXPECT_EQ(node.GetStringProperties().maxLen, 0u);
  EXPECT_EQ(node.GetStringProperties().maxDigitsInStrLength, 0u);
  EXPECT_FALSE(node.GetStringProperties().eventMarkerB);
}

struct Text {
  char const* name;
  std::string value;
  std::string stored;
  unsigned length;
  unsigned digits;
};

class StaticText : public testing::TestWithParam<Text> {};

TEST_P(StaticText, IsEscapedAndThenMeasured) {
  Text const& row = GetParam();
  TdjsonStaticDataStringImpl node(nullptr, "text", "text", row.value);
  EXPECT_EQ(node.GetDataValue(), row.stored);
  EXPECT_EQ(CodeOf([&](void* result) { node.setStringProperties(77, 88, 0, result); }), 0);
  EXPECT_EQ(node.GetStringProperties().maxLen, row.length);
  EXPECT_EQ(node.GetStringProperties().maxDigitsInStrLength, row.digits);
  EXPECT_FALSE(node.GetStringProperties().eventMarkerB);
}

Text const kTexts[] = {
    {"Empty", "", "", 0, 1},
    {"NewlineIsTwo", "a\nb", "a\\nb", 4, 1},
    {"QuoteAndBackslash", "\"\\", "\\\"\\\\", 4, 1},
    {"NineBytes", std::string(9, 'x'), std::string(9, 'x'), 9, 1},
    {"TenBytes", std::string(10, 'x'), std::string(10, 'x'), 10, 2},
    {"BytesNotCharacters", "\xC3\xA9", "\xC3\xA9", 2, 1},
    {"InvalidUtf8PassesThrough", "\xFF\xFE", "\xFF\xFE", 2, 1},
    {"NulIsAByte", std::string("a\0b", 3), std::string("a\0b", 3), 3, 1},
    {"AHundredBytes", std::string(50, '\n'),
     [] {
       std::string text;
       for (int count = 0; count < 50; ++count) {
         text += "\\n";
       }
       return text;
     }(),
     100, 3},
};

INSTANTIATE_TEST_SUITE_P(StaticDataString, StaticText, testing::ValuesIn(kTexts),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(StaticDataString, MeasuresAnewEachTime) {
  TdjsonStaticDataStringImpl node(nullptr, "text", "text", "value");
  for (unsigned char const marker : std::initializer_list<unsigned char>{1, 0, 255}) {
    EXPECT_EQ(CodeOf([&](void* result) { node.setStringProperties(0, 0, marker, result); }), 0);
    EXPECT_EQ(node.GetStringProperties().maxLen, 5u);
    EXPECT_EQ(node.GetStringProperties().maxDigitsInStrLength, 1u);
    EXPECT_EQ(node.GetStringProperties().eventMarkerB, marker != 0);
  }
}

TEST(StaticDataString, TheMirrorDoesTheSame) {
  TdjsonStaticDataStringImpl node(nullptr, "text", "text", "value");
  SK_StringProperties properties;
  properties.maxLen = 99;
  properties.maxDigitsInStrLength = 98;
  properties.eventMarkerB = true;
  node.SetStringProperties(properties);
  EXPECT_EQ(node.GetStringProperties().maxLen, 5u);
  EXPECT_EQ(node.GetStringProperties().maxDigitsInStrLength, 1u);
  EXPECT_TRUE(node.GetStringProperties().eventMarkerB);
}

}  // namespace
}  // namespace SK_PLUGIN
