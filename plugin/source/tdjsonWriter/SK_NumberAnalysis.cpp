#include "SK_NumberAnalysis.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "SK_ClockText.h"
#include "SK_EightBytes.h"
#include "SK_WriterNumberText.h"

namespace SK_PLUGIN {

namespace {

struct DigitCounts {
  unsigned long long integer;
  unsigned long long decimal;
};

// Everything in front of the point counts as integer digits, an exponent too where there is no point.
DigitCounts CountDigits(std::string_view text) {
  if (!text.empty() && text.front() == '-') {
    text.remove_prefix(1);
  }
  // No call: texts are short, and their point stands near the front.
  std::size_t const point = static_cast<std::size_t>(std::find(text.begin(), text.end(), '.') - text.begin());
  if (point == text.size()) {
    return {text.size(), 0};
  }
  return {point, text.size() - point - 1};
}

// The decimal text of an integer.
class IntegerText {
 public:
  explicit IntegerText(unsigned long long value) { Print(value); }
  explicit IntegerText(int value) { Print(value); }

  std::size_t Size() const { return mSize; }
  std::string_view View() const { return std::string_view(mText, mSize); }

 private:
  template <typename Integer>
  void Print(Integer value) {
    mSize = static_cast<std::size_t>(std::to_chars(mText, mText + sizeof(mText), value).ptr - mText);
  }

  char mText[20];
  std::size_t mSize;
};

bool HasTwoDigits(int value) {
  return value >= 0 && value < 100;
}

// With a zero in front below 10, also below 0.
void AppendTwoDigits(std::string& out, int value) {
  if (HasTwoDigits(value)) {
    out += static_cast<char>('0' + value / 10);
    out += static_cast<char>('0' + value % 10);
    return;
  }
  if (value < 10) {
    out += '0';
  }
  out += IntegerText(value).View();
}

// False, with nothing appended, if the value has more characters than `width`.
bool AppendPadded(std::string& out, int value, std::size_t width) {
  if (width == 2 && HasTwoDigits(value)) {
    AppendTwoDigits(out, value);
    return true;
  }
  IntegerText const text(value);
  if (text.Size() > width) {
    return false;
  }
  out.append(width - text.Size(), '0');
  out += text.View();
  return true;
}

// hh:mm:ss
void AppendClock(std::string& out, int hours, int minutes, int seconds) {
  if (HaveTwoDigits(hours, minutes, seconds)) {
    char text[kClockTextSize];
    PutClockText(text, hours, minutes, seconds);
    out.append(text, sizeof text);
    return;
  }
  AppendTwoDigits(out, hours);
  out += ':';
  AppendTwoDigits(out, minutes);
  out += ':';
  AppendTwoDigits(out, seconds);
}

// What stands behind the backslash; 0 for a character that stays as it is.
constexpr char EscapeOf(char character) {
  switch (character) {
    case '\b':
      return 'b';
    case '\t':
      return 't';
    case '\n':
      return 'n';
    case '\f':
      return 'f';
    case '\r':
      return 'r';
    case '"':
    case '\\':
      return character;
    default:
      return 0;
  }
}

// False if no byte of the text stands for an escape; looks at eight of them at once.
bool MayNeedEscapes(std::string_view text) {
  using SK_NAMESPACE_INT::AnySpecial;
  using SK_NAMESPACE_INT::LoadEight;
  constexpr std::size_t kStep = sizeof(std::uint64_t);
  if (text.size() < kStep) {
    return AnySpecial(SK_NAMESPACE_INT::LoadUpToEight(text, ' ')) != 0;
  }
  // The last eight bytes first, so that what is looked at before may end anywhere in them.
  std::uint64_t found = AnySpecial(LoadEight(text.data() + text.size() - kStep));
  for (std::size_t at = 0; at + kStep < text.size(); at += kStep) {
    found |= AnySpecial(LoadEight(text.data() + at));
  }
  return found != 0;
}

// `EscapeInto` of a text that may need it. Apart from it, so that the others pay for no registers of this.
[[gnu::noinline]] std::string_view EscapeEach(std::string_view text, std::string& escaped) {
  auto const isEscaped = [](char character) { return EscapeOf(character) != 0; };
  std::size_t const count = static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isEscaped));
  if (count == 0) {
    return text;
  }
  escaped.clear();
  escaped.reserve(text.size() + count);
  for (char const character : text) {
    char const escape = EscapeOf(character);
    if (escape != 0) {
      escaped += '\\';
    }
    escaped += escape != 0 ? escape : character;
  }
  return escaped;
}

}  // namespace

void removeTrailingZeroes(std::string& out, double const& value) {
  out.assign(SK_WriterNumberText(value).View());
}

void calcNumberPatternForSet(double const& value, unsigned long long& digitsInteger,
                             unsigned long long& digitsDecimal) {
  calcNumberPatternForText(SK_WriterNumberText(value).View(), digitsInteger, digitsDecimal);
}

void calcNumberPatternWithoutSign(double const& value, unsigned long long& digitsInteger,
                                  unsigned long long& digitsDecimal) {
  DigitCounts const counts = CountDigits(SK_WriterNumberText(value).View());
  digitsInteger = counts.integer;
  digitsDecimal = counts.decimal;
}

void calcNumberPatternForText(std::string_view text, unsigned long long& digitsInteger,
                              unsigned long long& digitsDecimal) {
  DigitCounts const counts = CountDigits(text);
  digitsInteger = std::max(digitsInteger, counts.integer);
  digitsDecimal = std::max(digitsDecimal, counts.decimal);
}

void calcSign(double const& value, unsigned char& isSigned) {
  // Printing with any number of decimals gives a minus for exactly the values with this bit, NaNs among them.
  if (std::signbit(value)) {
    isSigned = 1;
  }
}

void calcPaddedStringProperties(std::string_view value, unsigned long long& maxLength,
                                unsigned long long& maxDigitsInLength) {
  unsigned long long const length = value.size();
  maxLength = std::max(maxLength, length);
  maxDigitsInLength = std::max<unsigned long long>(maxDigitsInLength, IntegerText(length).Size());
}

void serializeTimeSMPTE(std::string& out, int const& hours, int const& minutes, int const& seconds, int const& frames,
                        unsigned short const& frameDigits) {
  AppendClock(out, hours, minutes, seconds);
  out += ':';
  if (!AppendPadded(out, frames, frameDigits)) {
    out.clear();
  }
}

void serializeTimeUTC(std::string& out, int const& year, int const& month, int const& day, int const& hour,
                      int const& minute, int const& second, signed char const& zoneSign, int const& zoneHours,
                      int const& zoneMinutes, int const& fraction, unsigned short const& precision) {
  out += IntegerText(year).View();
  out += '-';
  AppendTwoDigits(out, month);
  out += '-';
  AppendTwoDigits(out, day);
  out += 'T';
  AppendClock(out, hour, minute, second);
  if (precision != 0) {
    out += '.';
    if (!AppendPadded(out, fraction, precision)) {
      out.clear();
      return;
    }
  }
  char const sign = static_cast<char>(zoneSign);
  out += sign;
  if (sign != 'Z') {
    AppendTwoDigits(out, zoneHours);
    out += ':';
    AppendTwoDigits(out, zoneMinutes);
  }
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the form that callers have always had
std::vector<std::string> splitString(std::string text, char separator) {
  std::vector<std::string> pieces;
  std::size_t start = 0;
  while (start < text.size()) {
    std::size_t const end = std::min(text.find(separator, start), text.size());
    pieces.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return pieces;
}

std::string escapeHandling(std::string text) {
  std::string escaped;
  if (EscapeInto(text, escaped).data() == text.data()) {
    return text;
  }
  return escaped;
}

std::string_view EscapeInto(std::string_view text, std::string& escaped) {
  return MayNeedEscapes(text) ? EscapeEach(text, escaped) : text;
}

}  // namespace SK_PLUGIN
