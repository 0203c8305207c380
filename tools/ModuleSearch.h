/// Where the program looks for converter modules.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include "ModuleFolder.h"

namespace senmark_tool {

/// Why a folder is searched.
enum class eModuleOrigin : std::uint8_t {
  kOption,         ///< --modules
  kEnvironment,    ///< SENMARK_MODULE_PATH
  kBesideProgram,  ///< `modules` in the folder of the program's own file
  kInstalled,      ///< where `cmake --install` puts those that come with the program
};

/// A folder of the command line cannot be searched.
class ModuleFolderError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// In words, like "beside the program".
char const* OriginText(eModuleOrigin origin);

struct SearchedFolder {
  std::string path;  ///< full, with links followed if it exists
  eModuleOrigin origin = eModuleOrigin::kOption;
  std::string problem;                ///< why nothing is taken from it; empty: something may be
  std::vector<ModuleFolder> modules;  ///< all of its children, modules or not

  bool HoldsModules() const;
};

/// The folders in the order in which they count, each that exists once.
///
/// named  folders of the command line.
/// Errors: `ModuleFolderError` if one of those is no folder or cannot be read.
std::vector<SearchedFolder> SearchModules(std::vector<std::string> const& named);

}  // namespace senmark_tool
