/// The folder of one module, looked at without running anything.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace senmark_tool {

struct ModuleFolder {
  std::string path;                     ///< full
  std::string name;                     ///< of the folder, like "gpx.tdx"
  std::string problem;                  ///< why the library passes it over; empty: it does not
  std::string identifier;               ///< text of MODULE_IDENTIFIER.txt, without white space at its end
  std::optional<std::string> manifest;  ///< none: missing or cannot be read
  std::string manifestProblem;          ///< why there is none

  /// Whether the library looks for a manifest in it.
  bool IsModule() const { return problem.empty(); }
  /// What modules are told apart by: the name without its extension, in lower case.
  std::string Key() const;
};

/// A child `name` of `folder`, which may be anything. Nothing is thrown for what stands there.
ModuleFolder ReadModuleFolder(std::string const& folder, std::string const& name);

/// The children of `folder` in the order in which the library comes by them, which is that of the file system. Those
/// with a point in front, which it never sees, stay out. None if it is no folder or cannot be read.
std::vector<ModuleFolder> ReadModuleFolders(std::string const& folder);

}  // namespace senmark_tool
