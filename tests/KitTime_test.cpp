// Times as converters state them: moments from any clock, frames as time codes, and what a file cannot hold.
#include "senmark/module/Time.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <random>
#include <string>

#include "senmark/SK_ErrorCode.h"

namespace senmark::kit {
namespace {

std::string Text(std::optional<Instant> const& instant) {
  if (!instant) {
    return "none";
  }
  CivilTime const time = MakeCivilTime(*instant);
  char text[64];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d.%09d", time.year, time.month, time.day, time.hour,
                time.minute, time.second, time.nanoseconds);
  return text;
}

template <typename Call>
std::string Refusal(Call&& call) {
  try {
    call();
  } catch (Failure const& failure) {
    EXPECT_EQ(failure.code(), Failure::kRefused);
    return failure.what();
  }
  return "taken";
}

TEST(KitTime, ParsesWhatIso8601Writes) {
  struct Row {
    char const* text;
    char const* moment;
  };
  Row const rows[] = {
      {"2024-05-01T12:30:00Z", "2024-05-01T12:30:00.000000000"},
      {"2024-05-01t12:30:00z", "2024-05-01T12:30:00.000000000"},
      {"2024-05-01 12:30:00Z", "2024-05-01T12:30:00.000000000"},
      {"2024-05-01 12:30:00.25 +02:00", "2024-05-01T10:30:00.250000000"},
      {"2024-05-01T12:30:00,25+0200", "2024-05-01T10:30:00.250000000"},
      {"2024-05-01T12:30-08", "2024-05-01T20:30:00.000000000"},
      {"2024-05-01T12:30:00-05:30", "2024-05-01T18:00:00.000000000"},
      {"2024-05-01", "2024-05-01T00:00:00.000000000"},
      {"20240501", "2024-05-01T00:00:00.000000000"},
      {"20240501T123015.5Z", "2024-05-01T12:30:15.500000000"},
      {"20240501T1230", "2024-05-01T12:30:00.000000000"},
      {"2024-05-01T12:30:00.1234567899Z", "2024-05-01T12:30:00.123456789"},
      {"2016-12-31T23:59:60Z", "2017-01-01T00:00:00.000000000"},
      {"2024-02-29T00:00:00Z", "2024-02-29T00:00:00.000000000"},
      {"2000-02-29T00:00:00Z", "2000-02-29T00:00:00.000000000"},
      {"0001-01-01T00:00:00Z", "0001-01-01T00:00:00.000000000"},
      {"9999-12-31T23:59:59.999999999Z", "9999-12-31T23:59:59.999999999"},
      {"2024-01-01T00:30:00+01:00", "2023-12-31T23:30:00.000000000"},
      {"2024-12-31T23:30:00-01:00", "2025-01-01T00:30:00.000000000"},
      {"1969-12-31T23:59:59.5Z", "1969-12-31T23:59:59.500000000"},
  };
  for (Row const& row : rows) {
    EXPECT_EQ(Text(ParseInstant(row.text)), row.moment) << row.text;
  }
}

TEST(KitTime, RefusesNearMisses) {
  char const* const rows[] = {
      "",
      "2024",
      "2024-05",
      "2024-5-1",
      "2024-0501",
      "202405-01",
      "2024-00-01",
      "2024-13-01",
      "2024-05-00",
      "2024-05-32",
      "2023-02-29",
      "1900-02-29",
      "2024-04-31",
      "0000-01-01",
      "10000-01-01",
      "2024-05-01T",
      "2024-05-01 ",
      "2024-05-01T12",
      "2024-05-01T24:00:00",
      "2024-05-01T12:60:00",
      "2024-05-01T12:30:61",
      "2024-05-01T12:30:",
      "2024-05-01T12:30:0",
      "2024-05-01T12:30:00.",
      "2024-05-01T12:30:00.Z",
      "2024-05-01T1230:00",
      "2024-05-01T12:3000",
      "2024-05-01T12:30:00+",
      "2024-05-01T12:30:00+2",
      "2024-05-01T12:30:00+02:",
      "2024-05-01T12:30:00+02:60",
      "2024-05-01T12:30:00+18:01",
      "2024-05-01T12:30:00Zx",
      "2024-05-01T12:30:00Z ",
      " 2024-05-01T12:30:00Z",
      "2024-05-01X12:30:00Z",
      "-024-05-01",
      "0001-01-01T00:00:00+00:01",
      "9999-12-31T23:59:60Z",
      "9999-12-31T23:59:59-00:01",
  };
  for (char const* row : rows) {
    EXPECT_EQ(Text(ParseInstant(row)), "none") << row;
  }
}

TEST(KitTime, AClockWithoutAZoneIsWhereItIsSaidToBe) {
  EXPECT_EQ(Text(ParseInstant("2024-05-01T00:30", 60)), "2024-04-30T23:30:00.000000000");
  EXPECT_EQ(Text(ParseInstant("2024-05-01T00:30", -570)), "2024-05-01T10:00:00.000000000");
  EXPECT_EQ(Text(ParseInstant("2024-05-01T00:30Z", 60)), "2024-05-01T00:30:00.000000000");
}

TEST(KitTime, ZonesAreOnThisEarth) {
  CivilTime time;
  for (int const zone : {1081, -1081, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    time.zoneMinutes = zone;
    EXPECT_EQ(Text(MakeInstant(time)), "none") << zone;
  }
  time.zoneMinutes = 1080;
  EXPECT_EQ(Text(MakeInstant(time)), "1969-12-31T06:00:00.000000000");
}

TEST(KitTime, TextsOfAllLengthsAreReadWithinThem) {
  std::string const text = "2024-05-01T12:30:00.25+02:00";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    std::string const exact = text.substr(0, length);
    ParseInstant(std::string_view(exact.data(), exact.size()));
  }
}

// Every day of ten thousand years against a calendar that counts day by day.
TEST(KitTime, ZonesAreReadAlone) {
  struct Row {
    char const* text;
    int minutes;
  };
  static constexpr Row kRows[] = {{"Z", 0}, {"z", 0}, {"+02:00", 120}, {"-0930", -570}, {"+05", 300}, {"+18:00", 1080}};
  for (Row const& row : kRows) {
    EXPECT_EQ(kit::ParseZone(row.text), row.minutes) << row.text;
  }
  for (char const* const text : {"", "+", "2", "+2", "+02:", "+02:60", "+02:00 ", "Zulu", "+18:01", "UTC"}) {
    EXPECT_EQ(kit::ParseZone(text), std::nullopt) << text;
  }
}

TEST(KitTime, DatesFollowEachOther) {
  std::int64_t day = detail::kFirstSecond / detail::kDaySeconds;
  for (int year = 1; year <= 9999; ++year) {
    bool const isLeap = year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
    ASSERT_EQ(IsLeapYear(year), isLeap);
    int const lengths[] = {31, isLeap ? 29 : 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int month = 1; month <= 12; ++month) {
      ASSERT_EQ(DaysOfMonth(year, month), lengths[month - 1]);
      for (int date = 1; date <= lengths[month - 1]; ++date, ++day) {
        CivilTime const civil = MakeCivilTime({day * detail::kDaySeconds + 86399, 7});
        ASSERT_TRUE(civil.year == year && civil.month == month && civil.day == date)
            << year << ' ' << month << ' ' << date;
        ASSERT_TRUE(civil.hour == 23 && civil.minute == 59 && civil.second == 59 && civil.nanoseconds == 7);
        ASSERT_EQ(detail::DaysOfDate(year, month, date), day);
      }
    }
  }
  EXPECT_EQ(day * detail::kDaySeconds, detail::kLastSecond + 1);
  EXPECT_EQ(detail::DaysOfDate(1000, 1, 1) * detail::kDaySeconds, detail::kFirstWrittenSecond);
}

TEST(KitTime, SecondsBecomeMoments) {
  EXPECT_EQ(Text(InstantOfSeconds(0)), "1970-01-01T00:00:00.000000000");
  EXPECT_EQ(Text(InstantOfSeconds(1714559400.25)), "2024-05-01T10:30:00.250000000");
  EXPECT_EQ(Text(InstantOfSeconds(-0.25)), "1969-12-31T23:59:59.750000000");
  EXPECT_EQ(Text(InstantOfSeconds(0.9999999999)), "1970-01-01T00:00:01.000000000");
  EXPECT_EQ(Text(InstantOfSeconds(-62135596800.0)), "0001-01-01T00:00:00.000000000");
  EXPECT_EQ(Text(InstantOfSeconds(-62135596801.0)), "none");
  EXPECT_EQ(Text(InstantOfSeconds(253402300799.0)), "none");
  EXPECT_EQ(Text(InstantOfSeconds(253402300798.5)), "9999-12-31T23:59:58.500000000");
  EXPECT_EQ(Text(InstantOfSeconds(std::nan(""))), "none");
  EXPECT_EQ(Text(InstantOfSeconds(HUGE_VAL)), "none");
  EXPECT_EQ(Text(InstantOfSeconds(-HUGE_VAL)), "none");
}

TEST(KitTime, MomentsHaveAnOrder) {
  EXPECT_TRUE((Instant{1, 5} < Instant{1, 6}));
  EXPECT_TRUE((Instant{-1, 999} < Instant{0, 0}));
  EXPECT_FALSE((Instant{1, 5} < Instant{1, 5}));
  EXPECT_TRUE((Instant{1, 5} == Instant{1, 5}));
  EXPECT_FALSE((Instant{1, 5} == Instant{1, 6}));
}

TEST(KitTime, RatesThatAreNoneAreRefused) {
  EXPECT_EQ(Refusal([] { TimeBase::frames(0); }), "a frame rate of 0/1");
  EXPECT_EQ(Refusal([] { TimeBase::frames(25, 0); }), "a frame rate of 25/0");
  EXPECT_EQ(Refusal([] { TimeBase::frames(4, 10); }), "a frame rate of 4/10");
  EXPECT_EQ(Refusal([] { TimeBase::frames(1001); }), "a frame rate of 1001/1");
  EXPECT_EQ(Refusal([] { TimeBase::frames(25, 1, true); }), "dropped frames at another rate than 29.97 and 59.94");
  EXPECT_EQ(Refusal([] { TimeBase::frames(24000, 1001, true); }),
            "dropped frames at another rate than 29.97 and 59.94");
  // A reader keeps value and scale in 31 bits.
  EXPECT_EQ(Refusal([] { TimeBase::frames(2147483659U, 2147483648U); }),
            "a frame rate whose terms have more than 31 bits");
  EXPECT_EQ(Refusal([] { TimeBase::gmt(0); }), "GMT with 0 digits");
  EXPECT_EQ(Refusal([] { TimeBase::gmt(10); }), "GMT with 10 digits");
}

TEST(KitTime, RatesAreInLowestTerms) {
  TimeBase const base = TimeBase::frames(60000, 2002, true);
  EXPECT_EQ(base.value(), 30000U);
  EXPECT_EQ(base.scale(), 1001U);
  EXPECT_TRUE(base.dropsFrames());
  EXPECT_EQ(TimeBase::frames(1, 2).nominalRate(), 1);
  EXPECT_EQ(TimeBase::frames(24000, 1001).nominalRate(), 24);
  EXPECT_EQ(TimeBase::frames(120000, 1001).nominalRate(), 120);
}

std::string CodeText(TimeCode const& code) {
  char text[64];
  std::snprintf(text, sizeof text, "%02d:%02d:%02d:%02d", code.hours, code.minutes, code.seconds, code.frames);
  return text;
}

bool AreSame(TimeCode const& a, TimeCode const& b) {
  return a.hours == b.hours && a.minutes == b.minutes && a.seconds == b.seconds && a.frames == b.frames;
}

// A clock that counts frame by frame and leaves out what SMPTE ST 12-1 leaves out.
void ExpectCodesOfADay(TimeBase const& base, int nominal, int dropped) {
  std::int64_t frame = 0;
  detail::TimeCodes codes(base);
  for (int hour = 0; hour != 24; ++hour) {
    for (int minute = 0; minute != 60; ++minute) {
      for (int second = 0; second != 60; ++second) {
        bool const drops = second == 0 && minute % 10 != 0;
        for (int number = drops ? dropped : 0; number != nominal; ++number, ++frame) {
          TimeCode const code = MakeTimeCode({frame}, base);
          ASSERT_TRUE(AreSame(code, {hour, minute, second, number})) << frame << ' ' << CodeText(code);
          TimeCode const next = codes.at({frame});
          ASSERT_TRUE(AreSame(next, code)) << frame << ' ' << CodeText(next);
        }
      }
    }
  }
  EXPECT_THROW(MakeTimeCode({frame}, base), Failure);
  EXPECT_THROW(codes.at({frame}), Failure);
  EXPECT_THROW(MakeTimeCode({-1}, base), Failure);
  EXPECT_THROW(MakeTimeCode({std::numeric_limits<std::int64_t>::max() / 2}, base), Failure);
}

TEST(KitTime, DroppedFramesFollowTheClock) {
  ExpectCodesOfADay(TimeBase::frames(30000, 1001, true), 30, 2);
  ExpectCodesOfADay(TimeBase::frames(60000, 1001, true), 60, 4);
}

TEST(KitTime, CodesCountWithTheNominalRate) {
  ExpectCodesOfADay(TimeBase::frames(30000, 1001), 30, 0);
  ExpectCodesOfADay(TimeBase::frames(1, 2), 1, 0);
  ExpectCodesOfADay(TimeBase::frames(999, 10), 100, 0);
}

// Steps of all kinds, back and over what there is no code for.
TEST(KitTime, CodesOfFramesInAnyOrderAreThoseOfEachByItself) {
  std::mt19937 random(4);
  for (TimeBase const& base : {TimeBase::frames(30000, 1001, true), TimeBase::frames(60000, 1001, true),
                               TimeBase::frames(25), TimeBase::frames(1, 2), TimeBase::frames(1000)}) {
    detail::TimeCodes codes(base);
    std::int64_t frame = static_cast<std::int64_t>(random() % 3);
    for (int i = 0; i != 20000; ++i) {
      ASSERT_TRUE(AreSame(codes.at({frame}), MakeTimeCode({frame}, base))) << frame;
      if (random() % 50 == 0) {
        EXPECT_THROW(codes.at({-1}), Failure);
        frame = static_cast<std::int64_t>(random() % 80000);
      } else {
        frame += random() % 10 == 0 ? static_cast<std::int64_t>(random() % 3) : 1;
      }
    }
  }
}

}  // namespace
}  // namespace senmark::kit
