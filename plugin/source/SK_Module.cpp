#include "SK_Module.h"

#include "SK_Error.h"
#include "SK_HostAPIImpl.h"
#include "SK_ModuleCall.h"
#include "SK_PluginManager.h"
#include "SK_WriterFailure.h"

namespace SK_PLUGIN {

namespace {

constexpr char kEntry[] = "InitializePlugin";
constexpr std::uint32_t kPluginAPIVersion = 1;

void const* WriterErrorProc() {
  return reinterpret_cast<void const*>(gSetWriterErrorObjectProc);
}

void ResetWriterErrorProc() {
  gSetWriterErrorObjectProc = Static_SetPluginErrorObj;
}

}  // namespace

SK_Module::~SK_Module() {
  try {
    unloadInternal();
  } catch (...) {
    // Nobody can be told from here.
  }
  ReleaseBundle();
}

bool SK_Module::load() {
  return loadInternal();
}

void SK_Module::unload() {
  unloadInternal();
}

PluginAPI* SK_Module::getPluginAPIs() {
  if (mLoadState != kLoaded && !load()) {
    SK_NAMESPACE_INT::ThrowError({ns_sensor::kModuleNotLoaded, SK_Message::kPluginLoadFailure, -1, -1}, mPath);
  }
  return mPluginAPI.get();
}

bool SK_Module::loadInternal() {
  if (mLoadState != kNotLoaded) {
    return mLoadState == kLoaded;
  }
  // Left so by what fails before the initialisation: code that cannot be loaded once is not tried for every file.
  mLoadState = kLoading;
  mBundle = SK_OSUtils::LoadModule(mPath, false);
  auto const initialize = SK_OSUtils::GetFunctionPointerFromModule<InitializePluginProc>(mBundle, kEntry);
  if (initialize == nullptr) {
    ReleaseBundle();
    SK_NAMESPACE_INT::ThrowError({ns_sensor::kModuleNotLoaded, SK_Message::kModuleLoadingFailed, -1, -1});
  }
  SK_OSUtils::GetResourceDataFromModule(mBundle, "MODULE_IDENTIFIER", "txt", mIdentifier);
  mPluginAPI = std::make_unique<PluginAPI>();
  mPluginAPI->size = sizeof(PluginAPI);
  mPluginAPI->version = kPluginAPIVersion;
  if (HasFailed(CallModule(initialize, mIdentifier.c_str(), SK_PluginManager::getHostAPI(), mPluginAPI.get()))) {
    try {
      unloadInternal();
    } catch (ns_sensor::SK_Exception const&) {
      // The first failure is the one that the host must see.
    }
    SK_NAMESPACE_INT::ThrowError({ns_sensor::kModuleInitFailed, SK_Message::kPluginInitializeFailed, -1, -1},
                                 mIdentifier);
  }
  mLoadState = kLoaded;
  return true;
}

void SK_Module::unloadInternal() {
  if (!mPluginAPI) {
    return;
  }
  SK_PluginResult const result = CallModule(mPluginAPI->terminate);
  mPluginAPI.reset();
  ReleaseBundle();
  mLoadState = kNotLoaded;
  if (HasFailed(result)) {
    SK_NAMESPACE_INT::ThrowError(
        {result.mErrorCode, SK_Message::kTerminatePluginFailed, result.mFileOffset, result.mFileLineNo}, mIdentifier);
  }
}

// The writer must not go on reporting through code that is gone: neither the module's own nor that of a library
// which goes with it.
void SK_Module::ReleaseBundle() noexcept {
  void const* const entry = SK_OSUtils::GetFunctionPointerFromModuleImpl(mBundle, kEntry);
  if (entry != nullptr && SK_OSUtils::GetImage(entry) == SK_OSUtils::GetImage(WriterErrorProc())) {
    ResetWriterErrorProc();
  }
  SK_OSUtils::UnloadModule(mBundle, false);
  mBundle = nullptr;
  if (SK_OSUtils::GetImage(WriterErrorProc()) == nullptr) {
    ResetWriterErrorProc();
  }
}

}  // namespace SK_PLUGIN
