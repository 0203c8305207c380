#include "SK_PluginManager.h"

#include "SK_Assert.h"
#include "SK_HostAPIImpl.h"

namespace SK_PLUGIN {

namespace {

constexpr std::uint32_t kHostAPIVersion = 1;

/// A table that starts zeroed.
template <typename Table>
Table* MakeTable(void (*fillIn)(Table*)) {
  auto table = std::make_unique<Table>();
  fillIn(table.get());
  return table.release();
}

}  // namespace

std::unique_ptr<SK_PluginManager> SK_PluginManager::mInstance;

void SK_PluginManager::initialize() noexcept {
  try {
    mInstance.reset(new SK_PluginManager());
    mInstance->initializeHostAPI();
  } catch (...) {
    // Modules are an addition: the library starts without them.
  }
}

void SK_PluginManager::terminate() {
  mInstance.reset();
}

HostAPI* SK_PluginManager::getHostAPI() {
  if (!mInstance) {
    return nullptr;
  }
  auto const found = mInstance->mHostAPIs.find(kHostAPIVersion);
  return found == mInstance->mHostAPIs.end() ? nullptr : found->second.get();
}

SK_PluginManager::~SK_PluginManager() {
  terminateHostAPI();
}

void SK_PluginManager::SetupHostAPI(HostAPI* hostAPI) {
  if (hostAPI == nullptr) {
    SK_NAMESPACE_INT::SK_AssertFailed("hostAPI != 0", "SetupHostAPI", "plugin/source/SK_PluginManager", __LINE__);
  }
  hostAPI->mTdjsonWriterAPI = MakeTable(GetTDJSONWriterAPI);
  hostAPI->mHandleExceptionAPI = MakeTable(GetHandleExceptionAPI);
  hostAPI->mHandleMemoryAPI = MakeTable(GetHandleMemoryAPI);
}

void SK_PluginManager::initializeHostAPI() {
  std::unique_ptr<HostAPI>& hostAPI = mHostAPIs[kHostAPIVersion];
  try {
    hostAPI = std::make_unique<HostAPI>();
    hostAPI->mSize = sizeof(HostAPI);
    hostAPI->mVersion = kHostAPIVersion;
    SetupHostAPI(hostAPI.get());
  } catch (...) {
    // No module may see half of the tables.
    terminateHostAPI();
    throw;
  }
}

void SK_PluginManager::terminateHostAPI() {
  for (auto& [version, hostAPI] : mHostAPIs) {
    if (hostAPI) {
      delete hostAPI->mTdjsonWriterAPI;
      delete hostAPI->mHandleExceptionAPI;
      delete hostAPI->mHandleMemoryAPI;
    }
  }
  mHostAPIs.clear();
}

}  // namespace SK_PLUGIN
