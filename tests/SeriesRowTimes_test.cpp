// Times of rows that are read at fixed places, or by the date of the row before, are those that their texts tell.
#include <gtest/gtest.h>

#include <random>

#include "RowTimes.h"

namespace senmark_series {
namespace {

/// What the texts tell, each for itself.
std::optional<kit::Instant> Expected(std::string const& text, std::string const& clock, TimeForm const& form,
                                     eDateOrder order) {
  std::optional<kit::Instant> time;
  std::optional<kit::CivilTime> date;
  if (form.kind == eTimeKind::kIso) {
    time = kit::ParseInstant(text, form.zoneMinutes);
  } else if (form.kind == eTimeKind::kDate) {
    time = ParseMoment(text, order, form.zoneMinutes);
  } else {
    date = form.kind == eTimeKind::kPair ? ParseDate(text, order) : kit::CivilTime();
    if (date) {
      date->zoneMinutes = form.zoneMinutes;
      bool const isPair = form.kind == eTimeKind::kPair;
      time = ParseClock(isPair ? clock : text, isPair, *date) ? kit::MakeInstant(*date) : std::nullopt;
    }
  }
  bool const canBeWritten =
      time && time->seconds >= kit::detail::kFirstWrittenSecond && time->seconds < kit::detail::kLastSecond;
  return canBeWritten ? time : std::nullopt;
}

std::vector<std::string> const kDates = {
    "2024-05-01", "2024-05-01", "2024-05-02", "2024-02-29",  "2023-02-29", "2024-13-01", "2024-00-10", "20240501",
    "20240532",   "2024/5/3",   "2024/05/03", "31/12/2024",  "12/31/2024", "03/04/2024", "3/4/2024",   "3/4/24",
    "31.12.2024", "13.1.2024",  "1.13.2024",  "01-02-2023",  "2024-5-01",  "0999-12-31", "1000-01-01", "0001-01-01",
    "9999-12-31", "9999-12-30", "2024-05-0",  "2024-05-011", "2024-0501",  "202405-01",  "",           "x024-05-01",
    "2024-05-0x", "12/31/202",  "1/1/2024",   "11/1/2024"};

std::vector<std::string> const kClocks = {"12:30:00",
                                          "12:30:01",
                                          "00:00:00",
                                          "23:59:59",
                                          "23:59:60",
                                          "24:00:00",
                                          "12:60:00",
                                          "12:30:61",
                                          "12:30",
                                          "23:59",
                                          "24:00",
                                          "12:3",
                                          "7:05",
                                          "07:05:6",
                                          "12:30:00Z",
                                          "12:30Z",
                                          "12:30:00z",
                                          "12:30:00.5",
                                          "12:30:00,25",
                                          "12:30:00.",
                                          "12:30:00.Z",
                                          "12:30:00.5Z",
                                          "12:30:00.123456789",
                                          "12:30:00.1234567899",
                                          "12:30:00.123456789Z",
                                          "12:30:00.12x",
                                          "12:30:00x",
                                          "12:30:00+02:00",
                                          "12:30:00.5+0200",
                                          "12:30:00-01",
                                          "12:30:00 Z",
                                          "12:30:00 UTC",
                                          "12:30:00 PM",
                                          "12.30.00",
                                          "123000",
                                          "1230",
                                          "12 30 00",
                                          "12:30.00",
                                          "1x:30:00",
                                          "-1:30:00",
                                          "",
                                          "12:30:0/",
                                          "12:30:0:",
                                          " 2:30:00",
                                          "12:30:00Z ",
                                          "12:30:00ZZ"};

std::vector<std::string> const kBetween = {" ", "T", "t", "", "  ", ", ", "x"};

class SeriesRowTimes : public testing::TestWithParam<eTimeKind> {
 protected:
  void ExpectSame(RowTimes& times, std::string const& first, std::string const& second, TimeForm const& form,
                  eDateOrder order) {
    Row row;
    row.cells = {std::string_view(first), std::string_view(second)};
    kit::Instant time;
    bool const hasTime = times.read(row, time);
    std::optional<kit::Instant> const expected = Expected(first, second, form, order);
    ASSERT_EQ(hasTime, expected.has_value()) << first << " | " << second;
    if (hasTime) {
      ASSERT_EQ(time, *expected) << first << " | " << second;
      ++mTold;
    }
  }

  std::size_t mTold = 0;
};

TEST_P(SeriesRowTimes, AreWhatTheirTextsTell) {
  std::mt19937 random(5);
  auto const any = [&](std::vector<std::string> const& texts) { return texts[random() % texts.size()]; };
  for (eDateOrder const order : {eDateOrder::kDayFirst, eDateOrder::kMonthFirst}) {
    for (int const zoneMinutes : {0, 330, -1080}) {
      TimeForm form;
      form.kind = GetParam();
      form.column = 0;
      form.clockColumn = GetParam() == eTimeKind::kPair ? 1 : TimeForm::kNoColumn;
      form.zoneMinutes = zoneMinutes;
      RowTimes times(form, order);
      std::string date = kDates[0];
      for (int i = 0; i != 60000; ++i) {
        // Dates stay for a while.
        date = random() % 3 == 0 ? any(kDates) : date;
        std::string const between = random() % 4 == 0 ? any(kBetween) : kBetween[random() % 2];
        std::string const clock = any(kClocks);
        if (GetParam() == eTimeKind::kPair) {
          ExpectSame(times, date, clock, form, order);
        } else {
          ExpectSame(times,
                     GetParam() == eTimeKind::kClock ? clock : date + (random() % 16 == 0 ? "" : between + clock), "",
                     form, order);
        }
      }
    }
  }
  EXPECT_GT(mTold, 30000U);
}

std::string NameOfKind(testing::TestParamInfo<eTimeKind> const& each) {
  static constexpr char const* kNames[] = {"Iso", "Date", "Pair", "Epoch", "Elapsed", "Clock"};
  return kNames[static_cast<std::size_t>(each.param)];
}

INSTANTIATE_TEST_SUITE_P(Kinds, SeriesRowTimes,
                         testing::Values(eTimeKind::kIso, eTimeKind::kDate, eTimeKind::kPair, eTimeKind::kClock),
                         NameOfKind);

TEST(SeriesRowTimesOfRows, BrokenRowsTellNone) {
  TimeForm form;
  form.kind = eTimeKind::kIso;
  form.column = 0;
  RowTimes times(form, eDateOrder::kDayFirst);
  Row row;
  row.cells = {"2024-05-01T12:30:00"};
  kit::Instant time;
  EXPECT_TRUE(times.read(row, time));
  row.isBroken = true;
  EXPECT_FALSE(times.read(row, time));
  row.isBroken = false;
  row.cells.clear();
  EXPECT_FALSE(times.read(row, time));
}

}  // namespace
}  // namespace senmark_series
