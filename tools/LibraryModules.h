/// The one folder of modules that the library is given.
#pragma once

#include <memory>
#include <string>

#include "ModuleDiscovery.h"
#include "ScratchFolder.h"

namespace senmark_tool {

/// A folder that was found if that is enough, else one of the program's own that stands for several. There the order
/// in which the library comes by the modules is not that of the folders and cannot be chosen, so each module is a link
/// that brings only what the discovery gives it, with a manifest made anew where that is not all of it. It goes with
/// this object, which must outlive the library's use.
class LibraryModules {
 public:
  /// Errors: `std::system_error` and `std::filesystem::filesystem_error` when the folder cannot be made.
  explicit LibraryModules(ModuleDiscovery const& discovery);

  /// Empty: no modules.
  std::string const& Folder() const { return mFolder; }

 private:
  std::unique_ptr<ScratchFolder> mScratch;
  std::string mFolder;
};

}  // namespace senmark_tool
