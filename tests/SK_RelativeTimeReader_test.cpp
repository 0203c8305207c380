// The reader gives what the conversion of one text gives, for every text and every format.
#include "SK_RelativeTimeReader.h"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "SK_TimeUtils.h"
#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {
namespace {

struct Outcome {
  enum eKind { kRead, kInvalidArgument, kOutOfRange } kind = kRead;
  SK_Time time;

  bool operator==(Outcome const& other) const {
    return kind == other.kind && time.value == other.time.value && time.scale == other.time.scale;
  }
};

std::ostream& operator<<(std::ostream& out, Outcome const& outcome) {
  return out << outcome.time.value << '/' << outcome.time.scale << " with " << outcome.kind;
}

template <typename Read>
Outcome OutcomeOf(Read read) {
  Outcome outcome;
  try {
    outcome.time = read();
  } catch (std::invalid_argument const&) {
    outcome.kind = Outcome::kInvalidArgument;
  } catch (std::out_of_range const&) {
    outcome.kind = Outcome::kOutOfRange;
  }
  return outcome;
}

Outcome General(std::string_view text, SK_TimeFormat const& format) {
  return OutcomeOf([&] {
    SK_Time time;
    SK_Utils::ConvertTimeStrToRelativeSKTime(text, time, format);
    return time;
  });
}

::testing::AssertionResult Agrees(SK_RelativeTimeReader& reader, std::string_view text, SK_TimeFormat const& format) {
  Outcome const expected = General(text, format);
  Outcome const actual = OutcomeOf([&] { return reader.Read(text); });
  if (actual == expected) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure() << testing::PrintToString(text) << " gives " << actual << ", not " << expected;
}

/// Appends a number with at least `width` digits.
void Put(std::string& text, std::uint64_t value, std::size_t width) {
  std::string const digits = std::to_string(value);
  text.append(width - std::min(width, digits.size()), '0');
  text += digits;
}

std::string Clock(std::uint64_t second) {
  std::string text;
  Put(text, second / 3600, 2);
  text += ':';
  Put(text, second / 60 % 60, 2);
  text += ':';
  Put(text, second % 60, 2);
  return text;
}

/// Replaces, removes or adds a byte.
void Mutate(std::string& text, std::mt19937& random) {
  std::string const alphabet("0123456789:-+.TZ x\0", 19);
  char const byte = alphabet[random() % alphabet.size()];
  std::size_t const position = random() % text.size();
  switch (random() % 4) {
    case 0:
      text.erase(position, 1);
      break;
    case 1:
      text.insert(position, 1, byte);
      break;
    default:
      text[position] = byte;
      break;
  }
}

struct CodeFormat {
  char const* name;
  SK_Time rate;
  std::uint8_t dropFrame;
};

CodeFormat const kCodeFormats[] = {
    {"24", {24, 1}, 0},
    {"25", {25, 1}, 0},
    {"30", {30, 1}, 0},
    {"29.97", {30000, 1001}, 0},
    {"29.97 drop", {30000, 1001}, 1},
    {"59.94 drop", {60000, 1001}, 1},
    {"59.94 drop, not reduced", {120000, 2002}, 1},
    {"23.976", {24000, 1001}, 0},
    {"50", {50, 1}, 0},
    {"99.9", {999, 10}, 0},
    {"119", {119, 1}, 0},
    {"119.88", {120000, 1001}, 0},
    {"120", {120, 1}, 0},
    {"240", {240, 1}, 0},
    {"1000", {1000, 1}, 0},
    {"24, not reduced", {72, 3}, 0},
    {"prime above 255", {257, 1}, 0},
    {"two primes above 255", {257 * 263, 1000}, 0},
    {"many primes", {2 * 3 * 5 * 7 * 11 * 13, 1001}, 0},
    {"0", {0, 1}, 0},
    {"0 drop", {0, 1}, 1},
    {"zero scale", {30, 0}, 0},
    {"1/30", {1, 30}, 0},
    {"30 drop", {30, 1}, 1},
    {"negative", {-24, 1}, 0},
    {"negative, of small primes as unsigned", {-256, 1}, 0},
    {"two thousand million", {2000000000, 1}, 0},
    {"two thousand million drop", {2000000000, 1}, 1},
    {"negative scale as signed", {30, 4294967295U}, 0},
    {"large", {2147483647, 1}, 0},
    {"slow", {1, 2147483647}, 0},
    {"large scale", {2147483647, 4294967295U}, 1},
};

std::string RandomCode(std::mt19937& random, SK_TimeFormat const& format, std::uint32_t firstSecond) {
  std::string text = Clock(random() % 16 == 0 ? random() % 360000 : (firstSecond + random() % 4000) % 86400);
  text += ':';
  std::size_t const digits = format.GetTimeStrLength() - 9U;
  Put(text, random() % (digits == 3 ? 1000 : 100), digits);
  return text;
}

TEST(RelativeTimeReader, AgreesOnTimeCodes) {
  std::mt19937 random(5);
  char const* const bases[] = {"00:00:00:00", "00:00:00:01", "00:00:07:13", "01:00:00:00",
                               "09:58:59:29", "14:22:08:17", "23:59:58:01"};
  for (CodeFormat const& row : kCodeFormats) {
    SCOPED_TRACE(row.name);
    SK_TimeFormat format;
    format.SetSMPTEInfo(row.rate, row.dropFrame);
    for (char const* base : bases) {
      SCOPED_TRACE(base);
      SK_Time baseTime;
      SK_TimeUtils::ConvertSMPTETimeToSKTime(base, format.GetSMPTEInfo(), baseTime);
      format.SetSMPTEBaseTime(baseTime);
      SK_RelativeTimeReader reader(format);
      auto const firstSecond = static_cast<std::uint32_t>(std::stoi(base) * 3600 + std::stoi(base + 3) * 60);
      for (int i = 0; i < 3000; ++i) {
        std::string text = RandomCode(random, format, firstSecond);
        ASSERT_TRUE(Agrees(reader, text, format));
        if (i % 4 != 0) continue;
        Mutate(text, random);
        ASSERT_TRUE(Agrees(reader, text, format));
      }
    }
  }
}

TEST(RelativeTimeReader, AgreesOnEveryFrameOfAnHour) {
  for (CodeFormat const& row : {kCodeFormats[0], kCodeFormats[4], kCodeFormats[5]}) {
    SCOPED_TRACE(row.name);
    SK_TimeFormat format;
    format.SetSMPTEInfo(row.rate, row.dropFrame);
    format.SetSMPTEBaseTime({1001, 30});
    SK_RelativeTimeReader reader(format);
    for (std::uint64_t second = 0; second < 3600; ++second) {
      for (std::uint64_t frame = 0; frame < 64; ++frame) {
        std::string text = Clock(second) + ':';
        Put(text, frame, 2);
        ASSERT_TRUE(Agrees(reader, text, format));
      }
    }
  }
}

TEST(RelativeTimeReader, AgreesOnBaseTimesOfAnyKind) {
  SK_Time const bases[] = {{0, 7},
                           {1, 3},
                           {-1, 3},
                           {-48, 24},
                           {2, 48},
                           {48, 24},
                           {1, 0},
                           {0, 0},
                           {1001, 30},
                           {2147483647, 1},
                           {-2147483647 - 1, 1},
                           {1, 4294967295U},
                           {1073741824, 3},
                           {1, 48},
                           {86399, 1},
                           {44739242, 1},
                           {44739243, 1}};
  std::mt19937 random(6);
  for (CodeFormat const& row : kCodeFormats) {
    for (SK_Time const& base : bases) {
      SCOPED_TRACE(std::string(row.name) + " from " + std::to_string(base.value) + "/" + std::to_string(base.scale));
      SK_TimeFormat format;
      format.SetSMPTEInfo(row.rate, row.dropFrame);
      format.SetSMPTEBaseTime(base);
      SK_RelativeTimeReader reader(format);
      for (int i = 0; i < 200; ++i) ASSERT_TRUE(Agrees(reader, RandomCode(random, format, 0), format));
      for (std::uint64_t second = 0; second < 6; ++second) {
        std::string const clock = Clock(second);
        ASSERT_TRUE(Agrees(reader, clock + (format.GetTimeStrLength() == 12 ? ":000" : ":00"), format));
      }
    }
  }
}

/// Around the frames where a product first counts as overflow.
TEST(RelativeTimeReader, AgreesWherePredictionsTurn) {
  for (CodeFormat const& row : kCodeFormats) {
    SCOPED_TRACE(row.name);
    SK_TimeFormat format;
    format.SetSMPTEInfo(row.rate, row.dropFrame);
    for (SK_Time const& base : {SK_Time{0, 1}, SK_Time{1001, 30000}, SK_Time{36036, 1}, SK_Time{35750, 1}}) {
      format.SetSMPTEBaseTime(base);
      SK_RelativeTimeReader reader(format);
      // 2 to the 30th and 2 to the 21st frames, each over 1001, at the usual rates.
      for (std::uint64_t second : {35755U, 35791U, 35787U, 17877U, 17895U, 69905U, 69974U, 34952U, 34987U}) {
        for (std::uint64_t offset = 0; offset < 40; ++offset) {
          std::string text = Clock(second + offset - 20) + ':';
          Put(text, offset * 7 % 30, format.GetTimeStrLength() - 9U);
          ASSERT_TRUE(Agrees(reader, text, format));
        }
      }
    }
  }
}

std::string RandomDate(std::mt19937& random, unsigned precision) {
  std::string text;
  unsigned const wide = random() % 8;
  Put(text, wide == 0 ? random() % 10000 : 2015 + random() % 3, 4);
  text += '-';
  Put(text, wide == 1 ? random() % 100 : 1 + random() % 12, 2);
  text += '-';
  Put(text, wide == 2 ? random() % 100 : 1 + random() % 31, 2);
  text += 'T';
  text += Clock(wide == 3 ? random() % 360000 : random() % 86400);
  text += '.';
  std::uint64_t scale = 1;
  for (unsigned i = 0; i < precision; ++i) scale *= 10;
  std::uint64_t fraction = random();
  if (random() % 2 == 0) fraction = scale / 8 * (random() % 8);
  if (precision != 0) Put(text, fraction % scale, precision);
  switch (random() % 4) {
    case 0:
      return text + "+02:30";
    case 1:
      return text + "-11:00";
    default:
      return text + "Z";
  }
}

SK_TimeFormat DatesFrom(std::string base, std::uint16_t precision, std::uint8_t isGMT) {
  SK_TimeFormat format;
  format.SetUTCInfo(precision, isGMT);
  SK_DateTime date;
  if (precision != 0) {
    base.resize(20, '.');
    base.append(precision, '4');
    SK_TimeUtils::ParseUTCDateTime(base + "Z", precision, date);
  }
  format.SetUTCBaseTime(date);
  return format;
}

TEST(RelativeTimeReader, AgreesOnDates) {
  std::mt19937 random(7);
  char const* const bases[] = {"2016-02-28T12:34:56", "2016-02-29T23:59:59", "0001-01-01T00:00:00",
                               "0000-12-31T00:00:00", "2016-02-30T00:00:00", "2016-13-01T00:00:00",
                               "2016-01-01T24:00:00", "9999-12-31T23:59:60", "-123-01-01T00:00:00"};
  for (std::uint16_t precision = 0; precision <= 9; ++precision) {
    for (char const* base : bases) {
      SCOPED_TRACE(std::string(base) + " at " + std::to_string(precision));
      SK_TimeFormat const format = DatesFrom(base, precision, precision % 2);
      SK_RelativeTimeReader reader(format);
      for (int i = 0; i < (precision == 0 ? 50 : 2500); ++i) {
        std::string text = RandomDate(random, precision);
        ASSERT_TRUE(Agrees(reader, text, format));
        if (i % 4 != 0) continue;
        Mutate(text, random);
        ASSERT_TRUE(Agrees(reader, text, format));
      }
    }
  }
}

/// Year, month, day, hour, minute, second and milliseconds at the limits of the calendar and the clock, and
/// beside them.
using Fields = std::array<unsigned, 7>;
std::vector<unsigned> const kFieldsAtLimits[] = {
    {0, 1, 2015, 2016},        {1, 2, 3, 4, 11, 12, 13},      {0, 1, 2, 28, 29, 30, 31, 32}, {0, 1, 22, 23, 24, 25},
    {0, 1, 2, 58, 59, 60, 61}, {0, 1, 2, 58, 59, 60, 61, 62}, {0, 1, 250, 500, 998, 999}};

/// Makes each field another one with a chance of `percent`, and the last in any case: many differences
/// show in the fraction only.
Fields Redrawn(Fields fields, unsigned percent, std::mt19937& random) {
  for (std::size_t i = 0; i < fields.size(); ++i) {
    std::vector<unsigned> const& choice = kFieldsAtLimits[i];
    if (i == 6 || random() % 100 < percent) fields[i] = choice[random() % choice.size()];
  }
  return fields;
}

std::string TextOf(Fields const& fields) {
  std::string text;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    Put(text, fields[i], i == 0 ? 4 : i == 6 ? 3 : 2);
    text += "--T::.Z"[i];
  }
  return text;
}

/// Where fields lie beside the calendar their order may not be that of the instants.
TEST(RelativeTimeReader, AgreesBesideTheCalendar) {
  std::mt19937 random(9);
  for (int i = 0; i < 10000; ++i) {
    Fields fields = Redrawn({2015, 1, 1, 0, 0, 0, 0}, 100, random);
    if (i % 16 == 0) fields = {1, 1, 1, 0, 30, 0, 500};
    if (i % 16 == 1) fields = {0, 12, 31, 0, 30, 0, 500};
    SK_TimeFormat format;
    format.SetUTCInfo(3, 1);
    SK_DateTime base;
    SK_TimeUtils::ParseUTCDateTime(TextOf(fields), 3, base);
    if (i % 8 == 7) base.fraction = static_cast<std::int32_t>(random() % 4000) - 2000;
    format.SetUTCBaseTime(base);
    SK_RelativeTimeReader reader(format);
    for (int k = 0; k < 20; ++k) {
      Fields other = Redrawn(fields, 20, random);
      if (i % 16 == 0 && k % 4 == 0) other = {0, 12, 31, other[3], other[4], other[5], other[6]};
      if (i % 16 == 1 && k % 4 == 0) other = {1, 1, 1, other[3], other[4], other[5], other[6]};
      ASSERT_TRUE(Agrees(reader, TextOf(other), format)) << "from " << TextOf(fields);
    }
  }
}

TEST(RelativeTimeReader, AgreesBeyondTheLongestFraction) {
  std::mt19937 random(8);
  SK_TimeFormat format = DatesFrom("2016-02-28T12:34:56", 9, 1);
  constexpr std::uint16_t kPrecisions[] = {10, 11, 18, 19, 40};
  for (std::uint16_t const precision : kPrecisions) {
    SCOPED_TRACE(precision);
    format.SetUTCInfo(precision, 1);
    SK_RelativeTimeReader reader(format);
    for (int i = 0; i < 200; ++i) {
      std::string text = RandomDate(random, 9);
      text.insert(20, precision - 9U, i % 8 == 0 ? '1' : '0');
      ASSERT_TRUE(Agrees(reader, text, format));
    }
  }
}

TEST(RelativeTimeReader, AgreesNearTheBaseAtEveryPrecision) {
  for (std::uint16_t precision = 1; precision <= 9; ++precision) {
    SCOPED_TRACE(precision);
    SK_TimeFormat const format = DatesFrom("2016-02-28T23:59:58", precision, 1);
    SK_RelativeTimeReader reader(format);
    for (std::uint64_t second = 86390; second < 86400 + 5000; ++second) {
      for (char const digit : {'0', '1', '3', '4', '5', '8', '9'}) {
        std::string const date = second < 86400 ? "2016-02-28T" : "2016-02-29T";
        std::string const fraction(precision, digit);
        ASSERT_TRUE(Agrees(reader, date + Clock(second % 86400) + '.' + fraction + 'Z', format));
      }
    }
  }
}

TEST(RelativeTimeReader, AgreesWhereSecondsLeaveTheirRange) {
  for (std::uint16_t precision = 1; precision <= 9; ++precision) {
    SCOPED_TRACE(precision);
    SK_TimeFormat const format = DatesFrom("1970-01-01T00:00:00", precision, 1);
    SK_RelativeTimeReader reader(format);
    for (char const* second : {"05", "06", "07", "08", "09"}) {
      for (char const digit : {'0', '3', '4', '5', '9'}) {
        std::string const fraction(precision, digit);
        ASSERT_TRUE(Agrees(reader, "2038-01-19T03:14:" + (second + ('.' + fraction)) + 'Z', format));
        ASSERT_TRUE(Agrees(reader, "1901-12-13T20:45:" + (second + ('.' + fraction)) + 'Z', format));
      }
    }
  }
}

TEST(RelativeTimeReader, AgreesOnEmptyTextsAndWithoutANotation) {
  SK_TimeFormat const formats[] = {SK_TimeFormat(), DatesFrom("2016-02-28T23:59:58", 3, 1), [] {
                                     SK_TimeFormat format;
                                     format.SetSMPTEInfo(SK_Time{24, 1}, 0);
                                     return format;
                                   }()};
  for (SK_TimeFormat const& format : formats) {
    SK_RelativeTimeReader reader(format);
    EXPECT_TRUE(Agrees(reader, "", format));
    if (format.GetTimeStrLength() != 0) continue;
    EXPECT_TRUE(Agrees(reader, "00:00:01:00", format));
    EXPECT_EQ(reader.Read("00:00:01:00").value, 0);
    EXPECT_EQ(reader.Read("00:00:01:00").scale, 1U);
  }
}

TEST(RelativeTimeReader, AgreesOnADateOfZeroBytes) {
  SK_TimeFormat const format = DatesFrom("2016-02-28T23:59:58", 3, 1);
  SK_RelativeTimeReader reader(format);
  std::string text = "2016-02-28T23:59:58.000Z";
  text.replace(0, 10, 10, '\0');
  EXPECT_TRUE(Agrees(reader, text, format));
}

TEST(RelativeTimeReader, CutTextsAreReadUpToTheirEnd) {
  SK_TimeFormat codes;
  codes.SetSMPTEInfo(SK_Time{120, 1}, 0);
  SK_TimeFormat const dates = DatesFrom("2016-02-28T23:59:58", 9, 0);
  std::pair<SK_TimeFormat, std::string> const rows[] = {{codes, "01:02:03:045"},
                                                        {dates, "2016-02-29T12:00:00.123456789+02:30"}};
  for (auto const& [format, text] : rows) {
    for (std::size_t length = 0; length <= text.size(); ++length) {
      std::vector<char> const exact(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length));
      SK_RelativeTimeReader reader(format);
      EXPECT_TRUE(Agrees(reader, std::string_view(exact.data(), length), format)) << length;
    }
  }
}

/// Known values, so that the agreement above is not one of two mistakes.
TEST(RelativeTimeReader, KnownTimes) {
  SK_TimeFormat format;
  format.SetSMPTEInfo(SK_Time{30000, 1001}, 1);
  SK_RelativeTimeReader reader(format);
  EXPECT_EQ(reader.Read("00:01:00:02").value, 3003);
  EXPECT_EQ(reader.Read("00:01:00:02").scale, 50U);
  format.SetSMPTEBaseTime({3003, 50});
  SK_RelativeTimeReader later(format);
  EXPECT_EQ(later.Read("00:01:00:02").value, 0);
  EXPECT_EQ(later.Read("00:01:00:02").scale, 1U);
  EXPECT_EQ(later.Read("00:01:00:12").value, 1001);
  EXPECT_EQ(later.Read("00:01:00:12").scale, 3000U);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
