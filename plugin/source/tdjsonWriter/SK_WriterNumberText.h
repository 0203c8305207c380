/// Numbers as the writer prints them: fast, without a locale, and always the text that a stream with sixteen
/// significant digits gives, less the zeroes behind its point.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace SK_PLUGIN {

/// The text of one number, which lives in this object.
class SK_WriterNumberText {
 public:
  explicit SK_WriterNumberText(double value);

  /// No text is longer.
  static constexpr std::size_t kLongest = 24;

  std::string_view View() const { return std::string_view(mText, mLength); }

  /// Characters in front of the point, the sign left out, and behind it. Those of an exponent count with what they
  /// follow; where there is no point, all stand in front of it.
  std::size_t IntegerDigits() const { return mIntegerDigits; }
  std::size_t DecimalDigits() const { return mDecimalDigits; }

  /// Copies the text to where there is room for `kLongest` bytes, all of which may change, and gives its end there.
  char* CopyTo(char* out) const {
    std::memcpy(out, mText, kLongest);  // of a fixed length, which takes no call
    return out + mLength;
  }

 private:
  /// What is more than the longest text is for digits that are stored sixteen at once.
  static constexpr std::size_t kCapacity = kLongest + 16;

  /// start: behind the sign.
  void SetEnd(char const* start, char const* end, std::size_t integerDigits);
  char* WriteAnyNumber(char* out, std::uint64_t bits, double value);

  char mText[kCapacity];  // not cleared: only what was written is looked at
  std::size_t mLength;
  std::size_t mIntegerDigits;
  std::size_t mDecimalDigits;
};

}  // namespace SK_PLUGIN
