#include "BVHParser.h"

#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <sstream>

#include "SK_PluginException.h"
#include "TempFolder.h"

namespace ns_sensor {
namespace {

std::string TextOf(SkeletonNode const& node) {
  std::ostringstream text;
  text << node.GetName() << '<' << node.GetParentName() << '(' << node.GetOffset()[0] << ' ' << node.GetOffset()[1]
       << ' ' << node.GetOffset()[2] << ")p" << static_cast<int>(node.GetPositionOrder()) << 'r'
       << static_cast<int>(node.GetRotationOrder());
  for (auto const& child : node.GetChildren()) {
    text << '[' << TextOf(*child) << ']';
  }
  return text.str();
}

class BVHParser : public testing::Test {
 protected:
  /// The skeleton as text and the line behind it, or the error.
  std::string Parsed(std::string const& content) {
    BVHInput input(mFolder.Write("input.bvh", content));
    try {
      std::string const text = TextOf(*ParseSkeleton(input));
      return text + " then " + std::string(input.ReadLine());
    } catch (SK_PLUGIN::SK_PluginException const& error) {
      return std::to_string(error.GetErrorCode()) + " at " + std::to_string(error.GetFileOffset()) + ',' +
             std::to_string(error.GetFileLineNo());
    }
  }
  /// The same for the lines of the root joint.
  std::string ParsedBody(std::string const& body) { return Parsed("HIERARCHY\nROOT r\n" + body); }

  senmark_test::TempFolder mFolder;
};

constexpr char const* kHierarchyError = "1509 at -1,-1";
constexpr char const* kHeadError = "1001 at -1,-1";

TEST_F(BVHParser, ReadsAWholeHierarchy) {
  EXPECT_EQ(Parsed("HIERARCHY\n"
                   "ROOT Hips\n"
                   "{\n"
                   "\tOFFSET 0.00 1.5 -2\n"
                   "\tCHANNELS 6 Xposition Yposition Zposition Zrotation Xrotation Yrotation\n"
                   "\tJOINT Leg\n"
                   "\t{\n"
                   "\t\tOFFSET 3 0 0\n"
                   "\t\tCHANNELS 3 Zrotation Yrotation Xrotation\n"
                   "\t\tEnd Site\n"
                   "\t\t{\n"
                   "\t\t\tOFFSET 0 -4 0\n"
                   "\t\t}\n"
                   "\t}\n"
                   "\tJOINT Hand\n"
                   "\t{\n"
                   "\t}\n"
                   "}\n"
                   "MOTION\n"),
            "Hips<(0 1.5 -2)p0r4[Leg<Hips(3 0 0)p-1r5[LegEnd<Leg(0 -4 0)p-1r-1]][Hand<Hips(0 0 0)p-1r-1] then MOTION");
}

TEST_F(BVHParser, TakesCarriageReturnsAsWhiteSpace) {
  EXPECT_EQ(Parsed("HIERARCHY\r\nROOT Hips\r\n{\r\n OFFSET 1 2 3\r\n CHANNELS 3 Xrotation Yrotation Zrotation\r\n"
                   " End Site\r\n {\r\n OFFSET 4 5 6\r\n }\r\n}\r\nMOTION\r\n"),
            "Hips<(1 2 3)p-1r0[HipsEnd<Hips(4 5 6)p-1r-1] then MOTION\r");
}

TEST_F(BVHParser, HeadNeedsItsTwoWordsFirstOnTheirLines) {
  EXPECT_EQ(Parsed(" \t HIERARCHY of\n  ROOT r x\n{\n}\n"), "r<(0 0 0)p-1r-1 then ");
  EXPECT_EQ(Parsed("HIERARCHY\nROOT\n{\n}\n"), "<(0 0 0)p-1r-1 then ");
  for (char const* const content :
       {"", "\n", "HIERARCHY", "HIERARCHY\n", "HIERARCHY\n\nROOT r\n{\n}\n", "\nHIERARCHY\nROOT r\n{\n}\n",
        "HIERARCHYROOT\nROOT r\n{\n}\n", "hierarchy\nROOT r\n{\n}\n", "x HIERARCHY\nROOT r\n{\n}\n",
        "HIERARCHY ROOT r\n{\n}\n", "HIERARCHY\nJOINT r\n{\n}\n", "HIERARCHY\nROOTr\n{\n}\n"}) {
    EXPECT_EQ(Parsed(content), kHeadError) << content;
  }
}

TEST_F(BVHParser, BodyBeginsWithALineThatHasABrace) {
  EXPECT_EQ(ParsedBody("x{y OFFSET\n}\n"), "r<(0 0 0)p-1r-1 then ");
  EXPECT_EQ(ParsedBody("{ OFFSET 1 2 3\n}\n"), "r<(0 0 0)p-1r-1 then ");
  for (char const* const body : {"", "\n{\n}\n", "}\n", "OFFSET 1 2 3\n{\n}\n"}) {
    EXPECT_EQ(ParsedBody(body), kHierarchyError) << body;
  }
  EXPECT_EQ(ParsedBody("{\nJOINT a\n}\n}\n"), kHierarchyError);
  EXPECT_EQ(ParsedBody("{\nEnd Site\n}\n}\n"), kHierarchyError);
}

TEST_F(BVHParser, ClosingBraceIsTheFirstWordOfItsLine) {
  EXPECT_EQ(ParsedBody("{\n\t\t}\nnext\n"), "r<(0 0 0)p-1r-1 then next");
  EXPECT_EQ(ParsedBody("{\n} more words }\nnext\n"), "r<(0 0 0)p-1r-1 then next");
  EXPECT_EQ(ParsedBody("{\n}}\nx }\n}\nnext\n"), "r<(0 0 0)p-1r-1 then next");
}

TEST_F(BVHParser, OtherLinesInABodyMeanNothing) {
  EXPECT_EQ(ParsedBody("{\n\n \t\r\nBANANA 1 2\noffset 1 2 3\nXOFFSET 1 2 3\n{\nSite\n}\nnext\n"),
            "r<(0 0 0)p-1r-1 then next");
  EXPECT_EQ(ParsedBody("{\n" + std::string(600000, 'x') + "\n}\nnext\n"), "r<(0 0 0)p-1r-1 then next");
}

struct OffsetLine {
  char const* name;
  char const* line;
  char const* offset;  ///< null: refused
};

std::ostream& operator<<(std::ostream& out, OffsetLine const& row) {
  return out << row.line;
}

class BVHOffsetLine : public BVHParser, public testing::WithParamInterface<OffsetLine> {};

TEST_P(BVHOffsetLine, HasThreeNumbersAndNothingBehindThem) {
  char const* const offset = GetParam().offset;
  EXPECT_EQ(ParsedBody(std::string("{\nOFFSET") + GetParam().line + "\n}\n"),
            offset == nullptr ? kHierarchyError : "r<(" + std::string(offset) + ")p-1r-1 then ");
}

OffsetLine const kOffsetLines[] = {
    {"Three", " 1 2 3", "1 2 3"},
    {"ThreeAndSpace", "\t1\t-2.5\t3e2 \r", "1 -2.5 300"},
    {"Four", " 1 2 3 4", nullptr},
    {"FourthIsAWord", " 1 2 3 x", nullptr},
    {"FourthIsStuckToTheThird", " 1 2 3x", nullptr},
    {"TooManyByASecondPoint", " 1.5.2 3 4", nullptr},
    {"Two", " 1 2", "1 2 0"},
    {"TwoAndSpace", " 1 2 ", "1 2 0"},
    {"None", "", "0 0 0"},
    {"WordIsZeroAndEndsTheLine", " 1 x 3", "1 0 0"},
    {"WordsBehindAWordAreNotSeen", " x 1 2 3 4 5", "0 0 0"},
    {"TooLargeIsTheLargestAndEndsTheLine", " 1 -1e999 3", "1 -1.79769e+308 0"},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHOffsetLine, testing::ValuesIn(kOffsetLines),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(BVHParser, LastOffsetCounts) {
  EXPECT_EQ(ParsedBody("{\nOFFSET 1 2 3\nOFFSET 4 5 6\n}\n"), "r<(4 5 6)p-1r-1 then ");
}

struct ChannelLine {
  char const* name;
  char const* line;
  int position;
  int rotation;
};

std::ostream& operator<<(std::ostream& out, ChannelLine const& row) {
  return out << row.line;
}

class BVHChannelLine : public BVHParser, public testing::WithParamInterface<ChannelLine> {};

TEST_P(BVHChannelLine, SetsTheOrdersThatItSpells) {
  EXPECT_EQ(ParsedBody(std::string("{\nCHANNELS ") + GetParam().line + "\n}\n"),
            "r<(0 0 0)p" + std::to_string(GetParam().position) + 'r' + std::to_string(GetParam().rotation) + " then ");
}

ChannelLine const kChannelLines[] = {
    {"PositionFirst", "6 Xposition Yposition Zposition Zrotation Yrotation Xrotation", 0, 5},
    {"RotationFirst", "6 Zrotation Xrotation Yrotation Xposition Yposition Zposition", 0, 4},
    {"OtherPositionOrder", "6 Zposition Xposition Yposition Yrotation Xrotation Zrotation", 4, 3},
    {"SixInNoOrder", "6 Xposition Xrotation Yposition Yrotation Zposition Zrotation", -1, -1},
    {"SixWithoutPositions", "6 Xrotation Yrotation Zrotation", -1, 0},
    {"ThreeRotations", "3 Xrotation Zrotation Yrotation", -1, 1},
    {"ThreePositionsAreNoChannels", "3 Xposition Yposition Zposition", -1, -1},
    {"ThreeSetsNoPosition", "3 Xposition Yposition Zposition Yrotation Zrotation Xrotation", -1, 2},
    {"ThreeInNoOrder", "3 Xrotation Yrotation Yrotation", -1, -1},
    {"ThreeAndNothing", "3", -1, -1},
    {"CountWithMore", "+03.5 Xrotation Yrotation Zrotation", -1, 0},
    {"WordStuckToTheCount", "3Xrotation Yrotation Zrotation", -1, 0},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHChannelLine, testing::ValuesIn(kChannelLines),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(BVHParser, ChannelsAreThreeOrSix) {
  for (char const* const count :
       {"", "0", "1", "2", "4", "5", "7", "9", "36", "-3", "-6", "x", "six", "0x6", "4294967299"}) {
    EXPECT_EQ(ParsedBody("{\nCHANNELS " + std::string(count) + " Xrotation Yrotation Zrotation\n}\n"), kHierarchyError)
        << count;
  }
}

TEST_F(BVHParser, ThreeChannelsLeaveAPositionThatWasSet) {
  EXPECT_EQ(ParsedBody("{\nCHANNELS 6 Zposition Yposition Xposition Xrotation Yrotation Zrotation\n"
                       "CHANNELS 3 Zrotation Yrotation Xrotation\n}\n"),
            "r<(0 0 0)p5r5 then ");
}

TEST_F(BVHParser, EndSiteIsNamedAfterItsJoint) {
  EXPECT_EQ(ParsedBody("{\nJOINT Hand\n{\nEnd Site\n{\nOFFSET 1 2 3\n}\n}\n}\n"),
            "r<(0 0 0)p-1r-1[Hand<r(0 0 0)p-1r-1[HandEnd<Hand(1 2 3)p-1r-1]] then ");
  EXPECT_EQ(ParsedBody("{\nEnd  Site 7\n{\n}\nEnd Site\n{\n}\n}\n"),
            "r<(0 0 0)p-1r-1[rEnd<r(0 0 0)p-1r-1][rEnd<r(0 0 0)p-1r-1] then ");
  for (char const* const line : {"End", "End site", "End Sites", "End  \r", "End SiteSite"}) {
    EXPECT_EQ(ParsedBody("{\n" + std::string(line) + "\n{\n}\n}\n"), kHierarchyError) << line;
  }
}

TEST_F(BVHParser, EndSiteHasNeitherChannelsNorJointsButMayHaveEnds) {
  EXPECT_EQ(ParsedBody("{\nEnd Site\n{\nCHANNELS 3 Xrotation Yrotation Zrotation\nCHANNELS 99\nJOINT a\n"
                       "End Site\n{\nOFFSET 1 2 3\n}\n}\n}\n"),
            "r<(0 0 0)p-1r-1[rEnd<r(0 0 0)p-1r-1[rEndEnd<rEnd(1 2 3)p-1r-1]] then ");
  EXPECT_EQ(ParsedBody("{\nEnd Site\n{\nOFFSET 1 2 3 4\n}\n}\n"), kHierarchyError);
}

TEST_F(BVHParser, JointsTakeAnyWordAsName) {
  EXPECT_EQ(ParsedBody("{\nJOINT a.b-c\xff more\n{\n}\nJOINT\n{\n}\nJOINT }\n{\n}\n}\n"),
            "r<(0 0 0)p-1r-1[a.b-c\xff<r(0 0 0)p-1r-1][<r(0 0 0)p-1r-1][}<r(0 0 0)p-1r-1] then ");
}

TEST_F(BVHParser, FileThatEndsInsideAJointIsRefused) {
  for (char const* const body : {"{\n", "{\nOFFSET 1 2 3\n", "{\nJOINT a\n", "{\nJOINT a\n{\n}\n", "{\nJOINT a\n{\n",
                                 "{", "{\nJOINT a", "{\nEnd Site", "{\nJOINT a\n{"}) {
    EXPECT_EQ(ParsedBody(body), kHierarchyError) << body;
  }
}

TEST_F(BVHParser, LastLineWithoutLineEndClosesAllJoints) {
  EXPECT_EQ(ParsedBody("{\n}"), "r<(0 0 0)p-1r-1 then ");
  EXPECT_EQ(ParsedBody("{\nOFFSET 1 2 3"), "r<(1 2 3)p-1r-1 then ");
  EXPECT_EQ(ParsedBody("{\nJOINT a\n{\nEnd Site\n{\nOFFSET 1 2 3"),
            "r<(0 0 0)p-1r-1[a<r(0 0 0)p-1r-1[aEnd<a(1 2 3)p-1r-1]] then ");
}

TEST_F(BVHParser, ReadsAMillionNestedJoints) {
  constexpr int kDepth = 1000000;
  std::string content = "HIERARCHY\nROOT r\n{\n";
  for (int i = 0; i != kDepth; ++i) {
    content += "JOINT j\n{\n";
  }
  content += "OFFSET 1 2 3\n";
  std::string closed = content;
  for (int i = 0; i <= kDepth; ++i) {
    closed += "}\n";
  }
  BVHInput input(mFolder.Write("deep.bvh", closed));
  auto const skeleton = ParseSkeleton(input);
  SkeletonNode const* node = skeleton.get();
  int depth = 0;
  for (; !node->GetChildren().empty(); ++depth) {
    node = node->GetChildren().front().get();
  }
  EXPECT_EQ(depth, kDepth);
  EXPECT_EQ(node->GetOffset(), (SkeletonNode::Offset{1, 2, 3}));
  EXPECT_EQ(Parsed(content), kHierarchyError);
}

TEST_F(BVHParser, NamesFromTheJointAboveAreBoundedTogether) {
  auto const parse = [this](std::string const& body) {
    BVHInput input(mFolder.Write("input.bvh", "HIERARCHY\nROOT " + body));
    return ParseSkeleton(input);
  };
  auto const repeated = [](int count, std::string const& text) {
    std::string all;
    for (int i = 0; i != count; ++i) {
      all += text;
    }
    return all;
  };
  auto const nested = [&](int count) {
    return "r\n{\n" + repeated(count, "End Site\n{\n") + repeated(count, "}\n") + "}\n";
  };
  EXPECT_EQ(parse(nested(1000))->GetChildren().size(), 1u);
  EXPECT_THROW(parse(nested(100000)), std::bad_alloc);
  std::string const longName(1024 * 1024, 'n');
  EXPECT_EQ(parse(longName + "\n{\n" + repeated(32, "JOINT j\n{\n}\n") + "}\n")->GetChildren().size(), 32u);
  EXPECT_THROW(parse(longName + "\n{\n" + repeated(33, "JOINT j\n{\n}\n") + "}\n"), std::bad_alloc);
  EXPECT_THROW(parse(longName + "\n{\n" + repeated(33, "End Site\n{\n}\n") + "}\n"), std::bad_alloc);
  // Names of ordinary length do not count, however many there are.
  std::string const ordinary(1024, 'n');
  EXPECT_EQ(parse(ordinary + "\n{\n" + repeated(40000, "JOINT j\n{\n}\n") + "}\n")->GetChildren().size(), 40000u);
}

TEST_F(BVHParser, BuilderReadsABodyAlone) {
  BVHInput input(mFolder.Write("body.bvh", "{\nCHANNELS 3 Xrotation Yrotation Zrotation\n}\nnext\n"));
  EXPECT_EQ(TextOf(*IterativeNodeBuilder(input, "a", true)), "a<(0 0 0)p-1r-1");
  EXPECT_EQ(input.ReadLine(), "next");
}

}  // namespace
}  // namespace ns_sensor
