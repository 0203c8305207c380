/// What samples of all kinds consist of, beside their values: paddings, the time, digits.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <string_view>

#include "SK_EightBytes.h"
#include "SerializerBuffer.h"

namespace SK_PLUGIN {

/// How many bytes `used` lacks of `wanted`. More than a buffer takes is no memory, before sums of it wrap.
inline std::size_t Missing(std::size_t used, std::uint64_t wanted) {
  if (used >= wanted) {
    return 0;
  }
  if (wanted - used > SerializerBuffer::kLargestSize) {
    throw std::bad_alloc();
  }
  return static_cast<std::size_t>(wanted - used);
}

inline char* Fill(char* p, std::size_t count, char filler) {
  return std::fill_n(p, count, filler);
}

template <std::size_t N>
char* CopyLiteral(char* p, char const (&literal)[N]) {
  std::memcpy(p, literal, N - 1);
  return p + (N - 1);
}

inline constexpr char kBeforeTime[] = R"({"time":")";
inline constexpr char kBeforeValue[] = R"(","value":)";

constexpr std::size_t TimeRoom(std::size_t timeSize) {
  return sizeof(kBeforeTime) - 1 + timeSize + sizeof(kBeforeValue) - 1;
}

inline char* CopyTime(char* p, std::string_view time) {
  return CopyLiteral(SK_NAMESPACE_INT::CopyShortText(CopyLiteral(p, kBeforeTime), time), kBeforeValue);
}

inline void AppendTime(SerializerBuffer& out, std::string_view time) {
  CopyTime(out.Grow(TimeRoom(time.size())), time);
}

inline constexpr std::uint64_t kZeroes = SK_NAMESPACE_INT::kEveryByte * '0';

/// The same as `DigitsOfValue` of a value below 1000, which is what most integer parts are.
inline std::uint64_t DigitsOfThree(std::uint32_t value) {
  std::uint32_t const hundreds = value * 41 >> 12U;
  std::uint32_t const rest = value - hundreds * 100;
  std::uint32_t const tens = rest * 103 >> 10U;
  return std::uint64_t{hundreds | tens << 8U | (rest - tens * 10) << 16U} << 40U;
}

/// The digits of a value below 10^8 as numbers; the lowest byte is the first.
inline std::uint64_t DigitsOfMostlyThree(std::uint32_t value) {
  return value < 1000 ? DigitsOfThree(value) : SK_NAMESPACE_INT::DigitsOfValue(value);
}

}  // namespace SK_PLUGIN
