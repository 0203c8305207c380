#include "SK_PluginManager.h"

#include <algorithm>
#include <utility>

#include "ResourceParser.h"
#include "SK_Assert.h"
#include "SK_ConverterHandler.h"
#include "SK_ConverterHandlerInstance.h"
#include "SK_ConverterRegistry.h"
#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_HostAPIImpl.h"
#include "SK_Module.h"
#include "SK_OSUtils.h"
#include "SK_Utils.h"

namespace SK_PLUGIN {

using SK_NAMESPACE_INT::JDocument;
using SK_NAMESPACE_INT::JValue;
using SK_NAMESPACE_INT::SK_Utils;

namespace {

constexpr std::uint32_t kHostAPIVersion = 1;
/// Extensions of the folders of modules.
constexpr char const* kLibraryExtensions[] = {"tdx"};
/// The resource that holds the manifest.
// NOLINTNEXTLINE(readability-identifier-naming): the name is fixed
constexpr char kResourceName_UIDs[] = "SKPLUGINUIDS";

/// A module whose code stays unloaded.
class OpenedResources {
 public:
  explicit OpenedResources(std::string const& folder) : mModule(SK_OSUtils::LoadModule(folder, true)) {}
  ~OpenedResources() { SK_OSUtils::UnloadModule(mModule, true); }
  OpenedResources(OpenedResources const&) = delete;
  OpenedResources& operator=(OpenedResources const&) = delete;

  SK_OSUtils::ModuleRef Get() const { return mModule; }

 private:
  SK_OSUtils::ModuleRef mModule;
};

bool Contains(std::vector<std::string> const& list, std::string const& text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

std::string LowerCase(std::string text) {
  SK_Utils::MakeLowerCase(text);
  return text;
}

/// One item of the wanted list: the name of a module, as it may stand with its extension and blanks around it.
std::string WantedName(std::string item) {
  item.erase(0, std::min(item.find_first_not_of(' '), item.size()));
  item.erase(std::min(item.find('.'), item.size()));
  item.erase(std::min(item.find(' '), item.size()));
  return LowerCase(std::move(item));
}

std::vector<std::string> WantedNames(std::string const& list) {
  std::vector<std::string> names;
  for (std::size_t start = 0; start < list.size();) {
    std::size_t const end = std::min(list.find(',', start), list.size());
    names.push_back(WantedName(list.substr(start, end - start)));
    start = end + 1;
  }
  return names;
}

/// Whether `added` takes the place of the converter of the same extension.
bool Replaces(SK_ConverterHandler const& added, SK_ConverterHandler const& stored) {
  if (added.getUID() != stored.getUID() || stored.isForceConverter()) {
    return false;
  }
  return added.isForceConverter() || stored.getVersion() < added.getVersion();
}

/// A table that starts zeroed.
template <typename Table>
Table* MakeTable(void (*fillIn)(Table*)) {
  auto table = std::make_unique<Table>();
  fillIn(table.get());
  return table.release();
}

}  // namespace

SK_PluginManager* SK_PluginManager::mInstance = nullptr;

void SK_PluginManager::initialize(std::string const& pluginFolder, std::string const& wantedModules) noexcept {
  // Modules are an addition: whatever is wrong with them, the library starts.
  try {
    delete std::exchange(mInstance, nullptr);
    mInstance = new SK_PluginManager(pluginFolder, wantedModules);
    mInstance->initializeHostAPI();
    try {
      mInstance->doScan();
    } catch (...) {
      // The modules before this one have done nothing wrong.
    }
    for (auto const& [extension, handler] : mInstance->mHandlers) {
      registerHandler(extension, handler);
    }
  } catch (...) {
  }
}

void SK_PluginManager::terminate() {
  delete std::exchange(mInstance, nullptr);
  ResourceParser::terminate();
}

HostAPI* SK_PluginManager::getHostAPI() {
  if (mInstance == nullptr) {
    return nullptr;
  }
  auto const found = mInstance->mHostAPIs.find(kHostAPIVersion);
  return found == mInstance->mHostAPIs.end() ? nullptr : found->second.get();
}

void SK_PluginManager::addConverterHandler(std::string const& extension,
                                           std::shared_ptr<SK_ConverterHandler> const& handler) {
  if (mInstance == nullptr) {
    return;
  }
  std::shared_ptr<SK_ConverterHandler>& stored = mInstance->mHandlers[extension];
  if (!stored || Replaces(*handler, *stored)) {
    stored = handler;
  }
}

std::shared_ptr<SK_ConverterHandler> SK_PluginManager::getConverterHandler(std::string const& extension) {
  if (mInstance == nullptr) {
    return nullptr;
  }
  auto const found = mInstance->mHandlers.find(extension);
  return found == mInstance->mHandlers.end() ? nullptr : found->second;
}

SK_PluginManager::~SK_PluginManager() {
  // First: a module may use the tables until it is unloaded.
  mHandlers.clear();
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

SK_PluginManager::SK_PluginManager(std::string const& pluginFolder, std::string const& wantedModules)
    : mPluginFolder(pluginFolder), mLibraryExtensions(std::begin(kLibraryExtensions), std::end(kLibraryExtensions)) {
  std::replace(mPluginFolder.begin(), mPluginFolder.end(), '\\', '/');
  if (!mPluginFolder.empty() && File_IO::Exists(mPluginFolder.c_str())) {
    mWantedModules = WantedNames(wantedModules);
  }
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

void SK_PluginManager::doScan() {
  std::vector<std::string> modules;
  scanFolder(mPluginFolder, modules);
  for (std::string const& path : modules) {
    loadResourceFile(std::make_shared<SK_Module>(path));
  }
}

bool SK_PluginManager::scanFolder(std::string const& folder, std::vector<std::string>& modules) const {
  if (File_IO::GetFileMode(folder) != File_IO::kFolder) {
    return false;
  }
  File_IO::Folder children(File_IO::OpenFolder(folder.c_str()));
  std::string name;
  while (File_IO::GetNextChild(children.Get(), &name)) {
    std::string path = folder;
    path += '/';
    path += name;
    if (IsModule(path, name)) {
      modules.push_back(std::move(path));
    }
  }
  children.Close();
  return true;
}

bool SK_PluginManager::IsModule(std::string const& path, std::string const& name) const {
  if (File_IO::GetFileMode(path) == File_IO::kFolder && !SK_OSUtils::IsValidLibrary(path)) {
    return false;
  }
  std::size_t const point = name.rfind('.');
  if (name.front() == '~' || point == std::string::npos ||
      !Contains(mLibraryExtensions, LowerCase(name.substr(point + 1)))) {
    return false;
  }
  return mWantedModules.empty() || Contains(mWantedModules, LowerCase(name.substr(0, point)));
}

void SK_PluginManager::loadResourceFile(std::shared_ptr<SK_Module> const& module) {
  OpenedResources const resources(module->getPath());
  std::string manifest;
  if (!SK_OSUtils::GetResourceDataFromModule(resources.Get(), kResourceName_UIDs, "txt", manifest)) {
    return;
  }
  ResourceParser::initialize();
  JDocument document;
  // Nesting without end must not exhaust the stack of the host.
  if (document.Parse<rapidjson::kParseIterativeFlag>(manifest.c_str()).HasParseError()) {
    SK_NAMESPACE_INT::ThrowError({ns_sensor::kManifestUnreadable, SK_Message::kManifestParseFailed, -1, -1});
  }
  JValue const none;
  bool const hasConverters = document.IsObject() && document.HasMember("converter");
  ResourceParser(module).parseConverterArray(hasConverters ? document["converter"] : none);
}

void registerHandler(std::string const& extension, std::shared_ptr<SK_ConverterHandler> const& handler) {
  ns_sensor::SK_ConverterRegistry::getInstance()->registerPluginConverter(
      extension, handler->getName(), Plugin_CheckFileFormat, Plugin_ConverterHandlerCTor);
}

}  // namespace SK_PLUGIN
