#include <dlfcn.h>
#include <link.h>
#include <sys/utsname.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_OSUtils.h"

namespace SK_OSUtils {

struct Module {
  std::string folder;
  void* code = nullptr;  ///< of the system's loader; null if none was loaded
};

namespace {

constexpr unsigned int kReadBlock = 65536;

/// Where the code of a module for this machine lies.
std::string CodePath(std::string const& folder) {
  utsname system;
  if (::uname(&system) != 0) {
    return std::string();
  }
  std::string name = folder.substr(folder.rfind('/') + 1);
  name.erase(name.rfind('.') == std::string::npos ? name.size() : name.rfind('.'));
  return folder + "/Contents/" + system.machine + "-linux/" + name + ".so";
}

/// The head of the code that this function is in: what can be loaded beside it says the same of the machine.
ElfW(Ehdr) const& OwnHead() {
  return *static_cast<ElfW(Ehdr) const*>(GetImage(reinterpret_cast<void const*>(&OwnHead)));
}

bool IsSharedObjectForThisMachine(ElfW(Ehdr) const& head) {
  ElfW(Ehdr) const& own = OwnHead();
  // Mark of the format, width of addresses, and order of bytes.
  return std::memcmp(head.e_ident, own.e_ident, EI_VERSION) == 0 && head.e_type == ET_DYN &&
         head.e_machine == own.e_machine;
}

/// Only regular files are opened: at a pipe, say, the reading would not end. False if it cannot be read.
template <typename Read>
bool ReadRegularFile(std::string const& path, Read&& read) {
  if (File_IO::GetFileMode(path) != File_IO::kRegularFile) {
    return false;
  }
  try {
    File_IO::Descriptor file(File_IO::Open(path.c_str(), true, false));
    return read(file.Get());
  } catch (ns_sensor::SK_Exception const&) {
    return false;
  }
}

/// Whether a file that the system's loader would map is there to its end: the loader does not look, and the process
/// would die at the first page that is missing from a file that was copied half.
bool HasAllSegments(int fd) {
  ElfW(Ehdr) head;
  if (File_IO::Read(fd, &head, sizeof head) != sizeof head || head.e_phentsize != sizeof(ElfW(Phdr))) {
    return false;
  }
  std::vector<ElfW(Phdr)> segments(head.e_phnum);
  auto const bytes = static_cast<unsigned int>(segments.size() * sizeof(ElfW(Phdr)));
  File_IO::Seek(fd, static_cast<long long>(head.e_phoff), File_IO::kSeekFromStart);
  if (File_IO::Read(fd, segments.data(), bytes) != bytes) {
    return false;
  }
  auto const size = static_cast<std::uint64_t>(File_IO::Length(fd));
  return std::all_of(segments.begin(), segments.end(), [size](ElfW(Phdr) const& segment) {
    return segment.p_type != PT_LOAD || (segment.p_offset <= size && segment.p_filesz <= size - segment.p_offset);
  });
}

void* LoadCode(std::string const& path) {
  // All names are resolved at once, so that a missing one is told here and not in the midst of a conversion.
  void* const code = ReadRegularFile(path, HasAllSegments) ? ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
  if (code == nullptr) {
    SK_NAMESPACE_INT::ThrowError({ns_sensor::kModuleNotLoaded, SK_Message::kLoadModule, -1, -1});
  }
  return code;
}

std::string ReadAll(int fd) {
  std::string data;
  for (unsigned int size = kReadBlock; size != 0;) {
    std::size_t const before = data.size();
    data.resize(before + kReadBlock);
    size = File_IO::Read(fd, &data[before], kReadBlock);
    data.resize(before + size);
  }
  return data;
}

}  // namespace

bool IsValidLibrary(std::string const& folder) {
  return ReadRegularFile(CodePath(folder), [](int fd) {
    ElfW(Ehdr) head;
    return File_IO::Read(fd, &head, sizeof head) == sizeof head && IsSharedObjectForThisMachine(head);
  });
}

ModuleRef LoadModule(std::string const& folder, bool resourcesOnly) {
  if (File_IO::GetFileMode(folder) != File_IO::kFolder) {
    return nullptr;
  }
  auto module = std::make_unique<Module>();
  module->folder = folder;
  if (!resourcesOnly) {
    module->code = LoadCode(CodePath(folder));
  }
  return module.release();
}

void UnloadModule(ModuleRef module, bool /*resourcesOnly*/) {
  if (module != nullptr && module->code != nullptr) {
    ::dlclose(module->code);
  }
  delete module;
}

void* GetFunctionPointerFromModuleImpl(ModuleRef module, char const* name) {
  return module == nullptr || module->code == nullptr ? nullptr : ::dlsym(module->code, name);
}

bool GetResourceDataFromModule(ModuleRef module, std::string const& name, std::string const& type, std::string& data) {
  if (module == nullptr) {
    return false;
  }
  return ReadRegularFile(module->folder + "/Contents/Resources/" + name + '.' + type, [&](int fd) {
    data = ReadAll(fd);
    return true;
  });
}

ModuleRef GetModuleRef(std::string const& /*identifier*/) {
  Dl_info info;
  if (::dladdr(reinterpret_cast<void const*>(&GetModuleRef), &info) == 0) {
    return nullptr;
  }
  std::string const file = info.dli_fname;
  return LoadModule(file.substr(0, file.rfind('/') + 1), true);
}

}  // namespace SK_OSUtils
