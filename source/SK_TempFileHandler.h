/// A private scratch file: written once from front to back, then mapped. It goes with its owner.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace SK_NAMESPACE_INT {

class SK_FileMapper;

class SK_TempFileHandler {
 public:
  /// Makes the file: the folder for temporary files, `fileName`, and six characters that make it unique.
  /// Codes 14 and 15.
  explicit SK_TempFileHandler(std::string const& fileName);
  /// Removes the file, then unmaps it.
  ~SK_TempFileHandler();
  SK_TempFileHandler(SK_TempFileHandler const&) = delete;
  SK_TempFileHandler& operator=(SK_TempFileHandler const&) = delete;

  /// Sets blocks for `size` bytes in all aside, so that writing need not look for them piece by piece. The
  /// last chunk gives back what was not used. A system that cannot do it is no error.
  void Reserve(std::uint64_t size);
  /// Appends `size` bytes in one write; the last chunk closes the file. False when not all was written,
  /// and then the file stays open.
  bool WriteToTempFile(char const* data, std::uint64_t size, bool isLastChunk);
  /// Maps what was written. Always true; fails with the codes of `SK_FileMapper`, 54 for an empty file.
  bool CreateTempFileMapping();

  char const* GetTempFileMappingAddress() const;  ///< null without a mapping
  std::uint64_t GetTempFileSize() const;          ///< all ones without a mapping

 private:
  bool GetTempDir(std::string& dir);
  void GetTempFileDescriptor(std::string& path);

  int mFileDescriptor;  // -1: closed
  std::string mFilePath;
  std::unique_ptr<SK_FileMapper> mFileMapper;
  std::uint64_t mReservedSize;  // bytes from the start of the file
  std::uint64_t mWrittenSize;   // bytes
};

}  // namespace SK_NAMESPACE_INT
