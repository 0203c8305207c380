/// Memory for the nodes of the writer: a table becomes millions of them, made one behind the other and let go
/// together.
///
/// The first ones come from the heap, so that few nodes cost what they always did. When many are there, further ones
/// are cut from chunks that come from the system and go back to it with their last block. Any thread may free what
/// another has allocated; no lock is taken.
#pragma once

#include <cstddef>
#include <cstdint>

namespace SK_PLUGIN {

class SK_NodePool {
 public:
  /// So many blocks come from the heap before the first chunk.
  static constexpr std::size_t kHeapBlocks = 1024;
  static constexpr std::size_t kChunkSize = std::size_t{2} << 20;
  /// What is larger comes from the heap always.
  static constexpr std::size_t kLargestBlock = 1024;
  /// Blocks are aligned to this and no further.
  static constexpr std::size_t kAlignment = 8;

  /// `std::bad_alloc` if neither the system nor the heap has memory.
  static void* Allocate(std::size_t size);
  static void Free(void* block) noexcept;

  /// Whether the block was cut from a chunk.
  static bool IsInChunk(void const* block) {
    // The heap gives multiples of 16, a chunk gives what lies in the middle between two of them.
    return reinterpret_cast<std::uintptr_t>(block) % (2 * kAlignment) != 0;
  }
  /// Of all threads. For tests.
  static std::size_t CountChunks() noexcept;
};

/// Memory of a node or of its count of owners: from the pool, but from the heap where a sanitizer watches each block.
void* AllocateNode(std::size_t size);
void FreeNode(void* block) noexcept;

/// The same for the standard library.
template <typename T>
struct SK_NodeAllocator {
  static_assert(alignof(T) <= SK_NodePool::kAlignment);
  using value_type = T;

  SK_NodeAllocator() = default;
  template <typename Other>
  SK_NodeAllocator(SK_NodeAllocator<Other> const&) noexcept {}

  T* allocate(std::size_t count) { return static_cast<T*>(AllocateNode(count * sizeof(T))); }
  void deallocate(T* block, std::size_t) noexcept { FreeNode(block); }

  template <typename Other>
  bool operator==(SK_NodeAllocator<Other> const&) const noexcept {
    return true;
  }
  template <typename Other>
  bool operator!=(SK_NodeAllocator<Other> const&) const noexcept {
    return false;
  }
};

}  // namespace SK_PLUGIN
