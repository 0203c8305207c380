#include "SVLine.h"

#include <cstdint>
#include <cstring>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_InputBytes.h"
#include "SK_UnicodeUtils.h"
#include "SVUnitInput.h"

namespace ns_sensor {

namespace {

constexpr char kQuote = '"';
constexpr char kLineFeed = '\n';
constexpr char kCarriageReturn = '\r';

constexpr int kByteOrderMark = 0xFEFF;
constexpr int kSwappedByteOrderMark = 0xFFFE;

template <typename Character>
bool IsSpecial(Character character) {
  return character == kQuote || character == kLineFeed || character == kCarriageReturn;
}

/// Where the first quote, LF or CR stands; the size of the text without one.
std::size_t FindSpecial(std::string_view text) {
  using namespace SK_NAMESPACE_INT;
  std::size_t position = 0;
  for (; text.size() - position >= sizeof(std::uint64_t); position += sizeof(std::uint64_t)) {
    std::uint64_t const bytes = LoadEight(text.data() + position);
    std::uint64_t const found = AnyBelow(bytes ^ (kEveryByte * kQuote), 1) |
                                AnyBelow(bytes ^ (kEveryByte * kLineFeed), 1) |
                                AnyBelow(bytes ^ (kEveryByte * kCarriageReturn), 1);
    if (found != 0) {
      return position + static_cast<std::size_t>(__builtin_ctzll(found)) / 8;
    }
  }
  while (position != text.size() && !IsSpecial(text[position])) {
    ++position;
  }
  return position;
}

/// Appends the bytes in front of the first that `find` finds in a window, takes that one as well and gives
/// it; the input's `kEnd` without one.
template <typename Find>
int TakeUpTo(SK_InputBytes& input, std::string& line, Find find) {
  for (std::string_view window = input.Window(); !window.empty(); window = input.Window()) {
    std::size_t const count = find(window);
    line.append(window.data(), count);
    input.Skip(count);
    if (count != window.size()) {
      return input.Get();
    }
  }
  return SK_InputBytes::kEnd;
}

/// Appends up to the next quote, LF or CR, which is taken as well and is the result.
int TakePlain(SK_InputBytes& input, std::string& line) {
  return TakeUpTo(input, line, FindSpecial);
}

int TakePlain(SVUnitInput& input, SK_UnicodeUtils::UTF16String& line) {
  for (;;) {
    int const unit = input.Get();
    if (unit == SVUnitInput::kEnd || IsSpecial(unit)) {
      return unit;
    }
    if (unit != kByteOrderMark && unit != kSwappedByteOrderMark) {
      line += static_cast<unsigned short>(unit);
    }
  }
}

/// Appends up to the next quote and the quote; false if there is none.
bool TakeThroughQuote(SK_InputBytes& input, std::string& line) {
  auto const findQuote = [](std::string_view window) {
    void const* const quote = std::memchr(window.data(), kQuote, window.size());
    return quote == nullptr ? window.size() : static_cast<std::size_t>(static_cast<char const*>(quote) - window.data());
  };
  bool const isFound = TakeUpTo(input, line, findQuote) == kQuote;
  if (isFound) {
    line += kQuote;
  }
  return isFound;
}

bool TakeThroughQuote(SVUnitInput& input, SK_UnicodeUtils::UTF16String& line) {
  for (;;) {
    int const unit = input.Get();
    if (unit == SVUnitInput::kEnd) {
      return false;
    }
    line += static_cast<unsigned short>(unit);
    if (unit == kQuote) {
      return true;
    }
  }
}

/// Appends the rest of a quotation, whose first quote has been taken, with its quotes as they stand.
template <typename Input, typename Text>
void processQuote(Input& input, Text& line) {
  while (TakeThroughQuote(input, line) && input.Peek() == kQuote) {
    // What looked like a quote may be another unit in a little-endian file.
    line += static_cast<typename Text::value_type>(input.Get());
  }
}

template <typename Input, typename Text>
void AppendLine(Input& input, Text& line) {
  for (;;) {
    switch (TakePlain(input, line)) {
      case kQuote:
        line += kQuote;
        processQuote(input, line);
        break;
      case kLineFeed:
        if (input.Peek() == kCarriageReturn) {
          input.Get();
        }
        return;
      default:
        return;
    }
  }
}

}  // namespace

void GetMBLine(SK_InputBytes& input, std::string& line) {
  line.clear();
  AppendLine(input, line);
}

void GetWCLine(SVUnitInput& input, std::string& line) {
  SK_UnicodeUtils::UTF16String units;
  AppendLine(input, units);
  SK_UnicodeUtils::FromUTF16Native(units.data(), units.size(), &line);
}

}  // namespace ns_sensor
