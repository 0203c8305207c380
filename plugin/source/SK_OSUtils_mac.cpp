#include <CoreFoundation/CoreFoundation.h>
#include <limits.h>

#include <utility>

#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_OSUtils.h"

namespace SK_OSUtils {

/// Owns one reference of CoreFoundation; null for none.
template <typename Reference>
class AutoCFRef {
 public:
  explicit AutoCFRef(Reference reference = nullptr) : mReference(reference) {}
  ~AutoCFRef() {
    if (mReference != nullptr) {
      ::CFRelease(mReference);
    }
  }
  AutoCFRef(AutoCFRef&& other) noexcept : mReference(std::exchange(other.mReference, nullptr)) {}
  AutoCFRef(AutoCFRef const&) = delete;
  AutoCFRef& operator=(AutoCFRef const&) = delete;

  Reference operator*() const { return mReference; }
  bool IsNull() const { return mReference == nullptr; }

 private:
  Reference mReference;
};

struct Module {
  explicit Module(AutoCFRef<CFBundleRef>&& openedBundle) : bundle(std::move(openedBundle)) {}

  AutoCFRef<CFBundleRef> bundle;
};

namespace {

constexpr CFIndex kReadBlock = 65536;

#if defined(__aarch64__)
constexpr CFIndex kOwnArchitecture = 0x0100000c;  // not every system's headers name it
#else
constexpr CFIndex kOwnArchitecture = kCFBundleExecutableArchitectureX86_64;
#endif

AutoCFRef<CFStringRef> MakeCFString(std::string const& text) {
  return AutoCFRef<CFStringRef>(
      ::CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<UInt8 const*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
}

/// Null for what is no folder or no bundle.
AutoCFRef<CFBundleRef> OpenBundle(std::string const& folder) {
  AutoCFRef<CFURLRef> const url(::CFURLCreateFromFileSystemRepresentation(
      kCFAllocatorDefault, reinterpret_cast<UInt8 const*>(folder.data()), static_cast<CFIndex>(folder.size()), true));
  return AutoCFRef<CFBundleRef>(url.IsNull() ? nullptr : ::CFBundleCreate(kCFAllocatorDefault, *url));
}

bool HasOwnArchitecture(CFArrayRef architectures) {
  for (CFIndex i = 0; i < ::CFArrayGetCount(architectures); ++i) {
    auto const number = static_cast<CFNumberRef>(::CFArrayGetValueAtIndex(architectures, i));
    CFIndex architecture = 0;
    if (::CFNumberGetValue(number, kCFNumberCFIndexType, &architecture) && architecture == kOwnArchitecture) {
      return true;
    }
  }
  return false;
}

/// At a pipe, say, the reading would not end. A link counts as what it leads to.
bool IsRegularFile(CFURLRef url) {
  char path[PATH_MAX];
  return ::CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<UInt8*>(path), sizeof path) &&
         File_IO::GetFileMode(path) == File_IO::kRegularFile;
}

/// The size of the file as the system knows it, so that the text is allocated once; 0 if it does not.
CFIndex FileLength(CFURLRef url) {
  CFTypeRef value = nullptr;
  if (!::CFURLCopyResourcePropertyForKey(url, kCFURLFileSizeKey, &value, nullptr)) {
    return 0;
  }
  AutoCFRef<CFTypeRef> const owned(value);
  CFIndex length = 0;
  if (owned.IsNull() || !::CFNumberGetValue(static_cast<CFNumberRef>(*owned), kCFNumberCFIndexType, &length)) {
    return 0;
  }
  return length < 0 ? 0 : length;
}

/// False if a read failed.
bool ReadOpenStream(CFReadStreamRef stream, std::string& data) {
  UInt8 block[kReadBlock];
  for (;;) {
    CFIndex const size = ::CFReadStreamRead(stream, block, kReadBlock);
    if (size <= 0) {
      return size == 0;
    }
    data.append(reinterpret_cast<char const*>(block), static_cast<std::size_t>(size));
  }
}

/// Closes an open stream.
class OpenStream {
 public:
  explicit OpenStream(CFReadStreamRef stream) : mStream(stream) {}
  ~OpenStream() { ::CFReadStreamClose(mStream); }
  OpenStream(OpenStream const&) = delete;
  OpenStream& operator=(OpenStream const&) = delete;

 private:
  CFReadStreamRef mStream;
};

}  // namespace

bool IsValidLibrary(std::string const& folder) {
  AutoCFRef<CFBundleRef> const bundle = OpenBundle(folder);
  if (bundle.IsNull()) {
    return false;
  }
  AutoCFRef<CFArrayRef> const architectures(::CFBundleCopyExecutableArchitectures(*bundle));
  return !architectures.IsNull() && HasOwnArchitecture(*architectures);
}

ModuleRef LoadModule(std::string const& folder, bool resourcesOnly) {
  AutoCFRef<CFBundleRef> bundle = OpenBundle(folder);
  if (bundle.IsNull()) {
    return nullptr;
  }
  if (!resourcesOnly && !::CFBundleIsExecutableLoaded(*bundle)) {
    CFErrorRef error = nullptr;
    bool const loaded = ::CFBundleLoadExecutableAndReturnError(*bundle, &error);
    AutoCFRef<CFErrorRef> const ownedError(error);
    if (!loaded) {
      SK_NAMESPACE_INT::ThrowError({ns_sensor::kModuleNotLoaded, SK_Message::kLoadModule, -1, -1});
    }
  }
  return new Module(std::move(bundle));
}

// The system keeps one bundle for each folder. Its code goes, if at all, with the last reference to it.
void UnloadModule(ModuleRef module, bool /*resourcesOnly*/) {
  delete module;
}

void* GetFunctionPointerFromModuleImpl(ModuleRef module, char const* name) {
  // Asking loads the code: a module that was opened for its resources alone is not asked.
  if (module == nullptr || !::CFBundleIsExecutableLoaded(*module->bundle)) {
    return nullptr;
  }
  AutoCFRef<CFStringRef> const text = MakeCFString(name);
  return text.IsNull() ? nullptr : ::CFBundleGetFunctionPointerForName(*module->bundle, *text);
}

bool GetResourceDataFromModule(ModuleRef module, std::string const& name, std::string const& type, std::string& data) {
  if (module == nullptr) {
    return false;
  }
  AutoCFRef<CFStringRef> const nameText = MakeCFString(name);
  AutoCFRef<CFStringRef> const typeText = MakeCFString(type);
  if (nameText.IsNull() || typeText.IsNull()) {
    return false;
  }
  AutoCFRef<CFURLRef> const url(::CFBundleCopyResourceURL(*module->bundle, *nameText, *typeText, nullptr));
  if (url.IsNull() || !IsRegularFile(*url)) {
    return false;
  }
  AutoCFRef<CFReadStreamRef> const stream(::CFReadStreamCreateWithFile(kCFAllocatorDefault, *url));
  if (stream.IsNull() || !::CFReadStreamOpen(*stream)) {
    return false;
  }
  OpenStream const closedAtEnd(*stream);
  std::string content;
  content.reserve(static_cast<std::size_t>(FileLength(*url)));
  if (!ReadOpenStream(*stream, content)) {
    return false;
  }
  data = std::move(content);
  return true;
}

ModuleRef GetModuleRef(std::string const& identifier) {
  AutoCFRef<CFStringRef> const text = MakeCFString(identifier);
  auto* const bundle = text.IsNull() ? nullptr : ::CFBundleGetBundleWithIdentifier(*text);
  if (bundle == nullptr) {
    return nullptr;
  }
  // The system keeps the reference that it gave; this one is released with the module.
  ::CFRetain(bundle);
  AutoCFRef<CFBundleRef> owned(bundle);
  return new Module(std::move(owned));
}

}  // namespace SK_OSUtils
