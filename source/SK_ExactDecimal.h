/// Decimal numbers whose nearest double takes one operation.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace SK_NAMESPACE_INT {

/// So many digits fit into 64 bits whatever they are.
inline constexpr std::ptrdiff_t kDigitsOfAnyInteger = 19;

inline constexpr std::array<double, 23> kExactPowersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
inline constexpr int kLargestExactPower = 22;
inline constexpr std::uint64_t kLargestExactInteger = std::uint64_t{1} << 53U;

/// The double nearest to mantissa * 10^exponent. Integers up to 2 to the 53rd and powers of ten up to the 22nd are
/// exact doubles, so one operation on them rounds once and therefore right. False, and no number, beyond them.
inline bool ExactDecimalToDouble(std::uint64_t mantissa, int exponent, double& number) {
  if (mantissa > kLargestExactInteger || exponent < -kLargestExactPower || exponent > kLargestExactPower) {
    return false;
  }
  auto const integer = static_cast<double>(mantissa);
  number = exponent <= 0 ? integer / kExactPowersOfTen[static_cast<std::size_t>(-exponent)]
                         : integer * kExactPowersOfTen[static_cast<std::size_t>(exponent)];
  return true;
}

}  // namespace SK_NAMESPACE_INT
