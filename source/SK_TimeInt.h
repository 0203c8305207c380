/// Integer arithmetic of the time code, inside of it only. Nothing here traps: sums and products wrap at
/// 32 bits, a division by zero gives 0, and the remainder of a division by zero is the dividend. Times
/// with a zero scale and files with a frame rate of zero rely on that.
#pragma once

#include <cstdint>

namespace SK_NAMESPACE_INT {

inline std::int32_t AsSigned(std::uint32_t bits) {
  return static_cast<std::int32_t>(bits);
}

inline std::uint32_t AsUnsigned(std::int32_t value) {
  return static_cast<std::uint32_t>(value);
}

inline std::int32_t WrapAdd(std::int32_t a, std::int32_t b) {
  return AsSigned(AsUnsigned(a) + AsUnsigned(b));
}

inline std::int32_t WrapSub(std::int32_t a, std::int32_t b) {
  return AsSigned(AsUnsigned(a) - AsUnsigned(b));
}

inline std::int32_t WrapMul(std::int32_t a, std::int32_t b) {
  return AsSigned(AsUnsigned(a) * AsUnsigned(b));
}

inline std::int32_t WrapNegate(std::int32_t a) {
  return AsSigned(0U - AsUnsigned(a));
}

/// |a| as a bit pattern: 2147483648 for the smallest value.
inline std::uint32_t Magnitude(std::int32_t a) {
  return a < 0 ? 0U - AsUnsigned(a) : AsUnsigned(a);
}

inline std::uint32_t DivOrZero(std::uint32_t a, std::uint32_t b) {
  return b == 0 ? 0 : a / b;
}

/// The smallest value divided by -1 is itself.
inline std::int32_t DivOrZero(std::int32_t a, std::int32_t b) {
  if (b == -1) return WrapNegate(a);
  return b == 0 ? 0 : a / b;
}

inline std::uint32_t ModOrDividend(std::uint32_t a, std::uint32_t b) {
  return b == 0 ? a : a % b;
}

inline std::int32_t ModOrDividend(std::int32_t a, std::int32_t b) {
  if (b == -1) return 0;
  return b == 0 ? a : a % b;
}

}  // namespace SK_NAMESPACE_INT
