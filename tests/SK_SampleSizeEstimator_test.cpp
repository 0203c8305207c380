#include "SK_SampleSizeEstimator.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "DataFileText.h"
#include "SK_IntegerOf.h"

namespace SK_NAMESPACE_INT {
namespace {

using senmark_test::ArrayType;
using senmark_test::DynamicNode;
using senmark_test::kRange;
using senmark_test::NumberType;
using senmark_test::PaddedType;

JDocument Node(std::string const& dataType, std::string const& sampleCount) {
  JDocument node;
  node.Parse(DynamicNode("n", "id", sampleCount, dataType).c_str());
  EXPECT_FALSE(node.HasParseError());
  return node;
}

std::string NumberTypeOf(std::string const& isSigned, std::string const& integer, std::string const& decimal) {
  return R"({"type":"numberString","numberStringProperties":{"pattern":{"isSigned":)" + isSigned +
         R"(,"digitsInteger":)" + integer + R"(,"digitsDecimal":)" + decimal + R"(},"range":)" + kRange + "}}";
}

struct Width {
  char const* name;
  std::string dataType;
  eTDJSONVersion version;
  std::uint64_t valueSize;  // as it stands in a sample, counted by hand
  eSampleValueKind kind;
};

class SampleWidth : public testing::TestWithParam<Width> {};

TEST_P(SampleWidth, IsThatOfTheValueInASample) {
  JDocument const node = Node(GetParam().dataType, "3");
  SK_DynamicSampleInfo info(&node);
  // `{"time":"00:00:00:00","value":` and `}` are 31 bytes with a time of 11.
  std::uint64_t const sampleSize = 31 + GetParam().valueSize;
  EXPECT_EQ(SK_SampleSizeEstimator::EstimateSampleSetSize(info, 11, GetParam().version), 3 * sampleSize + 2);
  EXPECT_EQ(info.mSampleSize, sampleSize);
  EXPECT_EQ(info.mSampleCount, 3U);
  EXPECT_EQ(info.mValueKind, GetParam().kind);
}

Width const kWidths[] = {
    {"SignedNumber", NumberType(), kTdjsonVersion1, 7, kNumberStringSamples},  // "+12.3"
    {"UnsignedNumber", NumberTypeOf("false", "2", "1"), kTdjsonVersion2, 6, kNumberStringSamples},
    {"NumberWithoutPoint", NumberTypeOf("true", "2", "0"), kTdjsonVersion2, 5, kNumberStringSamples},
    {"NumberWithoutDigits", NumberTypeOf("false", "0", "0"), kTdjsonVersion2, 2, kNumberStringSamples},
    {"FractionsOfWidthsAreDropped", NumberTypeOf("false", "2.9", "1.5"), kTdjsonVersion2, 6, kNumberStringSamples},
    {"ArrayOfVersion1", ArrayType("numberArray", 3), kTdjsonVersion1, 25, kNumberArraySamples},  // 3*7 + 2 + 2
    {"ArrayOfVersion2", ArrayType("numberStringArray", 3), kTdjsonVersion2, 25, kNumberArraySamples},
    {"ArrayOfOne", ArrayType("numberStringArray", 1), kTdjsonVersion2, 9, kNumberArraySamples},
    {"ArrayOfNone", ArrayType("numberStringArray", 0), kTdjsonVersion2, 1, kNumberArraySamples},
    {"PaddedOfVersion1", PaddedType(8, 2), kTdjsonVersion1, 30,
     kPaddedStringSamples},  // {"length":12,"str":"abcdefgh"}
    {"PaddedOfVersion2", PaddedType(8, 2), kTdjsonVersion2, 32, kPaddedStringSamples},
    {"AnyOtherTypeAddsNothing", R"({"type":"boolean"})", kTdjsonVersion2, 0, kNoSampleSet},
    {"TypesGoByTheirBeginning",
     R"({"type":"paddedStrings","paddedStringProperties":{"maxLen":1,)"
     R"("maxDigitsInStrLength":1,"eventMarkerB":true}})",
     kTdjsonVersion1, 22, kPaddedStringSamples},
};

INSTANTIATE_TEST_SUITE_P(Every, SampleWidth, testing::ValuesIn(kWidths),
                         [](testing::TestParamInfo<Width> const& row) { return row.param.name; });

TEST(SampleSizeEstimator, KeepsTheWidthsThatQueriesNeed) {
  JDocument const array = Node(ArrayType("numberStringArray", 3), "1");
  SK_DynamicSampleInfo arrayInfo(&array);
  EXPECT_EQ(SK_SampleSizeEstimator::EstimateNumberArraySetSize(arrayInfo), 25U);
  EXPECT_EQ(arrayInfo.mNumberLength, 7U);
  EXPECT_EQ(arrayInfo.mArraySize, 3U);

  JDocument const padded = Node(PaddedType(8, 2), "1");
  SK_DynamicSampleInfo paddedInfo(&padded);
  EXPECT_EQ(SK_SampleSizeEstimator::EstimatePaddedStringSetSize(paddedInfo, kTdjsonVersion2), 32U);
  EXPECT_EQ(paddedInfo.mMaxLength, 8U);
  EXPECT_EQ(paddedInfo.mMaxDigits, 2U);

  JDocument const number = Node(NumberType(), "1");
  SK_DynamicSampleInfo numberInfo(&number);
  EXPECT_EQ(SK_SampleSizeEstimator::EstimateNumberSetSize(numberInfo), 7U);
  EXPECT_EQ(numberInfo.mNumberLength, 7U);
}

TEST(SampleSizeEstimator, TimeTextsMakeSamplesWider) {
  JDocument const node = Node(NumberType(), "1");
  SK_DynamicSampleInfo info(&node);
  EXPECT_EQ(SK_SampleSizeEstimator::EstimateSampleSetSize(info, 24, kTdjsonVersion1), 51U);
  SK_DynamicSampleInfo widest(&node);
  EXPECT_EQ(SK_SampleSizeEstimator::EstimateSampleSetSize(widest, 65535, kTdjsonVersion1), 65562U);
}

struct Count {
  char const* name;
  char const* text;
  std::uint64_t count;
  std::uint64_t setSize;  // of samples of 38 bytes
};

class SampleCount : public testing::TestWithParam<Count> {};

TEST_P(SampleCount, GivesTheSetsSize) {
  JDocument const node = Node(NumberType(), GetParam().text);
  SK_DynamicSampleInfo info(&node);
  EXPECT_EQ(SK_SampleSizeEstimator::EstimateSampleSetSize(info, 11, kTdjsonVersion1), GetParam().setSize);
  EXPECT_EQ(info.mSampleCount, GetParam().count);
}

Count const kCounts[] = {
    {"None", "0", 0, 0},
    {"One", "1", 1, 38},
    {"Two", "2", 2, 77},
    {"FractionIsDropped", "2.9", 2, 77},
    {"LessThanOneIsNone", "0.9", 0, 0},
    {"MoreThanMinusOneIsNone", "-0.9", 0, 0},
    {"NegativeIsTooMany", "-1", kTooMany, kTooMany},
    {"LastToFit", "472993437787424400", 472993437787424384U, 18446744073709550975U},
    {"FirstNotToFit", "472993437787424500", 472993437787424512U, kTooMany},
    {"HugeIsTooMany", "1e19", 10000000000000000000U, kTooMany},
    {"PastEveryInteger", "1e300", kTooMany, kTooMany},
};

INSTANTIATE_TEST_SUITE_P(Every, SampleCount, testing::ValuesIn(kCounts),
                         [](testing::TestParamInfo<Count> const& row) { return row.param.name; });

TEST(SampleSizeEstimator, SizesThatDoNotFitAreTooMany) {
  std::string const types[] = {NumberTypeOf("true", "1e19", "1e19"),
                               NumberTypeOf("true", "-1", "0"),
                               NumberTypeOf("true", "0", "-1"),
                               ArrayType("numberArray", -1),
                               PaddedType(-1, 1),
                               PaddedType(1, -1)};
  for (std::string const& type : types) {
    JDocument const node = Node(type, "1");
    SK_DynamicSampleInfo info(&node);
    EXPECT_EQ(SK_SampleSizeEstimator::EstimateSampleSetSize(info, 11, kTdjsonVersion1), kTooMany) << type;
  }
}

TEST(SampleSizeEstimator, SetOfNoneTakesNothingWhateverItsWidth) {
  JDocument const node = Node(PaddedType(-1, -1), "0");
  SK_DynamicSampleInfo info(&node);
  EXPECT_EQ(SK_SampleSizeEstimator::EstimateSampleSetSize(info, 11, kTdjsonVersion1), 0U);
}

TEST(IntegerOf, CountsEndAtTheLimit) {
  EXPECT_EQ(CountOf(18446744073709549568.0), 18446744073709549568U);  // the largest double below 2 to the 64th
  EXPECT_EQ(CountOf(18446744073709551616.0), kTooMany);
  EXPECT_EQ(CountOf(-1.0), kTooMany);
  EXPECT_EQ(CountOf(-0.5), 0U);
  EXPECT_EQ(CountOf(std::numeric_limits<double>::quiet_NaN()), kTooMany);
  EXPECT_EQ(CountOf(std::numeric_limits<double>::infinity()), kTooMany);
}

TEST(IntegerOf, LowBitsWrap) {
  EXPECT_EQ(LowBitsOf<std::uint32_t>(-1.0), 4294967295U);
  EXPECT_EQ(LowBitsOf<std::int32_t>(2147483648.0), -2147483647 - 1);
  EXPECT_EQ(LowBitsOf<std::uint16_t>(65539.9), 3U);
  EXPECT_EQ(LowBitsOf<std::int32_t>(-1.9), -1);
  EXPECT_EQ(LowBitsOf<std::int32_t>(9223372036854775808.0), 0);
  EXPECT_EQ(LowBitsOf<std::int32_t>(-1e300), 0);
  EXPECT_EQ(LowBitsOf<std::int32_t>(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(IntegerOf, SumsAndProductsEndAtTheLimit) {
  EXPECT_EQ(AddUpToLimit(kTooMany - 1, 1), kTooMany);
  EXPECT_EQ(AddUpToLimit(kTooMany, 1), kTooMany);
  EXPECT_EQ(AddUpToLimit(2, 3), 5U);
  EXPECT_EQ(MultiplyUpToLimit(std::uint64_t{1} << 32, std::uint64_t{1} << 32), kTooMany);
  EXPECT_EQ(MultiplyUpToLimit(std::uint64_t{1} << 32, (std::uint64_t{1} << 32) - 1), 18446744069414584320U);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
