/// Rows of a file with one JSON object a line.
///
/// Each member is a cell of the column of its name; members of an inner object are named after both, with a point in
/// between, elements of an array with their index from 0. null is a gap. Names may come and go: a new one is a new
/// column. Numbers stay as they are written.
#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "Row.h"
#include "TextBuffer.h"

namespace senmark_series {

class JsonLines : public RowReader {
 public:
  /// text  outlives this object.
  explicit JsonLines(TextBuffer& text);
  ~JsonLines() override;

  /// A line that is no object makes a broken row.
  bool next(Row& row) override;
  bool isUtf8() const override { return mText.isUtf8(); }

  /// Names of the columns so far.
  std::vector<std::string> const& names() const { return mNames; }

 private:
  class Handler;

  bool NextLine(std::string_view& line, Row& row);
  void Parse(std::string_view line, Row& row);
  std::size_t ColumnOf(std::string const& name);

  TextBuffer& mText;
  std::unique_ptr<Handler> mHandler;
  std::int64_t mLine = 1;
  std::vector<std::string> mNames;
  std::unordered_map<std::string, std::size_t> mColumns;
};

}  // namespace senmark_series
