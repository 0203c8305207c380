#include <immintrin.h>

#include "SK_NumberRun.h"
#include "SK_Prefetch.h"

namespace SK_NAMESPACE_INT {
namespace {

/// Bytes of one register, which holds a number with its quotes at the end.
constexpr std::uint64_t kWidth = 16;
/// The longest number: its digits are always an exact double, and so is the power of ten for its decimals.
constexpr std::uint64_t kLongestText = kWidth - 2;

/// Everything the loop compares with, for the 16 bytes that end in a number's closing quote.
struct WidePattern {
  alignas(kWidth) unsigned char fixed[kWidth] = {};      ///< quotes and point, where they stand
  alignas(kWidth) unsigned char fixedMask[kWidth] = {};  ///< which bytes these are
  alignas(kWidth) unsigned char digits[kWidth] = {};     ///< from which byte each of 16 digits comes; 0x80 for a zero
  double divisor = 1;
};

WidePattern PatternOf(SK_NumberRun const& run) {
  WidePattern pattern;
  std::uint64_t const begin = kWidth - 1 - run.textLength;
  std::uint64_t const firstDigit = begin + (run.layout.HasSign() ? 1 : 0);
  std::uint64_t const point = begin + run.layout.IntegerEnd();
  auto const fix = [&](std::uint64_t at, char byte) {
    pattern.fixed[at] = static_cast<unsigned char>(byte);
    pattern.fixedMask[at] = 0xFF;
  };
  fix(begin - 1, '"');
  fix(kWidth - 1, '"');
  if (point != kWidth - 1) {
    fix(point, '.');
  }
  std::uint64_t digit = kWidth;
  for (std::uint64_t at = kWidth - 1; at-- > firstDigit;) {
    if (at != point) {
      pattern.digits[--digit] = static_cast<unsigned char>(at);
    }
  }
  while (digit != 0) {
    pattern.digits[--digit] = 0x80;
  }
  pattern.divisor = run.layout.Divisor();
  return pattern;
}

inline __m128i Load(void const* bytes) {
  return _mm_loadu_si128(static_cast<__m128i const*>(bytes));
}

/// What the loop keeps in registers.
struct WideConstants {
  __m128i fixed;
  __m128i fixedMask;
  __m128i digits;
  double divisor;
};

/// The number whose closing quote stands at `last`, without its sign. `wrong` becomes other than 0 when it is not in
/// the layout.
__attribute__((target("sse4.1"), always_inline)) inline double ReadWide(WideConstants const& constants,
                                                                        char const* last, __m128i& wrong) {
  __m128i const bytes = Load(last - (kWidth - 1));
  __m128i const difference = _mm_and_si128(_mm_xor_si128(bytes, constants.fixed), constants.fixedMask);
  __m128i const digits = _mm_shuffle_epi8(_mm_sub_epi8(bytes, _mm_set1_epi8('0')), constants.digits);
  wrong = _mm_or_si128(wrong, _mm_or_si128(difference, _mm_subs_epu8(digits, _mm_set1_epi8(9))));
  // Pairs of digits, then four, then eight of them as one number.
  __m128i const pairs = _mm_maddubs_epi16(digits, _mm_set1_epi16(0x010A));
  __m128i const fours = _mm_madd_epi16(pairs, _mm_set1_epi32(0x00010064));
  __m128i const eights = _mm_madd_epi16(_mm_packus_epi32(fours, fours), _mm_set1_epi32(0x00012710));
  auto const halves = static_cast<std::uint64_t>(_mm_cvtsi128_si64(eights));
  std::uint64_t const mantissa = (halves & 0xFFFFFFFFU) * 100000000 + (halves >> 32U);
  return static_cast<double>(static_cast<std::int64_t>(mantissa)) / constants.divisor;
}

/// Signs are as good as random: nothing here branches on them.
template <bool kHasSign>
__attribute__((target("sse4.1"))) std::uint64_t DecodeWide(SK_NumberRun const& run, char const* first,
                                                           std::uint64_t most, double* out) {
  WidePattern const pattern = PatternOf(run);
  WideConstants const constants = {Load(pattern.fixed), Load(pattern.fixedMask), Load(pattern.digits), pattern.divisor};
  SK_SampleFrame const frame = run.frame;
  double const signs[] = {1.0, -1.0};
  std::uint64_t const bracket = run.isArray ? 1 : 0;
  std::uint64_t const lastOffset = frame.valueOffset + bracket + run.textLength + 1;
  std::uint64_t const numberStep = run.textLength + 3;
  std::uint64_t const count = run.count;
  std::uint64_t taken = 0;
  for (; taken != most; ++taken) {
    char const* const sample = first + taken * run.step;
    PrefetchAhead(sample, static_cast<std::ptrdiff_t>(run.step), run.end);
    if (!frame.Fits(sample)) {
      break;
    }
    std::uint64_t wrongBytes = run.isArray && sample[frame.valueOffset] != '[' ? 1 : 0;
    __m128i wrong = _mm_setzero_si128();
    char const* last = sample + lastOffset;
    for (std::uint64_t i = 0; i != count; ++i, last += numberStep) {
      double number = ReadWide(constants, last, wrong);
      if constexpr (kHasSign) {
        char const sign = last[-static_cast<std::ptrdiff_t>(run.textLength)];
        bool const negative = sign == '-';
        wrongBytes |= static_cast<std::uint64_t>((sign != '+') & !negative);
        number *= signs[negative];
      }
      *out++ = number;
      wrongBytes |= static_cast<std::uint64_t>(i + 1 != count && last[1] != ',');
    }
    if (wrongBytes != 0 || !_mm_testz_si128(wrong, wrong)) {
      break;
    }
  }
  return taken;
}

}  // namespace

SK_NumberDecoder FindWideNumberDecoder(SK_NumberRun const& run) {
  // The first register of the first number must not begin in front of the sample.
  bool const fits = run.textLength <= kLongestText && run.frame.valueOffset + run.textLength + 2 >= kWidth;
  if (!fits || !__builtin_cpu_supports("sse4.1")) {
    return nullptr;
  }
  return run.layout.HasSign() ? DecodeWide<true> : DecodeWide<false>;
}

}  // namespace SK_NAMESPACE_INT
