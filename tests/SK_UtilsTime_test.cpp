// Order of time texts, the place of a time text in a sample, and times relative to a file's base time.
#include <gtest/gtest.h>

#include <array>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>
#include <vector>

#include "SK_DynamicSampleInfo.h"
#include "SK_Exception.h"
#include "SK_TimeUtils.h"
#include "SK_Utils.h"

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

int Sign(int order) {
  return (order > 0) - (order < 0);
}

/// A text in a buffer of exactly its size, without a closing NUL.
class ExactText {
 public:
  explicit ExactText(std::string const& text) : mBytes(text.begin(), text.end()) {}
  std::string_view View() const { return {mBytes.data(), mBytes.size()}; }
  char const* Begin() const { return mBytes.data(); }
  char const* End() const { return mBytes.data() + mBytes.size(); }

 private:
  std::vector<char> mBytes;
};

SK_TimeFormat Dates(std::uint16_t precision) {
  SK_TimeFormat format;
  format.SetUTCInfo(precision, 1);
  return format;
}

SK_TimeFormat Codes(SK_Time const& rate, std::uint8_t dropFrame = 0) {
  SK_TimeFormat format;
  format.SetSMPTEInfo(rate, dropFrame);
  return format;
}

struct Ordered {
  char const* name;
  char const* left;
  char const* right;
  int precision;
  int expected;
};

/// Compares a row in both directions, as text with a closing NUL, and as text without.
void ExpectOrder(Ordered const& row, SK_TimeFormat const& format) {
  SCOPED_TRACE(row.name);
  ExactText const left(row.left);
  ExactText const right(row.right);
  EXPECT_EQ(Sign(SK_Utils::CompareTimeStrings(row.left, row.right, format)), row.expected);
  EXPECT_EQ(Sign(SK_Utils::CompareTimeStrings(row.right, row.left, format)), -row.expected);
  EXPECT_EQ(Sign(SK_Utils::CompareTimeStrings(left.View(), right.View(), format)), row.expected);
  EXPECT_EQ(Sign(SK_Utils::CompareTimeStrings(right.View(), left.View(), format)), -row.expected);
}

TEST(UtilsTime, DatesAreOrderedByTheirDigits) {
  Ordered const rows[] = {
      {"Equal", "2015-06-15T12:30:30.500Z", "2015-06-15T12:30:30.500Z", 3, 0},
      {"Year", "2014-12-31T23:59:59.999Z", "2015-06-15T12:30:30.500Z", 3, -1},
      {"FirstDigitOfTheYear", "1999-12-31T23:59:59.999Z", "2000-01-01T00:00:00.000Z", 3, -1},
      {"Month", "2015-05-31T23:59:59.999Z", "2015-06-15T12:30:30.500Z", 3, -1},
      {"Day", "2015-06-14T23:59:59.999Z", "2015-06-15T12:30:30.500Z", 3, -1},
      {"Hour", "2015-06-15T11:59:59.999Z", "2015-06-15T12:30:30.500Z", 3, -1},
      {"Minute", "2015-06-15T12:29:59.999Z", "2015-06-15T12:30:30.500Z", 3, -1},
      {"Second", "2015-06-15T12:30:29.999Z", "2015-06-15T12:30:30.500Z", 3, -1},
      {"SecondDigitOfTheSecond", "2015-06-15T12:30:30.999Z", "2015-06-15T12:30:31.500Z", 3, -1},
      {"Fraction", "2015-06-15T12:30:30.499Z", "2015-06-15T12:30:30.500Z", 3, -1},
      {"LastDigitOfTheFraction", "2015-06-15T12:30:30.500Z", "2015-06-15T12:30:30.501Z", 3, -1},
      {"FractionBehindThePrecision", "2015-06-15T12:30:30.509Z", "2015-06-15T12:30:30.501Z", 2, 0},
      {"NoFractionAtPrecisionZero", "2015-06-15T12:30:30.9Z", "2015-06-15T12:30:30.1Z", 0, 0},
      {"SecondAtPrecisionZero", "2015-06-15T12:30:30Z", "2015-06-15T12:30:31Z", 0, -1},
      {"ZonesDoNotCount", "2015-06-15T12:30:30.500+02:00", "2015-06-15T12:30:30.500-11:30", 3, 0},
      {"SeparatorsDoNotCount", "2015/06/15 12.30.30,500Z", "2015-06-15T12:30:30.500Z", 3, 0},
      {"BytesCountUnsigned", "2015-06-15T12:30:3\xFF.500Z", "2015-06-15T12:30:39.500Z", 3, 1},
      {"BothEmpty", "", "", 3, 0},
      {"EmptyIsFirst", "", "0000-00-00T00:00:00.000Z", 3, -1},
      {"EmptyIsBeforeAnyText", "", "x", 3, -1},
      {"ShortIsBeforeItsContinuation", "2015-06", "2015-06-15T12:30:30.500Z", 3, -1},
      {"ShortBySecondsOnly", "2015-06-15T12:30:", "2015-06-15T12:30:00.500Z", 3, -1},
      {"ShortByItsFraction", "2015-06-15T12:30:30.5", "2015-06-15T12:30:30.500Z", 3, -1},
      {"ShortByItsZone", "2015-06-15T12:30:30.500", "2015-06-15T12:30:30.500Z", 3, 0},
      {"ShortCanBeLater", "2016", "2015-06-15T12:30:30.500Z", 3, 1},
      {"BothShortAndEqual", "2015-06-1", "2015-06-1", 3, 0},
      {"PrecisionBeyondBothTexts", "2015-06-15T12:30:30.5Z", "2015-06-15T12:30:30.5Z", 65535, 0},
  };
  for (Ordered const& row : rows) ExpectOrder(row, Dates(static_cast<std::uint16_t>(row.precision)));
}

TEST(UtilsTime, TimeCodesAreOrderedByTheirDigits) {
  Ordered const rows[] = {
      {"Equal", "12:30:30:15", "12:30:30:15", 0, 0},
      {"Hour", "11:59:59:29", "12:30:30:15", 0, -1},
      {"Minute", "12:29:59:29", "12:30:30:15", 0, -1},
      {"Second", "12:30:29:29", "12:30:30:15", 0, -1},
      {"Frame", "12:30:30:14", "12:30:30:15", 0, -1},
      {"FirstDigitOfTheFrame", "12:30:30:09", "12:30:30:10", 0, -1},
      {"ThirdDigitOfTheFrame", "00:00:01:099", "00:00:01:100", 0, -1},
      {"TwoAndThreeDigitsAreNumbers", "00:00:01:99", "00:00:01:100", 0, -1},
      {"NoThirdDigitInALongerText", "00:00:01:1009", "00:00:01:10", 0, 0},
      {"SeparatorsDoNotCount", "12;30;30;15", "12:30:30:15", 0, 0},
      {"BytesCountUnsigned", "12:30:3\xFF:15", "12:30:39:15", 0, 1},
      {"BothEmpty", "", "", 0, 0},
      {"EmptyIsFirst", "", "00:00:00:00", 0, -1},
      {"EmptyIsBeforeAnyText", "", "x", 0, -1},
      {"ShortIsBeforeItsContinuation", "12:3", "12:30:30:15", 0, -1},
      {"ShortCanBeLater", "13", "12:30:30:15", 0, 1},
      {"FrameOfOneDigit", "12:30:30:9", "12:30:30:15", 0, -1},
      {"BlankBeforeTheFrame", "12:30:30: 9", "12:30:30:09", 0, 0},
  };
  for (Ordered const& row : rows) ExpectOrder(row, Codes({30, 1}));
}

TEST(UtilsTime, FrameWithoutDigitsRaisesWhatStoiRaises) {
  for (char const* bad : {"12:30:30:", "12:30:30:xx", "12:30:30", "12:30:30:-"}) {
    EXPECT_THROW(SK_Utils::CompareSMPTETime(bad, "12:30:30:15"), std::invalid_argument) << bad;
    EXPECT_THROW(SK_Utils::CompareSMPTETime("12:30:30:15", bad), std::invalid_argument) << bad;
    EXPECT_EQ(Sign(SK_Utils::CompareSMPTETime(bad, "12:30:31:15")), -1) << bad << " is not looked at so far";
  }
}

TEST(UtilsTime, FormatWithoutANotationOrdersNothing) {
  SK_TimeFormat const format;
  EXPECT_EQ(SK_Utils::CompareTimeStrings("1", "2", format), 0);
  EXPECT_EQ(SK_Utils::CompareTimeStrings(std::string_view("1"), std::string_view("2"), format), 0);
  EXPECT_EQ(SK_Utils::CompareTimeStrings(nullptr, nullptr, format), 0);
}

void ExpectNullError(char const* left, char const* right, SK_TimeFormat const& format, std::string const& operation) {
  try {
    SK_Utils::CompareTimeStrings(left, right, format);
    ADD_FAILURE() << operation << " took a null text";
  } catch (ns_sensor::SK_Exception const& e) {
    EXPECT_EQ(e.GetErrorCode(), 21);
    EXPECT_EQ(e.GetLocalizedErrMsg(), operation + " : invalid left or right time string.");
    EXPECT_EQ(e.GetFileOffset(), -1);
    EXPECT_EQ(e.GetFileLineNo(), -1);
  }
}

TEST(UtilsTime, NullTextIsAnError) {
  ExpectNullError(nullptr, "2015-06-15T12:30:30.500Z", Dates(3), "CompareUTCTime");
  ExpectNullError("2015-06-15T12:30:30.500Z", nullptr, Dates(3), "CompareUTCTime");
  ExpectNullError(nullptr, nullptr, Dates(3), "CompareUTCTime");
  ExpectNullError(nullptr, "12:30:30:15", Codes({30, 1}), "CompareSMPTETime");
  ExpectNullError("12:30:30:15", nullptr, Codes({30, 1}), "CompareSMPTETime");
  ExpectNullError(nullptr, nullptr, Codes({30, 1}), "CompareSMPTETime");
}

/// Orders dates field by field and byte by byte, with a byte of 0 for each that is missing.
int PlainOrderOfDates(std::string const& left, std::string const& right, std::size_t precision) {
  std::pair<std::size_t, std::size_t> const fields[] = {{0, 4},  {5, 2},  {8, 2},         {11, 2},
                                                        {14, 2}, {17, 2}, {20, precision}};
  for (auto const& [position, width] : fields) {
    for (std::size_t i = position; i < position + width; ++i) {
      int const a = i < left.size() ? static_cast<unsigned char>(left[i]) : 0;
      int const b = i < right.size() ? static_cast<unsigned char>(right[i]) : 0;
      if (a != b) return a < b ? -1 : 1;
    }
  }
  return 0;
}

TEST(UtilsTime, DatesAreOrderedAsByteByByte) {
  std::mt19937 random(4);
  std::string const alphabet = "0129:-.TZx\xFF";
  for (int i = 0; i < 100000; ++i) {
    std::string left = "2015-06-15T12:30:30.123456Z";
    std::string right = left;
    right[random() % right.size()] = alphabet[random() % alphabet.size()];
    if (i % 3 == 0) left[random() % left.size()] = alphabet[random() % alphabet.size()];
    if (i % 5 == 0) left.resize(1 + random() % left.size());
    if (i % 7 == 0) right.resize(1 + random() % right.size());
    auto const precision = static_cast<std::uint16_t>(random() % 9);
    ExactText const exactLeft(left);
    ExactText const exactRight(right);
    ASSERT_EQ(Sign(SK_Utils::CompareUTCTime(exactLeft.View(), exactRight.View(), precision)),
              PlainOrderOfDates(left, right, precision))
        << left << " and " << right << " at " << precision;
  }
}

SK_DynamicSampleInfo Info(std::uint8_t kind) {
  SK_DynamicSampleInfo info(nullptr);
  info.mValueKind = kind;
  info.mNumberLength = 5;
  info.mArraySize = 3;
  info.mMaxLength = 8;
  info.mMaxDigits = 2;
  return info;
}

struct Sample {
  char const* name;
  std::uint8_t kind;
  std::string text;
};

std::vector<Sample> const kSamples = {
    {"Number", kNumberStringSamples, R"({"value":"1.5","time":"01:02:03:04"})"},
    {"NumberArray", kNumberArraySamples, R"({"value":["1.5","2.5","3.5"],"time":"01:02:03:04"})"},
    {"PaddedString", kPaddedStringSamples, R"({"value":{"str":"abc     ","length":03},"time":"01:02:03:04"})"},
    {"TimeFirst", kNumberStringSamples, R"({"time":"01:02:03:04","value":"1.5"})"},
    {"TimeFirstOfAnyKind", kNoSampleSet, R"({"time":"01:02:03:04","value":true})"},
};

TEST(UtilsTime, TimeTextIsFoundInASample) {
  for (Sample const& sample : kSamples) {
    ExactText const text(sample.text);
    char const* time = SK_Utils::GetTimeValueOffset(Info(sample.kind), text.Begin(), text.End());
    ASSERT_NE(time, nullptr) << sample.name;
    EXPECT_EQ(static_cast<std::size_t>(time - text.Begin()), sample.text.find("01:02:03:04")) << sample.name;
  }
}

TEST(UtilsTime, CutSampleHasNoTimeTextAtItsEnd) {
  for (Sample const& sample : kSamples) {
    std::size_t const position = sample.text.find("01:02:03:04");
    for (std::size_t length = 0; length <= sample.text.size(); ++length) {
      ExactText const text(sample.text.substr(0, length));
      char const* time = SK_Utils::GetTimeValueOffset(Info(sample.kind), text.Begin(), text.End());
      EXPECT_EQ(time != nullptr, length > position) << sample.name << " cut at " << length;
    }
  }
}

TEST(UtilsTime, EmptyArrayIsOneByteShorter) {
  SK_DynamicSampleInfo info = Info(kNumberArraySamples);
  info.mArraySize = 0;
  ExactText const text(
      R"({"value":[,"time":"01:02:03:04"})");  // one bracket: a count of 0 has one comma less than none
  EXPECT_EQ(SK_Utils::GetTimeValueOffset(info, text.Begin(), text.End()), text.Begin() + 19);
}

TEST(UtilsTime, MalformedSampleHasNoTimeText) {
  struct Row {
    char const* name;
    std::uint8_t kind;
    std::string text;
  };
  Row const rows[] = {
      {"Empty", kNumberStringSamples, ""},
      {"OtherKey", kNumberStringSamples, R"({"tame":"01:02:03:04","value":"1.5"})"},
      {"NoDigit", kNumberStringSamples, R"({"time":"x1:02:03:04","value":"1.5"})"},
      {"NoDigitBehindTheValue", kNumberStringSamples, R"({"value":"1.5","time":"-1:02:03:04"})"},
      {"WidthDiffers", kNumberStringSamples, R"({"value":"12.5","time":"01:02:03:04"})"},
      {"ValueOfNoKind", kNoSampleSet, R"({"value":"1.5","time":"01:02:03:04"})"},
      {"ValueOfAnUnknownKind", 3, R"({"value":"1.5","time":"01:02:03:04"})"},
  };
  for (Row const& row : rows) {
    ExactText const text(row.text);
    EXPECT_EQ(SK_Utils::GetTimeValueOffset(Info(row.kind), text.Begin(), text.End()), nullptr) << row.name;
  }
}

TEST(UtilsTime, HugeWidthsHaveNoTimeText) {
  constexpr std::uint64_t kHuge = std::numeric_limits<std::uint64_t>::max();
  ExactText const text(R"({"value":"1.5","time":"01:02:03:04"})");
  for (std::uint64_t width : {kHuge, kHuge - 17, kHuge - 18, kHuge - 20, kHuge / 2, kHuge / 3 + 1}) {
    struct Row {
      std::uint8_t kind;
      std::uint64_t SK_DynamicSampleInfo::*field;
    };
    Row const rows[] = {{kNumberStringSamples, &SK_DynamicSampleInfo::mNumberLength},
                        {kNumberArraySamples, &SK_DynamicSampleInfo::mNumberLength},
                        {kNumberArraySamples, &SK_DynamicSampleInfo::mArraySize},
                        {kPaddedStringSamples, &SK_DynamicSampleInfo::mMaxLength},
                        {kPaddedStringSamples, &SK_DynamicSampleInfo::mMaxDigits}};
    for (Row const& row : rows) {
      SK_DynamicSampleInfo info = Info(row.kind);
      info.*row.field = width;
      EXPECT_EQ(SK_Utils::GetTimeValueOffset(info, text.Begin(), text.End()), nullptr) << int{row.kind} << width;
    }
  }
}

SK_Time Relative(std::string_view text, SK_TimeFormat const& format) {
  SK_Time time = {77, 77};
  SK_Utils::ConvertTimeStrToRelativeSKTime(text, time, format);
  return time;
}

std::string RelativeText(SK_Time const& time, SK_TimeFormat const& format) {
  std::string text = "untouched";
  SK_Utils::ConvertSKTimeToRelativeStr(time, text, format);
  return text;
}

SK_DateTime BaseDate() {
  SK_DateTime base;
  SK_TimeUtils::ParseUTCDateTime("2015-12-31T23:59:58.500+02:30", 3, base);
  return base;
}

TEST(UtilsTime, TimeCodeIsRelativeToTheBase) {
  SK_TimeFormat format = Codes({24, 1});
  EXPECT_EQ(Relative("00:01:00:12", format), (SK_Time{121, 2}));
  format.SetSMPTEBaseTime({60, 1});
  EXPECT_EQ(Relative("00:01:00:12", format), (SK_Time{1, 2}));
  EXPECT_EQ(Relative("00:01:00:00", format), (SK_Time{0, 1}));
  EXPECT_EQ(Relative("00:00:59:12", format), (SK_Time{-1, 2}));
  EXPECT_EQ(Relative("00:00:58:00", format), (SK_Time{-2, 1}));
  EXPECT_EQ(Relative("00:00:00:00", format), (SK_Time{-60, 1}));
  EXPECT_EQ(Relative("", format), (SK_Time{0, 1}));
  EXPECT_THROW(Relative("x", format), std::invalid_argument);
}

TEST(UtilsTime, TimeCodeAtARateOfZeroHasNoTime) {
  EXPECT_EQ(Relative("00:01:00:12", Codes({0, 1})), (SK_Time{0, 0}));
}

TEST(UtilsTime, DateIsRelativeToTheBase) {
  SK_TimeFormat format = Dates(3);
  format.SetUTCBaseTime(BaseDate());
  EXPECT_EQ(Relative("2015-12-31T23:59:58.500Z", format), (SK_Time{0, 1}));
  EXPECT_EQ(Relative("2016-01-01T00:00:00.000Z", format), (SK_Time{3, 2}));
  EXPECT_EQ(Relative("2015-12-31T23:59:58.000Z", format), (SK_Time{-1, 2}));
  EXPECT_EQ(Relative("", format), (SK_Time{0, 1}));
  EXPECT_THROW(Relative("2015-12-31T23:59:58Z", format), std::invalid_argument);
}

TEST(UtilsTime, ShortDateCountsAsOneOfZeros) {
  SK_TimeFormat format = Dates(3);
  format.SetUTCBaseTime(SK_DateTime());
  EXPECT_EQ(Relative("2015", format), (SK_Time{0, 1}));
}

TEST(UtilsTime, WithoutANotationNothingIsRead) {
  EXPECT_EQ(Relative("00:01:00:12", SK_TimeFormat()), (SK_Time{77, 77}));
  EXPECT_EQ(Relative("", SK_TimeFormat()), (SK_Time{0, 1})) << "but for an empty text";
  EXPECT_EQ(RelativeText({1, 1}, SK_TimeFormat()), "untouched");
}

TEST(UtilsTime, TimeBecomesTextBehindTheBase) {
  SK_TimeFormat codes = Codes({24, 1});
  codes.SetSMPTEBaseTime({3600, 1});
  EXPECT_EQ(RelativeText({1, 2}, codes), "01:00:00:12");
  EXPECT_EQ(RelativeText({0, 1}, codes), "01:00:00:00");
  SK_TimeFormat dates = Dates(3);
  dates.SetUTCBaseTime(BaseDate());
  EXPECT_EQ(RelativeText({3, 2}, dates), "untouched2016-01-01T00:00:00.000+02:30") << "a date is appended";
}

TEST(UtilsTime, NegativeTimeLeavesTheText) {
  EXPECT_EQ(RelativeText({-1, 24}, Codes({24, 1})), "untouched");
  EXPECT_EQ(RelativeText({-1, 1}, Dates(3)), "untouched");
  EXPECT_EQ(RelativeText({std::numeric_limits<std::int32_t>::min(), 1}, Dates(3)), "untouched");
}

TEST(UtilsTime, TextAndTimeAgreeInBothDirections) {
  SK_TimeFormat codes = Codes({30000, 1001}, 1);
  SK_Time base;
  SK_TimeUtils::ConvertSMPTETimeToSKTime("00:59:59:28", codes.GetSMPTEInfo(), base);
  codes.SetSMPTEBaseTime(base);
  for (char const* text : {"00:59:59:28", "00:59:59:29", "01:00:00:00", "01:01:00:02", "02:10:59:17"}) {
    std::string back;
    SK_Utils::ConvertSKTimeToRelativeStr(Relative(text, codes), back, codes);
    EXPECT_EQ(back, text);
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
