/// JSON as a tree that knows where in the text each value stands.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ModuleFindings.h"

namespace senmark_tool {

struct PlacedValue {
  enum class eKind : std::uint8_t { kNull, kBool, kInteger, kOtherNumber, kString, kArray, kObject };

  eKind kind = eKind::kNull;
  std::uint64_t offset = 0;           ///< of the value's first byte
  std::string key;                    ///< of a member of an object
  std::uint64_t keyOffset = 0;        ///< of its opening quote
  std::string text;                   ///< of a string
  std::int64_t integer = 0;           ///< of an integer that 64 bits can hold with a sign
  std::vector<PlacedValue> children;  ///< of an array or object, in the order of the text

  /// The first member of this key; null if there is none, or this is no object.
  PlacedValue const* Find(std::string const& wanted) const;
};

struct JsonSyntaxError {
  std::uint64_t offset = 0;
  std::string text;
};

/// The outcome of reading: a tree, or what is wrong with the text.
struct PlacedJson {
  PlacedValue root;
  std::optional<JsonSyntaxError> error;
};

/// Reads a text as the library does: up to the first NUL, bytes that are no UTF-8 as they are. What is nested deeper
/// than `depth` is read, but not kept.
PlacedJson ReadPlacedJson(std::string const& text, std::size_t depth);

TextPlace PlaceOf(std::string const& text, std::uint64_t offset);

}  // namespace senmark_tool
