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
  /// Characters in front of the point, the sign left out, and behind it. Those of an exponent count with what they
  /// follow; where there is no point, all stand in front of it.
  struct Digits {
    std::size_t integer = 0;
    std::size_t decimal = 0;
  };

  explicit SK_WriterNumberText(double value)
      : mLength(static_cast<std::size_t>(Write(mText, value, mDigits) - mText)) {}

  /// No text is longer.
  static constexpr std::size_t kLongest = 24;
  /// What is more than the longest text is for digits that are stored sixteen at once.
  static constexpr std::size_t kRoom = kLongest + 16;

  /// Writes the text to where there is room for `kRoom` bytes, all of which may change, and gives its end there.
  static char* Write(char* out, double value, Digits& digits);
  /// The same for an integer of `ToFixed`.
  static char* WriteFixed(char* out, std::uint64_t fixed);

  /// Decimals of an integer of `ToFine`.
  static constexpr unsigned kFineDecimals = 15;
  /// The integer whose text, as one of a number with fifteen decimals, is that of a number but for zeroes at the end.
  /// It is below 10^18. bits: of the number, a double, with the sign bit clear, that `ToFixed` has no integer for.
  /// False if there is none.
  static bool ToFine(std::uint64_t bits, std::uint64_t& fine);
  /// The text for it.
  static char* WriteFine(char* out, std::uint64_t fine);

  std::string_view View() const { return std::string_view(mText, mLength); }
  Digits const& Counts() const { return mDigits; }

  /// Copies the text to where there is room for `kLongest` bytes, all of which may change, and gives its end there.
  char* CopyTo(char* out) const {
    std::memcpy(out, mText, kLongest);  // of a fixed length, which takes no call
    return out + mLength;
  }

 private:
  char mText[kRoom];  // not cleared: only what was written is looked at
  Digits mDigits;
  std::size_t mLength;
};

}  // namespace SK_PLUGIN
