/// Texts of elements and attributes.
#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

#include "senmark/module/Time.h"

namespace senmark_gpx {

/// Without white space, as XML has it, at either end.
std::string_view Trimmed(std::string_view text);

/// At most so many bytes from the start, and no part of a character of UTF-8.
std::string_view CutText(std::string_view text, std::size_t longest);

/// The number that is the whole text, white space around it aside: decimal digits, with a sign, a point or an exponent
/// where there is one. NaN for what stands for no number, an empty text among them, and for infinity; none for
/// anything else.
std::optional<double> ParseNumber(std::string_view text);

/// A time as GPX has it, white space around it aside. Without a zone it is one in GMT.
std::optional<senmark::kit::Instant> ParseTime(std::string_view text);

}  // namespace senmark_gpx
