/// Makes samples of the rows of a file.
#pragma once

#include "Survey.h"
#include "senmark/module/Input.h"
#include "senmark/module/Output.h"

namespace senmark_series {

/// A stream for each column that is neither time, nor empty, nor skipped, at the top of the tree; then a group `import`
/// that tells how the file was read.
void WriteTable(kit::Input const& input, Survey const& survey, kit::Output& output);

/// Bytes that a text of the column may have. All texts of a stream take the room of the longest, so that in a long
/// table they are held to less.
std::size_t LongestText(ColumnSurvey const& column);

}  // namespace senmark_series
