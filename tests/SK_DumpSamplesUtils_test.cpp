// The program replaces the allocating functions of C++, to make single ones fail and to see what is held.

#include "SK_DumpSamplesUtils.h"

#include <gtest/gtest.h>
#include <malloc.h>
#include <sys/resource.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "DumpedSamples.h"
#include "FailingCalls.h"
#include "SK_FileIO.h"
#include "SK_PluginException.h"
#include "TempFolder.h"

namespace {

std::atomic<std::size_t> gSmallestFailing{0};  // bytes of an allocation that fails; 0 for none
std::atomic<int> gFailuresLeft{0};
std::atomic<std::size_t> gAllocations{0};
std::atomic<std::size_t> gHeldBytes{0};
std::atomic<std::size_t> gMostHeldBytes{0};

void* AllocateOrThrow(std::size_t size) {
  std::size_t const smallest = gSmallestFailing;
  if (smallest != 0 && size >= smallest && gFailuresLeft-- > 0) {
    throw std::bad_alloc();
  }
  void* const block = std::malloc(size == 0 ? 1 : size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  ++gAllocations;
  gHeldBytes += malloc_usable_size(block);
  gMostHeldBytes = std::max<std::size_t>(gMostHeldBytes, gHeldBytes);
  return block;
}

void Free(void* block) {
  gHeldBytes -= malloc_usable_size(block);
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}
void operator delete(void* block) noexcept {
  Free(block);
}
void operator delete[](void* block) noexcept {
  Free(block);
}
void operator delete(void* block, std::size_t) noexcept {
  Free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
  Free(block);
}

namespace SK_PLUGIN {
namespace {

namespace fs = std::filesystem;

using senmark_test::CountOpenDescriptors;
using senmark_test::FailingCall;
using senmark_test::FailingFstat;
using senmark_test::FileSizeLimit;
using senmark_test::KeptVariable;
using senmark_test::ReadAll;
using senmark_test::Sample;
using senmark_test::Samples;
using senmark_test::TempFolder;

constexpr std::size_t kLimit = 1048576;
constexpr std::size_t kRecord = 1024;  // a divisor of the limit
constexpr std::size_t kLengthBytes = 2;

/// Makes the next `count` allocations of at least `size` bytes fail.
class FailingAllocations {
 public:
  FailingAllocations(std::size_t size, int count) {
    gFailuresLeft = count;
    gSmallestFailing = size;
  }
  ~FailingAllocations() { gSmallestFailing = 0; }
  FailingAllocations(FailingAllocations const&) = delete;
  FailingAllocations& operator=(FailingAllocations const&) = delete;
};

/// Descriptors from this number on are refused for as long as it lives.
class DescriptorLimit {
 public:
  explicit DescriptorLimit(rlim_t limit) {
    getrlimit(RLIMIT_NOFILE, &mBefore);
    rlimit const now = {limit, mBefore.rlim_max};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &now), 0);
  }
  ~DescriptorLimit() { setrlimit(RLIMIT_NOFILE, &mBefore); }
  DescriptorLimit(DescriptorLimit const&) = delete;
  DescriptorLimit& operator=(DescriptorLimit const&) = delete;

 private:
  rlimit mBefore = {};
};

/// The time text of sample `i`, of 8 bytes.
std::string TimeOf(std::size_t i) {
  std::string const digits = std::to_string(i);
  return std::string(8 - digits.size(), '0') + digits;
}

/// A sample that makes a record of `size` bytes.
Sample SampleOfSize(std::size_t i, std::size_t size = kRecord) {
  Sample sample(TimeOf(i), std::to_string(i));
  sample.second.resize(size - sample.first.size() - kLengthBytes, static_cast<char>('a' + i % 26));
  return sample;
}

/// As nodes do.
void Write(SK_DumpSamplesUtils& dump, Sample const& sample) {
  dump.WriteSample(sample.first, sample.second);
}

/// Writes samples until their records have `bytes` bytes.
void Fill(SK_DumpSamplesUtils& dump, std::size_t bytes, Samples* written = nullptr, std::size_t first = 0) {
  for (std::size_t i = 0; i < bytes / kRecord; ++i) {
    Sample sample = SampleOfSize(first + i);
    Write(dump, sample);
    if (written != nullptr) {
      written->push_back(std::move(sample));
    }
  }
}

template <typename Work>
int CodeOf(Work&& work) {
  try {
    work();
  } catch (SK_PluginException const& e) {
    EXPECT_EQ(e.GetFileOffset(), -1);
    EXPECT_EQ(e.GetFileLineNo(), -1);
    return e.GetErrorCode();
  }
  return 0;
}

class DumpSamplesUtils : public testing::Test {
 protected:
  DumpSamplesUtils() : mDescriptors(CountOpenDescriptors()) { mDump->SetTimeLength(8); }
  ~DumpSamplesUtils() override {
    mDump.reset();
    mOthers.clear();
    EXPECT_EQ(mFolder.TempNames(), "");
    EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  }

  std::string TempFile() const {
    std::string path;
    for (fs::directory_entry const& entry : fs::directory_iterator(mFolder.TempPath())) {
      path = entry.path().string();
    }
    return path;
  }
  std::size_t TempFiles() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(mFolder.TempPath()), fs::directory_iterator()));
  }
  std::size_t SizeOfTempFile() const { return fs::file_size(TempFile()); }

  SK_DumpSamplesUtils& AnotherDump() {
    mOthers.push_back(std::make_unique<SK_DumpSamplesUtils>());
    mOthers.back()->SetTimeLength(8);
    return *mOthers.back();
  }
  // Other buffers that hold as much as all may hold together.
  void TakeTheShareOfAll() {
    for (int i = 0; i < 8; ++i) {
      Fill(AnotherDump(), kLimit);
    }
  }

  TempFolder mFolder;
  std::size_t mDescriptors;
  std::unique_ptr<SK_DumpSamplesUtils> mDump = std::make_unique<SK_DumpSamplesUtils>();
  std::vector<std::unique_ptr<SK_DumpSamplesUtils>> mOthers;
};

TEST_F(DumpSamplesUtils, EmptyDumpDeliversNothing) {
  std::string time;
  std::string value;
  mDump->ReadSample(time, value);
  mDump->ReadSample(time, value);
  EXPECT_EQ(time, "");
  EXPECT_EQ(value, "");
  EXPECT_EQ(ReadAll(*mDump), Samples());
}

TEST_F(DumpSamplesUtils, TextsStayAsTheyWereBehindTheLast) {
  mDump->WriteSampleNum("00:00:01", 1.5);
  std::string time;
  std::string value;
  mDump->ReadSample(time, value);
  EXPECT_EQ(time, "00:00:01");
  EXPECT_EQ(value, "1.5");
  mDump->ReadSample(time, value);
  EXPECT_EQ(time, "00:00:01");
  EXPECT_EQ(value, "1.5");
  std::string_view timeView = "a";
  std::string_view valueView = "b";
  EXPECT_FALSE(mDump->ReadSample(timeView, valueView));
  EXPECT_EQ(timeView, "a");
  EXPECT_EQ(valueView, "b");
}

TEST_F(DumpSamplesUtils, EachKindHasItsText) {
  mDump->WriteSampleNum("00:00:01", -0.1 - 0.2);
  mDump->WriteSampleNumArr("00:00:02", {1.0, -2.5, 9.95});
  mDump->WriteSampleNumArr("00:00:03", {7.0});
  mDump->WriteSampleNumArr("00:00:04", {});
  mDump->WriteSampleString("00:00:05", std::string("a,b\0\"", 5));
  mDump->WriteSampleString("00:00:06", "");
  mDump->WriteSample("00:00:07", "finished");
  EXPECT_EQ(ReadAll(*mDump), Samples({{"00:00:01", "-0.3"},
                                      {"00:00:02", "1,-2.5,9.949999999999999"},
                                      {"00:00:03", "7"},
                                      {"00:00:04", ""},
                                      {"00:00:05", std::string("a,b\0\"", 5)},
                                      {"00:00:06", ""},
                                      {"00:00:07", "finished"}}));
}

TEST_F(DumpSamplesUtils, TimeOfNoLengthIsEmpty) {
  mDump->SetTimeLength(0);
  mDump->WriteSampleString("", "");
  mDump->WriteSampleString("", "a");
  EXPECT_EQ(ReadAll(*mDump), Samples({{"", ""}, {"", "a"}}));
}

struct Filling {
  char const* name;
  std::size_t bytes;
  std::size_t bytesInFile;
};

class FilledTo : public DumpSamplesUtils, public testing::WithParamInterface<Filling> {};

TEST_P(FilledTo, SpillsAndReadsInOrder) {
  // Records of 1 KiB, and a last one for the rest.
  std::size_t const rest = GetParam().bytes % kRecord;
  Samples written;
  Fill(*mDump, GetParam().bytes - rest, &written);
  if (rest != 0) {
    written.push_back(SampleOfSize(written.size(), rest));
    Write(*mDump, written.back());
  }
  EXPECT_EQ(TempFiles(), GetParam().bytesInFile == 0 ? 0u : 1u);
  if (GetParam().bytesInFile != 0) {
    EXPECT_EQ(SizeOfTempFile(), GetParam().bytesInFile);
  }
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

INSTANTIATE_TEST_SUITE_P(Dump, FilledTo,
                         testing::Values(Filling{"BelowTheLimit", kLimit - 1, 0}, Filling{"TheLimit", kLimit, 0},
                                         Filling{"AboveTheLimit", kLimit + 11, kLimit},
                                         Filling{"TwiceTheLimit", 2 * kLimit, kLimit},
                                         Filling{"AboveTwiceTheLimit", 2 * kLimit + kRecord, 2 * kLimit},
                                         Filling{"ManyTimesTheLimit", 5 * kLimit + 100, 5 * kLimit}),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(DumpSamplesUtils, RecordLargerThanTheLimitStaysInTheBuffer) {
  Sample const small = SampleOfSize(1);
  Sample const huge(TimeOf(2), std::string(2 * 65536 * 8, 'x'));  // whose length is 0 without its high bits
  Write(*mDump, huge);
  EXPECT_EQ(TempFiles(), 0u) << "there was nothing to flush";
  Write(*mDump, small);
  ASSERT_EQ(TempFiles(), 1u);
  EXPECT_EQ(SizeOfTempFile(), huge.second.size() + 8 + kLengthBytes);
  Write(*mDump, huge);
  EXPECT_EQ(SizeOfTempFile(), huge.second.size() + 8 + kLengthBytes + kRecord);
}

TEST_F(DumpSamplesUtils, LongestValueComesBack) {
  Samples const written = {{TimeOf(1), std::string(65535, 'x')}, {TimeOf(2), "2"}};
  Write(*mDump, written[0]);
  Write(*mDump, written[1]);
  EXPECT_EQ(ReadAll(*mDump), written);
}

// A length counts modulo 65,536, and what stands behind is taken for the next record.
TEST_F(DumpSamplesUtils, ValueTooLongForItsLengthLosesWhatFollows) {
  std::string const value(70000, 'x');
  Write(*mDump, {TimeOf(1), value});
  Write(*mDump, {TimeOf(2), "2"});
  Samples const expected = {{TimeOf(1), value.substr(0, 70000 - 65536)},
                            {"xxxxxxxx", value.substr(0, 0x7878)},
                            {"xxxxxxxx", value.substr(0, 0x7878)}};
  // 65,536 bytes and a record are left, of which two lengths of "xx" take 2 * (10 + 0x7878).
  Samples const found = ReadAll(*mDump);
  ASSERT_GE(found.size(), 2u);
  EXPECT_TRUE(found[0] == expected[0]);
  EXPECT_TRUE(found[1] == expected[1]);
  EXPECT_EQ(std::count(found.begin(), found.end(), Sample(TimeOf(2), "2")), 0);
}

TEST_F(DumpSamplesUtils, LengthCountsModulo65536) {
  for (std::size_t const length : {std::size_t{65536}, std::size_t{65537}, std::size_t{131071}, std::size_t{131072}}) {
    SK_DumpSamplesUtils& dump = AnotherDump();
    std::string const value(length, 'x');
    Write(dump, {TimeOf(1), value});
    std::string_view time;
    std::string_view found = "not empty";
    ASSERT_TRUE(dump.ReadSample(time, found));
    EXPECT_EQ(time, TimeOf(1));
    EXPECT_EQ(found.size(), length % 65536);
    mOthers.clear();
  }
}

/// Records as they are told, one after the other, without any short way.
class PlainDump {
 public:
  void Write(Sample const& sample) {
    auto const length = static_cast<std::uint16_t>(sample.second.size());
    std::string lengthBytes(sizeof(length), '\0');
    std::memcpy(&lengthBytes[0], &length, sizeof(length));
    std::string const record = sample.first + lengthBytes + sample.second;
    if (mBuffer.size() + record.size() > kLimit) {
      mFile += mBuffer;
      mBuffer.clear();
    }
    mBuffer += record;
  }
  /// A record that is cut ends all reading.
  Samples ReadAll() const {
    Samples samples;
    if (Read(mFile, samples)) {
      Read(mBuffer, samples);
    }
    return samples;
  }
  bool HasFile() const { return !mFile.empty(); }

 private:
  static bool Read(std::string_view records, Samples& samples) {
    constexpr std::size_t kHead = 8 + kLengthBytes;
    while (!records.empty()) {
      std::uint16_t length = 0;
      if (records.size() >= kHead) {
        std::memcpy(&length, records.data() + 8, sizeof(length));
      }
      if (records.size() < kHead + length) {
        return false;
      }
      samples.emplace_back(records.substr(0, 8), records.substr(kHead, length));
      records.remove_prefix(kHead + length);
    }
    return true;
  }

  std::string mFile;
  std::string mBuffer;
};

// Values with too many bytes, and others in front of them and behind them, in memory and in a file.
TEST_F(DumpSamplesUtils, SamplesAreThoseOfPlainRecords) {
  std::mt19937 random(23);
  std::size_t withFile = 0;
  std::size_t astray = 0;
  for (std::size_t const length : {65534u, 65535u, 65536u, 65537u, 70000u, 131071u, 131072u}) {
    for (int round = 0; round != 24; ++round) {
      std::size_t const before = round % 3 == 0 ? random() % 5 : random() % 3000;
      std::size_t const count = before + 1 + (round % 2 == 0 ? random() % 5 : random() % 3000);
      PlainDump plain;
      SK_DumpSamplesUtils& dump = AnotherDump();
      Samples written;
      for (std::size_t i = 0; i != count; ++i) {
        // Bytes of a long one are small numbers: they make many short records.
        Sample sample(TimeOf(i), std::string(i == before ? length : random() % 1000, static_cast<char>(random() % 3)));
        plain.Write(sample);
        if (round % 4 < 3) {
          Write(dump, sample);
        } else {
          dump.WriteSampleString(sample.first, sample.second);
        }
        written.push_back(std::move(sample));
      }
      Samples const expected = plain.ReadAll();
      ASSERT_TRUE(ReadAll(dump) == expected) << length << ' ' << round;
      withFile += plain.HasFile() ? 1 : 0;
      astray += expected != written ? 1 : 0;
      mOthers.clear();
    }
  }
  EXPECT_GT(withFile, 40u);
  EXPECT_EQ(astray, 5 * 24u);
}

TEST_F(DumpSamplesUtils, ViewsAreGoodUntilTheNextCall) {
  Samples written;
  Fill(*mDump, kLimit + kRecord, &written);
  std::string_view time;
  std::string_view value;
  for (Sample const& sample : written) {
    ASSERT_TRUE(mDump->ReadSample(time, value));
    ASSERT_EQ(time, sample.first);
    ASSERT_EQ(value, sample.second);
  }
  EXPECT_FALSE(mDump->ReadSample(time, value));
}

TEST_F(DumpSamplesUtils, MappingEndsBehindTheFile) {
  Fill(*mDump, kLimit + kRecord);
  auto const isMapped = [path = TempFile()] {
    std::ifstream maps("/proc/self/maps");
    std::string const text((std::istreambuf_iterator<char>(maps)), std::istreambuf_iterator<char>());
    return text.find(path) != std::string::npos;
  };
  std::string_view time;
  std::string_view value;
  ASSERT_TRUE(mDump->ReadSample(time, value));
  EXPECT_TRUE(isMapped());
  for (std::size_t i = 0; i < kLimit / kRecord; ++i) {
    ASSERT_TRUE(mDump->ReadSample(time, value));
  }
  EXPECT_EQ(time, TimeOf(kLimit / kRecord)) << "from the buffer";
  EXPECT_FALSE(isMapped());
}

TEST_F(DumpSamplesUtils, CutFileEndsTheReading) {
  Samples written;
  Fill(*mDump, kLimit + kRecord, &written);
  Samples const expected(written.begin(), written.begin() + kLimit / kRecord - 1);
  fs::resize_file(TempFile(), kLimit - 1);
  EXPECT_TRUE(ReadAll(*mDump) == expected);
}

TEST_F(DumpSamplesUtils, RecordCutAnywhereEndsTheReading) {
  constexpr std::size_t kSmall = 8 + kLengthBytes + 5;
  for (std::size_t left = 1; left < kSmall; ++left) {
    SK_DumpSamplesUtils& dump = AnotherDump();
    Fill(dump, kLimit - kRecord);
    Write(dump, {TimeOf(1), "12345"});
    Fill(dump, kRecord);  // too much for the buffer
    ASSERT_EQ(TempFiles(), 1u);
    fs::resize_file(TempFile(), kLimit - kRecord + left);
    EXPECT_EQ(ReadAll(dump).size(), kLimit / kRecord - 1) << left;
    mOthers.clear();
  }
}

TEST_F(DumpSamplesUtils, SteadyStateAllocatesNothing) {
  std::vector<double> const values = {-123.4567891, 123.4567891, 0.1};
  std::string const time = "00:00:01";
  Fill(*mDump, 40 * kRecord);  // now the buffer has room for 64 KiB
  mDump->WriteSampleNumArr(time, values);
  std::size_t const before = gAllocations;
  for (int i = 0; i < 200; ++i) {
    mDump->WriteSampleNumArr(time, values);
    mDump->WriteSampleNum(time, -123.4567891);
  }
  std::string_view timeView;
  std::string_view valueView;
  std::size_t samples = 0;
  while (mDump->ReadSample(timeView, valueView)) {
    ++samples;
  }
  EXPECT_EQ(gAllocations, before);
  EXPECT_EQ(samples, 441u);
}

TEST_F(DumpSamplesUtils, ManySamplesTakeFewAllocations) {
  constexpr std::size_t kBytes = 8 + kLengthBytes + 12;
  std::string const time = "00:00:01";
  std::size_t const before = gAllocations;
  for (int i = 0; i < 1000000; ++i) {
    mDump->WriteSampleNum(time, -123.4567891);
  }
  EXPECT_LT(gAllocations - before, 200u);
  EXPECT_EQ(SizeOfTempFile(), 20 * (kLimit / kBytes * kBytes));
}

// What memory is short of goes to the file.
TEST_F(DumpSamplesUtils, NoMemoryIsAnsweredBySpilling) {
  Samples written;
  Fill(*mDump, 16384 - kRecord, &written);
  {
    FailingAllocations const failing(32768, 1);
    Fill(*mDump, 20 * kRecord, &written, written.size());
  }
  ASSERT_EQ(TempFiles(), 1u);
  EXPECT_GE(SizeOfTempFile(), 16384u - kRecord);
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

TEST_F(DumpSamplesUtils, SecondFailureOfMemoryGoesOn) {
  Samples written;
  Fill(*mDump, 15 * kRecord, &written);
  {
    FailingAllocations const failing(16384, 1000);
    EXPECT_THROW(Fill(*mDump, 4 * kRecord), std::bad_alloc);
  }
  // What came before stands, and no part of the record that failed.
  Samples const found = ReadAll(*mDump);
  ASSERT_GE(found.size(), written.size());
  EXPECT_TRUE(std::equal(written.begin(), written.end(), found.begin()));
}

TEST_F(DumpSamplesUtils, NoMemoryAndNoFileIsTheFailureOfTheFile) {
  Fill(*mDump, 15 * kRecord);
  FailingAllocations const failing(32768, 1000);
  FailingCall const noFile(senmark_test::kMkostemp, EMFILE);
  EXPECT_EQ(CodeOf([this] { Fill(*mDump, 20 * kRecord); }), 1015);
}

// One step of a file that fails, and the code of it.
struct FailingStep {
  char const* name;
  std::function<std::shared_ptr<void>()> makeFailing;
  int code;
};

void PrintTo(FailingStep const& row, std::ostream* out) {
  *out << row.name;
}

template <typename Failing, typename... Arguments>
std::function<std::shared_ptr<void>()> Make(Arguments... arguments) {
  return [=] { return std::make_shared<Failing>(arguments...); };
}

class WritingFails : public DumpSamplesUtils, public testing::WithParamInterface<FailingStep> {};

TEST_P(WritingFails, WithItsCodeAndNothingLeft) {
  Fill(*mDump, kLimit);
  {
    auto const failing = GetParam().makeFailing();
    EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), GetParam().code);
  }
  mDump->ClearDump();
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  EXPECT_EQ(ReadAll(*mDump), Samples());
}

TEST_P(WritingFails, AndTheDestructorLeavesNothing) {
  Fill(*mDump, kLimit);
  {
    auto const failing = GetParam().makeFailing();
    EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), GetParam().code);
  }
  mDump.reset();
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
}

FailingStep const kWritingSteps[] = {
    {"TempFile", Make<FailingCall>(senmark_test::kMkostemp, EACCES), 1015},
    {"CloseOfTempFile", Make<FailingCall>(senmark_test::kClose, EIO), 1008},
    {"Create", Make<FailingCall>(senmark_test::kOpen, EIO), 1007},
    {"CloseOfCreate", Make<FailingCall>(senmark_test::kClose, EIO, 1), 1008},
    {"Open", Make<FailingCall>(senmark_test::kOpen, EIO, 1), 1006},
    {"OpenWithoutPermission", Make<FailingCall>(senmark_test::kOpen, EACCES, 1), 1013},
    {"LookAtPermission", Make<FailingFstat>(EIO), 1006},
    {"WriteOnAFullDisk", Make<FailingCall>(senmark_test::kWrite, ENOSPC), 1034},
    {"Write", Make<FailingCall>(senmark_test::kWrite, EIO), 1055},
    {"WriteOfAPart", Make<FileSizeLimit>(kLimit / 2), 1055},
    {"WriteOfNothing", Make<FileSizeLimit>(0), 1055},
};

INSTANTIATE_TEST_SUITE_P(Dump, WritingFails, testing::ValuesIn(kWritingSteps),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(DumpSamplesUtils, SecondWriteFailsLikeTheFirst) {
  Fill(*mDump, 2 * kLimit);
  FailingCall const full(senmark_test::kWrite, ENOSPC);
  EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), 1034);
}

TEST_F(DumpSamplesUtils, FailedWriteCanBeTriedAgain) {
  Samples written;
  Fill(*mDump, kLimit, &written);
  {
    FileSizeLimit const limit(kLimit / 2 + 7);
    EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), 1055);
  }
  Fill(*mDump, kLimit, &written, written.size());
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

TEST_F(DumpSamplesUtils, FailedLaterWriteLeavesTheEarlierOnes) {
  Samples written;
  Fill(*mDump, 3 * kLimit, &written);
  ASSERT_EQ(SizeOfTempFile(), 2 * kLimit);
  {
    FileSizeLimit const limit(2 * kLimit + kLimit / 2 + 7);
    EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), 1055);
  }
  EXPECT_EQ(SizeOfTempFile(), 2 * kLimit);
  Fill(*mDump, kLimit, &written, written.size());
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

TEST_F(DumpSamplesUtils, FailedWriteOfAClearedDumpLeavesAnEmptyFile) {
  Fill(*mDump, 2 * kLimit);
  mDump->ClearDump();
  Fill(*mDump, kLimit);
  FileSizeLimit const limit(kLimit / 2 + 7);
  EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), 1055);
  EXPECT_EQ(SizeOfTempFile(), 0u);
}

TEST_F(DumpSamplesUtils, FullDiskIsToldAlsoIfTheFileCannotBeCutBack) {
  Fill(*mDump, kLimit);
  FailingCall const full(senmark_test::kWrite, ENOSPC);
  FailingCall const noCut(senmark_test::kFtruncate, EIO);
  EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), 1034);
}

class ReadingFails : public DumpSamplesUtils, public testing::WithParamInterface<FailingStep> {};

TEST_P(ReadingFails, WithItsCodeAndNothingMoreIsDelivered) {
  Fill(*mDump, kLimit + kRecord);
  std::string time = "time";
  std::string value = "value";
  {
    auto const failing = GetParam().makeFailing();
    EXPECT_EQ(CodeOf([&] { mDump->ReadSample(time, value); }), GetParam().code);
  }
  mDump->ReadSample(time, value);
  EXPECT_EQ(time, "time");
  EXPECT_EQ(value, "value");
  mDump->ClearDump();
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
}

FailingStep const kReadingSteps[] = {
    {"Close", Make<FailingCall>(senmark_test::kClose, EIO), 1008},
    {"Open", Make<FailingCall>(senmark_test::kOpen, EMFILE), 1006},
    {"LookAtSize", Make<FailingFstat>(EIO), 1005},
    {"Map", Make<FailingCall>(senmark_test::kMmap, ENOMEM), 1021},
    {"Memory", Make<FailingAllocations>(std::size_t{1}, 1), 1034},
};

INSTANTIATE_TEST_SUITE_P(Dump, ReadingFails, testing::ValuesIn(kReadingSteps),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(DumpSamplesUtils, EmptiedFileCannotBeRead) {
  Fill(*mDump, kLimit + kRecord);
  fs::resize_file(TempFile(), 0);
  EXPECT_EQ(CodeOf([this] { ReadAll(*mDump); }), 1054);
}

// How far a dump has come when it is cleared.
struct Stage {
  char const* name;
  std::size_t written;
  std::size_t read;  // samples
};

class ClearedDump : public DumpSamplesUtils, public testing::WithParamInterface<Stage> {
 protected:
  void Reach() {
    Fill(*mDump, GetParam().written);
    std::string_view time;
    std::string_view value;
    for (std::size_t i = 0; i < GetParam().read; ++i) {
      mDump->ReadSample(time, value);
    }
  }
};

TEST_P(ClearedDump, HoldsNothing) {
  std::size_t const before = gHeldBytes;
  Reach();
  mDump->ClearDump();
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  EXPECT_LE(gHeldBytes, before + 256) << "the memory of the buffer";
  std::string time = "time";
  std::string value = "value";
  mDump->ReadSample(time, value);
  EXPECT_EQ(time, "time");
  EXPECT_EQ(value, "value");
  mDump->ClearDump();
}

TEST_P(ClearedDump, CanBeUsedAgain) {
  Reach();
  mDump->ClearDump();
  Samples written;
  Fill(*mDump, 2 * kLimit, &written, 1);
  EXPECT_TRUE(ReadAll(*mDump) == written);
  mDump->ClearDump();
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_P(ClearedDump, LeavesNothingWithoutClearing) {
  Reach();
  mDump.reset();
  EXPECT_EQ(mFolder.TempNames(), "");
  EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
}

TEST_P(ClearedDump, SwallowsAMissingFile) {
  Reach();
  if (TempFiles() != 0) {
    fs::remove(TempFile());
  }
  mDump->ClearDump();
  EXPECT_EQ(ReadAll(*mDump), Samples());
}

Stage const kStages[] = {
    {"New", 0, 0},
    {"ReadWithoutSamples", 0, 1},
    {"InMemory", 10 * kRecord, 0},
    {"ReadInMemory", 10 * kRecord, 5},
    {"ReadToTheEndInMemory", 10 * kRecord, 11},
    {"Spilled", 3 * kLimit, 0},
    {"ReadInFile", 3 * kLimit, 100},
    {"ReadToTheEndOfFile", 3 * kLimit, 2 * kLimit / kRecord},
    {"ReadBehindFile", 3 * kLimit, 2 * kLimit / kRecord + 1},
    {"ReadToTheEnd", 3 * kLimit, 3 * kLimit / kRecord + 1},
};

INSTANTIATE_TEST_SUITE_P(Dump, ClearedDump, testing::ValuesIn(kStages),
                         [](auto const& row) { return std::string(row.param.name); });

// A file that could not be closed is let be, until the dump itself goes.
TEST_F(DumpSamplesUtils, FailedCloseSkipsTheRestOfClearing) {
  Fill(*mDump, 2 * kLimit);
  {
    FailingCall const failing(senmark_test::kClose, EIO);
    mDump->ClearDump();
  }
  EXPECT_EQ(TempFiles(), 1u);
  EXPECT_EQ(ReadAll(*mDump), Samples());
  mDump.reset();
  EXPECT_EQ(TempFiles(), 0u);
}

TEST_F(DumpSamplesUtils, DestructorWhoseCloseFailsLeavesNothing) {
  Fill(*mDump, 2 * kLimit);
  FailingCall const failing(senmark_test::kClose, EIO);
  mDump.reset();
  EXPECT_EQ(TempFiles(), 0u);
}

TEST_F(DumpSamplesUtils, DumpLeftByAFailedCloseCanBeUsedAgain) {
  Fill(*mDump, 2 * kLimit);
  {
    FailingCall const failing(senmark_test::kClose, EIO);
    mDump->ClearDump();
  }
  Samples written;
  Fill(*mDump, 2 * kLimit, &written, 5);
  EXPECT_EQ(TempFiles(), 1u);
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

TEST_F(DumpSamplesUtils, ManyDumpsShareAFewMebibytes) {
  constexpr std::size_t kDumps = 60;
  constexpr std::size_t kBytesOfEach = 700 * kRecord;
  for (std::size_t i = 0; i < kDumps; ++i) {
    AnotherDump();
  }
  std::size_t const before = gHeldBytes;
  gMostHeldBytes = before;
  for (std::size_t sample = 0; sample < kBytesOfEach / kRecord; ++sample) {
    for (std::size_t i = 0; i < kDumps; ++i) {
      Write(*mOthers[i], SampleOfSize(sample + i));
    }
  }
  // Beyond the share of all there is what is too small for a file, and a buffer while it moves.
  EXPECT_LE(gMostHeldBytes - before, 8 * kLimit + kDumps * 65536 + kLimit);
  EXPECT_GE(TempFiles(), kDumps / 2);
  for (std::size_t i = 0; i < kDumps; ++i) {
    Samples const found = ReadAll(*mOthers[i]);
    ASSERT_EQ(found.size(), kBytesOfEach / kRecord);
    for (std::size_t sample = 0; sample < found.size(); ++sample) {
      ASSERT_TRUE(found[sample] == SampleOfSize(sample + i)) << i << ' ' << sample;
    }
  }
}

TEST_F(DumpSamplesUtils, SmallBufferStaysWhateverOthersHold) {
  TakeTheShareOfAll();
  Fill(*mDump, 65536);
  EXPECT_EQ(TempFiles(), 0u);
  Fill(*mDump, kRecord);
  EXPECT_EQ(TempFiles(), 1u);
  EXPECT_EQ(SizeOfTempFile(), 65536u);
}

TEST_F(DumpSamplesUtils, ShareIsGivenBackByClearing) {
  TakeTheShareOfAll();
  mOthers[0]->ClearDump();
  Fill(*mDump, kLimit);
  EXPECT_EQ(TempFiles(), 0u);
}

TEST_F(DumpSamplesUtils, ShareIsGivenBackByTheDestructor) {
  TakeTheShareOfAll();
  mOthers.pop_back();
  Fill(*mDump, kLimit);
  EXPECT_EQ(TempFiles(), 0u);
}

TEST_F(DumpSamplesUtils, ShareIsGivenBackByAFlush) {
  TakeTheShareOfAll();
  Fill(*mOthers[0], kRecord);
  Fill(*mOthers[1], kRecord);
  EXPECT_EQ(TempFiles(), 2u);
  Fill(*mDump, kLimit);
  EXPECT_EQ(TempFiles(), 2u);
}

// Memory is enough, so that a disk that fails is no failure of the conversion.
class EarlySpillFails : public DumpSamplesUtils, public testing::WithParamInterface<FailingStep> {};

TEST_P(EarlySpillFails, AndAllSamplesStayInMemory) {
  TakeTheShareOfAll();
  Samples written;
  {
    auto const failing = GetParam().makeFailing();
    Fill(*mDump, kLimit / 2, &written);
    EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  }
  Fill(*mDump, kLimit, &written, written.size());
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

INSTANTIATE_TEST_SUITE_P(Dump, EarlySpillFails,
                         testing::Values(FailingStep{"TempFile", Make<FailingCall>(senmark_test::kMkostemp, EACCES), 0},
                                         FailingStep{"Open", Make<FailingCall>(senmark_test::kOpen, EIO, 1), 0},
                                         FailingStep{"FullDisk", Make<FailingCall>(senmark_test::kWrite, ENOSPC), 0},
                                         FailingStep{"WriteOfAPart", Make<FileSizeLimit>(50000), 0}),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(DumpSamplesUtils, EarlySpillThatLeavesHalfARecordIsAFailure) {
  TakeTheShareOfAll();
  {
    FileSizeLimit const limit(50000);
    FailingCall const noCut(senmark_test::kFtruncate, EIO);
    EXPECT_EQ(CodeOf([this] { Fill(*mDump, kLimit / 2); }), 1055);
  }
  // The half record goes with the file, so that the next failure is none.
  mDump->ClearDump();
  Samples written;
  FailingCall const noFile(senmark_test::kMkostemp, EACCES);
  Fill(*mDump, kLimit / 2, &written);
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

// What was handed to the file may be lost, although the write went well.
TEST_F(DumpSamplesUtils, EarlySpillWhoseFileCannotBeClosedIsAFailure) {
  TakeTheShareOfAll();
  FailingCall const noClose(senmark_test::kClose, EIO, 2);  // the file is closed twice while it is made
  EXPECT_EQ(CodeOf([this] { Fill(*mDump, kLimit / 2); }), 1008);
}

TEST_F(DumpSamplesUtils, EarlySpillsLeaveTheDescriptorsToOthers) {
  constexpr std::size_t kDumps = 80;
  DescriptorLimit const limit(40);
  for (std::size_t i = 0; i < kDumps; ++i) {
    Fill(AnotherDump(), 200 * kRecord);
  }
  EXPECT_GT(TempFiles(), 40u);
  EXPECT_EQ(CountOpenDescriptors(), mDescriptors);
  std::string const output = mFolder.Path("output");
  EXPECT_TRUE(File_IO::Create(output.c_str(), true, true));
  File_IO::Close(File_IO::Open(output.c_str(), false, true));
  for (auto const& dump : mOthers) {
    EXPECT_EQ(ReadAll(*dump).size(), 200u);
  }
}

TEST_F(DumpSamplesUtils, FlushesGoOnBehindAnEarlySpill) {
  Samples written;
  TakeTheShareOfAll();
  Fill(*mDump, 200 * kRecord, &written);
  ASSERT_EQ(TempFiles(), 1u);
  std::string const file = TempFile();
  std::size_t const early = SizeOfTempFile();
  EXPECT_GT(early, 0u);
  mOthers.clear();
  Fill(*mDump, 3 * kLimit, &written, written.size());
  ASSERT_EQ(TempFiles(), 1u);
  EXPECT_EQ(TempFile(), file);
  EXPECT_EQ(SizeOfTempFile(), early + 3 * kLimit);
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

TEST_F(DumpSamplesUtils, FileOfAnEarlySpillThatCannotBeOpenedAgainIsNamedAtTheLimit) {
  Samples written;
  TakeTheShareOfAll();
  Fill(*mDump, 200 * kRecord, &written);
  mOthers.clear();
  Fill(*mDump, kLimit - (200 * kRecord - SizeOfTempFile()), &written, written.size());
  {
    FailingCall const noOpen(senmark_test::kOpen, EMFILE);
    EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), 1006);
  }
  Fill(*mDump, kRecord, &written, written.size());
  EXPECT_TRUE(ReadAll(*mDump) == written);
}

TEST_F(DumpSamplesUtils, MissingTempFolderIsNamedAtTheLimit) {
  KeptVariable const temp("TEMP");
  temp.Set(mFolder.TempPath() + "missing/");
  Fill(*mDump, kLimit);
  EXPECT_EQ(CodeOf([this] { Fill(*mDump, kRecord); }), 1015);
}

}  // namespace
}  // namespace SK_PLUGIN
