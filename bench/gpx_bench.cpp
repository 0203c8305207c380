/// Opening 50 MB of GPX through the library and its module, the converted file at a place of the host's choice.
///
/// The file is a real run whose points are repeated with their times going on. It stands against what any reader of
/// GPX has to do: one pass of expat over the bytes in memory, with handlers that collect the characters of elements
/// without children, turn the attributes lat and lon and the texts of ele and of what is in extensions into numbers
/// by std::from_chars and the texts of time into seconds digit by digit, and add all of them up. It looks at no
/// namespaces, keeps no names, and checks no more than that. A second reference is expat with handlers that do nothing.
///
/// `Open` is openFile with an output path. `Convert` is createTdjsonStream: the conversion alone, without the reading
/// of what came out of it. Sides take turns on a file in the page cache. Memory is watched in a round of its own.
#include <benchmark/benchmark.h>
#include <expat.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "OpeningHost.h"
#include "senmark/module/Time.h"

namespace {

constexpr int kRounds = 5;
constexpr std::size_t kSize = 50000000;

std::string ContentOf(std::string const& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

/// The points of the run again and again, each round behind the one before it.
std::string LongRun() {
  std::string const run = ContentOf(SENMARK_TEST_DATA "/gpx/run_garmin_1_1.gpx");
  std::size_t const first = run.find("<trkpt");
  std::size_t const end = run.rfind("</trkpt>") + std::strlen("</trkpt>\n");
  constexpr std::size_t kTimeSize = sizeof("2012-10-24T23:29:40.000Z") - 1;
  std::string text = run.substr(0, first);
  for (std::int64_t round = 0; text.size() < kSize; ++round) {
    std::size_t at = first;
    for (std::size_t time = run.find("<time>", at); time < end; time = run.find("<time>", at)) {
      time += std::strlen("<time>");
      text.append(run, at, time - at);
      constexpr std::int64_t kRoundSeconds = 7200;
      senmark::kit::Instant moment = *senmark::kit::ParseInstant(run.substr(time, kTimeSize));
      moment.seconds += round * kRoundSeconds;
      senmark::kit::CivilTime const civil = senmark::kit::MakeCivilTime(moment);
      char shown[40];
      std::snprintf(shown, sizeof(shown), "%04d-%02d-%02dT%02d:%02d:%02d.000Z", civil.year, civil.month, civil.day,
                    civil.hour, civil.minute, civil.second);
      text += shown;
      at = time + kTimeSize;
    }
    text.append(run, at, end - at);
  }
  return text + run.substr(end);
}

/// What the bare parse knows.
struct BareReader {
  bool isLeaf = false;
  unsigned extensions = 0;
  std::string text;
  double sum = 0;
  long points = 0;

  void Add(std::string_view number) {
    double value = 0;
    if (std::from_chars(number.data(), number.data() + number.size(), value).ec == std::errc()) {
      sum += value;
    }
  }
};

int Digits(char const* text, int count) {
  int value = 0;
  for (int i = 0; i != count; ++i) {
    value = value * 10 + (text[i] - '0');
  }
  return value;
}

/// Seconds since some day, of a time like 2012-10-24T23:29:40.000Z.
double PlainSeconds(std::string_view text) {
  if (text.size() < 20) {
    return 0;
  }
  char const* const p = text.data();
  int const year = Digits(p, 4);
  int const month = Digits(p + 5, 2);
  static constexpr int kDaysBefore[] = {0, 0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  bool const isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  int const days = year * 365 + year / 4 - year / 100 + year / 400 + kDaysBefore[month > 12 ? 0 : month] +
                   (isLeap && month <= 2 ? -1 : 0) + Digits(p + 8, 2);
  double seconds = days * 86400.0 + Digits(p + 11, 2) * 3600 + Digits(p + 14, 2) * 60 + Digits(p + 17, 2);
  double unit = 0.1;
  for (std::size_t i = 20; text[19] == '.' && i < text.size() && text[i] != 'Z'; ++i, unit /= 10) {
    seconds += (text[i] - '0') * unit;
  }
  return seconds;
}

void XMLCALL BareStart(void* data, char const* name, char const** attributes) {
  auto& reader = *static_cast<BareReader*>(data);
  reader.isLeaf = true;
  reader.text.clear();
  if (std::strcmp(name, "trkpt") == 0) {
    ++reader.points;
    for (; *attributes != nullptr; attributes += 2) {
      if (std::strcmp(attributes[0], "lat") == 0 || std::strcmp(attributes[0], "lon") == 0) {
        reader.Add(attributes[1]);
      }
    }
  } else if (std::strcmp(name, "extensions") == 0) {
    ++reader.extensions;
  }
}

void XMLCALL BareEnd(void* data, char const* name) {
  auto& reader = *static_cast<BareReader*>(data);
  if (reader.isLeaf && std::strcmp(name, "time") == 0) {
    reader.sum += PlainSeconds(reader.text);
  } else if (reader.isLeaf && (reader.extensions != 0 || std::strcmp(name, "ele") == 0)) {
    reader.Add(reader.text);
  }
  reader.isLeaf = false;
  if (std::strcmp(name, "extensions") == 0) {
    --reader.extensions;
  }
}

void XMLCALL BareText(void* data, char const* text, int size) {
  auto& reader = *static_cast<BareReader*>(data);
  if (reader.isLeaf) {
    reader.text.append(text, static_cast<std::size_t>(size));
  }
}

void XMLCALL EmptyStart(void* /*data*/, char const* /*name*/, char const** /*attributes*/) {}
void XMLCALL EmptyEnd(void* /*data*/, char const* /*name*/) {}
void XMLCALL EmptyText(void* /*data*/, char const* /*text*/, int /*size*/) {}

bool Parse(XML_Parser parser, std::string const& content) {
  constexpr std::size_t kPiece = std::size_t{64} << 10;
  for (std::size_t at = 0; at < content.size(); at += kPiece) {
    std::size_t const size = std::min(kPiece, content.size() - at);
    if (XML_Parse(parser, content.data() + at, static_cast<int>(size), at + size == content.size() ? 1 : 0) !=
        XML_STATUS_OK) {
      return false;
    }
  }
  return true;
}

/// Negative if the file is not read.
double SecondsOfBareParse(std::string const& content) {
  Stopwatch const watch;
  BareReader reader;
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetUserData(parser, &reader);
  XML_SetElementHandler(parser, BareStart, BareEnd);
  XML_SetCharacterDataHandler(parser, BareText);
  bool const isRead = Parse(parser, content);
  XML_ParserFree(parser);
  benchmark::DoNotOptimize(reader.sum);
  return isRead && reader.points > 100000 ? watch.Seconds() : -1;
}

double SecondsOfEmptyParse(std::string const& content) {
  Stopwatch const watch;
  XML_Parser parser = XML_ParserCreate(nullptr);
  XML_SetElementHandler(parser, EmptyStart, EmptyEnd);
  XML_SetCharacterDataHandler(parser, EmptyText);
  bool const isRead = Parse(parser, content);
  XML_ParserFree(parser);
  return isRead ? watch.Seconds() : -1;
}

class GpxFile {
 public:
  GpxFile() : mPath(TempFolder() + "senmark_gpx_bench.gpx"), mContent(LongRun()) {
    std::ofstream(mPath, std::ios::binary) << mContent;
  }
  ~GpxFile() {
    ::unlink(mPath.c_str());
    ::unlink(OutputPath().c_str());
  }
  GpxFile(GpxFile const&) = delete;
  GpxFile& operator=(GpxFile const&) = delete;

  std::string const& Path() const { return mPath; }
  std::string OutputPath() const { return mPath + ".tdjson"; }
  std::string const& Content() const { return mContent; }

 private:
  std::string mPath;
  std::string mContent;
};

template <typename Work, typename Round>
void Measure(benchmark::State& state, OpeningHost const& host, GpxFile const& file, Work&& work, Round&& forMemory) {
  std::vector<double> converting;
  std::vector<double> bare;
  std::vector<double> empty;
  for (auto _ : state) {
    bare.push_back(SecondsOfBareParse(file.Content()));
    converting.push_back(work());
    empty.push_back(SecondsOfEmptyParse(file.Content()));
    state.SetIterationTime(converting.back());
    ::unlink(file.OutputPath().c_str());
  }
  std::uint64_t const memory = PeakMemoryOf(forMemory);
  if (host.HasFailed() || Best(bare) < 0 || Best(empty) < 0) {
    state.SkipWithError("the file is not read");
    return;
  }
  state.counters["bareMilliseconds"] = Best(bare) * 1e3;
  state.counters["ratioOfBest"] = Best(converting) / Best(bare);
  state.counters["ratioOfMiddle"] = Middle(converting) / Middle(bare);
  state.counters["ratioToEmptyHandlers"] = Best(converting) / Best(empty);
  state.counters["megabytesPerSecond"] = static_cast<double>(file.Content().size()) / 1e6 / Best(converting);
  state.counters["peakMiB"] = static_cast<double>(memory) / (1 << 20);
}

void Open(benchmark::State& state) {
  GpxFile const file;
  OpeningHost host(SENMARK_MODULES);
  std::string const output = file.OutputPath();
  ns_sensor::ISensorFileHandler* handler = nullptr;
  Measure(
      state, host, file, [&] { return host.SecondsToOpen(file.Path(), output.c_str()); },
      [&] { handler = host.Open(file.Path(), output.c_str()); });
  host.Close(handler);
}

void Convert(benchmark::State& state) {
  GpxFile const file;
  OpeningHost host(SENMARK_MODULES);
  Measure(
      state, host, file, [&] { return host.SecondsToStream(file.Path()); }, [&] { host.SecondsToStream(file.Path()); });
}

void Register(char const* name, void (*run)(benchmark::State&)) {
  benchmark::RegisterBenchmark(name, run)->UseManualTime()->Iterations(kRounds)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Register("Open", Open);
  Register("Convert", Convert);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
