/// Takes the removable white space out of a stretch of a sample section, and watches for the bracket that
/// closes the section.
///
/// Removed are line feed, tab and carriage return wherever they stand, and spaces outside strings. Inside
/// a string means behind an odd number of quote bytes: escapes are not known here, so an escaped quote
/// counts. Brackets count wherever they stand, in strings too. Both are fixed behaviour of the format.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace SK_NAMESPACE_INT {

/// What one stretch hands on to the next.
struct SK_FilterState {
  std::uint64_t depth = 1;    ///< brackets that are open; 0: the closing bracket has been met
  bool insideString = false;  ///< an odd number of quotes so far
};

struct SK_FilterResult {
  char const* in;  ///< `end`, or the bracket that closed the section
  char* out;       ///< behind the last byte kept
};

/// Filters the bytes from `p` to `end` into `out`, which has room for all of them and `kFilterSlack`
/// bytes more. It stops at the bracket that brings the depth to 0 and neither keeps nor steps over it.
/// Reads nothing at or behind `end`.
using SK_FilterFunction = SK_FilterResult (*)(char const* p, char const* end, char* out, SK_FilterState& state);

/// Bytes behind the kept ones that a filter may scribble over.
inline constexpr std::size_t kFilterSlack = 64;

struct SK_WhiteSpaceFilter {
  char const* name;
  SK_FilterFunction run;
};

/// One byte at a time: the behaviour that every other filter must match, and the end of their work.
SK_FilterResult FilterBytes(char const* p, char const* end, char* out, SK_FilterState& state);

/// Every filter that this processor can run, the fastest last. Never empty.
std::vector<SK_WhiteSpaceFilter> GetWhiteSpaceFilters();

}  // namespace SK_NAMESPACE_INT
