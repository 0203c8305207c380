#include "SK_SampleDataProcessor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "SK_Exception.h"
#include "SK_SampleBlock.h"
#include "ScratchSamples.h"

namespace SK_NAMESPACE_INT {
namespace {

using ns_sensor::SK_DynamicDataSample;
using senmark_test::ArrayWidths;
using senmark_test::NumberAt;
using senmark_test::NumberWidths;
using senmark_test::PaddedWidths;
using senmark_test::ScratchSamples;
using senmark_test::ThirtyFrames;
using senmark_test::TimeFirst;
using senmark_test::ValueFirst;

std::string TextOf(SK_DynamicDataSample const& sample) {
  std::string text = std::to_string(sample.time.value) + "/" + std::to_string(sample.time.scale) + "=";
  switch (sample.value.value.which()) {
    case 0: {
      std::string number = std::to_string(boost::get<double>(sample.value.value));
      number.erase(number.find_last_not_of('0') + 1);
      return text + number;
    }
    case 1:
      return text + "'" + boost::get<std::string>(sample.value.value) + "'";
    default:
      for (double const number : boost::get<std::vector<double>>(sample.value.value)) {
        text += std::to_string(number) + ",";
      }
      return text;
  }
}

/// Runs one query in all of its forms and gives what they agree on: the samples, each in `<>`, or the error.
std::string Ask(
    ScratchSamples& samples,
    std::function<unsigned long long(SK_SampleDataProcessor const&, SK_DynamicDataSample*&, bool)> const& asArray,
    std::function<void(SK_SampleDataProcessor const&, SK_SampleBlock&)> const& asBlock) {
  SK_SampleDataProcessor const& processor = samples.Processor();
  auto const outcomeOf = [](auto const& body) -> std::string {
    try {
      return body();
    } catch (ns_sensor::SK_Exception const& error) {
      EXPECT_EQ(error.GetFileOffset(), -1);
      EXPECT_EQ(error.GetFileLineNo(), -1);
      return std::to_string(error.GetErrorCode()) + " " + error.GetLocalizedErrMsg();
    } catch (std::exception const& error) {
      return std::string("std::exception ") + error.what();
    }
  };

  SK_DynamicDataSample untouched;
  SK_DynamicDataSample* array = &untouched;
  std::string const fromArray = outcomeOf([&] {
    unsigned long long const count = asArray(processor, array, false);
    std::string text;
    for (unsigned long long i = 0; i < count; ++i) {
      text += "<" + TextOf(array[i]) + ">";
    }
    EXPECT_EQ(array == nullptr, count == 0);
    delete[] array;
    array = nullptr;
    return text;
  });
  EXPECT_EQ(array, nullptr) << "an array is left behind an error";

  std::string const fromBlock = outcomeOf([&] {
    SK_SampleBlock block;
    asBlock(processor, block);
    std::string text;
    for (std::uint64_t i = 0; i < block.Count(); ++i) {
      SK_DynamicDataSample sample;
      block.CopyTo(i, sample);
      text += "<" + TextOf(sample) + ">";
    }
    return text;
  });
  EXPECT_EQ(fromBlock, fromArray);

  bool const hasSamples = fromArray.empty() || fromArray[0] == '<';
  if (hasSamples) {
    array = &untouched;
    auto const expected = static_cast<unsigned long long>(std::count(fromArray.begin(), fromArray.end(), '<'));
    EXPECT_EQ(asArray(processor, array, true), expected);
    EXPECT_EQ(array, &untouched) << "a count alone touches no array";
  }
  return fromArray;
}

std::string Samples(ScratchSamples& samples, std::string const& id, std::string const& start, std::string const& end) {
  return Ask(
      samples,
      [&](auto const& p, auto*& out, bool countOnly) { return p.GetSamplesData(id, start, end, out, countOnly); },
      [&](auto const& p, auto& block) { p.ReadSamples(id, start, end, block); });
}

std::string Adjacent(ScratchSamples& samples, std::string const& id, std::string const& time) {
  return Ask(
      samples,
      [&](auto const& p, auto*& out, bool countOnly) { return p.GetAdjacentSamples(id, time, out, countOnly); },
      [&](auto const& p, auto& block) { p.ReadAdjacentSamples(id, time, block); });
}

/// "n": one number at 10, 20, 30 and 40 frames.
ScratchSamples FourNumbers() {
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("n", NumberWidths(4),
                 {NumberAt("00:00:00:10", "+1.0"), NumberAt("00:00:00:20", "+2.0"), NumberAt("00:00:01:00", "-3.0"),
                  NumberAt("00:00:01:10", "+4.5")});
  return samples;
}

struct RangeRow {
  char const* name;
  char const* start;
  char const* end;
  char const* expected;
};

class SampleRange : public testing::TestWithParam<RangeRow> {};

TEST_P(SampleRange, HoldsTheseSamples) {
  ScratchSamples samples = FourNumbers();
  EXPECT_EQ(Samples(samples, "n", GetParam().start, GetParam().end), GetParam().expected);
}

RangeRow const kRanges[] = {
    {"FromTimeToTime", "00:00:00:20", "00:00:01:00", "<2/3=2.><1/1=-3.>"},
    {"StartBetweenTakesTheSampleBefore", "00:00:00:19", "00:00:00:20", "<1/3=1.><2/3=2.>"},
    {"EndBetweenTakesTheSampleBefore", "00:00:00:20", "00:00:01:09", "<2/3=2.><1/1=-3.>"},
    {"StartBeforeAllTakesTheFirst", "00:00:00:00", "00:00:00:10", "<1/3=1.>"},
    {"BothBeforeAllTakeTheFirst", "00:00:00:00", "00:00:00:09", "<1/3=1.>"},
    {"BothBehindAllTakeTheLast", "00:00:02:00", "00:00:03:00", "<4/3=4.5>"},
    {"WholeSet", "00:00:00:00", "00:01:00:00", "<1/3=1.><2/3=2.><1/1=-3.><4/3=4.5>"},
    {"EqualTimesGiveOne", "00:00:00:20", "00:00:00:20", "<2/3=2.>"},
    {"EmptyEndGivesOne", "00:00:00:29", "", "<2/3=2.>"},
    {"EmptyStartBeginsAtTheFirst", "", "00:00:00:20", "<1/3=1.><2/3=2.>"},
    {"BothEmptyGiveTheFirst", "", "", "<1/3=1.>"},
};

INSTANTIATE_TEST_SUITE_P(SampleDataProcessor, SampleRange, testing::ValuesIn(kRanges),
                         [](auto const& row) { return std::string(row.param.name); });

struct AdjacentRow {
  char const* name;
  char const* time;
  char const* expected;
};

class AdjacentSamples : public testing::TestWithParam<AdjacentRow> {};

TEST_P(AdjacentSamples, AreThese) {
  ScratchSamples samples = FourNumbers();
  EXPECT_EQ(Adjacent(samples, "n", GetParam().time), GetParam().expected);
}

AdjacentRow const kAdjacent[] = {
    {"BeforeTheStartTheFirst", "00:00:00:09", "<1/3=1.>"},
    {"AtTheStartTheFirstTwo", "00:00:00:10", "<1/3=1.><2/3=2.>"},
    {"BetweenTheTwoAround", "00:00:00:11", "<1/3=1.><2/3=2.>"},
    {"AtASampleThree", "00:00:00:20", "<1/3=1.><2/3=2.><1/1=-3.>"},
    {"JustBeforeTheEndTheLastTwo", "00:00:01:09", "<1/1=-3.><4/3=4.5>"},
    {"AtTheEndTheLastTwo", "00:00:01:10", "<1/1=-3.><4/3=4.5>"},
    {"BehindTheEndTheLast", "00:00:01:11", "<4/3=4.5>"},
};

INSTANTIATE_TEST_SUITE_P(SampleDataProcessor, AdjacentSamples, testing::ValuesIn(kAdjacent),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(SampleDataProcessor, OnlySampleHasNoneAroundItsTime) {
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("o", NumberWidths(1), {NumberAt("00:00:00:10", "7")});
  EXPECT_EQ(Adjacent(samples, "o", "00:00:00:10"), "");
  EXPECT_EQ(Adjacent(samples, "o", "00:00:00:09"), "<1/3=7.>");
  EXPECT_EQ(Adjacent(samples, "o", "00:00:00:11"), "<1/3=7.>");
  EXPECT_EQ(Samples(samples, "o", "00:00:00:10", "00:00:00:10"), "<1/3=7.>");
}

TEST(SampleDataProcessor, EqualTimesCountFromTheirFirst) {
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("e", NumberWidths(1),
                 {NumberAt("00:00:00:00", "0"), NumberAt("00:00:00:10", "1"), NumberAt("00:00:00:10", "2"),
                  NumberAt("00:00:00:10", "3"), NumberAt("00:00:00:20", "4")});
  EXPECT_EQ(Samples(samples, "e", "00:00:00:10", ""), "<1/3=1.>");
  EXPECT_EQ(Samples(samples, "e", "00:00:00:10", "00:00:00:10"), "<1/3=1.>");
  EXPECT_EQ(Samples(samples, "e", "00:00:00:11", ""), "<1/3=3.>");
  EXPECT_EQ(Adjacent(samples, "e", "00:00:00:10"), "<0/1=0.><1/3=1.><1/3=2.>");
}

TEST(SampleDataProcessor, EqualTimesAtBothEndsHaveNoneBeforeTheFirst) {
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("e", NumberWidths(1), {NumberAt("00:00:00:10", "1"), NumberAt("00:00:00:10", "2")});
  EXPECT_EQ(Adjacent(samples, "e", "00:00:00:10"), "");
}

TEST(SampleDataProcessor, BehindEqualTimesAtTheEndComesTheirFirst) {
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("e", NumberWidths(1),
                 {NumberAt("00:00:00:00", "0"), NumberAt("00:00:00:10", "1"), NumberAt("00:00:00:10", "2")});
  EXPECT_EQ(Adjacent(samples, "e", "00:00:00:11"), "<1/3=1.>");
}

TEST(SampleDataProcessor, StartFoundLaterInAnUnsortedSetCountsFromTheFirst) {
  ScratchSamples samples(ThirtyFrames());
  // By hand: the middle, at index 2, holds 10. To the left of it the search looks at 5 and ends there.
  samples.AddSet("u", NumberWidths(1),
                 {NumberAt("00:00:00:10", "0"), NumberAt("00:00:00:05", "1"), NumberAt("00:00:00:10", "2"),
                  NumberAt("00:00:01:00", "3")});
  EXPECT_EQ(Adjacent(samples, "u", "00:00:00:10"), "<1/3=0.><1/6=1.><1/3=2.><1/1=3.>");
}

TEST(SampleDataProcessor, EqualTimesAtTheEndTakeTheSampleBeforeTheirFirst) {
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("e", NumberWidths(1),
                 {NumberAt("00:00:00:00", "0"), NumberAt("00:00:00:10", "1"), NumberAt("00:00:00:10", "2")});
  EXPECT_EQ(Adjacent(samples, "e", "00:00:00:10"), "<0/1=0.><1/3=1.>");
}

TEST(SampleDataProcessor, AllKindsOfValuesComeOut) {
  ScratchSamples samples(ThirtyFrames(), kTdjsonVersion1);
  samples.AddSet("a", ArrayWidths(4, 2), {TimeFirst("00:00:00:00", R"(["+1.5","-2.5"])")});
  samples.AddSet("t", PaddedWidths(5, 1, kTdjsonVersion1),
                 {ValueFirst("00:00:00:15", R"({"length":2,"str":"ab   "})")});
  samples.AddSet("n", NumberWidths(4), {ValueFirst("00:00:01:00", R"("-0.5")")});
  EXPECT_EQ(Samples(samples, "a", "00:00:00:00", ""), "<0/1=1.500000,-2.500000,>");
  EXPECT_EQ(Samples(samples, "t", "00:00:00:00", ""), "<1/2='ab'>");
  EXPECT_EQ(Samples(samples, "n", "00:00:00:00", ""), "<1/1=-0.5>");
}

// The search takes the length for a number without quotes, which is what it is in version 1 alone.
TEST(SampleDataProcessor, PaddedTextsOfVersion2HaveTheirTimeFirst) {
  std::string const value = R"({"length":"2","str":"ab   "})";
  ScratchSamples samples(ThirtyFrames(), kTdjsonVersion2);
  samples.AddSet("t", PaddedWidths(5, 1, kTdjsonVersion2), {TimeFirst("00:00:00:15", value)});
  EXPECT_EQ(Samples(samples, "t", "00:00:00:15", ""), "<1/2='ab'>");

  ScratchSamples valueFirst(ThirtyFrames(), kTdjsonVersion2);
  valueFirst.AddSet("t", PaddedWidths(5, 1, kTdjsonVersion2), {ValueFirst("00:00:00:15", value)});
  EXPECT_EQ(Samples(valueFirst, "t", "00:00:00:15", ""), "39 Invalid sample:\"sampleSetID:t/sample[0]\"");
}

struct ValueRow {
  char const* name;
  eTDJSONVersion version;
  SK_DynamicSampleInfo widths;
  char const* value;
  char const* expected;
};

class SampleValue : public testing::TestWithParam<ValueRow> {};

TEST_P(SampleValue, ComesOutAs) {
  ScratchSamples samples(ThirtyFrames(), GetParam().version);
  std::string const sample = TimeFirst("00:00:00:00", GetParam().value);
  SK_DynamicSampleInfo widths = GetParam().widths;
  samples.AddSet("v", widths, {sample});
  ASSERT_EQ(samples.Entry("v").mSampleSize, sample.size()) << "the row is not what it means to be";
  EXPECT_EQ(Samples(samples, "v", "", ""), GetParam().expected);
}

constexpr char kInvalidValue[] = "39 Invalid sample value:\"sampleSetID:v/sample[0]\"";
constexpr char kTooLong[] = "39 Padded string length cannot be greater than max length.";
constexpr eTDJSONVersion k1 = kTdjsonVersion1;
constexpr eTDJSONVersion k2 = kTdjsonVersion2;

ValueRow const kValues[] = {
    {"NumberIsNoString", k2, NumberWidths(3), "12345", kInvalidValue},
    {"NumberIsTooShortBehindItsEscape", k2, NumberWidths(3), R"("1\/")", kInvalidValue},
    {"NumberIsNone", k2, NumberWidths(3), R"("abc")", "std::exception stod"},
    {"NumberDoesNotFit", k2, NumberWidths(5), R"("1e999")", "std::exception stod"},
    {"NumberBeginsWithSpaces", k2, NumberWidths(5), R"("  1.5")", "<0/1=1.5>"},
    {"NumberEndsInText", k2, NumberWidths(4), R"("1.5m")", "<0/1=1.5>"},
    {"NumberHasAnExponent", k2, NumberWidths(4), R"("15e1")", "<0/1=150.>"},
    {"ArrayIsNone", k2, ArrayWidths(2, 1), R"("1234")", kInvalidValue},
    {"ArrayIsShort", k2, ArrayWidths(1, 2), R"(["12345"])",
     "39 Number array does not contains enough elements at \"sampleSetID:v/sample[0]\"."},
    {"ArrayIsLong", k2, ArrayWidths(5, 1), R"(["1","2"])",
     "39 Number array does not contains enough elements at \"sampleSetID:v/sample[0]\"."},
    {"ArrayElementIsNoString", k2, ArrayWidths(2, 2), R"(["12",3456])", kInvalidValue},
    {"ArrayElementHasAnotherWidth", k2, ArrayWidths(2, 2), R"(["1","123"])", kInvalidValue},
    {"TextIsNoObject", k2, PaddedWidths(2, 1, k2), R"("a text of its own width")", kInvalidValue},
    {"TextHasNoStr", k2, PaddedWidths(2, 1, k2), R"({"length":"1","sir":"ab"})", kInvalidValue},
    {"TextIsNoString", k2, PaddedWidths(2, 1, k2), R"({"length":"1","str":1234})", kInvalidValue},
    {"TextHasNoLength", k2, PaddedWidths(2, 1, k2), R"({"longth":"1","str":"ab"})", kInvalidValue},
    {"LengthIsANumberInVersion2", k2, PaddedWidths(2, 1, k2), R"({"length":123,"str":"ab"})", kInvalidValue},
    {"LengthHasAnotherWidth", k2, PaddedWidths(2, 2, k2), R"({"length":"1","str":"abc"})", kInvalidValue},
    {"LengthIsAStringInVersion1", k1, PaddedWidths(2, 3, k1), R"({"length":"1","str":"ab"})", kInvalidValue},
    {"LengthIsNoNumber", k2, PaddedWidths(2, 1, k2), R"({"length":"x","str":"ab"})", "std::exception stoi"},
    {"LengthJustFits", k2, PaddedWidths(2, 1, k2), R"({"length":"2","str":"ab"})", "<0/1='ab'>"},
    {"LengthIsTooLarge", k2, PaddedWidths(2, 1, k2), R"({"length":"3","str":"ab"})", kTooLong},
    {"LengthIsTooLargeInVersion1", k1, PaddedWidths(2, 1, k1), R"({"length":3,"str":"ab"})", kTooLong},
    {"LengthIsNegative", k2, PaddedWidths(2, 2, k2), R"({"length":"-1","str":"ab"})", kTooLong},
    {"LengthIsNegativeInVersion1", k1, PaddedWidths(2, 2, k1), R"({"length":-1,"str":"ab"})", kTooLong},
    {"LengthIsCutOff", k1, PaddedWidths(2, 3, k1), R"({"length":1.9,"str":"ab"})", "<0/1='a'>"},
    {"LengthIsHuge", k1, PaddedWidths(2, 5, k1), R"({"length":1e+99,"str":"ab"})", kTooLong},
    {"LengthHasASpace", k2, PaddedWidths(2, 2, k2), R"({"length":" 1","str":"ab"})", "<0/1='a'>"},
    {"LengthIsZero", k2, PaddedWidths(2, 1, k2), R"({"length":"0","str":"ab"})", "<0/1=''>"},
    {"EscapedQuoteTakesOne", k2, PaddedWidths(5, 1, k2), R"({"length":"4","str":"a\"b "})", "<0/1='a\"b'>"},
    {"EachEscapeTakesOne", k2, PaddedWidths(14, 2, k2), R"({"length":"14","str":"\"\b\f\n\r\t\\"})",
     "<0/1='\"\b\f\n\r\t\\'>"},
    {"EscapedSlashTakesNone", k2, PaddedWidths(4, 1, k2), R"({"length":"3","str":"\/bc"})", "<0/1='/bc'>"},
    {"EscapesInTheFillerTakeTheirsToo", k2, PaddedWidths(5, 1, k2), R"({"length":"2","str":"abc\n"})", "<0/1='a'>"},
    {"MoreEscapesThanLengthTakeTheTextWhole", k2, PaddedWidths(5, 1, k2), R"({"length":"0","str":"abc\n"})",
     "<0/1='abc\n'>"},
    {"UnclosedTextIsASyntaxError", k2, NumberWidths(3), R"("123 )",
     "32 Unable to find enclosing quotes for property value:\"sampleSetID:v/sample[0]::value\"."},
};

INSTANTIATE_TEST_SUITE_P(SampleDataProcessor, SampleValue, testing::ValuesIn(kValues),
                         [](auto const& row) { return std::string(row.param.name); });

struct BrokenRow {
  char const* name;
  char const* from;
  char const* to;
  char const* expected;
};

class BrokenSample : public testing::TestWithParam<BrokenRow> {};

/// The second of three samples is broken, which a search for the first does not look at.
TEST_P(BrokenSample, IsReportedByItsPlaceInTheRange) {
  ScratchSamples samples(ThirtyFrames());
  std::string broken = NumberAt("00:00:00:10", "+1.0");
  broken.replace(broken.find(GetParam().from), std::string(GetParam().from).size(), GetParam().to);
  samples.AddSet("b", NumberWidths(4),
                 {NumberAt("00:00:00:00", "+0.0"), NumberAt("00:00:00:05", "+0.0"), broken,
                  NumberAt("00:00:00:20", "+2.0"), NumberAt("00:00:00:25", "+2.0"), NumberAt("00:00:01:00", "+2.0")});
  EXPECT_EQ(Samples(samples, "b", "00:00:00:05", "00:00:01:00"), GetParam().expected);
}

BrokenRow const kBroken[] = {
    {"TimeMissing", R"("time")", R"("tome")",
     "39 Unable to find mandatory property:\"time\" at \"sampleSetID:b/sample[1]\"."},
    {"TimeIsNoString", R"("00:00:00:10")", "1234567890123", "39 Invalid sample time:\"sampleSetID:b/sample[1]\""},
    {"TimeIsLong", R"(00:00:00:10","value":"+)", R"(00:00:00:100","value":")",
     "39 Invalid sample time:\"sampleSetID:b/sample[1]\""},
    {"TimeIsShort", R"(00:00:00:10","value":")", R"(00:00:00:1","value":"+)",
     "39 Invalid sample time:\"sampleSetID:b/sample[1]\""},
    {"TimeIsShortBehindItsEscape", "00:00:00:10", R"(00:00:0\/10)",
     "39 Invalid sample time:\"sampleSetID:b/sample[1]\""},
    {"TimeIsNone", "00:00:00:10", "ab:00:00:10", "std::exception stoi"},
    {"ValueMissing", R"("value")", R"("valve")",
     "39 Unable to find mandatory property:\"value\" at \"sampleSetID:b/sample[1]\"."},
    {"NoObject", R"({"time)", R"(["time)", "32 Invalid \"sampleSetID:b/sample[1]\" type, expected type:JSON Object."},
    {"NotClosed", R"("})", R"("])",
     "32 Unable to find Comma or Closing bracket after property:\"sampleSetID:b/sample[1]::value\"."},
};

INSTANTIATE_TEST_SUITE_P(SampleDataProcessor, BrokenSample, testing::ValuesIn(kBroken),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(SampleDataProcessor, UnknownIdIsRefused) {
  ScratchSamples samples = FourNumbers();
  std::string const expected = "35 Data Outline does not contain any dynamic node for sample id : \"x\".";
  EXPECT_EQ(Samples(samples, "x", "", ""), expected);
  EXPECT_EQ(Adjacent(samples, "x", "00:00:00:00"), expected);
}

TEST(SampleDataProcessor, NodeWithoutSetHasNoSamples) {
  ScratchSamples samples = FourNumbers();
  samples.AddNode("u");
  std::string const expected = "38 No dynamic sample data present for sample id : \"u\".";
  EXPECT_EQ(Samples(samples, "u", "", ""), expected);
  EXPECT_EQ(Adjacent(samples, "u", "00:00:00:00"), expected);
}

TEST(SampleDataProcessor, EmptySetHasNoSamples) {
  ScratchSamples samples = FourNumbers();
  samples.AddSet("z", NumberWidths(4), {});
  std::string const expected = "38 No dynamic sample data present for sample id : \"z\".";
  EXPECT_EQ(Samples(samples, "z", "", ""), expected);
  EXPECT_EQ(Adjacent(samples, "z", "00:00:00:00"), expected);
}

TEST(SampleDataProcessor, SetThatLeavesTheMappingIsRefused) {
  constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();
  std::string const expected =
      "36 Invalid  dynamic node info in data outline for sample set:\"n\".Calculated sample set size is out of file "
      "offset range.";
  auto const refuses = [&](auto const& change) {
    ScratchSamples samples = FourNumbers();
    change(samples.Entry("n"));
    EXPECT_EQ(Samples(samples, "n", "", ""), expected);
    EXPECT_EQ(Adjacent(samples, "n", "00:00:00:20"), expected);
  };
  refuses([](auto& info) { info.mSampleCount = 5; });
  refuses([](auto& info) { info.mSampleCount = kHuge; });
  refuses([](auto& info) { info.mSampleSize = kHuge; });
  refuses([](auto& info) { info.mSampleSize = kHuge - 1; });
  refuses([](auto& info) { info.mSampleOffset = kHuge; });
  refuses([](auto& info) { info.mSampleOffset += 3; });
  refuses([](auto& info) {
    info.mSampleCount = kHuge / 2;
    info.mSampleSize = 1;
  });
}

TEST(SampleDataProcessor, LastSampleMayEndWithTheMapping) {
  ScratchSamples samples = FourNumbers();
  samples.Text().resize(samples.Text().size() - 2);
  EXPECT_EQ(Samples(samples, "n", "00:01:00:00", ""), "<4/3=4.5>");
}

TEST(SampleDataProcessor, MappingCutAtEveryLengthIsNeverReadBehind) {
  ScratchSamples whole = FourNumbers();
  std::string const text = whole.Text();
  for (std::size_t length = 1; length <= text.size(); ++length) {
    whole.Text() = text.substr(0, length);
    std::string const found = Samples(whole, "n", "", "00:01:00:00");
    EXPECT_EQ(found[0], length + 2 >= text.size() ? '<' : '3') << length;
  }
}

TEST(SampleDataProcessor, BackwardRangeOfAnUnsortedSetHasNoMemory) {
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("u", NumberWidths(1),
                 {NumberAt("00:00:00:20", "0"), NumberAt("00:00:00:05", "1"), NumberAt("00:00:00:10", "2")});
  // By hand: for 10, the middle holds 5, so the search goes on to the right and meets 10 at index 2. For 4, it
  // goes to the left and ends at index 0.
  SK_DynamicDataSample* out = nullptr;
  EXPECT_EQ(samples.Processor().GetSamplesData("u", "00:00:00:10", "00:00:00:04", out, true),
            (std::numeric_limits<std::uint64_t>::max() - 2 * 35 + 1) / 35 + 1);
  try {
    samples.Processor().GetSamplesData("u", "00:00:00:10", "00:00:00:04", out, false);
    FAIL();
  } catch (ns_sensor::SK_Exception const& error) {
    EXPECT_EQ(error.GetErrorCode(), ns_sensor::kNoMemory);
    EXPECT_STREQ(error.GetLocalizedErrMsg(), "Unable to allocate memory for \"sample set id:u\".");
  }
  EXPECT_EQ(out, nullptr);
}

TEST(SampleDataProcessor, SampleLongerThanItsPlaceLeavesTheRestUnfilled) {
  // One object takes the place of two samples. Its text is shorter than the width says, so there is room for
  // another member, in whose string stands what the search takes for the second sample.
  std::string const value = R"({"length":"0","str":"          "})";
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("d", PaddedWidths(10, 1, kTdjsonVersion2),
                 {TimeFirst("00:00:00:00", value), TimeFirst("00:00:00:10", value)});
  std::uint64_t const size = samples.Entry("d").mSampleSize;
  std::string both = R"({"time":"00:00:00:00","value":{"length":"0","str":""},"":")";
  ASSERT_LT(both.size(), size + 1);
  both.resize(size + 1, ' ');
  both += "{ time   00:00:00:10";
  both.resize(2 * size + 1 - 2, ' ');
  both += "\"}";
  samples.Text().replace(samples.Entry("d").mSampleOffset, both.size(), both);
  EXPECT_EQ(Samples(samples, "d", "00:00:00:00", "00:00:00:10"), "<0/1=''><0/1=0.>");
}

TEST(SampleDataProcessor, SampleThatEndsBeforeTheRangeDoesIsFollowedByNone) {
  // As above, but the object ends one byte earlier, so the next sample would begin just where the range ends.
  std::string const value = R"({"length":"0","str":"          "})";
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("d", PaddedWidths(10, 1, kTdjsonVersion2),
                 {TimeFirst("00:00:00:00", value), TimeFirst("00:00:00:10", value)});
  std::uint64_t const size = samples.Entry("d").mSampleSize;
  std::string both = R"({"time":"00:00:00:00","value":{"length":"0","str":""},"":")";
  both.resize(size + 1, ' ');
  both += "{ time   00:00:00:10";
  both.resize(2 * size - 2, ' ');
  both += "\"},";
  samples.Text().replace(samples.Entry("d").mSampleOffset, both.size(), both);
  EXPECT_EQ(Samples(samples, "d", "00:00:00:00", "00:00:00:10"),
            "32 Invalid \"sampleSetID:d/sample[1]\" type, expected type:JSON Object.");
}

TEST(SampleDataProcessor, OddSampleAmongManyIsReadTheFullWay) {
  std::vector<std::string> texts;
  std::string expected;
  for (int i = 0; i < 30; ++i) {
    std::string const second = (i < 10 ? "0" : "") + std::to_string(i);
    texts.push_back(NumberAt("00:00:" + second + ":00", i % 7 == 3 ? "1e+1" : "1.25"));
    expected += "<" + std::to_string(i) + "/1=" + (i % 7 == 3 ? "10." : "1.25") + ">";
  }
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("m", NumberWidths(4), texts);
  EXPECT_EQ(Samples(samples, "m", "", "00:01:00:00"), expected);
}

TEST(SampleDataProcessor, NeighboursStayInsideTheSetWhateverTheTimesSay) {
  // The search sees 10 and 20 in the first bytes; the extent says 00 and 30.
  ScratchSamples samples(ThirtyFrames());
  samples.AddSet("h", NumberWidths(1), {NumberAt("00:00:00:10", "1"), NumberAt("00:00:00:20", "2")});
  samples.Entry("h").mTemporalRange = {"00:00:00:00", "00:00:01:00"};
  EXPECT_EQ(Adjacent(samples, "h", "00:00:00:10"), "<1/3=1.><2/3=2.>");
  EXPECT_EQ(Adjacent(samples, "h", "00:00:00:20"), "<1/3=1.><2/3=2.>");
  EXPECT_EQ(Adjacent(samples, "h", "00:00:00:25"), "<2/3=2.>");
}

TEST(SampleDataProcessor, FormatWithoutNotationTakesAllTimesForEqual) {
  ScratchSamples samples{SK_TimeFormat()};
  samples.AddSet("f", NumberWidths(1), {R"({"time":"","value":"1"})", R"({"time":"","value":"2"})"});
  // Without digits there is no time to compare.
  EXPECT_THAT(Samples(samples, "f", "", ""), testing::StartsWith("39 Invalid sample:\"sampleSetID:f/sample["));
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
