#include "SerializerTextSample.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

#include "SK_EightBytes.h"
#include "SerializerBatch.h"
#include "SerializerSampleParts.h"

namespace SK_PLUGIN {

namespace {

using SK_NAMESPACE_INT::CopyShortText;
using SK_NAMESPACE_INT::MaskOfLast;
using SK_NAMESPACE_INT::StoreEight;

char* Copy(char* p, std::string_view text) {
  return std::copy(text.begin(), text.end(), p);
}

/// A few dozen are what the texts of a set mostly lack.
char* FillSpaces(char* p, std::size_t count) {
  // Copied, for a compiler makes a slow instruction of a loop that stores.
  static char const spaces[] = "                                                                ";
  return count < sizeof(spaces) ? CopyShortText(p, std::string_view(spaces, count)) : Fill(p, count, ' ');
}

constexpr char kBeforeLength[] = R"({"length":")";
static_assert(sizeof(kBeforeLength) - 1 <= SampleFrame::kLongestOpening);
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

/// Bytes that are copied at once, whether all of them are wanted or not.
constexpr std::size_t kBlock = 16;

/// A text of a short record, and spaces up to the width. Changes up to a block behind them.
char* PutPaddedText(char* p, std::string_view value, std::size_t width) {
  static_assert(SK_DumpSamplesUtils::kPutRoom % kBlock == 0, "blocks of a short text stay in its room");
  for (std::size_t at = 0; at < value.size(); at += kBlock) {
    std::memcpy(p + at, value.data() + at, kBlock);
  }
  for (std::size_t at = value.size(); at < width; at += kBlock) {
    std::memcpy(p + at, "                ", kBlock);
  }
  return p + width;
}

}  // namespace

StringField::StringField(ns_sensor::SK_StringProperties const& stringProperties)
    : maxLength(stringProperties.maxLen), maxDigits(stringProperties.maxDigitsInStrLength) {
  if (maxDigits - 1 >= kMostDigits || maxLength > kLongest) {
    return;
  }
  auto const places = static_cast<unsigned>(maxDigits);
  digitsShift = 8 * (kMostDigits - places);
  otherDigits = ~MaskOfLast(places);
}

std::uint64_t AppendShortTextSamples(SerializerBuffer& out, SK_DumpSamplesUtils& dump, StringField const& field,
                                     std::size_t room, std::uint64_t most) {
  // Of its own, as whatever is stored could be part of the caller's.
  StringField const place = field;
  auto const digitsOf = [](std::string_view value) { return DigitsOfThree(static_cast<std::uint32_t>(value.size())); };
  auto const widthOf = [&](std::string_view value) { return std::max<std::size_t>(value.size(), place.maxLength); };
  auto const sizeOf = [&](std::string_view value) {
    return value.empty() || !place.Fits(digitsOf(value)) ? 0 : kTextRoom + kBlock + widthOf(value);
  };
  auto const put = [&](char* p, std::string_view value) {
    StoreEight(p, (digitsOf(value) | kZeroes) >> place.digitsShift);
    p = PutPaddedText(CopyLiteral(p + place.maxDigits, kBeforeText), value, widthOf(value));
    return CopyLiteral(p, kBehindText);
  };
  return AppendShortSamples(out, dump, kBeforeLength, room, most, sizeOf, put);
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
