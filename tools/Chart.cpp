#include "Chart.h"

#include <algorithm>
#include <cmath>

#include "Command.h"

namespace senmark_tool {

namespace {

std::size_t ColumnOf(double seconds, senmark::Extent const& extent, std::size_t columns) {
  double const span = extent.duration();
  double const share = span > 0 ? (seconds - extent.start.seconds()) / span : 0.5;
  double const last = static_cast<double>(columns - 1);
  return static_cast<std::size_t>(std::clamp(std::floor(share * last + 0.5), 0.0, last));
}

void Add(Curve& curve, double seconds, double value, senmark::Extent const& extent) {
  if (std::isfinite(value)) {
    curve.Add(ColumnOf(seconds, extent, curve.Columns().size()), value);
  }
}

void AddSample(Chart& chart, senmark::Sample const& sample) {
  ++chart.samples;
  double const seconds = sample.time.seconds();
  if (double const* const number = std::get_if<double>(&sample.value)) {
    Add(chart.curves[0], seconds, *number, chart.extent);
  } else if (std::vector<double> const* const numbers = std::get_if<std::vector<double>>(&sample.value)) {
    for (std::size_t i = 0; i != std::min(numbers->size(), chart.curves.size()); ++i) {
      Add(chart.curves[i], seconds, (*numbers)[i], chart.extent);
    }
  }
}

/// The display name of the node that a set belongs to.
std::string NameOfSet(senmark::File const& file, std::string const& id) {
  std::string name;
  file.walk([&](senmark::Node const& node, int) {
    if (node.dynamic && node.dynamic->sampleSetId == id) {
      name = node.displayName;
    }
  });
  return name;
}

eJoin JoinOf(senmark::eInterpolation interpolation) {
  switch (interpolation) {
    case senmark::eInterpolation::kLinear:
      return eJoin::kLines;
    case senmark::eInterpolation::kHold:
      return eJoin::kSteps;
    case senmark::eInterpolation::kNone:
      break;
  }
  return eJoin::kDots;
}

/// The curves of a set, without samples.
void PrepareCurves(Chart& chart, senmark::DynamicData const& data, std::size_t columns) {
  senmark::NumberArrayProperties const* const array = std::get_if<senmark::NumberArrayProperties>(&data.properties);
  chart.isArray = array != nullptr;
  std::size_t const count = array == nullptr ? 1 : static_cast<std::size_t>(array->arraySize);
  chart.curves.assign(count, Curve(columns));
  for (std::size_t i = 0; chart.isArray && i != count; ++i) {
    chart.elements.push_back(i < array->displayNames.size() ? array->displayNames[i] : std::to_string(i));
  }
}

}  // namespace

bool Chart::IsEmpty() const {
  return std::all_of(curves.begin(), curves.end(), [](Curve const& curve) { return curve.IsEmpty(); });
}

Chart MakeChart(InputFile const& input, Request const& request, std::size_t columns) {
  senmark::Samples const samples = RequestedSet(input.File(), request);
  senmark::DynamicData const& data = samples.data();
  if (data.type != senmark::eValueType::kNumber && data.type != senmark::eValueType::kNumberArray) {
    throw UsageError("the samples of \"" + request.sampleSet + "\" are no numbers");
  }
  std::optional<senmark::Extent> const extent = RequestedExtent(input, samples, request);
  if (!extent) {
    throw UsageError("no samples to show");
  }
  Chart chart;
  chart.name = NameOfSet(input.File(), request.sampleSet);
  chart.extent = *extent;
  chart.join = JoinOf(data.interpolation);
  PrepareCurves(chart, data, columns);
  for (senmark::Sample const& sample : RequestedSamples(input, samples, request)) {
    AddSample(chart, sample);
  }
  return chart;
}

}  // namespace senmark_tool
