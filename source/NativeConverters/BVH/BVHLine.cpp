#include "BVHLine.h"

#include <cmath>
#include <limits>

#include "SK_ExactDecimal.h"
#include "SK_NumberText.h"

namespace ns_sensor {
namespace {

unsigned DigitOf(char byte) {
  return static_cast<unsigned>(static_cast<unsigned char>(byte)) - '0';
}

bool IsDigit(char byte) {
  return DigitOf(byte) <= 9;
}

bool IsSign(char byte) {
  return byte == '+' || byte == '-';
}

constexpr int kExponentLimit = 100000;  ///< beyond any that matters, and far from overflow

/// A decimal text, taken apart.
struct Decimal {
  char const* digits = nullptr;  ///< first byte behind the sign
  char const* end = nullptr;
  std::uint64_t mantissa = 0;  ///< all digits as an integer, wrapped around if there are too many
  std::ptrdiff_t digitCount = 0;
  int exponent = 0;  ///< the power of ten that belongs to the mantissa
  bool isNegative = false;
  bool isNumber = false;
};

/// Takes the longest text that can belong to a number, which need not be one: `1e` is taken and is none.
Decimal TakeDecimal(char const* next, char const* end) {
  Decimal decimal;
  if (next != end && IsSign(*next)) {
    decimal.isNegative = *next == '-';
    ++next;
  }
  decimal.digits = next;
  std::uint64_t mantissa = 0;
  while (next != end && IsDigit(*next)) {
    mantissa = mantissa * 10 + DigitOf(*next++);
  }
  decimal.digitCount = next - decimal.digits;
  std::ptrdiff_t decimals = 0;
  if (next != end && *next == '.') {
    char const* const first = ++next;
    while (next != end && IsDigit(*next)) {
      mantissa = mantissa * 10 + DigitOf(*next++);
    }
    decimals = next - first;
    decimal.digitCount += decimals;
  }
  decimal.mantissa = mantissa;
  decimal.isNumber = decimal.digitCount != 0;
  int exponent = 0;
  if (decimal.isNumber && next != end && (*next == 'e' || *next == 'E')) {
    ++next;
    bool const isDown = next != end && *next == '-';
    if (next != end && IsSign(*next)) {
      ++next;
    }
    decimal.isNumber = next != end && IsDigit(*next);
    while (next != end && IsDigit(*next)) {
      exponent = exponent < kExponentLimit ? exponent * 10 + static_cast<int>(DigitOf(*next)) : exponent;
      ++next;
    }
    exponent = isDown ? -exponent : exponent;
  }
  // A count of decimals that large is never looked at: there are too many digits.
  decimal.exponent = exponent - static_cast<int>(decimals < kExponentLimit ? decimals : kExponentLimit);
  decimal.end = next;
  return decimal;
}

/// The nearest double to a number, without its sign.
double MagnitudeOf(Decimal const& decimal) {
  double magnitude = 0;
  if (decimal.digitCount <= SK_NAMESPACE_INT::kDigitsOfAnyInteger &&
      SK_NAMESPACE_INT::ExactDecimalToDouble(decimal.mantissa, decimal.exponent, magnitude)) {
    return magnitude;
  }
  return SK_NAMESPACE_INT::SK_NumberText::NearestDouble(decimal.digits, decimal.end);
}

}  // namespace

bool BVHLine::Read(std::string& word) {
  if (!FindToken()) {
    return false;
  }
  char const* const first = mNext;
  while (mNext != mEnd && !IsWordSpace(*mNext)) {
    ++mNext;
  }
  word.assign(first, mNext);
  return true;
}

bool BVHLine::Read(std::int32_t& number) {
  if (!FindToken()) {
    return false;
  }
  Integer const integer = ReadInteger();
  std::uint64_t const limit = std::uint64_t{std::numeric_limits<std::int32_t>::max()} + (integer.isNegative ? 1 : 0);
  if (integer.size > limit) {
    number = integer.isNegative ? std::numeric_limits<std::int32_t>::min() : std::numeric_limits<std::int32_t>::max();
    return Fail();
  }
  auto const size = static_cast<std::int64_t>(integer.size);
  number = static_cast<std::int32_t>(integer.isNegative ? -size : size);
  return integer.hasDigits || Fail();
}

bool BVHLine::Read(std::uint64_t& number) {
  if (!FindToken()) {
    return false;
  }
  Integer const integer = ReadInteger();
  number = integer.isNegative && integer.fits ? 0 - integer.size : integer.size;
  return (integer.hasDigits && integer.fits) || Fail();
}

bool BVHLine::Read(double& number) {
  if (!FindToken()) {
    return false;
  }
  Decimal const decimal = TakeDecimal(mNext, mEnd);
  mNext = decimal.end;
  if (!decimal.isNumber) {
    number = 0;
    return Fail();
  }
  double const magnitude = MagnitudeOf(decimal);
  bool const fits = !std::isinf(magnitude);
  double const size = fits ? magnitude : std::numeric_limits<double>::max();
  number = decimal.isNegative ? -size : size;
  return fits || Fail();
}

bool BVHLine::FindToken() {
  if (mHasFailed) {
    return false;
  }
  while (mNext != mEnd && IsWordSpace(*mNext)) {
    ++mNext;
  }
  return mNext != mEnd || Fail();
}

BVHLine::Integer BVHLine::ReadInteger() {
  constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
  Integer integer;
  if (IsSign(*mNext)) {
    integer.isNegative = *mNext++ == '-';
  }
  for (; mNext != mEnd && IsDigit(*mNext); ++mNext) {
    unsigned const digit = DigitOf(*mNext);
    integer.hasDigits = true;
    integer.fits = integer.fits && integer.size <= (kMax - digit) / 10;
    integer.size = integer.fits ? integer.size * 10 + digit : kMax;
  }
  return integer;
}

}  // namespace ns_sensor
