#include "SK_LongNames.h"

#include <new>

namespace ns_sensor {

std::string SK_LongNames::Counted(std::string name) {
  if (name.size() > kLongName) {
    if (name.size() > mLimit - mBytes) {
      throw std::bad_alloc();
    }
    mBytes += name.size();
  }
  return name;
}

}  // namespace ns_sensor
