#include "SK_LongNames.h"

#include <gtest/gtest.h>

#include <new>

namespace ns_sensor {
namespace {

constexpr std::size_t kLong = SK_LongNames::kLongName + 1;

std::string Name(std::size_t length) {
  return std::string(length, 'n');
}

TEST(LongNames, ComeBackAsTheyAre) {
  SK_LongNames names;
  EXPECT_EQ(names.Counted(""), "");
  EXPECT_EQ(names.Counted(Name(kLong)), Name(kLong));
}

TEST(LongNames, ShortOnesAreNotCounted) {
  SK_LongNames names(0);
  names.Counted(Name(0));
  names.Counted(Name(kLong - 1));
  EXPECT_EQ(names.GetBytes(), 0U);
  EXPECT_THROW(names.Counted(Name(kLong)), std::bad_alloc);
}

TEST(LongNames, MayFillTheLimitButNotPassIt) {
  SK_LongNames names(3 * kLong);
  names.Counted(Name(kLong));
  names.Counted(Name(2 * kLong));
  EXPECT_EQ(names.GetBytes(), 3 * kLong);
  EXPECT_THROW(names.Counted(Name(kLong)), std::bad_alloc);
  EXPECT_EQ(names.GetBytes(), 3 * kLong) << "what was refused is not counted";
}

TEST(LongNames, ThatAreForgottenMakeRoom) {
  SK_LongNames names(2 * kLong);
  names.Counted(Name(2 * kLong));
  names.Forget(kLong);
  EXPECT_EQ(names.GetBytes(), kLong);
  EXPECT_NO_THROW(names.Counted(Name(kLong)));
  EXPECT_THROW(names.Counted(Name(kLong)), std::bad_alloc);
}

TEST(LongNames, HaveOneGibibyteForAll) {
  EXPECT_EQ(SK_LongNames::kLimit, 1073741824U);
  EXPECT_EQ(SK_LongNames::kLongName, 1024U);
}

}  // namespace
}  // namespace ns_sensor
