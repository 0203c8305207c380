/// Numbers as cells write them.
#pragma once

#include <optional>
#include <string_view>

namespace senmark_series {

/// What the text of a number shows without its value.
struct NumberShape {
  bool isNumber = false;  ///< a decimal number closer to 0 than 1e16, which is what a data file can hold
  unsigned decimals = 0;  ///< digits behind the point that it takes to write it without an exponent, 15 at most
  bool isTiny = false;    ///< not 0, and closer to it than 0.0001
};
NumberShape ShapeOf(std::string_view text, char decimalMark);

/// None for what `ShapeOf` does not take for a number.
std::optional<double> ToNumber(std::string_view text, char decimalMark);

/// Words that stand for a number that is missing, in any case: NA, N/A, NaN, null, none, and dashes.
bool IsGapWord(std::string_view text);

}  // namespace senmark_series
