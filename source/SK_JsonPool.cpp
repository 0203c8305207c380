#include "SK_JsonPool.h"

#include <algorithm>
#include <cstdlib>
#include <new>
#include <utility>

#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {

namespace {

constexpr std::size_t kSmallChunk = 65536;
// A large page that is not filled weighs little from here on.
constexpr std::size_t kMostInSmallChunks = std::size_t{8} << 20U;

}  // namespace

/// Stands at the beginning of its memory.
struct SK_JsonPool::Chunk {
  Chunk* previous;
  std::size_t size;  ///< this included
  bool isMapped;
};

SK_JsonPool::~SK_JsonPool() {
  while (mLastChunk != nullptr) {
    Chunk* const chunk = mLastChunk;
    mLastChunk = chunk->previous;
    if (chunk->isMapped) {
      UnmapLargePages(chunk, chunk->size);
    } else {
      std::free(chunk);
    }
  }
}

void* SK_JsonPool::TakeFromNewChunk(std::size_t size) {
  Room other = AddChunk(size);
  char* const block = other.Take(size);
  if (other.GetLeft() > mRoom.GetLeft()) {
    std::swap(other, mRoom);  // which is not so behind a block of many pages
  }
  mSizeElsewhere += other.GetSize();
  return block;
}

/// A chunk with room for `size` bytes.
SK_JsonPool::Room SK_JsonPool::AddChunk(std::size_t size) {
  std::size_t const needed = sizeof(Chunk) + size;
  bool const isMapped = mTaken + needed > kMostInSmallChunks;
  std::size_t const whole =
      isMapped ? (needed + kLargePage - 1) / kLargePage * kLargePage : std::max(needed, sizeof(Chunk) + kSmallChunk);
  void* const memory = isMapped ? MapLargePages(whole) : std::malloc(whole);
  if (memory == nullptr) {
    throw std::bad_alloc();
  }
  if (isMapped) {
    PreferLargePages(memory, whole);
  }
  mLastChunk = new (memory) Chunk{mLastChunk, whole, isMapped};
  mTaken += whole;
  char* const begin = static_cast<char*>(memory) + sizeof(Chunk);
  return {begin, begin, static_cast<char*>(memory) + whole};
}

}  // namespace SK_NAMESPACE_INT
