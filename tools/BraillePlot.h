/// Charts of braille characters: each character cell holds two by four dots.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "Curve.h"

namespace senmark_tool {

/// A grid of dots. Dots outside are not drawn. Row 0 is the top one.
class BrailleCanvas {
 public:
  static constexpr std::size_t kDotsAcross = 2;
  static constexpr std::size_t kDotsDown = 4;

  /// Both in character cells.
  BrailleCanvas(std::size_t width, std::size_t height) : mWidth(width), mHeight(height), mCells(width * height) {}

  std::size_t DotColumns() const { return mWidth * kDotsAcross; }
  std::size_t DotRows() const { return mHeight * kDotsDown; }

  void Dot(std::int64_t column, std::int64_t row);
  /// A straight line, both ends drawn.
  void Line(std::int64_t column, std::int64_t row, std::int64_t toColumn, std::int64_t toRow);

  /// One row of cells in UTF-8, three bytes each.
  std::string Row(std::size_t row) const;

 private:
  std::size_t mWidth;
  std::size_t mHeight;
  std::vector<std::uint8_t> mCells;  ///< row by row; bits as in U+2800 and behind it
};

/// Draws a curve over the whole canvas: its largest value in the top row, its smallest in the bottom row,
/// and a curve of one value only in the middle.
void DrawCurve(Curve const& curve, eJoin join, BrailleCanvas& canvas);

/// A number for an axis: at most six digits that count.
std::string AxisNumber(double number);

/// One curve with its axis on the left: `height` lines, each `labelWidth` + 1 + `width` columns.
///
/// labelWidth  columns for the numbers of the axis; they are set to the right.
std::vector<std::string> PanelLines(Curve const& curve, eJoin join, std::size_t width, std::size_t height,
                                    std::size_t labelWidth);

/// Axis of time below a panel: two lines, with the times at begin, middle and end. from, to: seconds; they
/// are shown in minutes, hours or days where the span is long.
std::vector<std::string> TimeAxisLines(double from, double to, std::size_t width, std::size_t labelWidth);

}  // namespace senmark_tool
