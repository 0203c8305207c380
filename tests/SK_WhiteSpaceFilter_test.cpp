#include "SK_WhiteSpaceFilter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>

namespace SK_NAMESPACE_INT {
namespace {

struct Outcome {
  std::string kept;
  std::size_t position;
  std::uint64_t depth;
  bool insideString;
};

/// What a filter does to bytes that nothing follows or precedes.
Outcome Filtered(SK_FilterFunction filter, std::string const& input, SK_FilterState state = {}) {
  std::unique_ptr<char[]> const in(new char[input.size()]);
  std::unique_ptr<char[]> const out(new char[input.size() + kFilterSlack]);
  std::copy(input.begin(), input.end(), in.get());
  SK_FilterResult const result = filter(in.get(), in.get() + input.size(), out.get(), state);
  return {std::string(out.get(), result.out), static_cast<std::size_t>(result.in - in.get()), state.depth,
          state.insideString};
}

/// The rules one by one, without regard to speed.
Outcome Expected(std::string const& input, SK_FilterState state) {
  std::string kept;
  std::size_t position = 0;
  for (; position < input.size(); ++position) {
    char const byte = input[position];
    if (byte == '[') ++state.depth;
    if (byte == ']' && --state.depth == 0) break;
    if (byte == '"') state.insideString = !state.insideString;
    bool const removed = byte == '\n' || byte == '\t' || byte == '\r' || (byte == ' ' && !state.insideString);
    if (!removed) kept += byte;
  }
  return {kept, position, state.depth, state.insideString};
}

void ExpectAsDescribed(SK_FilterFunction filter, std::string const& input, SK_FilterState state) {
  Outcome const expected = Expected(input, state);
  Outcome const found = Filtered(filter, input, state);
  ASSERT_EQ(found.kept, expected.kept) << input;
  ASSERT_EQ(found.position, expected.position) << input;
  ASSERT_EQ(found.depth, expected.depth) << input;
  ASSERT_EQ(found.insideString, expected.insideString) << input;
}

class WhiteSpaceFilter : public testing::TestWithParam<SK_WhiteSpaceFilter> {
 protected:
  SK_FilterFunction Filter() const { return GetParam().run; }
};

TEST_P(WhiteSpaceFilter, RemovesSpacesOutsideStringsOnly) {
  EXPECT_EQ(Filtered(Filter(), R"( { "a b" : " " } )").kept, R"({"a b":" "})");
}

TEST_P(WhiteSpaceFilter, RemovesLineFeedTabAndReturnInStringsToo) {
  EXPECT_EQ(Filtered(Filter(), "\"a\nb\tc\rd e\"\r\n\t").kept, "\"abcd e\"");
}

TEST_P(WhiteSpaceFilter, KeepsOtherControlsAndHighBytes) {
  std::string every;
  for (int byte = 0; byte < 256; ++byte) every += static_cast<char>(byte);
  every.erase(every.find(']'), 1);
  std::string expected = every;
  for (char const removed : {'\t', '\n', '\r', ' '}) expected.erase(expected.find(removed), 1);
  EXPECT_EQ(Filtered(Filter(), every).kept, expected);
}

TEST_P(WhiteSpaceFilter, EscapedQuoteCountsAsAQuote) {
  EXPECT_EQ(Filtered(Filter(), R"("a\" b" c d)").kept, R"("a\"b" c d)");
}

TEST_P(WhiteSpaceFilter, TellsWhetherItEndsInsideAString) {
  EXPECT_TRUE(Filtered(Filter(), R"("a)").insideString);
  EXPECT_FALSE(Filtered(Filter(), R"("a")").insideString);
  EXPECT_EQ(Filtered(Filter(), " a", SK_FilterState{1, true}).kept, " a");
}

TEST_P(WhiteSpaceFilter, StopsAtTheClosingBracketWhereverItStands) {
  for (std::size_t before = 0; before < 200; ++before) {
    Outcome const found = Filtered(Filter(), std::string(before, 'x') + "]" + std::string(100, ' '));
    ASSERT_EQ(found.kept, std::string(before, 'x'));
    ASSERT_EQ(found.position, before);
    ASSERT_EQ(found.depth, 0U);
  }
}

TEST_P(WhiteSpaceFilter, BracketsInStringsCount) {
  Outcome const found = Filtered(Filter(), R"("]" "[")" + std::string(100, 'x'));
  EXPECT_EQ(found.position, 1U);
  EXPECT_EQ(found.kept, "\"");
}

TEST_P(WhiteSpaceFilter, PassesBracketsThatArePaired) {
  std::string text;
  for (int i = 0; i < 100; ++i) text += "[[]][]";
  EXPECT_EQ(Filtered(Filter(), text + "] [").position, text.size());
}

TEST_P(WhiteSpaceFilter, AgreesWithTheRulesOnRandomTextOfEveryLength) {
  std::mt19937 random(20240117);
  char const alphabet[] = " \n\t\r\"[]\\{},:0a\xC3\x80\x8A\x8D\xA0\x1F\x02\x0C";
  std::uniform_int_distribution<std::size_t> any(0, sizeof(alphabet) - 2);
  for (int round = 0; round < 30; ++round) {
    // From crowded with white space and brackets to hardly any.
    std::uniform_int_distribution<int> plain(0, 1 << (round % 6));
    std::string text(300, 'x');
    for (char& byte : text) {
      if (plain(random) == 0) byte = alphabet[any(random)];
    }
    SK_FilterState const state = {static_cast<std::uint64_t>(1 + round % 4), round % 2 == 1};
    for (std::size_t length = 0; length <= text.size(); ++length) {
      ASSERT_NO_FATAL_FAILURE(ExpectAsDescribed(Filter(), text.substr(0, length), state));
    }
  }
}

TEST_P(WhiteSpaceFilter, AgreesWithTheRulesOnLongStretches) {
  // Long enough for everything that looks ahead.
  std::mt19937 random(7);
  std::string text;
  while (text.size() < 20000) {
    text += std::string(random() % 90, ' ') + "\"" + std::string(random() % 40, 'a') + "\",\n[\t]";
  }
  ExpectAsDescribed(Filter(), text, SK_FilterState{});
}

INSTANTIATE_TEST_SUITE_P(Every, WhiteSpaceFilter, testing::ValuesIn(GetWhiteSpaceFilters()),
                         [](testing::TestParamInfo<SK_WhiteSpaceFilter> const& row) {
                           std::string name = row.param.name;
                           name.erase(std::remove(name.begin(), name.end(), '-'), name.end());
                           return name;
                         });

TEST(WhiteSpaceFilters, BeginWithTheOneForEveryProcessor) {
  ASSERT_FALSE(GetWhiteSpaceFilters().empty());
  EXPECT_EQ(GetWhiteSpaceFilters().front().run, &FilterBytes);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
