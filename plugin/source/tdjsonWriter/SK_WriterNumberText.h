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
  /// The longest text has 24 characters; the rest is for digits that are stored sixteen at once.
  static constexpr std::size_t kCapacity = 40;

  char mText[kCapacity];
  std::size_t mLength;
};

}  // namespace SK_PLUGIN
