/// Numbers as cells write them.
#pragma once

#include <optional>
#include <string_view>

#include "Row.h"
#include "senmark/module/Number.h"

namespace senmark_series {

/// What the text of a number shows without its value.
struct NumberShape {
  bool isNumber = false;  ///< a decimal number closer to 0 than 1e16, which is what a data file can hold
  unsigned decimals = 0;  ///< digits behind the point that it takes to write it without an exponent, 15 at most
  bool isTiny = false;    ///< not 0, and closer to it than 0.0001
};
NumberShape ShapeOf(std::string_view text, char decimalMark);
/// The same of a cell, the text of which is read again only if cutting it has not done that.
inline NumberShape ShapeOfCell(Cell const& cell, char decimalMark);

/// None for what `ShapeOf` does not take for a number.
std::optional<double> ToNumber(std::string_view text, char decimalMark);
inline std::optional<double> NumberOfCell(Cell const& cell, char decimalMark);

/// Words that stand for a number that is missing, in any case: NA, N/A, NaN, null, none, and dashes.
bool IsGapWord(std::string_view text);

/// So many digits are a whole number that a double holds, and so are the powers of ten up to here: their quotient is
/// the double nearest to the text.
constexpr std::ptrdiff_t kExactDigits = 15;
static_assert(PlainNumber::kMostDigits <= kExactDigits);

/// digits   `kExactDigits` at most.
/// fraction  of them, behind the mark.
inline double ExactNumber(std::uint64_t digits, std::size_t fraction, bool isNegative) {
  // Signs come as they like: a branch would be guessed wrong too often.
  static constexpr double kDivisors[2][kExactDigits + 1] = {
      {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15},
      {-1e0, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7, -1e8, -1e9, -1e10, -1e11, -1e12, -1e13, -1e14, -1e15}};
  return static_cast<double>(static_cast<std::int64_t>(digits)) / kDivisors[isNegative ? 1 : 0][fraction];
}

/// Whether so many digits make a number that is not 0, and closer to it than 0.0001.
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

/// Of a cell whose number is there.
inline senmark::kit::Decimal DecimalOf(Cell const& cell) {
  auto const digits = static_cast<std::int64_t>(cell.plain.digits(cell.text.data()));
  return {cell.plain.isNegative ? -digits : digits, cell.plain.fraction};
}

inline std::optional<double> NumberOfCell(Cell const& cell, char decimalMark) {
  if (!cell.plain.isThere()) {
    return ToNumber(cell.text, decimalMark);
  }
  return ExactNumber(cell.plain.digits(cell.text.data()), cell.plain.fraction, cell.plain.isNegative);
}

}  // namespace senmark_series
