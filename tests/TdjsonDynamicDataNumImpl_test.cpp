#include "TdjsonDynamicDataNumImpl.h"

#include <cmath>
#include <iterator>
#include <ostream>
#include <string>
#include <vector>

#include "DynamicNodes.h"
#include "ExpectError.h"
#include "NumberKinds.h"
#include "NumberTexts.h"
#include "SK_NumberAnalysis.h"
#include "SK_NumberPropertyRules.h"
#include "SensorFileHandlerImpl.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::Add;
using senmark_test::DynamicNodes;
using senmark_test::ExpectError;
using senmark_test::kAutomaticDigits;
using senmark_test::kConverterFailed;
using senmark_test::kMaxMark;
using senmark_test::kMinMark;
using senmark_test::kTimeCodeHead;
using senmark_test::SK_DateTimeSMPTE;
using senmark_test::SK_DateTimeUTC;
using senmark_test::TimeCode;

class DynamicNum : public DynamicNodes {
 protected:
  /// What stands behind the head: one set with these values at 00:00:00:00 and the frames behind it.
  static std::string SetText(std::vector<std::string> const& values) {
    std::string text = kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)");
    for (std::size_t index = 0; index < values.size(); ++index) {
      text += (index == 0 ? "" : ",") + std::string(R"({"time":"00:00:00:0)") + std::to_string(index) +
              R"(","value":")" + values[index] + R"("})";
    }
    return text + "]}";
  }
};

struct PatternRow {
  char const* name;
  std::vector<double> values;
  unsigned long long digitsInteger;
  unsigned long long digitsDecimal;
  bool isSigned;
  std::vector<std::string> texts;
};
void PrintTo(PatternRow const& row, std::ostream* out) {
  *out << row.name;
}
class AutomaticPattern : public DynamicNum, public testing::WithParamInterface<PatternRow> {};

TEST_P(AutomaticPattern, IsWhatAllSamplesNeed) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = Make<TdjsonDynamicDataNumImpl>();
  SK_PluginResult result;
  for (std::size_t index = 0; index < GetParam().values.size(); ++index) {
    EXPECT_TRUE(Add(*node, TimeCode(static_cast<int>(index)), result, GetParam().values[index]));
  }
  ns_sensor::SK_NumberPattern const& pattern = node->GetNumStringProperties().pattern;
  EXPECT_EQ(pattern.digitsInteger, GetParam().digitsInteger);
  EXPECT_EQ(pattern.digitsDecimal, GetParam().digitsDecimal);
  EXPECT_EQ(pattern.isSigned, GetParam().isSigned);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_EQ(FileText(), SetText(GetParam().texts));
}

PatternRow const kPatternRows[] = {
    {"OneWholeNumber", {7}, 1, 0, false, {"7"}},
    {"IntegerAndDecimalDigitsFromDifferentSamples", {123.4, 5.678}, 3, 3, false, {"123.400", "005.678"}},
    {"SignOfOneIsThePlaceOfAll", {-1.5, 7}, 1, 1, true, {"-1.5", "+7.0"}},
    {"NegativeZeroHasASign", {-0.0, 0.0}, 1, 0, true, {"-0", "+0"}},
    {"SixteenDigits", {9.95, 0.1 + 0.2}, 1, 15, false, {"9.949999999999999", "0.300000000000000"}},
    {"ExponentCountsAsDigits", {1e21, 1}, 5, 0, false, {"1e+21", "00001"}},
    {"ExponentBehindAPointLosesItsZero", {1.5e20}, 1, 4, false, {"1.5e+2"}},
    {"NotANumber", {std::nan("")}, 3, 0, false, {"nan"}},
    {"Infinite", {HUGE_VAL, -HUGE_VAL}, 3, 0, true, {"+inf", "-inf"}},
};
INSTANTIATE_TEST_SUITE_P(Samples, AutomaticPattern, testing::ValuesIn(kPatternRows),
                         [](auto const& row) { return std::string(row.param.name); });

/// Numbers that wait as integers and others that wait as texts, of both signs and of any order.
class ManyNumbers : public DynamicNum, public testing::WithParamInterface<bool> {
 protected:
  static std::vector<double> Values(std::size_t count) {
    senmark_test::Random random(27);
    std::vector<double> values;
    for (std::size_t i = 0; i != count; ++i) {
      // Most are sensible.
      std::size_t const kind = random() % 4 == 0 ? random() % std::size(senmark_test::kNumberKinds) : 3;
      values.push_back(senmark_test::kNumberKinds[kind].make(random) * (random() % 3 == 0 ? -1 : 1));
    }
    return values;
  }
};

// Through the disk and in several pieces.
TEST_P(ManyNumbers, ArePaddedToTheirPattern) {
  bool const isAutomatic = GetParam();
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = OwnNewObject(new TdjsonDynamicDataNumImpl(Key()));
  SK_PluginResult result;
  node->setDynamicDataInfo("Arm", "arm", "Sarm", 0, 1, 0, "", &result);
  ns_sensor::SK_NumberPattern pattern;
  pattern.digitsInteger = 0;
  pattern.digitsDecimal = 0;
  if (isAutomatic) {
    node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &result);
  } else {
    pattern.digitsInteger = 4;
    pattern.digitsDecimal = 3;
    node->setNumberPattern(4, 3, 0, &result);
  }
  std::vector<double> const values = Values(120'000);
  std::vector<std::string> texts;
  senmark_test::StreamText stream;
  for (std::size_t i = 0; i != values.size(); ++i) {
    ASSERT_TRUE(Add(*node, TimeCode(static_cast<int>(i % 1000)), result, values[i]));
    texts.push_back(stream.Of(values[i]));
    WidenNumberPattern(pattern, isAutomatic, values[i], texts.back());
  }
  EXPECT_NE(mFolder.TempNames(), "");
  EXPECT_EQ(node->GetNumStringProperties().pattern.digitsInteger, pattern.digitsInteger);
  EXPECT_EQ(node->GetNumStringProperties().pattern.digitsDecimal, pattern.digitsDecimal);
  EXPECT_TRUE(node->GetNumStringProperties().pattern.isSigned);
  std::string expected = kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)");
  for (std::size_t i = 0; i != values.size(); ++i) {
    SK_DateTimeSMPTE const time = TimeCode(static_cast<int>(i % 1000));
    std::string timeText;
    serializeTimeSMPTE(timeText, time.hours, time.minutes, time.seconds, time.frames, 2);
    expected += (i == 0 ? "" : ",") + (R"({"time":")" + timeText) + R"(","value":")" +
                senmark_test::PaddedStepByStep(texts[i], pattern) + R"("})";
  }
  expected += "]}";
  ASSERT_GT(expected.size(), 4u << 20U);
  EXPECT_TRUE(node->Commit());
  EXPECT_TRUE(FileText() == expected);
}

INSTANTIATE_TEST_SUITE_P(Pattern, ManyNumbers, testing::Bool(),
                         [](auto const& row) { return row.param ? "Automatic" : "Stated"; });

TEST_F(DynamicNum, StatedPatternStaysAndOnlyItsSignCanCome) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = OwnNewObject(new TdjsonDynamicDataNumImpl(Key()));
  SK_PluginResult result;
  node->setDynamicDataInfo("Arm", "arm", "Sarm", 0, 1, 0, "", &result);
  node->setNumberPattern(3, 2, 0, &result);
  EXPECT_TRUE(Add(*node, TimeCode(0), result, 7));
  EXPECT_FALSE(node->GetNumStringProperties().pattern.isSigned);
  EXPECT_TRUE(Add(*node, TimeCode(1), result, -1.5));
  // Wider than stated: written as it is.
  EXPECT_TRUE(Add(*node, TimeCode(2), result, 12345.678));
  ns_sensor::SK_NumberPattern const& pattern = node->GetNumStringProperties().pattern;
  EXPECT_EQ(pattern.digitsInteger, 3u);
  EXPECT_EQ(pattern.digitsDecimal, 2u);
  EXPECT_TRUE(pattern.isSigned);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(result.mErrorCode, 0);
  EXPECT_EQ(FileText(), SetText({"+007.00", "-001.50", "+12345.678"}));
}

// Marks hold for good: what is stated behind them is where the widening begins.
TEST_F(DynamicNum, WhatIsStatedBehindTheMarksIsWidened) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = Make<TdjsonDynamicDataNumImpl>();
  SK_PluginResult result;
  node->setNumberPattern(1, 2, 0, &result);
  node->setNumberRange(-9, 9, -8, 8, &result);
  EXPECT_TRUE(Add(*node, TimeCode(0), result, 100.5));
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(result.mErrorCode, 0);
  ns_sensor::SK_NumberProperties const& properties = node->GetNumStringProperties();
  EXPECT_EQ(properties.pattern.digitsInteger, 3u);
  EXPECT_EQ(properties.pattern.digitsDecimal, 2u);
  EXPECT_EQ(properties.range.occurring.min, -8);
  EXPECT_EQ(properties.range.occurring.max, 100.5);
  EXPECT_EQ(properties.range.legal.min, -8);
  EXPECT_EQ(properties.range.legal.max, 100.5);
  EXPECT_EQ(FileText(), SetText({"100.50"}));
}

TEST_F(DynamicNum, StatedSignStaysWithoutANegativeSample) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = Make<TdjsonDynamicDataNumImpl>();
  SK_PluginResult result;
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 2, &result);
  EXPECT_TRUE(Add(*node, TimeCode(0), result, 7));
  EXPECT_TRUE(node->GetNumStringProperties().pattern.isSigned);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(FileText(), SetText({"+7"}));
}

// Nobody said how wide its numbers are: no memory holds what the counts of an unset pattern ask for.
TEST_F(DynamicNum, WithoutAPatternItsCommitFails) {
  UseTimeCode();
  SK_PluginResult result;
  auto const node = OwnNewObject(new TdjsonDynamicDataNumImpl(Key()));
  node->setDynamicDataInfo("Arm", "arm", "arm", 0, 1, 0, "", &result);
  EXPECT_TRUE(Add(*node, TimeCode(0), result));
  mRoot->WriteVersionToFile();
  node->commit(&result);
  EXPECT_EQ(result.mErrorCode, 1034);
  EXPECT_EQ(FileText(), kTimeCodeHead);
}

TEST_F(DynamicNum, HalfAutomaticPatternIsStoredAndRefused) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = OwnNewObject(new TdjsonDynamicDataNumImpl(Key()));
  for (bool const markIsFirst : {true, false}) {
    SK_PluginResult result;
    node->setNumberPattern(markIsFirst ? kAutomaticDigits : 4, markIsFirst ? 4 : kAutomaticDigits, 1, &result);
    EXPECT_EQ(result.mErrorCode, 2006);
    ns_sensor::SK_NumberPattern const& pattern = node->GetNumStringProperties().pattern;
    EXPECT_EQ(pattern.digitsInteger, markIsFirst ? kAutomaticDigits : 4);
    EXPECT_EQ(pattern.digitsDecimal, markIsFirst ? 4 : kAutomaticDigits);
    EXPECT_TRUE(pattern.isSigned);
  }
  EXPECT_FALSE(node->isDirty());
}

struct RangeRow {
  char const* name;
  double legalMin, legalMax, occurringMin, occurringMax;
  int code;
  double wantLegalMin, wantLegalMax, wantOccurringMin, wantOccurringMax;  ///< after 2, -3 and a commit
};
void PrintTo(RangeRow const& row, std::ostream* out) {
  *out << row.name;
}
class RangeOfNum : public DynamicNum, public testing::WithParamInterface<RangeRow> {};

TEST_P(RangeOfNum, IsTakenFromTheSamplesWhereItHasTheMarks) {
  UseTimeCode();
  RangeRow const& row = GetParam();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = OwnNewObject(new TdjsonDynamicDataNumImpl(Key()));
  SK_PluginResult result;
  node->setDynamicDataInfo("Arm", "arm", "Sarm", 0, 1, 0, "", &result);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &result);
  node->setNumberRange(row.legalMin, row.legalMax, row.occurringMin, row.occurringMax, &result);
  EXPECT_EQ(result.mErrorCode, row.code);
  EXPECT_TRUE(Add(*node, TimeCode(0), result, 2));
  EXPECT_TRUE(Add(*node, TimeCode(1), result, -3));
  // The legal pair is not touched before the commit.
  ns_sensor::SK_NumberRange const& range = node->GetNumStringProperties().range;
  EXPECT_EQ(range.legal.min, row.legalMin);
  EXPECT_EQ(range.legal.max, row.legalMax);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(range.legal.min, row.wantLegalMin);
  EXPECT_EQ(range.legal.max, row.wantLegalMax);
  EXPECT_EQ(range.occurring.min, row.wantOccurringMin);
  EXPECT_EQ(range.occurring.max, row.wantOccurringMax);
}

constexpr RangeRow kRangeRows[] = {
    {"AllStated", -9, 9, -8, 8, 0, -9, 9, -8, 8},
    {"AllAutomatic", kMinMark, kMaxMark, kMinMark, kMaxMark, 0, -3, 2, -3, 2},
    {"OccurringAutomatic", -9, 9, kMinMark, kMaxMark, 0, -9, 9, -3, 2},
    {"LegalAutomatic", kMinMark, kMaxMark, -8, 8, 0, -8, 8, -8, 8},
    {"OnlyOccurringMinMarked", -9, 9, kMinMark, 8, 2007, -9, 9, kMinMark, 8},
    {"OnlyOccurringMaxMarked", -9, 9, -8, kMaxMark, 2007, -9, 9, -8, kMaxMark},
    {"OnlyLegalMinMarked", kMinMark, 9, -8, 8, 2008, kMinMark, 9, -8, 8},
    {"OnlyLegalMaxMarked", -9, kMaxMark, kMinMark, kMaxMark, 2008, -9, kMaxMark, -3, 2},
    // Occurring is looked at first, and then nothing of legal.
    {"BothHalfMarked", kMinMark, 9, kMinMark, 8, 2007, kMinMark, 9, kMinMark, 8},
    {"OccurringHalfMarkedLegalAutomatic", kMinMark, kMaxMark, -8, kMaxMark, 2007, kMinMark, kMaxMark, -8, kMaxMark},
};
INSTANTIATE_TEST_SUITE_P(Marks, RangeOfNum, testing::ValuesIn(kRangeRows),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(DynamicNum, AutomaticRangeWithoutSamplesKeepsItsMarks) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = Make<TdjsonDynamicDataNumImpl>();
  EXPECT_TRUE(node->Commit());
  ns_sensor::SK_NumberRange const& range = node->GetNumStringProperties().range;
  EXPECT_EQ(range.occurring.min, kMinMark);
  EXPECT_EQ(range.occurring.max, kMaxMark);
  EXPECT_EQ(range.legal.min, kMinMark);
  EXPECT_EQ(range.legal.max, kMaxMark);
}

TEST_F(DynamicNum, NotANumberChangesNoRange) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = Make<TdjsonDynamicDataNumImpl>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result, std::nan("")));
  EXPECT_EQ(node->GetNumStringProperties().range.occurring.min, kMinMark);
  EXPECT_EQ(node->GetNumStringProperties().range.occurring.max, kMaxMark);
}

TEST_F(DynamicNum, SampleThatIsNotTakenLeavesNoTrace) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = Make<TdjsonDynamicDataNumImpl>();
  SK_PluginResult result;
  EXPECT_TRUE(Add(*node, TimeCode(0), result, 5));
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{0, 0, 0, 1000}, result, -123.45));
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{100, 0, 0, 0}, result, -123.45));
  EXPECT_FALSE(Add(*node, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 0}, result, -123.45));
  EXPECT_EQ(result.mErrorCode, 0);
  ns_sensor::SK_NumberProperties const& properties = node->GetNumStringProperties();
  EXPECT_EQ(properties.pattern.digitsInteger, 1u);
  EXPECT_EQ(properties.pattern.digitsDecimal, 0u);
  EXPECT_FALSE(properties.pattern.isSigned);
  EXPECT_EQ(properties.range.occurring.min, 5);
  EXPECT_EQ(properties.range.occurring.max, 5);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(FileText(), SetText({"5"}));
}

TEST_F(DynamicNum, CapitalisedFormsTakeSamplesOfBothKinds) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const withTimeCode = Make<TdjsonDynamicDataNumImpl>("a");
  EXPECT_TRUE(withTimeCode->AddSample(SK_DateTimeSMPTE{0, 0, 0, 0}, 1.0));
  EXPECT_FALSE(withTimeCode->AddSample(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 5, 30, 7}, 1.0));
  EXPECT_FALSE(withTimeCode->AddSampleUTC(2020, 1, 2, 3, 4, 5, '+', 5, 30, 7, 1.0));
  UseUTC(2, false);
  std::shared_ptr<TdjsonDynamicDataNumImpl> const withUTC = Make<TdjsonDynamicDataNumImpl>("b");
  EXPECT_TRUE(withUTC->AddSample(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 6, 30, 7}, 2.0));
  EXPECT_TRUE(withUTC->AddSampleUTC(2021, 11, 12, 13, 14, 15, '-', 0, 45, 89, 3.0));
  EXPECT_FALSE(withUTC->AddSample(SK_DateTimeSMPTE{0, 0, 0, 0}, 1.0));
  EXPECT_TRUE(withUTC->Commit());
  EXPECT_EQ(FileText(),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,)"
            R"("utcInfo":{"precisionLength":2,"isGMT":false}},"dataDynamicSamples":[{"sampleSetID":"Sb","samples":[)"
            R"({"time":"2020-01-02T03:04:05.07+06:30","value":"2"},)"
            R"({"time":"2021-11-12T13:14:15.89-00:45","value":"3"}]})");
}

TEST_F(DynamicNum, MirrorsPassEverythingAndThrow) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = OwnNewObject(new TdjsonDynamicDataNumImpl(Key()));
  ns_sensor::SK_NumberPattern pattern;
  pattern.digitsInteger = 4;
  pattern.digitsDecimal = 2;
  pattern.isSigned = true;
  node->SetNumberPattern(pattern);
  ns_sensor::SK_NumberRange range;
  range.legal = {-4, 4};
  range.occurring = {-3, 3};
  node->SetNumberRange(range);
  ns_sensor::SK_NumberProperties const& stored = node->GetNumStringProperties();
  EXPECT_EQ(stored.pattern.digitsInteger, 4u);
  EXPECT_EQ(stored.pattern.digitsDecimal, 2u);
  EXPECT_TRUE(stored.pattern.isSigned);
  EXPECT_EQ(stored.range.legal.min, -4);
  EXPECT_EQ(stored.range.legal.max, 4);
  EXPECT_EQ(stored.range.occurring.min, -3);
  EXPECT_EQ(stored.range.occurring.max, 3);
  pattern.digitsDecimal = kAutomaticDigits;
  ExpectError([&] { node->SetNumberPattern(pattern); }, 2006, kConverterFailed);
  range.occurring = {kMinMark, 3};
  ExpectError([&] { node->SetNumberRange(range); }, 2007, kConverterFailed);
  range.occurring = {-3, 3};
  range.legal = {kMinMark, 3};
  ExpectError([&] { node->SetNumberRange(range); }, 2008, kConverterFailed);
}

ns_sensor::SK_Time Seconds(std::int32_t value, std::uint32_t scale) {
  ns_sensor::SK_Time time;
  time.value = value;
  time.scale = scale;
  return time;
}

TEST_F(DynamicNum, ReaderGivesBackWhatWasWritten) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumImpl> const node = Make<TdjsonDynamicDataNumImpl>();
  std::vector<double> const values = {0, -12.25, 1000, 0.0625, 3.5, -0.5};
  for (std::size_t index = 0; index < values.size(); ++index) {
    EXPECT_TRUE(node->AddSample(TimeCode(static_cast<int>(index) * 5), values[index]));
  }
  EXPECT_TRUE(node->Commit());
  mRoot->AddDynamicData(node);
  EXPECT_TRUE(mRoot->Commit());

  ns_sensor::SensorFileHandlerImpl reader(mPath.c_str(), mPath.size(), mPath.c_str(), mPath.size(),
                                          SK_NAMESPACE_INT::kNotTdjson);
  ns_sensor::SK_DynamicDataInfo info;
  reader.GetDynamicDataInfo("[0]", &info);
  EXPECT_EQ(info.fields.matchName, "arm");
  EXPECT_EQ(info.fields.sampleCount, values.size());
  auto const& properties = boost::get<ns_sensor::SK_NumberProperties>(info.dataType.properties.value);
  EXPECT_EQ(properties.pattern.digitsInteger, 4u);
  EXPECT_EQ(properties.pattern.digitsDecimal, 4u);
  EXPECT_TRUE(properties.pattern.isSigned);
  EXPECT_EQ(properties.range.occurring.min, -12.25);
  EXPECT_EQ(properties.range.occurring.max, 1000);
  EXPECT_EQ(properties.range.legal.min, -12.25);
  EXPECT_EQ(properties.range.legal.max, 1000);
  std::vector<ns_sensor::SK_DynamicDataSample> samples;
  reader.GetDynamicSamples("Sarm", Seconds(0, 1), Seconds(1, 1), &samples);
  ASSERT_EQ(samples.size(), values.size());
  for (std::size_t index = 0; index < values.size(); ++index) {
    EXPECT_EQ(boost::get<double>(samples[index].value.value), values[index]);
    // Five frames of a twenty-fifth of a second each.
    EXPECT_EQ(std::int64_t{samples[index].time.value} * 5,
              static_cast<std::int64_t>(index) * samples[index].time.scale);
  }
}

}  // namespace
}  // namespace SK_PLUGIN
