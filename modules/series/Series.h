/// The answers of the module: whether it takes a file, what the file becomes, and why.
#pragma once

#include "Layout.h"
#include "senmark/Module.h"

namespace senmark_series {

namespace kit = senmark::kit;

/// Tables of time-stamped rows: of the extensions csv, tsv, txt, log, jsonl and ndjson, or of any with a sidecar.
///
/// Of a large file the start is looked at, and a piece of its middle and of its end. A sidecar that is wrong is a yes,
/// so that the conversion can tell the error.
bool Accepts(kit::Input const& input);

/// How often `Convert` went over the rows.
enum class ePasses : std::uint8_t {
  kOne,       ///< they are what pieces of the file foretold
  kTwo,       ///< first to survey them, then to write them
  kBegunAnew  ///< two, after one that was given up
};

/// A file of this size is surveyed while it is written, for what a pass costs is worth it.
constexpr std::uint64_t kWorthForetelling = std::uint64_t{1} << 20;

/// What is written does not depend on the passes.
///
/// foretoldFrom  bytes of a file, to take for `kWorthForetelling`.
/// Errors: `Failure` with the place, for a file that is no such table too.
ePasses Convert(kit::Input const& input, kit::Output& output, std::uint64_t foretoldFrom = kWorthForetelling);

void Explain(kit::Input const& input, kit::Explanation& explanation);

}  // namespace senmark_series
