#include <immintrin.h>

#include "SK_WhiteSpaceFilterBlocks.h"
#include "SK_WhiteSpaceFilter_x86.h"

namespace SK_NAMESPACE_INT {
namespace {

/// For each set of kept bytes out of 8: the numbers of those bytes, one to a byte, the first lowest.
struct KeptOrders {
  constexpr KeptOrders() : byKeep() {
    for (unsigned keep = 0; keep < 256; ++keep) {
      int shift = 0;
      for (std::uint64_t i = 0; i < 8; ++i) {
        if ((keep >> i) & 1) {
          byKeep[keep] |= i << shift;
          shift += 8;
        }
      }
    }
  }

  std::uint64_t byKeep[256];
};

constexpr KeptOrders kOrders;

inline std::uint64_t CountBitsPerByte(std::uint64_t mask) {
  mask -= (mask >> 1) & 0x5555555555555555;
  mask = (mask & 0x3333333333333333) + ((mask >> 2) & 0x3333333333333333);
  return (mask + (mask >> 4)) & 0x0F0F0F0F0F0F0F0F;
}

class Block {
 public:
  explicit Block(char const* p)
      : mLow(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(p))),
        mHigh(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(p + 32))) {}

  std::uint64_t White() const {
    // Each of the four stands at the place of its lower half; a byte is one of them if it finds itself there.
    __m256i const table =
        _mm256_broadcastsi128_si256(_mm_setr_epi8(' ', 0, 0, 0, 0, 0, 0, 0, 0, '\t', '\n', 0, 0, '\r', 0, 0));
    return Mask(_mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, mLow), mLow),
                _mm256_cmpeq_epi8(_mm256_shuffle_epi8(table, mHigh), mHigh));
  }
  std::uint64_t Space() const { return Equal(' '); }
  std::uint64_t Quote() const { return Equal('"'); }
  std::uint64_t Open() const { return Equal('['); }
  std::uint64_t Close() const { return Equal(']'); }

  void StoreAll(char* out) const {
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), mLow);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + 32), mHigh);
  }
  char* StoreKept(char* out, std::uint64_t keep) const {
    // Byte i of `behind` is the number of bytes kept in the words 0 to i.
    std::uint64_t const behind = CountBitsPerByte(keep) * 0x0101010101010101;
    std::uint64_t const before = behind << 8;
    __m128i const quarters[] = {_mm256_castsi256_si128(mLow), _mm256_extracti128_si256(mLow, 1),
                                _mm256_castsi256_si128(mHigh), _mm256_extracti128_si256(mHigh, 1)};
    for (int i = 0; i < 4; ++i) {
      StoreKeptWord(out, quarters[i], keep, before, 16 * i);
      StoreKeptWord(out, _mm_srli_si128(quarters[i], 8), keep, before, 16 * i + 8);
    }
    return out + (behind >> 56);
  }

 private:
  /// Stores the kept ones of the 8 bytes whose bits begin at `bit` of `keep`.
  static void StoreKeptWord(char* out, __m128i word, std::uint64_t keep, std::uint64_t before, int bit) {
    __m128i const order = _mm_loadl_epi64(reinterpret_cast<__m128i const*>(kOrders.byKeep + ((keep >> bit) & 0xFF)));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + ((before >> bit) & 0xFF)), _mm_shuffle_epi8(word, order));
  }

  static std::uint64_t Mask(__m256i low, __m256i high) {
    return static_cast<std::uint32_t>(_mm256_movemask_epi8(low)) |
           static_cast<std::uint64_t>(static_cast<std::uint32_t>(_mm256_movemask_epi8(high))) << 32;
  }
  std::uint64_t Equal(char c) const {
    __m256i const wanted = _mm256_set1_epi8(c);
    return Mask(_mm256_cmpeq_epi8(mLow, wanted), _mm256_cmpeq_epi8(mHigh, wanted));
  }

  __m256i mLow;
  __m256i mHigh;
};

}  // namespace

SK_FilterResult FilterAVX2(char const* p, char const* end, char* out, SK_FilterState& state) {
  SK_FilterResult const blocks = FilterBlocks<Block>(p, end, out, state);
  return FilterBytes(blocks.in, end, blocks.out, state);
}

}  // namespace SK_NAMESPACE_INT
