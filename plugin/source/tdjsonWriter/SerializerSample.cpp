#include "SerializerSample.h"

#include <cstdint>
#include <cstring>

#include "SK_EightBytes.h"
#include "SK_PackedNumber.h"
#include "SK_WriterNumberText.h"
#include "SerializerBatch.h"
#include "SerializerNumberParts.h"
#include "SerializerSampleParts.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::AnyBelow;
using SK_NAMESPACE_INT::CopyShortText;
using SK_NAMESPACE_INT::kEveryByte;
using SK_NAMESPACE_INT::LoadEight;
using SK_NAMESPACE_INT::MaskOfLast;
using SK_NAMESPACE_INT::StoreEight;

// Paddings are short, so that a call would cost more than what it does. This may change `kBehind` bytes behind what it
// writes.
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

void AppendPaddedNumber(SerializerBuffer& out, std::string_view number, ns_sensor::SK_NumberPattern const& pattern) {
  AppendNumber<false>(out, number, pattern, false);
}

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

std::uint64_t AppendPackedSamples(SerializerBuffer& out, SK_DumpSamplesUtils& dump, NumberField const& field,
                                  std::size_t room, std::uint64_t most) {
  constexpr char kBehindValue[] = "\"}";
  // Of its own, as whatever is stored could be part of the caller's.
  NumberField const place = field;
  auto const sizeOf = [](std::string_view) { return kFieldRoom + sizeof(kBehindValue); };
  auto const put = [&](char* p, std::string_view value) -> char* {
    SK_PackedNumber number;
    if (!SK_PackedNumber::Read(value, number)) {
      return nullptr;
    }
    PackedDigits const digits(number);
    if (!place.Fits(digits.integer, digits.decimals, digits.finer)) {
      return nullptr;
    }
    return CopyLiteral(PutPadded(p, digits, number.isNegative, place), kBehindValue);
  };
  return AppendShortSamples(out, dump, "\"", room, most, sizeOf, put);
}

void AppendNumberSample(SerializerBuffer& out, std::string_view time, std::string_view value,
                        NumberField const& field) {
  AppendTime(out, time);
  AppendElement(out, value, field, false);
  out.Put('}');
}

}  // namespace SK_PLUGIN
