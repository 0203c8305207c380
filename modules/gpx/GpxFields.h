/// What points have beside their place and time: numbers and texts, by the local names of their elements.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace senmark_gpx {

struct Field {
  std::string name;  ///< for people
  std::string unit;  ///< empty: none
  bool isText = false;
  bool holds = false;        ///< a value stays until the next one
  bool marksEvents = false;  ///< of a text
};

/// The fields of one file, by numbers from 0. Several names may mean the same field.
class GpxFields {
 public:
  static constexpr std::size_t kNone = ~std::size_t{0};
  /// Names that are added to those that are known.
  static constexpr std::size_t kMostNames = 256;

  GpxFields();

  /// The field of an element with a number; one that is not known gets a field of its name. Errors: `kit::Failure` for
  /// too many names.
  std::size_t ofNumber(std::string_view localName);
  /// The field of an element with a text, `kNone` for what is none.
  std::size_t ofText(std::string_view localName) const;
  /// Whether the standard has an element of this name in points, and says that it is a number.
  static bool IsStandardNumber(std::string_view localName);

  Field const& operator[](std::size_t field) const { return mFields[field]; }
  std::size_t size() const { return mFields.size(); }

 private:
  std::vector<Field> mFields;
  std::unordered_map<std::string, std::size_t> mNumbers;  ///< by local name; the known ones in lower case
  std::unordered_map<std::string, std::size_t> mTexts;
  std::size_t mKnown = 0;  ///< the first of the fields that are not known
  std::size_t mAdded = 0;
};

}  // namespace senmark_gpx
