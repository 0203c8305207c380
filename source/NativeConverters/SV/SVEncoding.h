/// Which encoding a table of separated values is written in, by the mark in front of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>

namespace ns_sensor {

class SK_InputBytes;

enum FileEncodingType : std::uint8_t {
  kNoEncodingMark = 0,  ///< UTF-8, or whatever else; bytes are taken as they stand
  kUTF8Mark = 1,        ///< the same behind a mark
  kUTF16BigEndian = 2,  ///< the byte of higher value first
  kUTF16LittleEndian = 3,
  kFileNotOpened = 4
};

inline constexpr std::array<unsigned char, 3> UTF8_MARK = {0xEF, 0xBB, 0xBF};
inline constexpr std::array<unsigned char, 2> UTF16_BIG_E_MARK = {0xFE, 0xFF};
inline constexpr std::array<unsigned char, 2> UTF16_LIL_E_MARK = {0xFF, 0xFE};

/// The three marks are looked for one behind the other, not each at the start: EF FF FE counts as UTF-16.
FileEncodingType GetFileEncoding(std::string const& path);

/// Steps over the bytes of a pattern as far as they are there; whether all of them were.
bool MatchOptionalPattern(SK_InputBytes& input, unsigned char const* pattern, std::size_t length);

}  // namespace ns_sensor
