#include "SK_RelativeTimeReader.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "SK_TimeInt.h"
#include "SK_TimeRatio.h"
#include "SK_TimeText.h"
#include "SK_TimeUtils.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {
namespace {

constexpr std::int32_t kSecondsOfDay = 86400;
constexpr std::uint32_t kFramesOfFirstMinute = 1800;
constexpr std::uint32_t kLargestValue = std::numeric_limits<std::int32_t>::max();

std::uint32_t BitLength(std::uint32_t a) {
  return a == 0 ? 0 : 32 - static_cast<std::uint32_t>(__builtin_clz(a));
}

/// The number whose product with an odd number is 1 modulo 2 to the 32nd. Each step doubles the bits that
/// are right; an odd number is its own inverse in the lowest three.
std::uint32_t InverseOfOdd(std::uint32_t odd) {
  std::uint32_t inverse = odd;
  for (int bits = 3; bits < 32; bits *= 2) inverse *= 2 - odd * inverse;
  return inverse;
}

/// The larger of two factors that overflows with `factor` by the cautious prediction of the arithmetic,
/// which wants the lengths of two factors to be 31 bits together.
std::uint32_t FirstFactorTooLarge(std::uint32_t factor) {
  return 1U << (31 - BitLength(factor));
}

constexpr std::uint32_t kPowersOfFive[] = {1, 5, 25, 125, 625, 3125, 15625, 78125, 390625, 1953125};

bool IsInCalendar(SK_DateTime const& date) {
  return date.year >= 1 && date.year <= 9999 && date.month >= 1 && date.month <= 12 && date.day >= 1 &&
         date.day <= SK_TimeUtils::GetDays(date.year, date.month);
}

bool IsOnClock(SK_DateTime const& date) {
  return date.hour >= 0 && date.hour <= 23 && date.minute >= 0 && date.minute <= 59 && date.second >= 0 &&
         date.second <= 59;
}

/// Reads "2015-12-31", whatever the separators are. False when one of the others is no digit, or when there
/// is no such day.
bool ReadPlainDate(char const* text, SK_DateTime& out) {
  std::string_view const date(text, 10);
  for (std::size_t i = 0; i < date.size(); ++i) {
    if (i != 4 && i != 7 && !IsDigit(date[i])) return false;
  }
  out.year = ReadField(date, 0, 4);
  out.month = ReadField(date, kUTCMonth, 2);
  out.day = ReadField(date, kUTCDay, 2);
  return IsInCalendar(out);
}

std::uint32_t DigitValue(char digit) {
  return static_cast<std::uint32_t>(digit - '0');
}

/// Whether the zone at the end of a text can be passed over: a letter, or an offset of plain digits.
bool IsPlainZone(std::string_view zone) {
  if (zone.empty()) return false;
  if (zone[0] != '+' && zone[0] != '-') return true;
  return zone.size() >= 6 && IsDigit(zone[1]) && IsDigit(zone[2]) && IsDigit(zone[4]) && IsDigit(zone[5]);
}

}  // namespace

SK_RelativeTimeReader::SK_RelativeTimeReader(SK_TimeFormat const& format) : mFormat(format) {
  if (format.IsTimeFormatSMPTE()) PrepareFrames();
  if (format.IsTimeFormatUTC()) PrepareDates();
}

void SK_RelativeTimeReader::PrepareFrames() {
  SK_TimeCodeInfo const& info = mFormat.GetSMPTEInfo();
  std::uint32_t const rate = AsUnsigned(info.frameRate.value);
  std::uint32_t const scale = info.frameRate.scale;
  // With the top bit clear in both, every product below is predicted as if the numbers were unsigned.
  if (rate == 0 || rate > kLargestValue || scale == 0 || scale > kLargestValue) return;

  std::uint32_t divisor = 1;
  SK_TimeUtils::ComputeGCD(scale, rate, divisor);
  mNumerator = scale / divisor;
  mDenominator = rate / divisor;
  if (!FactorDenominator()) return;

  mNominalRate = AsUnsigned(NominalRate(info.frameRate));
  if (info.dropFrame != 0) mDropFactor = SK_TimeUtils::CalcDropFactor(AsSigned(mNominalRate));
  mFrameTextLength = kSMPTEFrames + FrameDigits(info.frameRate);
  mFactorLimit = FirstFactorTooLarge(mNumerator);
  mHasFrames = true;
  PrepareFrameBase();
}

/// False for a denominator with a prime factor that is too large to look for.
bool SK_RelativeTimeReader::FactorDenominator() {
  constexpr std::uint32_t kLargestTried = 255;
  mPowerOfTwo = mDenominator & (0U - mDenominator);
  std::uint32_t rest = mDenominator / mPowerOfTwo;
  auto const take = [&](std::uint32_t prime) {
    if (rest % prime != 0) return;
    PrimePower power = {InverseOfOdd(prime), std::numeric_limits<std::uint32_t>::max() / prime, 0};
    for (; rest % prime == 0; rest /= prime) ++power.exponent;
    mOddPrimes[mOddPrimeCount++] = power;
  };
  std::uint32_t factor = 3;
  for (; factor <= kLargestTried && factor * factor <= rest; factor += 2) take(factor);
  if (rest == 1) return true;
  if (factor * factor <= rest) return false;
  take(rest);
  return true;
}

/// Where the base time is itself the time of a frame, as it is in every file that was read, the distance
/// to it is that of the two frames. This holds as long as no step of the subtraction counts as overflow once
/// both times are in lowest terms: both scales divide the denominator then, so no step does while frames times
/// numerator stay below 2 to the 30th.
void SK_RelativeTimeReader::PrepareFrameBase() {
  SK_Time const& base = mFormat.GetSMPTEBaseTime();
  if (base.value < 0 || base.scale == 0) return;
  std::uint32_t const lastExact = ((1U << 30U) - 1) / mNumerator;
  if (base.value == 0) {
    mBaseFrame = 0;
    mLargestExactDistance = lastExact;
    return;
  }
  std::uint64_t const units = std::uint64_t{AsUnsigned(base.value)} * mDenominator;
  std::uint64_t const unitsOfFrame = std::uint64_t{base.scale} * mNumerator;
  if (units % unitsOfFrame != 0 || units / unitsOfFrame > lastExact) return;
  mBaseFrame = static_cast<std::uint32_t>(units / unitsOfFrame);
  mLargestExactDistance = lastExact - mBaseFrame;
}

/// The index of the frame that a plain text names. False for any other text.
inline bool SK_RelativeTimeReader::ReadFrame(std::string_view text, std::uint32_t& out) const {
  ClockFields clock;
  if (text.size() != mFrameTextLength || !ReadPlainClock(text.data(), clock)) return false;
  char const* const digits = text.data() + kSMPTEFrames;
  if (!IsDigit(digits[0]) || !IsDigit(digits[1])) return false;
  std::uint64_t number = DigitValue(digits[0]) * 10 + DigitValue(digits[1]);
  if (mFrameTextLength > kSMPTEFrames + 2) {
    if (!IsDigit(digits[2])) return false;
    number = number * 10 + DigitValue(digits[2]);
  }
  number += std::uint64_t{(clock.hour * 60 + clock.minute) * 60 + clock.second} * mNominalRate;
  if (number > kLargestValue) return false;

  out = static_cast<std::uint32_t>(number);
  if (mDropFactor != 0) {
    std::uint32_t const minutes = (out >> (mDropFactor - 1)) / kFramesOfFirstMinute;
    out -= (minutes / 10 * 18 + minutes % 10 * 2) * mDropFactor;
  }
  return true;
}

/// The time of a frame in lowest terms. False when that is not what the guarded product gives, because it
/// predicts overflow even behind its cancellation.
inline bool SK_RelativeTimeReader::FrameToTime(std::uint32_t frame, SK_Time& out) const {
  auto const twos = static_cast<unsigned>(__builtin_ctz(frame | mPowerOfTwo));
  frame >>= twos;
  std::uint32_t denominator = mDenominator >> twos;
  for (std::size_t i = 0; i < mOddPrimeCount; ++i) {
    PrimePower const& power = mOddPrimes[i];
    for (std::uint32_t left = power.exponent; left > 0; --left) {
      std::uint32_t const quotient = frame * power.inverse;
      if (quotient > power.limit) break;
      frame = quotient;
      denominator *= power.inverse;
    }
  }
  out = {AsSigned(frame * mNumerator), denominator};
  return frame < mFactorLimit;
}

/// False for a text that is left to the general conversion.
inline bool SK_RelativeTimeReader::ReadSMPTE(std::string_view text, SK_Time& out) const {
  std::uint32_t frame = 0;
  if (!ReadFrame(text, frame)) return false;
  std::uint32_t const distance = frame - mBaseFrame;
  if (distance <= mLargestExactDistance) return FrameToTime(distance, out);
  if (!FrameToTime(frame, out)) return false;
  SK_TimeUtils::SK_SubTime2(&out, &mFormat.GetSMPTEBaseTime(), &out);
  return true;
}

void SK_RelativeTimeReader::PrepareDates() {
  constexpr std::uint16_t kDigitsThatFit = 9;
  std::uint16_t const digits = mFormat.GetUTCInfo().precisionLength;
  SK_DateTime const& base = mFormat.GetUTCBaseTime();
  if (digits == 0 || digits > kDigitsThatFit || !IsInCalendar(base) || !IsOnClock(base)) return;
  mUnitsOfSecond = PowerOfTen(digits);
  if (AsUnsigned(base.fraction) >= mUnitsOfSecond) return;  // negative ones too
  mFractionDigits = digits;
  mBaseSecondOfDay = (base.hour * 60 + base.minute) * 60 + base.second;
  mHasDates = true;
}

/// Makes the date at the start of a text the current one. False when it is not plain.
inline bool SK_RelativeTimeReader::FindDate(char const* text) {
  if (mHasDate && std::memcmp(text, mDate.data(), mDate.size()) == 0) return true;
  SK_DateTime date;
  if (!ReadPlainDate(text, date)) return false;
  mHasDate = true;
  std::copy_n(text, mDate.size(), mDate.begin());
  mSecondsToDate = std::int64_t{SK_TimeUtils::GetDaysDiff(date, mFormat.GetUTCBaseTime())} * kSecondsOfDay;
  return true;
}

inline bool SK_RelativeTimeReader::ReadFraction(char const* text, std::uint32_t& out) const {
  std::uint32_t value = 0;
  for (char const* p = text + kUTCFraction; p < text + kUTCFraction + mFractionDigits; ++p) {
    if (!IsDigit(*p)) return false;
    value = value * 10 + DigitValue(*p);
  }
  out = value;
  return true;
}

/// Reduces the fraction by the 2s and 5s that it has in common with a power of ten, and adds the seconds. The
/// guarded sum does the same on its second try, or goes through a double when the result does not fit.
inline void SK_RelativeTimeReader::AddFraction(std::uint32_t seconds, std::uint32_t fraction, SK_Time& out) const {
  constexpr std::uint32_t kInverseOfFive = 0xCCCCCCCDU;
  constexpr std::uint32_t kMostFifths = std::numeric_limits<std::uint32_t>::max() / 5;
  auto const twos = static_cast<unsigned>(__builtin_ctz(fraction | (1U << mFractionDigits)));
  std::uint32_t reduced = fraction >> twos;
  std::uint32_t fives = mFractionDigits;
  for (std::uint32_t fifth = reduced * kInverseOfFive; fives > 0 && fifth <= kMostFifths;
       fifth = reduced * kInverseOfFive) {
    reduced = fifth;
    --fives;
  }
  std::uint32_t const scale = kPowersOfFive[fives] << (mFractionDigits - twos);
  std::uint64_t const value = std::uint64_t{seconds} * scale + reduced;
  if (seconds == 0 || scale == 1 || (seconds < FirstFactorTooLarge(scale) && value <= kLargestValue)) {
    out = {static_cast<std::int32_t>(value), scale};
    return;
  }
  double const rest = static_cast<double>(fraction) / static_cast<double>(mUnitsOfSecond);
  Mp_Double2RatioSmart(static_cast<double>(seconds) + rest, &out);
}

/// False for a text that is left to the general conversion. Otherwise both dates lie in the calendar, so that
/// fields, days and seconds order them alike.
inline bool SK_RelativeTimeReader::ReadUTC(std::string_view text, SK_Time& out) {
  std::size_t const zone = kUTCFraction + mFractionDigits;
  ClockFields clock;
  std::uint32_t fractionOfText = 0;
  if (text.size() <= zone || !IsPlainZone(text.substr(zone)) || !FindDate(text.data()) ||
      !ReadPlainClock(text.data() + kUTCHour, clock) || clock.hour > 23 || clock.minute > 59 || clock.second > 59 ||
      !ReadFraction(text.data(), fractionOfText)) {
    return false;
  }
  std::int64_t seconds = mSecondsToDate + ((clock.hour * 60 + clock.minute) * 60 + clock.second) - mBaseSecondOfDay;
  std::int32_t fraction = AsSigned(fractionOfText) - mFormat.GetUTCBaseTime().fraction;
  bool const negative = seconds < 0 || (seconds == 0 && fraction < 0);
  if (negative) {
    seconds = -seconds;
    fraction = -fraction;
  }
  if (fraction < 0) {
    seconds -= 1;
    fraction += AsSigned(mUnitsOfSecond);
  }
  if (seconds >= std::int64_t{kLargestValue}) return false;
  AddFraction(static_cast<std::uint32_t>(seconds), AsUnsigned(fraction), out);
  if (negative) out.value = WrapNegate(out.value);
  return true;
}

void SK_RelativeTimeReader::Read(std::string_view text, SK_Time& out) {
  if (mHasFrames ? ReadSMPTE(text, out) : mHasDates && ReadUTC(text, out)) return;
  SK_Utils::ConvertTimeStrToRelativeSKTime(text, out, mFormat);
}

}  // namespace SK_NAMESPACE_INT
