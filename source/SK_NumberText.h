/// Numbers as text, read the same way whatever locale the host has set.
#pragma once

#include <string>
#include <string_view>

namespace SK_NAMESPACE_INT {

class SK_NumberText {
 public:
  /// What `std::stod` gives in the "C" locale: white space in front, a sign, "inf" and hexadecimal texts
  /// are taken, and anything behind the number is left. `std::invalid_argument` without a number,
  /// `std::out_of_range` for one that a double cannot hold.
  static double ToDouble(std::string const& text);

  /// Whether `ToDouble` takes the whole text, down to its last byte.
  static bool IsWholeNumber(std::string_view text);
  /// What `ToDouble` gives for such a text.
  static double WholeToDouble(std::string_view text);

  /// The double nearest to the number from `first` to `last`: at most 40 digits, one point among them or none.
  static double PlainToDouble(char const* first, char const* last);

  /// The double nearest to the decimal number without sign from `first` to `last`, of any length and with an
  /// exponent or without. Infinity for one that is too large.
  static double NearestDouble(char const* first, char const* last);

 private:
  /// The number of a text that is one as a whole, has no sign and no white space in front, and leaves no doubt about
  /// its range. False, which may always be given, leaves the answer to `ToDouble`.
  static bool DecimalToDouble(char const* first, char const* last, double& number);
};

}  // namespace SK_NAMESPACE_INT
