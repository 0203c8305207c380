/// File operations on plain descriptors, with exceptions in place of result codes.
///
/// Every failure is an `SK_Exception` without a position; its message names the operation. Nothing here
/// keeps state, retries, or shares a descriptor between threads.
#pragma once

#include <dirent.h>

#include <cstdint>
#include <string>

namespace File_IO {

enum SeekMode : int { kSeekFromStart = 0, kSeekFromCurrent = 1, kSeekFromEnd = 2 };

/// What `GetFileMode` finds at a path.
enum eFileKind : std::uint8_t { kAbsent = 0, kRegularFile = 1, kFolder = 2, kOtherKind = 3 };

bool Exists(char const* path);
std::uint8_t GetFileMode(char const* path);
std::uint8_t GetFileMode(std::string const& path);

/// Makes an empty file. Without `overwrite` an existing regular file is left alone, with the result
/// false. Codes 4, 7.
bool Create(char const* path, bool overwrite, bool append);
/// A folder must be empty. Codes 9, 18.
void Delete(char const* path);
/// Gives a descriptor that the caller owns. Codes 6, 13: the latter also for a file whose owner may not
/// write it, when it is opened for writing.
int Open(char const* path, bool readOnly, bool append);
/// -1 is ignored. Code 8.
void Close(int fd);

/// Closes the descriptor that it holds. `Close` raises what the function does; the destructor keeps it quiet.
class Descriptor {
 public:
  explicit Descriptor(int fd) : mFd(fd) {}
  ~Descriptor();
  Descriptor(Descriptor const&) = delete;
  Descriptor& operator=(Descriptor const&) = delete;

  int Get() const { return mFd; }
  /// The caller closes it.
  int Release();
  void Close();

 private:
  int mFd;
};

/// The new position. Code 10.
long long Seek(int fd, long long offset, SeekMode mode);
long long Offset(int fd);
/// Code 10.
void SetEOF(int fd, long long length);
/// One read: the bytes that came, 0 at the end. Code 11, also for 2 GiB or more at once.
unsigned int Read(int fd, void* buffer, unsigned int count);
/// One write of all bytes. Code 34 for a full disk, else 55, also for 2 GiB or more at once.
void Write(int fd, void const* buffer, unsigned int count);
/// What `Write` raises for this `errno`, which is 0 when the system took only a part.
[[noreturn]] void ThrowWriteFailed(int reason);
/// Bytes of the file; the position is kept. Code 11.
long long Length(int fd);

/// Codes 16, 17, 22. Hidden names are left out.
DIR* OpenFolder(char const* path);
void CloseFolder(DIR* folder);
bool GetNextChild(DIR* folder, std::string* name);

/// Closes the folder that it holds. `Close` raises what `CloseFolder` does; the destructor keeps it quiet.
class Folder {
 public:
  explicit Folder(DIR* folder = nullptr) : mFolder(folder) {}
  ~Folder();
  Folder(Folder const&) = delete;
  Folder& operator=(Folder const&) = delete;

  DIR* Get() const { return mFolder; }
  void Close();

 private:
  DIR* mFolder;
};

/// Makes an empty file with a name of its own in `folder` (which ends in its separator), or in the
/// folder for temporary files if that is empty. `path` receives its name. Always true; code 15.
bool GetTempFile(std::string& path, std::string const& folder);
/// One write; false unless all of it was written, with the reason in `errno`, which is 0 if the system
/// took only a part. `close` then closes the descriptor in either case. No errors.
bool AppendToTempFile(int fd, char const* data, unsigned long long size, bool close);
/// Exchanges two files by a third name, and puts everything back if that fails half way. Codes 15 and
/// those of `Rename`.
void SwapData(char const* pathA, char const* pathB);
/// Code 21 if `to` exists, 22 if the system refuses.
void Rename(char const* from, char const* to);
/// Makes the existing file `destination` equal to `source`, in bounded memory. Codes of `Open`, 10, 11,
/// 55.
void CopyFileContents(char const* source, char const* destination);

/// The folder for temporary files: the first of the environment variables TEMP, TMP, TMPDIR that is set,
/// as it stands, else "/tmp/". File names are appended to it without a separator.
std::string GetTempFolder();

/// The first of `path` + "._00_" to `path` + "._99_" that does not exist; empty if all do.
std::string ConjureDerivedPath(std::string const& path);

}  // namespace File_IO
