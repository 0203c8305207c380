/// Comma-separated text.
#pragma once

#include <string>
#include <string_view>

namespace senmark_tool {

/// One field as RFC 4180 has it: in quotes when a comma, a quote or a line break stands in it, quotes doubled.
std::string CsvField(std::string_view text);

}  // namespace senmark_tool
