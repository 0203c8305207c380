// Memory of nodes: few from the heap, many from chunks, and none of it kept behind the last of them.
#include "SK_NodePool.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#include "FailingCalls.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::FailingCall;

constexpr std::size_t kSize = 184;
/// More than three chunks full.
constexpr std::size_t kMany = SK_NodePool::kHeapBlocks + 3 * (SK_NodePool::kChunkSize / kSize) + 1000;

/// Blocks that know what was written to them. All go with it, the last one first.
class Blocks {
 public:
  Blocks() = default;
  ~Blocks() {
    while (!mBlocks.empty()) {
      FreeLast();
    }
  }
  Blocks(Blocks const&) = delete;
  Blocks& operator=(Blocks const&) = delete;

  void* Add(std::size_t size = kSize) {
    void* const memory = SK_NodePool::Allocate(size);
    mBlocks.push_back({static_cast<unsigned char*>(memory), size, static_cast<unsigned char>(++mCounter)});
    std::memset(memory, mBlocks.back().content, size);
    return memory;
  }
  void Add(std::size_t count, std::size_t size) {
    for (std::size_t i = 0; i != count; ++i) {
      Add(size);
    }
  }
  void FreeLast() {
    Block const block = mBlocks.back();
    mBlocks.pop_back();
    EXPECT_TRUE(block.IsIntact());
    SK_NodePool::Free(block.memory);
  }
  void Reverse() { std::reverse(mBlocks.begin(), mBlocks.end()); }
  void TakeFrom(Blocks& other) { mBlocks.swap(other.mBlocks); }
  void KeepOnly(std::size_t position) {
    std::swap(mBlocks[position], mBlocks.front());
    while (mBlocks.size() != 1) {
      FreeLast();
    }
  }

  std::size_t Count() const { return mBlocks.size(); }
  void* At(std::size_t position) const { return mBlocks[position].memory; }

 private:
  struct Block {
    unsigned char* memory;
    std::size_t size;
    unsigned char content;

    bool IsIntact() const {
      return std::all_of(memory, memory + size, [this](unsigned char byte) { return byte == content; });
    }
  };

  std::vector<Block> mBlocks;
  unsigned mCounter = 0;
};

class NodePool : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(SK_NodePool::CountChunks(), 0u); }
  void TearDown() override { EXPECT_EQ(SK_NodePool::CountChunks(), 0u); }
};

TEST_F(NodePool, TheFirstBlocksComeFromTheHeap) {
  Blocks blocks;
  for (std::size_t i = 0; i != SK_NodePool::kHeapBlocks; ++i) {
    ASSERT_FALSE(SK_NodePool::IsInChunk(blocks.Add())) << i;
  }
  EXPECT_EQ(SK_NodePool::CountChunks(), 0u);
  EXPECT_TRUE(SK_NodePool::IsInChunk(blocks.Add()));
  EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
}

TEST_F(NodePool, BlocksOfAllSizesAreAlignedAndApart) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks, kSize);
  for (int round = 0; round != 20; ++round) {
    for (std::size_t size = 1; size <= SK_NodePool::kLargestBlock; ++size) {
      void* const block = blocks.Add(size);
      ASSERT_TRUE(SK_NodePool::IsInChunk(block)) << size;
      ASSERT_EQ(reinterpret_cast<std::uintptr_t>(block) % SK_NodePool::kAlignment, 0u) << size;
    }
  }
  EXPECT_GE(SK_NodePool::CountChunks(), 5u);
  // What each of them holds is looked at when it goes.
}

TEST_F(NodePool, ChunksAreFilled) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks, kSize);
  std::size_t const stepped = 192;
  blocks.Add(SK_NodePool::kChunkSize / stepped - 1, kSize);
  EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
  blocks.Add(2, kSize);
  EXPECT_EQ(SK_NodePool::CountChunks(), 2u);
}

TEST_F(NodePool, WhatIsLargeComesFromTheHeap) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks, kSize);
  EXPECT_TRUE(SK_NodePool::IsInChunk(blocks.Add(SK_NodePool::kLargestBlock)));
  EXPECT_FALSE(SK_NodePool::IsInChunk(blocks.Add(SK_NodePool::kLargestBlock + 1)));
  EXPECT_FALSE(SK_NodePool::IsInChunk(blocks.Add(SK_NodePool::kChunkSize)));
}

TEST_F(NodePool, ChunksGoWithTheirBlocksLastBlockFirst) {
  Blocks blocks;
  blocks.Add(kMany, kSize);
  EXPECT_GE(SK_NodePool::CountChunks(), 3u);
}

TEST_F(NodePool, ChunksGoWithTheirBlocksFirstBlockFirst) {
  Blocks blocks;
  blocks.Add(kMany, kSize);
  blocks.Reverse();
}

TEST_F(NodePool, ABlockThatLivesLongKeepsItsOwnChunkOnly) {
  Blocks blocks;
  blocks.Add(kMany, kSize);
  blocks.KeepOnly(kMany / 2);
  EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
}

TEST_F(NodePool, ABlockInTheChunkInUseKeepsIt) {
  Blocks blocks;
  blocks.Add(kMany, kSize);
  blocks.KeepOnly(kMany - 1);
  EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
}

TEST_F(NodePool, ABlockThatComesAndGoesTakesNoChunkWithIt) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks, kSize);
  void* const first = blocks.Add();
  blocks.FreeLast();
  for (int round = 0; round != 10; ++round) {
    EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
    EXPECT_EQ(blocks.Add(), first);
    blocks.FreeLast();
  }
}

TEST_F(NodePool, APairThatComesAndGoesAtTheLimitOfTheHeapTakesNoChunkWithIt) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks - 1, kSize);
  blocks.Add();
  void* const inChunk = blocks.Add();
  for (int round = 0; round != 10; ++round) {
    blocks.FreeLast();
    blocks.FreeLast();
    EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
    EXPECT_FALSE(SK_NodePool::IsInChunk(blocks.Add()));
    EXPECT_EQ(blocks.Add(), inChunk);
  }
}

TEST_F(NodePool, AnEmptyChunkGoesWhenTheHeapHasFewBlocks) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks + 1, kSize);
  blocks.FreeLast();
  while (blocks.Count() >= SK_NodePool::kHeapBlocks / 2) {
    EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
    blocks.FreeLast();
  }
  EXPECT_EQ(SK_NodePool::CountChunks(), 0u);
}

TEST_F(NodePool, AnotherThreadMayFreeWhatThisOneUses) {
  Blocks heap;
  heap.Add(SK_NodePool::kHeapBlocks, kSize);
  Blocks blocks;
  blocks.Add(kMany, kSize);
  void* const last = blocks.At(kMany - 1);
  std::thread([&] {
    Blocks taken;
    taken.TakeFrom(blocks);
  }).join();
  // Only the chunk that is in use is left. It is used again from its start when it is full.
  EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
  Blocks more;
  EXPECT_GT(more.Add(), last);
  more.FreeLast();
  more.Add(SK_NodePool::kChunkSize / kSize - 1000, kSize);
  EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
}

TEST_F(NodePool, AThreadThatEndsLeavesItsBlocksAlone) {
  Blocks blocks;
  std::thread([&] { blocks.Add(kMany, kSize); }).join();
  EXPECT_GE(SK_NodePool::CountChunks(), 3u);
}

TEST_F(NodePool, AThreadThatEndsTakesItsEmptyChunkAlong) {
  Blocks heap;
  heap.Add(SK_NodePool::kHeapBlocks, kSize);
  std::thread([] {
    Blocks blocks;
    blocks.Add();
    EXPECT_EQ(SK_NodePool::CountChunks(), 1u);
  }).join();
  EXPECT_EQ(SK_NodePool::CountChunks(), 0u);
}

class AllocatesAtTheEndOfItsThread {
 public:
  explicit AllocatesAtTheEndOfItsThread(Blocks& blocks) : mBlocks(&blocks) {}
  ~AllocatesAtTheEndOfItsThread() {
    EXPECT_FALSE(SK_NodePool::IsInChunk(mBlocks->Add()));
    mBlocks->FreeLast();
    mBlocks->FreeLast();
  }

 private:
  Blocks* mBlocks;
};

TEST_F(NodePool, BehindTheEndOfAThreadBlocksStillComeAndGo) {
  Blocks heap;
  heap.Add(SK_NodePool::kHeapBlocks, kSize);
  Blocks blocks;
  std::thread([&] {
    // Made before the pool's own watch over the thread, and so gone behind it.
    thread_local AllocatesAtTheEndOfItsThread const last(blocks);
    static_cast<void>(&last);
    EXPECT_TRUE(SK_NodePool::IsInChunk(blocks.Add()));
  }).join();
  EXPECT_EQ(blocks.Count(), 0u);
}

TEST_F(NodePool, ThreadsFreeWhatOthersAllocate) {
  constexpr std::size_t kThreads = 4;
  constexpr std::size_t kSlots = 4096;
  std::vector<std::atomic<std::uint64_t*>> slots(kSlots);
  std::vector<std::thread> threads;
  std::atomic<std::size_t> damaged{0};
  for (std::size_t thread = 0; thread != kThreads; ++thread) {
    threads.emplace_back([&, thread] {
      std::uint64_t random = thread + 1;
      for (int round = 0; round != 60000; ++round) {
        random = random * 6364136223846793005U + 1442695040888963407U;
        auto* block = static_cast<std::uint64_t*>(SK_NodePool::Allocate(kSize));
        block[0] = random;
        block[kSize / sizeof(std::uint64_t) - 1] = ~random;
        block = slots[(random >> 33U) % kSlots].exchange(block);
        if (block != nullptr) {
          damaged += block[0] == ~block[kSize / sizeof(std::uint64_t) - 1] ? 0 : 1;
          SK_NodePool::Free(block);
        }
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(damaged.load(), 0u);
  EXPECT_GE(SK_NodePool::CountChunks(), 1u);
  for (auto& slot : slots) {
    if (slot.load() != nullptr) {
      SK_NodePool::Free(slot.load());
    }
  }
}

TEST_F(NodePool, WithoutAChunkTheHeapGivesMore) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks, kSize);
  {
    FailingCall const failing(senmark_test::kMmap, ENOMEM);
    EXPECT_FALSE(SK_NodePool::IsInChunk(blocks.Add()));
    EXPECT_TRUE(failing.HasFailed());
  }
  EXPECT_TRUE(SK_NodePool::IsInChunk(blocks.Add()));
}

TEST_F(NodePool, WithoutAFurtherChunkTheHeapGivesMore) {
  Blocks blocks;
  blocks.Add(SK_NodePool::kHeapBlocks, kSize);
  FailingCall const failing(senmark_test::kMmap, ENOMEM, 2);
  blocks.Add(4 * SK_NodePool::kChunkSize / kSize, kSize);
  EXPECT_TRUE(failing.HasFailed());
  EXPECT_FALSE(SK_NodePool::IsInChunk(blocks.At(blocks.Count() - 1)));
}

TEST_F(NodePool, TheStandardLibraryGetsBlocksToo) {
  std::vector<std::shared_ptr<int>> owners;
  for (int i = 0; i != 5000; ++i) {
    owners.push_back(std::allocate_shared<int>(SK_NodeAllocator<int>(), i));
  }
  for (int i = 0; i != 5000; ++i) {
    ASSERT_EQ(*owners[static_cast<std::size_t>(i)], i);
  }
}

}  // namespace
}  // namespace SK_PLUGIN
