#include "SerializerSample.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "SK_EightBytes.h"
#include "SK_FixedNumber.h"
#include "SK_PackedNumber.h"
#include "SK_SixteenDigits.h"
#include "SK_WriterNumberText.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::AnyBelow;
using SK_NAMESPACE_INT::CopyShortText;
using SK_NAMESPACE_INT::DigitsOfBoth;
using SK_NAMESPACE_INT::DigitsOfValue;
using SK_NAMESPACE_INT::kEveryByte;
using SK_NAMESPACE_INT::LoadEight;
using SK_NAMESPACE_INT::MaskOfLast;
using SK_NAMESPACE_INT::SixteenDigits;
using SK_NAMESPACE_INT::StoreEight;

/// How many bytes `used` lacks of `wanted`. More than a buffer takes is no memory, before sums of it wrap.
std::size_t Missing(std::size_t used, std::uint64_t wanted) {
  if (used >= wanted) {
    return 0;
  }
  if (wanted - used > SerializerBuffer::kLargestSize) {
    throw std::bad_alloc();
  }
  return static_cast<std::size_t>(wanted - used);
}

char* Fill(char* p, std::size_t count, char filler) {
  return std::fill_n(p, count, filler);
}

char* Copy(char* p, std::string_view text) {
  return std::copy(text.begin(), text.end(), p);
}

// Paddings are short, so that a call would cost more than what it does. This may change so many bytes behind what it
// writes.
constexpr std::size_t kBehind = 8;

char* FillShort(char* p, std::size_t count, char filler) {
  if (count > kBehind) {
    return Fill(p, count, filler);
  }
  StoreEight(p, kEveryByte * static_cast<unsigned char>(filler));
  return p + count;
}

/// A few dozen are what the texts of a set mostly lack.
char* FillSpaces(char* p, std::size_t count) {
  // Copied, for a compiler makes a slow instruction of a loop that stores.
  static char const spaces[] = "                                                                ";
  return count < sizeof(spaces) ? CopyShortText(p, std::string_view(spaces, count)) : Fill(p, count, ' ');
}

/// Where the character first stands; the size of the text if nowhere.
std::size_t Find(std::string_view text, char character) {
  std::uint64_t const wanted = kEveryByte * static_cast<unsigned char>(character);
  std::size_t at = 0;
  for (; text.size() - at >= 8; at += 8) {
    if (std::uint64_t const found = AnyBelow(LoadEight(text.data() + at) ^ wanted, 1)) {
      return at + static_cast<unsigned>(__builtin_ctzll(found)) / 8;
    }
  }
  while (at != text.size() && text[at] != character) {
    ++at;
  }
  return at;
}

template <std::size_t N>
char* CopyLiteral(char* p, char const (&literal)[N]) {
  std::memcpy(p, literal, N - 1);
  return p + (N - 1);
}

constexpr char kBeforeTime[] = R"({"time":")";
constexpr char kBeforeValue[] = R"(","value":)";

constexpr std::size_t TimeRoom(std::size_t timeSize) {
  return sizeof(kBeforeTime) - 1 + timeSize + sizeof(kBeforeValue) - 1;
}

char* CopyTime(char* p, std::string_view time) {
  return CopyLiteral(CopyShortText(CopyLiteral(p, kBeforeTime), time), kBeforeValue);
}

void AppendTime(SerializerBuffer& out, std::string_view time) {
  CopyTime(out.Grow(TimeRoom(time.size())), time);
}

constexpr std::uint64_t kZeroes = kEveryByte * '0';

/// What a number and its stores take behind each other: sign, digits, point, a quote, and what changes behind.
constexpr std::size_t kFieldRoom = 1 + NumberField::kMostIntegers + 1 + NumberField::kMostDecimals + 1 + kBehind;

/// The same as `DigitsOfValue` of a value below 1000, which is what most integer parts are.
std::uint64_t DigitsOfThree(std::uint32_t value) {
  std::uint32_t const hundreds = value * 41 >> 12U;
  std::uint32_t const rest = value - hundreds * 100;
  std::uint32_t const tens = rest * 103 >> 10U;
  return std::uint64_t{hundreds | tens << 8U | (rest - tens * 10) << 16U} << 40U;
}

/// The digits of a value below 10^8 as numbers; the lowest byte is the first.
std::uint64_t DigitsOfMostlyThree(std::uint32_t value) {
  return value < 1000 ? DigitsOfThree(value) : DigitsOfValue(value);
}

/// The digits of a packed number, as numbers; the lowest byte is the first.
struct PackedDigits {
  std::uint64_t integer;
  std::uint64_t decimals;
  std::uint64_t finer;  ///< the next decimals

  explicit PackedDigits(SK_PackedNumber const& number) {
    constexpr std::uint64_t kTenToEight = 100000000;
    if (number.isFine) {
      constexpr std::uint64_t kTenToSeven = kTenToEight / 10;
      std::uint64_t const first = number.fixed / kTenToSeven;
      std::uint64_t const last = (number.fixed - first * kTenToSeven) * 10;
      std::uint64_t const whole = first / kTenToEight;
      SixteenDigits const digits =
          DigitsOfBoth(static_cast<std::uint32_t>(first - whole * kTenToEight), static_cast<std::uint32_t>(last));
      integer = DigitsOfThree(static_cast<std::uint32_t>(whole));
      decimals = digits.first;
      finer = digits.last;
      return;
    }
    std::uint64_t const whole = number.fixed / kTenToEight;
    SixteenDigits const digits =
        DigitsOfBoth(static_cast<std::uint32_t>(whole), static_cast<std::uint32_t>(number.fixed - whole * kTenToEight));
    integer = digits.first;
    decimals = digits.last;
    finer = 0;
  }
};

/// To where there is room for it, with a narrow pattern in which the digits fit. Gives the end.
[[gnu::always_inline]] inline char* PutPadded(char* p, PackedDigits const& digits, bool isNegative,
                                              NumberField const& field) {
  static_assert('-' == '+' + 2, "so that it takes no decision");
  *p = static_cast<char>('+' + 2 * static_cast<unsigned>(isNegative));
  p += static_cast<unsigned>(field.pattern.isSigned) | static_cast<unsigned>(isNegative);
  StoreEight(p, (digits.integer | kZeroes) >> field.integerShift);
  p += field.pattern.digitsInteger;
  *p = '.';
  StoreEight(p + 1, digits.decimals | kZeroes);
  StoreEight(p + 1 + kFixedDecimals, digits.finer | kZeroes);
  StoreEight(p + 1 + kFixedDecimals + kFixedDecimals, kZeroes);
  return p + field.sizeBehind;
}

/// What stands around the number in a sample behind the first one of its set. With the base of the times in it, so that
/// for each sample it is copied as one piece, and the window over the base.
class NumberFrame {
 public:
  static constexpr char kBehind[] = "\"}";

  void SetBase(SK_TimeWindowReader const& times) {
    char* p = CopyLiteral(CopyLiteral(mFront, ","), kBeforeTime);
    mTimeAt = static_cast<std::size_t>(p - mFront);
    times.CopyBaseTo(p);
    p = CopyLiteral(CopyLiteral(p + times.Length(), kBeforeValue), "\"");
    mSize = static_cast<std::size_t>(p - mFront);
  }

  /// Up to the number, with a time's window as it is stored, to where there is room for `kRoom` bytes, all of which may
  /// change. Gives the end.
  char* Put(char* out, char const* window) const {
    std::memcpy(out, mFront, sizeof(mFront));
    SK_TimeWindowReader::CopyWindowTo(out + mTimeAt, window);
    return out + mSize;
  }

  static constexpr std::size_t kRoom = 1 + TimeRoom(SK_TimeWindow::kLongest) + 1;

 private:
  char mFront[kRoom] = {};
  std::size_t mTimeAt = 0;
  std::size_t mSize = 0;
};

/// The padded number, between quotes or as it is, and a comma in front of them if wanted.
template <bool kIsQuoted>
[[gnu::always_inline]] inline void AppendNumber(SerializerBuffer& out, std::string_view number,
                                                ns_sensor::SK_NumberPattern const& pattern, bool hasComma) {
  bool const isNegative = !number.empty() && number.front() == '-';
  std::string_view const digits = number.substr(isNegative ? 1 : 0);
  std::size_t const point = Find(digits, '.');
  bool const hasPoint = point != digits.size();
  std::size_t const digitsDecimal = hasPoint ? digits.size() - point - 1 : 0;
  bool const needsPoint = !hasPoint && pattern.digitsDecimal != 0;
  bool const needsPlus = pattern.isSigned && !isNegative;
  std::size_t const zeroesInFront = Missing(point, pattern.digitsInteger);
  std::size_t const zeroesBehind = Missing(digitsDecimal, pattern.digitsDecimal);

  std::size_t const size =
      (needsPlus ? 1u : 0u) + number.size() + zeroesInFront + (needsPoint ? 1u : 0u) + zeroesBehind;
  std::size_t const before = kIsQuoted ? (hasComma ? 2u : 1u) : 0u;
  std::size_t const sizeBefore = out.Size();
  // The quote behind the number finds its place in what is behind anyway.
  char* const start = out.Grow(before + size + kBehind);
  char* p = start;
  if (kIsQuoted) {
    *p = ',';
    p += hasComma ? 1 : 0;
    *p++ = '"';
  }
  *p = isNegative ? '-' : '+';
  p += needsPlus || isNegative ? 1 : 0;
  p = FillShort(p, zeroesInFront, '0');
  p = CopyShortText(p, digits);
  *p = '.';
  p += needsPoint ? 1 : 0;
  p = FillShort(p, zeroesBehind, '0');
  if (kIsQuoted) {
    *p++ = '"';
  }
  out.Truncate(sizeBefore + static_cast<std::size_t>(p - start));
}

/// The number that `value` begins with, packed or as a text up to a comma, which is taken off it, between quotes.
void AppendElement(SerializerBuffer& out, std::string_view& value, NumberField const& field, bool hasComma) {
  if (!SK_PackedNumber::Begins(value)) {
    std::string_view const text = value.substr(0, Find(value, ','));
    AppendNumber<true>(out, text, field.pattern, hasComma);
    value.remove_prefix(text.size());
    return;
  }
  SK_PackedNumber const number = SK_PackedNumber::Take(value);
  PackedDigits const digits(number);
  if (!field.Fits(digits.integer, digits.decimals, digits.finer)) {
    char text[SK_WriterNumberText::kRoom];
    AppendNumber<true>(out, number.CopyTextTo(text), field.pattern, hasComma);
    return;
  }
  std::size_t const sizeBefore = out.Size();
  char* const start = out.Grow(2 + kFieldRoom);
  char* p = start;
  *p = ',';
  p += hasComma ? 1 : 0;
  *p = '"';
  p = PutPadded(p + 1, digits, number.isNegative, field);
  *p++ = '"';
  out.Truncate(sizeBefore + static_cast<std::size_t>(p - start));
}

constexpr char kBeforeLength[] = R"({"length":")";
constexpr char kBeforeText[] = R"(","str":")";
constexpr char kBehindText[] = R"("}})";

/// What stands around a text, with the digits of its length.
constexpr std::size_t kTextRoom =
    sizeof(kBeforeLength) - 1 + StringField::kMostDigits + sizeof(kBeforeText) - 1 + sizeof(kBehindText) - 1;

/// A sample with any text and any widths.
void AppendAnyStringSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                           StringField const& field) {
  char length[std::numeric_limits<std::size_t>::digits10 + 1];
  std::string_view const lengthText(
      length, static_cast<std::size_t>(std::to_chars(length, length + sizeof length, value.size()).ptr - length));
  std::size_t const zeroes = Missing(lengthText.size(), field.maxDigits);
  std::size_t const spaces = Missing(value.size(), field.maxLength);

  AppendTime(out, time);
  out.Put(kBeforeLength);
  Copy(Fill(out.Grow(zeroes + lengthText.size()), zeroes, '0'), lengthText);
  out.Put(kBeforeText);
  Fill(Copy(out.Grow(value.size() + spaces), value), spaces, ' ');
  out.Put(kBehindText);
}

}  // namespace

NumberField::NumberField(ns_sensor::SK_NumberPattern const& numberPattern) : pattern(numberPattern) {
  if (pattern.digitsInteger - 1 >= kMostIntegers || pattern.digitsDecimal > kMostDecimals) {
    return;
  }
  auto const integers = static_cast<unsigned>(pattern.digitsInteger);
  auto const decimals = static_cast<unsigned>(pattern.digitsDecimal);
  integerShift = 8 * (kMostIntegers - integers);
  sizeBehind = decimals == 0 ? 0 : 1 + decimals;
  otherIntegers = ~MaskOfLast(integers);
  otherDecimals = MaskOfLast(decimals < 8 ? 8 - decimals : 0);
  otherFiner = MaskOfLast(decimals < 8 ? 8 : decimals < 16 ? 16 - decimals : 0);
}

StringField::StringField(ns_sensor::SK_StringProperties const& stringProperties)
    : maxLength(stringProperties.maxLen), maxDigits(stringProperties.maxDigitsInStrLength) {
  if (maxDigits - 1 >= kMostDigits || maxLength > kLongest) {
    return;
  }
  auto const places = static_cast<unsigned>(maxDigits);
  digitsShift = 8 * (kMostDigits - places);
  otherDigits = ~MaskOfLast(places);
}

void AppendPaddedNumber(SerializerBuffer& out, std::string_view number, ns_sensor::SK_NumberPattern const& pattern) {
  AppendNumber<false>(out, number, pattern, false);
}

std::uint64_t AppendPackedSamples(SerializerBuffer& out, SK_DumpSamplesUtils& dump, NumberField const& field,
                                  std::size_t room, std::uint64_t most) {
  // Of its own, as whatever is stored could be part of the caller's.
  NumberField const place = field;
  NumberFrame frame;
  std::size_t const sizeBefore = out.Size();
  char* const start = out.Grow(room);
  char* p = start;
  auto const useBase = [&](SK_TimeWindowReader const& times) { frame.SetBase(times); };
  auto const use = [&](char const* window, std::string_view value) {
    SK_PackedNumber number;
    if (!SK_PackedNumber::Read(value, number)) {
      return false;
    }
    PackedDigits const digits(number);
    if (!place.Fits(digits.integer, digits.decimals, digits.finer)) {
      return false;
    }
    p = PutPadded(frame.Put(p, window), digits, number.isNegative, place);
    p = CopyLiteral(p, NumberFrame::kBehind);
    return true;
  };
  // By their number, so that there is no look at the room for each of them.
  std::uint64_t count = 0;
  for (bool isMore = true; isMore;) {
    constexpr std::size_t kLargest = NumberFrame::kRoom + kFieldRoom + sizeof(NumberFrame::kBehind);
    std::size_t const left = room - static_cast<std::size_t>(p - start);
    std::uint64_t const wanted = std::min<std::uint64_t>(most - count, left / kLargest);
    std::uint64_t const taken = dump.ReadShortSamples(wanted, useBase, use);
    count += taken;
    isMore = taken != 0 && taken == wanted;
  }
  out.Truncate(sizeBefore + static_cast<std::size_t>(p - start));
  return count;
}

void AppendNumberSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        NumberField const& field) {
  AppendTime(out, time);
  AppendElement(out, value, field, false);
  out.Put('}');
}

void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             NumberField const& field) {
  AppendTime(out, time);
  out.Put('[');
  // As splitting at the commas gives them: behind a comma at the end there is no further element.
  for (bool isFirst = true; !value.empty(); isFirst = false) {
    AppendElement(out, value, field, !isFirst);
    value.remove_prefix(value.empty() ? 0 : 1);
  }
  out.Put("]}");
}

void AppendStringSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        StringField const& field) {
  std::uint64_t const digits = DigitsOfMostlyThree(static_cast<std::uint32_t>(value.size()));
  if (value.size() > StringField::kLongest || !field.Fits(digits)) {
    AppendAnyStringSample(out, time, value, field);
    return;
  }
  std::size_t const width = std::max<std::size_t>(value.size(), field.maxLength);
  std::size_t const sizeBefore = out.Size();
  char* const start = out.Grow(TimeRoom(time.size()) + kTextRoom + width);
  char* p = CopyLiteral(CopyTime(start, time), kBeforeLength);
  StoreEight(p, (digits | kZeroes) >> field.digitsShift);
  p = CopyShortText(CopyLiteral(p + field.maxDigits, kBeforeText), value);
  p = CopyLiteral(FillSpaces(p, width - value.size()), kBehindText);
  out.Truncate(sizeBefore + static_cast<std::size_t>(p - start));
}

}  // namespace SK_PLUGIN
