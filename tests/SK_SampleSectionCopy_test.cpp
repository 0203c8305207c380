#include "SK_SampleSectionCopy.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <stack>
#include <string>

#include "DataFileText.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::ErrorText;
using senmark_test::OutcomeOf;

struct Copied {
  std::string bytes;
  std::size_t consumed;
};

/// The copy as it was first described: whole chunks as strings, one byte at a time.
class DescribedCopy {
 public:
  explicit DescribedCopy(std::size_t chunkLimit) : mChunkLimit(chunkLimit) {}

  /// rest  the file from behind the opening bracket on
  Copied Copy(std::string const& rest) {
    std::stack<char> brackets;
    brackets.push('[');
    std::string written;
    std::size_t consumed = 0;
    std::size_t current = 0;
    for (bool done = false; !done;) {
      std::size_t const remaining = rest.size() - current;
      std::size_t const chunk = std::min(remaining, mChunkLimit);
      if (remaining < mChunkLimit) done = true;
      std::string text = rest.substr(current, chunk);
      std::size_t const closePos = FindClosing(text, brackets);
      if (closePos == 0) {
        consumed += text.size();
      } else {
        consumed += closePos + 1;
        text.resize(closePos);
      }
      text.erase(std::remove_if(text.begin(), text.end(), [this](char byte) { return IsRemoved(byte); }), text.end());
      if (remaining < mChunkLimit || brackets.empty()) {
        done = true;
      } else {
        current += chunk;
      }
      written += text;
    }
    return {written, consumed};
  }

 private:
  static std::size_t FindClosing(std::string const& text, std::stack<char>& brackets) {
    std::size_t position = 0;
    for (;;) {
      std::size_t const open = text.find('[', position);
      std::size_t const close = text.find(']', position);
      if (open == std::string::npos && close == std::string::npos) return 0;
      position = std::min(open, close);
      if (open < close) {
        brackets.push('[');
      } else {
        brackets.pop();
        if (brackets.empty()) return position;
      }
      ++position;
    }
  }

  bool IsRemoved(char byte) {
    if (byte == ' ') return mCounter == 0;
    if (byte == '\n' || byte == '\t' || byte == '\r') return true;
    if (byte == '"') mCounter = 1 - mCounter;
    return false;
  }

  std::size_t mChunkLimit;
  int mCounter = 0;
};

/// Copies bytes that nothing follows, and checks what the sink is told.
Copied CopyWith(SK_SampleSectionCopy& copy, std::string const& rest) {
  std::unique_ptr<char[]> const bytes(new char[rest.size()]);
  std::copy(rest.begin(), rest.end(), bytes.get());
  Copied copied = {"", 0};
  int last = 0;
  char const* const behind =
      copy.Copy(bytes.get(), bytes.get() + rest.size(), [&](char const* data, std::uint64_t size, bool isLast) {
        EXPECT_EQ(last, 0) << "bytes behind the last";
        EXPECT_LE(size, 1024U * 1024U);
        last += isLast ? 1 : 0;
        copied.bytes.append(data, size);
        return true;
      });
  EXPECT_EQ(last, 1);
  copied.consumed = static_cast<std::size_t>(behind - bytes.get());
  return copied;
}

Copied CopyOnce(std::string const& rest, std::uint64_t chunkLimit = SK_SampleSectionCopy::kChunkLimit) {
  SK_SampleSectionCopy copy(GetWhiteSpaceFilters().back().run, chunkLimit);
  return CopyWith(copy, rest);
}

TEST(SampleSectionCopy, EndsBehindTheClosingBracket) {
  Copied const copied = CopyOnce("{\"a\": [ 1 ] } , 2 ] , \"b\" : [ 3 ]");
  EXPECT_EQ(copied.bytes, "{\"a\":[1]},2");
  EXPECT_EQ(copied.consumed, 19U);
}

TEST(SampleSectionCopy, EmptyBracketsTakeAllTheRest) {
  Copied const copied = CopyOnce("], \"b\" : [ 3 ] }");
  EXPECT_EQ(copied.bytes, "],\"b\":[3]}");
  EXPECT_EQ(copied.consumed, 16U);
}

TEST(SampleSectionCopy, BlankBetweenBracketsMakesAnEmptySection) {
  Copied const copied = CopyOnce(" ]}");
  EXPECT_EQ(copied.bytes, "");
  EXPECT_EQ(copied.consumed, 2U);
}

TEST(SampleSectionCopy, WithoutAClosingBracketTakesAllTheRest) {
  Copied const copied = CopyOnce("[ 1, 2 ], 3");
  EXPECT_EQ(copied.bytes, "[1,2],3");
  EXPECT_EQ(copied.consumed, 11U);
}

TEST(SampleSectionCopy, NothingLeftIsAnEmptyCopy) {
  Copied const copied = CopyOnce("");
  EXPECT_EQ(copied.bytes, "");
  EXPECT_EQ(copied.consumed, 0U);
}

TEST(SampleSectionCopy, BracketInAStringEndsTheSection) {
  Copied const copied = CopyOnce(R"("a]b" ])");
  EXPECT_EQ(copied.bytes, R"("a)");
  EXPECT_EQ(copied.consumed, 3U);
}

TEST(SampleSectionCopy, QuoteStateSurvivesTheSeamOfChunks) {
  EXPECT_EQ(CopyOnce(R"( "a b" ])", 4).bytes, R"("a b")");
  EXPECT_EQ(CopyOnce(R"( "a b" ])", 3).bytes, R"("a b")");
}

TEST(SampleSectionCopy, DepthSurvivesTheSeamOfChunks) {
  EXPECT_EQ(CopyOnce("x[[y]]z]tail", 3).bytes, "x[[y]]z");
}

// The closing bracket is the first byte of the second chunk, which is then copied whole.
TEST(SampleSectionCopy, ClosingBracketAtASeamTakesThatChunkAndNoMore) {
  Copied const copied = CopyOnce("abcd] , e]f , g", 4);
  EXPECT_EQ(copied.bytes, "abcd],");
  EXPECT_EQ(copied.consumed, 8U);
}

TEST(SampleSectionCopy, ClosingBracketBesideASeamEndsTheSection) {
  EXPECT_EQ(CopyOnce("abc] , efgh", 4).bytes, "abc");
  EXPECT_EQ(CopyOnce("abcde] , efgh", 4).bytes, "abcde");
}

TEST(SampleSectionCopy, LengthOfExactlyOneChunkIsTaken) {
  EXPECT_EQ(CopyOnce("abcd", 4).bytes, "abcd");
  EXPECT_EQ(CopyOnce("abcd", 4).consumed, 4U);
}

TEST(SampleSectionCopy, OddQuoteTurnsTheNextSectionInsideOut) {
  SK_SampleSectionCopy copy;
  EXPECT_EQ(CopyWith(copy, R"("a\" b" ])").bytes, R"("a\"b" )");
  EXPECT_EQ(CopyWith(copy, R"( "c d" ])").bytes, R"( "cd" )");
}

TEST(SampleSectionCopy, NewObjectForgetsOddQuotes) {
  EXPECT_EQ(CopyOnce(R"("a])").bytes, R"("a)");
  EXPECT_EQ(CopyOnce(" b ]").bytes, "b");
}

TEST(SampleSectionCopy, RefusedBytesAreAnError) {
  std::string const text = "a]";
  SK_SampleSectionCopy copy;
  EXPECT_EQ(OutcomeOf([&] {
              copy.Copy(text.data(), text.data() + text.size(), [](char const*, std::uint64_t, bool) { return false; });
            }),
            ErrorText(21, -1, "Unable to write in temporary file."));
}

TEST(SampleSectionCopy, EveryFilterAndChunkLimitCopiesAsDescribed) {
  std::mt19937 random(4711);
  char const alphabet[] = " \n\t\r\"\"[]\\{},a";
  std::uniform_int_distribution<std::size_t> any(0, sizeof(alphabet) - 2);
  for (int round = 0; round < 4000; ++round) {
    std::string rest(random() % 200, 'x');
    bool const isCrowded = random() % 2 == 0;
    for (char& byte : rest) {
      if (isCrowded || random() % 8 == 0) byte = alphabet[any(random)];
    }
    std::size_t const chunkLimit = 1 + random() % 50;
    Copied const expected = DescribedCopy(chunkLimit).Copy(rest);
    for (SK_WhiteSpaceFilter const& filter : GetWhiteSpaceFilters()) {
      SK_SampleSectionCopy copy(filter.run, chunkLimit);
      Copied const copied = CopyWith(copy, rest);
      ASSERT_EQ(copied.bytes, expected.bytes) << filter.name << ' ' << chunkLimit << '\n' << rest;
      ASSERT_EQ(copied.consumed, expected.consumed) << filter.name << ' ' << chunkLimit << '\n' << rest;
    }
  }
}

TEST(SampleSectionCopy, TwoSectionsInARowCopyAsDescribed) {
  std::mt19937 random(99);
  char const alphabet[] = " \"\\\n]a";
  for (int round = 0; round < 1000; ++round) {
    DescribedCopy described(20);
    SK_SampleSectionCopy copy(GetWhiteSpaceFilters().back().run, 20);
    for (int section = 0; section < 3; ++section) {
      std::string rest(random() % 60, 'x');
      for (char& byte : rest) byte = alphabet[random() % (sizeof(alphabet) - 1)];
      Copied const expected = described.Copy(rest);
      ASSERT_EQ(CopyWith(copy, rest).bytes, expected.bytes) << rest;
    }
  }
}

TEST(SampleSectionCopy, SectionsOfManyPiecesCopyAsDescribed) {
  std::mt19937 random(5);
  for (std::size_t size : {262143U, 262144U, 262145U, 327680U, 1500000U}) {
    for (bool const isPretty : {false, true}) {
      std::string rest;
      while (rest.size() < size) {
        rest += isPretty ? "\n      " + std::string(random() % 12, ' ') : ",";
        rest += R"({"time":"00:00:00:00","value":[" 1.)" + std::to_string(random()) + "\"]}";
      }
      rest.resize(size);
      rest += "]}";
      for (std::size_t const chunkLimit : {std::size_t{0x40000000}, std::size_t{100000}}) {
        Copied const expected = DescribedCopy(chunkLimit).Copy(rest);
        Copied const copied = CopyOnce(rest, chunkLimit);
        ASSERT_TRUE(copied.bytes == expected.bytes) << size << ' ' << isPretty;
        ASSERT_EQ(copied.consumed, expected.consumed);
      }
    }
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
