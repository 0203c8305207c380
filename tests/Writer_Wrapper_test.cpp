// The writer as native converters use it: which failure comes first and as what, and that every record reaches the
// object it is for.
#include "Writer_Wrapper.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "ExpectError.h"
#include "FailingCalls.h"
#include "FailingMemory.h"
#include "SK_PluginException.h"
#include "SharedCounts.h"
#include "TdjsonDynamicDataNumArrImpl.h"
#include "TdjsonDynamicDataNumImpl.h"
#include "TdjsonDynamicDataStringImpl.h"
#include "TdjsonRootImpl.h"
#include "TdjsonStaticDataBoolImpl.h"
#include "TdjsonStaticDataNumArrImpl.h"
#include "TdjsonStaticDataNumImpl.h"
#include "TdjsonStaticDataStringImpl.h"
#include "TempFolder.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_DateTimeSMPTE;
using ns_sensor::SK_DynamicDataFields;
using ns_sensor::SK_DynamicFileInfo;
using ns_sensor::SK_NumberArrayProperties;
using ns_sensor::SK_NumberMinMax;
using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberProperties;
using ns_sensor::SK_NumberRange;
using ns_sensor::SK_StringProperties;
using ns_sensor::SK_TimeCodeInfo;
using ns_sensor::SK_UTCInfo;
using ns_sensor::SK_VideoSyncTime;
using senmark_test::CountOpenDescriptors;
using senmark_test::ExpectCounts;
using senmark_test::ExpectError;
using senmark_test::ExpectWriterError;
using senmark_test::FailingMemory;
using senmark_test::kConverterFailed;
using senmark_test::TempFolder;

constexpr char kWriterFailed[] = "Writer failure.";
constexpr char kLongText[] = "a text that is too long for a short string, with a \"quote\"";
constexpr char kTimeCodeHead[] =
    R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
    R"("timecodeInfo":{"frameRate":{"value":25,"scale":1},"dropFrame":false}})";

SK_DynamicFileInfo TimeCodes() {
  SK_DynamicFileInfo info;
  info.timeInfo = SK_TimeCodeInfo({25, 1}, 0);
  return info;
}

SK_DynamicDataFields Fields() {
  SK_DynamicDataFields fields;
  fields.displayName = "an \"arm\"";
  fields.matchName = "arm";
  fields.sampleSetID = "set\n";
  fields.sampleCount = 12345678901;
  fields.interpolation = ns_sensor::kHoldInterpolation;
  fields.hasExpectedFrequencyB = true;
  fields.expectedMaxInterSampleDuration = "00:00:00:01\t";
  return fields;
}

/// Four bounds that are all different, none of them a mark.
SK_NumberRange SomeRange(double base = 0) {
  SK_NumberRange range;
  range.occurring = {base + 1, base + 2};
  range.legal = {base - 3, base + 4};
  return range;
}

SK_NumberPattern HalfAutomaticPattern() {
  SK_NumberPattern pattern;
  pattern.digitsDecimal = 1;
  return pattern;
}

SK_NumberRange HalfAutomaticRange() {
  SK_NumberRange range;
  range.occurring.max = 1;
  return range;
}

SK_NumberRange HalfAutomaticLegalRange() {
  SK_NumberRange range;
  range.legal.min = 1;
  return range;
}

SK_NumberArrayProperties ArrayOf(std::uint64_t arraySize, std::size_t ranges = 0, std::size_t names = 0) {
  SK_NumberArrayProperties properties;
  properties.arraySize = arraySize;
  properties.arrayRanges.resize(ranges, SomeRange());
  properties.arrayDisplayNames.resize(names, "name");
  return properties;
}

void ExpectPair(SK_NumberMinMax const& pair, double min, double max) {
  EXPECT_EQ(pair.min, min);
  EXPECT_EQ(pair.max, max);
}
void ExpectRange(SK_NumberRange const& range, SK_NumberRange const& expected) {
  ExpectPair(range.occurring, expected.occurring.min, expected.occurring.max);
  ExpectPair(range.legal, expected.legal.min, expected.legal.max);
}
void ExpectPattern(SK_NumberPattern const& pattern, std::uint64_t integer, std::uint64_t decimal, bool isSigned) {
  EXPECT_EQ(pattern.digitsInteger, integer);
  EXPECT_EQ(pattern.digitsDecimal, decimal);
  EXPECT_EQ(pattern.isSigned, isSigned);
}
void ExpectFields(SK_DynamicDataFields const& fields) {
  EXPECT_EQ(fields.displayName, R"(an \"arm\")");
  EXPECT_EQ(fields.matchName, "arm");
  EXPECT_EQ(fields.sampleSetID, R"(set\n)");
  EXPECT_EQ(fields.sampleCount, 12345678901u);
  EXPECT_EQ(fields.interpolation, ns_sensor::kHoldInterpolation);
  EXPECT_TRUE(fields.hasExpectedFrequencyB);
  EXPECT_EQ(fields.expectedMaxInterSampleDuration, R"(00:00:00:01\t)");
}

class Wrapper : public testing::Test {
 protected:
  Wrapper() : mOpenBefore(CountOpenDescriptors()) {}
  ~Wrapper() override {
    Writer_Wrapper::RemoveRoot_Wrapper(this);
    EXPECT_EQ(TdjsonRootImpl::GetRoot(this), nullptr);
    EXPECT_EQ(CountOpenDescriptors(), mOpenBefore);
  }

  void MakeRoot() {
    SK_DynamicFileInfo const info = TimeCodes();
    Writer_Wrapper::CreateRoot_Wrapper(this, mPath.c_str(), &info);
  }
  std::string FileText() const { return mFolder.Read(mPath); }

  std::size_t mOpenBefore;
  TempFolder mFolder;
  std::string const mPath = mFolder.Path("out.tdjson");
};

/// The object behind the interface that a creation gave. It has one owner and no count.
template <typename Impl, typename Interface>
std::shared_ptr<Impl> Uncounted(std::shared_ptr<Interface> made) {
  auto object = std::dynamic_pointer_cast<Impl>(made);
  made.reset();
  EXPECT_NE(object, nullptr);
  EXPECT_EQ(object.use_count(), 1);
  ExpectCounts(*object, 0, 0);
  return object;
}

/// Every creation, with arguments that would do.
struct Creation {
  char const* name;
  std::function<void(void* key, char const* path)> create;
};
std::vector<Creation> Creations() {
  return {
      {"Root",
       [](void* key, char const* path) {
         SK_DynamicFileInfo info = TimeCodes();
         info.videoSyncTimes.resize(1);
         info.videoSyncTimes[0].fileName = kLongText;
         Writer_Wrapper::CreateRoot_Wrapper(key, path, &info);
       }},
      {"Group", [](void* key, char const*) { Writer_Wrapper::CreateGroup_Wrapper(key, kLongText, kLongText); }},
      {"DynamicDataNum",
       [](void* key, char const*) { Writer_Wrapper::CreateDynamicDataNum_Wrapper(key, Fields(), {}); }},
      {"DynamicDataNumArr",
       [](void* key, char const*) {
         Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(key, Fields(), ArrayOf(3, 0, 3));
       }},
      {"DynamicDataString",
       [](void* key, char const*) { Writer_Wrapper::CreateDynamicDataString_Wrapper(key, Fields(), {}); }},
      {"StaticDataBool",
       [](void* key, char const*) { Writer_Wrapper::CreateStaticDataBool_Wrapper(key, kLongText, kLongText, true); }},
      {"StaticDataNum",
       [](void* key, char const*) { Writer_Wrapper::CreateStaticDataNum_Wrapper(key, kLongText, kLongText, 1, {}); }},
      {"StaticDataNumArr",
       [](void* key, char const*) {
         Writer_Wrapper::CreateStaticDataNumArr_Wrapper(key, kLongText, kLongText, {1, 2, 3}, ArrayOf(3));
       }},
      {"StaticDataString",
       [](void* key, char const*) {
         Writer_Wrapper::CreateStaticDataString_Wrapper(key, kLongText, kLongText, kLongText, {});
       }},
      {"AddGroup",
       [](void* key, char const*) {
         TdjsonGroupImpl group(key, "", "");
         Writer_Wrapper::AddGroup_Wrapper(key, group, OwnNewObject(new TdjsonGroupImpl(key, kLongText, kLongText)));
       }},
      {"AddStaticDataBool",
       [](void* key, char const*) {
         TdjsonGroupImpl group(key, "", "");
         Writer_Wrapper::AddStaticDataBool_Wrapper(key, group, kLongText, kLongText, true);
       }},
      {"AddStaticDataNum",
       [](void* key, char const*) {
         TdjsonGroupImpl group(key, "", "");
         Writer_Wrapper::AddStaticDataNum_Wrapper(key, group, kLongText, kLongText, 1);
       }},
      {"AddStaticDataString",
       [](void* key, char const*) {
         TdjsonGroupImpl group(key, "", "");
         Writer_Wrapper::AddStaticDataString_Wrapper(key, group, kLongText, kLongText, kLongText);
       }},
  };
}

TEST_F(Wrapper, EveryCreationNeedsAKey) {
  for (Creation const& row : Creations()) {
    SCOPED_TRACE(row.name);
    ExpectError([&] { row.create(nullptr, mPath.c_str()); }, 1, "Invalid pointer to \"Native converter\".");
  }
  EXPECT_EQ(TdjsonRootImpl::GetRoot(nullptr), nullptr);
  EXPECT_FALSE(std::filesystem::exists(mPath));
}

TEST_F(Wrapper, WithoutMemoryNothingIsMadeAndNothingIsLeft) {
  for (Creation const& row : Creations()) {
    SCOPED_TRACE(row.name);
    bool const isRoot = std::string(row.name) == "Root";
    std::uint64_t first = 1;
    for (bool failed = true; failed; ++first) {
      Writer_Wrapper::RemoveRoot_Wrapper(this);
      if (!isRoot) {
        MakeRoot();
      }
      bool threw = false;
      {
        FailingMemory const failing(first, FailingMemory::kAll);
        try {
          row.create(this, mPath.c_str());
        } catch (...) {
          threw = true;
        }
        failed = failing.HasFailed();
      }
      ASSERT_EQ(threw, failed) << first;
    }
    EXPECT_GT(first, 2u);
  }
}

TEST_F(Wrapper, ARootWithTimeCodesHasItsHeadInTheFile) {
  SK_DynamicFileInfo info;
  info.timeInfo = SK_TimeCodeInfo({120000, 1001}, 1);
  info.videoSyncTimes.resize(3);
  info.videoSyncTimes[0].fileName = "a.mov";
  info.videoSyncTimes[0].value.value = std::string("01:00:00:000");
  info.videoSyncTimes[1].fileName = "b.mov";
  info.videoSyncTimes[1].value.value = -7;
  info.videoSyncTimes[2].fileName = "c.mov";
  info.videoSyncTimes[2].value.value = std::string("1\0002", 3);
  auto const root =
      std::dynamic_pointer_cast<TdjsonRootImpl>(Writer_Wrapper::CreateRoot_Wrapper(this, mPath.c_str(), &info));
  ASSERT_NE(root, nullptr);
  ExpectCounts(*root, 0, 0);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(this), root);
  EXPECT_EQ(root->GetTDJSONPath(), mPath);
  EXPECT_EQ(root->GetTimeLength(), 12);
  EXPECT_EQ(FileText(),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":true,)"
            R"("timecodeInfo":{"frameRate":{"value":120000,"scale":1001},"dropFrame":true},"videoSyncTimeList":[)"
            R"({"fileName":"a.mov","timeString":"01:00:00:000"},{"fileName":"b.mov","frameNumber":-7},)"
            R"({"fileName":"c.mov","timeString":"1)" +
                std::string(1, '\0') + R"(2"}]})");
}

TEST_F(Wrapper, ARootWithCalendarTimesHasItsHeadInTheFile) {
  struct {
    std::uint16_t precision;
    bool isGMT;
    unsigned short length;
    char const* text;
  } const rows[] = {
      {3, true, 24, R"({"precisionLength":3,"isGMT":true})"},
      {0, false, 25, R"({"precisionLength":0,"isGMT":false})"},
  };
  for (auto const& row : rows) {
    SK_DynamicFileInfo info;
    SK_UTCInfo utc;
    utc.precisionLength = row.precision;
    utc.isGMT = row.isGMT;
    info.timeInfo = utc;
    Writer_Wrapper::CreateRoot_Wrapper(this, mPath.c_str(), &info);
    EXPECT_EQ(TdjsonRootImpl::GetRoot(this)->GetTimeLength(), row.length);
    EXPECT_EQ(FileText(), R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":)"
                          R"({"useTimecodeB":false,"utcInfo":)" +
                              std::string(row.text) + '}');
    Writer_Wrapper::RemoveRoot_Wrapper(this);
  }
}

TEST_F(Wrapper, ARootWithoutTimesPromisesNoSamples) {
  Writer_Wrapper::CreateRoot_Wrapper(this, mPath.c_str(), nullptr);
  EXPECT_EQ(FileText(), R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":false)");
  ExpectWriterError([&] { Writer_Wrapper::CreateDynamicDataNum_Wrapper(this, Fields(), {}); }, 2028);
  ExpectWriterError([&] { Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, Fields(), ArrayOf(4)); }, 2028);
  ExpectWriterError([&] { Writer_Wrapper::CreateDynamicDataString_Wrapper(this, Fields(), {}); }, 2028);
}

TEST_F(Wrapper, DynamicNodesNeedARoot) {
  ExpectWriterError([&] { Writer_Wrapper::CreateDynamicDataNum_Wrapper(this, Fields(), {}); }, 2005);
  ExpectWriterError([&] { Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, Fields(), ArrayOf(4)); }, 2005);
  ExpectWriterError([&] { Writer_Wrapper::CreateDynamicDataString_Wrapper(this, Fields(), {}); }, 2005);
}

// Neither path nor times are looked at then, and the head is not written again.
TEST_F(Wrapper, ARootThatIsThereIsGivenAsItIs) {
  SK_DynamicFileInfo info = TimeCodes();
  auto const root = Writer_Wrapper::CreateRoot_Wrapper(this, mPath.c_str(), &info);
  mFolder.Write("out.tdjson", "what stands here now");
  info.timeInfo = SK_UTCInfo();
  info.videoSyncTimes.resize(1);
  EXPECT_EQ(Writer_Wrapper::CreateRoot_Wrapper(this, mFolder.Path("other.tdjson").c_str(), &info), root);
  EXPECT_EQ(Writer_Wrapper::CreateRoot_Wrapper(this, nullptr, nullptr), root);
  EXPECT_EQ(FileText(), "what stands here now");
  EXPECT_FALSE(std::filesystem::exists(mFolder.Path("other.tdjson")));
  auto const impl = TdjsonRootImpl::GetRoot(this);
  EXPECT_TRUE(impl->IsTimeCodeUsed());
  EXPECT_TRUE(impl->GetVideoSyncTimeList().empty());
}

TEST_F(Wrapper, ANewRootNeedsAPath) {
  SK_DynamicFileInfo const info = TimeCodes();
  ExpectWriterError([&] { Writer_Wrapper::CreateRoot_Wrapper(this, nullptr, &info); }, 1505);
  ExpectWriterError([&] { Writer_Wrapper::CreateRoot_Wrapper(this, "", nullptr); }, 1505);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(this), nullptr);
}

TEST_F(Wrapper, AHeadThatCannotBeWrittenIsAFailureOfTheRoot) {
  std::string const path = mFolder.Path("no such folder") + "/out.tdjson";
  ExpectError([&] { Writer_Wrapper::CreateRoot_Wrapper(this, path.c_str(), nullptr); }, 1007, kConverterFailed);
  // It was registered by then, and stays until it is removed.
  EXPECT_NE(TdjsonRootImpl::GetRoot(this), nullptr);
}

TEST_F(Wrapper, RemoveRootLetsGoOfOneRoot) {
  MakeRoot();
  int other = 0;
  TdjsonRootImpl::RegisterInstance(&other, OwnNewObject(new TdjsonRootImpl(&other, "never written")));
  std::weak_ptr<TdjsonRootImpl> const root = TdjsonRootImpl::GetRoot(this);
  Writer_Wrapper::RemoveRoot_Wrapper(nullptr);
  Writer_Wrapper::RemoveRoot_Wrapper(this);
  EXPECT_TRUE(root.expired());
  EXPECT_NE(TdjsonRootImpl::GetRoot(&other), nullptr);
  Writer_Wrapper::RemoveRoot_Wrapper(this);
  Writer_Wrapper::RemoveRoot_Wrapper(&other);
  EXPECT_EQ(TdjsonRootImpl::GetRoot(&other), nullptr);
  EXPECT_EQ(FileText(), kTimeCodeHead);
}

// Neither needs a root.
TEST_F(Wrapper, GroupsAndFlagsAreMadeOfTheirNames) {
  auto const group =
      Uncounted<TdjsonGroupImpl>(Writer_Wrapper::CreateGroup_Wrapper(this, "1 match_name", "a \"group\""));
  EXPECT_EQ(group->GetMatchName(), "1 match_name");
  EXPECT_EQ(group->GetDisplayName(), R"(a \"group\")");
  for (bool const value : {true, false}) {
    auto const flag = Uncounted<TdjsonStaticDataBoolImpl>(
        Writer_Wrapper::CreateStaticDataBool_Wrapper(this, "1 match_name", "a \"flag\"", value));
    EXPECT_EQ(flag->GetMatchName(), "1 match_name");
    EXPECT_EQ(flag->GetDisplayName(), R"(a \"flag\")");
    EXPECT_EQ(flag->GetDataValue(), value);
  }
}

TEST_F(Wrapper, AStreamOfNumbersGetsItsRecords) {
  MakeRoot();
  SK_NumberProperties properties;
  properties.pattern.digitsInteger = 3;
  properties.pattern.digitsDecimal = 2;
  properties.pattern.isSigned = true;
  properties.range = SomeRange();
  auto const node =
      Uncounted<TdjsonDynamicDataNumImpl>(Writer_Wrapper::CreateDynamicDataNum_Wrapper(this, Fields(), properties));
  ExpectFields(node->GetDynamicDataFields());
  ExpectPattern(node->GetNumStringProperties().pattern, 3, 2, true);
  ExpectRange(node->GetNumStringProperties().range, SomeRange());
}

TEST_F(Wrapper, DefaultRecordsAreTakenFromTheSamples) {
  MakeRoot();
  auto const number = Uncounted<TdjsonDynamicDataNumImpl>(
      Writer_Wrapper::CreateDynamicDataNum_Wrapper(this, Fields(), SK_NumberProperties()));
  EXPECT_TRUE(number->AddSample(SK_DateTimeSMPTE{0, 0, 0, 1}, -12.5));
  EXPECT_TRUE(number->Commit());
  ExpectPattern(number->GetNumStringProperties().pattern, 2, 1, true);
  ExpectPair(number->GetNumStringProperties().range.occurring, -12.5, -12.5);
  ExpectPair(number->GetNumStringProperties().range.legal, -12.5, -12.5);

  auto const array = Uncounted<TdjsonDynamicDataNumArrImpl>(
      Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, Fields(), ArrayOf(2)));
  EXPECT_TRUE(array->AddSample(SK_DateTimeSMPTE{0, 0, 0, 1}, {4, 567.25}));
  EXPECT_TRUE(array->Commit());
  ExpectPattern(array->GetNumArrayProperties().pattern, 3, 2, false);
  ASSERT_EQ(array->GetNumArrayProperties().arrayRanges.size(), 2u);
  ExpectPair(array->GetNumArrayProperties().arrayRanges[0].occurring, 4, 4);
  ExpectPair(array->GetNumArrayProperties().arrayRanges[1].occurring, 567.25, 567.25);
  ExpectPair(array->GetNumArrayProperties().arrayRanges[1].legal, 567.25, 567.25);
  std::vector<std::string> const names = {R"(an \"arm\"_0)", R"(an \"arm\"_1)"};
  EXPECT_EQ(array->GetNumArrayProperties().arrayDisplayNames, names);
}

TEST_F(Wrapper, AStreamOfArraysGetsItsRecords) {
  MakeRoot();
  for (std::uint64_t const size : {1, 2, 3}) {
    SK_NumberArrayProperties properties = ArrayOf(size);
    properties.isPoint = size == 2;
    properties.pattern.digitsInteger = 4;
    properties.pattern.digitsDecimal = 0;
    std::vector<std::string> names;
    for (std::uint64_t element = 0; element < size; ++element) {
      properties.arrayRanges.push_back(SomeRange(100.0 * static_cast<double>(element)));
      properties.arrayDisplayNames.push_back("\"" + std::to_string(element));
      names.push_back("\\\"" + std::to_string(element));
    }
    auto const node = Uncounted<TdjsonDynamicDataNumArrImpl>(
        Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, Fields(), properties));
    ExpectFields(node->GetDynamicDataFields());
    SK_NumberArrayProperties const& made = node->GetNumArrayProperties();
    EXPECT_EQ(made.arraySize, size);
    EXPECT_EQ(made.isPoint, size == 2);
    EXPECT_EQ(made.arrayDisplayNames, names);
    ExpectPattern(made.pattern, 4, 0, false);
    ASSERT_EQ(made.arrayRanges.size(), size);
    for (std::uint64_t element = 0; element < size; ++element) {
      ExpectRange(made.arrayRanges[element], SomeRange(100.0 * static_cast<double>(element)));
    }
  }
}

TEST_F(Wrapper, AStreamOfTextsGetsItsRecords) {
  MakeRoot();
  SK_StringProperties properties;
  properties.maxLen = 7;
  properties.maxDigitsInStrLength = 1;
  properties.eventMarkerB = true;
  auto const node = Uncounted<TdjsonDynamicDataStringImpl>(
      Writer_Wrapper::CreateDynamicDataString_Wrapper(this, Fields(), properties));
  ExpectFields(node->GetDynamicDataFields());
  // Widths come from the samples alone.
  EXPECT_EQ(node->GetPaddedStringProperties().maxLen, 0u);
  EXPECT_EQ(node->GetPaddedStringProperties().maxDigitsInStrLength, 0u);
  EXPECT_TRUE(node->GetPaddedStringProperties().eventMarkerB);
}

TEST_F(Wrapper, FieldsThatAreRefusedAreAFailureOfEachStream) {
  MakeRoot();
  struct {
    void (*spoil)(SK_DynamicDataFields& fields);
    int code;
  } const rows[] = {
      {[](SK_DynamicDataFields& fields) { fields.matchName = "an_arm"; }, 2022},
      {[](SK_DynamicDataFields& fields) { fields.interpolation = ns_sensor::kNoInterpolation; }, 53},
  };
  // Whatever is wrong with the properties comes behind that.
  SK_NumberProperties number;
  number.pattern = HalfAutomaticPattern();
  for (auto const& row : rows) {
    SK_DynamicDataFields fields = Fields();
    row.spoil(fields);
    ExpectError([&] { Writer_Wrapper::CreateDynamicDataNum_Wrapper(this, fields, number); }, row.code,
                kConverterFailed);
    ExpectError([&] { Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, fields, ArrayOf(4)); }, row.code,
                kConverterFailed);
    ExpectError([&] { Writer_Wrapper::CreateDynamicDataString_Wrapper(this, fields, {}); }, row.code, kConverterFailed);
  }
}

/// Properties of numbers that are refused, the first mistake before the others.
struct RefusedNumber {
  SK_NumberPattern pattern;
  SK_NumberRange range;
  int code;
};
std::vector<RefusedNumber> RefusedNumbers() {
  return {
      {HalfAutomaticPattern(), HalfAutomaticRange(), 2006},
      {SK_NumberPattern(), HalfAutomaticRange(), 2007},
      {SK_NumberPattern(), HalfAutomaticLegalRange(), 2008},
  };
}

TEST_F(Wrapper, PropertiesOfNumbersThatAreRefusedAreAFailure) {
  MakeRoot();
  for (RefusedNumber const& row : RefusedNumbers()) {
    SCOPED_TRACE(row.code);
    SK_NumberProperties properties;
    properties.pattern = row.pattern;
    properties.range = row.range;
    ExpectError([&] { Writer_Wrapper::CreateDynamicDataNum_Wrapper(this, Fields(), properties); }, row.code,
                kConverterFailed);
    ExpectError([&] { Writer_Wrapper::CreateStaticDataNum_Wrapper(this, "m", "d", 1, properties); }, row.code,
                kConverterFailed);
  }
}

/// Properties of an array, what is wrong with them, and what that is told as.
struct RefusedArray {
  char const* name;
  SK_NumberArrayProperties properties;
  int code;
  char const* message;
};

SK_NumberArrayProperties With(SK_NumberArrayProperties properties, SK_NumberPattern const& pattern) {
  properties.pattern = pattern;
  return properties;
}
SK_NumberArrayProperties With(SK_NumberArrayProperties properties, SK_NumberRange const& lastRange) {
  properties.arrayRanges.back() = lastRange;
  return properties;
}

TEST_F(Wrapper, AStreamOfArraysTellsItsFirstMistake) {
  MakeRoot();
  RefusedArray const rows[] = {
      {"NoSize", ArrayOf(0), 2017, kWriterFailed},
      {"SizeAbove3", ArrayOf(4), 2017, kWriterFailed},
      {"SizeFarAbove3", ArrayOf(0x100000001), 2017, kWriterFailed},
      {"SizeBeforePattern", With(ArrayOf(4, 1, 1), HalfAutomaticPattern()), 2017, kWriterFailed},
      {"PatternBeforeRanges", With(ArrayOf(2, 1, 1), HalfAutomaticPattern()), 2006, kConverterFailed},
      {"TooFewRanges", ArrayOf(2, 1), 2018, kWriterFailed},
      {"TooManyRanges", ArrayOf(2, 3), 2018, kWriterFailed},
      {"CountOfRangesBeforeNames", ArrayOf(2, 3, 1), 2018, kWriterFailed},
      {"CountOfRangesBeforeTheRanges", With(ArrayOf(2, 3), HalfAutomaticRange()), 2018, kWriterFailed},
      {"HalfAutomaticRangeBeforeNames", With(ArrayOf(2, 2, 1), HalfAutomaticRange()), 2007, kConverterFailed},
      {"MixedRanges", With(ArrayOf(2, 2), SK_NumberRange()), 2007, kConverterFailed},
      {"HalfAutomaticLegalRange", With(ArrayOf(1, 1), HalfAutomaticLegalRange()), 2008, kConverterFailed},
  };
  for (RefusedArray const& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectError([&] { Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, Fields(), row.properties); }, row.code,
                row.message);
  }
}

// The one mistake that comes as the writer's own exception.
TEST_F(Wrapper, AStreamOfArraysNeedsANameForEachElementOrNone) {
  MakeRoot();
  for (auto const& properties : {ArrayOf(2, 0, 1), ArrayOf(2, 2, 3), ArrayOf(1, 1, 2)}) {
    ExpectWriterError([&] { Writer_Wrapper::CreateDynamicDataNumArr_Wrapper(this, Fields(), properties); }, 2019);
  }
}

TEST_F(Wrapper, AStaticArrayTellsItsFirstMistake) {
  struct {
    char const* name;
    std::size_t values;
    SK_NumberArrayProperties properties;
    int code;
    char const* message;
  } const rows[] = {
      {"SizeAbove3", 4, ArrayOf(4), 2017, kWriterFailed},
      {"SizeAbove3And3Values", 3, ArrayOf(4), 2017, kWriterFailed},
      {"SizeBelowTheValues", 3, ArrayOf(2), 2017, kWriterFailed},
      {"SizeAboveTheValues", 1, ArrayOf(2), 2017, kWriterFailed},
      {"NoValues", 0, ArrayOf(1), 2017, kWriterFailed},
      {"SizeBeforeValues", 4, ArrayOf(3, 1, 1), 2017, kWriterFailed},
      {"TooManyValues", 4, ArrayOf(0), 48, kWriterFailed},
      {"ValuesBeforeNames", 4, ArrayOf(0, 1, 1), 48, kWriterFailed},
      {"TooFewNames", 3, ArrayOf(0, 0, 2), 2011, kWriterFailed},
      {"TooManyNames", 3, ArrayOf(3, 0, 4), 2011, kWriterFailed},
      {"NamesBeforeRanges", 3, ArrayOf(3, 2, 2), 2011, kWriterFailed},
      {"TooFewRanges", 3, ArrayOf(0, 2), 2012, kWriterFailed},
      {"TooManyRanges", 3, ArrayOf(3, 4, 3), 2012, kWriterFailed},
      {"CountOfRangesBeforeTheRest", 1, With(With(ArrayOf(1, 2, 1), HalfAutomaticRange()), HalfAutomaticPattern()),
       2012, kWriterFailed},
      {"RangesBeforePattern", 1, With(With(ArrayOf(1, 1), HalfAutomaticRange()), HalfAutomaticPattern()), 2007,
       kConverterFailed},
      {"HalfAutomaticLegalRange", 1, With(ArrayOf(1, 1), HalfAutomaticLegalRange()), 2008, kConverterFailed},
      {"HalfAutomaticPattern", 1, With(ArrayOf(1, 1), HalfAutomaticPattern()), 2006, kConverterFailed},
  };
  for (auto const& row : rows) {
    SCOPED_TRACE(row.name);
    ExpectError(
        [&] {
          Writer_Wrapper::CreateStaticDataNumArr_Wrapper(this, "m", "d", std::vector<double>(row.values, 1.5),
                                                         row.properties);
        },
        row.code, row.message);
  }
}

TEST_F(Wrapper, AStaticArrayIsFinishedFromItsValues) {
  std::vector<double> const values = {1.5, -2, 10};
  for (std::uint64_t const size : {0, 3}) {
    auto const node = Uncounted<TdjsonStaticDataNumArrImpl>(
        Writer_Wrapper::CreateStaticDataNumArr_Wrapper(this, "1 match", "pos\"", values, ArrayOf(size)));
    EXPECT_EQ(node->GetMatchName(), "1 match");
    EXPECT_EQ(node->GetDisplayName(), R"(pos\")");
    EXPECT_EQ(node->GetDataValue(), values);
    SK_NumberArrayProperties const& made = node->GetNumArrayProperties();
    EXPECT_EQ(made.arraySize, 3u);
    EXPECT_FALSE(made.isPoint);
    ExpectPattern(made.pattern, 2, 1, true);
    std::vector<std::string> const names = {R"(pos\"_0)", R"(pos\"_1)", R"(pos\"_2)"};
    EXPECT_EQ(made.arrayDisplayNames, names);
    ASSERT_EQ(made.arrayRanges.size(), 3u);
    for (std::size_t element = 0; element < 3; ++element) {
      ExpectPair(made.arrayRanges[element].occurring, values[element], values[element]);
      ExpectPair(made.arrayRanges[element].legal, values[element], values[element]);
    }
  }
}

TEST_F(Wrapper, AStaticArrayGetsItsRecords) {
  SK_NumberArrayProperties properties = ArrayOf(2);
  properties.isPoint = true;
  properties.pattern.digitsInteger = 5;
  properties.pattern.digitsDecimal = 6;
  properties.arrayDisplayNames = {"x\"", "y"};
  properties.arrayRanges = {SomeRange(), SomeRange(100)};
  auto const node = Uncounted<TdjsonStaticDataNumArrImpl>(
      Writer_Wrapper::CreateStaticDataNumArr_Wrapper(this, "m", "d", {1, 2}, properties));
  SK_NumberArrayProperties const& made = node->GetNumArrayProperties();
  EXPECT_EQ(made.arraySize, 2u);
  EXPECT_TRUE(made.isPoint);
  ExpectPattern(made.pattern, 5, 6, false);
  std::vector<std::string> const names = {R"(x\")", "y"};
  EXPECT_EQ(made.arrayDisplayNames, names);
  ASSERT_EQ(made.arrayRanges.size(), 2u);
  ExpectRange(made.arrayRanges[0], SomeRange());
  ExpectRange(made.arrayRanges[1], SomeRange(100));
}

TEST_F(Wrapper, AStaticArrayMayBeEmpty) {
  auto const node = Uncounted<TdjsonStaticDataNumArrImpl>(
      Writer_Wrapper::CreateStaticDataNumArr_Wrapper(this, "m", "d", {}, ArrayOf(0)));
  EXPECT_TRUE(node->GetDataValue().empty());
  EXPECT_EQ(node->GetNumArrayProperties().arraySize, 0u);
  EXPECT_TRUE(node->GetNumArrayProperties().arrayRanges.empty());
  EXPECT_TRUE(node->GetNumArrayProperties().arrayDisplayNames.empty());
}

TEST_F(Wrapper, AStaticNumberGetsItsRecordsOrIsMeasured) {
  SK_NumberProperties properties;
  properties.pattern.digitsInteger = 3;
  properties.pattern.digitsDecimal = 2;
  properties.range = SomeRange();
  auto const stated = Uncounted<TdjsonStaticDataNumImpl>(
      Writer_Wrapper::CreateStaticDataNum_Wrapper(this, "1 match", "a \"number\"", 12.5, properties));
  EXPECT_EQ(stated->GetMatchName(), "1 match");
  EXPECT_EQ(stated->GetDisplayName(), R"(a \"number\")");
  EXPECT_EQ(stated->GetDataValue(), 12.5);
  ExpectPattern(stated->GetNumberProperties().pattern, 3, 2, false);
  ExpectRange(stated->GetNumberProperties().range, SomeRange());

  auto const measured =
      Uncounted<TdjsonStaticDataNumImpl>(Writer_Wrapper::CreateStaticDataNum_Wrapper(this, "m", "d", -12.5, {}));
  ExpectPattern(measured->GetNumberProperties().pattern, 2, 1, true);
  ExpectPair(measured->GetNumberProperties().range.occurring, -12.5, -12.5);
  ExpectPair(measured->GetNumberProperties().range.legal, -12.5, -12.5);
}

TEST_F(Wrapper, NodesThatNobodyHoldsGoToTheRealGroup) {
  struct : TdjsonGroupImpl {
    using TdjsonGroupImpl::TdjsonGroupImpl;
    ITdjsonGroup_v1* GetActualITdjsonGroup() override { return actual; }
    ITdjsonGroup_v1* actual = nullptr;
  } group(this, "", "");
  ExpectWriterError([&] { Writer_Wrapper::AddStaticDataBool_Wrapper(this, group, "b", "B", true); }, 2016);
  ExpectWriterError([&] { Writer_Wrapper::AddStaticDataNum_Wrapper(this, group, "n", "N", 1); }, 2016);
  ExpectWriterError([&] { Writer_Wrapper::AddStaticDataString_Wrapper(this, group, "s", "S", "text"); }, 2016);
  ExpectWriterError([&] { Writer_Wrapper::AddGroup_Wrapper(this, group, nullptr); }, 2016);
  TdjsonGroupImpl real(this, "", "");
  group.actual = &real;
  ExpectWriterError([&] { Writer_Wrapper::AddGroup_Wrapper(this, group, nullptr); }, 2003);
  Writer_Wrapper::AddStaticDataBool_Wrapper(this, group, "b", "B", true);
  Writer_Wrapper::AddStaticDataNum_Wrapper(this, group, "n", "N", 1.5);
  Writer_Wrapper::AddStaticDataString_Wrapper(this, group, "s", "S", "text");
  EXPECT_TRUE(group.GetNodeInfoList().empty());
  SK_StaticRecords::Reader reader(real.GetStaticRecords());
  EXPECT_TRUE(reader.Next().flag);
  EXPECT_EQ(reader.Next().number, 1.5);
  EXPECT_EQ(reader.Next().text, "text");
}

TEST_F(Wrapper, AStaticTextIsMeasured) {
  SK_StringProperties properties;
  properties.maxLen = 70;
  properties.maxDigitsInStrLength = 20;
  properties.eventMarkerB = true;
  auto const text = Uncounted<TdjsonStaticDataStringImpl>(
      Writer_Wrapper::CreateStaticDataString_Wrapper(this, "1 match", "a \"text\"", "10 bytes\n", properties));
  EXPECT_EQ(text->GetMatchName(), "1 match");
  EXPECT_EQ(text->GetDisplayName(), R"(a \"text\")");
  EXPECT_EQ(text->GetDataValue(), R"(10 bytes\n)");
  EXPECT_EQ(text->GetStringProperties().maxLen, 10u);
  EXPECT_EQ(text->GetStringProperties().maxDigitsInStrLength, 2u);
  EXPECT_TRUE(text->GetStringProperties().eventMarkerB);
}

}  // namespace
}  // namespace SK_PLUGIN
