#include "SK_MatchNames.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace SK_NAMESPACE_INT {
namespace {

std::vector<std::string> Names(int count) {
  std::vector<std::string> names = {
      "", "a", "A", "12345678", "123456781", std::string(100, 'x'), std::string(101, 'x')};
  for (int i = 0; i != count; ++i) {
    names.push_back("data" + std::to_string(i));
  }
  return names;
}

bool MayRepeat(std::vector<std::string> const& names) {
  SK_MatchNames numbers(SK_MatchNames::kNumbers);
  for (std::string const& name : names) {
    EXPECT_TRUE(numbers.Insert(name));
  }
  return numbers.MayRepeat();
}

// A repetition in the first pass is allowed everywhere, but it would make each file be checked twice.
TEST(MatchNames, DifferentNamesDoNotRepeat) {
  EXPECT_FALSE(MayRepeat({}));
  EXPECT_FALSE(MayRepeat(Names(0)));
  EXPECT_FALSE(MayRepeat(Names(300000)));
}

TEST(MatchNames, RepetitionIsSeenWhereverItStands) {
  std::vector<std::string> const names = Names(3000);
  for (std::size_t first = 0; first < names.size(); first += 7) {
    std::vector<std::string> repeating = names;
    repeating.insert(repeating.begin() + static_cast<std::ptrdiff_t>(names.size() - first), names[first]);
    EXPECT_TRUE(MayRepeat(repeating)) << first;
  }
  EXPECT_TRUE(MayRepeat({"a", "a"}));
  EXPECT_TRUE(MayRepeat({"", ""}));
}

bool IsOutOfOrder(std::vector<std::string> const& names) {
  SK_MatchNames order(SK_MatchNames::kOrder);
  for (std::string const& name : names) {
    EXPECT_TRUE(order.Insert(name));
  }
  EXPECT_EQ(order.MayRepeat(), order.IsOutOfOrder());
  return order.IsOutOfOrder();
}

TEST(MatchNames, NumberedNamesAreInOrder) {
  EXPECT_FALSE(IsOutOfOrder({}));
  EXPECT_FALSE(IsOutOfOrder({"a"}));
  EXPECT_FALSE(IsOutOfOrder({"", "a", "b", "aa", "ab", "ba"}));
  std::vector<std::string> names;
  for (int i = 0; i != 3000; ++i) {
    names.push_back("data" + std::to_string(i));
  }
  EXPECT_FALSE(IsOutOfOrder(names));
}

TEST(MatchNames, RepetitionIsOutOfOrderWhereverItStands) {
  EXPECT_TRUE(IsOutOfOrder({"", ""}));
  EXPECT_TRUE(IsOutOfOrder({"a", "b", "c", "a"}));
  EXPECT_TRUE(IsOutOfOrder({"a", "b", "a", "c"}));
  EXPECT_TRUE(IsOutOfOrder({"b", "a", "c", "d"}));
  EXPECT_TRUE(IsOutOfOrder({"data10", "data9"}));
  EXPECT_TRUE(IsOutOfOrder({"a", ""}));
}

TEST(MatchNames, ExactPassTellsWhichNameRepeats) {
  SK_MatchNames names(SK_MatchNames::kNames);
  EXPECT_TRUE(names.Insert("a"));
  EXPECT_TRUE(names.Insert("b"));
  EXPECT_FALSE(names.Insert("a"));
  EXPECT_TRUE(names.Insert("A"));
  EXPECT_FALSE(names.MayRepeat());
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
