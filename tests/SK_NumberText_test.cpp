#include "SK_NumberText.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cerrno>
#include <clocale>
#include <cmath>
#include <cstdio>
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
  for (char const* const text : {"1.5", " 1.5", "1.5e3"}) {
    EXPECT_TRUE(SK_NumberText::IsWholeNumber(text)) << text;
  }
  EXPECT_EQ(SK_NumberText::WholeToDouble(" 1.5"), 1.5);
  EXPECT_FALSE(SK_NumberText::IsWholeNumber("1,5"));
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

/// By the standard library: whether all of a text is a number, and which.
bool IsWholeByStod(std::string const& text, double& number) {
  try {
    std::size_t read = 0;
    number = std::stod(text, &read);
    return read == text.size();
  } catch (std::exception const&) {
    return false;
  }
}

struct Whole {
  char const* name;
  std::string text;
  bool isNumber;
};

std::ostream& operator<<(std::ostream& out, Whole const& row) {
  return out << testing::PrintToString(row.text);
}

class WholeNumber : public testing::TestWithParam<Whole> {};

TEST_P(WholeNumber, IsTakenAsTheStandardLibraryDoes) {
  Whole const& row = GetParam();
  EXPECT_EQ(SK_NumberText::IsWholeNumber(row.text), row.isNumber);
  double number = 0;
  ASSERT_EQ(IsWholeByStod(row.text, number), row.isNumber);
  if (row.isNumber) {
    EXPECT_EQ(BitsOf(SK_NumberText::WholeToDouble(row.text)), BitsOf(number));
  }
}

Whole const kWhole[] = {
    {"Empty", "", false},
    {"Digits", "12", true},
    {"Plus", "+12", true},
    {"Minus", "-12.5", true},
    {"NegativeZero", "-0", true},
    {"NegativeZeroWithPoint", "-0.000", true},
    {"LargestExactInteger", "9007199254740992", true},
    {"AboveTheLargestExactInteger", "9007199254740993", true},
    {"AboveTheLargestExactIntegerWithPoint", "900719925474099.3", true},
    {"NineteenDigits", "0009007199254740991", true},
    {"SixtyFourBitsAndOne", "18446744073709551617", true},
    {"SixtyFourBitsAndOneWithPoint", "1844674407370955.1617", true},
    {"TwentyTwoDecimals", "0.0000000000000000000003", true},
    {"TwentyThreeDecimals", "0.00000000000000000000003", true},
    {"SignAlone", "-", false},
    {"PointAlone", ".", false},
    {"SignAndPoint", "+.", false},
    {"TwoSigns", "+-1", false},
    {"TwoPoints", "1.2.3", false},
    {"PointFirst", ".5", true},
    {"PointLast", "-5.", true},
    {"FortyDigits", "1234567890123456789012345678901234567890", true},
    {"FortyOneDigits", "12345678901234567890123456789012345678901", true},
    {"PointBehindFortyDigits", "1234567890123456789012345678901234567890.", true},
    {"BlankInFront", " 12", true},
    {"AllWhiteSpaceInFront", " \t\n\v\f\r1", true},
    {"BlankBehind", "12 ", false},
    {"BlankAlone", " ", false},
    {"BlankBehindSign", "- 1", false},
    {"Word", "abc", false},
    {"WordBehind", "12m", false},
    {"Comma", "1,5", false},
    {"Exponent", "1e5", true},
    {"CapitalExponent", "-1.5E-05", true},
    {"ExponentWithPlus", "1e+300", true},
    {"ExponentWithoutDigits", "1e", false},
    {"ExponentWithSignOnly", "1e-", false},
    {"ExponentAlone", "e5", false},
    {"ZeroWithExponent", "0e999", true},
    {"NegativeZeroWithExponent", "-0.0e-999", true},
    {"Hexadecimal", "0x1F", true},
    {"HexadecimalFloat", "-0X1.8p-3", true},
    {"HexadecimalWithoutDigits", "0x", false},
    {"Infinity", "inf", true},
    {"InfinityInFull", "-Infinity", true},
    {"InfinityCut", "infinit", false},
    {"NotANumber", "nan", true},
    {"NotANumberInCapitals", "-NAN", true},
    {"NotANumberWithText", "nan(0x12)", true},
    {"NotANumberOpen", "nan(", false},
    {"TooLarge", "1e309", false},
    {"TooLargeNegative", "-1e309", false},
    {"TooSmall", "1e-400", false},
    {"LargestAboveHalf", "1.7976931348623159e308", false},
    {"Largest", "1.7976931348623157e308", true},
    {"SmallestNormal", "2.2250738585072014e-308", true},
    {"RoundedUpToSmallestNormal", "2.2250738585072013e-308", true},
    {"RoundedDenormal", "1e-310", false},
    {"SmallestDenormalRounded", "4.9406564584124654e-324", false},
    {"ExactDenormal", "0x1p-1074", true},
    {"TinyInPlainDigits", "0." + std::string(400, '0') + "1", false},
    {"HugeInPlainDigits", std::string(400, '9'), false},
    {"ManyZeros", std::string(400, '0') + "." + std::string(400, '0'), true},
    {"NulBehind", std::string("12\0", 3), false},
    {"NulBetween", std::string("1\0002", 3), false},
    {"NulBehindExponent", std::string("1e5\0", 4), false},
    {"NulAlone", std::string("\0", 1), false},
    {"OtherDigits", "\xD9\xA1", false},
};

INSTANTIATE_TEST_SUITE_P(NumberText, WholeNumber, testing::ValuesIn(kWhole),
                         [](auto const& row) { return std::string(row.param.name); });

/// Texts of every kind that a table may hold, most of them numbers or nearly.
class CellTexts {
 public:
  std::string Next() {
    std::string text;
    switch (mRandom() % 6) {
      case 0:
        return OfAlphabet("0123456789+-.eE", 12);
      case 1:
        return OfAlphabet("0123456789+-.eExXpPinfatyINFATY()_ \t\n\v,;\xA0" + std::string(1, '\0'), 10);
      case 2:
        text = OfAlphabet("0123456789", 45) + (mRandom() % 2 != 0 ? "." : "") + OfAlphabet("0123456789", 45);
        break;
      case 3:
        text = OfAlphabet("0123456789", 20) + "." + OfAlphabet("0123456789", 20) + "e" +
               std::to_string(static_cast<int>(mRandom() % 800) - 400);
        break;
      case 4:
        text = OfDouble(RandomDouble());
        break;
      default:
        text = OfDouble(LimitDouble());
        break;
    }
    return Changed(text);
  }

 private:
  std::string OfAlphabet(std::string const& alphabet, std::size_t limit) {
    std::string text;
    for (auto left = mRandom() % (limit + 1); left != 0; --left) {
      text += alphabet[mRandom() % alphabet.size()];
    }
    return text;
  }

  double RandomDouble() {
    std::uint64_t const bits = mRandom();
    double number = 0;
    std::memcpy(&number, &bits, sizeof(number));
    return number;
  }

  /// Near the largest, the smallest normal or the smallest of all.
  double LimitDouble() {
    constexpr double kLimits[] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::min(),
                                  std::numeric_limits<double>::denorm_min()};
    double number = kLimits[mRandom() % 3];
    for (auto left = mRandom() % 4; left != 0; --left) {
      number = std::nextafter(number, mRandom() % 2 != 0 ? 1.0 : 0.0);
    }
    return number;
  }

  std::string OfDouble(double number) {
    constexpr char const* kForms[] = {"%.*g", "%.*e", "%.*f", "%.*a"};
    char text[1600];
    int const digits = mRandom() % 8 == 0 ? 800 : static_cast<int>(mRandom() % 22);
    std::snprintf(text, sizeof(text), kForms[mRandom() % 4], digits, number);
    return text;
  }

  std::string Changed(std::string text) {
    switch (mRandom() % 8) {
      case 0:
        return ' ' + text;
      case 1:
        return text + ' ';
      case 2:
        return '-' + text;
      case 3:
        if (!text.empty()) {
          text[mRandom() % text.size()] = "0123456789.+-eExp "[mRandom() % 18];
        }
        return text;
      default:
        return text;
    }
  }

  std::mt19937_64 mRandom{17};
};

TEST(NumberText, WholeNumbersAreThoseOfTheStandardLibrary) {
  CellTexts texts;
  int numbers = 0;
  for (int i = 0; i < 2000000; ++i) {
    std::string const text = texts.Next();
    double number = 0;
    bool const isNumber = IsWholeByStod(text, number);
    ASSERT_EQ(SK_NumberText::IsWholeNumber(text), isNumber) << testing::PrintToString(text);
    if (isNumber) {
      ++numbers;
      ASSERT_EQ(BitsOf(SK_NumberText::WholeToDouble(text)), BitsOf(number)) << text;
      ASSERT_EQ(BitsOf(number), BitsOf(std::strtod(text.c_str(), nullptr))) << text;
    }
  }
  EXPECT_GT(numbers, 700000);
  EXPECT_LT(numbers, 1300000);
}

TEST(NumberText, WholeNumberIsReadUpToItsEnd) {
  // As cells stand behind one another.
  std::string_view const text = "12345e6.5";
  EXPECT_EQ(SK_NumberText::WholeToDouble(text.substr(0, 3)), 123.0);
  EXPECT_EQ(SK_NumberText::WholeToDouble(text.substr(0, 7)), 12345e6);
  EXPECT_EQ(SK_NumberText::WholeToDouble(text.substr(4, 3)), 5e6);
  EXPECT_FALSE(SK_NumberText::IsWholeNumber(text.substr(0, 6)));
  EXPECT_FALSE(SK_NumberText::IsWholeNumber(text));
}

TEST(NumberText, WholeNumbersLeaveErrnoAlone) {
  errno = EDOM;
  EXPECT_FALSE(SK_NumberText::IsWholeNumber("1e999"));
  EXPECT_TRUE(SK_NumberText::IsWholeNumber("inf"));
  EXPECT_EQ(errno, EDOM);
}

TEST(NumberText, NearestDoubleOfAnyDecimal) {
  std::string const noughts(400, '0');
  char const* const texts[] = {"0",
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
                               "0e-999999",
                               "0.000"};
  std::vector<std::string> all(std::begin(texts), std::end(texts));
  all.insert(all.end(), {"0." + noughts + "1e401", "1" + noughts, "1" + noughts + "e-400"});
  for (std::string const& text : all) {
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
