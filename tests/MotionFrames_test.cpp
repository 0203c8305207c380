#include <gtest/gtest.h>

#include <cmath>
#include <iterator>
#include <random>
#include <sstream>
#include <string>

#include "FrameReader.h"
#include "TempFolder.h"

namespace senmark_motion {
namespace {

class MotionFrames : public testing::Test {
 protected:
  /// Frames of three channels unless told otherwise: offset and numbers of each.
  std::string Read(std::string const& text, std::size_t channels = 3,
                   std::size_t pieceSize = Source::kPieceSize) const {
    kit::Input const input(mFolder.Write("file.bvh", text), "bvh", "uid");
    Source source(input, pieceSize);
    FrameReader frames(source, channels);
    std::ostringstream out;
    for (std::vector<double> values; frames.next(values); values.clear()) {
      out << frames.offset() << ':';
      for (double const value : values) {
        out << ' ' << value;
      }
      out << '\n';
    }
    return out.str();
  }

  senmark_test::TempFolder mFolder;
};

struct Layout {
  char const* name;
  char const* text;
  char const* frames;
};

void PrintTo(Layout const& layout, std::ostream* out) {
  *out << layout.name;
}

Layout const kLayouts[] = {
    {"LineFeeds", "1 2 3\n4 5 6\n", "0: 1 2 3\n6: 4 5 6\n"},
    {"NoLastLineEnd", "1 2 3\n4 5 6", "0: 1 2 3\n6: 4 5 6\n"},
    {"PairsOfEnds", "1 2 3\r\n4 5 6\r\n", "0: 1 2 3\n7: 4 5 6\n"},
    {"CarriageReturns", "1 2 3\r4 5 6\r", "0: 1 2 3\n6: 4 5 6\n"},
    {"MixedEnds", "1 2 3\r\n4 5 6\n7 8 9\r1 1 1", "0: 1 2 3\n7: 4 5 6\n13: 7 8 9\n19: 1 1 1\n"},
    {"TabsAndBlanks", "\t1\t 2   3 \t\n 4 5 6 ", "1: 1 2 3\n13: 4 5 6\n"},
    {"EmptyLines", "\n\n1 2 3\n \n\r\n4 5 6\n\n", "2: 1 2 3\n12: 4 5 6\n"},
    {"Comments", "# 1 2\n1 2 3\n // x\n4 5 6 # 7\n", "6: 1 2 3\n18: 4 5 6\n"},
    {"FrameOverLines", "1 2\n3\n4\n5\n6\n", "0: 1 2 3\n6: 4 5 6\n"},
    {"FramesOnOneLine", "1 2 3 4 5 6\n7 8 9", "0: 1 2 3\n6: 4 5 6\n12: 7 8 9\n"},
    {"Spellings", "-.5 +1. 1E-007\n1.5e+2 -0 1e2", "0: -0.5 1 1e-07\n15: 150 -0 100\n"},
    {"ShortOnes", "1.25 -2.5\t3.125\n-0.0 7.5 8.25\r\n", "0: 1.25 -2.5 3.125\n16: -0 7.5 8.25\n"},
    {"ShortOnesAndOthers", "1.5 2 3.5\n4.5  5.5 6.5\n1.5 .5 2.5\n1.5\n2.5 3.5",
     "0: 1.5 2 3.5\n10: 4.5 5.5 6.5\n23: 1.5 0.5 2.5\n34: 1.5 2.5 3.5\n"},
    {"ShortOnesAndComments", "1.5 2.5 3.5 # 4.5\n1.5 2.5 // 3.5\n4.5\n", "0: 1.5 2.5 3.5\n18: 1.5 2.5 4.5\n"},
    {"ShortFramesOnOneLine", "1.5 2.5 3.5 4.5 5.5 6.5 7.5 8.5 9.5\n",
     "0: 1.5 2.5 3.5\n12: 4.5 5.5 6.5\n24: 7.5 8.5 9.5\n"},
    {"NotNumbers", "nan 1 2\n-inf 1.#QNAN 3", "0: nan 1 2\n8: -inf nan 3\n"},
    {"Nothing", "", ""},
    {"OnlyBlanks", " \n\t\r\n", ""},
};

class MotionFramesLayout : public MotionFrames, public testing::WithParamInterface<Layout> {};

TEST_P(MotionFramesLayout, IsRead) {
  EXPECT_EQ(Read(GetParam().text), GetParam().frames);
}

TEST_P(MotionFramesLayout, IsReadWhereverAPieceEnds) {
  for (std::size_t pieceSize = 7; pieceSize != 30; ++pieceSize) {
    EXPECT_EQ(Read(GetParam().text, 3, pieceSize), GetParam().frames) << pieceSize;
  }
}

INSTANTIATE_TEST_SUITE_P(MotionFrames, MotionFramesLayout, testing::ValuesIn(kLayouts),
                         [](auto const& row) { return row.param.name; });

struct Refused {
  char const* name;
  char const* text;
  std::int64_t offset;
  std::int64_t line;
  std::int32_t code = kit::Failure::kMalformedInput;
};

void PrintTo(Refused const& refused, std::ostream* out) {
  *out << refused.name;
}

Refused const kRefused[] = {
    {"OneTooFew", "1 2 3\n4 5\n6 7 8\n", 6, 2},
    {"OneTooMany", "1 2 3\n4 5 6 7\n8 9 1\n", 12, 2},
    {"TooFewAtTheEnd", "1 2 3\n4 5\n", 6, 2},
    {"CutAtTheEnd", "1 2 3\n4 5", 6, 2},
    {"OneMoreAtTheEnd", "1 2 3 4", 6, 1},
    {"BrokenFrameEndsInALine", "1\n2 3 4\n5 6\n", 0, 1},
    {"Letters", "1 2 3\n4 x 6\n", 8, 2},
    {"Comma", "1 2 3\r\n4 5,5 6\r\n", 9, 2},
    {"NumberAndLetters", "1 2 3\n4 5 6a\n", 10, 2},
    {"Brace", "1 2 3\n}\n", 6, 2},
    {"TooLarge", "1 2 3\n-1e16 2 3\n", 6, 2, kit::Failure::kRefused},
    {"ShortOneTooFew", "1.5 2.5 3.5\n4.5 5.5\n6.5 7.5 8.5\n", 12, 2},
    {"ShortOneTooMany", "1.5 2.5 3.5\n4.5 5.5 6.5 7.5\n8.5 9.5 1.5\n", 24, 2},
    {"ShortOneAndLetters", "1.5 2.5 3.5\n4.5 5.5a 6.5                \n", 16, 2},
    {"ShortOneAndNothing", "1.5 2.5 3.5\n4.5 - 6.5                  \n", 16, 2},
    {"HashInANumber", "1 2 3#\n", 4, 1},
};

class MotionFramesRefused : public MotionFrames, public testing::WithParamInterface<Refused> {};

TEST_P(MotionFramesRefused, WithItsPlace) {
  for (std::size_t const pieceSize : {std::size_t{8}, std::size_t{11}, Source::kPieceSize}) {
    try {
      Read(GetParam().text, 3, pieceSize);
      ADD_FAILURE();
    } catch (kit::Failure const& failure) {
      EXPECT_EQ(failure.offset(), GetParam().offset) << failure.what();
      EXPECT_EQ(failure.line(), GetParam().line) << failure.what();
      EXPECT_EQ(failure.code(), GetParam().code);
    }
  }
}

INSTANTIATE_TEST_SUITE_P(MotionFrames, MotionFramesRefused, testing::ValuesIn(kRefused),
                         [](auto const& row) { return row.param.name; });

// Numbers of all lengths, with all kinds of space between them, against words that are cut one by one.
TEST_F(MotionFrames, AreTheWordsOfTheFileWhereverAPieceEnds) {
  std::mt19937 random(3);
  char const* const spaces[] = {" ", " ", " ", "\t", "  ", " \t", "\v"};
  for (int round = 0; round != 40; ++round) {
    std::size_t const channels = 1 + random() % 40;
    std::string text;
    std::ostringstream expected;
    for (int frame = 0; frame != 20; ++frame) {
      expected << text.size() << ':';
      for (std::size_t channel = 0; channel != channels; ++channel) {
        std::string number = std::to_string(random() % (random() % 4 == 0 ? 2000000000U : 200000U));
        number.insert(random() % (number.size() + 1), random() % 10 == 0 ? "" : ".");
        text += (random() % 2 == 0 ? "-" : "") + number;
        expected << ' ' << std::stod(text.substr(text.find_last_of(" \t\v\n") + 1));
        text += channel + 1 == channels ? "\n" : spaces[random() % std::size(spaces)];
      }
      expected << '\n';
    }
    ASSERT_EQ(Read(text, channels, 24 + random() % 100), expected.str()) << round;
  }
}

TEST_F(MotionFrames, WithoutChannelsThereIsNoNumber) {
  EXPECT_EQ(Read("\n\n", 0), "");
  EXPECT_THROW(Read("\n1\n", 0), kit::Failure);
}

TEST_F(MotionFrames, LongWordsAreRefusedAndLongCommentsRead) {
  EXPECT_THROW(Read("1 2 " + std::string(100, '3'), 3, 16), kit::Failure);
  EXPECT_EQ(Read("# " + std::string(50, ' ') + "x\n1 2 3", 3, 16), "54: 1 2 3\n");
}

}  // namespace
}  // namespace senmark_motion
