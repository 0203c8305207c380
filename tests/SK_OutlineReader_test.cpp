#include "SK_OutlineReader.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

#include "SK_TdjsonParserUtils.h"

namespace SK_NAMESPACE_INT {
namespace {

using ns_sensor::eDataValueType;

/// A node as the library's scanner reads it: every number is a double.
class Node {
 public:
  explicit Node(std::string const& text) {
    SK_TdjsonParserUtils::ParseJsonObject(text.data(), text.data() + text.size(), nullptr, "node", mValue, mAllocator,
                                          0);
  }
  JValue const& Value() const { return mValue; }

 private:
  JAllocator mAllocator;
  JValue mValue;
};

struct TypeRow {
  eTDJSONVersion version;
  bool isDynamic;
  char const* type;
  eDataValueType kind;
};

TypeRow const kTypes[] = {
    {kTdjsonVersion2, false, "numberArray", ns_sensor::kNumberArrayValue},
    {kTdjsonVersion2, false, "string", ns_sensor::kStringValue},
    {kTdjsonVersion2, false, "number", ns_sensor::kNumberValue},
    {kTdjsonVersion2, false, "boolean", ns_sensor::kBooleanValue},
    {kTdjsonVersion2, false, "paddedString", ns_sensor::kInvalidValue},
    {kTdjsonVersion2, false, "numberString", ns_sensor::kNumberValue},
    {kTdjsonVersion2, false, "numberArrays", ns_sensor::kNumberArrayValue},
    {kTdjsonVersion2, false, "numbe", ns_sensor::kInvalidValue},
    {kTdjsonVersion2, false, "", ns_sensor::kInvalidValue},
    {kTdjsonVersion2, true, "numberStringArray", ns_sensor::kNumberArrayValue},
    {kTdjsonVersion2, true, "paddedString", ns_sensor::kStringValue},
    {kTdjsonVersion2, true, "numberString", ns_sensor::kNumberValue},
    {kTdjsonVersion2, true, "numberStrings", ns_sensor::kNumberValue},
    {kTdjsonVersion2, true, "numberArray", ns_sensor::kInvalidValue},
    {kTdjsonVersion2, true, "boolean", ns_sensor::kInvalidValue},
    {kTdjsonVersion1, false, "numberArray", ns_sensor::kNumberArrayValue},
    {kTdjsonVersion1, false, "paddedString", ns_sensor::kStringValue},
    {kTdjsonVersion1, false, "numberString", ns_sensor::kNumberValue},
    {kTdjsonVersion1, false, "boolean", ns_sensor::kInvalidValue},
    {kTdjsonVersion1, true, "numberArray", ns_sensor::kNumberArrayValue},
    {kTdjsonVersion1, true, "numberStringArray", ns_sensor::kNumberValue},
};

TEST(OutlineReader, TypesAreFoundByPrefixInTheOrderOfTheirTable) {
  for (TypeRow const& row : kTypes) {
    EXPECT_EQ(SK_OutlineReader(row.version).GetValueType(row.type, row.isDynamic), row.kind)
        << row.type << " of version " << int{row.version} + 1 << (row.isDynamic ? " dynamic" : " static");
  }
}

TEST(OutlineReader, KindsOfNodesHaveNumbersAndTexts) {
  EXPECT_EQ(SK_OutlineReader::GetGroupType("dataGroup"), 0);
  EXPECT_EQ(SK_OutlineReader::GetGroupType("dataDynamic"), 1);
  EXPECT_EQ(SK_OutlineReader::GetGroupType("dataStatic"), 2);
  EXPECT_EQ(SK_OutlineReader::GetGroupType("datastatic"), 3);
  EXPECT_STREQ(SK_OutlineReader::GetNodeTypeStr(ns_sensor::kStaticChild), "Static data node");
  EXPECT_STREQ(SK_OutlineReader::GetNodeTypeStr(ns_sensor::kDynamicChild), "Dynamic data node");
  EXPECT_STREQ(SK_OutlineReader::GetNodeTypeStr(ns_sensor::kGroupChild), "Group data node");
  EXPECT_STREQ(SK_OutlineReader::GetNodeTypeStr(ns_sensor::kInvalidChild), "invalid node");
}

TEST(OutlineReader, InterpolationIsNoneForOtherTexts) {
  EXPECT_EQ(SK_OutlineReader::GetInterPolationType("linear"), 1);
  EXPECT_EQ(SK_OutlineReader::GetInterPolationType("hold"), 2);
  EXPECT_EQ(SK_OutlineReader::GetInterPolationType("linear "), 0);
}

TEST(OutlineReader, AccessorsTellMissingAndForeignValues) {
  Node const node(R"({"s":"text","n":2.75,"b":true})");
  std::string text = "before";
  std::uint64_t integer = 99;
  double number = 99;
  bool flag = false;
  EXPECT_EQ(SK_OutlineReader::GetStringValue(node.Value(), "s", text), 0);
  EXPECT_EQ(text, "text");
  EXPECT_EQ(SK_OutlineReader::GetIntValue(node.Value(), "n", integer), 0);
  EXPECT_EQ(integer, 2U);
  EXPECT_EQ(SK_OutlineReader::GetNumberValue(node.Value(), "n", number), 0);
  EXPECT_EQ(number, 2.75);
  EXPECT_EQ(SK_OutlineReader::GetBoolValue(node.Value(), "b", flag), 0);
  EXPECT_TRUE(flag);

  EXPECT_EQ(SK_OutlineReader::GetStringValue(node.Value(), "n", text), 28);
  EXPECT_EQ(SK_OutlineReader::GetStringValue(node.Value(), "none", text), 28);
  EXPECT_EQ(SK_OutlineReader::GetIntValue(node.Value(), "s", integer), 28);
  EXPECT_EQ(SK_OutlineReader::GetNumberValue(node.Value(), "b", number), 28);
  EXPECT_EQ(SK_OutlineReader::GetBoolValue(node.Value(), "s", flag), 28);
  EXPECT_EQ(text, "text");
  EXPECT_EQ(integer, 2U);
  EXPECT_EQ(number, 2.75);
}

TEST(OutlineReader, NodeWithoutTypeOrValueIsReported) {
  Node const node(R"({"matchName":"a"})");
  ns_sensor::SK_DataType type;
  ns_sensor::SK_DataValue value;
  SK_OutlineReader const reader(kTdjsonVersion2);
  EXPECT_EQ(reader.GetDataType(node.Value(), type, false), 28);
  EXPECT_EQ(type.type, ns_sensor::kInvalidValue);
  EXPECT_EQ(reader.GetValue(node.Value(), ns_sensor::kNumberValue, value), 28);
  EXPECT_EQ(boost::get<double>(value.value), 0.0);
}

TEST(OutlineReader, CorrectSpellingOfOccurringWins) {
  Node const node(R"({"dataType":{"type":"number","numberStringProperties":{
    "pattern":{"isSigned":true,"digitsInteger":3,"digitsDecimal":2},
    "range":{"occuring":{"min":1,"max":2},"occurring":{"min":3,"max":4},"legal":{"min":5,"max":6}}}}})");
  ns_sensor::SK_DataType type;
  ASSERT_EQ(SK_OutlineReader(kTdjsonVersion2).GetDataType(node.Value(), type, false), 0);
  auto const& properties = boost::get<ns_sensor::SK_NumberProperties>(type.properties.value);
  EXPECT_EQ(properties.range.occurring.min, 3);
  EXPECT_EQ(properties.range.occurring.max, 4);
  EXPECT_EQ(properties.range.legal.min, 5);
  EXPECT_EQ(properties.range.legal.max, 6);
  EXPECT_EQ(properties.pattern.digitsInteger, 3U);
  EXPECT_EQ(properties.pattern.digitsDecimal, 2U);
  EXPECT_TRUE(properties.pattern.isSigned);
}

TEST(OutlineReader, ArraysKeepAllNamesAndRanges) {
  Node const node(R"({"dataType":{"type":"numberStringArray","numberArrayProperties":{
    "pattern":{"isSigned":false,"digitsInteger":1,"digitsDecimal":0},"arraySize":7,"arrayDisplayNames":["X","Y","Z"],
    "isPoint":true,"arrayRanges":{"ranges":[
      {"occuring":{"min":1,"max":2},"legal":{"min":3,"max":4}},
      {"occurring":{"min":5,"max":6},"legal":{"min":7,"max":8}}]}}}})");
  ns_sensor::SK_DataType type;
  ASSERT_EQ(SK_OutlineReader(kTdjsonVersion2).GetDataType(node.Value(), type, true), 0);
  EXPECT_EQ(type.type, ns_sensor::kNumberArrayValue);
  auto const& properties = boost::get<ns_sensor::SK_NumberArrayProperties>(type.properties.value);
  EXPECT_EQ(properties.arraySize, 7U);
  EXPECT_EQ(properties.arrayDisplayNames, (std::vector<std::string>{"X", "Y", "Z"}));
  EXPECT_TRUE(properties.isPoint);
  ASSERT_EQ(properties.arrayRanges.size(), 2U);
  EXPECT_EQ(properties.arrayRanges[0].occurring.max, 2);
  EXPECT_EQ(properties.arrayRanges[0].legal.min, 3);
  EXPECT_EQ(properties.arrayRanges[1].occurring.min, 5);
  EXPECT_EQ(properties.arrayRanges[1].legal.max, 8);
}

TEST(OutlineReader, StringsKeepTheirWidths) {
  Node const node(R"({"dataType":{"type":"paddedString","paddedStringProperties":{
    "maxLen":12,"maxDigitsInStrLength":2,"eventMarkerB":true}}})");
  ns_sensor::SK_DataType type;
  ASSERT_EQ(SK_OutlineReader(kTdjsonVersion1).GetDataType(node.Value(), type, true), 0);
  auto const& properties = boost::get<ns_sensor::SK_StringProperties>(type.properties.value);
  EXPECT_EQ(properties.maxLen, 12U);
  EXPECT_EQ(properties.maxDigitsInStrLength, 2U);
  EXPECT_TRUE(properties.eventMarkerB);
}

ns_sensor::SK_DataValue ValueOf(eTDJSONVersion version, std::string const& value, eDataValueType kind) {
  Node const node("{\"value\":" + value + ",\"end\":1}");
  ns_sensor::SK_DataValue result;
  EXPECT_EQ(SK_OutlineReader(version).GetValue(node.Value(), kind, result), 0);
  return result;
}

TEST(OutlineReader, ValuesOfVersion2AreTyped) {
  constexpr eTDJSONVersion k2 = kTdjsonVersion2;
  EXPECT_EQ(boost::get<double>(ValueOf(k2, "-1.5", ns_sensor::kNumberValue).value), -1.5);
  EXPECT_EQ(boost::get<std::string>(ValueOf(k2, R"("ab ")", ns_sensor::kStringValue).value), "ab ");
  EXPECT_EQ(boost::get<std::vector<double>>(ValueOf(k2, "[1,2.5]", ns_sensor::kNumberArrayValue).value),
            (std::vector<double>{1, 2.5}));
  EXPECT_TRUE(boost::get<bool>(ValueOf(k2, "true", ns_sensor::kBooleanValue).value));
}

TEST(OutlineReader, ValuesOfVersion1AreTexts) {
  constexpr eTDJSONVersion k1 = kTdjsonVersion1;
  EXPECT_EQ(boost::get<double>(ValueOf(k1, R"("-01.50")", ns_sensor::kNumberValue).value), -1.5);
  EXPECT_EQ(boost::get<std::string>(ValueOf(k1, R"({"length":2,"str":"ab  "})", ns_sensor::kStringValue).value),
            "ab  ");
  EXPECT_EQ(boost::get<std::vector<double>>(ValueOf(k1, R"(["1","+2.5"])", ns_sensor::kNumberArrayValue).value),
            (std::vector<double>{1, 2.5}));
  EXPECT_EQ(boost::get<double>(ValueOf(k1, "true", ns_sensor::kBooleanValue).value), 0.0) << "nothing is stored";
  EXPECT_THROW(ValueOf(k1, R"("x")", ns_sensor::kNumberValue), std::invalid_argument);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
