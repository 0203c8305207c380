/// What the library makes of the modules in the folders that were searched.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "ManifestConverters.h"
#include "ModuleSearch.h"

namespace senmark_tool {

/// An extension that a converter asks for.
struct Claim {
  std::string extension;
  std::string reason;  ///< why another one serves it; empty: this one does

  bool IsServed() const { return reason.empty(); }
};

struct FoundConverter {
  ManifestConverter manifest;
  std::vector<Claim> claims;
};

struct FoundModule {
  ModuleFolder folder;
  std::string problem;  ///< why nothing is taken from it; empty: something may be
  std::string fault;    ///< of its manifest; converters that stand before it are taken all the same
  std::vector<FoundConverter> converters;

  /// Whether all that the manifest says came to be.
  bool IsServedWhole() const;
  bool IsServed() const;
};

struct FoundFolder {
  std::string path;
  eModuleOrigin origin = eModuleOrigin::kOption;
  std::string problem;
  std::vector<FoundModule> modules;
};

/// One converter in its module. Both live as long as the discovery.
struct ServingConverter {
  FoundModule const* module;
  FoundConverter const* converter;
};

/// The decision that the library takes when it starts, taken once more with its reasons.
///
/// One folder with modules is given to the library as it is: there, a faulty manifest hides all modules behind it. Of
/// several, the library gets a choice: the first module of a name, an extension for the first converter that asks for
/// it as long as not another version of that converter is to have it, and what stands before the fault of a manifest.
class ModuleDiscovery {
 public:
  enum class eSource : std::uint8_t { kNone, kOneFolder, kSeveralFolders };

  ModuleDiscovery() = default;
  explicit ModuleDiscovery(std::vector<SearchedFolder> folders);
  ModuleDiscovery(ModuleDiscovery const&) = delete;
  ModuleDiscovery& operator=(ModuleDiscovery const&) = delete;

  eSource Source() const { return mSource; }
  /// The folder with modules, if there is just one.
  std::string const& OnlyFolder() const { return mOnlyFolder; }
  std::vector<FoundFolder> const& Folders() const { return mFolders; }
  /// By extension, in the order in which the library asks them.
  std::map<std::string, ServingConverter> const& Serving() const { return mServing; }

 private:
  std::vector<FoundFolder> mFolders;
  eSource mSource = eSource::kNone;
  std::string mOnlyFolder;
  std::map<std::string, ServingConverter> mServing;
};

}  // namespace senmark_tool
