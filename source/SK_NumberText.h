/// Numbers as text, read the same way whatever locale the host has set.
#pragma once

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

  /// The double nearest to the decimal number without sign from `first` to `last`, of any length and with an
  /// exponent or without. Infinity for one that is too large.
  static double NearestDouble(char const* first, char const* last);

 private:
  /// `NearestDouble` by the functions of C, which know every number but need a copy of the text.
  static double NearestDoubleOfCopy(char const* first, char const* last);
};

}  // namespace SK_NAMESPACE_INT
