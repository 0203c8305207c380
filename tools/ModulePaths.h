/// Where the parts of a module stand in its folder.
#pragma once

#include <string>

namespace senmark_tool {

/// The folder of a module, by its path. Nothing is looked at on the disk.
class ModulePaths {
 public:
  /// folder  may end in separators.
  explicit ModulePaths(std::string folder);

  std::string const& Folder() const { return mFolder; }
  /// Last part of the path, like "Name.tdx".
  std::string FolderName() const;
  /// "Name".
  std::string Name() const;

  /// The following are paths in the folder.
  std::string Code() const;
  static std::string Manifest() { return "Contents/Resources/SKPLUGINUIDS.txt"; }
  static std::string Identifier() { return "Contents/Resources/MODULE_IDENTIFIER.txt"; }

  /// Path of what stands in the folder under a path of its own.
  std::string Full(std::string const& inFolder) const { return mFolder + '/' + inFolder; }

 private:
  std::string mFolder;
};

}  // namespace senmark_tool
