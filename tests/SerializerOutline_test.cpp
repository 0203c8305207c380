#include "SerializerOutline.h"

#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "DynamicNodes.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberRange;
using senmark_test::ExpectWriterError;

/// The outline below a root, and the pieces in which it went out.
std::string OutlineOf(TdjsonGroupImpl const& root, std::vector<std::string>* pieces = nullptr) {
  SerializerBuffer text;
  std::string whole;
  SerializerOutline outline(text, [&](SerializerBuffer& piece) {
    EXPECT_GE(piece.Size(), SerializerOutline::kPieceSize);
    whole += piece.View();
    if (pieces != nullptr) {
      pieces->emplace_back(piece.View());
    }
    piece.Clear();
  });
  outline.serialize_Outline(root);
  return whole + std::string(text.View());
}

/// The outline around what is given.
std::string Around(std::string const& nodes) {
  return R"("dataOutline":[)" + nodes + "]";
}

/// A group whose lists are the test's own: with nodes that no converter can add.
class ListedGroup : public TdjsonGroupImpl {
 public:
  ListedGroup() : TdjsonGroupImpl(nullptr, "G", "g") {}

  std::vector<std::shared_ptr<TdjsonDynamicDataImpl>> const& GetDynamicDataList() const override { return dynamics; }
  std::vector<std::shared_ptr<TdjsonStaticDataImpl>> const& GetStaticDataList() const override { return statics; }
  std::vector<std::shared_ptr<TdjsonGroupImpl>> const& GetGroupList() const override { return groups; }
  std::vector<NodeInfo> const& GetNodeInfoList() const override { return order; }

  void Add(std::shared_ptr<TdjsonDynamicDataImpl> node) {
    dynamics.push_back(std::move(node));
    order.push_back({ns_sensor::kDynamicChild, dynamics.size()});
  }
  void Add(std::shared_ptr<TdjsonStaticDataImpl> node) {
    statics.push_back(std::move(node));
    order.push_back({ns_sensor::kStaticChild, statics.size()});
  }
  void Add(std::shared_ptr<TdjsonGroupImpl> group) {
    groups.push_back(std::move(group));
    order.push_back({ns_sensor::kGroupChild, groups.size()});
  }

  std::vector<std::shared_ptr<TdjsonDynamicDataImpl>> dynamics;
  std::vector<std::shared_ptr<TdjsonStaticDataImpl>> statics;
  std::vector<std::shared_ptr<TdjsonGroupImpl>> groups;
  std::vector<NodeInfo> order;
};

std::shared_ptr<TdjsonStaticDataBoolImpl> Flag(bool value = true) {
  return std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "f", value);
}

std::shared_ptr<TdjsonGroupImpl> Group(std::string const& matchName = "g") {
  return std::make_shared<TdjsonGroupImpl>(nullptr, "G", matchName);
}

char const kFlagText[] =
    R"({"objectType":"dataStatic","matchName":"f","displayName":"F","dataType":{"type":"boolean"},"value":true})";
char const kGroupHead[] = R"({"objectType":"dataGroup","matchName":"g","displayName":"G","children":[)";
char const kStreamText[] =
    R"({"objectType":"dataDynamic","matchName":"arm","displayName":"Arm","sampleSetID":"Sarm","interpolation":"linear",)"
    R"("hasExpectedFrequencyB":false,"sampleCount":4,"dataType":{"type":"paddedString","paddedStringProperties":)"
    R"({"maxDigitsInStrLength":0,"maxLen":0,"eventMarkerB":false}}})";

// Nodes without an object.

/// One node in both forms, made of what a native converter knows.
struct StaticNode {
  ns_sensor::eDataValueType kind;
  double number;
  std::string text;

  void AddTo(ListedGroup& objects, TdjsonGroupImpl& records) const {
    std::string const name = "m" + text;
    switch (kind) {
      case ns_sensor::kNumberValue: {
        auto node = std::make_shared<TdjsonStaticDataNumImpl>(nullptr, text, name, number);
        node->SetNumberPattern({});
        node->SetNumberRange({});
        objects.Add(node);
        records.AddStaticNumber(name, text, number);
        break;
      }
      case ns_sensor::kStringValue: {
        auto node = std::make_shared<TdjsonStaticDataStringImpl>(nullptr, text, name, text + text);
        node->SetStringProperties({});
        objects.Add(node);
        records.AddStaticString(name, text, text + text);
        break;
      }
      default:
        objects.Add(std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, text, name, number != 0));
        records.AddStaticBool(name, text, number != 0);
    }
  }
};

TEST(SerializerOutlineRecords, HaveTheTextOfObjects) {
  std::vector<StaticNode> nodes;
  for (double const number : {0.0, -0.0, 1.0, -1.0, 12.5, 9.95, 1e15, 1e16, 123456789012345678.0, 1e-5, -2.5e-10, 1e300,
                              5e-324, std::numeric_limits<double>::max(), std::numeric_limits<double>::lowest(),
                              std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
                              std::numeric_limits<double>::quiet_NaN()}) {
    nodes.push_back({ns_sensor::kNumberValue, number, "n"});
    nodes.push_back({ns_sensor::kBooleanValue, number, "b"});
  }
  for (std::string const& text : {std::string(), std::string("text"), std::string("\"\\\b\f\n\r\t"),
                                  std::string("\0\x01\xFF", 3), std::string(5, 'x'), std::string(70000, '"')}) {
    nodes.push_back({ns_sensor::kStringValue, 0, text});
    nodes.push_back({ns_sensor::kNumberValue, 1, text});
    nodes.push_back({ns_sensor::kBooleanValue, 1, text});
  }
  std::mt19937_64 random(17);
  for (int i = 0; i < 20000; ++i) {
    double number = 0;
    std::uint64_t const bits = random();
    std::memcpy(&number, &bits, sizeof number);
    nodes.push_back({ns_sensor::kNumberValue, number, std::to_string(bits % 1000)});
    nodes.push_back({ns_sensor::kNumberValue, static_cast<double>(bits % 4000000) / 1e4 - 200, "n"});
  }
  ListedGroup objects;
  TdjsonGroupImpl records(nullptr, "G", "g");
  for (StaticNode const& node : nodes) {
    node.AddTo(objects, records);
  }
  ASSERT_EQ(records.GetNodeInfoList().size(), 1u);
  std::vector<std::string> pieces;
  EXPECT_TRUE(OutlineOf(records, &pieces) == OutlineOf(objects));
  EXPECT_GT(pieces.size(), 3u) << "the text goes out in pieces here too";
}

TEST(SerializerOutlineRecords, StandBetweenObjectsWithTheirCommas) {
  std::string const number =
      R"({"objectType":"dataStatic","matchName":"n","displayName":"N","dataType":{"type":"number",)"
      R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsDecimal":1,"digitsInteger":2},)"
      R"("range":{"occurring":{"min":-12.5,"max":-12.5},"legal":{"min":-12.5,"max":-12.5}}}},"value":-12.5})";
  std::string const text =
      R"({"objectType":"dataStatic","matchName":"s","displayName":"S","dataType":{"type":"string",)"
      R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":3,"eventMarkerB":false}},"value":"a\n"})";
  auto const inner = Group();
  inner->AddStaticBool("f", "F", true);
  TdjsonGroupImpl root(nullptr, "G", "g");
  root.AddStaticNumber("n", "N", -12.5);
  root.AddStaticString("s", "S", "a\n");
  root.AddStaticData(Flag());
  root.AddGroup(inner);
  root.AddStaticBool("f", "F", true);
  root.AddGroup(Group());
  root.AddStaticNumber("n", "N", -12.5);
  root.AddGroup(inner);
  std::string const innerText = kGroupHead + std::string(kFlagText) + "]}";
  EXPECT_EQ(OutlineOf(root), Around(number + ',' + text + ',' + kFlagText + ',' + innerText + ',' + kFlagText + ',' +
                                    number + ',' + innerText));
}

/// Trees of groups by chance, in both forms.
TEST(SerializerOutlineRecords, GroupsThatAreGivenAwayHaveTheTextOfThoseThatAreHeld) {
  std::mt19937 random(23);
  for (int tree = 0; tree < 300; ++tree) {
    auto const held = Group("root");
    auto const given = Group("root");
    held->AddStaticBool("f", "F", true);
    given->AddStaticBool("f", "F", true);
    std::vector<std::pair<std::shared_ptr<TdjsonGroupImpl>, std::shared_ptr<TdjsonGroupImpl>>> chain = {{held, given}};
    for (std::size_t step = 0, steps = 1 + random() % 60; step != steps || chain.size() != 1;) {
      auto const& [heldTop, givenTop] = chain.back();
      std::size_t const choice = step == steps ? 2 : random() % 3;
      step += step == steps ? 0 : 1;
      if (choice == 0) {
        std::string const text(random() % 8 == 0 ? 3000 : 3, '"');
        heldTop->AddStaticString("s", "S", text);
        givenTop->AddStaticString("s", "S", text);
      } else if (choice == 1) {
        std::string const name(1 + random() % 20, 'a');
        chain.emplace_back(std::make_shared<TdjsonGroupImpl>(nullptr, "\"" + name, name),
                           std::make_shared<TdjsonGroupImpl>(nullptr, "\"" + name, name));
      } else if (chain.size() != 1) {
        auto child = std::move(chain.back());
        chain.pop_back();
        chain.back().first->AddGroup(child.first);
        chain.back().second->AddFinishedGroup(std::move(child.second));
      }
    }
    ASSERT_EQ(OutlineOf(*given), OutlineOf(*held));
  }
}

// The rule of commas goes by positions; a group that stays out has one.
TEST(SerializerOutlineRecords, BehindAGroupThatStaysOutBeginWithAComma) {
  TdjsonGroupImpl root(nullptr, "G", "g");
  root.AddGroup(Group());
  root.AddStaticBool("f", "F", true);
  root.AddStaticBool("f", "F", true);
  EXPECT_EQ(OutlineOf(root), Around(std::string(",") + kFlagText + ',' + kFlagText));
}

// Static nodes.

TEST(SerializerOutlineStatic, NumberHasPatternAndRangeInTheirOrder) {
  TdjsonStaticDataNumImpl node(nullptr, "A \"b\"", "n1", -2.25);
  node.setNumberPattern(3, 2, 1, nullptr);
  node.setNumberRange(-10, 10.5, -2.25, 7, nullptr);
  ListedGroup root;
  root.Add(std::shared_ptr<TdjsonStaticDataImpl>(std::shared_ptr<void>(), &node));
  EXPECT_EQ(OutlineOf(root),
            Around(R"({"objectType":"dataStatic","matchName":"n1","displayName":"A \"b\"","dataType":{"type":"number",)"
                   R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsDecimal":2,"digitsInteger":3},)"
                   R"("range":{"occurring":{"min":-2.25,"max":7},"legal":{"min":-10,"max":10.5}}}},"value":-2.25})"));
}

TEST(SerializerOutlineStatic, NumbersThatAreEqualButNotTheSameKeepTheirTexts) {
  TdjsonStaticDataNumImpl node(nullptr, "N", "n", -0.0);
  node.setNumberPattern(1, 0, 1, nullptr);
  node.setNumberRange(-0.0, 0.0, 0.0, -0.0, nullptr);
  ListedGroup root;
  root.Add(std::shared_ptr<TdjsonStaticDataImpl>(std::shared_ptr<void>(), &node));
  EXPECT_EQ(OutlineOf(root),
            Around(R"({"objectType":"dataStatic","matchName":"n","displayName":"N","dataType":{"type":"number",)"
                   R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsDecimal":0,"digitsInteger":1},)"
                   R"("range":{"occurring":{"min":0,"max":-0},"legal":{"min":-0,"max":0}}}},"value":-0})"));
}

TEST(SerializerOutlineStatic, MarksOfPatternAndRangeArePrintedLikeAnyNumber) {
  // Nothing was set: no value ever arrived.
  TdjsonStaticDataNumImpl node(nullptr, "N", "n", 1);
  ListedGroup root;
  root.Add(std::shared_ptr<TdjsonStaticDataImpl>(std::shared_ptr<void>(), &node));
  EXPECT_EQ(OutlineOf(root),
            Around(R"({"objectType":"dataStatic","matchName":"n","displayName":"N","dataType":{"type":"number",)"
                   R"("numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":1.844674407370955e+19,)"
                   R"("digitsInteger":1.844674407370955e+19},)"
                   R"("range":{"occurring":{"min":1.797693134862316e+308,"max":-1.797693134862316e+308},)"
                   R"("legal":{"min":1.797693134862316e+308,"max":-1.797693134862316e+308}}}},"value":1})"));
}

TEST(SerializerOutlineStatic, StringIsNotPadded) {
  TdjsonStaticDataStringImpl node(nullptr, "S", "s", "a\nb");
  node.setStringProperties(0, 0, 1, nullptr);
  ListedGroup root;
  root.Add(std::shared_ptr<TdjsonStaticDataImpl>(std::shared_ptr<void>(), &node));
  EXPECT_EQ(OutlineOf(root),
            Around(R"({"objectType":"dataStatic","matchName":"s","displayName":"S","dataType":{"type":"string",)"
                   R"("paddedStringProperties":{"maxDigitsInStrLength":1,"maxLen":4,"eventMarkerB":true}},)"
                   R"("value":"a\nb"})"));
}

std::string ArrayText(bool isPoint) {
  TdjsonStaticDataNumArrImpl node(nullptr, "pos", "a");
  SK_PluginResult result;
  node.addElement(1.5, &result);
  node.addElement(-2, &result);
  node.setNumberRange(-5, 5, 1.5, 1.5, &result);
  node.setNumberRange(-6, 6, -2, -2, &result);
  node.setIsPoint(isPoint ? 1 : 0, &result);
  node.setNumberPattern(2, 1, 1, &result);
  node.setArrCount(2, &result);
  EXPECT_EQ(result.mErrorCode, 0);
  ListedGroup root;
  root.Add(std::shared_ptr<TdjsonStaticDataImpl>(std::shared_ptr<void>(), &node));
  return OutlineOf(root);
}

TEST(SerializerOutlineStatic, ArrayNamesThePointOnlyIfItIsOne) {
  std::string const head =
      R"({"objectType":"dataStatic","matchName":"a","displayName":"pos","dataType":{"type":"numberArray",)"
      R"("numberArrayProperties":{"pattern":{"isSigned":true,"digitsDecimal":1,"digitsInteger":2},)"
      R"("arrayRanges":{"ranges":[{"occurring":{"min":1.5,"max":1.5},"legal":{"min":-5,"max":5}},)"
      R"({"occurring":{"min":-2,"max":-2},"legal":{"min":-6,"max":6}}]},"arraySize":2,)"
      R"("arrayDisplayNames":["pos_0","pos_1"])";
  EXPECT_EQ(ArrayText(true), Around(head + R"(,"isPoint":true}},"value":[1.5,-2]})"));
  EXPECT_EQ(ArrayText(false), Around(head + R"(}},"value":[1.5,-2]})"));
}

TEST(SerializerOutlineStatic, ArrayMayBeEmptyThroughout) {
  TdjsonStaticDataNumArrImpl node(nullptr, "E", "e");
  SK_PluginResult result;
  node.setNumberPattern(0, 0, 0, &result);
  ListedGroup root;
  root.Add(std::shared_ptr<TdjsonStaticDataImpl>(std::shared_ptr<void>(), &node));
  EXPECT_EQ(OutlineOf(root),
            Around(R"({"objectType":"dataStatic","matchName":"e","displayName":"E","dataType":{"type":"numberArray",)"
                   R"("numberArrayProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":0},)"
                   R"("arrayRanges":{"ranges":[]},"arraySize":0,"arrayDisplayNames":[]}},"value":[]})"));
}

TEST(SerializerOutlineStatic, BooleanHasNoProperties) {
  ListedGroup root;
  root.Add(Flag(true));
  root.Add(Flag(false));
  EXPECT_EQ(OutlineOf(root),
            Around(std::string(kFlagText) + R"(,{"objectType":"dataStatic","matchName":"f","displayName":"F",)"
                                            R"("dataType":{"type":"boolean"},"value":false})"));
}

TEST(SerializerOutlineStatic, NodeOfADerivedClassIsWrittenLikeItsBase) {
  class Derived : public TdjsonStaticDataBoolImpl {
   public:
    Derived() : TdjsonStaticDataImpl("F", "f"), TdjsonStaticDataBoolImpl(nullptr, "F", "f", true) {}
  };
  ListedGroup root;
  root.Add(std::make_shared<Derived>());
  EXPECT_EQ(OutlineOf(root), Around(kFlagText));
}

// Dynamic nodes, and which nodes are left out.

class SerializerOutlineTree : public senmark_test::DynamicNodes {
 protected:
  void SetUp() override {
    DynamicNodes::SetUp();
    UseTimeCode();
  }

  /// A stream that states a count of samples; 0 keeps it out.
  std::shared_ptr<TdjsonDynamicDataStringImpl> Stream(unsigned long long sampleCount = 4) {
    auto node = Make<TdjsonDynamicDataStringImpl>();
    node->SetSampleCount(sampleCount);
    return node;
  }

  /// A stream that lost a sample: it has an element that its file cannot take.
  std::shared_ptr<TdjsonDynamicDataStringImpl> DirtyStream() {
    class Dirty : public TdjsonDynamicDataStringImpl {
     public:
      explicit Dirty(void* key) : TdjsonDynamicDataImpl(key), TdjsonDynamicDataStringImpl(key) {}
      bool isDirty() override { return true; }
    };
    auto node = std::make_shared<Dirty>(Key());
    node->SetSampleCount(4);
    return node;
  }

  /// Reads a tree: S static, D dynamic, x dirty, 0 without samples, and ( to ) a group.
  void Fill(ListedGroup& group, char const*& p) {
    for (; *p != '\0' && *p != ')'; ++p) {
      switch (*p) {
        case 'S':
          group.Add(Flag());
          break;
        case 'D':
          group.Add(Stream());
          break;
        case 'x':
          group.Add(DirtyStream());
          break;
        case '0':
          group.Add(Stream(0));
          break;
        default: {
          auto inner = std::make_shared<ListedGroup>();
          Fill(*inner, ++p);
          group.Add(std::shared_ptr<TdjsonGroupImpl>(inner));
        }
      }
    }
  }

  std::string TreeText(char const* tree) {
    ListedGroup root;
    Fill(root, tree);
    return OutlineOf(root);
  }
};

TEST_F(SerializerOutlineTree, StreamOfNumbers) {
  auto node = std::make_shared<TdjsonDynamicDataNumImpl>(Key());
  node->setDynamicDataInfo("Angle", "angle", "a\"1", 12, 2, 1, "00:00:00:10", nullptr);
  node->setNumberPattern(3, 2, 1, nullptr);
  node->setNumberRange(-180, 180, -1.5, 90.25, nullptr);
  ListedGroup root;
  root.Add(node);
  EXPECT_EQ(OutlineOf(root),
            Around(R"({"objectType":"dataDynamic","matchName":"angle","displayName":"Angle","sampleSetID":"a\"1",)"
                   R"("interpolation":"hold","hasExpectedFrequencyB":true,"sampleCount":12,)"
                   R"("expectedMaxInterSampleDuration":"00:00:00:10","dataType":{"type":"numberString",)"
                   R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsDecimal":2,"digitsInteger":3},)"
                   R"("range":{"occurring":{"min":-1.5,"max":90.25},"legal":{"min":-180,"max":180}}}}})"));
}

TEST_F(SerializerOutlineTree, StreamOfArraysWithoutADuration) {
  auto node = std::make_shared<TdjsonDynamicDataNumArrImpl>(Key());
  node->setDynamicDataInfo("Pos", "pos", "p", 3, 1, 0, "", nullptr);
  node->setNumberPattern(1, 0, 0, nullptr);
  node->setArrCount(2, nullptr);
  node->setNumberRange(0, 9, 1, 2, nullptr);
  node->setNumberRange(0, 8, 3, 4, nullptr);
  node->setDisplayName("X", nullptr);
  node->setDisplayName("Y", nullptr);
  node->setIsPoint(1, nullptr);
  ListedGroup root;
  root.Add(node);
  EXPECT_EQ(OutlineOf(root),
            Around(R"({"objectType":"dataDynamic","matchName":"pos","displayName":"Pos","sampleSetID":"p",)"
                   R"("interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":3,)"
                   R"("dataType":{"type":"numberStringArray",)"
                   R"("numberArrayProperties":{"pattern":{"isSigned":false,"digitsDecimal":0,"digitsInteger":1},)"
                   R"("arrayRanges":{"ranges":[{"occurring":{"min":1,"max":2},"legal":{"min":0,"max":9}},)"
                   R"({"occurring":{"min":3,"max":4},"legal":{"min":0,"max":8}}]},"arraySize":2,)"
                   R"("arrayDisplayNames":["X","Y"],"isPoint":true}}})"));
}

TEST_F(SerializerOutlineTree, StreamOfTexts) {
  EXPECT_EQ(TreeText("D"), Around(kStreamText));
}

TEST_F(SerializerOutlineTree, NodesAreWrittenAsTheirListsSay) {
  struct Row {
    char const* tree;
    /// As `tree`, with what stays out left out, and the commas of the file.
    char const* written;
  };
  Row const rows[] = {
      {"S", "S"},
      {"SS", "S,S"},
      {"SDS", "S,D,S"},
      {"DS", "D,S"},
      // The comma belongs to the position: it stays when the first one is left out.
      {"xS", ",S"},
      {"0S", ",S"},
      {"()S", ",S"},
      {"x0()S", ",S"},
      {"xD", ",D"},
      {"x(S)", ",(S)"},
      {"xSS", ",S,S"},
      // What is left out further on takes its comma along.
      {"Sx", "S"},
      {"S0", "S"},
      {"S()", "S"},
      {"SxS", "S,S"},
      {"S0S", "S,S"},
      {"S()S", "S,S"},
      {"Sx0()D", "S,D"},
      // The same inside groups.
      {"(S)", "(S)"},
      {"(S)(D)", "(S),(D)"},
      {"(xS)", "(,S)"},
      {"(Sx)", "(S)"},
      {"(SxS)", "(S,S)"},
      {"(()S)", "(,S)"},
      {"(S()S)", "(S,S)"},
      {"S(xS)S", "S,(,S),S"},
      // A group goes with its last child.
      {"S(x)", "S"},
      {"S(0)", "S"},
      {"S(x0())S", "S,S"},
      {"(x)S", ",S"},
      {"(((x)0)x)S", ",S"},
      {"S(((x)0)x)S", "S,S"},
      {"((()))(S)", ",(S)"},
      {"(()(S))", "(,(S))"},
      {"((S))", "((S))"},
      {"(((S)))", "(((S)))"},
      {"((xS)S)", "((,S),S)"},
      {"(x((xD)))S", "(,((,D))),S"},
      {"(S(S(S)))", "(S,(S,(S)))"},
      {"((S)S)(S)", "((S),S),(S)"},
  };
  for (Row const& row : rows) {
    std::string expected;
    for (char const* p = row.written; *p != '\0'; ++p) {
      expected += *p == 'S' ? kFlagText : *p == 'D' ? kStreamText : *p == '(' ? kGroupHead : *p == ')' ? "]}" : ",";
    }
    EXPECT_EQ(TreeText(row.tree), Around(expected)) << row.tree;
  }
}

TEST_F(SerializerOutlineTree, NothingToWriteIsRefused) {
  for (char const* const tree : {"x", "0", "()", "x0()", "((x)(0()))", "()()"}) {
    ExpectWriterError([&] { TreeText(tree); }, 2000);
  }
}

TEST_F(SerializerOutlineTree, RootWithoutChildrenIsRefused) {
  ExpectWriterError([&] { TreeText(""); }, 2021);
}

TEST_F(SerializerOutlineTree, GroupThatWasAddedTwiceComesTwice) {
  auto group = Group();
  group->AddStaticData(Flag());
  auto root = Group();
  root->AddGroup(group);
  root->AddGroup(group);
  std::string const text = std::string(kGroupHead) + kFlagText + "]}";
  EXPECT_EQ(OutlineOf(*root), Around(text + "," + text));
}

// Depth and size.

TEST(SerializerOutlineSize, DepthHasNoLimit) {
  constexpr int kDepth = 100000;
  auto const root = Group();
  std::shared_ptr<TdjsonGroupImpl> innermost = root;
  std::string expected;
  for (int i = 0; i != kDepth; ++i) {
    auto const inner = Group();
    innermost->AddGroup(inner);
    innermost = inner;
    expected += kGroupHead;
  }
  ExpectWriterError([&] { OutlineOf(*root); }, 2000);
  root->AddStaticData(Flag());
  EXPECT_EQ(OutlineOf(*root), Around("," + std::string(kFlagText)));
  innermost->AddStaticData(Flag());
  expected += kFlagText;
  for (int i = 0; i != kDepth; ++i) {
    expected += "]}";
  }
  EXPECT_EQ(OutlineOf(*root), Around(expected + "," + kFlagText));
}

TEST(SerializerOutlineSize, GoesOutInPiecesOfBoundedSize) {
  auto const root = Group();
  std::string expected;
  for (int i = 0; i != 200; ++i) {
    auto const group = Group();
    root->AddGroup(group);
    root->AddGroup(Group());  // stays out, wherever a piece ends
    expected += (i == 0 ? "" : ",") + std::string(kGroupHead);
    for (int child = 0; child != 150; ++child) {
      group->AddStaticData(Flag());
      expected += (child == 0 ? "" : ",") + std::string(kFlagText);
    }
    expected += "]}";
  }
  std::vector<std::string> pieces;
  EXPECT_EQ(OutlineOf(*root, &pieces), Around(expected));
  ASSERT_EQ(pieces.size(), expected.size() / SerializerOutline::kPieceSize);
  ASSERT_GE(pieces.size(), 3u);
  for (std::string const& piece : pieces) {
    EXPECT_LT(piece.size(), SerializerOutline::kPieceSize + 1000);
  }
}

TEST(SerializerOutlineSize, WhatTheBufferHoldsStaysInFront) {
  SerializerBuffer text;
  text.Put("in front,");
  auto const root = Group();
  root->AddStaticData(Flag());
  SerializerOutline(text, [](SerializerBuffer&) {
    ADD_FAILURE() << "nothing is as long as a piece";
  }).serialize_Outline(*root);
  EXPECT_EQ(text.View(), "in front," + Around(kFlagText));
}

// Such a tree has no end. The groups let go of each other at the end of the test.
class SerializerOutlineLoop : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(SerializerOutlineLoop, GroupInsideItselfIsRefused) {
  auto const [way, length] = GetParam();
  std::vector<std::shared_ptr<TdjsonGroupImpl>> groups{Group()};
  for (int i = 1; i != way + length; ++i) {
    groups.push_back(Group());
    groups[groups.size() - 2]->AddGroup(groups.back());
  }
  groups.back()->AddGroup(groups[static_cast<std::size_t>(way)]);
  ExpectWriterError([&] { OutlineOf(*groups.front()); }, 1034);
  for (auto const& group : groups) {
    group->ResetGroup();
  }
}

INSTANTIATE_TEST_SUITE_P(SerializerOutline, SerializerOutlineLoop,
                         testing::Values(std::pair(0, 1), std::pair(0, 2), std::pair(0, 3), std::pair(1, 1),
                                         std::pair(5, 3), std::pair(3, 17), std::pair(100, 100)));

// Nodes that no converter can add.

/// Claims to be of a kind whose class it has not.
class ForeignStatic : public TdjsonStaticDataImpl {
 public:
  explicit ForeignStatic(int type) : TdjsonStaticDataImpl("F", "f"), mType(type) {}

  ns_sensor::eDataValueType GetType() const override { return static_cast<ns_sensor::eDataValueType>(mType); }
  ITdjsonStaticData_v1* GetActualITdjsonStaticData() override { return this; }

 private:
  int mType;
};

class SerializerOutlineForeign : public SerializerOutlineTree {
 protected:
  class ForeignDynamic : public TdjsonDynamicDataImpl {
   public:
    ForeignDynamic(void* key, int type, unsigned interpolation) : TdjsonDynamicDataImpl(key), mType(type) {
      mDynamicDataFields.sampleCount = 1;
      mDynamicDataFields.interpolation = static_cast<ns_sensor::eInterpolationType>(interpolation);
    }

    ns_sensor::eDataValueType GetType() const override { return static_cast<ns_sensor::eDataValueType>(mType); }
    bool Commit() override { return false; }

   private:
    int mType;
  };

  void ExpectRefused(std::function<void(ListedGroup&)> const& add, int code) {
    ListedGroup root;
    add(root);
    ExpectWriterError([&] { OutlineOf(root); }, code);
    // Far below, behind what is fine, and in a group that would stay out.
    auto inner = std::make_shared<ListedGroup>();
    add(*inner);
    ListedGroup around;
    around.Add(Flag());
    around.Add(std::shared_ptr<TdjsonGroupImpl>(inner));
    ExpectWriterError([&] { OutlineOf(around); }, code);
  }
};

TEST_F(SerializerOutlineForeign, NullNodesAreRefused) {
  ExpectRefused([](ListedGroup& group) { group.Add(std::shared_ptr<TdjsonDynamicDataImpl>()); }, 2001);
  ExpectRefused([](ListedGroup& group) { group.Add(std::shared_ptr<TdjsonStaticDataImpl>()); }, 2002);
  ExpectRefused([](ListedGroup& group) { group.Add(std::shared_ptr<TdjsonGroupImpl>()); }, 2003);
}

TEST_F(SerializerOutlineForeign, ClassThatIsNotTheKindsIsRefused) {
  for (int type = 0; type != 4; ++type) {
    ExpectRefused([&](ListedGroup& group) { group.Add(std::make_shared<ForeignStatic>(type)); }, 2016);
  }
  for (int type = 0; type != 3; ++type) {
    ExpectRefused([&](ListedGroup& group) { group.Add(std::make_shared<ForeignDynamic>(Key(), type, 1)); }, 2016);
  }
}

TEST_F(SerializerOutlineForeign, KindOrInterpolationWithoutANameIsRefused) {
  for (int const type : {4, 5, 255}) {
    ExpectRefused([&](ListedGroup& group) { group.Add(std::make_shared<ForeignStatic>(type)); }, 2026);
  }
  for (int const type : {3, 4, 255}) {
    ExpectRefused([&](ListedGroup& group) { group.Add(std::make_shared<ForeignDynamic>(Key(), type, 1)); }, 2026);
  }
  for (unsigned const interpolation : {0u, 3u, 255u}) {
    ExpectRefused([&](ListedGroup& group) { group.Add(std::make_shared<ForeignDynamic>(Key(), 0, interpolation)); },
                  2026);
  }
}

TEST_F(SerializerOutlineForeign, KindOfChildThatIsNoneIsRefused) {
  for (int const type : {3, 4, 255}) {
    ExpectRefused(
        [&](ListedGroup& group) {
          group.Add(Flag());
          group.order.front().type = static_cast<ns_sensor::eGroupChildType>(type);
        },
        2020);
  }
}

}  // namespace
}  // namespace SK_PLUGIN
