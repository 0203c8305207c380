// The wrapper against the raw border: for each sharp edge, what the border does and what the wrapper makes
// of it.
#include "senmark/Host.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <mutex>
#include <thread>

#include "NumberSetFile.h"
#include "RawClient.h"
#include "SmallFiles.h"
#include "TempFolder.h"

namespace {

using senmark::Sample;
using senmark::Time;
using senmark_test::NumberSetFile;
using senmark_test::RawClient;
using senmark_test::RawFile;
using senmark_test::TempFolder;
using Values = std::vector<double>;

/// The values of some samples. In the files of these tests they are positions in the set.
template <class Range>
Values ValuesOf(Range const& samples) {
  Values values;
  for (Sample const& sample : samples) {
    values.push_back(std::get<double>(sample.value));
  }
  return values;
}

template <class Work>
senmark::Error ErrorOf(Work&& work) {
  auto const result = senmark::attempt(std::forward<Work>(work));
  return result ? senmark::Error(0, "") : result.error();
}

class Host : public testing::Test {
 protected:
  std::string Write(NumberSetFile const& file) { return mFolder.Write("file.tdjson", file.Text()); }

  TempFolder mFolder;
  senmark::Senmark mManager{senmark::Library::Linked()};
};

// Errors.

TEST_F(Host, RawErrorsComeOnlyThroughTheProc) {
  RawFile const raw(mFolder.Path("none.tdjson"));
  EXPECT_EQ(raw.handler, nullptr);
  EXPECT_EQ(raw.client.errors, std::vector<std::int32_t>{ns_sensor::kFileNotFound});
}

TEST_F(Host, ErrorsAreThrown) {
  std::string const path = mFolder.Path("none.tdjson");
  try {
    mManager.open(path);
    FAIL() << "no error";
  } catch (senmark::Error const& error) {
    EXPECT_EQ(error.code(), ns_sensor::kFileNotFound);
    EXPECT_EQ(error.message(), "File not exist at input path:" + path + ".");
    EXPECT_EQ(error.offset(), -1);
    EXPECT_EQ(error.line(), -1);
  }
}

TEST_F(Host, ErrorsHaveTheirPlace) {
  // The colon is missing at byte 10.
  std::string const path = mFolder.Write("broken.tdjson", R"({"version" 1})");
  senmark::Error const error = ErrorOf([&] { return mManager.open(path); });
  EXPECT_EQ(error.code(), ns_sensor::kJsonSyntax);
  EXPECT_GE(error.offset(), 10);
  EXPECT_LE(error.offset(), 11);
}

TEST_F(Host, AttemptGivesErrorsAsValues) {
  senmark::Result<senmark::File> const none =
      senmark::attempt([&] { return mManager.open(mFolder.Path("none.tdjson")); });
  EXPECT_FALSE(none.ok());
  EXPECT_EQ(none.error().code(), ns_sensor::kFileNotFound);
  EXPECT_THROW(none.value(), senmark::Error);

  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0}));
  senmark::Result<senmark::File> const file = senmark::attempt([&] { return mManager.open(path); });
  ASSERT_TRUE(file.ok());
  EXPECT_EQ(file.value().children().size(), 1u);

  senmark::Result<void> const nothing = senmark::attempt([] {});
  EXPECT_TRUE(nothing);
}

TEST_F(Host, LastErrorIsKeptUntilItIsCleared) {
  ErrorOf([&] { return mManager.open(mFolder.Path("none.tdjson")); });
  EXPECT_EQ(mManager.lastError().code(), ns_sensor::kFileNotFound);
  EXPECT_EQ(mManager.lastError(true).code(), ns_sensor::kFileNotFound);
  EXPECT_EQ(mManager.lastError().code(), 0);
}

TEST_F(Host, ManagerGoesOnAfterAnError) {
  ErrorOf([&] { return mManager.open(mFolder.Path("none.tdjson")); });
  EXPECT_EQ(mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 1}))).samples("s").data().sampleCount, 2u);
}

// The table of client procs.

TEST_F(Host, RawLaterTablesAreIgnored) {
  static int calls = 0;
  static ns_sensor::SK_ClientProcs table{};
  table.error = [](void*, std::int32_t, char const*, std::int64_t, std::int64_t) { ++calls; };
  RawClient client;
  ns_sensor::ISenmark* manager = nullptr;
  void* api = nullptr;
  CreateSenmark_1(&manager, nullptr, nullptr, nullptr, client.Object(), &table, &api);
  ns_sensor::ISensorFileHandler* handler = nullptr;
  manager->openFile(&handler, "/nowhere/none.tdjson", nullptr, client.Object());
  DestroySenmark_1(&manager, client.Object());
  EXPECT_EQ(calls, 0);
  EXPECT_EQ(client.errors.size(), 1u);
}

TEST_F(Host, ManagersShareTheTable) {
  senmark::Senmark const other(senmark::Library::Linked());
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 1}));
  EXPECT_EQ(ValuesOf(other.open(path).samples("s").all()), (Values{0, 1}));
  EXPECT_EQ(ValuesOf(mManager.open(path).samples("s").all()), (Values{0, 1}));
}

// Ranges without samples, and what lies before a range.

TEST_F(Host, RawRangeBeginsBeforeItsStart) {
  RawFile raw(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60})));
  EXPECT_EQ(raw.Range("s", {3, 2}, {7, 4}), (Values{1}));
}

TEST_F(Host, WithinIsStrictlyInside) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60})));
  EXPECT_EQ(ValuesOf(file.samples("s").within({3, 2}, {7, 4})), Values());
  EXPECT_EQ(ValuesOf(file.samples("s").within({1, 2}, {2, 1})), (Values{1, 2}));
  EXPECT_EQ(ValuesOf(file.samples("s").within({1, 1}, {2, 1})), (Values{1, 2}));
  EXPECT_EQ(ValuesOf(file.samples("s").within({1, 1}, {1, 1})), (Values{1}));
  EXPECT_EQ(ValuesOf(file.samples("s").within({-5, 1}, {-1, 1})), Values());
  EXPECT_EQ(ValuesOf(file.samples("s").within({3, 1}, {9, 1})), Values());
}

TEST_F(Host, WithinLooksAtTimesFinerThanFrames) {
  // The border cuts 1.01 s to frame 30 and so begins at 1 s.
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60}));
  EXPECT_EQ(RawFile(path).Range("s", {101, 100}, {2, 1}), (Values{1, 2}));
  EXPECT_EQ(ValuesOf(mManager.open(path).samples("s").within({101, 100}, {2, 1})), (Values{2}));
}

TEST_F(Host, CoveringBeginsBeforeItsStart) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60})));
  EXPECT_EQ(ValuesOf(file.samples("s").covering({3, 2}, {7, 4})), (Values{1}));
  EXPECT_EQ(ValuesOf(file.samples("s").covering({3, 2}, {2, 1})), (Values{1, 2}));
  EXPECT_EQ(ValuesOf(file.samples("s").covering({-5, 1}, {-1, 1})), (Values{0}));
  EXPECT_EQ(ValuesOf(file.samples("s").covering({5, 1}, {9, 1})), (Values{2}));
}

TEST_F(Host, RawSetWithoutSamplesIsAnError) {
  RawFile raw(Write(NumberSetFile::Smpte(30).Add("s", {0}).Add("none", {})));
  EXPECT_EQ(raw.Range("none", {0, 1}, {1, 1}), Values());
  EXPECT_EQ(raw.client.errors, std::vector<std::int32_t>{ns_sensor::kNoSamples});
}

TEST_F(Host, SetWithoutSamplesIsEmpty) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0}).Add("none", {})));
  senmark::Samples const none = file.samples("none");
  EXPECT_FALSE(none.data().extent);
  EXPECT_EQ(ValuesOf(none.all()), Values());
  EXPECT_EQ(ValuesOf(none.within({0, 1}, {1, 1})), Values());
  EXPECT_EQ(ValuesOf(none.covering({0, 1}, {1, 1})), Values());
  EXPECT_EQ(ValuesOf(none.reversed({1, 1}, {0, 1})), Values());
  EXPECT_EQ(ValuesOf(none.adjacent({0, 1})), Values());
}

TEST_F(Host, FileWithoutSampleSectionIsEmpty) {
  std::string const path = Write(NumberSetFile::Smpte(30).AddNode("s", "node", 3));
  RawFile raw(path);
  EXPECT_EQ(raw.Range("s", {0, 1}, {1, 1}), Values());
  EXPECT_EQ(raw.client.errors, std::vector<std::int32_t>{ns_sensor::kNoSamples});

  senmark::File const file = mManager.open(path);
  EXPECT_FALSE(file.extent());
  EXPECT_EQ(file.samples("s").data().sampleCount, 3u);
  EXPECT_FALSE(file.node("[\"node\"]").dynamic->extent);
  EXPECT_EQ(ValuesOf(file.samples("s").all()), Values());
  EXPECT_EQ(ValuesOf(file.samples("s").adjacent({0, 1})), Values());
}

TEST_F(Host, UnknownSetIsAnError) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0})));
  EXPECT_EQ(ErrorOf([&] { return file.samples("t"); }).code(), ns_sensor::kUnknownSampleId);
}

// Neighbours.

TEST_F(Host, RawNeighboursOfAnOnlySampleAreAnError) {
  RawFile raw(Write(NumberSetFile::Smpte(30).Add("s", {15})));
  EXPECT_EQ(raw.Adjacent("s", {0, 1}), Values());
  EXPECT_EQ(raw.client.errors, std::vector<std::int32_t>{ns_sensor::kInternalFailure});
}

TEST_F(Host, NeighboursOfAnOnlySampleAreThatSample) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {15})));
  EXPECT_EQ(ValuesOf(file.samples("s").adjacent({0, 1})), (Values{0}));
  EXPECT_EQ(ValuesOf(file.samples("s").adjacent({-1, 1})), (Values{0}));
  EXPECT_EQ(ValuesOf(file.samples("s").adjacent({5, 1})), (Values{0}));
}

TEST_F(Host, NeighboursOfOneTimeAreTheFirstTwo) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {15, 15, 15, 15}));
  EXPECT_EQ(RawFile(path).Adjacent("s", {0, 1}), Values());
  EXPECT_EQ(ValuesOf(mManager.open(path).samples("s").adjacent({0, 1})), (Values{0, 1}));
}

TEST_F(Host, NeighboursAsTheBorderTellsThem) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60, 90})));
  senmark::Samples const samples = file.samples("s");
  EXPECT_EQ(ValuesOf(samples.adjacent({0, 1})), (Values{0, 1}));
  EXPECT_EQ(ValuesOf(samples.adjacent({1, 1})), (Values{0, 1, 2}));
  EXPECT_EQ(ValuesOf(samples.adjacent({3, 2})), (Values{1, 2}));
  EXPECT_EQ(ValuesOf(samples.adjacent({3, 1})), (Values{2, 3}));
  EXPECT_EQ(ValuesOf(samples.adjacent({4, 1})), (Values{3}));
}

// Order.

TEST_F(Host, RawStartBehindEndTurnsTheOrderRound) {
  RawFile raw(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60})));
  EXPECT_EQ(raw.Range("s", {2, 1}, {0, 1}), (Values{2, 1, 0}));
}

TEST_F(Host, OnlyReversedTurnsTheOrderRound) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60})));
  EXPECT_EQ(ValuesOf(file.samples("s").within({2, 1}, {0, 1})), Values());
  EXPECT_EQ(ValuesOf(file.samples("s").covering({2, 1}, {0, 1})), Values());
  EXPECT_EQ(ValuesOf(file.samples("s").reversed({2, 1}, {1, 2})), (Values{2, 1}));
  EXPECT_EQ(ValuesOf(file.samples("s").reversed({0, 1}, {2, 1})), Values());
  EXPECT_EQ(ValuesOf(file.samples("s").reversed({-1, 1}, {-2, 1})), Values());
  EXPECT_EQ(ValuesOf(file.samples("s").reversed({9, 1}, {3, 1})), Values());
}

// Equal times.

TEST_F(Host, RawRangeEndsWithTheFirstOfEqualTimes) {
  RawFile raw(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 30, 30, 60})));
  EXPECT_EQ(raw.Range("s", {0, 1}, {1, 1}), (Values{0, 1}));
}

TEST_F(Host, WithinHasAllOfEqualTimes) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 30, 30, 60, 60})));
  EXPECT_EQ(ValuesOf(file.samples("s").within({0, 1}, {1, 1})), (Values{0, 1, 2, 3}));
  EXPECT_EQ(ValuesOf(file.samples("s").within({1, 1}, {1, 1})), (Values{1, 2, 3}));
  EXPECT_EQ(ValuesOf(file.samples("s").within({2, 1}, {2, 1})), (Values{4, 5}));
  EXPECT_EQ(ValuesOf(file.samples("s").reversed({1, 1}, {0, 1})), (Values{3, 2, 1, 0}));
  EXPECT_EQ(ValuesOf(file.samples("s").all()), (Values{0, 1, 2, 3, 4, 5}));
}

// Times that the border takes for others.

TEST_F(Host, RawTimeBehind24HoursBeginsAnew) {
  RawFile raw(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60, 90})));
  EXPECT_EQ(raw.Range("s", {1, 1}, {86401, 1}), (Values{1}));
}

TEST_F(Host, TimeBehind24HoursIsBehindAllSamples) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, 60, 90})));
  EXPECT_EQ(ValuesOf(file.samples("s").within({1, 1}, {86401, 1})), (Values{1, 2, 3}));
  EXPECT_EQ(ValuesOf(file.samples("s").covering({1, 1}, {86401, 1})), (Values{1, 2, 3}));
  EXPECT_EQ(ValuesOf(file.samples("s").reversed({2147483647, 1}, {2, 1})), (Values{3, 2}));
  EXPECT_EQ(ValuesOf(file.samples("s").adjacent({86401, 1})), (Values{3}));
}

TEST_F(Host, SetsUpToTheLastFrameOfTheDayAreComplete) {
  std::int64_t const last = std::int64_t{30} * 86400 - 1;
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, 30, last - 1, last})));
  EXPECT_EQ(ValuesOf(file.samples("s").all()), (Values{0, 1, 2, 3}));
  EXPECT_EQ(ValuesOf(file.samples("s", 1).all()), (Values{0, 1, 2, 3}));
}

/// Behind the last frame of the day there is no time to ask for, so only the first of its samples can be
/// found. That must not pass for all of them.
TEST_F(Host, SamplesThatCannotBeReachedAreNotKeptSilent) {
  std::int64_t const last = std::int64_t{30} * 86400 - 1;
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0, last, last})));
  Values values;
  senmark::Error const error = ErrorOf([&] {
    for (Sample const& sample : file.samples("s").all()) {
      values.push_back(std::get<double>(sample.value));
    }
  });
  EXPECT_EQ(error.code(), ns_sensor::kInternalFailure);
  EXPECT_EQ(values, (Values{0, 1}));
}

// Sets in pieces. The positions of the samples show that none is lost or told twice.

TEST_F(Host, AllWindowsGiveTheSameSamples) {
  std::vector<std::int64_t> ticks;
  for (std::int64_t i = 0; i != 3000; ++i) {
    ticks.push_back(i < 1000 ? i : i < 2200 ? 1000 : 1000 + (i - 2200) * (i - 2200));
  }
  Values expected;
  for (std::size_t i = 0; i != ticks.size(); ++i) {
    expected.push_back(static_cast<double>(i));
  }
  Values backward(expected.rbegin(), expected.rend());
  NumberSetFile const files[] = {
      NumberSetFile::Smpte(30).Add("s", ticks),  NumberSetFile::Smpte(30000, 1001).Add("s", ticks),
      NumberSetFile::Smpte(119).Add("s", ticks), NumberSetFile::Utc(1).Add("s", ticks),
      NumberSetFile::Utc(3).Add("s", ticks),     NumberSetFile::Utc(6).Add("s", ticks),
      NumberSetFile::Utc(9).Add("s", ticks)};
  for (NumberSetFile const& text : files) {
    senmark::File const file = mManager.open(Write(text));
    for (std::uint64_t const window : {1, 5, 100, 4096}) {
      senmark::Samples const samples = file.samples("s", window);
      EXPECT_EQ(ValuesOf(samples.all()), expected) << text.TextOf(1) << ", window " << window;
      Time const end = samples.data().extent->end;
      EXPECT_EQ(ValuesOf(samples.within({0, 1}, end)), expected) << text.TextOf(1) << ", window " << window;
      EXPECT_EQ(ValuesOf(samples.reversed(end, {0, 1})), backward) << text.TextOf(1) << ", window " << window;
    }
  }
}

/// Behind some hours of time code, and behind some weeks of UTC with fractions, the times of samples are
/// no longer exact.
TEST_F(Host, InexactTimesLoseNoSample) {
  std::vector<std::int64_t> frames, milliseconds;
  for (std::int64_t i = 0; i != 4000; ++i) {
    frames.push_back(30 * 3600 * 22 + i);
    milliseconds.push_back(std::int64_t{1000} * 86400 * 300 + i * 7);
  }
  frames.insert(frames.begin(), 0);
  milliseconds.insert(milliseconds.begin(), 0);
  for (NumberSetFile const& text :
       {NumberSetFile::Smpte(30000, 1001).Add("s", frames), NumberSetFile::Utc(3).Add("s", milliseconds)}) {
    senmark::Samples const samples = mManager.open(Write(text)).samples("s", 50);
    Values const values = ValuesOf(samples.all());
    ASSERT_EQ(values.size(), 4001u);
    for (std::size_t i = 0; i != values.size(); ++i) {
      ASSERT_EQ(values[i], static_cast<double>(i));
    }
  }
}

// Paths.

/// Runs something with the folder of the test's files as the current one.
template <class Work>
void InFolder(TempFolder const& folder, Work&& work) {
  std::filesystem::path const before = std::filesystem::current_path();
  std::filesystem::current_path(folder.Path(""));
  work();
  std::filesystem::current_path(before);
}

/// A file of version 1 is known by its extension alone.
TEST_F(Host, RawNameWithoutFolderHasNoExtension) {
  mFolder.Write("file.tdjson", senmark_test::kSmallVersion1);
  InFolder(mFolder, [] {
    RawFile raw("file.tdjson");
    ns_sensor::SK_FileInfo info;
    raw.handler->getFileInfo(&info, raw.client.Object(), raw.client.Object());
    EXPECT_EQ(info.creator, "com.velmo.sensor.csv") << "it was taken for a table";
  });
}

TEST_F(Host, NameWithoutFolderHasAnExtension) {
  mFolder.Write("file.tdjson", senmark_test::kSmallVersion1);
  InFolder(mFolder, [&] { EXPECT_EQ(mManager.open("file.tdjson").samples("lv").data().sampleCount, 3u); });
}

TEST_F(Host, PathsAreMadeAbsolute) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 1}));
  InFolder(mFolder, [&] {
    EXPECT_EQ(ValuesOf(mManager.open("file.tdjson", "copy.tdjson").samples("s").all()), (Values{0, 1}));
    senmark::Stream const stream = mManager.stream("file.tdjson");
    stream.save("saved.tdjson");
    EXPECT_EQ(stream.path(), path);
  });
  EXPECT_EQ(mFolder.Read(mFolder.Path("copy.tdjson")), mFolder.Read(path));
  EXPECT_EQ(mFolder.Read(mFolder.Path("saved.tdjson")), mFolder.Read(path));
}

TEST_F(Host, EmptyPathIsRefusedByTheLibrary) {
  EXPECT_EQ(ErrorOf([&] { return mManager.open(""); }).code(), ns_sensor::kPathIsNull);
}

/// A failure of the copy leaves the handler open. The folder of temporary files shows whether it was closed.
TEST_F(Host, RawFailedCopyLeavesTheFileOpen) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0}));
  std::filesystem::create_directory(mFolder.Path("folder"));
  RawFile const raw(path, mFolder.Path("folder").c_str());
  EXPECT_EQ(raw.client.errors.size(), 1u);
  EXPECT_NE(raw.handler, nullptr);
  EXPECT_NE(mFolder.TempNames(), "");
}

TEST_F(Host, FailedCopyClosesTheFile) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0}));
  std::filesystem::create_directory(mFolder.Path("folder"));
  EXPECT_NE(ErrorOf([&] { return mManager.open(path, mFolder.Path("folder")); }).code(), 0);
  EXPECT_EQ(mFolder.TempNames(), "");
}

// Extents.

TEST_F(Host, DurationMayEndBeforeTheLastSet) {
  // The second set begins before the end of the first one, so its own end is not looked at.
  std::string const path = Write(NumberSetFile::Smpte(30).Add("a", {0, 300}).Add("b", {150, 600}));
  senmark::File const file = mManager.open(path);
  EXPECT_EQ(file.info().duration, (Time{10, 1}));
  ASSERT_TRUE(file.extent());
  EXPECT_EQ(file.extent()->start, (Time{0, 1}));
  EXPECT_EQ(file.extent()->end, (Time{20, 1}));
}

TEST_F(Host, ExtentOfASetEndsAtItsLastSample) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).Add("a", {0, 300}).Add("b", {150, 600})));
  std::optional<senmark::Extent> const extent = file.samples("b").data().extent;
  ASSERT_TRUE(extent);
  EXPECT_EQ(extent->start, (Time{5, 1}));
  EXPECT_EQ(extent->end, (Time{20, 1}));
  EXPECT_EQ(extent->duration(), 15);
}

// Streams.

TEST_F(Host, RawResetKeepsWhatRemains) {
  RawFile raw(Write(NumberSetFile::Smpte(30).Add("s", {0})));
  ns_sensor::ITdjsonStream* stream = nullptr;
  raw.Manager().createTdjsonStream(&stream, mFolder.Path("file.tdjson").c_str(), 0, raw.client.Object());
  ASSERT_NE(stream, nullptr);
  std::vector<char> bytes(stream->GetStreamSize());
  stream->readStream(bytes.data(), static_cast<unsigned>(bytes.size()), raw.client.Object());
  stream->resetStream(raw.client.Object());
  EXPECT_EQ(stream->readStream(bytes.data(), static_cast<unsigned>(bytes.size()), raw.client.Object()), 0u);
  raw.Manager().destroyTdjsonStream(&stream, raw.client.Object());
}

TEST_F(Host, RewindGivesAllBytesAgain) {
  std::string const text = NumberSetFile::Smpte(30).Add("s", {0}).Text();
  senmark::Stream stream = mManager.stream(mFolder.Write("file.tdjson", text));
  for (int pass = 0; pass != 2; ++pass) {
    std::string bytes(stream.size(), '\0');
    EXPECT_EQ(stream.read(bytes.data(), 10), 10u);
    EXPECT_EQ(stream.remaining(), text.size() - 10);
    EXPECT_EQ(stream.read(bytes.data() + 10, static_cast<unsigned>(bytes.size() - 10)), text.size() - 10);
    EXPECT_EQ(bytes, text);
    EXPECT_EQ(stream.read(bytes.data(), 10), 0u);
    stream.rewind();
  }
}

TEST_F(Host, StreamMoves) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0}));
  senmark::Stream first = mManager.stream(path);
  senmark::Stream second = std::move(first);
  EXPECT_EQ(second.path(), path);
  second = mManager.stream(path, true);
  EXPECT_GT(second.size(), 0u);
}

TEST_F(Host, StreamOfABrokenFile) {
  std::string const path = mFolder.Write("broken.tdjson", R"({"version":"tdjson2.0.0"})");
  EXPECT_NE(ErrorOf([&] { return mManager.stream(path, true).size(); }).code(), 0);
}

// Nodes.

constexpr char kStatics[] =
    R"({"objectType":"dataGroup","displayName":"G","matchName":"g","children":[)"
    R"({"objectType":"dataStatic","displayName":"N","matchName":"n","dataType":{"type":"number",)"
    R"("numberStringProperties":{"pattern":{"isSigned":true,"digitsInteger":2,"digitsDecimal":1},)"
    R"("range":{"occurring":{"min":-1,"max":2},"legal":{"min":1,"max":-1}}}},"value":-1.5},)"
    R"({"objectType":"dataStatic","displayName":"B","matchName":"b","dataType":{"type":"boolean"},"value":true},)"
    R"({"objectType":"dataStatic","displayName":"A","matchName":"a","dataType":{"type":"numberArray",)"
    R"("numberArrayProperties":{"pattern":{"isSigned":false,"digitsInteger":1,"digitsDecimal":0},"arraySize":2,)"
    R"("arrayDisplayNames":["X","Y"],"isPoint":true,"arrayRanges":{"ranges":[{"occurring":{"min":0,"max":1},)"
    R"("legal":{"min":0,"max":9}}]}}},"value":[1,2]},)"
    R"({"objectType":"dataStatic","displayName":"S","matchName":"","dataType":{"type":"string",)"
    R"("paddedStringProperties":{"maxLen":4,"maxDigitsInStrLength":1,"eventMarkerB":true}},"value":"text"}]})";

TEST_F(Host, NodesHaveTheirProperties) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).AddNode(kStatics).Add("s", {0, 15})));
  senmark::Node const number = file.node("[\"g\"][0]");
  EXPECT_EQ(number.kind, senmark::eNodeKind::kStatic);
  EXPECT_EQ(number.displayName, "N");
  EXPECT_EQ(number.matchName, "n");
  ASSERT_TRUE(number.fixed);
  EXPECT_EQ(number.fixed->value, senmark::Value(-1.5));
  auto const& properties = std::get<senmark::NumberProperties>(number.fixed->properties);
  EXPECT_EQ(properties.pattern.digitsInteger, 2u);
  EXPECT_EQ(properties.pattern.digitsDecimal, 1u);
  EXPECT_TRUE(properties.pattern.isSigned);
  ASSERT_TRUE(properties.range.occurring);
  EXPECT_EQ(properties.range.occurring->min, -1);
  EXPECT_EQ(properties.range.occurring->max, 2);
  EXPECT_FALSE(properties.range.legal) << "inverted limits are none";

  EXPECT_EQ(file.node("[\"g\"][\"b\"]").fixed->value, senmark::Value(true));
  senmark::Node const array = file.node("[\"g\"][\"a\"]");
  EXPECT_EQ(array.fixed->value, senmark::Value(std::vector<double>{1, 2}));
  auto const& arrayProperties = std::get<senmark::NumberArrayProperties>(array.fixed->properties);
  EXPECT_EQ(arrayProperties.arraySize, 2u);
  EXPECT_TRUE(arrayProperties.isPoint);
  EXPECT_EQ(arrayProperties.displayNames, (std::vector<std::string>{"X", "Y"}));
  ASSERT_EQ(arrayProperties.ranges.size(), 1u);
  EXPECT_EQ(arrayProperties.ranges[0].legal->max, 9);

  senmark::Node const dynamic = file.node("[1]");
  ASSERT_TRUE(dynamic.dynamic);
  EXPECT_EQ(dynamic.dynamic->sampleSetId, "s");
  EXPECT_EQ(dynamic.dynamic->sampleCount, 2u);
  EXPECT_EQ(dynamic.dynamic->interpolation, senmark::eInterpolation::kLinear);
  EXPECT_EQ(dynamic.dynamic->extent->end, (Time{1, 2}));
}

TEST_F(Host, RawEmptyNameFindsNothing) {
  RawFile raw(Write(NumberSetFile::Smpte(30).AddNode(kStatics).Add("s", {0})));
  std::string const path = "[\"g\"][\"\"]";
  raw.handler->getGroupChildInfo(path.data(), path.size(), raw.client.Object(), raw.client.Object());
  EXPECT_EQ(raw.client.errors, std::vector<std::int32_t>{ns_sensor::kPathMismatch});
}

TEST_F(Host, WalkReachesEveryNode) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).AddNode(kStatics).Add("s", {0})));
  std::string walked;
  file.walk([&](senmark::Node const& node, int depth) {
    walked += std::to_string(depth) + node.displayName + ' ' + node.path + '\n';
  });
  EXPECT_EQ(walked,
            "0G [\"g\"]\n1N [\"g\"][\"n\"]\n1B [\"g\"][\"b\"]\n1A [\"g\"][\"a\"]\n1S [\"g\"][3]\n0Node [\"node0\"]\n");
  EXPECT_EQ(file.node("[\"g\"][3]").fixed->value, senmark::Value(std::string("text")));
}

TEST_F(Host, PathsThatLeadNowhereAreErrors) {
  senmark::File const file = mManager.open(Write(NumberSetFile::Smpte(30).AddNode(kStatics).Add("s", {0})));
  EXPECT_EQ(ErrorOf([&] { return file.node(""); }).code(), ns_sensor::kInvalidArgument);
  EXPECT_EQ(ErrorOf([&] { return file.node("[\"x\"]"); }).code(), ns_sensor::kPathMismatch);
  EXPECT_EQ(ErrorOf([&] { return file.node("[\"g\""); }).code(), ns_sensor::kPathBracketMissing);
  EXPECT_EQ(ErrorOf([&] { return file.children("[\"g\"][\"n\"]"); }).code(), ns_sensor::kPathMismatch);
}

// Videos. The list that the border wants needs Boost; here there is none.

TEST_F(Host, VideoSyncTimesComeWithoutBoost) {
  std::string text = NumberSetFile::Smpte(30).Add("s", {0}).Text();
  std::string const longName(200, 'v');
  text.replace(text.find("\"dropFrame\":false}"), 18,
               "\"dropFrame\":false},\"videoSyncTimeList\":[{\"fileName\":\"" + longName +
                   "\",\"timeString\":\"00:00:01:00 and much more than fits the string itself\"},"
                   "{\"fileName\":\"b.mov\",\"frameNumber\":12}]");
  senmark::File const file = mManager.open(mFolder.Write("video.tdjson", text));
  for (int pass = 0; pass != 2; ++pass) {
    std::vector<senmark::VideoSyncTime> const times = file.videoSyncTimes();
    ASSERT_EQ(times.size(), 2u);
    EXPECT_EQ(times[0].fileName, longName);
    EXPECT_EQ(std::get<std::string>(times[0].at), "00:00:01:00 and much more than fits the string itself");
    EXPECT_EQ(times[1].fileName, "b.mov");
    EXPECT_EQ(std::get<std::int32_t>(times[1].at), 12);
  }
}

TEST_F(Host, NoVideoIsAnEmptyList) {
  EXPECT_TRUE(mManager.open(Write(NumberSetFile::Smpte(30).Add("s", {0}))).videoSyncTimes().empty());
}

// Lifetimes.

TEST_F(Host, EverythingKeepsWhatItCameFromAlive) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0, 1, 2}));
  auto const range = [&] {
    senmark::Senmark const manager(senmark::Library::Linked());
    return manager.open(path).samples("s").all();
  }();
  mManager = senmark::Senmark(senmark::Library::Linked());
  EXPECT_EQ(ValuesOf(range), (Values{0, 1, 2}));
  EXPECT_EQ(ValuesOf(range), (Values{0, 1, 2})) << "each begin() is a pass of its own";
}

TEST_F(Host, FileIsClosedWithItsLastUser) {
  std::string const path = Write(NumberSetFile::Smpte(30).Add("s", {0}));
  {
    senmark::File const first = mManager.open(path);
    senmark::File const second = mManager.open(path);
    senmark::File const copy = second;
    EXPECT_NE(mFolder.TempNames(), "");
  }
  EXPECT_EQ(mFolder.TempNames(), "");
}

TEST_F(Host, FormatsAndMessages) {
  std::vector<senmark::Format> const formats = mManager.formats();
  ASSERT_FALSE(formats.empty());
  bool const hasOwn = std::any_of(formats.begin(), formats.end(),
                                  [](senmark::Format const& format) { return format.extension == "tdjson"; });
  EXPECT_TRUE(hasOwn);
  EXPECT_EQ(mManager.message("$$$/Key=^2 and ^1", {"one", "two"}), "two and one");
  EXPECT_EQ(mManager.message("$$$/Key=^1."), ".");
}

// Time.

struct SecondsRow {
  double seconds;
  std::int32_t value;
  std::uint32_t scale;
};

TEST(HostTime, FromSecondsHasTheSmallestScale) {
  for (SecondsRow const& row :
       {SecondsRow{0, 0, 1}, SecondsRow{1.5, 3, 2}, SecondsRow{0.1, 1, 10}, SecondsRow{-0.25, -1, 4},
        SecondsRow{1001.0 / 30000, 1001, 30000}, SecondsRow{2147483647.0, 2147483647, 1},
        SecondsRow{-2147483647.0, -2147483647, 1}, SecondsRow{3600.004, 900001, 250}}) {
    Time const time = Time::FromSeconds(row.seconds);
    EXPECT_EQ(time.value, row.value) << row.seconds;
    EXPECT_EQ(time.scale, row.scale) << row.seconds;
  }
}

TEST(HostTime, FromSecondsRefusesWhatDoesNotFit) {
  for (double const seconds : {2147483648.0, -2147483648.0, 1e300, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()}) {
    EXPECT_EQ(ErrorOf([&] { return Time::FromSeconds(seconds); }).code(), ns_sensor::kInvalidArgument) << seconds;
  }
}

TEST(HostTime, FractionsAreCompared) {
  EXPECT_EQ((Time{1, 2}), (Time{2, 4}));
  EXPECT_LT((Time{-1, 2}), (Time{1, 4294967295u}));
  EXPECT_GT((Time{2147483647, 1}), (Time{2147483647, 2}));
  EXPECT_LT((Time{-2147483647 - 1, 1}), (Time{-2147483647 - 1, 4294967295u}));
  EXPECT_TRUE(std::isnan(Time({1, 0}).seconds()));
}

// The lock. A manager that tells whether two of its operations ran side by side.

class WatchingManager : public ns_sensor::ISenmark {
 public:
  void OpenFile(ns_sensor::ISensorFileHandler**, char const*, char const*) override {}
  void CloseFile(ns_sensor::ISensorFileHandler**) override {}
  void CreateTdjsonStream(ns_sensor::ITdjsonStream**, char const*, bool) override {}
  void DestroyTdjsonStream(ns_sensor::ITdjsonStream**) override {}
  void openFile(ns_sensor::ISensorFileHandler**, char const*, char const*, void*) override { Stay(); }
  void closeFile(ns_sensor::ISensorFileHandler**, void*) override { Stay(); }
  void createTdjsonStream(ns_sensor::ITdjsonStream**, char const*, unsigned char, void*) override { Stay(); }
  void destroyTdjsonStream(ns_sensor::ITdjsonStream**, void*) override { Stay(); }

  /// patience: how long an operation stays for another to come.
  explicit WatchingManager(std::chrono::milliseconds patience) : mPatience(patience) {}

  bool metAnother() const { return mMet; }

 private:
  void Stay() {
    std::unique_lock<std::mutex> lock(mMutex);
    if (++mInside == 2) {
      mMet = true;
      mHaveMet.notify_all();
    }
    mHaveMet.wait_for(lock, mPatience, [this] { return mMet; });
    --mInside;
  }

  std::chrono::milliseconds mPatience;
  std::mutex mMutex;
  std::condition_variable mHaveMet;
  int mInside = 0;
  bool mMet = false;
};

WatchingManager* gWatchingManager = nullptr;

template <class First, class Second>
bool Meet(std::chrono::milliseconds patience, First&& first, Second&& second) {
  WatchingManager manager(patience);
  gWatchingManager = &manager;
  std::atomic<int> ready{0};
  auto const repeat = [&ready](auto& operation) {
    for (++ready; ready != 2;) {
      std::this_thread::yield();
    }
    for (int i = 0; i != 20; ++i) {
      operation();
    }
  };
  std::thread one([&] { repeat(first); });
  std::thread two([&] { repeat(second); });
  one.join();
  two.join();
  return manager.metAnother();
}

TEST_F(Host, RawOpenAndStreamRunSideBySide) {
  EXPECT_TRUE(Meet(
      std::chrono::minutes(4), [] { gWatchingManager->openFile(nullptr, nullptr, nullptr, nullptr); },
      [] { gWatchingManager->createTdjsonStream(nullptr, nullptr, 0, nullptr); }));
}

TEST_F(Host, OpenAndStreamDoNotRunSideBySide) {
  senmark::Library::Functions functions = senmark::Library::Linked().functions();
  functions.create = [](ns_sensor::ISenmark** manager, char const*, char const*, char const*, void*, void*, void**) {
    *manager = gWatchingManager;
  };
  functions.destroy = [](ns_sensor::ISenmark**, void*) {};
  senmark::Library const library(functions);
  EXPECT_FALSE(Meet(
      std::chrono::milliseconds(2), [&] { senmark::Senmark(library).open("/a"); },
      [&] { senmark::Senmark(library).stream("/a"); }));
}

/// A table that the wrapper does not know, in a process that has given it to the library first.
TEST_F(Host, ForeignTableIsFoundOut) {
  senmark::Library::Functions functions = senmark::Library::Linked().functions();
  functions.localizedErrorMsg = [](char const*, char const*, char const*, char const*, char const*, void*) {};
  EXPECT_EQ(ErrorOf([&] { return senmark::Senmark(senmark::Library(functions)); }).code(), ns_sensor::kInternalFailure);
}

}  // namespace
