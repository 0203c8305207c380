// Texts of any length that wait with what is new in their times: what comes back is what whole times give.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "DumpedSamples.h"
#include "FailingCalls.h"
#include "FailingMemory.h"
#include "SK_DumpSamplesUtils.h"
#include "SK_PluginException.h"
#include "TempFolder.h"
#include "WaitingTime.h"

namespace SK_PLUGIN {
namespace {

namespace fs = std::filesystem;

using senmark_test::CountOpenDescriptors;
using senmark_test::FailingMemory;
using senmark_test::FileSizeLimit;
using senmark_test::NextTime;
using senmark_test::PlainDump;
using senmark_test::Random;
using senmark_test::ReadAll;
using senmark_test::Sample;
using senmark_test::Samples;
using senmark_test::TempFolder;
using eTimes = SK_DumpSamplesUtils::eTimes;

constexpr std::size_t kLimit = 1048576;
constexpr std::size_t kLengthBytes = 2;
constexpr std::size_t kLong = 65536;

/// As nodes do.
void Write(SK_DumpSamplesUtils& dump, Sample const& sample) {
  dump.WriteText(senmark_test::WaitingTime(sample.first), sample.second);
}

std::unique_ptr<SK_DumpSamplesUtils> NewDump(std::size_t timeLength, eTimes times = eTimes::kShortenedUntilLong) {
  auto dump = std::make_unique<SK_DumpSamplesUtils>();
  dump->SetTimeLength(static_cast<unsigned short>(timeLength), times);
  return dump;
}

/// Its bytes are small numbers: read astray they make many short records.
std::string Text(std::size_t size, Random& random) {
  std::string text(size, static_cast<char>(random() % 3));
  for (std::size_t i = 0; i < size; i += 1 + random() % 400) {
    text[i] = static_cast<char>(random() % 3);
  }
  return text;
}

/// At times that follow each other.
Samples ShortTexts(std::size_t count, std::size_t timeLength, Random& random) {
  Samples samples;
  std::string time(timeLength, '0');
  for (std::size_t i = 0; i != count; ++i) {
    time = NextTime(time, random);
    samples.emplace_back(time, Text(random() % 40, random));
  }
  return samples;
}

class DumpSamplesTexts : public testing::Test {
 protected:
  ~DumpSamplesTexts() override {
    mDump.reset();
    mOthers.clear();
    EXPECT_EQ(mFolder.TempNames(), "");
    EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  }

  std::string TempFile() const {
    auto const first = fs::directory_iterator(mFolder.TempPath());
    return first == fs::directory_iterator() ? std::string() : first->path().string();
  }
  std::size_t TempSize() const { return TempFile().empty() ? 0 : fs::file_size(TempFile()); }

  /// Other buffers that hold as much as all may hold together, with room for one that is small.
  void TakeTheShareOfAll() {
    for (int i = 0; i != 8; ++i) {
      mOthers.push_back(NewDump(8, eTimes::kWhole));
      for (std::size_t size = 0; size != kLimit; size += 1024) {
        mOthers.back()->WriteSample({"00:00:00"}, std::string(1024 - 8 - kLengthBytes, 'o'));
      }
    }
  }

  TempFolder mFolder;
  std::size_t mDescriptors = CountOpenDescriptors();
  std::unique_ptr<SK_DumpSamplesUtils> mDump;
  std::vector<std::unique_ptr<SK_DumpSamplesUtils>> mOthers;
};

class DumpWithTextsAt : public DumpSamplesTexts, public testing::WithParamInterface<std::size_t> {};

// Long texts, and others in front of them and behind them, in memory and in a file.
TEST_P(DumpWithTextsAt, SamplesAreThoseOfPlainRecords) {
  std::size_t const timeLength = GetParam();
  Random random(static_cast<unsigned>(timeLength) + 41);
  std::size_t withFile = 0;
  std::size_t astray = 0;
  for (std::size_t const length :
       {kLong - 2, kLong - 1, kLong, kLong + 1, std::size_t{70000}, 2 * kLong - 1, 2 * kLong, 2 * kLong + 5,
        kLimit - timeLength - kLengthBytes, kLimit - timeLength - kLengthBytes + 1, 2 * kLimit + 100}) {
    for (int round = 0; round != 8; ++round) {
      std::size_t const before = round % 3 == 0 ? random() % 5 : random() % 3000;
      std::size_t const count = before + 1 + (round % 2 == 0 ? random() % 5 : random() % 3000);
      PlainDump plain(timeLength);
      mDump = NewDump(timeLength);
      Samples written;
      std::string time(timeLength, '0');
      for (std::size_t i = 0; i != count; ++i) {
        // All of each time is new in some rounds, so that a record takes more than with a whole time.
        time = round % 4 == 0 ? std::string(timeLength, static_cast<char>('0' + i % 2)) : NextTime(time, random);
        bool const isLong = i == before || (round > 5 && random() % 1000 == 0);
        written.emplace_back(time, Text(isLong ? length : random() % (i % 9 == 0 ? 2000 : 250), random));
        plain.Write(written.back());
        Write(*mDump, written.back());
      }
      Samples const expected = plain.ReadAll();
      ASSERT_TRUE(ReadAll(*mDump) == expected) << length << ' ' << round;
      withFile += plain.HasFile() ? 1 : 0;
      astray += expected != written ? 1 : 0;
    }
  }
  EXPECT_GT(withFile, 20u);
  EXPECT_EQ(astray, 9 * 8u);
}

// A buffer goes to the file where it does with whole times, to the byte: what is read astray ends there.
TEST_P(DumpWithTextsAt, FileEndsWhereItDoesWithWholeTimes) {
  std::size_t const timeLength = GetParam();
  std::size_t const whole = timeLength + kLengthBytes;
  std::size_t filled = 0;
  for (std::size_t const inFront : {std::size_t{0}, std::size_t{1}, std::size_t{2000}, std::size_t{17000}}) {
    for (int missing = -2; missing != 3; ++missing) {
      for (bool const isBehind : {false, true}) {
        Random random(static_cast<unsigned>(missing + 7));
        Samples samples;
        std::string time(timeLength, '0');
        for (std::size_t i = 0; i != inFront; ++i) {
          time = NextTime(time, random);
          samples.emplace_back(time, Text(40, random));
        }
        // Then the one that may be too much: the long text, or one behind it.
        std::size_t const used = inFront * (whole + 40) % kLimit;
        std::size_t const left = kLimit - used + static_cast<std::size_t>(missing) - 2 * whole;
        std::size_t const one = isBehind ? kLong + 3 : left - kLong - 3;
        samples.emplace_back(time, Text(one, random));
        samples.emplace_back(time, Text(left - one, random));
        for (int i = 0; i != 30; ++i) {
          samples.emplace_back(time, Text(20, random));
        }
        PlainDump plain(timeLength);
        mDump = NewDump(timeLength);
        for (Sample const& sample : samples) {
          plain.Write(sample);
          Write(*mDump, sample);
        }
        ASSERT_TRUE(ReadAll(*mDump) == plain.ReadAll()) << inFront << ' ' << missing << ' ' << isBehind;
        filled += plain.HasFile() ? 1 : 0;
      }
    }
  }
  EXPECT_GT(filled, 10u);
}

// The same where it is a short text that is too much, and what waits behind it has the whole limit again.
TEST_P(DumpWithTextsAt, FileEndsWhereItDoesAtAShortText) {
  std::size_t const whole = GetParam() + kLengthBytes;
  for (int over = -1; over != 3; ++over) {
    Random random(static_cast<unsigned>(over + 1));
    PlainDump plain(GetParam());
    mDump = NewDump(GetParam());
    std::string time(GetParam(), '0');
    auto const write = [&](std::size_t size) {
      time = NextTime(time, random);
      Sample const sample = {time, Text(size, random)};
      plain.Write(sample);
      Write(*mDump, sample);
    };
    std::size_t left = kLimit;
    for (; left > 2 * whole + 120; left -= whole + 100) {
      write(100);
    }
    ASSERT_EQ(TempSize(), 0u);
    write(left - whole + static_cast<std::size_t>(over));
    EXPECT_EQ(TempSize() != 0, over > 0);
    write(20);
    std::size_t const inFile = TempSize();
    EXPECT_GT(inFile, 0u);
    for (int i = 0; i != 300; ++i) {
      write(20);
    }
    EXPECT_EQ(TempSize(), inFile);
    write(kLong + 3);
    for (int i = 0; i != 200; ++i) {
      write(20);
    }
    EXPECT_TRUE(ReadAll(*mDump) == plain.ReadAll()) << over;
  }
}

INSTANTIATE_TEST_SUITE_P(Lengths, DumpWithTextsAt, testing::Values(0, 3, 4, 11, 23, 32, 33),
                         [](auto const& length) { return "Of" + std::to_string(length.param) + "Bytes"; });

// Others hold so much that this one spills at 64 KiB. In front of the long text nothing hangs on that; behind it the
// spill is where the file ends, as it is with whole times.
TEST_F(DumpSamplesTexts, EarlySpillsInFrontOfALongTextChangeNothing) {
  TakeTheShareOfAll();
  Random random(3);
  std::size_t spillsBefore = 0;
  std::size_t spillsBehind = 0;
  for (std::size_t const behind : {3, 400, 8000}) {
    for (std::size_t const length : {kLong + 1, kLong + 700, 2 * kLong + 9}) {
      PlainDump plain(24);
      mDump = NewDump(24);
      std::string time(24, '0');
      std::size_t const before = random() % 8000;
      // Those of the other buffers are in no file.
      std::size_t size = TempSize();
      for (std::size_t i = 0; i != before + 1 + behind; ++i) {
        time = NextTime(time, random);
        Sample const sample = {time, Text(i == before ? length : random() % 100, random)};
        Write(*mDump, sample);
        bool const hasSpilled = TempSize() != size;
        size = TempSize();
        if (hasSpilled && i > before) {
          plain.Flush();
          ++spillsBehind;
        }
        spillsBefore += hasSpilled && i <= before ? 1 : 0;
        plain.Write(sample);
      }
      ASSERT_TRUE(ReadAll(*mDump) == plain.ReadAll()) << behind << ' ' << length;
      mDump.reset();
    }
  }
  EXPECT_GT(spillsBefore, 5u);
  EXPECT_GT(spillsBehind, 5u);
}

// As with whole times: the next buffer has the whole limit.
TEST_F(DumpSamplesTexts, LimitCountsAnewBehindAnEarlySpillOfWholeRecords) {
  TakeTheShareOfAll();
  mDump = NewDump(24);
  Sample const sample = {std::string(24, '0'), std::string(74, 'x')};
  std::size_t const record = 100;
  Write(*mDump, {sample.first, std::string(kLong, 'x')});
  while (TempSize() == 0) {
    Write(*mDump, sample);
  }
  mOthers.clear();
  std::size_t const size = TempSize();
  std::size_t inBuffer = 1;
  for (; TempSize() == size; ++inBuffer) {
    Write(*mDump, sample);
  }
  EXPECT_EQ(inBuffer - 1, kLimit / record);
}

// A base, and then windows with their places.
TEST_F(DumpSamplesTexts, RecordsHoldWhatIsNewInTheirTimes) {
  mDump = NewDump(20);
  std::size_t bytes = 1 + 20 + 1 + 4 + kLengthBytes + 9;
  std::string time(20, '0');
  for (std::size_t count = 0; TempFile().empty(); ++count) {
    time.back() = static_cast<char>('0' + count % 10);
    bytes += count > 1 ? 1 + 4 + kLengthBytes + 9 : 0;
    Write(*mDump, {time, "nine byte"});
  }
  EXPECT_EQ(TempSize(), bytes);
  EXPECT_LT(TempSize(), kLimit * 17 / 31);
}

TEST_F(DumpSamplesTexts, RecordsAreWholeFromTheLongTextOn) {
  mDump = NewDump(20);
  Sample const sample = {std::string(20, '0'), "nine byte"};
  Write(*mDump, sample);
  Write(*mDump, sample);
  Write(*mDump, {sample.first, std::string(kLong, 'x')});
  std::size_t bytes = 1 + 20 + 2 * (1 + 4) + 2 * (kLengthBytes + 9) + 1 + 20 + kLengthBytes + kLong;
  while (TempFile().empty()) {
    Write(*mDump, sample);
    bytes += 20 + kLengthBytes + 9;
  }
  EXPECT_EQ(TempSize(), bytes - (20 + kLengthBytes + 9));
}

TEST_F(DumpSamplesTexts, ClearedDumpIsAsNew) {
  Random random(9);
  Samples samples = ShortTexts(60000, 23, random);
  std::size_t newSize = 0;
  for (std::size_t const before : {0, 100, 50000}) {
    for (bool const isRead : {false, true}) {
      mDump = NewDump(23);
      for (std::size_t i = 0; i != before; ++i) {
        Write(*mDump, samples[i]);
      }
      if (before != 0) {
        Write(*mDump, {samples.back().first, std::string(kLong + 8, 'x')});
      }
      if (isRead) {
        ReadAll(*mDump);
      }
      mDump->ClearDump();
      for (Sample const& sample : samples) {
        Write(*mDump, sample);
      }
      newSize = newSize == 0 ? TempSize() : newSize;
      EXPECT_EQ(TempSize(), newSize) << before;
      EXPECT_TRUE(ReadAll(*mDump) == samples) << before;
    }
  }
}

// The samples in memory are whole ones behind a long text in the file, also if the file lost that.
TEST_F(DumpSamplesTexts, NoSampleIsWrongWhereverTheFileEndsInFrontOfALongText) {
  Random random(5);
  Samples samples;
  std::string time(20, '0');
  for (int i = 0; i != 16; ++i) {
    time = NextTime(time, random);
    samples.emplace_back(time, Text(20, random));
  }
  Samples const last = {{time, "first in memory"}, {time, "second"}, {std::string(20, '9'), "third"}};
  int betweenRecords = 0;
  for (std::size_t size = 1; size < 16 * (1 + 4 + kLengthBytes + 20); ++size) {
    mDump = NewDump(20);
    for (Sample const& sample : samples) {
      Write(*mDump, sample);
    }
    Write(*mDump, {time, std::string(kLimit, 'x')});
    for (Sample const& sample : last) {
      Write(*mDump, sample);
    }
    ASSERT_GT(TempSize(), kLimit);
    fs::resize_file(TempFile(), size);
    Samples const found = ReadAll(*mDump);
    std::size_t right = 0;
    while (right != std::min(found.size(), samples.size()) && found[right] == samples[right]) {
      ++right;
    }
    Samples const others(found.begin() + static_cast<std::ptrdiff_t>(right), found.end());
    ASSERT_TRUE(others.empty() || others == last) << size;
    betweenRecords += others.empty() ? 0 : 1;
  }
  EXPECT_GT(betweenRecords, 10);
}

/// The number of the first sample that cannot be written, and its code. 1034 is a lack of memory.
struct Failure {
  std::size_t sample;
  int code;
};
bool operator==(Failure const& a, Failure const& b) {
  return a.sample == b.sample && a.code == b.code;
}
void PrintTo(Failure const& failure, std::ostream* out) {
  *out << failure.code << " at " << failure.sample;
}
Failure WriteUntilFailure(SK_DumpSamplesUtils& dump, Samples const& samples) {
  for (std::size_t i = 0; i != samples.size(); ++i) {
    try {
      Write(dump, samples[i]);
    } catch (std::bad_alloc const&) {
      return {i, 1034};
    } catch (SK_PluginException const& error) {
      return {i, error.GetErrorCode()};
    }
  }
  return {samples.size(), 0};
}

// The first mebibyte of whole times needs no file, and the next sample does.
TEST_F(DumpSamplesTexts, MissingDiskIsToldAtTheSampleWhereItIsWithWholeTimes) {
  Random random(6);
  for (std::size_t const length : {std::size_t{10}, kLong}) {
    Samples samples;
    std::string time(24, '0');
    for (int i = 0; i != 40000; ++i) {
      time = NextTime(time, random);
      samples.emplace_back(time, Text(i == 5000 ? length : random() % 30, random));
    }
    FileSizeLimit const none(0);
    mDump = NewDump(24);
    Failure const failure = WriteUntilFailure(*mDump, samples);
    mDump = NewDump(24, eTimes::kWhole);
    EXPECT_EQ(failure, WriteUntilFailure(*mDump, samples));
    EXPECT_EQ(failure.code, 1055);
  }
}

// Memory that is short goes to the file, and a sample for which there is none even then leaves the others whole. The
// bytes that the long text loses make no record.
TEST_F(DumpSamplesTexts, SamplesWithoutMemoryLeaveTheOthersWhole) {
  Random random(7);
  Samples samples = ShortTexts(2000, 24, random);
  samples.emplace_back(samples.back().first, std::string(kLong + 5, '\xFF'));
  std::size_t refused = 0;
  std::size_t spilled = 0;
  for (std::uint64_t const count : {1, 2, 20, 60}) {
    bool hasFailed = true;
    for (std::uint64_t first = 1; hasFailed; ++first) {
      ASSERT_LT(first, 200u);
      mDump = NewDump(24);
      std::vector<bool> taken(samples.size());
      {
        FailingMemory const memory(first, count);
        for (std::size_t i = 0; i != samples.size(); ++i) {
          try {
            Write(*mDump, samples[i]);
            taken[i] = true;
          } catch (std::bad_alloc const&) {
            ++refused;
          } catch (SK_PluginException const&) {
            ++refused;
          }
        }
        hasFailed = memory.HasFailed();
      }
      Samples expected;
      for (std::size_t i = 0; i != samples.size(); ++i) {
        if (taken[i]) {
          expected.emplace_back(samples[i].first, samples[i].second.substr(0, i == 2000 ? 5 : kLong));
        }
      }
      spilled += TempFile().empty() ? 0 : 1;
      EXPECT_TRUE(ReadAll(*mDump) == expected) << first << ' ' << count;
    }
  }
  EXPECT_GT(refused, 0u);
  EXPECT_GT(spilled, 0u);
}

}  // namespace
}  // namespace SK_PLUGIN
