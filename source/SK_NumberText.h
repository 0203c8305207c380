/// Numbers as text, read the same way whatever locale the host has set.
#pragma once

#include <cstdint>
#include <string>

namespace SK_NAMESPACE_INT {

class SK_NumberText {
 public:
  /// What `std::stod` gives in the "C" locale: white space in front, a sign, "inf" and hexadecimal texts
  /// are taken, and anything behind the number is left. `std::invalid_argument` without a number,
  /// `std::out_of_range` for one that a double cannot hold.
  static double ToDouble(std::string const& text);

  /// The double nearest to the number from `first` to `last`: at most 40 digits, one point among them or none.
  static double PlainToDouble(char const* first, char const* last);

  /// The integer part, as the low 64 bits of its two's complement; numbers outside of both 64-bit ranges
  /// give all ones.
  static std::uint64_t Truncate(double number);
};

}  // namespace SK_NAMESPACE_INT
