#include "SK_Assert.h"

#include <gtest/gtest.h>

namespace SK_NAMESPACE_INT {
namespace {

TEST(Assert, ReportNamesWhatShouldHaveHeldAndWhere) {
  EXPECT_DEATH(SK_AssertFailed("left == right", "Compare", "source/Compare", 7),
               "^Assertion failed: \\(left == right\\), function Compare, file source/Compare, line 7\\.");
}

}  // namespace
}  // namespace SK_NAMESPACE_INT
