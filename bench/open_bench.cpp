/// Opening a file, against `cp` of the same file into the folder for temporary files.
///
/// Both run in turn on a warm file, and the best and the middle round of each count. What is measured is
/// `openFile` from call to return, with a manager that exists; closing, which removes the scratch file, and
/// removing the copy are not. Memory is watched in a round of its own, from a second thread.
#include <benchmark/benchmark.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

#include "OpeningHost.h"

namespace {

constexpr int kRounds = 15;
constexpr int kIndentation = 2;

// The data file: one set of three numbers at each time, the outline behind it.

constexpr char kHead[] = R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":)"
                         R"(true,"timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false}},)"
                         R"("dataDynamicSamples":[{"sampleSetID":"0","samples":[)";
constexpr char kTail[] = R"(]}],"dataOutline":[{"objectType":"dataDynamic","displayName":"Position","matchName":)"
                         R"("position","dataType":{"type":"numberStringArray","numberArrayProperties":{"pattern":)"
                         R"({"isSigned":true,"digitsInteger":2,"digitsDecimal":16},"arraySize":3,"arrayDisplayNames":)"
                         R"(["x","y","z"],"arrayRanges":{"ranges":[{"occurring":{"min":-99,"max":99},"legal":)"
                         R"({"min":-99,"max":99}}]},"isPoint":true}},"sampleSetID":"0","interpolation":"linear",)"
                         R"("hasExpectedFrequencyB":true,"sampleCount":)";

std::string Sample(unsigned number, bool isPretty) {
  // The digits only have to look like measured ones.
  std::uint64_t digits = number * 0x9E3779B97F4A7C15U + 1;
  std::string values[3];
  for (std::string& value : values) {
    digits ^= digits >> 29;
    digits *= 0xBF58476D1CE4E5B9U;
    char text[32];
    std::snprintf(text, sizeof(text), "\"%c%02u.%016llu\"", digits % 2 == 0 ? '+' : '-',
                  static_cast<unsigned>(digits >> 8) % 100,
                  static_cast<unsigned long long>(digits % 10000000000000000U));
    value = text;
  }
  char time[32];
  std::snprintf(time, sizeof(time), "\"%02u:%02u:%02u:%02u\"", number / 108000 % 100, number / 1800 % 60,
                number / 30 % 60, number % 30);
  if (!isPretty) {
    return std::string(R"({"time":)") + time + R"(,"value":[)" + values[0] + ',' + values[1] + ',' + values[2] + "]}";
  }
  auto const newLine = [](int depth) {
    return '\n' + std::string(static_cast<std::size_t>(depth) * kIndentation, ' ');
  };
  return newLine(4) + '{' + newLine(5) + R"("time": )" + time + ',' + newLine(5) + R"("value": [)" + newLine(6) +
         values[0] + ',' + newLine(6) + values[1] + ',' + newLine(6) + values[2] + newLine(5) + ']' + newLine(4) + '}';
}

class DataFile {
 public:
  DataFile(std::uint64_t size, bool isPretty) : mPath(TempFolder() + "senmark_open_bench.tdjson") {
    std::ofstream file(mPath, std::ios::binary);
    file << kHead;
    std::uint64_t written = 0;
    unsigned count = 0;
    for (std::string piece; written < size; ++count) {
      piece = (count == 0 ? "" : ",") + Sample(count, isPretty);
      file << piece;
      written += piece.size();
    }
    file << kTail << count << "}]}\n";
    mIsWritten = file.flush().good();
  }
  ~DataFile() { ::unlink(mPath.c_str()); }
  DataFile(DataFile const&) = delete;
  DataFile& operator=(DataFile const&) = delete;

  bool IsWritten() const { return mIsWritten; }
  std::string const& Path() const { return mPath; }

 private:
  std::string mPath;
  bool mIsWritten = false;
};

/// Negative when `cp` fails.
double SecondsToCopy(std::string const& path) {
  std::string const copy = path + ".copy";
  char const* const arguments[] = {"cp", path.c_str(), copy.c_str(), nullptr};
  Stopwatch const watch;
  pid_t child = 0;
  int status = 1;
  bool const hasRun = posix_spawnp(&child, "cp", nullptr, nullptr, const_cast<char* const*>(arguments), environ) == 0 &&
                      waitpid(child, &status, 0) == child;
  double const seconds = watch.Seconds();
  ::unlink(copy.c_str());
  return hasRun && status == 0 ? seconds : -1;
}

void OpenFile(benchmark::State& state, std::uint64_t size, bool isPretty) {
  DataFile const file(size, isPretty);
  OpeningHost host;
  std::vector<double> opening;
  std::vector<double> copying;
  for (auto _ : state) {
    copying.push_back(SecondsToCopy(file.Path()));
    opening.push_back(host.SecondsToOpen(file.Path()));
    state.SetIterationTime(opening.back());
  }
  ns_sensor::ISensorFileHandler* handler = nullptr;
  std::uint64_t const memory = PeakMemoryOf([&] { handler = host.Open(file.Path()); });
  host.Close(handler);
  if (!file.IsWritten() || host.HasFailed() || Best(copying) < 0) {
    state.SkipWithError("the file is not written, not copied or not opened");
    return;
  }
  state.counters["cpMilliseconds"] = Best(copying) * 1e3;
  state.counters["ratioOfBest"] = Best(opening) / Best(copying);
  state.counters["ratioOfMiddle"] = Middle(opening) / Middle(copying);
  state.counters["peakKiB"] = static_cast<double>(memory) / 1024;
}

void Register(char const* name, std::uint64_t megabytes, bool isPretty) {
  benchmark::RegisterBenchmark(
      name, [megabytes, isPretty](benchmark::State& state) { OpenFile(state, megabytes << 20, isPretty); })
      ->UseManualTime()
      ->Iterations(kRounds)
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Register("OpenFile/64MB/compact", 64, false);
  Register("OpenFile/64MB/pretty", 64, true);
  Register("OpenFile/512MB/compact", 512, false);
  Register("OpenFile/512MB/pretty", 512, true);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
