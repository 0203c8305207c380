/// The place of an error in a file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace senmark_tool {

/// A byte of a file, for people.
struct Place {
  std::uint64_t offset = 0;  ///< from the start of the file, in bytes
  std::uint64_t line = 1;    ///< from 1
  std::uint64_t column = 1;  ///< from 1, in bytes from the start of the line
  std::string excerpt;       ///< a part of the line, one column for each character, without control characters
  std::size_t caret = 0;     ///< column of the byte in the excerpt, from 0
};

/// Finds line and column of a byte, and what stands around it on its line.
///
/// offset  at most the size of the file: the byte behind the last one is a place, too.
/// width   columns that the excerpt may take, at least 10.
/// Result: none when the file cannot be read up to there.
std::optional<Place> FindPlace(std::string const& path, std::uint64_t offset, std::size_t width);

}  // namespace senmark_tool
