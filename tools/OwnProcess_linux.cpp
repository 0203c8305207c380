#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "OwnProcess.h"

namespace senmark_tool {

std::string OwnPath() {
  std::error_code failure;
  return std::filesystem::read_symlink("/proc/self/exe", failure).string();
}

std::uint64_t AddressSpaceInUse() {
  std::uint64_t pages = 0;
  std::ifstream("/proc/self/statm") >> pages;
  return pages * static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
}

void EndWithParent(pid_t parent) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != parent) {
    _exit(0);  // it was gone before it could be watched
  }
}

}  // namespace senmark_tool
