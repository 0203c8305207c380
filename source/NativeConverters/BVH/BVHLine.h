/// Takes words and numbers from a line one after the other, as a text stream in the plain locale does: white
/// space in front is skipped, a token may end anywhere, and after the first failure nothing more is read.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ns_sensor {

/// What stands between words, in the plain locale.
///
/// byte  0 to 255, or negative for none
inline bool IsWordSpace(int byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

class BVHLine {
 public:
  /// The text must outlive the object.
  explicit BVHLine(std::string_view text) : mNext(text.data()), mEnd(text.data() + text.size()) {}

  bool HasFailed() const { return mHasFailed; }

  /// Each gives whether it succeeded. With nothing left, or after a failure, the argument stays as it is.
  bool Read(std::string& word);
  /// A number that does not fit becomes the nearest that does, a text that is none 0. Both are failures.
  bool Read(std::int32_t& number);
  /// As above. A minus sign is taken, and the number counted down from 2 to the 64th.
  bool Read(std::uint64_t& number);
  /// As above. Decimal, with an exponent or without; words and hexadecimal texts are no numbers.
  bool Read(double& number);

 private:
  /// The digits of an integer, with their sign.
  struct Integer {
    std::uint64_t size = 0;  ///< all ones if it does not fit
    bool fits = true;
    bool isNegative = false;
    bool hasDigits = false;
  };

  bool FindToken();
  Integer ReadInteger();
  bool Fail() {
    mHasFailed = true;
    return false;
  }

  char const* mNext;
  char const* mEnd;
  bool mHasFailed = false;
};

}  // namespace ns_sensor
