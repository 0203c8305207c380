#include "DelimitedRows.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Ascii.h"

namespace senmark_series {

namespace {

bool IsLineEnd(char character) {
  return character == '\n' || character == '\r';
}

/// Cells without blanks or quotes around them, which most are.
///
/// Of its own, so that all it needs stays in registers while cells are written.
class UsualCells {
 public:
  /// Of a row that begins at `start`.
  UsualCells(TextMap::View const& map, char const* start, char const* end, Dialect const& dialect)
      : mMap(map),
        mNumbersEnd(start),
        mQuote(dialect.quote),
        mDelimiter(dialect.delimiter),
        // Where it delimits, a digit stands for it: none stands behind digits.
        mMark(dialect.decimalMark == dialect.delimiter ? '0' : dialect.decimalMark) {
    // What is part of a number has to be nothing else.
    auto const isPart = [](char character) { return IsDigit(character) || character == '-'; };
    if (end - start >= PlainNumber::kReach && !isPart(dialect.delimiter) && !isPart(dialect.quote)) {
      mNumbersEnd = end - PlainNumber::kReach + 1;
    }
  }

  /// Gives the place of the stop behind the cell, null for other cells. It may be a control character that is none.
  ///
  /// behind  gets the stop.
  char* cut(char* p, Cell& cell, char& behind) const {
    if (p < mNumbersEnd) {
      PlainNumber number;
      char* const stop = FindPlainNumber(p, static_cast<std::uint32_t>(mMap.nonDigitsFrom(p)), mMark, number);
      if (stop != nullptr && TextMap::IsStop(behind = *stop, mDelimiter)) {
        cell.text = std::string_view(p, static_cast<std::size_t>(stop - p));
        cell.plain = number;
        return stop;
      }
    }
    std::uint64_t const stops = mMap.stopsFrom(p);
    if (stops == 0) {
      return nullptr;
    }
    unsigned const size = LowestBit(stops);
    // Tabs are stops.
    if (size == 0 || *p == ' ' || *p == mQuote || p[size - 1] == ' ') {
      return nullptr;
    }
    behind = p[size];
    cell = std::string_view(p, size);
    return p + size;
  }

 private:
  TextMap::View mMap;
  char const* mNumbersEnd;  ///< in front of which they may begin
  char mQuote;
  char mDelimiter;
  char mMark;  ///< of decimals
};

}  // namespace

DelimitedRows::DelimitedRows(TextBuffer& text, Dialect dialect)
    : mText(text), mDialect(std::move(dialect)), mMap(mDialect.delimiter) {
  mStops['\n'] = true;
  mStops['\r'] = true;
  mStops[static_cast<unsigned char>(mDialect.delimiter)] = true;
  if (mDialect.isBlankDelimited()) {
    mStops['\t'] = true;
  }
  for (char const character : {' ', '\t', '\n', '\r'}) {
    mOtherStarts[static_cast<unsigned char>(character)] = true;
  }
  for (std::string const& comment : mDialect.comments) {
    mOtherStarts[static_cast<unsigned char>(comment.front())] = true;
  }
  MapText();
}

bool DelimitedRows::next(Row& row) {
  row.isBroken = false;
  for (;;) {
    if (!MoveToRow()) {
      return false;
    }
    char* const start = mText.begin();
    char* const behind = CutRow(start, mText.end(), row);
    if (behind == kCutOff) {
      if (!std::exchange(mHasDistrusted, false)) {
        Fetch();
      }
      continue;
    }
    row.line = mLine;
    row.offset = mText.offsetOf(start);
    mLine += mLinesInRow + 1;
    mText.skipTo(behind);
    for (std::size_t const cell : mDoubled) {
      Unescape(row.cells[cell]);
    }
    // What a part of a file ends with is most likely cut.
    if (!mHasLineEnd && !mText.isWhole()) {
      return false;
    }
    auto const hasText = [](Cell const& cell) { return !cell.text.empty(); };
    // Most begin with one.
    if (!row.cells.empty() &&
        (hasText(row.cells.front()) || std::any_of(row.cells.begin(), row.cells.end(), hasText))) {
      return true;
    }
  }
}

/// Steps over empty lines and comments. False at the end of the file.
bool DelimitedRows::MoveToRow() {
  for (;;) {
    char* const end = mText.end();
    char* const start = mText.begin();
    if (start != end && !MayBeNoRow(*start)) {
      return true;
    }
    char* const p = SkipBlanks(start, end);
    if (p == end) {
      if (mText.isAtEnd()) {
        return false;
      }
      Fetch();
      continue;
    }
    if (IsLineEnd(*p)) {
      char* const behind = BehindLineEnd(p, end);
      if (behind == kCutOff) {
        Fetch();
        continue;
      }
      mText.skipTo(behind);
      ++mLine;
      continue;
    }
    // Long enough to tell a comment by its first characters.
    constexpr std::ptrdiff_t kLongestMark = 8;
    if (end - p < kLongestMark && !mText.isAtEnd()) {
      Fetch();
      continue;
    }
    if (!TakeComment(p, end)) {
      return true;
    }
  }
}

char* DelimitedRows::SkipBlanks(char* p, char* end) const {
  while (p != end && IsBlank(*p) && (*p != mDialect.delimiter || mDialect.isBlankDelimited())) {
    ++p;
  }
  return p;
}

char* DelimitedRows::EndOfLine(char* p, char* end) const {
  return std::find_if(p, end, IsLineEnd);
}

/// p: at a line end.
char* DelimitedRows::BehindLineEnd(char* p, char* end) const {
  if (*p == '\r') {
    if (IsMissing(p + 1, end)) {
      return kCutOff;
    }
    return p + 1 != end && p[1] == '\n' ? p + 2 : p + 1;
  }
  return p + 1;
}

/// Steps over a comment, up to its line end, if it is one.
bool DelimitedRows::TakeComment(char* start, char* end) {
  std::string_view const text(start, static_cast<std::size_t>(end - start));
  auto const mark = std::find_if(mDialect.comments.begin(), mDialect.comments.end(),
                                 [&](std::string const& comment) { return StartsWith(text, comment); });
  if (mark == mDialect.comments.end()) {
    return false;
  }
  for (;;) {
    char* const lineEnd = EndOfLine(mText.begin(), mText.end());
    if (lineEnd != mText.end() || mText.isAtEnd()) {
      if (mComments.size() < kMostComments) {
        std::string_view line(mText.begin(), static_cast<std::size_t>(lineEnd - mText.begin()));
        line = Trim(line);
        line.remove_prefix(std::min(line.size(), mark->size()));
        mComments.push_back({mLine, std::string(Trim(line))});
      }
      mText.skipTo(lineEnd);
      return true;
    }
    Fetch();
  }
}

/// Gives the place behind the row and its line end.
char* DelimitedRows::CutRow(char* start, char* end, Row& row) {
  mDoubled.clear();
  mLinesInRow = 0;
  mLineEnd = nullptr;
  UsualCells const usual(mMap.view(), start, end, mDialect);
  char const delimiter = mDialect.delimiter;
  // Written over those of the row before: most rows have as many.
  Cell* cell = row.cells.data();
  Cell* cellsEnd = cell + row.cells.size();
  for (char* p = start;;) {
    if (cell == cellsEnd) {
      row.cells.emplace_back();
      cellsEnd = row.cells.data() + row.cells.size();
      cell = cellsEnd - 1;
    }
    char behind = '\0';
    char* stop = usual.cut(p, *cell, behind);
    if (stop != nullptr && behind == delimiter) {
      ++cell;
      p = stop + 1;
      continue;
    }
    bool isCell = true;
    if (stop == nullptr || !IsStop(*stop)) {
      char* const first = SkipBlanks(p, end);
      if (first != p) {
        p = first;
        continue;
      }
      stop = CutOther(p, end, *cell, static_cast<std::size_t>(cell - row.cells.data()));
      if (stop == kCutOff) {
        return kCutOff;
      }
      // Where blanks delimit, nothing at the end of the line is no cell.
      isCell = stop != p || !mDialect.isBlankDelimited();
    }
    cell += isCell ? 1 : 0;
    if (stop == end || IsLineEnd(*stop)) {
      auto const count = static_cast<std::size_t>(cell - row.cells.data());
      RequireWidth(count);
      row.cells.resize(count);
      mHasLineEnd = stop != end;
      return mHasLineEnd ? BehindLineEnd(stop, end) : end;
    }
    p = stop + 1;
  }
}

void DelimitedRows::RequireWidth(std::size_t cells) {
  if (cells > kMostColumns) {
    throw kit::Failure("a row of more than " + std::to_string(kMostColumns) + " cells", mText.offsetOf(mText.begin()),
                       mLine);
  }
}

/// Any cell, without blanks in front. Gives the place of what ends it.
///
/// index  of the cell in its row.
char* DelimitedRows::CutOther(char* p, char* end, Cell& cell, std::size_t index) {
  if (IsMissing(p, end)) {
    RequireWidth(index);
    return kCutOff;
  }
  if (p == end || IsLineEnd(*p)) {
    cell = Cell();
    return p;
  }
  RequireWidth(index + 1);
  bool const isQuoted = mDialect.quote != 0 && *p == mDialect.quote;
  return isQuoted ? CutQuoted(p, end, cell, index) : CutPlain(p, end, cell);
}

/// The first place from `p` on with what ends a bare cell, or `end`.
char* DelimitedRows::FindStop(char* p, char* end) const {
  TextMap::View const map = mMap.view();
  for (;;) {
    for (std::uint64_t stops = map.stopsFrom(p); stops != 0; stops &= stops - 1) {
      char* const stop = p + LowestBit(stops);
      if (IsStop(*stop)) {
        return stop;
      }
    }
    if (static_cast<std::size_t>(end - p) <= TextMap::kWindow) {
      return end;
    }
    p += TextMap::kWindow;
  }
}

std::int64_t DelimitedRows::CountLineEnds(char* p, char* end) const {
  std::int64_t count = 0;
  // What a stop is looked for in may be behind the end.
  for (p = FindStop(p, end); p < end; p = FindStop(p + 1, end)) {
    count += *p == '\n' || (*p == '\r' && (p + 1 == end || p[1] != '\n')) ? 1 : 0;
  }
  return count;
}

/// Gives the place of what ends the cell.
char* DelimitedRows::CutPlain(char* start, char* end, Cell& cell) const {
  char* const p = FindStop(start, end);
  if (IsMissing(p, end)) {
    return kCutOff;
  }
  char* last = p;
  while (last != start && IsBlank(last[-1])) {
    --last;
  }
  cell = std::string_view(start, static_cast<std::size_t>(last - start));
  return p;
}

char* DelimitedRows::CutQuoted(char* start, char* end, Cell& cell, std::size_t index) {
  if (!mQuotesSpanLines && mLineEnd == nullptr) {
    mLineEnd = EndOfLine(start, end);
  }
  char* const limit =
      mLineEnd != nullptr ? mLineEnd : start + std::min(end - start, static_cast<std::ptrdiff_t>(kLongestQuotedCell));
  bool hasDoubled = false;
  for (char* p = start + 1;;) {
    auto* const quote =
        p < limit ? static_cast<char*>(std::memchr(p, mDialect.quote, static_cast<std::size_t>(limit - p))) : nullptr;
    if (quote == nullptr) {
      if (limit == end && !mText.isAtEnd()) {
        return kCutOff;
      }
      if (mLineEnd != nullptr) {
        // Nor will a later one of the row end before it, most likely, and each look for its end costs a line.
        mLineEnd = start;
        return CutPlain(start, end, cell);
      }
      if (mText.isAtEnd() && !mText.isWhole() && limit == end) {
        // A part of a file: the quote may well end behind it.
        cell = Cell();
        return end;
      }
      mQuotesSpanLines = false;
      mHasDistrusted = true;
      return kCutOff;
    }
    if (IsMissing(quote + 1, end)) {
      return kCutOff;
    }
    if (quote + 1 != end && quote[1] == mDialect.quote) {
      hasDoubled = true;
      p = quote + 2;
      continue;
    }
    char* behind = quote + 1;
    while (behind != end && IsBlank(*behind) && !IsStop(*behind)) {
      ++behind;
    }
    if (IsMissing(behind, end)) {
      return kCutOff;
    }
    if (behind == end || IsStop(*behind)) {
      if (hasDoubled) {
        mDoubled.push_back(index);
      }
      mLinesInRow += CountLineEnds(start, quote);
      cell = Trim(std::string_view(start + 1, static_cast<std::size_t>(quote - start - 1)));
      return behind;
    }
    p = quote + 1;
  }
}

/// Each pair of quotes becomes one. The row is whole, so that nobody reads its text again.
void DelimitedRows::Unescape(Cell& cell) const {
  char* const start = mText.begin() + (cell.text.data() - mText.begin());
  char* out = start;
  for (std::size_t i = 0; i != cell.text.size(); ++i) {
    *out++ = start[i];
    i += start[i] == mDialect.quote && i + 1 != cell.text.size() && start[i + 1] == mDialect.quote ? 1 : 0;
  }
  cell = std::string_view(start, static_cast<std::size_t>(out - start));
}

void DelimitedRows::Fetch() {
  if (static_cast<std::size_t>(mText.end() - mText.begin()) > kLongestRow) {
    throw kit::Failure("a row of more than " + std::to_string(kLongestRow) + " bytes", mText.offsetOf(mText.begin()),
                       mLine);
  }
  mText.more();
  MapText();
}

void DelimitedRows::MapText() {
  mMap.mark(std::string_view(mText.begin(), static_cast<std::size_t>(mText.end() - mText.begin())));
}

}  // namespace senmark_series
