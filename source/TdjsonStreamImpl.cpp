#include "TdjsonStreamImpl.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_Utils.h"

namespace ns_sensor {

TdjsonStreamImpl::TdjsonStreamImpl(std::shared_ptr<SK_NAMESPACE_INT::SK_ConversionInfo> const& info,
                                   std::string nativePath)
    : mNativeFilePath(std::move(nativePath)),
      mStreamSize(0),
      mRemainingSize(0),
      mConversionInfo(info),
      mFile(File_IO::Open(info->filePath.c_str(), true, false)) {
  try {
    mStreamSize = static_cast<unsigned>(File_IO::Length(mFile));
  } catch (...) {
    File_IO::Close(mFile);
    throw;
  }
  mRemainingSize = mStreamSize;
}

TdjsonStreamImpl::~TdjsonStreamImpl() {
  try {
    File_IO::Close(mFile);
  } catch (...) {
    // The stream is going: a descriptor that does not close is nobody's business any more.
  }
}

unsigned TdjsonStreamImpl::ReadStream(char* buffer, unsigned const& size) {
  if (buffer == nullptr) {
    SK_NAMESPACE_INT::ThrowInvalidPointer("GetTDJSONStream");
  }
  std::memset(buffer, 0, size);
  unsigned const bytesRead = File_IO::Read(mFile, buffer, std::min(mRemainingSize, size));
  mRemainingSize -= bytesRead;
  return bytesRead;
}

void TdjsonStreamImpl::SaveStream(char const* path) const {
  SK_NAMESPACE_INT::SK_Utils::CheckFilePathValidity(path);
  std::error_code notThere;
  if (std::filesystem::equivalent(path, mConversionInfo->filePath, notThere)) {
    return;  // it stands there already, and making it anew would empty it
  }
  bool const existed = File_IO::Exists(path);
  try {
    File_IO::Create(path, true, true);
    File_IO::CopyFileContents(mConversionInfo->filePath.c_str(), path);
  } catch (...) {
    if (existed) {
      File_IO::Create(path, true, true);
    } else if (File_IO::Exists(path)) {
      File_IO::Delete(path);
    }
    throw;
  }
}

void TdjsonStreamImpl::GetNativeFilePath(std::string& path) const {
  path += mNativeFilePath;
}

unsigned TdjsonStreamImpl::GetStreamSize() const {
  return mStreamSize;
}

unsigned TdjsonStreamImpl::GetRemainingStreamSize() const {
  return mRemainingSize;
}

void TdjsonStreamImpl::ResetStream() {
  File_IO::Seek(mFile, 0, File_IO::kSeekFromStart);
}

}  // namespace ns_sensor
