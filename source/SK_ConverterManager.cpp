#include "SK_ConverterManager.h"

#include <string>

#include "SK_ConversionInfo.h"
#include "SK_ConverterHandlerBase.h"
#include "SK_ConverterRegistry.h"
#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_Ladder.h"
#include "SK_PathInfo.h"
#include "SK_PluginManager.h"
#include "SK_Utils.h"
#include "SensorFileHandlerImpl.h"
#include "TdjsonStreamImpl.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::eTDJSONVersion;
using SK_NAMESPACE_INT::SK_ConversionInfo;
using SK_NAMESPACE_INT::SK_PathInfo;
using SK_NAMESPACE_INT::SK_Utils;
using SK_NAMESPACE_INT::ThrowError;

namespace {

/// The folder in which the converted file is made; empty for the one for temporary files.
std::string ResultFolder(char const* outputPath) {
  if (outputPath == nullptr || *outputPath == '\0') {
    return std::string();
  }
  // Beside the wanted output, so that the later rename stays on one file system.
  std::string folder = SK_Utils::GetDirName(outputPath);
  if (File_IO::GetFileMode(folder) != File_IO::kFolder) {
    ThrowError({kNoOutputFolder, SK_Message::kDirectoryDoesNotExists, -1, -1});
  }
  return folder;
}

}  // namespace

SK_ConverterManager* SK_ConverterManager::mCMInstance = nullptr;
std::atomic<bool> SK_ConverterManager::mIsInitialized{false};

bool SK_ConverterManager::Initialize(char const* pluginFolder, char const* wantedModules) {
  bool expected = false;
  if (mIsInitialized.compare_exchange_strong(expected, true)) {
    SK_ConverterRegistry::getInstance()->initialize();
    if (pluginFolder != nullptr) {
      SK_PLUGIN::SK_PluginManager::initialize(pluginFolder, wantedModules == nullptr ? "" : wantedModules);
    }
  }
  return true;
}

bool SK_ConverterManager::Terminate() {
  mIsInitialized = false;
  SK_PLUGIN::SK_PluginManager::terminate();
  SK_ConverterRegistry::terminate();
  delete mCMInstance;
  mCMInstance = nullptr;
  return true;
}

SK_ConverterManager* SK_ConverterManager::GetInstance() {
  if (mCMInstance == nullptr) {
    mCMInstance = new SK_ConverterManager();
  }
  return mCMInstance;
}

std::shared_ptr<SK_ConversionInfo> SK_ConverterManager::ConvertNative(char const* path, char const* outputPath) {
  auto info = std::make_shared<SK_ConversionInfo>();
  SK_PathInfo pathInfo;
  pathInfo.filePath = path;
  SK_Utils::GetFileExtension(pathInfo.filePath, pathInfo.extension);
  if (checkTDJSONFormat(pathInfo, info->version)) {
    info->filePath = path;
    return info;
  }
  SK_ConverterHandlerInfo* const handler = SK_ConverterRegistry::getInstance()->selectSmartHandler(pathInfo);
  if (handler == nullptr) {
    ThrowError({kFormatNotSupported, SK_Message::kFileFormatNotSupported, -1, -1});
  }
  std::string const folder = ResultFolder(outputPath);
  info->isTemporary = true;  // before there is a file: what fails behind its making must not leave it
  File_IO::GetTempFile(info->filePath, folder);
  pathInfo.outputPath = info->filePath;
  try {
    handler->construct(handler->uid, pathInfo)->convertToTDJSON();
    // With the point in front, the extension cannot stand for version 1: only the content tells the
    // version of a result.
    SK_PathInfo result(info->filePath, ".tdjson");
    checkTDJSONFormat(result, info->version);
  } catch (...) {
    File_IO::Delete(info->filePath.c_str());
    info->isTemporary = false;  // a second deletion would fail, and be what the host finds as its last error
    throw;
  }
  return info;
}

TdjsonStreamImpl* SK_ConverterManager::ConvertNative(char const* path, bool validate) {
  return SK_NAMESPACE_INT::RunInside([&] {
    std::shared_ptr<SK_ConversionInfo> const info = ConvertNative(path, "");
    if (validate) {
      SensorFileHandlerImpl const parsedOnce(path, std::char_traits<char>::length(path), info->filePath.c_str(),
                                             info->filePath.size(), info->version);
    }
    auto stream = std::make_unique<TdjsonStreamImpl>(info, std::string(path));
    mStreams.insert(stream.get());
    return stream.release();
  });
}

bool SK_ConverterManager::checkTDJSONFormat(SK_PathInfo& pathInfo, eTDJSONVersion& version) {
  if (SK_Utils::IsTDJSONVersion2(pathInfo.filePath.c_str())) {
    version = SK_NAMESPACE_INT::kTdjsonVersion2;
    return true;
  }
  if (pathInfo.extension == "tdjson") {
    version = SK_NAMESPACE_INT::kTdjsonVersion1;
    return true;
  }
  version = SK_NAMESPACE_INT::kNotTdjson;
  return false;
}

TdjsonStreamImpl* SK_ConverterManager::FindStream(ITdjsonStream* stream) const {
  for (TdjsonStreamImpl* const known : mStreams) {
    if (static_cast<ITdjsonStream*>(known) == stream) {
      return known;
    }
  }
  return nullptr;
}

void SK_ConverterManager::RemoveStreamFromSet(TdjsonStreamImpl* stream) {
  if (mStreams.empty()) {
    ThrowError({kNoStream, SK_Message::kNoStreamCreated, -1, -1});
  }
  if (mStreams.erase(stream) == 0) {
    ThrowError({kForeignStream, SK_Message::kInvalidStream, -1, -1});
  }
}

SK_ConverterManager::~SK_ConverterManager() {
  for (TdjsonStreamImpl* const stream : mStreams) {
    delete stream;
  }
}

SK_ConverterManager::SK_ConverterManager() {
  if (!mIsInitialized) {
    Initialize(nullptr, nullptr);
  }
}

}  // namespace ns_sensor
