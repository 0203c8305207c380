/// Converting motion capture with the module for it, against a bare parse of the same file.
///
/// The bare parse reads the file in pieces of 256 KiB, cuts the motion section into words at white space, has
/// `std::from_chars` make a double of each, and sums them: what no reader of the format can leave out. `Open` is
/// `openFile` through the exported functions with an output path, reading the result back included; `Convert` is the
/// module alone, from the file to the finished data file. Both sides take turns on a file in the page cache. Memory is
/// watched in a round of its own.
#include <benchmark/benchmark.h>
#include <time.h>
#include <unistd.h>

#include <charconv>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "Conversion.h"
#include "HostTables.h"
#include "MotionCapture.h"
#include "OpeningHost.h"

namespace {

constexpr int kRounds = 7;
constexpr std::size_t kSize = 50000000;

/// The file, and where its result goes.
class Files {
 public:
  Files() : mInput(TempFolder() + "/senmark_motion_bench.bvh"), mOutput(mInput + ".tdjson") {
    std::string const content = MotionCapture(kSize);
    std::ofstream(mInput, std::ios::binary) << content;
    mMegabytes = static_cast<double>(content.size()) / 1e6;
  }
  ~Files() {
    ::unlink(mInput.c_str());
    ::unlink(mOutput.c_str());
  }
  Files(Files const&) = delete;
  Files& operator=(Files const&) = delete;

  std::string const& Input() const { return mInput; }
  std::string const& Output() const { return mOutput; }
  double Megabytes() const { return mMegabytes; }

 private:
  std::string mInput;
  std::string mOutput;
  double mMegabytes = 0;
};

/// Seconds that this thread ran, the system's work for it included: what a busy machine leaves comparable.
class ThreadClock {
 public:
  double Seconds() const { return Now() - mStart; }

 private:
  static double Now() {
    timespec now{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
  }

  double mStart = Now();
};

/// What one side took, round by round.
struct Times {
  std::vector<double> all;
  std::vector<double> ofThread;
};

template <typename Work>
double Measure(Times& times, Work&& work) {
  ThreadClock const clock;
  double const seconds = work();
  times.ofThread.push_back(clock.Seconds());
  times.all.push_back(seconds);
  return seconds;
}

bool IsSpace(char byte) {
  return byte == ' ' || byte == '\n' || byte == '\r' || byte == '\t';
}

/// Sums the numbers of a piece, which ends behind a word. False for a word that is no number.
bool SumNumbers(char const* next, char const* end, double& sum) {
  for (;;) {
    while (next != end && IsSpace(*next)) {
      ++next;
    }
    if (next == end) {
      return true;
    }
    char const* wordEnd = next;
    while (wordEnd != end && !IsSpace(*wordEnd)) {
      ++wordEnd;
    }
    double value = 0;
    std::from_chars_result const result = std::from_chars(next, wordEnd, value);
    if (result.ec != std::errc() || result.ptr != wordEnd) {
      return false;
    }
    next = wordEnd;
    sum += value;
  }
}

/// Negative if the file is not read.
double SecondsOfBareParse(std::string const& path) {
  constexpr std::size_t kPiece = std::size_t{256} << 10;
  Stopwatch const watch;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> const file(std::fopen(path.c_str(), "rb"), std::fclose);
  std::vector<char> buffer(2 * kPiece);
  std::size_t left = 0;
  double sum = 0;
  bool isMotion = false;
  for (;;) {
    std::size_t const count = std::fread(buffer.data() + left, 1, kPiece, file.get());
    std::size_t const size = left + count;
    std::size_t end = size;
    while (count != 0 && end != 0 && !IsSpace(buffer[end - 1])) {
      --end;
    }
    char const* start = buffer.data();
    if (!isMotion) {
      // The header is far smaller than a piece.
      std::string_view const text(buffer.data(), end);
      start += text.find('\n', text.find("Frame Time:"));
      isMotion = true;
    }
    if (!SumNumbers(start, buffer.data() + end, sum)) {
      return -1;
    }
    left = size - end;
    std::copy(buffer.begin() + static_cast<std::ptrdiff_t>(end), buffer.begin() + static_cast<std::ptrdiff_t>(size),
              buffer.begin());
    if (count == 0) {
      break;
    }
  }
  benchmark::DoNotOptimize(sum);
  return watch.Seconds();
}

void ConvertAlone(std::string const& input, std::string const& output) {
  senmark_test::HostTables const tables;
  senmark::kit::Output result(tables.Get(), output);
  senmark_motion::Convert(senmark::kit::Input(input, "bvh", "senmark.motion"), result);
  result.finish();
}

/// work: converts the input into the output; gives its seconds.
template <typename Work>
void Compare(benchmark::State& state, Files const& files, Work&& work) {
  Times bare;
  Times converting;
  for (auto _ : state) {
    Measure(bare, [&] { return SecondsOfBareParse(files.Input()); });
    state.SetIterationTime(Measure(converting, work));
    ::unlink(files.Output().c_str());
  }
  std::uint64_t const memory = PeakMemoryOf([&] { work(); });
  ::unlink(files.Output().c_str());
  if (Best(bare.all) < 0) {
    state.SkipWithError("the bare parse does not read the file");
    return;
  }
  state.counters["bareMilliseconds"] = Best(bare.all) * 1e3;
  state.counters["ratioOfBest"] = Best(converting.all) / Best(bare.all);
  state.counters["ratioOfMiddle"] = Middle(converting.all) / Middle(bare.all);
  state.counters["ratioOfThread"] = Best(converting.ofThread) / Best(bare.ofThread);
  state.counters["megabytesPerSecond"] = files.Megabytes() / Best(converting.all);
  state.counters["peakMiB"] = static_cast<double>(memory) / (1 << 20);
}

template <typename Run>
void Register(std::string const& name, Run run) {
  benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Iterations(kRounds)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Files const files;
  Register("Open", [&](benchmark::State& state) {
    OpeningHost host(SENMARK_MODULES);
    Compare(state, files, [&] { return host.SecondsToOpen(files.Input(), files.Output().c_str()); });
    if (host.HasFailed()) {
      state.SkipWithError("the file is not opened");
    }
  });
  Register("Convert", [&](benchmark::State& state) {
    OpeningHost const host;  // starts the library
    Compare(state, files, [&] {
      Stopwatch const watch;
      ConvertAlone(files.Input(), files.Output());
      return watch.Seconds();
    });
  });
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
