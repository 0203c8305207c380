/// Looking for the next byte that matters in a range of JSON text, sixteen bytes at a time where the
/// processor can. Nothing at or behind `end` is read.
#pragma once

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace SK_NAMESPACE_INT {

inline bool IsJsonBlank(char byte) {
  return byte == ' ' || byte == '\n' || byte == '\t' || byte == '\r';
}

/// A byte at which a run of plain characters in a string ends. Bytes from 128 up are plain.
inline bool IsJsonStringStop(char byte) {
  return byte == '"' || byte == '\\' || static_cast<unsigned char>(byte) < 32;
}

inline bool IsJsonDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// False at `end`.
inline bool PeekIs(char const* p, char const* end, char byte) {
  return p < end && *p == byte;
}

/// First position from `p` on with a byte that `IsJsonStringStop`, or `end`.
inline char const* FindJsonStringStop(char const* p, char const* end) {
#if defined(__SSE2__)
  __m128i const quote = _mm_set1_epi8('"');
  __m128i const backslash = _mm_set1_epi8('\\');
  __m128i const lastControl = _mm_set1_epi8(31);
  for (; end - p >= 16; p += 16) {
    __m128i const block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
    __m128i const isControl = _mm_cmpeq_epi8(_mm_max_epu8(block, lastControl), lastControl);
    __m128i const isMark = _mm_or_si128(_mm_cmpeq_epi8(block, quote), _mm_cmpeq_epi8(block, backslash));
    int const found = _mm_movemask_epi8(_mm_or_si128(isControl, isMark));
    if (found != 0) {
      return p + __builtin_ctz(static_cast<unsigned>(found));
    }
  }
#endif
  while (p < end && !IsJsonStringStop(*p)) {
    ++p;
  }
  return p;
}

/// First position from `p` on with a byte that is no `IsJsonBlank`, or `end`.
inline char const* SkipJsonBlanks(char const* p, char const* end) {
  if (p<end&& static_cast<unsigned char>(*p)> ' ') {
    return p;
  }
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
