/// Finds the modules of one folder, keeps for each file extension the converter that is to take it, and holds the
/// tables that modules get from the library.
///
/// Lives for as long as the library is initialised with a folder of modules. Filled once at the start and only
/// read afterwards; takes no lock.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "senmark/HostAPI.h"

namespace SK_PLUGIN {

class SK_ConverterHandler;
class SK_Module;

class SK_PluginManager {
 public:
  /// Makes the converters of all modules known to the registry; no code of a module is run.
  ///
  /// wantedModules  comma-separated names of the modules to use, without regard to case; empty for all.
  ///
  /// Nothing is thrown. A manifest with a fault ends the search: what was found before it is used.
  static void initialize(std::string const& pluginFolder, std::string const& wantedModules) noexcept;
  /// Unloads all modules. A handler that is still in use keeps its module.
  static void terminate();

  /// The table of version 1; null while there is no manager.
  static HostAPI* getHostAPI();

  /// Decides between converters that claim one extension: those with other uids leave the first one alone; of one
  /// uid a force converter stays, else a force converter or a higher version takes its place.
  static void addConverterHandler(std::string const& extension, std::shared_ptr<SK_ConverterHandler> const& handler);
  /// Empty without a manager or a converter.
  static std::shared_ptr<SK_ConverterHandler> getConverterHandler(std::string const& extension);

  ~SK_PluginManager();
  SK_PluginManager(SK_PluginManager const&) = delete;
  SK_PluginManager& operator=(SK_PluginManager const&) = delete;

  /// Makes the three tables of a zeroed `hostAPI`, which is not null; `terminateHostAPI` frees them.
  static void SetupHostAPI(HostAPI* hostAPI);

 private:
  struct StringCompare {
    bool operator()(std::string const& left, std::string const& right) const { return left.compare(right) < 0; }
  };

  SK_PluginManager(std::string const& pluginFolder, std::string const& wantedModules);

  void initializeHostAPI();
  void terminateHostAPI();
  void doScan();
  /// Appends the paths of the wanted modules in `folder`, in its own order; false if it is no folder.
  bool scanFolder(std::string const& folder, std::vector<std::string>& modules) const;
  bool IsModule(std::string const& path, std::string const& name) const;
  /// Reads the manifest. Codes 1503, 1504.
  void loadResourceFile(std::shared_ptr<SK_Module> const& module);

  std::string mPluginFolder;
  std::vector<std::string> mLibraryExtensions;
  std::vector<std::string> mWantedModules;  ///< in lower case; empty for all
  std::map<std::string, std::shared_ptr<SK_ConverterHandler>, StringCompare> mHandlers;  ///< by extension
  std::map<std::uint32_t, std::unique_ptr<HostAPI>> mHostAPIs;                           ///< by version

  /// Not an owner: a process that ends without `terminate` must not run code of modules at its very end.
  static SK_PluginManager* mInstance;
};

/// Makes one converter known to the registry under an extension.
void registerHandler(std::string const& extension, std::shared_ptr<SK_ConverterHandler> const& handler);

}  // namespace SK_PLUGIN
