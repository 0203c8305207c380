#include "BVHInput.h"

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <random>

#include "TempFolder.h"

namespace ns_sensor {
namespace {

constexpr std::size_t kPieceSize = 256 * 1024;

class BVHInputFile : public testing::Test {
 protected:
  std::string const& Write(std::string const& content) { return mPath = mFolder.Write("input.bvh", content); }
  BVHInput& Open(std::string const& content) { return mInput.emplace(Write(content)); }
  std::string State() {
    return std::string(mInput->IsGood() ? "good" : "ended") + (mInput->HasFailed() ? ", failed" : "");
  }

  senmark_test::TempFolder mFolder;
  std::string mPath;
  std::optional<BVHInput> mInput;
};

TEST_F(BVHInputFile, StaysGoodBehindALineEndAndFailsAtTheEnd) {
  BVHInput& input = Open("one\ntwo\n");
  ASSERT_TRUE(input.IsOpen());
  EXPECT_EQ(State(), "good");
  EXPECT_EQ(input.ReadLine(), "one");
  EXPECT_EQ(State(), "good");
  EXPECT_EQ(input.ReadLine(), "two");
  EXPECT_EQ(State(), "good");
  EXPECT_EQ(input.ReadLine(), "");
  EXPECT_EQ(State(), "ended, failed");
}

TEST_F(BVHInputFile, EndsWithoutFailureBehindALineWithoutLineEnd) {
  BVHInput& input = Open("one\ntwo");
  input.ReadLine();
  EXPECT_EQ(input.ReadLine(), "two");
  EXPECT_EQ(State(), "ended");
  EXPECT_EQ(input.ReadLine(), "");
  EXPECT_EQ(State(), "ended, failed");
}

TEST_F(BVHInputFile, IsGoodButEmptyWhenTheFileIs) {
  BVHInput& input = Open("");
  EXPECT_TRUE(input.IsOpen());
  EXPECT_EQ(State(), "good");
  EXPECT_EQ(input.ReadLine(), "");
  EXPECT_EQ(State(), "ended, failed");
}

TEST_F(BVHInputFile, KeepsEveryByteButLineFeeds) {
  std::string const content("\n a\r\n\r\r\n\0b\0\n\xff\n", 15);
  BVHInput& input = Open(content);
  EXPECT_EQ(input.ReadLine(), "");
  EXPECT_EQ(input.ReadLine(), " a\r");
  EXPECT_EQ(input.ReadLine(), "\r\r");
  EXPECT_EQ(input.ReadLine(), std::string("\0b\0", 3));
  EXPECT_EQ(input.ReadLine(), "\xff");
  EXPECT_EQ(State(), "good");
}

TEST_F(BVHInputFile, WithoutAFileIsNotOpen) {
  mInput.emplace(mFolder.Path("none"));
  EXPECT_FALSE(mInput->IsOpen());
  EXPECT_EQ(mInput->ReadLine(), "");
  EXPECT_EQ(State(), "ended, failed");
}

TEST_F(BVHInputFile, FolderHasNoLines) {
  mInput.emplace(mFolder.Path(""));
  EXPECT_TRUE(mInput->IsOpen());
  EXPECT_EQ(mInput->ReadLine(), "");
  EXPECT_EQ(State(), "ended, failed");
}

/// Reads a file with both and compares every line and every state.
void ExpectLikeAStream(std::string const& path) {
  BVHInput input(path);
  std::ifstream stream(path);
  for (int extra = 0; extra != 2;) {
    std::string expected;
    std::getline(stream, expected);
    ASSERT_EQ(input.ReadLine(), expected);
    ASSERT_EQ(input.IsGood(), stream.good());
    ASSERT_EQ(input.HasFailed(), stream.fail());
    extra += stream.good() ? 0 : 1;
  }
}

TEST_F(BVHInputFile, ReadsLinesAcrossPiecesLikeAStream) {
  for (std::size_t const size : {kPieceSize - 2, kPieceSize - 1, kPieceSize, kPieceSize + 1, 3 * kPieceSize}) {
    for (std::string const behind : {"", "\n", "\n\n", "\nx", "\nx\n"}) {
      ExpectLikeAStream(Write(std::string(size, 'a') + behind));
      ExpectLikeAStream(Write("b\n" + std::string(size - 2, '\n') + behind));
    }
  }
}

TEST_F(BVHInputFile, ReadsRandomLinesLikeAStream) {
  std::mt19937 random(3);
  for (int round = 0; round != 20; ++round) {
    std::string content;
    while (content.size() < 2 * kPieceSize) {
      content.append(random() % (random() % 50 == 0 ? 100000 : 300), static_cast<char>('a' + random() % 26));
      content += '\n';
    }
    content.resize(content.size() - random() % 3);
    ExpectLikeAStream(Write(content));
  }
}

struct Search {
  char const* name;
  char const* content;
  double value;
  char const* next;  ///< the line behind the one that was found
};

std::ostream& operator<<(std::ostream& out, Search const& row) {
  return out << row.content;
}

class BVHInputSearch : public BVHInputFile, public testing::WithParamInterface<Search> {};

TEST_P(BVHInputSearch, ReadsTheValueBesideTheKey) {
  BVHInput& input = Open(GetParam().content);
  double value = -7;
  StraightUntilYouHit(input, "Frame Time:", value);
  EXPECT_EQ(value, GetParam().value);
  EXPECT_EQ(input.ReadLine(), GetParam().next);
}

Search const kSearches[] = {
    {"BehindTheKey", "x\nFrame Time: 0.04\nnext\n", 0.04, "next"},
    {"AfterATab", "Frame Time:\t0.04\r\nnext\n", 0.04, "next"},
    {"WithoutSpace", "Frame Time:.5\nnext\n", 0.5, "next"},
    {"BeforeTheKey", "0.5 Frame Time: 0.04\nnext\n", 0.5, "next"},
    {"AroundTheKey", "0.Frame Time:04\nnext\n", 0.04, "next"},
    {"OnlyTheFirstKeyIsTakenOut", "Frame Time:Frame Time: 0.04\nnext\n", 0, "next"},
    {"FirstLineWithTheKey", "Frame Time: 1\nFrame Time: 2\n", 1, "Frame Time: 2"},
    {"WithWordsBehind", "Frame Time: 0.04s x\nnext\n", 0.04, "next"},
    {"NoNumber", "Frame Time: fast\nnext\n", 0, "next"},
    {"TooLarge", "Frame Time: 1e999\nnext\n", 1.7976931348623157e308, "next"},
    {"NothingBehind", "Frame Time:\nnext\n", -7, "next"},
    {"NothingButSpaceBehind", "Frame Time: \t\r\nnext\n", -7, "next"},
    {"WrongCase", "frame time: 1\nnext\n", -7, ""},
    {"KeyInTheLastLineWithoutLineEnd", "Frame Time: 0.04", -7, ""},
    {"NoKey", "a\nb\n", -7, ""},
    {"EmptyFile", "", -7, ""},
};
INSTANTIATE_TEST_SUITE_P(Table, BVHInputSearch, testing::ValuesIn(kSearches),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(BVHInputFile, SearchesForWholeNumbersToo) {
  std::uint64_t value = 5;
  StraightUntilYouHit(Open("Frames: 12\n"), "Frames:", value);
  EXPECT_EQ(value, 12U);
  StraightUntilYouHit(Open("Frames: -1\n"), "Frames:", value);
  EXPECT_EQ(value, 18446744073709551615U);
  StraightUntilYouHit(Open("Frames: 18446744073709551616\n"), "Frames:", value);
  EXPECT_EQ(value, 18446744073709551615U);
  StraightUntilYouHit(Open("Frames: many\n"), "Frames:", value);
  EXPECT_EQ(value, 0U);
  value = 5;
  StraightUntilYouHit(Open("none\n"), "Frames:", value);
  EXPECT_EQ(value, 5U);
}

}  // namespace
}  // namespace ns_sensor
