#include "SerializerSample.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

#include "SK_EightBytes.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::AnyBelow;
using SK_NAMESPACE_INT::CopyShortText;
using SK_NAMESPACE_INT::kEveryByte;
using SK_NAMESPACE_INT::LoadEight;
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

void AppendTime(SerializerBuffer& out, std::string_view time) {
  constexpr char kBefore[] = R"({"time":")";
  constexpr char kAfter[] = R"(","value":)";
  char* const p = out.Grow(sizeof(kBefore) - 1 + time.size() + sizeof(kAfter) - 1);
  CopyLiteral(CopyShortText(CopyLiteral(p, kBefore), time), kAfter);
}

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

}  // namespace

void AppendPaddedNumber(SerializerBuffer& out, std::string_view number, ns_sensor::SK_NumberPattern const& pattern) {
  AppendNumber<false>(out, number, pattern, false);
}

void AppendNumberSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        ns_sensor::SK_NumberPattern const& pattern) {
  AppendTime(out, time);
  AppendNumber<true>(out, value, pattern, false);
  out.Put('}');
}

void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             ns_sensor::SK_NumberPattern const& pattern) {
  AppendTime(out, time);
  out.Put('[');
  // As splitting at the commas gives them: behind a comma at the end there is no further element.
  for (bool isFirst = true; !value.empty(); isFirst = false) {
    std::size_t const size = Find(value, ',');
    AppendNumber<true>(out, value.substr(0, size), pattern, !isFirst);
    value.remove_prefix(std::min(size + 1, value.size()));
  }
  out.Put("]}");
}

void AppendStringSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        ns_sensor::SK_StringProperties const& properties) {
  char length[std::numeric_limits<std::size_t>::digits10 + 1];
  std::string_view const lengthText(
      length, static_cast<std::size_t>(std::to_chars(length, length + sizeof length, value.size()).ptr - length));
  std::size_t const zeroes = Missing(lengthText.size(), properties.maxDigitsInStrLength);
  std::size_t const spaces = Missing(value.size(), properties.maxLen);

  AppendTime(out, time);
  out.Put(R"({"length":")");
  Copy(Fill(out.Grow(zeroes + lengthText.size()), zeroes, '0'), lengthText);
  out.Put(R"(","str":")");
  Fill(Copy(out.Grow(value.size() + spaces), value), spaces, ' ');
  out.Put(R"("}})");
}

}  // namespace SK_PLUGIN
