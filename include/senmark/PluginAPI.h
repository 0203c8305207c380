/// What a converter module gives to the library: one function to begin with, and a table that it fills in.
///
/// A module is a folder `Name.tdx`:
///
///     Contents/<machine>-linux/Name.so         its code on Linux; <machine> is what `uname -m` prints
///     Contents/MacOS/Name                      its code on macOS, with Contents/Info.plist
///     Contents/Resources/SKPLUGINUIDS.txt      the manifest: which converters there are, for which extensions
///     Contents/Resources/MODULE_IDENTIFIER.txt the identifier, any text
///
/// The manifest is read when the library starts. The code is loaded when a file needs it: to check the file if
/// the manifest tells no signature, or to convert it. From then on it stays loaded until the library ends.
///
/// Rules for every function of the table:
///
/// Errors:   a failure is an error code other than 0 in the record at `result`, which is fresh and never null. Its
///           place in the input, offset and line, reaches the host too. Nothing may be thrown: what is thrown all
///           the same counts as code 1034 (`std::bad_alloc`) or 1023 (anything else).
/// Strings:  UTF-8, ended by a NUL, valid until the function returns; `uid` is the "identifier" of a converter in
///           the manifest.
/// Threads:  functions are called on the thread of the host that opens the file, one call at a time as long as the
///           host does not make streams beside its other work. None may call what the library exports for hosts, which
///           would wait for the call in progress.
#pragma once

#include <cstddef>
#include <cstdint>

#include "senmark/HostAPI.h"
#include "senmark/SK_PluginResult.h"

namespace SK_PLUGIN {

/// Made by the library, zeroed but for its size and version. The module fills in every function: one that is
/// left out fails with code 1500 when it is needed.
struct PluginAPI {
  std::uint32_t size;     ///< 48, the bytes of this record
  std::uint32_t version;  ///< 1

  /// Ends the module, before its code is unloaded; also after `InitializePlugin` has failed.
  void (*terminate)(SK_PluginResult* result);

  /// Begins the conversion of one file.
  ///
  /// extension of `input`, in lower case and without its point; may be empty.
  /// output    path of an empty file, which the conversion is to fill by the writer's root.
  /// session   receives any value, which the other functions get back; starts as null.
  /// Errors:   the file cannot be opened. `terminateSession` is not called then.
  void (*initializeSession)(char const* uid, char const* extension, char const* input, char const* output,
                            void** session, SK_PluginResult* result);

  /// Ends a conversion, whether it succeeded or not. An error is not reported to anybody.
  void (*terminateSession)(void* session, SK_PluginResult* result);

  /// Says whether a converter takes a file. Called only if the manifest tells no signature, for files of any
  /// extension, and perhaps twice for one file.
  ///
  /// accepted  receives the answer; starts as false.
  /// Errors:   the file cannot be opened, also when another converter would have taken it.
  void (*checkFileFormat)(char const* input, char const* uid, bool* accepted, SK_PluginResult* result);

  /// Converts the file of a session; called once.
  ///
  /// succeeded  starts as false; left so without an error it counts as code 1506.
  void (*convertToTDJSON)(void* session, bool* succeeded, SK_PluginResult* result);
};
static_assert(sizeof(PluginAPI) == 48);
static_assert(offsetof(PluginAPI, size) == 0);
static_assert(offsetof(PluginAPI, version) == 4);
static_assert(offsetof(PluginAPI, terminate) == 8);
static_assert(offsetof(PluginAPI, initializeSession) == 16);
static_assert(offsetof(PluginAPI, terminateSession) == 24);
static_assert(offsetof(PluginAPI, checkFileFormat) == 32);
static_assert(offsetof(PluginAPI, convertToTDJSON) == 40);

/// The type of `InitializePlugin`.
using InitializePluginProc = void (*)(char const* identifier, HostAPI* hostAPI, PluginAPI* pluginAPI,
                                      SK_PluginResult* result);

}  // namespace SK_PLUGIN

/// The one function that a module exports; called after its code was loaded.
///
/// identifier  text of MODULE_IDENTIFIER.txt, as it stands there; empty without that file.
/// hostAPI     the writer, among others; lives longer than the module.
/// pluginAPI   to be filled in; lives until the module is unloaded.
/// Errors:     the module is unloaded again, and the host sees code 1500.
extern "C" __attribute__((visibility("default"))) void InitializePlugin(char const* identifier,
                                                                        SK_PLUGIN::HostAPI* hostAPI,
                                                                        SK_PLUGIN::PluginAPI* pluginAPI,
                                                                        SK_PLUGIN::SK_PluginResult* result);
