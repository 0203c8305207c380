/// Opening a table of 50 MB with the module `series`, the converted file at a place of the host's choice.
///
/// Two tables: the rows of a real recording of ten numbers, and rows like those of a weather station with a date, six
/// numbers and a text, repeated with times that advance. Each stands against a bare parse of the same file: read in
/// pieces of 256 KiB, cut into lines and cells at the delimiter honouring quotes, each number by `std::from_chars`,
/// each date by a reader of its fixed positions, all of them added up, nothing kept.
///
/// `Open` is `openFile` as a host calls it: the module's pass over the file, the writer, and then the reader,
/// which reads all of the result back and makes its own copy of the samples. `Convert` is what the module does of it,
/// with the writer. Files are in the page cache; memory is watched in a round of its own. The ratios are of wall time
/// and, for machines with other work, of the time that the thread ran, the system's part included.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fstream>
#include <limits>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "HostTables.h"
#include "InputFile.h"
#include "OpeningHost.h"
#include "Series.h"

namespace {

constexpr int kRounds = 40;
constexpr std::size_t kFileSize = 50000000;

std::vector<std::string> LinesOf(std::string const& path) {
  std::vector<std::string> lines;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    lines.push_back(line);
  }
  return lines;
}

/// The rows of the recording again and again, a hundredth of a second apart.
std::string Recording() {
  std::vector<std::string> const lines = LinesOf(SENMARK_TEST_DATA "/series/imu_9dof_100hz_start.csv");
  std::string text = lines[0] + '\n';
  for (unsigned row = 0; text.size() < kFileSize; ++row) {
    std::string const& line = lines[1 + row % (lines.size() - 1)];
    char time[32];
    std::snprintf(time, sizeof(time), "%u.%02u", row / 100, row % 100);
    text += time + line.substr(line.find(',')) + '\n';
  }
  return text;
}

/// Ten minutes apart.
std::string Weather() {
  static constexpr char const* kTexts[] = {"Fog", "Clear", "\"Freezing Drizzle,Fog\"", "Mainly Clear", "Snow"};
  std::string text =
      "Date/Time,Temp (C),Dew Point Temp (C),Rel Hum (%),Wind Spd (km/h),Visibility (km),Stn Press (kPa),Weather\n";
  std::uint32_t state = 1;
  auto const below = [&](std::uint32_t bound) { return (state = state * 1664525U + 1013904223U) / 65536U % bound; };
  for (std::int64_t row = 0; text.size() < kFileSize; ++row) {
    senmark::kit::CivilTime const time = senmark::kit::MakeCivilTime({1325376000 + row * 600, 0});
    char line[160];
    std::snprintf(line, sizeof(line), "%04d-%02d-%02d %02d:%02d:%02d,-%u.%u,-%u.%u,%u,%u,%u.%u,%u.%02u,%s\n", time.year,
                  time.month, time.day, time.hour, time.minute, time.second, below(20), below(10), below(20), below(10),
                  below(100), below(50), below(25), below(10), 95 + below(10), below(100), kTexts[below(5)]);
    text += line;
  }
  return text;
}

// The bare parse.

double DateOf(std::string_view text) {
  auto const number = [&](std::size_t at, std::size_t size) {
    int value = 0;
    std::from_chars(text.data() + at, text.data() + at + size, value);
    return value;
  };
  auto const days = senmark::kit::detail::DaysOfDate(number(0, 4), number(5, 2), number(8, 2));
  return static_cast<double>(days * 86400 + number(11, 2) * 3600 + number(14, 2) * 60 + number(17, 2));
}

class BareParse {
 public:
  double SumOf(std::string const& path) {
    int const file = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    std::vector<char> buffer(std::size_t{512} << 10);
    std::size_t kept = 0;
    bool isHeader = true;
    for (;;) {
      ssize_t const count = ::read(file, buffer.data() + kept, std::size_t{256} << 10);
      if (count <= 0) {
        break;
      }
      char const* line = buffer.data();
      char const* const end = buffer.data() + kept + count;
      for (;;) {
        auto const* const feed =
            static_cast<char const*>(std::memchr(line, '\n', static_cast<std::size_t>(end - line)));
        if (feed == nullptr) {
          break;
        }
        if (!isHeader) {
          TakeLine(line, feed);
        }
        isHeader = false;
        line = feed + 1;
      }
      kept = static_cast<std::size_t>(end - line);
      std::memmove(buffer.data(), line, kept);
    }
    ::close(file);
    return mSum;
  }

 private:
  void TakeLine(char const* p, char const* end) {
    for (;;) {
      char const* const start = p;
      if (p != end && *p == '"') {
        for (++p; p != end && (*p != '"' || (p + 1 != end && p[1] == '"' && ++p != end)); ++p) {
        }
      }
      while (p != end && *p != ',') {
        ++p;
      }
      TakeCell(start, p);
      if (p == end) {
        return;
      }
      ++p;
    }
  }

  void TakeCell(char const* start, char const* end) {
    if (end - start == 19 && start[4] == '-') {
      mSum += DateOf({start, 19});
      return;
    }
    double value = 0;
    auto const [behind, error] = std::from_chars(start, end, value);
    mSum += error == std::errc() && behind == end ? value : static_cast<double>(end - start);
  }

  double mSum = 0;
};

struct Cost {
  double wall;    ///< seconds
  double thread;  ///< seconds that the thread ran
};

double ThreadSeconds() {
  timespec time{};
  ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// work: gives false if it failed.
template <typename Work>
std::optional<Cost> CostOf(Work&& work) {
  Stopwatch const watch;
  double const start = ThreadSeconds();
  bool const isDone = work();
  Cost const cost{watch.Seconds(), ThreadSeconds() - start};
  return isDone ? std::optional<Cost>(cost) : std::nullopt;
}

/// The module's own work, with the writer.
class Conversion {
 public:
  bool Run(std::string const& path, std::string const& output) {
    senmark::kit::Input const input(path, "csv", "senmark.series");
    bool const accepts = senmark_series::Accepts(input);
    {
      senmark::kit::Output file(mTables.Get(), output);
      senmark_series::Convert(input, file);
      file.finish();
    }
    return accepts;
  }

 private:
  senmark_test::HostTables mTables;
};

struct Side {
  std::vector<double> wall;
  std::vector<double> thread;

  void Take(Cost const& cost) {
    wall.push_back(cost.wall);
    thread.push_back(cost.thread);
  }
};

/// The ratio in the round that took the least, with the bare parses in front of it and behind it: a machine that runs
/// at one of two speeds for seconds has both sides at one of them there. bare: one more than rounds of the module.
double RatioOfQuietestRound(std::vector<double> const& module, std::vector<double> const& bare) {
  double least = std::numeric_limits<double>::infinity();
  double ratio = 0;
  for (std::size_t i = 0; i != module.size(); ++i) {
    double const bareOfBoth = bare[i] + bare[i + 1];
    if (module[i] + bareOfBoth < least) {
      least = module[i] + bareOfBoth;
      ratio = module[i] / (bareOfBoth / 2);
    }
  }
  return ratio;
}

void Report(benchmark::State& state, Side const& module, Side const& bare, std::uint64_t memory) {
  state.counters["bareMilliseconds"] = Best(bare.wall) * 1e3;
  state.counters["ratioOfBest"] = Best(module.wall) / Best(bare.wall);
  state.counters["ratioOfQuietest"] = RatioOfQuietestRound(module.wall, bare.wall);
  state.counters["ratioOfMiddle"] = Middle(module.wall) / Middle(bare.wall);
  state.counters["threadRatio"] = Best(module.thread) / Best(bare.thread);
  state.counters["threadMilliseconds"] = Best(module.thread) * 1e3;
  state.counters["megabytesPerSecond"] = static_cast<double>(kFileSize) / 1e6 / Best(module.wall);
  state.counters["peakMiB"] = static_cast<double>(memory) / (1 << 20);
}

/// Takes turns with the bare parse, and once more with an eye on the memory.
template <typename Run, typename End>
void Compare(benchmark::State& state, std::string const& content, Run&& run, End&& end) {
  InputFile const file("senmark_series_bench.csv", content);
  std::string const output = file.Path() + ".tdjson";
  Side bare;
  Side module;
  auto const takeBare = [&] {
    double sum = 0;
    bare.Take(*CostOf([&] {
      sum = BareParse().SumOf(file.Path());
      return true;
    }));
    benchmark::DoNotOptimize(sum);
  };
  for (auto _ : state) {
    takeBare();
    std::optional<Cost> const cost = CostOf([&] { return run(file.Path(), output); });
    end();
    ::unlink(output.c_str());
    if (!cost) {
      state.SkipWithError("the file is not read");
      return;
    }
    module.Take(*cost);
    state.SetIterationTime(cost->wall);
  }
  takeBare();
  std::uint64_t const memory = PeakMemoryOf([&] { run(file.Path(), output); });
  end();
  ::unlink(output.c_str());
  Report(state, module, bare, memory);
}

void OpenTable(benchmark::State& state, std::string const& content) {
  OpeningHost host(SENMARK_MODULES);
  ns_sensor::ISensorFileHandler* opened = nullptr;
  Compare(
      state, content,
      [&](std::string const& path, std::string const& output) {
        opened = host.Open(path, output.c_str());
        return opened != nullptr;
      },
      [&] {
        if (opened != nullptr) {
          host.Close(opened);
        }
      });
}

void ConvertTable(benchmark::State& state, std::string const& content) {
  Conversion conversion;
  Compare(
      state, content, [&](std::string const& path, std::string const& output) { return conversion.Run(path, output); },
      [] {});
}

template <typename Run>
void Register(char const* name, Run run) {
  benchmark::RegisterBenchmark(name, run)->UseManualTime()->Iterations(kRounds)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Register("OpenRecording/50MB", [](benchmark::State& state) { OpenTable(state, Recording()); });
  Register("ConvertRecording/50MB", [](benchmark::State& state) { ConvertTable(state, Recording()); });
  Register("OpenWeather/50MB", [](benchmark::State& state) { OpenTable(state, Weather()); });
  Register("ConvertWeather/50MB", [](benchmark::State& state) { ConvertTable(state, Weather()); });
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
