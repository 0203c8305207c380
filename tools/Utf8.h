/// What the program's output needs to know of UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace senmark_tool {

/// Bytes of the character at the begin of `text`, 1 to 4; 0 when it is not valid UTF-8 (overlong forms,
/// surrogates and code points above U+10FFFF are not) or `text` is empty.
std::size_t Utf8Length(std::string_view text);

/// `text` for a terminal: control characters, which could move its cursor, and bytes that are no valid
/// UTF-8 become "?".
std::string Printable(std::string_view text);

/// Columns that a printable text takes, with one for each character.
std::size_t Columns(std::string_view text);

}  // namespace senmark_tool
