#include "HeaderGuess.h"

#include <algorithm>

#include "Ascii.h"
#include "ColumnName.h"
#include "NumberText.h"

namespace senmark_series {

namespace {

std::vector<std::string> Texts(Row const& row) {
  return {row.cells.begin(), row.cells.end()};
}

Row const* RowOfLine(SampleTable const& table, std::int64_t line) {
  auto const row =
      std::find_if(table.rows.begin(), table.rows.end(), [&](Row const& each) { return each.line == line; });
  return row == table.rows.end() ? nullptr : &*row;
}

/// At least two cells, and no number among them.
bool HoldsNames(Row const& row, char decimalMark) {
  auto const isNumber = [&](std::string_view cell) { return ShapeOf(cell, decimalMark).isNumber; };
  auto const isThere = [](std::string_view cell) { return !cell.empty(); };
  return std::count_if(row.cells.begin(), row.cells.end(), isThere) >= 2 &&
         std::none_of(row.cells.begin(), row.cells.end(), isNumber);
}

/// Half of its cells are units, or it has none but units and empty cells.
bool HoldsUnits(Row const& row) {
  std::size_t units = 0;
  std::size_t others = 0;
  for (std::string_view const cell : row.cells) {
    if (LooksLikeUnit(cell)) {
      ++units;
    } else {
      others += cell.empty() ? 0 : 1;
    }
  }
  return units != 0 && units >= others;
}

/// A comment cut as the rows are; no cells if it is another text.
std::vector<std::string> NamesOfComment(SampleTable const& table, std::string const& text) {
  Dialect dialect = table.dialect;
  dialect.comments.clear();
  TextBuffer buffer(text, eEncoding::kUtf8, 1, true);
  DelimitedRows reader(buffer, dialect);
  Row row;
  if (!reader.next(row) || row.cells.size() != table.width || !HoldsNames(row, dialect.decimalMark)) {
    return {};
  }
  return Texts(row);
}

void TakeHeaderComment(SampleTable const& table, std::int64_t firstLine, Header& header) {
  for (auto comment = table.comments.rbegin(); comment != table.comments.rend(); ++comment) {
    if (comment->line < firstLine) {
      header.names = NamesOfComment(table, comment->text);
      if (!header.names.empty()) {
        header.line = comment->line;
        header.isComment = true;
        return;
      }
    }
  }
}

}  // namespace

Header FindHeader(SampleTable const& table, std::size_t first, Sidecar const& sidecar) {
  Header header;
  if (table.isJsonLines) {
    header.names = table.names;
    return header;
  }
  std::size_t next = first;
  if (sidecar.unitsRow) {
    Row const* const row = RowOfLine(table, *sidecar.unitsRow);
    header.unitsLine = row == nullptr ? 0 : row->line;
    header.units = row == nullptr ? std::vector<std::string>() : Texts(*row);
    while (next != 0 && header.unitsLine != 0 && table.rows[next - 1].line >= header.unitsLine) {
      --next;
    }
  } else if (first >= 2 && HoldsUnits(table.rows[first - 1]) &&
             HoldsNames(table.rows[first - 2], table.dialect.decimalMark)) {
    header.unitsLine = table.rows[first - 1].line;
    header.units = Texts(table.rows[first - 1]);
    next = first - 1;
  }
  if (sidecar.headerRow) {
    if (Row const* const row = RowOfLine(table, *sidecar.headerRow)) {
      header.line = row->line;
      header.names = Texts(*row);
      return header;
    }
    for (DelimitedRows::Comment const& comment : table.comments) {
      if (comment.line == *sidecar.headerRow) {
        header.line = comment.line;
        header.names = NamesOfComment(table, comment.text);
        header.isComment = true;
      }
    }
    return header;
  }
  if (next != 0 && table.rows[next - 1].cells.size() >= 2) {
    header.line = table.rows[next - 1].line;
    header.names = Texts(table.rows[next - 1]);
  } else if (!table.rows.empty()) {
    TakeHeaderComment(table, next < table.rows.size() ? table.rows[next].line : table.rows.back().line + 1, header);
  }
  return header;
}

}  // namespace senmark_series
