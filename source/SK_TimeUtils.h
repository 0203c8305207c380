/// Arithmetic on rational times, and their text forms.
///
/// Nothing here throws of itself or keeps state; a result comes back through an out parameter, which may
/// be an operand too, and the function result is an error code, 0 for success. Text fields go through
/// `std::stoi`, whose exceptions pass to the caller.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "SK_DateTime.h"
#include "SK_TimeFormat.h"

namespace SK_NAMESPACE_INT {

class SK_TimeUtils {
 public:
  /// Reduce, then compute in 32 bits that wrap. 1 for a zero scale, with 0/1 as the result.
  static int SK_MulTime(SK_Time const& a, SK_Time const& b, SK_Time& result);
  static int SK_AddTime(SK_Time const& a, SK_Time const& b, SK_Time& result);
  static int SK_SubTime(SK_Time const& a, SK_Time const& b, SK_Time& result);

  /// Predict overflow, reduce and try again, and in the end approximate. A zero scale gives 0/0, and the
  /// code 1 from the product, 21 from the others. A value out of range gives 0/0 with code 0.
  static int SK_MulTime2(SK_Time const* a, SK_Time const* b, SK_Time* result);
  static int SK_AddTime2(SK_Time const* a, SK_Time const* b, SK_Time* result);
  static int SK_SubTime2(SK_Time const* a, SK_Time const* b, SK_Time* result);

  /// Divides a negative value as if it were unsigned: -4/2 becomes 2147483646/1.
  static int ReduceRatio(SK_Time const& in, SK_Time& out);
  /// changed  may be null; receives whether the greatest common divisor was not 1.
  static int ReduceRatio2(SK_Time const* in, SK_Time* out, std::uint8_t* changed);
  /// 1 when b is 0.
  static int ComputeGCD(std::uint32_t a, std::uint32_t b, std::uint32_t& result);

  /// Frames that are dropped at a time are twice this: 2 at 60 frames per second, else 1.
  static std::uint16_t CalcDropFactor(std::int32_t nominalRate);

  /// `out` becomes the time code of the frame that shows at `time`, seconds from midnight. Hours count up
  /// to 23. Text behind the twelfth character is lost.
  static int ConvertSKTimeToSMPTETime(SK_Time const& time, SK_TimeCodeInfo const& info, std::string& out);
  /// `out` becomes seconds from midnight. Separators are not looked at. 0/0 for a frame rate of 0.
  static int ConvertSMPTETimeToSKTime(std::string_view text, SK_TimeCodeInfo const& info, SK_Time& out);
  /// `out` becomes the text of base + time.
  static int ComputeRelativeTime(SK_Time const& base, SK_Time const& time, SK_TimeCodeInfo const& info,
                                 std::string& out);
  /// The same as `AddUTCTime`.
  static int ComputeRelativeTime(SK_DateTime const& base, SK_Time const& time, std::uint16_t precision,
                                 std::string& out);
  /// Appends the sum as text to `out`; the offset is that of the base. The text has a fraction even for a
  /// precision of 0, which `ParseUTCDateTime` does not read.
  static int AddUTCTime(SK_DateTime const& base, SK_Time const& time, std::uint16_t precision, std::string& out);
  /// 21 for a text of less than 20 characters, with `out` as it was. No field is tested for its range.
  static int ParseUTCDateTime(std::string_view text, std::uint16_t precision, SK_DateTime& out);
  /// Days of a month, 0 for a number that is no month.
  static int GetDays(std::int32_t year, std::int32_t month);
  static bool IsLeapYear(std::int32_t year);
  /// Leap years from the year 1 up to and with `year`.
  static std::int32_t LeapYearsCount(std::int32_t year);
  /// Days of a minus days of b, in the Gregorian calendar.
  static std::int32_t GetDaysDiff(SK_DateTime const& a, SK_DateTime const& b);
  /// a minus b, in seconds.
  static int DiffUTCTime(SK_DateTime const& a, SK_DateTime const& b, std::uint16_t precision, SK_Time& out);
  /// -1, 0 or 1. Offsets do not count.
  static std::int16_t CompareUTCDateTime(SK_DateTime const& a, SK_DateTime const& b);
};

}  // namespace SK_NAMESPACE_INT
