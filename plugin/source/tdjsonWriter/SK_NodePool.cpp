#include "SK_NodePool.h"

#include <atomic>
#include <new>
#include <type_traits>

#include "SK_OSMemory.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define SENMARK_EACH_BLOCK_IS_WATCHED
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define SENMARK_EACH_BLOCK_IS_WATCHED
#endif

namespace SK_PLUGIN {

namespace {

constexpr std::size_t kStep = 2 * SK_NodePool::kAlignment;
static_assert(kStep <= __STDCPP_DEFAULT_NEW_ALIGNMENT__, "blocks of heap and chunks are told apart by alignment");

static_assert(SK_NodePool::kChunkSize == SK_NAMESPACE_INT::kLargePage, "a chunk is found by its alignment");

/// More than a chunk has blocks: as long as a thread cuts blocks from it, a chunk is never without any.
constexpr std::uint64_t kInUse = std::uint64_t{1} << 32U;

/// With fewer blocks on the heap than this, a chunk without blocks goes back. Half of those with which chunks begin, so
/// that a node that comes and goes does not take a chunk with it each time.
constexpr std::size_t kFewHeapBlocks = SK_NodePool::kHeapBlocks / 2;

/// Stands at the start of a chunk.
struct Chunk {
  /// Blocks that are left. As long as a thread cuts blocks from the chunk, `kInUse` less those that were freed.
  std::atomic<std::uint64_t> blocks;
};

constexpr std::size_t kFirstBlock = kStep + SK_NodePool::kAlignment;
static_assert(sizeof(Chunk) <= kFirstBlock);

/// The chunk from which a thread cuts its blocks.
struct CurrentChunk {
  Chunk* chunk;
  char* next;
  std::size_t left;      ///< bytes from `next` on
  std::uint64_t blocks;  ///< that were cut so far
  bool isFollowing;      ///< there was a chunk before, so that many nodes are being made
  bool isOver;           ///< the thread is about to end
};
static_assert(std::is_trivially_destructible_v<CurrentChunk>, "nodes may go while a thread ends");

thread_local CurrentChunk gCurrent = {};

/// No order is needed: only how memory is got hangs on these, and none of its contents.
std::atomic<std::size_t> gHeapBlocks{0};
std::atomic<std::size_t> gChunks{0};

Chunk* ChunkOf(void* block) {
  // NOLINTNEXTLINE(performance-no-int-to-ptr): once for each block that goes, and its chunk has no other name
  return reinterpret_cast<Chunk*>(reinterpret_cast<std::uintptr_t>(block) & ~(SK_NodePool::kChunkSize - 1));
}

void ReturnChunk(Chunk* chunk) {
  SK_NAMESPACE_INT::UnmapLargePages(chunk, SK_NodePool::kChunkSize);
  gChunks.fetch_sub(1, std::memory_order_relaxed);
}

bool HasNoBlocks(CurrentChunk const& current) {
  return current.chunk->blocks.load(std::memory_order_acquire) == kInUse - current.blocks;
}

void Begin(CurrentChunk& current) {
  current.chunk->blocks.store(kInUse, std::memory_order_relaxed);
  current.next = reinterpret_cast<char*>(current.chunk) + kFirstBlock;
  current.left = SK_NodePool::kChunkSize - kFirstBlock;
  current.blocks = 0;
}

/// From now on the last block takes the chunk with it.
void LetGo(CurrentChunk& current) {
  std::uint64_t const others = kInUse - current.blocks;
  if (current.chunk->blocks.fetch_sub(others, std::memory_order_acq_rel) == others) {
    ReturnChunk(current.chunk);
  }
  current.chunk = nullptr;
  current.left = 0;
}

class EndOfThread {
 public:
  ~EndOfThread() {
    gCurrent.isOver = true;
    if (gCurrent.chunk != nullptr) {
      LetGo(gCurrent);
    }
  }
  /// To be named is enough to have it made.
  void Watch() const {}
};

thread_local EndOfThread const kEndOfThread;

/// False if there is no memory for a chunk.
bool Renew(CurrentChunk& current) {
  if (current.isOver) {
    return false;
  }
  if (current.chunk != nullptr) {
    if (HasNoBlocks(current)) {
      Begin(current);
      return true;
    }
    LetGo(current);
    current.isFollowing = true;
  }
  void* const memory = SK_NAMESPACE_INT::MapLargePages(SK_NodePool::kChunkSize);
  if (memory == nullptr) {
    return false;
  }
  // The first one may stay nearly empty, and would take all of a large page nonetheless.
  if (current.isFollowing) {
    SK_NAMESPACE_INT::PreferLargePages(memory, SK_NodePool::kChunkSize);
  }
  gChunks.fetch_add(1, std::memory_order_relaxed);
  kEndOfThread.Watch();
  current.chunk = new (memory) Chunk;
  Begin(current);
  return true;
}

void Drop(CurrentChunk& current) {
  LetGo(current);
  current.isFollowing = false;
}

void* AllocateOnHeap(std::size_t size) {
  void* const block = ::operator new(size);
  gHeapBlocks.fetch_add(1, std::memory_order_relaxed);
  return block;
}

void FreeOnHeap(void* block) {
  ::operator delete(block);
  if (gHeapBlocks.fetch_sub(1, std::memory_order_relaxed) == kFewHeapBlocks && gCurrent.chunk != nullptr &&
      HasNoBlocks(gCurrent)) {
    Drop(gCurrent);
  }
}

}  // namespace

void* SK_NodePool::Allocate(std::size_t size) {
  if (gHeapBlocks.load(std::memory_order_relaxed) < kHeapBlocks || size > kLargestBlock) {
    return AllocateOnHeap(size);
  }
  std::size_t const stepped = (size + kStep - 1) / kStep * kStep;
  CurrentChunk& current = gCurrent;
  if (current.left < stepped && !Renew(current)) {
    return AllocateOnHeap(size);
  }
  void* const block = current.next;
  current.next += stepped;
  current.left -= stepped;
  ++current.blocks;
  return block;
}

void SK_NodePool::Free(void* block) noexcept {
  if (!IsInChunk(block)) {
    FreeOnHeap(block);
    return;
  }
  Chunk* const chunk = ChunkOf(block);
  std::uint64_t const left = chunk->blocks.fetch_sub(1, std::memory_order_acq_rel) - 1;
  if (left == 0) {
    ReturnChunk(chunk);
    return;
  }
  CurrentChunk& current = gCurrent;
  if (chunk == current.chunk && left == kInUse - current.blocks) {
    if (gHeapBlocks.load(std::memory_order_relaxed) < kFewHeapBlocks) {
      Drop(current);
    } else {
      Begin(current);
    }
  }
}

std::size_t SK_NodePool::CountChunks() noexcept {
  return gChunks.load(std::memory_order_relaxed);
}

void* AllocateNode(std::size_t size) {
#ifdef SENMARK_EACH_BLOCK_IS_WATCHED
  return ::operator new(size);
#else
  return SK_NodePool::Allocate(size);
#endif
}

void FreeNode(void* block) noexcept {
#ifdef SENMARK_EACH_BLOCK_IS_WATCHED
  ::operator delete(block);
#else
  SK_NodePool::Free(block);
#endif
}

}  // namespace SK_PLUGIN
