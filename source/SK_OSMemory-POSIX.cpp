#include <sys/mman.h>

#include <cstdint>

#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {

namespace {

char* Map(std::size_t size) {
  void* const memory = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
  return memory == MAP_FAILED ? nullptr : static_cast<char*>(memory);
}

/// How many bytes lie between the address and the next multiple of `size`.
std::size_t DistanceToMultiple(char const* address, std::size_t size) {
  return (size - (reinterpret_cast<std::uintptr_t>(address) & (size - 1))) & (size - 1);
}

}  // namespace

void* MapStretch(std::size_t size) noexcept {
  char* memory = Map(size);
  if (memory == nullptr || DistanceToMultiple(memory, size) == 0) {
    return memory;
  }
  // Twice as much holds a multiple anywhere; what lies around it goes back.
  UnmapStretch(memory, size);
  memory = Map(2 * size);
  if (memory == nullptr) {
    return nullptr;
  }
  std::size_t const before = DistanceToMultiple(memory, size);
  if (before != 0) {
    UnmapStretch(memory, before);
  }
  UnmapStretch(memory + before + size, size - before);
  return memory + before;
}

void UnmapStretch(void* stretch, std::size_t size) noexcept {
  static_cast<void>(::munmap(stretch, size));
}

}  // namespace SK_NAMESPACE_INT
