#include "SVLine.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
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

std::size_t FindSpecial(SVUnitInput::Text text) {
  return static_cast<std::size_t>(std::find_if(text.begin(), text.end(), IsSpecial<unsigned short>) - text.begin());
}

/// Appends what stands in front of the first character that `find` finds, takes that one as well and gives
/// it; the input's `kEnd` without one.
template <typename Input, typename Text, typename Find>
int TakeUpTo(Input& input, Text& line, Find find) {
  for (auto window = input.Window(); !window.empty(); window = input.Window()) {
    std::size_t const count = find(window);
    line.append(window.data(), count);
    input.Skip(count);
    if (count != window.size()) {
      return input.Get();
    }
  }
  return Input::kEnd;
}

template <typename Input, typename Text>
int TakePlain(Input& input, Text& line) {
  return TakeUpTo(input, line, [](auto window) { return FindSpecial(window); });
}

/// Appends up to the next quote and the quote; false if there is none.
template <typename Input, typename Text>
bool TakeThroughQuote(Input& input, Text& line) {
  if (TakeUpTo(input, line, [](auto window) { return std::min(window.find(kQuote), window.size()); }) != kQuote) {
    return false;
  }
  line += kQuote;
  return true;
}

/// Appends the rest of a quotation, whose first quote has been taken, with its quotes as they stand.
template <typename Input, typename Text>
void processQuote(Input& input, Text& line) {
  while (TakeThroughQuote(input, line) && input.Peek() == kQuote) {
    // What looked like a quote may be another unit in a little-endian file.
    line += static_cast<typename Text::value_type>(input.Get());
  }
}

void DropByteOrderMarks(std::string& /*line*/, std::size_t /*from*/) {}

void DropByteOrderMarks(SK_UnicodeUtils::UTF16String& line, std::size_t from) {
  auto const isMark = [](int unit) { return unit == kByteOrderMark || unit == kSwappedByteOrderMark; };
  line.erase(std::remove_if(line.begin() + static_cast<std::ptrdiff_t>(from), line.end(), isMark), line.end());
}

template <typename Input, typename Text>
void AppendLine(Input& input, Text& line) {
  for (;;) {
    std::size_t const plainStart = line.size();
    int const special = TakePlain(input, line);
    DropByteOrderMarks(line, plainStart);
    if (special == kLineFeed && input.Peek() == kCarriageReturn) {
      input.Get();
    }
    if (special != kQuote) {
      return;
    }
    line += kQuote;
    processQuote(input, line);
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
