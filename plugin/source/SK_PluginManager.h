/// Holds the tables that modules get from the library, for as long as the library is initialised with a
/// folder of modules.
#pragma once

#include <cstdint>
#include <map>
#include <memory>

#include "senmark/HostAPI.h"

namespace SK_PLUGIN {

class SK_PluginManager {
 public:
  /// Nothing is thrown: without memory for the tables there are none.
  static void initialize() noexcept;
  static void terminate();

  /// The table of version 1; null while there is no manager.
  static HostAPI* getHostAPI();

  ~SK_PluginManager();
  SK_PluginManager(SK_PluginManager const&) = delete;
  SK_PluginManager& operator=(SK_PluginManager const&) = delete;

  /// Makes the three tables of a zeroed `hostAPI`, which is not null; `terminateHostAPI` frees them.
  static void SetupHostAPI(HostAPI* hostAPI);

 private:
  SK_PluginManager() = default;

  void initializeHostAPI();
  void terminateHostAPI();

  std::map<std::uint32_t, std::unique_ptr<HostAPI>> mHostAPIs;  ///< by version

  static std::unique_ptr<SK_PluginManager> mInstance;
};

}  // namespace SK_PLUGIN
