/// What a file, a track or a route tells of itself.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "XmlParser.h"

namespace senmark_gpx {

/// Bytes of a name for people, at most.
inline constexpr std::size_t kLongestName = 255;

/// The name of an element's text. parent: that of the element around it, empty for one that stands in the file's
/// metadata, a track or a route itself.
std::string TitleOf(std::string_view parent, std::string_view localName);

/// A property that stands in attributes instead of a text; the value is empty if there is none.
struct AttributeProperty {
  std::string title;
  std::string value;
};

/// title: of the element.
AttributeProperty PropertyOfAttributes(std::string_view localName, std::string const& title,
                                       XmlAttributes const& attributes);

}  // namespace senmark_gpx
