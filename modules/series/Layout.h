/// How a file is read: everything that is found out, or told, before its rows become samples.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Dialect.h"
#include "Encoding.h"
#include "SampleTable.h"
#include "Sidecar.h"
#include "TimeForm.h"

namespace senmark_series {

struct Column {
  std::string source;                ///< its name in the file, or `column` and its number from 1
  std::string sidecarKey;            ///< by which the sidecar speaks of it; empty: it does not
  std::string name;                  ///< that the node gets
  std::string unit;                  ///< may be empty
  std::optional<eColumnKind> kind;   ///< none: as its cells are
  std::optional<unsigned> decimals;  ///< none: as many as its cells have
  bool isSkipped = false;
};

struct Layout {
  bool isJsonLines = false;
  eEncoding encoding = eEncoding::kUtf8;
  bool isEncodingGuessed = false;  ///< what turns out not to be UTF-8 is Windows-1252
  Dialect dialect;
  std::int64_t headerLine = 0;  ///< 0: none
  bool isHeaderComment = false;
  std::int64_t unitsLine = 0;  ///< 0: none
  std::int64_t firstDataLine = 1;
  std::vector<Column> columns;  ///< JSON lines may have more, which come later
  TimeForm time;
  bool isDateOrderGuessed = false;
  Sidecar sidecar;

  /// The column that a name of the file makes, with what the sidecar says about it.
  Column columnOf(std::string const& name, std::size_t index, std::string const& unit) const;
};

/// The layout, or none and the reasons in `whyNot`.
/// Errors: `Failure` for a sidecar that does not fit the file.
std::optional<Layout> GuessLayout(Head const& head, std::string const& extension, Sidecar const& sidecar,
                                  std::vector<std::string>& whyNot);

/// The rows of a file as its layout has them.
std::unique_ptr<RowReader> MakeRowReader(TextBuffer& text, Layout const& layout);

}  // namespace senmark_series
