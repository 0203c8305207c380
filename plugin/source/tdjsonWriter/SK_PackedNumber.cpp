#include "SK_PackedNumber.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include "SK_EightBytes.h"
#include "SK_FixedNumber.h"
#include "SK_NumberPropertyRules.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::StoreEight;

static_assert(SK_WriterNumberText::kRoom >= 1 + sizeof(std::uint64_t));

constexpr std::uint64_t kNoLimit = std::numeric_limits<std::uint64_t>::max();

// The end of the integers that have so many digits in front of the point; seven are all that there are.
constexpr std::array<std::uint64_t, 8> MakeEnds() {
  std::array<std::uint64_t, 8> ends = {};
  std::uint64_t power = 100000000;
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

constexpr std::array<Multiples, kFixedDecimals + 1> MakeMultiples() {
  std::array<Multiples, kFixedDecimals + 1> multiples = {};
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

constexpr std::array<std::uint64_t, 8> kEnds = MakeEnds();
constexpr std::array<Multiples, kFixedDecimals + 1> kMultiples = MakeMultiples();

// Whether the text of the integer has no more digits than the pattern.
bool Fits(std::uint64_t fixed, ns_sensor::SK_NumberPattern const& pattern) {
  std::size_t const integers = std::min<std::uint64_t>(pattern.digitsInteger, kEnds.size() - 1);
  unsigned const zeroes =
      kFixedDecimals - static_cast<unsigned>(std::min<std::uint64_t>(pattern.digitsDecimal, kFixedDecimals));
  Multiples const& multiples = kMultiples[zeroes];
  std::uint64_t const product = fixed * multiples.inverse;
  std::uint64_t const turned = product >> zeroes | product << (-zeroes & 63U);
  return fixed < kEnds[integers] && turned <= multiples.largest;
}

}  // namespace

std::string_view SK_PackedNumber::CopyTextTo(char* out) const {
  *out = '-';
  char const* const end = SK_WriterNumberText::WriteFixed(out + (isNegative ? 1 : 0), fixed);
  return std::string_view(out, static_cast<std::size_t>(end - out));
}

char* PackNumber(char* out, double value, ns_sensor::SK_NumberPattern& pattern, bool automatic) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  unsigned const sign = static_cast<unsigned>(bits >> 63U);
  std::uint64_t fixed = 0;
  if (!ToFixed(bits & ~(std::uint64_t{1} << 63U), fixed)) {
    SK_WriterNumberText::Digits digits;
    char* const end = SK_WriterNumberText::Write(out, value, digits);
    WidenNumberPattern(pattern, automatic, value, digits);
    return end;
  }
  if (automatic && !Fits(fixed, pattern)) {
    WidenNumberPattern(pattern, automatic, value, SK_WriterNumberText(value).Counts());
  }
  pattern.isSigned = pattern.isSigned || sign != 0;
  std::size_t const size =
      std::max<std::size_t>(SK_PackedNumber::kSmallest, 8 - static_cast<unsigned>(__builtin_clzll(fixed | 1)) / 8);
  *out =
      static_cast<char>(SK_PackedNumber::kMark | sign << SK_PackedNumber::kNegativeBit | static_cast<unsigned>(size));
  StoreEight(out + 1, fixed);
  return out + 1 + size;
}

}  // namespace SK_PLUGIN
