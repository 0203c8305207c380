#include "FailingMemory.h"

#include <cstdlib>
#include <new>

namespace {

/// Allocations of the thread until one fails: 1 is the next one, 0 none.
thread_local std::uint64_t gUntilFailure = 0;
thread_local std::uint64_t gFailuresLeft = 0;
thread_local bool gHasFailed = false;

bool FailsNow() {
  if (gUntilFailure == 0) {
    return false;
  }
  if (gUntilFailure > 1) {
    --gUntilFailure;
    return false;
  }
  gHasFailed = true;
  if (--gFailuresLeft == 0) {
    gUntilFailure = 0;
  }
  return true;
}

void* Allocate(std::size_t size) {
  return FailsNow() ? nullptr : std::malloc(size == 0 ? 1 : size);
}

void* AllocateOrThrow(std::size_t size) {
  void* const block = Allocate(size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
  return Allocate(size);
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
  return Allocate(size);
}
void operator delete(void* block) noexcept {
  std::free(block);
}
void operator delete[](void* block) noexcept {
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  std::free(block);
}
void operator delete(void* block, std::nothrow_t const&) noexcept {
  std::free(block);
}
void operator delete[](void* block, std::nothrow_t const&) noexcept {
  std::free(block);
}

namespace senmark_test {

FailingMemory::FailingMemory(std::uint64_t first, std::uint64_t count) {
  gHasFailed = false;
  gFailuresLeft = count;
  gUntilFailure = first;
}

FailingMemory::~FailingMemory() {
  gUntilFailure = 0;
}

bool FailingMemory::HasFailed() const {
  return gHasFailed;
}

}  // namespace senmark_test
