#include "PlacedJson.h"

#include <gtest/gtest.h>

namespace {

using senmark_tool::PlacedJson;
using senmark_tool::PlacedValue;
using senmark_tool::ReadPlacedJson;
using eKind = PlacedValue::eKind;

TEST(PlacedJson, EveryValueAndKeyHasItsPlace) {
  std::string const text = " {\n \"a\\u0041\" : [1 ,-2,\t3.5, \"t\\n\"], \"b\":{}, \"\":null,\"c\":true}";
  PlacedJson const json = ReadPlacedJson(text, 9);
  ASSERT_FALSE(json.error);
  PlacedValue const& root = json.root;
  EXPECT_EQ(root.kind, eKind::kObject);
  EXPECT_EQ(root.offset, 1u);
  ASSERT_EQ(root.children.size(), 4u);
  PlacedValue const& array = root.children[0];
  EXPECT_EQ(array.key, "aA");
  EXPECT_EQ(array.keyOffset, text.find('"'));
  EXPECT_EQ(array.offset, text.find('['));
  ASSERT_EQ(array.children.size(), 4u);
  EXPECT_EQ(array.children[0].offset, text.find('1', 15));
  EXPECT_EQ(array.children[1].offset, text.find("-2"));
  EXPECT_EQ(array.children[1].integer, -2);
  EXPECT_EQ(array.children[2].offset, text.find("3.5"));
  EXPECT_EQ(array.children[2].kind, eKind::kOtherNumber);
  EXPECT_EQ(array.children[3].offset, text.find("\"t"));
  EXPECT_EQ(array.children[3].text, "t\n");
  EXPECT_EQ(root.children[1].offset, text.find("{}"));
  EXPECT_EQ(root.children[1].keyOffset, text.find("\"b"));
  EXPECT_EQ(root.children[2].kind, eKind::kNull);
  EXPECT_EQ(root.children[2].offset, text.find("null"));
  EXPECT_EQ(root.children[3].offset, text.find("true"));
  EXPECT_EQ(root.Find("c"), &root.children[3]);
  EXPECT_EQ(root.Find("d"), nullptr);
  EXPECT_EQ(array.Find("a"), nullptr);
}

TEST(PlacedJson, IntegersOf64BitsWithASignAreIntegers) {
  for (auto const& [text, kind] : {std::pair<char const*, eKind>{"9223372036854775807", eKind::kInteger},
                                   {"-9223372036854775808", eKind::kInteger},
                                   {"9223372036854775808", eKind::kOtherNumber},
                                   {"-9223372036854775809", eKind::kOtherNumber},
                                   {"1e2", eKind::kOtherNumber},
                                   {"4294967296", eKind::kInteger}}) {
    EXPECT_EQ(ReadPlacedJson(text, 0).root.kind, kind) << text;
  }
  EXPECT_EQ(ReadPlacedJson("-9223372036854775808", 0).root.integer, std::numeric_limits<std::int64_t>::min());
}

TEST(PlacedJson, ErrorsHaveTheirPlace) {
  PlacedJson const json = ReadPlacedJson("{\"a\":1,}", 3);
  ASSERT_TRUE(json.error);
  EXPECT_EQ(json.error->offset, 7u);
  EXPECT_EQ(json.error->text, "Missing a name for object member.");
}

TEST(PlacedJson, WhatIsTooDeepIsLeftOutAndTheRestIsRight) {
  PlacedJson const json = ReadPlacedJson(R"([[[[1],2],{"a":{"b":3}}],{"c":4}])", 2);
  ASSERT_FALSE(json.error);
  ASSERT_EQ(json.root.children.size(), 2u);
  PlacedValue const& first = json.root.children[0];
  ASSERT_EQ(first.children.size(), 2u);
  EXPECT_TRUE(first.children[0].children.empty());
  EXPECT_EQ(first.children[1].kind, eKind::kObject);
  EXPECT_TRUE(first.children[1].children.empty());
  ASSERT_NE(json.root.children[1].Find("c"), nullptr);
  EXPECT_EQ(json.root.children[1].Find("c")->integer, 4);
}

TEST(PlacedJson, PlacesCountLinesAndBytes) {
  std::string const text = "ab\n\n\xC3\xA4x\r\ny";
  struct Row {
    std::uint64_t offset, line, column;
  };
  for (Row const& row :
       {Row{0, 1, 1}, Row{2, 1, 3}, Row{3, 2, 1}, Row{4, 3, 1}, Row{6, 3, 3}, Row{9, 4, 1}, Row{10, 4, 2}}) {
    senmark_tool::TextPlace const place = senmark_tool::PlaceOf(text, row.offset);
    EXPECT_EQ(place.offset, row.offset);
    EXPECT_EQ(place.line, row.line) << row.offset;
    EXPECT_EQ(place.column, row.column) << row.offset;
  }
}

}  // namespace
