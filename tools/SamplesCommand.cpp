#include <iomanip>

#include "Command.h"
#include "JsonWriter.h"
#include "NodeText.h"
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

}  // namespace

int RunSamples(senmark::Senmark const& manager, Request const& request, std::ostream& out) {
  senmark::File const file = manager.open(request.file);
  senmark::Samples const samples = RequestedSet(file, request);
  senmark::SampleRange const range = RequestedSamples(manager, file, samples, request);
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
