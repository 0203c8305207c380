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

bool RemoveEntry(int folder, char const* name, int depth);

/// Removes what can be removed of an open folder's entries.
void RemoveEntries(int folder, int depth) {
  // The record of getdents64(2): what stands in front of a name. The library's own `readdir` takes memory.
  constexpr std::size_t kLengthAt = 16;
  constexpr std::size_t kNameAt = 19;
  alignas(std::uint64_t) char block[kBlock];
  while (true) {
    long const size = syscall(SYS_getdents64, folder, block, sizeof block);
    if (size <= 0) {
      return;
    }
    for (long at = 0; at < size;) {
      std::uint16_t length = 0;
      std::memcpy(&length, block + at + kLengthAt, sizeof length);
      char const* const name = block + at + kNameAt;
      if (std::strcmp(name, ".") != 0 && std::strcmp(name, "..") != 0) {
        RemoveEntry(folder, name, depth);
      }
      at += length;
    }
  }
}

/// False: it is still there.
bool RemoveEntry(int folder, char const* name, int depth) {
  if (unlinkat(folder, name, 0) == 0) {
    return true;
  }
  if (depth > kDeepest) {
    return false;
  }
  int const inner = openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (inner != -1) {
    RemoveEntries(inner, depth + 1);
    close(inner);
  }
  return unlinkat(folder, name, AT_REMOVEDIR) == 0;
}

}  // namespace

void RemoveFolder(char const* path) {
  // Others may come while some go. All of it is gone through anew, never each level: that would take the number to the
  // power of the depth when something in it stays.
  constexpr int kPassages = 3;
  for (int passage = 0; passage != kPassages && !RemoveEntry(AT_FDCWD, path, 0); ++passage) {
  }
}

}  // namespace senmark_tool
