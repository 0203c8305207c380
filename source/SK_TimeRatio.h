/// The steps behind the guarded operations of `SK_TimeUtils`: predicting overflow, and turning a double
/// into a fraction. For the time code and its tests only; everything else calls `SK_TimeUtils`.
#pragma once

#include <cstdint>

#include "senmark/SK_BasicRecords.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::SK_Time;

/// a + b, or a - b when `subtract` is not 0. 21 and 0/0 for a zero scale, else 0.
///
/// Never returns for an operand whose value and scale share a divisor of 2147483648 when the sum does
/// not fit: that operand counts as reduced anew on every try.
int SKp_CalcRatio(SK_Time const* a, SK_Time const* b, std::uint8_t subtract, SK_Time* result);

/// d         a finite number
/// overflow  receives 1 for a magnitude of 2147483648 or more, where the result is 0/0; else 0
///
/// The result is only as exact as a float, and saturates from 1073741824 on.
int SK_FpLong2Ratio(double d, SK_Time* result, std::uint8_t* overflow);

int Mp_Double2RatioSmart(double d, SK_Time* result);

/// The best fraction for x whose larger part is at most `limit`; 0/1 for a limit that is not positive.
SK_Time ratapprox(float x, std::int32_t limit);

/// A product in two halves that folds its carry into `high`. It is no true 64-bit product; the choice
/// between two equally good fractions is defined on it.
void Mul32(std::uint32_t a, std::uint32_t b, std::uint32_t* high, std::uint32_t* low);

/// Predictions from the lengths in bits. They are cautious: a product that just fits may be refused.
bool SK_UMulWouldOverflow(std::uint32_t a, std::uint32_t b);
bool SK_MulWouldOverflow(std::int32_t a, std::int32_t b);
bool SK_AddWouldOverflow(std::int32_t a, std::int32_t b);

/// Of the bit pattern: 32 for 0, 0 for a negative number.
std::int16_t SK_LeadingZeros(std::int32_t x);

}  // namespace SK_NAMESPACE_INT
