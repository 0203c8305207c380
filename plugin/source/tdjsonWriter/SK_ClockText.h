/// hh:mm:ss, the part that the texts of all times have in common.
#pragma once

#include <cstddef>
#include <cstdint>

#include "SK_EightBytes.h"

namespace SK_PLUGIN {

constexpr std::size_t kClockTextSize = 8;

/// Whether each of the three has two digits at most and no sign.
inline bool HaveTwoDigits(int hours, int minutes, int seconds) {
  constexpr unsigned kEnd = 100;
  return static_cast<unsigned>(hours) < kEnd && static_cast<unsigned>(minutes) < kEnd &&
         static_cast<unsigned>(seconds) < kEnd;
}

/// Stores a clock whose fields have two digits each. All six at once: a field has three bytes, its two digits and the
/// colon. A tenth is a product and a shift, which is exact below 100 and stays within the three bytes.
inline void PutClockText(char* out, int hours, int minutes, int seconds) {
  constexpr unsigned kMinutesAt = 24;
  constexpr unsigned kSecondsAt = 48;
  constexpr std::uint64_t kOneDigit = 0x0F | std::uint64_t{0x0F} << kMinutesAt | std::uint64_t{0x0F} << kSecondsAt;
  constexpr std::uint64_t kColonsAndZeroes = 0x30303A30303A3030U;
  std::uint64_t const fields = static_cast<std::uint64_t>(hours) | static_cast<std::uint64_t>(minutes) << kMinutesAt |
                               static_cast<std::uint64_t>(seconds) << kSecondsAt;
  std::uint64_t const tens = fields * 103 >> 10U & kOneDigit;
  std::uint64_t const ones = fields - tens * 10;
  SK_NAMESPACE_INT::StoreEight(out, (tens | ones << 8U) + kColonsAndZeroes);
}

}  // namespace SK_PLUGIN
