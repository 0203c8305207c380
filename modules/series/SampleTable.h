/// The first rows of a file, cut into cells, for guesses.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "DelimitedRows.h"
#include "Dialect.h"
#include "Encoding.h"

namespace senmark_series {

/// The first bytes of a file.
struct Head {
  std::string bytes;
  bool isWhole = false;  ///< the file has no more
  eEncoding encoding = eEncoding::kUtf8;
};

struct SampleTable {
  Dialect dialect;  ///< with the decimal mark that its numbers have
  bool isJsonLines = false;
  std::vector<std::string> names;  ///< of JSON lines
  std::vector<Row> rows;
  std::vector<DelimitedRows::Comment> comments;
  std::size_t width = 0;  ///< cells that most rows have
  double widthShare = 0;  ///< of the rows that have so many

  /// What the cells of the rows are parts of; a text stays where it is when others come.
  std::deque<std::string> texts;
};

/// Cuts the head at the delimiter of `dialect`. The decimal mark is found out unless `knowsMark`.
SampleTable ReadSampleTable(Head const& head, Dialect const& dialect, bool knowsMark);
SampleTable ReadSampleLines(Head const& head);

/// Whether most of the first lines are objects.
bool LooksLikeJsonLines(Head const& head);

}  // namespace senmark_series
