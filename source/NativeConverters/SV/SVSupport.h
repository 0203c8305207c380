/// A table of separated values, from its file to the writer.
///
/// The first line names the columns. A column becomes a group and each of its cells a static node: numbers if
/// every cell of the column is a number or empty, else texts. There is no time in a table.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "SVCells.h"
#include "SVEncoding.h"
#include "SVFields.h"

namespace SK_NAMESPACE_INT {
struct SK_PathInfo;
}

namespace SK_PLUGIN {
class ITdjsonGroup_v1;
class ITdjsonRoot_v1;
}  // namespace SK_PLUGIN

namespace ns_sensor {

class SVSupport {
 public:
  /// Reads the whole table; false, with a line on standard output, if the file cannot be opened, and false if
  /// reading it fails in any way. Each byte of `delimiters` is one.
  bool OpenDelimitedFile(std::string const& path, std::string const& delimiters);

  /// Hands the table to the writer, column by column, and frees it on the way. key: that of the root.
  void AddSVDataUsingGroups(void* key, std::shared_ptr<SK_PLUGIN::ITdjsonRoot_v1> const& root);

  /// Replaces `out` with the fields of a line.
  static void Split(std::string_view line, std::string_view delimiters, std::vector<std::string>& out);
  /// Whether `std::stod` takes the whole text in the plain locale.
  static bool IsNumeric(std::string_view text);

 private:
  /// Cells from the rows, an empty one where a row is too short. What rows have behind the last column is never
  /// written and not kept.
  struct Column {
    std::string header;
    SVCells cells;
    bool isNumeric = true;  ///< until a cell proves otherwise
  };

  bool GetMBData(std::string const& path, std::string const& delimiters);
  bool GetWCData(std::string const& path, std::string const& delimiters);
  template <typename Input>
  bool ReadTable(Input& input, void (*readLine)(Input&, std::string&), std::string const& delimiters);
  /// Columns end in front of the first without a name.
  void AddColumns(SVFields& fields);
  void AddRow(SVFields& fields);
  void AddCells(void* key, Column& column, std::uint64_t& counter, SK_PLUGIN::ITdjsonGroup_v1& group) const;

  std::vector<Column> mColumns;
  std::uint64_t mRowCount = 0;
  FileEncodingType mEncoding = kNoEncodingMark;
};

/// What every converter of such tables does, with itself as the key. False if the table could not be read; the
/// writer has made no file then.
bool ConvertTable(void* key, SK_NAMESPACE_INT::SK_PathInfo const& pathInfo, std::string const& delimiters,
                  std::string const& creator);

/// Match names count through a file: data0, data1 and so on.
void GenerateUniqueMatchname(std::string& out, std::uint64_t& counter);

}  // namespace ns_sensor
