/// Cuts text into rows and cells at delimiters.
///
/// Quotes as RFC 4180 has them: around a cell they hold delimiters and line ends, doubled they stand for one. A quote
/// inside of a bare cell is a letter like others, and so is one in a quoted cell that neither a delimiter nor the end
/// of the line follows. Lines end in LF, CR LF or CR. Rows without any text, and comments, are left out.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "Dialect.h"
#include "Row.h"
#include "TextBuffer.h"
#include "TextMap.h"

namespace senmark_series {

class DelimitedRows : public RowReader {
 public:
  struct Comment {
    std::int64_t line;
    std::string text;  ///< behind what made it a comment, without blanks at both ends
  };

  /// text  outlives this object.
  DelimitedRows(TextBuffer& text, Dialect dialect);

  bool next(Row& row) override;
  bool isUtf8() const override { return mText.isUtf8(); }

  /// Those in front of the last row that came, the first few of them.
  std::vector<Comment> const& comments() const { return mComments; }

 private:
  /// A quoted cell with this many bytes has a quote that does not end: from there on no cell goes beyond its line.
  static constexpr std::size_t kLongestQuotedCell = std::size_t{64} << 10;
  static constexpr std::size_t kMostComments = 64;

  /// More text is needed to go on.
  static constexpr char* kCutOff = nullptr;

  bool MoveToRow();
  char* SkipBlanks(char* p, char* end) const;
  char* EndOfLine(char* p, char* end) const;
  char* BehindLineEnd(char* p, char* end) const;
  bool TakeComment(char* start, char* end);
  char* CutRow(char* start, char* end, Row& row);
  void RequireWidth(std::size_t cells);
  char* CutOther(char* p, char* end, Cell& cell, std::size_t index);
  char* FindStop(char* p, char* end) const;
  std::int64_t CountLineEnds(char* p, char* end) const;
  char* CutQuoted(char* start, char* end, Cell& cell, std::size_t index);
  char* CutPlain(char* start, char* end, Cell& cell) const;
  void Unescape(Cell& cell) const;
  bool IsStop(char character) const { return mStops[static_cast<unsigned char>(character)]; }
  bool IsMissing(char const* p, char const* end) const { return p == end && !mText.isAtEnd(); }
  bool MayBeNoRow(char first) const { return mOtherStarts[static_cast<unsigned char>(first)]; }
  void Fetch();
  void MapText();

  TextBuffer& mText;
  Dialect mDialect;
  TextMap mMap;
  std::array<bool, 256> mStops{};        ///< what ends a bare cell
  std::array<bool, 256> mOtherStarts{};  ///< what lines may begin with that are no rows
  std::int64_t mLine = 1;
  bool mQuotesSpanLines = true;
  bool mHasDistrusted = false;  ///< a quote that did not end was met in this row
  char* mLineEnd = nullptr;     ///< of the row, where no cell goes beyond its line, once it was looked for
  bool mHasLineEnd = true;      ///< the row ends before the text does
  std::int64_t mLinesInRow = 0;
  std::vector<std::size_t> mDoubled;  ///< cells of the row with doubled quotes
  std::vector<Comment> mComments;
};

}  // namespace senmark_series
