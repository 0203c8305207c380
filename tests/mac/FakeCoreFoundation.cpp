#include "FakeCoreFoundation.h"

#include <dlfcn.h>
#include <elf.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <utility>

// What the caller sees as pointers to types of its own. The object comes first in each, and so has its address.
namespace {

struct Object {
  Object();
  Object(Object const&) = delete;
  Object& operator=(Object const&) = delete;
  virtual ~Object();

  mutable int references = 1;
};

std::set<void const*> gLiveObjects;

[[noreturn]] void Stop(char const* rule) {
  std::fprintf(stderr, "CoreFoundation: %s\n", rule);
  std::abort();
}

Object::Object() {
  gLiveObjects.insert(this);
}

Object::~Object() {
  gLiveObjects.erase(this);
}

/// The object at `address`, which must live.
template <typename Type>
Type& Live(Type* address) {
  if (address == nullptr || gLiveObjects.count(address) == 0) {
    Stop("no living object");
  }
  return *address;
}

Object const& LiveObject(CFTypeRef object) {
  return Live(static_cast<Object const*>(object));
}

}  // namespace

struct __CFString : Object {
  std::string text;
};
struct __CFNumber : Object {
  CFIndex value = 0;
};
struct __CFError : Object {};
struct __CFURL : Object {
  std::string path;
};
struct __CFArray : Object {
  ~__CFArray() override {
    for (CFTypeRef const element : elements) {
      CFRelease(element);
    }
  }
  std::vector<CFTypeRef> elements;
};
struct __CFReadStream : Object {
  ~__CFReadStream() override {
    if (fd != -1) {
      Stop("a stream that was not closed");
    }
  }
  std::string path;
  int fd = -1;
};
struct __CFBundle : Object {
  ~__CFBundle() override;
  std::string folder;
  void* code = nullptr;
};

namespace {

/// The system has one bundle for each folder.
std::map<std::string, CFBundleRef> gBundles;
std::vector<CFIndex> const* gArchitectures = nullptr;
int gCallsToPass = -1;  // negative: none fails
bool gHasFailed = false;

bool FailsNow() {
  bool const fails = gCallsToPass == 0;
  gHasFailed = gHasFailed || fails;
  gCallsToPass = std::max(gCallsToPass - 1, -1);
  return fails;
}

bool IsFolder(std::string const& path) {
  struct stat status;
  return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

std::string ReadFile(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// A text of the bundle's property list; empty if it has none of this name.
std::string Property(__CFBundle const& bundle, std::string const& name) {
  std::string const list = ReadFile(bundle.folder + "/Contents/Info.plist");
  std::string const head = "<key>" + name + "</key><string>";
  std::size_t const start = list.find(head);
  if (start == std::string::npos) {
    return std::string();
  }
  return list.substr(start + head.size(), list.find('<', start + head.size()) - start - head.size());
}

std::string ExecutablePath(__CFBundle const& bundle) {
  std::string name = Property(bundle, "CFBundleExecutable");
  if (name.empty()) {
    name = bundle.folder.substr(bundle.folder.rfind('/') + 1);
    name = name.substr(0, name.rfind('.'));
  }
  return bundle.folder + "/Contents/MacOS/" + name;
}

/// As the numbers of macOS; empty for what is no code of a known machine.
std::vector<CFIndex> ArchitecturesOf(__CFBundle const& bundle) {
  std::string const code = ReadFile(ExecutablePath(bundle));
  if (code.compare(0, SELFMAG, ELFMAG) != 0 || code.size() < sizeof(Elf64_Ehdr)) {
    return {};
  }
  switch (reinterpret_cast<Elf64_Ehdr const*>(code.data())->e_machine) {
    case EM_X86_64:
      return {0x01000007};
    case EM_AARCH64:
      return {0x0100000c};
    default:
      return {};
  }
}

/// No sequence is cut, and no byte stands outside of one.
bool IsUTF8(std::string const& text) {
  int following = 0;
  for (char const c : text) {
    auto const byte = static_cast<unsigned char>(c);
    bool const follows = (byte & 0xC0U) == 0x80U;
    if (follows != (following != 0) || byte >= 0xF8U) {
      return false;
    }
    following = follows ? following - 1 : byte >= 0xF0U ? 3 : byte >= 0xE0U ? 2 : byte >= 0xC0U ? 1 : 0;
  }
  return following == 0;
}

__CFNumber const* MakeNumber(CFIndex value) {
  auto* const number = new __CFNumber;
  number->value = value;
  return number;
}

bool LoadExecutable(__CFBundle& bundle) {
  if (bundle.code == nullptr) {
    bundle.code = dlopen(ExecutablePath(bundle).c_str(), RTLD_NOW | RTLD_LOCAL);
  }
  return bundle.code != nullptr;
}

/// A name that never goes.
CFStringRef EternalString(char const* text) {
  auto* const string = new __CFString;
  gLiveObjects.erase(string);
  string->text = text;
  return string;
}

}  // namespace

__CFBundle::~__CFBundle() {
  gBundles.erase(folder);
  if (code != nullptr) {
    dlclose(code);
  }
}

CFAllocatorRef const kCFAllocatorDefault = nullptr;
CFStringRef const kCFURLFileSizeKey = EternalString("NSURLFileSizeKey");

CFTypeRef CFRetain(CFTypeRef object) {
  ++LiveObject(object).references;
  return object;
}

void CFRelease(CFTypeRef object) {
  if (--LiveObject(object).references == 0) {
    delete static_cast<Object const*>(object);
  }
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  return static_cast<CFIndex>(Live(array).elements.size());
}

void const* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return Live(array).elements.at(static_cast<std::size_t>(index));
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  if (type != kCFNumberCFIndexType) {
    Stop("a type of number that is not known");
  }
  *static_cast<CFIndex*>(value) = Live(number).value;
  return !FailsNow();
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, UInt8 const* bytes, CFIndex count, CFStringEncoding encoding,
                                    Boolean) {
  std::string const text(reinterpret_cast<char const*>(bytes), static_cast<std::size_t>(count));
  if (encoding != kCFStringEncodingUTF8) {
    Stop("an encoding that is not known");
  }
  if (FailsNow() || !IsUTF8(text)) {
    return nullptr;
  }
  auto* const string = new __CFString;
  string->text = text;
  return string;
}

CFURLRef CFURLCreateFromFileSystemRepresentation(CFAllocatorRef, UInt8 const* path, CFIndex length, Boolean) {
  if (FailsNow() || length == 0) {
    return nullptr;
  }
  auto* const url = new __CFURL;
  url->path.assign(reinterpret_cast<char const*>(path), static_cast<std::size_t>(length));
  return url;
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean, UInt8* buffer, CFIndex size) {
  std::string const& path = Live(url).path;
  if (FailsNow() || path.size() >= static_cast<std::size_t>(size)) {
    return 0;
  }
  path.copy(reinterpret_cast<char*>(buffer), path.size());
  buffer[path.size()] = 0;
  return 1;
}

Boolean CFURLCopyResourcePropertyForKey(CFURLRef url, CFStringRef key, void* value, CFErrorRef* error) {
  struct stat status;
  if (key != kCFURLFileSizeKey || error != nullptr) {
    Stop("a property that is not known");
  }
  if (stat(Live(url).path.c_str(), &status) != 0) {
    return 0;
  }
  // What a file has not, like a size, is no failure but null.
  *static_cast<CFTypeRef*>(value) = FailsNow() ? nullptr : MakeNumber(status.st_size);
  return 1;
}

CFBundleRef CFBundleCreate(CFAllocatorRef, CFURLRef url) {
  std::string const& folder = Live(url).path;
  if (FailsNow() || !IsFolder(folder)) {
    return nullptr;
  }
  CFBundleRef& bundle = gBundles[folder];
  if (bundle == nullptr) {
    bundle = new __CFBundle;
    bundle->folder = folder;
  } else {
    CFRetain(bundle);
  }
  return bundle;
}

CFBundleRef CFBundleGetBundleWithIdentifier(CFStringRef identifier) {
  for (auto const& [folder, bundle] : gBundles) {
    if (Property(*bundle, "CFBundleIdentifier") == Live(identifier).text) {
      return FailsNow() ? nullptr : bundle;
    }
  }
  return nullptr;
}

CFArrayRef CFBundleCopyExecutableArchitectures(CFBundleRef bundle) {
  std::vector<CFIndex> const own = ArchitecturesOf(Live(bundle));
  std::vector<CFIndex> const& architectures = gArchitectures == nullptr ? own : *gArchitectures;
  if (FailsNow() || own.empty()) {
    return nullptr;
  }
  auto* const array = new __CFArray;
  for (CFIndex const architecture : architectures) {
    array->elements.push_back(MakeNumber(architecture));
  }
  return array;
}

Boolean CFBundleIsExecutableLoaded(CFBundleRef bundle) {
  return Live(bundle).code != nullptr;
}

Boolean CFBundleLoadExecutableAndReturnError(CFBundleRef bundle, CFErrorRef* error) {
  if (!FailsNow() && LoadExecutable(Live(bundle))) {
    return 1;
  }
  if (error != nullptr) {
    *error = new __CFError;
  }
  return 0;
}

void* CFBundleGetFunctionPointerForName(CFBundleRef bundle, CFStringRef name) {
  // Loads the code if need be, as the system does.
  return !FailsNow() && LoadExecutable(Live(bundle)) ? dlsym(bundle->code, Live(name).text.c_str()) : nullptr;
}

CFURLRef CFBundleCopyResourceURL(CFBundleRef bundle, CFStringRef name, CFStringRef type, CFStringRef subDirectory) {
  if (subDirectory != nullptr) {
    Stop("a folder of resources that is not known");
  }
  std::string const path = Live(bundle).folder + "/Contents/Resources/" + Live(name).text + '.' + Live(type).text;
  if (FailsNow() || access(path.c_str(), F_OK) != 0) {
    return nullptr;
  }
  auto* const url = new __CFURL;
  url->path = path;
  return url;
}

CFReadStreamRef CFReadStreamCreateWithFile(CFAllocatorRef, CFURLRef url) {
  std::string const& path = Live(url).path;
  if (FailsNow()) {
    return nullptr;
  }
  auto* const stream = new __CFReadStream;
  stream->path = path;
  return stream;
}

Boolean CFReadStreamOpen(CFReadStreamRef stream) {
  if (FailsNow()) {
    return 0;
  }
  Live(stream).fd = open(stream->path.c_str(), O_RDONLY | O_CLOEXEC);
  return stream->fd != -1;
}

CFIndex CFReadStreamRead(CFReadStreamRef stream, UInt8* buffer, CFIndex length) {
  // In pieces of its own choice.
  constexpr CFIndex kMostAtOnce = 10000;
  return FailsNow() ? -1 : read(Live(stream).fd, buffer, static_cast<std::size_t>(std::min(length, kMostAtOnce)));
}

void CFReadStreamClose(CFReadStreamRef stream) {
  if (Live(stream).fd == -1) {
    Stop("a stream that is not open");
  }
  close(std::exchange(stream->fd, -1));
}

namespace fake_mac {

std::size_t LiveObjects() {
  return gLiveObjects.size();
}

FailingCoreFoundation::FailingCoreFoundation(int passed) {
  gCallsToPass = passed;
  gHasFailed = false;
}

FailingCoreFoundation::~FailingCoreFoundation() {
  gCallsToPass = -1;
}

bool FailingCoreFoundation::HasFailed() const {
  return gHasFailed;
}

Architectures::Architectures(std::vector<CFIndex> const& architectures) {
  gArchitectures = &architectures;
}

Architectures::~Architectures() {
  gArchitectures = nullptr;
}

}  // namespace fake_mac
