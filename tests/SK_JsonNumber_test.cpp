#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "ExactRange.h"
#include "SK_Error.h"
#include "SK_TdjsonParserUtils.h"

namespace {

using ns_sensor::SK_Exception;
using SK_NAMESPACE_INT::SK_TdjsonParserUtils;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string Digits(std::string const& leading, std::size_t length) {
  return leading + std::string(length - leading.size(), '0');
}

template <typename Row>
std::string NameOf(testing::TestParamInfo<Row> const& row) {
  return row.param.name;
}

struct AcceptedNumber {
  char const* name;
  std::string text;
  std::size_t length;  ///< bytes that the number takes
  double value;
};

void PrintTo(AcceptedNumber const& row, std::ostream* out) {
  *out << row.text;
}

class JsonNumberAccepted : public testing::TestWithParam<AcceptedNumber> {};

TEST_P(JsonNumberAccepted, GivesValueAndPosition) {
  ExactRange const range(GetParam().text);
  char const* p = range.begin();
  double value = 0;
  char const* const next = SK_TdjsonParserUtils::ParseJsonNumber(p, range.end(), range.begin(), "property", value);
  EXPECT_EQ(next, p);
  EXPECT_EQ(p - range.begin(), static_cast<std::ptrdiff_t>(GetParam().length));
  EXPECT_EQ(value, GetParam().value);
  EXPECT_EQ(std::signbit(value), std::signbit(GetParam().value));
}

TEST_P(JsonNumberAccepted, NothingBehindTheNumberMatters) {
  AcceptedNumber const& row = GetParam();
  ExactRange const range(row.text.substr(0, row.length));
  char const* p = range.begin();
  double value = 0;
  SK_TdjsonParserUtils::ParseJsonNumber(p, range.end(), range.begin(), "property", value);
  EXPECT_EQ(p, range.end());
  EXPECT_EQ(value, row.value);
}

AcceptedNumber const kIntegers[] = {
    {"Zero", "0", 1, 0.0},
    {"NegativeZeroIsZero", "-0", 2, 0.0},
    {"OneDigit", "7", 1, 7.0},
    {"NegativeDigit", "-7", 2, -7.0},
    {"EndsAtComma", "42,", 2, 42.0},
    {"ZeroTakesNoFurtherDigit", "012", 1, 0.0},
    {"NegativeZeroTakesNoFurtherDigit", "-05", 2, 0.0},
    {"LargestSigned32", "2147483647", 10, 2147483647.0},
    {"AboveSigned32IsNegative", "2147483648", 10, -2147483648.0},
    {"WrapsOn", "2147483649", 10, -2147483647.0},
    {"BelowUnsignedLimit", "4294967289", 10, -7.0},
    {"OnUnsignedLimit", "4294967290", 10, -6.0},
    {"LargestUnsigned32IsMinusOne", "4294967295", 10, -1.0},
    {"AboveUnsigned32IsItself", "4294967296", 10, 4294967296.0},
    {"WrappedGoesOnWrapping", "30000000001", 11, -64771071.0},
    {"WrappedToZero", "21474836480", 11, 0.0},
    {"WrappedBelowZero", "42949672950", 11, -10.0},
    {"WrappedThenReaches64Bit", "330403018789068288", 18, 120033726668288.0},
    {"NegativeAtLimit", "-2147483640", 11, -2147483640.0},
    {"AboveSmallestSigned32", "-2147483647", 11, -2147483647.0},
    {"SmallestSigned32", "-2147483648", 11, -2147483648.0},
    {"BelowSmallestSigned32IsUnsigned64", "-2147483649", 11, 18446744071562067967.0},
    {"NegativeBillionsAreUnsigned64", "-3000000000", 11, 1.8446744070709551e19},
    {"MoreNegativeBillionsAreUnsigned64", "-5000000000", 11, 18446744068709551616.0},
    {"SmallestSigned32GoesOnWrapping", "-21474836480", 12, 0.0},
    {"LargestUnsigned64", "18446744073709551615", 20, 18446744073709551615.0},
    {"AboveUnsigned64IsDouble", "18446744073709551616", 20, 18446744073709551616.0},
    {"AboveSmallestSigned64IsUnsigned64", "-9223372036854775807", 20, 9223372036854775809.0},
    {"SmallestSigned64IsUnsigned64", "-9223372036854775808", 20, 9223372036854775808.0},
    {"BelowSmallestSigned64IsDouble", "-9223372036854775809", 20, -9223372036854775809.0},
    {"DoubleGrowsDigitByDigit", Digits("1", 31), 31, 9.999999999999999e+29},
    {"LargestLengthOfDigits", Digits("1", 309), 309, 9.999999999999998e+307},
    {"BelowDoubleLimit", Digits("179769313486231", 309), 309, 1.7976931348623095e+308},
};
INSTANTIATE_TEST_SUITE_P(Integers, JsonNumberAccepted, testing::ValuesIn(kIntegers), NameOf<AcceptedNumber>);

AcceptedNumber const kFractions[] = {
    {"Half", "0.5", 3, 0.5},
    {"NegativeHalf", "-0.5", 4, -0.5},
    {"NegativeZeroWithFraction", "-0.0", 4, -0.0},
    {"ZerosAtTheEnd", "-12.50", 6, -12.5},
    {"SecondPointEnds", "1.5.5", 3, 1.5},
    {"DigitsBehindSeventeenAreLost", "0.12345678901234567890", 22, 12345678901234567.0 / 1e17},
    {"CutNotRounded", "0.123456789012345669", 20, 12345678901234566.0 / 1e17},
    {"SeventeenthDigitInDouble", "0.99999999999999999", 19, 1.0000000000000002},
    {"LeadingZerosDoNotCount", "0.00000000000000000012345", 25, 1.2345e-19},
    {"IntegerDigitsCount", "2029953362.15000806360837783533", 31, 2029953362.150008},
    {"Integer64Bit", "9007199254740993.5", 18, 9007199254740992.0},
    {"OnExactLimit", "900719925474099.1", 17, 900719925474099.1},
    {"SeventeenthDigitBehindExactLimit", "900719925474099.25", 18, 900719925474099.2},
    {"WrappedIntegerIsHuge", "2147483648.5", 12, 1.8446744071562068e+19},
    {"MinusOneIsHuge", "4294967295.0", 12, 1.8446744073709552e+19},
    {"DoubleInteger", "18446744073709551616.5", 22, 1.8446744073709552e+19},
    {"UnderflowsToZero", "0." + std::string(400, '0') + "1", 403, 0.0},
    {"SubnormalByTwoDivisions", "0." + std::string(307, '0') + "123456789", 318, 1.23456789e-308},
};
INSTANTIATE_TEST_SUITE_P(Fractions, JsonNumberAccepted, testing::ValuesIn(kFractions), NameOf<AcceptedNumber>);

// Exponents without a sign lose a digit, and below -9 every further digit takes a byte along.
AcceptedNumber const kExponents[] = {
    {"Positive", "1.5e+3", 6, 1500.0},
    {"CapitalLetter", "1.5E+3", 6, 1500.0},
    {"Negative", "1.5e-3", 6, 0.0015},
    {"DigitBehindLetterIsLost", "1e15", 4, 1e5},
    {"DigitBehindCapitalIsLost", "1E15", 4, 1e5},
    {"AnyByteIsTakenForTheSign", "1ex5", 4, 1e5},
    {"LeadingZerosOfPositive", "1e+000000000003", 15, 1000.0},
    {"OneNegativeDigit", "1e-5,", 4, 1e-5},
    {"SecondNegativeDigitTakesComma", "1e-15,", 6, 1e-15},
    {"SecondNegativeDigitTakesBracket", "1e-15]", 6, 1e-15},
    {"SecondNegativeDigitTakesSpace", "1e-15 ,", 6, 1e-15},
    {"SecondNegativeDigitAtEnd", "1e-15", 5, 1e-15},
    {"NegativeLeadingZeroTakesComma", "1.2e-05,", 8, 1.2e-05},
    {"NegativeZeroDigitEnds", "1e-10,", 4, 0.1},
    {"ThirdNegativeDigitIsLost", "1e-123,", 6, 1e-12},
    {"FourthNegativeDigitTakesComma", "1e-1234,", 8, 1.0 / 1e124},
    {"LostZeroDoesNotEnd", "1e-1203,", 8, 1e-123},
    {"BelowNegativeLimit", "1e-21_4_7_4_8_3_6_35_5,", 20, 0.0},
    {"OnNegativeLimitDigitsAreSteppedOver", "1e-21_4_7_4_8_3_6_45_5,", 23, 0.0},
    {"AboveNegativeLimit", "1e-21_4_7_4_8_3_6_5999_9_9_9_9_9_9_9_9_9_9_", 43, 0.0},
    {"LargestPositive", "1e+308", 6, 1e308},
    {"FractionWidensLimit", "1.5e+308", 8, 1.5e308},
    {"InfinityAtWidenedLimit", "1.5e+309", 8, kInfinity},
    {"NegativeInfinity", "-1.5e+309", 9, -kInfinity},
    {"ZerosBehindPointWidenLimit", "0.00001e+313", 12, 1e308},
    {"Integer64BitWithExponent", "4294967296e+1", 13, 42949672960.0},
    {"WrappedIntegerIsHugeWithExponent", "4294967295e+0", 13, 1.8446744073709552e+19},
};
INSTANTIATE_TEST_SUITE_P(Exponents, JsonNumberAccepted, testing::ValuesIn(kExponents), NameOf<AcceptedNumber>);

struct RefusedNumber {
  char const* name;
  std::string text;
  long long offset;
  char const* message;
};

void PrintTo(RefusedNumber const& row, std::ostream* out) {
  *out << row.text;
}

class JsonNumberRefused : public testing::TestWithParam<RefusedNumber> {};

TEST_P(JsonNumberRefused, GivesCodeMessageAndOffset) {
  ExactRange const range(GetParam().text);
  char const* p = range.begin();
  double value = 0;
  try {
    SK_TdjsonParserUtils::ParseJsonNumber(p, range.end(), range.begin(), "group::value[3]", value);
    FAIL() << "accepted as " << value;
  } catch (SK_Exception const& error) {
    EXPECT_STREQ(error.GetLocalizedErrMsg(), GetParam().message);
    EXPECT_EQ(error.GetErrorCode(), 32);
    EXPECT_EQ(error.GetFileOffset(), GetParam().offset);
    EXPECT_EQ(error.GetFileLineNo(), -1);
  }
}

char const kWrongType[] = R"(Invalid "group::value[3]" type, expected type:JSON Number.)";
char const kTooBig[] = "Number too big to be stored in double.";
char const kNoFraction[] = "Missing fraction part in number";
char const kNoExponent[] = "Miss exponent in number";

RefusedNumber const kRefusedNumbers[] = {
    {"Empty", "", 0, kWrongType},
    {"MinusAlone", "-", 1, kWrongType},
    {"TwoMinuses", "--1", 1, kWrongType},
    {"Plus", "+1", 0, kWrongType},
    {"PointFirst", ".5", 0, kWrongType},
    {"PointBehindMinus", "-.5", 1, kWrongType},
    {"Null", "null", 0, kWrongType},
    {"ByteBelowDigits", "/", 0, kWrongType},
    {"ByteAboveDigits", ":", 0, kWrongType},
    {"FourHundredDigits", std::string(400, '9'), 308, kTooBig},
    {"FourHundredNegativeDigits", "-" + std::string(400, '9'), 309, kTooBig},
    {"OneDigitMoreThanDouble", Digits("1", 310), 309, kTooBig},
    {"AboveDoubleLimit", Digits("17976931348624", 309), 308, kTooBig},
    {"PointAtEnd", "1.", 2, kNoFraction},
    {"PointBeforeLetter", "1.x", 2, kNoFraction},
    {"PointBeforeExponent", "0.e+1", 2, kNoFraction},
    {"ExponentOfOneDigitWithoutSign", "1e5", 3, kNoExponent},
    {"ExponentOfOneDigitBeforeComma", "1e5,", 3, kNoExponent},
    {"LetterAtEnd", "1e", 2, kNoExponent},
    {"SignAtEnd", "1e-", 3, kNoExponent},
    {"PlusAtEnd", "1e+", 3, kNoExponent},
    {"TwoSigns", "1e++5", 3, kNoExponent},
    {"FractionThenLetterAtEnd", "1.5E", 4, kNoExponent},
    {"ExponentAboveLimit", "1e+309", 6, kTooBig},
    {"ExponentFarAboveLimit", "1e+99999999999999999999", 6, kTooBig},
    {"ExponentAboveWidenedLimit", "1.5e+310", 8, kTooBig},
    {"ExponentAboveLimitOfZeros", "0.00001e+314", 12, kTooBig},
};
INSTANTIATE_TEST_SUITE_P(Scanner, JsonNumberRefused, testing::ValuesIn(kRefusedNumbers), NameOf<RefusedNumber>);

TEST(JsonNumber, LimitOfDoubleStageHasTheseBits) {
  double const limit = 1.7976931348623157e307;
  std::uint64_t bits = 0;
  std::memcpy(&bits, &limit, sizeof bits);
  EXPECT_EQ(bits, 0x7FB9999999999999U);
}

TEST(JsonNumber, OffsetCountsFromBase) {
  std::string const text = "  x";
  char const* p = text.data() + 2;
  double value = 0;
  try {
    SK_TdjsonParserUtils::ParseJsonNumber(p, text.data() + 3, text.data(), "n", value);
    FAIL();
  } catch (SK_Exception const& error) {
    EXPECT_EQ(error.GetFileOffset(), 2);
  }
}

TEST(JsonNumber, NullBaseGivesNoOffset) {
  std::string const text = "x";
  char const* p = text.data();
  double value = 0;
  try {
    SK_TdjsonParserUtils::ParseJsonNumber(p, text.data() + 1, nullptr, "n", value);
    FAIL();
  } catch (SK_Exception const& error) {
    EXPECT_EQ(error.GetFileOffset(), -1);
    EXPECT_EQ(error.GetFileLineNo(), -1);
  }
}

TEST(JsonNumber, Pow10IsTheNearestDoubleOfEachPower) {
  for (int n = 0; n <= 308; ++n) {
    EXPECT_EQ(SK_TdjsonParserUtils::Pow10(n), std::strtod(("1e" + std::to_string(n)).c_str(), nullptr)) << n;
  }
}

TEST(JsonNumber, Pow10OutsideItsTableIsInfinite) {
  EXPECT_EQ(SK_TdjsonParserUtils::Pow10(309), kInfinity);
  EXPECT_EQ(SK_TdjsonParserUtils::Pow10(std::numeric_limits<int>::max()), kInfinity);
  EXPECT_EQ(SK_TdjsonParserUtils::Pow10(-1), kInfinity);
}

TEST(JsonNumber, FastPathDividesOrMultipliesOnce) {
  EXPECT_EQ(SK_TdjsonParserUtils::FastPath(3.0, 0), 3.0);
  EXPECT_EQ(SK_TdjsonParserUtils::FastPath(1.5, 308), 1.5e308);
  EXPECT_EQ(SK_TdjsonParserUtils::FastPath(3.0, -1), 3.0 / 10.0);
  EXPECT_EQ(SK_TdjsonParserUtils::FastPath(1e300, -308), 1e300 / 1e308);
  EXPECT_EQ(SK_TdjsonParserUtils::FastPath(1e300, -309), 0.0);
  EXPECT_EQ(SK_TdjsonParserUtils::FastPath(1e300, std::numeric_limits<int>::min()), 0.0);
}

TEST(JsonNumber, StrtodNormalPrecisionDividesTwiceFarDown) {
  EXPECT_EQ(SK_TdjsonParserUtils::StrtodNormalPrecision(15.0, -1), 1.5);
  EXPECT_EQ(SK_TdjsonParserUtils::StrtodNormalPrecision(15.0, 2), 1500.0);
  EXPECT_EQ(SK_TdjsonParserUtils::StrtodNormalPrecision(1e300, -308), 1e300 / 1e308);
  EXPECT_EQ(SK_TdjsonParserUtils::StrtodNormalPrecision(1e300, -309), 1e300 / 1e308 / 10);
  EXPECT_EQ(SK_TdjsonParserUtils::StrtodNormalPrecision(1e300, -616), 1e300 / 1e308 / 1e308);
  EXPECT_EQ(SK_TdjsonParserUtils::StrtodNormalPrecision(1e300, -617), 0.0);
  EXPECT_EQ(SK_TdjsonParserUtils::StrtodNormalPrecision(1e300, std::numeric_limits<int>::min()), 0.0);
}

}  // namespace
