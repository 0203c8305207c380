#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "Source.h"
#include "TempFolder.h"
#include "Words.h"

namespace senmark_motion {
namespace {

class MotionSource : public testing::Test {
 protected:
  kit::Input Input(std::string const& text) const { return {mFolder.Write("file.bvh", text), "bvh", "uid"}; }

  /// All lines, each with its offset.
  std::vector<std::string> Lines(std::string const& text, std::size_t pieceSize) const {
    kit::Input const input = Input(text);
    Source source(input, pieceSize);
    std::vector<std::string> lines;
    for (std::string_view line; source.nextLine(line);) {
      lines.push_back(std::to_string(source.lineOffset()) + ':' + std::string(line));
    }
    return lines;
  }

  senmark_test::TempFolder mFolder;
};

using Strings = std::vector<std::string>;

TEST_F(MotionSource, LinesEndInAnyWayWhereverAPieceEnds) {
  for (std::size_t pieceSize = 3; pieceSize != 12; ++pieceSize) {
    EXPECT_EQ(Lines("ab\ncd\r\n\r\re\n\rf", pieceSize), (Strings{"0:ab", "3:cd", "7:", "8:", "9:e", "11:", "12:f"}))
        << pieceSize;
  }
  EXPECT_EQ(Lines("", 8), Strings{});
  EXPECT_EQ(Lines("\n", 8), Strings{"0:"});
  EXPECT_EQ(Lines("a\r", 8), Strings{"0:a"});
  EXPECT_EQ(Lines("a\r\n", 8), Strings{"0:a"});
}

TEST_F(MotionSource, MarkOfUtf8IsSkipped) {
  for (std::size_t const pieceSize : {1U, 2U, 3U, 8U}) {
    EXPECT_EQ(Lines("\xEF\xBB\xBFx\n", pieceSize), Strings{"3:x"}) << pieceSize;
  }
  EXPECT_EQ(Lines("\xEF\xBBx", 8), Strings{"0:\xEF\xBBx"});
}

TEST_F(MotionSource, LinesOfMoreThanAPieceAreRefused) {
  EXPECT_EQ(Lines("12345678\n", 8), Strings{"0:12345678"});
  try {
    Lines("a\n123456789\n", 8);
    FAIL();
  } catch (kit::Failure const& failure) {
    EXPECT_EQ(failure.offset(), 2);
    EXPECT_EQ(failure.line(), 2);
  }
  EXPECT_THROW(Lines(std::string(100, 'x'), 8), kit::Failure);
}

TEST_F(MotionSource, TokensAreNotCut) {
  std::string const text = "12 345\n6789 \t1\r\n22";
  for (std::size_t pieceSize = 4; pieceSize != 20; ++pieceSize) {
    kit::Input const input = Input(text);
    Source source(input, pieceSize);
    std::string whole;
    for (std::string_view tokens = source.tokens(); !tokens.empty(); tokens = source.tokens()) {
      whole += tokens;
      bool const isLast = whole.size() == text.size();
      EXPECT_TRUE(isLast || IsSpace(tokens.back())) << pieceSize << ' ' << tokens;
      EXPECT_TRUE(IsSpace(tokens.back()) || IsSpace(*(tokens.data() + tokens.size()))) << pieceSize;
      EXPECT_EQ(source.offset() + static_cast<std::int64_t>(tokens.size()), whole.size());
      source.consume(tokens.size());
    }
    EXPECT_EQ(whole, text) << pieceSize;
  }
}

TEST_F(MotionSource, TokensOfMoreThanAPieceAreRefused) {
  kit::Input const input = Input("1\n" + std::string(100, '2'));
  Source source(input, 8);
  source.consume(source.tokens().size());
  try {
    source.tokens();
    FAIL();
  } catch (kit::Failure const& failure) {
    EXPECT_EQ(failure.offset(), 2);
    EXPECT_EQ(failure.line(), 2);
  }
}

TEST_F(MotionSource, WhatIsGivenBackComesAgain) {
  kit::Input const input = Input("ab 1 2\r\n3");
  Source source(input, 16);
  std::string_view line;
  ASSERT_TRUE(source.nextLine(line));
  source.giveBack(3);
  EXPECT_EQ(source.offset(), 3);
  EXPECT_EQ(source.tokens(), "1 2\r\n");
}

TEST_F(MotionSource, LineOfAPlaceCountsAllEnds) {
  kit::Input const input = Input("a\nb\r\nc\rd\n\re");
  std::int64_t const expected[] = {1, 1, 2, 2, 2, 3, 3, 4, 4, 5, 6};
  for (std::int64_t offset = 0; offset != 11; ++offset) {
    // Between the CR and the LF of a pair the next line has begun already.
    std::int64_t const line = offset == 4 ? 3 : expected[offset];
    EXPECT_EQ(LineAt(input, offset), line) << offset;
  }
  EXPECT_EQ(LineAt(input, 1000), 6);
}

TEST_F(MotionSource, MissingFileIsNamed) {
  try {
    Source const source(kit::Input("/no/such/file.bvh", "bvh", "uid"));
    FAIL();
  } catch (kit::Failure const& failure) {
    EXPECT_EQ(failure.code(), ns_sensor::kCannotOpenFile);
  }
}

TEST_F(MotionSource, WordsGoOverLinesAndComments) {
  kit::Input const input = Input(" one\ttwo # not this\n\n// nor this\r\n#\r{three}four {\nfive");
  Source source(input);
  Words words(source);
  Strings found;
  for (std::string_view word; words.next(word);) {
    found.emplace_back(word);
  }
  EXPECT_EQ(found, (Strings{"one", "two", "{", "three", "}", "four", "{", "five"}));
}

struct Name {
  char const* line;
  char const* name;
  char const* next;
};

TEST_F(MotionSource, NamesAreTheRestOfTheLineUpToABrace) {
  Name const names[] = {
      {"JOINT Left Arm\n{", "Left Arm", "{"},
      {"JOINT\t Left.Arm:1 \n{", "Left.Arm:1", "{"},
      {"JOINT Hips {\nOFFSET", "Hips", "{"},
      {"JOINT Hips{\nOFFSET", "Hips", "{"},
      {"JOINT Hips{  \nOFFSET", "Hips", "{"},
      {"JOINT Hips { OFFSET", "Hips", "{"},
      {"JOINT a{b}c # d\n{", "a{b}c # d", "{"},
      {"JOINT \xC3\xA4\xE2\x82\xAC\n{", "\xC3\xA4\xE2\x82\xAC", "{"},
      {"JOINT\n{", "", "{"},
      {"JOINT {", "", "{"},
      {"JOINT{", "", "{"},
      {"JOINT OFFSET\n{", "OFFSET", "{"},
  };
  for (Name const& expected : names) {
    kit::Input const input = Input(expected.line);
    Source source(input);
    Words words(source);
    std::string_view word;
    ASSERT_TRUE(words.next(word));
    EXPECT_EQ(word, "JOINT");
    EXPECT_EQ(words.restOfName(), expected.name) << expected.line;
    ASSERT_TRUE(words.next(word));
    EXPECT_EQ(word, expected.next) << expected.line;
  }
}

}  // namespace
}  // namespace senmark_motion
