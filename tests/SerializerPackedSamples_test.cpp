// Numbers that go from their dump to their text many at a time.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "NumberKinds.h"
#include "NumberTexts.h"
#include "SK_PackedNumber.h"
#include "SampleBatches.h"
#include "SerializerSample.h"
#include "WaitingTime.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberPattern;
using senmark_test::PaddedStepByStep;
using senmark_test::Pattern;
using senmark_test::Random;

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

struct Sample {
  std::string time;
  double value;
};

void Put(SK_DumpSamplesUtils& dump, Sample const& sample) {
  SK_NumberPattern pattern;
  dump.PutSample(senmark_test::WaitingTime(sample.time),
                 [&](char* out) { return PackNumber(out, sample.value, pattern, false); });
}

std::string TextOf(Sample const& sample, SK_NumberPattern const& pattern) {
  return R"(,{"time":")" + sample.time + R"(","value":")" +
         PaddedStepByStep(senmark_test::StreamText().Of(sample.value), pattern) + R"("})";
}

class SerializerPackedSamples : public senmark_test::SampleBatches {
 protected:
  SerializerPackedSamples() : SampleBatches(SK_DumpSamplesUtils::eTimes::kShortened) {}

  std::uint64_t Append(SK_NumberPattern const& pattern, std::size_t room, std::uint64_t most) {
    return AppendPackedSamples(mBuffer, mDump, pattern, room, most);
  }
  std::uint64_t AppendAll(SK_NumberPattern const& pattern, std::uint64_t count, std::size_t mostRoom) {
    return SampleBatches::AppendAll(
        count, mostRoom, [&](std::size_t room, std::uint64_t most) { return Append(pattern, room, most); },
        [&](std::string_view time, std::string_view value) { AppendNumberSample(mBuffer, time, value, pattern); });
  }
};

// Numbers of all kinds, and times of all lengths, also those that are kept whole; from the file and from memory.
TEST_F(SerializerPackedSamples, AreTheSamplesOneByOne) {
  Random random(11);
  for (std::size_t const timeLength : {4, 11, 22, 24, 32, 33}) {
    for (int round = 0; round != 6; ++round) {
      SK_NumberPattern const pattern = Pattern(random() % 10, random() % 26, round % 2 == 0);
      Begin(timeLength);
      std::string time(timeLength, '0');
      std::string expected;
      std::uint64_t const count = round == 0 ? 150000 : 300;
      for (std::uint64_t i = 0; i != count; ++i) {
        for (std::uint64_t changes = random() % 3; changes != 0; --changes) {
          time[time.size() - 1 - random() % (random() % 20 == 0 ? time.size() : 4)] =
              static_cast<char>('0' + random() % 10);
        }
        auto const& kind = senmark_test::kNumberKinds[random() % std::size(senmark_test::kNumberKinds)];
        double const few = static_cast<double>(random() % 100000) / 100;
        Sample const sample = {time, (i % 8 == 0 ? kind.make(random) : few) * (i % 3 == 0 ? -1 : 1)};
        Put(mDump, sample);
        expected += TextOf(sample, pattern);
      }
      EXPECT_EQ(mFolder.TempNames() != "", round == 0);
      AppendAll(pattern, count, round % 3 == 0 ? kNoLimit : 1 + random() % 2000);
      ASSERT_TRUE(mBuffer.View() == expected) << timeLength << ' ' << round;
      mBuffer.Clear();
    }
  }
}

TEST_F(SerializerPackedSamples, NearlyAllOfAUsualSetComeManyAtATime) {
  Begin(22);
  for (int i = 0; i != 5000; ++i) {
    Put(mDump, {"2012-01-01T00:" + std::to_string(10 + i / 100) + ':' + std::to_string(10 + i % 50) + ".0Z", i * 0.25});
  }
  GrowTo(1000000);
  EXPECT_GT(AppendAll(Pattern(4, 15, true), 5000, kNoLimit), 4900u);
}

TEST_F(SerializerPackedSamples, NoMoreThanAsked) {
  Begin(11);
  for (int i = 0; i != 90; ++i) {
    Put(mDump, {"00:00:00:" + std::to_string(10 + i), 1});
  }
  GrowTo(100000);
  EXPECT_EQ(ReadTime(), "00:00:00:10");
  EXPECT_EQ(Append(Pattern(1, 0, false), mBuffer.Free(), 0), 0u);
  EXPECT_EQ(mBuffer.Size(), 0u);
  EXPECT_EQ(Append(Pattern(1, 0, false), mBuffer.Free(), 7), 7u);
  EXPECT_EQ(ReadTime(), "00:00:00:18");
}

// One that does not fit into its field is left, and so is one that is no packed number.
TEST_F(SerializerPackedSamples, StopInFrontOfAnotherKind) {
  for (double const other : {100.5, 1.25e-7, -HUGE_VAL, 0.123}) {
    Begin(11);
    for (int i = 0; i != 60; ++i) {
      Put(mDump, {"00:00:00:" + std::to_string(10 + i), i == 4 ? other : 1});
    }
    GrowTo(100000);
    ReadTime();
    EXPECT_EQ(Append(Pattern(2, 2, false), mBuffer.Free(), 60), 3u) << other;
    EXPECT_EQ(Append(Pattern(2, 2, false), mBuffer.Free(), 60), 0u) << other;
    EXPECT_EQ(ReadTime(), "00:00:00:14");
    EXPECT_GT(Append(Pattern(2, 2, false), mBuffer.Free(), 60), 0u);
    mBuffer.Clear();
  }
}

// A sanitizer sees what is written beyond the memory, which ends with the room.
TEST_F(SerializerPackedSamples, StayWithinTheirRoom) {
  constexpr std::size_t kMemory = 4096;
  SK_NumberPattern const pattern = Pattern(8, 24, true);
  std::uint64_t most = 0;
  for (std::size_t room = 0; room != 1000; ++room) {
    Begin(32);
    std::string expected;
    for (int i = 0; i != 40; ++i) {
      Sample const sample = {std::string(30, '0') + std::to_string(10 + i), 1234567.5 - i};
      Put(mDump, sample);
      expected += i == 0 ? "" : TextOf(sample, pattern);
    }
    ReadTime();
    SerializerBuffer buffer;
    buffer.Grow(kMemory);
    buffer.Truncate(kMemory - room);
    ASSERT_EQ(buffer.Free(), room);
    std::uint64_t const count = AppendPackedSamples(buffer, mDump, pattern, room, 39);
    std::string_view const text = buffer.View().substr(kMemory - room);
    EXPECT_EQ(text, expected.substr(0, text.size())) << room;
    EXPECT_EQ(text.size(), count * (expected.size() / 39));
    most = std::max(most, count);
    mDump.ClearDump();
  }
  EXPECT_GT(most, 5u) << "some had room";
}

}  // namespace
}  // namespace SK_PLUGIN
