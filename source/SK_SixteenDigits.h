/// The digits of two values at once: what stands in front of the point of a number and behind it.
#pragma once

#include <cstdint>

#include "SK_EightBytes.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace SK_NAMESPACE_INT {

/// Eight of each, as `DigitsOfValue` gives them.
struct SixteenDigits {
  std::uint64_t first;
  std::uint64_t last;
};

/// Both values are below 10^8.
inline SixteenDigits DigitsOneByOne(std::uint32_t first, std::uint32_t last) {
  return {DigitsOfValue(first), DigitsOfValue(last)};
}

/// The same, as fast as the processor can.
inline SixteenDigits DigitsOfBoth(std::uint32_t first, std::uint32_t last) {
#if defined(__SSE2__)
  // The steps of `DigitsOfValue`, side by side: halves, then pairs, then digits. A quotient is a product and a shift.
  __m128i const values = _mm_set_epi64x(last, first);
  __m128i const firstFour = _mm_srli_epi64(_mm_mul_epu32(values, _mm_set1_epi64x(0xD1B71759)), 45);
  __m128i const lastFour = _mm_sub_epi32(values, _mm_mul_epu32(firstFour, _mm_set1_epi64x(10000)));
  __m128i const fours = _mm_or_si128(firstFour, _mm_slli_epi64(lastFour, 32));
  __m128i const hundreds = _mm_srli_epi16(_mm_mulhi_epu16(fours, _mm_set1_epi32(5243)), 3);
  __m128i const belowHundred = _mm_sub_epi16(fours, _mm_mullo_epi16(hundreds, _mm_set1_epi32(100)));
  __m128i const twos = _mm_or_si128(hundreds, _mm_slli_epi32(belowHundred, 16));
  __m128i const tens = _mm_srli_epi16(_mm_mullo_epi16(twos, _mm_set1_epi16(103)), 10);
  __m128i const ones = _mm_sub_epi16(twos, _mm_mullo_epi16(tens, _mm_set1_epi16(10)));
  __m128i const digits = _mm_or_si128(tens, _mm_slli_epi16(ones, 8));
  return {static_cast<std::uint64_t>(_mm_cvtsi128_si64(digits)),
          static_cast<std::uint64_t>(_mm_cvtsi128_si64(_mm_unpackhi_epi64(digits, digits)))};
#else
  return DigitsOneByOne(first, last);
#endif
}

}  // namespace SK_NAMESPACE_INT
