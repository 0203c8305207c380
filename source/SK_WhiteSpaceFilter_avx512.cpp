#include <immintrin.h>

#include "SK_WhiteSpaceFilterBlocks.h"
#include "SK_WhiteSpaceFilter_x86.h"

namespace SK_NAMESPACE_INT {
namespace {

class Block {
 public:
  explicit Block(char const* p) : mBytes(_mm512_loadu_si512(p)) {}

  std::uint64_t White() const {
    // Each of the four stands at the place of its lower half; a byte is one of them if it finds itself there.
    __m512i const table = _mm512_set4_epi32(0x00000D00, 0x000A0900, 0, 0x20);
    return _mm512_cmpeq_epi8_mask(_mm512_shuffle_epi8(table, mBytes), mBytes);
  }
  std::uint64_t Space() const { return Equal(' '); }
  std::uint64_t Quote() const { return Equal('"'); }
  std::uint64_t Open() const { return Equal('['); }
  std::uint64_t Close() const { return Equal(']'); }

  void StoreAll(char* out) const { _mm512_storeu_si512(out, mBytes); }
  char* StoreKept(char* out, std::uint64_t keep) const {
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(keep, mBytes));
    return out + CountBits(keep);
  }

 private:
  std::uint64_t Equal(char c) const { return _mm512_cmpeq_epi8_mask(mBytes, _mm512_set1_epi8(c)); }

  __m512i mBytes;
};

}  // namespace

SK_FilterResult FilterAVX512(char const* p, char const* end, char* out, SK_FilterState& state) {
  SK_FilterResult const blocks = FilterBlocks<Block>(p, end, out, state);
  return FilterBytes(blocks.in, end, blocks.out, state);
}

}  // namespace SK_NAMESPACE_INT
