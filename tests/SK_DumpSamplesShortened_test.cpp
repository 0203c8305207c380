// Samples that wait with what is new in their times: as numbers do.

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <utility>
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
using senmark_test::FailingCall;
using senmark_test::FailingMemory;
using senmark_test::FileSizeLimit;
using senmark_test::NextTime;
using senmark_test::Random;
using senmark_test::ReadAll;
using senmark_test::Sample;
using senmark_test::Samples;
using senmark_test::TempFolder;
using senmark_test::WaitingTime;

constexpr std::size_t kLimit = 1048576;
constexpr std::size_t kRoom = SK_DumpSamplesUtils::kPutRoom;
constexpr auto kShortened = SK_DumpSamplesUtils::eTimes::kShortened;

/// Its length and its first bytes tell which one it is.
std::string Value(std::size_t i, std::size_t size) {
  std::string value = std::to_string(i) + ' ';
  value.resize(size, static_cast<char>('a' + i % 26));
  return value;
}

/// Samples with values of sizes that `sizeOf` gives.
template <typename SizeOf>
Samples MakeSamples(std::size_t count, std::size_t timeLength, SizeOf&& sizeOf) {
  Random random(static_cast<unsigned>(count + timeLength));
  Samples samples;
  std::string time(timeLength, '0');
  for (std::size_t i = 0; i != count; ++i) {
    time = NextTime(time, random);
    samples.emplace_back(time, Value(i, sizeOf(i, random)));
  }
  return samples;
}

/// Writes the sample as the nodes do, without memory of its own. All of the room that a value has is written to, with
/// what it does not take too.
void Put(SK_DumpSamplesUtils& dump, Sample const& sample) {
  std::string const& value = sample.second;
  SK_WaitingTime const time = WaitingTime(sample.first);
  if (value.size() > kRoom) {
    dump.WriteSample(time, value);
    return;
  }
  dump.PutSample(time, [&](char* out) {
    std::memset(out, 0xEE, kRoom);
    return std::copy(value.begin(), value.end(), out);
  });
}

void PutAll(SK_DumpSamplesUtils& dump, Samples const& samples) {
  for (Sample const& sample : samples) {
    Put(dump, sample);
  }
}

class DumpSamplesShortened : public testing::Test {
 protected:
  ~DumpSamplesShortened() override {
    mDump.reset();
    EXPECT_EQ(mFolder.TempNames(), "");
    EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  }

  void Begin(std::size_t timeLength) {
    mDump = std::make_unique<SK_DumpSamplesUtils>();
    mDump->SetTimeLength(static_cast<unsigned short>(timeLength), kShortened);
  }
  std::string TempFile() const {
    auto const first = fs::directory_iterator(mFolder.TempPath());
    return first == fs::directory_iterator() ? std::string() : first->path().string();
  }
  std::size_t TempSize() const { return TempFile().empty() ? 0 : fs::file_size(TempFile()); }
  /// Puts them all, and gives how many of them are in the file in the end.
  std::size_t PutAndCount(Samples const& samples) const {
    std::size_t inFile = 0;
    std::size_t size = 0;
    for (std::size_t i = 0; i != samples.size(); ++i) {
      Put(*mDump, samples[i]);
      // What makes the file grow is not in it.
      inFile = TempSize() != size ? i : inFile;
      size = TempSize();
    }
    return inFile;
  }

  TempFolder mFolder;
  std::size_t mDescriptors = CountOpenDescriptors();
  std::unique_ptr<SK_DumpSamplesUtils> mDump;
};

class DumpWithTimesOf : public DumpSamplesShortened, public testing::WithParamInterface<std::size_t> {};

// In memory, at the edges of a buffer that grows.
TEST_P(DumpWithTimesOf, ValuesOfEverySizeComeBack) {
  for (std::size_t size = 0; size <= kRoom + 8; ++size) {
    Begin(GetParam());
    Samples const samples = MakeSamples(60, GetParam(), [&](std::size_t, Random&) { return size; });
    PutAll(*mDump, samples);
    ASSERT_EQ(TempFile(), "");
    ASSERT_TRUE(ReadAll(*mDump) == samples) << size;
  }
}

TEST_P(DumpWithTimesOf, ValuesOfManySizesComeBackFromFileAndBuffer) {
  Begin(GetParam());
  Samples const samples = MakeSamples(40000, GetParam(), [](std::size_t i, Random& random) {
    return i % 1000 == 999 ? random() % 65536 : i % 100 == 99 ? kRoom - 2 + random() % 5 : random() % 160;
  });
  PutAll(*mDump, samples);
  EXPECT_GT(TempSize(), 2 * kLimit);
  EXPECT_TRUE(ReadAll(*mDump) == samples);
  EXPECT_EQ(ReadAll(*mDump), Samples());
}

TEST_P(DumpWithTimesOf, ClearedDumpBeginsWithAWholeTime) {
  Samples const samples = MakeSamples(20000, GetParam(), [](std::size_t i, Random&) { return 60 + i % 80; });
  std::size_t const last = samples.size() - 1;
  for (std::size_t const written : {std::size_t{1}, std::size_t{50}, last}) {
    for (std::size_t const read : {std::size_t{0}, std::size_t{1}, written / 2, written}) {
      Begin(GetParam());
      PutAll(*mDump, Samples(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(written)));
      std::string_view time;
      std::string_view value;
      for (std::size_t i = 0; i != read; ++i) {
        ASSERT_TRUE(mDump->ReadSample(time, value));
      }
      mDump->ClearDump();
      EXPECT_FALSE(mDump->ReadSample(time, value));
      mDump->ClearDump();
      // The time that was written last comes first.
      Samples again = {{samples[written - 1].first, "first"}};
      again.insert(again.end(), samples.begin(), samples.begin() + 100);
      PutAll(*mDump, again);
      EXPECT_TRUE(ReadAll(*mDump) == again) << written << ' ' << read;
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Lengths, DumpWithTimesOf,
                         testing::Values(0, 1, 3, 4, 5, 7, 8, 11, 16, 17, 20, 24, 31, 32, 33, 40, 64),
                         [](auto const& length) { return "Of" + std::to_string(length.param) + "Bytes"; });

// A first record with a base and a window of it, and then others with a window.
TEST_F(DumpSamplesShortened, RecordsHoldWhatIsNewInTheirTimes) {
  struct Row {
    std::size_t timeLength;
    std::size_t recordBytes;  ///< beside the value, of a time whose last character is new
  };
  for (Row const& row : {Row{3, 5}, Row{4, 7}, Row{11, 7}, Row{32, 7}, Row{33, 35}, Row{64, 66}}) {
    Begin(row.timeLength);
    std::string time(row.timeLength, '0');
    std::size_t bytes = 0;
    for (std::size_t count = 0; TempFile().empty(); ++count) {
      bytes += count == 0 ? 0 : row.recordBytes + 150;
      time.back() = static_cast<char>('0' + count % 10);
      Put(*mDump, {time, std::string(150, 'v')});
    }
    bytes += SK_TimeWindow::AreFor(row.timeLength) ? 1 + row.timeLength : 0;
    EXPECT_EQ(TempSize(), bytes) << row.timeLength;
    mDump.reset();
  }
}

TEST_F(DumpSamplesShortened, TextsStayAsTheyWereBehindTheLast) {
  Begin(8);
  Put(*mDump, {"00:00:01", "1"});
  std::string time;
  std::string value;
  mDump->ReadSample(time, value);
  mDump->ReadSample(time, value);
  EXPECT_EQ(time, "00:00:01");
  EXPECT_EQ(value, "1");
}

TEST_F(DumpSamplesShortened, SamplesWithoutAWindowComeBackAmongOthers) {
  for (std::size_t const timeLength : {std::size_t{3}, std::size_t{11}, std::size_t{32}, std::size_t{33}}) {
    Begin(timeLength);
    std::string const time(timeLength, '1');
    std::string const other(timeLength, '2');
    Put(*mDump, {time, "first"});
    mDump->WriteSampleNum(other, 1.5);
    mDump->WriteSampleNumArr(time, {2.5, -3});
    Put(*mDump, {time, "among"});
    mDump->WriteSampleString(other, "text");
    EXPECT_EQ(ReadAll(*mDump),
              Samples({{time, "first"}, {other, "1.5"}, {time, "2.5,-3"}, {time, "among"}, {other, "text"}}))
        << timeLength;
  }
}

// A record larger than a buffer may be: whatever comes behind it still stays within the limit.
TEST_F(DumpSamplesShortened, RecordLargerThanTheLimitGoesToTheFileWithTheNext) {
  Begin(11);
  Samples const small = MakeSamples(3, 11, [](std::size_t, Random&) { return std::size_t{20}; });
  Put(*mDump, {small[0].first, std::string(16 * 65536, 'x')});
  EXPECT_EQ(TempSize(), 0u);
  Put(*mDump, small[1]);
  EXPECT_EQ(TempSize(), 1 + 11 + 2 + 16 * 65536u);
}

class CutDump : public DumpSamplesShortened {
 protected:
  // Samples that fill the file once, and some that stay in the buffer. Each fifth time is new from its middle on, and
  // the others in their last character.
  CutDump() {
    for (std::size_t i = 0; i != 9000; ++i) {
      std::string const hook = std::to_string(1000 + (i + 1) / 5 % 9000);
      std::string const time = std::string(10, '0') + hook + std::string(9, '0') + static_cast<char>('0' + (i + 1) % 5);
      mSamples.emplace_back(time, Value(i, i % 2 == 0 ? kRoom : 70 + i % 60));
    }
    Begin(24);
    mInFile = PutAndCount(mSamples);
    mFileSize = TempSize();
  }

  /// What is read from a dump that is written anew, and whose file `damage` has been at.
  template <typename Damage>
  Samples ReadDamaged(Damage&& damage) {
    Begin(24);
    PutAll(*mDump, mSamples);
    damage(TempFile());
    return ReadAll(*mDump);
  }

  Samples mSamples;
  std::size_t mInFile = 0;
  std::size_t mFileSize = 0;
};

// What comes is right, and where a record is cut is the end. Between two records nothing shows that some are missing;
// those in memory are right then too.
TEST_F(CutDump, NoSampleIsWrongWhereverTheFileEnds) {
  ASSERT_GT(mInFile, 0u);
  ASSERT_LT(mInFile, mSamples.size());
  ASSERT_NE((mInFile + 1) % 5, 0u) << "the first time in memory is the end of one in the file";
  std::vector<std::size_t> sizes = {1, 2, 26, 27, 28, 4096, 65536, mFileSize / 4096 * 4096};
  for (std::size_t i = 1; i != 1100; ++i) {
    sizes.push_back(mFileSize - i);
  }
  int betweenRecords = 0;
  for (std::size_t const size : sizes) {
    Samples const found = ReadDamaged([&](std::string const& file) { fs::resize_file(file, size); });
    std::size_t right = 0;
    while (right != found.size() && right != mInFile && found[right] == mSamples[right]) {
      ++right;
    }
    ASSERT_LT(right, mInFile) << size;
    Samples const others(found.begin() + static_cast<std::ptrdiff_t>(right), found.end());
    if (!others.empty()) {
      ASSERT_TRUE(others == Samples(mSamples.begin() + static_cast<std::ptrdiff_t>(mInFile), mSamples.end())) << size;
      ++betweenRecords;
    }
  }
  EXPECT_GE(betweenRecords, 2);
}

TEST_F(CutDump, WindowThatLeavesTheTimeEndsTheReading) {
  for (int const window : {21, 24, 33, 126, 128, 255}) {
    // Of the second record, behind the first with its whole time.
    std::streamoff const second = 1 + 24 + 1 + 4 + 2 + kRoom;
    Samples const found = ReadDamaged([&](std::string const& path) {
      std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
      file.seekp(second);
      file.put(static_cast<char>(window));
    });
    EXPECT_TRUE(found == Samples({mSamples[0]})) << window;
  }
}

// Nothing is read that is not there, whatever the file holds.
TEST_F(CutDump, AnyBytesAreReadToAnEnd) {
  Random random(3);
  for (int i = 0; i != 100; ++i) {
    std::size_t const size = i % 2 == 0 ? 1 + random() % 400 : mFileSize;
    Samples const found = ReadDamaged([&](std::string const& path) {
      fs::resize_file(path, size);
      std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
      for (int changes = i % 2 == 0 ? 400 : 20; changes != 0; --changes) {
        file.seekp(static_cast<std::streamoff>(random() % size));
        file.put(static_cast<char>(random() % 256));
      }
    });
    for (Sample const& sample : found) {
      ASSERT_EQ(sample.first.size(), 24u);
      ASSERT_LE(sample.second.size(), std::max(size, kRoom)) << "more than there is";
    }
  }
}

/// What became of samples that were put one after the other; those that failed were not tried again.
class Attempts {
 public:
  explicit Attempts(Samples const& samples) : mSamples(samples) {
    mTaken.reserve(samples.size());
    mCodes.reserve(samples.size());
  }

  /// Goes on until so many have failed, at most. 1034 is a lack of memory.
  void Put(SK_DumpSamplesUtils& dump, std::size_t mostFailures) {
    for (std::size_t const before = mCodes.size(); mNext != mSamples.size() && mCodes.size() - before != mostFailures;
         ++mNext) {
      try {
        SK_PLUGIN::Put(dump, mSamples[mNext]);
        mTaken.push_back(mNext);
      } catch (std::bad_alloc const&) {
        mCodes.push_back(1034);
      } catch (SK_PluginException const& error) {
        mCodes.push_back(error.GetErrorCode());
      }
    }
  }
  Samples Taken() const {
    Samples taken;
    for (std::size_t const i : mTaken) {
      taken.push_back(mSamples[i]);
    }
    return taken;
  }
  std::vector<int> const& Codes() const { return mCodes; }

 private:
  Samples const& mSamples;
  std::size_t mNext = 0;
  std::vector<std::size_t> mTaken;
  std::vector<int> mCodes;
};

// Memory that is short goes to the file, and a sample for which there is none even then leaves the others whole.
TEST_F(DumpSamplesShortened, SamplesWithoutMemoryLeaveTheOthersWhole) {
  Samples const samples = MakeSamples(2000, 24, [](std::size_t i, Random&) { return i % 40; });
  std::size_t refused = 0;
  std::size_t spilled = 0;
  for (std::uint64_t const count : {1, 2, 20, 60}) {
    bool hasFailed = true;
    for (std::uint64_t first = 1; hasFailed; ++first) {
      ASSERT_LT(first, 200u);
      Begin(24);
      Attempts attempts(samples);
      {
        FailingMemory const memory(first, count);
        attempts.Put(*mDump, samples.size());
        hasFailed = memory.HasFailed();
      }
      refused += attempts.Codes().size();
      spilled += TempFile().empty() ? 0 : 1;
      EXPECT_TRUE(ReadAll(*mDump) == attempts.Taken()) << first << ' ' << count;
    }
  }
  EXPECT_GT(refused, 0u);
  EXPECT_GT(spilled, 0u);
}

TEST_F(DumpSamplesShortened, FailedWritesLeaveTheOthersWhole) {
  Samples const samples = MakeSamples(80000, 24, [](std::size_t i, Random&) { return i % 100; });
  for (std::size_t const limit : {std::size_t{0}, std::size_t{1000}, kLimit / 2, kLimit, kLimit + 5000}) {
    Begin(24);
    Attempts attempts(samples);
    {
      FileSizeLimit const room(limit);
      attempts.Put(*mDump, 20);
    }
    EXPECT_EQ(attempts.Codes(), std::vector<int>(20, 1055));
    attempts.Put(*mDump, 1);
    EXPECT_EQ(attempts.Codes().size(), 20u);
    EXPECT_TRUE(ReadAll(*mDump) == attempts.Taken()) << limit;
  }
}

TEST_F(DumpSamplesShortened, FullDiskIsToldAndLosesNothing) {
  Samples const samples = MakeSamples(30000, 11, [](std::size_t i, Random&) { return i % 100; });
  Begin(11);
  Attempts attempts(samples);
  {
    FailingCall const full(senmark_test::kWrite, ENOSPC, 0, 1);
    attempts.Put(*mDump, samples.size());
  }
  EXPECT_EQ(attempts.Codes(), std::vector<int>{1034});
  EXPECT_TRUE(ReadAll(*mDump) == attempts.Taken());
}

// With a file of its own it goes on in small pieces, but needs the disk for what is more than a mebibyte only.
TEST_F(DumpSamplesShortened, DiskThatFillsUpLaterIsNoFailureWhileMemoryIsEnough) {
  auto const hundred = [](std::size_t, Random&) { return std::size_t{100}; };
  Samples const samples = MakeSamples(30000, 24, hundred);
  Begin(24);
  std::size_t put = 0;
  for (; TempSize() < kLimit + kLimit / 4; ++put) {
    Put(*mDump, samples[put]);
  }
  std::size_t const inFile = TempSize();
  std::size_t const enough = put + kLimit / 130;
  ASSERT_LT(enough, samples.size());
  {
    FailingCall const full(senmark_test::kWrite, ENOSPC, 0, 1000);
    for (; put != enough; ++put) {
      Put(*mDump, samples[put]);
    }
    EXPECT_TRUE(full.HasFailed());
    EXPECT_EQ(TempSize(), inFile);
    try {
      for (; put != samples.size(); ++put) {
        Put(*mDump, samples[put]);
      }
      ADD_FAILURE() << "more than a mebibyte without a disk";
    } catch (SK_PluginException const& error) {
      EXPECT_EQ(error.GetErrorCode(), 1034);
    }
  }
  EXPECT_TRUE(ReadAll(*mDump) == Samples(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(put)));
}

TEST_F(DumpSamplesShortened, GoesOnInPiecesOnceItHasAFile) {
  Samples const samples = MakeSamples(20000, 24, [](std::size_t, Random&) { return std::size_t{100}; });
  Begin(24);
  std::size_t spills = 0;
  std::size_t size = 0;
  for (Sample const& sample : samples) {
    Put(*mDump, sample);
    std::size_t const grown = TempSize() - size;
    if (grown != 0 && size != 0) {
      EXPECT_LE(grown, kLimit / 4);
      EXPECT_GT(grown, kLimit / 4 - kRoom - 64) << "there was room for one more";
      ++spills;
    }
    size += grown;
  }
  EXPECT_GE(spills, 4u);
  EXPECT_TRUE(ReadAll(*mDump) == samples);
}

// Others hold so much that this one spills at 64 KiB: the order and the times are the same.
TEST_F(DumpSamplesShortened, EarlySpillsKeepOrderAndTimes) {
  std::vector<std::unique_ptr<SK_DumpSamplesUtils>> others;
  Samples const large = MakeSamples(kLimit / 256, 24, [](std::size_t, Random&) { return std::size_t{250}; });
  for (int i = 0; i != 9; ++i) {
    others.push_back(std::make_unique<SK_DumpSamplesUtils>());
    others.back()->SetTimeLength(24, kShortened);
    PutAll(*others.back(), large);
  }
  Begin(24);
  Samples const samples = MakeSamples(20000, 24, [](std::size_t i, Random&) { return i % 100; });
  PutAll(*mDump, samples);
  EXPECT_TRUE(ReadAll(*mDump) == samples);
  for (auto const& other : others) {
    EXPECT_TRUE(ReadAll(*other) == large);
  }
}

}  // namespace
}  // namespace SK_PLUGIN
