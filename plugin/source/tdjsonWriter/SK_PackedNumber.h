/// How a number waits for its commit: as an integer if it has at most eight decimals, else as its text. Both may stand
/// side by side, for no text begins with a byte that has its highest bit set.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_WriterNumberText.h"
#include "senmark/SK_Records.h"

namespace SK_PLUGIN {

/// A number with at most eight decimals.
struct SK_PackedNumber {
  std::uint64_t fixed = 0;  ///< 10^8 times the number without its sign, below 10^15
  bool isNegative = false;  ///< also of 0

  /// Whether `bytes` begin with such a number, and not with a text.
  static bool Begins(std::string_view bytes) {
    return !bytes.empty() && (static_cast<unsigned char>(bytes.front()) & kMark) != 0;
  }
  /// Takes the number that `bytes` begin with off them; all of them if they end within it, for a number of 0.
  static SK_PackedNumber Take(std::string_view& bytes) {
    using SK_NAMESPACE_INT::LoadFour;
    SK_PackedNumber number;
    unsigned const head = static_cast<unsigned char>(bytes.front());
    std::size_t const size = head & kSizeMask;
    if (size < kSmallest || bytes.size() <= size) {
      bytes = std::string_view();
      return number;
    }
    char const* const first = bytes.data() + 1;
    std::size_t const second = size - kSmallest;
    number.fixed = LoadFour(first) | std::uint64_t{LoadFour(first + second)} << (8 * second);
    number.isNegative = (head >> kNegativeBit & 1U) != 0;
    bytes.remove_prefix(1 + size);
    return number;
  }

  /// The writer's text of the number, in memory for `SK_WriterNumberText::kRoom` bytes.
  std::string_view CopyTextTo(char* out) const;

  // The first byte: the mark, the sign, and how many bytes of the integer follow, from the lowest on. Never fewer than
  // four, so that two times four of them, which may overlap, are all of it, and reading takes no decision.
  static constexpr unsigned kMark = 0x80;
  static constexpr unsigned kNegativeBit = 6;
  static constexpr unsigned kSizeMask = 7;
  static constexpr std::size_t kSmallest = 4;
};

/// Stores the number to where there is room for `SK_WriterNumberText::kRoom` bytes, all of which may change, and gives
/// its end there. Raises the digit counts of the pattern to what the number's text needs if they are automatic; its
/// sign counts in any case.
char* PackNumber(char* out, double value, ns_sensor::SK_NumberPattern& pattern, bool automatic);

}  // namespace SK_PLUGIN
