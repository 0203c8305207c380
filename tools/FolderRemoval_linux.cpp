#include <dirent.h>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "FolderRemoval.h"

namespace senmark_tool {

namespace {

/// More folders in one another than this stay: each level takes a descriptor and room on the stack.
constexpr int kDeepest = 64;
constexpr std::size_t kBlock = 2048;  // bytes of entries that are read at a time

void RemoveEntry(int folder, char const* name, int depth);

/// Removes what can be removed in one passage over an open folder. False: there was nothing in it.
bool RemoveEntries(int folder, int depth) {
  // The record of getdents64(2): what stands in front of a name. The library's own `readdir` takes memory.
  constexpr std::size_t kLengthAt = 16;
  constexpr std::size_t kNameAt = 19;
  bool hasAny = false;
  alignas(std::uint64_t) char block[kBlock];
  while (true) {
    long const size = syscall(SYS_getdents64, folder, block, sizeof block);
    if (size <= 0) {
      return hasAny;
    }
    for (long at = 0; at < size;) {
      std::uint16_t length = 0;
      std::memcpy(&length, block + at + kLengthAt, sizeof length);
      char const* const name = block + at + kNameAt;
      if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
        hasAny = true;
        RemoveEntry(folder, name, depth);
      }
      at += length;
    }
  }
}

void RemoveEntry(int folder, char const* name, int depth) {
  constexpr int kPassages = 3;  // an entry may be passed over while others go, and others may come
  if (unlinkat(folder, name, 0) == 0 || depth > kDeepest) {
    return;
  }
  int const inner = openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (inner != -1) {
    for (int passage = 0; passage != kPassages && RemoveEntries(inner, depth + 1); ++passage) {
      lseek(inner, 0, SEEK_SET);
    }
    close(inner);
  }
  unlinkat(folder, name, AT_REMOVEDIR);
}

}  // namespace

void RemoveFolder(char const* path) {
  RemoveEntry(AT_FDCWD, path, 0);
}

}  // namespace senmark_tool
