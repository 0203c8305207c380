#include "MeantWord.h"

#include <gtest/gtest.h>

namespace {

using senmark_tool::MeantWord;

std::vector<std::string> const kKnown = {"identifier", "name", "version", "force_converter", "extensions"};

TEST(MeantWord, FindsTheNearest) {
  EXPECT_EQ(MeantWord("identifer", kKnown), "identifier");
  EXPECT_EQ(MeantWord("Version", kKnown), "version");
  EXPECT_EQ(MeantWord("versoin", kKnown), "version");
  EXPECT_EQ(MeantWord("extension", kKnown), "extensions");
  EXPECT_EQ(MeantWord("force_convertor", kKnown), "force_converter");
  EXPECT_EQ(MeantWord("nam", kKnown), "name");
}

TEST(MeantWord, LeavesAloneWhatIsLikeNone) {
  EXPECT_EQ(MeantWord("comment", kKnown), "");
  EXPECT_EQ(MeantWord("", kKnown), "");
  EXPECT_EQ(MeantWord("nome2", kKnown), "");  // half of a short word is another word
  EXPECT_EQ(MeantWord(std::string(100000, 'a'), kKnown), "");
  EXPECT_EQ(MeantWord("name", {}), "");
}

}  // namespace
