// Time texts to times and back.
#include <gtest/gtest.h>

#include <cstdio>
#include <limits>
#include <numeric>
#include <random>
#include <stdexcept>
#include <string>

#include "SK_TimeText.h"
#include "SK_TimeUtils.h"

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

SK_TimeCodeInfo const kFilm = {{24, 1}, 0};
SK_TimeCodeInfo const kHundred = {{100, 1}, 0};
SK_TimeCodeInfo const kDrop30 = {{30000, 1001}, 1};
SK_TimeCodeInfo const kDrop60 = {{60000, 1001}, 1};

TEST(TimeText, NominalRateRoundsAndIntegerRateCutsOff) {
  struct Row {
    SK_Time rate;
    std::int32_t nominal;
    std::uint32_t whole;
  };
  Row const rows[] = {{{30000, 1001}, 30, 29},
                      {{60000, 1001}, 60, 59},
                      {{24, 1}, 24, 24},
                      {{999, 10}, 100, 99},
                      {{995, 10}, 100, 99},
                      {{994, 10}, 99, 99},
                      {{1, 30}, 0, 0},
                      {{0, 1}, 0, 0},
                      {{30, 0}, 0, 0},
                      {{-30, 1}, -29, 4294967266U},
                      {{kLargest, 1}, kLargest, 2147483647U},
                      {{kSmallest, 1}, -kLargest, 2147483648U}};
  for (Row const& row : rows) {
    EXPECT_EQ(NominalRate(row.rate), row.nominal) << row.rate;
    EXPECT_EQ(IntegerRate(row.rate), row.whole) << row.rate;
  }
}

TEST(TimeText, PowerOfTenKeepsItsLow32Bits) {
  EXPECT_EQ(PowerOfTen(0), 1U);
  EXPECT_EQ(PowerOfTen(1), 10U);
  EXPECT_EQ(PowerOfTen(9), 1000000000U);
  EXPECT_EQ(PowerOfTen(10), 1410065408U);
  EXPECT_EQ(PowerOfTen(18), 2808348672U);
  EXPECT_EQ(PowerOfTen(19), 0U);
  EXPECT_EQ(PowerOfTen(65535), 0U);
}

/// What reading a text led to: its value, or the kind of the exception.
template <typename Read>
std::string Outcome(Read read) {
  try {
    return read();
  } catch (std::invalid_argument const&) {
    return "invalid_argument";
  } catch (std::out_of_range const&) {
    return "out_of_range";
  }
}

std::string RandomText(std::mt19937& random, std::string const& alphabet, std::size_t longest) {
  std::string text(random() % (longest + 1), '\0');
  for (char& c : text) c = alphabet[random() % alphabet.size()];
  return text;
}

TEST(TimeText, FieldIsWhatStoiMakesOfIt) {
  std::mt19937 random(3);
  std::string const alphabet("0123456789019+- x\t\0:", 20);
  for (int i = 0; i < 60000; ++i) {
    std::string const text = RandomText(random, alphabet, 14);
    std::size_t const position = random() % 4;
    std::size_t const width = random() % 13;
    std::string const expected = Outcome([&] { return std::to_string(std::stoi(text.substr(position, width))); });
    std::string const actual = Outcome([&] { return std::to_string(ReadField(text, position, width)); });
    ASSERT_EQ(actual, expected) << testing::PrintToString(text) << " at " << position << ", " << width;
  }
}

struct ToCode {
  char const* name;
  SK_Time time;
  SK_TimeCodeInfo info;
  char const* expected;
};

TEST(TimeUtilsText, TimeToTimeCode) {
  ToCode const rows[] = {
      {"Zero", {0, 1}, kFilm, "00:00:00:00"},
      {"OneFrame", {1, 24}, kFilm, "00:00:00:01"},
      {"FrameIsCutOff", {47, 48}, kFilm, "00:00:00:23"},
      {"LastOfASecond", {23, 24}, kFilm, "00:00:00:23"},
      {"EveryField", {3723 * 24 + 5, 24}, kFilm, "01:02:03:05"},
      {"LastSecondOfTheDay", {86399, 1}, kFilm, "23:59:59:00"},
      {"HoursBeginAnewAfterADay", {86400, 1}, kFilm, "00:00:00:00"},
      {"ThreeDigitsFromAHundredOn", {199, 100}, kHundred, "00:00:01:099"},
      {"TwoDigitsAtNinetyNine", {98, 99}, {{99, 1}, 0}, "00:00:00:98"},
      {"TwoDigitsThoughTheRateRoundsUpToAHundred", {990, 999}, {{999, 10}, 0}, "00:00:00:99"},
      {"ThreeDigitsBelowTheRoundedRate", {119 * 1001, 120000}, {{120000, 1001}, 0}, "00:00:00:119"},
      {"FourthDigitIsLost", {1999, 2000}, {{2000, 1}, 0}, "00:00:00:199"},
      {"WithoutDropFrame", {1800 * 1001, 30000}, {{30000, 1001}, 0}, "00:01:00:00"},
      {"DropBeforeTheMinute", {1798 * 1001, 30000}, kDrop30, "00:00:59:28"},
      {"DropLastOfTheMinute", {1799 * 1001, 30000}, kDrop30, "00:00:59:29"},
      {"DropFirstOfTheMinute", {1800 * 1001, 30000}, kDrop30, "00:01:00:02"},
      {"DropSecondMinute", {3598 * 1001, 30000}, kDrop30, "00:02:00:02"},
      {"DropBeforeTheSecondMinute", {3597 * 1001, 30000}, kDrop30, "00:01:59:29"},
      {"DropNothingInTheTenthMinute", {17982 * 1001, 30000}, kDrop30, "00:10:00:00"},
      {"DropBeforeTheTenthMinute", {17981 * 1001, 30000}, kDrop30, "00:09:59:29"},
      {"DropFourAtSixty", {3600 * 1001, 60000}, kDrop60, "00:01:00:04"},
      {"DropBeforeTheMinuteAtSixty", {3599 * 1001, 60000}, kDrop60, "00:00:59:59"},
      {"DropTenMinutesAtSixty", {35964 * 1001, 60000}, kDrop60, "00:10:00:00"},
      {"RateWithZeroScale", {5, 1}, {{30, 0}, 0}, "00:00:00:00"},
      {"RateWithZeroScaleDropping", {5, 1}, {{30, 0}, 1}, "00:00:00:00"},
      {"RateOfZero", {5, 1}, {{0, 1}, 0}, "00:00:00:00"},
      {"TimeWithZeroScale", {5, 0}, kFilm, "00:00:00:00"},
      {"AllFramesInTheirFieldBelowHalfAFrame", {300, 1}, {{1, 30}, 0}, "00:00:00:10"},
      {"AndCutAtTwelveCharacters", {3703680, 1}, {{1, 30}, 0}, "00:00:00:123"},
      {"NegativeSeconds", {-1, 1}, kFilm, "00:00:-1:00"},
      {"NegativeFrameIsDividedUnsigned", {-1, 24}, kFilm, "07:15:40:09"},  // 4294967272 / 24 frames
      {"NegativeRate", {1, 1}, {{-24, 1}, 0}, "00:00:01:-01"},
  };
  for (ToCode const& row : rows) {
    std::string text = "replaced";
    EXPECT_EQ(SK_TimeUtils::ConvertSKTimeToSMPTETime(row.time, row.info, text), 0);
    EXPECT_EQ(text, row.expected) << row.name;
  }
}

struct FromCode {
  char const* name;
  char const* text;
  SK_TimeCodeInfo info;
  SK_Time expected;
};

TEST(TimeUtilsText, TimeCodeToTime) {
  FromCode const rows[] = {
      {"Zero", "00:00:00:00", kFilm, {0, 1}},
      {"Second", "00:00:01:00", kFilm, {1, 1}},
      {"EveryField", "01:02:03:12", kFilm, {7447, 2}},
      {"SeparatorsAreNotLookedAt", "00x01 00900", kFilm, {60, 1}},
      {"FieldsAreNotTestedForTheirRange", "99:99:99:99", kFilm, {362439 * 8 + 33, 8}},
      {"ThirdDigitAtAHundred", "00:00:01:099", kHundred, {199, 100}},
      {"TwoDigitsAtAHundred", "00:00:01:10", kHundred, {11, 10}},
      {"ThirdDigitIsLostBelow", "00:00:01:120", kFilm, {3, 2}},
      {"RateRoundsUpToAHundredWithTwoDigits", "00:00:00:999", {{999, 10}, 0}, {110, 111}},
      {"DropFirstMinute", "00:01:00:02", kDrop30, {3003, 50}},
      {"DropFourAtSixty", "00:01:00:04", kDrop60, {3003, 50}},
      {"DropTenMinutes", "00:10:00:00", kDrop30, {17982 * 1001 / 6, 5000}},
      {"WithoutDropFrame", "00:01:00:00", {{30000, 1001}, 0}, {3003, 50}},
      {"RateOfZero", "00:00:01:05", {{0, 1}, 0}, {0, 0}},
      {"RateWithZeroScale", "00:00:01:05", {{30, 0}, 0}, {0, 1}},
      {"RateBelowHalfAFrame", "00:00:01:05", {{1, 30}, 0}, {150, 1}},
      {"BlankInFront", " 1:00:00:00", kFilm, {3600, 1}},
      {"PlusSign", "+1:00:00:00", kFilm, {3600, 1}},
      {"LetterBehind", "1x:00:00:00", kFilm, {3600, 1}},
      {"NegativeIsDividedUnsigned", "-1:00:00:00", kFilm, {178953370, 1}},  // (4294967296 - 86400) / 24
      {"LongTimesCancel", "20:00:00:00", {{30000, 1001}, 0}, {72072, 1}},
      {"AndElseAreAsExactAsAFloat", "20:00:00:01", {{30000, 1001}, 0}, {2306305, 32}},
  };
  for (FromCode const& row : rows) {
    SK_Time time = {99, 99};
    EXPECT_EQ(SK_TimeUtils::ConvertSMPTETimeToSKTime(row.text, row.info, time), 0);
    EXPECT_EQ(time, row.expected) << row.name;
  }
}

TEST(TimeUtilsText, BadTimeCodesRaiseWhatStoiRaises) {
  struct Row {
    char const* text;
    char const* outcome;
  };
  Row const rows[] = {{"", "invalid_argument"},
                      {"0", "out_of_range"},
                      {"xx:00:00:00", "invalid_argument"},
                      {"00:xx:00:00", "invalid_argument"},
                      {"00:00:xx:00", "invalid_argument"},
                      {"00:00:00:xx", "invalid_argument"},
                      {"00:00", "out_of_range"},
                      {"00:00:00", "out_of_range"},
                      {"00:00:00:", "invalid_argument"},
                      {"00:00:00:7", "read"},
                      {"00:00:00:07", "read"}};
  for (Row const& row : rows) {
    SK_Time time;
    EXPECT_EQ(Outcome([&] {
                SK_TimeUtils::ConvertSMPTETimeToSKTime(row.text, kFilm, time);
                return std::string("read");
              }),
              row.outcome)
        << row.text;
  }
}

/// Shows every frame of an hour on a clock that leaves out its first numbers in each minute but every tenth, and
/// compares both directions with it.
void ExpectClock(SK_TimeCodeInfo const& info, int rate, int dropped) {
  int hour = 0, minute = 0, second = 0, frame = 0;
  for (std::int64_t index = 0; hour < 1 || minute < 1; ++index) {
    char expected[48];
    std::snprintf(expected, sizeof expected, "%02d:%02d:%02d:%02d", hour, minute, second, frame);
    std::int64_t const value = index * info.frameRate.scale;
    std::int64_t const divisor = std::gcd(value, std::int64_t{info.frameRate.value});
    SK_Time const time = {static_cast<std::int32_t>(value / divisor),
                          static_cast<std::uint32_t>(info.frameRate.value / divisor)};
    std::string text;
    SK_TimeUtils::ConvertSKTimeToSMPTETime(time, info, text);
    ASSERT_EQ(text, expected) << index;
    SK_Time read;
    SK_TimeUtils::ConvertSMPTETimeToSKTime(text, info, read);
    ASSERT_EQ(read, time) << text;

    if (++frame < rate) continue;
    frame = 0;
    if (++second < 60) continue;
    second = 0;
    if (++minute % 10 != 0) frame = dropped;
    hour += minute / 60;
    minute %= 60;
  }
}

TEST(TimeUtilsText, DropFrameClockAgreesInBothDirections) {
  ExpectClock(kDrop30, 30, 2);
  ExpectClock(kDrop60, 60, 4);
}

TEST(TimeUtilsText, PlainClockAgreesInBothDirections) {
  ExpectClock(kFilm, 24, 0);
  ExpectClock({{24000, 1001}, 0}, 24, 0);
  ExpectClock({{50, 1}, 0}, 50, 0);
}

TEST(TimeUtilsText, RelativeTimeCodeAddsTheBase) {
  std::string text = "replaced";
  EXPECT_EQ(SK_TimeUtils::ComputeRelativeTime(SK_Time{3600, 1}, SK_Time{1, 2}, kFilm, text), 0);
  EXPECT_EQ(text, "01:00:00:12");
  EXPECT_EQ(SK_TimeUtils::ComputeRelativeTime(SK_Time{1, 0}, SK_Time{1, 2}, kFilm, text), 0);
  EXPECT_EQ(text, "00:00:00:00") << "a base without a scale";
}

SK_DateTime Date(int year, int month, int day, int hour = 0, int minute = 0, int second = 0, int fraction = 0) {
  SK_DateTime date;
  date.year = year;
  date.month = month;
  date.day = day;
  date.hour = hour;
  date.minute = minute;
  date.second = second;
  date.fraction = fraction;
  date.offsetSign = 'Z';
  return date;
}

std::string Show(SK_DateTime const& date) {
  std::string text;
  for (int field : {date.year, date.month, date.day, date.hour, date.minute, date.second, date.fraction}) {
    text += std::to_string(field) + ' ';
  }
  text += date.offsetSign != '\0' ? date.offsetSign : '0';
  for (int field : {int{date.hasOffset}, date.offsetHour, date.offsetMinute}) text += ' ' + std::to_string(field);
  return text;
}

struct Parsed {
  char const* name;
  char const* text;
  std::uint16_t precision;
  char const* expected;
};

TEST(TimeUtilsText, DateIsTakenApart) {
  Parsed const rows[] = {
      {"Zulu", "2015-12-31T23:59:58.123Z", 3, "2015 12 31 23 59 58 123 Z 0 0 0"},
      {"East", "2015-12-31T23:59:58.123+02:30", 3, "2015 12 31 23 59 58 123 + 1 2 30"},
      {"West", "2015-12-31T23:59:58.123-05:45", 3, "2015 12 31 23 59 58 123 - 1 5 45"},
      {"AnyZoneLetter", "2015-12-31T23:59:58.7q", 1, "2015 12 31 23 59 58 7 q 0 0 0"},
      {"NineDigits", "2015-12-31T23:59:58.123456789Z", 9, "2015 12 31 23 59 58 123456789 Z 0 0 0"},
      {"TenDigitsThatFit", "2015-12-31T23:59:58.0123456789Z", 10, "2015 12 31 23 59 58 123456789 Z 0 0 0"},
      {"ShortFractionWithoutAZone", "2015-12-31T23:59:58.12", 3, "2015 12 31 23 59 58 12 0 0 0 0"},
      {"ZoneMissing", "2015-12-31T23:59:58.123", 3, "2015 12 31 23 59 58 123 0 0 0 0"},
      {"ZoneInsideTheFraction", "2015-12-31T23:59:58.1Z34", 3, "2015 12 31 23 59 58 1 4 0 0 0"},
      {"NoFieldIsTestedForItsRange", "9999-99-99T99:99:99.9Z", 1, "9999 99 99 99 99 99 9 Z 0 0 0"},
      {"SeparatorsAreNotLookedAt", "2015x12y31 23456758/3Z", 1, "2015 12 31 23 56 58 3 Z 0 0 0"},
      {"SignsAndBlanks", "+015- 1--1T 1:+2: 3.-3Z", 2, "15 1 -1 1 2 3 -3 Z 0 0 0"},
  };
  for (Parsed const& row : rows) {
    SK_DateTime date;
    EXPECT_EQ(SK_TimeUtils::ParseUTCDateTime(row.text, row.precision, date), 0);
    EXPECT_EQ(Show(date), row.expected) << row.name;
  }
}

TEST(TimeUtilsText, ShortDateLeavesTheFields) {
  SK_DateTime date = Date(1, 2, 3, 4, 5, 6, 7);
  EXPECT_EQ(SK_TimeUtils::ParseUTCDateTime("2015-12-31T23:59:58", 0, date), 21);
  EXPECT_EQ(SK_TimeUtils::ParseUTCDateTime("", 3, date), 21);
  EXPECT_EQ(Show(date), "1 2 3 4 5 6 7 Z 0 0 0");
}

TEST(TimeUtilsText, DateWithoutAnOffsetLeavesTheOldOne) {
  SK_DateTime date;
  SK_TimeUtils::ParseUTCDateTime("2015-12-31T23:59:58.1+02:30", 1, date);
  SK_TimeUtils::ParseUTCDateTime("2016-12-31T23:59:58.1Z", 1, date);
  EXPECT_EQ(Show(date), "2016 12 31 23 59 58 1 Z 1 2 30");
}

TEST(TimeUtilsText, BadDatesRaiseWhatStoiRaises) {
  Parsed const rows[] = {
      {"NoFractionAtPrecisionZero", "2015-12-31T23:59:58Z", 0, "invalid_argument"},
      {"FractionMissing", "2015-12-31T23:59:58Z", 3, "invalid_argument"},
      {"Year", "x015-12-31T23:59:58.123Z", 3, "invalid_argument"},
      {"Month", "2015-x2-31T23:59:58.123Z", 3, "invalid_argument"},
      {"Day", "2015-12-x1T23:59:58.123Z", 3, "invalid_argument"},
      {"Hour", "2015-12-31Tx3:59:58.123Z", 3, "invalid_argument"},
      {"Minute", "2015-12-31T23:x9:58.123Z", 3, "invalid_argument"},
      {"Second", "2015-12-31T23:59:x8.123Z", 3, "invalid_argument"},
      {"FractionOutOfRange", "2015-12-31T23:59:58.9999999999Z", 10, "out_of_range"},
      {"LargestFraction", "2015-12-31T23:59:58.2147483647Z", 10, "read"},
      {"OneMore", "2015-12-31T23:59:58.2147483648Z", 10, "out_of_range"},
      {"OffsetHourMissing", "2015-12-31T23:59:58.123+", 3, "invalid_argument"},
      {"OffsetMinuteMissing", "2015-12-31T23:59:58.123+02", 3, "out_of_range"},
      {"OffsetMinuteEmpty", "2015-12-31T23:59:58.123+02:", 3, "invalid_argument"},
      {"OffsetMinuteOfOneDigit", "2015-12-31T23:59:58.123+02:3", 3, "read"},
      {"OffsetHourNoDigit", "2015-12-31T23:59:58.123-x2:30", 3, "invalid_argument"},
  };
  for (Parsed const& row : rows) {
    SK_DateTime date;
    EXPECT_EQ(Outcome([&] {
                SK_TimeUtils::ParseUTCDateTime(row.text, row.precision, date);
                return std::string("read");
              }),
              row.expected)
        << row.name;
  }
}

struct Added {
  char const* name;
  SK_DateTime base;
  SK_Time time;
  std::uint16_t precision;
  std::string expected;
};

TEST(TimeUtilsText, TimeIsAddedToADate) {
  SK_DateTime east = Date(2015, 12, 31, 23, 59, 59, 5);
  east.offsetSign = '+';
  east.hasOffset = 1;
  east.offsetHour = 2;
  east.offsetMinute = 30;
  SK_DateTime withoutZone = Date(2015, 1, 1);
  withoutZone.offsetSign = '\0';
  Added const rows[] = {
      {"EndOfAYear", Date(2015, 12, 31, 23, 59, 59), {1, 1}, 3, "2016-01-01T00:00:00.000Z"},
      {"Nothing", Date(2015, 12, 31, 23, 59, 59, 1), {0, 1}, 3, "2015-12-31T23:59:59.001Z"},
      {"FractionCarries", Date(2016, 2, 28, 23, 59, 59, 500), {1, 2}, 3, "2016-02-29T00:00:00.000Z"},
      {"NoLeapYear", Date(2015, 2, 28, 23, 59, 59, 500), {1, 2}, 3, "2015-03-01T00:00:00.000Z"},
      {"NoLeapYearOfAHundred", Date(1900, 2, 28, 23, 59, 59), {1, 1}, 1, "1900-03-01T00:00:00.0Z"},
      {"LeapYearOfFourHundred", Date(2000, 2, 28, 23, 59, 59), {1, 1}, 1, "2000-02-29T00:00:00.0Z"},
      {"FourHundredDays", Date(2015, 1, 1), {34560000, 1}, 1, "2016-02-05T00:00:00.0Z"},
      {"OffsetIsCarriedThrough", east, {1, 10}, 1, "2015-12-31T23:59:59.6+02:30"},
      {"OffsetTakesNoPart", east, {1, 2}, 1, "2016-01-01T00:00:00.0+02:30"},
      {"PrecisionZeroPrintsADigit", Date(2015, 1, 1), {3, 2}, 0, "2015-01-01T00:00:01.0Z"},
      {"FractionIsCutOff", Date(2015, 1, 1), {2, 3}, 3, "2015-01-01T00:00:00.666Z"},
      {"ProductWraps", Date(2015, 1, 1), {5, 7}, 9, "2015-01-01T00:00:00.100718957Z"},  // 705032704 / 7
      {"ZeroScaleAddsNothing", Date(2015, 1, 1, 1, 2, 3, 4), {5, 0}, 3, "2015-01-01T01:02:03.004Z"},
      {"DayIsTestedOnlyBehindMidnight", Date(2015, 1, 99), {0, 1}, 1, "2015-01-99T00:00:00.0Z"},
      {"AndThenMoves", Date(2015, 1, 99, 24), {0, 1}, 1, "2015-04-10T00:00:00.0Z"},
      {"MonthBehindTheLast", Date(2015, 13, 1, 23), {3600, 1}, 1, "2016-02-02T00:00:00.0Z"},
      {"WithoutABase", SK_DateTime(), {1, 1}, 3, "0000-00-00T00:00:01.000"},
      {"WithoutAZone", withoutZone, {1, 1}, 2, "2015-01-01T00:00:01.00"},
      {"WidthsGrow", Date(12345, 1, 1), {0, 1}, 1, "12345-01-01T00:00:00.0Z"},
      {"NegativeTimeCountsBack", Date(2015, 1, 1, 0, 0, 5), {-1, 1}, 1, "2015-01-01T00:00:04.0Z"},
      {"BelowZeroIsNotCarried", Date(2015, 1, 1), {-1, 1}, 3, "2015-01-01T00:00:-1.000Z"},
      {"LongTextIsCut", Date(2015, 1, 1), {0, 1}, 200, "2015-01-01T00:00:00." + std::string(79, '0')},
      {"LongestThatFits", Date(2015, 1, 1), {0, 1}, 78, "2015-01-01T00:00:00." + std::string(78, '0') + "Z"},
      {"LongTextLosesItsZone", Date(2015, 1, 1), {0, 1}, 79, "2015-01-01T00:00:00." + std::string(79, '0')},
  };
  for (Added const& row : rows) {
    std::string text = "kept ";
    EXPECT_EQ(SK_TimeUtils::AddUTCTime(row.base, row.time, row.precision, text), 0);
    EXPECT_EQ(text, "kept " + row.expected) << row.name;
    std::string same;
    EXPECT_EQ(SK_TimeUtils::ComputeRelativeTime(row.base, row.time, row.precision, same), 0);
    EXPECT_EQ(same, row.expected) << row.name;
  }
}

TEST(TimeUtilsText, LargestTimeMovesADateBySixtyEightYears) {
  std::string text;
  SK_TimeUtils::AddUTCTime(Date(1970, 1, 1), {kLargest, 1}, 1, text);
  EXPECT_EQ(text, "2038-01-19T03:14:07.0Z");
}

TEST(TimeUtilsText, DaysOfAMonth) {
  int const expected[] = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31, 0};
  for (int month = 0; month < 14; ++month) EXPECT_EQ(SK_TimeUtils::GetDays(2015, month), expected[month]) << month;
  EXPECT_EQ(SK_TimeUtils::GetDays(2016, 2), 29);
  EXPECT_EQ(SK_TimeUtils::GetDays(2016, 3), 31);
  EXPECT_EQ(SK_TimeUtils::GetDays(1900, 2), 28);
  EXPECT_EQ(SK_TimeUtils::GetDays(2016, -1), 0);
  EXPECT_EQ(SK_TimeUtils::GetDays(2016, 14), 0);
  EXPECT_EQ(SK_TimeUtils::GetDays(2016, 99), 0);
}

TEST(TimeUtilsText, LeapYears) {
  struct Row {
    int year;
    bool isLeap;
    int countUpTo;
  };
  Row const rows[] = {{2015, false, 488}, {2016, true, 489}, {1900, false, 460}, {2000, true, 485},
                      {2100, false, 509}, {4, true, 1},      {3, false, 0},      {0, true, 0},
                      {-1, false, 0},     {-4, true, -1},    {400, true, 97},    {9999, false, 2424}};
  for (Row const& row : rows) {
    EXPECT_EQ(SK_TimeUtils::IsLeapYear(row.year), row.isLeap) << row.year;
    EXPECT_EQ(SK_TimeUtils::LeapYearsCount(row.year), row.countUpTo) << row.year;
  }
}

TEST(TimeUtilsText, DaysBetweenDates) {
  struct Row {
    SK_DateTime a, b;
    int expected;
  };
  Row const rows[] = {
      {Date(2016, 3, 1), Date(2016, 2, 28), 2},     {Date(2015, 3, 1), Date(2015, 2, 28), 1},
      {Date(2000, 3, 1), Date(1900, 3, 1), 36525},  {Date(9999, 12, 31), Date(1, 1, 1), 3652058},
      {Date(1999, 1, 1), Date(2024, 2, 29), -9190}, {Date(2016, 1, 1, 23), Date(2016, 1, 1), 0},
      {Date(2015, 99, 1), Date(2015, 1, 1), 365},   {Date(0, 0, 0), Date(1, 1, 1), -366},
  };
  for (Row const& row : rows) EXPECT_EQ(SK_TimeUtils::GetDaysDiff(row.a, row.b), row.expected) << Show(row.a);
}

TEST(TimeUtilsText, DaysOfFarAwayYearsWrap) {
  SK_DateTime const first = Date(kSmallest, 1, kLargest);
  EXPECT_EQ(SK_TimeUtils::GetDaysDiff(first, first), 0);
}

struct Difference {
  char const* name;
  SK_DateTime a;
  SK_DateTime b;
  std::uint16_t precision;
  SK_Time expected;
};

TEST(TimeUtilsText, DifferenceOfDates) {
  Difference const rows[] = {
      {"Equal", Date(2015, 1, 1), Date(2015, 1, 1), 3, {0, 1}},
      {"Second", Date(2015, 1, 1, 0, 0, 1), Date(2015, 1, 1), 3, {1, 1}},
      {"Fraction", Date(2015, 1, 1, 0, 0, 1, 500), Date(2015, 1, 1, 0, 0, 0, 250), 3, {5, 4}},
      {"FractionBorrows", Date(2015, 1, 1, 12, 0, 1, 250), Date(2015, 1, 1, 12, 0, 0, 500), 3, {3, 4}},
      {"BeforeIsNegative", Date(2015, 1, 1), Date(2015, 1, 1, 0, 0, 1, 500), 3, {-3, 2}},
      {"BeforeByAWholeNumber", Date(2015, 1, 1), Date(2015, 1, 2), 3, {-86400, 1}},
      {"OverALeapDay", Date(2016, 3, 1), Date(2016, 2, 28), 3, {172800, 1}},
      {"OverMidnight", Date(2016, 1, 1, 0, 0, 0, 5), Date(2015, 12, 31, 23, 59, 59, 5), 1, {1, 1}},
      {"PrecisionZero", Date(2015, 1, 1, 0, 0, 7), Date(2015, 1, 1), 0, {7, 1}},
      {"LongestExactMicroseconds", Date(2015, 1, 1, 0, 34, 7, 1), Date(2015, 1, 1), 6, {2047000001, 1000000}},
      {"FromThereOnAFloat", Date(2015, 1, 1, 0, 34, 8, 1), Date(2015, 1, 1), 6, {2048, 1}},
      {"ExactWhereTheFractionCancels", Date(2015, 1, 2, 0, 0, 0, 500000), Date(2015, 1, 1), 6, {172801, 2}},
      {"FloatOfADayAndMicroseconds", Date(2015, 1, 2, 0, 0, 0, 123457), Date(2015, 1, 1), 6, {691201, 8}},
      {"NegativeFloat", Date(2015, 1, 1), Date(2015, 1, 2, 0, 0, 0, 123457), 6, {-691201, 8}},
      {"Nanoseconds", Date(2015, 1, 1, 0, 0, 1, 999999999), Date(2015, 1, 1), 9, {1999999999, 1000000000}},
      {"NanosecondsOfTwoSeconds", Date(2015, 1, 1, 0, 0, 2, 123456789), Date(2015, 1, 1), 9, {8906423, 4194304}},
      {"ScaleOfZeroAtHighPrecision", Date(2015, 1, 1, 0, 0, 1), Date(2015, 1, 1), 19, {0, 0}},
      {"OffsetsTakeNoPart", Date(2015, 1, 1), Date(2015, 1, 1), 1, {0, 1}},
      {"SecondsWrap", Date(2100, 1, 1), Date(2000, 1, 1), 1, {-1139207296, 1}},  // 36525 * 86400 - 2^32
  };
  for (Difference const& row : rows) {
    SK_Time out = {99, 99};
    EXPECT_EQ(SK_TimeUtils::DiffUTCTime(row.a, row.b, row.precision, out), 0);
    EXPECT_EQ(out, row.expected) << row.name;
  }
}

TEST(TimeUtilsText, FirstFieldThatDiffersOrdersDates) {
  std::int32_t SK_DateTime::*const fields[] = {&SK_DateTime::year,    &SK_DateTime::month,  &SK_DateTime::day,
                                               &SK_DateTime::hour,    &SK_DateTime::minute, &SK_DateTime::second,
                                               &SK_DateTime::fraction};
  for (std::size_t i = 0; i < 7; ++i) {
    SK_DateTime early = Date(2015, 6, 15, 12, 30, 30, 5);
    SK_DateTime late = early;
    late.*fields[i] += 1;
    for (std::size_t behind = i + 1; behind < 7; ++behind) early.*fields[behind] += 9;
    EXPECT_EQ(SK_TimeUtils::CompareUTCDateTime(early, late), -1) << i;
    EXPECT_EQ(SK_TimeUtils::CompareUTCDateTime(late, early), 1) << i;
  }
}

TEST(TimeUtilsText, OffsetsDoNotOrderDates) {
  SK_DateTime const plain = Date(2015, 6, 15);
  SK_DateTime east = plain;
  east.offsetSign = '+';
  east.hasOffset = 1;
  east.offsetHour = 7;
  east.offsetMinute = 7;
  EXPECT_EQ(SK_TimeUtils::CompareUTCDateTime(plain, east), 0);
  SK_Time out;
  SK_TimeUtils::DiffUTCTime(plain, east, 3, out);
  EXPECT_EQ(out, (SK_Time{0, 1}));
}

/// Cuts a text at every length, in a buffer of exactly that size, and reads what is left.
TEST(TimeUtilsText, CutTextsAreReadUpToTheirEnd) {
  std::string const code = "01:02:03:045";
  std::string const date = "2015-12-31T23:59:58.123+02:30";
  for (std::size_t length = 0; length <= date.size(); ++length) {
    std::vector<char> const exact(date.begin(), date.begin() + static_cast<std::ptrdiff_t>(length));
    SK_DateTime out;
    std::string const outcome = Outcome(
        [&] { return std::to_string(SK_TimeUtils::ParseUTCDateTime(std::string_view(exact.data(), length), 3, out)); });
    char const* expected = "0";
    if (length < 20) expected = "21";
    if (length == 20 || length == 24 || length == 27) expected = "invalid_argument";
    if (length == 25 || length == 26) expected = "out_of_range";
    EXPECT_EQ(outcome, expected) << length;
  }
  for (std::size_t length = 0; length <= code.size(); ++length) {
    std::vector<char> const exact(code.begin(), code.begin() + static_cast<std::ptrdiff_t>(length));
    SK_Time out;
    std::string const outcome = Outcome([&] {
      return std::to_string(
          SK_TimeUtils::ConvertSMPTETimeToSKTime(std::string_view(exact.data(), length), kHundred, out));
    });
    char const* expected = "0";
    if (length < 10) expected = length % 3 == 0 ? "invalid_argument" : "out_of_range";
    EXPECT_EQ(outcome, expected) << length;
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
