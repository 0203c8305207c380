/// Rows of a table, however the file writes them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "PlainNumber.h"

namespace senmark_series {

/// Without blanks at both ends; an empty one is a gap.
struct Cell {
  constexpr Cell() = default;
  Cell(std::string_view bytes) : text(bytes) {}
  Cell(char const* bytes) : text(bytes) {}
  Cell(std::string_view bytes, PlainNumber const& read) : text(bytes), plain(read) {}
  operator std::string_view() const { return text; }

  std::string_view text;
  PlainNumber plain;  ///< what cutting it has found out: if it is there, `PlainNumber::kReach` bytes may be read
};

/// Cells in their columns. Valid until the next row.
struct Row {
  std::vector<Cell> cells;
  std::int64_t line = 0;    ///< in which it begins, the first one of the file is 1
  std::int64_t offset = 0;  ///< of that line, in bytes
  bool isBroken = false;    ///< it is there, but cannot be cut into cells

  Cell const& cell(std::size_t column) const { return column < cells.size() ? cells[column] : kGap; }

 private:
  static constexpr Cell kGap{};
};

class RowReader {
 public:
  virtual ~RowReader() = default;

  /// The next row; false at the end. Errors: `Failure` for what is beyond the limits of a row.
  virtual bool next(Row& row) = 0;

  /// The bytes so far were UTF-8, if they were taken for that.
  virtual bool isUtf8() const = 0;
};

/// What hostile files are held to.
constexpr std::size_t kLongestRow = std::size_t{1} << 20;  ///< bytes
constexpr std::size_t kMostColumns = 4096;
constexpr std::size_t kMostMembers = 1024;  ///< columns of JSON lines, where each may be missing

}  // namespace senmark_series
