// Static nodes with an array of numbers: the order of its calls decides what is taken from the values.
#include "TdjsonStaticDataNumArrImpl.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "ExpectError.h"
#include "FailingMemory.h"
#include "WriterErrors.h"

namespace SK_PLUGIN {
namespace {

using ns_sensor::SK_NumberArrayProperties;
using ns_sensor::SK_NumberPattern;
using ns_sensor::SK_NumberRange;
using senmark_test::CodeOf;
using senmark_test::ExpectError;
using senmark_test::FailingMemory;
using senmark_test::kConverterFailed;
using Names = std::vector<std::string>;

constexpr unsigned long long kMark = 18446744073709551615ull;
constexpr double kMinMark = 1.7976931348623157e308;
constexpr double kMaxMark = -1.7976931348623157e308;

class StaticDataNumArr : public testing::Test {
 protected:
  void AddElements(std::vector<double> const& values) {
    for (double const value : values) {
      EXPECT_TRUE(mNode.addElement(value, &mResult));
    }
  }
  void AddAutomaticRanges(int count) {
    for (int range = 0; range < count; ++range) {
      mNode.setNumberRange(kMinMark, kMaxMark, kMinMark, kMaxMark, &mResult);
    }
  }
  int CodeOfRange(double legalMin, double legalMax, double occurringMin, double occurringMax) {
    return CodeOf([&](void* result) { mNode.setNumberRange(legalMin, legalMax, occurringMin, occurringMax, result); });
  }
  void ExpectPattern(unsigned long long digitsInteger, unsigned long long digitsDecimal, bool isSigned) const {
    EXPECT_EQ(Properties().pattern.digitsInteger, digitsInteger);
    EXPECT_EQ(Properties().pattern.digitsDecimal, digitsDecimal);
    EXPECT_EQ(Properties().pattern.isSigned, isSigned);
  }
  /// legalMin, legalMax, occurringMin, occurringMax
  void ExpectRange(std::size_t at, std::vector<double> const& bounds) const {
    ASSERT_LT(at, Properties().arrayRanges.size());
    SK_NumberRange const& range = Properties().arrayRanges[at];
    EXPECT_EQ((std::vector<double>{range.legal.min, range.legal.max, range.occurring.min, range.occurring.max}), bounds)
        << at;
  }
  SK_NumberArrayProperties const& Properties() const { return mNode.GetNumArrayProperties(); }

  TdjsonStaticDataNumArrImpl mNode{nullptr, "pos", "position"};
  SK_PluginResult mResult;
};

TEST_F(StaticDataNumArr, IsWhatItWasMadeOf) {
  TdjsonStaticDataNumArrImpl node(nullptr, "a \"point\"", "point");
  EXPECT_EQ(node.GetType(), 2);
  EXPECT_TRUE(node.GetDataValue().empty());
  EXPECT_EQ(node.GetDisplayName(), R"(a \"point\")");
  EXPECT_EQ(node.GetMatchName(), "point");
  EXPECT_EQ(node.GetActualITdjsonStaticData(), static_cast<ITdjsonStaticData_v1*>(&node));
  EXPECT_EQ(node.GetNumArrayProperties().arraySize, 0u);
  EXPECT_FALSE(node.GetNumArrayProperties().isPoint);
}

TEST_F(StaticDataNumArr, InTheOrderToldEverythingIsTakenFromTheValues) {
  AddElements({1.5, -2, 10});
  AddAutomaticRanges(3);
  mNode.setIsPoint(1, &mResult);
  mNode.setNumberPattern(kMark, kMark, 0, &mResult);
  mNode.setArrCount(3, &mResult);
  EXPECT_EQ(mResult.mErrorCode, 0);
  EXPECT_EQ(mNode.GetDataValue(), (std::vector<double>{1.5, -2, 10}));
  ExpectPattern(2, 1, true);
  ExpectRange(0, {1.5, 1.5, 1.5, 1.5});
  ExpectRange(1, {-2, -2, -2, -2});
  ExpectRange(2, {10, 10, 10, 10});
  EXPECT_EQ(Properties().arraySize, 3u);
  EXPECT_EQ(Properties().arrayDisplayNames, (Names{"pos_0", "pos_1", "pos_2"}));
  EXPECT_TRUE(Properties().isPoint);
}

TEST_F(StaticDataNumArr, APatternBeforeTheElementsSeesNoneOfThem) {
  EXPECT_EQ(CodeOf([&](void* result) { mNode.setNumberPattern(kMark, kMark, 0, result); }), 0);
  AddElements({-1.5, 100});
  mNode.setArrCount(2, &mResult);
  ExpectPattern(0, 0, false);
}

TEST_F(StaticDataNumArr, DigitsAreTakenIndependently) {
  AddElements({123.4, 5.678});
  mNode.setNumberPattern(kMark, kMark, 0, &mResult);
  ExpectPattern(3, 3, false);
}

TEST_F(StaticDataNumArr, AnExplicitPatternStaysButForTheSign) {
  AddElements({123.456, 1});
  mNode.setNumberPattern(1, 2, 0, &mResult);
  ExpectPattern(1, 2, false);
  AddElements({-0.0});
  mNode.setNumberPattern(1, 2, 0, &mResult);
  ExpectPattern(1, 2, true);
}

// Once automatic, a pattern is raised to the values whatever is passed later.
TEST_F(StaticDataNumArr, AnExplicitPatternBehindAnAutomaticOneIsWidened) {
  AddElements({123.456});
  mNode.setNumberPattern(kMark, kMark, 0, &mResult);
  mNode.setNumberPattern(1, 5, 0, &mResult);
  EXPECT_EQ(mResult.mErrorCode, 0);
  ExpectPattern(3, 5, false);
}

TEST_F(StaticDataNumArr, HalfAMarkIsStoredAndRefused) {
  AddElements({-123.456});
  EXPECT_EQ(CodeOf([&](void* result) { mNode.setNumberPattern(kMark, 2, 0, result); }), 2006);
  ExpectPattern(kMark, 2, false);
  EXPECT_EQ(CodeOf([&](void* result) { mNode.setNumberPattern(3, kMark, 1, result); }), 2006);
  ExpectPattern(3, kMark, true);
}

TEST_F(StaticDataNumArr, RangesOfOneArrayAreOfOneKind) {
  EXPECT_EQ(CodeOfRange(-9, 9, kMinMark, kMaxMark), 0);
  EXPECT_EQ(CodeOfRange(-9, 9, -3, 3), 2007);
  EXPECT_EQ(Properties().arrayRanges.size(), 2u);
  ExpectRange(1, {-9, 9, -3, 3});
}

TEST_F(StaticDataNumArr, AnExplicitRangeCannotBeFollowedByAnAutomaticOne) {
  EXPECT_EQ(CodeOfRange(-9, 9, -3, 3), 0);
  EXPECT_EQ(CodeOfRange(-9, 9, kMinMark, kMaxMark), 2007);
}

TEST_F(StaticDataNumArr, LegalRangesHaveTheirOwnCode) {
  EXPECT_EQ(CodeOfRange(kMinMark, kMaxMark, -3, 3), 0);
  EXPECT_EQ(CodeOfRange(-9, 9, -3, 3), 2008);
  TdjsonStaticDataNumArrImpl other(nullptr, "n", "n");
  EXPECT_EQ(CodeOf([&](void* result) { other.setNumberRange(-9, 9, -3, 3, result); }), 0);
  EXPECT_EQ(CodeOf([&](void* result) { other.setNumberRange(kMinMark, kMaxMark, -3, 3, result); }), 2008);
}

TEST_F(StaticDataNumArr, HalfAMarkInARangeIsRefused) {
  EXPECT_EQ(CodeOfRange(-9, 9, kMinMark, 3), 2007);
  EXPECT_EQ(CodeOfRange(-9, 9, -3, kMaxMark), 2007);
  EXPECT_EQ(CodeOfRange(kMinMark, 9, -3, 3), 2008);
  EXPECT_EQ(CodeOfRange(-9, kMaxMark, -3, 3), 2008);
  EXPECT_EQ(CodeOfRange(kMinMark, 9, kMinMark, 3), 2007);
  EXPECT_EQ(Properties().arrayRanges.size(), 5u);
}

TEST_F(StaticDataNumArr, LegalIsTakenFromExplicitOccurringRanges) {
  AddElements({1, 2});
  mNode.setNumberRange(kMinMark, kMaxMark, -3, 3, &mResult);
  mNode.setNumberRange(kMinMark, kMaxMark, -4, 4, &mResult);
  mNode.setArrCount(2, &mResult);
  ExpectRange(0, {-3, 3, -3, 3});
  ExpectRange(1, {-4, 4, -4, 4});
}

TEST_F(StaticDataNumArr, ExplicitLegalRangesStayBesideOccurringOnesThatAreTaken) {
  AddElements({1, 2});
  mNode.setNumberRange(-9, 9, kMinMark, kMaxMark, &mResult);
  mNode.setNumberRange(-8, 8, kMinMark, kMaxMark, &mResult);
  mNode.setArrCount(2, &mResult);
  ExpectRange(0, {-9, 9, 1, 1});
  ExpectRange(1, {-8, 8, 2, 2});
}

TEST_F(StaticDataNumArr, ExplicitRangesStay) {
  AddElements({100, -100});
  mNode.setNumberRange(-9, 9, -3, 3, &mResult);
  mNode.setNumberRange(-8, 8, -2, 2, &mResult);
  mNode.setArrCount(2, &mResult);
  EXPECT_EQ(mResult.mErrorCode, 0);
  ExpectRange(0, {-9, 9, -3, 3});
  ExpectRange(1, {-8, 8, -2, 2});
}

TEST_F(StaticDataNumArr, WithoutItsLastCallNothingIsFilledIn) {
  AddElements({1, 2});
  AddAutomaticRanges(2);
  mNode.setNumberPattern(kMark, kMark, 0, &mResult);
  ExpectRange(0, {kMinMark, kMaxMark, kMinMark, kMaxMark});
  EXPECT_TRUE(Properties().arrayDisplayNames.empty());
  EXPECT_EQ(Properties().arraySize, 0u);
}

TEST_F(StaticDataNumArr, ACountOf2GivesTwoNames) {
  mNode.setArrCount(2, &mResult);
  EXPECT_EQ(Properties().arrayDisplayNames, (Names{"pos_0", "pos_1"}));
  mNode.setArrCount(3, &mResult);
  EXPECT_EQ(Properties().arrayDisplayNames, (Names{"pos_0", "pos_1"}));
  EXPECT_EQ(Properties().arraySize, 3u);
}

TEST_F(StaticDataNumArr, NamesAreMadeOfTheEscapedOne) {
  TdjsonStaticDataNumArrImpl node(nullptr, "a\tb", "n");
  node.setArrCount(1, &mResult);
  EXPECT_EQ(node.GetNumArrayProperties().arrayDisplayNames, Names{"a\\tb_0"});
}

TEST_F(StaticDataNumArr, GivenNamesAreEscapedAndStay) {
  EXPECT_EQ(CodeOf([&](void* result) { mNode.addDisplayName("x \"axis\"", result); }), 0);
  mNode.AddDisplayName("y\n");
  mNode.AddDisplayName(std::string("z\0hidden", 8));
  mNode.setArrCount(2, &mResult);
  EXPECT_EQ(Properties().arrayDisplayNames, (Names{R"(x \"axis\")", "y\\n", "z"}));
}

TEST_F(StaticDataNumArr, NoCountIsChecked) {
  AddElements({1, 2, 3, 4, 5});
  EXPECT_EQ(CodeOf([&](void* result) { mNode.setArrCount(0, result); }), 0);
  EXPECT_EQ(Properties().arraySize, 0u);
  EXPECT_TRUE(Properties().arrayDisplayNames.empty());
  EXPECT_EQ(mNode.GetDataValue().size(), 5u);
}

TEST_F(StaticDataNumArr, FewerRangesThanElementsAreNoTrouble) {
  AddElements({1, 2, 3});
  AddAutomaticRanges(1);
  EXPECT_EQ(CodeOf([&](void* result) { mNode.setArrCount(3, result); }), 0);
  ASSERT_EQ(Properties().arrayRanges.size(), 1u);
  ExpectRange(0, {1, 1, 1, 1});
}

TEST_F(StaticDataNumArr, ACountBeyondAllMemoryIsReported) {
  EXPECT_EQ(CodeOf([&](void* result) { mNode.setArrCount(kMark, result); }), 1034);
  EXPECT_TRUE(Properties().arrayDisplayNames.empty());
}

TEST_F(StaticDataNumArr, AnElementWithoutMemoryIsNotTaken) {
  SK_PluginResult result;
  {
    FailingMemory const failing(1);
    EXPECT_FALSE(mNode.addElement(1, &result));
  }
  EXPECT_EQ(result.mErrorCode, 1034);
  EXPECT_TRUE(mNode.GetDataValue().empty());
  {
    std::string const message = kConverterFailed;
    FailingMemory const failing(1);
    ExpectError([&] { mNode.AddElement(1); }, 1034, message);
  }
  EXPECT_TRUE(mNode.addElement(1, &mResult));
}

TEST_F(StaticDataNumArr, TheFlagOfAPointIsStored) {
  for (unsigned char const isPoint : std::initializer_list<unsigned char>{1, 0, 255}) {
    EXPECT_EQ(CodeOf([&](void* result) { mNode.setIsPoint(isPoint, result); }), 0);
    EXPECT_EQ(Properties().isPoint, isPoint != 0);
  }
}

TEST_F(StaticDataNumArr, TheMirrorsDoTheSame) {
  mNode.AddElement(1.5);
  mNode.AddElement(-2);
  mNode.SetNumberRange(SK_NumberRange());
  SK_NumberRange range;
  range.legal = {-9, 9};
  ExpectError([&] { mNode.SetNumberRange(range); }, 2008, kConverterFailed);
  range.occurring = {-3, 3};
  ExpectError([&] { mNode.SetNumberRange(range); }, 2007, kConverterFailed);
  mNode.AddDisplayName("x");
  mNode.SetIsPoint(true);
  SK_NumberPattern pattern;
  pattern.digitsInteger = 0;
  ExpectError([&] { mNode.SetNumberPattern(pattern); }, 2006, kConverterFailed);
  mNode.SetNumberPattern(SK_NumberPattern());
  mNode.SetArrCount(2);
  EXPECT_EQ(mNode.GetDataValue(), (std::vector<double>{1.5, -2}));
  ExpectPattern(1, 1, true);
  ExpectRange(0, {1.5, 1.5, 1.5, 1.5});
  ExpectRange(2, {-3, 3, -3, 3});
  EXPECT_EQ(Properties().arrayDisplayNames, Names{"x"});
  EXPECT_EQ(Properties().arraySize, 2u);
  EXPECT_TRUE(Properties().isPoint);
  mNode.SetIsPoint(false);
  EXPECT_FALSE(Properties().isPoint);
}

}  // namespace
}  // namespace SK_PLUGIN
