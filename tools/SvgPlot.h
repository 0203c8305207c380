/// Plots as pictures that can be scaled (SVG 1.1).
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "Chart.h"

namespace senmark_tool {

/// Columns to make a chart with: two for each unit of the picture's width that its curves have at most, so that
/// nobody sees that there are columns.
constexpr std::size_t kSvgColumns = 1600;

/// `text` as a part of an XML document. What XML has no place for becomes "?".
std::string XmlText(std::string_view text);

/// The text for an axis of values: a display name, in which a unit in square brackets at the end is kept, and
/// the title without that unit. A name without a unit is both.
struct PlotNames {
  std::string title;
  std::string axis;
};
PlotNames NamesOfPlot(std::string const& displayName);

/// Writes a plot of a chart that is not empty: title, both axes with round numbers, and all curves on one scale,
/// with a legend for the elements of an array. Its size follows from the number of columns and curves alone.
void WriteSvgPlot(std::ostream& out, Chart const& chart);

}  // namespace senmark_tool
