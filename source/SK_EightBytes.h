/// Eight bytes of text at once, in one register. For readers of fixed layouts, writers of numbers, and their tests.
///
/// In every number that stands for 8 bytes the first byte of the text is the lowest.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace SK_NAMESPACE_INT {

inline constexpr std::uint64_t kEveryByte = 0x0101010101010101U;
inline constexpr std::uint64_t kHighBits = kEveryByte * 0x80U;

inline std::uint64_t LoadEight(char const* bytes) {
  std::uint64_t number = 0;
  std::memcpy(&number, bytes, sizeof(number));
  if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) {
    number = __builtin_bswap64(number);
  }
  return number;
}

/// The same of four bytes.
inline std::uint32_t LoadFour(char const* bytes) {
  std::uint32_t number = 0;
  std::memcpy(&number, bytes, sizeof(number));
  if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) {
    number = __builtin_bswap32(number);
  }
  return number;
}

/// The bytes of a text of at most eight, with `filler` behind them.
inline std::uint64_t LoadUpToEight(std::string_view text, char filler) {
  char const* const first = text.data();
  std::size_t const size = text.size();
  if (size >= 8) {
    return LoadEight(first);
  }
  auto const place = [](char character, std::size_t at) {
    return std::uint64_t{static_cast<unsigned char>(character)} << (8 * at);
  };
  std::uint64_t number = kEveryByte * static_cast<unsigned char>(filler) << (8 * size);
  // Bytes that are taken twice come to the same place.
  if (size >= 4) {
    number |= LoadFour(first) | std::uint64_t{LoadFour(first + size - 4)} << (8 * (size - 4));
  } else if (size != 0) {
    number |= place(first[0], 0) | place(first[size / 2], size / 2) | place(first[size - 1], size - 1);
  }
  return number;
}

inline void StoreEight(char* bytes, std::uint64_t number) {
  if constexpr (__BYTE_ORDER__ == __ORDER_BIG_ENDIAN__) {
    number = __builtin_bswap64(number);
  }
  std::memcpy(bytes, &number, sizeof(number));
}

/// Copies a text that is short most of the time, so that a call would cost more than what it does, to where there is
/// room for it. Gives its end there.
inline char* CopyShortText(char* out, std::string_view text) {
  char const* const from = text.data();
  std::size_t const size = text.size();
  if (size > 96) {
    std::memcpy(out, from, size);
    return out + size;
  }
  // Stretches that may overlap.
  if (size >= 16) {
    for (std::size_t at = 0; at < size - 16; at += 16) {
      std::memcpy(out + at, from + at, 16);
    }
    std::memcpy(out + size - 16, from + size - 16, 16);
  } else if (size >= 8) {
    std::memcpy(out, from, 8);
    std::memcpy(out + size - 8, from + size - 8, 8);
  } else if (size >= 4) {
    std::memcpy(out, from, 4);
    std::memcpy(out + size - 4, from + size - 4, 4);
  } else {
    for (std::size_t at = 0; at != size; ++at) {
      out[at] = from[at];
    }
  }
  return out + size;
}

constexpr std::uint16_t TwoBytes(char first, char second) {
  return static_cast<std::uint16_t>(static_cast<unsigned char>(first) | static_cast<unsigned char>(second) << 8U);
}

inline std::uint16_t LoadTwo(char const* bytes) {
  return TwoBytes(bytes[0], bytes[1]);
}

/// Not 0 when one of 8 bytes is below `limit`, which is at most 128.
inline std::uint64_t AnyBelow(std::uint64_t bytes, std::uint64_t limit) {
  return (bytes - kEveryByte * limit) & ~bytes & kHighBits;
}

/// Not 0 when one of 8 bytes means something in a JSON string: a quote, a backslash or a control character.
inline std::uint64_t AnySpecial(std::uint64_t bytes) {
  return AnyBelow(bytes, ' ') | AnyBelow(bytes ^ (kEveryByte * '"'), 1) | AnyBelow(bytes ^ (kEveryByte * '\\'), 1);
}

/// All bits of the last `count` of 8 bytes, which is at most 8.
constexpr std::uint64_t MaskOfLast(unsigned count) {
  return count == 0 ? 0 : ~std::uint64_t{0} << (8U * (8U - count));
}

/// 8 digits as numbers from 0 to 9; bytes outside of `mask` become 0. A byte that is no digit becomes a number
/// above 9.
inline std::uint64_t DigitsIn(char const* bytes, std::uint64_t mask) {
  return (LoadEight(bytes) ^ (kEveryByte * '0')) & mask;
}

/// Not 0 when one of 8 numbers is above 9.
inline std::uint64_t AnyAboveNine(std::uint64_t digits) {
  return (digits | (digits + kEveryByte * (0x7F - 9))) & kHighBits;
}

/// What 8 numbers from 0 to 9 are as the digits of one. Pairs first, then each pair times its place.
inline std::uint64_t ValueOfDigits(std::uint64_t digits) {
  constexpr std::uint64_t kPairs = 0x000000FF000000FFU;
  constexpr std::uint64_t kFirstAndThird = 100 + (std::uint64_t{1000000} << 32U);
  constexpr std::uint64_t kSecondAndFourth = 1 + (std::uint64_t{10000} << 32U);
  std::uint64_t const pairs = digits * 10 + (digits >> 8U);
  return ((pairs & kPairs) * kFirstAndThird + ((pairs >> 16U) & kPairs) * kSecondAndFourth) >> 32U;
}

/// The other way round: 8 numbers from 0 to 9, the digits of a value below 10^8. Halves first, then pairs. A quotient
/// is a product and a shift, which is exact as far as the values in question go.
inline std::uint64_t DigitsOfValue(std::uint32_t value) {
  constexpr std::uint64_t kOneOfFour = 0x0000007F0000007FU;
  constexpr std::uint64_t kOneOfTwo = 0x000F000F000F000FU;
  std::uint64_t const firstFour = value / 10000;
  std::uint64_t const fours = firstFour | ((value - firstFour * 10000) << 32U);
  std::uint64_t const hundreds = ((fours * 10486) >> 20U) & kOneOfFour;
  std::uint64_t const twos = hundreds | ((fours - hundreds * 100) << 16U);
  std::uint64_t const tens = ((twos * 103) >> 10U) & kOneOfTwo;
  return tens | ((twos - tens * 10) << 8U);
}

}  // namespace SK_NAMESPACE_INT
