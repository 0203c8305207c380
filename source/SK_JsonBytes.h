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

/// A byte that surely is no blank; below it some are none either.
inline bool IsAboveJsonBlanks(char byte) {
  return static_cast<unsigned char>(byte) > ' ';
}

inline bool IsJsonDigit(char byte) {
  return byte >= '0' && byte <= '9';
}

/// False at `end`.
inline bool PeekIs(char const* p, char const* end, char byte) {
  return p < end && *p == byte;
}

#if defined(__SSE2__)
/// One bit for each of the sixteen bytes at `p` that `IsJsonStringStop`, the first byte lowest.
inline unsigned MarkJsonStringStops(char const* p) {
  __m128i const lastControl = _mm_set1_epi8(31);
  __m128i const block = _mm_loadu_si128(reinterpret_cast<__m128i const*>(p));
  __m128i const isControl = _mm_cmpeq_epi8(_mm_max_epu8(block, lastControl), lastControl);
  __m128i const isQuote = _mm_cmpeq_epi8(block, _mm_set1_epi8('"'));
  __m128i const isBackslash = _mm_cmpeq_epi8(block, _mm_set1_epi8('\\'));
  return static_cast<unsigned>(_mm_movemask_epi8(_mm_or_si128(isControl, _mm_or_si128(isQuote, isBackslash))));
}
#endif

/// First position from `p` on with a byte that `IsJsonStringStop`, or `end`.
inline char const* FindJsonStringStop(char const* p, char const* end) {
#if defined(__SSE2__)
  for (; end - p >= 16; p += 16) {
    if (unsigned const stops = MarkJsonStringStops(p); stops != 0) {
      return p + __builtin_ctz(stops);
    }
  }
#endif
  while (p < end && !IsJsonStringStop(*p)) {
    ++p;
  }
  return p;
}

/// The same as `SkipJsonBlanks`, for longer runs.
char const* SkipJsonBlankRun(char const* p, char const* end);

/// First position from `p` on with a byte that is no `IsJsonBlank`, or `end`.
inline char const* SkipJsonBlanks(char const* p, char const* end) {
  // Compact text has no blanks, and formatted text has mostly one where it has no line break.
  if (p < end && IsAboveJsonBlanks(*p)) {
    return p;
  }
  if (end - p > 1 && *p == ' ' && IsAboveJsonBlanks(p[1])) {
    return p + 1;
  }
  return SkipJsonBlankRun(p, end);
}

}  // namespace SK_NAMESPACE_INT
