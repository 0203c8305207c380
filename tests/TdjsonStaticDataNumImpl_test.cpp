// Static nodes with one number.
#include "TdjsonStaticDataNumImpl.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "ExpectError.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberRange;
using senmark_test::CodeOf;
using senmark_test::ExpectError;
using senmark_test::kConverterFailed;

constexpr unsigned long long kMark = 18446744073709551615ull;
constexpr double kMinMark = 1.7976931348623157e308;
constexpr double kMaxMark = -1.7976931348623157e308;
double const kNaN = std::nan("");

TEST(StaticDataNum, IsWhatItWasMadeOf) {
  TdjsonStaticDataNumImpl node(nullptr, "a \"number\"", "number", -2.5);
  EXPECT_EQ(node.GetType(), 0);
  EXPECT_EQ(node.GetDataValue(), -2.5);
  EXPECT_EQ(node.GetDisplayName(), R"(a \"number\")");
  EXPECT_EQ(node.GetMatchName(), "number");
  EXPECT_EQ(node.GetActualITdjsonStaticData(), static_cast<ITdjsonStaticData_v1*>(&node));
}

TEST(StaticDataNum, BeginsWithTheMarks) {
  TdjsonStaticDataNumImpl const node(nullptr, "n", "n", 1);
  EXPECT_EQ(node.GetNumberProperties().pattern.digitsInteger, kMark);
  EXPECT_EQ(node.GetNumberProperties().pattern.digitsDecimal, kMark);
  EXPECT_EQ(node.GetNumberProperties().range.occurring.min, kMinMark);
  EXPECT_EQ(node.GetNumberProperties().range.legal.max, kMaxMark);
}

struct Pattern {
  char const* name;
  double value;
  unsigned long long digitsInteger;
  unsigned long long digitsDecimal;
  unsigned char isSigned;
  int code;
  unsigned long long storedInteger;
  unsigned long long storedDecimal;
  bool storedSign;
};

class PatternOfNumber : public testing::TestWithParam<Pattern> {};

TEST_P(PatternOfNumber, IsTakenFromItsValueOrFromItsCaller) {
  Pattern const& row = GetParam();
  TdjsonStaticDataNumImpl node(nullptr, "n", "n", row.value);
  EXPECT_EQ(
      CodeOf([&](void* result) { node.setNumberPattern(row.digitsInteger, row.digitsDecimal, row.isSigned, result); }),
      row.code);
  SK_NumberPattern const& stored = node.GetNumberProperties().pattern;
  EXPECT_EQ(stored.digitsInteger, row.storedInteger);
  EXPECT_EQ(stored.digitsDecimal, row.storedDecimal);
  EXPECT_EQ(stored.isSigned, row.storedSign);
}

Pattern const kPatterns[] = {
    {"Automatic", 123.25, kMark, kMark, 0, 0, 3, 2, false},
    {"AutomaticNegative", -12.5, kMark, kMark, 0, 0, 2, 1, true},
    {"AutomaticWithSignAsked", 12.5, kMark, kMark, 1, 0, 2, 1, true},
    {"AutomaticNegativeZero", -0.0, kMark, kMark, 0, 0, 1, 0, true},
    {"AutomaticExponent", 1e21, kMark, kMark, 0, 0, 5, 0, false},
    {"Explicit", 123.25, 5, 4, 0, 0, 5, 4, false},
    {"ExplicitMayBeTooSmall", 123.25, 1, 0, 0, 0, 1, 0, false},
    {"ExplicitNegative", -1, 5, 4, 0, 0, 5, 4, true},
    {"HalfMarkInteger", -1, kMark, 4, 0, 2006, kMark, 4, false},
    {"HalfMarkDecimal", -1, 5, kMark, 1, 2006, 5, kMark, true},
};

INSTANTIATE_TEST_SUITE_P(StaticDataNum, PatternOfNumber, testing::ValuesIn(kPatterns),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(StaticDataNum, ASecondPatternStandsInPlaceOfTheFirst) {
  TdjsonStaticDataNumImpl node(nullptr, "n", "n", 123.25);
  SK_PluginResult result;
  node.setNumberPattern(kMark, kMark, 1, &result);
  node.setNumberPattern(1, 1, 0, &result);
  EXPECT_EQ(node.GetNumberProperties().pattern.digitsInteger, 1u);
  EXPECT_EQ(node.GetNumberProperties().pattern.digitsDecimal, 1u);
  EXPECT_FALSE(node.GetNumberProperties().pattern.isSigned);
}

struct Range {
  char const* name;
  double legalMin;
  double legalMax;
  double occurringMin;
  double occurringMax;
  int code;
  double stored[4];  ///< legal, then occurring
};

class RangeOfNumber : public testing::TestWithParam<Range> {};

TEST_P(RangeOfNumber, IsTakenFromItsValueOrFromItsCaller) {
  Range const& row = GetParam();
  TdjsonStaticDataNumImpl node(nullptr, "n", "n", -2.5);
  EXPECT_EQ(CodeOf([&](void* result) {
              node.setNumberRange(row.legalMin, row.legalMax, row.occurringMin, row.occurringMax, result);
            }),
            row.code);
  SK_NumberRange const& stored = node.GetNumberProperties().range;
  EXPECT_EQ(stored.legal.min, row.stored[0]);
  EXPECT_EQ(stored.legal.max, row.stored[1]);
  EXPECT_EQ(stored.occurring.min, row.stored[2]);
  EXPECT_EQ(stored.occurring.max, row.stored[3]);
}

Range const kRanges[] = {
    {"AllAutomatic", kMinMark, kMaxMark, kMinMark, kMaxMark, 0, {-2.5, -2.5, -2.5, -2.5}},
    {"AllExplicit", -9, 9, -3, 3, 0, {-9, 9, -3, 3}},
    {"OnlyOccurringAutomatic", -9, 9, kMinMark, kMaxMark, 0, {-9, 9, -2.5, -2.5}},
    {"LegalFromExplicitOccurring", kMinMark, kMaxMark, -3, 3, 0, {-3, 3, -3, 3}},
    {"OccurringMinimumMarked", -9, 9, kMinMark, 3, 2007, {-9, 9, kMinMark, 3}},
    {"OccurringMaximumMarked", -9, 9, -3, kMaxMark, 2007, {-9, 9, -3, kMaxMark}},
    {"LegalMinimumMarked", kMinMark, 9, -3, 3, 2008, {kMinMark, 9, -3, 3}},
    {"LegalMaximumMarkedBehindDerived", -9, kMaxMark, kMinMark, kMaxMark, 2008, {-9, kMaxMark, -2.5, -2.5}},
    {"BothHalfMarked", kMinMark, 9, kMinMark, 3, 2007, {kMinMark, 9, kMinMark, 3}},
    {"BackwardsAsItIs", 9, -9, 3, -3, 0, {9, -9, 3, -3}},
};

INSTANTIATE_TEST_SUITE_P(StaticDataNum, RangeOfNumber, testing::ValuesIn(kRanges),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(StaticDataNum, NoRangeCanBeTakenFromANaN) {
  TdjsonStaticDataNumImpl node(nullptr, "n", "n", kNaN);
  EXPECT_EQ(CodeOf([&](void* result) { node.setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, result); }), 0);
  SK_NumberRange const& stored = node.GetNumberProperties().range;
  EXPECT_EQ(stored.occurring.min, kMinMark);
  EXPECT_EQ(stored.occurring.max, kMaxMark);
  EXPECT_EQ(stored.legal.min, kMinMark);
  EXPECT_EQ(stored.legal.max, kMaxMark);
}

TEST(StaticDataNum, TheMirrorsDoTheSame) {
  TdjsonStaticDataNumImpl node(nullptr, "n", "n", -2.5);
  node.SetNumberPattern(SK_NumberPattern());
  node.SetNumberRange(SK_NumberRange());
  EXPECT_EQ(node.GetNumberProperties().pattern.digitsInteger, 1u);
  EXPECT_EQ(node.GetNumberProperties().pattern.digitsDecimal, 1u);
  EXPECT_TRUE(node.GetNumberProperties().pattern.isSigned);
  EXPECT_EQ(node.GetNumberProperties().range.legal.max, -2.5);

  SK_NumberRange range;
  range.legal = {-9, 8};
  range.occurring = {-3, 2};
  node.SetNumberRange(range);
  SK_NumberRange const& stored = node.GetNumberProperties().range;
  EXPECT_EQ(stored.legal.min, -9);
  EXPECT_EQ(stored.legal.max, 8);
  EXPECT_EQ(stored.occurring.min, -3);
  EXPECT_EQ(stored.occurring.max, 2);

  SK_NumberPattern pattern;
  pattern.digitsInteger = 3;
  ExpectError([&] { node.SetNumberPattern(pattern); }, 2006, kConverterFailed);
  range.occurring.min = kMinMark;
  ExpectError([&] { node.SetNumberRange(range); }, 2007, kConverterFailed);
  range.occurring.min = -3;
  range.legal.max = kMaxMark;
  ExpectError([&] { node.SetNumberRange(range); }, 2008, kConverterFailed);
  pattern.digitsDecimal = 2;
  pattern.isSigned = false;
  TdjsonStaticDataNumImpl positive(nullptr, "n", "n", 2.5);
  positive.SetNumberPattern(pattern);
  EXPECT_EQ(positive.GetNumberProperties().pattern.digitsInteger, 3u);
  EXPECT_EQ(positive.GetNumberProperties().pattern.digitsDecimal, 2u);
  EXPECT_FALSE(positive.GetNumberProperties().pattern.isSigned);
  pattern.isSigned = true;
  positive.SetNumberPattern(pattern);
  EXPECT_TRUE(positive.GetNumberProperties().pattern.isSigned);
}

}  // namespace
}  // namespace SK_PLUGIN
