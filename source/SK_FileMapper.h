/// A whole file, mapped read-only for the life of one object.
#pragma once

#include <cstdint>
#include <string>

namespace SK_NAMESPACE_INT {

class SK_FileMapper {
 public:
  /// Codes 6 (cannot open), 5 (size unknown), 54 (empty), 21 (cannot map). No descriptor stays open.
  explicit SK_FileMapper(std::string const& path);
  ~SK_FileMapper();
  SK_FileMapper(SK_FileMapper const&) = delete;
  SK_FileMapper& operator=(SK_FileMapper const&) = delete;

  char const* GetFilePointer() const { return mFilePointer; }
  std::uint64_t GetFileSize() const { return mFileSize; }  ///< bytes

  /// True for anything that `stat` finds, a folder too. The name is fixed.
  static bool CheckFileExistance(char const* path);

 private:
  void CreateMapping(std::string const& path);
  void CloseMapping();

  char const* mFilePointer;
  std::uint64_t mFileSize;
};

}  // namespace SK_NAMESPACE_INT
