/// A UTC time text taken apart.
#pragma once

#include <cstdint>

namespace SK_NAMESPACE_INT {

struct SK_DateTime {
  std::int32_t year = 0;
  std::int32_t month = 0;
  std::int32_t day = 0;
  std::int32_t hour = 0;
  std::int32_t minute = 0;
  std::int32_t second = 0;
  std::uint8_t hasOffset = 0;
  char offsetSign = 0;  ///< the character behind the fraction: '+', '-', or a zone letter
  std::int32_t offsetHour = 0;
  std::int32_t offsetMinute = 0;
  std::int32_t fraction = 0;  ///< in units of 10 to the minus precision seconds
};

}  // namespace SK_NAMESPACE_INT
