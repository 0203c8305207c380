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
  std::uint8_t minus = 0;     ///< signs in front, 1 or 0

  bool isThere() const { return integers != 0; }
  bool isNegative() const { return minus != 0; }

  // What the digits make. start: of the cell.

  /// In front of the mark.
  std::uint64_t whole(char const* start) const { return ValueAt(start + minus, integers); }
  /// Behind it.
  std::uint64_t behindMark(char const* start) const { return fraction == 0 ? 0 : ValueAt(Mark(start) + 1, fraction); }
  /// All of them.
  std::uint64_t digits(char const* start) const {
    // Most are few enough to be worked out at once.
    if (fraction != 0 && integers + fraction <= 8) {
      return ValueAtBoth(start + minus, integers, Mark(start) + 1, fraction);
    }
    // Many of the others have one digit in front of the mark.
    std::uint64_t const front = integers == 1 ? static_cast<std::uint64_t>(start[minus] - '0') : whole(start);
    return front * kPowersOfTen[fraction] + behindMark(start);
  }
  /// Whether the first four digits behind the mark are zeroes, of more.
  bool startsWithZeroes(char const* start) const {
    constexpr std::uint64_t kFour = 0x30303030U;
    return fraction > 4 && (LoadEight(Mark(start) + 1) & 0xFFFFFFFFU) == kFour;
  }

 private:
  char const* Mark(char const* start) const { return start + minus + integers; }
};

/// Finds the number that a cell begins with. Gives the place behind it, which is no digit; null if there is none. It is
/// the cell's if that is where the cell ends.
///
/// start      of the cell, from which on `PlainNumber::kReach` bytes may be read.
/// nonDigits  from there on, which has the lowest bit.
/// mark       of decimals.
inline char* FindPlainNumber(char* start, std::uint32_t nonDigits, char mark, PlainNumber& number) {
  // For digits up to where the bits end; those are too many.
  constexpr std::uint32_t kLast = std::uint32_t{1} << 31;
  unsigned const sign = *start == '-' ? 1 : 0;
  std::uint32_t const marks = (nonDigits ^ sign) | kLast;
  unsigned const first = LowestBit(marks);
  unsigned const integers = first - sign;
  number.integers = static_cast<std::uint8_t>(integers);
  number.minus = static_cast<std::uint8_t>(sign);
  number.fraction = 0;
  // None wraps around and is too many, here and below.
  if (integers - 1 >= PlainNumber::kMostDigits) {
    return nullptr;
  }
  if (start[first] != mark) {
    return start + first;
  }
  unsigned const second = LowestBit(marks & (marks - 1));
  unsigned const fraction = second - first - 1;
  number.fraction = static_cast<std::uint8_t>(fraction);
  return fraction - 1 < PlainNumber::kMostDigits - integers ? start + second : nullptr;
}

}  // namespace senmark_series
