// What single cells mean: dates, times of day, counts of time, numbers, and the names of columns.
#include <gtest/gtest.h>

#include <cstdio>
#include <random>

#include "CellClass.h"
#include "ColumnName.h"
#include "NumberText.h"
#include "TimeForm.h"

namespace senmark_series {
namespace {

std::string Text(std::optional<kit::Instant> const& instant) {
  if (!instant) {
    return "none";
  }
  kit::CivilTime const time = kit::MakeCivilTime(*instant);
  char text[64];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02d.%09d", time.year, time.month, time.day, time.hour,
                time.minute, time.second, static_cast<int>(time.nanoseconds));
  std::string shown = text;
  while (shown.back() == '0') {
    shown.pop_back();
  }
  return shown.back() == '.' ? shown.substr(0, shown.size() - 1) : shown;
}

struct MomentCase {
  char const* text;
  char const* dayFirst;
  char const* monthFirst;
};

MomentCase const kMoments[] = {
    {"2024-05-01T12:30:00.25+02:00", "2024-05-01T10:30:00.25", "2024-05-01T10:30:00.25"},
    {"2024-05-01 12:30:00 UTC", "2024-05-01T12:30:00", "2024-05-01T12:30:00"},
    {"2024-05-01 12:30 gmt", "2024-05-01T12:30:00", "2024-05-01T12:30:00"},
    {"20240501T123000Z", "2024-05-01T12:30:00", "2024-05-01T12:30:00"},
    {"03/04/2024", "2024-04-03T00:00:00", "2024-03-04T00:00:00"},
    {"13/04/2024", "2024-04-13T00:00:00", "none"},
    {"04/13/2024", "none", "2024-04-13T00:00:00"},
    {"3/4/24 7:05", "2024-04-03T07:05:00", "2024-03-04T07:05:00"},
    {"3.4.69", "2069-04-03T00:00:00", "2069-03-04T00:00:00"},
    {"3.4.70", "1970-04-03T00:00:00", "1970-03-04T00:00:00"},
    {"30-12-2016", "2016-12-30T00:00:00", "none"},
    {"2024/4/3 07:05:06,5", "2024-04-03T07:05:06.5", "2024-04-03T07:05:06.5"},
    {"2024.04.03T07:05", "2024-04-03T07:05:00", "2024-04-03T07:05:00"},
    {"3/4/2024, 07:05:06", "2024-04-03T07:05:06", "2024-03-04T07:05:06"},
    {"3/4/2024 12:05:06 AM", "2024-04-03T00:05:06", "2024-03-04T00:05:06"},
    {"3/4/2024 12:05 pm", "2024-04-03T12:05:00", "2024-03-04T12:05:00"},
    {"3/4/2024 1:05:06PM", "2024-04-03T13:05:06", "2024-03-04T13:05:06"},
    {"3/4/2024 13:05 PM", "none", "none"},
    {"3/4/2024 0:05 AM", "none", "none"},
    {"3/4/2024 07:05+0530", "2024-04-03T01:35:00", "2024-03-04T01:35:00"},
    {"3/4/2024 18.00.00", "2024-04-03T18:00:00", "2024-03-04T18:00:00"},
    {"3/4/2024 18.00", "none", "none"},
    {"31/12/2024 24:00", "none", "none"},
    {"30/02/2024", "none", "none"},
    {"29/02/2023", "none", "none"},
    {"3/4-2024", "none", "none"},
    {"3/4/2024x", "none", "none"},
    {"3/4/2024 x", "none", "none"},
    {"3/4/2024 07:05 CET", "none", "none"},
    {"3/4/024", "none", "none"},
    {"324/4/3", "none", "none"},
    {"2024/04/031", "none", "none"},
    {"", "none", "none"},
};

TEST(SeriesDates, AreReadInEitherOrder) {
  for (MomentCase const& row : kMoments) {
    EXPECT_EQ(Text(ParseMoment(row.text, eDateOrder::kDayFirst, 0)), row.dayFirst) << row.text;
    EXPECT_EQ(Text(ParseMoment(row.text, eDateOrder::kMonthFirst, 0)), row.monthFirst) << row.text;
  }
  EXPECT_EQ(Text(ParseMoment("1/1/2024 00:30", eDateOrder::kDayFirst, 60)), "2023-12-31T23:30:00");
}

TEST(SeriesDates, StandAlone) {
  EXPECT_EQ(ParseDate("20241231", eDateOrder::kDayFirst)->month, 12);
  EXPECT_EQ(ParseDate("2024-12-31", eDateOrder::kDayFirst)->day, 31);
  EXPECT_EQ(ParseDate("12/31/2024", eDateOrder::kMonthFirst)->day, 31);
  for (char const* const text : {"20241301", "2024123", "2024-12-31T00:00", "12/31/2024 ", ""}) {
    EXPECT_FALSE(ParseDate(text, eDateOrder::kDayFirst)) << text;
  }
}

struct ClockCase {
  char const* text;
  char const* colons;  ///< read as a time of day with signs
  char const* digits;  ///< read as one that may be digits alone
};

ClockCase const kClocks[] = {
    {"7:05", "07:05:00.0+0", "07:05:00.0+0"},
    {"23:59:60", "23:59:60.0+0", "23:59:60.0+0"},
    {"07:05:06.000000001", "07:05:06.1+0", "07:05:06.1+0"},
    {"07:05:06.1234567899", "07:05:06.123456789+0", "07:05:06.123456789+0"},
    {"07.05.06", "07:05:06.0+0", "07:05:06.0+0"},
    {"07.05", "none", "none"},
    {"07:05:06Z", "07:05:06.0+0", "07:05:06.0+0"},
    {"07:05 +02:00", "07:05:00.0+120", "07:05:00.0+120"},
    {"0050", "none", "00:50:00.0+0"},
    {"50", "none", "00:50:00.0+0"},
    {"930", "none", "09:30:00.0+0"},
    {"171948", "none", "17:19:48.0+0"},
    {"171948.25", "none", "17:19:48.250000000+0"},
    {"12345", "none", "none"},
    {"2400", "none", "none"},
    {"0060", "none", "none"},
    {"24:00", "none", "none"},
    {"07:60", "none", "none"},
    {"07:5", "none", "none"},
    {"07:05:", "none", "none"},
    {"07:05:06.", "none", "none"},
    {"07:05x", "none", "none"},
    {"", "none", "none"},
};

TEST(SeriesClocks, AreReadWithSignsOrWithout) {
  auto const shown = [](char const* text, bool mayBeDigits) -> std::string {
    kit::CivilTime time;
    if (!ParseClock(text, mayBeDigits, time)) {
      return "none";
    }
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), "%02d:%02d:%02d.%d+%d", time.hour, time.minute, time.second,
                  static_cast<int>(time.nanoseconds), time.zoneMinutes);
    return buffer;
  };
  for (ClockCase const& row : kClocks) {
    EXPECT_EQ(shown(row.text, false), row.colons) << row.text;
    EXPECT_EQ(shown(row.text, true), row.digits) << row.text;
  }
}

struct CountCase {
  char const* text;
  unsigned unitDigits;
  char decimalMark;
  char const* moment;
};

CountCase const kCounts[] = {
    {"0", 0, '.', "1970-01-01T00:00:00"},
    {"1700000000", 0, '.', "2023-11-14T22:13:20"},
    {"1700000000123", 3, '.', "2023-11-14T22:13:20.123"},
    {"1700000000123456", 6, '.', "2023-11-14T22:13:20.123456"},
    {"1700000000123456789", 9, '.', "2023-11-14T22:13:20.123456789"},
    {"0.010078907", 0, '.', "1970-01-01T00:00:00.010078907"},
    {"0,5", 0, ',', "1970-01-01T00:00:00.5"},
    {"0.5", 0, ',', "none"},
    {"-0.25", 0, '.', "1969-12-31T23:59:59.75"},
    {"-1", 3, '.', "1969-12-31T23:59:59.999"},
    {"+1.5", 3, '.', "1970-01-01T00:00:00.0015"},
    {".5", 0, '.', "1970-01-01T00:00:00.5"},
    {"5.", 0, '.', "1970-01-01T00:00:05"},
    {"0.0166666666666", 0, '.', "1970-01-01T00:00:00.016666667"},
    {"0.9999999999", 0, '.', "1970-01-01T00:00:01"},
    {"1.9999999999999999999", 3, '.', "1970-01-01T00:00:00.002"},
    {"0.4", 9, '.', "1970-01-01T00:00:00"},
    {"0.5", 9, '.', "1970-01-01T00:00:00.000000001"},
    {"1.5e3", 0, '.', "1970-01-01T00:25:00"},
    {"15e-1", 3, '.', "1970-01-01T00:00:00.0015"},
    {"253402300799", 0, '.', "9999-12-31T23:59:59"},
    {"253402300800", 0, '.', "none"},
    {"18446744073709551615", 9, '.', "2554-07-21T23:34:33.709551615"},
    {"184467440737095516150", 9, '.', "none"},
    {"", 0, '.', "none"},
    {".", 0, '.', "none"},
    {"-", 0, '.', "none"},
    {"1 2", 0, '.', "none"},
    {"nan", 0, '.', "none"},
};

TEST(SeriesCounts, AreExactToTheNanosecond) {
  for (CountCase const& row : kCounts) {
    EXPECT_EQ(Text(CountedTime(row.text, row.unitDigits, row.decimalMark)), row.moment)
        << row.text << " in 1e-" << row.unitDigits;
  }
}

TEST(SeriesForms, TellTheTimeOfARow) {
  Row row;
  row.cells = {"03/04/2024", "0730", "5", "999-01-01", "12:00"};
  auto const at = [&](eTimeKind kind, std::size_t column, std::size_t clock = TimeForm::kNoColumn) {
    TimeForm form;
    form.kind = kind;
    form.column = column;
    form.clockColumn = clock;
    form.zoneMinutes = 60;
    return Text(TimeOf(row, form, eDateOrder::kMonthFirst));
  };
  EXPECT_EQ(at(eTimeKind::kPair, 0, 1), "2024-03-04T06:30:00");
  EXPECT_EQ(at(eTimeKind::kPair, 0, 2), "2024-03-03T23:05:00");
  EXPECT_EQ(at(eTimeKind::kPair, 1, 0), "none");
  EXPECT_EQ(at(eTimeKind::kDate, 0), "2024-03-03T23:00:00");
  EXPECT_EQ(at(eTimeKind::kIso, 0), "none");
  EXPECT_EQ(at(eTimeKind::kElapsed, 2), "1970-01-01T00:00:05");
  EXPECT_EQ(at(eTimeKind::kClock, 4), "1970-01-01T11:00:00");
  EXPECT_EQ(at(eTimeKind::kIso, 7), "none");
  // A data file has four digits for a year.
  row.cells = {"0999-12-31", "1000-01-02", "9999-12-31T23:59:58.9", "9999-12-31T23:59:59+01:00", "9999-12-31T22:59:59"};
  EXPECT_EQ(at(eTimeKind::kIso, 0), "none");
  EXPECT_EQ(at(eTimeKind::kIso, 1), "1000-01-01T23:00:00");
  EXPECT_EQ(at(eTimeKind::kIso, 2), "9999-12-31T22:59:58.9");
  EXPECT_EQ(at(eTimeKind::kIso, 3), "9999-12-31T22:59:59");
  row.isBroken = true;
  EXPECT_EQ(at(eTimeKind::kIso, 1), "none");
}

TEST(SeriesForms, DigitsAreAsManyAsReadersCanTellApart) {
  EXPECT_EQ(DigitsOf({5, 0}), 0U);
  EXPECT_EQ(DigitsOf({5, 120000000}), 2U);
  EXPECT_EQ(DigitsOf({5, 1}), 9U);
  // A fraction of 32 bits: less than 2147483648 units.
  EXPECT_EQ(DigitsWithin(0), 9U);
  EXPECT_EQ(DigitsWithin(1), 9U);
  EXPECT_EQ(DigitsWithin(2), 8U);
  EXPECT_EQ(DigitsWithin(2146), 6U);
  EXPECT_EQ(DigitsWithin(2147), 5U);
  EXPECT_EQ(DigitsWithin(24 * 86400), 3U);
  EXPECT_EQ(DigitsWithin(25 * 86400), 2U);
  EXPECT_EQ(DigitsWithin(4000000000), 0U);
}

struct NumberCase {
  char const* text;
  char decimalMark;
  bool isNumber;
  double value;
  unsigned decimals;
  bool isTiny;
};

NumberCase const kNumbers[] = {
    {"0", '.', true, 0, 0, false},
    {"-1.50", '.', true, -1.5, 2, false},
    {"+.5", '.', true, 0.5, 1, false},
    {"5.", '.', true, 5, 0, false},
    {".097", '.', true, 0.097, 3, false},
    {"007", '.', true, 7, 0, false},
    {"1,5", ',', true, 1.5, 1, false},
    {"1.5", ',', false, 0, 0, false},
    {"1,5", '.', false, 0, 0, false},
    {"7.04e-06", '.', true, 7.04e-06, 8, true},
    {"7,04E-06", ',', true, 7.04e-06, 8, true},
    {"1.5e+3", '.', true, 1500, 0, false},
    {"1.234567e3", '.', true, 1234.567, 3, false},
    {"0.0001", '.', true, 0.0001, 4, false},
    {"0.00009", '.', true, 0.00009, 5, true},
    {"0.00000", '.', true, 0, 5, false},
    {"1e-400", '.', false, 0, 0, false},
    {"123456789012345", '.', true, 123456789012345, 0, false},
    {"1234567890123456", '.', true, 1234567890123456, 0, false},
    {"9999999999999999", '.', false, 0, 0, false},  // the double nearest to it is 1e16
    {"10000000000000000", '.', false, 0, 0, false},
    {"1e16", '.', false, 0, 0, false},
    {"0.1234567890123456789", '.', true, 0.1234567890123456789, 15, false},
    {"0000000000000000000.5", '.', true, 0.5, 1, false},
    {"inf", '.', false, 0, 0, false},
    {"-nan", '.', false, 0, 0, false},
    {"0x10", '.', false, 0, 0, false},
    {"1e", '.', false, 0, 0, false},
    {"1e+", '.', false, 0, 0, false},
    {"1e+-5", '.', false, 0, 0, false},
    {"e5", '.', false, 0, 0, false},
    {"1e1000", '.', false, 0, 0, false},
    {"+-1", '.', false, 0, 0, false},
    {"1.2.3", '.', false, 0, 0, false},
    {"1 2", '.', false, 0, 0, false},
    {"1m", '.', false, 0, 0, false},
    {".", '.', false, 0, 0, false},
    {"-", '.', false, 0, 0, false},
    {"", '.', false, 0, 0, false},
};

TEST(SeriesNumbers, AreReadWholly) {
  for (NumberCase const& row : kNumbers) {
    NumberShape const shape = ShapeOf(row.text, row.decimalMark);
    std::optional<double> const value = ToNumber(row.text, row.decimalMark);
    EXPECT_EQ(shape.isNumber, row.isNumber) << row.text;
    EXPECT_EQ(value.has_value(), row.isNumber) << row.text;
    if (row.isNumber && value) {
      EXPECT_EQ(*value, row.value) << row.text;
      EXPECT_EQ(shape.decimals, row.decimals) << row.text;
      EXPECT_EQ(shape.isTiny, row.isTiny) << row.text;
    }
  }
  EXPECT_FALSE(ToNumber(std::string(65, '1'), '.'));
}

TEST(SeriesNumbers, AreTheDoublesNearestToTheirTexts) {
  std::mt19937 random(7);
  for (int i = 0; i != 100000; ++i) {
    std::string text = random() % 2 == 0 ? "-" : "";
    for (auto digit = random() % 9 + 1; digit != 0; --digit) {
      text += static_cast<char>('0' + random() % 10);
    }
    text += '.';
    for (auto digit = random() % 9; digit != 0; --digit) {
      text += static_cast<char>('0' + random() % 10);
    }
    ASSERT_EQ(ToNumber(text, '.'), std::strtod(text.c_str(), nullptr)) << text;
  }
}

TEST(SeriesNumbers, WordsForGaps) {
  for (char const* const word : {"", "-", "--", "NA", "n/a", "N/A", "NaN", "nan", "NULL", "None"}) {
    EXPECT_TRUE(IsGapWord(word)) << word;
  }
  for (char const* const word : {"T", "0", "---", "nil", "null ", "missing"}) {
    EXPECT_FALSE(IsGapWord(word)) << word;
  }
}

TEST(SeriesNames, AreCutIntoNameAndUnit) {
  struct Case {
    char const* text;
    char const* name;
    char const* unit;
  };
  static Case const kCases[] = {
      {"Temp (C)", "Temp", "C"},
      {"Gyroscope X (deg/s)", "Gyroscope X", "deg/s"},
      {"a [m/s\u00B2] ", "a", "m/s\u00B2"},
      {"Rel Hum(%)", "Rel Hum", "%"},
      {"x (raw) [V]", "x (raw)", "V"},
      {"T (deg C)", "T", "deg C"},
      {"Br\u00E9beuf (donn\u00E9es non disponibles)", "Br\u00E9beuf (donn\u00E9es non disponibles)", ""},
      {"rate (per one minute)", "rate (per one minute)", ""},
      {"a (a b c)", "a (a b c)", ""},
      {"speed_kmh", "speed_kmh", ""},
      {"[V]", "[V]", ""},
      {"a []", "a []", ""},
      {"a)", "a)", ""},
      {"", "", ""},
  };
  for (Case const& row : kCases) {
    NameAndUnit const split = SplitUnit(row.text);
    EXPECT_EQ(split.name, row.name) << row.text;
    EXPECT_EQ(split.unit, row.unit) << row.text;
  }
  EXPECT_EQ(BareUnit("[m/s]"), "m/s");
  EXPECT_EQ(BareUnit(" (V) "), "V");
  EXPECT_EQ(BareUnit("-"), "");
  EXPECT_EQ(BareUnit("km"), "km");
}

TEST(SeriesNames, SpeakOfTimeOrNot) {
  for (char const* const name : {"Time", "ais_pos_timestamp", "Date/Time", "acq_date", "startTime", "DATE", "UTC"}) {
    EXPECT_TRUE(SpeaksOfTime(name)) << name;
  }
  for (char const* const name : {"times", "dateline", "T", "runtimes", "stamped", "lifetime", ""}) {
    EXPECT_FALSE(SpeaksOfTime(name)) << name;
  }
  EXPECT_TRUE(SpeaksOfDate("acq_date"));
  EXPECT_FALSE(SpeaksOfDate("acq_time"));
}

TEST(SeriesNames, CountTimeOrNot) {
  struct Case {
    char const* name;
    char const* unit;
    char const* expected;  ///< digits of the unit, "e" for one that counts from 1970
  };
  static Case const kCases[] = {
      {"time", "", "?"},
      {"Time", "s", "0"},
      {"t", "ms", "3"},
      {"time_us", "", "6"},
      {"timestamp [", "", "?"},
      {"timestampNs", "", "9"},
      {"elapsed seconds", "", "0"},
      {"Unix Epoch", "", "?e"},
      {"epoch_ms", "", "3e"},
      {"ms", "", "3"},
      {"Time since start", "\u00B5s", "6"},
      {"seconds", "", "0"},
      {"T", "", "none"},
      {"T", "s", "none"},
      {"response time", "ms", "none"},
      {"time", "km", "none"},
      {"time", "h", "none"},
      {"s", "", "none"},
      {"start", "", "none"},
      {"id", "", "none"},
      {"", "", "none"},
  };
  for (Case const& row : kCases) {
    std::optional<CountedTimeName> const counted = CountedTimeOf(row.name, row.unit);
    std::string shown = "none";
    if (counted) {
      shown = (counted->unitDigits ? std::to_string(*counted->unitDigits) : "?") + (counted->isEpoch ? "e" : "");
    }
    EXPECT_EQ(shown, row.expected) << row.name << " in " << row.unit;
  }
}

TEST(SeriesCells, HaveTheirClasses) {
  struct Case {
    char const* cell;
    unsigned classes;
  };
  static Case const kCases[] = {
      {"2024-05-01T12:30Z", kIsoMoment | kDateMoment},
      {"2024-05-01", kIsoDate | kPlainDate},
      {"31/12/2024 10:00", kDateMoment},
      {"12/31/2024", kPlainDate},
      {"10.11.12", kPlainDate | kOtherClock},
      {"18.00.00", kOtherClock},
      {"12:30", kColonClock},
      {"20241231", kDigitDate | kNumber},
      {"18991231", kNumber},
      {"0050", kOtherClock | kNumber},
      {"171948.5", kOtherClock | kNumber},
      {"1700000000000000000", kNumber},
      {"-5.5", kNumber},
      {"text", 0},
      {"", 0},
  };
  for (Case const& row : kCases) {
    EXPECT_EQ(ClassOf(row.cell, '.'), row.classes) << row.cell;
  }
}

}  // namespace
}  // namespace senmark_series
