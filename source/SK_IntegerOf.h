/// Whole numbers out of the doubles that a data file's numbers become, and sums and products of them.
///
/// Files are not to be trusted: every double has a defined result here, and what does not fit ends at a
/// limit that is larger than any file, where the check against the file's end refuses it.
#pragma once

#include <cstdint>
#include <limits>

namespace SK_NAMESPACE_INT {

/// More bytes, or more of anything, than a file can hold.
inline constexpr std::uint64_t kTooMany = std::numeric_limits<std::uint64_t>::max();

/// `number` without its fraction. A negative one, one of 2 to the 64th or more, and one that is no number
/// are `kTooMany`.
inline std::uint64_t CountOf(double number) {
  constexpr double kLimit = 18446744073709551616.0;
  return number > -1.0 && number < kLimit ? static_cast<std::uint64_t>(number) : kTooMany;
}

/// The low bits of `number` without its fraction, so that -1 as an unsigned integer has all bits set. A
/// number that does not fit a signed 64-bit integer is 0.
template <typename Integer>
Integer LowBitsOf(double number) {
  constexpr double kLimit = 9223372036854775808.0;
  bool const fits = number >= -kLimit && number < kLimit;
  return static_cast<Integer>(fits ? static_cast<std::int64_t>(number) : 0);
}

inline std::uint64_t AddUpToLimit(std::uint64_t a, std::uint64_t b) {
  std::uint64_t sum = 0;
  return __builtin_add_overflow(a, b, &sum) ? kTooMany : sum;
}

inline std::uint64_t MultiplyUpToLimit(std::uint64_t a, std::uint64_t b) {
  std::uint64_t product = 0;
  return __builtin_mul_overflow(a, b, &product) ? kTooMany : product;
}

}  // namespace SK_NAMESPACE_INT
