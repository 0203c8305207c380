/// Pieces of time texts, for the time code and its tests only. No function reads behind the end of a text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "SK_EightBytes.h"
#include "SK_TimeInt.h"
#include "senmark/SK_BasicRecords.h"

namespace SK_NAMESPACE_INT {

using ns_sensor::SK_Time;

/// Where the fields of a time text begin. A fraction's zone follows it, then the offset behind the sign.
enum eTimeTextLayout : std::size_t {
  kSMPTEFrames = 9,
  kUTCMonth = 5,
  kUTCDay = 8,
  kUTCHour = 11,
  kUTCMinute = 14,
  kUTCSecond = 17,
  kUTCFraction = 20,
  kUTCOffsetHour = 21,    ///< behind as many digits of fraction
  kUTCOffsetMinute = 24,  ///< the same
};

/// Whole frames per second, cut off: decides how many digits a frame number has. 0 for a zero scale.
inline std::uint32_t IntegerRate(SK_Time const& rate) {
  return DivOrZero(AsUnsigned(rate.value), rate.scale);
}

/// Digits of a frame number: 3 above 99 frames per second, else 2.
inline std::size_t FrameDigits(SK_Time const& rate) {
  return IntegerRate(rate) > 99 ? 3 : 2;
}

/// Frames that a time code counts as a second: 30 for 30000/1001. 0 for a zero scale.
std::int32_t NominalRate(SK_Time const& rate);

/// The low 32 bits of 10 to the `exponent`, and 0 above 18, where the power leaves 63 bits.
std::uint32_t PowerOfTen(std::uint16_t exponent);

inline bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

/// What `std::stoi` gives for the `width` characters at `position`, or for as many as there are: a sign and
/// white space in front are taken, and anything behind the digits is left. Its exceptions pass, and
/// `std::out_of_range` for a position behind the end.
std::int32_t ReadField(std::string_view text, std::size_t position, std::size_t width);

/// Hours, minutes and seconds at the start of a text.
struct ClockFields {
  std::uint32_t hour = 0;
  std::uint32_t minute = 0;
  std::uint32_t second = 0;
};

/// Whether each of 8 bytes is a digit.
inline bool AreEightDigits(std::uint64_t bytes) {
  constexpr std::uint64_t kHighHalves = 0xF0F0F0F0F0F0F0F0U;
  constexpr std::uint64_t kSixes = 0x0606060606060606U;
  return ((bytes & kHighHalves) | (((bytes + kSixes) & kHighHalves) >> 4U)) == 0x3333333333333333U;
}

/// Reads "12:34:56" from 8 bytes, whatever the separators are. False when one of the others is no digit.
inline bool ReadPlainClock(char const* bytes, ClockFields& out) {
  constexpr std::uint64_t kSeparators = 0x0000FF0000FF0000U;
  constexpr std::uint64_t kZeros = 0x3030303030303030U;
  std::uint64_t const digits = (LoadEight(bytes) & ~kSeparators) | (kZeros & kSeparators);
  if (!AreEightDigits(digits)) return false;
  // Each byte becomes ten times itself plus its neighbour behind; no sum leaves its byte.
  std::uint64_t const values = digits - kZeros;
  std::uint64_t const pairs = values * 10 + (values >> 8U);
  out.hour = static_cast<std::uint8_t>(pairs);
  out.minute = static_cast<std::uint8_t>(pairs >> 24U);
  out.second = static_cast<std::uint8_t>(pairs >> 48U);
  return true;
}

}  // namespace SK_NAMESPACE_INT
