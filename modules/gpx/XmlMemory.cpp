#include "XmlMemory.h"

#include <cstdlib>

namespace senmark_gpx {

namespace {

/// Stands before each block; as long as the strictest alignment.
union Head {
  std::size_t size;
  std::max_align_t alignment;
};

/// The parser's functions get no argument that would tell whose memory it is.
thread_local XmlMemory* gMemoryInUse = nullptr;

Head* HeadOf(void* block) {
  return static_cast<Head*>(block) - 1;
}

}  // namespace

XML_Memory_Handling_Suite const* XmlMemory::Functions() {
  static constexpr XML_Memory_Handling_Suite kFunctions = {Allocate, Reallocate, Free};
  return &kFunctions;
}

XmlMemory::Use::Use(XmlMemory& memory) : mBefore(gMemoryInUse) {
  gMemoryInUse = &memory;
}

XmlMemory::Use::~Use() {
  gMemoryInUse = mBefore;
}

bool XmlMemory::Take(std::size_t size) {
  if (size > kLimit - mHeld) {
    mIsExhausted = true;
    return false;
  }
  mHeld += size;
  return true;
}

void* XmlMemory::Allocate(std::size_t size) {
  if (!gMemoryInUse->Take(size)) {
    return nullptr;
  }
  auto* const head = static_cast<Head*>(std::malloc(sizeof(Head) + size));
  if (head == nullptr) {
    gMemoryInUse->mHeld -= size;
    return nullptr;
  }
  head->size = size;
  return head + 1;
}

void* XmlMemory::Reallocate(void* block, std::size_t size) {
  if (block == nullptr) {
    return Allocate(size);
  }
  std::size_t const before = HeadOf(block)->size;
  if (size > before && !gMemoryInUse->Take(size - before)) {
    return nullptr;
  }
  auto* const head = static_cast<Head*>(std::realloc(HeadOf(block), sizeof(Head) + size));
  if (head == nullptr) {
    gMemoryInUse->mHeld -= size > before ? size - before : 0;
    return nullptr;
  }
  gMemoryInUse->mHeld -= size < before ? before - size : 0;
  head->size = size;
  return head + 1;
}

void XmlMemory::Free(void* block) {
  if (block != nullptr) {
    gMemoryInUse->mHeld -= HeadOf(block)->size;
    std::free(HeadOf(block));
  }
}

}  // namespace senmark_gpx
