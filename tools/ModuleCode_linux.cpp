#include <link.h>
#include <sys/utsname.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "ModuleCode.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

/// The head of the program's own file: what can be loaded beside it says the same of the machine.
ElfW(Ehdr) OwnHead() {
  ElfW(Ehdr) head = {};
  std::ifstream("/proc/self/exe", std::ios::binary).read(reinterpret_cast<char*>(&head), sizeof head);
  return head;
}

std::string HeadProblem(ElfW(Ehdr) const& head) {
  ElfW(Ehdr) const own = OwnHead();
  if (std::memcmp(head.e_ident, ELFMAG, SELFMAG) != 0) {
    return "is no ELF file";
  }
  bool const isForThisMachine =
      std::memcmp(head.e_ident, own.e_ident, EI_VERSION) == 0 && head.e_machine == own.e_machine;
  if (!isForThisMachine) {
    return "is for another kind of machine";
  }
  return head.e_type == ET_DYN ? "" : "is an ELF file, but no shared object";
}

}  // namespace

std::string ModuleCodePath(std::string const& folder) {
  utsname system;
  if (uname(&system) != 0) {
    return std::string();
  }
  std::string name = folder.substr(folder.rfind('/') + 1);
  name.erase(std::min(name.rfind('.'), name.size()));
  return folder + "/Contents/" + system.machine + "-linux/" + name + ".so";
}

std::string ModuleCodeProblem(std::string const& folder) {
  std::string const path = ModuleCodePath(folder);
  std::string const shown = path.substr(std::min(folder.size() + 1, path.size()));
  std::error_code failure;
  fs::file_status const status = fs::status(path, failure);
  if (!fs::exists(status)) {
    return "no code for this machine: there is no " + shown;
  }
  if (!fs::is_regular_file(status)) {
    return "no code for this machine: " + shown + " is no file";
  }
  ElfW(Ehdr) head = {};
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    return shown + " cannot be read: " + std::generic_category().message(errno);
  }
  if (!file.read(reinterpret_cast<char*>(&head), sizeof head)) {
    return shown + " is no ELF file";
  }
  std::string const problem = HeadProblem(head);
  return problem.empty() ? std::string() : shown + ' ' + problem;
}

std::string ModuleLoadProblem(std::string const& folder) {
  std::string const path = ModuleCodePath(folder);
  std::error_code failure;
  std::uint64_t const size = fs::file_size(path, failure);
  std::ifstream file(path, std::ios::binary);
  ElfW(Ehdr) head = {};
  std::string const isCut = "its code is cut short: the file ends before what it says it holds";
  if (!file.read(reinterpret_cast<char*>(&head), sizeof head) || head.e_phentsize != sizeof(ElfW(Phdr))) {
    return isCut;
  }
  std::vector<ElfW(Phdr)> segments(head.e_phnum);
  file.seekg(static_cast<std::streamoff>(head.e_phoff));
  if (!file.read(reinterpret_cast<char*>(segments.data()),
                 static_cast<std::streamsize>(segments.size() * sizeof(ElfW(Phdr))))) {
    return isCut;
  }
  // The system's loader does not look, and the process would die at the first page that is missing.
  bool const isWhole = std::all_of(segments.begin(), segments.end(), [size](ElfW(Phdr) const& segment) {
    return segment.p_type != PT_LOAD || (segment.p_offset <= size && segment.p_filesz <= size - segment.p_offset);
  });
  return isWhole ? std::string() : isCut;
}

}  // namespace senmark_tool
