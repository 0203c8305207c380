#include "SK_TdjsonParserUtils.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sys/resource.h>

#include <cstdlib>
#include <new>
#include <string>

#include "ExactRange.h"
#include "ParsedJson.h"
#include "SK_Error.h"

namespace {

using ns_sensor::SK_Exception;
using SK_NAMESPACE_INT::JAllocator;
using SK_NAMESPACE_INT::JValue;
using SK_NAMESPACE_INT::SK_TdjsonParserUtils;

template <typename Row>
std::string NameOf(testing::TestParamInfo<Row> const& row) {
  return row.param.name;
}

template <typename Work>
void ExpectSyntaxError(std::string const& message, long long offset, Work work) {
  try {
    work();
    ADD_FAILURE() << "accepted, instead of: " << message;
  } catch (SK_Exception const& error) {
    EXPECT_EQ(error.GetLocalizedErrMsg(), message);
    EXPECT_EQ(error.GetErrorCode(), 32);
    EXPECT_EQ(error.GetFileOffset(), offset);
    EXPECT_EQ(error.GetFileLineNo(), -1);
  }
}

TEST(TdjsonParserUtils, SkipsTheFourBlanks) {
  struct Row {
    char const* text;
    std::ptrdiff_t skipped;
  };
  Row const rows[] = {
      {"", 0},
      {"x", 0},
      {" ", 1},
      {" \n\t\rx", 4},
      {"\v ", 0},
      {"\f", 0},
      {"\x01", 0},
      {"\xA0", 0},
      {"               x", 15},
      {"                x", 16},
      {"                 x", 17},
      {"                \vx", 16},
  };
  for (Row const& row : rows) {
    ExactRange const range(row.text);
    EXPECT_EQ(SK_TdjsonParserUtils::SkipSpecialCharacters(range.begin(), range.end()) - range.begin(), row.skipped)
        << row.text;
  }
}

TEST(TdjsonParserUtils, SkipsNothingAtNull) {
  EXPECT_EQ(SK_TdjsonParserUtils::SkipSpecialCharacters(nullptr, nullptr), nullptr);
}

TEST(TdjsonParserUtils, OffsetCountsFromBase) {
  char const bytes[] = "abc";
  EXPECT_EQ(SK_TdjsonParserUtils::GetOffset(bytes + 2, bytes), 2);
  EXPECT_EQ(SK_TdjsonParserUtils::GetOffset(bytes, bytes + 2), -2);
  EXPECT_EQ(SK_TdjsonParserUtils::GetOffset(bytes, nullptr), -1);
}

TEST(TdjsonParserUtils, ColonIsConsumedWithBlanksAround) {
  for (std::string const text : {":1", " :1", ":\t1", "\r\n :\n 1"}) {
    ExactRange const range(text);
    char const* const p = SK_TdjsonParserUtils::ConsumeColon(range.begin(), range.end(), range.begin(), "key");
    EXPECT_EQ(p, range.end() - 1) << text;
  }
}

TEST(TdjsonParserUtils, ColonMayBeTheLastByte) {
  ExactRange const range(": ");
  EXPECT_EQ(SK_TdjsonParserUtils::ConsumeColon(range.begin(), range.end(), range.begin(), "key"), range.end());
}

TEST(TdjsonParserUtils, MissingColonNamesTheKey) {
  struct Row {
    char const* text;
    long long offset;
  };
  for (Row const& row : {Row{"", 0}, Row{" ", 1}, Row{"1", 0}, Row{"\n ;", 2}}) {
    ExactRange const range(row.text);
    ExpectSyntaxError(R"(Unable to find Colon(:) in between key and value for property:"key".)", row.offset,
                      [&] { SK_TdjsonParserUtils::ConsumeColon(range.begin(), range.end(), range.begin(), "key"); });
  }
}

struct AcceptedString {
  char const* name;
  std::string text;
  std::string value;
  std::size_t length;
};

class JsonStringAccepted : public testing::TestWithParam<AcceptedString> {};

TEST_P(JsonStringAccepted, GivesTextAndPosition) {
  ExactRange const range(GetParam().text);
  for (bool const isKey : {false, true}) {
    std::string out = "left over";
    char const* const next =
        SK_TdjsonParserUtils::ParseJsonString(range.begin(), range.end(), range.begin(), out, isKey, "name");
    EXPECT_EQ(out, GetParam().value);
    EXPECT_EQ(next - range.begin(), static_cast<std::ptrdiff_t>(GetParam().length));
  }
}

TEST_P(JsonStringAccepted, IsTheSameAsKeyAndValueOfAnObject) {
  std::string const text = GetParam().text.substr(0, GetParam().length);
  ParsedJson const object("{" + text + ":" + text + "}");
  ASSERT_EQ(object.value.MemberCount(), 1U);
  JValue::Member const& member = *object.value.MemberBegin();
  EXPECT_EQ(std::string(member.name.GetString(), member.name.GetStringLength()), GetParam().value);
  EXPECT_EQ(std::string(member.value.GetString(), member.value.GetStringLength()), GetParam().value);
}

AcceptedString const kAcceptedStrings[] = {
    {"Empty", R"("")", "", 2},
    {"Plain", R"("abc")", "abc", 5},
    {"EndsAtFirstQuote", R"("abc"def")", "abc", 5},
    {"Quote", R"("a\"b")", "a\"b", 6},
    {"Backslash", R"("a\\b")", "a\\b", 6},
    {"BackslashBeforeClosingQuote", R"("a\\")", "a\\", 5},
    {"ControlLetters", R"("\b\f\n\r\t")", "\b\f\n\r\t", 12},
    {"NotEscapedLetters", R"("bfnrt")", "bfnrt", 7},
    {"SlashLosesItsBackslash", R"("\/")", "/", 4},
    {"HexIsNotDecoded", R"("\u0041")", "u0041", 8},
    {"BackslashesInPairs", R"("\\\\n\\\n")", "\\\\n\\\n", 11},
    {"OtherLetterLosesItsBackslash", R"("\x\y")", "xy", 6},
    {"Delete", "\"\x7F\"", "\x7F", 3},
    {"SpaceIsTheFirstPlainByte", "\" \"", " ", 3},
    {"BytesFrom128", "\"\x80\xC3\xBC\xFF\"", "\x80\xC3\xBC\xFF", 6},
    {"FifteenBytes", R"("123456789012345")", "123456789012345", 17},
    {"SixteenBytes", R"("1234567890123456")", "1234567890123456", 18},
    {"LongWithEscapeFarBehind", "\"" + std::string(40, 'x') + R"(\t)" + std::string(40, 'y') + "\"",
     std::string(40, 'x') + "\t" + std::string(40, 'y'), 84},
};
INSTANTIATE_TEST_SUITE_P(Scanner, JsonStringAccepted, testing::ValuesIn(kAcceptedStrings), NameOf<AcceptedString>);

struct RefusedString {
  char const* name;
  std::string text;
  long long offset;
};

class JsonStringRefused : public testing::TestWithParam<RefusedString> {};

TEST_P(JsonStringRefused, NamesAValue) {
  ExactRange const range(GetParam().text);
  std::string out;
  ExpectSyntaxError(R"(Unable to find enclosing quotes for property value:"creator".)", GetParam().offset, [&] {
    SK_TdjsonParserUtils::ParseJsonString(range.begin(), range.end(), range.begin(), out, false, "creator");
  });
}

TEST_P(JsonStringRefused, DoesNotNameAKey) {
  ExactRange const range(GetParam().text);
  std::string out;
  ExpectSyntaxError("Unable to find enclosing quotes for Tdjson key.", GetParam().offset, [&] {
    SK_TdjsonParserUtils::ParseJsonString(range.begin(), range.end(), range.begin(), out, true, nullptr);
  });
}

RefusedString const kRefusedStrings[] = {
    {"AtEnd", "", 0},
    {"NoQuote", "abc\"", 0},
    {"OpeningQuoteAlone", "\"", 1},
    {"NoClosingQuote", "\"abc", 4},
    {"NoClosingQuoteInWideRange", "\"" + std::string(50, 'a'), 51},
    {"ClosingQuoteIsEscaped", R"("abc\")", 6},
    {"BackslashAtEnd", "\"abc\\", 5},
    {"LineFeed", "\"a\nb\"", 2},
    {"Tab", "\"\t\"", 1},
    {"Zero", std::string("\"ab\0\"", 5), 3},
    {"LastControlByte", "\"a\x1F\"", 2},
    {"ControlByteInWideRange", "\"" + std::string(30, 'a') + "\x01" + std::string(30, 'b') + "\"", 31},
    {"ControlByteBehindBackslash", "\"a\\\nb\"", 3},
};
INSTANTIATE_TEST_SUITE_P(Scanner, JsonStringRefused, testing::ValuesIn(kRefusedStrings), NameOf<RefusedString>);

TEST(TdjsonParserUtils, NullNameOfAStringIsEmpty) {
  std::string out;
  ExpectSyntaxError(R"(Unable to find enclosing quotes for property value:"".)", -1,
                    [&] { SK_TdjsonParserUtils::ParseJsonString(nullptr, nullptr, nullptr, out, false, nullptr); });
}

TEST(TdjsonParserUtils, BoolNeedsAByteBehindItsWord) {
  struct Row {
    char const* text;
    bool value;
    std::ptrdiff_t length;
  };
  for (Row const& row :
       {Row{"true,", true, 4}, Row{"false,", false, 5}, Row{"trueX", true, 4}, Row{"false ", false, 5}}) {
    ExactRange const range(row.text);
    char const* p = range.begin();
    EXPECT_EQ(SK_TdjsonParserUtils::ParseJsonBool(p, range.end(), range.begin(), "flag"), row.value);
    EXPECT_EQ(p - range.begin(), row.length) << row.text;
  }
}

TEST(TdjsonParserUtils, OtherWordsAreNoBool) {
  for (char const* const text :
       {"", "t", "tru", "true", "false", "fals,", "falsx,", "True,", "FALSE,", "1,", "\"true\""}) {
    ExactRange const range(text);
    char const* p = range.begin();
    ExpectSyntaxError(R"(Invalid "flag" type, expected type:JSON Boolean.)", 0,
                      [&] { SK_TdjsonParserUtils::ParseJsonBool(p, range.end(), range.begin(), "flag"); });
  }
}

TEST(TdjsonParserUtils, ObjectKeepsMembersInOrder) {
  std::string const text = "{ \"n\" : 1.5 ,\n\"s\":\"text\",\"t\":true,\"f\":false,\"a\":[1,2],\"o\":{\"x\":-3} }";
  ParsedJson const object(text + " rest");
  EXPECT_EQ(object.length, text.size());
  ASSERT_TRUE(object.value.IsObject());
  ASSERT_EQ(object.value.MemberCount(), 6U);
  std::string keys;
  for (JValue::Member const& member : object.value.GetObject()) {
    keys += member.name.GetString();
  }
  EXPECT_EQ(keys, "nstfao");
  EXPECT_EQ(object.value["n"].GetDouble(), 1.5);
  EXPECT_STREQ(object.value["s"].GetString(), "text");
  EXPECT_TRUE(object.value["t"].IsTrue());
  EXPECT_TRUE(object.value["f"].IsFalse());
  EXPECT_EQ(object.value["a"][1].GetDouble(), 2.0);
  EXPECT_EQ(object.value["o"]["x"].GetDouble(), -3.0);
}

TEST(TdjsonParserUtils, AllNumbersAreDoubles) {
  ParsedJson const array("[0,-1,5000000000,0.5]");
  for (JValue const& element : array.value.GetArray()) {
    EXPECT_TRUE(element.IsDouble());
  }
  EXPECT_EQ(array.value[2].GetDouble(), 5e9);
}

TEST(TdjsonParserUtils, RepeatedKeysAllStay) {
  ParsedJson const object(R"({"a":1,"b":2,"a":3})");
  ASSERT_EQ(object.value.MemberCount(), 3U);
  EXPECT_EQ(object.value.MemberBegin()[0].value.GetDouble(), 1.0);
  EXPECT_EQ(object.value.MemberBegin()[2].value.GetDouble(), 3.0);
}

TEST(TdjsonParserUtils, NegativeExponentMayTakeABlankAlong) {
  ParsedJson const array("[1e-15 ,1e-5,1.2e-05 ]");
  ASSERT_EQ(array.value.Size(), 3U);
  EXPECT_EQ(array.value[0].GetDouble(), 1e-15);
  EXPECT_EQ(array.value[1].GetDouble(), 1e-5);
  EXPECT_EQ(array.value[2].GetDouble(), 1.2e-5);
}

TEST(TdjsonParserUtils, OutStaysAsItWasAfterAnError) {
  JAllocator allocator;
  JValue out("before");
  std::string const text = R"({"a":[1,2,{"b":"long enough for a block of its own"},x]})";
  EXPECT_THROW(SK_TdjsonParserUtils::ParseJsonObject(text.data(), text.data() + text.size(), text.data(), "top", out,
                                                     allocator, 0),
               SK_Exception);
  EXPECT_STREQ(out.GetString(), "before");
}

TEST(TdjsonParserUtils, ContainersTakeNoMoreThanTheyNeed) {
  ParsedJson const array("[" + std::string(R"({"a":1,"b":[2,3]})") + R"(,"fourteen bytes"])");
  // Two elements, two members, two elements, and one string that does not fit into its value.
  EXPECT_EQ(array.GetAllocatedBytes(), 2 * sizeof(JValue) + 2 * sizeof(JValue::Member) + 2 * sizeof(JValue) + 16);
  EXPECT_EQ(array.value.Capacity(), 2U);
}

TEST(TdjsonParserUtils, LongKeysOfTheFormatTakeNoMemory) {
  ParsedJson const object(
      R"({"numberStringProperties":1,"hasExpectedFrequecyB":2,"expectedMaxInterSampleDuratioX":3})");
  EXPECT_EQ(object.GetAllocatedBytes(), 3 * sizeof(JValue::Member) + 32);
  EXPECT_EQ(object.value["numberStringProperties"].GetDouble(), 1.0);
  EXPECT_EQ(object.value["hasExpectedFrequecyB"].GetDouble(), 2.0);
  EXPECT_EQ(object.value["expectedMaxInterSampleDuratioX"].GetDouble(), 3.0);
}

TEST(TdjsonParserUtils, StaticNumberNodeStaysBelow650Bytes) {
  ParsedJson const array(
      R"([{"objectType":"dataStatic","displayName":"Speed over ground","matchName":"speedOverGround",)"
      R"("dataType":{"type":"number","numberStringProperties":{"pattern":{"isSigned":true,"digitsInteger":3,)"
      R"("digitsDecimal":2},"range":{"occurring":{"min":-12.25,"max":117.5},"legal":{"min":-999.99,"max":999.99}}}},)"
      R"("value":25.25}])");
  EXPECT_LE(array.GetAllocatedBytes(), 650U);
}

TEST(TdjsonParserUtils, ShortageOfMemoryIsAnException) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "sanitizers need more address space than this limit leaves";
#endif
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  auto const parseWithLittleMemory = [] {
    std::string text = "[1";
    for (int i = 0; i < 8 * 1024 * 1024; ++i) {
      text += ",1";
    }
    rlimit const limit = {128 * 1024 * 1024, 128 * 1024 * 1024};
    setrlimit(RLIMIT_AS, &limit);
    JAllocator allocator;
    JValue out;
    try {
      SK_TdjsonParserUtils::ParseJsonArray(text.data(), text.data() + text.size(), nullptr, "top", out, allocator, 0);
    } catch (std::bad_alloc const&) {
      std::_Exit(77);
    }
    std::_Exit(0);
  };
  EXPECT_EXIT(parseWithLittleMemory(), testing::ExitedWithCode(77), "");
}

struct RefusedValue {
  char const* name;
  std::string text;
  long long offset;
  char const* message;
};

class JsonValueRefused : public testing::TestWithParam<RefusedValue> {};

TEST_P(JsonValueRefused, GivesCodeMessageAndOffset) {
  ExpectSyntaxError(GetParam().message, GetParam().offset, [] { ParsedJson{GetParam().text}; });
}

char const kKeyQuotes[] = "Unable to find enclosing quotes for Tdjson key.";

RefusedValue const kRefusedObjects[] = {
    {"Alone", "{", 1, R"(Invalid "top" type, expected type:JSON Object.)"},
    {"AloneWithBlanks", "{ \n", 3, R"(Invalid "top" type, expected type:JSON Object.)"},
    {"Empty", "{}", 1, kKeyQuotes},
    {"EmptyWithBlank", "{ }", 2, kKeyQuotes},
    {"KeyWithoutQuotes", "{a:1}", 1, kKeyQuotes},
    {"KeyUnclosed", R"({"a)", 3, kKeyQuotes},
    {"TrailingComma", R"({"a":1,})", 7, kKeyQuotes},
    {"TrailingCommaAtEnd", R"({"a":1, )", 8, kKeyQuotes},
    {"ColonMissing", R"({"a" 1})", 5, R"(Unable to find Colon(:) in between key and value for property:"a".)"},
    {"ColonCut", R"({"a")", 4, R"(Unable to find Colon(:) in between key and value for property:"a".)"},
    {"ColonMissingBehindDecodedKey", R"({"a\/b" 1})", 8,
     R"(Unable to find Colon(:) in between key and value for property:"a/b".)"},
    {"ColonMissingInside", R"({"a":{"b",}})", 9,
     R"(Unable to find Colon(:) in between key and value for property:"b".)"},
    {"ValueMissing", R"({"a":})", 5, R"(Invalid "top::a" type, expected type:JSON Number.)"},
    {"ValueCut", R"({"a": )", 6, R"(Invalid "top::a" type, expected type:JSON Number.)"},
    {"Null", R"({"a":null})", 5, R"(Invalid "top::a" type, expected type:JSON Number.)"},
    {"WrongWord", R"({"a":trye})", 5, R"(Invalid "top::a" type, expected type:JSON Boolean.)"},
    {"WordCut", R"({"a":true)", 5, R"(Invalid "top::a" type, expected type:JSON Boolean.)"},
    {"StringUnclosed", R"({"a":"b)", 7, R"(Unable to find enclosing quotes for property value:"top::a".)"},
    {"CommaMissing", R"({"a":1 "b":2})", 7, R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"BracketMissing", R"({"a":1)", 6, R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"BracketOfOtherKind", R"({"a":1])", 6, R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"SecondMember", R"({"a":1,"b":"x"!)", 14, R"(Unable to find Comma or Closing bracket after property:"top::b".)"},
    {"NameOfDecodedKey", R"({"a\tb":1!)", 9, "Unable to find Comma or Closing bracket after property:\"top::a\tb\"."},
    {"NestedName", R"({"a":{"b":{"c":[1,{"d":+}]}}})", 23,
     R"(Invalid "top::a::b::c[1]::d" type, expected type:JSON Number.)"},
    {"NestedNameBehindClosedContainers", R"({"a":{"b":[1]}:})", 14,
     R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"NegativeExponentTakesComma", R"({"a":1.2e-05,"b":1})", 13,
     R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"NegativeExponentTakesBrace", R"({"a":1e-15})", 11,
     R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"NegativeExponentEndsAtZero", R"({"a":1e-10})", 9,
     R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"LeadingZero", R"({"a":012})", 6, R"(Unable to find Comma or Closing bracket after property:"top::a".)"},
    {"ExponentWithoutSign", R"({"a":1e5})", 8, "Miss exponent in number"},
    {"FractionMissing", R"({"a":1.})", 7, "Missing fraction part in number"},
};
INSTANTIATE_TEST_SUITE_P(Object, JsonValueRefused, testing::ValuesIn(kRefusedObjects), NameOf<RefusedValue>);

RefusedValue const kRefusedArrays[] = {
    {"AtEnd", "", 0, R"(Invalid "top" type, expected type:JSON Array.)"},
    {"OtherByte", "1", 0, R"(Invalid "top" type, expected type:JSON Array.)"},
    {"BlankFirst", " [1]", 0, R"(Invalid "top" type, expected type:JSON Array.)"},
    {"Alone", "[", 1, R"(Invalid "top" type, expected type:JSON Array.)"},
    {"AloneWithBlank", "[ ", 2, R"(Invalid "top" type, expected type:JSON Array.)"},
    {"Empty", "[]", 1, R"(Invalid "top[0]" type, expected type:JSON Number.)"},
    {"TrailingComma", "[1,]", 3, R"(Invalid "top[1]" type, expected type:JSON Number.)"},
    {"TrailingCommaAtEnd", "[1,", 3, R"(Invalid "top[1]" type, expected type:JSON Number.)"},
    {"EmptyElement", "[,1]", 1, R"(Invalid "top[0]" type, expected type:JSON Number.)"},
    {"Null", "[null]", 1, R"(Invalid "top[0]" type, expected type:JSON Number.)"},
    {"NestedEmpty", R"([1,[2,[]]])", 7, R"(Invalid "top[1][1][0]" type, expected type:JSON Number.)"},
    {"NestedEmptyObject", "[1,2,{}]", 6, kKeyQuotes},
    {"IndexInDecimal", "[1,2,3,4,5,6,7,8,9,10,x]", 22, R"(Invalid "top[10]" type, expected type:JSON Number.)"},
    {"CommaMissing", "[1 2]", 3, R"(Unable to find Comma or Closing bracket after property:"top[0]".)"},
    {"BracketMissing", R"(["a","b")", 8, R"(Unable to find Comma or Closing bracket after property:"top[1]".)"},
    {"BracketOfOtherKind", "[1}", 2, R"(Unable to find Comma or Closing bracket after property:"top[0]".)"},
    {"WordCut", "[false", 1, R"(Invalid "top[0]" type, expected type:JSON Boolean.)"},
    {"StringUnclosed", R"(["a)", 3, R"(Unable to find enclosing quotes for property value:"top[0]".)"},
    {"NumberTooBig", "[" + std::string(400, '9') + "]", 309, "Number too big to be stored in double."},
    {"NegativeExponentTakesBracket", "[1e-15]", 7,
     R"(Unable to find Comma or Closing bracket after property:"top[0]".)"},
};
INSTANTIATE_TEST_SUITE_P(Array, JsonValueRefused, testing::ValuesIn(kRefusedArrays), NameOf<RefusedValue>);

TEST(TdjsonParserUtils, ObjectMustBeginWithItsBrace) {
  JAllocator allocator;
  JValue out;
  for (std::string const text : {"", "[1]", " {\"a\":1}", "\"a\""}) {
    ExactRange const range(text);
    ExpectSyntaxError(R"(Invalid "info" type, expected type:JSON Object.)", 0, [&] {
      SK_TdjsonParserUtils::ParseJsonObject(range.begin(), range.end(), range.begin(), "info", out, allocator, 0);
    });
  }
}

TEST(TdjsonParserUtils, OffsetsCountFromBase) {
  JAllocator allocator;
  JValue out;
  std::string const text = "0123456789[x]";
  char const* const p = text.data() + 10;
  char const* const end = text.data() + text.size();
  ExpectSyntaxError(R"(Invalid "top[0]" type, expected type:JSON Number.)", 11,
                    [&] { SK_TdjsonParserUtils::ParseJsonArray(p, end, text.data(), "top", out, allocator, 0); });
  ExpectSyntaxError(R"(Invalid "top[0]" type, expected type:JSON Number.)", -1,
                    [&] { SK_TdjsonParserUtils::ParseJsonArray(p, end, nullptr, "top", out, allocator, 0); });
}

std::string Nested(std::size_t arrays) {
  return std::string(arrays, '[') + "1" + std::string(arrays, ']');
}

char const kTooDeep[] = "SK does not support TDJSON dataGroup with nesting more than 100";

TEST(TdjsonParserUtils, Depth100Passes) {
  // The outermost array has depth 0.
  EXPECT_EQ(ParsedJson(Nested(100)).length, 201U);
  EXPECT_EQ(ParsedJson(Nested(101)).length, 203U);
}

TEST(TdjsonParserUtils, Depth101IsRefusedWithoutPosition) {
  ExpectSyntaxError(kTooDeep, -1, [] { ParsedJson{Nested(102)}; });
  ExpectSyntaxError(kTooDeep, -1, [] { ParsedJson{Nested(100000)}; });
}

TEST(TdjsonParserUtils, ObjectsAndArraysShareTheDepth) {
  std::string text = "1";
  for (int i = 0; i < 50; ++i) {
    text = R"({"a":[)" + text + "]}";
  }
  EXPECT_EQ(ParsedJson("[" + text + "]").value.Size(), 1U);
  ExpectSyntaxError(kTooDeep, -1, [&] { ParsedJson{"[[" + text + "]]"}; });
  ExpectSyntaxError(kTooDeep, -1, [&] { ParsedJson{R"({"b":{"c":)" + text + "}}"}; });
}

TEST(TdjsonParserUtils, DepthBeginsWhereTheCallerSays) {
  EXPECT_EQ(ParsedJson("[1]", 100).length, 3U);
  EXPECT_EQ(ParsedJson(R"({"a":1})", 100).length, 7U);
  ExpectSyntaxError(kTooDeep, -1, [] { ParsedJson("[[1]]", 100); });
  ExpectSyntaxError(kTooDeep, -1, [] { ParsedJson("[1]", 101); });
  ExpectSyntaxError(kTooDeep, -1, [] { ParsedJson(R"({"a":1})", 101); });
  ExpectSyntaxError(kTooDeep, -1, [] { ParsedJson("x", 65535); });
}

TEST(TdjsonParserUtils, DeepNestingFitsASmallStack) {
  std::string text = "1";
  for (int i = 0; i < 50; ++i) {
    text = R"({"some longer key":[)" + text + "]}";
  }
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, 256 * 1024), 0);
  pthread_t thread;
  auto const parse = [](void* argument) -> void* {
    ParsedJson const parsed(*static_cast<std::string*>(argument));
    return parsed.value.IsObject() ? argument : nullptr;
  };
  ASSERT_EQ(pthread_create(&thread, &attributes, parse, &text), 0);
  void* result = nullptr;
  ASSERT_EQ(pthread_join(thread, &result), 0);
  pthread_attr_destroy(&attributes);
  EXPECT_EQ(result, &text);
}

TEST(TdjsonParserUtils, EveryCutIsASyntaxError) {
  std::string const text = R"([ {"type":"data\"St\\atic", "yes":true,"no" : false,"list":[1,-2.5,3.25e+2,4e-5],)"
                           R"("inner":{"a":{"b":["x","y\u0041"]}}} , {"n":123456789012345678901234567890.5} ])";
  EXPECT_EQ(ParsedJson(text).length, text.size());
  for (std::size_t length = 0; length < text.size(); ++length) {
    try {
      ParsedJson{text.substr(0, length)};
      ADD_FAILURE() << "accepted when cut to " << length;
    } catch (SK_Exception const& error) {
      EXPECT_EQ(error.GetErrorCode(), 32) << length;
      EXPECT_GE(error.GetFileOffset(), 0) << length;
      EXPECT_LE(error.GetFileOffset(), static_cast<long long>(length));
    }
  }
}

}  // namespace
