#include "ModuleCodeCheck.h"

#include <cxxabi.h>
#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string_view>

#include "ElfImage.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr char kEntry[] = "InitializePlugin";
constexpr std::size_t kShown = 10;

std::optional<std::string> ReadFile(std::string const& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file.is_open()) {
    return std::nullopt;
  }
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

/// A name as it stands in the source, or the begin of one that fills a line of its own.
std::string SourceName(std::string const& name) {
  constexpr std::size_t kLongest = 80;
  int status = 0;
  std::unique_ptr<char, decltype(&std::free)> const text(abi::__cxa_demangle(name.c_str(), nullptr, nullptr, &status),
                                                         &std::free);
  std::string const shown = status == 0 && text ? text.get() : name;
  return shown.size() <= kLongest ? shown : shown.substr(0, kLongest - 3) + "...";
}

void CheckExports(ElfImage const& image, std::string const& where, ModuleFindings& findings) {
  if (!std::binary_search(image.exported.begin(), image.exported.end(), kEntry)) {
    auto const like = std::find_if(image.exported.begin(), image.exported.end(),
                                   [](std::string const& name) { return name.find(kEntry) != std::string::npos; });
    findings.Error(where, std::string("it does not export ") + kEntry +
                              (like == image.exported.end()
                                   ? ", the one function that the library calls"
                                   : ", but " + SourceName(*like) + ": declare it as senmark/PluginAPI.h does"));
  }
  std::size_t count = 0;
  for (std::string const& name : image.exported) {
    if (name != kEntry && ++count <= kShown) {
      findings.Warning(where, "it exports " + SourceName(name) +
                                  ", which may meet the same name in another module: hide all but " + kEntry);
    }
  }
  if (count > kShown) {
    findings.Warning(where, "it exports " + Counted(count - kShown, "more name"));
  }
}

/// Whether the loader finds a library that the module names.
bool IsFound(std::string const& library, ElfImage const& image, std::string const& folder) {
  if (library.find('/') == std::string::npos) {
    for (std::string path : image.searchPaths) {
      for (std::string_view const origin : {"$ORIGIN", "${ORIGIN}"}) {
        std::size_t const at = path.find(origin);
        path = at == std::string::npos ? path : path.replace(at, origin.size(), folder);
      }
      std::error_code ignored;
      if (fs::exists(fs::path(path) / library, ignored)) {
        return true;
      }
    }
  }
  return dlopen(library.c_str(), RTLD_LAZY | RTLD_LOCAL) != nullptr;
}

/// What the process that loads the code tells: lines with a letter in front.
enum eLoadMark : char { kLoaded = 'L', kMissing = 'M', kUndefined = 'U', kBorrowed = 'B', kReason = 'R' };

void Tell(std::ostream& report, eLoadMark mark, std::string text) {
  std::replace(text.begin(), text.end(), '\n', ' ');
  report << static_cast<char>(mark) << text << '\n';
}

/// Loads the code and tells what is missing for that.
void TryToLoad(std::string const& path, ElfImage const& image, std::ostream& report) {
  bool isComplete = true;
  for (std::string const& library : image.needed) {
    if (!IsFound(library, image, fs::path(path).parent_path().string())) {
      Tell(report, kMissing, library);
      isComplete = false;
    }
  }
  if (!isComplete) {
    return;
  }
  void* code = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  std::string const reason = code == nullptr ? dlerror() : "";
  bool const isLoaded = code != nullptr;
  if (!isLoaded) {
    // Perhaps only functions are missing: then this tells which.
    code = dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
  }
  bool hasToldWhich = false;
  if (code != nullptr) {
    for (std::string const& name : image.undefined) {
      if (dlsym(code, name.c_str()) == nullptr) {
        bool const isBorrowed = dlsym(RTLD_DEFAULT, name.c_str()) != nullptr;
        Tell(report, isBorrowed ? kBorrowed : kUndefined, name);
        hasToldWhich = hasToldWhich || !isBorrowed;
      }
    }
  }
  if (isLoaded) {
    Tell(report, kLoaded, "");
  } else if (!hasToldWhich) {
    Tell(report, kReason, reason);
  }
}

/// Turns what was told into findings. Result: whether the code was loaded.
bool Judge(ProcessEnd const& end, std::string const& where, ModuleFindings& findings) {
  bool isLoaded = false;
  std::istringstream lines(end.report);
  for (std::string line; std::getline(lines, line);) {
    std::string const text = line.substr(1);
    switch (line.front()) {
      case kLoaded:
        isLoaded = true;
        break;
      case kMissing:
        findings.Error(where, "it needs the library " + text + ", which is not found");
        break;
      case kUndefined:
        findings.Error(where, "it needs " + SourceName(text) + ", which none of its libraries has");
        break;
      case kBorrowed:
        findings.Warning(where, "it needs " + SourceName(text) +
                                    ", which none of its libraries has: it is there only by chance, from this program");
        break;
      default:
        findings.Error(where, "it cannot be loaded: " + text);
        break;
    }
  }
  if (!end.HasReturned()) {
    findings.Error(where, "its loading " + end.Text());
  }
  return isLoaded && end.HasReturned();
}

}  // namespace

bool CheckCode(ModulePaths const& module, Limits const& limits, ModuleFindings& findings) {
  std::string const where = module.Code();
  std::string const path = module.Full(where);
  std::optional<std::string> const bytes = ReadFile(path);
  if (!bytes) {
    findings.Error(where, "cannot be read");
    return false;
  }
  std::string obstacle;
  std::optional<ElfImage> const image = ReadElfImage(*bytes, obstacle);
  if (!image) {
    findings.Error(where, obstacle);
    return false;
  }
  CheckExports(*image, where, findings);
  ProcessEnd const end = RunLimited(limits, [&](std::ostream& report) { TryToLoad(path, *image, report); });
  return Judge(end, where, findings) && std::binary_search(image->exported.begin(), image->exported.end(), kEntry);
}

}  // namespace senmark_tool
