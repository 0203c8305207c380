#include "TdjsonDynamicDataNumArrImpl.h"

#include <gmock/gmock.h>

#include <iterator>
#include <ostream>
#include <string>
#include <string_view>
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
using testing::ElementsAre;

class DynamicNumArr : public DynamicNodes {
 protected:
  /// Without pattern and ranges.
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> MakeBare(unsigned long long count) {
    std::shared_ptr<TdjsonDynamicDataNumArrImpl> node = OwnNewObject(new TdjsonDynamicDataNumArrImpl(Key()));
    node->setDynamicDataInfo("Arm", "arm", "Sarm", 0, 1, 0, "", &mResult);
    node->setArrCount(count, &mResult);
    EXPECT_EQ(mResult.mErrorCode, 0);
    return node;
  }
  /// What stands behind the head: one set with these arrays at 00:00:00:00 and the frames behind it.
  static std::string SetText(std::vector<std::string> const& arrays) {
    std::string text = kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)");
    for (std::size_t index = 0; index < arrays.size(); ++index) {
      text += (index == 0 ? "" : ",") + std::string(R"({"time":"00:00:00:0)") + std::to_string(index) +
              R"(","value":[)" + arrays[index] + "]}";
    }
    return text + "]}";
  }

  SK_PluginResult mResult;
};

TEST_F(DynamicNumArr, PatternHoldsForAllElementsAndEachHasItsRange) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = Make<TdjsonDynamicDataNumArrImpl>();
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {1.5, -20, 3}));
  EXPECT_TRUE(Add(*node, TimeCode(1), mResult, {0.25, 7, 3}));
  ns_sensor::SK_NumberArrayProperties const& properties = node->GetNumArrayProperties();
  EXPECT_EQ(properties.pattern.digitsInteger, 2u);
  EXPECT_EQ(properties.pattern.digitsDecimal, 2u);
  EXPECT_TRUE(properties.pattern.isSigned);
  ASSERT_EQ(properties.arrayRanges.size(), 3u);
  double const expected[3][2] = {{0.25, 1.5}, {-20, 7}, {3, 3}};
  for (std::size_t element = 0; element < 3; ++element) {
    EXPECT_EQ(properties.arrayRanges[element].occurring.min, expected[element][0]);
    EXPECT_EQ(properties.arrayRanges[element].occurring.max, expected[element][1]);
    EXPECT_EQ(properties.arrayRanges[element].legal.min, kMinMark);
    EXPECT_EQ(properties.arrayRanges[element].legal.max, kMaxMark);
  }
  EXPECT_TRUE(node->Commit());
  for (std::size_t element = 0; element < 3; ++element) {
    EXPECT_EQ(properties.arrayRanges[element].legal.min, expected[element][0]);
    EXPECT_EQ(properties.arrayRanges[element].legal.max, expected[element][1]);
  }
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(FileText(), SetText({R"("+01.50","-20.00","+03.00")", R"("+00.25","+07.00","+03.00")"}));
}

// Arrays that wait at once in their buffer and those that are too long for that, with elements of all kinds; through
// the disk and in several pieces.
class ManyArrays : public DynamicNumArr, public testing::WithParamInterface<int> {};

TEST_P(ManyArrays, ArePaddedToTheirPattern) {
  UseTimeCode();
  std::size_t const size = static_cast<std::size_t>(GetParam());
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(size);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  senmark_test::Random random(28);
  senmark_test::StreamText stream;
  ns_sensor::SK_NumberPattern pattern;
  pattern.digitsInteger = 0;
  pattern.digitsDecimal = 0;
  std::vector<std::vector<std::string>> arrays;
  for (std::size_t i = 0; i != 140'000 / size; ++i) {
    std::vector<double> values;
    arrays.emplace_back();
    for (std::size_t element = 0; element != size; ++element) {
      std::size_t const kind = random() % 4 == 0 ? random() % std::size(senmark_test::kNumberKinds) : 3;
      values.push_back(senmark_test::kNumberKinds[kind].make(random) * (random() % 3 == 0 ? -1 : 1));
      arrays.back().push_back(stream.Of(values.back()));
      WidenNumberPattern(pattern, true, values.back(), arrays.back().back());
    }
    ASSERT_TRUE(Add(*node, TimeCode(static_cast<int>(i % 1000)), mResult, values));
  }
  EXPECT_NE(mFolder.TempNames(), "");
  std::string expected = kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)");
  for (std::size_t i = 0; i != arrays.size(); ++i) {
    SK_DateTimeSMPTE const time = TimeCode(static_cast<int>(i % 1000));
    std::string timeText;
    serializeTimeSMPTE(timeText, time.hours, time.minutes, time.seconds, time.frames, 2);
    expected += (i == 0 ? "" : ",") + (R"({"time":")" + timeText) + R"(","value":[)";
    for (std::string const& text : arrays[i]) {
      expected += &text == &arrays[i].front() ? "" : ",";
      expected += '"' + senmark_test::PaddedStepByStep(text, pattern) + '"';
    }
    expected += "]}";
  }
  expected += "]}";
  ASSERT_GT(expected.size(), 4u << 20U);
  EXPECT_TRUE(node->Commit());
  EXPECT_TRUE(FileText() == expected);
}

INSTANTIATE_TEST_SUITE_P(Elements, ManyArrays, testing::Values(1, 3, 4, 5, 40));

std::string Sevens(std::size_t count) {
  std::string text = R"("7")";
  for (std::size_t i = 1; i < count; ++i) {
    text += R"(,"7")";
  }
  return text;
}

// What counts is the length of the elements' texts with their commas, not what they take while they wait.
class LongArrays : public DynamicNumArr, public testing::WithParamInterface<int> {};

TEST_P(LongArrays, AreKeptUpTo65535BytesOfText) {
  UseTimeCode();
  auto const size = static_cast<std::size_t>(GetParam());
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(size);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  for (int i = 0; i != 3; ++i) {
    EXPECT_TRUE(Add(*node, TimeCode(i), mResult, std::vector<double>(size, 7)));
  }
  EXPECT_TRUE(node->Commit());
  EXPECT_TRUE(FileText() == SetText({Sevens(size), Sevens(size), Sevens(size)}));
}

INSTANTIATE_TEST_SUITE_P(Elements, LongArrays, testing::Values(2621, 2622, 10923, 32768));

// Of 65,537 bytes one is left, and the next sample is read from behind that.
TEST_F(DynamicNumArr, ArrayBeyond65535BytesOfTextTakesThoseBehindItAlong) {
  UseTimeCode();
  constexpr std::size_t kSize = 32769;
  constexpr std::size_t kAstray = '7' | ',' << 8;
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(2);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {1, 2}));
  node->setArrCount(kSize, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(1), mResult, std::vector<double>(kSize, 7)));
  node->setArrCount(2, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(2), mResult, {3, 4}));
  EXPECT_TRUE(node->Commit());
  std::string expected = SetText({R"("1","2")", R"("7")"});
  expected.resize(expected.size() - 2);
  expected += R"(,{"time":",7,7,7,7,7,","value":[)" + Sevens((kAstray + 1) / 2) + "]}]}";
  EXPECT_TRUE(FileText() == expected);
}

// What is read behind such an array lies across the records of short ones, which are texts then too.
TEST_F(DynamicNumArr, ShortArraysBehindALostLengthAreReadAsTexts) {
  UseTimeCode();
  constexpr std::size_t kSize = 32769;
  constexpr std::size_t kHead = 11 + 2;  // a time, and the length of the value
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(kSize);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, std::vector<double>(kSize, 7)));
  std::string records = std::string("00:00:00:00\x01\0", kHead) + '7';
  for (std::size_t i = 1; i != kSize; ++i) {
    records += ",7";
  }
  node->setArrCount(2, &mResult);
  for (int i = 0; i != 1000; ++i) {
    EXPECT_TRUE(Add(*node, TimeCode(1), mResult, {3, 4}));
    records += std::string("00:00:00:01\x03\0", kHead) + "3,4";
  }
  EXPECT_TRUE(node->Commit());
  std::string expected = kTimeCodeHead + std::string(R"(,"dataDynamicSamples":[{"sampleSetID":"Sarm","samples":[)");
  std::string_view left = records;
  int count = 0;
  for (; left.size() >= kHead; ++count) {
    std::size_t const length = static_cast<unsigned char>(left[11]) | static_cast<unsigned char>(left[12]) << 8U;
    if (left.size() < kHead + length) {
      break;
    }
    expected += (count == 0 ? "" : ",") + std::string(R"({"time":")").append(left.substr(0, 11)) + R"(","value":[")";
    for (char const character : left.substr(kHead, length)) {
      expected += character == ',' ? R"(",")" : std::string(1, character);
    }
    expected += R"("]})";
    left.remove_prefix(kHead + length);
  }
  EXPECT_GE(count, 7) << "nothing lies across records";
  EXPECT_TRUE(FileText() == expected + "]}");
}

// Digits and sign are those of all elements, however long the arrays are.
TEST_F(DynamicNumArr, LongArraysWidenThePattern) {
  UseTimeCode();
  constexpr std::size_t kSize = 3000;
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(kSize);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  std::vector<double> values(kSize, 7);
  values[1] = -0.25;
  values[2] = 100;
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, values));
  EXPECT_EQ(node->GetNumArrayProperties().pattern.digitsInteger, 3u);
  EXPECT_EQ(node->GetNumArrayProperties().pattern.digitsDecimal, 2u);
  EXPECT_TRUE(node->GetNumArrayProperties().pattern.isSigned);
  EXPECT_TRUE(node->Commit());
  std::string expected = R"("+007.00","-000.25","+100.00")";
  for (std::size_t i = 3; i != kSize; ++i) {
    expected += R"(,"+007.00")";
  }
  EXPECT_TRUE(FileText() == SetText({expected}));
}

TEST_F(DynamicNumArr, ArrayWithoutElementsIsAHalfEmptySample) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(0);
  node->setNumberPattern(1, 0, 0, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {}));
  senmark_test::ExpectWriterError([&] { node->Commit(); }, 2014);
}

TEST_F(DynamicNumArr, StatedPatternAndRangesStay) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(2);
  node->setNumberPattern(3, 1, 1, &mResult);
  node->setNumberRange(-9, 9, -8, 8, &mResult);
  node->setNumberRange(-7, 7, -6, 6, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {100, 0.5}));
  EXPECT_TRUE(node->Commit());
  ns_sensor::SK_NumberArrayProperties const& properties = node->GetNumArrayProperties();
  EXPECT_EQ(properties.pattern.digitsInteger, 3u);
  EXPECT_EQ(properties.pattern.digitsDecimal, 1u);
  ASSERT_EQ(properties.arrayRanges.size(), 2u);
  EXPECT_EQ(properties.arrayRanges[0].occurring.max, 8);
  EXPECT_EQ(properties.arrayRanges[0].legal.max, 9);
  EXPECT_EQ(properties.arrayRanges[1].occurring.min, -6);
  EXPECT_EQ(properties.arrayRanges[1].legal.min, -7);
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(FileText(), SetText({R"("+100.0","+000.5")"}));
}

TEST_F(DynamicNumArr, PatternThatIsStatedBehindTheMarksIsWidened) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(2);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  node->setNumberPattern(1, 2, 0, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {100, 0.5}));
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(FileText(), SetText({R"("100.00","000.50")"}));
}

TEST_F(DynamicNumArr, LegalRangesAloneCanBeAutomatic) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(1);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  node->setNumberRange(kMinMark, kMaxMark, -8, 8, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {100}));
  EXPECT_TRUE(node->Commit());
  ns_sensor::SK_NumberRange const& range = node->GetNumArrayProperties().arrayRanges[0];
  EXPECT_EQ(range.occurring.max, 8);
  EXPECT_EQ(range.legal.min, -8);
  EXPECT_EQ(range.legal.max, 8);
}

TEST_F(DynamicNumArr, ElementsWithoutARangeHaveNone) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(3);
  node->setNumberPattern(kAutomaticDigits, kAutomaticDigits, 0, &mResult);
  node->setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &mResult);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {1, 20, 300}));
  EXPECT_TRUE(node->Commit());
  ASSERT_EQ(node->GetNumArrayProperties().arrayRanges.size(), 1u);
  EXPECT_EQ(node->GetNumArrayProperties().arrayRanges[0].occurring.max, 1);
  EXPECT_EQ(FileText(), SetText({R"("001","020","300")"}));
}

TEST_F(DynamicNumArr, WrongCountOfElementsIsNotTakenAndTheNextSampleStartsEmpty) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = Make<TdjsonDynamicDataNumArrImpl>();
  EXPECT_FALSE(Add(*node, TimeCode(0), mResult, {-10, 20.5}));
  // With the two from before it would have three elements.
  EXPECT_FALSE(Add(*node, TimeCode(0), mResult, {-10}));
  EXPECT_FALSE(Add(*node, TimeCode(0), mResult, {-10, 20.5, 30, 40}));
  EXPECT_FALSE(Add(*node, TimeCode(0), mResult, {}));
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {1, 2, 3}));
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_FALSE(node->isDirty());
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(FileText(), SetText({R"("1","2","3")"}));
}

TEST_F(DynamicNumArr, TimeThatIsNotTakenDropsTheElements) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = Make<TdjsonDynamicDataNumArrImpl>();
  EXPECT_FALSE(Add(*node, SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 0}, mResult, {-10, 20.5, 30}));
  EXPECT_FALSE(node->addTimeSMPTE(0, 0, 0, 0, &mResult));
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{0, 0, 0, 1000}, mResult, {-10, 20.5, 30}));
  EXPECT_FALSE(node->addTimeSMPTE(0, 0, 0, 0, &mResult));
  EXPECT_FALSE(Add(*node, SK_DateTimeSMPTE{100, 0, 0, 0}, mResult, {-10, 20.5, 30}));
  EXPECT_FALSE(node->addTimeSMPTE(0, 0, 0, 0, &mResult));
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {1, 2, 3}));
  ns_sensor::SK_NumberArrayProperties const& properties = node->GetNumArrayProperties();
  EXPECT_EQ(properties.pattern.digitsInteger, 1u);
  EXPECT_EQ(properties.pattern.digitsDecimal, 0u);
  EXPECT_FALSE(properties.pattern.isSigned);
  EXPECT_EQ(properties.arrayRanges[0].occurring.min, 1);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(FileText(), SetText({R"("1","2","3")"}));
}

TEST_F(DynamicNumArr, SampleIsOverAfterItsTime) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = Make<TdjsonDynamicDataNumArrImpl>();
  EXPECT_TRUE(Add(*node, TimeCode(0), mResult, {1, 2, 3}));
  EXPECT_FALSE(node->addTimeSMPTE(0, 0, 0, 1, &mResult));
  EXPECT_TRUE(Add(*node, TimeCode(1), mResult, {4, 5, 6}));
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(FileText(), SetText({R"("1","2","3")", R"("4","5","6")"}));
}

struct NamesRow {
  char const* name;
  std::vector<char const*> given;
  std::vector<std::string> wanted;
};
void PrintTo(NamesRow const& row, std::ostream* out) {
  *out << row.name;
}
class NamesOfElements : public DynamicNumArr, public testing::WithParamInterface<NamesRow> {};

TEST_P(NamesOfElements, AreMadeAtTheCommitOnlyIfThereAreNone) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = Make<TdjsonDynamicDataNumArrImpl>();
  for (char const* name : GetParam().given) {
    node->setDisplayName(name, &mResult);
  }
  EXPECT_EQ(node->GetNumArrayProperties().arrayDisplayNames.size(), GetParam().given.size());
  node->setDynamicDataInfo("A\"m", "arm", "Sarm", 0, 1, 0, "", &mResult);
  EXPECT_TRUE(node->Commit());
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(node->GetNumArrayProperties().arrayDisplayNames, GetParam().wanted);
}

NamesRow const kNamesRows[] = {
    {"None", {}, {R"(A\"m_0)", R"(A\"m_1)", R"(A\"m_2)"}},
    {"All", {"x", "y\n", "\"z"}, {"x", R"(y\n)", R"(\"z)"}},
    {"Fewer", {"x"}, {"x"}},
    {"Empty", {""}, {""}},
};
INSTANTIATE_TEST_SUITE_P(Given, NamesOfElements, testing::ValuesIn(kNamesRows),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(DynamicNumArr, HalfAutomaticPatternIsStoredAndRefused) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(2);
  node->setNumberPattern(kAutomaticDigits, 4, 1, &mResult);
  EXPECT_EQ(mResult.mErrorCode, 2006);
  EXPECT_EQ(node->GetNumArrayProperties().pattern.digitsInteger, kAutomaticDigits);
  EXPECT_EQ(node->GetNumArrayProperties().pattern.digitsDecimal, 4u);
  EXPECT_TRUE(node->GetNumArrayProperties().pattern.isSigned);
  SK_PluginResult other;
  node->setNumberPattern(4, kAutomaticDigits, 0, &other);
  EXPECT_EQ(other.mErrorCode, 2006);
}

constexpr double kStated = 9;
struct RangesRow {
  char const* name;
  ns_sensor::SK_NumberMinMax firstOccurring, firstLegal, secondOccurring, secondLegal;
  int firstCode, secondCode;
};
void PrintTo(RangesRow const& row, std::ostream* out) {
  *out << row.name;
}
class RangesOfElements : public DynamicNumArr, public testing::WithParamInterface<RangesRow> {};

TEST_P(RangesOfElements, AreAllAutomaticOrNoneIs) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(2);
  RangesRow const& row = GetParam();
  SK_PluginResult first;
  node->setNumberRange(row.firstLegal.min, row.firstLegal.max, row.firstOccurring.min, row.firstOccurring.max, &first);
  EXPECT_EQ(first.mErrorCode, row.firstCode);
  SK_PluginResult second;
  node->setNumberRange(row.secondLegal.min, row.secondLegal.max, row.secondOccurring.min, row.secondOccurring.max,
                       &second);
  EXPECT_EQ(second.mErrorCode, row.secondCode);
  // What was refused is there all the same.
  ASSERT_EQ(node->GetNumArrayProperties().arrayRanges.size(), 2u);
  EXPECT_EQ(node->GetNumArrayProperties().arrayRanges[1].legal.min, row.secondLegal.min);
  EXPECT_EQ(node->GetNumArrayProperties().arrayRanges[1].occurring.max, row.secondOccurring.max);
  EXPECT_FALSE(node->isDirty());
}

constexpr ns_sensor::SK_NumberMinMax kMarks = {kMinMark, kMaxMark};
constexpr ns_sensor::SK_NumberMinMax kBoth = {-kStated, kStated};
constexpr ns_sensor::SK_NumberMinMax kHalf = {kMinMark, kStated};
constexpr ns_sensor::SK_NumberMinMax kOtherHalf = {-kStated, kMaxMark};
constexpr RangesRow kRangesRows[] = {
    {"AllStated", kBoth, kBoth, kBoth, kBoth, 0, 0},
    {"AllAutomatic", kMarks, kMarks, kMarks, kMarks, 0, 0},
    {"EachKindForItself", kMarks, kBoth, kMarks, kBoth, 0, 0},
    {"OccurringAutomaticThenStated", kMarks, kMarks, kBoth, kMarks, 0, 2007},
    {"OccurringStatedThenAutomatic", kBoth, kMarks, kMarks, kMarks, 0, 2007},
    {"LegalAutomaticThenStated", kMarks, kMarks, kMarks, kBoth, 0, 2008},
    {"LegalStatedThenAutomatic", kMarks, kBoth, kMarks, kMarks, 0, 2008},
    {"OccurringBeforeLegal", kBoth, kBoth, kMarks, kMarks, 0, 2007},
    {"OccurringHalfAutomatic", kHalf, kBoth, kOtherHalf, kBoth, 2007, 2007},
    {"LegalHalfAutomatic", kBoth, kHalf, kBoth, kOtherHalf, 2008, 2008},
    {"HalfAutomaticAfterAutomatic", kMarks, kMarks, kHalf, kMarks, 0, 2007},
};
INSTANTIATE_TEST_SUITE_P(Marks, RangesOfElements, testing::ValuesIn(kRangesRows),
                         [](auto const& row) { return std::string(row.param.name); });

TEST_F(DynamicNumArr, IsPointIsAFlag) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(2);
  EXPECT_FALSE(node->GetNumArrayProperties().isPoint);
  node->setIsPoint(2, &mResult);
  EXPECT_TRUE(node->GetNumArrayProperties().isPoint);
  node->setIsPoint(0, &mResult);
  EXPECT_FALSE(node->GetNumArrayProperties().isPoint);
  EXPECT_EQ(mResult.mErrorCode, 0);
}

TEST_F(DynamicNumArr, CountHasNoFinishingStep) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(2);
  node->setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &mResult);
  node->setArrCount(3, &mResult);
  EXPECT_EQ(node->GetNumArrayProperties().arraySize, 3u);
  EXPECT_TRUE(node->GetNumArrayProperties().arrayDisplayNames.empty());
  EXPECT_EQ(node->GetNumArrayProperties().arrayRanges[0].legal.min, kMinMark);
}

TEST_F(DynamicNumArr, CapitalisedFormsTakeSamplesOfBothKinds) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const withTimeCode = Make<TdjsonDynamicDataNumArrImpl>("a");
  EXPECT_TRUE(withTimeCode->AddSample(SK_DateTimeSMPTE{0, 0, 0, 0}, {1, 2, 3}));
  EXPECT_FALSE(withTimeCode->AddSample(SK_DateTimeSMPTE{0, 0, 0, 0}, {1, 2}));
  EXPECT_FALSE(withTimeCode->AddSample(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 5, 30, 7}, {1, 2, 3}));
  // Elements that wait already are part of the sample.
  EXPECT_TRUE(withTimeCode->AddElement(7));
  EXPECT_TRUE(withTimeCode->AddSample(SK_DateTimeSMPTE{0, 0, 0, 1}, {8, 9}));
  UseUTC(2, false);
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const withUTC = Make<TdjsonDynamicDataNumArrImpl>("b");
  EXPECT_TRUE(withUTC->AddSample(SK_DateTimeUTC{2021, 11, 12, 13, 14, 15, '-', 16, 45, 89}, {1, 2, 3}));
  EXPECT_FALSE(withUTC->AddSample(SK_DateTimeSMPTE{0, 0, 0, 0}, {1, 2, 3}));
  EXPECT_TRUE(withTimeCode->Commit());
  EXPECT_EQ(withTimeCode->GetSampleCount(), 2u);
  EXPECT_TRUE(withUTC->Commit());
  EXPECT_EQ(FileText(),
            R"({"version":"tdjson2.0.0","dynamicSamplesPresentB":true,"dynamicDataInfo":{"useTimecodeB":false,)"
            R"("utcInfo":{"precisionLength":2,"isGMT":false}},"dataDynamicSamples":[{"sampleSetID":"Sa","samples":[)"
            R"({"time":"00:00:00:00","value":["1","2","3"]},{"time":"00:00:00:01","value":["7","8","9"]}]},)"
            R"({"sampleSetID":"Sb","samples":[{"time":"2021-11-12T13:14:15.89-16:45","value":["1","2","3"]}]})");
}

TEST_F(DynamicNumArr, MirrorsPassEverythingAndThrow) {
  UseTimeCode();
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = MakeBare(0);
  ns_sensor::SK_NumberPattern pattern;
  pattern.digitsInteger = 4;
  pattern.digitsDecimal = 2;
  pattern.isSigned = true;
  node->SetNumberPattern(pattern);
  ns_sensor::SK_NumberRange range;
  range.legal = {-4, 4};
  range.occurring = {-3, 3};
  node->SetNumberRange(range);
  node->SetArrCount(2);
  node->SetIsPoint(true);
  node->SetDisplayName("x\"");
  ns_sensor::SK_NumberArrayProperties const& stored = node->GetNumArrayProperties();
  EXPECT_EQ(stored.pattern.digitsInteger, 4u);
  EXPECT_EQ(stored.pattern.digitsDecimal, 2u);
  EXPECT_TRUE(stored.pattern.isSigned);
  ASSERT_EQ(stored.arrayRanges.size(), 1u);
  EXPECT_EQ(stored.arrayRanges[0].legal.min, -4);
  EXPECT_EQ(stored.arrayRanges[0].legal.max, 4);
  EXPECT_EQ(stored.arrayRanges[0].occurring.min, -3);
  EXPECT_EQ(stored.arrayRanges[0].occurring.max, 3);
  EXPECT_EQ(stored.arraySize, 2u);
  EXPECT_TRUE(stored.isPoint);
  EXPECT_THAT(stored.arrayDisplayNames, ElementsAre(R"(x\")"));
  pattern.digitsInteger = kAutomaticDigits;
  ExpectError([&] { node->SetNumberPattern(pattern); }, 2006, kConverterFailed);
  range.occurring = {kMinMark, 3};
  ExpectError([&] { node->SetNumberRange(range); }, 2007, kConverterFailed);
  range.occurring = {-3, 3};
  range.legal = {-3, kMaxMark};
  ExpectError([&] { node->SetNumberRange(range); }, 2008, kConverterFailed);
}

TEST_F(DynamicNumArr, ReaderGivesBackWhatWasWritten) {
  UseUTC(3, false);
  std::shared_ptr<TdjsonDynamicDataNumArrImpl> const node = Make<TdjsonDynamicDataNumArrImpl>();
  node->SetIsPoint(true);
  std::vector<std::vector<double>> const values = {{0, -12.25, 1000}, {0.0625, 3.5, -0.5}, {7, 8, 9}};
  for (std::size_t index = 0; index < values.size(); ++index) {
    SK_DateTimeUTC const time{2020, 2, 28, 23, 59, 59, '+', 2, 30, static_cast<std::int32_t>(index) * 250};
    EXPECT_TRUE(node->AddSample(time, values[index]));
  }
  EXPECT_TRUE(node->Commit());
  mRoot->AddDynamicData(node);
  EXPECT_TRUE(mRoot->Commit());

  ns_sensor::SensorFileHandlerImpl reader(mPath.c_str(), mPath.size(), mPath.c_str(), mPath.size(),
                                          SK_NAMESPACE_INT::kNotTdjson);
  ns_sensor::SK_DynamicDataInfo info;
  reader.GetDynamicDataInfo("[0]", &info);
  EXPECT_EQ(info.fields.sampleCount, values.size());
  auto const& properties = boost::get<ns_sensor::SK_NumberArrayProperties>(info.dataType.properties.value);
  EXPECT_EQ(properties.arraySize, 3u);
  EXPECT_TRUE(properties.isPoint);
  EXPECT_THAT(properties.arrayDisplayNames, ElementsAre("Arm_0", "Arm_1", "Arm_2"));
  ASSERT_EQ(properties.arrayRanges.size(), 3u);
  EXPECT_EQ(properties.arrayRanges[1].occurring.min, -12.25);
  EXPECT_EQ(properties.arrayRanges[1].legal.max, 8);
  std::vector<ns_sensor::SK_DynamicDataSample> samples;
  ns_sensor::SK_Time start;
  ns_sensor::SK_Time end;
  end.value = 1;
  reader.GetDynamicSamples("Sarm", start, end, &samples);
  ASSERT_EQ(samples.size(), values.size());
  for (std::size_t index = 0; index < values.size(); ++index) {
    EXPECT_EQ(boost::get<std::vector<double>>(samples[index].value.value), values[index]);
    // A quarter of a second each.
    EXPECT_EQ(std::int64_t{samples[index].time.value} * 4,
              static_cast<std::int64_t>(index) * samples[index].time.scale);
  }
}

}  // namespace
}  // namespace SK_PLUGIN
