// Reading a set in pieces, against a library in memory that counts and times as the real one does.
#include "senmark/host/SampleWindows.h"

#include <gtest/gtest.h>

#include <random>

#include "FakeLibrary.h"
#include "senmark/host/SampleRange.h"

namespace {

using senmark::Time;
using senmark::detail::RangeSpec;
using senmark::detail::SampleCursor;
using senmark_test::FakeHandler;
using senmark_test::FakeManager;
using Indices = std::vector<std::uint64_t>;

/// Positions in the set of all samples of a pass.
Indices Pass(FakeHandler& handler, std::uint64_t window, RangeSpec const& spec) {
  FakeManager const manager(handler);
  SampleCursor cursor(manager.Windows(window), spec);
  Indices indices;
  while (cursor.Next()) {
    indices.push_back(static_cast<std::uint64_t>(std::get<double>(cursor.Current().value)));
    if (indices.size() > handler.ticks.size()) {
      ADD_FAILURE() << "more samples than there are";
      break;
    }
  }
  return indices;
}

Indices All(FakeHandler& handler, std::uint64_t window) {
  return Pass(handler, window, {RangeSpec::eKind::kAll, {}, {}});
}

Indices Count(std::size_t size) {
  Indices indices(size);
  for (std::size_t i = 0; i != size; ++i) {
    indices[i] = i;
  }
  return indices;
}

/// The samples whose times lie in a range, found one by one.
Indices Inside(FakeHandler const& handler, Time start, Time end) {
  Indices indices;
  for (std::size_t i = 0; i != handler.ticks.size(); ++i) {
    Time const time = handler.TimeOf(handler.ticks[i]);
    if (time >= start && time <= end) {
      indices.push_back(i);
    }
  }
  return indices;
}

std::vector<std::int64_t> RandomTicks(std::mt19937& random, std::size_t count, std::int64_t largestStep, int runs) {
  std::vector<std::int64_t> ticks;
  std::int64_t tick = static_cast<std::int64_t>(random() % 50);
  while (ticks.size() < count) {
    // By turns single samples and runs of one time.
    std::size_t const run = random() % 100 < static_cast<unsigned>(runs) ? 1 + random() % 40 : 1;
    for (std::size_t i = 0; i != run && ticks.size() < count; ++i) {
      ticks.push_back(tick);
    }
    tick += 1 + static_cast<std::int64_t>(random() % static_cast<std::uint64_t>(largestStep));
  }
  return ticks;
}

Time RandomTime(std::mt19937& random, FakeHandler const& handler) {
  // Often the very time of a sample, else any time from before the set to behind it.
  std::int64_t const last = handler.ticks.back();
  if (random() % 2 == 0) {
    return handler.TimeOf(handler.ticks[random() % handler.ticks.size()]);
  }
  std::int32_t const scale = static_cast<std::int32_t>(1 + random() % 1000);
  double const span = static_cast<double>(last) / static_cast<double>(handler.times.ticksPerSecond) + 4;
  double const seconds = span * static_cast<double>(random() % 1000) / 1000 - 2;
  return {static_cast<std::int32_t>(seconds * scale), static_cast<std::uint32_t>(scale)};
}

constexpr std::uint64_t kWindows[] = {1, 2, 3, 7, 64, 1000};

TEST(SampleWindows, RandomSetsComeWhole) {
  std::mt19937 random(1);
  for (int set = 0; set != 300; ++set) {
    FakeHandler handler;
    handler.times.ticksPerSecond = set % 3 == 0 ? 1000 : set % 3 == 1 ? 30 : 1;
    handler.ticks = RandomTicks(random, 1 + random() % 300, set % 5 == 0 ? 100000 : 3, set % 4 * 30);
    for (std::uint64_t const window : kWindows) {
      EXPECT_EQ(All(handler, window), Count(handler.ticks.size())) << "set " << set << ", window " << window;
    }
  }
}

TEST(SampleWindows, RandomRangesAreStrictlyInside) {
  std::mt19937 random(2);
  for (int set = 0; set != 300; ++set) {
    FakeHandler handler;
    handler.times.ticksPerSecond = set % 2 == 0 ? 1000 : 30;
    handler.ticks = RandomTicks(random, 1 + random() % 200, set % 5 == 0 ? 5000 : 3, set % 4 * 30);
    for (int range = 0; range != 10; ++range) {
      Time start = RandomTime(random, handler);
      Time end = RandomTime(random, handler);
      if (start > end) {
        std::swap(start, end);
      }
      std::uint64_t const window = kWindows[random() % std::size(kWindows)];
      Indices expected = Inside(handler, start, end);
      EXPECT_EQ(Pass(handler, window, {RangeSpec::eKind::kWithin, start, end}), expected)
          << "set " << set << ", range " << range;
      std::reverse(expected.begin(), expected.end());
      EXPECT_EQ(Pass(handler, window, {RangeSpec::eKind::kReversed, start, end}), expected)
          << "set " << set << ", range " << range;
    }
  }
}

TEST(SampleWindows, CoveringIsTheRangeOfTheBorder) {
  std::mt19937 random(3);
  for (int set = 0; set != 200; ++set) {
    FakeHandler handler;
    handler.ticks = RandomTicks(random, 1 + random() % 200, 3, set % 4 * 30);
    for (int range = 0; range != 10; ++range) {
      Time start = RandomTime(random, handler);
      Time end = RandomTime(random, handler);
      if (start > end) {
        std::swap(start, end);
      }
      Indices expected;
      std::uint64_t const from = handler.Find(handler.TickOf(start.value, start.scale));
      std::uint64_t const to = handler.Find(handler.TickOf(end.value, end.scale));
      for (std::uint64_t i = from; i <= to; ++i) {
        expected.push_back(i);
      }
      EXPECT_EQ(Pass(handler, kWindows[random() % std::size(kWindows)], {RangeSpec::eKind::kCovering, start, end}),
                expected)
          << "set " << set << ", range " << range;
    }
  }
}

TEST(SampleWindows, OneTimeForAllSamples) {
  FakeHandler handler;
  handler.ticks.assign(5000, 0);
  EXPECT_EQ(All(handler, 10), Count(5000));
  handler.ticks.assign(5000, 77);
  EXPECT_EQ(All(handler, 10), Count(5000));
  EXPECT_EQ(Pass(handler, 10, {RangeSpec::eKind::kWithin, handler.TimeOf(77), handler.TimeOf(77)}), Count(5000));
  EXPECT_LE(handler.decoded, 4 * 5000u) << "the run is not decoded again for each piece";
}

TEST(SampleWindows, PiecesStayNearTheWindow) {
  FakeHandler handler;
  handler.times.ticksPerSecond = 1000;
  for (std::int64_t i = 0; i != 200000; ++i) {
    handler.ticks.push_back(i * 7);
  }
  EXPECT_EQ(All(handler, 1000), Count(200000));
  EXPECT_LE(handler.largestAnswer, 1001u);
  EXPECT_LE(handler.decoded, 210000u);
  EXPECT_LE(handler.counts, 3 * 400u) << "a regular set needs few looks for each piece";

  handler.largestAnswer = 0;
  Indices reversed = Count(200000);
  std::reverse(reversed.begin(), reversed.end());
  EXPECT_EQ(Pass(handler, 1000, {RangeSpec::eKind::kReversed, {0, 1}, {2000, 1}}), reversed);
  EXPECT_LE(handler.largestAnswer, 1001u);
}

TEST(SampleWindows, UnevenSetsStayNearTheWindowToo) {
  // Dense at both ends, with a gap of days between.
  FakeHandler handler;
  handler.times.ticksPerSecond = 1000;
  for (std::int64_t i = 0; i != 50000; ++i) {
    handler.ticks.push_back(i);
  }
  for (std::int64_t i = 0; i != 50000; ++i) {
    handler.ticks.push_back(std::int64_t{1000} * 86400 * 5 + i);
  }
  EXPECT_EQ(All(handler, 500), Count(100000));
  EXPECT_LE(handler.largestAnswer, 501u);
}

TEST(SampleWindows, AShortRangeReadsLittle) {
  FakeHandler handler;
  handler.times.ticksPerSecond = 1000;
  for (std::int64_t i = 0; i != 1000000; ++i) {
    handler.ticks.push_back(i);
  }
  EXPECT_EQ(Pass(handler, 4096, {RangeSpec::eKind::kWithin, {500, 1}, {5001, 10}}).size(), 101u);
  EXPECT_LE(handler.decoded, 120u);
}

TEST(SampleWindows, StoppingEarlyReadsOnePiece) {
  FakeHandler handler;
  for (std::int64_t i = 0; i != 100000; ++i) {
    handler.ticks.push_back(i);
  }
  FakeManager const manager(handler);
  SampleCursor cursor(manager.Windows(100), {RangeSpec::eKind::kAll, {}, {}});
  EXPECT_TRUE(cursor.Next());
  EXPECT_LE(handler.decoded, 101u);
}

TEST(SampleWindows, TimesThatBeginAnewAreNotMet) {
  FakeHandler handler;
  handler.times.wrapsAfter = 30 * 86400;
  for (std::int64_t i = 0; i != 2000; ++i) {
    handler.ticks.push_back(handler.times.wrapsAfter - 2000 + i);
  }
  EXPECT_EQ(All(handler, 64), Count(2000));
  EXPECT_EQ(Pass(handler, 64, {RangeSpec::eKind::kWithin, {0, 1}, {1000000, 1}}), Count(2000));
}

TEST(SampleWindows, FractionsOf32BitsLoseNoSample) {
  std::mt19937 random(4);
  for (std::int64_t const ticksPerSecond : {1000000, 10000000, 1000000000}) {
    FakeHandler handler;
    handler.times.ticksPerSecond = ticksPerSecond;
    handler.times.fractionsAre32Bits = true;
    handler.ticks = RandomTicks(random, 20000, ticksPerSecond / 1000, 0);
    EXPECT_EQ(All(handler, 100), Count(20000)) << ticksPerSecond;
    // The finest time that can be asked for may be a quarter of a second.
    EXPECT_LE(handler.largestAnswer, 2500u) << ticksPerSecond;
    EXPECT_EQ(Pass(handler, 100, {RangeSpec::eKind::kWithin, {1, 3}, {7, 3}}), Inside(handler, {1, 3}, {7, 3}))
        << ticksPerSecond;
  }
}

TEST(SampleWindows, InexactTimesLoseNoSample) {
  std::mt19937 random(5);
  FakeHandler handler;
  handler.times.ticksPerSecond = 1000;
  handler.times.timesAreFloats = true;
  handler.ticks = RandomTicks(random, 20000, 200000, 10);
  EXPECT_EQ(All(handler, 100), Count(20000));
}

TEST(SampleWindows, AnAnswerOfAnotherSizeIsAnError) {
  struct Lying : FakeHandler {
    void getDynamicSamples(char const* id, std::uint64_t length, std::int32_t startValue, std::uint32_t startScale,
                           std::int32_t, std::uint32_t, void* client, void* error) override {
      FakeHandler::getDynamicSamples(id, length, startValue, startScale, startValue, startScale, client, error);
    }
  } handler;
  handler.ticks = {0, 30, 60};
  senmark::Result<Indices> const pass = senmark::attempt([&] { return All(handler, 10); });
  ASSERT_FALSE(pass);
  EXPECT_EQ(pass.error().code(), ns_sensor::kInternalFailure);
}

}  // namespace
