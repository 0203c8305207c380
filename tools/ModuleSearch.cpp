#include "ModuleSearch.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "OwnProcess.h"

namespace senmark_tool {

namespace {

namespace fs = std::filesystem;

constexpr char kPathVariable[] = "SENMARK_MODULE_PATH";
constexpr char kFolderBesideProgram[] = "modules";

std::vector<std::string> EnvironmentFolders() {
  char const* const list = std::getenv(kPathVariable);
  std::string const text = list == nullptr ? "" : list;
  std::vector<std::string> folders;
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t const end = std::min(text.find(':', begin), text.size());
    if (end != begin) {
      folders.push_back(text.substr(begin, end - begin));
    }
    begin = end + 1;
  }
  return folders;
}

class Searcher {
 public:
  void Add(std::string const& path, eModuleOrigin origin) {
    SearchedFolder folder;
    folder.origin = origin;
    std::error_code failure;
    folder.path = fs::weakly_canonical(fs::absolute(path, failure), failure).string();
    folder.problem = Problem(folder.path);
    if (origin == eModuleOrigin::kOption && !folder.problem.empty()) {
      throw ModuleFolderError("--modules " + path + ": " + folder.problem);
    }
    if (folder.problem.empty() && !mPaths.insert(folder.path).second) {
      folder.problem = "it was searched already";
    }
    if (folder.problem.empty()) {
      folder.modules = ReadModuleFolders(folder.path);
    }
    mFolders.push_back(std::move(folder));
  }

  std::vector<SearchedFolder> Take() { return std::move(mFolders); }

 private:
  static std::string Problem(std::string const& path) {
    std::error_code failure;
    if (!fs::is_directory(path, failure)) {
      return fs::exists(path, failure) ? "it is no folder" : "there is no such folder";
    }
    fs::directory_iterator const children(path, failure);
    return failure ? "it cannot be read: " + failure.message() : std::string();
  }

  std::set<std::string> mPaths;
  std::vector<SearchedFolder> mFolders;
};

}  // namespace

char const* OriginText(eModuleOrigin origin) {
  switch (origin) {
    case eModuleOrigin::kOption:
      return "--modules";
    case eModuleOrigin::kEnvironment:
      return kPathVariable;
    case eModuleOrigin::kBesideProgram:
      return "beside the program";
    case eModuleOrigin::kInstalled:
      return "installed";
  }
  return "";
}

bool SearchedFolder::HoldsModules() const {
  return std::any_of(modules.begin(), modules.end(), [](ModuleFolder const& module) { return module.IsModule(); });
}

std::vector<SearchedFolder> SearchModules(std::vector<std::string> const& named) {
  Searcher searcher;
  for (std::string const& path : named) {
    searcher.Add(path, eModuleOrigin::kOption);
  }
  for (std::string const& path : EnvironmentFolders()) {
    searcher.Add(path, eModuleOrigin::kEnvironment);
  }
  fs::path const program = OwnPath();
  if (!program.empty()) {
    searcher.Add((program.parent_path() / kFolderBesideProgram).string(), eModuleOrigin::kBesideProgram);
    searcher.Add((program.parent_path() / SENMARK_INSTALLED_MODULES).string(), eModuleOrigin::kInstalled);
  }
  return searcher.Take();
}

}  // namespace senmark_tool
