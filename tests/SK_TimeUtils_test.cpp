// Arithmetic on rational times. Expected fractions of the approximation come from an independent search
// for the nearest fraction; all others are worked out by hand.
#include "SK_TimeUtils.h"

#include <gtest/gtest.h>
#include <sys/time.h>

#include <cmath>
#include <csignal>
#include <limits>
#include <numeric>
#include <random>

#include "SK_TimeInt.h"
#include "SK_TimeRatio.h"

namespace ns_sensor {

bool operator==(SK_Time const& a, SK_Time const& b) {
  return a.value == b.value && a.scale == b.scale;
}

std::ostream& operator<<(std::ostream& out, SK_Time const& time) {
  return out << time.value << '/' << time.scale;
}

}  // namespace ns_sensor

namespace SK_NAMESPACE_INT {
namespace {

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();
constexpr std::uint32_t kTopBit = 0x80000000U;
constexpr std::int32_t kLimit = 1 << 30;

struct Pair {
  char const* name;
  std::int32_t a;
  std::int32_t b;
  std::int32_t expected;
};

TEST(TimeInt, DivisionByZeroGivesZeroAndItsRemainderTheDividend) {
  EXPECT_EQ(DivOrZero(7, 0), 0);
  EXPECT_EQ(DivOrZero(7U, 0U), 0U);
  EXPECT_EQ(ModOrDividend(-7, 0), -7);
  EXPECT_EQ(ModOrDividend(7U, 0U), 7U);
  EXPECT_EQ(DivOrZero(-7, 2), -3);
  EXPECT_EQ(ModOrDividend(-7, 2), -1);
}

TEST(TimeInt, SmallestNumberDividedByMinusOneDoesNotTrap) {
  EXPECT_EQ(DivOrZero(kSmallest, -1), kSmallest);
  EXPECT_EQ(ModOrDividend(kSmallest, -1), 0);
  EXPECT_EQ(WrapNegate(kSmallest), kSmallest);
  EXPECT_EQ(Magnitude(kSmallest), kTopBit);
}

TEST(TimeRatio, LeadingZerosCountsTheBitPattern) {
  EXPECT_EQ(SK_LeadingZeros(0), 32);
  EXPECT_EQ(SK_LeadingZeros(-1), 0);
  for (int bit = 0; bit < 32; ++bit) {
    std::uint32_t const lowest = 1U << bit;
    EXPECT_EQ(SK_LeadingZeros(AsSigned(lowest)), 31 - bit) << bit;
    EXPECT_EQ(SK_LeadingZeros(AsSigned(lowest | (lowest - 1))), 31 - bit) << bit;
  }
}

TEST(TimeRatio, UnsignedProductIsPredictedFromLengths) {
  EXPECT_TRUE(SK_UMulWouldOverflow(65536, 65535)) << "a product that just fits counts as overflow";
  EXPECT_TRUE(SK_UMulWouldOverflow(65536, 65536));
  EXPECT_FALSE(SK_UMulWouldOverflow(65535, 65535));
  EXPECT_TRUE(SK_UMulWouldOverflow(65536, 32768));
  EXPECT_FALSE(SK_UMulWouldOverflow(32768, 32768));
  EXPECT_FALSE(SK_UMulWouldOverflow(0, 0xFFFFFFFFU)) << "a factor of 0 never overflows";
  EXPECT_FALSE(SK_UMulWouldOverflow(0xFFFFFFFFU, 0));
  EXPECT_TRUE(SK_UMulWouldOverflow(1, kTopBit)) << "even by 1, with the top bit set";
  EXPECT_FALSE(SK_UMulWouldOverflow(1, kTopBit - 1));
}

TEST(TimeRatio, SignedProductIsPredictedFromLengths) {
  Pair const rows[] = {
      {"BelowTheLimit", 32768, 32767, 0},
      {"OnTheLimit", 32768, 32768, 1},
      {"NegativeBelow", -32768, 32767, 0},
      {"NegativeOn", -32768, -32768, 1},
      {"LargestByOneCountsAsOverflow", kLargest, 1, 1},
      {"HalfOfItByOneFits", kLargest / 2, 1, 0},
      {"LargestByZeroFits", kLargest, 0, 0},
      {"SmallestByZeroCountsAsOverflow", kSmallest, 0, 1},
      {"ZeroBySmallestCountsAsOverflow", 0, kSmallest, 1},
  };
  for (Pair const& row : rows) EXPECT_EQ(SK_MulWouldOverflow(row.a, row.b), row.expected == 1) << row.name;
}

TEST(TimeRatio, SumIsPredictedFromSigns) {
  Pair const rows[] = {
      {"Below", kLargest, 0, 0},
      {"Above", kLargest, 1, 1},
      {"NegativeOn", kSmallest + 1, -1, 0},
      {"NegativeBelow", kSmallest, -1, 1},
      {"BothSmallest", kSmallest, kSmallest, 1},
      {"DifferentSignsNever", kSmallest, kLargest, 0},
      {"ZeroCountsAsNotNegative", kSmallest, 0, 0},
  };
  for (Pair const& row : rows) {
    EXPECT_EQ(SK_AddWouldOverflow(row.a, row.b), row.expected == 1) << row.name;
    EXPECT_EQ(SK_AddWouldOverflow(row.b, row.a), row.expected == 1) << row.name;
  }
}

TEST(TimeRatio, ProductInHalvesFoldsItsMiddleIntoTheHighOne) {
  struct Row {
    std::uint32_t a, b, high, low;
  };
  Row const rows[] = {
      {3, 5, 0, 15},
      {0, 0xFFFFFFFFU, 0, 0},
      {0x8000, 0x8000, 0x4000, 0},   // the true product is 0x40000000 in the low half
      {0x10000, 0xFFFF, 0xFFFF, 0},  // the true one has 0 in the high half
      {0x10000, 0x10000, 1, 0},
      {0x12345, 0x100, 0x123, 0x4500},
      {0xFFFFFFFFU, 0xFFFFFFFFU, 0xFFFFFFFDU, 1},  // the true high half is one more
  };
  for (Row const& row : rows) {
    std::uint32_t high = 7;
    std::uint32_t low = 7;
    Mul32(row.a, row.b, &high, &low);
    EXPECT_EQ(high, row.high) << row.a << " * " << row.b;
    EXPECT_EQ(low, row.low) << row.a << " * " << row.b;
  }
}

TEST(TimeUtils, CommonDivisorWithZeroBehindIsOne) {
  struct Row {
    std::uint32_t a, b, expected;
  };
  Row const rows[] = {{0, 0, 1},
                      {7, 0, 1},
                      {0, 7, 7},
                      {12, 18, 6},
                      {18, 12, 6},
                      {1, 0xFFFFFFFFU, 1},
                      {kTopBit, kTopBit, kTopBit},
                      {kTopBit, 6, 2},
                      {35, 64, 1}};
  for (Row const& row : rows) {
    std::uint32_t result = 99;
    EXPECT_EQ(SK_TimeUtils::ComputeGCD(row.a, row.b, result), 0);
    EXPECT_EQ(result, row.expected) << row.a << ", " << row.b;
  }
}

struct Reduced {
  SK_Time in;
  SK_Time expected;
  int changed;
};

TEST(TimeUtils, ReduceRatioDividesNegativesUnsigned) {
  Reduced const rows[] = {
      {{6, 4}, {3, 2}, 0},
      {{-4, 2}, {2147483646, 1}, 0},
      {{-2, 2}, {2147483647, 1}, 0},
      {{-3, 2}, {-3, 2}, 0},
      {{-6, 9}, {1431655763, 3}, 0},  // (4294967296 - 6) / 3, cut off
      {{0, 5}, {0, 1}, 0},
      {{0, 0}, {0, 0}, 0},
      {{5, 0}, {5, 0}, 0},
      {{kSmallest, kTopBit}, {1, 1}, 0},
      {{kSmallest, 1}, {kSmallest, 1}, 0},
      {{0, 0xFFFFFFFFU}, {0, 1}, 0},
  };
  for (Reduced const& row : rows) {
    SK_Time out = {99, 99};
    EXPECT_EQ(SK_TimeUtils::ReduceRatio(row.in, out), 0);
    EXPECT_EQ(out, row.expected) << row.in;
    SK_Time same = row.in;
    SK_TimeUtils::ReduceRatio(same, same);
    EXPECT_EQ(same, row.expected) << row.in << " in place";
  }
}

TEST(TimeUtils, ReduceRatio2KeepsTheSignAndTellsOfChanges) {
  Reduced const rows[] = {
      {{6, 4}, {3, 2}, 1},
      {{-4, 2}, {-2, 1}, 1},
      {{-3, 2}, {-3, 2}, 0},
      {{0, 5}, {0, 1}, 1},
      {{0, 1}, {0, 1}, 0},
      {{0, 0}, {0, 0}, 0},
      {{5, 0}, {5, 0}, 0},
      {{kSmallest, kTopBit}, {kSmallest, kTopBit}, 1},  // told of, but not done
      {{kSmallest, 2}, {kSmallest / 2, 1}, 1},
  };
  for (Reduced const& row : rows) {
    SK_Time out = {99, 99};
    std::uint8_t changed = 77;
    EXPECT_EQ(SK_TimeUtils::ReduceRatio2(&row.in, &out, &changed), 0);
    EXPECT_EQ(out, row.expected) << row.in;
    EXPECT_EQ(changed, row.changed) << row.in;
    SK_Time same = row.in;
    EXPECT_EQ(SK_TimeUtils::ReduceRatio2(&same, &same, nullptr), 0);
    EXPECT_EQ(same, row.expected) << row.in << " in place, without a flag";
  }
}

TEST(TimeUtils, OnlyAtSixtyFramesTwoAreDroppedForOne) {
  EXPECT_EQ(SK_TimeUtils::CalcDropFactor(59), 1);
  EXPECT_EQ(SK_TimeUtils::CalcDropFactor(60), 2);
  EXPECT_EQ(SK_TimeUtils::CalcDropFactor(61), 1);
  EXPECT_EQ(SK_TimeUtils::CalcDropFactor(30), 1);
  EXPECT_EQ(SK_TimeUtils::CalcDropFactor(0), 1);
  EXPECT_EQ(SK_TimeUtils::CalcDropFactor(-60), 1);
}

struct Operation {
  char const* name;
  SK_Time a;
  SK_Time b;
  SK_Time expected;
  int code;
};

using Plain = int (*)(SK_Time const&, SK_Time const&, SK_Time&);
using Guarded = int (*)(SK_Time const*, SK_Time const*, SK_Time*);

/// Runs an operation three times: into an object of its own, and over each operand.
template <typename Call>
void ExpectAll(Operation const& row, Call call) {
  SCOPED_TRACE(row.name);
  SK_Time result = {99, 99};
  EXPECT_EQ(call(row.a, row.b, result), row.code);
  EXPECT_EQ(result, row.expected);
  SK_Time a = row.a;
  EXPECT_EQ(call(a, row.b, a), row.code);
  EXPECT_EQ(a, row.expected) << "over the left operand";
  SK_Time b = row.b;
  EXPECT_EQ(call(row.a, b, b), row.code);
  EXPECT_EQ(b, row.expected) << "over the right operand";
}

template <std::size_t kCount>
void ExpectPlain(Plain operation, Operation const (&rows)[kCount]) {
  for (Operation const& row : rows) ExpectAll(row, operation);
}

template <std::size_t kCount>
void ExpectGuarded(Guarded operation, Operation const (&rows)[kCount]) {
  for (Operation const& row : rows) {
    ExpectAll(row, [&](SK_Time const& a, SK_Time const& b, SK_Time& result) { return operation(&a, &b, &result); });
  }
}

TEST(TimeUtils, PlainProduct) {
  Operation const rows[] = {
      {"Reduces", {2, 3}, {3, 4}, {1, 2}, 0},
      {"LeftZeroScale", {1, 0}, {1, 2}, {0, 1}, 1},
      {"RightZeroScale", {1, 2}, {1, 0}, {0, 1}, 1},
      {"ZeroGetsScaleOne", {0, 7}, {3, 5}, {0, 1}, 0},
      {"WrapsToZeroWithScaleOne", {65536, 3}, {65536, 5}, {0, 1}, 0},
      {"Wraps", {65536, 1}, {65537, 1}, {65536, 1}, 0},
      {"NegativeIsDividedUnsigned", {-1, 2}, {2, 3}, {2147483647, 3}, 0},
      {"NegativeWithoutDivisorStays", {-1, 2}, {1, 3}, {-1, 6}, 0},
  };
  ExpectPlain(SK_TimeUtils::SK_MulTime, rows);
}

TEST(TimeUtils, PlainSum) {
  Operation const rows[] = {
      {"Reduces", {1, 3}, {1, 6}, {1, 2}, 0},
      {"LeftZeroScale", {1, 0}, {1, 2}, {0, 1}, 1},
      {"RightZeroScale", {1, 2}, {1, 0}, {0, 1}, 1},
      {"ScaleWrapsToZero", {1, 65536}, {1, 65536}, {131072, 0}, 0},
      {"SumOfZeroKeepsTheWrappedScale", {1, 65536}, {-1, 65536}, {0, 0}, 0},
      {"SumOfZero", {1, 2}, {-1, 2}, {0, 1}, 0},
      {"OperandsAreReducedFirst", {2, 131072}, {1, 1}, {65537, 65536}, 0},
      {"Wraps", {kLargest, 1}, {1, 1}, {kSmallest, 1}, 0},
  };
  ExpectPlain(SK_TimeUtils::SK_AddTime, rows);
}

TEST(TimeUtils, PlainDifference) {
  Operation const rows[] = {
      {"Reduces", {5, 6}, {1, 3}, {1, 2}, 0},
      {"LeftZeroScale", {1, 0}, {1, 2}, {0, 1}, 1},
      {"RightZeroScale", {1, 2}, {1, 0}, {0, 1}, 1},
      {"DifferenceOfZeroGetsScaleOne", {1, 65536}, {1, 65536}, {0, 1}, 0},
      {"NegativeIsDividedUnsigned", {1, 2}, {3, 2}, {1073741823, 1}, 0},  // -4/4
      {"NegativeWithoutDivisorStays", {1, 2}, {2, 3}, {-1, 6}, 0},
      {"Wraps", {kSmallest, 1}, {1, 1}, {kLargest, 1}, 0},
  };
  ExpectPlain(SK_TimeUtils::SK_SubTime, rows);
}

TEST(TimeUtils, GuardedProduct) {
  Operation const rows[] = {
      {"Reduces", {2, 3}, {3, 4}, {1, 2}, 0},
      {"LeftZeroScale", {1, 0}, {1, 2}, {0, 0}, 1},
      {"RightZeroScale", {1, 2}, {1, 0}, {0, 0}, 1},
      {"ZeroIsReduced", {0, 7}, {3, 5}, {0, 1}, 0},
      {"CancelsAcross", {1234567, 1000003}, {1000003, 1234567}, {1, 1}, 0},
      {"CancelsWithin", {1000000, 1000000}, {2000000, 1000000}, {2, 1}, 0},
      {"CancelsNegativesSigned", {-1234567, 1000003}, {1000003, 1234567}, {-1, 1}, 0},
      {"LargestProductThatIsNotRefused", {32768, 1}, {32767, 1}, {1073709056, 1}, 0},
      {"ProductThatFitsButIsRefusedSaturates", {46340, 1}, {46340, 1}, {kLimit, 1}, 0},
      {"NegativeSaturates", {-46340, 1}, {46340, 1}, {-kLimit, 1}, 0},
      {"OutOfRangeHasScaleZero", {46341, 1}, {46341, 1}, {0, 0}, 0},
      {"NegativeOutOfRange", {-46341, 1}, {46341, 1}, {0, 0}, 0},
      {"Approximates", {kLargest, 3}, {1, 1000003}, {11728089, 16384}, 0},
      {"TooSmallIsZero", {1, 65536}, {1, 131073}, {0, 1}, 0},
      {"OneReductionOfTheTopBitDivisor", {kSmallest, kTopBit}, {1, 3}, {-11184811, 33554432}, 0},
      {"NegativeIsDividedUnsigned", {-2, 3}, {1, 4}, {2147483647, 6}, 0},
  };
  ExpectGuarded(SK_TimeUtils::SK_MulTime2, rows);
}

TEST(TimeUtils, GuardedSum) {
  Operation const rows[] = {
      {"LeftZeroScale", {1, 0}, {1, 2}, {0, 0}, 21},
      {"RightZeroScale", {1, 2}, {1, 0}, {0, 0}, 21},
      {"LeftZeroKeepsTheOtherReduced", {0, 7}, {4, 6}, {2, 3}, 0},
      {"RightZeroKeepsTheOtherReduced", {4, 6}, {0, 9}, {2, 3}, 0},
      {"BothZero", {0, 7}, {0, 9}, {0, 1}, 0},
      {"SameScale", {1, 4}, {1, 4}, {1, 2}, 0},
      {"DifferentScales", {1, 3}, {1, 6}, {1, 2}, 0},
      {"ReducesAndTriesAgain", {1 << 30, 1U << 30U}, {1, 3}, {4, 3}, 0},
      {"SameScaleOutOfRange", {kLargest, 1}, {1, 1}, {0, 0}, 0},
      {"SameScaleReducedOutOfTheWay", {2000000000, 2000000000}, {1000000000, 2000000000}, {3, 2}, 0},
      {"Approximates", {1, 1000003}, {1, 1000033}, {231, 115502075}, 0},
      {"Saturates", {kLargest - 1, 1}, {1, 2}, {kLimit, 1}, 0},
      {"NegativeIsDividedUnsigned", {-3, 4}, {1, 4}, {2147483647, 2}, 0},
  };
  ExpectGuarded(SK_TimeUtils::SK_AddTime2, rows);
}

TEST(TimeUtils, GuardedDifference) {
  Operation const rows[] = {
      {"LeftZeroScale", {1, 0}, {1, 2}, {0, 0}, 21},
      {"RightZeroScale", {1, 2}, {1, 0}, {0, 0}, 21},
      {"SameScaleNegativeIsDividedUnsigned", {1, 2}, {3, 2}, {2147483647, 1}, 0},
      {"SameScaleNegativeWithoutDivisorStays", {1, 2}, {4, 2}, {-3, 2}, 0},
      {"ZeroMinusIsDividedUnsigned", {0, 1}, {4, 6}, {2147483646, 3}, 0},
      {"ZeroMinusWithoutDivisorStays", {0, 1}, {1, 3}, {-1, 3}, 0},
      {"MinusZero", {4, 6}, {0, 9}, {2, 3}, 0},
      {"NegationOfTheSmallestWraps", {1, 1}, {kSmallest, 1}, {-kLargest, 1}, 0},
      {"OutOfRange", {kSmallest, 1}, {1, 1}, {0, 0}, 0},
      {"Approximates", {1, 1000003}, {1000000, 1000033}, {-8388323, 8388608}, 0},
      {"Equal", {5, 7}, {5, 7}, {0, 1}, 0},
  };
  ExpectGuarded(SK_TimeUtils::SK_SubTime2, rows);
}

TEST(TimeUtils, GuardedResultsAreExactWhereNothingOverflows) {
  std::mt19937 random(1);
  std::uniform_int_distribution<std::int32_t> values(0, 8000);
  std::uniform_int_distribution<std::int32_t> scales(1, 8000);
  auto const reduced = [](std::int64_t value, std::int64_t scale) {
    std::int64_t const divisor = std::gcd(value, scale);
    return SK_Time{static_cast<std::int32_t>(value / divisor), static_cast<std::uint32_t>(scale / divisor)};
  };
  for (int i = 0; i < 50000; ++i) {
    std::int64_t const n = values(random), d = scales(random), m = values(random), e = scales(random);
    SK_Time const a = {static_cast<std::int32_t>(n), static_cast<std::uint32_t>(d)};
    SK_Time const b = {static_cast<std::int32_t>(m), static_cast<std::uint32_t>(e)};
    SK_Time result;
    SK_TimeUtils::SK_AddTime2(&a, &b, &result);
    ASSERT_EQ(result, reduced(n * e + m * d, d * e)) << a << " + " << b;
    SK_TimeUtils::SK_MulTime2(&a, &b, &result);
    ASSERT_EQ(result, reduced(n * m, d * e)) << a << " * " << b;
    if (n * e < m * d) continue;
    SK_TimeUtils::SK_SubTime2(&a, &b, &result);
    ASSERT_EQ(result, reduced(n * e - m * d, d * e)) << a << " - " << b;
  }
}

void AddTopBitDivisor() {
  itimerval soon = {};
  soon.it_value.tv_usec = 200000;  // of its own time, for what takes less than a microsecond where it returns
  setitimer(ITIMER_VIRTUAL, &soon, nullptr);
  SK_Time const a = {kSmallest, kTopBit};
  SK_Time const b = {1, 3};
  SK_Time result;
  SK_TimeUtils::SK_AddTime2(&a, &b, &result);
}

TEST(TimeUtilsDeathTest, SumOfTheTopBitDivisorNeverReturns) {
  EXPECT_EXIT(AddTopBitDivisor(), testing::KilledBySignal(SIGVTALRM), "");
}

TEST(TimeUtils, TopBitDivisorIsHarmlessWithoutOverflow) {
  SK_Time const a = {kSmallest, kTopBit};
  SK_Time const zero = {0, 3};
  SK_Time result;
  EXPECT_EQ(SK_TimeUtils::SK_AddTime2(&a, &zero, &result), 0);
  EXPECT_EQ(result, (SK_Time{1, 1})) << "reduced at the end, unsigned";
}

struct FromDouble {
  double d;
  SK_Time expected;
  int overflow;
};

TEST(TimeRatio, DoubleBecomesTheFractionOfItsFloat) {
  FromDouble const rows[] = {
      {0.0, {0, 1}, 0},
      {-0.0, {0, 1}, 0},
      {0.5, {1, 2}, 0},
      {1.5, {3, 2}, 0},
      {-0.25, {-1, 4}, 0},
      {-2.5, {-5, 2}, 0},
      {1000000.0, {1000000, 1}, 0},
      {0.1, {13421773, 134217728}, 0},
      {29.97, {15712911, 524288}, 0},
      {1e-9, {1, 1000000028}, 0},
      {-1e-9, {-1, 1000000028}, 0},
      {1073741760.0, {1073741760, 1}, 0},  // the last float below the limit
      {1073741823.0, {1073741824, 1}, 0},  // rounds up to the limit
      {1073741824.0, {1073741824, 1}, 0},  // saturates from here on
      {2147483647.0, {1073741824, 1}, 0},  // rounds up to 2 to the 31st
      {-2147483647.0, {-1073741824, 1}, 0},
      {2147483648.0, {0, 0}, 1},
      {-2147483648.0, {0, 0}, 1},
      {1e300, {0, 0}, 1},
      {0x1p-33, {0, 1}, 0},  // the exponent is too small
      {0x1p-32, {0, 1}, 0},
      {0x1p-31, {0, 1}, 0},
      {0x1p-30, {0, 1}, 0},  // twice the limit wraps, so not even 1/limit is near
      {0x1.8p-30, {1, 715827883}, 0},
      {1e-300, {0, 1}, 0},
  };
  for (FromDouble const& row : rows) {
    SCOPED_TRACE(row.d);
    SK_Time result = {99, 99};
    std::uint8_t overflow = 77;
    EXPECT_EQ(SK_FpLong2Ratio(row.d, &result, &overflow), 0);
    EXPECT_EQ(result, row.expected);
    EXPECT_EQ(overflow, row.overflow);
  }
}

TEST(TimeRatio, DoubleIsRoundedToFloatFirst) {
  SK_Time result;
  EXPECT_EQ(Mp_Double2RatioSmart(16777217.0, &result), 0);
  EXPECT_EQ(result, (SK_Time{16777216, 1}));
  EXPECT_EQ(Mp_Double2RatioSmart(0.1, &result), 0);
  EXPECT_EQ(result, (SK_Time{13421773, 134217728}));
}

struct Approximated {
  char const* name;
  float x;
  std::int32_t limit;
  SK_Time expected;
};

TEST(TimeRatio, ApproximationKeepsBothPartsWithinTheLimit) {
  Approximated const rows[] = {
      {"Exact", 0.3F, 10, {3, 10}},
      {"BelowOneAtTheLimit", 0.3F, 3, {1, 3}},
      {"AboveOne", 3.3F, 10, {10, 3}},
      {"WholeAboveTheLimit", 100.0F, 10, {10, 1}},
      {"WholeOnTheLimit", 10.0F, 10, {10, 1}},
      {"WholeBelowTheLimit", 9.0F, 10, {9, 1}},
      {"NegativeAboveTheLimit", -100.0F, 10, {-10, 1}},
      {"LimitOfZero", 0.5F, 0, {0, 1}},
      {"NegativeLimit", 0.5F, -1, {0, 1}},
      {"LimitOfZeroAboveOne", 100.0F, 0, {0, 1}},
      {"NearerToTheSmallestFraction", 1.0F / 15, 10, {1, 10}},
      {"NearerToItNegative", -1.0F / 15, 10, {-1, 10}},
      {"NearerToZero", 1.0F / 25, 10, {0, 1}},
      {"HalfOfTheSmallestFractionByOneStep", 1.0F / 19, 10, {1, 10}},
      {"OneStepFarther", 1.0F / 20.5F, 10, {0, 1}},
      {"TooLargeForTheIntegers", 3e9F, kLargest, {kLargest, 1}},
      {"LargestFloatBelowThat", 2147483520.0F, kLargest, {2147483520, 1}},
      {"TinyAtTheSmallestExponent", 0x1p-31F, kLargest, {1, 2147483647}},
      {"TinyBetweenTheExponents", 0x1.8p-32F, kLargest, {1, 2147483647}},
      {"TinyBetweenTheExponentsWithASmallLimit", 0x1.8p-32F, kLimit, {0, 1}},
      {"NothingBelowThat", 0x1p-32F, kLargest, {0, 1}},
      {"LongDivisionInSteps", 0x1.8p-31F, kLargest, {1, 1431655765}},
      {"Zero", 0.0F, 10, {0, 1}},
      {"Pi", 3.14159274F, kLimit, {13176795, 4194304}},
      {"OneHundredThousandth", 1e-5F, kLimit, {7917, 791700020}},
      {"ManyTerms", 7.3e-8F, kLimit, {76, 1041095855}},
      {"NearOne", 1.0000001F, kLimit, {8388609, 8388608}},
      // Half of the last term: the fraction with half of it would be nearer, 1915/997098543, but the
      // folded product decides for the one before.
      {"TieByTheFoldedProduct", 0x1.01c65ep-19F, kLimit, {1118, 582118105}},
      {"TieTheOtherWay", 0x1.f5e01p-26F, kLimit, {27, 924246560}},  // and 13/445007603 would be nearer
  };
  for (Approximated const& row : rows) {
    EXPECT_EQ(ratapprox(row.x, row.limit), row.expected) << row.name;
  }
}

/// How near the nearest fraction is whose larger part is at most `limit`, by trying all of them.
double SmallestDistance(double x, std::int32_t limit) {
  double best = x;
  for (std::int32_t value = 1; value <= limit; ++value) {
    for (std::int32_t scale = 1; scale <= limit; ++scale) {
      best = std::min(best, std::fabs(x - static_cast<double>(value) / scale));
    }
  }
  return best;
}

TEST(TimeRatio, ApproximationIsTheNearestFraction) {
  std::mt19937 random(2);
  std::uniform_real_distribution<float> logarithms(-4.0F, 4.0F);
  std::uniform_int_distribution<std::int32_t> limits(1, 30);
  for (int i = 0; i < 20000; ++i) {
    float const x = std::exp(logarithms(random));
    std::int32_t const limit = limits(random);
    SK_Time const result = ratapprox(x, limit);
    ASSERT_LE(result.value, limit) << x;
    ASSERT_LE(result.scale, static_cast<std::uint32_t>(limit)) << x;
    double const distance = std::fabs(static_cast<double>(x) - static_cast<double>(result.value) / result.scale);
    ASSERT_DOUBLE_EQ(distance, SmallestDistance(static_cast<double>(x), limit)) << x << " with " << limit;
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
