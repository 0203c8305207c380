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

/// Errors: `Failure` with the place, for a file that is no such table too.
void Convert(kit::Input const& input, kit::Output& output);

void Explain(kit::Input const& input, kit::Explanation& explanation);

}  // namespace senmark_series
