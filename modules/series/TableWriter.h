/// Makes samples of the rows of a file.
#pragma once

#include "Survey.h"
#include "senmark/module/Input.h"
#include "senmark/module/Output.h"

namespace senmark_series {

/// The writer keeps up to 64 KiB of each stream that it has begun, so that a wider table is read several times.
constexpr std::size_t kStreamsAtOnce = 256;

/// A stream for each column that is neither time, nor empty, nor skipped, at the top of the tree; then a group `import`
/// that tells how the file was read.
void WriteTable(kit::Input const& input, Survey const& survey, kit::Output& output);

/// The same in one pass over a table of `kStreamsAtOnce` columns at most that is not JSON: it is surveyed while it is
/// written by a survey that was foretold. False if the rows tell otherwise, so that what was written is void.
///
/// layout    as it was guessed.
/// Errors: `Failure`; it may come of what was foretold.
bool WriteForetoldTable(kit::Input const& input, Layout const& layout, Survey const& foretold, kit::Output& output);

/// Bytes that a text of the column may have. All texts of a stream take the room of the longest, so that in a long
/// table they are held to less.
std::size_t LongestText(ColumnSurvey const& column);

}  // namespace senmark_series
