#include "ModuleLayoutCheck.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <vector>

#include "ManifestConverters.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

/// Paths of all files in a folder, from that folder on, in order. What cannot be read is left out.
std::set<std::string> FilesIn(std::string const& folder) {
  std::set<std::string> files;
  std::error_code error;
  fs::recursive_directory_iterator entry(folder, fs::directory_options::skip_permission_denied, error);
  for (; !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
    std::error_code ignored;
    if (!entry->is_directory(ignored)) {
      files.insert(entry->path().lexically_relative(folder).string());
    }
  }
  return files;
}

bool IsFile(std::string const& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}

bool BeginsWith(std::string const& text, std::string const& begin) {
  return text.compare(0, begin.size(), begin) == 0;
}

bool EndsWith(std::string const& text, std::string const& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

/// Whether a file may stand in any module, whatever the library makes of it on this machine.
bool IsUsual(std::string const& file, ModulePaths const& module) {
  return file == "Contents/Info.plist" || file == "Contents/PkgInfo" || file == "Contents/MacOS/" + module.Name() ||
         BeginsWith(file, "Contents/_CodeSignature/") || BeginsWith(file, "Contents/Resources/") ||
         (BeginsWith(file, "Contents/") && EndsWith(file, "-linux/" + module.Name() + ".so"));
}

/// The file that was meant to be the one at `wanted`; empty if none looks like it.
std::string FindNearMiss(std::set<std::string> const& files, std::string const& wanted) {
  std::string const name = LowerCase(fs::path(wanted).filename().string());
  auto const isLike = [&](std::string const& file) { return LowerCase(file) == LowerCase(wanted); };
  auto const hasName = [&](std::string const& file) { return LowerCase(fs::path(file).filename().string()) == name; };
  // Of several, the nearest one.
  auto found = std::find_if(files.begin(), files.end(), isLike);
  if (found == files.end()) {
    found = std::find_if(files.begin(), files.end(), hasName);
  }
  return found == files.end() ? std::string() : *found;
}

std::string ButThereIs(std::string const& file) {
  return file.empty() ? std::string() : "; but there is " + file;
}

/// Says what is wrong with the name of the folder.
void CheckName(ModulePaths const& module, ModuleFindings& findings) {
  std::string const name = module.FolderName();
  std::size_t const point = name.rfind('.');
  if (point == std::string::npos || LowerCase(name.substr(point + 1)) != "tdx") {
    findings.Error(name, "the name of a module's folder ends in .tdx; the library does not look at others");
  } else if (point == 0) {
    findings.Error(name, "the folder has no name before .tdx");
  }
  if (BeginsWith(name, "~")) {
    findings.Error(name, "the library passes over names that begin with ~");
  }
}

void CheckCodeFile(ModulePaths const& module, std::set<std::string> const& files, ModuleFindings& findings) {
  std::string const code = module.Code();
  if (IsFile(module.Full(code))) {
    return;
  }
  if (files.count(code) != 0) {
    findings.Error(code, "this is no regular file, or a link to nothing");
    return;
  }
  std::string found = FindNearMiss(files, code);
  if (found.empty()) {
    std::string const folder = fs::path(code).parent_path().string() + '/';
    auto const other =
        std::find_if(files.begin(), files.end(), [&](std::string const& file) { return BeginsWith(file, folder); });
    found = other == files.end() ? std::string() : *other;
  }
  findings.Error(code, "the code for this machine is missing; its name is that of the folder, letter for letter" +
                           ButThereIs(found));
}

/// Whether the resource is there.
bool FindResource(ModulePaths const& module, std::set<std::string> const& files, std::string const& resource,
                  eSeverity severity, std::string const& consequence, ModuleFindings& findings) {
  if (IsFile(module.Full(resource))) {
    return true;
  }
  findings.Add({severity, resource, {}, "missing" + ButThereIs(FindNearMiss(files, resource)) + ": " + consequence});
  return false;
}

void CheckIdentifier(ModulePaths const& module, ModuleFindings& findings) {
  std::ifstream file(module.Full(ModulePaths::Identifier()), std::ios::binary);
  std::string const text{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  if (!file.is_open()) {
    findings.Error(ModulePaths::Identifier(), "cannot be read");
  } else if (text.empty()) {
    findings.Warning(ModulePaths::Identifier(), "empty: messages about the module will have no name for it");
  } else if (text.find_first_of("\r\n") != std::string::npos) {
    findings.Note(ModulePaths::Identifier(), "the line break in it goes into messages about the module");
  }
}

void NoteStrayFiles(ModulePaths const& module, std::set<std::string> const& files, ModuleFindings& findings) {
  constexpr std::size_t kShown = 10;
  std::size_t count = 0;
  for (std::string const& file : files) {
    if (!IsUsual(file, module) && ++count <= kShown) {
      findings.Note(file, "the library has no use for this file");
    }
  }
  if (count > kShown) {
    findings.Note(module.FolderName(),
                  "and " + Counted(count - kShown, "more file") + " that the library has no use for");
  }
}

}  // namespace

void CheckLayout(ModulePaths const& module, ModuleFindings& findings) {
  std::error_code ignored;
  if (!fs::is_directory(module.Folder(), ignored)) {
    findings.Error(module.FolderName(), fs::exists(module.Folder(), ignored) ? "a module is a folder, which this is not"
                                                                             : "there is no such folder");
    return;
  }
  CheckName(module, findings);
  std::set<std::string> const files = FilesIn(module.Folder());
  CheckCodeFile(module, files, findings);
  FindResource(module, files, ModulePaths::Manifest(), eSeverity::kError,
               "without a manifest the library does not know what the module is for", findings);
  if (FindResource(module, files, ModulePaths::Identifier(), eSeverity::kWarning,
                   "messages about the module will have no name for it", findings)) {
    CheckIdentifier(module, findings);
  }
  NoteStrayFiles(module, files, findings);
}

}  // namespace senmark_tool
