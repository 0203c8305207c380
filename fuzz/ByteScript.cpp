#include "ByteScript.h"

#include <iterator>
#include <limits>

namespace senmark_fuzz {

double ByteScript::Number() {
  using Limits = std::numeric_limits<double>;
  static constexpr double kNumbers[] = {0,
                                        -0.0,
                                        1,
                                        -2.5,
                                        99.75,
                                        1e-5,
                                        -1e300,
                                        0.1,
                                        123456789012345678.0,
                                        Limits::infinity(),
                                        -Limits::infinity(),
                                        Limits::quiet_NaN(),
                                        Limits::max(),
                                        Limits::lowest(),
                                        Limits::denorm_min()};
  std::size_t const choice = Below(std::size(kNumbers) + 1);
  if (choice != std::size(kNumbers)) {
    return kNumbers[choice];
  }
  std::uint64_t const bits = std::uint64_t{Word()} << 32U | Word();
  double number;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

char const* ByteScript::Text(std::string& storage) {
  // Match names are letters and digits; a text of samples has 65,535 bytes at most; some bytes are escaped.
  static char const* const kTexts[] = {"", "a", "b2", "arm", "2a", "with blank", "\"\\\n\t\r\b\f\x01", "\xC3\xA9\xFF"};
  constexpr std::size_t kNull = std::size(kTexts);
  constexpr std::size_t kLong = kNull + 1;
  constexpr std::size_t kNumbered = kLong + 1;
  constexpr std::size_t kLiteral = kNumbered + 1;
  std::size_t const choice = Below(kLiteral + 1);
  if (choice == kNull) {
    return nullptr;
  }
  if (choice == kLong) {
    storage.assign(65530 + Below(16), 'x');
  } else if (choice == kNumbered) {
    storage = "n" + std::to_string(Byte());
  } else if (choice == kLiteral) {
    storage.clear();
    for (std::size_t left = Below(16); left != 0; --left) {
      storage += static_cast<char>(Byte());
    }
  } else {
    storage = kTexts[choice];
  }
  return storage.c_str();
}

}  // namespace senmark_fuzz
