/// Times of samples that follow each other mostly differ in a few characters that stand together, so a sample that
/// waits for its commit keeps no more of its time than these.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace SK_PLUGIN {

/// One bit for each of 32 bytes that differ, the first byte lowest.
inline std::uint32_t DifferencesByteByByte(char const* a, char const* b) {
  std::uint32_t differences = 0;
  for (unsigned i = 0; i != 32; ++i) {
    differences |= (a[i] != b[i] ? 1U : 0U) << i;
  }
  return differences;
}

/// The same, as fast as the processor can.
inline std::uint32_t Differences(char const* a, char const* b) {
#if defined(__SSE2__)
  auto const equal = [&](std::size_t at) {
    __m128i const left = _mm_loadu_si128(reinterpret_cast<__m128i const*>(a + at));
    __m128i const right = _mm_loadu_si128(reinterpret_cast<__m128i const*>(b + at));
    return static_cast<std::uint32_t>(_mm_movemask_epi8(_mm_cmpeq_epi8(left, right)));
  };
  return ~(equal(0) | equal(16) << 16U);
#else
  return DifferencesByteByByte(a, b);
#endif
}

/// The last whole time, in the order of writing or, in another object, in that of reading. All times have one length.
/// The window of a time is where it differs from the last whole one; it has four characters. A time that differs in
/// more is kept whole.
class SK_TimeWindow {
 public:
  static constexpr std::size_t kSize = 4;  // bytes of a window
  /// The shortest and the longest times that have windows.
  static constexpr std::size_t kShortest = kSize;
  static constexpr std::size_t kLongest = 32;
  /// How far a time that is given is read: zeroes stand behind its end.
  static constexpr std::size_t kPadded = 2 * kLongest;
  /// How far what is stored is read, and may change while it is stored.
  static constexpr std::size_t kRoom = 1 + kLongest;

  /// There is no last time.
  void Reset(std::size_t length) {
    mLength = length;
    mLast = static_cast<unsigned>(length - kSize);
    std::memset(mWhole, 0, sizeof(mWhole));
  }

  /// Stores what is new in a time, and gives the end of it.
  char* Put(char* out, char const* time) {
    std::uint32_t const differences = Differences(time, mWhole);
    // Nowhere behind the last place of a window; that is where an equal time has its own.
    auto const at = static_cast<unsigned>(__builtin_ctz(differences | 1U << mLast));
    if (differences >> at >= 1U << kSize) {
      *out = kIsWhole;
      std::memcpy(out + 1, time, kLongest);
      std::memcpy(mWhole, time, kLongest);
      return out + 1 + mLength;
    }
    *out = static_cast<char>(at);
    std::memcpy(out + 1, time + at, kSize);
    return out + 1 + kSize;
  }

  /// Bytes of what begins with `first`. More than `kRoom` for what is none.
  std::size_t SizeOf(char first) const {
    return static_cast<unsigned char>(first) <= mLast ? 1 + kSize : first == kIsWhole ? 1 + mLength : kRoom + 1;
  }

  /// Reads what is new in a time, which has a size; `CopyTo` gives the time from then on.
  void Take(char const* stored) {
    std::memcpy(mWindow, stored + 1, kSize);
    mAt = static_cast<unsigned char>(*stored);
    if (*stored == kIsWhole) {
      std::memcpy(mWhole, stored + 1, kLongest);
      mAt = 0;
    }
  }

  /// The time that was taken last, to where there is room for `kLongest` bytes, all of which may change. Gives its end.
  char* CopyTo(char* out) const {
    std::memcpy(out, mWhole, kLongest);
    std::memcpy(out + mAt, mWindow, kSize);
    return out + mLength;
  }

 private:
  static constexpr char kIsWhole = '\x7F';

  char mWhole[kLongest] = {};  // while writing nothing but zeroes behind the end of the time
  char mWindow[kSize] = {};
  unsigned mAt = 0;
  unsigned mLast = 0;  // place for a window
  std::size_t mLength = 0;
};

}  // namespace SK_PLUGIN
