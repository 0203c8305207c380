/// The decimal text of a count, behind another text or alone, for names that are made by the million.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace ns_sensor {

class SK_CountText {
 public:
  explicit SK_CountText(std::uint64_t count) : SK_CountText("", count) {}
  /// The literal in front has at most `kLongestPrefix` characters.
  template <std::size_t N>
  SK_CountText(char const (&prefix)[N], std::uint64_t count) {
    static_assert(N - 1 <= kLongestPrefix);
    std::memcpy(mText, prefix, N - 1);
    mSize = static_cast<std::size_t>(std::to_chars(mText + N - 1, mText + sizeof(mText), count).ptr - mText);
  }

  std::string_view View() const { return std::string_view(mText, mSize); }

 private:
  static constexpr std::size_t kLongestPrefix = 12;
  static constexpr std::size_t kMostDigits = 20;

  char mText[kLongestPrefix + kMostDigits];
  std::size_t mSize;
};

}  // namespace ns_sensor
