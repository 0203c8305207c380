#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "HierarchyReader.h"
#include "MotionHeader.h"
#include "TempFolder.h"

namespace senmark_motion {
namespace {

/// A line for each joint: name, parent, offset, channels.
std::string Describe(Skeleton const& skeleton) {
  std::ostringstream out;
  for (Joint const& joint : skeleton.joints) {
    out << (joint.isEndSite ? "end " : "") << joint.name;
    if (joint.parent != Joint::kNoParent) {
      out << " < " << skeleton.joints[joint.parent].name;
    }
    if (joint.hasOffset) {
      out << " at " << joint.offset[0] << ',' << joint.offset[1] << ',' << joint.offset[2];
    }
    if (joint.hasChannels) {
      out << " from " << joint.firstChannel << ": " << ChannelList(joint) << " (" << RotationOrder(joint) << ')';
    }
    out << '\n';
  }
  return out.str();
}

class MotionHierarchy : public testing::Test {
 protected:
  std::string Read(std::string const& text) const {
    kit::Input const input(mFolder.Write("file.bvh", text), "bvh", "uid");
    Source source(input);
    return Describe(ReadHierarchy(source));
  }

  MotionHeader ReadHead(std::string const& text, std::string* rest = nullptr) const {
    kit::Input const input(mFolder.Write("file.bvh", text), "bvh", "uid");
    Source source(input);
    MotionHeader const header = ReadMotionHeader(source);
    if (rest != nullptr) {
      *rest = source.tokens();
    }
    return header;
  }

  senmark_test::TempFolder mFolder;
};

TEST_F(MotionHierarchy, IsReadAsUsual) {
  EXPECT_EQ(Read("HIERARCHY\nROOT Hips\n{\n\tOFFSET 0 1.5 -2\n\tCHANNELS 6 Xposition Yposition Zposition Zrotation "
                 "Xrotation Yrotation\n\tJOINT Left.Leg\n\t{\n\t\tOFFSET 1 2 3\n\t\tCHANNELS 3 Zrotation Xrotation "
                 "Yrotation\n\t\tEnd Site\n\t\t{\n\t\t\tOFFSET 4 5 6\n\t\t}\n\t}\n}\nMOTION\n"),
            "Hips at 0,1.5,-2 from 0: Xposition Yposition Zposition Zrotation Xrotation Yrotation (ZXY)\n"
            "Left.Leg < Hips at 1,2,3 from 6: Zrotation Xrotation Yrotation (ZXY)\n"
            "end Left.Leg End Site < Left.Leg at 4,5,6\n");
}

TEST_F(MotionHierarchy, OneLineIsEnough) {
  EXPECT_EQ(Read("HIERARCHY ROOT a { OFFSET 0 0 0 CHANNELS 1 Yrotation End Site { OFFSET 1 1 1 } } MOTION"),
            "a at 0,0,0 from 0: Yrotation (Y)\nend a End Site < a at 1,1,1\n");
}

TEST_F(MotionHierarchy, OneWordALineIsEnough) {
  EXPECT_EQ(Read("hierarchy\rroot a\r{\roffset\r0\r1\r2\rchannels\r2\rXROTATION\rzPosition\r}\rmotion\r"),
            "a at 0,1,2 from 0: XROTATION zPosition (X)\n");
}

TEST_F(MotionHierarchy, SeveralRootsAndAnyCountOfChannels) {
  EXPECT_EQ(Read("HIERARCHY\nROOT a\n{\nCHANNELS 0\n}\nROOT a\n{\nOFFSET 1 1 1\nJOINT b\n{\nCHANNELS 7 Xposition "
                 "Yposition Zposition Zrotation Yrotation Xrotation Xscale\n}\nCHANNELS 1 Wrotation\n}\nMOTION\n"),
            "a from 0:  ()\n"
            "a at 1,1,1 from 7: Wrotation ()\n"
            "b < a from 0: Xposition Yposition Zposition Zrotation Yrotation Xrotation Xscale (ZYX)\n");
}

TEST_F(MotionHierarchy, NamesHaveAnyCharacters) {
  EXPECT_EQ(
      Read("HIERARCHY\nROOT My Hips: 1.5 # \xC3\xA4\n{\nJOINT }\n{\n}\nJOINT JOINT\n{\n}\nJOINT\n{\n}\n}\nMOTION"),
      "My Hips: 1.5 # \xC3\xA4\n} < My Hips: 1.5 # \xC3\xA4\nJOINT < My Hips: 1.5 # \xC3\xA4\n"
      "unnamed < My Hips: 1.5 # \xC3\xA4\n");
}

TEST_F(MotionHierarchy, EndSitesMayLackAnOffsetAndHaveNames) {
  EXPECT_EQ(Read("HIERARCHY\nROOT a\n{\nEnd Site\n{\n}\nEND SITE tip\n{\nEnd Site\n{\n}\n}\n}\nMOTION"),
            "a\nend a End Site < a\nend tip < a\nend End Site < tip\n");
}

struct Refused {
  char const* name;
  char const* text;
  std::int64_t offset;
  std::int64_t line;
};

void PrintTo(Refused const& refused, std::ostream* out) {
  *out << refused.name;
}

std::string NameOf(testing::TestParamInfo<Refused> const& info) {
  return info.param.name;
}

Refused const kRefused[] = {
    {"Empty", "", 0, 1},
    {"OtherWord", "\nMOTION\n", 1, 2},
    {"NoRoot", "HIERARCHY\nMOTION\n", 10, 2},
    {"JointForRoot", "HIERARCHY\nJOINT a\n", 10, 2},
    {"NoBrace", "HIERARCHY\nROOT a\nOFFSET 0 0 0\n", 17, 3},
    {"NoEnd", "HIERARCHY\nROOT a\n{\n", 19, 4},
    {"BraceTooMany", "HIERARCHY\nROOT a\n{\n}\n}\nMOTION", 21, 5},
    {"MotionInside", "HIERARCHY\nROOT a\n{\nMOTION\n", 19, 4},
    {"RootInside", "HIERARCHY\nROOT a\n{\nROOT b\n{\n}\n}\nMOTION", 19, 4},
    {"EndWithoutSite", "HIERARCHY\nROOT a\n{\nEnd\n{\n}\n}\nMOTION", 23, 5},
    {"OffsetOfTwo", "HIERARCHY\nROOT a\n{\nOFFSET 1 2\n}\nMOTION", 30, 5},
    {"OffsetOfFour", "HIERARCHY\nROOT a\n{\nOFFSET 1 2 3 4\n}\nMOTION", 32, 4},
    {"OffsetOfLetters", "HIERARCHY\nROOT a\n{\nOFFSET 1 x 3\n}\nMOTION", 28, 4},
    {"OffsetWithCommas", "HIERARCHY\nROOT a\n{\nOFFSET 1, 2, 3\n}\nMOTION", 26, 4},
    {"OffsetNotANumber", "HIERARCHY\nROOT a\n{\nOFFSET 1 nan 3\n}\nMOTION", 28, 4},
    {"OffsetTooLarge", "HIERARCHY\nROOT a\n{\nOFFSET 1 2 -1e16\n}\nMOTION", 30, 4},
    {"SecondOffset", "HIERARCHY\nROOT a\n{\nOFFSET 1 2 3\nOFFSET 1 2 3\n}\nMOTION", 32, 5},
    {"SecondChannels", "HIERARCHY\nROOT a\n{\nCHANNELS 0\nCHANNELS 0\n}\nMOTION", 30, 5},
    {"ChannelsOfLetters", "HIERARCHY\nROOT a\n{\nCHANNELS x\n}\nMOTION", 28, 4},
    {"ChannelsNegative", "HIERARCHY\nROOT a\n{\nCHANNELS -1\n}\nMOTION", 28, 4},
    {"ChannelsAndAHalf", "HIERARCHY\nROOT a\n{\nCHANNELS 1.5\n}\nMOTION", 28, 4},
    {"TooManyChannels", "HIERARCHY\nROOT a\n{\nCHANNELS 100001\n}\nMOTION", 28, 4},
    {"TooFewChannelNames", "HIERARCHY\nROOT a\n{\nCHANNELS 2 Xrotation\n}\nMOTION", 40, 5},
    {"TooManyChannelNames", "HIERARCHY\nROOT a\n{\nCHANNELS 1 Xrotation Yrotation\n}\nMOTION", 40, 4},
    {"UnknownWord", "HIERARCHY\nROOT a\n{\nSCALE 1\n}\nMOTION", 19, 4},
    {"TextBehindTheLastRoot", "HIERARCHY\nROOT a\n{\n}\nend\nMOTION", 21, 5},
};

class MotionHierarchyRefused : public MotionHierarchy, public testing::WithParamInterface<Refused> {};

TEST_P(MotionHierarchyRefused, WithItsPlace) {
  try {
    Read(GetParam().text);
    FAIL();
  } catch (kit::Failure const& failure) {
    EXPECT_EQ(failure.offset(), GetParam().offset) << failure.what();
    EXPECT_EQ(failure.line(), GetParam().line) << failure.what();
    EXPECT_EQ(failure.code(), kit::Failure::kMalformedInput);
  }
}

INSTANTIATE_TEST_SUITE_P(MotionHierarchy, MotionHierarchyRefused, testing::ValuesIn(kRefused), NameOf);

std::string Joints(std::size_t count) {
  std::string text = "HIERARCHY\nROOT a\n{\n";
  for (std::size_t i = 1; i < count; ++i) {
    text += "JOINT b\n{\n}\n";
  }
  return text + "}\nMOTION\n";
}

TEST_F(MotionHierarchy, LimitsAreKept) {
  EXPECT_NO_THROW(Read(Joints(kMostJoints)));
  EXPECT_THROW(Read(Joints(kMostJoints + 1)), kit::Failure);

  auto const named = [](std::size_t length) {
    return "HIERARCHY\nROOT " + std::string(length, 'x') + "\n{\n}\nMOTION";
  };
  EXPECT_NO_THROW(Read(named(kLongestName)));
  EXPECT_THROW(Read(named(kLongestName + 1)), kit::Failure);

  auto const channels = [](std::size_t count) {
    std::string text = "HIERARCHY\nROOT a\n{\nCHANNELS " + std::to_string(count);
    for (std::size_t i = 0; i != count; ++i) {
      text += "\nx";
    }
    return text + "\n}\nMOTION\n";
  };
  EXPECT_NO_THROW(Read(channels(kMostChannels)));
  EXPECT_THROW(Read(channels(kMostChannels + 1)), kit::Failure);
}

TEST_F(MotionHierarchy, DepthHasNoLimitOfItsOwn) {
  std::string text = "HIERARCHY\nROOT a\n{\n";
  for (int i = 0; i != 10000; ++i) {
    text += "JOINT b\n{\n";
  }
  for (int i = 0; i != 10001; ++i) {
    text += "}\n";
  }
  EXPECT_NO_THROW(Read(text + "MOTION\n"));
}

TEST_F(MotionHierarchy, HeaderIsReadInAnyLayout) {
  for (char const* const text : {
           "\nFrames: 12\nFrame Time: .0333\n1 2",
           "\nFrames:\t12\r\nFrame Time:\t.0333\r\n1 2",
           "\n\n\nFrames:12   \n\n  Frame Time:.0333   \n1 2",
           "Frames: 12 Frame Time: .0333 1 2",
           "\nFrame Time: .0333\nFrames: 12\n1 2",
           "\nFRAMES : 12\nframe  time : .0333\n1 2",
           "\n# by hand\nFrames: 12 # twelve\nFrame Time: .0333\n1 2",
           "\rFrames: 12\rFrameTime: .0333\r1 2",
       }) {
    std::string rest;
    MotionHeader const header = ReadHead(text, &rest);
    EXPECT_EQ(header.frameCount, 12U) << text;
    EXPECT_EQ(header.frameTime.text, ".0333") << text;
    EXPECT_EQ(rest.substr(rest.find('1'), 2), "1 ") << text;
    EXPECT_EQ(std::string(text).substr(static_cast<std::size_t>(header.frameTimeOffset), 5), ".0333") << text;
  }
}

TEST_F(MotionHierarchy, HeaderIsReadUpToTheFrames) {
  std::string rest;
  ReadHead("Frames: 1\nFrame Time: 1   \n1 2 3", &rest);
  EXPECT_EQ(rest, "   \n1 2 ");
}

Refused const kRefusedHeaders[] = {
    {"Nothing", "\n", 1, 2},
    {"NoFrameTime", "\nFrames: 1\n1 2 3\n", 11, 3},
    {"NoFrames", "\nFrame Time: 1\n1 2 3\n", 15, 3},
    {"EndBehindTheCount", "\nFrames: 1\n", 11, 3},
    {"CountOfLetters", "\nFrames: x\n", 9, 2},
    {"CountNegative", "\nFrames: -1\n", 9, 2},
    {"CountMissing", "\nFrames:\nFrame Time: 1\n", 8, 2},
    {"CountTooLong", "\nFrames: 1234567890123456\n", 9, 2},
    {"NoColon", "\nFrames 1\n", 1, 2},
    {"TimeOfLetters", "\nFrames: 1\nFrame Time: x\n", 23, 3},
    {"TimeWithAComma", "\nFrames: 1\nFrame Time: 0,04\n", 23, 3},
    {"TimeNotANumber", "\nFrames: 1\nFrame Time: nan\n", 23, 3},
    {"TwoCounts", "\nFrames: 1\nFrames: 1\n", 18, 3},
    {"TwoTimes", "\nFrame Time: 1\nFrame Time: 1\n", 26, 3},
};

class MotionHeaderRefused : public MotionHierarchy, public testing::WithParamInterface<Refused> {};

TEST_P(MotionHeaderRefused, WithItsPlace) {
  try {
    ReadHead(GetParam().text);
    FAIL();
  } catch (kit::Failure const& failure) {
    EXPECT_EQ(failure.offset(), GetParam().offset) << failure.what();
    EXPECT_EQ(failure.line(), GetParam().line) << failure.what();
  }
}

INSTANTIATE_TEST_SUITE_P(MotionHierarchy, MotionHeaderRefused, testing::ValuesIn(kRefusedHeaders), NameOf);

}  // namespace
}  // namespace senmark_motion
