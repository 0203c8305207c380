/// Turns the time texts of a file's samples into seconds from the file's base time.
///
/// It gives what `SK_Utils::ConvertTimeStrToRelativeSKTime` gives for the same text, exceptions included,
/// at a fraction of its cost: the common texts take no Euclidean loop, no prediction of overflow and no
/// allocation, and all others are handed on to that operation. Made once per query; one thread at a time.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <string_view>

#include "SK_TimeFormat.h"

namespace SK_NAMESPACE_INT {

class SK_RelativeTimeReader {
 public:
  explicit SK_RelativeTimeReader(SK_TimeFormat const& format);

  /// `out` becomes 0/1 for an empty text; it stays as it is for all other texts of a format without a
  /// notation.
  void Read(std::string_view text, SK_Time& out);
  /// The same as a value, 0/1 for a format without a notation. The form above saves the way through memory
  /// that a record of two numbers takes as a result.
  SK_Time Read(std::string_view text) {
    SK_Time time;
    Read(text, time);
    return time;
  }

 private:
  /// An odd prime to the power in which it divides the denominator of all frame times.
  struct PrimePower {
    std::uint32_t inverse;  ///< modulo 2 to the 32nd: the product with a multiple of the prime is the quotient
    std::uint32_t limit;    ///< the largest quotient; any larger product is that of no multiple
    std::uint32_t exponent;
  };
  static constexpr std::size_t kMostOddPrimes = 9;  // the product of the first nine is above 2 to the 31st

  void PrepareFrames();
  void PrepareFrameBase();
  bool FactorDenominator();
  void PrepareDates();

  bool ReadSMPTE(std::string_view text, SK_Time& out) const;
  bool ReadFrame(std::string_view text, std::uint32_t& out) const;
  bool FrameToTime(std::uint32_t frame, SK_Time& out) const;
  bool ReadUTC(std::string_view text, SK_Time& out);
  bool FindDate(char const* text);
  bool ReadFraction(char const* text, std::uint32_t& out) const;
  void AddFraction(std::uint32_t seconds, std::uint32_t fraction, SK_Time& out) const;

  SK_TimeFormat mFormat;
  bool mHasFrames = false;  ///< SMPTE, with a rate that the quick way can take
  bool mHasDates = false;   ///< UTC, with a precision and a base that the quick way can take

  // Frame n is at n * mNumerator / mDenominator seconds, in lowest terms.
  std::uint32_t mNominalRate = 0;
  std::uint32_t mDropFactor = 0;  ///< 0 without drop frame counting
  std::size_t mFrameTextLength = 0;
  std::uint32_t mNumerator = 0;
  std::uint32_t mDenominator = 0;
  std::uint32_t mPowerOfTwo = 0;  ///< the largest that divides the denominator
  std::array<PrimePower, kMostOddPrimes> mOddPrimes = {};
  std::size_t mOddPrimeCount = 0;
  std::uint32_t mFactorLimit = 0;  ///< frames from here on times the numerator count as overflow

  // Frames from the base's on whose distance from it is exact; without any, a base that no frame reaches.
  std::uint32_t mBaseFrame = std::numeric_limits<std::uint32_t>::max();
  std::uint32_t mLargestExactDistance = 0;

  std::uint32_t mFractionDigits = 0;  ///< 1 to 9
  std::uint32_t mUnitsOfSecond = 0;   ///< 10 to the number of digits
  std::int32_t mBaseSecondOfDay = 0;

  bool mHasDate = false;
  std::array<char, 10> mDate = {};  ///< the date in the last text, as it stood there
  std::int64_t mSecondsToDate = 0;  ///< from the base time's midnight to that date's
};

}  // namespace SK_NAMESPACE_INT
