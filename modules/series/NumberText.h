/// Numbers as cells write them.
#pragma once

#include <optional>
#include <string_view>

#include "Row.h"
#include "senmark/module/Number.h"

namespace senmark_series {

constexpr unsigned kMostDecimals = 15;

/// What the text of a number shows without its value.
struct NumberShape {
  bool isNumber = false;  ///< a decimal number closer to 0 than 1e16, which is what a data file can hold
  unsigned decimals =
      0;  ///< digits behind the point that it takes to write it without an exponent, `kMostDecimals` at most
  bool isTiny = false;  ///< not 0, and closer to it than 0.0001
};
NumberShape ShapeOf(std::string_view text, char decimalMark);
/// The same of a cell, the text of which is read again only if cutting it has not done that.
inline NumberShape ShapeOfCell(Cell const& cell, char decimalMark);

/// None for what `ShapeOf` does not take for a number.
std::optional<double> ToNumber(std::string_view text, char decimalMark);

/// Words that stand for a number that is missing, in any case: NA, N/A, NaN, null, none, and dashes.
bool IsGapWord(std::string_view text);

/// So many digits are a whole number that a double holds, and so are the powers of ten up to here: their quotient is
/// the double nearest to the text.
constexpr std::ptrdiff_t kExactDigits = 15;
static_assert(PlainNumber::kMostDigits <= kExactDigits);

/// Whether digits, `kExactDigits` at most and `fraction` of them behind the mark, make a number that is not 0, and
/// closer to it than 0.0001.
bool IsTiny(std::uint64_t digits, std::size_t fraction);

inline NumberShape ShapeOfCell(Cell const& cell, char decimalMark) {
  NumberShape shape;
  if (!cell.plain.isThere()) {
    // No letter begins a number.
    return cell.text.empty() || cell.text.front() > '9' ? shape : ShapeOf(cell.text, decimalMark);
  }
  shape.isNumber = true;
  shape.decimals = cell.plain.fraction;
  shape.isTiny =
      cell.plain.startsWithZeroes(cell.text.data()) && IsTiny(cell.plain.digits(cell.text.data()), cell.plain.fraction);
  return shape;
}

/// The number of a cell that is a plain one.
inline senmark::kit::Decimal DecimalOf(Cell const& cell) {
  auto const digits = static_cast<std::int64_t>(cell.plain.digits(cell.text.data()));
  return {cell.plain.isNegative() ? -digits : digits, cell.plain.fraction};
}

}  // namespace senmark_series
