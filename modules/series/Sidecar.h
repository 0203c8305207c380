/// What a user says about a table, in a file beside it: FILE.senmark.json.
///
///     {
///       "delimiter": "comma" | "semicolon" | "tab" | "pipe" | "blanks" | any ASCII character,
///       "decimalMark": "." | ",",
///       "quote": a character, or "" for none,
///       "comment": what lines begin with that are no rows, or "" for none,
///       "encoding": "utf-8" | "utf-16le" | "utf-16be" | "windows-1252" | "latin-1",
///       "headerRow": line of the file, from 1; 0 for none,
///       "unitsRow": line of the file, from 1; 0 for none,
///       "firstDataRow": line of the file, from 1,
///       "time": {
///         "column": name or number from 1,
///         "columns": [date, time of day], in place of "column",
///         "form": "iso" | "date" | "epoch-s" | "epoch-ms" | "epoch-us" | "epoch-ns"
///                 | "elapsed-s" | "elapsed-ms" | "elapsed-us" | "elapsed-ns" | "clock",
///         "zone": "Z" or "+hh:mm", of times that tell none,
///         "dateOrder": "day-month" | "month-day"
///       },
///       "columns": {
///         name: {"kind": "number" | "text", "unit": text, "name": text, "decimals": 0 to 15, "skip": true}
///       }
///     }
///
/// Every key may be missing.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Encoding.h"
#include "TimeForm.h"
#include "senmark/module/Input.h"

namespace senmark_series {

enum class eColumnKind : std::uint8_t { kNumber, kText };

struct Sidecar {
  /// A column by its name, or by its number from 1.
  struct ColumnReference {
    std::string name;
    std::size_t number = 0;  ///< 0: by its name
  };
  struct TimeChoice {
    eTimeKind kind;
    unsigned unitDigits;
  };
  struct ColumnChoice {
    std::optional<eColumnKind> kind;
    std::optional<std::string> unit;
    std::optional<std::string> name;
    std::optional<unsigned> decimals;
    bool skips = false;
  };

  std::optional<char> delimiter;
  std::optional<char> decimalMark;
  std::optional<char> quote;  ///< 0: none
  std::optional<std::string> comment;
  std::optional<eEncoding> encoding;
  std::optional<std::int64_t> headerRow;
  std::optional<std::int64_t> unitsRow;
  std::optional<std::int64_t> firstDataRow;
  std::vector<ColumnReference> timeColumns;  ///< up to two
  std::optional<TimeChoice> timeForm;
  std::optional<int> zoneMinutes;
  std::optional<eDateOrder> dateOrder;
  std::map<std::string, ColumnChoice, std::less<>> columns;
};

/// The path of the file beside `path`.
std::string SidecarPath(std::string const& path);

/// None if there is no such file. Errors: `Failure` that names what is wrong in it.
std::optional<Sidecar> ReadSidecar(kit::Input const& input);

/// Errors: `Failure` that names the key.
Sidecar ParseSidecar(std::string const& json);

}  // namespace senmark_series
