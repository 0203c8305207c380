#include "ModuleDiscovery.h"

#include <algorithm>
#include <utility>

#include "NodeText.h"

namespace senmark_tool {

namespace {

/// Reads the modules in their order, and decides as it goes.
class Decision {
 public:
  explicit Decision(bool faultsHideTheRest) : mFaultsHideTheRest(faultsHideTheRest) {}

  void AddFolder(FoundFolder& folder) {
    std::map<std::string, std::string> const earlier = mNames;
    for (FoundModule& module : folder.modules) {
      AddModule(module, earlier);
    }
  }

 private:
  struct Holder {
    FoundModule* module;
    FoundConverter* converter;
    Claim* claim;
  };

  void AddModule(FoundModule& module, std::map<std::string, std::string> const& earlier) {
    if (!module.folder.IsModule()) {
      module.problem = module.folder.problem;
      return;
    }
    std::string const key = module.folder.Key();
    auto const sameName = earlier.find(key);
    if (sameName != earlier.end()) {
      module.problem = "a module of the same name comes first: " + sameName->second;
      return;
    }
    mNames.emplace(key, module.folder.path);
    if (!mFaulty.empty()) {
      module.problem = "the library does not come to it: " + mFaulty + " is before it, whose manifest is faulty";
    } else if (!module.folder.manifest) {
      module.problem = "no manifest: " + module.folder.manifestProblem;
    } else {
      AddConverters(module);
    }
  }

  void AddConverters(FoundModule& module) {
    ManifestConverters manifest = ReadManifest(*module.folder.manifest);
    module.fault = std::move(manifest.fault);
    for (ManifestConverter& converter : manifest.list) {
      module.converters.push_back({std::move(converter), {}});
      for (std::string const& extension : module.converters.back().manifest.extensions) {
        module.converters.back().claims.push_back({extension, {}});
      }
    }
    // Only now, for the places of all of them are kept.
    for (FoundConverter& converter : module.converters) {
      for (Claim& claim : converter.claims) {
        Decide({&module, &converter, &claim});
      }
    }
    if (!module.fault.empty() && mFaultsHideTheRest) {
      mFaulty = module.folder.name;
    }
  }

  void Decide(Holder const& added) {
    auto const [entry, isFirst] = mHolders.emplace(added.claim->extension, added);
    if (isFirst) {
      return;
    }
    Holder& stored = entry->second;
    ManifestConverter const& ofStored = stored.converter->manifest;
    ManifestConverter const& ofAdded = added.converter->manifest;
    if (ofStored.uid != ofAdded.uid) {
      added.claim->reason = "converter " + ofStored.uid + " of " + stored.module->folder.name + " comes first";
    } else if (ofStored.isForced) {
      added.claim->reason = "the one of " + stored.module->folder.name + " must not be replaced (\"force_converter\")";
    } else if (ofAdded.isForced || ofStored.version < ofAdded.version) {
      stored.claim->reason =
          added.module->folder.name + (ofAdded.isForced ? " demands it (\"force_converter\")"
                                                        : " has the higher version " + NumberText(ofAdded.version));
      stored = added;
    } else {
      added.claim->reason =
          stored.module->folder.name +
          (ofStored.version == ofAdded.version ? " comes first, with the same version " : " has the higher version ") +
          NumberText(ofStored.version);
    }
  }

  bool mFaultsHideTheRest;
  std::string mFaulty;                        ///< module whose manifest ended the reading; empty: none
  std::map<std::string, std::string> mNames;  ///< of modules so far, with the path of each
  std::map<std::string, Holder> mHolders;     ///< by extension
};

FoundFolder WithoutDecision(SearchedFolder&& searched) {
  FoundFolder folder;
  folder.path = std::move(searched.path);
  folder.origin = searched.origin;
  folder.problem = std::move(searched.problem);
  for (ModuleFolder& module : searched.modules) {
    folder.modules.emplace_back();
    folder.modules.back().folder = std::move(module);
  }
  return folder;
}

}  // namespace

bool FoundModule::IsServedWhole() const {
  return problem.empty() && fault.empty() &&
         std::all_of(converters.begin(), converters.end(), [](FoundConverter const& converter) {
           return std::all_of(converter.claims.begin(), converter.claims.end(),
                              [](Claim const& claim) { return claim.IsServed(); });
         });
}

bool FoundModule::IsServed() const {
  return std::any_of(converters.begin(), converters.end(), [](FoundConverter const& converter) {
    return std::any_of(converter.claims.begin(), converter.claims.end(),
                       [](Claim const& claim) { return claim.IsServed(); });
  });
}

ModuleDiscovery::ModuleDiscovery(std::vector<SearchedFolder> folders) {
  auto const holdsModules = [](SearchedFolder const& folder) { return folder.HoldsModules(); };
  auto const count = std::count_if(folders.begin(), folders.end(), holdsModules);
  mSource = count == 0 ? eSource::kNone : eSource::kSeveralFolders;
  auto const first = std::find_if(folders.begin(), folders.end(), holdsModules);
  // The library takes a backslash in a folder's path for a slash.
  if (count == 1 && first->path.find('\\') == std::string::npos) {
    mSource = eSource::kOneFolder;
    mOnlyFolder = first->path;
  }
  for (SearchedFolder& folder : folders) {
    mFolders.push_back(WithoutDecision(std::move(folder)));
  }
  Decision decision(mSource == eSource::kOneFolder);
  for (FoundFolder& folder : mFolders) {
    decision.AddFolder(folder);
  }
  for (FoundFolder const& folder : mFolders) {
    for (FoundModule const& module : folder.modules) {
      for (FoundConverter const& converter : module.converters) {
        for (Claim const& claim : converter.claims) {
          if (claim.IsServed()) {
            mServing[claim.extension] = {&module, &converter};
          }
        }
      }
    }
  }
}

}  // namespace senmark_tool
