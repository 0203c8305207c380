#include "SK_TimeRatio.h"

#include <cmath>
#include <utility>

#include "SK_TimeInt.h"
#include "SK_TimeUtils.h"
#include "senmark/SK_ErrorCode.h"

namespace SK_NAMESPACE_INT {
namespace {

constexpr std::int32_t kApproximationLimit = 1073741824;

/// Leading zero bits of a number of 4 bits.
constexpr std::uint8_t SKp_G_lead_zeros[16] = {4, 3, 2, 2, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0};

/// The greatest common divisor of two scales. Unlike `SK_TimeUtils::ComputeGCD` it has no special case,
/// and none is needed: scales of 0 have been refused.
std::uint32_t CommonDivisorOfScales(std::uint32_t a, std::uint32_t b) {
  while (b != 0) {
    std::uint32_t const remainder = a % b;
    a = b;
    b = remainder;
  }
  return a;
}

/// The sum of two fractions other than 0 whose scales differ. False, with `sum` as it was, when one of its
/// steps might overflow.
bool AddOnCommonScale(SK_Time const& a, SK_Time const& b, SK_Time& sum) {
  std::uint32_t const divisor = CommonDivisorOfScales(a.scale, b.scale);
  std::uint32_t const factorOfA = b.scale / divisor;
  std::uint32_t const factorOfB = a.scale / divisor;
  if (SK_UMulWouldOverflow(factorOfA, a.scale)) return false;
  if (SK_MulWouldOverflow(AsSigned(factorOfA), a.value)) return false;
  if (SK_MulWouldOverflow(AsSigned(factorOfB), b.value)) return false;
  std::int32_t const left = WrapMul(AsSigned(factorOfA), a.value);
  std::int32_t const right = WrapMul(AsSigned(factorOfB), b.value);
  if (SK_AddWouldOverflow(left, right)) return false;
  sum = {WrapAdd(left, right), factorOfA * a.scale};
  return true;
}

/// a + b, not reduced. False, with `sum` as it was, when that might overflow.
bool TryAdd(SK_Time const& a, SK_Time const& b, SK_Time& sum) {
  if (a.value == 0) {
    sum = b;
    return true;
  }
  if (b.value == 0) {
    sum = a;
    return true;
  }
  if (a.scale != b.scale) return AddOnCommonScale(a, b, sum);
  if (SK_AddWouldOverflow(a.value, b.value)) return false;
  sum = {WrapAdd(a.value, b.value), a.scale};
  return true;
}

SK_Time WithSign(SK_Time const& time, std::uint8_t negate) {
  return {negate != 0 ? WrapNegate(time.value) : time.value, time.scale};
}

double AsDouble(SK_Time const& time) {
  return static_cast<double>(time.value) / static_cast<double>(time.scale);
}

/// A continued fraction under way. p/q is the current convergent, pP/qP the one before, pPP/qPP the one
/// before that; q is always the larger part, the one that the limit bounds. What is left to expand is d/r.
struct Expansion {
  bool inverted = false;  ///< p/q stands for q/p
  std::uint32_t p = 1, q = 0;
  std::uint32_t pP = 0, qP = 1;
  std::uint32_t pPP = 1, qPP = 0;
  std::uint32_t d = 0, r = 0;
};

/// Starts at x from 1 up to below 2 to the 31st.
Expansion StartAboveOne(float x) {
  Expansion expansion;
  expansion.inverted = true;
  expansion.q = static_cast<std::uint32_t>(x);
  float const rest = x - static_cast<float>(expansion.q);
  expansion.d = 1U << 23U;
  expansion.r = static_cast<std::uint32_t>(std::ldexp(rest, 23));
  return expansion;
}

/// Starts at x from above 2 to the -31st up to below 1: q becomes the integer part of 1/x by long division
/// of a power of two by the 24 bits of x.
Expansion StartBelowOne(float x) {
  int exponent = 0;
  std::frexp(x, &exponent);
  int bits = 24 - exponent;
  Expansion expansion;
  expansion.d = static_cast<std::uint32_t>(std::ldexp(x, bits));

  int shift = bits < 31 ? bits : 31;
  std::uint32_t dividend = 1U << shift;
  expansion.q = dividend / expansion.d;
  expansion.r = dividend % expansion.d;
  for (bits -= shift; bits > 0; bits -= shift) {
    shift = bits < 8 ? bits : 8;
    dividend = expansion.r << shift;
    expansion.q = (expansion.q << shift) + dividend / expansion.d;
    expansion.r = dividend % expansion.d;
  }
  return expansion;
}

/// Whether the convergent before the last is at least as near as the last semi-convergent, which took half
/// of the next term.
bool OlderConvergentWinsTie(Expansion const& expansion) {
  std::uint32_t const older = expansion.inverted ? expansion.pPP : expansion.qPP;
  std::uint32_t const newer = expansion.inverted ? expansion.pP : expansion.qP;
  std::pair<std::uint32_t, std::uint32_t> left;
  std::pair<std::uint32_t, std::uint32_t> right;
  Mul32(older, expansion.d, &left.first, &left.second);
  Mul32(newer, expansion.r, &right.first, &right.second);
  return left <= right;
}

/// Ends an expansion whose next term n does not fit, with a as the largest factor that does.
void TakeSemiConvergent(Expansion& expansion, std::uint32_t a, std::uint32_t n) {
  if (2 * a < n) return;
  expansion.p = a * expansion.pP + expansion.pPP;
  expansion.q = a * expansion.qP + expansion.qPP;
  if (2 * a == n && OlderConvergentWinsTie(expansion)) {
    expansion.p = expansion.pP;
    expansion.q = expansion.qP;
  }
}

void Expand(Expansion& expansion, std::int32_t limit) {
  while (expansion.r != 0) {
    std::uint32_t const t = expansion.d;
    expansion.d = expansion.r;
    expansion.pPP = std::exchange(expansion.pP, expansion.p);
    expansion.qPP = std::exchange(expansion.qP, expansion.q);
    std::uint32_t const n = t / expansion.d;
    expansion.r = t - n * expansion.d;
    std::uint32_t const a = AsUnsigned(DivOrZero(WrapSub(limit, AsSigned(expansion.qPP)), AsSigned(expansion.qP)));
    if (a <= n) {
      TakeSemiConvergent(expansion, a, n);
      return;
    }
    expansion.p = n * expansion.pP + expansion.pPP;
    expansion.q = n * expansion.qP + expansion.qPP;
  }
}

SK_Time Finish(Expansion expansion, std::int32_t limit, std::int32_t sign) {
  Expand(expansion, limit);
  std::uint32_t const value = expansion.inverted ? expansion.q : expansion.p;
  std::uint32_t const scale = expansion.inverted ? expansion.p : expansion.q;
  return {WrapMul(sign, AsSigned(value)), scale};
}

}  // namespace

int SKp_CalcRatio(SK_Time const* a, SK_Time const* b, std::uint8_t subtract, SK_Time* result) {
  if (a->scale == 0 || b->scale == 0) {
    *result = {0, 0};
    return ns_sensor::kInternalFailure;
  }
  SK_Time const left = *a;
  SK_Time const right = *b;
  SK_Time reducedA = *a;
  SK_Time reducedB = *b;
  while (!TryAdd(reducedA, WithSign(reducedB, subtract), *result)) {
    std::uint8_t changedA = 0;
    std::uint8_t changedB = 0;
    SK_TimeUtils::ReduceRatio2(&reducedA, &reducedA, &changedA);
    SK_TimeUtils::ReduceRatio2(&reducedB, &reducedB, &changedB);
    // A divisor with its top bit set counts as a change without being divided by, so this loop may be an
    // endless one. The compiler may take no such loop for granted to end while it reads a volatile.
    std::uint8_t const volatile changed = changedA | changedB;
    if (changed == 0) {
      std::uint8_t overflow = 0;
      double const sum = subtract != 0 ? AsDouble(left) - AsDouble(right) : AsDouble(left) + AsDouble(right);
      SK_FpLong2Ratio(sum, result, &overflow);
      break;
    }
  }
  return SK_TimeUtils::ReduceRatio(*result, *result);
}

int SK_FpLong2Ratio(double d, SK_Time* result, std::uint8_t* overflow) {
  int exponent = 0;
  double const mantissa = std::frexp(d, &exponent);
  *overflow = 0;
  if (mantissa == 0) {
    *result = {0, 1};
  } else if (exponent > 31) {
    *overflow = 1;
    *result = {0, 0};
    return 0;
  } else if (exponent < -31) {
    *result = {0, 1};
  } else {
    Mp_Double2RatioSmart(d, result);
  }
  return SK_TimeUtils::ReduceRatio(*result, *result);
}

int Mp_Double2RatioSmart(double d, SK_Time* result) {
  // It is the float that gets approximated: more digits would give other fractions.
  *result = ratapprox(static_cast<float>(d), kApproximationLimit);
  return 0;
}

SK_Time ratapprox(float x, std::int32_t limit) {
  static SK_Time const ratZero = {0, 1};
  if (limit <= 0) return ratZero;
  std::int32_t const sign = x < 0 ? -1 : 1;
  if (x < 0) x = -x;
  SK_Time const tiny = {sign, AsUnsigned(limit)};

  if (x >= 1.0F) {
    bool const fits = x < 0x1p31F && static_cast<std::int32_t>(x) < limit;
    return fits ? Finish(StartAboveOne(x), limit, sign) : SK_Time{sign * limit, 1};
  }
  if (!(x > 0x1p-31F)) {
    bool const nearestIsTiny = x > 0x1p-32F && limit > static_cast<std::int32_t>(0.5 / static_cast<double>(x));
    return nearestIsTiny ? tiny : ratZero;
  }
  Expansion const start = StartBelowOne(x);
  if (AsSigned(start.q) < limit) return Finish(start, limit, sign);
  // Twice the largest limit wraps to a negative number, so nothing is near enough to it.
  return WrapMul(2, limit) > AsSigned(start.q) ? tiny : ratZero;
}

void Mul32(std::uint32_t a, std::uint32_t b, std::uint32_t* high, std::uint32_t* low) {
  constexpr std::uint32_t kLowHalf = 0xFFFF;
  std::uint32_t const lowLow = (a & kLowHalf) * (b & kLowHalf);
  std::uint32_t const highHigh = (a >> 16U) * (b >> 16U);
  std::uint32_t const highLow = (a >> 16U) * (b & kLowHalf);
  std::uint32_t const lowHigh = (a & kLowHalf) * (b >> 16U);
  std::uint32_t const sum = (lowLow >> 16U) + (highLow & kLowHalf) + (lowHigh & kLowHalf);
  *high = highHigh + (highLow >> 16U) + (lowHigh >> 16U) + (sum & kLowHalf);
  *low = lowLow & kLowHalf;
}

bool SK_UMulWouldOverflow(std::uint32_t a, std::uint32_t b) {
  return SK_LeadingZeros(AsSigned(a)) + SK_LeadingZeros(AsSigned(b)) <= 31;
}

bool SK_MulWouldOverflow(std::int32_t a, std::int32_t b) {
  return SK_LeadingZeros(AsSigned(Magnitude(a))) + SK_LeadingZeros(AsSigned(Magnitude(b))) <= 32;
}

bool SK_AddWouldOverflow(std::int32_t a, std::int32_t b) {
  if ((a >= 0) != (b >= 0)) return false;
  return (WrapAdd(a, b) >= 0) != (a >= 0);
}

std::int16_t SK_LeadingZeros(std::int32_t x) {
  std::uint32_t bits = AsUnsigned(x);
  int count = 0;
  for (unsigned const width : {16U, 8U, 4U}) {
    if (bits >> (32U - width) != 0) continue;
    count += static_cast<int>(width);
    bits <<= width;
  }
  return static_cast<std::int16_t>(count + SKp_G_lead_zeros[bits >> 28U]);
}

}  // namespace SK_NAMESPACE_INT
