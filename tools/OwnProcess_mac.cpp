#include <mach-o/dyld.h>

#include <filesystem>

#include "OwnProcess.h"

namespace senmark_tool {

std::string OwnPath() {
  std::uint32_t size = 0;
  _NSGetExecutablePath(nullptr, &size);
  std::string path(size, '\0');
  if (_NSGetExecutablePath(path.data(), &size) != 0) {
    return std::string();
  }
  std::error_code failure;
  return std::filesystem::canonical(path.c_str(), failure).string();
}

// The system does not hold processes to a limit of it.
std::uint64_t AddressSpaceInUse() {
  return 0;
}

// The system has no such call: the limit of processor time ends a child that is left alone.
void EndWithParent(pid_t /*parent*/) {}

}  // namespace senmark_tool
