#include <sys/utsname.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <vector>

#include "ElfHead.h"
#include "ModuleCode.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr char kIsCut[] = "its code is cut short: the file ends before what it says it holds";

char const* KindProblem(eElfKind kind) {
  switch (kind) {
    case eElfKind::kNoElf:
      return "is no ELF file";
    case eElfKind::kOtherMachine:
      return "is for another kind of machine";
    case eElfKind::kNoSharedObject:
      return "is an ELF file, but no shared object";
    default:
      return nullptr;
  }
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
  ElfHead head = {};
  errno = 0;
  std::ifstream file(path, std::ios::binary);
  if (!file) {
    return shown + " cannot be read: " + std::generic_category().message(errno);
  }
  if (!file.read(reinterpret_cast<char*>(&head), sizeof head)) {
    return shown + " is no ELF file";
  }
  char const* const problem = KindProblem(ElfKindOf(head));
  return problem == nullptr ? std::string() : shown + ' ' + problem;
}

std::string ModuleLoadProblem(std::string const& folder) {
  std::string const path = ModuleCodePath(folder);
  std::error_code failure;
  std::uint64_t const size = fs::file_size(path, failure);
  std::ifstream file(path, std::ios::binary);
  ElfHead head = {};
  if (!file.read(reinterpret_cast<char*>(&head), sizeof head) || head.e_phentsize != sizeof(ElfSegment)) {
    return kIsCut;
  }
  std::vector<ElfSegment> segments(head.e_phnum);
  file.seekg(static_cast<std::streamoff>(head.e_phoff));
  if (!file.read(reinterpret_cast<char*>(segments.data()),
                 static_cast<std::streamsize>(segments.size() * sizeof(ElfSegment)))) {
    return kIsCut;
  }
  return IsElfWhole(segments, size) ? std::string() : kIsCut;
}

}  // namespace senmark_tool
