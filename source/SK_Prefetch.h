/// Asking for memory in time. The text of a large file comes from far away, and no processor sees by itself what
/// will be wanted beyond the next page.
#pragma once

#include <cstddef>

namespace SK_NAMESPACE_INT {

inline constexpr std::ptrdiff_t kCacheLine = 64;

/// How far ahead of a reader its memory is asked for, in bytes: some hundred nanoseconds of reading.
inline constexpr std::ptrdiff_t kPrefetchDistance = 2048;

/// Asks for the line of memory that holds one byte, to be written to.
inline void PrefetchForWriting(void const* p) {
  __builtin_prefetch(p, 1);
}

/// Asks for the bytes from `p` to `end`.
inline void Prefetch(char const* p, char const* end) {
  for (; end - p > kCacheLine; p += kCacheLine) {
    __builtin_prefetch(p);
  }
  if (p < end) {
    __builtin_prefetch(p);
    __builtin_prefetch(end - 1);
  }
}

/// Asks for what a reader at `p` will want when it has come as far as `kPrefetchDistance`: `size` bytes, all of
/// them before `end`.
inline void PrefetchAhead(char const* p, std::ptrdiff_t size, char const* end) {
  if (end - p <= kPrefetchDistance + size) {
    return;
  }
  for (std::ptrdiff_t ahead = 0; ahead < size; ahead += kCacheLine) {
    __builtin_prefetch(p + kPrefetchDistance + ahead);
  }
}

}  // namespace SK_NAMESPACE_INT
