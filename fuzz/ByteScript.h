/// The input of a fuzz target as a script: numbers and texts are taken from the front, and there is no end of zeros
/// behind the last byte.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>

namespace senmark_fuzz {

class ByteScript {
 public:
  ByteScript(std::uint8_t const* data, std::size_t size) : mNext(data), mEnd(data + size) {}

  bool HasMore() const { return mNext != mEnd; }
  std::uint8_t Byte() { return HasMore() ? *mNext++ : std::uint8_t{0}; }
  /// From 0 on and below `count`.
  std::size_t Below(std::size_t count) { return Byte() % count; }
  std::uint32_t Word() {
    std::uint32_t word = 0;
    for (int i = 0; i != 4; ++i) {
      word = word << 8U | Byte();
    }
    return word;
  }
  /// One of the numbers that a writer can stumble over, or any.
  double Number();
  /// Null, or a text that stays valid as long as `storage`.
  char const* Text(std::string& storage);

 private:
  std::uint8_t const* mNext;
  std::uint8_t const* mEnd;
};

}  // namespace senmark_fuzz
