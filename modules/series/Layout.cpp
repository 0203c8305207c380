#include "Layout.h"

#include <algorithm>

#include "Ascii.h"
#include "ColumnName.h"
#include "JsonLines.h"
#include "TimeGuess.h"

namespace senmark_series {

namespace {

// Most lines of a table are rows of it. Others are lines in front of the data. Blanks stand between words, too, so that
// rows between them have to have one length.
constexpr double kLeastShare = 0.6;
constexpr double kLeastShareOfBlanks = 0.95;
constexpr double kLeastShareWithoutHeader = 0.9;

constexpr std::size_t kLongestName = 200;

bool IsTable(SampleTable const& table) {
  if (table.dialect.isBlankDelimited()) {
    return table.width >= 2 && table.widthShare >= kLeastShareOfBlanks;
  }
  // Cells at the end may be missing, and a delimiter too many.
  std::size_t const longest = std::max(table.width, table.rows[0].cells.size()) + 1;
  auto const rows = std::count_if(table.rows.begin(), table.rows.end(),
                                  [&](Row const& row) { return row.cells.size() >= 2 && row.cells.size() <= longest; });
  return table.width >= 2 && static_cast<double>(rows) >= kLeastShare * static_cast<double>(table.rows.size());
}

/// A header, or rows of one length: a log of sentences with a time in front has neither.
bool HasColumns(SampleTable const& table, TimeGuess const& guess, Sidecar const& sidecar) {
  return !guess.header.names.empty() || table.widthShare >= kLeastShareWithoutHeader || sidecar.delimiter;
}

Dialect ChosenDialect(char delimiter, Sidecar const& sidecar) {
  Dialect dialect = DialectOf(delimiter);
  dialect.decimalMark = sidecar.decimalMark.value_or(dialect.decimalMark);
  dialect.quote = sidecar.quote.value_or(dialect.quote);
  if (sidecar.comment) {
    dialect.comments.clear();
    if (!sidecar.comment->empty()) {
      dialect.comments.push_back(*sidecar.comment);
    }
  }
  return dialect;
}

/// Not in the middle of a character.
std::string Shortened(std::string text) {
  if (text.size() > kLongestName) {
    std::size_t end = kLongestName;
    while (end != 0 && (static_cast<unsigned char>(text[end]) & 0xC0) == 0x80) {
      --end;
    }
    text.resize(end);
  }
  return text;
}

Layout MakeLayout(SampleTable const& table, TimeGuess const& guess, Head const& head, Sidecar const& sidecar) {
  Layout layout;
  layout.sidecar = sidecar;
  layout.isJsonLines = table.isJsonLines;
  layout.encoding = head.encoding;
  layout.dialect = table.dialect;
  layout.headerLine = guess.header.line;
  layout.isHeaderComment = guess.header.isComment;
  layout.unitsLine = guess.header.unitsLine;
  layout.firstDataLine = table.isJsonLines ? 1 : table.rows[guess.firstRow].line;
  if (sidecar.firstDataRow) {
    layout.firstDataLine = *sidecar.firstDataRow;
  }
  layout.time = guess.form;
  layout.isDateOrderGuessed = guess.form.hasDate() && !sidecar.dateOrder;
  std::size_t const count = std::max(table.width, guess.header.names.size());
  for (std::size_t i = 0; i != count; ++i) {
    layout.columns.push_back(layout.columnOf(i < guess.header.names.size() ? guess.header.names[i] : std::string(), i,
                                             i < guess.header.units.size() ? guess.header.units[i] : std::string()));
  }
  return layout;
}

std::optional<Layout> GuessLines(Head const& head, Sidecar const& sidecar, std::vector<std::string>& whyNot) {
  SampleTable const table = ReadSampleLines(head);
  if (!table.rows.empty()) {
    if (std::optional<TimeGuess> const guess = GuessTime(table, sidecar, whyNot)) {
      return MakeLayout(table, *guess, head, sidecar);
    }
  }
  whyNot.insert(whyNot.begin(), "lines of JSON objects, but no member tells a time in every line:");
  return std::nullopt;
}

}  // namespace

Column Layout::columnOf(std::string const& name, std::size_t index, std::string const& unit) const {
  NameAndUnit const split = SplitUnit(name);
  std::string_view const bare = BareUnit(unit);
  std::string const number = "column " + std::to_string(index + 1);
  Column column;
  column.source = name.empty() ? number : name;
  column.name = Shortened(split.name.empty() ? number : split.name);
  column.unit = Shortened(bare.empty() ? split.unit : std::string(bare));
  for (std::string const& key : {name, split.name, number}) {
    auto const found = sidecar.columns.find(key);
    if (found != sidecar.columns.end() && !key.empty()) {
      column.sidecarKey = key;
      Sidecar::ColumnChoice const& choice = found->second;
      column.name = Shortened(choice.name.value_or(column.name));
      column.unit = Shortened(choice.unit.value_or(column.unit));
      column.kind = choice.kind;
      column.decimals = choice.decimals;
      column.isSkipped = choice.skips;
      break;
    }
  }
  return column;
}

std::optional<Layout> GuessLayout(Head const& head, std::string const& extension, Sidecar const& sidecar,
                                  std::vector<std::string>& whyNot) {
  bool const isLines = extension == "jsonl" || extension == "ndjson";
  if (isLines || (!sidecar.delimiter && LooksLikeJsonLines(head))) {
    return GuessLines(head, sidecar, whyNot);
  }
  std::vector<char> delimiters(kDelimiters.begin(), kDelimiters.end());
  if (sidecar.delimiter) {
    delimiters = {*sidecar.delimiter};
  }
  std::optional<kit::Failure> failure;
  for (char const delimiter : delimiters) {
    SampleTable const table = ReadSampleTable(head, ChosenDialect(delimiter, sidecar), sidecar.decimalMark.has_value());
    if (table.rows.empty() || (!IsTable(table) && !(sidecar.delimiter && table.width >= 2))) {
      continue;
    }
    std::vector<std::string> reasons;
    try {
      if (std::optional<TimeGuess> const guess = GuessTime(table, sidecar, reasons)) {
        if (HasColumns(table, *guess, sidecar)) {
          return MakeLayout(table, *guess, head, sidecar);
        }
        reasons.emplace_back(
            "there is a time in every row, but rows differ in length, and no header names their cells");
      }
    } catch (kit::Failure const& refused) {
      // The columns that a sidecar names may be those of another delimiter.
      failure = failure ? failure : refused;
    }
    if (whyNot.empty()) {
      whyNot.push_back("a table with " + std::to_string(table.width) + " columns at the delimiter " +
                       NameOfDelimiter(delimiter) + ", but not one with a time in every row:");
      whyNot.insert(whyNot.end(), reasons.begin(), reasons.end());
    }
  }
  if (failure) {
    throw kit::Failure(*failure);
  }
  if (whyNot.empty()) {
    whyNot.emplace_back("its lines are no rows of a table: at no delimiter do they have as many cells each");
  }
  return std::nullopt;
}

std::unique_ptr<RowReader> MakeRowReader(TextBuffer& text, Layout const& layout) {
  if (layout.isJsonLines) {
    return std::make_unique<JsonLines>(text);
  }
  return std::make_unique<DelimitedRows>(text, layout.dialect);
}

}  // namespace senmark_series
