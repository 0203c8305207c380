#include "SerializerArraySample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "NumberKinds.h"
#include "NumberTexts.h"
#include "SK_PackedNumber.h"
#include "SampleBatches.h"
#include "SampleBuffers.h"
#include "WaitingTime.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberPattern;
using senmark_test::PaddedStepByStep;
using senmark_test::Pattern;
using senmark_test::Random;
using senmark_test::TextOf;

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

struct Elements {
  char const* name;
  char const* value;
  char const* text;
};

void PrintTo(Elements const& row, std::ostream* out) {
  *out << row.name;
}

class NumberArraySample : public testing::TestWithParam<Elements> {};

TEST_P(NumberArraySample, HasTheTextOfItsRow) {
  Elements const& row = GetParam();
  EXPECT_EQ(TextOf([&](auto& out) { AppendNumberArraySample(out, "T", row.value, Pattern(2, 1, true)); }),
            std::string(R"({"time":"T","value":[)") + row.text + "]}");
}

Elements const kElements[] = {
    {"One", "7", R"("+07.0")"},
    {"Three", "1.5,-2,10", R"("+01.5","-02.0","+10.0")"},
    {"EmptyOneInBetween", "1,,2", R"("+01.0","+00.0","+02.0")"},
    {"EmptyFirstOne", ",1", R"("+00.0","+01.0")"},
    {"CommaAtTheEndIsNoFurtherOne", "1,2,", R"("+01.0","+02.0")"},
    {"CommaAlone", ",", R"("+00.0")"},
};

INSTANTIATE_TEST_SUITE_P(SerializerArraySample, NumberArraySample, testing::ValuesIn(kElements),
                         [](auto const& row) { return std::string(row.param.name); });

// Many at a time.

struct Sample {
  std::string time;
  std::vector<double> values;
};

void Put(SK_DumpSamplesUtils& dump, Sample const& sample) {
  SK_WaitingTime const time = senmark_test::WaitingTime(sample.time);
  std::string value(sample.values.size() * (1 + SK_WriterNumberText::kRoom), '\0');
  SK_NumberPattern pattern;
  char* end = value.data();
  for (double const element : sample.values) {
    *end = ',';
    end = PackNumber(end + (end == value.data() ? 0 : 1), element, pattern, false);
  }
  value.resize(static_cast<std::size_t>(end - value.data()));
  if (value.size() > SK_DumpSamplesUtils::kPutRoom) {
    dump.WriteSample(time, value);
    return;
  }
  dump.PutSample(time, [&](char* out) { return std::copy(value.begin(), value.end(), out); });
}

std::string TextOf(Sample const& sample, SK_NumberPattern const& pattern) {
  std::string text = R"(,{"time":")" + sample.time + R"(","value":[)";
  for (std::size_t i = 0; i != sample.values.size(); ++i) {
    text += (i == 0 ? "\"" : ",\"") + PaddedStepByStep(senmark_test::StreamText().Of(sample.values[i]), pattern) + '"';
  }
  return text + "]}";
}

std::string TimeOf(int i) {
  return "00:00:00:" + std::to_string(10 + i);
}

class PackedArrays : public senmark_test::SampleBatches {
 protected:
  PackedArrays() : SampleBatches(SK_DumpSamplesUtils::eTimes::kShortened) {}

  std::uint64_t Append(SK_NumberPattern const& pattern, std::uint64_t most) {
    return AppendPackedArrays(mBuffer, mDump, pattern, mBuffer.Free(), most);
  }
  std::uint64_t AppendAll(SK_NumberPattern const& pattern, std::uint64_t count, std::size_t mostRoom) {
    return SampleBatches::AppendAll(
        count, mostRoom,
        [&](std::size_t room, std::uint64_t most) { return AppendPackedArrays(mBuffer, mDump, pattern, room, most); },
        [&](std::string_view time, std::string_view value) { AppendNumberArraySample(mBuffer, time, value, pattern); });
  }
};

// Elements of all kinds, short arrays and long ones, times of all lengths; from the file and from memory.
TEST_F(PackedArrays, AreTheSamplesOneByOne) {
  Random random(12);
  for (std::size_t const timeLength : {4, 11, 24, 32, 33}) {
    for (int round = 0; round != 8; ++round) {
      SK_NumberPattern const pattern = Pattern(random() % 10, random() % 26, round % 2 == 0);
      Begin(timeLength);
      std::string time(timeLength, '0');
      std::string expected;
      std::uint64_t const count = round == 0 ? 40000 : 200;
      std::size_t const size = round == 0 ? 3 : 1 + random() % 40;
      for (std::uint64_t i = 0; i != count; ++i) {
        for (std::uint64_t changes = random() % 3; changes != 0; --changes) {
          time[time.size() - 1 - random() % (random() % 20 == 0 ? time.size() : 4)] =
              static_cast<char>('0' + random() % 10);
        }
        Sample sample = {time, {}};
        for (std::size_t element = 0; element != size; ++element) {
          auto const& kind = senmark_test::kNumberKinds[random() % std::size(senmark_test::kNumberKinds)];
          double const few = static_cast<double>(random() % 100000) / 100;
          sample.values.push_back((random() % 16 == 0 ? kind.make(random) : few) * (random() % 3 == 0 ? -1 : 1));
        }
        Put(mDump, sample);
        expected += TextOf(sample, pattern);
      }
      EXPECT_EQ(mFolder.TempNames() != "", round == 0);
      AppendAll(pattern, count, round % 3 == 0 ? kNoLimit : 1 + random() % 4000);
      ASSERT_TRUE(mBuffer.View() == expected) << timeLength << ' ' << round;
      mBuffer.Clear();
    }
  }
}

TEST_F(PackedArrays, NearlyAllOfAUsualSetComeManyAtATime) {
  Begin(22);
  for (int i = 0; i != 5000; ++i) {
    std::string const time =
        "2012-01-01T00:" + std::to_string(10 + i / 100) + ':' + std::to_string(10 + i % 50) + ".0Z";
    Put(mDump, {time, {i * 0.25, -i * 0.5, 180}});
  }
  GrowTo(1000000);
  EXPECT_GT(AppendAll(Pattern(4, 15, true), 5000, kNoLimit), 4900u);
}

TEST_F(PackedArrays, NoMoreThanAsked) {
  Begin(11);
  for (int i = 0; i != 90; ++i) {
    Put(mDump, {TimeOf(i), {1, 2}});
  }
  GrowTo(100000);
  EXPECT_EQ(ReadTime(), TimeOf(0));
  EXPECT_EQ(Append(Pattern(1, 0, false), 0), 0u);
  EXPECT_EQ(mBuffer.Size(), 0u);
  EXPECT_EQ(Append(Pattern(1, 0, false), 7), 7u);
  EXPECT_EQ(ReadTime(), TimeOf(8));
}

// Wherever it stands, an element that does not fit into its field is left with its array, and so is one that is no
// packed number.
TEST_F(PackedArrays, StopInFrontOfAnotherKind) {
  for (double const other : {100.5, 1.25e-7, -HUGE_VAL, 0.123}) {
    for (std::size_t place = 0; place != 3; ++place) {
      Begin(11);
      for (int i = 0; i != 60; ++i) {
        Sample sample = {TimeOf(i), {1, 2.5, 3}};
        sample.values[place] = i == 4 ? other : 1;
        Put(mDump, sample);
      }
      GrowTo(100000);
      ReadTime();
      EXPECT_EQ(Append(Pattern(2, 2, false), 60), 3u) << other;
      std::size_t const size = mBuffer.Size();
      EXPECT_EQ(Append(Pattern(2, 2, false), 60), 0u) << other;
      EXPECT_EQ(mBuffer.Size(), size);
      EXPECT_EQ(ReadTime(), TimeOf(4));
      EXPECT_GT(Append(Pattern(2, 2, false), 60), 0u);
      mBuffer.Clear();
    }
  }
}

TEST_F(PackedArrays, StopInFrontOfOneWithoutElements) {
  for (std::string const& value : {std::string(), std::string(",")}) {
    Begin(11);
    for (int i = 0; i != 60; ++i) {
      if (i != 4) {
        Put(mDump, {TimeOf(i), {1, 2}});
        continue;
      }
      mDump.WriteSample(senmark_test::WaitingTime(TimeOf(i)), value);
    }
    GrowTo(100000);
    ReadTime();
    EXPECT_EQ(Append(Pattern(2, 2, false), 60), 3u);
    EXPECT_EQ(ReadTime(), TimeOf(4));
    mBuffer.Clear();
  }
}

// A sanitizer sees what is written beyond the memory, which ends with the room. The smallest elements take the most.
TEST_F(PackedArrays, StayWithinTheirRoom) {
  constexpr std::size_t kMemory = 16384;
  SK_NumberPattern const pattern = Pattern(8, 24, true);
  for (std::size_t const size : {1, 3, 32}) {
    std::uint64_t most = 0;
    for (std::size_t room = 0; room < 200 + 100 * size; room += size == 32 ? 3 : 1) {
      Begin(32);
      std::string expected;
      for (int i = 0; i != 40; ++i) {
        Sample const sample = {std::string(30, '0') + std::to_string(10 + i), std::vector<double>(size, -0.5)};
        Put(mDump, sample);
        expected += i == 0 ? "" : TextOf(sample, pattern);
      }
      ReadTime();
      SerializerBuffer buffer;
      buffer.Grow(kMemory);
      buffer.Truncate(kMemory - room);
      ASSERT_EQ(buffer.Free(), room);
      std::uint64_t const count = AppendPackedArrays(buffer, mDump, pattern, room, 39);
      std::string_view const text = buffer.View().substr(kMemory - room);
      EXPECT_EQ(text, expected.substr(0, text.size())) << room;
      EXPECT_EQ(text.size(), count * (expected.size() / 39));
      most = std::max(most, count);
    }
    EXPECT_GT(most, 1u) << "some had room";
  }
}

}  // namespace
}  // namespace SK_PLUGIN
