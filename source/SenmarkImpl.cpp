#include "SenmarkImpl.h"

#include <cstring>
#include <memory>

#include "SK_ConversionInfo.h"
#include "SK_ConverterManager.h"
#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_FileMapper.h"
#include "SK_Ladder.h"
#include "SK_Localizer.h"
#include "SK_Mutex.h"
#include "SK_Utils.h"
#include "SensorFileHandlerImpl.h"
#include "TdjsonStreamImpl.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::RunInside;
using SK_NAMESPACE_INT::SK_FileMapper;
using SK_NAMESPACE_INT::SK_Localizer;
using SK_NAMESPACE_INT::SK_Utils;
using SK_NAMESPACE_INT::ThrowError;
using SK_NAMESPACE_INT::ThrowInvalidPointer;

namespace {

constexpr std::size_t kMaxPathLength = 65535;  // bytes; a path must be shorter

/// The path of an existing file, or what is wrong with it.
void CheckInputPath(char const* path) {
  SK_Utils::CheckFilePathValidity(path);
  if (!SK_FileMapper::CheckFileExistance(path)) {
    ThrowError({kFileNotFound, SK_Message::kFileNotExist, -1, -1}, std::string(path));
  }
}

bool IsOutputWanted(char const* outputPath) {
  return outputPath != nullptr && *outputPath != '\0';
}

}  // namespace

SenmarkImpl* SenmarkImpl::mSKInstance = nullptr;
std::atomic<unsigned short> SenmarkImpl::mInitializationCount{0};

SenmarkImpl* SenmarkImpl::Initialize(char const* pluginFolder, char const* wantedModules, char const* locale) {
  SK_Mutex const lock;
  if (mInitializationCount == 0) {
    try {
      SK_Localizer::Initialize(locale == nullptr ? SKEnglishUSCode : locale);
      SK_ConverterManager::Initialize(pluginFolder, wantedModules);
      mSKInstance = new SenmarkImpl();
    } catch (...) {
      ShutDown();  // the next creation is a first one again, and must not find half of this one
      throw;
    }
  }
  // Counted when nothing can fail any more: a failed creation needs no destruction.
  ++mInitializationCount;
  return mSKInstance;
}

bool SenmarkImpl::Terminate() {
  SK_Mutex const lock;
  if (mInitializationCount == 0 || --mInitializationCount != 0) {
    return false;
  }
  ShutDown();
  return true;
}

void SenmarkImpl::OpenFile(ISensorFileHandler** handler, char const* path, char const* outputPath) {
  if (handler == nullptr) {
    ThrowInvalidPointer("ISensorFileHandler");
  }
  *handler = nullptr;
  CheckInputPath(path);
  if (IsOutputWanted(outputPath) && strnlen(outputPath, kMaxPathLength) == kMaxPathLength) {
    ThrowError({kPathTooLong, SK_Message::kFilePathTooLarge, -1, -1});
  }
  SK_Mutex const lock;
  RunInside([&] { OpenLocked(handler, path, outputPath); });
}

void SenmarkImpl::CloseFile(ISensorFileHandler** handler) {
  RunInside([&] {
    if (handler == nullptr || *handler == nullptr) {
      ThrowInvalidPointer("ISensorFileHandler");
    }
    if (mOpenPathCount == 0) {
      ThrowError({kNoFileOpen, SK_Message::kNoFileOpened, -1, -1});
    }
    // A foreign object fails in the cast, as an unknown exception.
    std::string const path = dynamic_cast<SensorFileHandlerImpl&>(**handler).getNativeFilePath();
    SK_Mutex const lock;
    auto const entry = mFileHandlerMap.find(path);
    if (entry == mFileHandlerMap.end()) {
      ThrowError({kForeignHandler, SK_Message::kInvalidFileHandler, -1, -1});
    }
    auto& [openHandler, count] = entry->second;
    if (--count != 0) {
      return;
    }
    ISensorFileHandler* const lastUse = openHandler;
    mFileHandlerMap.erase(entry);
    mOpenPathCount = mFileHandlerMap.size();
    DestroyHandler(lastUse);
    *handler = nullptr;
  });
}

void SenmarkImpl::CreateTdjsonStream(ITdjsonStream** stream, char const* path, bool validate) {
  if (stream == nullptr) {
    ThrowInvalidPointer("ISenmark");  // the name of the other interface is what hosts see
  }
  *stream = nullptr;
  CheckInputPath(path);
  *stream = SK_ConverterManager::GetInstance()->ConvertNative(path, validate);
}

void SenmarkImpl::DestroyTdjsonStream(ITdjsonStream** stream) {
  RunInside([&] {
    if (stream == nullptr || *stream == nullptr) {
      ThrowInvalidPointer("ITdjsonStream");
    }
    SK_ConverterManager* const converters = SK_ConverterManager::GetInstance();
    TdjsonStreamImpl* const known = converters->FindStream(*stream);
    converters->RemoveStreamFromSet(known);
    delete known;
    *stream = nullptr;
  });
}

SenmarkImpl::~SenmarkImpl() {
  try {
    for (auto const& [path, entry] : mFileHandlerMap) {
      DestroyHandler(entry.first);
    }
  } catch (...) {
    // The host is shutting the library down: there is nobody left to tell.
  }
}

void SenmarkImpl::ShutDown() {
  SK_ConverterManager::Terminate();
  SK_Localizer::Terminate();
  delete mSKInstance;
  mSKInstance = nullptr;
}

void SenmarkImpl::OpenLocked(ISensorFileHandler** handler, char const* path, char const* outputPath) {
  auto const known = mFileHandlerMap.find(path);
  if (known != mFileHandlerMap.end()) {
    ++known->second.second;
    *handler = known->second.first;
    if (IsOutputWanted(outputPath)) {
      // The input itself is copied, also one that had to be converted for the first opening.
      CopyTdjsonAtPath(outputPath, path, false);
    }
    return;
  }
  std::shared_ptr<SK_NAMESPACE_INT::SK_ConversionInfo> const info =
      SK_ConverterManager::GetInstance()->ConvertNative(path, outputPath);
  auto opened = std::make_unique<SensorFileHandlerImpl>(path, std::strlen(path), info->filePath.c_str(),
                                                        info->filePath.size(), info->version);
  mFileHandlerMap[path] = {opened.get(), static_cast<unsigned short>(1)};
  mOpenPathCount = mFileHandlerMap.size();
  *handler = opened.release();
  if (IsOutputWanted(outputPath)) {
    CopyTdjsonAtPath(outputPath, info->filePath.c_str(), info->isTemporary);
  }
}

void SenmarkImpl::CopyTdjsonAtPath(char const* destination, char const* source, bool isTemporary) {
  bool const exists = File_IO::Exists(destination);
  if (isTemporary) {
    if (exists) {
      File_IO::SwapData(destination, source);
    } else {
      File_IO::Rename(source, destination);
    }
    return;
  }
  if (!exists) {
    File_IO::Create(destination, true, false);
  }
  File_IO::CopyFileContents(source, destination);
}

bool SenmarkImpl::DestroyHandler(ISensorFileHandler* handler) {
  auto* const own = dynamic_cast<SensorFileHandlerImpl*>(handler);
  delete own;
  return own != nullptr;
}

}  // namespace ns_sensor
