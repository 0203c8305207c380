#include "TextMap.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

#include <algorithm>
#include <array>
#include <limits>

#include "Ascii.h"

namespace senmark_series {

namespace {

constexpr std::size_t kBlock = 64;
/// 0 or -1.
using Flags = std::array<signed char, kBlock>;

/// A bit for each of the bytes.
void Gather(Flags const& flags, char* bits) {
#if defined(__SSE2__)
  for (std::size_t i = 0; i != kBlock; i += 16) {
    __m128i const sixteen = _mm_loadu_si128(reinterpret_cast<__m128i const*>(flags.data() + i));
    auto const gathered = static_cast<std::uint16_t>(_mm_movemask_epi8(sixteen));
    std::memcpy(bits + i / 8, &gathered, sizeof(gathered));
  }
#else
  constexpr std::uint64_t kOnes = 0x0101010101010101U;
  constexpr std::uint64_t kGather = 0x0102040810204080U;
  for (std::size_t i = 0; i != kBlock; i += 8) {
    std::uint64_t const eight = LoadEight(reinterpret_cast<char const*>(flags.data()) + i) & kOnes;
    bits[i / 8] = static_cast<char>(eight * kGather >> 56);
  }
#endif
}

/// Without branches, so that a compiler makes wide registers of the loops.
inline void MarkBlock(char const* text, char delimiter, char* stops, char* nonDigits) {
  Flags flags;
  for (std::size_t i = 0; i != kBlock; ++i) {
    flags[i] = static_cast<signed char>(TextMap::IsStop(text[i], delimiter) ? -1 : 0);
  }
  Gather(flags, stops);
  // Moved to the greatest of the signed bytes, so that wide registers know digits by one comparison.
  constexpr int kMove = std::numeric_limits<signed char>::max() - '9';
  for (std::size_t i = 0; i != kBlock; ++i) {
    flags[i] = static_cast<signed char>(static_cast<signed char>(text[i] + kMove) < '0' + kMove ? -1 : 0);
  }
  Gather(flags, nonDigits);
}

}  // namespace

void TextMap::mark(std::string_view text) {
  mText = text.data();
  std::size_t const whole = text.size() - text.size() % kBlock;
  std::size_t const size = (whole + kBlock) / 8 + sizeof(std::uint64_t);
  for (Bits* const bits : {&mStops, &mNonDigits}) {
    bits->resize(std::max(bits->size(), size));
    std::fill(bits->data() + whole / 8, bits->data() + size, '\0');
  }
  // Of their own, since what is written might be any of the members.
  char const delimiter = mDelimiter;
  char* const stops = mStops.data();
  char* const nonDigits = mNonDigits.data();
  for (std::size_t i = 0; i != whole; i += kBlock) {
    MarkBlock(text.data() + i, delimiter, stops + i / 8, nonDigits + i / 8);
  }
  for (std::size_t i = whole; i != text.size(); ++i) {
    mStops[i / 8] = static_cast<char>(mStops[i / 8] | (IsStop(text[i], mDelimiter) ? 1 : 0) << i % 8);
    mNonDigits[i / 8] = static_cast<char>(mNonDigits[i / 8] | (IsDigit(text[i]) ? 0 : 1) << i % 8);
  }
}

}  // namespace senmark_series
