#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "BraillePlot.h"
#include "Chart.h"
#include "Command.h"
#include "JsonWriter.h"
#include "NodeText.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

struct Size {
  std::size_t width;
  std::size_t height;
};

std::size_t FromEnvironment(char const* name, std::size_t otherwise) {
  char const* const text = std::getenv(name);
  unsigned long const number = text == nullptr ? 0 : std::strtoul(text, nullptr, 10);
  return number > 0 && number < 10000 ? number : otherwise;
}

/// The terminal of the standard output; without one, the environment's, or 80 by 24.
Size TerminalSize() {
  winsize window{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col != 0 && window.ws_row != 0) {
    return {window.ws_col, window.ws_row};
  }
  return {FromEnvironment("COLUMNS", 80), FromEnvironment("LINES", 24)};
}

std::string CurveName(Chart const& chart, std::size_t curve) {
  return chart.isArray ? chart.name + ", " + chart.elements[curve] : chart.name;
}

/// Columns that the numbers of all axes need.
std::size_t LabelWidth(Chart const& chart) {
  std::size_t width = 0;
  for (Curve const& curve : chart.curves) {
    width = std::max({width, AxisNumber(curve.Min()).size(), AxisNumber(curve.Max()).size()});
  }
  return width;
}

void PrintChart(std::ostream& out, Chart const& chart, std::size_t width, std::size_t height) {
  std::size_t const labelWidth = LabelWidth(chart);
  for (std::size_t i = 0; i != chart.curves.size(); ++i) {
    Curve const& curve = chart.curves[i];
    out << std::string(labelWidth + 1, ' ') << Printable(CurveName(chart, i));
    if (curve.IsEmpty()) {
      out << ": no samples\n";
      continue;
    }
    out << ": " << NumberText(curve.Min()) << " to " << NumberText(curve.Max()) << '\n';
    for (std::string const& line : PanelLines(curve, chart.join, width, height, labelWidth)) {
      out << line << '\n';
    }
  }
  for (std::string const& line :
       TimeAxisLines(chart.extent.start.seconds(), chart.extent.end.seconds(), width, labelWidth)) {
    out << line << '\n';
  }
}

/// The columns that have samples, with the smallest and the largest value of each curve.
void WriteChart(std::ostream& out, Chart const& chart, Request const& request, std::size_t columns) {
  JsonWriter json(out);
  json.BeginObject();
  json.Key("sampleSetID");
  json.String(request.sampleSet);
  json.Key("from");
  WriteTime(json, chart.extent.start);
  json.Key("to");
  WriteTime(json, chart.extent.end);
  json.Key("curves");
  json.BeginArray(JsonWriter::eLayout::kLines);
  for (std::size_t i = 0; i != chart.curves.size(); ++i) {
    json.BeginObject();
    json.Key("name");
    json.String(CurveName(chart, i));
    json.Key("columns");
    json.BeginArray(JsonWriter::eLayout::kLines);
    for (std::size_t column = 0; column != columns; ++column) {
      CurveColumn const& cell = chart.curves[i].Columns()[column];
      if (!cell.isUsed) {
        continue;
      }
      double const share = columns > 1 ? static_cast<double>(column) / static_cast<double>(columns - 1) : 0;
      json.BeginObject();
      json.Key("seconds");
      json.Number(chart.extent.start.seconds() + share * chart.extent.duration());
      json.Key("first");
      json.Number(cell.first);
      json.Key("last");
      json.Number(cell.last);
      json.Key("min");
      json.Number(cell.min);
      json.Key("max");
      json.Number(cell.max);
      json.EndObject();
    }
    json.EndArray();
    json.EndObject();
  }
  json.CloseAll();
}

}  // namespace

int RunPlot(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  constexpr std::size_t kLeastWidth = 20;
  constexpr std::size_t kLeastPanel = 3;
  constexpr std::size_t kMostSize = 2000;  // of a terminal, in characters
  constexpr std::size_t kLinesAround = 3;  // axis of time, and the prompt below

  InputFile const input = OpenForRange(manager, request);
  Size const terminal = TerminalSize();
  std::size_t const width = std::clamp(request.width != 0 ? request.width : terminal.width, kLeastWidth, kMostSize);
  std::size_t const height = std::min(request.height != 0 ? request.height : terminal.height, kMostSize);
  // The numbers of an axis take at most 12 columns, so this is enough room for them.
  std::size_t const chartWidth = width - 13;
  std::size_t const columns = chartWidth * BrailleCanvas::kDotsAcross;
  Chart const chart = MakeChart(input, request, columns);
  if (request.asJson) {
    WriteChart(out, chart, request, columns);
    return kFine;
  }
  std::size_t const panels = std::max<std::size_t>(chart.curves.size(), 1);
  std::size_t const share = height > kLinesAround ? (height - kLinesAround) / panels : 0;
  PrintChart(out, chart, chartWidth, std::max(share, kLeastPanel + 1) - 1);
  return kFine;
}

}  // namespace senmark_tool
