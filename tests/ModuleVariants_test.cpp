#include "ModuleVariants.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using senmark_tool::Mutated;
using senmark_tool::Truncated;
using senmark_tool::Variant;

std::string Bytes(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i) {
    bytes += static_cast<char>('a' + i % 26);
  }
  return bytes;
}

TEST(ModuleVariants, CutsAreBeginningsAtTheWantedLengths) {
  std::string const bytes = Bytes(5000);
  std::set<std::size_t> lengths;
  for (Variant const& variant : Truncated(bytes)) {
    std::size_t const length = variant.bytes.size();
    EXPECT_EQ(variant.bytes, bytes.substr(0, length));
    EXPECT_EQ(variant.name, "cut to " + std::to_string(length) + (length == 1 ? " byte" : " bytes"));
    EXPECT_LT(length, bytes.size());
    EXPECT_TRUE(lengths.insert(length).second) << "twice";
  }
  EXPECT_EQ(lengths.size(), 40u);
  for (std::size_t const length :
       {0, 1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048, 4096, 4996, 4997, 4998, 4999}) {
    EXPECT_EQ(lengths.count(length), 1u) << length;
  }
}

TEST(ModuleVariants, CutsOfShortFiles) {
  ASSERT_EQ(Truncated("").size(), 1u);
  EXPECT_EQ(Truncated("")[0].bytes, "");
  ASSERT_EQ(Truncated("a").size(), 1u);
  ASSERT_EQ(Truncated("abc").size(), 3u);
  EXPECT_EQ(Truncated("abc")[2].name, "cut to 2 bytes");
}

TEST(ModuleVariants, ChangesAreTheSameEachTimeAndDifferFromTheFile) {
  std::string const bytes = Bytes(300);
  std::vector<Variant> const first = Mutated(bytes);
  std::vector<Variant> const second = Mutated(bytes);
  ASSERT_EQ(first.size(), 60u);
  std::set<std::string> all;
  std::size_t changed = 0;
  for (std::size_t i = 0; i < first.size(); ++i) {
    EXPECT_EQ(first[i].bytes, second[i].bytes);
    EXPECT_EQ(first[i].name, "changed in way " + std::to_string(i + 1));
    changed += first[i].bytes != bytes ? 1 : 0;
    all.insert(first[i].bytes);
  }
  // By chance a byte may be given the value that it has.
  EXPECT_GT(changed, 55u);
  EXPECT_GT(all.size(), 55u);
}

TEST(ModuleVariants, ShortFilesCanBeChanged) {
  EXPECT_TRUE(Mutated("").empty());
  EXPECT_EQ(Mutated("a").size(), 60u);
}

}  // namespace
