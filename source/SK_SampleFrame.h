/// The bytes that all samples of a set share in the fixed layout, but for those inside of the value.
#pragma once

#include <cstdint>
#include <cstring>

#include "SK_EightBytes.h"

namespace SK_NAMESPACE_INT {

/// Whether a JSON string of these bytes means just them.
inline bool IsPlainText(char const* text, std::uint64_t size) {
  constexpr std::uint64_t kChunk = 8;
  std::uint64_t special = 0;
  std::uint64_t done = 0;
  for (; size - done >= kChunk; done += kChunk) {
    special |= AnySpecial(LoadEight(text + done));
  }
  if (size >= kChunk) {
    return (special | AnySpecial(LoadEight(text + size - kChunk))) == 0;
  }
  char rest[kChunk] = {'0', '0', '0', '0', '0', '0', '0', '0'};
  std::memcpy(rest, text, size);
  return AnySpecial(LoadEight(rest)) == 0;
}

struct SK_SampleFrame {
  std::uint64_t head = 0;       ///< the first 8 bytes
  char headEnd = 0;             ///< the ninth
  std::uint16_t beforeKey = 0;  ///< the 2 bytes before the second key
  std::uint64_t key = 0;        ///< the second key, 8 bytes
  std::uint64_t keyOffset = 0;
  std::uint16_t tail = 0;  ///< the last 2 bytes
  std::uint64_t tailOffset = 0;
  std::uint64_t timeOffset = 0;  ///< of the text behind its quote
  std::uint64_t timeLength = 0;
  std::uint64_t valueOffset = 0;

  /// Whether a sample has this frame, and a time text that means just its bytes.
  bool Fits(char const* sample) const {
    std::uint64_t difference = (LoadEight(sample) ^ head) | (LoadEight(sample + keyOffset) ^ key);
    difference |= static_cast<std::uint64_t>(sample[8] != headEnd);
    difference |= static_cast<std::uint64_t>(LoadTwo(sample + keyOffset - 2) ^ beforeKey);
    difference |= static_cast<std::uint64_t>(LoadTwo(sample + tailOffset) ^ tail);
    return difference == 0 && IsPlainText(sample + timeOffset, timeLength);
  }
};

}  // namespace SK_NAMESPACE_INT
