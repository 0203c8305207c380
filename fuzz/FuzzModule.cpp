#include "FuzzModule.h"

#include <memory>
#include <string>

#include "FuzzCheck.h"
#include "FuzzHost.h"
#include "HostTables.h"
#include "SK_ConverterHandlerBase.h"
#include "SK_ConverterRegistry.h"
#include "SK_Error.h"
#include "SK_ModuleCall.h"
#include "senmark/PluginAPI.h"

namespace senmark_fuzz {
namespace {

using ns_sensor::SK_ConverterHandlerBase;
using SK_NAMESPACE_INT::SK_PathInfo;
using SK_PLUGIN::CallModule;
using SK_PLUGIN::PluginAPI;
using SK_PLUGIN::SK_PluginResult;

PluginAPI gModule;
std::string gIdentifier;

void ThrowIfFailed(SK_PluginResult const& result, char const* literal) {
  if (SK_PLUGIN::HasFailed(result)) {
    SK_NAMESPACE_INT::ThrowError({result.mErrorCode, literal, result.mFileOffset, result.mFileLineNo}, gIdentifier,
                                 gIdentifier);
  }
}

/// One session with the module.
class ModuleConverter : public SK_ConverterHandlerBase {
 public:
  explicit ModuleConverter(SK_PathInfo const& file) : SK_ConverterHandlerBase(file) {
    ThrowIfFailed(CallModule(gModule.initializeSession, gIdentifier.c_str(), file.extension.c_str(),
                             file.filePath.c_str(), file.outputPath.c_str(), &mSession),
                  SK_Message::kIntialzeSessionFailed);
  }
  ~ModuleConverter() override { CallModule(gModule.terminateSession, mSession); }
  ModuleConverter(ModuleConverter const&) = delete;
  ModuleConverter& operator=(ModuleConverter const&) = delete;

  bool convertToTDJSON() override {
    bool succeeded = false;
    SK_PluginResult result = CallModule(gModule.convertToTDJSON, mSession, &succeeded);
    if (!SK_PLUGIN::HasFailed(result) && !succeeded) {
      result.mErrorCode = ns_sensor::kConversionFailed;
    }
    ThrowIfFailed(result, SK_Message::kPluginConversionFailed);
    return true;
  }

 private:
  void* mSession = nullptr;
};

bool Check(std::string& /*uid*/, SK_PathInfo const& file) {
  bool accepted = false;
  ThrowIfFailed(CallModule(gModule.checkFileFormat, file.filePath.c_str(), gIdentifier.c_str(), &accepted),
                SK_Message::kPluginCheckFileFormatFailed);
  return accepted;
}

std::shared_ptr<SK_ConverterHandlerBase> Construct(std::string& /*uid*/, SK_PathInfo const& file) {
  return std::make_shared<ModuleConverter>(file);
}

}  // namespace

void RegisterModule(char const* extension, char const* identifier) {
  gIdentifier = identifier;
  gModule = PluginAPI{};
  gModule.size = sizeof(gModule);
  gModule.version = 1;
  static senmark_test::HostTables tables;  // the module keeps them until the process ends
  Require(!SK_PLUGIN::HasFailed(CallModule(InitializePlugin, identifier, &tables.Get(), &gModule)));
  Require(
      ns_sensor::SK_ConverterRegistry::getInstance()->registerPluginConverter(extension, identifier, Check, Construct));
}

}  // namespace senmark_fuzz

/// Called once, before the first input.
extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
  senmark_fuzz::FuzzHost host;
  senmark_fuzz::Manager(host);
  senmark_fuzz::RegisterModule(SENMARK_FUZZ_EXTENSION, SENMARK_FUZZ_IDENTIFIER);
  return 0;
}
