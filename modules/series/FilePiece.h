/// Rows from the inside of a file.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "Layout.h"
#include "senmark/module/Input.h"

namespace senmark_series {

/// Hands the rows of a piece of the file to `take`, those of the layout's data. A piece may begin inside of a row, or
/// of a text of several lines: its first row is left out, except at the start of the file, and others may make no
/// sense. Lines count from the start of the piece.
///
/// offset  bytes of the file before the piece, even: UTF-16 has two for a letter.
/// Errors: `Failure` with code 11 for what cannot be read, and as `RowReader::next`.
void ForEachRowOfPiece(kit::Input const& input, Layout const& layout, std::uint64_t offset, std::size_t size,
                       std::function<void(Row const&)> const& take);

}  // namespace senmark_series
