#include "LoadedModule.h"

#include <dlfcn.h>

#include <fstream>
#include <iterator>
#include <utility>

#include "ModuleCode.h"

namespace senmark_tool {

namespace {

constexpr char kEntry[] = "InitializePlugin";
constexpr std::uint32_t kTableVersion = 1;

std::string ReadIdentifier(std::string const& folder) {
  std::ifstream file(folder + "/Contents/Resources/MODULE_IDENTIFIER.txt", std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void* Load(std::string const& folder) {
  std::string const problem = ModuleLoadProblem(folder);
  if (!problem.empty()) {
    throw LoadFault(problem);
  }
  void* const code = dlopen(ModuleCodePath(folder).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (code == nullptr) {
    char const* const reason = dlerror();
    throw LoadFault(std::string("its code cannot be loaded: ") + (reason == nullptr ? "no reason given" : reason));
  }
  return code;
}

}  // namespace

std::string CallEnd::Text() const {
  if (isMissing) {
    return "is missing from the module's table (code 1500)";
  }
  if (hasThrown) {
    return "threw an exception: " + thrown;
  }
  if (!HasFailed()) {
    return std::string();
  }
  std::string text = "failed with code " + std::to_string(result.mErrorCode);
  if (result.mFileOffset >= 0) {
    text += " at byte " + std::to_string(result.mFileOffset);
  }
  if (result.mFileLineNo >= 0) {
    text += (result.mFileOffset >= 0 ? ", line " : " at line ") + std::to_string(result.mFileLineNo);
  }
  return text;
}

LoadedModule::LoadedModule(std::string const& folder, SK_PLUGIN::HostAPI* hostAPI, eTable table)
    : mIdentifier(ReadIdentifier(folder)) {
  CallEnd initialized;
  if (table == eTable::kLong) {
    mCode = Load(folder);
    initialized = Initialize(hostAPI, sizeof(SK_PLUGIN::ExplainingPluginAPI));
    if (!initialized.HasFailed()) {
      return;
    }
    // It may hold a size that it does not know for a fault.
    Terminate();
  }
  mCode = Load(folder);
  initialized = Initialize(hostAPI, sizeof(SK_PLUGIN::PluginAPI));
  if (initialized.HasFailed()) {
    Terminate();
    throw LoadFault("its initialisation " + initialized.Text());
  }
}

CallEnd LoadedModule::Initialize(SK_PLUGIN::HostAPI* hostAPI, std::uint32_t size) {
  mApi = {};
  auto const entry = reinterpret_cast<SK_PLUGIN::InitializePluginProc>(dlsym(mCode, kEntry));
  if (entry == nullptr) {
    dlclose(std::exchange(mCode, nullptr));
    throw LoadFault(std::string("its code does not export ") + kEntry);
  }
  mApi.base.size = size;
  mApi.base.version = kTableVersion;
  CallEnd const end = CallModule(entry, mIdentifier.c_str(), hostAPI, &mApi.base);
  if (size < sizeof(SK_PLUGIN::ExplainingPluginAPI)) {
    mApi.explainFile = nullptr;  // the module has not promised anything there
  }
  return end;
}

CallEnd LoadedModule::Terminate() {
  if (mCode == nullptr) {
    return CallEnd();
  }
  CallEnd end = CallModule(mApi.base.terminate);
  dlclose(std::exchange(mCode, nullptr));
  return end;
}

}  // namespace senmark_tool
