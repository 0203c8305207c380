#include <cstdio>

#include "SK_TimeInt.h"
#include "SK_TimeText.h"
#include "SK_TimeUtils.h"
#include "senmark/SK_ErrorCode.h"

namespace SK_NAMESPACE_INT {
namespace {

constexpr std::int32_t kSecondsOfMinute = 60;
constexpr std::int32_t kMinutesOfHour = 60;
constexpr std::int32_t kHoursOfDay = 24;
constexpr std::int32_t kSecondsOfDay = 86400;
constexpr std::int32_t kMonthsOfYear = 12;

/// Days of a month by its number, with nothing for the numbers beside the twelve.
constexpr std::int32_t daysInMonth[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31, 0};
constexpr std::int32_t kLastTableMonth = 13;

// Drop frame counting for a drop factor of 1. Each minute but every tenth skips its first two numbers.
constexpr std::int32_t kFramesOfTenMinutes = 17982;
constexpr std::int32_t kDroppedOfTenMinutes = 18;
constexpr std::int32_t kFramesOfFirstMinute = 1800;
constexpr std::int32_t kFramesOfOtherMinute = 1798;
constexpr std::int32_t kDroppedOfMinute = 2;

/// The number on the clock of the frame with this index, both from 0.
std::int32_t NumberOfFrame(std::int32_t frames, std::int32_t dropFactor) {
  std::int32_t const firstMinute = kFramesOfFirstMinute * dropFactor;
  std::int32_t dropped = frames / (kFramesOfTenMinutes * dropFactor) * kDroppedOfTenMinutes * dropFactor;
  std::int32_t rest = frames % (kFramesOfTenMinutes * dropFactor);
  if (rest >= firstMinute) {
    dropped += kDroppedOfMinute * dropFactor;
    rest -= firstMinute;
  } else {
    rest = 0;
  }
  dropped += rest / (kFramesOfOtherMinute * dropFactor) * kDroppedOfMinute * dropFactor;
  return WrapAdd(frames, dropped);
}

/// The index of the frame with this number on the clock, both from 0.
std::int32_t FrameOfNumber(std::int32_t number, std::int32_t dropFactor) {
  std::int32_t const oneMinute = kFramesOfFirstMinute * dropFactor;
  std::int32_t const tenMinutes = oneMinute * 10;
  std::int32_t const dropped = number / tenMinutes * kDroppedOfTenMinutes * dropFactor +
                               number % tenMinutes / oneMinute * kDroppedOfMinute * dropFactor;
  return WrapSub(number, dropped);
}

/// Splits the lowest digit of a mixed number off, on a place that counts up to `base`.
std::int32_t SplitOff(std::int32_t& number, std::int32_t base) {
  std::int32_t const digit = ModOrDividend(number, base);
  number = DivOrZero(WrapSub(number, digit), base);
  return digit;
}

/// Whether `value` prints with just `width` digits.
bool FitsWidth(std::int32_t value, std::size_t width) {
  return value >= 0 && AsUnsigned(value) < PowerOfTen(static_cast<std::uint16_t>(width));
}

/// Writes the digits of a number that fits the width, and gives the position behind them.
char* PutNumber(char* out, std::int32_t value, std::size_t width) {
  for (std::size_t i = width; i-- > 0; value /= 10) out[i] = static_cast<char>('0' + value % 10);
  return out + width;
}

char* PutNumber(char* out, std::int32_t value, std::size_t width, char separator) {
  out = PutNumber(out, value, width);
  *out = separator;
  return out + 1;
}

/// Adds what a time has in whole seconds and what it has in units of the fraction; 10 to the precision
/// of these make a second. Products and sums wrap at 32 bits.
void AddSeconds(SK_DateTime& date, SK_Time const& time, std::uint32_t unitsOfSecond) {
  std::uint32_t const value = AsUnsigned(time.value);
  std::uint32_t const rest = ModOrDividend(value, time.scale);
  std::uint32_t const fraction = AsUnsigned(date.fraction) + DivOrZero(rest * unitsOfSecond, time.scale);
  std::uint32_t const second =
      AsUnsigned(date.second) + DivOrZero(value, time.scale) + DivOrZero(fraction, unitsOfSecond);
  date.second = AsSigned(second);
  date.fraction = AsSigned(ModOrDividend(fraction, unitsOfSecond));
}

/// Moves what is over 59 seconds, 59 minutes and 23 hours to the next larger unit.
void Carry(SK_DateTime& date) {
  date.minute = WrapAdd(date.minute, date.second / kSecondsOfMinute);
  date.second %= kSecondsOfMinute;
  date.hour = WrapAdd(date.hour, date.minute / kMinutesOfHour);
  date.minute %= kMinutesOfHour;
  if (date.hour < kHoursOfDay) return;

  date.day = WrapAdd(date.day, date.hour / kHoursOfDay);
  date.hour %= kHoursOfDay;
  for (std::int32_t days = SK_TimeUtils::GetDays(date.year, date.month); date.day > days;
       days = SK_TimeUtils::GetDays(date.year, date.month)) {
    date.day -= days;
    date.month = WrapAdd(date.month, 1);
    if (date.month > kMonthsOfYear) {
      date.year = WrapAdd(date.year, 1);
      date.month -= kMonthsOfYear;
    }
  }
}

/// Whether every field of a date has the width of its place, so that the text needs no formatting rules.
bool IsPlain(SK_DateTime const& date, std::uint16_t precision) {
  constexpr std::uint16_t kDigitsThatFit = 9;
  return FitsWidth(date.year, 4) && FitsWidth(date.month, 2) && FitsWidth(date.day, 2) && FitsWidth(date.hour, 2) &&
         FitsWidth(date.minute, 2) && FitsWidth(date.second, 2) && precision >= 1 && precision <= kDigitsThatFit &&
         FitsWidth(date.fraction, precision);
}

/// Text of a date up to its zone character, with at least one digit of fraction. Of a text that is longer
/// than 99 characters the rest is lost.
void AppendDate(SK_DateTime const& date, std::uint16_t precision, std::string& out) {
  char text[100] = {};
  if (IsPlain(date, precision)) {
    char* end = PutNumber(text, date.year, 4, '-');
    end = PutNumber(end, date.month, 2, '-');
    end = PutNumber(end, date.day, 2, 'T');
    end = PutNumber(end, date.hour, 2, ':');
    end = PutNumber(end, date.minute, 2, ':');
    end = PutNumber(end, date.second, 2, '.');
    PutNumber(end, date.fraction, precision, date.offsetSign);
  } else if (std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%0*d%c", date.year, date.month, date.day,
                           date.hour, date.minute, date.second, static_cast<int>(precision), date.fraction,
                           date.offsetSign) < 0) {
    return;
  }
  out += text;
}

void AppendOffset(SK_DateTime const& date, std::string& out) {
  char text[32] = {};
  if (std::snprintf(text, sizeof text, "%02d:%02d", date.offsetHour, date.offsetMinute) >= 0) out += text;
}

/// Days from the first day of the year 1 on, that day being 1.
std::int32_t DayNumber(SK_DateTime const& date) {
  std::int32_t const year = WrapSub(date.year, 1);
  std::int32_t days = WrapAdd(WrapMul(year, 365), WrapAdd(date.day, SK_TimeUtils::LeapYearsCount(year)));
  std::int32_t const lastMonth = date.month < kLastTableMonth + 1 ? date.month : kLastTableMonth + 1;
  for (std::int32_t month = 1; month < lastMonth; ++month) {
    days = WrapAdd(days, SK_TimeUtils::GetDays(date.year, month));
  }
  return days;
}

std::int32_t SecondOfDay(SK_DateTime const& date) {
  std::int32_t const minutes = WrapAdd(WrapMul(date.hour, kMinutesOfHour), date.minute);
  return WrapAdd(WrapMul(minutes, kSecondsOfMinute), date.second);
}

}  // namespace

int SK_TimeUtils::ConvertSKTimeToSMPTETime(SK_Time const& time, SK_TimeCodeInfo const& info, std::string& out) {
  SK_Time product;
  SK_MulTime2(&time, &info.frameRate, &product);
  std::int32_t frames = AsSigned(DivOrZero(AsUnsigned(product.value), product.scale));
  std::int32_t const rate = NominalRate(info.frameRate);
  if (info.dropFrame != 0) frames = NumberOfFrame(frames, CalcDropFactor(rate));

  std::int32_t const frame = SplitOff(frames, rate);
  std::int32_t const second = SplitOff(frames, kSecondsOfMinute);
  std::int32_t const minute = SplitOff(frames, kMinutesOfHour);
  std::int32_t const hour = frames % kHoursOfDay;

  std::size_t const frameDigits = FrameDigits(info.frameRate);
  char text[13] = {};
  if (hour >= 0 && minute >= 0 && second >= 0 && FitsWidth(frame, frameDigits)) {
    char* end = PutNumber(text, hour, 2, ':');
    end = PutNumber(end, minute, 2, ':');
    end = PutNumber(end, second, 2, ':');
    PutNumber(end, frame, frameDigits);
  } else if (std::snprintf(text, sizeof text, "%02d:%02d:%02d:%0*d", hour, minute, second,
                           static_cast<int>(frameDigits), frame) < 0) {
    return 0;
  }
  out = text;
  return 0;
}

int SK_TimeUtils::ConvertSMPTETimeToSKTime(std::string_view text, SK_TimeCodeInfo const& info, SK_Time& out) {
  std::int32_t const hour = ReadField(text, 0, 2);
  std::int32_t const minute = ReadField(text, 3, 2);
  std::int32_t const second = ReadField(text, 6, 2);
  std::int32_t const frame = ReadField(text, kSMPTEFrames, FrameDigits(info.frameRate));

  std::int32_t const rate = NominalRate(info.frameRate);
  std::int32_t const seconds = (hour * kMinutesOfHour + minute) * kSecondsOfMinute + second;
  std::int32_t total = WrapAdd(frame, WrapMul(seconds, rate));
  if (info.dropFrame != 0) total = FrameOfNumber(total, CalcDropFactor(rate));

  SK_Time const frames = {total, 1};
  SK_Time const secondsOfFrame = {AsSigned(info.frameRate.scale), AsUnsigned(info.frameRate.value)};
  SK_MulTime2(&frames, &secondsOfFrame, &out);
  return 0;
}

int SK_TimeUtils::ComputeRelativeTime(SK_Time const& base, SK_Time const& time, SK_TimeCodeInfo const& info,
                                      std::string& out) {
  SK_Time sum;
  SK_AddTime2(&base, &time, &sum);
  return ConvertSKTimeToSMPTETime(sum, info, out);
}

int SK_TimeUtils::ComputeRelativeTime(SK_DateTime const& base, SK_Time const& time, std::uint16_t precision,
                                      std::string& out) {
  return AddUTCTime(base, time, precision, out);
}

int SK_TimeUtils::AddUTCTime(SK_DateTime const& base, SK_Time const& time, std::uint16_t precision, std::string& out) {
  SK_DateTime sum = base;
  AddSeconds(sum, time, PowerOfTen(precision));
  Carry(sum);
  AppendDate(sum, precision, out);
  if (sum.hasOffset != 0) AppendOffset(sum, out);
  return 0;
}

int SK_TimeUtils::ParseUTCDateTime(std::string_view text, std::uint16_t precision, SK_DateTime& out) {
  if (text.size() < kUTCFraction) return ns_sensor::kInternalFailure;
  out.year = ReadField(text, 0, 4);
  out.month = ReadField(text, kUTCMonth, 2);
  out.day = ReadField(text, kUTCDay, 2);
  out.hour = ReadField(text, kUTCHour, 2);
  out.minute = ReadField(text, kUTCMinute, 2);
  out.second = ReadField(text, kUTCSecond, 2);
  out.fraction = ReadField(text, kUTCFraction, precision);

  std::size_t const zone = kUTCFraction + precision;
  out.offsetSign = zone < text.size() ? text[zone] : '\0';
  if (out.offsetSign == '-' || out.offsetSign == '+') {
    out.offsetHour = ReadField(text, kUTCOffsetHour + precision, 2);
    out.offsetMinute = ReadField(text, kUTCOffsetMinute + precision, 2);
    out.hasOffset = 1;
  }
  return 0;
}

int SK_TimeUtils::GetDays(std::int32_t year, std::int32_t month) {
  if (month < 0 || month > kLastTableMonth) return 0;
  return daysInMonth[month] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

bool SK_TimeUtils::IsLeapYear(std::int32_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::int32_t SK_TimeUtils::LeapYearsCount(std::int32_t year) {
  return year / 4 - year / 100 + year / 400;
}

std::int32_t SK_TimeUtils::GetDaysDiff(SK_DateTime const& a, SK_DateTime const& b) {
  return WrapSub(DayNumber(a), DayNumber(b));
}

int SK_TimeUtils::DiffUTCTime(SK_DateTime const& a, SK_DateTime const& b, std::uint16_t precision, SK_Time& out) {
  bool const swapped = CompareUTCDateTime(a, b) < 0;
  SK_DateTime const& left = swapped ? b : a;
  SK_DateTime const& right = swapped ? a : b;

  std::int32_t const days = GetDaysDiff(left, right);
  std::int32_t seconds = WrapSub(SecondOfDay(left), SecondOfDay(right));
  std::uint32_t const unitsOfSecond = PowerOfTen(precision);
  std::int32_t fraction = WrapSub(left.fraction, right.fraction);
  if (left.fraction < right.fraction) {
    seconds = WrapSub(seconds, 1);
    fraction = WrapAdd(fraction, AsSigned(unitsOfSecond));
  }
  SK_Time const whole = {WrapAdd(WrapMul(days, kSecondsOfDay), seconds), 1};
  SK_Time const rest = {fraction, unitsOfSecond};
  SK_AddTime2(&whole, &rest, &out);
  if (swapped) out.value = WrapNegate(out.value);
  return 0;
}

std::int16_t SK_TimeUtils::CompareUTCDateTime(SK_DateTime const& a, SK_DateTime const& b) {
  std::int32_t const left[] = {a.year, a.month, a.day, a.hour, a.minute, a.second, a.fraction};
  std::int32_t const right[] = {b.year, b.month, b.day, b.hour, b.minute, b.second, b.fraction};
  for (std::size_t i = 0; i < sizeof left / sizeof left[0]; ++i) {
    if (left[i] != right[i]) return left[i] < right[i] ? -1 : 1;
  }
  return 0;
}

}  // namespace SK_NAMESPACE_INT
