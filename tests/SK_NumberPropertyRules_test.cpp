// When a pattern or a range is taken from the values, and how a value goes into it.
#include "SK_NumberPropertyRules.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <new>
#include <string>
#include <vector>

#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberMinMax;
using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberRange;
using senmark_test::ExpectWriterError;

constexpr unsigned long long kMark = 18446744073709551615ull;
constexpr double kMinMark = 1.7976931348623157e308;
constexpr double kMaxMark = -1.7976931348623157e308;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
double const kNaN = std::nan("");

struct NameOfRow {
  template <typename Row>
  std::string operator()(testing::TestParamInfo<Row> const& row) const {
    return row.param.name;
  }
};

struct Stored {
  char const* name;
  unsigned long long digitsInteger;
  unsigned long long digitsDecimal;
  unsigned char isSigned;
  bool automatic;
  int code;
  unsigned long long storedInteger;
  unsigned long long storedDecimal;
  bool storedSign;
};

class StoredPattern : public testing::TestWithParam<Stored> {};

TEST_P(StoredPattern, IsWhatWasPassedOrAutomatic) {
  Stored const& row = GetParam();
  SK_NumberPattern pattern;
  pattern.digitsInteger = 7;
  pattern.digitsDecimal = 7;
  auto const store = [&] { return StoreNumberPattern(pattern, row.digitsInteger, row.digitsDecimal, row.isSigned); };
  if (row.code == 0) {
    EXPECT_EQ(store(), row.automatic);
  } else {
    ExpectWriterError(store, row.code);
  }
  EXPECT_EQ(pattern.digitsInteger, row.storedInteger);
  EXPECT_EQ(pattern.digitsDecimal, row.storedDecimal);
  EXPECT_EQ(pattern.isSigned, row.storedSign);
}

Stored const kStored[] = {
    {"Automatic", kMark, kMark, 0, true, 0, 0, 0, false},
    {"AutomaticWithSign", kMark, kMark, 1, true, 0, 0, 0, true},
    {"Explicit", 3, 2, 0, false, 0, 3, 2, false},
    {"ExplicitWithSign", 3, 2, 1, false, 0, 3, 2, true},
    {"AnyOtherByteIsASign", 3, 2, 255, false, 0, 3, 2, true},
    {"Zeroes", 0, 0, 0, false, 0, 0, 0, false},
    {"NearlyTheMark", kMark - 1, kMark - 1, 0, false, 0, kMark - 1, kMark - 1, false},
    {"OnlyIntegerIsTheMark", kMark, 2, 1, false, 2006, kMark, 2, true},
    {"OnlyDecimalIsTheMark", 3, kMark, 1, false, 2006, 3, kMark, true},
    {"IntegerMarkAndZero", kMark, 0, 0, false, 2006, kMark, 0, false},
};

INSTANTIATE_TEST_SUITE_P(NumberPropertyRules, StoredPattern, testing::ValuesIn(kStored), NameOfRow());

TEST(NumberPropertyRules, ADefaultRecordHoldsTheMarks) {
  SK_NumberPattern pattern;
  EXPECT_EQ(pattern.digitsInteger, kMark);
  EXPECT_EQ(pattern.digitsDecimal, kMark);
  EXPECT_FALSE(pattern.isSigned);
  EXPECT_TRUE(StoreNumberPattern(pattern, pattern.digitsInteger, pattern.digitsDecimal, 0));
  SK_NumberRange const range;
  EXPECT_EQ(range.occurring.min, kMinMark);
  EXPECT_EQ(range.occurring.max, kMaxMark);
  EXPECT_EQ(range.legal.min, kMinMark);
  EXPECT_EQ(range.legal.max, kMaxMark);
  EXPECT_TRUE(IsOccurringAutomatic(range.occurring));
  EXPECT_TRUE(IsLegalAutomatic(range.legal));
}

struct Widened {
  char const* name;
  bool automatic;
  SK_NumberPattern before;
  double value;
  unsigned long long digitsInteger;
  unsigned long long digitsDecimal;
  bool isSigned;
};

class WidenedPattern : public testing::TestWithParam<Widened> {};

TEST_P(WidenedPattern, HoldsTheValueToo) {
  Widened const& row = GetParam();
  SK_NumberPattern pattern = row.before;
  WidenNumberPattern(pattern, row.automatic, row.value);
  EXPECT_EQ(pattern.digitsInteger, row.digitsInteger);
  EXPECT_EQ(pattern.digitsDecimal, row.digitsDecimal);
  EXPECT_EQ(pattern.isSigned, row.isSigned);
}

Widened const kWidened[] = {
    {"FirstValue", true, {0, 0, false}, 12.25, 2, 2, false},
    {"TheSignHasNoDigit", true, {0, 0, false}, -12.25, 2, 2, true},
    {"MoreDecimalDigits", true, {3, 1, false}, 5.678, 3, 3, false},
    {"MoreIntegerDigits", true, {1, 3, false}, 123.4, 3, 3, false},
    {"NothingShrinks", true, {5, 5, true}, 1, 5, 5, true},
    {"AnExplicitPatternStays", false, {1, 1, false}, 123.456, 1, 1, false},
    {"AnExplicitPatternStillGetsItsSign", false, {1, 1, false}, -123.456, 1, 1, true},
    {"NegativeZeroIsSigned", true, {0, 0, false}, -0.0, 1, 0, true},
    {"TooSmallForSixDecimalsIsSigned", false, {1, 1, false}, -1e-7, 1, 1, true},
};

INSTANTIATE_TEST_SUITE_P(NumberPropertyRules, WidenedPattern, testing::ValuesIn(kWidened), NameOfRow());

TEST(NumberPropertyRules, ARangeKeepsEachOfItsFourBounds) {
  SK_NumberRange const range = MakeNumberRange(1, 2, 3, 4);
  EXPECT_EQ(range.legal.min, 1);
  EXPECT_EQ(range.legal.max, 2);
  EXPECT_EQ(range.occurring.min, 3);
  EXPECT_EQ(range.occurring.max, 4);
}

struct Pair {
  char const* name;
  double min;
  double max;
  bool automatic;
  bool refused;
};

class PairOfBounds : public testing::TestWithParam<Pair> {};

TEST_P(PairOfBounds, IsAutomaticWithBothMarksAndRefusedWithOne) {
  Pair const& row = GetParam();
  SK_NumberMinMax pair;
  pair.min = row.min;
  pair.max = row.max;
  if (row.refused) {
    ExpectWriterError([&] { IsOccurringAutomatic(pair); }, 2007);
    ExpectWriterError([&] { IsLegalAutomatic(pair); }, 2008);
  } else {
    EXPECT_EQ(IsOccurringAutomatic(pair), row.automatic);
    EXPECT_EQ(IsLegalAutomatic(pair), row.automatic);
  }
}

Pair const kPairs[] = {
    {"BothMarks", kMinMark, kMaxMark, true, false},
    {"NoMark", -1, 1, false, false},
    {"MarkForMinimum", kMinMark, 1, false, true},
    {"MarkForMaximum", -1, kMaxMark, false, true},
    {"MarksInEachOthersPlace", kMaxMark, kMinMark, false, false},
    {"InfinitiesAreNoMarks", kInfinity, -kInfinity, false, false},
    {"ANaNIsNoMark", kNaN, kNaN, false, false},
    {"ANaNBesideAMark", kNaN, kMaxMark, false, true},
};

INSTANTIATE_TEST_SUITE_P(NumberPropertyRules, PairOfBounds, testing::ValuesIn(kPairs), NameOfRow());

/// Occurring and legal pairs of successive ranges: a automatic, e explicit, h half marked.
struct Series {
  char const* name;
  char const* occurring;
  char const* legal;
  int code;  ///< of the last one; those before it are fine
  bool occurringAutomatic;
  bool legalAutomatic;
};

class SeriesOfRanges : public testing::TestWithParam<Series> {
 protected:
  static SK_NumberMinMax PairOf(char kind) {
    SK_NumberMinMax pair;
    if (kind != 'a') {
      pair.max = 8;
    }
    if (kind == 'e') {
      pair.min = 2;
    }
    return pair;
  }
};

TEST_P(SeriesOfRanges, IsAutomaticAsAWholeOrNotAtAll) {
  Series const& row = GetParam();
  std::vector<SK_NumberRange> ranges;
  bool occurringAutomatic = false;
  bool legalAutomatic = false;
  std::size_t const count = std::string(row.occurring).size();
  for (std::size_t at = 0; at < count; ++at) {
    SK_NumberRange range;
    range.occurring = PairOf(row.occurring[at]);
    range.legal = PairOf(row.legal[at]);
    auto const append = [&] { AppendNumberRange(ranges, range, occurringAutomatic, legalAutomatic); };
    if (at + 1 == count && row.code != 0) {
      ExpectWriterError(append, row.code);
    } else {
      append();
    }
    ASSERT_EQ(ranges.size(), at + 1) << "stored before it is looked at";
    EXPECT_EQ(ranges[at].occurring.min, range.occurring.min);
    EXPECT_EQ(ranges[at].occurring.max, range.occurring.max);
    EXPECT_EQ(ranges[at].legal.min, range.legal.min);
    EXPECT_EQ(ranges[at].legal.max, range.legal.max);
  }
  EXPECT_EQ(occurringAutomatic, row.occurringAutomatic);
  EXPECT_EQ(legalAutomatic, row.legalAutomatic);
}

Series const kSeries[] = {
    {"AllAutomatic", "aaa", "aaa", 0, true, true},
    {"AllExplicit", "eee", "eee", 0, false, false},
    {"OnlyOccurringAutomatic", "aa", "ee", 0, true, false},
    {"OnlyLegalAutomatic", "ee", "aa", 0, false, true},
    {"OccurringAutomaticThenExplicit", "ae", "aa", 2007, true, true},
    {"OccurringExplicitThenAutomatic", "ea", "aa", 2007, false, true},
    {"OccurringThirdOneDiffers", "aae", "aaa", 2007, true, true},
    {"LegalAutomaticThenExplicit", "aa", "ae", 2008, true, true},
    {"LegalExplicitThenAutomatic", "aa", "ea", 2008, true, false},
    {"OccurringHalfMarked", "h", "a", 2007, false, false},
    {"LegalHalfMarked", "a", "h", 2008, true, false},
    {"OccurringHalfMarkedBehindAutomatic", "ah", "aa", 2007, true, true},
    {"LegalHalfMarkedBehindAutomatic", "aa", "ah", 2008, true, true},
    {"OccurringIsLookedAtFirst", "h", "h", 2007, false, false},
    {"OccurringIsLookedAtFirstInASeries", "ae", "ae", 2007, true, true},
};

INSTANTIATE_TEST_SUITE_P(NumberPropertyRules, SeriesOfRanges, testing::ValuesIn(kSeries), NameOfRow());

TEST(NumberPropertyRules, EachElementWidensTheRangeOfItsPlace) {
  std::vector<SK_NumberRange> ranges(3);
  WidenOccurringRanges(ranges, {1, -2, 3});
  WidenOccurringRanges(ranges, {0, 5, kNaN});
  double const expected[][2] = {{0, 1}, {-2, 5}, {3, 3}};
  for (std::size_t at = 0; at < 3; ++at) {
    EXPECT_EQ(ranges[at].occurring.min, expected[at][0]) << at;
    EXPECT_EQ(ranges[at].occurring.max, expected[at][1]) << at;
    EXPECT_EQ(ranges[at].legal.min, kMinMark) << at;
    EXPECT_EQ(ranges[at].legal.max, kMaxMark) << at;
  }
}

TEST(NumberPropertyRules, MoreElementsThanRangesOrFewerAreNoTrouble) {
  std::vector<SK_NumberRange> ranges(1);
  WidenOccurringRanges(ranges, {1, 2, 3});
  ASSERT_EQ(ranges.size(), 1u);
  EXPECT_EQ(ranges[0].occurring.max, 1);
  ranges.resize(2);
  WidenOccurringRanges(ranges, {7});
  EXPECT_EQ(ranges[0].occurring.max, 7);
  EXPECT_EQ(ranges[1].occurring.max, kMaxMark);
}

TEST(NumberPropertyRules, WhatOccursBecomesLegalInEachRange) {
  std::vector<SK_NumberRange> ranges = {MakeNumberRange(1, 2, 3, 4), MakeNumberRange(5, 6, 7, 8)};
  CopyOccurringToLegal(ranges);
  EXPECT_EQ(ranges[0].legal.min, 3);
  EXPECT_EQ(ranges[0].legal.max, 4);
  EXPECT_EQ(ranges[1].legal.min, 7);
  EXPECT_EQ(ranges[1].legal.max, 8);
}

TEST(NumberPropertyRules, APatternOfOneValueIsStoredAndWidened) {
  SK_NumberPattern pattern;
  StorePatternOfValue(pattern, kMark, kMark, 0, -12.25, "-12.25");
  EXPECT_EQ(pattern.digitsInteger, 2u);
  EXPECT_EQ(pattern.digitsDecimal, 2u);
  EXPECT_TRUE(pattern.isSigned);
  StorePatternOfValue(pattern, 1, 0, 1, 12.25, "12.25");
  EXPECT_EQ(pattern.digitsInteger, 1u);
  EXPECT_EQ(pattern.digitsDecimal, 0u);
  EXPECT_TRUE(pattern.isSigned);
  ExpectWriterError([&] { StorePatternOfValue(pattern, kMark, 5, 0, -1, "-1"); }, 2006);
  EXPECT_EQ(pattern.digitsDecimal, 5u) << "stored before it is looked at";
  EXPECT_FALSE(pattern.isSigned) << "the value is not looked at any more";
}

TEST(NumberPropertyRules, ARangeOfOneValueIsFilledWhereItIsAutomatic) {
  SK_NumberRange range;
  FillRangeOfValue(range, 3.5);
  EXPECT_EQ(range.occurring.min, 3.5);
  EXPECT_EQ(range.occurring.max, 3.5);
  EXPECT_EQ(range.legal.min, 3.5);
  EXPECT_EQ(range.legal.max, 3.5);
  range = SK_NumberRange();
  range.occurring.min = 1;
  range.occurring.max = 2;
  FillRangeOfValue(range, 3.5);
  EXPECT_EQ(range.occurring.max, 2);
  EXPECT_EQ(range.legal.min, 1);
  EXPECT_EQ(range.legal.max, 2);
  range = SK_NumberRange();
  range.legal.min = 1;
  ExpectWriterError([&] { FillRangeOfValue(range, 3.5); }, 2008);
  EXPECT_EQ(range.occurring.min, 3.5) << "what occurs comes first";
  range.occurring.max = std::numeric_limits<double>::lowest();
  ExpectWriterError([&] { FillRangeOfValue(range, 3.5); }, 2007);
}

TEST(NumberPropertyRules, NamesAreNumberedFromZero) {
  std::vector<std::string> names;
  AppendNumberedNames(names, "pos", 0);
  EXPECT_TRUE(names.empty());
  AppendNumberedNames(names, "pos", 11);
  ASSERT_EQ(names.size(), 11u);
  EXPECT_EQ(names[0], "pos_0");
  EXPECT_EQ(names[1], "pos_1");
  EXPECT_EQ(names[10], "pos_10");
  AppendNumberedNames(names, "", 1);
  EXPECT_EQ(names[11], "_0");
}

TEST(NumberPropertyRules, NamesBeyondAllMemoryAreRefusedAtOnce) {
  std::vector<std::string> names;
  EXPECT_THROW(AppendNumberedNames(names, "pos", kMark), std::bad_alloc);
  EXPECT_THROW(AppendNumberedNames(names, "pos", names.max_size() + 1), std::bad_alloc);
  EXPECT_TRUE(names.empty());
}

}  // namespace
}  // namespace SK_PLUGIN
