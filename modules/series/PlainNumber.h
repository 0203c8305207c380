/// Numbers as nearly all cells write them, which are read while the cell is cut.
#pragma once

#include <cstddef>
#include <cstdint>

#include "EightBytes.h"

namespace senmark_series {

/// Digits with or without a minus, and perhaps a mark and more digits: 15 in all, which a double holds.
///
/// It knows no more than where its digits are. They are read by those who want to know them.
struct PlainNumber {
  static constexpr unsigned kMostDigits = 15;
  /// So many bytes from the start of the cell on may be read: digits are loaded by eight.
  static constexpr std::ptrdiff_t kReach = 1 + kMostDigits + 1 + 8;

  std::uint8_t integers = 0;  ///< digits in front of the mark; 0: it is no such number
  std::uint8_t fraction = 0;  ///< digits behind it
  bool isNegative = false;

  bool isThere() const { return integers != 0; }

  // What the digits make. start: of the cell.

  /// In front of the mark.
  std::uint64_t whole(char const* start) const { return ValueAt(start + (isNegative ? 1 : 0), integers); }
  /// Behind it.
  std::uint64_t behindMark(char const* start) const { return fraction == 0 ? 0 : ValueAt(Mark(start) + 1, fraction); }
  /// All of them.
  std::uint64_t digits(char const* start) const {
    // Most are few enough to be worked out at once.
    if (fraction != 0 && integers + fraction <= 8) {
      return ValueAtBoth(start + (isNegative ? 1 : 0), integers, Mark(start) + 1, fraction);
    }
    return whole(start) * kPowersOfTen[fraction] + behindMark(start);
  }
  /// Whether the first four digits behind the mark are zeroes, of more.
  bool startsWithZeroes(char const* start) const {
    constexpr std::uint64_t kFour = 0x30303030U;
    return fraction > 4 && (LoadEight(Mark(start) + 1) & 0xFFFFFFFFU) == kFour;
  }

 private:
  char const* Mark(char const* start) const { return start + (isNegative ? 1 : 0) + integers; }
};

/// Finds out whether a cell is such a number.
///
/// size       bytes of the cell.
/// nonDigits  from its start on, which has the lowest bit: among them the byte behind the cell, which is no minus.
inline bool FindPlainNumber(char const* start, unsigned size, std::uint64_t nonDigits, char mark, PlainNumber& number) {
  unsigned const sign = *start == '-' ? 1 : 0;
  std::uint64_t const marks = nonDigits ^ sign;
  unsigned const first = LowestBit(marks);
  unsigned const integers = first - sign;
  number.isNegative = sign != 0;
  number.integers = static_cast<std::uint8_t>(integers);
  number.fraction = 0;
  // None wraps around, here and below.
  if (first == size) {
    return integers - 1 < PlainNumber::kMostDigits;
  }
  unsigned const digits = size - sign - 1;
  number.fraction = static_cast<std::uint8_t>(digits - integers);
  return start[first] == mark && LowestBit(marks & (marks - 1)) == size && digits - 1 < PlainNumber::kMostDigits &&
         integers - 1 < digits - 1;
}

}  // namespace senmark_series
