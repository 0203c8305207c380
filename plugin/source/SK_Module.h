/// One module: a folder whose code is loaded when it is first needed and unloaded with this object.
///
/// The state is not locked: one use at a time.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "SK_OSUtils.h"
#include "senmark/PluginAPI.h"

namespace SK_PLUGIN {

class SK_Module {
 public:
  explicit SK_Module(std::string path) : mPath(std::move(path)) {}
  ~SK_Module();
  SK_Module(SK_Module const&) = delete;
  SK_Module& operator=(SK_Module const&) = delete;

  /// Whether it is loaded now. A module that could not be loaded is not tried again and gives false; one whose
  /// initialisation failed is. Codes 1021, 1500.
  bool load();
  /// Raises the code of the module's own failure; it is unloaded all the same.
  void unload();
  /// Loads the module if need be; never null. Codes 1021, 1500.
  PluginAPI* getPluginAPIs();
  std::string const& getPath() const { return mPath; }

 private:
  enum eLoadState : std::uint8_t { kNotLoaded = 0, kLoaded = 1, kLoading = 2 };

  bool loadInternal();
  void unloadInternal();
  void ReleaseBundle() noexcept;

  std::string mPath;
  SK_OSUtils::ModuleRef mBundle = nullptr;
  std::unique_ptr<PluginAPI> mPluginAPI;
  eLoadState mLoadState = kNotLoaded;
  std::string mIdentifier;
};

}  // namespace SK_PLUGIN
