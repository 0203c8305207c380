/// How the numbers of a sample set are written: a sign or none, digits, and a point at a fixed place. Once
/// that is known, a number takes a few loads and multiplications.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_NumberText.h"

namespace SK_NAMESPACE_INT {

class SK_NumberLayout {
 public:
  static constexpr unsigned kMostDecimalChunks = 3;

  /// Takes the layout from one number. False when it is of another kind or too long, with more than 8
  /// digits before the point or 24 behind it.
  bool Learn(std::string_view text);
  /// Decimals are read 8 at a time, from the left, and the rest of them as the last chunk: so many chunks.
  unsigned DecimalChunks() const { return mDecimalChunks; }
  bool HasSign() const { return mHasSign; }
  std::uint64_t IntegerEnd() const { return mIntegerEnd; }  ///< offset of the point, or the length without one
  double Divisor() const { return mDivisor; }  ///< 10 to the power of all decimals; 0 when that is no exact double

  /// The value of a number of this layout, the same double as `SK_NumberText::ToDouble` gives. False for a text
  /// that does not keep to the layout.
  ///
  /// kChunks  what `DecimalChunks()` gives.
  /// text     as long as the text that was learnt. The 8 bytes before it may be read too.
  template <unsigned kChunks>
  bool Read(char const* text, double& out) const;

 private:
  static constexpr unsigned kChunk = 8;
  static constexpr std::uint64_t kLargestExact = std::uint64_t{1} << 53U;  // integers up to here are doubles
  static constexpr std::uint64_t kFullScale = 100000000;

  template <unsigned kChunks>
  double Compose(std::uint64_t integer, std::array<std::uint64_t, kMostDecimalChunks> const& chunks, bool negative,
                 char const* digits) const;

  std::uint64_t mLength = 0;
  bool mHasSign = false;
  std::uint64_t mIntegerEnd = 0;   ///< offset of the first byte behind the integer digits
  std::uint64_t mIntegerMask = 0;  ///< which of the 8 bytes before that are digits
  unsigned mDecimalChunks = 0;
  std::uint64_t mLastChunkMask = 0;   ///< which of the last 8 bytes are digits of the last chunk
  std::uint64_t mLastChunkScale = 1;  ///< 10 to the power of its digits
  std::uint64_t mLastChunkLimit = 0;  ///< the largest number that may be multiplied with that
  double mDivisor = 1;                ///< 10 to the power of all decimals; 0 when that is no exact double
};

/// 10 to the power of 8 decimals for each chunk.
inline constexpr std::array<double, 3> kChunkDivisors = {1.0, 1e8, 1e16};

/// Integers up to 2 to the 53rd and powers of ten up to the 22nd are exact doubles, so their quotient is
/// rounded once and therefore right. Everything else goes the long way. Chunks of nothing but zeros at the
/// end are left out: they change the integer and the power, but not the quotient.
template <unsigned kChunks>
double SK_NumberLayout::Compose(std::uint64_t integer, std::array<std::uint64_t, kMostDecimalChunks> const& chunks,
                                bool negative, char const* digits) const {
  std::uint64_t mantissa = integer;
  unsigned used = kChunks;
  while (used > 1 && chunks[used - 1] == 0) {
    --used;
  }
  bool exact = true;
  for (unsigned i = 0; i < used; ++i) {
    std::uint64_t const scale = i + 1 == kChunks ? mLastChunkScale : kFullScale;
    exact = exact && mantissa <= (i + 1 == kChunks ? mLastChunkLimit : kLargestExact / kFullScale);
    mantissa = mantissa * scale + chunks[i];
  }
  double const divisor = used == kChunks ? mDivisor : kChunkDivisors[used];
  std::array<double, 2> const signs = {1.0, -1.0};
  if (exact && mantissa <= kLargestExact && divisor != 0) {
    return static_cast<double>(mantissa) * signs[negative] / divisor;
  }
  return SK_NumberText::PlainToDouble(digits, digits + (mLength - mHasSign)) * signs[negative];
}

template <unsigned kChunks>
bool SK_NumberLayout::Read(char const* text, double& out) const {
  // Signs are as good as random: nothing here may branch on them.
  bool const negative = *text == '-';
  bool const positive = *text == '+';
  char const* const integerEnd = text + mIntegerEnd;
  std::uint64_t const integer = DigitsIn(integerEnd - kChunk, mIntegerMask);
  std::uint64_t wrong = AnyAboveNine(integer) | static_cast<std::uint64_t>((negative | positive) != mHasSign);
  std::array<std::uint64_t, kMostDecimalChunks> chunks = {};
  if constexpr (kChunks != 0) {
    wrong |= *integerEnd == '.' ? 0U : 1U;
    for (unsigned i = 0; i + 1 < kChunks; ++i) {
      chunks[i] = DigitsIn(integerEnd + 1 + std::size_t{i} * kChunk, ~std::uint64_t{0});
      wrong |= AnyAboveNine(chunks[i]);
      chunks[i] = ValueOfDigits(chunks[i]);
    }
    std::uint64_t const last = DigitsIn(text + mLength - kChunk, mLastChunkMask);
    wrong |= AnyAboveNine(last);
    chunks[kChunks - 1] = ValueOfDigits(last);
  }
  if (wrong != 0) {
    return false;
  }
  out = Compose<kChunks>(ValueOfDigits(integer), chunks, negative, text + mHasSign);
  return true;
}

}  // namespace SK_NAMESPACE_INT
