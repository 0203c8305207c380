#include "SK_NumberText.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cerrno>
#include <clocale>
#include <cstring>
#include <limits>
#include <random>
#include <stdexcept>
#include <string>

#include "TempFolder.h"

namespace SK_NAMESPACE_INT {
namespace {

std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof(bits));
  return bits;
}

struct Readable {
  char const* name;
  char const* text;
  double value;
};

std::ostream& operator<<(std::ostream& out, Readable const& row) {
  return out << row.text;
}

class ReadableNumber : public testing::TestWithParam<Readable> {};

TEST_P(ReadableNumber, HasItsValue) {
  EXPECT_EQ(BitsOf(SK_NumberText::ToDouble(GetParam().text)), BitsOf(GetParam().value));
}

Readable const kReadable[] = {
    {"Digits", "12", 12.0},
    {"LeadingZeros", "+023.1089517", 23.1089517},
    {"Negative", "-0.5", -0.5},
    {"NegativeZero", "-00.0", -0.0},
    {"NoDigitsBeforePoint", ".25", 0.25},
    {"NoDigitsBehindPoint", "4.", 4.0},
    {"Exponent", "1e5", 100000.0},
    {"ExponentOfMinusTen", "1e-10", 1e-10},
    {"Hexadecimal", "0x10", 16.0},
    {"WhiteSpaceInFront", " \t7", 7.0},
    {"TextBehind", "1.5m", 1.5},
    {"CommaIsNoPoint", "1,5", 1.0},
    {"Infinity", "-inf", -std::numeric_limits<double>::infinity()},
    {"Largest", "1.7976931348623157e308", std::numeric_limits<double>::max()},
};

INSTANTIATE_TEST_SUITE_P(NumberText, ReadableNumber, testing::ValuesIn(kReadable),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(NumberText, TextsWithoutNumberAreInvalid) {
  for (char const* const text : {"", " ", "abc", "+", "-", ".", "e5", "--1"}) {
    EXPECT_THROW(SK_NumberText::ToDouble(text), std::invalid_argument) << text;
  }
}

TEST(NumberText, NumbersThatDoNotFitAreOutOfRange) {
  for (char const* const text : {"1e309", "-1e400", "1e-400"}) {
    EXPECT_THROW(SK_NumberText::ToDouble(text), std::out_of_range) << text;
  }
}

TEST(NumberText, AgreesWithTheStandardLibraryInThePlainLocale) {
  std::mt19937 random(7);
  std::string const alphabet = "0123456789+-.eExX ";
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto left = random() % 9; left != 0; --left) {
      text += alphabet[random() % alphabet.size()];
    }
    std::string expected;
    std::string found;
    try {
      expected = std::to_string(BitsOf(std::stod(text)));
    } catch (std::exception const& error) {
      expected = error.what();
    }
    try {
      found = std::to_string(BitsOf(SK_NumberText::ToDouble(text)));
    } catch (std::exception const& error) {
      found = error.what();
    }
    ASSERT_EQ(found, expected) << text;
  }
}

TEST(NumberText, LeavesErrnoAlone) {
  errno = EDOM;
  EXPECT_THROW(SK_NumberText::ToDouble("1e999"), std::out_of_range);
  EXPECT_EQ(errno, EDOM);
  EXPECT_EQ(SK_NumberText::ToDouble("2"), 2.0);
  EXPECT_EQ(errno, EDOM);
}

/// A locale with a decimal comma, made for the test and set for as long as the object lives.
class CommaLocale {
 public:
  CommaLocale() {
    std::string const command = "localedef -i de_DE -f UTF-8 " + mFolder.Path("de_DE.UTF-8") + " >/dev/null 2>&1";
    // Its warnings make a failure of it; whether the locale is there shows below.
    mIsSet = std::system(command.c_str()) != -1 && setenv("LOCPATH", mFolder.Path("").c_str(), 1) == 0 &&
             std::setlocale(LC_ALL, "de_DE.UTF-8") != nullptr;
  }
  ~CommaLocale() {
    std::setlocale(LC_ALL, "C");
    unsetenv("LOCPATH");
  }
  CommaLocale(CommaLocale const&) = delete;
  CommaLocale& operator=(CommaLocale const&) = delete;

  bool IsSet() const { return mIsSet; }

 private:
  senmark_test::TempFolder mFolder;
  bool mIsSet;
};

TEST(NumberText, LocaleOfTheHostChangesNothing) {
  CommaLocale const locale;
  if (!locale.IsSet()) {
    GTEST_SKIP() << "no locale with a decimal comma can be made here";
  }
  ASSERT_EQ(std::stod("1,5"), 1.5) << "the locale has no decimal comma";
  EXPECT_EQ(SK_NumberText::ToDouble("1.5"), 1.5);
  EXPECT_EQ(SK_NumberText::ToDouble("1,5"), 1.0);
}

TEST(NumberText, PlainDigitsAreRoundedRight) {
  std::mt19937_64 random(11);
  for (int i = 0; i < 20000; ++i) {
    std::string text;
    for (auto left = 1 + random() % 32; left != 0; --left) {
      text += static_cast<char>('0' + random() % 10);
    }
    text.insert(random() % (text.size() + 1), random() % 4 == 0 ? "" : ".");
    // As they stand in a file: the text ends where a quote begins.
    std::string const quoted = text + '"';
    double const found = SK_NumberText::PlainToDouble(quoted.data(), quoted.data() + text.size());
    ASSERT_EQ(BitsOf(found), BitsOf(std::strtod(text.c_str(), nullptr))) << text;
  }
}

TEST(NumberText, NearestDoubleOfAnyDecimal) {
  std::string const noughts(400, '0');
  for (std::string const& text : std::initializer_list<std::string>{"0",
                                                                    "1",
                                                                    "5.",
                                                                    ".5",
                                                                    "1e5",
                                                                    "1E+5",
                                                                    "12e-3",
                                                                    "0.016666666666666666",
                                                                    "9007199254740993",
                                                                    "1e22",
                                                                    "1e23",
                                                                    "1e308",
                                                                    "1.7976931348623159e308",
                                                                    "1e309",
                                                                    "1e99999999999999999999",
                                                                    "4.9e-324",
                                                                    "2.4e-324",
                                                                    "2.5e-324",
                                                                    "2.2250738585072011e-308",
                                                                    "1e-400",
                                                                    "0e999999",
                                                                    "0." + noughts + "1e401",
                                                                    "1" + noughts,
                                                                    "1" + noughts + "e-400"}) {
    double const found = SK_NumberText::NearestDouble(text.data(), text.data() + text.size());
    EXPECT_EQ(BitsOf(found), BitsOf(std::strtod(text.c_str(), nullptr))) << text;
  }
}

TEST(NumberText, NearestDoubleLeavesErrnoAlone) {
  std::string const text = "1e-400";
  errno = EDOM;
  EXPECT_EQ(SK_NumberText::NearestDouble(text.data(), text.data() + text.size()), 0);
  EXPECT_EQ(errno, EDOM);
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
