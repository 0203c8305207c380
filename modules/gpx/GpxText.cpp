#include "GpxText.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace senmark_gpx {

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kWhiteSpace = " \t\r\n";
  std::size_t const start = text.find_first_not_of(kWhiteSpace);
  if (start == std::string_view::npos) {
    return {};
  }
  return text.substr(start, text.find_last_not_of(kWhiteSpace) + 1 - start);
}

std::string_view CutText(std::string_view text, std::size_t longest) {
  if (text.size() <= longest) {
    return text;
  }
  // Bytes that go on with a character begin with the bits 10.
  while (longest != 0 && (static_cast<unsigned char>(text[longest]) & 0xC0) == 0x80) {
    --longest;
  }
  return text.substr(0, longest);
}

std::optional<double> ParseNumber(std::string_view text) {
  constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
  text = Trimmed(text);
  if (text.empty()) {
    return kNone;
  }
  bool const hasPlus = text.front() == '+';
  if (hasPlus) {
    text.remove_prefix(1);
  }
  if (text.empty() || (hasPlus && text.front() == '-')) {
    return std::nullopt;
  }
  double number = 0;
  char const* const end = text.data() + text.size();
  std::from_chars_result const result = std::from_chars(text.data(), end, number);
  if (result.ptr != end || result.ec != std::errc()) {
    return std::nullopt;
  }
  return std::isfinite(number) ? number : kNone;
}

std::optional<senmark::kit::Instant> ParseTime(std::string_view text) {
  return senmark::kit::ParseInstant(Trimmed(text));
}

}  // namespace senmark_gpx
