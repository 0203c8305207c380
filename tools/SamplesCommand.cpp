#include <fstream>
#include <iomanip>

#include "Chart.h"
#include "Command.h"
#include "CsvText.h"
#include "JsonWriter.h"
#include "NodeText.h"
#include "OutputFile.h"
#include "SvgPlot.h"
#include "Utf8.h"

namespace senmark_tool {

namespace {

constexpr int kTimeWidth = 16;
constexpr std::size_t kNumberWidth = 20;

std::string Right(std::string const& text, std::size_t width) {
  std::size_t const columns = Columns(text);
  return columns >= width ? text : std::string(width - columns, ' ') + text;
}

/// One column for each number of the values, named as the file names them.
void PrintHeading(std::ostream& out, senmark::DynamicData const& data) {
  out << Right("seconds", kTimeWidth);
  senmark::NumberArrayProperties const* const array = std::get_if<senmark::NumberArrayProperties>(&data.properties);
  if (array == nullptr) {
    out << "  " << (data.type == senmark::eValueType::kNumber ? Right("value", kNumberWidth) : "value") << '\n';
    return;
  }
  for (std::uint64_t i = 0; i < array->arraySize; ++i) {
    std::string const name = i < array->displayNames.size() ? Printable(array->displayNames[i]) : std::to_string(i);
    out << "  " << Right(name, kNumberWidth);
  }
  out << '\n';
}

void PrintSample(std::ostream& out, senmark::Sample const& sample) {
  out << std::setw(kTimeWidth) << sample.time.seconds();
  if (std::vector<double> const* const numbers = std::get_if<std::vector<double>>(&sample.value)) {
    for (double const number : *numbers) {
      out << "  " << Right(NumberText(number), kNumberWidth);
    }
  } else if (double const* const number = std::get_if<double>(&sample.value)) {
    out << "  " << Right(NumberText(*number), kNumberWidth);
  } else {
    out << "  " << ValueText(sample.value);
  }
  out << '\n';
}

/// Calls `use` for each sample up to the limit.
template <class Use>
void ForEach(senmark::SampleRange const& range, std::optional<std::uint64_t> const& limit, Use&& use) {
  if (limit && *limit == 0) {
    return;
  }
  std::uint64_t count = 0;
  for (senmark::Sample const& sample : range) {
    use(sample);
    if (limit && ++count == *limit) {
      return;
    }
  }
}

/// Closes the JSON text even when the samples end in an error, which then goes on.
void WriteSamples(JsonWriter& json, senmark::SampleRange const& range, std::optional<std::uint64_t> const& limit) {
  try {
    ForEach(range, limit, [&](senmark::Sample const& sample) {
      json.BeginObject();
      json.Key("time");
      WriteTime(json, sample.time);
      json.Key("value");
      WriteValue(json, sample.value);
      json.EndObject();
    });
  } catch (...) {
    json.CloseAll();
    throw;
  }
  json.CloseAll();
}

/// A column for the time, and one for each number of the values.
void PrintCsvHeading(std::ostream& out, senmark::DynamicData const& data) {
  out << "seconds";
  senmark::NumberArrayProperties const* const array = std::get_if<senmark::NumberArrayProperties>(&data.properties);
  if (array == nullptr) {
    out << ",value";
  }
  for (std::uint64_t i = 0; array != nullptr && i < array->arraySize; ++i) {
    out << ',' << (i < array->displayNames.size() ? CsvField(array->displayNames[i]) : std::to_string(i));
  }
  out << '\n';
}

void PrintCsvSample(std::ostream& out, senmark::Sample const& sample) {
  out << NumberText(sample.time.seconds());
  if (std::vector<double> const* const numbers = std::get_if<std::vector<double>>(&sample.value)) {
    for (double const number : *numbers) {
      out << ',' << NumberText(number);
    }
  } else if (std::string const* const text = std::get_if<std::string>(&sample.value)) {
    out << ',' << CsvField(*text);
  } else {
    out << ',' << ValueText(sample.value);
  }
  out << '\n';
}

int PlotSamples(InputFile const& input, Request const& request, std::ostream& out) {
  OutputFile output(request.plotPath, request.file, request.overwrites);
  Chart const chart = MakeChart(input, request, kSvgColumns);
  if (chart.IsEmpty()) {
    throw UsageError("no samples to show");
  }
  std::ofstream file(output.WorkPath(), std::ios::binary);
  WriteSvgPlot(file, chart);
  file.close();
  if (!file) {
    throw std::runtime_error("cannot write \"" + request.plotPath + "\"");
  }
  std::uintmax_t const size = output.Finish();
  if (!request.asJson) {
    out << "wrote " << Printable(request.plotPath) << ": " << size << " bytes, " << chart.curves.size()
        << (chart.curves.size() == 1 ? " curve, " : " curves, ") << chart.samples << " samples\n";
    return kFine;
  }
  JsonWriter json(out);
  json.BeginObject();
  json.Key("output");
  json.String(request.plotPath);
  json.Key("bytes");
  json.Unsigned(size);
  json.Key("curves");
  json.Unsigned(chart.curves.size());
  json.Key("samples");
  json.Unsigned(chart.samples);
  json.CloseAll();
  return kFine;
}

}  // namespace

int RunSamples(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  InputFile const input = OpenForRange(manager, request);
  if (!request.plotPath.empty()) {
    return PlotSamples(input, request, out);
  }
  senmark::Samples const samples = RequestedSet(input.File(), request);
  senmark::SampleRange const range = RequestedSamples(input, samples, request);
  if (request.asCsv) {
    PrintCsvHeading(out, samples.data());
    ForEach(range, request.limit, [&](senmark::Sample const& sample) { PrintCsvSample(out, sample); });
    return kFine;
  }
  if (!request.asJson) {
    PrintHeading(out, samples.data());
    out << std::fixed << std::setprecision(6) << std::right;
    ForEach(range, request.limit, [&](senmark::Sample const& sample) { PrintSample(out, sample); });
    return kFine;
  }
  JsonWriter json(out);
  json.BeginObject();
  json.Key("sampleSetID");
  json.String(request.sampleSet);
  json.Key("type");
  json.String(NameOf(samples.data().type));
  json.Key("samples");
  json.BeginArray(JsonWriter::eLayout::kLines);
  WriteSamples(json, range, request.limit);
  return kFine;
}

}  // namespace senmark_tool
