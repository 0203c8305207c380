/// Numbers as the writer prints them: fast, without a locale, and always the text that a stream with sixteen
/// significant digits gives, less the zeroes behind its point.
#pragma once

#include <cstddef>
#include <string_view>

namespace SK_PLUGIN {

/// The text of one number, which lives in this object.
class SK_WriterNumberText {
 public:
  explicit SK_WriterNumberText(double value);

  std::string_view View() const { return std::string_view(mText, mLength); }

 private:
  /// A sign, sixteen digits, a point, up to four zeroes in front of them and an exponent with its sign.
  static constexpr std::size_t kCapacity = 32;

  char mText[kCapacity];
  std::size_t mLength;
};

}  // namespace SK_PLUGIN
