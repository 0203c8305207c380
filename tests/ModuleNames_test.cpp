// Texts of samples as the kit for modules lets them into a file.
#include <gtest/gtest.h>

#include "senmark/module/Names.h"

namespace senmark_test {
namespace {

struct Row {
  char const* text;
  char const* kept;
};

TEST(ModuleNames, TextsOfSamplesHoldNothingThatAReaderCounts) {
  constexpr Row kRows[] = {
      {"", ""},
      {"plain \\ text\n", "plain \\ text\n"},
      {"6\" pipe", "6\uFF02 pipe"},
      {"\"a b\"", "\uFF02a b\uFF02"},
      {"[a] [b [c]]", "[a] [b [c]]"},
      {"a ]", "a \uFF3D"},
      {"[ a", "\uFF3B a"},
      {"]a[", "\uFF3Da\uFF3B"},
      {"[a] ]", "\uFF3Ba\uFF3D \uFF3D"},
      {"\xFF[", "\uFFFD\uFF3B"},
  };
  for (Row const& row : kRows) {
    EXPECT_EQ(senmark::kit::SampleText(row.text), row.kept);
  }
}

}  // namespace
}  // namespace senmark_test
