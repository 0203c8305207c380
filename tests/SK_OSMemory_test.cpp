// Pages straight from the system: aligned, empty, and gone when they go back.
#include "SK_OSMemory.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "FailingCalls.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::FailingCall;

TEST(OSMemory, LargePagesAreAlignedAndZero) {
  std::vector<char*> mappings;
  std::size_t const sizes[] = {kLargePage, 3 * kLargePage, kLargePage};
  for (std::size_t const size : sizes) {
    auto* const pages = static_cast<char*>(MapLargePages(size));
    ASSERT_NE(pages, nullptr);
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(pages) % kLargePage, 0U);
    EXPECT_EQ(std::string(pages, size), std::string(size, '\0'));
    std::memset(pages, 1, size);
    mappings.push_back(pages);
  }
  for (std::size_t i = 0; i != mappings.size(); ++i) {
    UnmapLargePages(mappings[i], sizes[i]);
  }
}

TEST(OSMemory, NoMemoryIsNull) {
  FailingCall const failing(senmark_test::kMmap, ENOMEM);
  EXPECT_EQ(MapLargePages(kLargePage), nullptr);
}

TEST(OSMemory, NoMemoryForTheAlignmentIsNullAndLeavesNothing) {
  EXPECT_EQ(MapLargePages(0 - kLargePage), nullptr);
  for (int passed = 0; passed != 2; ++passed) {
    FailingCall const failing(senmark_test::kMmap, ENOMEM, passed);
    void* const pages = MapLargePages(kLargePage);
    EXPECT_EQ(pages == nullptr, failing.HasFailed());
    if (pages != nullptr) {
      UnmapLargePages(pages, kLargePage);
    }
  }
}

TEST(OSMemory, WishThatTheSystemRefusesIsNoError) {
  alignas(8) char small[8] = {};
  PreferLargePages(small + 1, 3);  // not at the begin of a page
  EXPECT_EQ(small[1], 0);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
