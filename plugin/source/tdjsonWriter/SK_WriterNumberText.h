/// Numbers as the writer prints them: fast, without a locale, and always the text that a stream with sixteen
/// significant digits gives, less the zeroes behind its point.
#pragma once

#include <cstddef>
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

  /// Copies the text to where there is room for `kLongest` bytes, all of which may change, and gives its end there.
  char* CopyTo(char* out) const {
    std::memcpy(out, mText, kLongest);  // of a fixed length, which takes no call
    return out + mLength;
  }

 private:
  /// What is more than the longest text is for digits that are stored sixteen at once.
  static constexpr std::size_t kCapacity = kLongest + 16;

  char mText[kCapacity] = {};
  std::size_t mLength;
};

}  // namespace SK_PLUGIN
