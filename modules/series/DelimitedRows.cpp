#include "DelimitedRows.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "Ascii.h"

namespace senmark_series {

namespace {

std::int64_t CountLineEnds(char const* p, char const* end) {
  std::int64_t count = 0;
  for (; p != end; ++p) {
    count += *p == '\n' || (*p == '\r' && (p + 1 == end || p[1] != '\n')) ? 1 : 0;
  }
  return count;
}

bool IsLineEnd(char character) {
  return character == '\n' || character == '\r';
}

}  // namespace

DelimitedRows::DelimitedRows(TextBuffer& text, Dialect dialect) : mText(text), mDialect(std::move(dialect)) {
  mStops['\n'] = true;
  mStops['\r'] = true;
  mStops[static_cast<unsigned char>(mDialect.delimiter)] = true;
  if (mDialect.isBlankDelimited()) {
    mStops['\t'] = true;
  }
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
    if (std::any_of(row.cells.begin(), row.cells.end(), [](std::string_view cell) { return !cell.empty(); })) {
      return true;
    }
  }
}

/// Steps over empty lines and comments. False at the end of the file.
bool DelimitedRows::MoveToRow() {
  for (;;) {
    char* const end = mText.end();
    char* const start = mText.begin();
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
  row.cells.clear();
  mDoubled.clear();
  mLinesInRow = 0;
  mHasLineEnd = true;
  mLineEnd = mQuotesSpanLines || mDialect.quote == 0 ? nullptr : EndOfLine(start, end);
  char* p = start;
  for (;;) {
    char* const first = SkipBlanks(p, end);
    bool const isRowEnd = first == end || IsLineEnd(*first);
    if (IsMissing(first, end)) {
      return kCutOff;
    }
    if (mDialect.isBlankDelimited() && isRowEnd) {
      p = first;
    } else {
      if (row.cells.size() == kMostColumns) {
        throw kit::Failure("a row of more than " + std::to_string(kMostColumns) + " cells", mText.offsetOf(start),
                           mLine);
      }
      bool const isQuoted = !isRowEnd && mDialect.quote != 0 && *first == mDialect.quote;
      p = isQuoted ? CutQuoted(first, end, row) : CutPlain(first, end, row);
      if (p == kCutOff) {
        return kCutOff;
      }
    }
    if (p == end) {
      mHasLineEnd = false;
      return end;
    }
    if (IsLineEnd(*p)) {
      return BehindLineEnd(p, end);
    }
    ++p;
  }
}

/// Eight bytes at a time, which are more than most cells have.
char* DelimitedRows::FindStop(char* p, char* end) const {
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  // Line ends are the only ones below, but for tabs and what tables have not.
  constexpr std::uint64_t kBehindLineEnds = kOnes * ('\r' + 1);
  std::uint64_t const delimiters = kOnes * static_cast<unsigned char>(mDialect.delimiter);
  for (std::uint64_t word = 0; end - p >= 8; p += 8) {
    std::memcpy(&word, p, sizeof(word));
    std::uint64_t const difference = word ^ delimiters;
    std::uint64_t const isDelimiter = (difference - kOnes) & ~difference;
    std::uint64_t const isBelow = (word - kBehindLineEnds) & ~word;
    if (((isDelimiter | isBelow) & kHighBits) != 0) {
      // A sign as small as line ends may be none.
      for (int i = 0; i != 8; ++i) {
        if (IsStop(p[i])) {
          return p + i;
        }
      }
    }
  }
  while (p != end && !IsStop(*p)) {
    ++p;
  }
  return p;
}

/// Gives the place of what ends the cell.
char* DelimitedRows::CutPlain(char* start, char* end, Row& row) const {
  char* const p = FindStop(start, end);
  if (IsMissing(p, end)) {
    return kCutOff;
  }
  char* last = p;
  while (last != start && IsBlank(last[-1])) {
    --last;
  }
  row.cells.emplace_back(start, static_cast<std::size_t>(last - start));
  return p;
}

char* DelimitedRows::CutQuoted(char* start, char* end, Row& row) {
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
        return CutPlain(start, end, row);
      }
      if (mText.isAtEnd() && !mText.isWhole() && limit == end) {
        // A part of a file: the quote may well end behind it.
        row.cells.emplace_back();
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
        mDoubled.push_back(row.cells.size());
      }
      mLinesInRow += CountLineEnds(start, quote);
      row.cells.push_back(Trim(std::string_view(start + 1, static_cast<std::size_t>(quote - start - 1))));
      return behind;
    }
    p = quote + 1;
  }
}

/// Each pair of quotes becomes one. The row is whole, so that nobody reads its text again.
void DelimitedRows::Unescape(std::string_view& cell) const {
  char* const start = mText.begin() + (cell.data() - mText.begin());
  char* out = start;
  for (std::size_t i = 0; i != cell.size(); ++i) {
    *out++ = start[i];
    i += start[i] == mDialect.quote && i + 1 != cell.size() && start[i + 1] == mDialect.quote ? 1 : 0;
  }
  cell = std::string_view(start, static_cast<std::size_t>(out - start));
}

void DelimitedRows::Fetch() {
  if (static_cast<std::size_t>(mText.end() - mText.begin()) > kLongestRow) {
    throw kit::Failure("a row of more than " + std::to_string(kLongestRow) + " bytes", mText.offsetOf(mText.begin()),
                       mLine);
  }
  mText.more();
}

}  // namespace senmark_series
