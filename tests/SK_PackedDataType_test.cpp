// Data types that are kept in a few bytes say what they say as values of the document, and nothing else becomes one.

#include "SK_PackedDataType.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "ExactRange.h"
#include "SK_Exception.h"
#include "SK_OutlineReader.h"
#include "SK_TdjsonParserUtils.h"
#include "SK_TdjsonValidator_v2.h"

namespace SK_NAMESPACE_INT {
namespace {

using ns_sensor::SK_NumberProperties;
using ns_sensor::SK_StringProperties;

std::string NumberType(std::string const& occurringMin, std::string const& occurringMax, std::string const& legalMin,
                       std::string const& legalMax, std::string const& isSigned = "false",
                       std::string const& decimal = "2", std::string const& integer = "3") {
  return R"({"type":"number","numberStringProperties":{"pattern":{"isSigned":)" + isSigned + R"(,"digitsDecimal":)" +
         decimal + R"(,"digitsInteger":)" + integer + R"(},"range":{"occurring":{"min":)" + occurringMin +
         R"(,"max":)" + occurringMax + R"(},"legal":{"min":)" + legalMin + R"(,"max":)" + legalMax + "}}}}";
}

std::string NumberType(std::string const& number) {
  return NumberType(number, number, number, number);
}

std::string StringType(std::string const& digits, std::string const& length, std::string const& marker) {
  return R"({"type":"string","paddedStringProperties":{"maxDigitsInStrLength":)" + digits + R"(,"maxLen":)" + length +
         R"(,"eventMarkerB":)" + marker + "}}";
}

char const kBoolType[] = R"({"type":"boolean"})";

std::string Node(std::string const& dataType, std::string const& value = "1") {
  return R"({"objectType":"dataStatic","matchName":"m","displayName":"D","dataType":)" + dataType + R"(,"value":)" +
         value + "}";
}

/// Everything that a host can see of a first node, or the error.
class Outline {
 public:
  Outline(std::string const& text, bool isPacked) {
    ExactRange const range(text);
    try {
      char const* const next = isPacked
                                   ? SK_TdjsonParserUtils::ParseOutline(range.begin(), range.end(), range.begin(),
                                                                        "dataOutline", mValue, mAllocator)
                                   : SK_TdjsonParserUtils::ParseJsonArray(range.begin(), range.end(), range.begin(),
                                                                          "dataOutline", mValue, mAllocator, 0);
      mSeen = "read " + std::to_string(next - range.begin());
      SK_TdjsonValidator_v2().ValidateOutline(mValue, nullptr, nullptr);
      Describe(mValue[0]);
    } catch (ns_sensor::SK_Exception const& error) {
      mSeen += " error " + std::to_string(error.GetErrorCode()) + ' ' + error.GetLocalizedErrMsg() + ' ' +
               std::to_string(error.GetFileOffset()) + ' ' + std::to_string(error.GetFileLineNo());
    }
  }

  std::string const& Seen() const { return mSeen; }
  JValue const& Node() const { return mValue[0]; }
  bool IsPacked() const { return SK_PackedDataType::Of(mValue[0]["dataType"]) != nullptr; }
  std::size_t Bytes() const { return mAllocator.Size(); }

 private:
  void See(double number) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    mSeen += ' ' + std::to_string(bits);
  }
  void See(ns_sensor::SK_NumberMinMax const& pair) {
    See(pair.min);
    See(pair.max);
  }

  void Describe(JValue const& node) {
    SK_OutlineReader const reader(kTdjsonVersion2);
    ns_sensor::SK_DataType type;
    mSeen += " result " + std::to_string(reader.GetDataType(node, type, false));
    mSeen += " kind " + std::to_string(type.type);
    if (auto const* const number = boost::get<SK_NumberProperties>(&type.properties.value)) {
      mSeen += number->pattern.isSigned ? " signed" : " unsigned";
      mSeen +=
          ' ' + std::to_string(number->pattern.digitsInteger) + ' ' + std::to_string(number->pattern.digitsDecimal);
      See(number->range.occurring);
      See(number->range.legal);
    } else if (auto const* const string = boost::get<SK_StringProperties>(&type.properties.value)) {
      mSeen += ' ' + std::to_string(string->maxLen) + ' ' + std::to_string(string->maxDigitsInStrLength);
      mSeen += string->eventMarkerB ? " marker" : " no marker";
    }
    ns_sensor::SK_DataValue value;
    mSeen += " value " + std::to_string(reader.GetValue(node, type.type, value));
  }

  JAllocator mAllocator;
  JValue mValue;
  std::string mSeen;
};

struct Row {
  char const* name;
  std::string dataType;
  bool isPacked;
};

std::string NameOf(testing::TestParamInfo<Row> const& row) {
  return row.param.name;
}

class DataType : public testing::TestWithParam<Row> {};

TEST_P(DataType, SaysTheSameInBothForms) {
  for (char const* const value : {"1", "true", R"("text")", "[1]"}) {
    std::string const text = '[' + Node(GetParam().dataType, value) + "] ";
    Outline const packed(text, true);
    Outline const whole(text, false);
    EXPECT_EQ(packed.Seen(), whole.Seen());
    if (packed.Seen().find("error 32") == std::string::npos) {
      EXPECT_EQ(packed.IsPacked(), GetParam().isPacked);
      EXPECT_FALSE(whole.IsPacked());
    }
  }
}

Row const kRows[] = {
    {"OneNumber", NumberType("-12.5"), true},
    {"FourNumbers", NumberType("1", "2", "3", "4"), true},
    {"TwoPairs", NumberType("1.5", "1.5", "-2", "2"), true},
    {"OneTextIsTheStartOfTheNext", NumberType("1", "12", "1", "123"), true},
    {"BothZeroes", NumberType("0", "-0", "0", "-0"), true},
    {"NegativeZeroes", NumberType("-0"), true},
    {"OneValueOfTwoTexts", NumberType("1", "1.0", "1", "1"), true},
    {"Signed", NumberType("1", "1", "1", "1", "true"), true},
    {"NoDigits", NumberType("1", "1", "1", "1", "false", "0", "0"), true},
    {"ManyDigits", NumberType("1", "1", "1", "1", "false", "9999", "9998"), true},
    {"WrappedInteger", NumberType("4294967297"), true},
    {"NegativeIntegerOf64Bits", NumberType("-5000000000"), true},
    {"ExponentThatIsNone", NumberType("1e05"), true},
    {"ExponentOfOneDigit", NumberType("1e-05"), true},
    {"LargestNumber", NumberType("1.797693134862316e+308"), true},
    {"NumberThatTakesTheCommaAlong", NumberType("1.2e-15"), false},
    {"NumberThatTakesABraceAlong", NumberType("1", "1e-15", "1", "1"), false},
    {"NumberTooBig", NumberType("1e+999"), false},
    {"NoNumber", NumberType("x"), false},
    {"EmptyNumber", NumberType(""), false},
    {"TextForANumber", NumberType(R"("1")"), false},
    {"DigitsOfFivePlaces", NumberType("1", "1", "1", "1", "false", "10000", "1"), false},
    {"DigitsWithAPoint", NumberType("1", "1", "1", "1", "false", "2.0", "1"), false},
    {"NegativeDigits", NumberType("1", "1", "1", "1", "false", "-1", "1"), false},
    {"DigitsWithZeroesInFront", NumberType("1", "1", "1", "1", "false", "02", "1"), false},
    {"AllDigitsNotSet", NumberType("1", "1", "1", "1", "false", "1.844674407370955e+19", "1"), false},
    {"SignedIsANumber", NumberType("1", "1", "1", "1", "1"), false},
    {"Text", StringType("1", "5", "false"), true},
    {"TextThatMarksAnEvent", StringType("4", "9999", "true"), true},
    {"TextOfFivePlaces", StringType("5", "10000", "false"), false},
    {"TextMarkerMissing", StringType("1", "5", ""), false},
    {"Boolean", kBoolType, true},
    {"BooleanWithABlank", R"({"type": "boolean"})", false},
    {"BooleanWithMore", R"({"type":"boolean","more":1})", false},
    {"TypeOfDynamicNodes", R"({"type":"numberString"})", false},
    {"NumberArray",
     R"({"type":"numberArray","numberArrayProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,)"
     R"("digitsInteger":1},"arrayRanges":{"ranges":[{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}}]},)"
     R"("arraySize":1,"arrayDisplayNames":["a"]}})",
     false},
    {"OtherSpelling",
     R"({"type":"number","numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
     R"("range":{"occuring":{"min":1,"max":1},"legal":{"min":1,"max":1}}}})",
     false},
    {"OtherOrder",
     R"({"numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
     R"("range":{"occurring":{"min":1,"max":1},"legal":{"min":1,"max":1}}},"type":"number"})",
     false},
    {"MissingMax",
     R"({"type":"number","numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
     R"("range":{"occurring":{"min":1},"legal":{"min":1,"max":1}}}})",
     false},
    {"MoreInTheRange", NumberType("1", "1", "1", R"(1,"more":1)"), false},
    {"MoreBehindTheProperties",
     R"({"type":"string","paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":1,"eventMarkerB":true},"x":1})",
     false},
    {"NumberForAnObject", "5", false},
    {"HugeNumberForAnObject", "18446744073709551615", false},
    {"TextForAnObject", R"("number")", false},
};

INSTANTIATE_TEST_SUITE_P(SK_PackedDataType, DataType, testing::ValuesIn(kRows), NameOf);

/// Each byte in turn cut off, left out, and replaced by others.
TEST(SK_PackedDataType, BrokenTextsEndAsInTheLongWay) {
  for (std::string const& dataType :
       {NumberType("-1.5", "-1.5", "2e+3", "-1.5"), StringType("1", "12", "true"), std::string(kBoolType)}) {
    std::string const text = '[' + Node(dataType) + ']';
    for (std::size_t at = 0; at != text.size(); ++at) {
      std::vector<std::string> broken = {text.substr(0, at), text.substr(0, at) + text.substr(at + 1)};
      for (char const byte : {'"', '}', '{', ',', ':', '0', '1', 'e', '-', '.', ' ', '\\', 't', '\0'}) {
        broken.push_back(text);
        broken.back()[at] = byte;
        broken.push_back(text.substr(0, at) + byte + text.substr(at));
      }
      for (std::string const& one : broken) {
        ASSERT_EQ(Outline(one, true).Seen(), Outline(one, false).Seen()) << one;
      }
    }
  }
}

TEST(SK_PackedDataType, BelongsToNodesThatSayFirstThatTheyAreStatic) {
  std::string const rest = std::string(R"("matchName":"m","displayName":"D","dataType":)") + kBoolType + "}]";
  for (char const* const beginning :
       {R"([{"objectType":"dataDynamic",)", R"([{"a":1,"objectType":"dataStatic",)", R"([{"objectType":"dataStatics",)",
        R"([{"objectType" :"dataDynamic","objectType":"dataStatic",)", R"([{"objectType":1,)", R"([{)",
        R"([{"objectTypes":"dataStatic",)"}) {
    Outline const packed(beginning + rest, true);
    EXPECT_FALSE(packed.IsPacked()) << beginning;
    EXPECT_EQ(packed.Seen(), Outline(beginning + rest, false).Seen());
  }
  EXPECT_TRUE(Outline(R"([{"objectType" : "dataStatic",)" + rest, true).IsPacked());
}

/// A second data type is never looked at.
TEST(SK_PackedDataType, TheFirstOfTwoCounts) {
  for (std::string const& first : {std::string(kBoolType), NumberType("1"), std::string(R"({"type":"numbers"})")}) {
    for (std::string const& second : {NumberType("2"), std::string("5")}) {
      std::string const text = '[' + Node(first + R"(,"dataType":)" + second) + ']';
      EXPECT_EQ(Outline(text, true).Seen(), Outline(text, false).Seen());
    }
  }
}

TEST(SK_PackedDataType, IsNoWayAroundTheLimitOfDepth) {
  for (unsigned depth = 90; depth != 101; ++depth) {
    for (std::string const& dataType : {NumberType("1"), StringType("1", "1", "true"), std::string(kBoolType)}) {
      std::string const text = std::string(depth, '[') + Node(dataType) + std::string(depth, ']');
      EXPECT_EQ(Outline(text, true).Seen(), Outline(text, false).Seen()) << depth;
    }
  }
}

TEST(SK_PackedDataType, TakesSixteenBytesForOneNumber) {
  JAllocator allocator;
  SK_DataTypePacker packer(allocator);
  for (auto const& [number, bytes] : {std::pair<char const*, std::size_t>("1.5", 16), {"1.5", 16}, {"2.5", 32}}) {
    std::string const text = NumberType(number);
    char const* p = text.data();
    EXPECT_NE(packer.Pack(p, text.data() + text.size()), nullptr);
    EXPECT_EQ(p, text.data() + text.size());
    EXPECT_EQ(allocator.Size(), bytes) << "the same one again takes nothing";
  }
  std::string const range = NumberType("1.5", "2", "3", "4");
  char const* p = range.data();
  packer.Pack(p, range.data() + range.size());
  EXPECT_EQ(allocator.Size(), 32U + 40U);
}

TEST(SK_PackedDataType, WhatIsNotPackedIsNotTaken) {
  JAllocator allocator;
  SK_DataTypePacker packer(allocator);
  std::string const text = NumberType("1", "1", "1", "1e-15");
  char const* p = text.data();
  EXPECT_EQ(packer.Pack(p, text.data() + text.size()), nullptr);
  EXPECT_EQ(p, text.data());
  EXPECT_EQ(allocator.Size(), 0U);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
