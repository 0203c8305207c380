/// Cuts a line of a table of separated values into its fields.
///
/// A field that begins with a quote goes on to the next delimiter behind its closing quote, a doubled quote in
/// it is one, and text between closing quote and delimiter belongs to it. A delimiter at the end of a line
/// opens no further field.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ns_sensor {

class SVFields {
 public:
  /// Each byte of `delimiters` is one; the text must live as long as the object.
  explicit SVFields(std::string_view delimiters) : mDelimiters(delimiters) {}

  /// Starts over with a line, which must live until its last field was taken.
  void SetLine(std::string_view line) {
    mLine = line;
    mNext = 0;
  }

  /// The next field, good until the next call; false behind the last one.
  bool Next(std::string_view& field);

 private:
  std::string_view NextQuoted();
  /// The first delimiter from a position on, or the end of the line.
  std::size_t FindDelimiter(std::size_t from) const;

  std::string_view mDelimiters;
  std::string_view mLine;
  std::size_t mNext = 0;  ///< where the next field begins; at or behind the end of the line without one
  std::string mUnquoted;
};

}  // namespace ns_sensor
