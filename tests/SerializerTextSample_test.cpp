#include "SerializerTextSample.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "DumpedSamples.h"
#include "SampleBatches.h"
#include "SampleBuffers.h"
#include "WaitingTime.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_StringProperties;
using senmark_test::ExpectTooWide;
using senmark_test::Sample;
using senmark_test::TextOf;

SK_StringProperties Widths(std::uint64_t maxLen, std::uint64_t maxDigits) {
  SK_StringProperties properties;
  properties.maxLen = maxLen;
  properties.maxDigitsInStrLength = maxDigits;
  return properties;
}

struct PaddedText {
  char const* name;
  std::uint64_t maxLen;
  std::uint64_t maxDigits;
  char const* value;
  char const* length;
  char const* text;
};

void PrintTo(PaddedText const& row, std::ostream* out) {
  *out << row.name;
}

class StringSample : public testing::TestWithParam<PaddedText> {};

TEST_P(StringSample, HasTheTextOfItsRow) {
  PaddedText const& row = GetParam();
  EXPECT_EQ(TextOf([&](auto& out) { AppendStringSample(out, "T", row.value, Widths(row.maxLen, row.maxDigits)); }),
            std::string(R"({"time":"T","value":{"length":")") + row.length + R"(","str":")" + row.text + R"("}})");
}

PaddedText const kPaddedTexts[] = {
    {"ThreeBlanksBehind", 5, 2, "ab", "02", "ab   "},
    {"Fits", 2, 1, "ab", "2", "ab"},
    {"LengthOfTwoDigits", 10, 2, "0123456789", "10", "0123456789"},
    {"LengthCountsBytesAsWritten", 4, 1, R"(a\n)", "3", R"(a\n )"},
    {"BytesAboveAsciiPass", 4, 1, "\xC3\xA4", "2", "\xC3\xA4  "},
    {"WiderThanItsPlaces", 1, 1, "0123456789", "10", "0123456789"},
};

INSTANTIATE_TEST_SUITE_P(SerializerTextSample, StringSample, testing::ValuesIn(kPaddedTexts),
                         [](auto const& row) { return std::string(row.param.name); });

std::string PlainStringSample(std::string const& time, std::string const& value, std::uint64_t maxLen,
                              std::uint64_t maxDigits) {
  std::string length = std::to_string(value.size());
  length.insert(0, maxDigits > length.size() ? maxDigits - length.size() : 0, '0');
  std::string text = value;
  text.resize(std::max<std::size_t>(maxLen, value.size()), ' ');
  std::string sample = R"({"time":")" + time + R"(","value":{"length":")" + length;
  return sample + R"(","str":")" + text + R"("}})";
}

// Behind something else, with every width of the length that there can be, and texts around each power of ten.
TEST(SerializerTextSample, TextsOfEverySizeArePaddedStepByStep) {
  std::vector<std::size_t> sizes;
  for (std::size_t size = 0; size != 140; ++size) {
    sizes.push_back(size);
  }
  sizes.insert(sizes.end(), {999, 1000, 1001, 9999, 10000, 65535, 65536, 99998, 99999, 100000, 100001, 1000000});
  std::mt19937 random(5);
  for (std::size_t const size : sizes) {
    std::string value(size, 'a');
    for (char& character : value) {
      character = static_cast<char>(random());
    }
    std::string const time(size % 40, 't');
    for (std::uint64_t digits = 0; digits != 11; ++digits) {
      for (std::size_t const width :
           {std::size_t{0}, size - 1, size, size + 1, size + random() % 70, size + 200, std::size_t{99999}}) {
        if (width > size + 100000) {
          continue;  // one less than 0
        }
        SerializerBuffer buffer;
        buffer.Put("before");
        AppendStringSample(buffer, time, value, Widths(width, digits));
        ASSERT_TRUE(buffer.View() == "before" + PlainStringSample(time, value, width, digits))
            << size << ' ' << width << ' ' << digits;
      }
    }
  }
}

TEST(SerializerTextSample, LengthOfNineDigitsIsWhole) {
  std::string const value(100000001, 'a');
  SerializerBuffer buffer;
  AppendStringSample(buffer, "T", value, Widths(1, 8));
  std::string const start = R"({"time":"T","value":{"length":"100000001","str":"aa)";
  EXPECT_EQ(buffer.View().substr(0, start.size()), start);
  EXPECT_EQ(buffer.Size(), start.size() - 2 + value.size() + std::string_view(R"("}})").size());
}

// A sanitizer sees what is written beyond the memory.
TEST(SerializerTextSample, TextsStayInTheirMemory) {
  std::string const value(30, 'v');
  for (std::size_t width = 25; width != 90; ++width) {
    for (std::size_t before = 3900; before != 4110; ++before) {
      SerializerBuffer buffer;
      buffer.Put(std::string_view(std::string(before, 'x')));
      AppendStringSample(buffer, "T1", value, Widths(width, 8));
      ASSERT_EQ(buffer.View(), std::string(before, 'x') + PlainStringSample("T1", value, width, 8));
    }
  }
}

/// Reads short texts many at a time.
class ShortTextSamples : public senmark_test::SampleBatches {
 protected:
  ShortTextSamples() : SampleBatches(SK_DumpSamplesUtils::eTimes::kShortenedUntilLong) {}

  void Write(Sample const& sample) { mDump.WriteText(senmark_test::WaitingTime(sample.first), sample.second); }
  std::uint64_t Append(SK_StringProperties const& widths, std::size_t room, std::uint64_t most) {
    return AppendShortTextSamples(mBuffer, mDump, widths, room, most);
  }
  std::uint64_t AppendAll(SK_StringProperties const& widths, std::uint64_t count, std::size_t mostRoom) {
    return SampleBatches::AppendAll(
        count, mostRoom, [&](std::size_t room, std::uint64_t most) { return Append(widths, room, most); },
        [&](std::string_view time, std::string_view value) { AppendStringSample(mBuffer, time, value, widths); });
  }
};

// Texts of all sizes, empty ones among them, and times of all lengths, also those that are kept whole; from the file
// and from memory.
TEST_F(ShortTextSamples, AreTheSamplesOneByOne) {
  senmark_test::Random random(12);
  for (std::size_t const timeLength : {4, 11, 20, 23, 32, 33}) {
    for (int round = 0; round != 8; ++round) {
      std::uint64_t const maxLen = round % 4 == 3 ? 70000 : random() % 260;
      std::uint64_t const maxDigits = random() % 10;
      std::uint64_t const count = round == 0 ? 60000 : 300;
      std::string time(timeLength, '0');
      std::string expected;
      Begin(timeLength);
      for (std::uint64_t i = 0; i != count; ++i) {
        time = senmark_test::NextTime(time, random);
        std::string value(random() % (i % 4 == 0 ? 230 : 30), 'a');
        for (char& character : value) {
          character = static_cast<char>(random());
        }
        Write({time, value});
        expected += ',' + PlainStringSample(time, value, maxLen, maxDigits);
      }
      EXPECT_EQ(mFolder.TempNames() != "", round == 0);
      AppendAll(Widths(maxLen, maxDigits), count, round % 3 == 0 ? mBuffer.kLargestSize : 1 + random() % 4000);
      ASSERT_TRUE(mBuffer.View() == expected) << timeLength << ' ' << round;
      mBuffer.Clear();
    }
  }
}

TEST_F(ShortTextSamples, NearlyAllOfAUsualSetComeManyAtATime) {
  Begin(20);
  for (int i = 0; i != 5000; ++i) {
    Write({"2012-01-01T00:" + std::to_string(10 + i / 100) + ':' + std::to_string(10 + i % 50) + 'Z',
           std::string(static_cast<std::size_t>(1 + i % 40), 't')});
  }
  GrowTo(1000000);
  EXPECT_GT(AppendAll(Widths(40, 2), 5000, mBuffer.kLargestSize), 4900u);
}

TEST_F(ShortTextSamples, NoMoreThanAsked) {
  Begin(11);
  for (int i = 0; i != 90; ++i) {
    Write({"00:00:00:" + std::to_string(10 + i), "text"});
  }
  GrowTo(100000);
  EXPECT_EQ(ReadOne().first, "00:00:00:10");
  EXPECT_EQ(Append(Widths(4, 1), mBuffer.Free(), 0), 0u);
  EXPECT_EQ(mBuffer.Size(), 0u);
  EXPECT_EQ(Append(Widths(4, 1), mBuffer.Free(), 7), 7u);
  EXPECT_EQ(ReadOne().first, "00:00:00:18");
}

// The next one is read by itself: it is refused, or its length has more digits than there are places, or all of its
// record is longer; behind a long text records are no short ones.
TEST_F(ShortTextSamples, StopInFrontOfAnotherKind) {
  for (std::size_t const size : {std::size_t{0}, std::size_t{100}, std::size_t{193}, std::size_t{65537}}) {
    Begin(11);
    for (int i = 0; i != 60; ++i) {
      Write({"00:00:00:" + std::to_string(10 + i), std::string(i == 4 ? size : 99, 'x')});
    }
    GrowTo(100000);
    ReadOne();
    EXPECT_EQ(Append(Widths(99, 2), mBuffer.Free(), 60), 3u) << size;
    EXPECT_EQ(Append(Widths(99, 2), mBuffer.Free(), 60), 0u) << size;
    EXPECT_EQ(ReadOne(), Sample("00:00:00:14", std::string(size % 65536, 'x')));
    EXPECT_EQ(Append(Widths(99, 2), mBuffer.Free(), 60) == 0, size == 65537) << size;
    mBuffer.Clear();
  }
}

// A sanitizer sees what is written beyond the memory, which ends with the room.
TEST_F(ShortTextSamples, StayWithinTheirRoom) {
  constexpr std::size_t kMemory = 4096;
  for (std::size_t const width : {1, 15, 16, 17, 40}) {
    std::uint64_t most = 0;
    for (std::size_t room = 0; room != 900; ++room) {
      Begin(32);
      std::string expected;
      for (int i = 0; i != 80; ++i) {
        Sample const sample = {std::string(30, '0') + std::to_string(10 + i), "x"};
        Write(sample);
        expected += i == 0 ? "" : ',' + PlainStringSample(sample.first, sample.second, width, 8);
      }
      ReadOne();
      SerializerBuffer buffer;
      buffer.Grow(kMemory);
      buffer.Truncate(kMemory - room);
      ASSERT_EQ(buffer.Free(), room);
      std::uint64_t const count = AppendShortTextSamples(buffer, mDump, Widths(width, 8), room, 79);
      std::string_view const text = buffer.View().substr(kMemory - room);
      EXPECT_EQ(text, expected.substr(0, text.size())) << room;
      EXPECT_EQ(text.size(), count * (expected.size() / 79));
      most = std::max(most, count);
    }
    EXPECT_GT(most, 5u) << "some had room";
  }
}

// A host may ask for any count. None of these may wrap, reach the system's memory, or come out short.
TEST(SerializerTextSample, AbsurdWidthsAreNoMemory) {
  std::uint64_t const most = std::numeric_limits<std::uint64_t>::max();
  for (std::uint64_t const width : {std::uint64_t{0x7fffffff}, std::uint64_t{1000000000000000000}, most / 2, most}) {
    SCOPED_TRACE(width);
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(width, 1)); });
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(2, width)); });
    ExpectTooWide([&](auto& out) { AppendStringSample(out, "T", "ab", Widths(width, width)); });
  }
}

}  // namespace
}  // namespace SK_PLUGIN
