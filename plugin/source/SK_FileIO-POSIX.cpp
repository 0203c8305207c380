#include "SK_FileIO.h"

#include <fcntl.h>
#include <stdio.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "SK_Assert.h"
#include "SK_Error.h"

namespace File_IO {

namespace {

using ns_sensor::eErrorCode;

constexpr unsigned int kFirstRefusedCount = 0x80000000u;
constexpr std::size_t kCopyBlock = 65536;

[[noreturn]] void Throw(eErrorCode code, char const* literal, char const* function) {
  SK_NAMESPACE_INT::ThrowError({code, literal, -1, -1}, std::string(function));
}

[[noreturn]] void ThrowSystemCallFailed(eErrorCode code, char const* function, char const* call) {
  SK_NAMESPACE_INT::ThrowError({code, SK_Message::kSystemCallFailed, -1, -1}, std::string(function), std::string(call));
}

void RefuseUnlessOwnerMayWrite(int fd) {
  struct stat status;
  if (::fstat(fd, &status) != 0) {
    ThrowSystemCallFailed(ns_sensor::kCannotOpenFile, "File_IO::Open", "fstat");
  }
  if ((status.st_mode & S_IWUSR) == 0) {
    Throw(ns_sensor::kNoFilePermission, SK_Message::kFilePermission, "File_IO::Open");
  }
}

void WriteBlock(int fd, char const* data, std::size_t size) {
  while (size > 0) {
    ssize_t const written = ::write(fd, data, size);
    if (written == -1) {
      Throw(ns_sensor::kWriteFailed, SK_Message::kCopyFailed, "File_IO::CopyFileContents");
    }
    data += written;
    size -= static_cast<std::size_t>(written);
  }
}

// Gives the number of bytes copied.
long long CopyBlocks(int source, int destination) {
  char block[kCopyBlock];
  long long copied = 0;
  for (;;) {
    ssize_t const size = ::read(source, block, sizeof block);
    if (size == -1) {
      ThrowSystemCallFailed(ns_sensor::kReadFailed, "File_IO::CopyFileContents", "read");
    }
    if (size == 0) {
      return copied;
    }
    WriteBlock(destination, block, static_cast<std::size_t>(size));
    copied += size;
  }
}

// Takes back a rename. What led here is the error that counts, so that a failure is not reported.
void MoveBack(char const* from, char const* to) {
  if (!Exists(to)) {
    static_cast<void>(::rename(from, to));
  }
}

}  // namespace

bool Exists(char const* path) {
  return GetFileMode(path) != kAbsent;
}

std::uint8_t GetFileMode(char const* path) {
  struct stat status;
  if (::stat(path, &status) != 0) {
    return kAbsent;
  }
  if (S_ISREG(status.st_mode)) {
    return kRegularFile;
  }
  return S_ISDIR(status.st_mode) ? kFolder : kOtherKind;
}

std::uint8_t GetFileMode(std::string const& path) {
  return GetFileMode(path.c_str());
}

bool Create(char const* path, bool overwrite, bool append) {
  if (!overwrite) {
    std::uint8_t const kind = GetFileMode(path);
    if (kind == kRegularFile) {
      return false;
    }
    if (kind != kAbsent) {
      Throw(ns_sensor::kFileNotFound, SK_Message::kNotAFile, "File_IO::Create");
    }
  }
  int const fd =
      ::open(path, O_RDWR | O_CREAT | O_CLOEXEC | (overwrite ? O_TRUNC : O_EXCL) | (append ? O_APPEND : 0), 0644);
  if (fd == -1) {
    Throw(ns_sensor::kCannotCreateFile, SK_Message::kCannotCreateFile, "File_IO::Create");
  }
  Close(fd);
  return true;
}

void Delete(char const* path) {
  switch (GetFileMode(path)) {
    case kAbsent:
      Throw(ns_sensor::kCannotDeleteFile, SK_Message::kOperationFailed, "File_IO::Delete");
    case kFolder:
      if (::rmdir(path) != 0) {
        ThrowSystemCallFailed(ns_sensor::kCannotRemoveFolder, "File_IO::Delete", "rmdir");
      }
      break;
    default:
      if (::unlink(path) != 0) {
        ThrowSystemCallFailed(ns_sensor::kCannotDeleteFile, "File_IO::Delete", "unlink");
      }
  }
}

int Open(char const* path, bool readOnly, bool append) {
  Descriptor descriptor(::open(path, (readOnly ? O_RDONLY : O_RDWR) | O_CLOEXEC | (append ? O_APPEND : 0), 0660));
  if (descriptor.Get() == -1) {
    if (errno == EACCES) {
      Throw(ns_sensor::kNoFilePermission, SK_Message::kFilePermission, "File_IO::Open");
    }
    Throw(ns_sensor::kCannotOpenFile, SK_Message::kOperationFailed, "File_IO::Open");
  }
  if (!readOnly) {
    RefuseUnlessOwnerMayWrite(descriptor.Get());
  }
  return descriptor.Release();
}

void Close(int fd) {
  if (fd != -1 && ::close(fd) != 0) {
    Throw(ns_sensor::kCannotCloseFile, SK_Message::kCannotCloseFile, "File_IO::Close");
  }
}

Descriptor::~Descriptor() {
  if (mFd != -1) {
    ::close(mFd);
  }
}

int Descriptor::Release() {
  return std::exchange(mFd, -1);
}

void Descriptor::Close() {
  File_IO::Close(Release());
}

long long Seek(int fd, long long offset, SeekMode mode) {
  int whence = SEEK_SET;
  switch (mode) {
    case kSeekFromStart:
      break;
    case kSeekFromCurrent:
      whence = SEEK_CUR;
      break;
    case kSeekFromEnd:
      whence = SEEK_END;
      break;
    default:
      Throw(ns_sensor::kSeekFailed, SK_Message::kInvalidSeekMode, "File_IO::Seek");
  }
  long long const position = ::lseek(fd, offset, whence);
  if (position == -1) {
    ThrowSystemCallFailed(ns_sensor::kSeekFailed, "File_IO::Seek", "lseek");
  }
  return position;
}

long long Offset(int fd) {
  return Seek(fd, 0, kSeekFromCurrent);
}

void SetEOF(int fd, long long length) {
  if (::ftruncate(fd, length) != 0) {
    ThrowSystemCallFailed(ns_sensor::kSeekFailed, "File_IO::SetEOF", "ftruncate");
  }
}

unsigned int Read(int fd, void* buffer, unsigned int count) {
  if (count >= kFirstRefusedCount) {
    Throw(ns_sensor::kReadFailed, SK_Message::kReadRequestTooLarge, "File_IO::Read");
  }
  ssize_t const size = ::read(fd, buffer, count);
  if (size == -1) {
    ThrowSystemCallFailed(ns_sensor::kReadFailed, "File_IO::Read", "read");
  }
  return static_cast<unsigned int>(size);
}

void Write(int fd, void const* buffer, unsigned int count) {
  if (count >= kFirstRefusedCount) {
    // The name of the other operation is what hosts have always been shown here.
    Throw(ns_sensor::kWriteFailed, SK_Message::kWriteRequestTooLarge, "File_IO::Read");
  }
  errno = 0;  // a short write sets no reason, and one left from before would be reported
  ssize_t const written = ::write(fd, buffer, count);
  if (written != static_cast<ssize_t>(count)) {
    ThrowWriteFailed(errno);
  }
}

void ThrowWriteFailed(int reason) {
  if (reason == ENOSPC) {
    Throw(ns_sensor::kNoMemory, SK_Message::kDiskFull, "File_IO::Write");
  }
  Throw(ns_sensor::kWriteFailed, SK_Message::kWriteFailed, "File_IO::Write");
}

long long Length(int fd) {
  off_t const position = ::lseek(fd, 0, SEEK_CUR);
  off_t const end = position == -1 ? -1 : ::lseek(fd, 0, SEEK_END);
  if (end == -1) {
    Throw(ns_sensor::kReadFailed, SK_Message::kLengthFailed, "File_IO::Length");
  }
  ::lseek(fd, position, SEEK_SET);
  return end;
}

DIR* OpenFolder(char const* path) {
  std::uint8_t const kind = GetFileMode(path);
  if (kind == kAbsent) {
    Throw(ns_sensor::kCannotOpenFolder, SK_Message::kOperationFailed, "File_IO::OpenFolder");
  }
  if (kind != kFolder) {
    Throw(ns_sensor::kCannotOpenFolder, SK_Message::kNotAFolder, "File_IO::OpenFolder");
  }
  DIR* const folder = ::opendir(path);
  if (folder == nullptr) {
    ThrowSystemCallFailed(ns_sensor::kCannotOpenFolder, "File_IO::OpenFolder", "opendir");
  }
  return folder;
}

void CloseFolder(DIR* folder) {
  if (folder != nullptr && ::closedir(folder) != 0) {
    ThrowSystemCallFailed(ns_sensor::kCannotCloseFolder, "File_IO::CloseFolder", "closedir");
  }
}

bool GetNextChild(DIR* folder, std::string* name) {
  for (;;) {
    errno = 0;
    struct dirent const* const entry = ::readdir(folder);
    if (entry == nullptr) {
      // A closed descriptor counts as the end. The message keeps the name of the older call.
      if (errno != 0 && errno != EBADF) {
        ThrowSystemCallFailed(ns_sensor::kRenameFailed, "File_IO::GetNextChild", "readdir_r");
      }
      return false;
    }
    if (entry->d_name[0] == '.') {
      continue;
    }
    if (name != nullptr) {
      *name = entry->d_name;
    }
    return true;
  }
}

Folder::~Folder() {
  try {
    Close();
  } catch (ns_sensor::SK_Exception const&) {
    // Nobody can be told from here.
  }
}

void Folder::Close() {
  DIR* const folder = mFolder;
  mFolder = nullptr;
  CloseFolder(folder);
}

bool GetTempFile(std::string& path, std::string const& folder) {
  std::string name = (folder.empty() ? GetTempFolder() : folder) + "XXXXXX";
  int const fd = ::mkostemp(name.data(), O_CLOEXEC);
  if (fd == -1) {
    Throw(ns_sensor::kCannotMakeTempFile, SK_Message::kTempFileOpen, "File_IO::GetTempFile");
  }
  try {
    Close(fd);
  } catch (...) {
    ::unlink(name.c_str());  // nobody else knows of it
    throw;
  }
  path = std::move(name);
  return true;
}

bool AppendToTempFile(int fd, char const* data, unsigned long long size, bool close) {
  errno = 0;  // as in `Write`
  ssize_t const written = ::write(fd, data, size);
  int const reason = errno;
  if (close) {
    ::close(fd);
  }
  errno = reason;
  return written != -1 && static_cast<unsigned long long>(written) == size;
}

void SwapData(char const* pathA, char const* pathB) {
  std::string const thirdPath = ConjureDerivedPath(pathA);
  if (thirdPath.empty()) {
    Throw(ns_sensor::kCannotMakeTempFile, SK_Message::kSwapDataNoTempPath, "File_IO::SwapData");
  }
  if (Exists(thirdPath.c_str())) {
    SK_NAMESPACE_INT::SK_AssertFailed("! File_IO::Exists ( thirdPath.c_str() )", "SwapData",
                                      "plugin/source/SK_FileIO-POSIX", __LINE__);
  }
  Rename(pathA, thirdPath.c_str());
  try {
    Rename(pathB, pathA);
  } catch (...) {
    MoveBack(thirdPath.c_str(), pathA);
    throw;
  }
  try {
    Rename(thirdPath.c_str(), pathB);
  } catch (...) {
    MoveBack(pathA, pathB);
    MoveBack(thirdPath.c_str(), pathA);
    throw;
  }
}

void Rename(char const* from, char const* to) {
  if (Exists(to)) {
    Throw(ns_sensor::kInternalFailure, SK_Message::kRenameTargetExists, "File_IO::Rename");
  }
  if (::rename(from, to) != 0) {
    Throw(ns_sensor::kRenameFailed, SK_Message::kRenameFailed, "File_IO::Rename");
  }
}

void CopyFileContents(char const* source, char const* destination) {
  Descriptor from(Open(source, true, false));
  Descriptor to(Open(destination, false, false));
  long long const copied = CopyBlocks(from.Get(), to.Get());
  // A destination that was longer must not keep its tail. A device has none and cannot be cut.
  struct stat status;
  if (::fstat(to.Get(), &status) == 0 && S_ISREG(status.st_mode) && status.st_size > copied) {
    SetEOF(to.Get(), copied);
  }
  from.Close();
  to.Close();
}

std::string GetTempFolder() {
  for (char const* const name : {"TEMP", "TMP", "TMPDIR"}) {
    if (char const* const value = ::getenv(name)) {
      return value;
    }
  }
  return "/tmp/";
}

std::string ConjureDerivedPath(std::string const& path) {
  for (char tens = '0'; tens <= '9'; ++tens) {
    for (char ones = '0'; ones <= '9'; ++ones) {
      std::string derived = path + "._" + tens + ones + '_';
      if (!Exists(derived.c_str())) {
        return derived;
      }
    }
  }
  return std::string();
}

}  // namespace File_IO
