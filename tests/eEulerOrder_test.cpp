#include "eEulerOrder.h"

#include <gtest/gtest.h>

namespace ns_sensor {
namespace {

struct Spelling {
  char const* name;
  eEulerOrder order;
  int value;
  char const* positions;
  char const* rotations;
  std::vector<std::string> displayNames;
};

std::ostream& operator<<(std::ostream& out, Spelling const& row) {
  return out << row.name;
}

class EulerOrder : public testing::TestWithParam<Spelling> {};

TEST_P(EulerOrder, HasItsValue) {
  EXPECT_EQ(static_cast<int>(GetParam().order), GetParam().value);
}

TEST_P(EulerOrder, IsFoundByItsWordsAnywhereOnTheLine) {
  std::string const positions = GetParam().positions;
  std::string const rotations = GetParam().rotations;
  EXPECT_EQ(GetPositionOrder(positions), GetParam().order);
  EXPECT_EQ(GetRotationOrder(rotations), GetParam().order);
  for (std::string const& line :
       {"CHANNELS 6 " + positions + ' ' + rotations, "\tCHANNELS 6 " + rotations + ' ' + positions + " \r",
        "9" + rotations + "x" + positions + "y"}) {
    EXPECT_EQ(GetPositionOrder(line), GetParam().order) << line;
    EXPECT_EQ(GetRotationOrder(line), GetParam().order) << line;
  }
}

TEST_P(EulerOrder, OneKindIsNotTheOther) {
  EXPECT_EQ(GetPositionOrder(GetParam().rotations), kNoEulerOrder);
  EXPECT_EQ(GetRotationOrder(GetParam().positions), kNoEulerOrder);
}

TEST_P(EulerOrder, OrdersDisplayNames) {
  std::vector<std::string> names;
  FillDisplayNames(GetParam().order, "POSITION", names);
  EXPECT_EQ(names, GetParam().displayNames);
}

Spelling const kSpellings[] = {
    {"XYZ",
     kEulerXYZ,
     0,
     "Xposition Yposition Zposition",
     "Xrotation Yrotation Zrotation",
     {"X_POSITION", "Y_POSITION", "Z_POSITION"}},
    {"XZY",
     kEulerXZY,
     1,
     "Xposition Zposition Yposition",
     "Xrotation Zrotation Yrotation",
     {"X_POSITION", "Z_POSITION", "Y_POSITION"}},
    {"YZX",
     kEulerYZX,
     2,
     "Yposition Zposition Xposition",
     "Yrotation Zrotation Xrotation",
     {"Y_POSITION", "Z_POSITION", "X_POSITION"}},
    {"YXZ",
     kEulerYXZ,
     3,
     "Yposition Xposition Zposition",
     "Yrotation Xrotation Zrotation",
     {"Y_POSITION", "X_POSITION", "Z_POSITION"}},
    {"ZXY",
     kEulerZXY,
     4,
     "Zposition Xposition Yposition",
     "Zrotation Xrotation Yrotation",
     {"Z_POSITION", "X_POSITION", "Y_POSITION"}},
    {"ZYX",
     kEulerZYX,
     5,
     "Zposition Yposition Xposition",
     "Zrotation Yrotation Xrotation",
     {"Z_POSITION", "Y_POSITION", "X_POSITION"}},
};
INSTANTIATE_TEST_SUITE_P(Table, EulerOrder, testing::ValuesIn(kSpellings),
                         [](auto const& row) { return std::string(row.param.name); });

TEST(EulerOrderText, WordsInNoOrderAreNone) {
  for (char const* const line :
       {"", "CHANNELS 3", "Xrotation Yrotation", "Xrotation  Yrotation Zrotation", "Xrotation\tYrotation Zrotation",
        "xrotation yrotation zrotation", "Xrotation Xrotation Yrotation", "Xrotation Yrotation Zrotatio"}) {
    EXPECT_EQ(GetRotationOrder(line), kNoEulerOrder) << line;
    EXPECT_EQ(GetPositionOrder(line), kNoEulerOrder) << line;
  }
}

TEST(EulerOrderText, FirstInTheListWinsNotFirstOnTheLine) {
  EXPECT_EQ(GetRotationOrder("Zrotation Yrotation Xrotation Yrotation Zrotation"), kEulerXYZ);
  EXPECT_EQ(GetPositionOrder("Zposition Yposition Xposition Yposition Zposition"), kEulerXYZ);
}

TEST(EulerOrderText, NoOrderHasNoDisplayNames) {
  std::vector<std::string> names = {"kept"};
  FillDisplayNames(kNoEulerOrder, "ROTATION", names);
  FillDisplayNames(static_cast<eEulerOrder>(6), "ROTATION", names);
  EXPECT_EQ(names, std::vector<std::string>{"kept"});
  FillDisplayNames(kEulerXYZ, "", names);
  EXPECT_EQ(names, (std::vector<std::string>{"kept", "X_", "Y_", "Z_"}));
}

}  // namespace
}  // namespace ns_sensor
