#include "SK_SampleTimeText.h"

#include <ostream>
#include <string>

#include "DynamicNodes.h"

namespace SK_PLUGIN {
namespace {

using senmark_test::DynamicNodes;
using senmark_test::SK_DateTimeSMPTE;
using senmark_test::SK_DateTimeUTC;

struct TimeCodeRow {
  std::uint32_t rate;
  std::uint32_t scale;
  SK_DateTimeSMPTE time;
  char const* text;  ///< empty: refused
};
void PrintTo(TimeCodeRow const& row, std::ostream* out) {
  *out << row.time.hours << ' ' << row.time.minutes << ' ' << row.time.seconds << ' ' << row.time.frames << " at "
       << row.rate << '/' << row.scale;
}
class TimeCodeText : public DynamicNodes, public testing::WithParamInterface<TimeCodeRow> {};

TEST_P(TimeCodeText, HasTheWidthOfTheFileOrIsEmpty) {
  TimeCodeRow const& row = GetParam();
  UseTimeCode(row.rate, row.scale);
  SK_SampleTimeText text(*mRoot);
  EXPECT_TRUE(text.IsOfKind(row.time));
  EXPECT_FALSE(text.IsOfKind(SK_DateTimeUTC()));
  EXPECT_EQ(text.Make(row.time).text, row.text);
  // Nothing of a time is left for the next one.
  EXPECT_EQ(text.Make(SK_DateTimeSMPTE{1, 2, 3, 4}).text,
            row.rate / (row.scale == 0 ? row.rate : row.scale) > 99 ? "01:02:03:004" : "01:02:03:04");
}

constexpr TimeCodeRow kTimeCodeRows[] = {
    {25, 1, {0, 0, 0, 0}, "00:00:00:00"},
    {25, 1, {9, 10, 11, 9}, "09:10:11:09"},
    {25, 1, {99, 99, 99, 99}, "99:99:99:99"},  // the width counts, not the clock
    {25, 1, {100, 0, 0, 0}, ""},
    {25, 1, {0, 100, 0, 0}, ""},
    {25, 1, {0, 0, 100, 0}, ""},
    {25, 1, {0, 0, 0, 100}, ""},
    {25, 1, {0, 0, 0, 1000}, ""},
    {25, 1, {-1, 0, 0, 0}, ""},
    {25, 1, {0, 0, 0, -1}, "00:00:00:-1"},
    {25, 1, {0, 0, 0, -10}, ""},
    {99, 1, {0, 0, 0, 98}, "00:00:00:98"},
    {100, 1, {0, 0, 0, 98}, "00:00:00:098"},
    {100, 1, {0, 0, 0, 999}, "00:00:00:999"},
    {100, 1, {0, 0, 0, 1000}, ""},
    {100, 1, {100, 0, 0, 0}, ""},
    {120'000, 1001, {23, 59, 59, 118}, "23:59:59:118"},
    {100'099, 1001, {0, 0, 0, 98}, "00:00:00:98"},
    {100'100, 1001, {0, 0, 0, 98}, "00:00:00:098"},
    {1000, 0, {0, 0, 0, 98}, "00:00:00:98"},  // no rate, so no wide frames
    {1000, 0, {0, 0, 0, 100}, ""},
};
INSTANTIATE_TEST_SUITE_P(Times, TimeCodeText, testing::ValuesIn(kTimeCodeRows));

struct UTCRow {
  std::uint16_t precision;
  bool isGMT;
  SK_DateTimeUTC time;
  char const* text;  ///< empty: refused
};
void PrintTo(UTCRow const& row, std::ostream* out) {
  *out << row.time.year << '-' << row.time.month << '-' << row.time.day << ' ' << row.time.hour << ' '
       << row.time.minute << ' ' << row.time.second << " zone " << int{row.time.offsetSign} << ' '
       << row.time.offsetHour << ' ' << row.time.offsetMinute << " fraction " << row.time.fraction << " of "
       << row.precision << (row.isGMT ? " GMT" : " local");
}
class UTCText : public DynamicNodes, public testing::WithParamInterface<UTCRow> {};

TEST_P(UTCText, HasTheWidthOfTheFileOrIsEmpty) {
  UTCRow const& row = GetParam();
  UseUTC(row.precision, row.isGMT);
  SK_SampleTimeText text(*mRoot);
  EXPECT_TRUE(text.IsOfKind(row.time));
  EXPECT_FALSE(text.IsOfKind(SK_DateTimeSMPTE()));
  EXPECT_EQ(text.Make(row.time).text, row.text);
  EXPECT_EQ(text.Length(), 20 + (row.precision == 0 ? 0 : row.precision + 1) + (row.isGMT ? 0 : 5));
}

constexpr UTCRow kUTCRows[] = {
    {3, true, {2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}, "2020-01-02T03:04:05.007Z"},
    {3, true, {2020, 12, 31, 23, 59, 60, 'Z', 99, 99, 999}, "2020-12-31T23:59:60.999Z"},
    {3, true, {2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 1000}, ""},
    {3, true, {2020, 1, 2, 3, 4, 5, '+', 0, 0, 7}, ""},  // an offset makes it too long for the file
    {3, true, {2020, 1, 2, 3, 4, 5, 0, 0, 0, 7}, ""},
    {3, true, {999, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}, ""},
    {3, true, {10'000, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}, ""},
    {3, true, {2020, 100, 2, 3, 4, 5, 'Z', 0, 0, 7}, ""},
    {3, true, {2020, 1, 100, 3, 4, 5, 'Z', 0, 0, 7}, ""},
    {3, true, {2020, 1, 2, 100, 4, 5, 'Z', 0, 0, 7}, ""},
    {3, true, {2020, 1, 2, 3, 100, 5, 'Z', 0, 0, 7}, ""},
    {3, true, {2020, 1, 2, 3, 4, 100, 'Z', 0, 0, 7}, ""},
    {3, true, {999, 100, 2, 3, 4, 5, 'Z', 0, 0, 7}, "999-100-02T03:04:05.007Z"},  // only the whole width counts
    {3, false, {2020, 1, 2, 3, 4, 5, '-', 9, 30, 7}, "2020-01-02T03:04:05.007-09:30"},
    {3, false, {2020, 1, 2, 3, 4, 5, '-', 100, 30, 7}, ""},
    {3, false, {2020, 1, 2, 3, 4, 5, '-', 9, 100, 7}, ""},
    {3, false, {2020, 1, 2, 3, 4, 5, 'Z', 9, 30, 7}, ""},
    {0, true, {2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 123}, "2020-01-02T03:04:05Z"},  // no place for a fraction
    {0, false, {2020, 1, 2, 3, 4, 5, '+', 5, 30, 0}, "2020-01-02T03:04:05+05:30"},
    {9, true, {2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 123'456'789}, "2020-01-02T03:04:05.123456789Z"},
};
INSTANTIATE_TEST_SUITE_P(Times, UTCText, testing::ValuesIn(kUTCRows));

// A text may be made of the one before, when that is of the same second.
TEST_P(TimeCodeText, IsTheSameBehindAnotherOfItsSecond) {
  TimeCodeRow const& row = GetParam();
  UseTimeCode(row.rate, row.scale);
  SK_SampleTimeText text(*mRoot);
  SK_DateTimeSMPTE other = row.time;
  for (int const frames : {0, 97, 1000, 5, -1, 99}) {
    other.frames = frames;
    text.Make(other);
    EXPECT_EQ(text.Make(row.time).text, row.text) << "behind frame " << frames;
    EXPECT_EQ(text.Make(row.time).text, row.text) << "behind itself";
  }
}

TEST_P(UTCText, IsTheSameBehindAnotherOfItsSecond) {
  UTCRow const& row = GetParam();
  UseUTC(row.precision, row.isGMT);
  SK_SampleTimeText text(*mRoot);
  SK_DateTimeUTC other = row.time;
  for (int const fraction : {0, 999, 1'000'000'000, 5, -1}) {
    other.fraction = fraction;
    text.Make(other);
    EXPECT_EQ(text.Make(row.time).text, row.text) << "behind fraction " << fraction;
    EXPECT_EQ(text.Make(row.time).text, row.text) << "behind itself";
  }
}

TEST_F(TimeCodeText, EveryFieldOfTheNextTimeCounts) {
  UseTimeCode();
  SK_SampleTimeText text(*mRoot);
  EXPECT_EQ(text.Make(SK_DateTimeSMPTE{1, 2, 3, 4}).text, "01:02:03:04");
  EXPECT_EQ(text.Make(SK_DateTimeSMPTE{1, 2, 3, 5}).text, "01:02:03:05");
  EXPECT_EQ(text.Make(SK_DateTimeSMPTE{1, 2, 4, 5}).text, "01:02:04:05");
  EXPECT_EQ(text.Make(SK_DateTimeSMPTE{1, 3, 4, 5}).text, "01:03:04:05");
  EXPECT_EQ(text.Make(SK_DateTimeSMPTE{2, 3, 4, 5}).text, "02:03:04:05");
}

TEST_F(UTCText, EveryFieldOfTheNextTimeCounts) {
  UseUTC(3, false);
  SK_SampleTimeText text(*mRoot);
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 6, 7, 8}).text, "2020-01-02T03:04:05.008+06:07");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 6, 7, 9}).text, "2020-01-02T03:04:05.009+06:07");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 6, 8, 9}).text, "2020-01-02T03:04:05.009+06:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '+', 7, 8, 9}).text, "2020-01-02T03:04:05.009+07:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 3, 4, 5, '-', 7, 8, 9}).text, "2020-01-02T03:04:05.009-07:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 3, 4, 6, '-', 7, 8, 9}).text, "2020-01-02T03:04:06.009-07:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 3, 5, 6, '-', 7, 8, 9}).text, "2020-01-02T03:05:06.009-07:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 2, 4, 5, 6, '-', 7, 8, 9}).text, "2020-01-02T04:05:06.009-07:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 1, 3, 4, 5, 6, '-', 7, 8, 9}).text, "2020-01-03T04:05:06.009-07:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2020, 2, 3, 4, 5, 6, '-', 7, 8, 9}).text, "2020-02-03T04:05:06.009-07:08");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{2021, 2, 3, 4, 5, 6, '-', 7, 8, 9}).text, "2021-02-03T04:05:06.009-07:08");
}

TEST_F(UTCText, KeepsTheTimeBaseThatItBeganWith) {
  UseTimeCode();
  SK_SampleTimeText text(*mRoot);
  UseUTC(3, true);
  EXPECT_EQ(text.Length(), 11);
  EXPECT_TRUE(text.IsOfKind(SK_DateTimeSMPTE()));
  EXPECT_EQ(text.Make(SK_DateTimeSMPTE{1, 2, 3, 4}).text, "01:02:03:04");
}

// The same time, which only the first file takes: for the second one its text is too short, with as many digits or with
// a length that would be right.
TEST_F(UTCText, OfAnotherFileIsNotTakenForOnesOwn) {
  SK_DateTimeUTC const time{2020, 1, 2, 3, 4, 5, 'Z', 0, 0, 12};
  for (std::uint16_t const precision : {std::uint16_t{2}, std::uint16_t{7}}) {
    UseUTC(precision, true);
    SK_SampleTimeText gmt(*mRoot);
    UseUTC(2, false);
    SK_SampleTimeText local(*mRoot);
    for (int i = 0; i != 2; ++i) {
      EXPECT_EQ(gmt.Make(time).text, "2020-01-02T03:04:05." + std::string(precision - 2U, '0') + "12Z");
      EXPECT_EQ(local.Make(time).text, "");
    }
  }
}

// A year of three digits moves the fraction; the length is the same with a longer month.
TEST_F(UTCText, PlaceOfTheFractionIsThatOfTheLastText) {
  UseUTC(3, true);
  SK_SampleTimeText text(*mRoot);
  EXPECT_EQ(text.Make(SK_DateTimeUTC{-99, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}).text, "");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{-999, 1, 2, 3, 4, 5, 'Z', 0, 0, 7}).text, "-999-01-02T03:04:05.007Z");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{-999, 1, 2, 3, 4, 5, 'Z', 0, 0, 8}).text, "-999-01-02T03:04:05.008Z");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{999, 100, 2, 3, 4, 5, 'Z', 0, 0, 7}).text, "999-100-02T03:04:05.007Z");
  EXPECT_EQ(text.Make(SK_DateTimeUTC{999, 100, 2, 3, 4, 5, 'Z', 0, 0, 700}).text, "999-100-02T03:04:05.700Z");
}

// A zone that is longer shows where the fraction stands too.
TEST_F(UTCText, FractionBehindALongYearIsReplacedWhereItStands) {
  UseUTC(2, false);
  SK_SampleTimeText text(*mRoot);
  for (int const fraction : {7, 8, 99}) {
    std::string const digits = fraction < 10 ? "0" + std::to_string(fraction) : std::to_string(fraction);
    EXPECT_EQ(text.Make(SK_DateTimeUTC{20200, 1, 2, 3, 4, 5, 'Z', 0, 0, fraction}).text, "");
    EXPECT_EQ(text.Make(SK_DateTimeUTC{202020200, 1, 2, 3, 4, 5, 'Z', 0, 0, fraction}).text,
              "202020200-01-02T03:04:05." + digits + "Z");
  }
}

}  // namespace
}  // namespace SK_PLUGIN
