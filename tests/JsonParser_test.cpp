#include "JsonParser.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <random>
#include <string>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "JsonIterator.h"
#include "SK_RapidJson.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectError;
using SK_NAMESPACE_INT::JDocument;
using SK_NAMESPACE_INT::JValue;

constexpr char kNotConverted[] = "File Cannot be converted.";

/// Everything that can be reached from an iterator, as text: kind, name and value of each item.
std::string Walked(std::shared_ptr<JsonIterator> const& items) {
  std::string text;
  for (; items->HasNext(); items->Increment()) {
    text += '<' + items->GetPropertyKey() + '>';
    switch (items->GetPropertyValueType()) {
      case kJsonString: {
        std::string value;
        items->GetPropertyStringValue(value);
        text += 's' + value;
        break;
      }
      case kJsonNumber: {
        double value;
        items->GetPropertyDoubleValue(value);
        char digits[40];
        std::snprintf(digits, sizeof digits, "n%a", value);
        text += digits;
        break;
      }
      case kJsonBoolean: {
        bool value;
        items->GetPropertyBoolValue(value);
        text += value ? 'T' : 'F';
        break;
      }
      case kJsonArray:
        text += '[' + Walked(items->GetArrayIterator()) + ']';
        break;
      case kJsonObject:
        text += '{' + Walked(items->GetObjectIterator()) + '}';
        break;
      default:
        text += '0';
    }
  }
  return text;
}

class JsonParserTest : public testing::Test {
 protected:
  ~JsonParserTest() override { EXPECT_EQ(CountOpenDescriptors(), mDescriptors); }

  std::string Write(std::string const& text) const {
    // A file that is cut and written anew is flushed to the disk by some systems.
    std::filesystem::remove(mFolder.Path("in.json"));
    return mFolder.Write("in.json", text);
  }

  std::string WalkedFile(std::string const& text) const {
    JsonParser const parser(Write(text));
    return Walked(parser.GetDomIterator(text.find_first_of("[{") == text.find('[')));
  }

  std::size_t const mDescriptors = CountOpenDescriptors();
  senmark_test::TempFolder mFolder;
};

TEST_F(JsonParserTest, ArrayIsNamedDataOutlineAndObjectHasItsOwnNames) {
  EXPECT_EQ(WalkedFile("[true, \"x\"]"), "<dataOutline 0>T<dataOutline 1>sx");
  EXPECT_EQ(WalkedFile("{\"a\": true, \"b\": \"x\"}"), "<a>T<b>sx");
}

TEST_F(JsonParserTest, WhatIsReadNeedsTheFileNoLonger) {
  std::string const path = Write("{\"a\": \"a text that is too long to be kept in place\"}");
  JsonParser const parser(path);
  ASSERT_EQ(::truncate(path.c_str(), 0), 0);
  EXPECT_EQ(Walked(parser.GetDomIterator(false)), "<a>sa text that is too long to be kept in place");
}

TEST_F(JsonParserTest, OtherBracketThanExpectedIsAnErrorOfTheLibraryBehindIt) {
  JsonParser const array(Write("[1]"));
  ExpectError([&] { array.GetDomIterator(false); }, 19, "Assertion failure:RapidJSON.");
  JsonParser const object(Write("{\"a\":1}"));
  ExpectError([&] { object.GetDomIterator(true); }, 19, "Assertion failure:RapidJSON.");
}

TEST_F(JsonParserTest, ErrorsOfTheMapperPass) {
  ExpectError([&] { JsonParser(mFolder.Path("absent")); }, 6,
              "Unable to open input file:" + mFolder.Path("absent") + ".");
  ExpectError([&] { JsonParser(Write("")); }, 54, "Empty Input file.");
  ExpectError([&] { JsonParser(mFolder.Path("")); }, 21, "Unable to read file in memory.");
}

struct Refused {
  char const* name;
  std::string text;
};

std::string NameOfRow(testing::TestParamInfo<Refused> const& row) {
  return row.param.name;
}

class JsonParserRefuses : public JsonParserTest, public testing::WithParamInterface<Refused> {};

TEST_P(JsonParserRefuses, AsNotToBeConverted) {
  ExpectError([&] { JsonParser(Write(GetParam().text)); }, 1506, kNotConverted);
}

Refused const kRefused[] = {
    {"WhiteSpaceAlone", " \n"},
    {"NothingBeforeTheFirstNul", std::string("\0[1]", 4)},
    {"CutArray", "[1, 2"},
    {"CutObject", "{\"a\": 1"},
    {"CutString", "[\"abc"},
    {"CutBehindTheBackslash", "[\"abc\\"},
    {"CutInAnEscape", "[\"\\u00"},
    {"CutInAWord", "[tru"},
    {"CutInAnExponent", "[1e"},
    {"NulInAString", std::string("[\"a\0b\"]", 7)},
    {"NulInsteadOfTheBracket", std::string("[1\0]", 4)},
    {"ControlCharacterInAString", "[\"a\nb\"]"},
    {"TrailingComma", "[1,]"},
    {"LeadingComma", "[,1]"},
    {"KeyWithoutQuotes", "{a: 1}"},
    {"NumberAsKey", "{1: 1}"},
    {"ColonMissing", "{\"a\" 1}"},
    {"CommaMissing", "{\"a\": 1 \"b\": 2}"},
    {"WrongClosingBracket", "[1}"},
    {"SomethingBehindTheEnd", "[1] [2]"},
    {"Comment", "[1 /* one */]"},
    {"ByteOrderMark", "\xEF\xBB\xBF[1]"},
    {"UnknownEscape", "[\"\\x\"]"},
    {"LoneLeadingSurrogate", "[\"\\ud834\"]"},
    {"LeadingZero", "[01]"},
    {"PlusSign", "[+1]"},
    {"PointWithoutDigits", "[1.]"},
    {"NotANumber", "[NaN]"},
    {"Infinity", "[Infinity]"},
    {"NumberAboveAllDoubles", "[1e309]"},
    {"ZeroWithTheExponentOfSuchANumber", "[0e309]"},
    {"ManyDigitsAboveAllDoubles", "[" + std::string(400, '9') + "]"},
};

INSTANTIATE_TEST_SUITE_P(Rows, JsonParserRefuses, testing::ValuesIn(kRefused), NameOfRow);

TEST_F(JsonParserTest, NulBehindTheDocumentEndsTheText) {
  EXPECT_EQ(WalkedFile(std::string("[true]\0 anything [", 18)), "<dataOutline 0>T");
}

TEST_F(JsonParserTest, FileThatFillsItsLastPageIsReadToItsEndAndNotBeyond) {
  std::size_t const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  std::string const whole = "[" + std::string(page - 3, ' ') + "7]";
  ASSERT_EQ(whole.size(), page);
  EXPECT_EQ(WalkedFile(whole), "<dataOutline 0>n0x1.cp+2");
  for (char const* const cut :
       {"[1", "[1.", "[1e", "[1e5", "[-", "[tru", "[\"abc", "[\"abc\\", "[\"\\u12", "{\"a\"", "{", "[1,"}) {
    std::string const text = std::string(2 * page - std::strlen(cut), ' ') + cut;
    ExpectError([&] { JsonParser(Write(text)); }, 1506, kNotConverted);
  }
}

TEST_F(JsonParserTest, NestingAMillionDeepTakesNoStack) {
  constexpr std::size_t kDepth = 1000000;
  std::string const arrays = std::string(kDepth, '[') + std::string(kDepth, ']');
  EXPECT_EQ(JsonParser(Write(arrays)).GetDomIterator(true)->GetMemberCount(), 1u);
  std::string objects;
  for (std::size_t i = 0; i < kDepth; ++i) {
    objects += "{\"\":";
  }
  objects += "0" + std::string(kDepth, '}');
  EXPECT_EQ(JsonParser(Write(objects)).GetDomIterator(false)->GetMemberCount(), 1u);
  ExpectError([&] { JsonParser(Write(std::string(kDepth, '['))); }, 1506, kNotConverted);
}

TEST_F(JsonParserTest, BytesThatAreNoTextPassUnchanged) {
  EXPECT_EQ(WalkedFile("{\"\xFF\xFE\": \"\xC3\x28\x80\"}"), "<\xFF\xFE>s\xC3\x28\x80");
}

TEST_F(JsonParserTest, EscapesBecomeBytes) {
  EXPECT_EQ(WalkedFile(R"(["\"\\\/\b\f\n\r\t\u00e9\u20ac\ud834\udd1e"])"),
            "<dataOutline 0>s\"\\/\b\f\n\r\t\xC3\xA9\xE2\x82\xAC\xF0\x9D\x84\x9E");
}

TEST_F(JsonParserTest, NulEscapeKeepsTheLength) {
  EXPECT_EQ(WalkedFile(R"({"a\u0000b": "c\u0000d"})"), std::string("<a\0b>sc\0d", 9));
}

TEST_F(JsonParserTest, KeysThatComeTwiceAndEmptyKeysAreKept) {
  EXPECT_EQ(WalkedFile(R"({"a": true, "": false, "a": null, "": true})"), "<a>T<>F<a>0<>T");
}

/// A document of the grammar, with some of its text damaged.
class RandomText {
 public:
  explicit RandomText(unsigned seed) : mRandom(seed) {}

  std::string Document() {
    std::string text = Space() + Container(4) + Space();
    if (Below(3) == 0) {
      static constexpr char kBytes[] = "[]{}\",:0123456789.eE+-truefalsn\\u \n\0\xFF";
      for (std::size_t damages = Below(3) + 1; damages != 0 && !text.empty(); --damages) {
        std::size_t const at = Below(text.size());
        char const byte = kBytes[Below(sizeof kBytes - 1)];
        switch (Below(4)) {
          case 0:
            text[at] = byte;
            break;
          case 1:
            text.insert(at, 1, byte);
            break;
          case 2:
            text.erase(at, 1);
            break;
          default:
            text.resize(at + 1);
        }
      }
    }
    return text;
  }

 private:
  std::size_t Below(std::size_t limit) { return std::uniform_int_distribution<std::size_t>(0, limit - 1)(mRandom); }

  std::string Space() {
    static constexpr char kSpaces[] = " \n\t\r";
    std::string text;
    while (Below(4) == 0) {
      text += kSpaces[Below(4)];
    }
    return text;
  }

  std::string Digits(std::size_t most) {
    std::string text(Below(most) + 1, '0');
    for (char& digit : text) {
      digit = static_cast<char>('0' + Below(10));
    }
    return text;
  }

  std::string Number() {
    std::string text = Below(3) == 0 ? "-" : "";
    std::string const integer = Digits(Below(4) == 0 ? 25 : 6);
    text += integer[0] == '0' ? "0" : integer;
    if (Below(2) == 0) {
      text += '.' + Digits(Below(4) == 0 ? 30 : 5);
    }
    if (Below(3) == 0) {
      static char const* const kExponents[] = {"e", "E", "e+", "E-", "e-"};
      text += kExponents[Below(5)] + Digits(Below(6) == 0 ? 5 : 2);
    }
    return text;
  }

  std::string String() {
    static char const* const kParts[] = {"a",       "name",           "\\n",      "\\\"", "\\u0041",
                                         "\\u0000", "\\ud83d\\ude00", "\xC3\xA9", "\xFF", "a longer part of a text"};
    std::string text = "\"";
    for (std::size_t parts = Below(4); parts != 0; --parts) {
      text += kParts[Below(std::size(kParts))];
    }
    return text + '"';
  }

  std::string Value(int depth) {
    switch (Below(depth == 0 ? 5 : 7)) {
      case 0:
        return "null";
      case 1:
        return Below(2) == 0 ? "true" : "false";
      case 2:
        return String();
      case 3:
      case 4:
        return Number();
      default:
        return Container(depth - 1);
    }
  }

  std::string Container(int depth) {
    bool const isArray = Below(2) == 0;
    std::string text(1, isArray ? '[' : '{');
    text += Space();
    for (std::size_t left = Below(5); left != 0; --left) {
      text += Space() + (isArray ? "" : String() + Space() + ':' + Space()) + Value(depth) + Space();
      text += left == 1 ? "" : ",";
    }
    return text + (isArray ? ']' : '}');
  }

  std::mt19937 mRandom;
};

/// What `Walked` gives for the same document, from the document itself.
std::string WalkedValue(JValue const& value, std::string const& name) {
  std::string text;
  switch (value.GetType()) {
    case rapidjson::kArrayType:
      text = "[";
      for (rapidjson::SizeType i = 0; i < value.Size(); ++i) {
        std::string const key = name + ' ' + std::to_string(i);
        text += '<' + key + '>' + WalkedValue(value[i], key);
      }
      return text + ']';
    case rapidjson::kObjectType:
      text = "{";
      for (auto const& member : value.GetObject()) {
        std::string const key(member.name.GetString(), member.name.GetStringLength());
        text += '<' + key + '>' + WalkedValue(member.value, key);
      }
      return text + '}';
    case rapidjson::kNumberType: {
      char digits[40];
      std::snprintf(digits, sizeof digits, "n%a", value.GetDouble());
      return digits;
    }
    case rapidjson::kStringType:
      return 's' + std::string(value.GetString(), value.GetStringLength());
    case rapidjson::kNullType:
      return "0";
    default:
      return value.IsTrue() ? "T" : "F";
  }
}

TEST_F(JsonParserTest, AcceptsAndRefusesWhatTheRecursiveWayDoesWithTheSameValues) {
  RandomText random(20260701);
  int accepted = 0;
  int refused = 0;
  for (int i = 0; i < 6000; ++i) {
    std::string const text = random.Document();
    // Recursive, from a text with a NUL behind it.
    JDocument expected;
    expected.Parse(text.c_str());
    if (text.empty()) {
      continue;
    }
    std::string const path = Write(text);
    if (expected.HasParseError()) {
      ExpectError([&] { JsonParser{path}; }, 1506, kNotConverted);
      ++refused;
      continue;
    }
    ++accepted;
    JsonParser const parser(path);
    if (!expected.IsArray() && !expected.IsObject()) {
      continue;
    }
    bool const isArray = expected.IsArray();
    std::string const walked = Walked(parser.GetDomIterator(isArray));
    ASSERT_EQ((isArray ? '[' : '{') + walked + (isArray ? ']' : '}'), WalkedValue(expected, "dataOutline")) << text;
  }
  EXPECT_GT(accepted, 3000);
  EXPECT_GT(refused, 1000);
}

}  // namespace
}  // namespace ns_sensor
