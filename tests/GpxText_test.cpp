// Texts of elements: numbers, times, and what is too long.
#include "GpxText.h"

#include <gtest/gtest.h>

#include <cmath>

namespace senmark_gpx {
namespace {

namespace kit = senmark::kit;

TEST(GpxText, NumbersAreDecimal) {
  struct Row {
    char const* text;
    double number;
  };
  Row const rows[] = {
      {"0", 0},           {"1.5", 1.5},  {"-1.5", -1.5}, {"+1.5", 1.5},
      {" \t\r\n7 \n", 7}, {".5", 0.5},   {"5.", 5},      {"1e3", 1000},
      {"-2.5E-1", -0.25}, {"00017", 17}, {"-0", -0.0},   {"123456789012345678", 123456789012345678.0},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(ParseNumber(row.text), row.number) << row.text;
  }
}

TEST(GpxText, SomeTextsStandForNoNumber) {
  for (char const* const text : {"", " \n", "NaN", "nan", "INF", "-INF", "inf", "-Infinity"}) {
    std::optional<double> const number = ParseNumber(text);
    ASSERT_TRUE(number.has_value()) << text;
    EXPECT_TRUE(std::isnan(*number)) << text;
  }
}

TEST(GpxText, WhatElseIsNoNumberIsNone) {
  for (char const* const text : {"x", "1x", "1 2", "1,5", "+-1", "--1", "+", "-", ".", "0x10", "1e", "1e999",
                                 "\xC2\xA0"
                                 "1"}) {
    EXPECT_EQ(ParseNumber(text), std::nullopt) << text;
  }
}

TEST(GpxText, TimesAreBroughtToGmt) {
  struct Row {
    char const* text;
    std::int64_t seconds;
    std::int32_t nanoseconds;
  };
  Row const rows[] = {
      {"1970-01-02T00:00:00Z", 86400, 0},  {" 1970-01-01T00:00:01.25Z\n", 1, 250000000},
      {"1970-01-01T02:00:00+02:00", 0, 0}, {"1969-12-31T19:00:00.000000001-05:00", 0, 1},
      {"1970-01-01T00:01:00", 60, 0},
  };
  for (Row const& row : rows) {
    std::optional<kit::Instant> const time = ParseTime(row.text);
    ASSERT_TRUE(time.has_value()) << row.text;
    EXPECT_EQ(time->seconds, row.seconds) << row.text;
    EXPECT_EQ(time->nanoseconds, row.nanoseconds) << row.text;
  }
  for (char const* const text : {"", "now", "1970-13-01T00:00:00Z", "1970-01-01T00:00:00Zx", "01-01-1970"}) {
    EXPECT_EQ(ParseTime(text), std::nullopt) << text;
  }
}

TEST(GpxText, CutsBetweenCharacters) {
  struct Row {
    char const* text;
    std::size_t longest;
    char const* cut;
  };
  Row const rows[] = {
      {"abc", 4, "abc"},    {"abc", 3, "abc"},          {"abc", 2, "ab"},      {"abc", 0, ""},
      {"a\u00E9b", 2, "a"}, {"a\u00E9b", 3, "a\u00E9"}, {"\U0001F6B4", 3, ""}, {"\U0001F6B4x", 4, "\U0001F6B4"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(CutText(row.text, row.longest), row.cut);
  }
}

TEST(GpxText, WhiteSpaceIsThatOfXml) {
  EXPECT_EQ(Trimmed(" \t\r\na b\n"), "a b");
  EXPECT_EQ(Trimmed("\u00A0x"), "\u00A0x");
  EXPECT_EQ(Trimmed("\n"), "");
}

}  // namespace
}  // namespace senmark_gpx
