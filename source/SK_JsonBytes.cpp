#include "SK_JsonBytes.h"

namespace SK_NAMESPACE_INT {

char const* SkipJsonBlankRun(char const* p, char const* end) {
#if defined(__SSE2__)
  __m128i const space = _mm_set1_epi8(' ');
  __m128i const lineFeed = _mm_set1_epi8('\n');
  __m128i const tab = _mm_set1_epi8('\t');
  __m128i const carriageReturn = _mm_set1_epi8('\r');
  for (; end - p >= 16; p += 16) {
    __m128i const block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
    __m128i const isSpaceOrTab = _mm_or_si128(_mm_cmpeq_epi8(block, space), _mm_cmpeq_epi8(block, tab));
    __m128i const isBreak = _mm_or_si128(_mm_cmpeq_epi8(block, lineFeed), _mm_cmpeq_epi8(block, carriageReturn));
    unsigned const blank = static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isSpaceOrTab, isBreak)));
    if (blank != 0xFFFF) {
      return p + __builtin_ctz(~blank);
    }
  }
#endif
  while (p < end && IsJsonBlank(*p)) {
    ++p;
  }
  return p;
}

}  // namespace SK_NAMESPACE_INT
