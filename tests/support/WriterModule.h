/// The doors of the module that `WriterModule.cpp` is built to.
#pragma once

#include "senmark/HostAPI.h"

namespace senmark_test {

/// Runs one conversion under `key`.
///
/// Says what went otherwise than the module expected, a line each, to `complain`.
using WriterModuleRun = void (*)(SK_PLUGIN::HostAPI const* api, void* key, char const* path,
                                 void (*complain)(char const* line));

}  // namespace senmark_test
