// Stretches of memory from the system: aligned, empty, and gone when they go back.
#include "SK_OSMemory.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <vector>

#include "FailingCalls.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::FailingCall;

TEST(OSMemory, StretchesAreAlignedToTheirSizeAndEmpty) {
  for (std::size_t const size : {std::size_t{1} << 16, std::size_t{1} << 21, std::size_t{1} << 24}) {
    // Others around them, so that not each lies well by chance.
    std::vector<void*> around;
    for (int round = 0; round != 4; ++round) {
      around.push_back(MapStretch(std::size_t{1} << 12));
      char* const stretch = static_cast<char*>(MapStretch(size));
      ASSERT_NE(stretch, nullptr);
      EXPECT_EQ(reinterpret_cast<std::uintptr_t>(stretch) % size, 0u);
      EXPECT_TRUE(std::all_of(stretch, stretch + size, [](char byte) { return byte == 0; }));
      std::fill(stretch, stretch + size, 'x');
      UnmapStretch(stretch, size);
    }
    for (void* const other : around) {
      UnmapStretch(other, std::size_t{1} << 12);
    }
  }
}

TEST(OSMemory, ARefusalIsNull) {
  FailingCall const failing(senmark_test::kMmap, ENOMEM);
  EXPECT_EQ(MapStretch(std::size_t{1} << 21), nullptr);
  EXPECT_TRUE(failing.HasFailed());
}

TEST(OSMemory, LargePagesAreOnlyAWish) {
  constexpr std::size_t kSize = std::size_t{1} << 21;
  char* const stretch = static_cast<char*>(MapStretch(kSize));
  ASSERT_NE(stretch, nullptr);
  PreferLargePages(stretch, kSize);
  std::fill(stretch, stretch + kSize, 'x');
  EXPECT_EQ(stretch[kSize - 1], 'x');
  UnmapStretch(stretch, kSize);
  // Of what is no memory any more the system wants to hear nothing, and nobody else hears of that.
  PreferLargePages(stretch, kSize);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
