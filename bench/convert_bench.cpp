/// Opening a file that has to be converted first, the converted file at a place of the host's choice.
///
/// Motion capture stands against assimp's importer, from memory to its scene; tables and JSON against
/// rapidjson's document of the data file that comes out of the conversion, from memory too. Both sides take
/// turns on a file in the page cache. Memory is watched in a round of its own.
#include <assimp/scene.h>
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <assimp/Importer.hpp>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "InputFile.h"
#include "MotionCapture.h"
#include "OpeningHost.h"
#include "plain_rapidjson.h"

namespace {

constexpr int kRounds = 5;

std::string ContentOf(std::string const& path) {
  std::ostringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

// The input files. Digits come from a fixed sequence, so that every run has the same bytes.

class Digits {
 public:
  unsigned Below(unsigned bound) {
    mState = mState * 6364136223846793005U + 1442695040888963407U;
    return static_cast<unsigned>(mState >> 33) % bound;
  }

 private:
  std::uint64_t mState = 1;
};

/// Ten columns of numbers, as a recorder of movements writes them.
std::string Table(std::size_t size) {
  Digits digits;
  std::string text = "time,gx,gy,gz,ax,ay,az,mx,my,mz\n";
  for (unsigned row = 0; text.size() < size; ++row) {
    char cell[32];
    std::snprintf(cell, sizeof(cell), "%u.%02u", row / 100, row % 100);
    text += cell;
    for (int column = 1; column != 10; ++column) {
      std::snprintf(cell, sizeof(cell), ",%s%u.%04u", digits.Below(2) == 0 ? "" : "-", digits.Below(200),
                    digits.Below(10000));
      text += cell;
    }
    text += '\n';
  }
  return text;
}

/// Records of one station each, as a web service answers.
std::string Records(std::size_t size) {
  Digits digits;
  std::string text = "[";
  for (unsigned record = 0; text.size() < size; ++record) {
    char item[256];
    std::snprintf(
        item, sizeof(item),
        R"(%s{"id":%u,"name":"station %u","active":%s,"position":[%u.%04u,%u.%04u,%u],"values":{"t":-%u.%02u,)"
        R"("p":%u.%01u}})",
        record == 0 ? "" : ",", record, digits.Below(1000), digits.Below(2) == 0 ? "true" : "false", digits.Below(90),
        digits.Below(10000), digits.Below(180), digits.Below(10000), digits.Below(4000), digits.Below(40),
        digits.Below(100), 900 + digits.Below(200), digits.Below(10));
    text += item;
  }
  return text + "]";
}

/// Without the time to free the scene; negative if there is none.
double SecondsToReadWithAssimp(std::string const& content) {
  Assimp::Importer importer;
  Stopwatch const watch;
  aiScene const* const scene = importer.ReadFileFromMemory(content.data(), content.size(), 0, "bvh");
  return scene != nullptr && scene->mNumAnimations == 1 ? watch.Seconds() : -1;
}

std::size_t CountNodes(std::string const& dataFile) {
  std::string const mark = "\"objectType\"";
  std::size_t count = 0;
  for (std::size_t at = dataFile.find(mark); at != std::string::npos; at = dataFile.find(mark, at + mark.size())) {
    ++count;
  }
  return count;
}

struct Side {
  std::vector<double> converting;
  std::vector<double> reference;
  Cost convertingInAll;
  Cost referenceInAll;
};

/// One round each, in turn. A side that fails gives a negative time.
template <typename Reference, typename Convert>
void RunRound(Side& side, Reference const& reference, Convert const& convert) {
  Cost const first = CostOf([&] { side.reference.push_back(reference()); });
  Cost const second = CostOf([&] { side.converting.push_back(convert()); });
  side.referenceInAll += first;
  side.convertingInAll += second;
}

void Report(benchmark::State& state, Side const& side, std::size_t inputSize, std::uint64_t memory) {
  double const rounds = static_cast<double>(side.converting.size());
  state.counters["userMilliseconds"] = side.convertingInAll.userSeconds * 1e3 / rounds;
  state.counters["systemMilliseconds"] = side.convertingInAll.systemSeconds * 1e3 / rounds;
  state.counters["pageFaults"] = side.convertingInAll.pageFaults / rounds;
  state.counters["ratioOfCpu"] = side.convertingInAll.CpuSeconds() / side.referenceInAll.CpuSeconds();
  state.counters["ratioOfUser"] = side.convertingInAll.userSeconds / side.referenceInAll.userSeconds;
  state.counters["referenceMilliseconds"] = Best(side.reference) * 1e3;
  state.counters["ratioOfBest"] = Best(side.converting) / Best(side.reference);
  state.counters["ratioOfMiddle"] = Middle(side.converting) / Middle(side.reference);
  state.counters["nsPerByte"] = Best(side.converting) * 1e9 / static_cast<double>(inputSize);
  state.counters["peakMiB"] = static_cast<double>(memory) / (1 << 20);
}

std::uint64_t PeakMemoryOfOpening(OpeningHost& host, std::string const& path, std::string const& output) {
  ns_sensor::ISensorFileHandler* handler = nullptr;
  std::uint64_t const memory = PeakMemoryOf([&] { handler = host.Open(path, output.c_str()); });
  host.Close(handler);
  return memory;
}

void ConvertMotion(benchmark::State& state, std::size_t size) {
  std::string const content = MotionCapture(size);
  InputFile const file("senmark_convert_bench.bvh", content);
  std::string const output = file.Path() + ".tdjson";
  OpeningHost host;
  Side side;
  for (auto _ : state) {
    RunRound(
        side, [&] { return SecondsToReadWithAssimp(content); },
        [&] { return host.SecondsToOpen(file.Path(), output.c_str()); });
    state.SetIterationTime(side.converting.back());
    ::unlink(output.c_str());
  }
  std::uint64_t const memory = PeakMemoryOfOpening(host, file.Path(), output);
  ::unlink(output.c_str());
  if (Best(side.reference) < 0 || host.HasFailed()) {
    state.SkipWithError("the file is not read");
    return;
  }
  Report(state, side, content.size(), memory);
}

void ConvertOutline(benchmark::State& state, std::string const& extension, std::string const& content) {
  InputFile const file("senmark_convert_bench." + extension, content);
  std::string const output = file.Path() + ".tdjson";
  OpeningHost host;
  std::uint64_t const memory = PeakMemoryOfOpening(host, file.Path(), output);
  std::string const dataFile = ContentOf(output);
  ::unlink(output.c_str());
  Side side;
  for (auto _ : state) {
    RunRound(
        side, [&] { return SecondsToParseWithPlainRapidJson(dataFile); },
        [&] { return host.SecondsToOpen(file.Path(), output.c_str()); });
    state.SetIterationTime(side.converting.back());
    ::unlink(output.c_str());
  }
  if (Best(side.reference) < 0 || host.HasFailed()) {
    state.SkipWithError("the file is not read");
    return;
  }
  Report(state, side, content.size(), memory);
  double const nodes = static_cast<double>(CountNodes(dataFile));
  state.counters["bytesPerNode"] = static_cast<double>(memory) / nodes;
  state.counters["nsPerNode"] = Best(side.converting) * 1e9 / nodes;
}

template <typename Run>
void Register(std::string const& name, Run run) {
  benchmark::RegisterBenchmark(name.c_str(), run)->UseManualTime()->Iterations(kRounds)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  // Three sizes each: the time has to grow with the input and not faster.
  for (std::size_t const megabytes : {12, 25, 50}) {
    Register("ConvertMotion/" + std::to_string(megabytes) + "MB",
             [megabytes](benchmark::State& state) { ConvertMotion(state, megabytes * 1000000); });
  }
  for (std::size_t const megabytes : {5, 10, 20}) {
    std::string const size = std::to_string(megabytes) + "MB";
    Register("ConvertTable/" + size,
             [megabytes](benchmark::State& state) { ConvertOutline(state, "csv", Table(megabytes * 1000000)); });
    Register("ConvertJson/" + size,
             [megabytes](benchmark::State& state) { ConvertOutline(state, "json", Records(megabytes * 1000000)); });
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
