/// What the fuzz targets share.
#pragma once

#include <cstdlib>

namespace senmark_fuzz {

/// Ends the process, which the fuzzer reports as a finding, unless a promise of the library holds.
inline void Require(bool holds) {
  if (!holds) {
    std::abort();
  }
}

}  // namespace senmark_fuzz
