// A file as converters read it: by its head, in pieces, and line by line.
#include "senmark/module/Input.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <random>

#include "FailingCalls.h"
#include "FailingMemory.h"
#include "TempFolder.h"

namespace senmark::kit {
namespace {

using senmark_test::CountOpenDescriptors;
using senmark_test::TempFolder;

class KitLines : public testing::Test {
 protected:
  Input Write(std::string const& content) const { return {mFolder.Write("input.txt", content), "txt", "uid"}; }

  // Each line as number@offset:text.
  static std::string LinesOf(Input const& input) {
    Lines lines(input);
    std::string all;
    for (std::string_view line; lines.next(line);) {
      all += std::to_string(lines.number()) + '@' + std::to_string(lines.offset()) + ':' + std::string(line) + '|';
    }
    std::string_view line;
    EXPECT_FALSE(lines.next(line)) << "more behind the end";
    return all;
  }

  template <typename Call>
  static std::string FailureOf(Call&& call) {
    try {
      call();
    } catch (Failure const& failure) {
      return std::to_string(failure.code()) + ' ' + std::to_string(failure.offset()) + ' ' +
             std::to_string(failure.line());
    }
    return "none";
  }

  TempFolder mFolder;
};

TEST_F(KitLines, EndInAnyWay) {
  struct Row {
    char const* content;
    char const* lines;
  };
  Row const rows[] = {
      {"", ""},
      {"a", "1@0:a|"},
      {"a\n", "1@0:a|"},
      {"a\nb", "1@0:a|2@2:b|"},
      {"a\r\nb\r\n", "1@0:a|2@3:b|"},
      {"a\rb\r", "1@0:a|2@2:b|"},
      {"\n\n", "1@0:|2@1:|"},
      {"\r\n\r\n", "1@0:|2@2:|"},
      {"\n\r", "1@0:|2@1:|"},
      {"a\n\rb", "1@0:a|2@2:|3@3:b|"},
      {"a\r\r\nb", "1@0:a|2@2:|3@4:b|"},
      {"\xEF\xBB\xBF"
       "a\n\xEF\xBB\xBF"
       "b",
       "1@0:a|2@5:\xEF\xBB\xBF"
       "b|"},
      {"\xEF\xBB\xBF", "1@0:|"},
      {"\xEF\xBB", "1@0:\xEF\xBB|"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(LinesOf(Write(row.content)), row.lines) << row.content;
  }
}

// Ends of lines at, before and behind every border between pieces, against lines cut from the whole text.
TEST_F(KitLines, AreTheSameWhereverPiecesEnd) {
  constexpr std::size_t kPiece = std::size_t{256} << 10;
  std::mt19937 random(3);
  for (std::string const end : {"\n", "\r", "\r\n"}) {
    for (std::size_t shift = 0; shift != 6; ++shift) {
      std::string content(kPiece - 3 + shift, 'x');
      std::string expected = "1@0:" + content + '|';
      std::int64_t number = 1;
      content += end;
      while (content.size() < 3 * kPiece) {
        std::string const line(random() % 3 == 0 ? random() % 100000 : random() % 4, 'y');
        expected += std::to_string(++number) + '@' + std::to_string(content.size()) + ':' + line + '|';
        content += line + end;
      }
      ASSERT_TRUE(LinesOf(Write(content)) == expected) << shift;
    }
  }
}

TEST_F(KitLines, AreBoundedAndTellWhere) {
  Input const input = Write("ab\n12345678\n123456789\n");
  Lines lines(input, 8);
  std::string_view line;
  EXPECT_TRUE(lines.next(line));
  EXPECT_TRUE(lines.next(line));
  EXPECT_EQ(line, "12345678");
  EXPECT_EQ(FailureOf([&] { lines.next(line); }), "1506 12 3");
  EXPECT_EQ(FailureOf([&] { throw lines.failure("text", 4); }), "1506 16 3");
}

TEST_F(KitLines, InputsShowSizeAndHead) {
  Input const input = Write("0123456789");
  EXPECT_EQ(input.size(), 10U);
  EXPECT_EQ(input.head(4), "0123");
  EXPECT_EQ(input.head(10), "0123456789");
  EXPECT_EQ(input.head(11), "0123456789");
  EXPECT_EQ(input.head(0), "");
  EXPECT_EQ(input.extension(), "txt");
  EXPECT_EQ(input.uid(), "uid");
}

TEST_F(KitLines, WhatIsNoFileIsAFailure) {
  std::size_t const open = CountOpenDescriptors();
  Input const none(mFolder.Path("none"), "", "");
  EXPECT_EQ(FailureOf([&] { none.size(); }), "6 -1 -1");
  EXPECT_EQ(FailureOf([&] { none.head(1); }), "6 -1 -1");
  EXPECT_EQ(FailureOf([&] { Lines lines(none); }), "6 -1 -1");
  Input const folder(mFolder.TempPath(), "", "");
  EXPECT_EQ(FailureOf([&] { folder.size(); }), "5 -1 -1");
  EXPECT_EQ(FailureOf([&] { folder.head(1); }), "11 0 -1");
  EXPECT_EQ(CountOpenDescriptors(), open);
}

TEST_F(KitLines, LeaveNoDescriptorWhereMemoryEnds) {
  Input const input = Write(std::string(600000, 'a') + "\nb");
  std::size_t const open = CountOpenDescriptors();
  int failures = 0;
  for (std::uint64_t allocation = 1;; ++allocation) {
    senmark_test::FailingMemory const failing(allocation);
    try {
      Lines lines(input);
      for (std::string_view line; lines.next(line);) {
      }
    } catch (std::bad_alloc const&) {
    }
    if (!failing.HasFailed()) {
      break;
    }
    ++failures;
  }
  EXPECT_GE(failures, 3);
  EXPECT_EQ(CountOpenDescriptors(), open);
}

TEST_F(KitLines, FailuresKeepTheirFirstPlace) {
  Failure const without("text");
  EXPECT_EQ(without.at(3, 4).offset(), 3);
  EXPECT_EQ(without.at(3, 4).line(), 4);
  EXPECT_EQ(Failure("text", 1, -1).at(3, 4).offset(), 1);
  EXPECT_EQ(Failure("text", -1, 2).at(3, 4).line(), 2);
  EXPECT_EQ(Refused("text").at(3, 4).code(), Failure::kRefused);
}

}  // namespace
}  // namespace senmark::kit
