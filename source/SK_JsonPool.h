/// Where the values of rapidjson get their memory: it only grows, and goes as one.
#pragma once

#include <cstddef>
#include <cstring>

namespace SK_NAMESPACE_INT {

/// An allocator in rapidjson's sense. Small outlines take small chunks; what large ones take comes in large pages,
/// which the system hands out faster than as many small ones.
///
/// Errors: `std::bad_alloc`.
class SK_JsonPool {
 public:
  static bool const kNeedFree = false;

  SK_JsonPool() = default;
  /// Takes from `buffer` first, which is aligned for any value, must outlive the pool and stays the caller's.
  SK_JsonPool(void* buffer, std::size_t size)
      : mRoom{static_cast<char*>(buffer), static_cast<char*>(buffer), static_cast<char*>(buffer) + size} {}
  ~SK_JsonPool();
  SK_JsonPool(SK_JsonPool const&) = delete;
  SK_JsonPool& operator=(SK_JsonPool const&) = delete;

  /// Null for 0 bytes.
  void* Malloc(std::size_t size) {
    size = (size + (kAlignment - 1)) / kAlignment * kAlignment;
    if (size == 0) {
      return nullptr;
    }
    return size <= mRoom.GetLeft() ? mRoom.Take(size) : TakeFromNewChunk(size);
  }

  /// A larger block is a new one; the old one stays until the pool goes.
  void* Realloc(void* block, std::size_t size, std::size_t newSize) {
    if (newSize == 0) {
      return nullptr;
    }
    if (newSize <= size) {
      return block;
    }
    void* const larger = Malloc(newSize);
    if (size != 0) {
      std::memcpy(larger, block, size);
    }
    return larger;
  }

  static void Free(void*) {}

  /// Bytes given out.
  std::size_t Size() const { return mSizeElsewhere + mRoom.GetSize(); }

 private:
  static constexpr std::size_t kAlignment = 8;

  struct Chunk;

  struct Room {
    char* begin = nullptr;
    char* next = nullptr;
    char* end = nullptr;

    std::size_t GetSize() const { return static_cast<std::size_t>(next - begin); }
    std::size_t GetLeft() const { return static_cast<std::size_t>(end - next); }
    char* Take(std::size_t size) {
      char* const block = next;
      next += size;
      return block;
    }
  };

  void* TakeFromNewChunk(std::size_t size);
  Room AddChunk(std::size_t size);

  Room mRoom;                      ///< what is being filled
  std::size_t mSizeElsewhere = 0;  ///< bytes given out from all other chunks
  std::size_t mTaken = 0;          ///< bytes of all chunks
  Chunk* mLastChunk = nullptr;
};

}  // namespace SK_NAMESPACE_INT
