#include "SVSupport.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include "SK_CountText.h"
#include "SK_InputBytes.h"
#include "SK_NumberText.h"
#include "SK_PathInfo.h"
#include "SVLine.h"
#include "SVUnitInput.h"
#include "Writer_Wrapper.h"

namespace ns_sensor {

using SK_NAMESPACE_INT::SK_NumberText;
using SK_PLUGIN::Writer_Wrapper;

namespace {

/// Names of a column's cells: its header and the row's number, cut where a reader's buffer would end.
class CellNames {
 public:
  /// A header counts up to a NUL here.
  explicit CellNames(std::string const& header) : mName(header, 0, header.find('\0')) {
    mName += ' ';
    mPrefixSize = std::min(mName.size(), kLongest);
  }

  std::string const& Make(std::uint64_t row) {
    mName.resize(mPrefixSize);
    mName += SK_CountText(row).View();
    mName.resize(std::min(mName.size(), kLongest));
    return mName;
  }

 private:
  static constexpr std::size_t kLongest = 1023;

  std::string mName;
  std::size_t mPrefixSize;
};

/// Reports, where the input could not be opened.
bool CheckOpen(bool isOpen, std::string const& path) {
  if (!isOpen) {
    std::printf("ERROR Opening File %s\n", path.c_str());
  }
  return isOpen;
}

}  // namespace

bool SVSupport::OpenDelimitedFile(std::string const& path, std::string const& delimiters) {
  mEncoding = GetFileEncoding(path);
  bool const isOfBytes = mEncoding == kNoEncodingMark || mEncoding == kUTF8Mark;
  return isOfBytes ? GetMBData(path, delimiters) : GetWCData(path, delimiters);
}

bool SVSupport::GetMBData(std::string const& path, std::string const& delimiters) {
  SK_InputBytes input(path);
  if (!CheckOpen(input.IsOpen(), path)) {
    return false;
  }
  if (mEncoding == kUTF8Mark) {
    MatchOptionalPattern(input, UTF8_MARK.data(), UTF8_MARK.size());
  }
  return ReadTable(input, GetMBLine, delimiters);
}

bool SVSupport::GetWCData(std::string const& path, std::string const& delimiters) {
  SVUnitInput input(path, mEncoding);
  return CheckOpen(input.IsOpen(), path) && ReadTable(input, GetWCLine, delimiters);
}

template <typename Input>
bool SVSupport::ReadTable(Input& input, void (*readLine)(Input&, std::string&), std::string const& delimiters) {
  try {
    SVFields fields(delimiters);
    std::string line;
    readLine(input, line);
    fields.SetLine(line);
    AddColumns(fields);
    while (input.Peek() != Input::kEnd) {
      readLine(input, line);
      if (!line.empty()) {
        fields.SetLine(line);
        AddRow(fields);
      }
    }
    return true;
  } catch (...) {
    return false;
  }
}

void SVSupport::AddColumns(SVFields& fields) {
  std::string_view header;
  while (fields.Next(header) && !header.empty()) {
    mColumns.emplace_back();
    mColumns.back().header = header;
  }
}

void SVSupport::AddRow(SVFields& fields) {
  for (Column& column : mColumns) {
    std::string_view cell;
    if (fields.Next(cell) && !cell.empty() && column.isNumeric) {
      column.isNumeric = IsNumeric(cell);
    }
    column.cells.Append(cell);
  }
  ++mRowCount;
}

void SVSupport::AddSVDataUsingGroups(void* key, std::shared_ptr<SK_PLUGIN::ITdjsonRoot_v1> const& root) {
  std::uint64_t counter = 0;
  std::string matchName;
  for (Column& column : mColumns) {
    GenerateUniqueMatchname(matchName, counter);
    auto const group = Writer_Wrapper::CreateGroup_Wrapper(key, matchName, column.header);
    AddCells(key, column, counter, *group);
    root->AddGroup(group);
    column = Column();
  }
}

void SVSupport::AddCells(void* key, Column& column, std::uint64_t& counter, SK_PLUGIN::ITdjsonGroup_v1& group) const {
  CellNames names(column.header);
  std::string matchName;
  for (std::uint64_t row = 0; row != mRowCount; ++row) {
    std::string_view const cell = column.cells.Take();
    std::string const& displayName = names.Make(row);
    GenerateUniqueMatchname(matchName, counter);
    if (column.isNumeric) {
      double const value = cell.empty() ? 0 : SK_NumberText::WholeToDouble(cell);
      Writer_Wrapper::AddStaticDataNum_Wrapper(key, group, matchName, displayName, value);
    } else {
      Writer_Wrapper::AddStaticDataString_Wrapper(key, group, matchName, displayName, cell);
    }
  }
}

void SVSupport::Split(std::string_view line, std::string_view delimiters, std::vector<std::string>& out) {
  out.clear();
  SVFields fields(delimiters);
  fields.SetLine(line);
  for (std::string_view field; fields.Next(field);) {
    out.emplace_back(field);
  }
}

bool SVSupport::IsNumeric(std::string_view text) {
  return SK_NumberText::IsWholeNumber(text);
}

bool ConvertTable(void* key, SK_NAMESPACE_INT::SK_PathInfo const& pathInfo, std::string const& delimiters,
                  std::string const& creator) {
  SVSupport table;
  if (!table.OpenDelimitedFile(pathInfo.filePath, delimiters)) {
    return false;
  }
  auto const root = Writer_Wrapper::CreateRoot_Wrapper(key, pathInfo.outputPath.c_str(), nullptr);
  root->SetCreator(creator);
  table.AddSVDataUsingGroups(key, root);
  return root->Commit();
}

void GenerateUniqueMatchname(std::string& out, std::uint64_t& counter) {
  out = SK_CountText("data", counter++).View();
}

}  // namespace ns_sensor
