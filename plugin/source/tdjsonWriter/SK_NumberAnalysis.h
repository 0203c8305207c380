/// What the writer finds out about values on their way into a file: digits, sign, range and width. All counts
/// are of the characters that the file will hold, so a pattern always agrees with what is printed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace SK_PLUGIN {

/// The writer's one form of a number: at most sixteen significant digits, with an exponent where the default
/// form of a stream has one, and without zeroes behind the point. Works on the text alone: 1.5e+20 becomes 1.5e+2.
void removeTrailingZeroes(std::string& out, double const& value);

/// Raises each count to what `value` needs; the two are independent over a set.
void calcNumberPatternForSet(double const& value, unsigned long long& digitsInteger, unsigned long long& digitsDecimal);
/// The counts of one number, without a place for the sign.
void calcNumberPatternWithoutSign(double const& value, unsigned long long& digitsInteger,
                                  unsigned long long& digitsDecimal);
/// As `calcNumberPatternForSet`, from the text of the number, for callers that have it at hand.
void calcNumberPatternForText(std::string_view text, unsigned long long& digitsInteger,
                              unsigned long long& digitsDecimal);
/// Sets the flag for a value that prints a minus, also for negative zero; never clears it.
void calcSign(double const& value, unsigned char& isSigned);
/// Widens the range to hold `value`; a NaN changes nothing.
inline void calcOccurringRangeForSet(double const& value, double& min, double& max) {
  // Two comparisons, both false for a NaN. The first value of a set may change both bounds.
  if (value < min) {
    min = value;
  }
  if (value > max) {
    max = value;
  }
}
/// Raises the length in bytes, and the digits that it takes to write that length.
void calcPaddedStringProperties(std::string_view value, unsigned long long& maxLength,
                                unsigned long long& maxDigitsInLength);

/// Appends hh:mm:ss:ff to an empty text. A frame number with more digits than `frameDigits` leaves it empty.
void serializeTimeSMPTE(std::string& out, int const& hours, int const& minutes, int const& seconds, int const& frames,
                        unsigned short const& frameDigits);
/// Appends a calendar time to an empty text. A fraction with more digits than `precision` leaves it empty.
void serializeTimeUTC(std::string& out, int const& year, int const& month, int const& day, int const& hour,
                      int const& minute, int const& second, signed char const& zoneSign, int const& zoneHours,
                      int const& zoneMinutes, int const& fraction, unsigned short const& precision);

/// The pieces between separators; a separator at the end has no empty piece behind it.
std::vector<std::string> splitString(std::string text, char separator);

/// The text with backspace, tab, line feed, form feed, carriage return, double quote and backslash each written
/// as a backslash and a character. Nothing else changes. Done once, when a text enters the writer.
std::string escapeHandling(std::string text);
/// The same without a copy where nothing changes: `text` itself, or else `escaped`, which takes the result.
std::string_view EscapeInto(std::string_view text, std::string& escaped);

}  // namespace SK_PLUGIN
