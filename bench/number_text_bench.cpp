/// Printing numbers as the writer does, against `std::to_chars` with sixteen digits and a string stream of the same
/// precision, which both leave zeroes behind an exponent.
///
/// All print the same numbers in turn, and the best round of each counts: what disturbs a shared machine only makes a
/// round slower.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <locale>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "SK_WriterNumberText.h"

namespace {

constexpr std::size_t kNumbers = 20000;
constexpr int kRounds = 60;

using Numbers = std::vector<double>;
using Random = std::mt19937_64;

Numbers MakeNumbers(double (*make)(Random&)) {
  Random random(7);
  Numbers numbers(kNumbers);
  std::generate(numbers.begin(), numbers.end(), [&] { return make(random); });
  return numbers;
}

/// Angles with seven decimals, from -180 to 180: what a file of motion is full of.
double Angle(Random& random) {
  return (static_cast<double>(random() % 3600000000) - 1.8e9) / 1e7;
}

/// All digits are used.
double SixteenDigits(Random& random) {
  return (static_cast<double>(random() >> 11U) * 0x1p-53 - 0.5) * 2000;
}

double Integer(Random& random) {
  return static_cast<double>(random() % 100000) - 50000;
}

/// From 10^-9 to 10^-5, mostly with an exponent.
double Small(Random& random) {
  return std::pow(10, -9 + 4 * static_cast<double>(random() >> 11U) * 0x1p-53);
}

/// Beyond what is scaled: the library goes to `std::to_chars` itself.
double Large(Random& random) {
  return std::pow(10, 20 + 200 * static_cast<double>(random() >> 11U) * 0x1p-53);
}

std::size_t PrintByWriter(Numbers const& numbers) {
  std::size_t characters = 0;
  for (double const number : numbers) {
    SK_PLUGIN::SK_WriterNumberText const text(number);
    benchmark::DoNotOptimize(text.View().data());
    characters += text.View().size();
  }
  return characters;
}

std::size_t PrintByToChars(Numbers const& numbers) {
  std::size_t characters = 0;
  char text[32];
  for (double const number : numbers) {
    char const* const end = std::to_chars(text, text + sizeof text, number, std::chars_format::general, 16).ptr;
    benchmark::DoNotOptimize(&text[0]);
    characters += static_cast<std::size_t>(end - text);
  }
  return characters;
}

std::size_t PrintByStream(Numbers const& numbers) {
  std::size_t characters = 0;
  for (double const number : numbers) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream << std::setprecision(16) << number;
    std::string const text = stream.str();
    benchmark::DoNotOptimize(text.data());
    characters += text.size();
  }
  return characters;
}

double SecondsOf(std::size_t (*print)(Numbers const&), Numbers const& numbers) {
  auto const start = std::chrono::steady_clock::now();
  benchmark::DoNotOptimize(print(numbers));
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double NanosecondsOfBest(std::vector<double> const& seconds) {
  return *std::min_element(seconds.begin(), seconds.end()) * 1e9 / kNumbers;
}

void PrintNumbers(benchmark::State& state, double (*make)(Random&)) {
  Numbers const numbers = MakeNumbers(make);
  std::vector<double> byWriter;
  std::vector<double> byToChars;
  std::vector<double> byStream;
  for (auto _ : state) {
    byToChars.push_back(SecondsOf(PrintByToChars, numbers));
    byStream.push_back(SecondsOf(PrintByStream, numbers));
    byWriter.push_back(SecondsOf(PrintByWriter, numbers));
    state.SetIterationTime(byWriter.back());
  }
  double const writer = NanosecondsOfBest(byWriter);
  state.counters["nanoseconds"] = writer;
  state.counters["toCharsNanoseconds"] = NanosecondsOfBest(byToChars);
  state.counters["streamNanoseconds"] = NanosecondsOfBest(byStream);
  state.counters["ratioToChars"] = writer / NanosecondsOfBest(byToChars);
  state.counters["ratioToStream"] = writer / NanosecondsOfBest(byStream);
}

void Register(char const* name, double (*make)(Random&)) {
  benchmark::RegisterBenchmark(name, [make](benchmark::State& state) { PrintNumbers(state, make); })
      ->UseManualTime()
      ->Iterations(kRounds)
      ->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Register("PrintNumbers/angles", Angle);
  Register("PrintNumbers/sixteenDigits", SixteenDigits);
  Register("PrintNumbers/integers", Integer);
  Register("PrintNumbers/small", Small);
  Register("PrintNumbers/large", Large);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
