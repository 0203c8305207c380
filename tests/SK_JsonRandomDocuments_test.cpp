// The scanner against rapidjson's own reader, and against damaged documents.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

#include "ExactRange.h"
#include "ParsedJson.h"
#include "SK_Exception.h"
#include "SK_JsonBytes.h"

namespace {

using ns_sensor::SK_Exception;
using SK_NAMESPACE_INT::JDocument;
using SK_NAMESPACE_INT::JValue;

TEST(JsonRandomDocuments, WideSearchesFindWhatTheByteTestsFind) {
  std::mt19937 random(20240611);
  std::string const choices =
      " \n\t\r\"\\\x01\x1F\x7F\x80\xFF"
      "aZ ";
  for (int round = 0; round < 3000; ++round) {
    std::string text(random() % 70, random() % 2 == 0 ? ' ' : 'x');
    for (unsigned long i = random() % 3; i > 0 && !text.empty(); --i) {
      text[random() % text.size()] = choices[random() % choices.size()];
    }
    ExactRange const range(text);
    char const* const stop = std::find_if(range.begin(), range.end(), SK_NAMESPACE_INT::IsJsonStringStop);
    char const* const solid = std::find_if_not(range.begin(), range.end(), SK_NAMESPACE_INT::IsJsonBlank);
    EXPECT_EQ(SK_NAMESPACE_INT::FindJsonStringStop(range.begin(), range.end()), stop);
    EXPECT_EQ(SK_NAMESPACE_INT::SkipJsonBlanks(range.begin(), range.end()), solid);
  }
}

/// Random documents of what the format and JSON have in common and mean alike.
class RandomDocument {
 public:
  explicit RandomDocument(unsigned seed) : mRandom(seed) {}

  std::string Make() { return Container(0); }

  /// Changes, inserts or removes some bytes.
  std::string Mutate(std::string text) {
    std::string const bytes = "{}[]\",:\\ 0123456789-+.eEtfnu\n\t\x01\x80";
    for (unsigned changes = 1 + Below(3); changes > 0 && !text.empty(); --changes) {
      std::size_t const at = Below(static_cast<unsigned>(text.size()));
      char const byte = bytes[Below(static_cast<unsigned>(bytes.size()))];
      switch (Below(4)) {
        case 0:
          text.erase(at, 1 + Below(4));
          break;
        case 1:
          text.insert(at, 1, byte);
          break;
        case 2:
          text.insert(at, text.substr(Below(static_cast<unsigned>(text.size())), Below(8)));
          break;
        default:
          text[at] = byte;
      }
    }
    return text;
  }

 private:
  unsigned Below(unsigned limit) { return static_cast<unsigned>(mRandom() % limit); }

  std::string Blanks() {
    std::string blanks;
    for (unsigned i = Below(8) == 0 ? Below(40) : 0; i > 0; --i) {
      blanks += " \n\t\r"[Below(4)];
    }
    return blanks;
  }

  std::string Container(int depth) {
    bool const isObject = Below(2) == 0;
    std::string text = isObject ? "{" : "[";
    for (unsigned items = 1 + Below(4); items > 0; --items) {
      text += Blanks();
      if (isObject) {
        text += String() + Blanks() + ":" + Blanks();
      }
      text += Value(depth) + Blanks() + (items > 1 ? "," : "");
    }
    return text + (isObject ? "}" : "]");
  }

  std::string Value(int depth) {
    switch (Below(depth < 6 ? 6 : 4)) {
      case 0:
        return String();
      case 1:
        return Below(2) == 0 ? "true" : "false";
      case 2:
      case 3:
        return Number();
      default:
        return Container(depth + 1);
    }
  }

  std::string String() {
    static char const* const kPieces[] = {"a",        "key",   "0",     " ",     R"(\")",      R"(\\)",
                                          R"(\/)",    R"(\b)", R"(\f)", R"(\n)", R"(\r)",      R"(\t)",
                                          "\xC3\xA9", "{",     "]",     ",",     "objectType", "dataDynamicNode"};
    std::string text = "\"";
    for (unsigned i = Below(9); i > 0; --i) {
      text += kPieces[Below(sizeof kPieces / sizeof *kPieces)];
    }
    return text + "\"";
  }

  std::string Digits(unsigned count) {
    std::string digits;
    for (; count > 0; --count) {
      digits += static_cast<char>('0' + Below(10));
    }
    return digits;
  }

  /// Integers that do not wrap, exponents of which no digit is lost, and at most sixteen digits of which the first
  /// is not zero: behind them rapidjson takes one digit more.
  std::string Number() {
    std::string const sign = Below(3) == 0 ? "-" : "";
    std::string const integer = Below(4) == 0 ? "0" : std::to_string(1 + Below(9)) + Digits(Below(9));
    unsigned const longestFraction = integer == "0" ? 25 : 16 - static_cast<unsigned>(integer.size());
    std::string text = sign + integer;
    if (Below(2) == 0) {
      text += "." + Digits(1 + Below(longestFraction));
    }
    switch (Below(6)) {
      case 0:
        return text + "e-" + std::to_string(Below(10));
      case 1:
        return text + "E+" + Digits(1 + Below(2));
      default:
        return text;
    }
  }

  std::mt19937 mRandom;
};

/// Fails where two trees differ, as doubles where they hold numbers, in the order of their members.
void ExpectEqualTrees(JValue const& ours, JValue const& theirs) {
  ASSERT_EQ(ours.GetType(), theirs.GetType());
  if (ours.IsNumber()) {
    EXPECT_EQ(ours.GetDouble(), theirs.GetDouble());
  } else if (ours.IsString()) {
    EXPECT_EQ(std::string(ours.GetString(), ours.GetStringLength()),
              std::string(theirs.GetString(), theirs.GetStringLength()));
  } else if (ours.IsArray()) {
    ASSERT_EQ(ours.Size(), theirs.Size());
    for (rapidjson::SizeType i = 0; i < ours.Size(); ++i) {
      ExpectEqualTrees(ours[i], theirs[i]);
    }
  } else if (ours.IsObject()) {
    ASSERT_EQ(ours.MemberCount(), theirs.MemberCount());
    for (rapidjson::SizeType i = 0; i < ours.MemberCount(); ++i) {
      ExpectEqualTrees(ours.MemberBegin()[i].name, theirs.MemberBegin()[i].name);
      ExpectEqualTrees(ours.MemberBegin()[i].value, theirs.MemberBegin()[i].value);
    }
  }
}

TEST(JsonRandomDocuments, CommonDocumentsGiveTheTreeOfRapidJson) {
  RandomDocument random(7);
  for (int round = 0; round < 4000; ++round) {
    std::string const text = random.Make();
    JDocument theirs;
    theirs.Parse(text.data(), text.size());
    ASSERT_FALSE(theirs.HasParseError()) << text;
    ParsedJson const ours(text);
    EXPECT_EQ(ours.length, text.size());
    ExpectEqualTrees(ours.value, theirs);
    ASSERT_FALSE(testing::Test::HasFailure()) << text;
  }
}

TEST(JsonRandomDocuments, MutatedDocumentsParseOrEndInASyntaxError) {
  RandomDocument random(11);
  int accepted = 0;
  int refused = 0;
  for (int round = 0; round < 20000; ++round) {
    std::string const text = random.Mutate(random.Make());
    try {
      EXPECT_LE(ParsedJson(text).length, text.size()) << text;
      ++accepted;
    } catch (SK_Exception const& error) {
      ++refused;
      ASSERT_EQ(error.GetErrorCode(), 32) << text;
      ASSERT_GE(error.GetFileOffset(), -1) << text;
      ASSERT_LE(error.GetFileOffset(), static_cast<long long>(text.size())) << text;
    }
  }
  EXPECT_GT(accepted, 1000);
  EXPECT_GT(refused, 1000);
}

}  // namespace
