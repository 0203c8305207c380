#include <sys/mman.h>

#include <cstdint>

#include "SK_OSMemory.h"

namespace SK_NAMESPACE_INT {

namespace {

char* Map(std::size_t size) {
  void* const pages = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return pages == MAP_FAILED ? nullptr : static_cast<char*>(pages);
}

void Unmap(char* pages, std::size_t size) {
  if (size != 0) {
    static_cast<void>(::munmap(pages, size));
  }
}

/// From `pages` to the next multiple of `kLargePage`.
std::size_t BytesToLargePage(char const* pages) {
  return -reinterpret_cast<std::uintptr_t>(pages) & (kLargePage - 1);
}

/// More than is needed, of which what lies before and behind the large pages goes back.
char* MapAligned(std::size_t size) {
  std::size_t const wider = size + kLargePage;
  char* const pages = wider < size ? nullptr : Map(wider);
  if (pages == nullptr) {
    return nullptr;
  }
  std::size_t const before = BytesToLargePage(pages);
  Unmap(pages, before);
  Unmap(pages + before + size, kLargePage - before);
  return pages + before;
}

}  // namespace

void* MapLargePages(std::size_t size) noexcept {
  // Systems put one mapping next to the other, so that nearly all of them are in their place at once.
  char* pages = Map(size);
  if (pages != nullptr && BytesToLargePage(pages) != 0) {
    Unmap(pages, size);
    pages = MapAligned(size);
  }
  return pages;
}

void UnmapLargePages(void* pages, std::size_t size) noexcept {
  Unmap(static_cast<char*>(pages), size);
}

}  // namespace SK_NAMESPACE_INT
