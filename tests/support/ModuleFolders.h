/// Folders of modules on the disk, good ones and bad ones.
#pragma once

#include <string>

#include "TempFolder.h"

namespace senmark_test {

/// Shared objects that the build made from the files of these names in `tests/support`.
extern char const* const kTestModule;
extern char const* const kBareModule;
extern char const* const kDyingModule;
extern char const* const kFaultyModule;
extern char const* const kLoudModule;
extern char const* const kNeedyModule;
extern char const* const kExplainingModule;

/// What `uname -m` prints.
std::string Machine();

/// A folder with modules in it. For as long as it lives, modules keep what they do in a file.
class ModuleFolders {
 public:
  explicit ModuleFolders(TempFolder const& folder, std::string const& name = "modules");
  ~ModuleFolders();
  ModuleFolders(ModuleFolders const&) = delete;
  ModuleFolders& operator=(ModuleFolders const&) = delete;

  /// Makes the folder `name`, like "Good.tdx", and gives its path. What is null is left out.
  std::string Add(std::string const& name, char const* manifest, char const* identifier = "good",
                  char const* code = kTestModule) const;
  /// Puts other bytes in the place of the code.
  void SetCode(std::string const& name, std::string const& bytes) const;
  std::string CodePath(std::string const& name) const;
  std::string ResourcePath(std::string const& name, std::string const& resource) const;

  std::string const& Path() const { return mPath; }
  /// What modules did since the last call, a line each.
  std::string TakeNotes() const;

 private:
  TempFolder const& mFolder;
  std::string mPath;
  std::string mNotes;
};

/// The bytes of one of the shared objects.
std::string CodeBytes(char const* code);

/// A manifest with one converter. `extra`: further members, each with a comma in front.
std::string Manifest(std::string const& uid, std::string const& extensions, std::string const& extra = "");

}  // namespace senmark_test
