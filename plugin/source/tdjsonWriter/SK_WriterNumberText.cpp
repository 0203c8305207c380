#include "SK_WriterNumberText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <cstring>

#include "SK_DecimalBinade.h"
#include "SK_EightBytes.h"
#include "SK_FixedNumber.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::DigitsOfValue;
using SK_NAMESPACE_INT::kEveryByte;
using SK_NAMESPACE_INT::StoreEight;

constexpr int kDigits = 16;  // significant ones
constexpr std::uint64_t kTenToEight = 100000000;
constexpr std::uint64_t kTenToFifteen = 1000000000000000;
constexpr std::uint64_t kTenToSixteen = kTenToFifteen * 10;
constexpr std::uint64_t kZeroes = kEveryByte * '0';

// The numbers that are scaled here are those of the table of binades: from 1.8e-40 to 2^53, where numbers with
// a fraction end. So the power of ten that makes sixteen digits of a number lies between 10^0 and 10^55, and each of
// those has a factor, the power of five, that fits into 128 bits: nothing is lost, and the result is exact also
// halfway between two texts.
constexpr int kPowers = 56;

// 5^k, shifted to the left until its highest bit is set. The number is shifted in the same way, so the integer part of
// their product, the sixteen digits, ends in the highest 64 bits: above the lowest `shift` - (binade of the number).
struct PowerOfFive {
  std::uint64_t high;
  std::uint64_t low;
  int shift;
};

constexpr std::array<PowerOfFive, kPowers> MakePowersOfFive() {
  std::array<PowerOfFive, kPowers> powers = {};
  Uint128 power = 1;
  for (int k = 0; k < kPowers; ++k) {
    Uint128 shifted = power;
    int zeroes = 0;
    while ((shifted >> 127U) == 0) {
      shifted <<= 1U;
      ++zeroes;
    }
    powers[static_cast<std::size_t>(k)] = {static_cast<std::uint64_t>(shifted >> 64U),
                                           static_cast<std::uint64_t>(shifted), zeroes - k - 65};
    power *= 5;  // what the last round makes is not used
  }
  return powers;
}

constexpr std::array<PowerOfFive, kPowers> kPowersOfFive = MakePowersOfFive();

// 0.d1d2... times 10^(exponent + 1), sixteen digits.
struct Decimal {
  std::uint64_t digits;
  int exponent;
};

// `mantissa` has its highest bit set and stands for mantissa * 2^(binade - 63).
inline Decimal RoundToSixteenDigits(std::uint64_t mantissa, int binade) {
  int exponent = DecimalExponentOf(mantissa, binade);
  PowerOfFive const& power = kPowersOfFive[static_cast<std::size_t>(kDigits - 1 - exponent)];

  Uint128 const lowProduct = Uint128{mantissa} * power.low;
  Uint128 const product = Uint128{mantissa} * power.high + (lowProduct >> 64U);
  std::uint64_t const top = static_cast<std::uint64_t>(product >> 64U);
  unsigned const shift = static_cast<unsigned>(power.shift - binade);  // 9 to 14

  std::uint64_t digits = top >> shift;
  std::uint64_t const fraction = top << (64U - shift);
  bool const isHalfOrMore = (fraction & kSignBit) != 0;
  // The lowest 64 bits, less than 2^-73 of the last digit, say nothing new: what is not halfway is at least 2^-58
  // above.
  bool const isNoTie = ((fraction << 1U) | static_cast<std::uint64_t>(product)) != 0;
  digits += static_cast<std::uint64_t>(isHalfOrMore && (isNoTie || (digits & 1U) != 0));
  if (digits == kTenToSixteen) {
    digits = kTenToFifteen;
    ++exponent;
  }
  return {digits, exponent};
}

// All writers below give the end of what they wrote, and may store up to sixteen bytes behind it.

// An integer below 10^16.
char* WriteInteger(char* out, std::uint64_t number) {
  bool const isLong = number >= kTenToEight;
  std::uint64_t const first = DigitsOfValue(static_cast<std::uint32_t>(isLong ? number / kTenToEight : number));
  // The lowest byte is the first digit. The last one stays, also of 0.
  unsigned const leadingZeroes = static_cast<unsigned>(__builtin_ctzll(first | std::uint64_t{1} << 56U)) / 8;
  StoreEight(out, (first | kZeroes) >> (8 * leadingZeroes));
  out += 8 - leadingZeroes;
  if (isLong) {
    StoreEight(out, DigitsOfValue(static_cast<std::uint32_t>(number % kTenToEight)) | kZeroes);
    out += 8;
  }
  return out;
}

// "e-", two digits. Zeroes at the end of a text with a point vanish even here.
char* WriteSmallExponent(char* out, unsigned exponent, bool hasPoint) {
  out[0] = 'e';
  out[1] = '-';
  out[2] = static_cast<char>('0' + exponent / 10);
  out[3] = static_cast<char>('0' + exponent % 10);
  return out + (hasPoint && exponent % 10 == 0 ? 3 : 4);
}

// point: where the point stands; the end if there is none.
char* WriteDecimal(char* out, Decimal decimal, char const*& point) {
  std::uint64_t const first = DigitsOfValue(static_cast<std::uint32_t>(decimal.digits / kTenToEight));
  std::uint64_t const last = DigitsOfValue(static_cast<std::uint32_t>(decimal.digits % kTenToEight));
  // Without the zeroes at the end. The highest byte is the last digit.
  int const count = last != 0 ? 16 - __builtin_clzll(last) / 8 : 8 - __builtin_clzll(first) / 8;
  std::uint64_t const firstText = first | kZeroes;
  std::uint64_t const lastText = last | kZeroes;

  if (decimal.exponent < 0 && decimal.exponent >= -4) {
    std::copy_n("0.000", 5, out);
    point = out + 1;
    out += 1 - decimal.exponent;
    StoreEight(out, firstText);
    StoreEight(out + 8, lastText);
    return out + count;
  }
  int const integerDigits = decimal.exponent < 0 ? 1 : decimal.exponent + 1;
  bool const hasPoint = count > integerDigits;
  StoreEight(out, firstText);
  StoreEight(out + 8, lastText);
  out += integerDigits;
  point = out;
  if (hasPoint) {
    Uint128 const behindPoint = ((Uint128{lastText} << 64U) | firstText) >> static_cast<unsigned>(8 * integerDigits);
    *out = '.';
    StoreEight(out + 1, static_cast<std::uint64_t>(behindPoint));
    StoreEight(out + 9, static_cast<std::uint64_t>(behindPoint >> 64U));
    out += 1 + count - integerDigits;
  }
  if (decimal.exponent < 0) {
    out = WriteSmallExponent(out, static_cast<unsigned>(-decimal.exponent), count > 1);
    point = hasPoint ? point : out;
  }
  return out;
}

// The digits of the numbers from 0 to 999, as numbers; the lowest byte is the first.
constexpr std::array<std::uint32_t, 1000> MakeThreeDigits() {
  std::array<std::uint32_t, 1000> digits = {};
  for (std::uint32_t value = 0; value != digits.size(); ++value) {
    digits[value] = value / 100 | value / 10 % 10 << 8U | value % 10 << 16U;
  }
  return digits;
}

constexpr std::array<std::uint32_t, 1000> kThreeDigits = MakeThreeDigits();

// A number of eight decimals. point: as in `WriteDecimal`.
char* WriteFixedNumber(char* out, std::uint64_t fixed, char const*& point) {
  std::uint32_t const integer = static_cast<std::uint32_t>(fixed / kTenToEight);
  auto const behindPoint = static_cast<std::uint32_t>(fixed - integer * kTenToEight);
  if (integer < kThreeDigits.size()) {
    std::uint64_t const digits = kThreeDigits[integer];
    // The last digit stays, also of 0.
    unsigned const leadingZeroes = static_cast<unsigned>(__builtin_ctzll(digits | std::uint64_t{1} << 16U)) / 8;
    StoreEight(out, (digits | kZeroes) >> (8 * leadingZeroes));
    out += 3 - leadingZeroes;
  } else {
    out = WriteInteger(out, integer);
  }
  point = out;
  if (behindPoint == 0) {
    return out;
  }
  std::uint64_t const decimals = DigitsOfValue(behindPoint);
  *out = '.';
  StoreEight(out + 1, decimals | kZeroes);
  // Zeroes at the end stay behind the end.
  return out + 9 - static_cast<unsigned>(__builtin_clzll(decimals)) / 8;
}

// Whatever a double can be, the slow way. The value is not negative and no NaN.
char* WriteAnything(char* out, char* end, double value) {
  end = std::to_chars(out, end, value, std::chars_format::general, kDigits).ptr;
  if (std::memchr(out, '.', static_cast<std::size_t>(end - out)) != nullptr) {
    // Stops at the latest at the digit in front of the point, which is no zero here.
    while (end[-1] == '0' || end[-1] == '.') {
      --end;
    }
  }
  return end;
}

// Any number that is none of eight decimals, without its sign. bits: those of the value. end: of the room for it.
char* WriteAnyNumber(char* out, char* end, std::uint64_t bits, double value, char const*& point) {
  int const binade = static_cast<int>(bits >> kFractionBits) - kExponentBias;
  if (binade >= kFirstBinade && binade <= kFractionBits) {
    std::int64_t const integer = static_cast<std::int64_t>(value);
    if (static_cast<double>(integer) != value) {
      std::uint64_t const mantissa = (bits << (63 - kFractionBits)) | kSignBit;
      return WriteDecimal(out, RoundToSixteenDigits(mantissa, binade), point);
    }
    char* const textEnd = WriteInteger(out, static_cast<std::uint64_t>(integer));
    point = textEnd;
    return textEnd;
  }
  // The sign of a NaN is printed too, and nothing else of it.
  bool const isNumber = bits <= kExponentMask << kFractionBits;
  char* const textEnd = isNumber ? WriteAnything(out, end, value) : std::copy_n("nan", 3, out);
  point = std::find(out, textEnd, '.');
  return textEnd;
}

}  // namespace

char* SK_WriterNumberText::Write(char* out, double value, Digits& digits) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof(bits));
  char* const roomEnd = out + kRoom;
  *out = '-';
  out += bits >> 63U;
  bits &= ~kSignBit;
  std::memcpy(&value, &bits, sizeof(bits));

  char const* point = nullptr;
  std::uint64_t fixed = 0;
  char* const end =
      ToFixed(bits, fixed) ? WriteFixedNumber(out, fixed, point) : WriteAnyNumber(out, roomEnd, bits, value, point);
  digits.integer = static_cast<std::size_t>(point - out);
  digits.decimal = static_cast<std::size_t>(end - point) - (end != point ? 1 : 0);
  return end;
}

char* SK_WriterNumberText::WriteFixed(char* out, std::uint64_t fixed) {
  char const* point = nullptr;
  return WriteFixedNumber(out, fixed, point);
}

bool SK_WriterNumberText::ToFine(std::uint64_t bits, std::uint64_t& fine) {
  constexpr int kMostExponent = 2;
  constexpr std::uint64_t kPowersOfTen[] = {1, 10, 100, 1000, 10000};
  int const binade = static_cast<int>(bits >> kFractionBits) - kExponentBias;
  if (binade < detail::kFirstFixedBinade || binade > detail::kLastFixedBinade) {
    return false;
  }
  auto const [digits, exponent] = RoundToSixteenDigits((bits << (63 - kFractionBits)) | kSignBit, binade);
  if (exponent >= 0) {
    fine = digits * kPowersOfTen[std::min(exponent, kMostExponent)];
    return exponent <= kMostExponent;
  }
  if (exponent < detail::kLeastFixedExponent) {
    return false;
  }
  std::uint64_t const power = kPowersOfTen[-exponent];
  fine = digits / power;
  return fine * power == digits;
}

char* SK_WriterNumberText::WriteFine(char* out, std::uint64_t fine) {
  out = WriteInteger(out, fine / kTenToFifteen);
  std::uint64_t const behindPoint = fine % kTenToFifteen * 10;
  if (behindPoint == 0) {
    return out;  // nothing that `ToFine` gives, but what a damaged record may say
  }
  std::uint64_t const first = DigitsOfValue(static_cast<std::uint32_t>(behindPoint / kTenToEight));
  std::uint64_t const last = DigitsOfValue(static_cast<std::uint32_t>(behindPoint % kTenToEight));
  *out = '.';
  StoreEight(out + 1, first | kZeroes);
  StoreEight(out + 9, last | kZeroes);
  // Zeroes at the end stay behind the end.
  return out + (last != 0 ? 17 - __builtin_clzll(last) / 8 : 9 - __builtin_clzll(first) / 8);
}

}  // namespace SK_PLUGIN
