#include "SampleTable.h"

#include <algorithm>
#include <map>

#include "Ascii.h"
#include "JsonLines.h"
#include "NumberText.h"

namespace senmark_series {

namespace {

/// Guesses need no more, and a head of tiny rows would have very many.
constexpr std::size_t kMostRows = 1500;

void ReadRows(RowReader& reader, SampleTable& table) {
  Row row;
  while (table.rows.size() != kMostRows && reader.next(row)) {
    std::string& text = table.texts.emplace_back();
    for (std::string_view const cell : row.cells) {
      text.append(cell);
    }
    char const* start = text.data();
    Row kept = row;
    for (Cell& cell : kept.cells) {
      cell = std::string_view(start, cell.text.size());
      start += cell.text.size();
    }
    table.rows.push_back(std::move(kept));
  }
}

void FindWidth(SampleTable& table) {
  std::map<std::size_t, std::size_t> counts;
  for (Row const& row : table.rows) {
    ++counts[row.cells.size()];
  }
  std::size_t most = 0;
  for (auto const& [width, count] : counts) {
    if (count >= most) {
      most = count;
      table.width = width;
    }
  }
  table.widthShare = table.rows.empty() ? 0 : static_cast<double>(most) / static_cast<double>(table.rows.size());
}

/// A comma, if more cells are numbers with it than with a point.
char FindDecimalMark(SampleTable const& table) {
  if (table.dialect.delimiter == ',') {
    return '.';
  }
  std::size_t points = 0;
  std::size_t commas = 0;
  for (Row const& row : table.rows) {
    for (std::string_view const cell : row.cells) {
      bool const hasComma = cell.find(',') != std::string_view::npos;
      bool const hasPoint = cell.find('.') != std::string_view::npos;
      commas += hasComma && ShapeOf(cell, ',').isNumber ? 1 : 0;
      points += hasPoint && ShapeOf(cell, '.').isNumber ? 1 : 0;
    }
  }
  return commas > points ? ',' : '.';
}

}  // namespace

SampleTable ReadSampleTable(Head const& head, Dialect const& dialect, bool knowsMark) {
  SampleTable table;
  table.dialect = dialect;
  TextBuffer text(head.bytes, head.encoding, 0, head.isWhole);
  DelimitedRows reader(text, dialect);
  ReadRows(reader, table);
  table.comments = reader.comments();
  FindWidth(table);
  if (!knowsMark) {
    table.dialect.decimalMark = FindDecimalMark(table);
  }
  return table;
}

SampleTable ReadSampleLines(Head const& head) {
  SampleTable table;
  table.isJsonLines = true;
  TextBuffer text(head.bytes, head.encoding, 0, head.isWhole);
  JsonLines reader(text);
  ReadRows(reader, table);
  table.names = reader.names();
  table.width = table.names.size();
  table.widthShare = 1;
  return table;
}

bool LooksLikeJsonLines(Head const& head) {
  TextBuffer text(head.bytes, head.encoding, 0, head.isWhole);
  JsonLines reader(text);
  Row row;
  constexpr std::size_t kLines = 16;
  std::size_t count = 0;
  std::size_t broken = 0;
  while (count != kLines && reader.next(row)) {
    ++count;
    broken += row.isBroken ? 1 : 0;
  }
  return count != 0 && broken * 4 <= count;
}

}  // namespace senmark_series
