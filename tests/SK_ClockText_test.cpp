#include "SK_ClockText.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

namespace SK_PLUGIN {
namespace {

TEST(ClockText, EveryClockHasItsText) {
  auto const digits = [](int value) {
    return std::string{static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
  };
  for (int hours = 0; hours != 100; ++hours) {
    for (int minutes = 0; minutes != 100; ++minutes) {
      std::string const start = digits(hours) + ':' + digits(minutes) + ':';
      for (int seconds = 0; seconds != 100; ++seconds) {
        char text[] = "[........]";
        PutClockText(text + 1, hours, minutes, seconds);
        ASSERT_EQ(std::string_view(text), '[' + start + digits(seconds) + ']');
      }
    }
  }
}

TEST(ClockText, EachFieldHasTwoDigits) {
  EXPECT_TRUE(HaveTwoDigits(0, 0, 0));
  EXPECT_TRUE(HaveTwoDigits(99, 99, 99));
  for (int const other : {-1, 100, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
    EXPECT_FALSE(HaveTwoDigits(other, 0, 0)) << other;
    EXPECT_FALSE(HaveTwoDigits(0, other, 0)) << other;
    EXPECT_FALSE(HaveTwoDigits(0, 0, other)) << other;
  }
}

}  // namespace
}  // namespace SK_PLUGIN
