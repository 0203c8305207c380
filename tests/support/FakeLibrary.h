/// A library of one file with one set, held in memory and told through the border. It finds samples as the
/// real one does, can be told to compute times as badly as that, and remembers what it was asked for.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include "senmark/Host.h"

namespace senmark_test {

/// How the file counts and tells its times.
struct FakeTimes {
  std::int64_t ticksPerSecond = 30;
  std::int64_t wrapsAfter = 0;      ///< ticks after which times begin anew; 0: never
  bool fractionsAre32Bits = false;  ///< the ticks of a fraction are computed in 32 bits, and wrap
  bool timesAreFloats = false;      ///< samples are told times with the precision of a float
};

class FakeHandler : public ns_sensor::ISensorFileHandler {
 public:
  FakeTimes times;
  std::vector<std::int64_t> ticks;  ///< of the samples, rising

  std::uint64_t largestAnswer = 0;  ///< most samples that one query decoded
  std::uint64_t decoded = 0;        ///< samples decoded by all queries
  std::uint64_t counts = 0;         ///< queries that only counted

  /// The sample that a search finds: the first at the tick, else the last before it, else sample 0.
  std::uint64_t Find(std::int64_t tick) const {
    auto const at = std::lower_bound(ticks.begin(), ticks.end(), tick);
    if (at != ticks.end() && *at == tick) {
      return static_cast<std::uint64_t>(at - ticks.begin());
    }
    return at == ticks.begin() ? 0 : static_cast<std::uint64_t>(at - ticks.begin() - 1);
  }

  /// The tick that a time is taken for; -1 for all negative times.
  std::int64_t TickOf(std::int32_t value, std::uint32_t scale) const {
    if (value < 0) {
      return -1;
    }
    std::int64_t const whole = value / static_cast<std::int64_t>(scale);
    std::int64_t rest = (value % static_cast<std::int64_t>(scale)) * times.ticksPerSecond;
    if (times.fractionsAre32Bits) {
      rest = static_cast<std::int64_t>(static_cast<std::uint32_t>(rest));
    }
    std::int64_t const tick = whole * times.ticksPerSecond + rest / static_cast<std::int64_t>(scale);
    return times.wrapsAfter == 0 ? tick : tick % times.wrapsAfter;
  }

  senmark::Time TimeOf(std::int64_t tick) const {
    std::int64_t const divisor = std::gcd(tick, times.ticksPerSecond);
    std::int64_t const value = tick / divisor;
    if (!times.timesAreFloats && value <= INT32_MAX) {
      return {static_cast<std::int32_t>(value), static_cast<std::uint32_t>(times.ticksPerSecond / divisor)};
    }
    float const seconds = static_cast<float>(tick) / static_cast<float>(times.ticksPerSecond);
    return {static_cast<std::int32_t>(std::lround(seconds * 64)), 64};
  }

  void getDynamicSamples(char const*, std::uint64_t, std::int32_t startValue, std::uint32_t startScale,
                         std::int32_t endValue, std::uint32_t endScale, void* client, void*) override {
    std::int64_t const start = TickOf(startValue, startScale);
    std::int64_t const end = TickOf(endValue, endScale);
    Send(Find(std::min(start, end)), Find(std::max(start, end)), start > end, client);
  }

  void getAdjacentSamples(char const*, std::uint64_t, std::int32_t value, std::uint32_t scale, void* client,
                          void*) override {
    auto const [first, count] = Adjacent(TickOf(value, scale));
    Send(first, first + count - 1, false, client);
  }

  void getSampleInfo(char const*, std::uint64_t, std::int32_t startValue, std::uint32_t startScale,
                     std::int32_t endValue, std::uint32_t endScale, ns_sensor::SK_DynamicSampleInfo* info,
                     unsigned char adjacent, void*, void*) override {
    ++counts;
    std::int64_t const start = TickOf(startValue, startScale);
    std::int64_t const end = TickOf(endValue, endScale);
    info->valueType = ns_sensor::kNumberValue;
    info->sampleCount =
        adjacent != 0 ? Adjacent(start).second : Find(std::max(start, end)) - Find(std::min(start, end)) + 1;
  }

  void GetRootChildren(std::vector<ns_sensor::SK_DataPath>*) override {}
  void GetGroupChildren(std::string const&, std::vector<ns_sensor::SK_DataPath>*) override {}
  void GetGroupChildInfo(std::string const&, ns_sensor::SK_GroupChildInfo*) override {}
  void GetStaticDataInfo(std::string const&, ns_sensor::SK_StaticDataInfo*) override {}
  void GetDynamicDataInfo(std::string const&, ns_sensor::SK_DynamicDataInfo*) override {}
  void GetDynamicSamples(std::string const&, ns_sensor::SK_Time const&, ns_sensor::SK_Time const&,
                         std::vector<ns_sensor::SK_DynamicDataSample>*) override {}
  void GetAdjacentSamples(std::string const&, ns_sensor::SK_Time const&,
                          std::vector<ns_sensor::SK_DynamicDataSample>*) override {}
  void GetFileInfo(ns_sensor::SK_FileInfo*) override {}
  void GetVideoSyncTime(std::vector<ns_sensor::SK_VideoSyncTime>*) override {}
  void GetSampleInfo(std::string const&, ns_sensor::SK_Time const&, ns_sensor::SK_Time const&,
                     ns_sensor::SK_DynamicSampleInfo*, bool) override {}
  void getRootChildren(void*, void*) override {}
  void getGroupChildren(char const*, std::uint64_t, void*, void*) override {}
  void getGroupChildInfo(char const*, std::uint64_t, void*, void*) override {}
  void getStaticDataInfo(char const*, std::uint64_t, void*, void*) override {}
  void getDynamicDataInfo(char const*, std::uint64_t, void*, void*) override {}
  void getFileInfo(ns_sensor::SK_FileInfo*, void*, void*) override {}
  void getVideoSyncTime(std::vector<ns_sensor::SK_VideoSyncTime>*, void*, void*) override {}
  void GetDynamicSamples_I(std::string const&, ns_sensor::SK_Time const&, ns_sensor::SK_Time const&,
                           ns_sensor::SK_DynamicDataSample*&, unsigned long long&, bool&) override {}
  void GetAdjacentSamples_I(std::string const&, ns_sensor::SK_Time const&, ns_sensor::SK_DynamicDataSample*&,
                            unsigned long long&) override {}

 private:
  /// First sample and count of the samples around a tick.
  std::pair<std::uint64_t, std::uint64_t> Adjacent(std::int64_t tick) const {
    std::uint64_t const last = ticks.size() - 1;
    std::uint64_t const found = Find(tick);
    if (tick < ticks.front()) {
      return {0, 1};
    }
    if (tick > ticks.back()) {
      return {last, 1};
    }
    if (tick == ticks.back()) {
      return found == 0 ? std::pair<std::uint64_t, std::uint64_t>{0, 0} : std::pair(found - 1, std::uint64_t{2});
    }
    if (tick == ticks.front()) {
      return {0, 2};
    }
    return ticks[found] == tick ? std::pair(found - 1, std::uint64_t{3}) : std::pair(found, std::uint64_t{2});
  }

  void Send(std::uint64_t first, std::uint64_t last, bool reversed, void* client) {
    ns_sensor::SK_ClientProcs const& procs = *senmark::detail::ForwardingTable();
    std::uint64_t count = last - first + 1;
    largestAnswer = std::max(largestAnswer, count);
    decoded += count;
    procs.sampleCount(client, &count);
    for (std::uint64_t i = 0; i != count; ++i) {
      std::uint64_t const index = reversed ? first + count - 1 - i : first + i;
      senmark::Time const time = TimeOf(ticks[index]);
      double const value = static_cast<double>(index);
      procs.sample(client, time.value, time.scale, &value, 0, ns_sensor::kNumberValue);
    }
  }
};

/// A manager whose only file is the handler that it is given. Not the process's manager: it is reached
/// through functions of its own.
class FakeManager : public ns_sensor::ISenmark {
 public:
  explicit FakeManager(FakeHandler& handler) : mHandler(handler) { Current() = this; }
  FakeManager(FakeManager const&) = delete;
  FakeManager& operator=(FakeManager const&) = delete;
  ~FakeManager() override { Current() = nullptr; }

  senmark::Library Functions() const {
    senmark::Library::Functions functions;
    functions.create = [](ns_sensor::ISenmark** manager, char const*, char const*, char const*, void*, void*, void**) {
      *manager = Current();
    };
    functions.destroy = [](ns_sensor::ISenmark**, void*) {};
    functions.localizedErrorMsg = [](char const*, char const*, char const*, char const*, char const*, void* client) {
      senmark::detail::ForwardingTable()->string(client, "", 0);
    };
    return senmark::Library(functions);
  }

  /// The set of the handler, as the wrapper reads it.
  std::shared_ptr<senmark::detail::SampleWindows const> Windows(std::uint64_t window) const {
    auto const session = std::make_shared<senmark::detail::Session>(Functions(), nullptr, nullptr, nullptr);
    senmark::DynamicData data;
    data.sampleSetId = "set";
    data.sampleCount = mHandler.ticks.size();
    data.extent = senmark::Extent{mHandler.TimeOf(mHandler.ticks.front()), mHandler.TimeOf(mHandler.ticks.back())};
    return std::make_shared<senmark::detail::SampleWindows>(
        std::make_shared<senmark::detail::OpenFile>(session, "/fake", ""), data, window);
  }

  void OpenFile(ns_sensor::ISensorFileHandler**, char const*, char const*) override {}
  void CloseFile(ns_sensor::ISensorFileHandler**) override {}
  void CreateTdjsonStream(ns_sensor::ITdjsonStream**, char const*, bool) override {}
  void DestroyTdjsonStream(ns_sensor::ITdjsonStream**) override {}
  void openFile(ns_sensor::ISensorFileHandler** handler, char const*, char const*, void*) override {
    *handler = &mHandler;
  }
  void closeFile(ns_sensor::ISensorFileHandler** handler, void*) override { *handler = nullptr; }
  void createTdjsonStream(ns_sensor::ITdjsonStream**, char const*, unsigned char, void*) override {}
  void destroyTdjsonStream(ns_sensor::ITdjsonStream**, void*) override {}

 private:
  static FakeManager*& Current() {
    static FakeManager* current = nullptr;
    return current;
  }

  FakeHandler& mHandler;
};

}  // namespace senmark_test
