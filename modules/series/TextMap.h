/// Where cells and digits end in a text.
#pragma once

#include <string_view>
#include <vector>

#include "EightBytes.h"

namespace senmark_series {

/// A bit for each byte of a text, in the order of the bytes.
class TextMap {
 public:
  /// So many bytes a word of bits tells of, at least.
  static constexpr std::size_t kWindow = 57;

  explicit TextMap(char delimiter) : mDelimiter(delimiter) {}

  static bool IsStop(char character, char delimiter) {
    return (character == delimiter) | (static_cast<unsigned char>(character) <= '\r');
  }

  /// Looks through the text, which the map tells of as long as it stays where it is.
  void mark(std::string_view text);

  /// Where to look: small enough for the registers of a loop. Valid until the next `mark`.
  ///
  /// `p` is in the text or at its end, and has the lowest bit. Behind the text there are none.
  class View {
   public:
    /// Delimiters, and all that is no greater than the ends of lines: some control characters, tabs among them.
    std::uint64_t stopsFrom(char const* p) const { return From(mStops, p); }
    std::uint64_t nonDigitsFrom(char const* p) const { return From(mNonDigits, p); }

   private:
    friend class TextMap;
    View(char const* text, char const* stops, char const* nonDigits)
        : mText(text), mStops(stops), mNonDigits(nonDigits) {}
    std::uint64_t From(char const* bits, char const* p) const {
      auto const position = static_cast<std::size_t>(p - mText);
      return LoadEight(bits + position / 8) >> position % 8;
    }

    char const* mText;
    char const* mStops;
    char const* mNonDigits;
  };
  View view() const { return {mText, mStops.data(), mNonDigits.data()}; }

 private:
  using Bits = std::vector<char>;

  char mDelimiter;
  char const* mText = nullptr;
  // With eight bytes behind, so that the last one can be loaded.
  Bits mStops;
  Bits mNonDigits;
};

}  // namespace senmark_series
