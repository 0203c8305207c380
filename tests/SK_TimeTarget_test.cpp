#include "SK_TimeTarget.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "SK_Utils.h"

namespace SK_NAMESPACE_INT {
namespace {

int SignOf(int order) {
  return (order > 0) - (order < 0);
}

/// -1, 0 or 1, or 9 for an exception. The text ends with its buffer.
int OrderByTarget(std::string const& target, std::string const& text, SK_TimeFormat const& format) {
  auto const buffer = std::make_unique<char[]>(text.size());
  std::memcpy(buffer.get(), text.data(), text.size());
  try {
    return SignOf(SK_TimeTarget(target, format).Order({buffer.get(), text.size()}));
  } catch (std::exception const&) {
    return 9;
  }
}

int OrderByUtils(std::string const& target, std::string const& text, SK_TimeFormat const& format) {
  try {
    return SignOf(SK_Utils::CompareTimeStrings(std::string_view(target), text, format));
  } catch (std::exception const&) {
    return 9;
  }
}

SK_TimeFormat Frames(std::int32_t rate) {
  SK_TimeFormat format;
  format.SetSMPTEInfo({rate, 1}, 0);
  return format;
}

SK_TimeFormat Dates(std::uint16_t precision, std::uint8_t isGMT) {
  SK_TimeFormat format;
  format.SetUTCInfo(precision, isGMT);
  return format;
}

struct Ordered {
  char const* name;
  SK_TimeFormat format;
  std::vector<std::string> texts;  // in their order, all different
};

class OrderedTimes : public testing::TestWithParam<Ordered> {};

TEST_P(OrderedTimes, AreInOrder) {
  auto const& texts = GetParam().texts;
  for (std::size_t left = 0; left < texts.size(); ++left) {
    for (std::size_t right = 0; right < texts.size(); ++right) {
      int const expected = SignOf(static_cast<int>(left) - static_cast<int>(right));
      EXPECT_EQ(OrderByTarget(texts[left], texts[right], GetParam().format), expected)
          << texts[left] << ' ' << texts[right];
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    TimeTarget, OrderedTimes,
    testing::Values(Ordered{"TwoFrameDigits",
                            Frames(30),
                            {"", "00:00:00:00", "00:00:00:01", "00:00:00:29", "00:00:01:00", "00:01:00:00",
                             "09:59:59:29", "10:00:00:00"}},
                    Ordered{"ThreeFrameDigits",
                            Frames(120),
                            {"", "00:00:01:002", "00:00:01:099", "00:00:01:100", "00:00:01:119", "00:00:02:000"}},
                    Ordered{"Milliseconds",
                            Dates(3, 1),
                            {"", "2015-12-31T23:59:59.998Z", "2015-12-31T23:59:59.999Z", "2016-01-01T00:00:00.000Z",
                             "2016-01-01T00:00:01.000Z", "2016-01-01T00:01:00.000Z", "2016-01-01T01:00:00.000Z",
                             "2016-01-02T00:00:00.000Z", "2016-02-01T00:00:00.000Z", "2017-01-01T00:00:00.000Z"}},
                    Ordered{"FourDigits", Dates(4, 1), {"2015-12-31T23:59:59.1233Z", "2015-12-31T23:59:59.1234Z"}},
                    Ordered{"SixDigits", Dates(6, 1), {"2015-12-31T23:59:59.123455Z", "2015-12-31T23:59:59.123456Z"}}),
    [](auto const& row) { return std::string(row.param.name); });

TEST(TimeTarget, ZonesDoNotCount) {
  EXPECT_EQ(OrderByTarget("2015-12-31T23:59:59.999+01:00", "2015-12-31T23:59:59.999-02:30", Dates(3, 0)), 0);
  EXPECT_EQ(OrderByTarget("2015-12-31T23:59:59+01:00", "2015-12-31T23:59:59-02:30", Dates(0, 0)), 0);
}

TEST(TimeTarget, SeparatorsDoNotCount) {
  EXPECT_EQ(OrderByTarget("01:02:03:04", "01;02;03;04", Frames(30)), 0);
  EXPECT_EQ(OrderByTarget("2015-12-31T23:59:59.999Z", "2015/12/31 23.59.59,999Z", Dates(3, 1)), 0);
}

TEST(TimeTarget, FormatWithoutNotationOrdersNothing) {
  EXPECT_EQ(OrderByTarget("00:00:00:00", "99:99:99:99", SK_TimeFormat()), 0);
}

TEST(TimeTarget, AgreesWithTheComparisonOfTextsOnAnyBytes) {
  std::mt19937 random(2);
  struct Source {
    SK_TimeFormat format;
    std::string text;
  };
  Source const sources[] = {{Frames(30), "01:02:03:04"},
                            {Frames(120), "01:02:03:004"},
                            {Dates(0, 1), "2015-12-31T23:59:59Z"},
                            {Dates(0, 0), "2015-12-31T23:59:59+00:30"},
                            {Dates(1, 1), "2015-12-31T23:59:59.1Z"},
                            {Dates(3, 1), "2015-12-31T23:59:59.123Z"},
                            {Dates(4, 1), "2015-12-31T23:59:59.1234Z"},
                            {Dates(5, 0), "2015-12-31T23:59:59.12345+01:00"}};
  std::string const alphabet = "0123456789 :-+Z\xFF";
  auto const mutated = [&](std::string text) {
    for (auto changes = random() % 3; changes != 0; --changes) {
      text[random() % text.size()] = alphabet[random() % alphabet.size()];
    }
    if (random() % 8 == 0) {
      text.resize(random() % (text.size() + 1));
    }
    return text;
  };
  for (int i = 0; i < 40000; ++i) {
    Source const& source = sources[random() % std::size(sources)];
    std::string const target = mutated(source.text);
    std::string const text = mutated(source.text);
    ASSERT_EQ(OrderByTarget(target, text, source.format), OrderByUtils(target, text, source.format))
        << '"' << target << "\" \"" << text << '"';
  }
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
