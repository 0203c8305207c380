#include "SK_TimeUtils.h"

#include <utility>

#include "SK_TimeInt.h"
#include "SK_TimeRatio.h"

namespace SK_NAMESPACE_INT {
namespace {

/// What every operation but the guarded sums gives for a zero scale. It is none of the library's codes.
constexpr int kZeroScale = 1;

bool HasZeroScale(SK_Time const& a, SK_Time const& b) {
  return a.scale == 0 || b.scale == 0;
}

/// Both operands in lowest terms. False, without a result, when one of them is no time.
bool ReduceBoth(SK_Time const& a, SK_Time const& b, SK_Time& reducedA, SK_Time& reducedB) {
  if (HasZeroScale(a, b)) return false;
  SK_TimeUtils::ReduceRatio(a, reducedA);
  SK_TimeUtils::ReduceRatio(b, reducedB);
  return true;
}

/// The sum, or the difference when `sign` is -1, of two fractions, not reduced and wrapping.
SK_Time CombineWrapping(SK_Time const& a, SK_Time const& b, std::int32_t sign) {
  std::int32_t const left = WrapMul(a.value, AsSigned(b.scale));
  std::int32_t const right = WrapMul(b.value, AsSigned(a.scale));
  return {WrapAdd(left, WrapMul(sign, right)), a.scale * b.scale};
}

double AsDouble(SK_Time const& time) {
  return static_cast<double>(time.value) / static_cast<double>(time.scale);
}

/// The product, not reduced. False, with `product` as it was, when it might overflow.
bool TryMultiply(SK_Time const& a, SK_Time const& b, SK_Time& product) {
  if (SK_UMulWouldOverflow(a.scale, b.scale)) return false;
  if (SK_MulWouldOverflow(a.value, b.value)) return false;
  product = {WrapMul(a.value, b.value), a.scale * b.scale};
  return true;
}

/// Cancels what the factors of a product have in common, within each and across the two. Gives whether
/// there was anything.
bool CrossReduce(SK_Time& a, SK_Time& b) {
  std::uint8_t changes[4] = {};
  SK_TimeUtils::ReduceRatio2(&a, &a, &changes[0]);
  SK_TimeUtils::ReduceRatio2(&b, &b, &changes[1]);
  std::swap(a.value, b.value);
  SK_TimeUtils::ReduceRatio2(&a, &a, &changes[2]);
  SK_TimeUtils::ReduceRatio2(&b, &b, &changes[3]);
  return (changes[0] | changes[1] | changes[2] | changes[3]) != 0;
}

}  // namespace

int SK_TimeUtils::SK_MulTime(SK_Time const& a, SK_Time const& b, SK_Time& result) {
  SK_Time reducedA;
  SK_Time reducedB;
  if (!ReduceBoth(a, b, reducedA, reducedB)) {
    result = {0, 1};
    return kZeroScale;
  }
  result.value = WrapMul(reducedA.value, reducedB.value);
  result.scale = result.value == 0 ? 1 : reducedA.scale * reducedB.scale;
  return ReduceRatio(result, result);
}

int SK_TimeUtils::SK_AddTime(SK_Time const& a, SK_Time const& b, SK_Time& result) {
  SK_Time reducedA;
  SK_Time reducedB;
  if (!ReduceBoth(a, b, reducedA, reducedB)) {
    result = {0, 1};
    return kZeroScale;
  }
  result = CombineWrapping(reducedA, reducedB, 1);
  return ReduceRatio(result, result);
}

int SK_TimeUtils::SK_SubTime(SK_Time const& a, SK_Time const& b, SK_Time& result) {
  SK_Time reducedA;
  SK_Time reducedB;
  if (!ReduceBoth(a, b, reducedA, reducedB)) {
    result = {0, 1};
    return kZeroScale;
  }
  result = CombineWrapping(reducedA, reducedB, -1);
  if (result.value == 0) result.scale = 1;
  return ReduceRatio(result, result);
}

int SK_TimeUtils::SK_MulTime2(SK_Time const* a, SK_Time const* b, SK_Time* result) {
  if (HasZeroScale(*a, *b)) {
    *result = {0, 0};
    return kZeroScale;
  }
  SK_Time const left = *a;
  SK_Time const right = *b;
  SK_Time reducedA = *a;
  SK_Time reducedB = *b;
  bool done = TryMultiply(reducedA, reducedB, *result);
  if (!done && CrossReduce(reducedA, reducedB)) done = TryMultiply(reducedA, reducedB, *result);
  if (!done) {
    std::uint8_t overflow = 0;
    SK_FpLong2Ratio(AsDouble(left) * AsDouble(right), result, &overflow);
  }
  return ReduceRatio(*result, *result);
}

int SK_TimeUtils::SK_AddTime2(SK_Time const* a, SK_Time const* b, SK_Time* result) {
  return SKp_CalcRatio(a, b, 0, result);
}

int SK_TimeUtils::SK_SubTime2(SK_Time const* a, SK_Time const* b, SK_Time* result) {
  return SKp_CalcRatio(a, b, 1, result);
}

int SK_TimeUtils::ReduceRatio(SK_Time const& in, SK_Time& out) {
  std::uint32_t divisor = 1;
  ComputeGCD(Magnitude(in.value), in.scale, divisor);
  // Unsigned also for a negative value: fixed behaviour, held by test ReduceRatioDividesNegativesUnsigned.
  out = {AsSigned(AsUnsigned(in.value) / divisor), in.scale / divisor};
  return 0;
}

int SK_TimeUtils::ReduceRatio2(SK_Time const* in, SK_Time* out, std::uint8_t* changed) {
  std::uint32_t divisor = 1;
  ComputeGCD(Magnitude(in->value), in->scale, divisor);
  // A divisor with its top bit set would be negative in the signed division, so none takes place.
  bool const divides = divisor != 1 && AsSigned(divisor) > 0;
  *out = divides ? SK_Time{in->value / AsSigned(divisor), in->scale / divisor} : *in;
  if (changed != nullptr) *changed = divisor != 1 ? 1 : 0;
  return 0;
}

int SK_TimeUtils::ComputeGCD(std::uint32_t a, std::uint32_t b, std::uint32_t& result) {
  if (b == 0) a = 1;
  while (b != 0) {
    std::uint32_t const remainder = a % b;
    a = b;
    b = remainder;
  }
  result = a;
  return 0;
}

std::uint16_t SK_TimeUtils::CalcDropFactor(std::int32_t nominalRate) {
  return nominalRate == 60 ? 2 : 1;
}

}  // namespace SK_NAMESPACE_INT
