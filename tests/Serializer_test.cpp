#include "Serializer.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "DynamicNodes.h"
#include "FailingCalls.h"
#include "SK_DumpSamplesUtils.h"
#include "SK_FormatVersion.h"
#include "SK_PackedNumber.h"
#include "SensorFileHandlerImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"
#include "WaitingTime.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberArrayProperties;
using ns_sensor::SK_NumberProperties;
using ns_sensor::SK_StringProperties;
using senmark_test::Add;
using senmark_test::ExpectWriterError;

char const kVersion[] = R"({"version":"tdjson2.0.0")";
char const kTimeCodeHead[] =
    R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
    R"("timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false}})";
char const kFlagOutline[] =
    R"("dataOutline":[{"objectType":"dataStatic","matchName":"f","displayName":"F","dataType":{"type":"boolean"},)"
    R"("value":true}])";

struct Record {
  std::string time;
  std::string value;
};

class SerializerTest : public testing::Test {
 protected:
  std::string File() const { return mFolder.Read(mPath); }

  void UseTimeCode() { mRoot->setSMPTETimeInfo(0, 30, 1, nullptr); }

  void AddFlag() { mRoot->AddStaticData(std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "f", true)); }

  /// A set of numbers with two digits before the point, of all records that are given.
  void WriteNumbers(std::string const& id, std::vector<Record> const& records) {
    WriteNumbers(id, records, records.size());
  }
  void WriteNumbers(std::string const& id, std::vector<Record> const& records, std::uint64_t sampleCount,
                    std::uint64_t digits = 2) {
    SK_DumpSamplesUtils dump;
    Fill(dump, records);
    SK_NumberProperties properties;
    properties.pattern.digitsInteger = digits;
    properties.pattern.digitsDecimal = 0;
    mSerializer.serialize_NumDynamicSamples(id, dump, sampleCount, properties);
  }

  static void Fill(SK_DumpSamplesUtils& dump, std::vector<Record> const& records) {
    if (!records.empty()) {
      dump.SetTimeLength(static_cast<unsigned short>(records.front().time.size()));
    }
    for (Record const& record : records) {
      dump.WriteSample({record.time}, record.value);
    }
  }

  senmark_test::TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
  std::shared_ptr<TdjsonRootImpl> const mRoot = std::make_shared<TdjsonRootImpl>(nullptr, mPath.c_str());
  Serializer mSerializer{mRoot};
};

// The head.

TEST_F(SerializerTest, HeadWithoutTimeBasePromisesNoSamples) {
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false)");
}

TEST_F(SerializerTest, HeadWithTimeCode) {
  mRoot->setSMPTETimeInfo(1, 30000, 1001, nullptr);
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) +
                        R"(,"dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,"timecodeInfo":)"
                        R"({"frameRate":{"value":30000,"scale":1001},"dropFrame":true}})");
}

TEST_F(SerializerTest, RateIsPrintedAsItIsKept) {
  mRoot->setSMPTETimeInfo(0, 4294967295u, 4294967295u, nullptr);  // the numerator is signed
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) +
                        R"(,"dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,"timecodeInfo":)"
                        R"({"frameRate":{"value":-1,"scale":4294967295},"dropFrame":false}})");
}

TEST_F(SerializerTest, HeadWithCalendarTimes) {
  mRoot->setUTCTimeInfo(3, 1, nullptr);
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) +
                        R"(,"dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,"utcInfo":)"
                        R"({"precisionLength":3,"isGMT":true}})");
  mRoot->setUTCTimeInfo(0, 0, nullptr);
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) +
                        R"(,"dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,"utcInfo":)"
                        R"({"precisionLength":0,"isGMT":false}})");
}

TEST_F(SerializerTest, HeadListsSyncTimesInTheirOrder) {
  UseTimeCode();
  mRoot->addSyncTimeStr("a.mov", "00:00:01:00", 11, nullptr);
  mRoot->addSyncTimeFrameNum("b.mov", -12, nullptr);
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
                                            R"("timecodeInfo":{"frameRate":{"value":30,"scale":1},"dropFrame":false},)"
                                            R"("videoSyncTimeList":[{"fileName":"a.mov","timeString":"00:00:01:00"},)"
                                            R"({"fileName":"b.mov","frameNumber":-12}]})");
}

TEST_F(SerializerTest, SyncTimesAreNotEscaped) {
  mRoot->setUTCTimeInfo(0, 1, nullptr);
  mRoot->addSyncTimeStr("a\"b\\.mov", "\"", 1, nullptr);
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) +
                        R"(,"dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,"utcInfo":)"
                        R"({"precisionLength":0,"isGMT":true},)"
                        R"("videoSyncTimeList":[{"fileName":"a"b\.mov","timeString":"""}]})");
}

TEST_F(SerializerTest, SyncTimesWithoutTimeBaseStayOut) {
  mRoot->addSyncTimeFrameNum("b.mov", 1, nullptr);
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false)");
}

TEST_F(SerializerTest, HeadEmptiesAFileThatIsThere) {
  mFolder.Write("out.tdjson", std::string(1000, 'x'));
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false)");
}

// The tail.

TEST_F(SerializerTest, TailClosesAFileWithoutSamples) {
  AddFlag();
  mSerializer.serializeVersionToFile();
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false,)" + kFlagOutline + "}");
}

TEST_F(SerializerTest, TailBringsItsHeadAlong) {
  AddFlag();
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false,)" + kFlagOutline + "}");
}

TEST_F(SerializerTest, CreatorStandsBeforeTheOutline) {
  AddFlag();
  mRoot->SetCreator("me \"and\"\nyou");
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false,"creator":"me \"and\"\nyou",)" +
                        kFlagOutline + "}");
}

TEST_F(SerializerTest, PromiseOfSamplesIsTakenBackWithTheTimeBase) {
  UseTimeCode();
  mRoot->addSyncTimeFrameNum("b.mov", 1, nullptr);
  mRoot->SetCreator("me");
  AddFlag();
  mSerializer.serializeVersionToFile();
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false,"creator":"me",)" + kFlagOutline + "}");
}

TEST_F(SerializerTest, PromiseIsTakenBackOnce) {
  UseTimeCode();
  AddFlag();
  mSerializer.serializeRootToFile();
  std::string const tail = std::string(R"(,"dynamicSamplesPresentB":false,)") + kFlagOutline + "}";
  EXPECT_EQ(File(), kVersion + tail);
  // The root does not do that.
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), kVersion + tail + tail);
}

TEST_F(SerializerTest, KeysComeInOneOrder) {
  UseTimeCode();
  mRoot->SetCreator("me");
  AddFlag();
  WriteNumbers("a", {{"T1", "7"}});
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kTimeCodeHead) +
                        R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[{"time":"T1","value":"07"}]}],)"
                        R"("creator":"me",)" +
                        kFlagOutline + "}");
}

// Sample sets.

TEST_F(SerializerTest, FirstSetOpensTheArrayAndNoneClosesIt) {
  UseTimeCode();
  mSerializer.serializeVersionToFile();
  WriteNumbers("a", {{"T1", "7"}, {"T2", "12"}});
  std::string const first =
      R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[{"time":"T1","value":"07"},{"time":"T2","value":"12"}]})";
  EXPECT_EQ(File(), kTimeCodeHead + first);
  WriteNumbers("b", {{"T3", "5"}});
  EXPECT_EQ(File(), kTimeCodeHead + first + R"(,{"sampleSetID":"b","samples":[{"time":"T3","value":"05"}]})");
}

TEST_F(SerializerTest, FirstSetBringsTheHeadAlong) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "7"}});
  EXPECT_EQ(File(), std::string(kTimeCodeHead) +
                        R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[{"time":"T1","value":"07"}]})");
}

TEST_F(SerializerTest, EveryKindOfSetHasItsForm) {
  UseTimeCode();
  SK_NumberProperties number;
  number.pattern = {2, 1, true};
  SK_NumberArrayProperties array;
  array.pattern = {1, 1, false};
  SK_StringProperties text;
  text.maxLen = 4;
  text.maxDigitsInStrLength = 2;
  SK_DumpSamplesUtils numbers;
  Fill(numbers, {{"T1", "-1.5"}});
  SK_DumpSamplesUtils arrays;
  Fill(arrays, {{"T2", "1,2.5"}, {"T3", "0.5,4"}});
  SK_DumpSamplesUtils texts;
  Fill(texts, {{"T4", "ab"}, {"T5", "a\\\""}});
  mSerializer.serialize_NumDynamicSamples("n", numbers, 1, number);
  mSerializer.serialize_NumArrDynamicSamples("a", arrays, 2, array);
  mSerializer.serialize_PaddedStrDynamicSamples("t", texts, 2, text);
  EXPECT_EQ(File(), std::string(kTimeCodeHead) +
                        R"(,"dataDynamicSamples":[{"sampleSetID":"n","samples":[{"time":"T1","value":"-01.5"}]},)"
                        R"({"sampleSetID":"a","samples":[{"time":"T2","value":["1.0","2.5"]},)"
                        R"({"time":"T3","value":["0.5","4.0"]}]},)"
                        R"({"sampleSetID":"t","samples":[{"time":"T4","value":{"length":"02","str":"ab  "}},)"
                        R"({"time":"T5","value":{"length":"03","str":"a\" "}}]})");
}

TEST_F(SerializerTest, SetWithoutSamplesLeavesNoTrace) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "7"}}, 0);
  EXPECT_FALSE(std::filesystem::exists(mPath));
  WriteNumbers("b", {{"T1", "7"}});
  EXPECT_EQ(File(), std::string(kTimeCodeHead) +
                        R"(,"dataDynamicSamples":[{"sampleSetID":"b","samples":[{"time":"T1","value":"07"}]})");
}

TEST_F(SerializerTest, SetEndsWhereItsRecordsEnd) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "1"}, {"T2", "2"}, {"T3", "3"}}, 5);
  EXPECT_EQ(File(), std::string(kTimeCodeHead) +
                        R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[{"time":"T1","value":"01"},)"
                        R"({"time":"T2","value":"02"},{"time":"T3","value":"03"}]})");
}

TEST_F(SerializerTest, SetTakesNoMoreThanItsCount) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "1"}, {"T2", "2"}, {"T3", "3"}}, 1);
  EXPECT_EQ(File(), std::string(kTimeCodeHead) +
                        R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[{"time":"T1","value":"01"}]})");
}

TEST_F(SerializerTest, RecordWithoutTimeAndValueEndsTheSet) {
  UseTimeCode();
  WriteNumbers("a", {{"", ""}}, 1);
  EXPECT_EQ(File(), std::string(kTimeCodeHead) + R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[]})");
}

TEST_F(SerializerTest, HalfEmptySampleIsRefusedAndTheFileGoesBack) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "7"}});
  std::string const before = File();
  for (std::vector<Record> const& records : {std::vector<Record>{{"T1", ""}}, std::vector<Record>{{"", "7"}},
                                             std::vector<Record>{{"T1", "7"}, {"T2", ""}}}) {
    ExpectWriterError([&] { WriteNumbers("b", records); }, 2014);
    mSerializer.clearDynamicSamples();
    EXPECT_EQ(File(), before);
  }
}

TEST_F(SerializerTest, EmptyTextOfAStreamIsRefused) {
  UseTimeCode();
  SK_DumpSamplesUtils texts;
  Fill(texts, {{"T1", ""}});
  ExpectWriterError([&] { mSerializer.serialize_PaddedStrDynamicSamples("t", texts, 1, {}); }, 2014);
}

TEST_F(SerializerTest, FailedFirstSetLeavesACommaToTheNext) {
  UseTimeCode();
  ExpectWriterError([&] { WriteNumbers("a", {{"T1", ""}}); }, 2014);
  mSerializer.clearDynamicSamples();
  EXPECT_EQ(File(), kTimeCodeHead);
  WriteNumbers("b", {{"T1", "7"}});
  std::string const sets = R"(,"dataDynamicSamples":[,{"sampleSetID":"b","samples":[{"time":"T1","value":"07"}]})";
  EXPECT_EQ(File(), kTimeCodeHead + sets);
  AddFlag();
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), kTimeCodeHead + sets + "]," + kFlagOutline + "}");
}

TEST_F(SerializerTest, PromiseIsTakenBackBehindAFailedFirstSet) {
  UseTimeCode();
  ExpectWriterError([&] { WriteNumbers("a", {{"T1", ""}}); }, 2014);
  mSerializer.clearDynamicSamples();
  AddFlag();
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false,)" + kFlagOutline + "}");
}

TEST_F(SerializerTest, FirstSetThatFailsBehindALaterOneLeavesItAlone) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "7"}});
  std::string const sets = R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[{"time":"T1","value":"07"}]})";
  ExpectWriterError([&] { WriteNumbers("b", {{"T1", ""}}); }, 2014);
  mSerializer.clearDynamicSamples();
  AddFlag();
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), kTimeCodeHead + sets + "]," + kFlagOutline + "}");
}

TEST_F(SerializerTest, HeadThatIsWrittenAgainKeepsWhereThePromiseBegins) {
  UseTimeCode();
  AddFlag();
  mSerializer.serializeVersionToFile();
  mSerializer.clearFile();
  AddFlag();
  mSerializer.serializeVersionToFile();
  EXPECT_EQ(File(), kTimeCodeHead);
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false,)" + kFlagOutline + "}");
}

// The number of the set's first sample is as wide as it takes to pass the limit of one append.
TEST_F(SerializerTest, LargeSetIsCutBackWhole) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "7"}});
  std::string const before = File();
  ExpectWriterError([&] { WriteNumbers("b", {{"T1", "7"}, {"T2", "8"}, {"T3", ""}}, 3, 1200000); }, 2014);
  EXPECT_GT(std::filesystem::file_size(mPath), 1200000u) << "a part of the set is there already";
  mSerializer.clearDynamicSamples();
  EXPECT_EQ(File(), before);
  WriteNumbers("c", {{"T1", "9"}});
  EXPECT_EQ(File(), before + R"(,{"sampleSetID":"c","samples":[{"time":"T1","value":"09"}]})");
}

TEST_F(SerializerTest, PlaceOfAFailedSetIsForgotten) {
  UseTimeCode();
  AddFlag();
  WriteNumbers("a", {{"T1", "7"}});
  ExpectWriterError([&] { WriteNumbers("b", {{"T1", "7"}, {"T2", ""}}, 2, 1200000); }, 2014);
  mSerializer.clearDynamicSamples();
  mSerializer.serializeRootToFile();
  std::string const whole = File();
  // Of a set that is committed too late, and fails before it has written anything.
  ExpectWriterError([&] { WriteNumbers("c", {{"T1", ""}}); }, 2014);
  mSerializer.clearDynamicSamples();
  EXPECT_EQ(File(), whole);
}

TEST_F(SerializerTest, LargeSetHasTheSameTextAsASmallOne) {
  UseTimeCode();
  std::vector<Record> records;
  std::string expected = std::string(kTimeCodeHead) + R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[)";
  for (int i = 10000; i != 99000; ++i) {
    records.push_back({std::to_string(i), std::to_string(i / 1000)});
    expected += (i == 10000 ? "" : ",") + (R"({"time":")" + std::to_string(i)) + R"(","value":")" +
                std::to_string(i / 1000) + R"("})";
  }
  expected += "]}";
  ASSERT_GT(expected.size(), 2u << 20);
  WriteNumbers("a", records);
  EXPECT_TRUE(File() == expected);
}

// Also where samples go from their dump to the text many at a time.
TEST_F(SerializerTest, SamplesBeyondTheCountStayOut) {
  UseTimeCode();
  for (std::uint64_t const count : {1u, 2u, 30u, 59u}) {
    mSerializer.serializeVersionToFile();
    std::string expected = File() + R"(,"dataDynamicSamples":[{"sampleSetID":"a","samples":[)";
    SK_DumpSamplesUtils dump;
    dump.SetTimeLength(8, SK_DumpSamplesUtils::eTimes::kShortened);
    SK_NumberProperties properties;
    properties.pattern = {1, 0, false};
    for (std::uint64_t i = 0; i != 60; ++i) {
      std::string const time = "00:00:" + std::to_string(10 + i);
      expected += i < count ? (i == 0 ? "" : ",") + (R"({"time":")" + time) + R"(","value":"7"})" : "";
      dump.PutSample(senmark_test::WaitingTime(time),
                     [&](char* out) { return PackNumber(out, 7, properties.pattern, false); });
    }
    mSerializer.serialize_NumDynamicSamples("a", dump, count, properties);
    EXPECT_EQ(File(), expected + "]}") << count;
    mSerializer.clearFile();
  }
}

class ReservedBlocks : public SerializerTest {
 protected:
  std::uint64_t BytesOfBlocks() const {
    struct stat status = {};
    EXPECT_EQ(stat(mPath.c_str(), &status), 0);
    return static_cast<std::uint64_t>(status.st_blocks) * 512;
  }
  /// A mebibyte of samples that let one expect many more, and then narrow ones.
  static std::vector<Record> NarrowBehindWide() {
    std::vector<Record> records;
    for (int i = 10000; i != 50000; ++i) {
      records.push_back({std::to_string(i), i < 20000 ? std::string(100, '1') : "1"});
    }
    return records;
  }
  static constexpr std::uint64_t kSlack = 65536;  // bytes, of the last block
};

TEST_F(ReservedBlocks, AreGivenBackWhenSamplesTurnOutNarrower) {
  UseTimeCode();
  WriteNumbers("a", NarrowBehindWide(), 40000, 1);
  EXPECT_LT(BytesOfBlocks(), std::filesystem::file_size(mPath) + kSlack);
  std::uint64_t const size = std::filesystem::file_size(mPath);
  WriteNumbers("b", NarrowBehindWide(), 40000, 1);
  EXPECT_GT(std::filesystem::file_size(mPath), size + size / 2);
  EXPECT_LT(BytesOfBlocks(), std::filesystem::file_size(mPath) + kSlack);
}

TEST_F(ReservedBlocks, AreGivenBackWithASetThatFails) {
  UseTimeCode();
  WriteNumbers("a", {{"T1", "7"}});
  std::uint64_t const before = BytesOfBlocks();
  std::vector<Record> records = NarrowBehindWide();
  records[15000].value = "";
  ExpectWriterError([&] { WriteNumbers("b", records, 40000, 1); }, 2014);
  mSerializer.clearDynamicSamples();
  EXPECT_LE(BytesOfBlocks(), before);
}

// Seen where the last write fails: the set is nearly written then.
TEST_F(ReservedBlocks, AreNoMoreThanTheSetTakes) {
  UseTimeCode();
  std::vector<Record> const records(40000, {"12345", "1"});
  WriteNumbers("a", records);
  std::uint64_t const size = std::filesystem::file_size(mPath);
  ASSERT_GT(size, 1000000u);
  mSerializer.clearFile();
  mSerializer.serializeVersionToFile();
  senmark_test::FailingCall const last(senmark_test::kWrite, EIO, static_cast<int>(size / 262144));
  ExpectWriterError([&] { WriteNumbers("a", records); }, 1055);
  EXPECT_LT(std::filesystem::file_size(mPath), size);
  EXPECT_LT(BytesOfBlocks(), size + kSlack);
  mSerializer.clearDynamicSamples();
}

TEST_F(ReservedBlocks, ThatCannotBeGivenBackAreNoFailure) {
  UseTimeCode();
  WriteNumbers("a", NarrowBehindWide(), 40000, 1);
  std::string const expected = File();
  mSerializer.clearFile();
  {
    senmark_test::FailingCall const cut(senmark_test::kFtruncate, EIO);
    WriteNumbers("a", NarrowBehindWide(), 40000, 1);
    EXPECT_TRUE(cut.HasFailed());
  }
  EXPECT_TRUE(File() == expected);
  WriteNumbers("b", NarrowBehindWide(), 40000, 1);
  EXPECT_EQ(File().substr(0, expected.size()), expected);
}

// What is taken back, and what begins anew.

TEST_F(SerializerTest, RollBackWithoutASetDoesNothing) {
  mSerializer.clearDynamicSamples();
  EXPECT_FALSE(std::filesystem::exists(mPath));
  UseTimeCode();
  WriteNumbers("a", {{"T1", "7"}});
  std::string const before = File();
  mSerializer.clearDynamicSamples();
  EXPECT_EQ(File(), before) << "a set that is finished stays";
}

TEST_F(SerializerTest, ClearedFileIsEmptyAndBeginsAnew) {
  UseTimeCode();
  mRoot->SetCreator("me");
  AddFlag();
  WriteNumbers("a", {{"T1", "7"}});
  mSerializer.clearFile();
  EXPECT_EQ(File(), "");
  EXPECT_TRUE(mRoot->GetNodeInfoList().empty());
  ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, 2021);
  mSerializer.clearFile();
  AddFlag();
  WriteNumbers("b", {{"T1", "8"}});
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kTimeCodeHead) +
                        R"(,"dataDynamicSamples":[{"sampleSetID":"b","samples":[{"time":"T1","value":"08"}]}],)"
                        R"("creator":"me",)" +
                        kFlagOutline + "}");
}

TEST_F(SerializerTest, ClearedFileMayTakeItsPromiseBack) {
  UseTimeCode();
  mSerializer.serializeVersionToFile();
  ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, 2021);
  EXPECT_EQ(File(), kVersion) << "the promise goes before the outline is looked at";
  mSerializer.clearFile();
  EXPECT_EQ(File(), "");
  AddFlag();
  mSerializer.serializeRootToFile();
  EXPECT_EQ(File(), std::string(kVersion) + R"(,"dynamicSamplesPresentB":false,)" + kFlagOutline + "}");
}

TEST_F(SerializerTest, OutlineThatFailsLateLeavesNothingOfItself) {
  // More than one piece has gone out when the walk comes to the group inside itself.
  auto const group = std::make_shared<TdjsonGroupImpl>(nullptr, "G", "g");
  for (int i = 0; i != 30000; ++i) {
    AddFlag();
  }
  group->AddGroup(group);
  mRoot->AddGroup(group);
  mSerializer.serializeVersionToFile();
  std::string const head = File();
  ExpectWriterError([&] { mSerializer.serializeRootToFile(); }, 1034);
  EXPECT_EQ(File(), head);
  group->ResetGroup();
}

TEST(SerializerWithoutRoot, RefusesToWriteAndHasNothingToClear) {
  Serializer serializer;
  SK_DumpSamplesUtils dump;
  ExpectWriterError([&] { serializer.serializeVersionToFile(); }, 2005);
  ExpectWriterError([&] { serializer.serializeRootToFile(); }, 2005);
  ExpectWriterError([&] { serializer.serialize_NumDynamicSamples("a", dump, 1, {}); }, 2005);
  serializer.clearDynamicSamples();
  serializer.clearFile();
}

// What is written can be read.

class SerializerRoundTrip : public senmark_test::DynamicNodes {
 protected:
  ns_sensor::SensorFileHandlerImpl Reread() const {
    return ns_sensor::SensorFileHandlerImpl(mPath.c_str(), mPath.size(), mPath.c_str(), mPath.size(),
                                            SK_NAMESPACE_INT::kNotTdjson);
  }

  template <typename Node>
  std::shared_ptr<Node> Committed(std::shared_ptr<Node> node) {
    EXPECT_TRUE(node->Commit());
    mRoot->AddDynamicData(node);
    return node;
  }
};

TEST_F(SerializerRoundTrip, TreeAndSamplesComeBackAsTheyWere) {
  UseTimeCode();
  mRoot->SetCreator("me");
  mRoot->addSyncTimeStr("a.mov", "00:00:01:00", 11, nullptr);
  mRoot->addSyncTimeFrameNum("b.mov", 7, nullptr);
  SK_PluginResult result;
  auto const numbers = Make<TdjsonDynamicDataNumImpl>("numbers");
  auto const arrays = Make<TdjsonDynamicDataNumArrImpl>("arrays");
  auto const texts = Make<TdjsonDynamicDataStringImpl>("texts");
  double const values[] = {-1.5, 0.1, 12345.678, 0, 7};
  for (int i = 0; i != 5; ++i) {
    EXPECT_TRUE(Add(*numbers, senmark_test::TimeCode(i), result, values[i]));
    EXPECT_TRUE(Add(*arrays, senmark_test::TimeCode(2 * i), result, {1.0 * i, -0.25 * i, 100.0 + i}));
    EXPECT_TRUE(
        Add(*texts, senmark_test::TimeCode(3 * i), result, std::string(static_cast<std::size_t>(i + 1), 'x').c_str()));
  }
  auto const group = std::make_shared<TdjsonGroupImpl>(nullptr, "G", "group");
  auto const number = std::make_shared<TdjsonStaticDataNumImpl>(nullptr, "N", "number", -0.1);
  number->SetNumberPattern({});
  number->SetNumberRange({});
  auto const flag = std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "flag", true);
  auto const text = std::make_shared<TdjsonStaticDataStringImpl>(nullptr, "S", "text", "a \"b\"");
  text->SetStringProperties({});
  auto const array = std::make_shared<TdjsonStaticDataNumArrImpl>(nullptr, "A", "array");
  for (double const element : {1.5, -2.0, 10.0}) {
    array->AddElement(element);
    array->SetNumberRange({});
  }
  array->SetIsPoint(true);
  array->SetNumberPattern({});
  array->SetArrCount(3);
  group->AddStaticData(number);
  group->AddStaticData(flag);
  group->AddStaticData(text);
  group->AddStaticData(array);
  mRoot->AddGroup(group);
  Committed(texts);
  Committed(numbers);
  Committed(arrays);
  EXPECT_TRUE(mRoot->Commit());

  ns_sensor::SensorFileHandlerImpl handler = Reread();
  ns_sensor::SK_FileInfo file;
  handler.GetFileInfo(&file);
  EXPECT_EQ(file.creator, "me");
  EXPECT_EQ(file.version, "tdjson2.0.0");
  std::vector<ns_sensor::SK_VideoSyncTime> syncTimes;
  handler.GetVideoSyncTime(&syncTimes);
  ASSERT_EQ(syncTimes.size(), 2u);
  EXPECT_EQ(boost::get<std::string>(syncTimes[0].value.value), "00:00:01:00");
  EXPECT_EQ(boost::get<int>(syncTimes[1].value.value), 7);

  ns_sensor::SK_StaticDataInfo fixed;
  handler.GetStaticDataInfo(R"(["group"]["number"])", &fixed);
  EXPECT_EQ(boost::get<double>(fixed.value.value), -0.1);
  auto const& numberProperties = boost::get<SK_NumberProperties>(fixed.dataType.properties.value);
  EXPECT_EQ(numberProperties.pattern.digitsInteger, 1u);
  EXPECT_EQ(numberProperties.pattern.digitsDecimal, 1u);
  EXPECT_TRUE(numberProperties.pattern.isSigned);
  EXPECT_EQ(numberProperties.range.legal.min, -0.1);
  EXPECT_EQ(numberProperties.range.occurring.max, -0.1);
  handler.GetStaticDataInfo(R"(["group"]["flag"])", &fixed);
  EXPECT_TRUE(boost::get<bool>(fixed.value.value));
  handler.GetStaticDataInfo(R"(["group"]["text"])", &fixed);
  EXPECT_EQ(boost::get<std::string>(fixed.value.value), "a \"b\"");
  handler.GetStaticDataInfo(R"(["group"]["array"])", &fixed);
  EXPECT_EQ(boost::get<std::vector<double>>(fixed.value.value), (std::vector<double>{1.5, -2, 10}));
  auto const& arrayProperties = boost::get<SK_NumberArrayProperties>(fixed.dataType.properties.value);
  EXPECT_TRUE(arrayProperties.isPoint);
  EXPECT_EQ(arrayProperties.arrayDisplayNames, (std::vector<std::string>{"A_0", "A_1", "A_2"}));

  std::vector<ns_sensor::SK_DynamicDataSample> samples;
  handler.GetDynamicSamples("Snumbers", {0, 1}, {10, 1}, &samples);
  ASSERT_EQ(samples.size(), 5u);
  for (std::size_t i = 0; i != 5; ++i) {
    EXPECT_EQ(boost::get<double>(samples[i].value.value), values[i]);
  }
  handler.GetDynamicSamples("Sarrays", {0, 1}, {10, 1}, &samples);
  ASSERT_EQ(samples.size(), 5u);
  EXPECT_EQ(boost::get<std::vector<double>>(samples[3].value.value), (std::vector<double>{3, -0.75, 103}));
  handler.GetDynamicSamples("Stexts", {0, 1}, {10, 1}, &samples);
  ASSERT_EQ(samples.size(), 5u);
  EXPECT_EQ(boost::get<std::string>(samples[0].value.value), "x");
  EXPECT_EQ(boost::get<std::string>(samples[4].value.value), "xxxxx");
}

// A text's length is kept modulo 65,536, its width is not.
TEST_F(SerializerRoundTrip, TextOf65537BytesKeepsItsFirst) {
  UseTimeCode();
  SK_PluginResult result;
  auto const texts = Make<TdjsonDynamicDataStringImpl>("texts");
  EXPECT_TRUE(Add(*texts, senmark_test::TimeCode(0), result, std::string(65537, 'x').c_str()));
  mRoot->AddStaticData(std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "f", true));
  Committed(texts);
  EXPECT_EQ(FileText(), std::string(senmark_test::kTimeCodeHead) +
                            R"(,"dataDynamicSamples":[{"sampleSetID":"Stexts","samples":[{"time":"00:00:00:00",)"
                            R"("value":{"length":"00001","str":"x)" +
                            std::string(65536, ' ') + R"("}}]})");
}

TEST_F(SerializerRoundTrip, TextOf65536BytesIsAnEmptyOne) {
  UseTimeCode();
  SK_PluginResult result;
  auto const texts = Make<TdjsonDynamicDataStringImpl>("texts");
  EXPECT_TRUE(Add(*texts, senmark_test::TimeCode(0), result, std::string(65536, 'x').c_str()));
  texts->commit(&result);
  EXPECT_EQ(result.mErrorCode, 2014);
  EXPECT_EQ(FileText(), senmark_test::kTimeCodeHead);
}

TEST_F(SerializerRoundTrip, CalendarTimesWithoutSamplesAreAFileWithoutTimes) {
  UseUTC(3, true);
  mRoot->AddStaticData(std::make_shared<TdjsonStaticDataBoolImpl>(nullptr, "F", "f", true));
  mRoot->WriteVersionToFile();
  EXPECT_TRUE(mRoot->Commit());
  ns_sensor::SK_FileInfo file;
  Reread().GetFileInfo(&file);
  EXPECT_EQ(file.duration.value, 0);
}

TEST_F(SerializerRoundTrip, CountThatWasStatedStandsBesideTheSamplesThatWereTaken) {
  UseTimeCode();
  SK_PluginResult result;
  auto const numbers = Make<TdjsonDynamicDataNumImpl>("numbers");
  numbers->SetSampleCount(5);
  for (int i = 0; i != 7; ++i) {
    EXPECT_TRUE(Add(*numbers, senmark_test::TimeCode(i), result, i));
  }
  Committed(numbers);
  EXPECT_TRUE(mRoot->Commit());
  std::string const text = FileText();
  EXPECT_NE(text.find(R"({"time":"00:00:00:06","value":"6"}]})"), std::string::npos);
  EXPECT_NE(text.find(R"("sampleCount":5)"), std::string::npos);
}

}  // namespace
}  // namespace SK_PLUGIN
