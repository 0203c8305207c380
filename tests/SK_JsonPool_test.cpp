#include "SK_JsonPool.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <vector>

#include "FailingCalls.h"
#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::FailingCall;

constexpr std::size_t kMegabyte = 1U << 20U;

struct Block {
  unsigned char* bytes;
  std::size_t size;
  unsigned char content;
};

/// Takes blocks and looks whether all of them keep what was written to them.
class Blocks {
 public:
  explicit Blocks(SK_JsonPool& pool) : mPool(pool) {}

  void Take(std::size_t size) {
    auto* const bytes = static_cast<unsigned char*>(mPool.Malloc(size));
    ASSERT_NE(bytes, nullptr);
    ASSERT_EQ(reinterpret_cast<std::uintptr_t>(bytes) % 8, 0U);
    auto const content = static_cast<unsigned char>(mBlocks.size() * 37 + 1);
    std::memset(bytes, content, size);
    mBlocks.push_back({bytes, size, content});
    mGivenOut += (size + 7) / 8 * 8;
  }

  void ExpectAllKept() const {
    for (Block const& block : mBlocks) {
      for (std::size_t i = 0; i < block.size; i += i + 1 < block.size ? block.size - i - 1 : 1) {
        ASSERT_EQ(block.bytes[i], block.content) << block.size;
      }
    }
    EXPECT_EQ(mPool.Size(), mGivenOut);
  }

 private:
  SK_JsonPool& mPool;
  std::vector<Block> mBlocks;
  std::size_t mGivenOut = 0;
};

TEST(JsonPool, BlocksDoNotOverlapHoweverManyThereAre) {
  SK_JsonPool pool;
  Blocks blocks(pool);
  for (std::size_t i = 0; i != 200000; ++i) {
    blocks.Take(1 + i * 7 % 200);  // 20 MB
  }
  blocks.ExpectAllKept();
}

TEST(JsonPool, LargeBlocksStandBesideSmallOnes) {
  SK_JsonPool pool;
  Blocks blocks(pool);
  for (std::size_t const size : {std::size_t{8}, std::size_t{65536}, std::size_t{65537}, kMegabyte, 9 * kMegabyte,
                                 kLargePage - 24, kLargePage, kLargePage + 8, 5 * kLargePage}) {
    blocks.Take(24);
    blocks.Take(size);
    blocks.Take(3);
  }
  blocks.ExpectAllKept();
}

// Or each large array of a document would cost what was left of a page.
TEST(JsonPool, RestOfAChunkIsUsedBehindALargeBlock) {
  SK_JsonPool pool;
  auto const* const before = static_cast<char const*>(pool.Malloc(8));
  pool.Malloc(100000);
  EXPECT_EQ(pool.Malloc(8), before + 8);
}

TEST(JsonPool, TakesFromTheBufferFirst) {
  alignas(8) char buffer[64];
  SK_JsonPool pool(buffer, sizeof(buffer));
  EXPECT_EQ(pool.Malloc(40), buffer);
  EXPECT_EQ(pool.Malloc(24), buffer + 40);
  auto const* const outside = static_cast<char const*>(pool.Malloc(8));
  EXPECT_TRUE(outside < buffer || outside >= buffer + sizeof(buffer));
  EXPECT_EQ(pool.Size(), 72U);
}

TEST(JsonPool, NothingTakesNothing) {
  SK_JsonPool pool;
  EXPECT_EQ(pool.Malloc(0), nullptr);
  EXPECT_EQ(pool.Realloc(nullptr, 0, 0), nullptr);
  EXPECT_EQ(pool.Size(), 0U);
}

TEST(JsonPool, LargerBlockKeepsTheContent) {
  SK_JsonPool pool;
  auto* const block = static_cast<char*>(pool.Realloc(nullptr, 0, 8));
  std::memcpy(block, "content", 8);
  EXPECT_EQ(pool.Realloc(block, 8, 5), block);
  auto* const larger = static_cast<char*>(pool.Realloc(block, 8, 100000));
  EXPECT_STREQ(larger, "content");
}

TEST(JsonPool, NoMoreMemoryIsAnExceptionAndLosesNothing) {
  SK_JsonPool pool;
  Blocks blocks(pool);
  blocks.Take(100);
  {
    FailingCall const failing(senmark_test::kMmap, ENOMEM);
    EXPECT_THROW(pool.Malloc(20 * kMegabyte), std::bad_alloc);
    EXPECT_TRUE(failing.HasFailed());
  }
  EXPECT_THROW(pool.Malloc(std::size_t{1} << 62U), std::bad_alloc);
  blocks.Take(100);
  blocks.Take(20 * kMegabyte);
  blocks.ExpectAllKept();
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
