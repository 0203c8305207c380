/// What one pass over all rows of a file finds out.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Layout.h"
#include "senmark/module/Input.h"

namespace senmark_series {

struct ColumnSurvey {
  /// Bytes that are kept of a text, which may be as long as a row.
  static constexpr std::size_t kKept = 64;

  std::uint64_t numbers = 0;
  std::uint64_t texts = 0;     ///< cells that are neither numbers nor gaps
  std::uint64_t gaps = 0;      ///< empty cells, and words that stand for a missing number
  std::uint64_t gapWords = 0;  ///< of these, the words
  std::uint64_t tiny = 0;      ///< of the numbers, those that are not 0 and closer to it than 0.0001
  unsigned decimals = 0;
  /// Plain numbers with fewer digits behind the mark are like others before, those apart that may be tiny.
  unsigned usualFractions = 0;
  std::size_t longest = 0;  ///< bytes of a cell, where usual numbers do not count
  std::string firstValue;
  std::string firstText;  ///< that is no number, like `firstValue` its first bytes

  /// Nine of ten cells that are no gaps are numbers; the others are gaps, too.
  bool isNumeric() const { return numbers != 0 && numbers >= 9 * texts; }
};

struct Survey {
  Layout layout;  ///< as it was found to be: order of dates, encoding, columns
  std::vector<ColumnSurvey> columns;
  std::uint64_t rows = 0;     ///< that tell a time
  std::uint64_t skipped = 0;  ///< that do not
  std::uint64_t surplus = 0;  ///< with something behind the last column
  std::int64_t firstSkippedLine = 0;
  bool isOrdered = true;      ///< no row is earlier than the one before
  kit::Instant first;         ///< the earliest
  kit::Instant last;          ///< the latest
  unsigned neededDigits = 0;  ///< of a second, to write all times as they are
  unsigned digits = 1;        ///< with which they are written
  std::string dateOrder;      ///< which it is and why; empty: no date could be read another way

  /// As the sidecar or else its cells have it.
  eColumnKind kindOf(std::size_t column) const;
  unsigned decimalsOf(std::size_t column) const;
  /// Neither time nor skipped, and not without values.
  bool hasSamples(std::size_t column) const;
};

/// Errors: `Failure` with the place of the first row without a time if they are too many, for a table without values,
/// and for a sidecar that names no column.
Survey SurveyFile(kit::Input const& input, Layout const& layout);

}  // namespace senmark_series
