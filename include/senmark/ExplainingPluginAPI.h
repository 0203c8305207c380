/// A longer table for hosts that drive a module themselves: one that tells a user why a file is read as it is.
///
/// The library hands a module a `PluginAPI`, with size 48. A host that hands it this record instead says so by the
/// size, 56. A module that knows only the shorter one leaves the further field as it is, which is null; one that knows
/// both fills the field in if `size` is at least 56, and touches nothing behind the shorter table otherwise.
#pragma once

#include <cstddef>

#include "senmark/PluginAPI.h"

namespace SK_PLUGIN {

/// Made by the host, zeroed but for its size and version. Its address is that of `base`, which is what
/// `InitializePlugin` receives.
struct ExplainingPluginAPI {
  PluginAPI base;  ///< size 56 and version 1

  /// Tells in plain lines how the converter sees a file: whether it takes it, why or why not, what it guesses. Null:
  /// the module tells nothing.
  ///
  /// line    called once for each line, in order, with `to` as first argument; it must not throw. `text` is UTF-8
  ///         without a line end, ended by a NUL, valid during that call.
  /// Errors: the file cannot be looked into; what was told before stands.
  void (*explainFile)(char const* input, char const* uid, void (*line)(void* to, char const* text), void* to,
                      SK_PluginResult* result);
};
static_assert(sizeof(ExplainingPluginAPI) == 56);
static_assert(offsetof(ExplainingPluginAPI, base) == 0);
static_assert(offsetof(ExplainingPluginAPI, explainFile) == 48);

}  // namespace SK_PLUGIN
