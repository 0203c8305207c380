#include <spawn.h>
#include <sys/wait.h>

#include <cerrno>

#include "FolderRemoval.h"

namespace senmark_tool {

// Folders cannot be read here without memory, but `posix_spawn` is a single system call.
void RemoveFolder(char const* path) {
  char const* const arguments[] = {"/bin/rm", "-rf", "--", path, nullptr};
  char* const environment[] = {nullptr};
  pid_t child = 0;
  if (posix_spawn(&child, arguments[0], nullptr, nullptr, const_cast<char* const*>(arguments), environment) == 0) {
    while (waitpid(child, nullptr, 0) == -1 && errno == EINTR) {
    }
  }
}

}  // namespace senmark_tool
