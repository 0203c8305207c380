/// Reading an outline: time and memory, against rapidjson's own `Parse` of the same text.
///
/// Each text is read by both in turn, and the best round of each counts: what disturbs a shared machine
/// only makes a round slower.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <string>

#include "SK_TdjsonParserUtils.h"
#include "plain_rapidjson.h"

namespace {

using SK_NAMESPACE_INT::JAllocator;
using SK_NAMESPACE_INT::JValue;
using SK_NAMESPACE_INT::SK_TdjsonParserUtils;
using Clock = std::chrono::steady_clock;

std::string StaticNumberNode(int number) {
  std::string const digits = std::to_string(number);
  return R"({"objectType":"dataStatic","displayName":"Speed )" + digits + R"(","matchName":"speed)" + digits +
         R"(","dataType":{"type":"number","numberStringProperties":{"pattern":{"isSigned":true,)"
         R"("digitsInteger":3,"digitsDecimal":2},"range":{"occurring":{"min":-12.25,"max":117.5},)"
         R"("legal":{"min":-999.99,"max":999.99}}}},"value":)" +
         digits + ".25}";
}

/// As the library's writer leaves it, letter for letter.
std::string WrittenNumberNode(int number) {
  std::string const digits = std::to_string(number);
  std::string const value = digits + ".25";
  return R"({"objectType":"dataStatic","matchName":"speed)" + digits + R"(","displayName":"Speed )" + digits +
         R"(","dataType":{"type":"number","numberStringProperties":{"pattern":{"isSigned":false,"digitsDecimal":2,)"
         R"("digitsInteger":)" +
         std::to_string(digits.size()) + R"(},"range":{"occurring":{"min":)" + value + R"(,"max":)" + value +
         R"(},"legal":{"min":)" + value + R"(,"max":)" + value + R"(}}}},"value":)" + value + '}';
}

std::string DynamicNode(int number) {
  std::string const digits = std::to_string(number);
  return R"({"objectType":"dataDynamic","displayName":"Track )" + digits + R"(","matchName":"track)" + digits +
         R"(","dataType":{"type":"numberStringArray","numberArrayProperties":{"pattern":{"isSigned":true,)"
         R"("digitsInteger":3,"digitsDecimal":16},"arraySize":3,"arrayDisplayNames":["x","y","z"],)"
         R"("arrayRanges":{"ranges":[{"occurring":{"min":-1.2344,"max":2.75},"legal":{"min":-360,"max":360}},)"
         R"({"occurring":{"min":-40.125,"max":2},"legal":{"min":-360,"max":360}},)"
         R"({"occurring":{"min":0,"max":0.5},"legal":{"min":-360,"max":360}}]},"isPoint":true}},)"
         R"("sampleSetID":")" +
         digits + R"(","interpolation":"linear","hasExpectedFrequencyB":false,"sampleCount":1250})";
}

std::string Group(int number, std::string const& children) {
  std::string const digits = std::to_string(number);
  return R"({"objectType":"dataGroup","displayName":"Group )" + digits + R"(","matchName":"group)" + digits +
         R"(","children":[)" + children + "]}";
}

std::string StaticOutline(int nodes, std::string (*node)(int number)) {
  std::string text = "[";
  for (int i = 0; i < nodes; ++i) {
    text += (i == 0 ? "" : ",") + node(i);
  }
  return text + "]";
}

/// Groups of ten nodes each, static and dynamic ones in turn.
std::string MixedOutline(int groups) {
  std::string text = "[";
  for (int group = 0; group < groups; ++group) {
    std::string children;
    for (int i = 0; i < 10; ++i) {
      int const number = group * 10 + i;
      children += (i == 0 ? "" : ",") + (i % 2 == 0 ? DynamicNode(number) : StaticNumberNode(number));
    }
    text += (group == 0 ? "" : ",") + Group(group, children);
  }
  return text + "]";
}

/// The same text with line breaks and an indentation of four spaces.
std::string Pretty(std::string const& compact) {
  std::string text;
  std::size_t depth = 0;
  bool isInString = false;
  auto const breakLine = [&] { text.append(1, '\n').append(4 * depth, ' '); };
  for (char const byte : compact) {
    isInString ^= byte == '"';
    if (!isInString && (byte == '}' || byte == ']')) {
      --depth;
      breakLine();
    }
    text.push_back(byte);
    if (isInString) {
      continue;
    }
    if (byte == '{' || byte == '[') {
      ++depth;
      breakLine();
    } else if (byte == ',') {
      breakLine();
    } else if (byte == ':') {
      text.push_back(' ');
    }
  }
  return text;
}

std::size_t ParseWithScanner(std::string const& text) {
  JAllocator allocator;
  JValue outline;
  SK_TdjsonParserUtils::ParseOutline(text.data(), text.data() + text.size(), text.data(), "dataOutline", outline,
                                     allocator);
  return allocator.Size();
}

struct Measured {
  double seconds = std::numeric_limits<double>::infinity();
  std::size_t bytes = 0;
};

template <typename Parse>
double RunOnce(Parse parse, std::string const& text, Measured& best) {
  Clock::time_point const start = Clock::now();
  best.bytes = parse(text);
  double const seconds = std::chrono::duration<double>(Clock::now() - start).count();
  best.seconds = std::min(best.seconds, seconds);
  return seconds;
}

void ReadOutline(benchmark::State& state, std::string const& text, int nodes) {
  Measured scanner;
  Measured rapidJson;
  for (auto _ : state) {
    state.SetIterationTime(RunOnce(ParseWithScanner, text, scanner));
    RunOnce(ParseWithPlainRapidJson, text, rapidJson);
  }
  if (scanner.bytes == 0 || rapidJson.bytes == 0) {
    state.SkipWithError("a text of this benchmark is not read");
    return;
  }
  state.counters["timeRatio"] = scanner.seconds / rapidJson.seconds;
  state.counters["MBperSecond"] = static_cast<double>(text.size()) / 1e6 / scanner.seconds;
  state.counters["bytesPerNode"] = static_cast<double>(scanner.bytes) / nodes;
  state.counters["rapidJsonBytesPerNode"] = static_cast<double>(rapidJson.bytes) / nodes;
}

void Register(char const* name, std::string const& text, int nodes) {
  benchmark::RegisterBenchmark(name, [text, nodes](benchmark::State& state) { ReadOutline(state, text, nodes); })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::string const statics = StaticOutline(20000, StaticNumberNode);
  std::string const mixed = MixedOutline(1000);
  Register("StaticNumbers/compact", statics, 20000);
  Register("StaticNumbers/pretty", Pretty(statics), 20000);
  Register("StaticNumbers/as_written", StaticOutline(20000, WrittenNumberNode), 20000);
  Register("MixedGroups/compact", mixed, 10000);
  Register("MixedGroups/pretty", Pretty(mixed), 10000);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
