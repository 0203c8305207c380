/// What a platform does with the folder of a module: its code and its resources.
///
/// On macOS the folder is a bundle. On Linux it has the same layout, with the shared object in
/// `Contents/<machine>-linux/Name.so` and the resources in `Contents/Resources`.
#pragma once

#include <string>

namespace SK_OSUtils {

struct Module;              ///< of the platform
using ModuleRef = Module*;  ///< an open folder; null where there is none

/// Whether the folder holds code that this process can load. Nothing is loaded to find out.
bool IsValidLibrary(std::string const& folder);

/// Opens a folder; null if `folder` is none. Its code is loaded too unless `resourcesOnly`. Code 1021.
ModuleRef LoadModule(std::string const& folder, bool resourcesOnly);
/// Closes what `LoadModule` gave with the same `resourcesOnly`; null is ignored.
void UnloadModule(ModuleRef module, bool resourcesOnly);

/// The address of an exported name; null if there is none, or no code was loaded.
void* GetFunctionPointerFromModuleImpl(ModuleRef module, char const* name);
template <typename Function>
Function GetFunctionPointerFromModule(ModuleRef module, char const* name) {
  return reinterpret_cast<Function>(GetFunctionPointerFromModuleImpl(module, name));
}

/// Replaces `data` with the whole of a resource; false, without a change, if it is not there or cannot be read.
bool GetResourceDataFromModule(ModuleRef module, std::string const& name, std::string const& type, std::string& data);

/// The folder of this library itself, open for its resources; null without one. `identifier` is that of its
/// bundle, which not every platform needs.
ModuleRef GetModuleRef(std::string const& identifier);

/// Where the code that holds this address was loaded to; null if it is in no loaded code.
void const* GetImage(void const* address);

}  // namespace SK_OSUtils
