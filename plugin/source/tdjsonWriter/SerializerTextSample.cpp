#include "SerializerTextSample.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "SK_EightBytes.h"
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

StringField::StringField(ns_sensor::SK_StringProperties const& stringProperties)
    : maxLength(stringProperties.maxLen), maxDigits(stringProperties.maxDigitsInStrLength) {
  if (maxDigits - 1 >= kMostDigits || maxLength > kLongest) {
    return;
  }
  auto const places = static_cast<unsigned>(maxDigits);
  digitsShift = 8 * (kMostDigits - places);
  otherDigits = ~MaskOfLast(places);
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
