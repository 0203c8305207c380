/// Arithmetic on rational times, and their text forms.
///
/// Nothing here throws of itself or keeps state; a result comes back through an out parameter, which may
/// be an operand too, and the function result is an error code, 0 for success. Text fields go through
/// `std::stoi`, whose exceptions pass to the caller.
#pragma once

#include <cstdint>
#include <string>

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
  static int ComputeGCD(std::uint32_t a, std::uint32_t b, std::uint32_t& result);

  /// Frames that are dropped at a time are twice this: 2 at 60 frames per second, else 1.
  static std::uint16_t CalcDropFactor(std::int32_t nominalRate);

  static int ConvertSKTimeToSMPTETime(SK_Time const& time, SK_TimeCodeInfo const& info, std::string& out);
  static int ConvertSMPTETimeToSKTime(std::string const& text, SK_TimeCodeInfo const& info, SK_Time& out);
  static int ComputeRelativeTime(SK_Time const& base, SK_Time const& time, SK_TimeCodeInfo const& info,
                                 std::string& out);
  static int ComputeRelativeTime(SK_DateTime const& base, SK_Time const& time, std::uint16_t precision,
                                 std::string& out);
  /// Appends the sum as text to `out`.
  static int AddUTCTime(SK_DateTime const& base, SK_Time const& time, std::uint16_t precision, std::string& out);
  static int ParseUTCDateTime(std::string const& text, std::uint16_t precision, SK_DateTime& out);
  static int GetDays(std::int32_t year, std::int32_t month);
  static bool IsLeapYear(std::int32_t year);
  static std::int32_t LeapYearsCount(std::int32_t year);
  static std::int32_t GetDaysDiff(SK_DateTime const& a, SK_DateTime const& b);
  /// a minus b, in seconds.
  static int DiffUTCTime(SK_DateTime const& a, SK_DateTime const& b, std::uint16_t precision, SK_Time& out);
  /// -1, 0 or 1. Offsets do not count.
  static std::int16_t CompareUTCDateTime(SK_DateTime const& a, SK_DateTime const& b);
};

}  // namespace SK_NAMESPACE_INT
