#include "SK_SampleBlock.h"

#include <gtest/gtest.h>

#include <cstring>
#include <limits>
#include <string>
#include <vector>

#include "senmark/SK_Records.h"

namespace SK_NAMESPACE_INT {
namespace {

using ns_sensor::SK_DynamicDataSample;

double NumberAt(SK_SampleBlock const& block, std::uint64_t i, std::uint64_t element = 0) {
  return static_cast<double const*>(block.ValuePointer(i))[element];
}

TEST(SampleBlock, IsEmptyAtFirst) {
  EXPECT_EQ(SK_SampleBlock().Count(), 0U);
}

TEST(SampleBlock, NumbersHaveSizeZero) {
  SK_SampleBlock block;
  ASSERT_TRUE(block.Start(ns_sensor::kNumberValue, 2, 1));
  EXPECT_EQ(block.Count(), 2U);
  *block.NextTime() = {1, 30};
  *block.NextNumbers() = 1.5;
  block.Advance(1);
  *block.NextTime() = {-2, 5};
  *block.NextNumbers() = -2.5;
  block.Advance(1);
  EXPECT_EQ(block.Filled(), 2U);
  EXPECT_EQ(block.Time(1).value, -2);
  EXPECT_EQ(block.Time(1).scale, 5U);
  EXPECT_EQ(block.ValueType(1), ns_sensor::kNumberValue);
  EXPECT_EQ(block.ValueSize(1), 0U);
  EXPECT_EQ(NumberAt(block, 0), 1.5);
  EXPECT_EQ(NumberAt(block, 1), -2.5);
}

TEST(SampleBlock, ArraysLieBehindEachOther) {
  SK_SampleBlock block;
  ASSERT_TRUE(block.Start(ns_sensor::kNumberArrayValue, 2, 3));
  for (int i = 0; i < 2; ++i) {
    *block.NextTime() = {i, 1};
    for (int element = 0; element < 3; ++element) {
      block.NextNumbers()[element] = 10 * i + element;
    }
    block.Advance(1);
  }
  EXPECT_EQ(block.ValueType(1), ns_sensor::kNumberArrayValue);
  EXPECT_EQ(block.ValueSize(0), 3U);
  EXPECT_EQ(NumberAt(block, 0, 2), 2);
  EXPECT_EQ(NumberAt(block, 1, 0), 10);
  EXPECT_EQ(NumberAt(block, 1, 2), 12);
}

TEST(SampleBlock, TextsEndInNulAndAreThereWhenEmpty) {
  SK_SampleBlock block;
  ASSERT_TRUE(block.Start(ns_sensor::kStringValue, 3, 0));
  block.AddText({0, 1}, "first");
  block.AddText({1, 1}, "");
  block.AddText({2, 1}, std::string(5000, 'x'));
  char const* const expected[] = {"first", ""};
  for (std::uint64_t i = 0; i < 2; ++i) {
    ASSERT_NE(block.ValuePointer(i), nullptr);
    EXPECT_STREQ(static_cast<char const*>(block.ValuePointer(i)), expected[i]);
    EXPECT_EQ(block.ValueSize(i), std::strlen(expected[i]));
    EXPECT_EQ(block.ValueType(i), ns_sensor::kStringValue);
    EXPECT_EQ(block.Time(i).value, static_cast<std::int32_t>(i));
  }
  EXPECT_EQ(block.ValueSize(2), 5000U);
  EXPECT_EQ(static_cast<char const*>(block.ValuePointer(2))[5000], '\0');
}

TEST(SampleBlock, WhatWasNeverFilledIsTheNumberZero) {
  SK_SampleBlock block;
  ASSERT_TRUE(block.Start(ns_sensor::kStringValue, 2, 0));
  block.AddText({9, 1}, "a");
  EXPECT_EQ(block.ValueType(1), ns_sensor::kNumberValue);
  EXPECT_EQ(block.ValueSize(1), 0U);
  EXPECT_EQ(NumberAt(block, 1), 0.0);
  EXPECT_EQ(block.Time(1).value, 0);
  EXPECT_EQ(block.Time(1).scale, 1U);
}

TEST(SampleBlock, StartingAnewForgets) {
  SK_SampleBlock block;
  ASSERT_TRUE(block.Start(ns_sensor::kStringValue, 1, 0));
  block.AddText({9, 1}, "a");
  ASSERT_TRUE(block.Start(ns_sensor::kNumberValue, 1, 1));
  EXPECT_EQ(block.Filled(), 0U);
  EXPECT_EQ(block.Count(), 1U);
}

TEST(SampleBlock, RefusesWhatNoMemoryHolds) {
  constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();
  for (std::uint64_t const count : {kHuge, kHuge / 2, kHuge / 8 + 1, kHuge / 24 + 1}) {
    SK_SampleBlock block;
    EXPECT_FALSE(block.Start(ns_sensor::kNumberArrayValue, count, 3)) << count;
    EXPECT_EQ(block.Count(), 0U);
  }
  SK_SampleBlock block;
  EXPECT_FALSE(block.Start(ns_sensor::kNumberArrayValue, 2, kHuge));
}

TEST(SampleBlock, CopiesBecomeRecordsOfTheirKind) {
  SK_SampleBlock block;
  SK_DynamicDataSample record;
  ASSERT_TRUE(block.Start(ns_sensor::kNumberArrayValue, 1, 2));
  *block.NextTime() = {7, 30};
  block.NextNumbers()[0] = 1;
  block.NextNumbers()[1] = 2;
  block.Advance(1);
  block.CopyTo(0, record);
  EXPECT_EQ(record.time.value, 7);
  EXPECT_EQ(record.time.scale, 30U);
  EXPECT_EQ(boost::get<std::vector<double>>(record.value.value), (std::vector<double>{1, 2}));

  ASSERT_TRUE(block.Start(ns_sensor::kStringValue, 2, 0));
  block.AddText({0, 1}, "text");
  block.CopyTo(0, record);
  EXPECT_EQ(boost::get<std::string>(record.value.value), "text");
  block.CopyTo(1, record);
  EXPECT_EQ(boost::get<double>(record.value.value), 0.0);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
