#include "SK_ConverterHandlerInstance.h"

#include <utility>

#include "SK_ConverterHandler.h"
#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_HostAPIImpl.h"
#include "SK_Module.h"
#include "SK_ModuleCall.h"
#include "SK_PluginManager.h"

namespace SK_PLUGIN {

using ns_sensor::SK_ConverterHandlerBase;
using SK_NAMESPACE_INT::SK_PathInfo;

namespace {

void ThrowIfFailed(SK_PluginResult const& result, char const* literal, SK_ConverterHandler const& handler) {
  if (HasFailed(result)) {
    SK_NAMESPACE_INT::ThrowError({result.mErrorCode, literal, result.mFileOffset, result.mFileLineNo},
                                 handler.getName(), handler.getUID());
  }
}

bool ModuleTakes(SK_ConverterHandler const& handler, SK_PathInfo const& file) {
  bool accepted = false;
  ThrowIfFailed(CallModule(handler.getModule()->getPluginAPIs()->checkFileFormat, file.filePath.c_str(),
                           handler.getUID().c_str(), &accepted),
                SK_Message::kPluginCheckFileFormatFailed, handler);
  return accepted;
}

bool HasAllSignatures(SK_ConverterHandler const& handler, int fd) {
  for (std::size_t i = 0; i < handler.getCheckFormatSize(); ++i) {
    if (!handler.getCheckFormat(i).IsIn(fd)) {
      return false;
    }
  }
  return true;
}

void* OpenSession(SK_ConverterHandler const& handler, SK_PathInfo const& file) {
  void* session = nullptr;
  SK_PluginResult const result =
      CallModule(handler.getModule()->getPluginAPIs()->initializeSession, handler.getUID().c_str(),
                 file.extension.c_str(), file.filePath.c_str(), file.outputPath.c_str(), &session);
  if (HasFailed(result)) {
    RemoveLeftRoots(file.outputPath);
  }
  ThrowIfFailed(result, SK_Message::kIntialzeSessionFailed, handler);
  return session;
}

/// A failure of the module is not told: the conversion is over.
void CloseSession(SK_ConverterHandler const& handler, void* session, SK_PathInfo const& file) {
  CallModule(handler.getModule()->getPluginAPIs()->terminateSession, session);
  RemoveLeftRoots(file.outputPath);
}

}  // namespace

SK_ConverterHandlerInstance::SK_ConverterHandlerInstance(void* session, std::shared_ptr<SK_ConverterHandler> handler,
                                                         SK_PathInfo const& pathInfo)
    : SK_ConverterHandlerBase(pathInfo), mSession(session), mHandler(std::move(handler)) {}

SK_ConverterHandlerInstance::~SK_ConverterHandlerInstance() {
  try {
    CloseSession(*mHandler, mSession, mPathInfo);
  } catch (...) {
    // Nobody can be told from here.
  }
}

bool SK_ConverterHandlerInstance::convertToTDJSON() {
  bool succeeded = false;
  SK_PluginResult result = CallModule(mHandler->getModule()->getPluginAPIs()->convertToTDJSON, mSession, &succeeded);
  if (!HasFailed(result) && !succeeded) {
    result = SK_PluginResult();
    result.mErrorCode = ns_sensor::kConversionFailed;
  }
  ThrowIfFailed(result, SK_Message::kPluginConversionFailed, *mHandler);
  return true;
}

bool Plugin_CheckFileFormat(std::string& uid, SK_PathInfo const& file) {
  File_IO::Descriptor const input(File_IO::Open(file.filePath.c_str(), true, false));
  std::shared_ptr<SK_ConverterHandler> const handler = SK_PluginManager::getConverterHandler(uid);
  if (!handler) {
    return false;
  }
  return handler->getCheckFormatSize() == 0 ? ModuleTakes(*handler, file) : HasAllSignatures(*handler, input.Get());
}

std::shared_ptr<SK_ConverterHandlerBase> Plugin_ConverterHandlerCTor(std::string& uid, SK_PathInfo const& file) {
  std::shared_ptr<SK_ConverterHandler> handler = SK_PluginManager::getConverterHandler(uid);
  if (!handler || !handler->load()) {
    SK_NAMESPACE_INT::ThrowError({ns_sensor::kModuleNotLoaded, SK_Message::kPluginNotLoaded, -1, -1});
  }
  void* const session = OpenSession(*handler, file);
  try {
    return std::make_shared<SK_ConverterHandlerInstance>(session, handler, file);
  } catch (...) {
    CloseSession(*handler, session, file);
    throw;
  }
}

}  // namespace SK_PLUGIN
