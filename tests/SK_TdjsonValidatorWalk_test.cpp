// What the ways through an outline have in common, however many it takes: the same first error, the same nodes.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "ExpectError.h"
#include "OutlineRows.h"
#include "SK_TdjsonValidator_v2.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::Edited;
using senmark_test::ExpectError;
using senmark_test::Parsed;
using senmark_test::ValidateOutline;
using senmark_test::ValidOutline;

std::string Replaced(std::string text, std::string const& from, std::string const& to) {
  std::string::size_type const at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// The same value with the members of all objects the other way round.
JValue Reversed(JValue const& value, JAllocator& allocator) {
  JValue result;
  if (value.IsObject()) {
    result.SetObject();
    for (auto member = value.MemberEnd(); member != value.MemberBegin();) {
      --member;
      result.AddMember(JValue(member->name, allocator), Reversed(member->value, allocator), allocator);
    }
  } else if (value.IsArray()) {
    result.SetArray();
    for (JValue const& element : value.GetArray()) {
      result.PushBack(Reversed(element, allocator), allocator);
    }
  } else {
    result.CopyFrom(value, allocator);
  }
  return result;
}

TEST(TdjsonValidatorWalk, KeysComeInAnyOrder) {
  for (int const version : {1, 2}) {
    JDocument const outline = Parsed(ValidOutline(version));
    JAllocator allocator;
    EXPECT_NO_THROW(ValidateOutline(version, Reversed(outline, allocator))) << version;
  }
}

TEST(TdjsonValidatorWalk, FirstOfTwoEqualKeysCounts) {
  struct Row {
    char const* key;
    char const* bad;
    char const* message;
  };
  // clang-format off
  static Row const kRows[] = {
      {"objectType", "1", R"(Invalid "objectType" type, expected type:JSON String at "dataOutline[0]".)"},
      {"displayName", "1", R"(Invalid "displayName" type, expected type:JSON String at "dataOutline[0]".)"},
      {"matchName", "1", R"(Invalid "matchName" type, expected type:JSON String at "dataOutline[0]:Speed".)"},
      {"dataType", "1", R"(Invalid "dataType" type, expected type:JSON Object at "dataOutline[0]:Speed".)"},
      {"value", "{}", R"(Invalid "value" type, expected type:JSON Number at "dataOutline[0]:Speed".)"},
      {"type", "1", R"(Invalid "type" type, expected type:JSON String at "dataOutline[0]:Speed/dataType".)"},
      {"isSigned", "1", R"(Invalid "isSigned" type, expected type:JSON Boolean at "dataOutline[0]:Speed/dataType/numberStringProperties/pattern".)"},
      {"occurring", "1", R"(Invalid "occurring" type, expected type:JSON Object at "dataOutline[0]:Speed/dataType/numberStringProperties".)"},
      {"max", "true", R"(Invalid "max" type, expected type:JSON Number at "dataOutline[0]:Speed/dataType/numberStringProperties/occurring".)"},
  };
  // clang-format on
  std::string const good = ValidOutline(2);
  for (Row const& row : kRows) {
    std::string const key = "\"" + std::string(row.key) + "\":";
    JDocument const badFirst = Parsed(Replaced(good, key, key + row.bad + "," + key));
    ExpectError([&] { ValidateOutline(2, badFirst); }, 43, row.message);

    JDocument badLast = Parsed(good);
    for (JValue* object = &badLast[0];;) {
      if (object->HasMember(row.key)) {
        object->AddMember(JValue(row.key, badLast.GetAllocator()), JValue(Parsed(row.bad), badLast.GetAllocator()),
                          badLast.GetAllocator());
        break;
      }
      char const* const inner[] = {"dataType", "numberStringProperties",
                                   std::string(row.key) == "isSigned" ? "pattern" : "range", "occurring"};
      for (char const* const name : inner) {
        if (object->HasMember(name)) {
          object = &(*object)[name];
          break;
        }
      }
    }
    EXPECT_NO_THROW(ValidateOutline(2, badLast)) << row.key;
  }
}

TEST(TdjsonValidatorWalk, KeyIsFoundByItsWholeText) {
  for (char const* const key : {"matchNam", "matchNames", "MatchName", "matchNam\\u0000", "xatchName"}) {
    JDocument const outline = Parsed(Replaced(ValidOutline(2), R"("matchName")", "\"" + std::string(key) + "\""));
    ExpectError([&] { ValidateOutline(2, outline); }, 28,
                R"(Unable to find mandatory property:"matchName" at "dataOutline[0]:Speed".)");
  }
}

TEST(TdjsonValidatorWalk, GivesDynamicNodesInTheirOrder) {
  std::string const dynamic = R"({"objectType":"dataDynamic","displayName":"D","matchName":"M","dataType":)"
                              R"({"type":"paddedString","paddedStringProperties":)"
                              R"({"maxLen":8,"maxDigitsInStrLength":1,"eventMarkerB":false}},"sampleSetID":"S",)"
                              R"("interpolation":"linear","hasExpectedFrequencyB":true,"sampleCount":5})";
  auto const track = [&](std::string const& name) {
    return Replaced(Replaced(dynamic, "\"M\"", "\"" + name + "\""), "\"S\"", "\"id of " + name + "\"");
  };
  auto const group = [](std::string const& name, std::string const& children) {
    return R"({"objectType":"dataGroup","displayName":"G","matchName":")" + name + R"(","children":[)" + children +
           "]}";
  };
  auto const outline = [&](std::vector<std::string> const& names) {
    return "[" + group(names[0], group(names[1], track(names[2]) + "," + track(names[3])) + "," + track(names[4])) +
           "," + track(names[5]) + "]";
  };
  // Names in order, names out of order, and an order that breaks at the last one.
  for (std::vector<std::string> const& names : {std::vector<std::string>{"a", "b", "c", "d", "e", "f"},
                                                {"f", "e", "d", "c", "b", "a"},
                                                {"b", "c", "d", "e", "f", "a"}}) {
    JDocument const document = Parsed(outline(names));
    std::vector<JValue const*> const nodes = SK_TdjsonValidator_v2().ValidateOutline(document, nullptr, nullptr);
    std::vector<JValue const*> const expected = {&document[0]["children"][0]["children"][0],
                                                 &document[0]["children"][0]["children"][1],
                                                 &document[0]["children"][1], &document[1]};
    EXPECT_EQ(nodes, expected) << names[0];
  }
  JDocument const statics = Parsed(ValidOutline(2));
  EXPECT_EQ(SK_TdjsonValidator_v2().ValidateOutline(statics, nullptr, nullptr),
            (std::vector<JValue const*>{&statics[3], &statics[4], &statics[5]}));
}

/// Small outlines with names from a few, some of them with a node that is refused: the first of all errors counts.
class RandomNames {
 public:
  std::string Outline() {
    mText = "[";
    mSeen.clear();
    mNodes = 0;
    mBroken = Below(3) == 0 ? Below(8) : 1000;
    mSuffixes = Below(4);
    mCode = 0;
    mMessage.clear();
    AddNodes("dataOutline", 0);
    mText += "]";
    return mText;
  }
  int Code() const { return mCode; }
  std::string const& Message() const { return mMessage; }

 private:
  unsigned Below(unsigned bound) { return static_cast<unsigned>(mRandom() % bound); }

  std::string Name() {
    static char const* const kNames[] = {"", "a", "b", "z", "ab", "ba", "a1", "B"};
    // Some outlines have names that mostly rise.
    return mSuffixes != 0 ? "n" + std::to_string(8 + mNodes - (Below(6) == 0 ? Below(2) : 0)) : kNames[Below(8)];
  }

  void AddNodes(std::string const& array, int depth) {
    unsigned const count = 1 + Below(4);
    for (unsigned i = 0; i != count; ++i) {
      std::string const place = array + "[" + std::to_string(i) + "]";
      bool const isBroken = mNodes == mBroken;
      bool const isGroup = depth < 3 && Below(3) == 0;
      std::string const name = Name();
      ++mNodes;
      Expect(isBroken, name, place);
      mText += (i == 0 ? "" : ",");
      mText += R"({"objectType":")" +
               std::string(isBroken  ? "other"
                           : isGroup ? "dataGroup"
                                     : "dataStatic") +
               R"(","displayName":"D","matchName":")" + name + "\",";
      if (isGroup) {
        mText += R"("children":[)";
        // A node of no known kind is not entered.
        AddNodes(place + ":D/children", depth + 1);
        mText += "]}";
      } else {
        mText += R"("dataType":{"type":"boolean"},"value":true})";
      }
    }
  }

  void Expect(bool isBroken, std::string const& name, std::string const& place) {
    if (mCode != 0) {
      return;
    }
    if (isBroken) {
      mCode = 44;
      mMessage = R"(Invalid value for "objectType" at ")" + place +
                 R"(", expected:one of "dataStatic", "dataDynamic" or "dataGroup".)";
    } else if (!mSeen.insert(name).second) {
      mCode = 40;
      mMessage = R"(Duplicate MatchName:")" + name + R"(" at ")" + place +
                 R"(:D". MatchName must be unique for every node in "dataOutline".)";
    }
  }

  std::mt19937 mRandom{20};
  std::string mText;
  std::set<std::string> mSeen;
  unsigned mNodes = 0;
  unsigned mBroken = 0;
  unsigned mSuffixes = 0;
  int mCode = 0;
  std::string mMessage;
};

TEST(TdjsonValidatorWalk, FirstErrorOfAllIsReported) {
  RandomNames random;
  int accepted = 0;
  int broken = 0;
  int repeated = 0;
  for (int round = 0; round != 3000; ++round) {
    std::string const text = random.Outline();
    JDocument const outline = Parsed(text);
    SCOPED_TRACE(text);
    if (random.Code() == 0) {
      ++accepted;
      EXPECT_NO_THROW(ValidateOutline(2, outline));
    } else {
      ++(random.Code() == 44 ? broken : repeated);
      ExpectError([&] { ValidateOutline(2, outline); }, random.Code(), random.Message());
    }
  }
  EXPECT_GT(std::min({accepted, broken, repeated}), 300);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
