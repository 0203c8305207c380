/// Tables for a module that is run without the library.
#pragma once

#include "senmark/HostAPI.h"

namespace senmark_tool {

/// Enough for a module to check and to explain files. The writer is not there: each attempt to make one of its
/// objects fails with code 21. Lives as long as the process.
SK_PLUGIN::HostAPI* StubHostAPI();

}  // namespace senmark_tool
