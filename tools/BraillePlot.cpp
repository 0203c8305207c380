#include "BraillePlot.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace senmark_tool {

namespace {

/// Row of a value when `min` is at the bottom and `max` at the top.
std::int64_t RowOf(double value, Curve const& curve, std::size_t rows) {
  double const last = static_cast<double>(rows - 1);
  double const span = curve.Max() - curve.Min();
  if (!(span > 0)) {
    return static_cast<std::int64_t>(rows / 2);
  }
  // Halves first: the difference of two huge numbers may not be finite.
  double const share = std::isfinite(span) ? (curve.Max() - value) / span
                                           : (curve.Max() / 2 - value / 2) / (curve.Max() / 2 - curve.Min() / 2);
  return static_cast<std::int64_t>(std::lround(share * last));
}

struct TimeUnit {
  double seconds;
  char const* name;
};

/// The largest unit of which a span has at least two.
TimeUnit UnitFor(double span) {
  for (TimeUnit const& unit : {TimeUnit{86400, " d"}, TimeUnit{3600, " h"}, TimeUnit{60, " min"}}) {
    if (span >= 2 * unit.seconds) {
      return unit;
    }
  }
  return {1, " s"};
}

std::string PadLeft(std::string const& text, std::size_t width) {
  return text.size() >= width ? text : std::string(width - text.size(), ' ') + text;
}

}  // namespace

void BrailleCanvas::Dot(std::int64_t column, std::int64_t row) {
  // Bits by place: the upper six were numbered before the two lowest came to the alphabet.
  static constexpr std::uint8_t kBits[kDotsDown][kDotsAcross] = {
      {0x01, 0x08}, {0x02, 0x10}, {0x04, 0x20}, {0x40, 0x80}};
  if (column < 0 || row < 0) {
    return;
  }
  std::size_t const x = static_cast<std::size_t>(column);
  std::size_t const y = static_cast<std::size_t>(row);
  if (x < DotColumns() && y < DotRows()) {
    std::uint8_t& cell = mCells[y / kDotsDown * mWidth + x / kDotsAcross];
    cell = static_cast<std::uint8_t>(cell | kBits[y % kDotsDown][x % kDotsAcross]);
  }
}

void BrailleCanvas::Line(std::int64_t column, std::int64_t row, std::int64_t toColumn, std::int64_t toRow) {
  std::int64_t const across = toColumn - column;
  std::int64_t const down = toRow - row;
  std::int64_t const steps = std::max(std::abs(across), std::abs(down));
  Dot(column, row);
  for (std::int64_t step = 1; step <= steps; ++step) {
    double const share = static_cast<double>(step) / static_cast<double>(steps);
    Dot(column + std::lround(share * static_cast<double>(across)),
        row + std::lround(share * static_cast<double>(down)));
  }
}

std::string BrailleCanvas::Row(std::size_t row) const {
  std::string text;
  text.reserve(mWidth * 3);
  for (std::size_t x = 0; x != mWidth; ++x) {
    std::uint8_t const bits = mCells[row * mWidth + x];
    text += '\xE2';
    text += static_cast<char>(0xA0 | (bits >> 6));
    text += static_cast<char>(0x80 | (bits & 0x3F));
  }
  return text;
}

void DrawCurve(Curve const& curve, eJoin join, BrailleCanvas& canvas) {
  std::size_t const rows = canvas.DotRows();
  std::int64_t lastColumn = -1;
  std::int64_t lastRow = 0;
  for (std::size_t i = 0; i != curve.Columns().size(); ++i) {
    CurveColumn const& column = curve.Columns()[i];
    if (!column.isUsed) {
      continue;
    }
    std::int64_t const x = static_cast<std::int64_t>(i);
    std::int64_t const firstRow = RowOf(column.first, curve, rows);
    if (lastColumn >= 0 && join == eJoin::kLines) {
      canvas.Line(lastColumn, lastRow, x, firstRow);
    } else if (lastColumn >= 0 && join == eJoin::kSteps) {
      canvas.Line(lastColumn, lastRow, x, lastRow);
      canvas.Line(x, lastRow, x, firstRow);
    }
    if (join == eJoin::kDots) {
      canvas.Dot(x, firstRow);
      canvas.Dot(x, RowOf(column.min, curve, rows));
      canvas.Dot(x, RowOf(column.max, curve, rows));
    } else {
      canvas.Line(x, RowOf(column.max, curve, rows), x, RowOf(column.min, curve, rows));
    }
    lastColumn = x;
    lastRow = RowOf(column.last, curve, rows);
  }
}

std::string AxisNumber(double number) {
  std::array<char, 32> text;
  int const length = std::snprintf(text.data(), text.size(), "%.6g", number);
  return std::string(text.data(), static_cast<std::size_t>(length));
}

std::vector<std::string> PanelLines(Curve const& curve, eJoin join, std::size_t width, std::size_t height,
                                    std::size_t labelWidth) {
  BrailleCanvas canvas(width, height);
  DrawCurve(curve, join, canvas);
  bool const isFlat = !(curve.Min() < curve.Max());
  std::vector<std::string> lines;
  for (std::size_t row = 0; row != height; ++row) {
    std::string label;
    if (isFlat) {
      label = row == height / 2 ? AxisNumber(curve.Min()) : "";
    } else if (row == 0) {
      label = AxisNumber(curve.Max());
    } else if (row + 1 == height) {
      label = AxisNumber(curve.Min());
    }
    lines.push_back(PadLeft(label, labelWidth) + (label.empty() ? "│" : "┤") + canvas.Row(row));
  }
  return lines;
}

std::vector<std::string> TimeAxisLines(double from, double to, std::size_t width, std::size_t labelWidth) {
  TimeUnit const unit = UnitFor(to - from);
  auto const label = [&](double seconds) { return AxisNumber(seconds / unit.seconds) + unit.name; };
  std::string axis;
  for (std::size_t x = 0; x != width; ++x) {
    axis += x == 0 || x == width / 2 || x + 1 == width ? "┬" : "─";
  }
  std::string numbers(width + labelWidth + 1, ' ');
  auto const place = [&](std::string const& text, std::size_t center) {
    std::size_t const wanted = labelWidth + 1 + center;
    std::size_t const start =
        std::min(wanted - std::min(wanted, text.size() / 2), numbers.size() - std::min(numbers.size(), text.size()));
    if (start + text.size() > numbers.size()) {
      return;
    }
    bool const isFree = numbers.find_first_not_of(' ', start == 0 ? 0 : start - 1) >= start + text.size();
    if (isFree) {
      numbers.replace(start, text.size(), text);
    }
  };
  place(label(to), width - 1);
  place(label(from), 0);
  place(label(from / 2 + to / 2), width / 2);
  return {std::string(labelWidth, ' ') + "└" + axis, numbers.substr(0, numbers.find_last_not_of(' ') + 1)};
}

}  // namespace senmark_tool
