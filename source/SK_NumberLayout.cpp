#include "SK_NumberLayout.h"

#include <algorithm>

namespace SK_NAMESPACE_INT {
namespace {

constexpr std::array<double, 23> kExactPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                      1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                      1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

}  // namespace

bool SK_NumberLayout::Learn(std::string_view text) {
  mLength = text.size();
  mHasSign = !text.empty() && (text[0] == '+' || text[0] == '-');
  std::size_t const point = std::min(text.find('.'), text.size());
  if (point < text.size() && point + 1 == text.size()) {
    return false;
  }
  std::size_t const integerDigits = point - mHasSign;
  std::size_t const decimals = point < text.size() ? text.size() - point - 1 : 0;
  if (integerDigits > kChunk || decimals > std::size_t{kChunk} * kMostDecimalChunks || integerDigits + decimals == 0) {
    return false;
  }
  mIntegerEnd = point;
  mIntegerMask = MaskOfLast(static_cast<unsigned>(integerDigits));
  mDecimalChunks = static_cast<unsigned>((decimals + kChunk - 1) / kChunk);
  auto const lastDigits = static_cast<unsigned>(decimals - (mDecimalChunks == 0 ? 0 : (mDecimalChunks - 1) * kChunk));
  mLastChunkMask = MaskOfLast(lastDigits);
  mLastChunkScale = static_cast<std::uint64_t>(kExactPowersOfTen[lastDigits]);
  mLastChunkLimit = kLargestExact / mLastChunkScale;
  mDivisor = decimals < kExactPowersOfTen.size() ? kExactPowersOfTen[decimals] : 0;
  return true;
}

}  // namespace SK_NAMESPACE_INT
