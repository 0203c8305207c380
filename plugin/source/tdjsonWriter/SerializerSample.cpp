#include "SerializerSample.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <new>

#include "SK_EightBytes.h"

namespace SK_PLUGIN {

namespace {

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

// The texts of numbers are short, so that a call would cost more than what it does. Both of these may change so many
// bytes behind what they write.
constexpr std::size_t kBehind = 8;

char* FillShort(char* p, std::size_t count, char filler) {
  if (count > kBehind) {
    return Fill(p, count, filler);
  }
  StoreEight(p, kEveryByte * static_cast<unsigned char>(filler));
  return p + count;
}

char* CopyShort(char* p, std::string_view text) {
  char const* const from = text.data();
  std::size_t const size = text.size();
  if (size < 8 || size > 24) {
    return Copy(p, text);
  }
  // Stretches of eight that may overlap.
  StoreEight(p, LoadEight(from));
  if (size > 16) {
    StoreEight(p + 8, LoadEight(from + 8));
  }
  StoreEight(p + size - 8, LoadEight(from + size - 8));
  return p + size;
}

void AppendTime(SerializerBuffer& out, std::string_view time) {
  out.Put(R"({"time":")");
  out.Put(time);
  out.Put(R"(","value":)");
}

}  // namespace

void AppendPaddedNumber(SerializerBuffer& out, std::string_view number, ns_sensor::SK_NumberPattern const& pattern) {
  bool const isNegative = !number.empty() && number.front() == '-';
  std::string_view const digits = number.substr(isNegative ? 1 : 0);
  std::size_t const point = static_cast<std::size_t>(std::find(digits.begin(), digits.end(), '.') - digits.begin());
  bool const hasPoint = point != digits.size();
  std::size_t const digitsInteger = hasPoint ? point : digits.size();
  std::size_t const digitsDecimal = hasPoint ? digits.size() - point - 1 : 0;
  bool const needsPoint = !hasPoint && pattern.digitsDecimal != 0;
  bool const needsPlus = pattern.isSigned && !isNegative;
  std::size_t const zeroesInFront = Missing(digitsInteger, pattern.digitsInteger);
  std::size_t const zeroesBehind = Missing(digitsDecimal, pattern.digitsDecimal);

  std::size_t const size =
      (needsPlus ? 1u : 0u) + number.size() + zeroesInFront + (needsPoint ? 1u : 0u) + zeroesBehind;
  std::size_t const sizeBefore = out.Size();
  char* p = out.Grow(size + kBehind);
  if (needsPlus || isNegative) {
    *p++ = isNegative ? '-' : '+';
  }
  p = FillShort(p, zeroesInFront, '0');
  p = CopyShort(p, digits);
  if (needsPoint) {
    *p++ = '.';
  }
  FillShort(p, zeroesBehind, '0');
  out.Truncate(sizeBefore + size);
}

void AppendNumberSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        ns_sensor::SK_NumberPattern const& pattern) {
  AppendTime(out, time);
  out.Put('"');
  AppendPaddedNumber(out, value, pattern);
  out.Put(R"("})");
}

void AppendNumberArraySample(SerializerBuffer& out, std::string_view time, std::string_view value,
                             ns_sensor::SK_NumberPattern const& pattern) {
  AppendTime(out, time);
  out.Put('[');
  // As splitting at the commas gives them: behind a comma at the end there is no further element.
  for (bool isFirst = true; !value.empty(); isFirst = false) {
    std::size_t const size = std::min(value.find(','), value.size());
    out.Put(std::string_view(isFirst ? "\"" : ",\""));
    AppendPaddedNumber(out, value.substr(0, size), pattern);
    out.Put('"');
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
