/// How a number waits for its commit: as an integer if it has at most eight decimals, or fifteen where they are needed,
/// else as its text. All may stand side by side, for no text begins with a byte that has its highest bit set.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_FixedNumber.h"
#include "SK_NumberPropertyRules.h"
#include "SK_WriterNumberText.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

struct SK_PackedNumber {
  std::uint64_t fixed = 0;  ///< 10^8 times the number without its sign, below 10^15; or 10^15 times it, below 10^18
  bool isFine = false;      ///< the latter
  bool isNegative = false;  ///< also of 0

  /// Whether `bytes` begin with such a number, and not with a text.
  static bool Begins(std::string_view bytes) {
    return !bytes.empty() && (static_cast<unsigned char>(bytes.front()) & kMark) != 0;
  }
  /// Takes the number that `bytes` begin with off them; all of them if they end within it, for a number of 0.
  static SK_PackedNumber Take(std::string_view& bytes) {
    SK_PackedNumber number;
    std::size_t const size = static_cast<unsigned char>(bytes.front()) & kSizeMask;
    if (!IsSize(size) || bytes.size() <= size) {
      bytes = std::string_view();
      return number;
    }
    number.Load(bytes.data(), size);
    bytes.remove_prefix(1 + size);
    return number;
  }
  /// Reads `bytes` if they are such a number and nothing else.
  static bool Read(std::string_view bytes, SK_PackedNumber& number) {
    std::size_t const size = bytes.size() - 1;
    if (!IsSize(size) || (static_cast<unsigned char>(bytes.front()) & (kMark | kSizeMask)) != (kMark | size)) {
      return false;
    }
    number.Load(bytes.data(), size);
    return true;
  }

  /// The writer's text of the number, in memory for `SK_WriterNumberText::kRoom` bytes.
  std::string_view CopyTextTo(char* out) const;

  // The first byte: the mark, the sign, which of the two, and how many bytes of the integer follow, from the lowest on.
  // Never fewer than four, so that two times four of them, which may overlap, are all of it, and reading takes no
  // decision.
  static constexpr unsigned kMark = 0x80;
  static constexpr unsigned kNegativeBit = 6;
  static constexpr unsigned kFineBit = 5;
  static constexpr unsigned kSizeMask = 15;
  static constexpr std::size_t kSmallest = 4;
  static constexpr std::size_t kLargest = 8;

 private:
  static bool IsSize(std::size_t size) { return size - kSmallest <= kLargest - kSmallest; }
  /// size: bytes of the integer.
  void Load(char const* bytes, std::size_t size) {
    using SK_NAMESPACE_INT::LoadFour;
    char const* const first = bytes + 1;
    std::size_t const second = size - kSmallest;
    unsigned const head = static_cast<unsigned char>(*bytes);
    fixed = LoadFour(first) | std::uint64_t{LoadFour(first + second)} << (8 * second);
    isFine = (head >> kFineBit & 1U) != 0;
    isNegative = (head >> kNegativeBit & 1U) != 0;
  }
};

namespace detail {

static_assert(SK_WriterNumberText::kRoom >= 1 + sizeof(std::uint64_t));

// The end of the integers that have so many digits in front of the point; the last are all that there are.
template <std::size_t kCount>
constexpr std::array<std::uint64_t, kCount> MakeEnds(std::uint64_t power) {
  std::array<std::uint64_t, kCount> ends = {};
  for (std::size_t digits = 1; digits != ends.size(); ++digits) {
    power *= 10;
    ends[digits] = power;
  }
  ends.back() = kNoLimit;
  return ends;
}

// Divisibility by 10^p without a division: times the inverse of 5^p modulo 2^64, and turned to the right by p bits, a
// multiple becomes its quotient, and everything else is more than any quotient.
struct Multiples {
  std::uint64_t inverse;
  std::uint64_t largest;
};

constexpr std::array<Multiples, SK_WriterNumberText::kFineDecimals + 1> MakeMultiples() {
  std::array<Multiples, SK_WriterNumberText::kFineDecimals + 1> multiples = {};
  std::uint64_t five = 1;
  std::uint64_t ten = 1;
  for (Multiples& row : multiples) {
    std::uint64_t inverse = five;  // right in three bits, and in twice as many with each round
    for (int round = 0; round != 5; ++round) {
      inverse *= 2 - five * inverse;
    }
    row = {inverse, kNoLimit / ten};
    five *= 5;
    ten *= 10;
  }
  return multiples;
}

inline constexpr std::array<std::uint64_t, 8> kFixedEnds = MakeEnds<8>(100000000);
inline constexpr std::array<std::uint64_t, 4> kFineEnds = MakeEnds<4>(1000000000000000);
inline constexpr std::array<Multiples, SK_WriterNumberText::kFineDecimals + 1> kMultiples = MakeMultiples();

// Whether the text of the integer, a number with so many decimals, has no more digits than the pattern.
template <unsigned kDecimals, std::size_t kCount>
bool Fits(std::uint64_t integer, std::array<std::uint64_t, kCount> const& ends,
          ns_sensor::SK_NumberPattern const& pattern) {
  if (integer >= ends[std::min<std::uint64_t>(pattern.digitsInteger, kCount - 1)]) {
    return false;
  }
  // One number that came out with all sixteen digits has widened most patterns of measured numbers so far.
  if (pattern.digitsDecimal >= kDecimals) {
    return true;
  }
  unsigned const zeroes = kDecimals - static_cast<unsigned>(pattern.digitsDecimal);
  Multiples const& multiples = kMultiples[zeroes];
  std::uint64_t const product = integer * multiples.inverse;
  std::uint64_t const turned = product >> zeroes | product << (64U - zeroes);
  return turned <= multiples.largest;
}

// The packed number, and its end.
inline char* PutInteger(char* out, std::uint64_t integer, unsigned sign, unsigned isFine) {
  // Down to the byte with the highest bit, or to as many as there are at least.
  constexpr std::uint64_t kHighestOfFewest = std::uint64_t{1} << (8 * (SK_PackedNumber::kSmallest - 1));
  unsigned const highest = 63U ^ static_cast<unsigned>(__builtin_clzll(integer | kHighestOfFewest));
  unsigned const size = highest / 8 + 1;
  *out = static_cast<char>(SK_PackedNumber::kMark | sign << SK_PackedNumber::kNegativeBit |
                           isFine << SK_PackedNumber::kFineBit | size);
  SK_NAMESPACE_INT::StoreEight(out + 1, integer);
  return out + 1 + size;
}

// Both are rare, and few instructions where they are called.
// What `PackNumber` does of a number that has more than eight decimals. bits: of the value, without its sign.
char* PackOther(char* out, double value, std::uint64_t bits, ns_sensor::SK_NumberPattern& pattern, bool automatic);
// Raises the digit counts.
void Widen(ns_sensor::SK_NumberPattern& pattern, double value);

}  // namespace detail

/// Stores the number to where there is room for `SK_WriterNumberText::kRoom` bytes, all of which may change, and gives
/// its end there. Raises the digit counts of the pattern to what the number's text needs if they are automatic; its
/// sign counts in any case. Here, because it is done for every number of every sample.
inline char* PackNumber(char* out, double value, ns_sensor::SK_NumberPattern& pattern, bool automatic) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  unsigned const sign = static_cast<unsigned>(bits >> 63U);
  bits &= ~(std::uint64_t{1} << 63U);
  std::uint64_t fixed = 0;
  if (!ToFixed(bits, fixed)) {
    return detail::PackOther(out, value, bits, pattern, automatic);
  }
  if (automatic && !detail::Fits<kFixedDecimals>(fixed, detail::kFixedEnds, pattern)) {
    detail::Widen(pattern, value);
  }
  pattern.isSigned = pattern.isSigned || sign != 0;
  return detail::PutInteger(out, fixed, sign, 0);
}

}  // namespace SK_PLUGIN
