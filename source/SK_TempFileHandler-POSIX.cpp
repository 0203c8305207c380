#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include <limits>

#include "SK_Error.h"
#include "SK_FileIO.h"
#include "SK_FileMapper.h"
#include "SK_OSFile.h"
#include "SK_TempFileHandler.h"

namespace SK_NAMESPACE_INT {

SK_TempFileHandler::SK_TempFileHandler(std::string const& fileName)
    : mFileDescriptor(-1), mReservedSize(0), mWrittenSize(0) {
  std::string path;
  if (!GetTempDir(path)) {
    ThrowError({ns_sensor::kNoTempFolder, SK_Message::kTempDirNotFound, -1, -1});
  }
  path += fileName;
  GetTempFileDescriptor(path);
}

SK_TempFileHandler::~SK_TempFileHandler() {
  if (mFileDescriptor != -1) {
    ::close(mFileDescriptor);
  }
  mFileDescriptor = -1;
  // The name goes before the mapping does: what is mapped stays readable without it.
  static_cast<void>(::remove(mFilePath.c_str()));
}

void SK_TempFileHandler::Reserve(std::uint64_t size) {
  ReserveFileBlocks(mFileDescriptor, 0, size);
  mReservedSize = size;
}

bool SK_TempFileHandler::WriteToTempFile(char const* data, std::uint64_t size, bool isLastChunk) {
  ssize_t const written = ::write(mFileDescriptor, data, size);
  if (written == -1 || static_cast<std::uint64_t>(written) != size) {
    return false;
  }
  mWrittenSize += size;
  if (isLastChunk) {
    if (mReservedSize > mWrittenSize) {
      // Blocks that stay reserved are a pity, not a failure: they go with the file.
      static_cast<void>(::ftruncate(mFileDescriptor, static_cast<off_t>(mWrittenSize)));
    }
    ::close(mFileDescriptor);
    mFileDescriptor = -1;
  }
  return true;
}

bool SK_TempFileHandler::CreateTempFileMapping() {
  mFileMapper = std::make_unique<SK_FileMapper>(mFilePath);
  return true;
}

char const* SK_TempFileHandler::GetTempFileMappingAddress() const {
  return mFileMapper == nullptr ? nullptr : mFileMapper->GetFilePointer();
}

std::uint64_t SK_TempFileHandler::GetTempFileSize() const {
  return mFileMapper == nullptr ? std::numeric_limits<std::uint64_t>::max() : mFileMapper->GetFileSize();
}

bool SK_TempFileHandler::GetTempDir(std::string& dir) {
  dir = File_IO::GetTempFolder();
  return true;
}

void SK_TempFileHandler::GetTempFileDescriptor(std::string& path) {
  path += "XXXXXX";
  mFilePath = path;  // before there is a file: nothing may fail between making it and knowing its name
  mFileDescriptor = ::mkostemp(mFilePath.data(), O_CLOEXEC);
  if (mFileDescriptor == -1) {
    ThrowError({ns_sensor::kCannotMakeTempFile, SK_Message::kFailureOpeningTempFile, -1, -1});
  }
}

}  // namespace SK_NAMESPACE_INT
